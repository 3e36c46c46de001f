#include "tests/session/driver_watch.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <dlfcn.h>
#include <pipewire/filter.h>

// The function below replaces PipeWire's for the whole program, and passes the call on.

namespace tolvenary::session
{

namespace
{

using Process = void (*)(void *data, spa_io_position *position);

/// What one filter's cycles tell: the real-time thread writes it.
struct Watched {
    std::atomic<void *> data = nullptr;
    std::atomic<pw_filter *> filter = nullptr;
    std::atomic<std::uint64_t> nodeAndDriver = nothing;

    static constexpr std::uint64_t nothing = UINT64_MAX;
};

constinit std::array<Watched, 8> allWatched;
constinit std::atomic<Process> watchedProcess = nullptr;

/// The place of the filter whose events carry `data`; a new one if there is none.
Watched &watchedFor(void *data)
{
    for (Watched &watched : allWatched) {
        void *known = nullptr;
        if (watched.data.compare_exchange_strong(known, data) || known == data)
            return watched;
    }
    abort();
}

/// real-time
void process(void *data, spa_io_position *position)
{
    Watched &watched = watchedFor(data);
    const std::uint64_t node = pw_filter_get_node_id(watched.filter);
    watched.nodeAndDriver = node << 32 | position->clock.id;
    watchedProcess.load()(data, position);
}

} // namespace

void forgetDrivers()
{
    for (Watched &watched : allWatched)
        watched.nodeAndDriver = Watched::nothing;
}

std::map<std::uint32_t, std::uint32_t> lastDrivers()
{
    std::map<std::uint32_t, std::uint32_t> drivers;
    for (const Watched &watched : allWatched) {
        const std::uint64_t seen = watched.nodeAndDriver;
        if (seen != Watched::nothing)
            drivers[static_cast<std::uint32_t>(seen >> 32)] = static_cast<std::uint32_t>(seen);
    }
    return drivers;
}

} // namespace tolvenary::session

extern "C" void pw_filter_add_listener(pw_filter *filter, spa_hook *listener, const pw_filter_events *events,
                                       void *data)
{
    using namespace tolvenary::session;
    static auto *real = reinterpret_cast<decltype(&pw_filter_add_listener)>(dlsym(RTLD_NEXT, "pw_filter_add_listener"));
    Process first = nullptr;
    const bool isFirst = watchedProcess.compare_exchange_strong(first, events->process);
    if (!isFirst && first != events->process)
        return real(filter, listener, events, data); // the tests' own recorder
    static pw_filter_events wrapped = *events;
    wrapped.process = process;
    watchedFor(data).filter = filter;
    real(filter, listener, &wrapped, data);
}

#include "tests/session/callback_watch.h"

#include "tests/session/system_call_watch.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <malloc.h>
#include <pipewire/filter.h>
#include <pipewire/stream.h>
#include <poll.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

// The functions below replace the C library's for the whole program, count, and pass the call on. They must not
// allocate themselves.

namespace tolvenary::session
{

namespace
{

struct Counters {
    std::atomic<bool> counting = false;
    std::atomic<std::uint64_t> callbacks = 0;
    std::atomic<std::uint64_t> streamCallbacks = 0;
    std::atomic<std::uint64_t> contendedLocks = 0;
    std::atomic<std::uint64_t> allocations = 0;
    std::atomic<std::uint64_t> frees = 0;
    std::atomic<std::uint64_t> locks = 0;
    std::atomic<std::uint64_t> waits = 0;
    std::atomic<std::uint64_t> systemCalls = 0;
    std::array<std::atomic<const void *>, 16> mutexes = {};
};

constinit Counters counters;
constinit thread_local int depth = 0;
constinit thread_local bool isEveryCallSeen = false;

void count(std::atomic<std::uint64_t> &counter)
{
    if (depth > 0 && counters.counting.load(std::memory_order_relaxed))
        counter.fetch_add(1, std::memory_order_relaxed);
}

/// What the replaced functions see of system calls, where the kernel does not show them all.
void countCall(std::atomic<std::uint64_t> &counter)
{
    if (!isEveryCallSeen)
        count(counter);
}

void seen(SystemCall call)
{
    count(call == SystemCall::contendedLock ? counters.contendedLocks
          : call == SystemCall::wait        ? counters.waits
                                            : counters.systemCalls);
}

void enter()
{
    isEveryCallSeen = system_call_watch::begin(seen);
    ++depth;
}

void leave()
{
    --depth;
    system_call_watch::end();
}

void countLock(const void *mutex)
{
    if (depth == 0 || !counters.counting.load(std::memory_order_relaxed))
        return;
    counters.locks.fetch_add(1, std::memory_order_relaxed);
    for (auto &slot : counters.mutexes) {
        const void *known = nullptr;
        if (slot.compare_exchange_strong(known, mutex) || known == mutex)
            return;
    }
}

/// The function that ours hides.
template <typename Function> Function *hidden(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

using Process = void (*)(void *, spa_io_position *);
std::atomic<Process> watchedProcess = nullptr;
std::atomic<std::uint32_t> cycleLength = 0;

void process(void *data, spa_io_position *position)
{
    enter();
    count(counters.callbacks);
    cycleLength.store(static_cast<std::uint32_t>(position->clock.duration), std::memory_order_relaxed);
    watchedProcess.load(std::memory_order_relaxed)(data, position);
    leave();
}

using StreamProcess = void (*)(void *);
std::atomic<StreamProcess> watchedStreamProcess = nullptr;

void processStream(void *data)
{
    enter();
    count(counters.streamCallbacks);
    watchedStreamProcess.load(std::memory_order_relaxed)(data);
    leave();
}

} // namespace

void beginCounting()
{
    for (auto *counter :
         {&counters.callbacks, &counters.streamCallbacks, &counters.contendedLocks, &counters.allocations,
          &counters.frees, &counters.locks, &counters.waits, &counters.systemCalls})
        counter->store(0);
    for (auto &slot : counters.mutexes)
        slot.store(nullptr);
    counters.counting.store(true);
}

CallbackCounts endCounting()
{
    counters.counting.store(false);
    CallbackCounts counts{counters.callbacks, counters.streamCallbacks, counters.allocations,
                          counters.frees,     counters.locks,           0,
                          counters.waits,     counters.systemCalls,     counters.contendedLocks};
    for (const auto &slot : counters.mutexes)
        counts.mutexes += slot.load() != nullptr ? 1 : 0;
    return counts;
}

std::uint32_t lengthOfTheLastCycle()
{
    return cycleLength.load(std::memory_order_relaxed);
}

PretendedCallback::PretendedCallback()
{
    enter();
    count(counters.callbacks);
}

PretendedCallback::~PretendedCallback()
{
    leave();
}

bool seesEverySystemCall()
{
    const bool sees = system_call_watch::begin(seen);
    system_call_watch::end();
    return sees;
}

} // namespace tolvenary::session

using namespace tolvenary::session;

extern "C" {

// The program's own process callbacks, wrapped. One table of events serves all its nodes; a second one would need a
// second wrapper, and is refused.
void pw_filter_add_listener(pw_filter *filter, spa_hook *listener, const pw_filter_events *events, void *data)
{
    static pw_filter_events wrapped = *events;
    Process none = nullptr;
    if (!watchedProcess.compare_exchange_strong(none, events->process) && none != events->process)
        abort();
    wrapped.process = process;
    hidden<decltype(pw_filter_add_listener)>("pw_filter_add_listener")(filter, listener, &wrapped, data);
}

void pw_stream_add_listener(pw_stream *stream, spa_hook *listener, const pw_stream_events *events, void *data)
{
    static pw_stream_events wrapped = *events;
    StreamProcess none = nullptr;
    if (!watchedStreamProcess.compare_exchange_strong(none, events->process) && none != events->process)
        abort();
    wrapped.process = processStream;
    hidden<decltype(pw_stream_add_listener)>("pw_stream_add_listener")(stream, listener, &wrapped, data);
}

void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t number, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);

void *malloc(std::size_t size) noexcept
{
    count(counters.allocations);
    return __libc_malloc(size);
}

void *calloc(std::size_t number, std::size_t size) noexcept
{
    count(counters.allocations);
    return __libc_calloc(number, size);
}

void *realloc(void *block, std::size_t size) noexcept
{
    count(counters.allocations);
    return __libc_realloc(block, size);
}

void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    count(counters.allocations);
    return __libc_memalign(alignment, size);
}

int posix_memalign(void **block, std::size_t alignment, std::size_t size) noexcept
{
    count(counters.allocations);
    *block = __libc_memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void *block) noexcept
{
    count(counters.frees);
    __libc_free(block);
}

int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept
{
    static auto *real = hidden<int(pthread_mutex_t *)>("pthread_mutex_lock");
    countLock(mutex);
    return real(mutex);
}

int pthread_mutex_trylock(pthread_mutex_t *mutex) noexcept
{
    static auto *real = hidden<int(pthread_mutex_t *)>("pthread_mutex_trylock");
    countLock(mutex);
    return real(mutex);
}

int pthread_cond_wait(pthread_cond_t *condition, pthread_mutex_t *mutex)
{
    static auto *real = hidden<int(pthread_cond_t *, pthread_mutex_t *)>("pthread_cond_wait");
    countCall(counters.waits);
    return real(condition, mutex);
}

int nanosleep(const timespec *duration, timespec *left)
{
    static auto *real = hidden<int(const timespec *, timespec *)>("nanosleep");
    countCall(counters.waits);
    return real(duration, left);
}

int poll(pollfd *descriptors, nfds_t number, int timeout)
{
    static auto *real = hidden<int(pollfd *, nfds_t, int)>("poll");
    countCall(counters.waits);
    return real(descriptors, number, timeout);
}

ssize_t read(int descriptor, void *buffer, std::size_t size)
{
    static auto *real = hidden<ssize_t(int, void *, std::size_t)>("read");
    countCall(counters.systemCalls);
    return real(descriptor, buffer, size);
}

ssize_t write(int descriptor, const void *buffer, std::size_t size)
{
    static auto *real = hidden<ssize_t(int, const void *, std::size_t)>("write");
    countCall(counters.systemCalls);
    return real(descriptor, buffer, size);
}

ssize_t sendmsg(int socket, const msghdr *message, int flags)
{
    static auto *real = hidden<ssize_t(int, const msghdr *, int)>("sendmsg");
    countCall(counters.systemCalls);
    return real(socket, message, flags);
}

long syscall(long number, ...) noexcept
{
    using Real = long(long, ...);
    static auto *real = hidden<Real>("syscall");
    std::va_list list;
    va_start(list, number);
    std::array<long, 6> arguments{};
    for (long &argument : arguments)
        argument = va_arg(list, long);
    va_end(list);
    countCall(counters.systemCalls);
    return real(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}
}

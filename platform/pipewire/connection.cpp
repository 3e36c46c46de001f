#include "platform/pipewire/connection.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <pipewire/impl-module.h>
#include <pipewire/pipewire.h>
#include <stop_token>
#include <thread>
#include <utility>

// Needs what the above include.
#include <pipewire/extensions/profiler.h>

namespace tolvenary
{

namespace
{

constexpr auto answerTime = std::chrono::seconds(1);
constexpr auto retryTime = std::chrono::milliseconds(300);
constexpr auto tickTime = std::chrono::milliseconds(50);

timespec toTimespec(std::chrono::nanoseconds time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
}

/// Whether all clients have real-time rights. Before PipeWire 1.4 a client has them only if it asks for a certain
/// configuration; since then that name draws a warning.
bool haveAllRealTimeRights()
{
    std::pair version{0, 0};
    return std::sscanf(pw_get_library_version(), "%d.%d", &version.first, &version.second) == 2 &&
           version >= std::pair{1, 4};
}

pw_properties *contextProperties()
{
    pw_properties *properties = pw_properties_new("cpu.zero.denormals", "true", nullptr);
    if (!haveAllRealTimeRights())
        pw_properties_set(properties, PW_KEY_CONFIG_NAME, "client-rt.conf");
    return properties;
}

} // namespace

// The control thread's loop with its event sources.
struct Connection::Loop {
    explicit Loop(Connection &owner);
    ~Loop();
    Loop(const Loop &) = delete;
    Loop &operator=(const Loop &) = delete;

    pw_loop *loop() const { return pw_thread_loop_get_loop(thread.get()); }
    void arm(spa_source *timer, std::chrono::nanoseconds delay) const;

    Connection &owner;
    PwHandle<pw_thread_loop> thread;
    PwHandle<pw_context> context;
    spa_source *connectTimer = nullptr;
    spa_source *answerTimer = nullptr;
    spa_source *updateEvent = nullptr;
    spa_source *tickTimer = nullptr;
    pw_core_events coreEvents{};
};

Connection::Loop::Loop(Connection &connection)
    : owner(connection), thread(pw_thread_loop_new("tolvenary-control", nullptr))
{
    connectTimer = pw_loop_add_timer(
        loop(), [](void *data, std::uint64_t) { static_cast<Connection *>(data)->connect(); }, &owner);
    answerTimer = pw_loop_add_timer(
        loop(), [](void *data, std::uint64_t) { static_cast<Connection *>(data)->roundTripsTimedOut(); }, &owner);
    updateEvent = pw_loop_add_event(
        loop(), [](void *data, std::uint64_t) { static_cast<Connection *>(data)->m_observer.update(); }, &owner);

    tickTimer = pw_loop_add_timer(
        loop(), [](void *data, std::uint64_t) { static_cast<Connection *>(data)->m_observer.tick(); }, &owner);

    coreEvents.version = PW_VERSION_CORE_EVENTS;
    coreEvents.done = [](void *data, std::uint32_t id, int sequence) {
        if (id == PW_ID_CORE)
            static_cast<Connection *>(data)->answered(sequence);
    };
    coreEvents.error = [](void *data, std::uint32_t id, int, int result, const char *message) {
        static_cast<Connection *>(data)->failed(id, result, message != nullptr ? message : "");
    };
}

Connection::Loop::~Loop()
{
    pw_thread_loop_stop(thread.get());
    for (spa_source *source : {connectTimer, answerTimer, updateEvent, tickTimer})
        pw_loop_destroy_source(loop(), source);
    context.reset();
}

void Connection::Loop::arm(spa_source *timer, std::chrono::nanoseconds delay) const
{
    timespec when = toTimespec(delay);
    pw_loop_update_timer(loop(), timer, &when, nullptr, false);
}

Connection::Lock::Lock(const Connection &connection) : m_loop(connection.m_loop->thread.get())
{
    pw_thread_loop_lock(m_loop);
}

Connection::Lock::~Lock()
{
    pw_thread_loop_unlock(m_loop);
}

Connection::Connection(Observer &observer)
    : m_observer(observer),
      m_loop(std::make_unique<Loop>(*this)),
      m_roundTrips([this] { return m_core ? pw_core_sync(m_core.get(), PW_ID_CORE, 0) : 0; })
{
}

Connection::~Connection()
{
    close();
}

void Connection::open()
{
    m_loop->arm(m_loop->connectTimer, std::chrono::nanoseconds(1));
    pw_thread_loop_start(m_loop->thread.get());
}

void Connection::close()
{
    pw_thread_loop_stop(m_loop->thread.get());
    disconnect();
    m_loop->context.reset();
}

void Connection::connect()
{
    disconnect();
    if (!m_loop->context)
        makeContext();
    if (m_loop->context) {
        m_core.reset(
            pw_context_connect(m_loop->context.get(),
                               pw_properties_new(PW_KEY_APP_NAME, "Tolvenary", PW_KEY_APP_ID, "com.tolvenary.app",
                                                 PW_KEY_APP_ICON_NAME, "com.tolvenary.app", nullptr),
                               0));
    }
    m_isTrying = false;
    if (!m_core) {
        m_loop->arm(m_loop->connectTimer, retryTime);
        finishRoundTrips(false);
        return;
    }
    m_responsive = true;
    m_connectedAt = std::chrono::steady_clock::now();
    m_coreHook = makeHook();
    pw_core_add_listener(m_core.get(), m_coreHook.get(), &m_loop->coreEvents, this);
    m_observer.connected(m_core.get());
    m_roundTrips.askAgain();
    wake();
}

/// The library asks the desktop for real-time rights here, and if nobody answers it waits for most of a minute: on this
/// thread, and so without the lock. This thread's timers stand still meanwhile, so another thread watches the clock.
void Connection::makeContext()
{
    PwHandle<pw_context> made;
    pw_thread_loop_unlock(m_loop->thread.get());
    {
        const std::jthread impatient([this](const std::stop_token &isMade) {
            std::mutex mutex;
            std::unique_lock lock(mutex);
            std::condition_variable_any clock;
            clock.wait_for(lock, isMade, answerTime, [] { return false; });
            if (isMade.stop_requested())
                return;
            const Lock control(*this);
            m_isTrying = false;
            finishRoundTrips(false);
        });
        made.reset(pw_context_new(m_loop->loop(), contextProperties(), 0));
        // Without it the server's profiler could not be asked who has not finished a cycle.
        if (made)
            pw_context_load_module(made.get(), PW_EXTENSION_MODULE_PROFILER, nullptr, nullptr);
    }
    pw_thread_loop_lock(m_loop->thread.get());
    m_loop->context = std::move(made);
}

void Connection::disconnect()
{
    if (!m_core)
        return;
    m_observer.disconnecting();
    m_coreHook.reset();
    m_core.reset();
    finishRoundTrips(false);
}

void Connection::failed(std::uint32_t id, int result, std::string_view message)
{
    // The library has given up the socket, for whatever reason: reset, out of descriptors, not understood.
    const bool isBroken = result == -EPIPE || message == "connection error";
    if (id == PW_ID_CORE && isBroken)
        lost();
    else if (result == -EACCES)
        denied();
}

void Connection::lost()
{
    // The core is in the middle of telling us, so it is replaced when it has finished. A connection that breaks at once
    // each time must not keep this thread and the server busy.
    const bool wasBrief = std::chrono::steady_clock::now() - m_connectedAt < retryTime;
    m_responsive = false;
    m_loop->arm(m_loop->connectTimer, wasBrief ? retryTime : std::chrono::nanoseconds(1));
    wake();
}

void Connection::denied()
{
    m_observer.accessDenied();
    // The refusal is an answer, too, and the only one that a client without any right will get.
    finishRoundTrips(true);
}

OSStatus Connection::waitUntil(FunctionRef<bool()> condition, std::chrono::nanoseconds recheck)
{
    const OSStatus status = waitForOthers(condition, recheck);
    if (status == -ETIMEDOUT && m_responsive) {
        m_responsive = false;
        roundTrip([](bool) {});
    }
    return status;
}

OSStatus Connection::waitForOthers(FunctionRef<bool()> condition, std::chrono::nanoseconds recheck)
{
    const auto deadline = std::chrono::steady_clock::now() + answerTime;
    while (!condition()) {
        if (!m_core)
            return -ENOTCONN;
        if (!m_responsive)
            return -ETIMEDOUT;
        const auto now = std::chrono::steady_clock::now();
        if (now >= deadline)
            return -ETIMEDOUT;
        timespec until{};
        const auto pause = std::min<std::chrono::nanoseconds>(recheck, deadline - now);
        pw_thread_loop_get_time(m_loop->thread.get(), &until, pause.count());
        pw_thread_loop_timed_wait_full(m_loop->thread.get(), &until);
    }
    return noErr;
}

void Connection::wake()
{
    pw_thread_loop_signal(m_loop->thread.get(), false);
}

void Connection::scheduleUpdate()
{
    pw_loop_signal_event(m_loop->loop(), m_loop->updateEvent);
}

void Connection::setTicking(bool ticking)
{
    timespec interval = toTimespec(ticking ? tickTime : std::chrono::milliseconds(0));
    pw_loop_update_timer(m_loop->loop(), m_loop->tickTimer, &interval, &interval, false);
}

void Connection::roundTrip(std::function<void(bool answered)> done)
{
    if (!m_core && !m_isTrying) {
        done(false);
        return;
    }
    const auto deadline = std::chrono::steady_clock::now() + answerTime;
    // Runs for the one that was asked first: asking again and again must not put off its end.
    if (m_roundTrips.isEmpty())
        m_loop->arm(m_loop->answerTimer, answerTime);
    m_roundTrips.begin(deadline, std::move(done));
}

void Connection::answered(int sequence)
{
    m_responsive = true;
    m_roundTrips.answered(sequence);
    wake();
}

void Connection::roundTripsTimedOut()
{
    const auto now = std::chrono::steady_clock::now();
    if (m_roundTrips.isAnyLate(now))
        m_responsive = false;
    m_roundTrips.failLate(now);
    wake();
    if (!m_roundTrips.isEmpty())
        m_loop->arm(m_loop->answerTimer, m_roundTrips.firstDeadline() - now);
}

void Connection::finishRoundTrips(bool answered)
{
    m_roundTrips.finishAll(answered);
    wake();
}

} // namespace tolvenary

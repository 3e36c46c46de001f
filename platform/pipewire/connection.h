#pragma once

#include "platform/function_ref.h"
#include "platform/os_status.h"
#include "platform/pipewire/pw_handles.h"
#include "platform/pipewire/round_trips.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace tolvenary
{

/// Our connection to the sound server, made and remade on a thread of its own (the control thread), so that nobody ever
/// waits for a connect. All PipeWire calls and all state behind them belong to whoever holds the control lock; the
/// control thread holds it while it calls back.
class Connection
{
  public:
    /// Called on the control thread.
    class Observer
    {
      public:
        virtual ~Observer() = default;
        virtual void connected(pw_core *core) = 0;
        /// The core is about to go: everything made through it must be released now.
        virtual void disconnecting() = 0;
        /// The server refuses what we ask ("access denied").
        virtual void accessDenied() = 0;
        /// Some change asked for by scheduleUpdate().
        virtual void update() = 0;
        /// Time has passed, see setTicking().
        virtual void tick() = 0;
    };

    explicit Connection(Observer &observer);
    ~Connection();

    /// Begins to connect; the observer must be ready to be called. Returns at once.
    void open();
    /// Ends the control thread; the observer's disconnecting() is called if there was a connection. If that thread
    /// still waits for the desktop, see makeContext(), this takes up to a minute.
    void close();

    /// Holds the control lock as long as it lives.
    class Lock
    {
      public:
        explicit Lock(const Connection &connection);
        ~Lock();
        Lock(const Lock &) = delete;
        Lock &operator=(const Lock &) = delete;

      private:
        pw_thread_loop *m_loop;
    };

    // All of these: under the control lock.

    pw_core *core() const { return m_core.get(); }

    /// Waits, releasing the lock meanwhile, until `condition` holds (it is evaluated under the lock whenever something
    /// happens). Gives -ENOTCONN without a server. Gives -ETIMEDOUT after a second in vain; from then on the server
    /// counts as not answering, and this gives -ETIMEDOUT at once. `recheck` is how often to look, for conditions that
    /// change without a wake(). Never call it on the control thread.
    OSStatus waitUntil(FunctionRef<bool()> condition, std::chrono::nanoseconds recheck = std::chrono::seconds(1));

    /// The same for what is up to others: if it does not happen, that says nothing about the server.
    OSStatus waitForOthers(FunctionRef<bool()> condition, std::chrono::nanoseconds recheck);

    /// Wakes the waiting thread to evaluate its condition again.
    void wake();

    /// Calls the observer's update() soon, once for any number of calls.
    void scheduleUpdate();

    /// Whether the observer's tick() is called, every 50 ms.
    void setTicking(bool ticking);

    /// Asks for a round trip; `done` is called on the control thread with true when the server has answered twice (so
    /// that what it tells in answer to our binding of its objects is known, too), with false if it has not within a
    /// second or there is no server.
    void roundTrip(std::function<void(bool answered)> done);

    /// Whether a round trip is under way.
    bool isAsking() const { return !m_roundTrips.isEmpty(); }

    bool isResponsive() const { return m_core != nullptr && m_responsive; }

  private:
    struct Loop;
    friend struct Loop;

    void connect();
    void makeContext();
    void disconnect();
    void failed(std::uint32_t id, int result, std::string_view message);
    void lost();
    void answered(int sequence);
    void denied();
    void roundTripsTimedOut();
    void finishRoundTrips(bool answered);

    Observer &m_observer;
    std::unique_ptr<Loop> m_loop;
    PwHandle<pw_core> m_core;
    PwHandle<spa_hook> m_coreHook;
    std::chrono::steady_clock::time_point m_connectedAt;
    bool m_responsive = true;
    bool m_isTrying = true; ///< the first attempt is still to come
    RoundTrips m_roundTrips;
};

} // namespace tolvenary

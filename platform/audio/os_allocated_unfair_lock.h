#pragma once

#include <memory>
#include <utility>

namespace tolvenary
{

/// A mutex whose holder inherits the priority of whoever waits for it, so that a real-time thread never waits for a
/// sleeping main thread. Satisfies Lockable.
class UnfairMutex
{
  public:
    UnfairMutex();
    ~UnfairMutex();
    UnfairMutex(const UnfairMutex &) = delete;
    UnfairMutex &operator=(const UnfairMutex &) = delete;

    void lock();
    void unlock();

  private:
    struct Native;
    std::unique_ptr<Native> m_native;
};

/// State that can only be touched under its lock. Thread: any, real-time ones too; keep the closures to a few
/// instructions.
template <typename State> class OSAllocatedUnfairLock
{
  public:
    explicit OSAllocatedUnfairLock(State initialState = {}) : m_state(std::move(initialState)) {}

    template <typename F> auto withLock(F &&body)
    {
        const Guard guard(m_mutex);
        return std::forward<F>(body)(m_state);
    }

  private:
    struct Guard {
        explicit Guard(UnfairMutex &mutex) : m_mutex(mutex) { m_mutex.lock(); }
        ~Guard() { m_mutex.unlock(); }
        Guard(const Guard &) = delete;
        Guard &operator=(const Guard &) = delete;
        UnfairMutex &m_mutex;
    };

    UnfairMutex m_mutex;
    State m_state;
};

} // namespace tolvenary

#pragma once

#include <atomic>
#include <thread>

namespace tolvenary
{

/// Lets a real-time thread into a callback only while the gate is open, and tells when it has left for good. The
/// real-time side never waits; the control side waits at most for the callback that is running.
class CallbackGate
{
  public:
    /// Control side.
    void open() { m_open.store(true); }

    /// Control side. When this has returned, nobody is inside and nobody will enter until open().
    void close()
    {
        m_open.store(false);
        while (m_inside.load())
            std::this_thread::yield();
    }

    /// real-time: calls `body` if the gate is open. One thread at a time.
    template <typename Body> bool pass(Body &&body)
    {
        m_inside.store(true); // before the look at m_open: either we see it closed or close() sees us
        const bool isOpen = m_open.load();
        if (isOpen)
            std::forward<Body>(body)();
        m_inside.store(false);
        return isOpen;
    }

  private:
    std::atomic<bool> m_open = false;
    std::atomic<bool> m_inside = false;
};

} // namespace tolvenary

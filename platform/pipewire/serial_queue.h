#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace tolvenary
{

/// A thread that runs what it is given, one after the other, and has a look at something in between.
class SerialQueue
{
  public:
    /// Returns how long to wait until the next look; with none, the next one is after the next task.
    using Look = std::function<std::optional<std::chrono::nanoseconds>()>;

    explicit SerialQueue(Look look);
    /// Runs what it has been given, then ends. Not to be called on the queue itself.
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    /// Returns at once. Thread: any but a real-time one.
    void async(std::function<void()> task);

  private:
    void run();
    void runTasks(std::unique_lock<std::mutex> &lock);

    const Look m_look;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_tasks;
    bool m_isEnding = false;
    std::thread m_thread; // declared last: it uses all of the above
};

} // namespace tolvenary

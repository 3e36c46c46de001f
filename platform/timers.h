#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tolvenary
{

/// A scheduled timer of the main run loop; destroying it invalidates it.
class Timer
{
  public:
    virtual ~Timer() = default;

    /// The block is not called any more. Safe to call twice.
    virtual void invalidate() = 0;
};

/// Time as the program meets it. Thread: main.
class Timers
{
  public:
    using Duration = std::chrono::duration<double>;

    virtual ~Timers() = default;

    /// The current instant on a clock that never steps back; only differences mean anything.
    virtual Duration now() = 0;

    /// Calls `block` on the main run loop every `interval`, the first time one interval from now.
    virtual std::unique_ptr<Timer> scheduledTimerWithTimeInterval(Duration interval, bool repeats,
                                                                  std::function<void()> block) = 0;
};

} // namespace tolvenary

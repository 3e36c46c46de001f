#pragma once

#include "platform/fake/fake_calls.h"
#include "platform/timers.h"

#include <vector>

namespace tolvenary
{

/// Time that stands still until it is told to go on. A timer that is invalidated, or destroyed, is noted as
/// "invalidate"; one that has been already is not.
class FakeTimers final : public Timers
{
  public:
    explicit FakeTimers(FakeCalls &calls) : m_calls(calls) {}

    Duration now() override { return m_now; }
    std::unique_ptr<Timer> scheduledTimerWithTimeInterval(Duration interval, bool repeats,
                                                          std::function<void()> block) override;

    /// Lets time pass and fires each timer at its moment, in the order of their moments.
    void advance(Duration duration);

    /// Timers that will still fire.
    std::size_t scheduled() const;

  private:
    struct Schedule;
    class ScheduledTimer;
    std::shared_ptr<Schedule> nextUntil(Duration end) const;

    FakeCalls &m_calls;
    Duration m_now{1000.0}; // not 0, so that a forgotten start instant shows
    std::vector<std::shared_ptr<Schedule>> m_schedules;
};

} // namespace tolvenary

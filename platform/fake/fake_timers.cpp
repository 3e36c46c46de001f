#include "platform/fake/fake_timers.h"

#include <algorithm>
#include <utility>

namespace tolvenary
{

struct FakeTimers::Schedule {
    Duration next;
    Duration interval;
    bool repeats = false;
    std::function<void()> block;
    bool valid = true;
};

class FakeTimers::ScheduledTimer final : public Timer
{
  public:
    ScheduledTimer(FakeCalls &calls, std::shared_ptr<Schedule> schedule)
        : m_calls(calls), m_schedule(std::move(schedule))
    {
    }
    ~ScheduledTimer() override { end(); }
    void invalidate() override { end(); }

  private:
    void end()
    {
        if (std::exchange(m_schedule->valid, false))
            m_calls.note("invalidate");
    }

    FakeCalls &m_calls;
    std::shared_ptr<Schedule> m_schedule;
};

std::unique_ptr<Timer> FakeTimers::scheduledTimerWithTimeInterval(Duration interval, bool repeats,
                                                                  std::function<void()> block)
{
    m_calls.note("scheduledTimerWithTimeInterval");
    auto schedule = std::make_shared<Schedule>(Schedule{m_now + interval, interval, repeats, std::move(block), true});
    m_schedules.push_back(schedule);
    return std::make_unique<ScheduledTimer>(m_calls, std::move(schedule));
}

void FakeTimers::advance(Duration duration)
{
    const Duration end = m_now + duration;
    while (const auto due = nextUntil(end)) {
        m_now = due->next;
        due->next += due->interval;
        due->valid = due->repeats;
        due->block();
    }
    m_now = end;
    std::erase_if(m_schedules, [](const auto &schedule) { return !schedule->valid; });
}

std::size_t FakeTimers::scheduled() const
{
    return static_cast<std::size_t>(
        std::count_if(m_schedules.begin(), m_schedules.end(), [](const auto &schedule) { return schedule->valid; }));
}

std::shared_ptr<FakeTimers::Schedule> FakeTimers::nextUntil(Duration end) const
{
    std::shared_ptr<Schedule> next;
    for (const auto &schedule : m_schedules) {
        if (schedule->valid && schedule->next <= end && (next == nullptr || schedule->next < next->next))
            next = schedule;
    }
    return next;
}

} // namespace tolvenary

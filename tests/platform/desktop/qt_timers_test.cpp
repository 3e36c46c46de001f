#include "platform/desktop/qt_timers.h"
#include "tests/platform/desktop/event_loop.h"

namespace tolvenary
{

namespace
{

using namespace std::chrono_literals;

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);

class QtTimersTest : public testing::Test
{
  protected:
    /// Serves the event loop for a time by the timers' own measure.
    bool pass(Timers::Duration time)
    {
        bool over = false;
        const auto end = timers.scheduledTimerWithTimeInterval(time, false, [&] { over = true; });
        return spinUntil([&] { return over; });
    }

    QtTimers timers;
    int fired = 0;
};

TEST_F(QtTimersTest, theFirstCallComesOneIntervalFromNow)
{
    const auto start = timers.now();
    const auto timer = timers.scheduledTimerWithTimeInterval(50ms, true, [&] { ++fired; });
    ASSERT_TRUE(spinUntil([&] { return fired > 0; }));
    // The event loop counts in whole milliseconds.
    EXPECT_GE((timers.now() - start).count(), 0.049);
}

TEST_F(QtTimersTest, aRepeatingTimerGoesOn)
{
    const auto start = timers.now();
    const auto timer = timers.scheduledTimerWithTimeInterval(10ms, true, [&] { ++fired; });
    ASSERT_TRUE(spinUntil([&] { return fired >= 5; }));
    EXPECT_GE((timers.now() - start).count(), 0.049);
}

TEST_F(QtTimersTest, aTimerThatDoesNotRepeatFiresOnce)
{
    const auto timer = timers.scheduledTimerWithTimeInterval(1ms, false, [&] { ++fired; });
    ASSERT_TRUE(pass(50ms));
    EXPECT_EQ(fired, 1);
}

TEST_F(QtTimersTest, anInvalidatedTimerIsSilent)
{
    const auto timer = timers.scheduledTimerWithTimeInterval(1ms, true, [&] { ++fired; });
    timer->invalidate();
    timer->invalidate();
    ASSERT_TRUE(pass(50ms));
    EXPECT_EQ(fired, 0);
}

TEST_F(QtTimersTest, aDestroyedTimerIsSilent)
{
    timers.scheduledTimerWithTimeInterval(1ms, true, [&] { ++fired; }).reset();
    ASSERT_TRUE(pass(50ms));
    EXPECT_EQ(fired, 0);
}

TEST_F(QtTimersTest, aTimerMayBeDestroyedInItsOwnBlock)
{
    std::unique_ptr<Timer> timer;
    const auto captured = std::make_shared<int>(7);
    timer = timers.scheduledTimerWithTimeInterval(1ms, true, [&timer, this, captured] {
        timer.reset();
        fired += *captured; // the block must still be there
    });
    ASSERT_TRUE(spinUntil([&] { return fired != 0; }));
    ASSERT_TRUE(pass(50ms));
    EXPECT_EQ(fired, 7);
    EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(QtTimersTest, theClockIsTheOneThatNobodySets)
{
    const auto before = std::chrono::steady_clock::now().time_since_epoch();
    const auto now = timers.now();
    EXPECT_GE(now, Timers::Duration(before));
    EXPECT_LE(now, Timers::Duration(std::chrono::steady_clock::now().time_since_epoch()));
}

TEST_F(QtTimersTest, theClockNeverStepsBack)
{
    auto last = timers.now();
    for (int i = 0; i < 1000; ++i) {
        const auto next = timers.now();
        ASSERT_GE(next, last);
        last = next;
    }
}

} // namespace

} // namespace tolvenary

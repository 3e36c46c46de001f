#include "platform/audio/delay_guard.h"

#include <gtest/gtest.h>

#include <vector>

using tolvenary::DelayGuard;

namespace
{

std::vector<std::uint32_t> observeAll(DelayGuard &guard, const std::vector<std::uint32_t> &queued)
{
    std::vector<std::uint32_t> answers;
    answers.reserve(queued.size());
    for (const std::uint32_t frames : queued)
        answers.push_back(guard.observe(frames));
    return answers;
}

using Frames = std::vector<std::uint32_t>;

} // namespace

TEST(DelayGuard, framesThatStayForEightRendersAreDelay)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, {64, 64, 64, 64, 64, 64, 64, 64}), (Frames{0, 0, 0, 0, 0, 0, 0, 64}));
}

TEST(DelayGuard, whatIsPlayedEveryNowAndThenIsNotDelay)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, {64, 64, 64, 0, 64, 64, 64, 64, 64, 64}), (Frames(10, 0)));
}

TEST(DelayGuard, onlyTheLeastThatWasAlwaysThereIsDelay)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, {192, 128, 192, 128, 192, 64, 192, 128}).back(), 64U);
}

TEST(DelayGuard, anEarlierEmptyQueueIsForgottenAfterTheWindow)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, {0, 5, 5, 5, 5, 5, 5, 5, 5}), (Frames{0, 0, 0, 0, 0, 0, 0, 0, 5}));
}

TEST(DelayGuard, twiceTheCushionIsToleratedAndTheCushionIsLeft)
{
    DelayGuard guard;
    guard.setCushion(4);
    EXPECT_EQ(observeAll(guard, Frames(20, 8)), Frames(20, 0));
    guard.setCushion(4);
    EXPECT_EQ(observeAll(guard, Frames(8, 9)).back(), 5U);
}

TEST(DelayGuard, afterANewCushionAWholeWindowIsWatchedAgain)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, Frames(7, 9)), Frames(7, 0));
    guard.setCushion(4);
    EXPECT_EQ(observeAll(guard, Frames(7, 9)), Frames(7, 0));
    EXPECT_EQ(guard.observe(9), 5U);
}

TEST(DelayGuard, afterARestartAWholeWindowIsWatchedAgain)
{
    DelayGuard guard;
    EXPECT_EQ(observeAll(guard, Frames(8, 3)).back(), 3U);
    guard.restart();
    EXPECT_EQ(observeAll(guard, Frames(7, 3)), Frames(7, 0));
    EXPECT_EQ(guard.observe(3), 3U);
}

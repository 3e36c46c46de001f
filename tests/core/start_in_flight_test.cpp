#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;

namespace
{

/// A start that hangs where the user is asked for the microphone.
class StartInFlightTest : public CoordinatorTest
{
  protected:
    void SetUp() override
    {
        pickAll();
        m_platform.captureDevice().status.set(AVAuthorizationStatus::notDetermined);
        m_platform.captureDevice().granted.holdBack();
        start();
        ASSERT_EQ(waiting(), 1U);
    }

    std::size_t waiting() { return m_platform.captureDevice().granted.waiting(); }
    void answer()
    {
        std::thread([this] { m_platform.captureDevice().granted.deliver(); }).join();
        processEvents();
    }
};

} // namespace

TEST_F(StartInFlightTest, aSecondPressReturnsAndLeavesTheFirstToFinish)
{
    const QCoro::Task<void> second = coordinator().start();
    EXPECT_TRUE(second.isReady());
    EXPECT_EQ(waiting(), 1U) << "the user is asked once";
    EXPECT_EQ(status(), "Idle");
    answer();
    ASSERT_TRUE(coordinator().isRunning());
    EXPECT_EQ(calls().count("makeOutputUnit"), 1);
    EXPECT_EQ(calls().count("AudioHardwareCreateProcessTap"), 1);
    EXPECT_EQ(m_platform.timers().scheduled(), 1U);

    inputCycle(0.25F, 64);
    tapCycle(0.5F, 64);
    EXPECT_THAT(outputCycle(64), Each(0.75F));
    coordinator().teardown();
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(StartInFlightTest, theCountsOfTheLastRunAreGoneBeforeTheUserIsAsked)
{
    answer();
    inputCycle(0.1F, 10);
    tapCycle(0.1F, 20);
    passTicks(1);
    ASSERT_EQ(coordinator().micFrames(), 10U);
    ASSERT_EQ(coordinator().appFrames(), 20U);
    coordinator().teardown();
    start();
    ASSERT_EQ(waiting(), 1U);
    EXPECT_EQ(coordinator().micFrames(), 0U);
    EXPECT_EQ(coordinator().appFrames(), 0U);
    answer(); // each question has its answer
    EXPECT_TRUE(coordinator().isRunning());
}

TEST_F(StartInFlightTest, aTeardownEndsItQuietly)
{
    coordinator().teardown();
    coordinator().setStatus(QStringLiteral("Stopped"));
    answer();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(status(), "Stopped");
    EXPECT_EQ(calls().count("makeOutputUnit"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(StartInFlightTest, aTeardownEndsItQuietlyAlsoWhenTheUserRefuses)
{
    m_platform.captureDevice().granted.set(false);
    coordinator().teardown();
    coordinator().setStatus(QStringLiteral("Stopped"));
    answer();
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(StartInFlightTest, aStartAfterATeardownIsTheOneThatCounts)
{
    coordinator().teardown();
    start();
    ASSERT_EQ(waiting(), 2U);
    answer(); // both, the overtaken one first
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(calls().count("makeOutputUnit"), 1);
    EXPECT_EQ(calls().count("AudioHardwareCreateProcessTap"), 1);
    EXPECT_EQ(m_platform.timers().scheduled(), 1U);
}

TEST_F(StartInFlightTest, theCoordinatorMayBeDestroyedMeanwhile)
{
    m_coordinator.reset();
    answer();
    EXPECT_EQ(calls().count("makeOutputUnit"), 0);
    EXPECT_EQ(calls().count("CGPreflightScreenCaptureAccess"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(StartInFlightTest, aPickThatChangesMeanwhileDoesNotSplitTheStart)
{
    addDevice(otherBlackHole, "BlackHole 16ch");
    coordinator().setSelectedBlackHole(BlackHoleDevice{otherBlackHole, "BlackHole 16ch", ""});
    coordinator().setSelectedAppID(std::nullopt);
    answer();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(status(), "Running. In Discord, set Input to BlackHole 2ch.");
}

namespace
{

class StartThatSettlesTest : public CoordinatorTest
{
  protected:
    void SetUp() override
    {
        pickAll();
        m_platform.audioServer().answered.holdBack();
        start();
    }
};

} // namespace

TEST_F(StartThatSettlesTest, theCoordinatorMayBeDestroyedWhileTheServerIsAskedToo)
{
    m_coordinator.reset();
    m_platform.audioServer().answered.deliver();
    processEvents();
    EXPECT_EQ(calls().count("authorizationStatusForMediaType"), 0);
}

TEST_F(StartThatSettlesTest, aTeardownEndsItQuietlyThereToo)
{
    coordinator().teardown();
    m_platform.audioServer().answered.deliver();
    processEvents();
    EXPECT_EQ(calls().count("authorizationStatusForMediaType"), 0);
    EXPECT_FALSE(coordinator().isRunning());
}

TEST_F(StartThatSettlesTest, theCoordinatorMayBeDestroyedWhileTheMicrophonesStatusIsRead)
{
    m_platform.captureDevice().status.holdBack();
    m_platform.audioServer().answered.deliver();
    ASSERT_TRUE(waitUntil([this] { return m_platform.captureDevice().status.waiting() == 1; }));
    m_coordinator.reset();
    m_platform.captureDevice().status.set(AVAuthorizationStatus::denied);
    m_platform.captureDevice().status.deliver();
    processEvents();
    EXPECT_EQ(calls().count("CGPreflightScreenCaptureAccess"), 0);
}

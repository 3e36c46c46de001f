#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;

namespace
{

class TeardownTest : public CoordinatorTest
{
};

} // namespace

TEST_F(TeardownTest, sourcesAreReleasedBeforeTheOutputAndEachInReverse)
{
    pickAllAndStart();
    calls().clearLog();
    coordinator().teardown();
    EXPECT_THAT(calls().log(),
                ElementsAre("AudioDeviceStop", "AudioDeviceDestroyIOProcID", "AudioHardwareDestroyAggregateDevice",
                            "AudioHardwareDestroyProcessTap", "AudioOutputUnitStop input", "~AudioInputUnit",
                            "AudioOutputUnitStop output", "~AudioOutputUnit"));
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(TeardownTest, statusCountsGainsAndPicksStay)
{
    pickAllAndStart();
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(1.5F);
    inputCycle(0.1F, 10);
    tapCycle(0.1F, 20);
    passTicks(1);
    const std::string before = status();
    coordinator().teardown();
    EXPECT_EQ(status(), before);
    EXPECT_EQ(coordinator().micFrames(), 10U);
    EXPECT_EQ(coordinator().appFrames(), 20U);
    EXPECT_EQ(coordinator().micGain(), 0.5F);
    EXPECT_EQ(coordinator().appGain(), 1.5F);
    EXPECT_EQ(coordinator().selectedAppID(), music);
    EXPECT_TRUE(coordinator().selectedBlackHole());
}

TEST_F(TeardownTest, onACoordinatorThatNeverRanNothingHappens)
{
    coordinator().teardown();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(status(), "Idle");
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(TeardownTest, aSecondOneFindsNothingLeft)
{
    pickAllAndStart();
    coordinator().teardown();
    calls().clearLog();
    coordinator().teardown();
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(TeardownTest, gainsCanBeSetAfterwards)
{
    pickAllAndStart();
    coordinator().teardown();
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(0.5F);
    EXPECT_EQ(coordinator().micGain(), 0.5F);
}

TEST_F(TeardownTest, theDestructorReleasesARunningMixInTheSameOrder)
{
    pickAllAndStart();
    inputCycle(0.1F, 10); // still in the player
    calls().clearLog();
    m_coordinator.reset();
    EXPECT_THAT(calls().log(),
                ElementsAre("AudioDeviceStop", "AudioDeviceDestroyIOProcID", "AudioHardwareDestroyAggregateDevice",
                            "AudioHardwareDestroyProcessTap", "AudioOutputUnitStop input", "~AudioInputUnit",
                            "AudioOutputUnitStop output", "~AudioOutputUnit"));
    EXPECT_FALSE(m_platform.holdsAnything());
}

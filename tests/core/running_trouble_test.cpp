#include "tests/core/coordinator_fixture.h"

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

const std::string runningLine = "Running → BlackHole 2ch  mic:480  app:480 frames";

class RunningTrouble : public CoordinatorTest
{
  protected:
    void SetUp() override
    {
        pickAllAndStart();
        inputCycle(0.1F, 480);
        tapCycle(0.1F, 480);
        passTicks(1);
        ASSERT_EQ(status(), runningLine);
    }
};

} // namespace

TEST_F(RunningTrouble, aServerThatHangsIsNamedUntilItAnswers)
{
    m_platform.audioServer().current = AudioServerState::hangs;
    passTicks(100);
    EXPECT_EQ(status(), "The sound server does not answer.");
    EXPECT_TRUE(coordinator().isRunning());
    m_platform.audioServer().current = AudioServerState::answers;
    passTicks(1);
    EXPECT_EQ(status(), runningLine);
}

TEST_F(RunningTrouble, aServerThatIsBackWithinFiveSecondsWasOnlyAway)
{
    m_platform.audioServer().current = AudioServerState::gone;
    passTicks(10);
    EXPECT_EQ(status(), "The sound server went away. Waiting for it to come back.");
    EXPECT_TRUE(coordinator().isRunning());
    m_platform.audioServer().current = AudioServerState::answers;
    passTicks(1);
    EXPECT_EQ(status(), runningLine);
    m_platform.audioServer().current = AudioServerState::gone;
    passTicks(10);
    EXPECT_TRUE(coordinator().isRunning()) << "each time counts by itself";
}

TEST_F(RunningTrouble, aServerThatStaysAwayEndsTheRun)
{
    m_platform.audioServer().current = AudioServerState::gone;
    passTicks(11);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(m_platform.timers().scheduled(), 0U);
    EXPECT_EQ(status(), "The sound server went away. Press Start again once it is back.");
    m_platform.audioServer().current = AudioServerState::answers;
    passTicks(5);
    EXPECT_EQ(status(), "The sound server went away. Press Start again once it is back.");
    start();
    EXPECT_EQ(status(), "Running. In Discord, set Input to BlackHole 2ch.");
}

TEST_F(RunningTrouble, aNewRunWaitsItsOwnFiveSeconds)
{
    m_platform.audioServer().current = AudioServerState::gone;
    passTicks(2);
    coordinator().teardown();
    passTicks(20);
    start();
    passTicks(10);
    EXPECT_EQ(status(), "The sound server went away. Waiting for it to come back.");
    EXPECT_TRUE(coordinator().isRunning());
    passTicks(1);
    EXPECT_FALSE(coordinator().isRunning());
}

TEST_F(RunningTrouble, aDeviceThatIsAwayIsNotFoundUntilItIsBack)
{
    m_platform.audioUnits().readsBack = kAudioObjectUnknown;
    passTicks(20);
    EXPECT_EQ(status(), "BlackHole device not found.");
    EXPECT_TRUE(coordinator().isRunning());
    m_platform.audioUnits().readsBack.reset();
    passTicks(1);
    EXPECT_EQ(status(), runningLine);
}

TEST_F(RunningTrouble, aMicrophoneThatIsAwayIsMissedUntilThereIsOne)
{
    m_platform.audioUnits().inputFormat = {};
    passTicks(20);
    EXPECT_EQ(status(), "No microphone input available. Set the system default input to your mic.");
    EXPECT_TRUE(coordinator().isRunning());
    m_platform.audioUnits().inputFormat = {44100, 1};
    passTicks(1);
    EXPECT_EQ(status(), runningLine);
}

TEST_F(RunningTrouble, theCountsGoOnMeanwhile)
{
    m_platform.audioUnits().readsBack = kAudioObjectUnknown;
    inputCycle(0.1F, 20);
    passTicks(1);
    EXPECT_EQ(status(), "BlackHole device not found.");
    EXPECT_EQ(coordinator().micFrames(), 500U);
}

TEST_F(RunningTrouble, ofSeveralTheOneThatExplainsTheOthersIsNamed)
{
    m_platform.audioUnits().inputFormat = {};
    m_platform.audioUnits().readsBack = kAudioObjectUnknown;
    passTicks(1);
    EXPECT_EQ(status(), "BlackHole device not found.");
    m_platform.audioServer().current = AudioServerState::hangs;
    passTicks(1);
    EXPECT_EQ(status(), "The sound server does not answer.");
}

TEST_F(RunningTrouble, itIsNamedBeforeASilence)
{
    coordinator().teardown();
    start();
    m_platform.audioUnits().readsBack = kAudioObjectUnknown;
    passTicks(10);
    EXPECT_EQ(status(), "BlackHole device not found.");
    m_platform.audioUnits().readsBack.reset();
    passTicks(1);
    EXPECT_TRUE(status().starts_with("Started but no audio: ")) << status();
}

#include "tests/core/coordinator_fixture.h"

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

const std::string micSilent =
    "Mic silent. Check System Settings → Sound → Input (must be your real mic, not BlackHole).";
const std::string allSilent =
    "Started but no audio: mic=0, app=0. Check default Input device + Screen Recording permission.";
const std::string appSilent = "App silent. Source app may be muted, paused, or blocked by Screen Recording permission.";

std::string runningLine(int mic, int app)
{
    return "Running → BlackHole 2ch  mic:" + std::to_string(mic) + "  app:" + std::to_string(app) + " frames";
}

class MeterTest : public CoordinatorTest
{
  protected:
    void SetUp() override { pickAllAndStart(); }
};

} // namespace

TEST_F(MeterTest, theFirstTickComesHalfASecondAfterTheStart)
{
    const std::string running = "Running. In Discord, set Input to BlackHole 2ch.";
    m_platform.timers().advance(Timers::Duration(0.49));
    processEvents();
    EXPECT_EQ(status(), running);
    m_platform.timers().advance(Timers::Duration(0.01));
    EXPECT_EQ(status(), running) << "what a tick found is published by a task of its own";
    processEvents();
    EXPECT_EQ(status(), runningLine(0, 0));
}

TEST_F(MeterTest, countsArePublishedWithTheLine)
{
    inputCycle(0.1F, 480);
    tapCycle(0.1F, 256);
    EXPECT_EQ(coordinator().micFrames(), 0U);
    passTicks(1);
    EXPECT_EQ(coordinator().micFrames(), 480U);
    EXPECT_EQ(coordinator().appFrames(), 256U);
    EXPECT_EQ(status(), runningLine(480, 256));
}

TEST_F(MeterTest, theCountsAreThoseOfTheTickNotOfItsPublication)
{
    inputCycle(0.1F, 480);
    m_platform.timers().advance(Timers::Duration(0.5));
    inputCycle(0.1F, 20);
    processEvents();
    EXPECT_EQ(coordinator().micFrames(), 480U);
    EXPECT_EQ(status(), runningLine(480, 0));
}

TEST_F(MeterTest, theLineNamesTheDeviceOfTheStartWhateverIsPickedMeanwhile)
{
    coordinator().setSelectedBlackHole(BlackHoleDevice{otherBlackHole, "BlackHole 16ch", ""});
    passTicks(1);
    EXPECT_EQ(status(), runningLine(0, 0));
    coordinator().setSelectedBlackHole(std::nullopt);
    passTicks(1);
    EXPECT_EQ(status(), runningLine(0, 0));
}

TEST_F(MeterTest, withinTwoSecondsNobodyIsCalledSilent)
{
    passTicks(3);
    EXPECT_EQ(status(), runningLine(0, 0)) << "1.5 seconds";
    passTicks(1);
    EXPECT_EQ(status(), runningLine(0, 0)) << "exactly 2 seconds";
}

TEST_F(MeterTest, afterTwoSecondsWithoutAnySoundBothAreNamed)
{
    passTicks(5);
    EXPECT_EQ(status(), allSilent);
    EXPECT_EQ(coordinator().micFrames(), 0U);
}

TEST_F(MeterTest, afterTwoSecondsASilentApplicationIsNamed)
{
    inputCycle(0.1F, 480);
    passTicks(5);
    EXPECT_EQ(status(), appSilent);
    EXPECT_EQ(coordinator().micFrames(), 480U);
}

TEST_F(MeterTest, afterTwoSecondsASilentMicrophoneIsNamed)
{
    tapCycle(0.1F, 480);
    passTicks(5);
    EXPECT_EQ(status(), micSilent);
    EXPECT_EQ(coordinator().appFrames(), 480U);
}

TEST_F(MeterTest, aSourceThatBeginsLateBringsTheRunningLineBack)
{
    tapCycle(0.1F, 480);
    passTicks(6);
    ASSERT_EQ(status(), micSilent);
    inputCycle(0.1F, 64);
    passTicks(1);
    EXPECT_EQ(status(), runningLine(64, 480));
}

TEST_F(MeterTest, aSourceThatWasHeardOnceIsNeverCalledSilentAgain)
{
    tapCycle(0.1F, 480);
    inputCycle(0.1F, 64);
    passTicks(100);
    EXPECT_EQ(status(), runningLine(64, 480));
}

TEST_F(MeterTest, aLateTickIsJudgedByTheTimeOfItsPublication)
{
    m_platform.timers().advance(Timers::Duration(2.0));
    m_platform.timers().advance(Timers::Duration(0.25));
    processEvents();
    EXPECT_EQ(status(), allSilent);
}

TEST_F(MeterTest, aNewStartMeasuresItsTwoSecondsAfresh)
{
    passTicks(5);
    coordinator().teardown();
    start();
    passTicks(4);
    EXPECT_EQ(status(), runningLine(0, 0));
    passTicks(1);
    EXPECT_EQ(status(), allSilent);
}

TEST_F(MeterTest, aNewStartCountsAfresh)
{
    inputCycle(0.1F, 480);
    tapCycle(0.1F, 480);
    passTicks(1);
    coordinator().teardown();
    EXPECT_EQ(coordinator().micFrames(), 480U) << "a stop leaves the counts";
    start();
    EXPECT_EQ(coordinator().micFrames(), 0U);
    EXPECT_EQ(coordinator().appFrames(), 0U);
    passTicks(1);
    EXPECT_EQ(status(), runningLine(0, 0));
}

TEST_F(MeterTest, afterTheStopNothingTicks)
{
    EXPECT_EQ(m_platform.timers().scheduled(), 1U);
    coordinator().teardown();
    EXPECT_EQ(m_platform.timers().scheduled(), 0U);
    coordinator().setStatus(QStringLiteral("Stopped"));
    passTicks(5);
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(MeterTest, whatATickFoundBeforeTheStopIsNotTheLastWord)
{
    m_platform.timers().advance(Timers::Duration(0.5));
    coordinator().teardown();
    coordinator().setStatus(QStringLiteral("Stopped"));
    processEvents();
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(MeterTest, aTickWhoseCoordinatorIsGoneDoesNothing)
{
    m_platform.timers().advance(Timers::Duration(0.5));
    m_coordinator.reset();
    processEvents();
    EXPECT_EQ(m_platform.timers().scheduled(), 0U);
}

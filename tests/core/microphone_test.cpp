#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;
using testing::ElementsAre;
using testing::Gt;

namespace
{

const std::string noInput = "Start failed [capture-engine]: No microphone input available. Set the system default "
                            "input to your mic. (Tolvenary 12)";

class MicrophoneTest : public CoordinatorTest
{
  protected:
    FakeAudioUnits &units() { return m_platform.audioUnits(); }
};

} // namespace

TEST_F(MicrophoneTest, aBlockIsCountedAndPlayed)
{
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 4));
    EXPECT_THAT(outputCycle(4), ElementsAre(0.25F, 0.25F, 0.25F, 0.25F));
    passTicks(1);
    EXPECT_EQ(coordinator().micFrames(), 4U);
}

TEST_F(MicrophoneTest, aMonoMicrophoneAt44100IsHeardAt48000OnBothSides)
{
    units().inputFormat = {44100, 1};
    pickAllAndStart();
    std::vector<float> played;
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(inputCycle(0.25F, 1024, 1));
        played = outputCycle(1024);
    }
    EXPECT_THAT(played, Each(testing::FloatNear(0.25F, 0.001F)));
    passTicks(1);
    EXPECT_LE(coordinator().micFrames(), 22292U); // 20 × 1024 × 48000 / 44100
    EXPECT_THAT(coordinator().micFrames(), Gt(22000U));
}

TEST_F(MicrophoneTest, withoutAnInputTheStartFailsBeforeAnythingIsTapped)
{
    for (const InputUnitFormat format :
         {InputUnitFormat{0, 0}, InputUnitFormat{0, 2}, InputUnitFormat{48000, 0}, InputUnitFormat{-1, 2}}) {
        units().inputFormat = format;
        pickAllAndStart();
        EXPECT_EQ(status(), noInput);
        EXPECT_EQ(calls().count("AudioOutputUnitStart input"), 0);
        EXPECT_FALSE(m_platform.holdsAnything());
        m_platform.objects().devices.clear();
    }
}

TEST_F(MicrophoneTest, whenTheServerWentAwayWithItNoMicrophoneIsMissed)
{
    units().inputFormat = {};
    m_platform.audioServer().current = AudioServerState::gone;
    pickAllAndStart();
    EXPECT_EQ(status(), "Start failed [capture-engine]: The sound server went away (OSStatus -107). "
                        "(NSOSStatusErrorDomain -107)");
    EXPECT_FALSE(m_platform.holdsAnything());
    m_platform.audioServer().current = AudioServerState::hangs;
    start();
    EXPECT_EQ(status(), noInput) << "one that is there may have none";
}

TEST_F(MicrophoneTest, aSystemWithoutAnInputUnitHasNoInput)
{
    units().hasInputUnit = false;
    pickAllAndStart();
    EXPECT_EQ(status(), noInput);
}

TEST_F(MicrophoneTest, anotherMicrophoneAtTheNextStartIsConvertedFromItsOwnFormat)
{
    units().inputFormat = {44100, 1};
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 64, 1));
    coordinator().teardown();
    units().inputFormat = {48000, 2};
    start();
    ASSERT_TRUE(inputCycle(0.25F, 4));
    EXPECT_THAT(outputCycle(4), ElementsAre(0.25F, 0.25F, 0.25F, 0.25F));
}

TEST_F(MicrophoneTest, anEngineThatCannotStartFailsWithItsOwnError)
{
    calls().fail("AudioOutputUnitStart input", -32);
    pickAllAndStart();
    EXPECT_TRUE(status().starts_with("Start failed [capture-engine]: ")) << status();
    EXPECT_TRUE(status().ends_with(" (NSOSStatusErrorDomain -32)")) << status();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(m_platform.holdsAnything());
    EXPECT_EQ(calls().count("AudioHardwareCreateProcessTap"), 0) << "the steps behind it do not run";
}

TEST_F(MicrophoneTest, aFormatThatCannotBeConvertedIsASilentMicrophoneNotAFailure)
{
    units().inputFormat = {44100.5, 2}; // no whole number of frames a second
    pickAllAndStart();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_TRUE(inputCycle(0.25F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.0F));
    passTicks(5);
    EXPECT_EQ(coordinator().micFrames(), 0U);
}

TEST_F(MicrophoneTest, theLongestCycleOfAGraphAtHalfTheMixesRateIsHeard)
{
    units().inputFormat = {24000, 2};
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 8192));
    passTicks(1);
    EXPECT_THAT(coordinator().micFrames(), Gt(16000U));
}

TEST_F(MicrophoneTest, aBlockTooLongForAnyBufferIsDroppedAndTheNextIsPlayed)
{
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 20000));
    ASSERT_TRUE(inputCycle(0.5F, 4));
    EXPECT_THAT(outputCycle(4), Each(0.5F));
    passTicks(1);
    EXPECT_EQ(coordinator().micFrames(), 4U);
}

TEST_F(MicrophoneTest, aCycleTheOutputMissesDoesNotSilenceTheMicrophoneForGood)
{
    pickAllAndStart();
    for (int i = 0; i < 200; ++i)
        inputCycle(0.25F, 64); // more than all buffers there are
    for (int i = 0; i < 200; ++i)
        outputCycle(64);
    ASSERT_TRUE(inputCycle(0.5F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.5F));
}

TEST_F(MicrophoneTest, withMicGain0ItIsSilentButCounted)
{
    coordinator().setMicGain(0);
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.0F));
    passTicks(1);
    EXPECT_EQ(coordinator().micFrames(), 64U);
}

#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;

namespace
{

class OutputEngineTest : public CoordinatorTest
{
  protected:
    FakeAudioUnits &units() { return m_platform.audioUnits(); }

    void expectFailure(const std::string &text)
    {
        EXPECT_EQ(status(), "Start failed [output-engine]: " + text);
        EXPECT_FALSE(coordinator().isRunning());
        EXPECT_FALSE(m_platform.holdsAnything());
        EXPECT_EQ(calls().count("makeInputUnit"), 0) << "the steps behind it do not run";
    }
};

} // namespace

TEST_F(OutputEngineTest, theSelectedDeviceIsBoundAndReadBack)
{
    addDevice(otherBlackHole);
    pickAll();
    coordinator().setSelectedBlackHole(BlackHoleDevice{blackHole, "BlackHole 2ch", "uid-60"});
    start();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(units().boundDevice(), blackHole) << "not the system's first";
    EXPECT_EQ(calls().count("AudioUnitSetProperty"), 1);
    EXPECT_EQ(calls().count("AudioUnitGetProperty"), 1);
}

TEST_F(OutputEngineTest, withoutAUnitTheStartFailsWithCode20)
{
    units().hasOutputUnit = false;
    pickAllAndStart();
    expectFailure("Output engine has no audio unit. (Tolvenary 20)");
}

TEST_F(OutputEngineTest, aDeviceThatIsRefusedGivesItsStatusAsTextAndAsCode)
{
    calls().fail("AudioUnitSetProperty", -10851);
    pickAllAndStart();
    expectFailure("Failed to bind output to BlackHole (OSStatus -10851). (NSOSStatusErrorDomain -10851)");
}

TEST_F(OutputEngineTest, aDeviceThatIsGoneIsRefused)
{
    pickAll();
    m_platform.objects().devices.clear();
    start();
    expectFailure("Failed to bind output to BlackHole (OSStatus -19). (NSOSStatusErrorDomain -19)");
}

TEST_F(OutputEngineTest, anotherDeviceReadBackFailsWithCode21)
{
    units().readsBack = 4294967295;
    pickAllAndStart();
    expectFailure("Output device did not switch (got 4294967295, wanted 60). (Tolvenary 21)");
}

TEST_F(OutputEngineTest, alsoTheDeviceAskedForIsToldWithoutASign)
{
    constexpr AudioObjectID highest = 4294967295;
    addDevice(highest);
    coordinator().refreshBlackHole();
    setApplications({{"Music", music, "music"}});
    refreshApps();
    coordinator().setSelectedAppID(music);
    units().readsBack = 60;
    start();
    expectFailure("Output device did not switch (got 60, wanted 4294967295). (Tolvenary 21)");
}

TEST_F(OutputEngineTest, aReadThatFailsIsReportedAsTheDevice0)
{
    calls().fail("AudioUnitGetProperty", -5);
    pickAllAndStart();
    expectFailure("Output device did not switch (got 0, wanted 60). (Tolvenary 21)");
}

TEST_F(OutputEngineTest, anEngineThatCannotStartFailsWithItsOwnError)
{
    calls().fail("AudioOutputUnitStart output", -11);
    pickAllAndStart();
    expectFailure("The audio engine could not start (OSStatus -11). (NSOSStatusErrorDomain -11)");
}

TEST_F(OutputEngineTest, aStartAfterAFailedOneWorks)
{
    calls().failCall("AudioOutputUnitStart output", 1, -11);
    pickAllAndStart();
    ASSERT_FALSE(coordinator().isRunning());
    start();
    EXPECT_TRUE(coordinator().isRunning());
    ASSERT_TRUE(inputCycle(0.25F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.25F));
}

TEST_F(OutputEngineTest, aSecondRunHasAGraphOfItsOwn)
{
    pickAllAndStart();
    coordinator().teardown();
    EXPECT_TRUE(outputCycle(64).empty());
    start();
    ASSERT_TRUE(inputCycle(0.25F, 64));
    ASSERT_TRUE(tapCycle(0.5F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.75F)) << "each source once: nothing of the old graph plays along";
}

TEST_F(OutputEngineTest, eachRunHasMixersOfItsOwn)
{
    EXPECT_EQ(coordinator().micMixer(), nullptr);
    EXPECT_EQ(coordinator().appMixer(), nullptr);
    pickAllAndStart();
    const auto mic = coordinator().micMixer();
    const auto app = coordinator().appMixer();
    ASSERT_TRUE(mic != nullptr && app != nullptr);
    coordinator().teardown();
    EXPECT_EQ(coordinator().micMixer(), mic) << "a stop leaves them";
    EXPECT_EQ(coordinator().appMixer(), app);
    start();
    EXPECT_NE(coordinator().micMixer(), mic);
    EXPECT_NE(coordinator().appMixer(), app);
    EXPECT_NE(coordinator().micMixer(), coordinator().appMixer());
}

TEST_F(OutputEngineTest, theIdleMixersOfTheLastRunFollowTheGains)
{
    pickAllAndStart();
    const auto mic = coordinator().micMixer();
    const auto app = coordinator().appMixer();
    coordinator().teardown();
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(1.5F);
    EXPECT_EQ(mic->outputVolume(), 0.5F);
    EXPECT_EQ(app->outputVolume(), 1.5F);
    start();
    EXPECT_EQ(coordinator().micMixer()->outputVolume(), 0.5F);
    EXPECT_EQ(coordinator().appMixer()->outputVolume(), 1.5F);
    coordinator().setMicGain(2);
    EXPECT_EQ(mic->outputVolume(), 0.5F) << "it is nobody's any more";
}

TEST_F(OutputEngineTest, aGainSetWhileStoppedHoldsForTheNextRun)
{
    pickAllAndStart();
    coordinator().teardown();
    coordinator().setMicGain(0.5F);
    start();
    ASSERT_TRUE(inputCycle(0.25F, 64));
    EXPECT_THAT(outputCycle(64), Each(0.125F));
}

TEST_F(OutputEngineTest, gainsAreNotClamped)
{
    coordinator().setMicGain(-3);
    coordinator().setAppGain(100);
    EXPECT_EQ(coordinator().micGain(), -3);
    EXPECT_EQ(coordinator().appGain(), 100);
    pickAllAndStart();
    ASSERT_TRUE(inputCycle(0.25F, 64));
    EXPECT_THAT(outputCycle(64), Each(-0.75F));
}

TEST_F(OutputEngineTest, aDeviceAtAnotherRateIsPlayedIntoAtItsRate)
{
    units().outputSampleRate = 44100;
    pickAllAndStart();
    ASSERT_TRUE(coordinator().isRunning());
    std::vector<float> played;
    for (int i = 0; i < 50; ++i) {
        inputCycle(0.25F, 480);
        played = outputCycle(441);
    }
    EXPECT_THAT(played, Each(testing::FloatNear(0.25F, 0.001F)));
}

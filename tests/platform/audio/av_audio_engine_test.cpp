#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/av_audio_sink_node.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using Floats = std::vector<float>;

class EngineTest : public testing::Test
{
  protected:
    /// Two players, a mixer each, and a sum: the shape in which the program uses an engine.
    void build()
    {
        m_engine.outputNode();
        m_engine.attachNode(m_first);
        m_engine.attachNode(m_second);
        m_firstMixer = std::make_shared<AVAudioMixerNode>();
        m_secondMixer = std::make_shared<AVAudioMixerNode>();
        m_engine.attachNode(m_firstMixer);
        m_engine.attachNode(m_secondMixer);
        auto &sum = m_engine.attachNode(std::make_shared<AVAudioMixerNode>());
        m_engine.connect(m_first, *m_firstMixer, standardFormat());
        m_engine.connect(m_second, *m_secondMixer, standardFormat());
        m_engine.connect(*m_firstMixer, sum, 0, 0, standardFormat());
        m_engine.connect(*m_secondMixer, sum, 0, 1, standardFormat());
        m_engine.connect(sum, m_engine.outputNode(), standardFormat());
        m_engine.prepare();
    }

    Floats cycle(std::uint32_t frames) const
    {
        Samples samples(frames);
        m_units.outputUnit->cycle(samples.block());
        return samples[0];
    }

    FakeUnits m_units;
    AVAudioPCMBufferPool m_pool{64, 4096};
    AVAudioPlayerNode m_first;
    AVAudioPlayerNode m_second;
    std::shared_ptr<AVAudioMixerNode> m_firstMixer;
    std::shared_ptr<AVAudioMixerNode> m_secondMixer;
    AVAudioEngine m_engine{m_units};
};

} // namespace

TEST_F(EngineTest, whatIsScheduledIsMixedAtTheGainsInTheSameCycle)
{
    build();
    m_firstMixer->setOutputVolume(0.5F);
    m_secondMixer->setOutputVolume(2);
    ASSERT_TRUE(m_engine.startAndReturnError());
    m_first.play();
    m_second.play();
    m_first.scheduleBuffer(makeBuffer(m_pool, {1, 2}), {});
    m_second.scheduleBuffer(makeBuffer(m_pool, {10, 20}), {});
    EXPECT_EQ(cycle(2), (Floats{20.5F, 41}));
}

TEST_F(EngineTest, aBranchAtGainZeroIsSilentAndStillPlayed)
{
    build();
    m_firstMixer->setOutputVolume(0);
    ASSERT_TRUE(m_engine.startAndReturnError());
    m_first.play();
    m_second.play();
    m_first.scheduleBuffer(makeBuffer(m_pool, {1, 2}), {});
    m_second.scheduleBuffer(makeBuffer(m_pool, {3, 4}), {});
    EXPECT_EQ(cycle(2), (Floats{3, 4}));
    EXPECT_EQ(m_pool.freeSlots(), 64U);
}

TEST_F(EngineTest, anEngineWhoseNodesAreNotUsedMakesNoUnit)
{
    EXPECT_TRUE(m_engine.startAndReturnError());
    m_engine.stop();
    m_engine.reset();
    EXPECT_EQ(m_units.output.made, 0);
    EXPECT_EQ(m_units.input.made, 0);
}

TEST_F(EngineTest, onlyTheNodeThatIsUsedHasAUnit)
{
    m_engine.inputNode();
    ASSERT_TRUE(m_engine.startAndReturnError());
    EXPECT_EQ(m_units.input.made, 1);
    EXPECT_EQ(m_units.output.made, 0);
}

TEST_F(EngineTest, aNodeKeepsItsUnitUntilReset)
{
    auto *const unit = m_engine.outputNode().audioUnit();
    EXPECT_EQ(m_engine.outputNode().audioUnit(), unit);
    EXPECT_EQ(m_units.output.made, 1);
    m_engine.reset();
    EXPECT_EQ(m_units.output.alive, 0);
    m_engine.outputNode();
    EXPECT_EQ(m_units.output.made, 2);
}

TEST_F(EngineTest, aFailedStartCarriesTheUnitsStatusAndLeavesItStopped)
{
    build();
    m_units.output.startStatus = -16;
    const auto result = m_engine.startAndReturnError();
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (Error{NSOSStatusErrorDomain, -16, "The audio engine could not start (OSStatus -16)."}));
    EXPECT_FALSE(m_engine.isRunning());
    m_engine.stop();
    EXPECT_EQ(m_units.output.stops, 0) << "what did not start is not stopped";
    m_engine.reset();
    EXPECT_EQ(m_units.output.alive, 0);
}

TEST_F(EngineTest, anOutputThatFailsStopsTheInputThatStartedBefore)
{
    m_engine.inputNode();
    m_engine.outputNode();
    m_units.output.startStatus = -5;
    EXPECT_FALSE(m_engine.startAndReturnError());
    EXPECT_EQ(m_units.input.starts, 1);
    EXPECT_EQ(m_units.input.stops, 1);
    EXPECT_FALSE(m_units.input.running);
}

TEST_F(EngineTest, anInputThatFailsKeepsTheOutputFromStarting)
{
    m_engine.inputNode();
    m_engine.outputNode();
    m_units.input.startStatus = -5;
    const auto result = m_engine.startAndReturnError();
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code, -5);
    EXPECT_EQ(m_units.output.starts, 0);
    EXPECT_EQ(m_units.input.stops, 0);
}

TEST_F(EngineTest, aNodeWithoutAUnitCannotStart)
{
    m_units.available = false;
    m_engine.outputNode();
    EXPECT_FALSE(m_engine.startAndReturnError());
    m_engine.reset();
    m_engine.inputNode();
    EXPECT_FALSE(m_engine.startAndReturnError());
    EXPECT_FALSE(m_engine.isRunning());
}

TEST_F(EngineTest, aSecondStartAndASecondStopChangeNothing)
{
    build();
    ASSERT_TRUE(m_engine.startAndReturnError());
    ASSERT_TRUE(m_engine.startAndReturnError());
    EXPECT_EQ(m_units.output.starts, 1);
    EXPECT_TRUE(m_engine.isRunning());
    m_engine.stop();
    m_engine.stop();
    EXPECT_EQ(m_units.output.stops, 1);
    EXPECT_FALSE(m_engine.isRunning());
}

TEST_F(EngineTest, itCanStartAgainAfterAStopWithTheSameUnit)
{
    build();
    ASSERT_TRUE(m_engine.startAndReturnError());
    m_engine.stop();
    ASSERT_TRUE(m_engine.startAndReturnError());
    EXPECT_EQ(m_units.output.made, 1);
    EXPECT_EQ(cycle(2), (Floats{0, 0}));
}

TEST_F(EngineTest, resetStopsEmptiesThePlayersAndLetsGoOfWhatItOwned)
{
    build();
    const std::weak_ptr<AVAudioMixerNode> mixer = m_firstMixer;
    m_firstMixer.reset();
    ASSERT_TRUE(m_engine.startAndReturnError());
    m_first.play();
    m_first.scheduleBuffer(makeBuffer(m_pool, {1, 2}), {});
    m_engine.reset();
    EXPECT_FALSE(m_engine.isRunning());
    EXPECT_EQ(m_units.output.alive, 0);
    EXPECT_TRUE(mixer.expired());
    EXPECT_FALSE(m_first.isPlaying());
    EXPECT_EQ(m_pool.freeSlots(), 64U);
}

TEST_F(EngineTest, aMixerThatSomeoneElseStillHoldsIsIdleAfterReset)
{
    build();
    m_engine.reset();
    m_firstMixer->setOutputVolume(0.7F);
    EXPECT_EQ(m_firstMixer->outputVolume(), 0.7F);
    Samples samples(2);
    m_firstMixer->render(samples.block());
    EXPECT_EQ(samples[0], (Floats{0, 0}));
}

TEST_F(EngineTest, playersAreAttachedAgainToAResetEngineManyTimes)
{
    for (int run = 1; run <= 100; ++run) {
        build();
        ASSERT_TRUE(m_engine.startAndReturnError());
        m_first.play();
        m_first.scheduleBuffer(makeBuffer(m_pool, {static_cast<float>(run)}), {});
        ASSERT_EQ(cycle(1), (Floats{static_cast<float>(run)}));
        m_engine.stop();
        m_engine.reset();
        ASSERT_EQ(m_units.output.alive, 0);
        ASSERT_EQ(m_units.output.made, run);
    }
}

TEST_F(EngineTest, aConvertedOutputGivesThePlayersACushion)
{
    m_units.output.sampleRate = 44100;
    build();
    m_first.play();
    m_first.scheduleBuffer(makeBuffer(m_pool, {1, 1, 1, 1, 1, 1, 1, 1}), {});
    Samples samples(6);
    m_first.render(samples.block());
    EXPECT_EQ(samples[0], (Floats{0, 0, 0, 0, 1, 1}));
    m_engine.reset();

    m_units.output.sampleRate = 48000;
    build();
    m_first.play();
    m_first.scheduleBuffer(makeBuffer(m_pool, {1, 1}), {});
    Samples again(2);
    m_first.render(again.block());
    EXPECT_EQ(again[0], (Floats{1, 1})) << "the cushion of an earlier run is gone";
}

TEST_F(EngineTest, aCushionThatAPlayerWasToldOfIsTheLeastItHas)
{
    m_first.setCushion(6);
    m_second.setCushion(1);
    m_units.output.sampleRate = 44100;
    build();
    Samples samples(8);
    for (AVAudioPlayerNode *const player : {&m_first, &m_second}) {
        player->play();
        player->scheduleBuffer(makeBuffer(m_pool, Floats(8, 1)), {});
    }
    m_first.render(samples.block());
    EXPECT_EQ(samples[0], (Floats{0, 0, 0, 0, 0, 0, 1, 1}));
    m_second.render(samples.block());
    EXPECT_EQ(samples[0], (Floats{0, 0, 0, 0, 1, 1, 1, 1}));
}

TEST_F(EngineTest, itsDestructionStopsAndReleasesEverything)
{
    {
        AVAudioEngine engine(m_units);
        engine.inputNode();
        engine.outputNode();
        ASSERT_TRUE(engine.startAndReturnError());
        EXPECT_TRUE(m_units.output.running);
    }
    EXPECT_EQ(m_units.output.stops, 1);
    EXPECT_EQ(m_units.input.stops, 1);
    EXPECT_EQ(m_units.output.alive, 0);
    EXPECT_EQ(m_units.input.alive, 0);
}

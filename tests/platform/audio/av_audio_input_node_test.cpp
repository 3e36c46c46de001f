#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_sink_node.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

class InputNodeTest : public testing::Test
{
  protected:
    void cycle(std::uint64_t time = 0) { m_units.inputUnit->cycle({.mSampleTime = time}, m_samples.constBlock()); }

    FakeUnits m_units;
    AVAudioEngine m_engine{m_units};
    Samples m_samples{64};
};

} // namespace

TEST_F(InputNodeTest, itsFormatIsWhatTheInputDelivers)
{
    m_units.input.inputFormat = {44100, 1};
    EXPECT_EQ(m_engine.inputNode().inputFormatForBus(0), standardFormat(44100, 1));
    EXPECT_FALSE(m_engine.inputNode().inputFormatForBus(1));
}

TEST_F(InputNodeTest, withoutAnInputThereIsNoFormat)
{
    m_units.input.inputFormat = {0, 0};
    EXPECT_FALSE(m_engine.inputNode().inputFormatForBus(0));
    m_units.input.inputFormat = {48000, 0};
    EXPECT_FALSE(m_engine.inputNode().inputFormatForBus(0));
    m_engine.reset();
    m_units.available = false;
    EXPECT_FALSE(m_engine.inputNode().inputFormatForBus(0));
}

TEST_F(InputNodeTest, theTapAndTheSinkBothGetEveryBlock)
{
    std::vector<std::uint64_t> tapped;
    std::vector<std::uint64_t> sunk;
    m_engine.inputNode().installTapOnBus(0, 1024, standardFormat(),
                                         [&](const AVAudioPCMBuffer &buffer, const AudioTimeStamp &when) {
                                             EXPECT_EQ(buffer.frameLength(), 64U);
                                             EXPECT_EQ(buffer.floatChannel(0), m_samples[0].data());
                                             tapped.push_back(when.mSampleTime);
                                         });
    const auto sink = std::make_shared<AVAudioSinkNode>(
        [&](const AudioTimeStamp &when, std::uint32_t frames, ConstPlanarBlock input) -> OSStatus {
            EXPECT_EQ(frames, 64U);
            EXPECT_EQ(input.channels[1], m_samples[1].data());
            sunk.push_back(when.mSampleTime);
            return noErr;
        });
    m_engine.connect(m_engine.inputNode(), m_engine.attachNode(sink), standardFormat());
    ASSERT_TRUE(m_engine.startAndReturnError());
    cycle(10);
    cycle(74);
    EXPECT_EQ(tapped, (std::vector<std::uint64_t>{10, 74}));
    EXPECT_EQ(sunk, (std::vector<std::uint64_t>{10, 74}));
}

TEST_F(InputNodeTest, aTapRemovedDuringTheRunIsNotCalledAgain)
{
    int tapped = 0;
    m_engine.inputNode().installTapOnBus(0, 1024, standardFormat(),
                                         [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++tapped; });
    ASSERT_TRUE(m_engine.startAndReturnError());
    cycle();
    m_engine.inputNode().removeTapOnBus(0);
    cycle();
    EXPECT_EQ(tapped, 1);
}

TEST_F(InputNodeTest, anotherBusHasNoTap)
{
    int tapped = 0;
    const auto count = [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++tapped; };
    m_engine.inputNode().installTapOnBus(1, 1024, standardFormat(), count);
    ASSERT_TRUE(m_engine.startAndReturnError());
    cycle();
    EXPECT_EQ(tapped, 0);
    m_engine.inputNode().installTapOnBus(0, 1024, standardFormat(), count);
    m_engine.inputNode().removeTapOnBus(1);
    cycle();
    EXPECT_EQ(tapped, 1);
}

TEST_F(InputNodeTest, withNeitherTapNorSinkABlockIsDropped)
{
    m_engine.inputNode();
    ASSERT_TRUE(m_engine.startAndReturnError());
    cycle();
    EXPECT_TRUE(m_engine.isRunning());
}

#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/audio/av_audio_player_node.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using Floats = std::vector<float>;

class OutputNodeTest : public testing::Test
{
  protected:
    void connectAndStart(AVAudioNode &source)
    {
        m_engine.attachNode(source);
        m_engine.connect(source, m_engine.outputNode(), standardFormat());
        ASSERT_TRUE(m_engine.startAndReturnError());
    }

    Floats cycle(std::uint32_t frames)
    {
        Samples samples(frames);
        m_units.outputUnit->cycle(samples.block());
        EXPECT_EQ(samples[0], samples[1]);
        return samples[0];
    }

    FakeUnits m_units;
    ConstantNode m_source{0.25F};
    AVAudioEngine m_engine{m_units};
};

} // namespace

TEST_F(OutputNodeTest, itHandsOutTheUnitThatBindsItToADevice)
{
    EXPECT_EQ(m_engine.outputNode().audioUnit(), m_units.outputUnit);
    EXPECT_NE(m_engine.outputNode().audioUnit(), nullptr);
}

TEST_F(OutputNodeTest, withoutAUnitThereIsNone)
{
    m_units.available = false;
    EXPECT_EQ(m_engine.outputNode().audioUnit(), nullptr);
}

TEST_F(OutputNodeTest, nothingConnectedIsSilence)
{
    m_engine.outputNode();
    ASSERT_TRUE(m_engine.startAndReturnError());
    EXPECT_EQ(cycle(3), (Floats{0, 0, 0}));
}

TEST_F(OutputNodeTest, atTheMixRateTheSourceRendersStraightIntoTheCycle)
{
    connectAndStart(m_source);
    EXPECT_EQ(cycle(5), Floats(5, 0.25F));
    EXPECT_EQ(cycle(20000), Floats(20000, 0.25F));
    EXPECT_EQ(m_source.frames(), 20005U);
}

TEST_F(OutputNodeTest, atAnotherRateEachCycleIsFilledWholeAndTheSourceKeepsPace)
{
    for (const double rate : {44100.0, 96000.0, 192000.0, 32000.0}) {
        m_units.output.sampleRate = rate;
        m_engine.reset();
        connectAndStart(m_source);
        const std::uint64_t before = m_source.frames();
        for (int i = 0; i < 8; ++i)
            cycle(1024);
        for (const float sample : cycle(1024))
            ASSERT_NEAR(sample, 0.25F, 1e-6F) << rate;
        for (int i = 9; i < 1000; ++i)
            cycle(1024);
        EXPECT_NEAR(static_cast<double>(m_source.frames() - before), 1000 * 1024.0 * 48000 / rate, 3) << rate;
    }
}

TEST_F(OutputNodeTest, aCycleLongerThanPreparedIsFilledAllTheSame)
{
    m_units.output.sampleRate = 44100;
    connectAndStart(m_source);
    cycle(1024);
    for (const float sample : cycle(30000))
        ASSERT_NEAR(sample, 0.25F, 1e-6F);
}

TEST_F(OutputNodeTest, aRateThatCannotBeConvertedFailsTheStart)
{
    m_units.output.sampleRate = 44100.5;
    m_engine.connect(m_source, m_engine.outputNode(), standardFormat());
    EXPECT_FALSE(m_engine.startAndReturnError());
    EXPECT_EQ(m_units.output.starts, 0);
}

// The whole way at a graph rate of 44.1 kHz: captured, converted in, played, converted out, one cycle at a time.
TEST_F(OutputNodeTest, aToneConvertedInAndOutIsCleanWithoutGapOrClick)
{
    for (const std::uint32_t quantum : {64U, 441U, 1024U}) {
        const AVAudioFormat graphFormat = standardFormat(44100);
        m_units.output.sampleRate = 44100;
        AVAudioPlayerNode player;
        AVAudioMixerNode mixer;
        m_engine.attachNode(mixer);
        m_engine.connect(player, mixer, standardFormat());
        m_engine.attachNode(player);
        connectAndStart(mixer);
        player.play();

        const auto converter = AVAudioConverter::make(graphFormat, standardFormat());
        AVAudioPCMBufferPool pool(16, 1 << 16);
        constexpr double step = 2 * std::numbers::pi * 441 / 44100;
        std::uint64_t captured = 0;
        const std::uint64_t settled = 4 * 1024;
        Floats heard;
        while (heard.size() < 500000) {
            Floats tone(quantum);
            for (float &sample : tone)
                sample = static_cast<float>(std::sin(step * static_cast<double>(captured++)));
            const auto block = makeBuffer(pool, tone, graphFormat);
            auto converted = pool.make(standardFormat(), quantum * 48000 / 44100 + 32);
            const AVAudioPCMBuffer *next = block.get();
            converter->convertToBuffer(*converted, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
                status =
                    next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
                return std::exchange(next, nullptr);
            });
            player.scheduleBuffer(std::move(converted), {});
            const Floats out = cycle(quantum);
            heard.insert(heard.end(), out.begin(), out.end());
        }
        // A tone repeats its period: any frame lost, doubled or left out shows as a difference to the one before.
        double worst = 0;
        for (std::size_t i = settled + 100; i < heard.size(); ++i)
            worst = std::max(worst, std::abs(double{heard[i]} - heard[i - 100]));
        EXPECT_LT(worst, 1e-5) << quantum;
        m_engine.reset();
    }
}

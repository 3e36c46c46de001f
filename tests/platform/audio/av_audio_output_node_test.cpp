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

    Floats cycle(std::uint32_t frames) const
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

namespace
{

/// The whole way at a graph's own rate: captured, converted in, played, converted out, one cycle at a time.
class ConvertedLoop
{
  public:
    static constexpr std::size_t period = 100;

    explicit ConvertedLoop(double graphRate)
        : m_graphFormat(standardFormat(graphRate)),
          m_room(48000 / graphRate),
          m_converter(AVAudioConverter::make(m_graphFormat, standardFormat()))
    {
        m_units.output.sampleRate = graphRate;
        m_engine.outputNode();
        m_engine.attachNode(m_player);
        m_engine.attachNode(m_mixer);
        m_engine.connect(m_player, m_mixer, standardFormat());
        m_engine.connect(m_mixer, m_engine.outputNode(), standardFormat());
        EXPECT_TRUE(m_engine.startAndReturnError());
        m_player.play();
    }

    /// Plays a tone of that period and gives what comes out of the cycle.
    Floats cycle(std::uint32_t frames)
    {
        Floats tone(frames);
        for (float &sample : tone)
            sample = static_cast<float>(std::sin(2 * std::numbers::pi * static_cast<double>(m_captured++ % period) /
                                                 static_cast<double>(period)));
        const auto block = makeBuffer(m_pool, tone, m_graphFormat);
        auto converted = m_pool.make(standardFormat(), static_cast<std::uint32_t>(frames * m_room + 32));
        const AVAudioPCMBuffer *next = block.get();
        m_converter->convertToBuffer(*converted, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
            status = next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
            return std::exchange(next, nullptr);
        });
        m_player.scheduleBuffer(std::move(converted), {});
        Samples samples(frames);
        m_units.outputUnit->cycle(samples.block());
        return samples[0];
    }

  private:
    AVAudioFormat m_graphFormat;
    double m_room;
    FakeUnits m_units;
    AVAudioPCMBufferPool m_pool{16, 1 << 16};
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioPlayerNode m_player;
    AVAudioMixerNode m_mixer;
    AVAudioEngine m_engine{m_units};
    std::uint64_t m_captured = 0;
};

/// A tone repeats its period: a frame lost, doubled or silent makes a difference to the one a period before.
double worstBreak(double graphRate, const std::vector<std::uint32_t> &quanta, std::size_t frames)
{
    constexpr std::size_t settled = 4096;
    ConvertedLoop loop(graphRate);
    Floats heard;
    for (std::size_t cycle = 0; heard.size() < frames; ++cycle) {
        const Floats block = loop.cycle(quanta[cycle % quanta.size()]);
        heard.insert(heard.end(), block.begin(), block.end());
    }
    double worst = 0;
    for (std::size_t i = settled + ConvertedLoop::period; i < heard.size(); ++i)
        worst = std::max(worst, std::abs(double{heard[i]} - heard[i - ConvertedLoop::period]));
    const auto loudest = *std::max_element(heard.begin() + settled, heard.end());
    EXPECT_NEAR(loudest, 1, 1e-3) << "there is a tone at all";
    return worst;
}

} // namespace

TEST(ConvertedOutput, aToneConvertedInAndOutHasNoGapAndNoClick)
{
    const std::vector<std::vector<std::uint32_t>> quanta{{64}, {441}, {1024}, {1, 2, 3}, {1024, 64, 256, 17}};
    for (const double graphRate : {44100.0, 96000.0, 88200.0, 192000.0, 32000.0})
        for (const auto &pattern : quanta)
            EXPECT_LT(worstBreak(graphRate, pattern, 100000), 1e-5) << graphRate << ", " << pattern.front();
}

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_player_node.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <utility>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool slow = true; // the length is not what the sanitizers look at
#else
constexpr bool slow = false;
#endif

bool longTests()
{
    return std::getenv("TOLVENARY_LONG_TESTS") != nullptr;
}

/// A device whose clock runs `ppm` millionths fast feeds the player of one whose clock is right. By design that does
/// not happen: all our nodes are in one driver group, and the server resamples what has a clock of its own. Here it
/// happens, for a day, to the player as it is. A cycle lasts as long as 1024 frames do and carries 32 numbered ones.
class TwoClocks : public testing::TestWithParam<int>
{
  protected:
    static constexpr std::uint32_t blockFrames = 32;
    static constexpr std::int64_t numbers = 1 << 20; // floats are whole only so far: then it is 1 again
    static constexpr double framesOfADay = 48000.0 * 86400;
    static constexpr auto cycles = static_cast<std::int64_t>(framesOfADay / 1024 / (slow ? 48 : 1));

    struct Heard {
        std::int64_t silent = 0;  ///< frames
        std::int64_t skipped = 0; ///< frames
        std::int64_t repeated = 0;
        std::int64_t longestDelay = 0;
    };

    TwoClocks() { m_player.play(); }

    void supply()
    {
        auto buffer = m_pool.make(standardFormat(), blockFrames);
        ASSERT_NE(buffer, nullptr) << "the queue holds all buffers there are";
        buffer->setFrameLength(blockFrames);
        for (std::uint32_t i = 0; i < blockFrames; ++i) {
            const auto number = static_cast<float>(m_supplied++ % numbers + 1);
            buffer->floatChannel(0)[i] = number;
            buffer->floatChannel(1)[i] = number;
        }
        m_player.scheduleBuffer(std::move(buffer), {});
    }

    /// One cycle of the right clock, in which the source has delivered what its own clock made of the time.
    void cycle(std::int64_t index, Heard &heard)
    {
        const double due = static_cast<double>(index + 1) * (1 + GetParam() * 1e-6);
        while (static_cast<double>(m_blocks) + 1 <= due) {
            supply();
            ++m_blocks;
        }
        m_player.render(m_samples.block());
        for (std::uint32_t i = 0; i < blockFrames; ++i)
            hear(m_samples[0][i], heard);
        if (m_last > 0)
            heard.longestDelay = std::max(heard.longestDelay, (m_supplied - m_last + numbers) % numbers);
    }

    void hear(float sample, Heard &heard)
    {
        if (sample == 0) {
            ++heard.silent;
            return;
        }
        // Where a skip is faded the numbers are between those that were supplied: what counts is where it leads.
        const auto number = static_cast<std::int64_t>(std::lround(sample));
        const std::int64_t step = (number - m_last + numbers) % numbers;
        if (m_last > 0 && step > numbers / 2)
            ++heard.repeated;
        else if (m_last > 0 && step > 1 && step < numbers / 2)
            heard.skipped += step - 1;
        m_last = number;
    }

    AVAudioPCMBufferPool m_pool{64, blockFrames * 8};
    AVAudioPlayerNode m_player;
    Samples m_samples{blockFrames};
    std::int64_t m_supplied = 0;
    std::int64_t m_blocks = 0;
    std::int64_t m_last = 0;
};

} // namespace

TEST_P(TwoClocks, forADayTheDelayStaysBoundedAndNoMoreIsLostThanTheClocksDiffer)
{
    Heard early;
    Heard heard;
    for (std::int64_t index = 0; index < cycles; ++index) {
        cycle(index, heard);
        if (index == cycles / 2)
            early = heard;
        ASSERT_LE(heard.longestDelay, 2 * blockFrames) << "after cycle " << index;
    }
    const double difference = static_cast<double>(cycles) * blockFrames * GetParam() * 1e-6;
    std::cout << "    " << GetParam() << " ppm, " << cycles << " cycles: " << heard.silent << " frames of silence, "
              << heard.skipped << " skipped, delay at most " << heard.longestDelay << " frames (" << early.longestDelay
              << " in the first half), the clocks differ by " << difference << " frames\n";
    EXPECT_EQ(heard.repeated, 0);
    EXPECT_LE(heard.longestDelay, early.longestDelay) << "the delay grows";
    if (GetParam() >= 0) {
        EXPECT_EQ(heard.silent, 0) << "a source that is fast leaves no gap";
        EXPECT_NEAR(static_cast<double>(heard.skipped), difference, 2 * blockFrames);
    } else {
        EXPECT_EQ(heard.skipped, 0) << "of a source that is slow nothing is lost";
        EXPECT_NEAR(static_cast<double>(heard.silent), -difference, 2 * blockFrames);
    }
}

INSTANTIATE_TEST_SUITE_P(Millionths, TwoClocks, testing::Values(0, 50, -50, 200, -200, 1000, -1000),
                         [](const auto &ppm) {
                             return (ppm.param < 0 ? "slow" : "fast") + std::to_string(std::abs(ppm.param));
                         });

namespace
{

/// Stands between a player and the output and counts what is asked for.
class CountingNode final : public AVAudioNode
{
  public:
    explicit CountingNode(AVAudioNode &source) : m_source(source) {}

    void render(PlanarBlock output) override
    {
        m_source.render(output);
        m_frames += output.frames;
    }
    std::int64_t frames() const { return m_frames; }

  private:
    AVAudioNode &m_source;
    std::int64_t m_frames = 0;
};

/// The way of the sound where the graph is not at 48 kHz: a conversion in, the player, a conversion out, all in one
/// clock. The sound is steady, so that a gap, or a step of any kind, shows.
class OneClock : public testing::TestWithParam<double>
{
  protected:
    static constexpr std::uint32_t quantum = 1024;
    static constexpr float level = 0.5F;

    /// A day of real conversions is many minutes of computing: it is three minutes of sound unless somebody asks for
    /// it.
    static double seconds() { return longTests() ? 86400 : (slow ? 20 : 180); }

    OneClock()
        : m_graphFormat(standardFormat(GetParam())),
          m_converter(AVAudioConverter::make(m_graphFormat, standardFormat()))
    {
        m_units.output.sampleRate = GetParam();
        m_engine.attachNode(m_player);
        m_engine.connect(m_counter, m_engine.outputNode(), standardFormat());
        if (!m_engine.startAndReturnError())
            ADD_FAILURE() << "the engine does not start";
        m_player.play();
        m_captured = m_pool.make(m_graphFormat, quantum);
        m_captured->setFrameLength(quantum);
        for (std::uint32_t c = 0; c < 2; ++c)
            std::fill_n(m_captured->floatChannel(c), quantum, level);
    }

    /// Answers the greatest distance from the level.
    float cycle()
    {
        auto converted = m_pool.make(standardFormat(), 40960);
        const AVAudioPCMBuffer *next = m_captured.get();
        m_converter->convertToBuffer(*converted, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
            status = next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
            return std::exchange(next, nullptr);
        });
        m_scheduled += converted->frameLength();
        m_player.scheduleBuffer(std::move(converted), {});
        m_units.outputUnit->cycle(m_samples.block());
        float furthest = 0;
        for (const float sample : m_samples[0])
            furthest = std::max(furthest, std::abs(sample - level));
        return furthest;
    }

    /// Frames that wait, the player's cushion of silence among them.
    std::int64_t waiting() const { return m_scheduled - m_counter.frames(); }

    FakeUnits m_units;
    AVAudioFormat m_graphFormat;
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioPCMBufferPool m_pool{8, 1 << 19};
    AVAudioPlayerNode m_player;
    CountingNode m_counter{m_player};
    AVAudioEngine m_engine{m_units};
    AVAudioPCMBufferPtr m_captured;
    Samples m_samples{quantum};
    std::int64_t m_scheduled = 0;
};

} // namespace

TEST_P(OneClock, convertedInAndOutThereIsNoGapAndNothingPilesUp)
{
    for (int settling = 0; settling < 4; ++settling)
        cycle();
    std::int64_t least = waiting();
    std::int64_t most = waiting();
    float furthest = 0;
    const auto cycles = static_cast<std::int64_t>(seconds() * GetParam() / quantum);
    for (std::int64_t index = 0; index < cycles; ++index) {
        furthest = std::max(furthest, cycle());
        least = std::min(least, waiting());
        most = std::max(most, waiting());
        ASSERT_LT(furthest, 1e-4F) << "a gap in cycle " << index;
    }
    std::cout << "    " << GetParam() << " Hz, " << seconds() / 3600 << " hours: " << least << " to " << most
              << " frames more come than asked for, the level is off by at most " << furthest << '\n';
    EXPECT_LE(most - least, 4) << "the conversions drift apart";
}

INSTANTIATE_TEST_SUITE_P(Graphs, OneClock, testing::Values(44100, 96000, 32000, 88200, 47999),
                         [](const auto &rate) { return std::to_string(static_cast<int>(rate.param)); });

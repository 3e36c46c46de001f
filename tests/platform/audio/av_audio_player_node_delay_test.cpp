#include "platform/audio/av_audio_player_node.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using Floats = std::vector<float>;

/// A stream whose every frame tells its number, so that what is heard tells its age. Numbers begin at 1: 0 is silence.
class NumberedStream : public testing::Test
{
  protected:
    void supply(std::uint32_t frames)
    {
        Floats samples(frames);
        for (float &sample : samples)
            sample = numberOf(++m_supplied);
        m_player.scheduleBuffer(makeBuffer(m_pool, samples), {});
    }

    Floats render(std::uint32_t frames)
    {
        Samples samples(frames);
        m_player.render(samples.block());
        EXPECT_EQ(samples[0], samples[1]);
        return samples[0];
    }

    /// The number that the n-th frame carries: floats are whole only so far, so it starts again at 1.
    static float numberOf(std::int64_t n) { return static_cast<float>((n - 1) % numbers + 1); }
    static float numberAfter(float number) { return numberOf(std::llround(number) + 1); }

    /// How many frames late the last one of the block is, when all that has been supplied could have been heard.
    std::int64_t delayOf(const Floats &block) const
    {
        return (m_supplied - std::llround(block.back()) + numbers) % numbers;
    }

    static constexpr std::int64_t numbers = 1 << 20;

    std::int64_t m_supplied = 0;
    AVAudioPCMBufferPool m_pool{64, 1 << 16};
    AVAudioPlayerNode m_player;
};

std::uint32_t gapsIn(const Floats &block)
{
    return static_cast<std::uint32_t>(std::count(block.begin(), block.end(), 0.0F));
}

} // namespace

TEST_F(NumberedStream, inStepNothingIsEverDelayed)
{
    m_player.play();
    for (int cycle = 0; cycle < 100; ++cycle) {
        supply(128);
        const Floats block = render(128);
        ASSERT_EQ(delayOf(block), 0);
        ASSERT_EQ(block.front(), static_cast<float>(m_supplied - 127));
    }
}

TEST_F(NumberedStream, anExtraQueuedBlockIsGoneAfterSixteenRenders)
{
    for (const std::uint32_t quantum : {64U, 256U, 1024U}) {
        m_player.reset();
        m_player.play();
        supply(quantum);
        Floats block;
        for (int cycle = 0; cycle < 16; ++cycle) {
            supply(quantum);
            block = render(quantum);
        }
        EXPECT_EQ(delayOf(block), 0) << quantum;
    }
}

TEST_F(NumberedStream, aResetForgetsWhatWasFoundToBeDelay)
{
    m_player.play();
    supply(64);
    for (int cycle = 0; cycle < 8; ++cycle) {
        supply(64);
        render(64);
    }
    m_player.reset(); // the next render would have skipped
    const std::int64_t before = m_supplied;
    supply(64);
    supply(64);
    const Floats block = render(64);
    EXPECT_EQ(block.front(), numberOf(before + 1));
    EXPECT_EQ(block.back(), numberOf(before + 64));
}

TEST_F(NumberedStream, aResetBeginsTheWatchAnew)
{
    m_player.play();
    supply(64);
    for (int cycle = 0; cycle < 7; ++cycle) {
        supply(64);
        render(64);
    }
    m_player.reset();
    supply(64);
    for (int cycle = 0; cycle < 8; ++cycle) { // in which nothing is skipped yet
        supply(64);
        EXPECT_EQ(delayOf(render(64)), 64) << cycle;
    }
}

TEST_F(NumberedStream, afterAResetAStreamIsGivenItsCushionAgain)
{
    m_player.setCushion(4);
    m_player.play();
    supply(8);
    ASSERT_EQ(gapsIn(render(8)), 4U);
    m_player.reset();
    supply(8);
    EXPECT_EQ(gapsIn(render(8)), 4U);
}

TEST_F(NumberedStream, manyQueuedBlocksOfAnyLengthAreGoneAfterSixteenRenders)
{
    m_player.play();
    for (int i = 0; i < 7; ++i)
        supply(97 + static_cast<std::uint32_t>(i));
    Floats block;
    for (int cycle = 0; cycle < 16; ++cycle) {
        supply(64);
        block = render(64);
    }
    EXPECT_EQ(delayOf(block), 0);
}

TEST_F(NumberedStream, theSkipIsFadedOverOneBlock)
{
    constexpr std::uint32_t quantum = 256;
    m_player.play();
    supply(quantum);
    float last = 0;
    double largestStep = 0;
    for (int cycle = 0; cycle < 16; ++cycle) {
        supply(quantum);
        for (const float sample : render(quantum)) {
            largestStep = std::max(largestStep, std::abs(double{sample} - last));
            last = sample;
        }
    }
    // A plain frame is 1 ahead of the one before; over the fade, 256 frames are made good in 256 steps.
    EXPECT_NEAR(largestStep, 2, 0.01);
}

TEST_F(NumberedStream, aSkippedToneHasNoStepBeyondItsOwnSlopeAndTheFade)
{
    constexpr std::uint32_t quantum = 256;
    constexpr double slope = 2 * std::numbers::pi * 440 / 48000;
    m_player.play();
    std::uint64_t phase = 0;
    const auto supplyTone = [&] {
        Floats samples(quantum);
        for (float &sample : samples)
            sample = static_cast<float>(std::sin(slope * static_cast<double>(phase++)));
        m_player.scheduleBuffer(makeBuffer(m_pool, samples), {});
    };
    supplyTone();
    float last = 0;
    double largestStep = 0;
    for (int cycle = 0; cycle < 32; ++cycle) {
        supplyTone();
        for (const float sample : render(quantum)) {
            largestStep = std::max(largestStep, std::abs(double{sample} - last));
            last = sample;
        }
    }
    EXPECT_LE(largestStep, slope + 2.0 / quantum);
}

TEST_F(NumberedStream, aQueueThatRunsEmptyNowAndThenIsLeftAlone)
{
    m_player.play();
    for (int cycle = 0; cycle < 100; ++cycle) {
        supply(128);
        supply(128);
        const Floats first = render(128);
        const Floats second = render(128);
        ASSERT_EQ(first.back() + 1, second.front());
        ASSERT_EQ(delayOf(second), 0);
    }
}

// Three blocks come at once, every third cycle: what was seen before the skip must not be held against what is left.
TEST_F(NumberedStream, anUnevenStreamIsSkippedOnceAndNeverTornApart)
{
    constexpr std::uint32_t quantum = 64;
    for (const int phase : {0, 1, 2}) {
        m_player.reset();
        m_player.play();
        for (int early = 0; early < phase + 1; ++early)
            supply(quantum);
        std::uint32_t gaps = 0;
        Floats block;
        for (int cycle = 0; cycle < 60 + phase; ++cycle) {
            for (int burst = 0; burst < 3 && cycle % 3 == phase; ++burst)
                supply(quantum);
            block = render(quantum);
            gaps += gapsIn(block);
        }
        EXPECT_EQ(gaps, 0U) << phase;
        EXPECT_EQ(delayOf(block), 0) << phase;
    }
}

TEST_F(NumberedStream, aSkipWaitsUntilThereIsEnoughToFadeTo)
{
    constexpr std::uint32_t quantum = 64;
    m_player.play();
    supply(quantum);
    for (int cycle = 0; cycle < 8; ++cycle) {
        supply(quantum);
        render(quantum);
    }
    // The source pauses just when the skip is due: what is queued is played, not thrown away.
    const Floats block = render(quantum);
    EXPECT_EQ(block.front(), static_cast<float>(m_supplied - quantum + 1));
    EXPECT_EQ(delayOf(block), 0);
}

TEST_F(NumberedStream, aSourceThatPausesAndReturnsIsHeardAgainWithoutDelay)
{
    m_player.play();
    for (int pause = 1; pause < 20; ++pause) {
        for (int cycle = 0; cycle < 10; ++cycle) {
            supply(128);
            ASSERT_EQ(delayOf(render(128)), 0);
        }
        for (int cycle = 0; cycle < pause; ++cycle)
            ASSERT_EQ(gapsIn(render(128)), 128U);
    }
}

TEST_F(NumberedStream, withACushionAStreamThatBeginsIsPrecededByIt)
{
    m_player.setCushion(4);
    m_player.play();
    EXPECT_EQ(render(8), Floats(8, 0.0F));
    supply(8);
    EXPECT_EQ(render(8), (Floats{0, 0, 0, 0, 1, 2, 3, 4}));
    supply(8);
    EXPECT_EQ(render(8), (Floats{5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST_F(NumberedStream, aCushionLongerThanABlockIsPlayedOverSeveral)
{
    m_player.setCushion(4);
    m_player.play();
    supply(3);
    EXPECT_EQ(render(3), (Floats{0, 0, 0}));
    supply(3);
    EXPECT_EQ(render(3), (Floats{0, 1, 2}));
}

TEST_F(NumberedStream, withACushionPausesDoNotAddUp)
{
    m_player.setCushion(4);
    m_player.play();
    for (int pause = 1; pause < 20; ++pause) {
        for (int cycle = 0; cycle < 30; ++cycle) {
            supply(128);
            ASSERT_EQ(delayOf(render(128)), 4);
        }
        for (int cycle = 0; cycle < pause; ++cycle)
            render(128);
    }
}

TEST_F(NumberedStream, withACushionAnExtraBlockIsSkippedAndTheCushionStays)
{
    m_player.setCushion(4);
    m_player.play();
    supply(128);
    Floats block;
    for (int cycle = 0; cycle < 16; ++cycle) {
        supply(128);
        block = render(128);
    }
    EXPECT_EQ(delayOf(block), 4);
}

// 940 or 941 frames come in a cycle, 941 or 940 are asked for, each by its own rounding of 940.8.
TEST_F(NumberedStream, aStreamThatJittersByAFrameNeverGaps)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr int blocks = 10000; // slow here, and the length is not what the sanitizers look at
#else
    constexpr int blocks = 100000;
#endif
    m_player.setCushion(4);
    m_player.play();
    const auto share = [](int cycle, double phase) {
        return static_cast<std::uint32_t>(std::floor((cycle + 1) * 940.8 + phase) - std::floor(cycle * 940.8 + phase));
    };
    std::uint64_t gaps = 0;
    std::uint64_t jumps = 0;
    std::int64_t longest = 0;
    float last = 0;
    for (int cycle = 0; cycle < blocks; ++cycle) {
        supply(share(cycle, 0.3));
        const Floats block = render(share(cycle, 0.9));
        if (cycle < 3) {
            last = block.back();
            continue;
        }
        gaps += gapsIn(block);
        for (const float sample : block) {
            jumps += sample != numberAfter(last) ? 1 : 0;
            last = sample;
        }
        longest = std::max(longest, delayOf(block));
    }
    EXPECT_EQ(gaps, 0U);
    EXPECT_EQ(jumps, 0U);
    EXPECT_LE(longest, 8);
}

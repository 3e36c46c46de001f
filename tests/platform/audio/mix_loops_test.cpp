#include "platform/audio/mix_loops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace tolvenary;

TEST(MixLoops, addingSums)
{
    std::vector<float> sum{1, 2, 3};
    const std::vector<float> addend{0.5F, -2, 4};
    addSamples(sum.data(), addend.data(), 3);
    EXPECT_EQ(sum, (std::vector<float>{1.5F, 0, 7}));
}

TEST(MixLoops, scalingMultiplies)
{
    std::vector<float> samples{1, -2, 4};
    scaleSamples(samples.data(), 3, 0.5F);
    EXPECT_EQ(samples, (std::vector<float>{0.5F, -1, 2}));
}

TEST(MixLoops, aRampTakesEqualStepsAndEndsAtItsTarget)
{
    std::vector<float> samples{1, 1, 1, 1};
    scaleAlongRamp(samples.data(), 4, {0, 1, 4}, 0);
    EXPECT_EQ(samples, (std::vector<float>{0.25F, 0.5F, 0.75F, 1}));
}

TEST(MixLoops, aRampThatIsNoExactFractionStillEndsExactly)
{
    for (std::uint32_t length = 1; length < 600; ++length) {
        std::vector<float> samples(length, 1.0F);
        scaleAlongRamp(samples.data(), length, {1.9F, 0.35F, length}, 0);
        ASSERT_EQ(samples.back(), 0.35F) << length;
    }
}

TEST(MixLoops, aRampInPiecesIsTheSameAsInOne)
{
    std::vector<float> whole(100, 1.0F);
    std::vector<float> pieces(100, 1.0F);
    scaleAlongRamp(whole.data(), 100, {2, 0.35F, 100}, 0);
    scaleAlongRamp(pieces.data(), 33, {2, 0.35F, 100}, 0);
    scaleAlongRamp(pieces.data() + 33, 67, {2, 0.35F, 100}, 33);
    EXPECT_EQ(whole, pieces);
}

TEST(MixLoops, aCrossfadeMovesInEqualStepsAndEndsOnTheTarget)
{
    std::vector<float> samples{0, 0, 0, 0};
    const std::vector<float> target{1, 1, 1, 1};
    crossfadeSamples(samples.data(), target.data(), 4, 0, 4);
    EXPECT_EQ(samples, (std::vector<float>{0.25F, 0.5F, 0.75F, 1}));
}

TEST(MixLoops, aCrossfadeInPiecesIsTheSameAsInOne)
{
    std::vector<float> whole(50, -1.0F);
    std::vector<float> pieces(50, -1.0F);
    const std::vector<float> target(50, 0.7F);
    crossfadeSamples(whole.data(), target.data(), 50, 0, 50);
    crossfadeSamples(pieces.data(), target.data(), 20, 0, 50);
    crossfadeSamples(pieces.data() + 20, target.data() + 20, 30, 20, 50);
    EXPECT_EQ(whole, pieces);
    EXPECT_EQ(whole.back(), 0.7F);
}

namespace
{

std::vector<float> noise(std::size_t length, unsigned seed)
{
    std::minstd_rand random(seed);
    std::uniform_real_distribution<float> values(-1, 1);
    std::vector<float> samples(length);
    for (float &sample : samples)
        sample = values(random);
    return samples;
}

/// Every loop of one kind, one after the other, on blocks of `frames` frames that begin in the middle of a line.
std::vector<float> allLoops(const MixLoops &loops, std::uint32_t frames)
{
    std::vector<float> samples = noise(frames, 1);
    const std::vector<float> other = noise(frames, 2);
    loops.add(samples.data(), other.data(), frames);
    loops.scale(samples.data(), frames, 0.7F);
    loops.scaleAlong(samples.data(), frames, {0.3F, 1.9F, frames + 11}, 7);
    loops.crossfade(samples.data(), other.data(), frames, 5, frames + 9);
    return samples;
}

/// The same, straight from the definition.
std::vector<float> allByDefinition(std::uint32_t frames)
{
    std::vector<float> samples = noise(frames, 1);
    const std::vector<float> other = noise(frames, 2);
    for (std::uint32_t i = 0; i < frames; ++i) {
        const double gain = 0.3 + (1.9 - 0.3) * (i + 8) / (frames + 11);
        const double part = static_cast<double>(i + 6) / (frames + 9);
        const double mixed = (static_cast<double>(samples[i]) + static_cast<double>(other[i])) * 0.7 * gain;
        samples[i] = static_cast<float>(mixed + (static_cast<double>(other[i]) - mixed) * part);
    }
    return samples;
}

void expectNear(const std::vector<float> &made, const std::vector<float> &wanted)
{
    ASSERT_EQ(made.size(), wanted.size());
    for (std::size_t i = 0; i < made.size(); ++i)
        ASSERT_NEAR(made[i], wanted[i], 1e-6) << "frame " << i << " of " << made.size();
}

} // namespace

TEST(MixLoops, plainLoopsDoWhatTheyAreDefinedAsAtEveryLength)
{
    for (std::uint32_t frames = 0; frames < 150; ++frames)
        expectNear(allLoops(plainMixLoops(), frames), allByDefinition(frames));
}

TEST(MixLoops, wideLoopsGiveTheSameToTheLastBitAtEveryLength)
{
    if (wideMixLoops() == nullptr)
        GTEST_SKIP() << "this processor has no AVX2";
    for (std::uint32_t frames = 0; frames < 150; ++frames)
        ASSERT_EQ(allLoops(*wideMixLoops(), frames), allLoops(plainMixLoops(), frames)) << frames;
}

TEST(MixLoops, noLoopTouchesWhatLiesBehindItsBlock)
{
    for (const MixLoops *const loops : {&plainMixLoops(), wideMixLoops()}) {
        for (std::uint32_t frames = 0; loops != nullptr && frames < 70; ++frames) {
            std::vector<float> samples(frames + 40, 3.0F);
            const std::vector<float> other(frames + 40, 5.0F);
            loops->add(samples.data(), other.data(), frames);
            loops->scale(samples.data(), frames, 0.5F);
            loops->scaleAlong(samples.data(), frames, {1, 2, frames + 1}, 0);
            loops->crossfade(samples.data(), other.data(), frames, 0, frames + 1);
            ASSERT_EQ(std::count(samples.begin() + frames, samples.end(), 3.0F), 40) << frames;
        }
    }
}

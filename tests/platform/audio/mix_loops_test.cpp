#include "platform/audio/mix_loops.h"

#include <gtest/gtest.h>

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

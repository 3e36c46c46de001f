#include "ui/star.h"
#include "ui/star_field.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace tolvenary::test
{

namespace
{

constexpr std::uint64_t top = std::uint64_t{1} << 53;

} // namespace

TEST(Uniform, bothEndsAreReached)
{
    EXPECT_EQ(uniform([] { return std::uint64_t{0}; }, 0.6, 1.8), 0.6);
    EXPECT_EQ(uniform([] { return top; }, 0.6, 1.8), 1.8);
}

TEST(Uniform, theMiddleStepIsTheMiddle)
{
    EXPECT_DOUBLE_EQ(uniform([] { return top / 2; }, 0.3, 0.95), 0.625);
}

TEST(Uniform, aNumberPastTheLastStepIsDrawnAgain)
{
    int calls = 0;
    const auto bits = [&calls] { return ++calls < 3 ? top + 1 : top / 4; };
    EXPECT_DOUBLE_EQ(uniform(bits, 0, 1), 0.25);
    EXPECT_EQ(calls, 3);
}

TEST(Uniform, bitsAboveTheStepsDoNotCount)
{
    EXPECT_EQ(uniform([] { return ~std::uint64_t{0} << 54; }, 2, 3), 2);
}

TEST(Stars, are140WithinTheirRanges)
{
    const std::vector<Star> stars = makeStars(systemRandomBits);
    ASSERT_EQ(stars.size(), 140U);
    std::set<QUuid> ids;
    for (const Star &star : stars) {
        ids.insert(star.id);
        EXPECT_TRUE(star.x >= 0 && star.x <= 1);
        EXPECT_TRUE(star.y >= 0 && star.y <= 1);
        EXPECT_TRUE(star.r >= 0.6 && star.r <= 1.8);
        EXPECT_TRUE(star.a >= 0.3 && star.a <= 0.95);
    }
    EXPECT_EQ(ids.size(), 140U);
}

TEST(Stars, drawXThenYThenRadiusThenOpacity)
{
    int calls = 0;
    const std::vector<Star> stars = makeStars([&calls] { return top / 4 * static_cast<std::uint64_t>(calls++ % 4); });
    EXPECT_EQ(calls, 4 * 140);
    EXPECT_DOUBLE_EQ(stars[0].x, 0);
    EXPECT_DOUBLE_EQ(stars[0].y, 0.25);
    EXPECT_DOUBLE_EQ(stars[0].r, 1.2);
    EXPECT_DOUBLE_EQ(stars[0].a, 0.3 + 0.75 * 0.65);
}

TEST(Stars, reachBothEndsOfTheirRanges)
{
    const Star least = makeStars([] { return std::uint64_t{0}; }).back();
    EXPECT_EQ(least, (Star{least.id, 0, 0, 0.6, 0.3}));
    const Star most = makeStars([] { return top; }).back();
    EXPECT_EQ(most, (Star{most.id, 1, 1, 1.8, 0.95}));
}

TEST(Pulses, reachBothEndsOfTheirRanges)
{
    const auto pulsesOf = [](std::uint64_t step) { return makePulses(2, [step] { return step; }); };
    ASSERT_EQ(pulsesOf(0).size(), 2U);
    EXPECT_EQ(pulsesOf(0)[1].duration, 1.6);
    EXPECT_EQ(pulsesOf(0)[1].delay, 0);
    EXPECT_EQ(pulsesOf(top)[1].duration, 3.2);
    EXPECT_EQ(pulsesOf(top)[1].delay, 2);
}

TEST(Pulses, haveRhythmsOfTheirOwn)
{
    const std::vector<Pulse> pulses = makePulses(140, systemRandomBits);
    std::set<double> durations;
    for (const Pulse &pulse : pulses) {
        durations.insert(pulse.duration);
        EXPECT_TRUE(pulse.duration >= 1.6 && pulse.duration <= 3.2);
        EXPECT_TRUE(pulse.delay >= 0 && pulse.delay <= 2);
    }
    EXPECT_GT(durations.size(), 100U);
}

TEST(Brightness, isFullUntilTheDelayIsOver)
{
    EXPECT_EQ(brightness({2, 1.5}, 0), 1);
    EXPECT_EQ(brightness({2, 1.5}, 1.5), 1);
    EXPECT_LT(brightness({2, 1.5}, 1.8), 1);
}

TEST(Brightness, swingsBetweenFullAndFourTenths)
{
    const Pulse pulse{2, 1};
    EXPECT_NEAR(brightness(pulse, 3), 0.4, 1e-9);
    EXPECT_NEAR(brightness(pulse, 5), 1, 1e-9);
    EXPECT_NEAR(brightness(pulse, 7), 0.4, 1e-9);
    EXPECT_NEAR(brightness(pulse, 2), 0.7, 1e-3);
    double least = 1;
    for (int i = 0; i < 2000; ++i)
        least = std::min(least, brightness(pulse, 0.01 * i));
    EXPECT_NEAR(least, 0.4, 1e-3);
}

TEST(Brightness, isSlowAtBothEnds)
{
    const Pulse pulse{2, 0};
    // The cubic curve through (0.42, 0) and (0.58, 1) has gone 0.0197 of its way after a tenth, 0.1292 after a quarter.
    EXPECT_NEAR(brightness(pulse, 0.2), 1 - 0.6 * 0.0197, 0.003);
    EXPECT_NEAR(brightness(pulse, 0.5), 1 - 0.6 * 0.1292, 0.003);
    EXPECT_NEAR(brightness(pulse, 1.5), 0.4 + 0.6 * 0.1292, 0.003);
    EXPECT_NEAR(brightness(pulse, 1.8), 0.4 + 0.6 * 0.0197, 0.003);
}

TEST(StarField, keepsItsStarsInAnotherSize)
{
    StarField field;
    field.setSize({300, 200});
    const std::vector<Star> stars = field.stars();
    ASSERT_EQ(stars.size(), 140U);
    field.setSize({600, 200});
    EXPECT_EQ(field.stars(), stars);
}

TEST(StarField, beforeItTwinklesEveryStarIsAtFullOpacity)
{
    const StarField field;
    const std::vector<double> opacities = field.opacities();
    ASSERT_EQ(opacities.size(), field.stars().size());
    for (std::size_t i = 0; i < opacities.size(); ++i)
        EXPECT_EQ(opacities[i], field.stars()[i].a);
}

TEST(StarField, restsForWhoWantsNothingToMove)
{
    StarField field;
    field.setTwinkle(true);
    field.setRestful(true);
    EXPECT_FALSE(field.isPulsing());
    EXPECT_EQ(field.opacities().front(), field.stars().front().a);
}

TEST(StarField, twoFieldsHaveDifferentStars)
{
    EXPECT_NE(StarField().stars().front().x, StarField().stars().front().x);
}

} // namespace tolvenary::test

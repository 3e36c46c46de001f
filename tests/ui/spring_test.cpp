#include "tests/ui/oscillator.h"
#include "ui/spring.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <algorithm>

namespace tolvenary::test
{

namespace
{

class Motion : public testing::Test
{
  protected:
    Motion()
    {
        spring.setProperty("response", 0.2);
        spring.setProperty("dampingFraction", 0.7);
        spring.setTarget(1);
    }

    double after(int milliseconds)
    {
        spring.setCurrentTime(milliseconds);
        return spring.value();
    }

    Spring spring;
};

constexpr Oscillator sameOscillator{0.2, 0.7};

} // namespace

TEST_F(Motion, theFirstTargetIsTakenAtOnce)
{
    EXPECT_EQ(spring.value(), 1);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Stopped);
}

TEST_F(Motion, followsTheDampedOscillatorOfItsResponse)
{
    spring.setTarget(0.96);
    for (const int milliseconds : {10, 40, 80, 150})
        EXPECT_NEAR(after(milliseconds), 0.96 + stepped(sameOscillator, 0.04, 0, milliseconds / 1000.0), 1e-5)
            << milliseconds;
}

TEST_F(Motion, swingsPastItsTargetOnce)
{
    spring.setTarget(0.96);
    double least = 1;
    for (int t = 0; t < 300; ++t)
        least = std::min(least, after(t));
    // A damping fraction of 0.7 overshoots by exp(-pi 0.7 / sqrt(1 - 0.49)), 4.6 parts in a hundred of the way.
    EXPECT_NEAR(least, 0.96 - 0.04 * 0.046, 1e-4);
}

TEST_F(Motion, comesToRestAndStops)
{
    spring.setTarget(0.96);
    after(1000);
    EXPECT_EQ(spring.value(), 0.96);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Stopped);
}

TEST_F(Motion, aNewTargetTakesOverPlaceAndSpeed)
{
    spring.setTarget(0.96);
    const double place = after(30);
    const double speed = (after(31) - after(29)) / 0.002;
    after(30);
    spring.setTarget(1);
    EXPECT_DOUBLE_EQ(spring.value(), place);
    EXPECT_NEAR(after(20), 1 + stepped(sameOscillator, place - 1, speed, 0.020), 1e-4);
}

TEST_F(Motion, theSameTargetAgainMovesNothing)
{
    const QSignalSpy changes(&spring, &Spring::targetChanged);
    spring.setTarget(1);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Stopped);
}

TEST_F(Motion, forWhoWantsNothingToMoveTheChangeIsThereAtOnce)
{
    spring.setRestful(true);
    spring.setTarget(0.96);
    EXPECT_EQ(spring.value(), 0.96);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Stopped);
}

TEST_F(Motion, aWishForRestEndsAMotionAtItsTarget)
{
    spring.setTarget(0.96);
    ASSERT_GT(after(30), 0.961);
    spring.setRestful(true);
    EXPECT_EQ(spring.value(), 0.96);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Stopped);
    spring.setRestful(false);
    spring.setTarget(1);
    EXPECT_EQ(spring.state(), QAbstractAnimation::Running);
}

} // namespace tolvenary::test

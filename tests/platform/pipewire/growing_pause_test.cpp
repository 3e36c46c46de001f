#include "platform/pipewire/growing_pause.h"

#include <gtest/gtest.h>
#include <vector>

namespace tolvenary
{
namespace
{

using Time = GrowingPause::Time;

/// Begins a pause; how many whole seconds it takes until it is over.
int lengthOf(GrowingPause &pause, Time begin)
{
    pause.begin(begin);
    int seconds = 0;
    while (!pause.isOver(begin + Time(seconds)) && seconds < 100)
        ++seconds;
    return seconds;
}

TEST(GrowingPause, eachIsTwiceAsLongAsTheOneBeforeUpToSixteenSeconds)
{
    GrowingPause pause(Time(1));
    std::vector<int> lengths;
    for (int i = 0; i < 7; ++i)
        lengths.push_back(lengthOf(pause, Time(100 * i)));
    EXPECT_EQ(lengths, (std::vector{1, 2, 4, 8, 16, 16, 16}));
}

TEST(GrowingPause, theFirstOneIsAsShortAsWasAskedForAndSoIsTheOneAfterAReset)
{
    GrowingPause pause(Time(3));
    EXPECT_EQ(lengthOf(pause, Time(100)), 3);
    EXPECT_EQ(lengthOf(pause, Time(200)), 6);
    pause.reset();
    EXPECT_FALSE(pause.isUnderWay());
    EXPECT_EQ(lengthOf(pause, Time(300)), 3);
}

TEST(GrowingPause, itIsUnderWayUntilItIsEndedNoMatterWhetherItIsOver)
{
    GrowingPause pause(Time(1));
    EXPECT_FALSE(pause.isUnderWay());
    pause.begin(Time(100));
    EXPECT_TRUE(pause.isOver(Time(101)));
    EXPECT_TRUE(pause.isUnderWay());
    pause.end();
    EXPECT_FALSE(pause.isUnderWay());
}

TEST(GrowingPause, oneThatHasNotBegunOrHasBeenEndedIsNotOver)
{
    GrowingPause pause(Time(1));
    EXPECT_FALSE(pause.isOver(Time(1000)));
    pause.begin(Time(100));
    pause.end();
    EXPECT_FALSE(pause.isOver(Time(1000)));
}

TEST(GrowingPause, toEndOneDoesNotMakeTheNextOneShorter)
{
    GrowingPause pause(Time(1));
    lengthOf(pause, Time(100));
    pause.end();
    EXPECT_EQ(lengthOf(pause, Time(200)), 2);
}

} // namespace
} // namespace tolvenary

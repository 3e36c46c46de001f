#include "platform/pipewire/link_pauses.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

constexpr GraphLink theLink{40, 50};
constexpr GraphLink otherLink{41, 51};

/// A link that is made again as soon as it may be.
class LinkPausesTest : public testing::Test
{
  protected:
    LinkPauses m_pauses;
    double m_now = 100;

    LinkPauses::Time now() const { return LinkPauses::Time(m_now); }

    void make() { m_pauses.made(theLink, now()); }
    void lose() { m_pauses.lost(theLink, now()); }
    bool isOverAfter(double seconds) const { return m_pauses.isOver(theLink, now() + LinkPauses::Time(seconds)); }
    /// Takes the link away and makes it anew; how long that took.
    double pauseAfterLoss()
    {
        lose();
        double seconds = 0;
        while (!isOverAfter(seconds) && seconds < 100)
            seconds += 0.5;
        m_now += seconds;
        make();
        return seconds;
    }
};

TEST_F(LinkPausesTest, oneThatStandsIsNotMadeAgain)
{
    make();
    EXPECT_FALSE(isOverAfter(1000));
    EXPECT_FALSE(m_pauses.isAnyOver(now() + LinkPauses::Time(1000)));
}

TEST_F(LinkPausesTest, oneThatIsLostIsMadeAgainAfterASecond)
{
    make();
    lose();
    EXPECT_FALSE(isOverAfter(0.95));
    EXPECT_TRUE(isOverAfter(1));
    EXPECT_TRUE(m_pauses.isAnyOver(now() + LinkPauses::Time(1)));
}

TEST_F(LinkPausesTest, toBeToldOfOneLossTwiceDoesNotMakeItLonger)
{
    make();
    lose();
    m_now += 0.5;
    lose();
    EXPECT_TRUE(isOverAfter(0.5));
}

TEST_F(LinkPausesTest, oneThatComesBackOfItselfIsNotMadeAgain)
{
    make();
    lose();
    m_pauses.recovered(theLink);
    m_pauses.recovered(otherLink); // which never was lost
    EXPECT_FALSE(isOverAfter(1000));
    EXPECT_FALSE(m_pauses.isAnyOver(now() + LinkPauses::Time(1000)));
    m_now += 5;
    EXPECT_EQ(pauseAfterLoss(), 2) << "that it came back is no sign of peace";
}

TEST_F(LinkPausesTest, thePausesGrowToSixteenSecondsWhileSomebodyTakesItAway)
{
    make();
    std::vector<double> pauses;
    for (int i = 0; i < 6; ++i)
        pauses.push_back(pauseAfterLoss());
    EXPECT_EQ(pauses, (std::vector<double>{1, 2, 4, 8, 16, 16}));
}

TEST_F(LinkPausesTest, oneThatWasLeftAloneForLongIsMadeSoonAgain)
{
    make();
    for (int i = 0; i < 6; ++i)
        pauseAfterLoss();
    m_now += 30;
    EXPECT_EQ(pauseAfterLoss(), 1);
}

TEST_F(LinkPausesTest, eachLinkHasItsOwn)
{
    make();
    pauseAfterLoss();
    m_pauses.made(otherLink, now());
    m_pauses.lost(otherLink, now());
    EXPECT_FALSE(isOverAfter(1));
    EXPECT_TRUE(m_pauses.isOver(otherLink, now() + LinkPauses::Time(1)));
}

TEST_F(LinkPausesTest, whatIsNotWantedOrHasGoneIsForgotten)
{
    const auto later = now() + LinkPauses::Time(1);
    m_pauses.lost(theLink, now());
    m_pauses.lost(otherLink, now());
    m_pauses.keep({theLink});
    EXPECT_FALSE(m_pauses.isOver(otherLink, later));
    EXPECT_TRUE(m_pauses.isOver(theLink, later));
    m_pauses.forgetPort(theLink.inputPort);
    EXPECT_FALSE(m_pauses.isAnyOver(later));
}

} // namespace
} // namespace tolvenary

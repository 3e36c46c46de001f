#include "platform/pipewire/round_trips.h"

#include <gtest/gtest.h>
#include <string>

namespace tolvenary
{
namespace
{

/// A server that is asked, and answers when a test says so.
class RoundTripsTest : public testing::Test
{
  protected:
    int m_asked = 0;
    std::string m_ends; ///< "a+" when the one called a was answered, "a-" when it failed
    RoundTrips m_trips{[this] { return ++m_asked; }};

    static RoundTrips::Clock::time_point at(int second)
    {
        return RoundTrips::Clock::time_point(std::chrono::seconds(second));
    }
    void begin(const std::string &name, int deadline)
    {
        m_trips.begin(at(deadline), [this, name](bool answered) { m_ends += name + (answered ? "+" : "-"); });
    }
};

TEST_F(RoundTripsTest, oneEndsWithTheSecondAnswer)
{
    begin("a", 10);
    EXPECT_EQ(m_asked, 1);
    m_trips.answered(1);
    EXPECT_EQ(m_asked, 2);
    EXPECT_EQ(m_ends, "");
    m_trips.answered(2);
    EXPECT_EQ(m_ends, "a+");
    EXPECT_TRUE(m_trips.isEmpty());
}

TEST_F(RoundTripsTest, anAnswerToSomebodyElseEndsNone)
{
    begin("a", 10);
    m_trips.answered(77);
    m_trips.answered(77);
    EXPECT_EQ(m_asked, 1);
    EXPECT_EQ(m_ends, "");
}

TEST_F(RoundTripsTest, onlyThoseThatAreLateFail)
{
    begin("a", 10);
    begin("b", 12);
    EXPECT_FALSE(m_trips.isAnyLate(at(9)));
    m_trips.failLate(at(9));
    EXPECT_EQ(m_ends, "");
    EXPECT_TRUE(m_trips.isAnyLate(at(10)));
    m_trips.failLate(at(10));
    EXPECT_EQ(m_ends, "a-");
    EXPECT_EQ(m_trips.firstDeadline(), at(12));
}

TEST_F(RoundTripsTest, allEndInTheirOrder)
{
    begin("a", 10);
    begin("b", 10);
    m_trips.finishAll(false);
    begin("c", 10);
    m_trips.finishAll(true);
    EXPECT_EQ(m_ends, "a-b-c+");
}

TEST_F(RoundTripsTest, whoIsAnsweredMayAskAgain)
{
    m_trips.begin(at(10), [this](bool) { begin("b", 11); });
    m_trips.finishAll(true);
    EXPECT_FALSE(m_trips.isEmpty());
    EXPECT_EQ(m_ends, "");
    m_trips.finishAll(true);
    EXPECT_EQ(m_ends, "b+");
}

TEST_F(RoundTripsTest, aNewConnectionIsAskedOnceMore)
{
    begin("a", 10);
    m_trips.askAgain();
    m_trips.answered(1);
    EXPECT_EQ(m_asked, 2) << "that was the old one's answer";
    m_trips.answered(2);
    m_trips.answered(3);
    EXPECT_EQ(m_ends, "a+");
}

} // namespace
} // namespace tolvenary

#include "platform/pipewire/microphone_hold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

/// A server that links the microphone as soon as it is allowed to, unless the microphone hangs; looked at ten times a
/// second.
class MicrophoneHoldTest : public testing::Test
{
  protected:
    bool m_hangs = false;
    bool m_answers = true;
    MicrophoneHold m_hold;

    MicrophoneHoldTest() { m_hold.follow(40); }

    void look()
    {
        m_hold.observe(m_hangs && m_answers && !m_hold.isHolding(), MicrophoneHold::Time(m_tenths / 10.0));
        ++m_tenths;
    }
    void lookForSeconds(double seconds)
    {
        for (int i = 0; i < static_cast<int>(seconds * 10); ++i)
            look();
    }
    /// How many looks the present verdict lasts.
    int looksUntilChange()
    {
        const bool before = m_hold.isHolding();
        int looks = 0;
        for (; m_hold.isHolding() == before && looks < 10000; ++looks)
            look();
        return looks;
    }

  private:
    int m_tenths = 0;
};

TEST_F(MicrophoneHoldTest, oneThatIsLinkedIsNeverHeld)
{
    for (int i = 0; i < 100; ++i) {
        lookForSeconds(1);
        EXPECT_FALSE(m_hold.isHolding());
    }
}

TEST_F(MicrophoneHoldTest, oneThatIsLinkedInTimeIsNotHeld)
{
    m_hangs = true;
    lookForSeconds(1.9);
    m_hangs = false;
    look();
    m_hangs = true;
    lookForSeconds(1.9);
    EXPECT_FALSE(m_hold.isHolding());
}

TEST_F(MicrophoneHoldTest, oneThatIsNotLinkedInTwoSecondsIsHeldAndTriedAgainAfterTwo)
{
    m_hangs = true;
    lookForSeconds(2);
    EXPECT_FALSE(m_hold.isHolding());
    look();
    EXPECT_TRUE(m_hold.isHolding());
    lookForSeconds(1.9);
    EXPECT_TRUE(m_hold.isHolding());
    look();
    EXPECT_FALSE(m_hold.isHolding());
}

TEST_F(MicrophoneHoldTest, thePausesGrowToFourMinutesAndTheTriesDoNot)
{
    m_hangs = true;
    std::vector<int> tries;
    std::vector<int> pauses;
    for (int i = 0; i < 9; ++i) {
        tries.push_back(looksUntilChange());
        pauses.push_back(looksUntilChange());
    }
    EXPECT_THAT(tries, testing::Each(21));
    EXPECT_THAT(pauses, testing::ElementsAre(20, 40, 80, 160, 320, 640, 1280, 2560, 2560));
}

TEST_F(MicrophoneHoldTest, oneThatWasLinkedMeanwhileIsTriedSoonAgain)
{
    m_hangs = true;
    for (int i = 0; i < 6; ++i)
        looksUntilChange();
    m_hangs = false;
    lookForSeconds(1);
    m_hangs = true;
    looksUntilChange();
    EXPECT_EQ(looksUntilChange(), 20);
}

TEST_F(MicrophoneHoldTest, anotherIsNotHeldForTheOneBefore)
{
    m_hangs = true;
    lookForSeconds(3);
    ASSERT_TRUE(m_hold.isHolding());
    m_hold.follow(50);
    EXPECT_FALSE(m_hold.isHolding());
    lookForSeconds(2);
    EXPECT_FALSE(m_hold.isHolding()) << "its own two seconds";
}

TEST_F(MicrophoneHoldTest, theSameIsHeldOn)
{
    m_hangs = true;
    lookForSeconds(3);
    m_hold.follow(40);
    EXPECT_TRUE(m_hold.isHolding());
}

TEST_F(MicrophoneHoldTest, noneIsHeldForAServerThatDoesNotAnswer)
{
    m_hangs = true;
    lookForSeconds(1.5);
    m_answers = false;
    lookForSeconds(10);
    m_answers = true;
    lookForSeconds(1.5);
    EXPECT_FALSE(m_hold.isHolding());
}

} // namespace
} // namespace tolvenary

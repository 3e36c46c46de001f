#include "core/mix_feed.h"

#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

class MixFeedTest : public testing::Test
{
  protected:
    FrameCounts counts()
    {
        return m_counters->withLock([](const FrameCounts &current) { return current; });
    }

    AVAudioPCMBufferPool m_pool{4, 1024};
    std::shared_ptr<FrameCounters> m_counters = std::make_shared<FrameCounters>();
    MixFeed m_feed{m_counters};
};

} // namespace

TEST_F(MixFeedTest, eachSourceIsCountedForItself)
{
    m_feed.feedMic(makeBuffer(m_pool, {1, 2, 3}));
    m_feed.feedApp(makeBuffer(m_pool, {1, 2}));
    m_feed.feedMic(makeBuffer(m_pool, {1}));
    EXPECT_EQ(counts().mic, 4U);
    EXPECT_EQ(counts().app, 2U);
}

TEST_F(MixFeedTest, aCountGoesOnBeyond32Bits)
{
    constexpr std::uint64_t aDay = 48000ULL * 60 * 60 * 25;
    m_counters->withLock([](FrameCounts &current) { current = {aDay, aDay}; });
    m_feed.feedMic(makeBuffer(m_pool, {1, 2, 3}));
    m_feed.feedApp(makeBuffer(m_pool, {1, 2}));
    EXPECT_EQ(counts().mic, aDay + 3);
    EXPECT_EQ(counts().app, aDay + 2);
}

TEST_F(MixFeedTest, anEmptyBufferCountsNothingAndIsScheduledAllTheSame)
{
    m_feed.feedMic(m_pool.make(standardFormat(), 32));
    EXPECT_EQ(counts().mic, 0U);
    EXPECT_EQ(m_pool.freeSlots(), 3U) << "the player has it";
}

TEST_F(MixFeedTest, eachSourceIsPlayedByItsOwnPlayer)
{
    m_feed.feedMic(makeBuffer(m_pool, {1, 2}));
    m_feed.feedApp(makeBuffer(m_pool, {3, 4}));
    m_feed.micPlayer().play();
    m_feed.appPlayer().play();
    Samples mic(2);
    Samples app(2);
    m_feed.micPlayer().render(mic.block());
    m_feed.appPlayer().render(app.block());
    EXPECT_EQ(mic[0], (std::vector<float>{1, 2}));
    EXPECT_EQ(app[1], (std::vector<float>{3, 4}));
}

#include "platform/audio/av_audio_player_node.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using Floats = std::vector<float>;

class PlayerTest : public testing::Test
{
  protected:
    void schedule(const Floats &samples) { m_player.scheduleBuffer(makeBuffer(m_pool, samples), {}); }

    Floats render(std::uint32_t frames, std::size_t channel = 0)
    {
        Samples samples(frames);
        m_player.render(samples.block());
        return samples[channel];
    }

    AVAudioPCMBufferPool m_pool{512, 4096};
    AVAudioPlayerNode m_player;
};

} // namespace

TEST_F(PlayerTest, untilPlayItIsSilentAndTheQueueStands)
{
    schedule({1, 2});
    EXPECT_FALSE(m_player.isPlaying());
    EXPECT_EQ(render(2), (Floats{0, 0}));
    m_player.play();
    EXPECT_TRUE(m_player.isPlaying());
    EXPECT_EQ(render(2), (Floats{1, 2}));
}

TEST_F(PlayerTest, afterStopItIsSilentAndTheQueueStands)
{
    m_player.play();
    schedule({1, 2});
    m_player.stop();
    EXPECT_EQ(render(1), (Floats{0}));
    m_player.play();
    EXPECT_EQ(render(2), (Floats{1, 2}));
}

TEST_F(PlayerTest, buffersArePlayedWithoutAGapWhereverBlocksEnd)
{
    m_player.play();
    schedule({1, 2, 3});
    schedule({4});
    schedule({5, 6, 7, 8});
    EXPECT_EQ(render(2), (Floats{1, 2}));
    EXPECT_EQ(render(4), (Floats{3, 4, 5, 6}));
    EXPECT_EQ(render(2), (Floats{7, 8}));
}

TEST_F(PlayerTest, eachChannelIsPlayedOnItsOwnSide)
{
    m_player.play();
    auto buffer = makeBuffer(m_pool, {1, 2});
    buffer->floatChannel(1)[0] = -1;
    buffer->floatChannel(1)[1] = -2;
    m_player.scheduleBuffer(std::move(buffer), {});
    Samples samples(2);
    m_player.render(samples.block());
    EXPECT_EQ(samples[0], (Floats{1, 2}));
    EXPECT_EQ(samples[1], (Floats{-1, -2}));
}

TEST_F(PlayerTest, whereTheQueueIsShortTheRestIsSilence)
{
    m_player.play();
    schedule({1, 2});
    EXPECT_EQ(render(4), (Floats{1, 2, 0, 0}));
    EXPECT_EQ(render(2), (Floats{0, 0}));
}

TEST_F(PlayerTest, emptyBuffersAreNoGap)
{
    m_player.play();
    schedule({});
    schedule({1});
    schedule({});
    schedule({});
    schedule({2});
    schedule({});
    EXPECT_EQ(render(2), (Floats{1, 2}));
    EXPECT_EQ(m_pool.freeSlots(), 512U) << "all have gone back, the last empty one too";
}

TEST_F(PlayerTest, aPlayedBufferGoesBackToItsPool)
{
    m_player.play();
    schedule({1, 2});
    schedule({3, 4});
    render(3);
    EXPECT_EQ(m_pool.freeSlots(), 511U);
    render(1);
    EXPECT_EQ(m_pool.freeSlots(), 512U);
}

TEST_F(PlayerTest, theCompletionHandlerIsCalledOnceWhenTheBufferHasBeenPlayed)
{
    m_player.play();
    int calls = 0;
    m_player.scheduleBuffer(makeBuffer(m_pool, {1, 2}), [&] { ++calls; });
    render(1);
    EXPECT_EQ(calls, 0);
    render(1);
    EXPECT_EQ(calls, 1);
    render(1);
    EXPECT_EQ(calls, 1);
}

TEST_F(PlayerTest, aFullQueueDropsTheNewestBufferAndPlaysTheRest)
{
    m_player.play();
    for (int i = 0; i < 300; ++i)
        schedule({static_cast<float>(i)});
    EXPECT_EQ(m_pool.freeSlots(), 512U - 256);
    const Floats out = render(300);
    EXPECT_EQ(out[255], 255);
    EXPECT_EQ(out[256], 0);
}

TEST_F(PlayerTest, whatIsNoStereoFloatBufferIsDropped)
{
    m_player.play();
    m_player.scheduleBuffer(nullptr, {});
    m_player.scheduleBuffer(makeBuffer(m_pool, {1}, standardFormat(48000, 1)), {});
    m_player.scheduleBuffer(m_pool.make(pcmFormat(48000, 2, 16, kAudioFormatFlagIsSignedInteger), 4), {});
    EXPECT_EQ(m_pool.freeSlots(), 512U);
    EXPECT_EQ(render(1), (Floats{0}));
}

TEST_F(PlayerTest, resetDropsTheQueueAndTheBegunBuffer)
{
    m_player.play();
    schedule({1, 2});
    schedule({3});
    render(1);
    m_player.reset();
    EXPECT_EQ(m_pool.freeSlots(), 512U);
    schedule({7});
    EXPECT_EQ(render(1), (Floats{7}));
}

TEST_F(PlayerTest, whatResetDropsHasNotBeenPlayed)
{
    m_player.play();
    int calls = 0;
    m_player.scheduleBuffer(makeBuffer(m_pool, {1, 2}), [&] { ++calls; });
    m_player.scheduleBuffer(makeBuffer(m_pool, {3}), [&] { ++calls; });
    render(1);
    m_player.reset();
    render(3);
    EXPECT_EQ(calls, 0);
}

TEST_F(PlayerTest, anEmptyBlockChangesNothing)
{
    m_player.play();
    schedule({1});
    for (int i = 0; i < 20; ++i)
        render(0);
    EXPECT_EQ(render(1), (Floats{1}));
}

// A rising ramp through the queue: any lost, doubled or torn frame breaks it.
TEST_F(PlayerTest, oneThreadMayScheduleWhileAnotherRenders)
{
    constexpr int buffers = 20000;
    m_player.play();
    const std::jthread scheduling([&] {
        float next = 1;
        for (int i = 0; i < buffers;) {
            auto buffer = m_pool.freeSlots() > 400 ? m_pool.make(standardFormat(), 16) : nullptr;
            if (buffer == nullptr) {
                std::this_thread::yield();
                continue;
            }
            buffer->setFrameLength(16);
            for (std::uint32_t f = 0; f < 16; ++f)
                buffer->floatChannel(0)[f] = buffer->floatChannel(1)[f] = next + static_cast<float>(f);
            next += 16;
            m_player.scheduleBuffer(std::move(buffer), {});
            ++i;
        }
    });
    float expected = 1;
    while (expected < buffers * 16) {
        // Longer than all that can be queued, so that nothing is ever left over and taken for delay.
        const Floats out = render(112 * 16);
        for (const float sample : out) {
            if (sample == 0)
                continue;
            ASSERT_EQ(sample, expected);
            expected += 1;
        }
    }
}

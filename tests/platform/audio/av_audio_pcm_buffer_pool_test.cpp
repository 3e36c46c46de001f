#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

TEST(AVAudioPCMBufferPool, itMakesAsManyBuffersAsItHasSlotsAndThenNone)
{
    AVAudioPCMBufferPool pool(3, 800);
    std::vector<AVAudioPCMBufferPtr> made;
    std::set<const float *> places;
    for (int i = 0; i < 3; ++i) {
        made.push_back(pool.make(standardFormat(), 100));
        ASSERT_NE(made.back(), nullptr);
        places.insert(made.back()->floatChannel(0));
    }
    EXPECT_EQ(places.size(), 3U);
    EXPECT_EQ(pool.freeSlots(), 0U);
    EXPECT_EQ(pool.make(standardFormat(), 100), nullptr);
}

TEST(AVAudioPCMBufferPool, aDroppedBufferCanBeMadeAgain)
{
    AVAudioPCMBufferPool pool(1, 800);
    auto buffer = pool.make(standardFormat(), 100);
    buffer->setFrameLength(100);
    buffer.reset();
    EXPECT_EQ(pool.freeSlots(), 1U);
    const auto again = pool.make(standardFormat(44100, 1), 50);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->frameLength(), 0U);
    EXPECT_EQ(again->format(), standardFormat(44100, 1));
}

TEST(AVAudioPCMBufferPool, aSlotThatIsAskedForTheSameAgainIsEmptyAgain)
{
    AVAudioPCMBufferPool pool(1, 800);
    auto buffer = pool.make(standardFormat(), 100);
    const float *const place = buffer->floatChannel(1);
    buffer->setFrameLength(100);
    buffer.reset();
    const auto again = pool.make(standardFormat(), 100);
    EXPECT_EQ(again->frameLength(), 0U);
    EXPECT_EQ(again->audioBufferList()[1].mDataByteSize, 0U);
    EXPECT_EQ(again->floatChannel(1), place);
}

TEST(AVAudioPCMBufferPool, aSlotThatIsAskedForMoreFramesHasItsChannelsElsewhere)
{
    AVAudioPCMBufferPool pool(1, 800);
    pool.make(standardFormat(), 10).reset();
    const auto longer = pool.make(standardFormat(), 100);
    longer->setFrameLength(100);
    EXPECT_EQ(longer->frameLength(), 100U);
    EXPECT_EQ(longer->floatChannel(1) - longer->floatChannel(0), 100);
}

TEST(AVAudioPCMBufferPool, aBufferThatDoesNotFitInASlotIsNotMade)
{
    AVAudioPCMBufferPool pool(1, 1024);
    EXPECT_EQ(pool.make(standardFormat(), 129), nullptr);
    EXPECT_EQ(pool.make(standardFormat(), 0xFFFFFFFF), nullptr);
    EXPECT_EQ(pool.make(standardFormat(48000, 65), 1), nullptr);
    EXPECT_EQ(pool.freeSlots(), 1U);
    EXPECT_NE(pool.make(standardFormat(), 128), nullptr);
}

TEST(AVAudioPCMBufferPool, aBufferOfNoFramesIsABuffer)
{
    AVAudioPCMBufferPool pool(1, 64);
    const auto buffer = pool.make(standardFormat(), 0);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->frameCapacity(), 0U);
}

TEST(AVAudioPCMBufferPool, aPoolWithoutSlotsMakesNothing)
{
    AVAudioPCMBufferPool pool(0, 64);
    EXPECT_EQ(pool.make(standardFormat(), 1), nullptr);
}

// Each thread marks what it holds and looks for the marks of others: a slot handed out twice would show. Two are held
// at once and given back in the order of their making, so that the free list changes behind a thread's back and then
// looks as before.
TEST(AVAudioPCMBufferPool, noTwoThreadsEverHoldTheSameBuffer)
{
    constexpr std::uint32_t frames = 16;
    AVAudioPCMBufferPool pool(3, std::size_t{frames} * 8);
    std::atomic<int> torn{0};
    std::atomic<std::uint64_t> made{0};
    const auto mark = [&](const AVAudioPCMBufferPtr &buffer, float value) {
        if (buffer != nullptr)
            std::fill_n(buffer->floatChannel(0), frames, value);
    };
    const auto check = [&](const AVAudioPCMBufferPtr &buffer, float value) {
        if (buffer == nullptr)
            return;
        ++made;
        for (std::uint32_t i = 0; i < frames; ++i)
            torn += buffer->floatChannel(0)[i] != value ? 1 : 0;
    };
    const auto work = [&](float value) {
        for (int round = 0; round < 100000; ++round) {
            auto first = pool.make(standardFormat(), frames);
            auto second = pool.make(standardFormat(), frames);
            mark(first, value);
            mark(second, value);
            check(first, value);
            first.reset();
            check(second, value);
        }
    };
    {
        const std::jthread first(work, 1.0F);
        const std::jthread second(work, 2.0F);
        const std::jthread third(work, 3.0F);
        work(4.0F);
    }
    EXPECT_EQ(torn, 0);
    EXPECT_GT(made, 100000U);
    EXPECT_EQ(pool.freeSlots(), 3U);
}

#include "platform/pipewire/sample_queue.h"

#include "tests/platform/audio/allocation_counter.h"
#include "tests/platform/audio/test_blocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;

namespace
{

std::vector<float> channelOf(const SampleBlock &block, std::uint32_t channel)
{
    const float *samples = std::as_const(*block.samples).floatChannel(channel);
    return {samples, samples + block.samples->frameLength()};
}

/// `frames` frames that count up from `first` on the left and down from -`first` on the right.
Samples countedSamples(std::uint32_t frames, float first = 0)
{
    Samples samples(frames);
    std::iota(samples[0].begin(), samples[0].end(), first);
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[1][i] = -samples[0][i];
    return samples;
}

} // namespace

TEST(SampleQueue, whatGoesInComesOutInItsFormat)
{
    SampleQueue queue;
    EXPECT_EQ(queue.size(), 0U);
    queue.push(countedSamples(3, 1).constBlock(), 44100);
    ASSERT_EQ(queue.size(), 1U);
    const auto block = queue.pop();
    EXPECT_EQ(block->samples->format(), standardFormat(44100));
    EXPECT_THAT(channelOf(*block, 0), ElementsAre(1, 2, 3));
    EXPECT_THAT(channelOf(*block, 1), ElementsAre(-1, -2, -3));
    EXPECT_EQ(queue.size(), 0U);
}

TEST(SampleQueue, aChangeOfFormatTravelsWithTheSamples)
{
    SampleQueue queue;
    queue.push(countedSamples(2).constBlock(), 48000);
    const Samples mono(2, 1);
    queue.push(mono.constBlock(), 44100);
    EXPECT_EQ(queue.pop()->samples->format(), standardFormat(48000));
    EXPECT_EQ(queue.pop()->samples->format(), standardFormat(44100, 1));
}

TEST(SampleQueue, aLongCycleBecomesBlocksThatFollowEachOther)
{
    SampleQueue queue;
    queue.push(countedSamples(2500).constBlock(), 48000);
    ASSERT_EQ(queue.size(), 3U);
    float next = 0;
    for (const std::uint32_t frames : {1024U, 1024U, 452U}) {
        const auto block = queue.pop();
        ASSERT_EQ(block->samples->frameLength(), frames);
        for (const float sample : channelOf(*block, 0))
            ASSERT_EQ(sample, next++);
    }
}

TEST(SampleQueue, eachChannelBeginsAtAMultipleOf16WhateverTheLength)
{
    SampleQueue queue;
    for (const std::uint32_t frames : {1U, 7U, 1023U, 1025U})
        queue.push(countedSamples(frames).constBlock(), 48000);
    while (queue.size() > 0) {
        const auto block = queue.pop();
        for (std::uint32_t c = 0; c < 2; ++c)
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block->samples->floatChannel(c)) % 16, 0U);
    }
}

TEST(SampleQueue, whatFindsNoRoomIsDroppedAndTheOldestStays)
{
    SampleQueue queue;
    for (std::uint32_t i = 0; i < SampleQueue::blocks + 10; ++i)
        queue.push(countedSamples(1, static_cast<float>(i)).constBlock(), 48000);
    EXPECT_EQ(queue.size(), SampleQueue::blocks);
    EXPECT_THAT(channelOf(*queue.pop(), 0), ElementsAre(0));
    queue.push(countedSamples(1, 1000).constBlock(), 48000);
    EXPECT_EQ(queue.size(), SampleQueue::blocks) << "a block that was given back is used again";
}

TEST(SampleQueue, aRateThatIsNoneIsDropped)
{
    SampleQueue queue;
    queue.push(countedSamples(3).constBlock(), 0);
    EXPECT_EQ(queue.size(), 0U);
}

TEST(SampleQueue, whatIsClearedDoesNotComeOutAndItsRoomIsFree)
{
    SampleQueue queue;
    for (std::uint32_t i = 0; i < SampleQueue::blocks; ++i)
        queue.push(countedSamples(1).constBlock(), 48000);
    queue.clear();
    EXPECT_EQ(queue.size(), 0U);
    queue.push(countedSamples(1, 7).constBlock(), 48000);
    ASSERT_EQ(queue.size(), 1U);
    EXPECT_THAT(channelOf(*queue.pop(), 0), ElementsAre(7));
}

TEST(SampleQueue, aBlockMayBeKeptForLongerThanTheQueue)
{
    std::shared_ptr<const SampleBlock> kept;
    {
        SampleQueue queue;
        queue.push(countedSamples(3, 1).constBlock(), 48000);
        kept = queue.pop();
    }
    EXPECT_THAT(channelOf(*kept, 0), ElementsAre(1, 2, 3));
}

TEST(SampleQueue, toPushNeverTouchesTheHeap)
{
    SampleQueue queue;
    const Samples samples = countedSamples(1500);
    std::uint64_t touched = 0;
    for (int i = 0; i < 200; ++i) { // twice until the queue is full
        const AllocationCounter counter;
        queue.push(samples.constBlock(), 44100);
        touched += counter.allocations() + counter.frees();
    }
    EXPECT_EQ(touched, 0U);
}

// Each frame carries its number on both sides, so that a half-written block, or one used again too early, would be
// seen.
TEST(SampleQueue, twoThreadsExchangeEveryFrameWholeAndInOrder)
{
    constexpr std::uint32_t cycles = 20000;
    constexpr std::uint32_t frames = 96;
    SampleQueue queue;
    std::atomic<std::uint32_t> taken = 0;
    const std::jthread writing([&] {
        for (std::uint32_t i = 0; i < cycles; ++i) {
            const Samples samples = countedSamples(frames, static_cast<float>(i % 1000 * frames));
            while (i - taken >= SampleQueue::blocks)
                std::this_thread::yield();
            queue.push(samples.constBlock(), 48000);
        }
    });
    for (std::uint32_t i = 0; i < cycles;) {
        if (queue.size() == 0) {
            std::this_thread::yield();
            continue;
        }
        {
            const auto block = queue.pop();
            ASSERT_EQ(block->samples->frameLength(), frames);
            const auto left = channelOf(*block, 0);
            const auto right = channelOf(*block, 1);
            for (std::uint32_t f = 0; f < frames; ++f) {
                ASSERT_EQ(left[f], static_cast<float>(i % 1000 * frames + f));
                ASSERT_EQ(right[f], -left[f]);
            }
        }
        taken = ++i;
    }
    EXPECT_EQ(queue.size(), 0U);
}

#include "tests/session/callback_watch.h"
#include "tests/session/mix_bed.h"

#include <gtest/gtest.h>
#include <mutex>

namespace tolvenary::session
{

TEST(CallbackWatch, countsWhatItIsThereFor)
{
    beginCounting();
    {
        const PretendedCallback callback;
        std::mutex first;
        std::mutex second;
        for (std::mutex *mutex : {&first, &second, &first})
            const std::scoped_lock lock(*mutex);
        const auto memory = std::make_unique<std::vector<int>>(10);
        EXPECT_EQ(memory->size(), 10U);
        std::this_thread::sleep_for(std::chrono::nanoseconds(1));
    }
    const std::vector<int> notCounted(10);
    const CallbackCounts counts = endCounting();
    EXPECT_EQ(counts.callbacks, 1U);
    EXPECT_EQ(counts.allocations, 2U);
    EXPECT_EQ(counts.frees, 2U);
    EXPECT_EQ(counts.locks, 3U);
    EXPECT_EQ(counts.mutexes, 2U);
}

/// Frames a second of the graph: away from 48000 the converters are in the callbacks too.
class RealTime : public testing::TestWithParam<int>
{
};

TEST_P(RealTime, theCallbacksNeitherAllocateNorFreeNorLockNorCallTheSystem)
{
    MixBedOptions options;
    options.configuration.rate = GetParam();
    MixBed bed(options);
    bed.run();
    bed.waitFor([] { return false; }, std::chrono::seconds(1));
    beginCounting();
    bed.waitFor([] { return false; }, std::chrono::seconds(10));
    const CallbackCounts counts = endCounting();
    std::printf("  %d Hz, 10 seconds, %lu callbacks: %lu allocations, %lu frees, %lu locks of %zu mutex (the frame "
                "counters'), %lu waits, %lu system calls\n",
                GetParam(), counts.callbacks, counts.allocations, counts.frees, counts.locks, counts.mutexes,
                counts.waits, counts.systemCalls);
    EXPECT_GT(counts.callbacks, 1000U);
    EXPECT_EQ(counts.allocations, 0U);
    EXPECT_EQ(counts.frees, 0U);
    EXPECT_EQ(counts.mutexes, 1U) << "more than the frame counters' one is locked";
    EXPECT_LE(counts.locks, counts.callbacks * 2 / 3 + 2) << "one lock a captured block";
    EXPECT_EQ(counts.waits, 0U);
    EXPECT_EQ(counts.systemCalls, 0U);
}

INSTANTIATE_TEST_SUITE_P(Graph, RealTime, testing::Values(48000, 44100),
                         [](const auto &rate) { return std::to_string(rate.param); });

} // namespace tolvenary::session

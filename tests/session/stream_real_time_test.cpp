#include "tests/session/callback_watch.h"
#include "tests/session/stream_ears.h"

#include <gtest/gtest.h>

namespace tolvenary::session
{

/// Frames in a cycle: what is handed over in one block, and in several.
class StreamRealTime : public testing::TestWithParam<int>
{
};

TEST_P(StreamRealTime, toHandOverToTheStreamsQueueNeitherAllocatesNorFreesNorLocksNorCallsTheSystem)
{
    MixBedOptions options{.device = false, .microphone = false};
    options.configuration.quantum = GetParam();
    MixBed bed(options);
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ears.listen(24000);
    beginCounting();
    const std::size_t heard = ears.listen(240000)[0].size();
    const CallbackCounts counts = endCounting();
    std::printf("  %zu frames in %lu callbacks of %d: %lu allocations, %lu frees, %lu locks, %lu waits, %lu system "
                "calls\n",
                heard, counts.callbacks, GetParam(), counts.allocations, counts.frees, counts.locks, counts.waits,
                counts.systemCalls);
    EXPECT_GT(counts.callbacks, 240000U / static_cast<unsigned>(GetParam()) / 2);
    EXPECT_EQ(counts.allocations, 0U);
    EXPECT_EQ(counts.frees, 0U);
    EXPECT_EQ(counts.locks, 0U);
    EXPECT_EQ(counts.waits, 0U);
    EXPECT_EQ(counts.systemCalls, 0U);
}

INSTANTIATE_TEST_SUITE_P(Quantum, StreamRealTime, testing::Values(128, 1024, 2048),
                         [](const auto &quantum) { return std::to_string(quantum.param); });

} // namespace tolvenary::session

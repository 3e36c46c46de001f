#include "tests/session/support/busy_loops.h"
#include "tests/session/tools/soak_stage.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Longer for who wants to meet what is rare.
double secondsWanted()
{
    return std::getenv("TOLVENARY_LONG_TESTS") != nullptr ? 300 : 10;
}

} // namespace

TEST(Load, withEveryProcessorBusyThereIsNoGapOfOurs)
{
    SoakStage stage(TOLVENARY_MIX_RUNNER);
    const std::string threads = stage.realTimeThreads();
    if (threads.empty())
        GTEST_SKIP() << "the session allows no real-time priority: whoever is busy may be heard";
    const BusyLoops load;
    SteadyGaps gaps;
    do {
        gaps += stage.listen();
    } while (stage.heardSeconds() < secondsWanted());
    std::printf(
        "  %zu busy loops, the data thread %s, %.1f s heard: %zu gaps of ours, %zu of a source, %zu of %zu xruns\n",
        load.count(), threads.c_str(), stage.heardSeconds(), gaps.ours, gaps.sources, gaps.xruns, gaps.jumps);
    EXPECT_EQ(gaps.ours, 0U) << (gaps.accounts.empty() ? "" : gaps.accounts.front());
}

} // namespace tolvenary::session

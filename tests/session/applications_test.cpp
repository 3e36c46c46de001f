#include "tests/session/mix_bed.h"
#include "tests/session/support/steady_gaps.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

namespace tolvenary::session
{

/// Each of them plays a little that is steady, so that the device has the sum if it hears all of them, and a step where
/// it loses as few as a quarter.
TEST(Applications, twoHundredAtOnceAreAllHeardWithoutAGap)
{
    constexpr double each = 0.002;
    constexpr float step = 0.1F;
    MixBedOptions options{.voice = {"MONO=steady:0.25"}, .urgent = true};
    options.player.channels = {"FL=steady:0.3", "FR=steady:0.3"};
    MixBed bed(options);
    bed.run();
    const auto many = bed.session().start(
        {TOLVENARY_PLAYER, "--name", "one-of-many", "--streams", "199", "FL=steady:0.002", "FR=steady:0.002"});
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FL"), bed.monitor("FL")});
    constexpr double wanted = 0.25 + 0.3 + 199 * each;
    double level = 0;
    const auto areAllHeard = [&] {
        const Samples heard = bed.record(recorder, 24000).tracks[2];
        level = std::accumulate(heard.begin(), heard.end(), 0.0) / static_cast<double>(heard.size());
        return std::abs(level - wanted) < each / 4;
    };
    ASSERT_TRUE(bed.waitFor(areAllHeard, std::chrono::seconds(60))) << level << " of " << wanted;
    const SteadyGaps gaps = findSteadyGaps(bed.record(recorder, 240000), 2, step);
    std::printf("  %zu gaps of ours, %zu of a source, %zu of %zu jumps of the clock\n", gaps.ours, gaps.sources,
                gaps.xruns, gaps.jumps);
    EXPECT_EQ(gaps.ours, 0U);
    // Again and again: a machine that is late once spoils a level of half a second.
    EXPECT_TRUE(bed.waitFor(areAllHeard)) << level << " of " << wanted;
    EXPECT_EQ(bed.status().substr(0, 7), "Running");
}

} // namespace tolvenary::session

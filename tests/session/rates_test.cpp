#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"
#include "tests/session/support/tone_level.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace tolvenary::session
{

/// Frames a second of the graph. At 48000 the mix has nothing to convert; elsewhere it converts both ways.
class Rates : public testing::TestWithParam<int>
{
};

TEST_P(Rates, thereIsNoGapAndNoStep)
{
    MixBedOptions options;
    options.configuration.rate = GetParam();
    options.player.rate = GetParam();
    MixBed bed(options);
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    bed.record(recorder, 24000);
    // A machine that wakes up late breaks the players that the test listens to as well: listen again, while it does.
    Recording recording = bed.record(recorder, static_cast<std::size_t>(GetParam()) * 8);
    for (int attempt = 0; attempt < 4 && recording.jumps() > 0; ++attempt)
        recording = bed.record(recorder, static_cast<std::size_t>(GetParam()) * 8);
    ASSERT_EQ(recording.rate, GetParam());
    const Samples heard = recording.part(0, recording.longestUnbroken());
    ASSERT_GT(heard.size(), recording.frames() / 4) << recording.jumps() << " jumps of the clock";
    const auto levels = toneAmplitudes(heard, recording.rate, {997, 1499});
    const double residue = residueBesideTones(heard, recording.rate, {997, 1499});
    const double steepest = 2 * std::numbers::pi * (997 * 0.25 + 1499 * 0.2) / recording.rate;
    std::printf("  %.0f Hz: microphone %+.3f dB, application %+.3f dB, residue %.1f dB, %zu jumps of the clock\n",
                recording.rate, decibels(levels[0] / 0.25), decibels(levels[1] / 0.2), decibels(residue),
                recording.jumps());
    EXPECT_LT(std::abs(decibels(levels[0] / 0.25)), 0.1);
    EXPECT_LT(std::abs(decibels(levels[1] / 0.2)), 0.1);
    EXPECT_LT(decibels(residue), -80) << "a gap or a click lies in there";
    EXPECT_LT(static_cast<double>(largestStep(heard)), 1.02 * steepest);
}

INSTANTIATE_TEST_SUITE_P(Graph, Rates, testing::Values(44100, 48000, 96000),
                         [](const auto &rate) { return std::to_string(rate.param); });

} // namespace tolvenary::session

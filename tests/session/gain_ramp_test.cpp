#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"

#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr float level = 0.25F;
constexpr int quantum = 1024;

/// The largest step in the device while the gain goes from 0 to 2 and back, several times. The sound itself is
/// constant: every step is the gain's.
float largestStepWhileMoving(MixBed &bed, const char *gain)
{
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    bed.record(recorder, 4096);
    recorder.begin(48000);
    for (int i = 0; !recorder.isDone(); ++i) {
        bed.mix().setProperty(gain, i % 2 == 0 ? 2.0F : 0.0F);
        bed.waitFor([&] { return recorder.isDone(); }, std::chrono::milliseconds(100));
    }
    const Recording recording = recorder.finish();
    const Samples heard = recording.part(0, recording.longestUnbroken());
    EXPECT_NEAR(*std::max_element(heard.begin(), heard.end()), 2 * level, 1e-4) << "the gain never arrived";
    EXPECT_NEAR(*std::min_element(heard.begin(), heard.end()), 0, 1e-4) << "the gain never arrived";
    return largestStep(heard);
}

void expectRamp(const char *gain, const MixBedOptions &options)
{
    MixBed bed(options);
    bed.run();
    const float step = largestStepWhileMoving(bed, gain);
    const float ramp = 2 * level / static_cast<float>(quantum);
    std::printf("  %s: largest step %.6f, one ramp step %.6f\n", gain, static_cast<double>(step),
                static_cast<double>(ramp));
    EXPECT_LT(step, 1.01F * ramp);
}

} // namespace

TEST(GainRamp, aMovingMicrophoneGainMakesNoClick)
{
    expectRamp("micGain", {.voice = {"MONO=steady:0.25"}, .player = {.channels = {"FL=silence", "FR=silence"}}});
}

TEST(GainRamp, aMovingApplicationGainMakesNoClick)
{
    expectRamp("appGain", {.voice = {"MONO=silence"}, .player = {.channels = {"FL=steady:0.25", "FR=steady:0.25"}}});
}

} // namespace tolvenary::session

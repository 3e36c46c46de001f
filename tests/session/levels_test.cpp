#include "tests/session/mix_bed.h"
#include "tests/session/support/source_fit.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr double microphoneTone = 997;
constexpr double leftTone = 1499;
constexpr double rightTone = 2003;

/// Tracks in this order.
enum Track { microphone, left, right, deviceLeft, deviceRight };

std::vector<std::string> allPorts(const MixBed &bed)
{
    return {"microphone:capture_MONO", applicationPort("player", "FL"), applicationPort("player", "FR"),
            bed.monitor("FL"), bed.monitor("FR")};
}

Application stereoPlayer(const std::string &amplitude)
{
    return {.channels = {"FL=tone:1499:" + amplitude, "FR=tone:2003:" + amplitude}};
}

/// How far the tone's level in the device is from source times gain, in decibels; for gain 0 its level in the device.
double levelError(const Recording &recording, Stretch stretch, Track source, Track device, double tone, double gain)
{
    const std::vector<double> tones = {microphoneTone, leftTone, rightTone};
    const auto index = static_cast<std::size_t>(std::find(tones.begin(), tones.end(), tone) - tones.begin());
    const double played = toneAmplitudes(recording.part(source, stretch), recording.rate, tones)[index];
    const double heard = toneAmplitudes(recording.part(device, stretch), recording.rate, tones)[index];
    return gain == 0 ? decibels(heard / played) : decibels(heard / (played * gain));
}

struct LevelError {
    const char *what;
    double gain;
    double decibels;

    bool isSmall() const { return gain == 0 ? decibels < -100 : std::abs(decibels) < 0.1; }
};

std::vector<LevelError> levelErrors(const Recording &recording, double mic, double app)
{
    const Stretch whole = recording.longestUnbroken();
    return {
        {"microphone, left", mic, levelError(recording, whole, microphone, deviceLeft, microphoneTone, mic)},
        {"microphone, right", mic, levelError(recording, whole, microphone, deviceRight, microphoneTone, mic)},
        {"application, left", app, levelError(recording, whole, left, deviceLeft, leftTone, app)},
        {"application, right", app, levelError(recording, whole, right, deviceRight, rightTone, app)},
    };
}

/// What a late wake-up of the machine left behind the players skip some cycles later, and a tone that is skipped in has
/// no level: it is listened to again. A wrong gain stays wrong.
void expectLevels(MixBed &bed, Recorder &recorder, float micGain, float appGain)
{
    bed.mix().setProperty("micGain", micGain);
    bed.mix().setProperty("appGain", appGain);
    bed.record(recorder, 4096); // the ramp, and whatever was on its way
    bool areAllSmall = false;
    for (int attempt = 0; attempt < 8 && !areAllSmall; ++attempt) {
        const Recording recording = bed.record(recorder, 24000);
        const auto errors = levelErrors(recording, static_cast<double>(micGain), static_cast<double>(appGain));
        for (const LevelError &error : errors)
            std::printf("  %-18s gain %.2f: %+.4f dB\n", error.what, error.gain, error.decibels);
        areAllSmall = recording.longestUnbroken().length() > 8000 && std::ranges::all_of(errors, &LevelError::isSmall);
    }
    EXPECT_TRUE(areAllSmall) << "gains " << micGain << " and " << appGain;
}

std::string kindName(const testing::TestParamInfo<DeviceKind> &kind)
{
    constexpr std::array names = {"pair", "nullSink", "duplex"};
    return names.at(static_cast<std::size_t>(kind.param));
}

} // namespace

class Levels : public testing::TestWithParam<DeviceKind>
{
};

TEST_P(Levels, bothSourcesAreInTheDeviceAtTheirGains)
{
    MixBed bed({.deviceKind = GetParam(), .player = stereoPlayer("0.2")});
    bed.run();
    Recorder recorder(bed.session(), allPorts(bed));
    const std::vector<std::pair<float, float>> gains = {{1, 1}, {0, 1}, {0.35F, 2}, {2, 0.35F}, {1, 0}, {2, 2}};
    for (const auto &[micGain, appGain] : gains)
        expectLevels(bed, recorder, micGain, appGain);
}

INSTANTIATE_TEST_SUITE_P(Devices, Levels, testing::Values(DeviceKind::pair, DeviceKind::nullSink, DeviceKind::duplex),
                         kindName);

TEST(Sum, isLinearFarAboveFullScale)
{
    MixBed bed({.voice = {"MONO=tone:997:0.9"}, .player = stereoPlayer("0.9")});
    bed.run();
    bed.mix().setProperty("micGain", 2.0F);
    bed.mix().setProperty("appGain", 2.0F);
    Recorder recorder(bed.session(), allPorts(bed));
    bed.record(recorder, 4096);
    SourceFit fit;
    float peak = 0;
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = bed.record(recorder, 48000);
        const Stretch whole = recording.longestUnbroken();
        const Samples mix = recording.part(deviceLeft, whole);
        fit = fitSources(mix, {recording.part(microphone, whole), recording.part(left, whole)});
        peak = *std::max_element(mix.begin(), mix.end());
        std::printf("  peak %.3f, gains %.6f and %.6f, largest residue %.2g\n", static_cast<double>(peak), fit.gains[0],
                    fit.gains[1], fit.largestResidue);
        if (fit.gaps.empty() && fit.largestResidue < 1e-5)
            break;
    }
    EXPECT_GT(peak, 3.5F);
    EXPECT_NEAR(fit.gains[0], 2, 1e-5);
    EXPECT_NEAR(fit.gains[1], 2, 1e-5);
    EXPECT_LT(fit.largestResidue, 1e-5);
    EXPECT_THAT(fit.gaps, testing::IsEmpty());
}

} // namespace tolvenary::session

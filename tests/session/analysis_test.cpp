#include "tests/session/support/clicks.h"
#include "tests/session/support/signal_source.h"
#include "tests/session/support/sine_fit.h"
#include "tests/session/support/source_fit.h"
#include "tests/session/support/steady_gaps.h"
#include "tests/session/support/tone_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double rate = 48000;

Samples render(const std::string &description, std::size_t frames, std::size_t from = 0)
{
    const auto source = SignalSource::parse(description);
    Samples samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = source->at(from + i, rate);
    return samples;
}

Samples sum(const Samples &a, float gainA, const Samples &b, float gainB)
{
    Samples result(a.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        result[i] = gainA * a[i] + gainB * b[i];
    return result;
}

} // namespace

TEST(ToneLevel, twoTonesAreToldApart)
{
    const Samples both = sum(render("tone:997:0.5", 9600), 1, render("tone:1499:0.02", 9600), 1);
    EXPECT_THAT(toneAmplitudes(both, rate, {997, 1499}), ElementsAre(DoubleNear(0.5, 1e-5), DoubleNear(0.02, 1e-5)));
    EXPECT_LT(residueBesideTones(both, rate, {997, 1499}), 1e-6);
    EXPECT_NEAR(residueBesideTones(both, rate, {997}), 0.02 / std::sqrt(2.0), 1e-3);
}

TEST(ToneLevel, anAbsentToneHasNoLevel)
{
    EXPECT_LT(decibels(toneAmplitudes(render("tone:997:0.5", 9600), rate, {1499, 997}).front()), -100);
    EXPECT_EQ(decibels(0), -200);
}

TEST(SineFit, ofPureSinesNothingIsLeft)
{
    const Samples both = sum(render("tone:997:0.5", 12000, 77), 1, render("tone:1499:0.02", 12000), 1);
    const SineResidue residue = SineFit(rate, {997, 1499}, 12000).residue(both);
    EXPECT_LT(decibels(residue.noise), -140);
    EXPECT_LT(decibels(residue.peak), -120);
    EXPECT_NEAR(residue.level, 0.5 / std::sqrt(2.0), 1e-3);
}

TEST(SineFit, aClickIsAPeakAndARepeatIsNoise)
{
    const SineFit fit(rate, {997}, 12000);
    Samples click = render("tone:997:0.5", 12000);
    click[6000] += 0.001F;
    EXPECT_NEAR(decibels(fit.residue(click).peak), decibels(0.001 * std::sqrt(2.0) / 0.5), 0.1);
    Samples repeated = render("tone:997:0.5", 12000);
    std::copy_backward(repeated.begin() + 5988, repeated.end() - 1, repeated.end());
    EXPECT_GT(decibels(fit.residue(repeated).noise), -30);
}

TEST(SineFit, silenceIsNoSine)
{
    EXPECT_EQ(SineFit(rate, {997}, 4800).residue(Samples(4800, 0.0F)).noise, 1);
}

TEST(SourceFit, findsTheGainOfEachSource)
{
    const Samples mic = render("tone:440:0.3", 9600);
    const Samples app = render("tune:0.3", 9600, 48000);
    const SourceFit fit = fitSources(sum(mic, 0.35F, app, 2.0F), {mic, app});
    EXPECT_THAT(fit.gains, ElementsAre(DoubleNear(0.35, 1e-6), DoubleNear(2.0, 1e-6)));
    EXPECT_LT(fit.largestResidue, 1e-6);
    EXPECT_THAT(fit.gaps, IsEmpty());
}

TEST(SourceFit, aSilentSourceHasGainZero)
{
    const Samples mic = render("tone:440:0.3", 4800);
    const Samples nothing(4800, 0.0F);
    EXPECT_THAT(fitSources(mic, {nothing, mic}).gains, ElementsAre(0.0, DoubleNear(1.0, 1e-9)));
}

TEST(SourceFit, aHoleInTheMixIsAGap)
{
    const Samples mic = render("tone:440:0.3", 9600);
    Samples mix = mic;
    std::fill(mix.begin() + 4000, mix.begin() + 4256, 0.0F);
    const auto gaps = fitSources(mix, {mic}).gaps;
    ASSERT_EQ(gaps.size(), 1U);
    EXPECT_NEAR(static_cast<double>(gaps[0].begin), 4000, 1);
    EXPECT_NEAR(static_cast<double>(gaps[0].length()), 256, 2);
}

TEST(SourceFit, silenceWhereNothingPlaysIsNoGap)
{
    EXPECT_THAT(findGaps(Samples(4800, 0.0F), Samples(4800, 0.0F)), IsEmpty());
}

TEST(SourceFit, aLateSourceIsFoundWhereItIs)
{
    const Samples app = render("tune:0.5", 24000, 96000);
    Samples mix(app.size(), 0.0F);
    std::copy(app.begin(), app.end() - 37, mix.begin() + 37);
    EXPECT_EQ(delayInMix(mix, app, 200), 37);
    EXPECT_EQ(delayInMix(app, mix, 200), -37);
    EXPECT_EQ(delayInMix(app, app, 200), 0);
}

TEST(Clicks, areCountedOnceEachAndAligned)
{
    const Samples clicks = render("clicks:4800:0.8", 48000);
    const auto found = findClicks(clicks, 0.4F);
    ASSERT_EQ(found.size(), 10U);
    EXPECT_EQ(found.front(), 2400U);
    Samples late(clicks.size(), 0.0F);
    std::copy(clicks.begin(), clicks.end() - 5, late.begin() + 5);
    EXPECT_THAT(clickDelays(found, findClicks(late, 0.4F), 100), testing::AllOf(testing::SizeIs(10), testing::Each(5)));
    EXPECT_THAT(clickDelays(found, findClicks(late, 0.4F), 4), IsEmpty());
}

TEST(LargestStep, isTheSteepestPlace)
{
    EXPECT_FLOAT_EQ(largestStep(Samples{0.0F, 0.1F, -0.3F, -0.2F}), 0.4F);
    EXPECT_EQ(largestStep(Samples{}), 0.0F);
}

TEST(Recording, aJumpOfTheClockSplitsIt)
{
    Recording recording{rate, {Samples(400)}, {{1000, 0, 100}, {1100, 100, 100}, {1300, 200, 100}, {1400, 300, 100}}};
    EXPECT_EQ(recording.jumps(), 1U);
    EXPECT_EQ(recording.unbroken()[0].end, 200U);
    EXPECT_EQ(recording.unbroken()[1].begin, 200U);
    recording.cycles[1].position = 1101;
    EXPECT_EQ(recording.jumps(), 3U - 1U);
    EXPECT_EQ(recording.longestUnbroken().length(), 200U);
}

TEST(SignalSource, refusesWhatIsNoSound)
{
    EXPECT_THROW(SignalSource::parse("noise"), std::runtime_error);
    EXPECT_THROW(SignalSource::parse("tone:440"), std::runtime_error);
    EXPECT_THROW(SignalSource::parse("speech:/nowhere.wav"), std::runtime_error);
}

namespace
{

/// A microphone and the device behind it, both steady, in cycles of 1000 frames of an unbroken clock.
Recording steadyRecording()
{
    Recording recording;
    recording.rate = rate;
    recording.tracks = {Samples(60000, 0.25F), Samples(60000, 0.5F)};
    for (std::size_t start = 0; start < 60000; start += 1000)
        recording.cycles.push_back({start, start, 1000});
    return recording;
}

void silence(Samples &track, std::size_t first, std::size_t frames)
{
    std::fill_n(track.begin() + static_cast<std::ptrdiff_t>(first), frames, 0.0F);
}

} // namespace

TEST(SteadyGaps, aSteadySoundHasNone)
{
    Recording recording = steadyRecording();
    for (std::size_t i = 0; i < 60000; ++i) // a gain that moves is no gap
        recording.tracks[1][i] += 0.4F * static_cast<float>(i) / 60000;
    const SteadyGaps gaps = findSteadyGaps(recording, 1, 0.1F);
    EXPECT_EQ(gaps.ours + gaps.sources + gaps.jumps, 0U);
}

TEST(SteadyGaps, aGapOfTheMixAloneIsOursAndCountedOnce)
{
    Recording recording = steadyRecording();
    silence(recording.tracks[1], 5000, 1);
    silence(recording.tracks[1], 30000, 3000);
    const SteadyGaps gaps = findSteadyGaps(recording, 1, 0.1F);
    EXPECT_EQ(gaps.ours, 2U);
    EXPECT_EQ(gaps.sources, 0U);
}

TEST(SteadyGaps, aGapThatASourceHadIsTheSources)
{
    Recording recording = steadyRecording();
    silence(recording.tracks[0], 30000, 1000);
    silence(recording.tracks[1], 30010, 1000);
    const SteadyGaps gaps = findSteadyGaps(recording, 1, 0.1F);
    EXPECT_EQ(gaps.ours, 0U);
    EXPECT_EQ(gaps.sources, 1U);
}

TEST(SteadyGaps, aGapBesideAJumpOfTheClockIsTheMachines)
{
    Recording recording = steadyRecording();
    for (std::size_t cycle = 30; cycle < recording.cycles.size(); ++cycle)
        recording.cycles[cycle].position += 500;
    silence(recording.tracks[1], 29000, 500);
    silence(recording.tracks[1], 31000, 500);
    silence(recording.tracks[1], 50000, 500);
    const SteadyGaps gaps = findSteadyGaps(recording, 1, 0.1F);
    EXPECT_EQ(gaps.jumps, 1U);
    EXPECT_EQ(gaps.xruns, 2U);
    EXPECT_EQ(gaps.ours, 1U) << "long after the jump";
}

} // namespace tolvenary::session

#include "tests/session/mix_bed.h"
#include "tests/session/support/tone_level.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr double microphoneTone = 997;
constexpr double applicationTone = 1499;

double heardAmplitude(MixBed &bed, Recorder &recorder, double tone)
{
    const Recording recording = bed.record(recorder, 9600);
    const auto heard = recording.part(0, recording.longestUnbroken());
    return toneAmplitudes(heard, recording.rate, {microphoneTone, applicationTone})[tone == microphoneTone ? 0 : 1];
}

bool becomesHeard(MixBed &bed, Recorder &recorder, double tone, double amplitude)
{
    for (int fifthsOfASecond = 0; fifthsOfASecond < 100; ++fifthsOfASecond) {
        if (std::abs(heardAmplitude(bed, recorder, tone) - amplitude) < 0.01 * amplitude)
            return true;
    }
    return false;
}

} // namespace

// A native program that is stopped never finishes its cycle, and all that is linked behind it waits.
TEST(Hang, aStoppedApplicationDoesNotSilenceTheMicrophoneAndIsHeardAgainWhenItGoesOn)
{
    MixBed bed;
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));

    bed.player()->signal(SIGSTOP);
    const quint64 before = bed.mix().micFrames();
    ASSERT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > before + 48000; }));
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));

    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(becomesHeard(bed, recorder, applicationTone, 0.2));
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));
}

} // namespace tolvenary::session

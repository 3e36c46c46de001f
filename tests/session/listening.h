#pragma once

#include "tests/session/mix_bed.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tolvenary::session
{

inline constexpr double microphoneTone = 997;
inline constexpr double otherMicrophoneTone = 600;
inline constexpr double applicationTone = 1499;

/// How loud each of these tones is in one track.
struct Heard {
    double microphone = 0;
    double otherMicrophone = 0;
    double application = 0;
};

inline Heard heardIn(const Samples &samples, double rate)
{
    const auto found = toneAmplitudes(samples, rate, {microphoneTone, otherMicrophoneTone, applicationTone});
    return {found[0], found[1], found[2]};
}

/// Listens for a fifth of a second.
inline Heard listen(MixBed &bed, Recorder &recorder)
{
    const Recording recording = bed.record(recorder, 9600);
    return heardIn(recording.part(0, recording.longestUnbroken()), recording.rate);
}

inline bool isLevel(double heard, double wanted)
{
    return std::abs(heard - wanted) < 0.01 * wanted + 1e-4;
}

/// Listens again and again until both have their level, for twenty seconds of sound at most.
inline bool becomesHeard(MixBed &bed, Recorder &recorder, const Heard &wanted)
{
    Heard heard;
    for (int fifthsOfASecond = 0; fifthsOfASecond < 100; ++fifthsOfASecond) {
        heard = listen(bed, recorder);
        if (isLevel(heard.microphone, wanted.microphone) && isLevel(heard.otherMicrophone, wanted.otherMicrophone) &&
            isLevel(heard.application, wanted.application))
            return true;
    }
    std::printf("  microphone %.4f, other %.4f, application %.4f\n", heard.microphone, heard.otherMicrophone,
                heard.application);
    return false;
}

/// What a bed plays unless told otherwise.
inline constexpr Heard theWholeMix{0.25, 0, 0.2};

inline bool statusBecomes(MixBed &bed, const std::string &beginning)
{
    return bed.waitFor([&] { return bed.status().starts_with(beginning); });
}

} // namespace tolvenary::session

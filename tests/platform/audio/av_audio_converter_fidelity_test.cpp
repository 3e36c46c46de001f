#include "tests/platform/audio/tone_stream.h"

#include <ostream>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

constexpr std::size_t settled = 4000; // frames after which every filter here has seen nothing but the tone
constexpr std::size_t heard = 40000;

/// What a pair of rates is held to: measured, less three decibels.
struct Quality {
    double from;
    double to;
    double middle;  ///< dB between 997 Hz and all that is not 997 Hz
    double top;     ///< the same at the top of the band, where the images are nearest
    double silence; ///< dB down of a tone that the target cannot carry; 0 where the source has none

    double lowerNyquist() const { return std::min(from, to) / 2; }
    /// 20 kHz; where the lower rate cannot carry that, as near to its limit as 20 kHz is at 44.1 kHz.
    double topHz() const { return std::min(20000.0, lowerNyquist() * 20 / 22.05); }

    friend std::ostream &operator<<(std::ostream &out, const Quality &q) { return out << q.from << " to " << q.to; }
};

class ConverterFidelity : public testing::TestWithParam<Quality>
{
  protected:
    static std::vector<float> convert(ToneOf tone)
    {
        ToneStream stream(standardFormat(GetParam().from, 1), GetParam().to, tone);
        while (stream.channels[0].size() < heard)
            stream.feed(1024);
        return stream.channels[0];
    }
};

} // namespace

TEST_P(ConverterFidelity, aToneInTheMiddleStandsClearOfAllElse)
{
    const MeasuredTone tone = measureTone(convert({997, 0.5}), settled, GetParam().to, 997);
    std::cout << "    997 Hz: " << tone.snr << " dB\n";
    EXPECT_GT(tone.snr, GetParam().middle);
    EXPECT_NEAR(20 * std::log10(tone.level / 0.5), 0, 0.001);
}

TEST_P(ConverterFidelity, theTopOfTheBandKeepsItsLevelAndMakesNoImage)
{
    const double hz = GetParam().topHz();
    const MeasuredTone tone = measureTone(convert({hz, 0.5}), settled, GetParam().to, hz);
    const double level = 20 * std::log10(tone.level / 0.5);
    std::cout << "    " << hz << " Hz: " << level << " dB, images " << tone.snr << " dB down\n";
    EXPECT_NEAR(level, 0, 0.005);
    EXPECT_GT(tone.snr, GetParam().top);
}

TEST_P(ConverterFidelity, whatTheTargetCannotCarryIsNotHeardAsSomethingElse)
{
    // The filter is as steep above the limit as below it.
    const double highest = GetParam().from / 2 * 0.98;
    const double lowest = GetParam().lowerNyquist() * 1.065;
    if (GetParam().silence == 0) {
        EXPECT_LT(highest, lowest) << "there is something to silence";
        return;
    }
    double loudest = -std::numeric_limits<double>::infinity();
    for (int step = 0; step <= 8; ++step) {
        const double hz = lowest + (highest - lowest) * step / 8;
        loudest = std::max(loudest, decibelsOver(0.5, convert({hz, 0.5}), settled));
    }
    std::cout << "    " << lowest << " to " << highest << " Hz: " << -loudest << " dB down\n";
    EXPECT_LT(loudest, -GetParam().silence);
}

INSTANTIATE_TEST_SUITE_P(Pairs, ConverterFidelity,
                         testing::Values(Quality{44100, 48000, 137, 127, 0}, Quality{48000, 44100, 136, 130, 125},
                                         Quality{96000, 48000, 138, 139, 123}, Quality{192000, 48000, 139, 142, 123},
                                         Quality{88200, 48000, 135, 136, 125}, Quality{48000, 96000, 138, 127, 0},
                                         Quality{48000, 192000, 137, 128, 0}, Quality{32000, 48000, 136, 127, 0},
                                         Quality{16000, 48000, 135, 127, 0}, Quality{8000, 48000, 135, 127, 0},
                                         Quality{48000, 8000, 140, 136, 123}, Quality{11025, 48000, 137, 127, 0},
                                         Quality{44100, 47999, 138, 124, 0}, Quality{48000, 47952, 136, 129, 0}));

#include "tests/platform/audio/tone_stream.h"

#include <ostream>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

constexpr ToneOf tone;

struct Case {
    double from;
    double to;
    std::uint32_t channels;
    double leastSnr; // dB

    friend std::ostream &operator<<(std::ostream &out, const Case &c)
    {
        return out << c.from << " to " << c.to << ", " << c.channels << " channels";
    }
};

class ConverterRates : public testing::TestWithParam<Case>
{
  protected:
    ToneStream m_stream{standardFormat(GetParam().from, GetParam().channels), GetParam().to, tone, 2048};
};

} // namespace

TEST_P(ConverterRates, aToneKeepsItsLevelAndStaysClean)
{
    while (m_stream.channels[0].size() < 40000)
        m_stream.feed(1024);
    const MeasuredTone left = measureTone(m_stream.channels[0], 4000, GetParam().to, tone.hz);
    const MeasuredTone right = measureTone(m_stream.channels[1], 4000, GetParam().to, tone.hz);
    EXPECT_NEAR(20 * std::log10(left.level / tone.level), 0, 0.01);
    EXPECT_NEAR(20 * std::log10(right.level / (GetParam().channels == 1 ? tone.level : tone.level / 2)), 0, 0.01);
    EXPECT_GT(left.snr, GetParam().leastSnr);
    EXPECT_GT(right.snr, GetParam().leastSnr);
    std::cout << "    SNR " << left.snr << " and " << right.snr << " dB\n";
}

TEST_P(ConverterRates, noFrameIsLostOrGainedInTheLongRun)
{
    double out = 0;
    double in = 0;
    for (int block = 0; block < 3000; ++block) {
        const std::uint32_t frames = 64 + static_cast<std::uint32_t>(block % 7) * 31;
        in += frames;
        out += m_stream.feed(frames);
        m_stream.channels[0].clear();
        m_stream.channels[1].clear();
        ASSERT_LE(std::abs(out - in * GetParam().to / GetParam().from), 1.0) << "after block " << block;
    }
}

TEST_P(ConverterRates, eachBlockYieldsItsShareRoundedUpOrDown)
{
    const double share = 1024 * GetParam().to / GetParam().from;
    for (int block = 0; block < 50; ++block) {
        const std::uint32_t made = m_stream.feed(1024);
        ASSERT_GE(made, std::floor(share));
        ASSERT_LE(made, std::ceil(share));
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, ConverterRates,
                         testing::Values(Case{44100, 48000, 2, 100}, Case{44100, 48000, 1, 100},
                                         Case{48000, 44100, 2, 100}, Case{96000, 48000, 2, 100},
                                         Case{192000, 48000, 2, 100}, Case{88200, 48000, 2, 100},
                                         Case{48000, 96000, 2, 100}, Case{48000, 192000, 2, 100},
                                         Case{32000, 48000, 2, 100}, Case{22050, 48000, 1, 100},
                                         Case{16000, 48000, 1, 100}, Case{8000, 48000, 1, 100},
                                         Case{44100, 48000, 6, 100}, Case{44100, 47999, 2, 100},
                                         Case{48000, 48000, 1, 140}, Case{48000, 48000, 2, 140}));

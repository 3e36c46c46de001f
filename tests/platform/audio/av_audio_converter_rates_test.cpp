#include "platform/audio/av_audio_converter.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <ostream>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

constexpr double toneHz = 997;
constexpr double toneLevel = 0.5;

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

/// Feeds a tone block by block, as a capture does, and keeps all that comes out.
class ToneStream
{
  public:
    explicit ToneStream(const Case &c)
        : m_case(c),
          m_from(standardFormat(c.from, c.channels)),
          m_to(standardFormat(c.to)),
          m_converter(AVAudioConverter::make(m_from, m_to, 2048)),
          m_pool(2, 4 << 20)
    {
    }

    std::uint32_t feed(std::uint32_t frames)
    {
        auto block = m_pool.make(m_from, frames);
        block->setFrameLength(frames);
        for (std::uint32_t i = 0; i < frames; ++i) {
            const double phase = 2 * std::numbers::pi * toneHz * static_cast<double>(m_fed + i) / m_case.from;
            for (std::uint32_t c = 0; c < m_case.channels; ++c)
                block->floatChannel(c)[i] = static_cast<float>(toneLevel * std::sin(phase) / (c + 1));
        }
        m_fed += frames;
        const auto capacity = static_cast<std::uint32_t>(m_case.to / m_case.from * frames + 32.0);
        auto output = m_pool.make(m_to, capacity);
        const AVAudioPCMBuffer *next = block.get();
        Error error;
        const auto status =
            m_converter->convertToBuffer(*output, &error, [&](std::uint32_t, AVAudioConverterInputStatus &inputStatus) {
                inputStatus =
                    next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
                return std::exchange(next, nullptr);
            });
        EXPECT_EQ(status, AVAudioConverterOutputStatus::inputRanDry);
        EXPECT_EQ(error, Error());
        for (std::size_t c = 0; c < 2; ++c)
            channels[c].insert(channels[c].end(), output->floatChannel(static_cast<std::uint32_t>(c)),
                               output->floatChannel(static_cast<std::uint32_t>(c)) + output->frameLength());
        return output->frameLength();
    }

    std::array<std::vector<float>, 2> channels;

  private:
    Case m_case;
    AVAudioFormat m_from;
    AVAudioFormat m_to;
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioPCMBufferPool m_pool;
    std::uint64_t m_fed = 0;
};

struct Tone {
    double level;
    double snr;
};

/// The best-fitting tone of the known frequency, and how far it stands above the rest.
Tone measure(const std::vector<float> &samples, std::size_t first, double rate)
{
    double ss = 0;
    double cc = 0;
    double sc = 0;
    double xs = 0;
    double xc = 0;
    double xx = 0;
    for (std::size_t i = first; i < samples.size(); ++i) {
        const double phase = 2 * std::numbers::pi * toneHz * static_cast<double>(i) / rate;
        const double s = std::sin(phase);
        const double c = std::cos(phase);
        const double x = samples[i];
        ss += s * s;
        cc += c * c;
        sc += s * c;
        xs += x * s;
        xc += x * c;
        xx += x * x;
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (xs * cc - xc * sc) / determinant;
    const double b = (xc * ss - xs * sc) / determinant;
    const double tonePower = a * a * ss + 2 * a * b * sc + b * b * cc;
    double residue = 0;
    for (std::size_t i = first; i < samples.size(); ++i) {
        const double phase = 2 * std::numbers::pi * toneHz * static_cast<double>(i) / rate;
        const double difference = samples[i] - a * std::sin(phase) - b * std::cos(phase);
        residue += difference * difference;
    }
    return {std::hypot(a, b), 10 * std::log10(tonePower / residue)};
}

class ConverterRates : public testing::TestWithParam<Case>
{
};

} // namespace

TEST_P(ConverterRates, aToneKeepsItsLevelAndStaysClean)
{
    ToneStream stream(GetParam());
    while (stream.channels[0].size() < 40000)
        stream.feed(1024);
    const Tone left = measure(stream.channels[0], 4000, GetParam().to);
    const Tone right = measure(stream.channels[1], 4000, GetParam().to);
    EXPECT_NEAR(20 * std::log10(left.level / toneLevel), 0, 0.01);
    EXPECT_NEAR(20 * std::log10(right.level / (GetParam().channels == 1 ? toneLevel : toneLevel / 2)), 0, 0.01);
    EXPECT_GT(left.snr, GetParam().leastSnr);
    EXPECT_GT(right.snr, GetParam().leastSnr);
    RecordProperty("snr", std::to_string(left.snr));
    std::cout << "    SNR " << left.snr << " dB\n";
}

TEST_P(ConverterRates, noFrameIsLostOrGainedInTheLongRun)
{
    ToneStream stream(GetParam());
    double out = 0;
    double in = 0;
    for (int block = 0; block < 3000; ++block) {
        const std::uint32_t frames = 64 + static_cast<std::uint32_t>(block % 7) * 31;
        in += frames;
        out += stream.feed(frames);
        stream.channels[0].clear();
        stream.channels[1].clear();
        ASSERT_LE(std::abs(out - in * GetParam().to / GetParam().from), 1.0) << "after block " << block;
    }
}

TEST_P(ConverterRates, eachBlockYieldsItsShareRoundedUpOrDown)
{
    ToneStream stream(GetParam());
    const double share = 1024 * GetParam().to / GetParam().from;
    for (int block = 0; block < 50; ++block) {
        const std::uint32_t made = stream.feed(1024);
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

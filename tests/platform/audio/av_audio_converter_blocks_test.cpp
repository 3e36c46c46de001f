#include "tests/platform/audio/tone_stream.h"

#include <cstdlib>
#include <ostream>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

constexpr std::uint32_t apart = kAudioFormatFlagIsNonInterleaved;

struct SampleType {
    const char *name;
    std::uint32_t bits;
    std::uint32_t flags;
    double leastSnr; ///< dB, of a tone at half of full scale on the left, and a quarter on the right
};

constexpr std::array sampleTypes{
    SampleType{"32-bit float", 32, kAudioFormatFlagIsFloat | apart, 132},
    SampleType{"32-bit float, interleaved", 32, kAudioFormatFlagIsFloat, 132},
    SampleType{"64-bit float", 64, kAudioFormatFlagIsFloat | apart, 132},
    SampleType{"16-bit integer, interleaved", 16, kAudioFormatFlagIsSignedInteger, 80},
    SampleType{"32-bit integer", 32, kAudioFormatFlagIsSignedInteger | apart, 132},
    SampleType{"32-bit integer, interleaved", 32, kAudioFormatFlagIsSignedInteger, 132},
};

struct Stream {
    double from;
    double to;
    std::uint32_t channels;

    friend std::ostream &operator<<(std::ostream &out, const Stream &s)
    {
        return out << s.from << " to " << s.to << ", " << s.channels << " channels";
    }
};

class ConverterBlocks : public testing::TestWithParam<Stream>
{
  protected:
    static constexpr std::uint32_t inputFrames = 12000;

    /// All of the input in blocks of one length, the rest in a shorter one, with an empty block before each.
    static std::array<std::vector<float>, 2> feedInBlocks(const SampleType &type, std::uint32_t blockFrames)
    {
        const auto [from, to, channels] = GetParam();
        ToneStream stream(pcmFormat(from, channels, type.bits, type.flags), to, {}, inputFrames);
        for (std::uint32_t fed = 0; fed < inputFrames; fed += blockFrames) {
            EXPECT_EQ(stream.feed(0), 0U) << "an empty block gives frames";
            stream.feed(std::min(blockFrames, inputFrames - fed));
        }
        return stream.channels;
    }
};

} // namespace

TEST_P(ConverterBlocks, howTheInputIsCutCannotBeHeard)
{
    for (const SampleType &type : sampleTypes) {
        const auto whole = feedInBlocks(type, inputFrames);
        ASSERT_NEAR(static_cast<double>(whole[0].size()), inputFrames * GetParam().to / GetParam().from, 1);
        for (const std::uint32_t blockFrames : {1U, 2U, 31U, 127U, 509U, 1021U, 4093U})
            ASSERT_EQ(feedInBlocks(type, blockFrames), whole) << type.name << ", blocks of " << blockFrames;
    }
}

TEST_P(ConverterBlocks, everySampleTypeIsAsCleanAsItsSamples)
{
    for (const SampleType &type : sampleTypes) {
        const auto channels = feedInBlocks(type, 509);
        const std::size_t settled = std::min<std::size_t>(channels[0].size() / 4, 4000);
        for (const std::size_t side : {0U, 1U}) {
            const MeasuredTone tone = measureTone(channels[side], settled, GetParam().to, 997);
            EXPECT_GT(tone.snr, type.leastSnr) << type.name << ", side " << side;
            EXPECT_NEAR(tone.level, side == 0 || GetParam().channels == 1 ? 0.5 : 0.25, 1e-5) << type.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Streams, ConverterBlocks,
                         testing::Values(Stream{44100, 48000, 1}, Stream{44100, 48000, 2}, Stream{44100, 48000, 6},
                                         Stream{48000, 44100, 2}, Stream{96000, 48000, 2}, Stream{8000, 48000, 1},
                                         Stream{44100, 47999, 2}, Stream{48000, 48000, 2}, Stream{48000, 48000, 1}));

namespace
{

class ConverterHours : public testing::TestWithParam<Stream>
{
  protected:
    /// Ten hours of sound are minutes of computing: it is as many minutes unless somebody asks for more.
    static double seconds()
    {
        if (std::getenv("TOLVENARY_LONG_TESTS") != nullptr)
            return 36000;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return 30; // slow here, and the length is not what the sanitizers look at
#else
        return 600;
#endif
    }
};

} // namespace

TEST_P(ConverterHours, theFrameCountStaysExact)
{
    const auto [fromRate, toRate, channels] = GetParam();
    const AVAudioFormat from = standardFormat(fromRate, channels);
    const AVAudioFormat to = standardFormat(toRate);
    const auto converter = AVAudioConverter::make(from, to, 2048);
    AVAudioPCMBufferPool pool(2, 1 << 20);
    const auto block = pool.make(from, 2048);
    const auto output = pool.make(to, 16384);
    block->setFrameLength(2048);
    for (std::uint32_t c = 0; c < channels; ++c)
        std::fill_n(block->floatChannel(c), 2048, 0.25F);

    constexpr std::array<std::uint32_t, 8> blocks{1024, 1021, 1, 2048, 509, 0, 127, 941};
    const auto wanted = static_cast<std::uint64_t>(seconds() * fromRate);
    const auto inUnits = static_cast<std::int64_t>(toRate);    // a frame lasts this long in, in units of which
    const auto outUnits = static_cast<std::int64_t>(fromRate); // it lasts this long out
    std::uint64_t in = 0;
    std::uint64_t out = 0;
    std::int64_t furthest = 0;
    for (std::size_t i = 0; in < wanted; ++i) {
        block->setFrameLength(blocks[i % blocks.size()]);
        const AVAudioPCMBuffer *next = block.get();
        converter->convertToBuffer(*output, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
            status = next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
            return std::exchange(next, nullptr);
        });
        in += block->frameLength();
        out += output->frameLength();
        furthest = std::max(
            furthest, std::abs(static_cast<std::int64_t>(out) * outUnits - static_cast<std::int64_t>(in) * inUnits));
        ASSERT_LE(furthest, outUnits) << "off by more than a frame after " << in << " frames";
    }
    std::cout << "    " << seconds() / 3600 << " hours: " << in << " frames in, " << out << " out, at most "
              << static_cast<double>(furthest) / static_cast<double>(outUnits) << " of a frame off\n";
}

INSTANTIATE_TEST_SUITE_P(Rates, ConverterHours,
                         testing::Values(Stream{44100, 48000, 1}, Stream{48000, 44100, 1}, Stream{96000, 48000, 1},
                                         Stream{48000, 48000, 1}, Stream{44100, 47999, 1}));

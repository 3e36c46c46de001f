#include "platform/audio/av_audio_converter.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using InputStatus = AVAudioConverterInputStatus;
using OutputStatus = AVAudioConverterOutputStatus;
using Floats = std::vector<float>;

/// One conversion as a capture makes it: the block once, then no more for now.
OutputStatus convertBlock(AVAudioConverter &converter, const AVAudioPCMBuffer &block, AVAudioPCMBuffer &output,
                          Error *error = nullptr)
{
    const AVAudioPCMBuffer *next = &block;
    return converter.convertToBuffer(output, error, [&](std::uint32_t, InputStatus &status) {
        status = next != nullptr ? InputStatus::haveData : InputStatus::noDataNow;
        return std::exchange(next, nullptr);
    });
}

Floats channelOf(const AVAudioPCMBuffer &buffer, std::uint32_t channel)
{
    return {buffer.floatChannel(channel), buffer.floatChannel(channel) + buffer.frameLength()};
}

/// Converts planar float channels at one rate and gives the two resulting channels.
std::array<Floats, 2> toStereo(const std::vector<Floats> &channels)
{
    const auto from = standardFormat(48000, static_cast<std::uint32_t>(channels.size()));
    const auto converter = AVAudioConverter::make(from, standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1 << 16);
    const auto block = pool.make(from, static_cast<std::uint32_t>(channels[0].size()));
    block->setFrameLength(block->frameCapacity());
    for (std::uint32_t c = 0; c < channels.size(); ++c)
        std::copy(channels[c].begin(), channels[c].end(), block->floatChannel(c));
    const auto output = pool.make(standardFormat(), 64);
    EXPECT_EQ(convertBlock(*converter, *block, *output), OutputStatus::inputRanDry);
    return {channelOf(*output, 0), channelOf(*output, 1)};
}

/// Hands out an endless ramp 0, 1, 2 ... in blocks of its own choice, and remembers what it was asked for.
class RampSource
{
  public:
    RampSource(const AVAudioFormat &format, std::uint32_t longest)
        : m_pool(1, std::size_t{longest} * 8), m_longest(longest)
    {
        m_block = m_pool.make(format, longest);
    }

    const AVAudioPCMBuffer *supply(std::uint32_t frames)
    {
        asked.push_back(frames);
        m_block->setFrameLength(m_longest);
        for (std::uint32_t i = 0; i < m_longest; ++i)
            m_block->floatChannel(0)[i] = m_block->floatChannel(1)[i] = static_cast<float>(m_next++);
        return m_block.get();
    }

    std::vector<std::uint32_t> asked;

  private:
    AVAudioPCMBufferPool m_pool;
    std::uint32_t m_longest;
    AVAudioPCMBufferPtr m_block;
    int m_next = 0;
};

} // namespace

TEST(AVAudioConverter, atOneRateStereoComesOutBitForBitAndAtOnce)
{
    const Floats left{0.1F, -0.7F, 1e-20F, 3.5F, -0.0F};
    const Floats right{1, 2, 3, 4, 5};
    const auto out = toStereo({left, right});
    EXPECT_EQ(out[0], left);
    EXPECT_EQ(out[1], right);
    EXPECT_TRUE(std::signbit(out[0][4]));
}

TEST(AVAudioConverter, monoGoesToBothSidesAtFullLevel)
{
    const auto out = toStereo({{0.5F, -1, 0.25F}});
    EXPECT_EQ(out[0], (Floats{0.5F, -1, 0.25F}));
    EXPECT_EQ(out[1], (Floats{0.5F, -1, 0.25F}));
}

TEST(AVAudioConverter, ofMoreThanTwoChannelsTheFirstTwoAreTaken)
{
    for (std::size_t channels = 3; channels <= 64; ++channels) {
        std::vector<Floats> in(channels, {7, 9});
        in[0] = {0.5F, 0.25F};
        in[1] = {-0.5F, -0.25F};
        const auto out = toStereo(in);
        ASSERT_EQ(out[0], in[0]) << channels << " channels";
        ASSERT_EQ(out[1], in[1]) << channels << " channels";
    }
}

TEST(AVAudioConverter, stereoToMonoIsTheMeanOfBothSides)
{
    const auto converter = AVAudioConverter::make(standardFormat(48000, 2), standardFormat(48000, 1), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = makeBuffer(pool, {0, 0});
    block->floatChannel(0)[0] = 1;
    block->floatChannel(1)[1] = -0.5F;
    const auto output = pool.make(standardFormat(48000, 1), 8);
    convertBlock(*converter, *block, *output);
    EXPECT_EQ(channelOf(*output, 0), (Floats{0.5F, -0.25F}));
}

TEST(AVAudioConverter, interleavedIntegersBecomePlanarFloats)
{
    const auto from = pcmFormat(48000, 2, 16, kAudioFormatFlagIsSignedInteger);
    const auto converter = AVAudioConverter::make(from, standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = pool.make(from, 2);
    block->setFrameLength(2);
    const std::array<std::int16_t, 4> samples{16384, -32768, -16384, 8192};
    std::copy(samples.begin(), samples.end(), static_cast<std::int16_t *>(block->mutableAudioBufferList()[0].mData));
    const auto output = pool.make(standardFormat(), 8);
    convertBlock(*converter, *block, *output);
    EXPECT_EQ(channelOf(*output, 0), (Floats{0.5F, -0.5F}));
    EXPECT_EQ(channelOf(*output, 1), (Floats{-1, 0.25F}));
}

TEST(AVAudioConverter, everySampleTypeAndLayoutConvertsToEveryOther)
{
    const std::uint32_t apart = kAudioFormatFlagIsNonInterleaved;
    std::vector<AVAudioFormat> formats;
    for (const std::uint32_t layout : {0U, apart}) {
        formats.push_back(pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat | layout));
        formats.push_back(pcmFormat(48000, 2, 64, kAudioFormatFlagIsFloat | layout));
        formats.push_back(pcmFormat(48000, 2, 16, kAudioFormatFlagIsSignedInteger | layout));
        formats.push_back(pcmFormat(48000, 2, 32, kAudioFormatFlagIsSignedInteger | layout));
    }
    AVAudioPCMBufferPool pool(4, 1024);
    const auto original = makeBuffer(pool, {0.5F, -0.25F, 0});
    original->floatChannel(1)[2] = -1;
    for (const AVAudioFormat &from : formats) {
        for (const AVAudioFormat &to : formats) {
            const auto first = pool.make(from, 3);
            const auto second = pool.make(to, 3);
            const auto third = pool.make(standardFormat(), 3);
            convertBlock(*AVAudioConverter::make(standardFormat(), from, 8), *original, *first);
            convertBlock(*AVAudioConverter::make(from, to, 8), *first, *second);
            convertBlock(*AVAudioConverter::make(to, standardFormat(), 8), *second, *third);
            ASSERT_EQ(channelOf(*third, 0), (Floats{0.5F, -0.25F, 0}));
            ASSERT_EQ(channelOf(*third, 1), (Floats{0.5F, -0.25F, -1}));
        }
    }
}

TEST(AVAudioConverter, rateAndChannelsAreConvertedTogetherFromTheFirstBlockOn)
{
    const auto from = standardFormat(44100, 1);
    const auto converter = AVAudioConverter::make(from, standardFormat());
    AVAudioPCMBufferPool pool(2, 1 << 16);
    const auto block = makeBuffer(pool, Floats(1024, 0.5F), from);
    const auto output = pool.make(standardFormat(), 1146);
    EXPECT_EQ(convertBlock(*converter, *block, *output), OutputStatus::inputRanDry);
    EXPECT_GE(output->frameLength(), 1114U);
    EXPECT_LE(output->frameLength(), 1115U);
    EXPECT_NEAR(output->floatChannel(0)[1000], 0.5F, 1e-6);
    EXPECT_EQ(channelOf(*output, 0), channelOf(*output, 1));
}

TEST(AVAudioConverter, theDelayIsThatOfTheFilterAlone)
{
    const auto from = standardFormat(44100, 2);
    const auto converter = AVAudioConverter::make(from, standardFormat());
    AVAudioPCMBufferPool pool(2, 1 << 16);
    Floats click(1024, 0.0F);
    click[100] = 1;
    const auto block = makeBuffer(pool, click, from);
    const auto output = pool.make(standardFormat(), 1146);
    convertBlock(*converter, *block, *output);
    const Floats out = channelOf(*output, 0);
    const auto peak = static_cast<double>(std::max_element(out.begin(), out.end()) - out.begin());
    EXPECT_NEAR(peak - 100 * 48000 / 44100.0, 87, 2);
}

TEST(AVAudioConverter, theInputIsAskedFirstAndAgainOnlyForMore)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = makeBuffer(pool, {1, 2, 3});
    const auto output = pool.make(standardFormat(), 8);
    std::vector<std::uint32_t> asked;
    const auto status =
        converter->convertToBuffer(*output, nullptr, [&](std::uint32_t frames, InputStatus &inputStatus) {
            asked.push_back(frames);
            inputStatus = asked.size() == 1 ? InputStatus::haveData : InputStatus::noDataNow;
            return asked.size() == 1 ? block.get() : nullptr;
        });
    EXPECT_EQ(status, OutputStatus::inputRanDry);
    EXPECT_EQ(asked, (std::vector<std::uint32_t>{8, 5}));
    EXPECT_EQ(channelOf(*output, 0), (Floats{1, 2, 3}));
}

TEST(AVAudioConverter, withoutInputTheOutputIsEmpty)
{
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat(), 64);
    AVAudioPCMBufferPool pool(1, 1024);
    const auto output = pool.make(standardFormat(), 8);
    output->setFrameLength(8);
    const auto nothing = [](InputStatus answer) {
        return [answer](std::uint32_t, InputStatus &status) -> const AVAudioPCMBuffer * {
            status = answer;
            return nullptr;
        };
    };
    EXPECT_EQ(converter->convertToBuffer(*output, nullptr, nothing(InputStatus::noDataNow)), OutputStatus::inputRanDry);
    EXPECT_EQ(output->frameLength(), 0U);
    EXPECT_EQ(converter->convertToBuffer(*output, nullptr, nothing(InputStatus::endOfStream)),
              OutputStatus::endOfStream);
    EXPECT_EQ(output->frameLength(), 0U);
}

TEST(AVAudioConverter, anEmptyBlockGivesNoFramesAndNoError)
{
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = pool.make(standardFormat(44100), 8);
    const auto output = pool.make(standardFormat(), 32);
    Error error;
    EXPECT_EQ(convertBlock(*converter, *block, *output, &error), OutputStatus::inputRanDry);
    EXPECT_EQ(error, Error());
    EXPECT_EQ(output->frameLength(), 0U);
}

TEST(AVAudioConverter, theFirstBlockYieldsItsShareHoweverShortTheBlocks)
{
    for (const double rate : {44100.0, 192000.0, 8000.0}) {
        for (const std::uint32_t frames : {1U, 64U, 100U}) {
            const auto converter = AVAudioConverter::make(standardFormat(rate), standardFormat(), frames);
            AVAudioPCMBufferPool pool(2, 1 << 14);
            const auto block = makeBuffer(pool, Floats(frames, 0.5F), standardFormat(rate));
            const auto output = pool.make(standardFormat(), 1000);
            convertBlock(*converter, *block, *output);
            EXPECT_NEAR(output->frameLength(), frames * 48000 / rate, 1) << rate;
        }
    }
}

TEST(AVAudioConverter, whatDoesNotFitIsKeptForTheNextOutput)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    auto block = makeBuffer(pool, {1, 2, 3, 4, 5});
    const auto output = pool.make(standardFormat(), 2);
    const auto none = [](std::uint32_t, InputStatus &status) -> const AVAudioPCMBuffer * {
        status = InputStatus::noDataNow;
        return nullptr;
    };
    EXPECT_EQ(convertBlock(*converter, *block, *output), OutputStatus::haveData);
    EXPECT_EQ(channelOf(*output, 0), (Floats{1, 2}));
    block.reset();
    EXPECT_EQ(converter->convertToBuffer(*output, nullptr, none), OutputStatus::haveData);
    EXPECT_EQ(channelOf(*output, 0), (Floats{3, 4}));
    EXPECT_EQ(converter->convertToBuffer(*output, nullptr, none), OutputStatus::inputRanDry);
    EXPECT_EQ(channelOf(*output, 0), (Floats{5}));
}

TEST(AVAudioConverter, pulledForExactBlocksItLosesNothingWhateverTheSourceSupplies)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(), 64);
    RampSource source(standardFormat(), 48);
    AVAudioPCMBufferPool pool(1, 1024);
    int next = 0;
    for (int block = 0; block < 500; ++block) {
        const auto output = pool.make(standardFormat(), 1 + static_cast<std::uint32_t>(block) % 100);
        ASSERT_EQ(converter->convertToBuffer(
                      *output, nullptr, [&](std::uint32_t frames, InputStatus &) { return source.supply(frames); }),
                  OutputStatus::haveData);
        for (const float sample : channelOf(*output, 1))
            ASSERT_EQ(sample, static_cast<float>(next++));
    }
}

TEST(AVAudioConverter, whenItIsGivenWhatItAskedForOneBlockFillsTheOutput)
{
    for (const double rate : {44100.0, 96000.0, 192000.0, 32000.0, 8000.0, 47999.0}) {
        const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(rate));
        AVAudioPCMBufferPool pool(2, 1 << 17);
        double pulled = 0;
        for (int cycle = 1; cycle <= 1000; ++cycle) {
            const auto output = pool.make(standardFormat(rate), 256);
            int calls = 0;
            AVAudioPCMBufferPtr block;
            converter->convertToBuffer(*output, nullptr, [&](std::uint32_t frames, InputStatus &) {
                ++calls;
                pulled += frames;
                block.reset();
                block = makeBuffer(pool, Floats(frames, 0.1F));
                return block.get();
            });
            ASSERT_EQ(output->frameLength(), 256U);
            ASSERT_LE(calls, 1) << rate;
            ASSERT_NEAR(pulled, cycle * 256 * 48000.0 / rate, 2 + 48000 / rate) << rate;
        }
    }
}

TEST(AVAudioConverter, aBlockLongerThanPromisedIsConvertedAllTheSame)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(), 4);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = makeBuffer(pool, {1, 2, 3, 4, 5, 6, 7});
    const auto output = pool.make(standardFormat(), 60);
    EXPECT_EQ(convertBlock(*converter, *block, *output), OutputStatus::inputRanDry);
    EXPECT_EQ(channelOf(*output, 0), (Floats{1, 2, 3, 4, 5, 6, 7}));
}

TEST(AVAudioConverter, aBufferInAnotherFormatIsAnError)
{
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto block = makeBuffer(pool, {1, 2, 3}, standardFormat(44100));
    const auto wrong = makeBuffer(pool, {1, 2, 3}, standardFormat(32000));
    Error error;
    EXPECT_EQ(convertBlock(*converter, *block, *wrong, &error), OutputStatus::error);
    EXPECT_EQ(wrong->frameLength(), 0U);
    EXPECT_EQ(error.domain, NSOSStatusErrorDomain);
    EXPECT_LT(error.code, 0);
}

TEST(AVAudioConverter, aBlockInAnotherFormatIsAnErrorEvenWhenNobodyAsksWhich)
{
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat(), 64);
    AVAudioPCMBufferPool pool(2, 1024);
    const auto wrong = makeBuffer(pool, {1, 2, 3}, standardFormat(32000));
    const auto output = pool.make(standardFormat(), 40);
    EXPECT_EQ(convertBlock(*converter, *wrong, *output), OutputStatus::error);
    EXPECT_EQ(output->frameLength(), 0U);
}

TEST(AVAudioConverter, anErrorLeavesNothingInTheOutputThoughSomeOfItWasReady)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat(), 64);
    AVAudioPCMBufferPool pool(3, 1024);
    const auto block = makeBuffer(pool, {1, 2, 3});
    const auto output = pool.make(standardFormat(), 2);
    ASSERT_EQ(convertBlock(*converter, *block, *output), OutputStatus::haveData); // one frame is left
    const auto wrong = makeBuffer(pool, {1, 2, 3}, standardFormat(32000));
    EXPECT_EQ(convertBlock(*converter, *wrong, *output), OutputStatus::error);
    EXPECT_EQ(output->frameLength(), 0U);
}

TEST(AVAudioConverter, aRateThatIsNoWholeNumberIsConvertedOnlyToItself)
{
    EXPECT_EQ(AVAudioConverter::make(standardFormat(44100.5), standardFormat()), nullptr);
    EXPECT_EQ(AVAudioConverter::make(standardFormat(), standardFormat(1e12)), nullptr);
    EXPECT_NE(AVAudioConverter::make(standardFormat(44100.5, 1), standardFormat(44100.5)), nullptr);
}

TEST(AVAudioConverter, moreChannelsThanABufferListHoldsCannotBeConverted)
{
    EXPECT_EQ(AVAudioConverter::make(standardFormat(48000, 65), standardFormat()), nullptr);
}

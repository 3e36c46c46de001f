#include "tests/capture/channel_of.h"
#include "tests/capture/stream_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class AppStreamOutputTest : public StreamTest
{
};

} // namespace

TEST_F(AppStreamOutputTest, soundInTheTargetFormatIsDeliveredAsItsCopy)
{
    deliver(soundSample({{1, 2, 3, 4}, {5, 6, 7, 8}}));
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_EQ(m_delivered[0]->frameCapacity(), 4U) << "the copy itself, without a conversion's margin";
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7, 8));
    EXPECT_EQ(m_output->converter(), nullptr);
}

TEST_F(AppStreamOutputTest, theDeliveredBufferIsTheCalleesToKeep)
{
    {
        const auto sample = soundSample({{1, 2}, {3, 4}});
        deliver(sample);
        EXPECT_EQ(sample.blocksKept(), 0) << "once copied, the samples are not kept";
    }
    deliver(soundSample({{0, 0}, {0, 0}}));
    ASSERT_EQ(m_delivered.size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2));
    EXPECT_THAT(channelOf(*m_delivered[1], 0), Each(0));
}

TEST_F(AppStreamOutputTest, picturesAndTheMicrophoneAreIgnored)
{
    m_stream->addStreamOutput(m_output, SCStreamOutputType::screen);
    m_stream->addStreamOutput(m_output, SCStreamOutputType::microphone);
    const auto sample = soundSample({{1, 2}, {3, 4}});
    deliver(sample, SCStreamOutputType::screen);
    deliver(sample, SCStreamOutputType::microphone);
    EXPECT_THAT(m_delivered, IsEmpty());
    EXPECT_EQ(sample.listsAskedFor(), 0);
    deliver(sample, SCStreamOutputType::audio);
    EXPECT_EQ(m_delivered.size(), 1U);
}

TEST_F(AppStreamOutputTest, theListHasRoomForOneBufferMoreThanThereAreChannelsAndItsBuffersAreAligned)
{
    const auto stereo = soundSample({{1}, {2}});
    deliver(stereo);
    EXPECT_EQ(stereo.listSizeOffered(), 24U + 16U * 2U);
    EXPECT_EQ(stereo.flagsGiven(), 1U);
    const auto surround = soundSample(std::vector<std::vector<float>>(6, {1}));
    deliver(surround);
    EXPECT_EQ(surround.listSizeOffered(), 24U + 16U * 6U);
}

TEST_F(AppStreamOutputTest, oneBufferMoreThanThereAreChannelsIsNoFailureAndIsNotCopied)
{
    auto sample = soundSample({{1, 2}, {3, 4}});
    sample.addBuffer(std::vector<float>{9, 9});
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->audioBufferList().size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(3, 4));
}

TEST_F(AppStreamOutputTest, ofFewerBuffersThanChannelsOnlyTheCommonOnesAreCopied)
{
    deliver(soundSample({{9, 9}, {9, 9}}));
    m_delivered.clear(); // the next buffer may be the same slot, with the old samples in it
    auto sample = soundSample({{1, 2}, {3, 4}});
    sample.buffers.pop_back();
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), Each(0)) << "what was not copied is silent, not an older block";
}

TEST_F(AppStreamOutputTest, aBufferThatIsShorterOrHasNoMemoryIsCopiedAsFarAsItGoes)
{
    auto shorter = soundSample({{1, 2, 3, 4}, {5, 6, 7, 8}});
    shorter.buffers[1].resize(8);
    deliver(shorter);
    auto without = soundSample({{1, 2, 3, 4}, {5, 6, 7, 8}});
    without.buffers.pop_back();
    without.buffersWithoutData = {16};
    deliver(without);
    ASSERT_EQ(m_delivered.size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 0, 0));
    EXPECT_THAT(channelOf(*m_delivered[1], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[1], 1), Each(0));
}

TEST_F(AppStreamOutputTest, aBufferLongerThanItsFramesIsCopiedUpToThem)
{
    auto sample = soundSample({{1, 2, 3, 4}, {5, 6, 7, 8}});
    sample.numSamples = 2;
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6));
}

TEST_F(AppStreamOutputTest, interleavedSamplesArriveInTheirChannels)
{
    FakeSampleBuffer sample;
    const auto format = pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked);
    sample.formatDescription = CMFormatDescription{format.streamDescription()};
    sample.addBuffer(std::vector<float>{1, 5, 2, 6, 3, 7});
    sample.numSamples = 3;
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7));
}

TEST_F(AppStreamOutputTest, samplesThatAreAlikeAreDeliveredAsTheyAreWhateverElseTheFormatSays)
{
    auto sample = soundSample({{1, 2}, {3, 4}});
    sample.formatDescription->streamBasicDescription->mFormatFlags |= kAudioFormatFlagIsNonMixable;
    const auto format = AVAudioFormat::fromStreamDescription(*sample.formatDescription->streamBasicDescription);
    ASSERT_NE(format, standardFormat()) << "a tap would convert it";
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), format);
    EXPECT_EQ(m_delivered[0]->frameCapacity(), 2U);
    EXPECT_EQ(m_output->converter(), nullptr);
}

namespace
{

struct Difference {
    const char *name;
    AVAudioFormat format;
};

class AppStreamOutputDifference : public AppStreamOutputTest, public testing::WithParamInterface<Difference>
{
};

constexpr std::uint32_t planarFloat = kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved;

} // namespace

TEST_P(AppStreamOutputDifference, inOneFieldAloneIsConverted)
{
    const AVAudioFormat &format = GetParam().format;
    FakeSampleBuffer sample;
    sample.formatDescription = CMFormatDescription{format.streamDescription()};
    sample.buffers.assign(format.bufferCount(), std::vector<std::byte>(format.bytesPerFrame() * 480));
    sample.numSamples = 480;
    deliver(sample);
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    ASSERT_NE(m_output->converter(), nullptr);
    EXPECT_EQ(m_output->converter()->inputFormat(), format);
    EXPECT_EQ(m_output->converter()->outputFormat(), standardFormat());
}

INSTANTIATE_TEST_SUITE_P(Field, AppStreamOutputDifference,
                         testing::Values(Difference{"sampleRate", standardFormat(44100)},
                                         Difference{"channelCount", standardFormat(48000, 1)},
                                         Difference{"commonFormat", pcmFormat(48000, 2, 64, planarFloat)},
                                         Difference{"interleaving", pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat)}),
                         [](const auto &param) { return std::string(param.param.name); });

TEST_F(AppStreamOutputTest, anotherRateIsConvertedIntoABufferWithRoomForIt)
{
    deliver(steadySample(512, 44100));
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_EQ(m_delivered[0]->frameCapacity(), 589U);
    EXPECT_LE(m_delivered[0]->frameLength(), 558U);
}

TEST_F(AppStreamOutputTest, theSameFormatKeepsTheConverter)
{
    deliver(steadySample(441, 44100));
    const AVAudioConverter *const first = m_output->converter();
    std::uint32_t frames = m_delivered.at(0)->frameLength();
    for (int i = 1; i < 100; ++i) {
        m_delivered.clear();
        deliver(steadySample(441, 44100));
        frames += m_delivered.at(0)->frameLength();
        ASSERT_EQ(m_output->converter(), first);
    }
    // One filter's delay is missing at the end of the second; a new converter each time would lose it each time.
    EXPECT_LE(frames, 48000U);
    EXPECT_GT(frames, 48000U - 200U);
}

TEST_F(AppStreamOutputTest, aChangedFormatMakesANewConverter)
{
    deliver(steadySample(441, 44100));
    ASSERT_NE(m_output->converter(), nullptr);
    EXPECT_EQ(m_output->converter()->inputFormat(), standardFormat(44100));
    deliver(steadySample(960, 96000, 1));
    EXPECT_EQ(m_output->converter()->inputFormat(), standardFormat(96000, 1));
    deliver(steadySample(441, 44100));
    EXPECT_EQ(m_output->converter()->inputFormat(), standardFormat(44100));
    ASSERT_EQ(m_delivered.size(), 3U);
    for (const auto &buffer : m_delivered) {
        EXPECT_EQ(buffer->format(), standardFormat());
        EXPECT_GT(buffer->frameLength(), 300U);
    }
}

TEST_F(AppStreamOutputTest, soundInTheTargetFormatInBetweenLeavesTheConverterAlone)
{
    deliver(steadySample(441, 44100));
    const AVAudioConverter *const converter = m_output->converter();
    deliver(steadySample(480, 48000));
    deliver(steadySample(441, 44100));
    EXPECT_EQ(m_output->converter(), converter);
    EXPECT_EQ(m_delivered.size(), 3U);
}

TEST_F(AppStreamOutputTest, afterTheStopAndAfterItsEndNothingIsDelivered)
{
    const auto sample = soundSample({{1, 2}, {3, 4}});
    m_stream->stopCaptureWithCompletionHandler([](const Result<void> &) {});
    EXPECT_EQ(m_platform.captureStreams().deliver(sample, SCStreamOutputType::audio), 0);
    m_stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
    deliver(sample);
    m_output.reset();
    EXPECT_EQ(m_platform.captureStreams().deliver(sample, SCStreamOutputType::audio), 0)
        << "the stream keeps no output";
    EXPECT_EQ(m_delivered.size(), 1U);
}

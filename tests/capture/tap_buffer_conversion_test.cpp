#include "tests/capture/channel_of.h"
#include "tests/capture/tap_fixture.h"
#include "tests/platform/audio/allocation_counter.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

AudioBuffer bufferOf(std::vector<float> &samples, std::uint32_t channels = 1)
{
    return {channels, static_cast<std::uint32_t>(samples.size() * sizeof(float)), samples.data()};
}

class TapBufferConversionTest : public TapTest
{
  protected:
    /// Runs a tap on a device of this format.
    void run(const AudioStreamBasicDescription &format)
    {
        objects().aggregateFormat = format;
        auto tap = create();
        ASSERT_TRUE(tap);
        ASSERT_TRUE((*tap)->start());
        m_tap = std::move(*tap);
    }
    void run(const AVAudioFormat &format) { run(format.streamDescription()); }

    void cycle(const std::vector<AudioBuffer> &input) { ASSERT_EQ(m_platform.ioProcs().cycle(input), 1); }

    std::unique_ptr<ProcessAudioTap> m_tap;
    std::vector<float> m_left{1, 2, 3, 4};
    std::vector<float> m_right{5, 6, 7, 8};
};

} // namespace

TEST_F(TapBufferConversionTest, aCycleInTheTargetFormatIsDeliveredAsItsCopy)
{
    run(standardFormat());
    cycle({bufferOf(m_left), bufferOf(m_right)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_EQ(m_delivered[0]->frameCapacity(), 4U) << "the copy itself, without a conversion's margin";
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7, 8));
    EXPECT_FALSE(m_tap->hasConverter());
}

TEST_F(TapBufferConversionTest, theDeliveredBufferIsTheCalleesToKeep)
{
    run(standardFormat());
    cycle({bufferOf(m_left), bufferOf(m_right)});
    m_left.assign(4, 0);
    cycle({bufferOf(m_left), bufferOf(m_right)});
    ASSERT_EQ(m_delivered.size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[1], 0), Each(0));
}

TEST_F(TapBufferConversionTest, aDeviceWithoutAFormatDeliversNothing)
{
    run(AudioStreamBasicDescription());
    cycle({bufferOf(m_left), bufferOf(m_right)});
    EXPECT_THAT(m_delivered, IsEmpty());
}

TEST_F(TapBufferConversionTest, aCycleWithoutInputDeliversNothing)
{
    run(standardFormat());
    cycle({});
    cycle({AudioBuffer{1, 0, m_left.data()}, bufferOf(m_right)});
    cycle({AudioBuffer{1, 16, nullptr}, bufferOf(m_right)});
    EXPECT_THAT(m_delivered, IsEmpty());
    EXPECT_EQ(m_pool.freeSlots(), 8U);
}

TEST_F(TapBufferConversionTest, aCycleShorterThanAFrameDeliversNothing)
{
    run(standardFormat());
    cycle({AudioBuffer{1, 3, m_left.data()}, AudioBuffer{1, 3, m_right.data()}});
    EXPECT_THAT(m_delivered, IsEmpty());
}

TEST_F(TapBufferConversionTest, aCycleOfOneFrameIsDelivered)
{
    run(standardFormat());
    cycle({AudioBuffer{1, 4, m_left.data()}, AudioBuffer{1, 4, m_right.data()}});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5));
}

TEST_F(TapBufferConversionTest, theFirstBufferAloneTellsHowManyFramesThereAre)
{
    run(standardFormat());
    cycle({AudioBuffer{1, 8, m_left.data()}, bufferOf(m_right)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6));
}

TEST_F(TapBufferConversionTest, bytesBehindTheLastWholeFrameAreIgnored)
{
    run(pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked)); // 8 bytes a frame
    std::vector<float> interleaved(257, 0.5F);
    cycle({AudioBuffer{2, 1028, interleaved.data()}});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->frameLength(), 128U);
}

TEST_F(TapBufferConversionTest, interleavedSamplesArriveInTheirChannels)
{
    run(pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked));
    std::vector<float> interleaved{1, 5, 2, 6, 3, 7, 4, 8};
    cycle({bufferOf(interleaved, 2)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7, 8));
    EXPECT_TRUE(m_tap->hasConverter());
}

TEST_F(TapBufferConversionTest, aFormatThatDiffersInNothingButADetailIsConvertedAllTheSame)
{
    auto format = standardFormat().streamDescription();
    format.mFormatFlags |= kAudioFormatFlagIsNonMixable;
    run(format);
    cycle({bufferOf(m_left), bufferOf(m_right)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_TRUE(m_tap->hasConverter());
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7, 8));
}

TEST_F(TapBufferConversionTest, zeroBytesPerFrameCountAsOne)
{
    auto format = standardFormat().streamDescription();
    format.mBytesPerFrame = 0;
    run(format);
    cycle({bufferOf(m_left), bufferOf(m_right)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->frameLength(), 16U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_F(TapBufferConversionTest, ofFewerBuffersThanChannelsOnlyTheCommonOnesAreCopied)
{
    run(standardFormat());
    cycle({bufferOf(m_left), bufferOf(m_right)});
    m_delivered.clear(); // the next buffer may be the same slot, with the old samples in it
    cycle({bufferOf(m_left)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_THAT(channelOf(*m_delivered[0], 0), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(channelOf(*m_delivered[0], 1), Each(0)) << "what was not copied is silent, not an older cycle";
}

TEST_F(TapBufferConversionTest, ofMoreBuffersThanChannelsOnlyTheCommonOnesAreCopied)
{
    run(standardFormat());
    std::vector<float> third(4, 9);
    cycle({bufferOf(m_left), bufferOf(m_right), bufferOf(third)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->audioBufferList().size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 7, 8));
}

TEST_F(TapBufferConversionTest, aLaterBufferThatIsShorterOrNullIsCopiedAsFarAsItGoes)
{
    run(standardFormat());
    cycle({bufferOf(m_left), AudioBuffer{1, 8, m_right.data()}});
    cycle({bufferOf(m_left), AudioBuffer{1, 16, nullptr}});
    ASSERT_EQ(m_delivered.size(), 2U);
    EXPECT_THAT(channelOf(*m_delivered[0], 1), ElementsAre(5, 6, 0, 0));
    EXPECT_THAT(channelOf(*m_delivered[1], 1), Each(0));
}

TEST_F(TapBufferConversionTest, anotherRateIsConvertedIntoABufferWithRoomForIt)
{
    run(standardFormat(44100));
    std::vector<float> samples(512, 0.25F);
    cycle({bufferOf(samples), bufferOf(samples)});
    ASSERT_EQ(m_delivered.size(), 1U);
    EXPECT_EQ(m_delivered[0]->format(), standardFormat());
    EXPECT_EQ(m_delivered[0]->frameCapacity(), 589U);
    EXPECT_LE(m_delivered[0]->frameLength(), 558U);
}

TEST_F(TapBufferConversionTest, theConverterIsKeptFromCycleToCycle)
{
    run(standardFormat(44100));
    std::vector<float> samples(441, 0.25F);
    std::uint32_t frames = 0;
    for (int i = 0; i < 100; ++i) {
        cycle({bufferOf(samples), bufferOf(samples)});
        frames += m_delivered.at(0)->frameLength();
        m_delivered.clear();
    }
    // One filter's delay is missing at the end of the second; a new converter in each cycle would lose it each time.
    EXPECT_LE(frames, 48000U);
    EXPECT_GT(frames, 48000U - 200U);
}

TEST_F(TapBufferConversionTest, aFormatThatCannotBeConvertedDeliversNothing)
{
    auto format = standardFormat().streamDescription();
    format.mSampleRate = 44100.5; // no whole number of frames a second
    run(format);
    ASSERT_TRUE(m_tap->avFormat());
    EXPECT_FALSE(m_tap->hasConverter());
    cycle({bufferOf(m_left), bufferOf(m_right)});
    EXPECT_THAT(m_delivered, IsEmpty());
    EXPECT_EQ(m_pool.freeSlots(), 8U);
}

TEST_F(TapBufferConversionTest, aCycleThatFindsNoFreeBufferIsDroppedAndTheNextIsDelivered)
{
    run(standardFormat());
    for (int i = 0; i < 9; ++i)
        cycle({bufferOf(m_left), bufferOf(m_right)});
    EXPECT_EQ(m_delivered.size(), 8U);
    m_delivered.pop_back();
    cycle({bufferOf(m_left), bufferOf(m_right)});
    EXPECT_EQ(m_delivered.size(), 8U);
}

TEST_F(TapBufferConversionTest, aCycleTooLongForAnyBufferIsDropped)
{
    run(standardFormat());
    std::vector<float> samples(8193);
    cycle({bufferOf(samples), bufferOf(samples)});
    EXPECT_THAT(m_delivered, IsEmpty());
}

TEST_F(TapBufferConversionTest, afterTheStopNoBufferIsDelivered)
{
    run(standardFormat());
    const std::vector<AudioBuffer> input{bufferOf(m_left), bufferOf(m_right)};
    m_tap->stop();
    EXPECT_EQ(m_platform.ioProcs().cycle(input), 0);
    EXPECT_THAT(m_delivered, IsEmpty());
}

TEST_F(TapBufferConversionTest, aCycleNeverTouchesTheHeap)
{
    for (const double rate : {48000.0, 44100.0}) {
        run(standardFormat(rate));
        std::vector<float> samples(1024, 0.25F);
        const std::vector<AudioBuffer> input{bufferOf(samples), bufferOf(samples)};
        m_delivered.clear();
        m_delivered.reserve(8);
        const AllocationCounter counter;
        for (int i = 0; i < 100; ++i) {
            m_platform.ioProcs().cycle(input);
            m_delivered.clear();
        }
        EXPECT_EQ(counter.allocations(), 0U) << rate;
        EXPECT_EQ(counter.frees(), 0U) << rate;
    }
}

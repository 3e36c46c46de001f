#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

using namespace tolvenary;
using namespace tolvenary::test;

TEST(AVAudioPCMBuffer, aNewBufferIsEmptyAndHasTheCapacityAskedFor)
{
    AVAudioPCMBufferPool pool(1, 4096);
    const auto buffer = pool.make(standardFormat(), 100);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->format(), standardFormat());
    EXPECT_EQ(buffer->frameCapacity(), 100U);
    EXPECT_EQ(buffer->frameLength(), 0U);
    ASSERT_EQ(buffer->audioBufferList().size(), 2U);
    EXPECT_EQ(buffer->audioBufferList()[0].mDataByteSize, 0U);
    EXPECT_EQ(buffer->audioBufferList()[0].mNumberChannels, 1U);
}

TEST(AVAudioPCMBuffer, theFrameLengthSetsTheByteSizesAndStopsAtTheCapacity)
{
    AVAudioPCMBufferPool pool(1, 4096);
    const auto buffer = pool.make(standardFormat(), 100);
    buffer->setFrameLength(60);
    EXPECT_EQ(buffer->audioBufferList()[1].mDataByteSize, 240U);
    buffer->setFrameLength(101);
    EXPECT_EQ(buffer->frameLength(), 100U);
    EXPECT_EQ(buffer->audioBufferList()[1].mDataByteSize, 400U);
}

TEST(AVAudioPCMBuffer, theChannelsOfABufferDoNotOverlap)
{
    AVAudioPCMBufferPool pool(1, 4096);
    const auto buffer = pool.make(standardFormat(), 512);
    ASSERT_NE(buffer, nullptr);
    buffer->setFrameLength(512);
    std::fill_n(buffer->floatChannel(0), 512, 1.0F);
    std::fill_n(buffer->floatChannel(1), 512, 2.0F);
    EXPECT_EQ(buffer->floatChannel(0)[511], 1.0F);
    EXPECT_EQ(buffer->floatChannel(1)[0], 2.0F);
}

TEST(AVAudioPCMBuffer, anInterleavedBufferIsOneRunOfAllChannels)
{
    AVAudioPCMBufferPool pool(1, 4096);
    const auto buffer = pool.make(pcmFormat(48000, 4, 16, kAudioFormatFlagIsSignedInteger), 10);
    buffer->setFrameLength(10);
    ASSERT_EQ(buffer->audioBufferList().size(), 1U);
    EXPECT_EQ(buffer->audioBufferList()[0].mNumberChannels, 4U);
    EXPECT_EQ(buffer->audioBufferList()[0].mDataByteSize, 80U);
}

TEST(AVAudioPCMBuffer, aViewShowsTheSamplesThatItWasLent)
{
    const auto view = AVAudioPCMBuffer::makeView(standardFormat(44100, 2));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frameLength(), 0U);
    Samples samples(7);
    view->setBorrowed(samples.constBlock().channels, 7);
    EXPECT_EQ(view->frameLength(), 7U);
    EXPECT_EQ(view->floatChannel(1), samples[1].data());
    EXPECT_EQ(view->audioBufferList()[1].mDataByteSize, 28U);
    view->setBorrowed(samples.constBlock().channels, 3);
    EXPECT_EQ(view->frameLength(), 3U);
}

TEST(AVAudioPCMBuffer, aFormatOfTooManyBuffersHasNoView)
{
    EXPECT_NE(AVAudioPCMBuffer::makeView(standardFormat(48000, 64)), nullptr);
    EXPECT_EQ(AVAudioPCMBuffer::makeView(standardFormat(48000, 65)), nullptr);
}

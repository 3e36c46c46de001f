#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

AudioStreamBasicDescription description()
{
    AudioStreamBasicDescription d;
    d.mSampleRate = 44100;
    d.mFormatID = kAudioFormatLinearPCM;
    d.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked;
    d.mBytesPerPacket = 8;
    d.mFramesPerPacket = 1;
    d.mBytesPerFrame = 8;
    d.mChannelsPerFrame = 2;
    d.mBitsPerChannel = 32;
    return d;
}

} // namespace

TEST(AVAudioFormat, theStandardFormatIsFloatWithABufferForEachChannel)
{
    const AVAudioFormat format = standardFormat(48000, 2);
    EXPECT_EQ(format.sampleRate(), 48000);
    EXPECT_EQ(format.channelCount(), 2U);
    EXPECT_EQ(format.commonFormat(), AVAudioCommonFormat::pcmFormatFloat32);
    EXPECT_FALSE(format.isInterleaved());
    EXPECT_EQ(format.bufferCount(), 2U);
    EXPECT_EQ(format.bytesPerFrame(), 4U);
    EXPECT_EQ(format.streamDescription().mBytesPerPacket, 4U);
    EXPECT_EQ(format.streamDescription().mFramesPerPacket, 1U);
}

TEST(AVAudioFormat, aStandardFormatNeedsARateAboveZeroAndAChannel)
{
    EXPECT_FALSE(AVAudioFormat::standardFormat(0, 2));
    EXPECT_FALSE(AVAudioFormat::standardFormat(-48000, 2));
    EXPECT_FALSE(AVAudioFormat::standardFormat(std::nan(""), 2));
    EXPECT_FALSE(AVAudioFormat::standardFormat(HUGE_VAL, 2));
    EXPECT_FALSE(AVAudioFormat::standardFormat(48000, 0));
}

TEST(AVAudioFormat, aDescriptionOfTheStandardFormatIsEqualToIt)
{
    AudioStreamBasicDescription d = description();
    d.mFormatFlags |= kAudioFormatFlagIsNonInterleaved;
    d.mBytesPerFrame = d.mBytesPerPacket = 4;
    EXPECT_EQ(AVAudioFormat::fromStreamDescription(d), standardFormat(44100, 2));
}

TEST(AVAudioFormat, eachSampleTypeIsRecognised)
{
    using enum AVAudioCommonFormat;
    EXPECT_EQ(pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat).commonFormat(), pcmFormatFloat32);
    EXPECT_EQ(pcmFormat(48000, 2, 64, kAudioFormatFlagIsFloat).commonFormat(), pcmFormatFloat64);
    EXPECT_EQ(pcmFormat(48000, 2, 16, kAudioFormatFlagIsSignedInteger).commonFormat(), pcmFormatInt16);
    EXPECT_EQ(pcmFormat(48000, 2, 32, kAudioFormatFlagIsSignedInteger).commonFormat(), pcmFormatInt32);
}

TEST(AVAudioFormat, anInterleavedFrameHoldsAllChannelsInOneBuffer)
{
    const AVAudioFormat format = pcmFormat(48000, 6, 16, kAudioFormatFlagIsSignedInteger);
    EXPECT_TRUE(format.isInterleaved());
    EXPECT_EQ(format.bufferCount(), 1U);
    EXPECT_EQ(format.bytesPerFrame(), 12U);
}

TEST(AVAudioFormat, figuresThatFollowFromTheRestNeedNotBeGivenRightly)
{
    AudioStreamBasicDescription d = description();
    const auto right = AVAudioFormat::fromStreamDescription(d);
    d.mBytesPerFrame = 0;
    d.mBytesPerPacket = 77;
    d.mFormatFlags = kAudioFormatFlagIsFloat;
    EXPECT_EQ(AVAudioFormat::fromStreamDescription(d), right);
    EXPECT_EQ(right->bytesPerFrame(), 8U);
}

TEST(AVAudioFormat, formatsThatDifferInOneThingAreNotEqual)
{
    const AVAudioFormat format = standardFormat(48000, 2);
    EXPECT_NE(format, standardFormat(44100, 2));
    EXPECT_NE(format, standardFormat(48000, 1));
    EXPECT_NE(format, pcmFormat(48000, 2, 32, kAudioFormatFlagIsFloat));
    EXPECT_NE(format, pcmFormat(48000, 2, 32, kAudioFormatFlagIsSignedInteger | kAudioFormatFlagIsNonInterleaved));
    EXPECT_NE(format,
              pcmFormat(48000, 2, 32,
                        kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved | kAudioFormatFlagIsNonMixable));
}

TEST(AVAudioFormat, whatIsNoReadableLinearPcmHasNoFormat)
{
    const auto without = [](auto change) {
        AudioStreamBasicDescription d = description();
        change(d);
        return AVAudioFormat::fromStreamDescription(d);
    };
    EXPECT_FALSE(without([](auto &d) { d.mFormatID = fourCharCode("aac "); }));
    EXPECT_FALSE(without([](auto &d) { d.mFormatFlags = 0; }));
    EXPECT_FALSE(without([](auto &d) { d.mFormatFlags |= 1U << 1; })) << "big endian";
    EXPECT_FALSE(without([](auto &d) { d.mBitsPerChannel = 24; }));
    EXPECT_FALSE(without([](auto &d) {
        d.mFormatFlags = kAudioFormatFlagIsSignedInteger;
        d.mBitsPerChannel = 8;
    }));
    EXPECT_FALSE(without([](auto &d) { d.mChannelsPerFrame = 0; }));
    EXPECT_FALSE(without([](auto &d) { d.mSampleRate = 0; }));
}

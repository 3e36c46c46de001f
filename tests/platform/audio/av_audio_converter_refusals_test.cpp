#include "platform/audio/av_audio_converter.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

/// What every device delivers, but for one thing.
bool isReadable(const std::function<void(AudioStreamBasicDescription &)> &spoil)
{
    AudioStreamBasicDescription description = standardFormat().streamDescription();
    spoil(description);
    return AVAudioFormat::fromStreamDescription(description).has_value();
}

using Description = AudioStreamBasicDescription;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(AVAudioFormat, whatIsNoneOfTheSampleTypesIsRefusedAndNotGuessed)
{
    ASSERT_TRUE(isReadable([](Description &) {}));
    for (const std::uint32_t bits : {0U, 8U, 16U, 20U, 24U, 33U, 80U, 4294967295U})
        EXPECT_FALSE(isReadable([&](Description &d) { d.mBitsPerChannel = bits; })) << bits << " bits of float";
    for (const std::uint32_t bits : {0U, 8U, 20U, 24U, 64U}) {
        EXPECT_FALSE(isReadable([&](Description &d) {
            d.mBitsPerChannel = bits;
            d.mFormatFlags = kAudioFormatFlagIsSignedInteger;
        })) << bits
            << " bits of integer";
    }
    EXPECT_FALSE(isReadable([](Description &d) { d.mFormatFlags = 0; })) << "unsigned";
    EXPECT_FALSE(isReadable([](Description &d) { d.mFormatFlags |= 2; })) << "big endian";
    EXPECT_FALSE(isReadable([](Description &d) { d.mFormatID = 0x61616320; })) << "compressed";
}

TEST(AVAudioFormat, aRateThatIsNoRateIsRefused)
{
    for (const double rate : {0.0, -0.0, -48000.0, infinity, -infinity, notANumber})
        EXPECT_FALSE(isReadable([&](Description &d) { d.mSampleRate = rate; })) << rate;
}

TEST(AVAudioFormat, soManyChannelsThatAFrameCannotBeCountedAreRefused)
{
    EXPECT_FALSE(isReadable([](Description &d) { d.mChannelsPerFrame = 0; }));
    for (const std::uint32_t channels : {0x40000000U, 0x40000001U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(isReadable([&](Description &d) {
            d.mFormatFlags = kAudioFormatFlagIsFloat;
            d.mChannelsPerFrame = channels;
        })) << channels
            << " interleaved";
        EXPECT_FALSE(isReadable([&](Description &d) { d.mChannelsPerFrame = channels; })) << channels << " apart";
    }
}

TEST(AVAudioConverter, aRatioBeyondAllFiltersIsRefusedAtOnce)
{
    const auto convertible = [](double from, double to) {
        return AVAudioConverter::make(standardFormat(from), standardFormat(to)) != nullptr;
    };
    EXPECT_FALSE(convertible(1, 48000));
    EXPECT_FALSE(convertible(48000, 1));
    EXPECT_FALSE(convertible(2147483647, 48000));
    EXPECT_FALSE(convertible(48000, 2147483647));
    EXPECT_FALSE(convertible(1e-300, 48000));
    EXPECT_TRUE(convertible(2000, 48000));
    EXPECT_TRUE(convertible(768000, 48000));
}

TEST(AVAudioConverter, moreChannelsThanThereAreFiltersAreRefused)
{
    for (const std::uint32_t channels : {65U, 66U, 1000U, 0x10000000U}) {
        const auto from = pcmFormat(44100, channels, 16, kAudioFormatFlagIsSignedInteger);
        EXPECT_EQ(AVAudioConverter::make(from, standardFormat()), nullptr) << channels;
        EXPECT_EQ(AVAudioConverter::make(standardFormat(), from), nullptr) << channels;
    }
}

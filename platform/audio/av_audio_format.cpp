#include "platform/audio/av_audio_format.h"

#include <cmath>
#include <limits>

namespace tolvenary
{

namespace
{

constexpr std::uint32_t kAudioFormatFlagIsBigEndian = 1U << 1;

AVAudioCommonFormat sampleTypeOf(const AudioStreamBasicDescription &description)
{
    if ((description.mFormatFlags & kAudioFormatFlagIsFloat) != 0) {
        if (description.mBitsPerChannel == 32)
            return AVAudioCommonFormat::pcmFormatFloat32;
        return description.mBitsPerChannel == 64 ? AVAudioCommonFormat::pcmFormatFloat64 : AVAudioCommonFormat::other;
    }
    if ((description.mFormatFlags & kAudioFormatFlagIsSignedInteger) == 0)
        return AVAudioCommonFormat::other;
    if (description.mBitsPerChannel == 16)
        return AVAudioCommonFormat::pcmFormatInt16;
    return description.mBitsPerChannel == 32 ? AVAudioCommonFormat::pcmFormatInt32 : AVAudioCommonFormat::other;
}

/// Whether the number of bytes in a frame fits into 32 bits, in which everybody counts them.
bool isCountable(const AudioStreamBasicDescription &description)
{
    return description.mChannelsPerFrame <=
           std::numeric_limits<std::uint32_t>::max() / (description.mBitsPerChannel / 8);
}

bool isReadable(const AudioStreamBasicDescription &description)
{
    return description.mFormatID == kAudioFormatLinearPCM &&
           (description.mFormatFlags & kAudioFormatFlagIsBigEndian) == 0 && description.mChannelsPerFrame > 0 &&
           description.mSampleRate > 0 && std::isfinite(description.mSampleRate) &&
           sampleTypeOf(description) != AVAudioCommonFormat::other && isCountable(description);
}

} // namespace

std::optional<AVAudioFormat> AVAudioFormat::standardFormat(double sampleRate, std::uint32_t channels)
{
    AudioStreamBasicDescription description;
    description.mSampleRate = sampleRate;
    description.mFormatID = kAudioFormatLinearPCM;
    description.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved;
    description.mChannelsPerFrame = channels;
    description.mBitsPerChannel = 32;
    return fromStreamDescription(description);
}

std::optional<AVAudioFormat> AVAudioFormat::fromStreamDescription(const AudioStreamBasicDescription &description)
{
    if (!isReadable(description))
        return std::nullopt;

    // What follows from the other fields is computed, so that equal formats compare equal however carelessly they were
    // described.
    constexpr std::uint32_t meaningful = kAudioFormatFlagIsFloat | kAudioFormatFlagIsSignedInteger |
                                         kAudioFormatFlagIsNonInterleaved | kAudioFormatFlagIsNonMixable;
    AudioStreamBasicDescription canonical = description;
    canonical.mFormatFlags = (description.mFormatFlags & meaningful) | kAudioFormatFlagIsPacked;
    if ((canonical.mFormatFlags & kAudioFormatFlagIsFloat) != 0)
        canonical.mFormatFlags &= ~kAudioFormatFlagIsSignedInteger;
    const bool interleaved = (canonical.mFormatFlags & kAudioFormatFlagIsNonInterleaved) == 0;
    canonical.mBytesPerFrame = description.mBitsPerChannel / 8 * (interleaved ? description.mChannelsPerFrame : 1);
    canonical.mFramesPerPacket = 1;
    canonical.mBytesPerPacket = canonical.mBytesPerFrame;
    canonical.mReserved = 0;
    return AVAudioFormat(canonical);
}

AVAudioCommonFormat AVAudioFormat::commonFormat() const
{
    return sampleTypeOf(m_description);
}

bool AVAudioFormat::isInterleaved() const
{
    return (m_description.mFormatFlags & kAudioFormatFlagIsNonInterleaved) == 0;
}

} // namespace tolvenary

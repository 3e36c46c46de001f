#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tolvenary
{

/// Names one object of the sound system: a device, a tap, a process; 0 means none.
using AudioObjectID = std::uint32_t;

inline constexpr AudioObjectID kAudioObjectUnknown = 0;
inline constexpr AudioObjectID kAudioObjectSystemObject = 1;

/// A four-character code as a number, first character in the highest byte.
constexpr std::uint32_t fourCharCode(const char (&text)[5])
{
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// How samples lie in memory. For non-interleaved formats the per-frame figures are those of one channel.
struct AudioStreamBasicDescription {
    double mSampleRate = 0;
    std::uint32_t mFormatID = 0;
    std::uint32_t mFormatFlags = 0;
    std::uint32_t mBytesPerPacket = 0;
    std::uint32_t mFramesPerPacket = 0;
    std::uint32_t mBytesPerFrame = 0;
    std::uint32_t mChannelsPerFrame = 0;
    std::uint32_t mBitsPerChannel = 0;
    std::uint32_t mReserved = 0;

    friend bool operator==(const AudioStreamBasicDescription &, const AudioStreamBasicDescription &) = default;
};
static_assert(sizeof(AudioStreamBasicDescription) == 40);

inline constexpr std::uint32_t kAudioFormatLinearPCM = fourCharCode("lpcm");
inline constexpr std::uint32_t kAudioFormatFlagIsFloat = 1U << 0;
inline constexpr std::uint32_t kAudioFormatFlagIsSignedInteger = 1U << 2;
inline constexpr std::uint32_t kAudioFormatFlagIsPacked = 1U << 3;
inline constexpr std::uint32_t kAudioFormatFlagIsNonInterleaved = 1U << 5;
inline constexpr std::uint32_t kAudioFormatFlagIsNonMixable = 1U << 6;

/// One run of samples: all channels interleaved, or one channel of a non-interleaved format. Does not own mData.
struct AudioBuffer {
    std::uint32_t mNumberChannels = 0;
    std::uint32_t mDataByteSize = 0;
    void *mData = nullptr;
};
static_assert(sizeof(AudioBuffer) == 16);

/// The buffers of one block: one if interleaved, otherwise one a channel.
using AudioBufferList = std::span<AudioBuffer>;
using ConstAudioBufferList = std::span<const AudioBuffer>;

/// When a cycle starts: the graph's clock in frames since the driver began, and the length of a frame.
struct AudioTimeStamp {
    std::uint64_t mSampleTime = 0;
    std::uint64_t mHostTime = 0; ///< nanoseconds, monotonic
    std::uint32_t mRate = 0;     ///< frames a second
};

/// Non-interleaved float samples of one block, borrowed for a call: `channels[c][i]`, i < frames.
struct PlanarBlock {
    std::span<float *const> channels;
    std::uint32_t frames = 0;
};
struct ConstPlanarBlock {
    std::span<const float *const> channels;
    std::uint32_t frames = 0;
};

} // namespace tolvenary

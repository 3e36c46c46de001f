#pragma once

#include "platform/audio_types.h"

#include <array>
#include <fuzzer/FuzzedDataProvider.h>

namespace tolvenary::fuzz
{

/// A plausible count, one at which arithmetic overflows, or any.
inline std::uint32_t hostileCount(FuzzedDataProvider &input, std::uint32_t most)
{
    constexpr std::array<std::uint32_t, 8> extremes{0, 64, 65, 0x20000000, 0x40000000, 0x40000001, 0x80000000, ~0U};
    switch (input.ConsumeIntegralInRange(0, 7)) {
    case 0:
        return input.ConsumeIntegral<std::uint32_t>();
    case 1:
    case 2:
        return input.PickValueInArray(extremes);
    default:
        return input.ConsumeIntegralInRange(1U, most);
    }
}

/// A description as a device might give it: mostly a plausible one, sometimes any forty bytes.
inline AudioStreamBasicDescription hostileDescription(FuzzedDataProvider &input)
{
    constexpr std::array rates{48000.0, 44100.0, 96000.0,  8000.0,   11025.0,
                               22050.0, 47999.0, 192000.0, 768000.0, 2000.0};
    constexpr std::array<std::uint32_t, 5> bits{32, 16, 64, 24, 8};
    constexpr std::array<std::uint32_t, 4> layouts{0, kAudioFormatFlagIsNonInterleaved, kAudioFormatFlagIsPacked, 2};
    AudioStreamBasicDescription description;
    description.mSampleRate =
        input.ConsumeIntegralInRange(0, 7) > 0 ? input.PickValueInArray(rates) : input.ConsumeFloatingPoint<double>();
    description.mFormatID =
        input.ConsumeIntegralInRange(0, 15) > 0 ? kAudioFormatLinearPCM : input.ConsumeIntegral<std::uint32_t>();
    description.mFormatFlags = input.PickValueInArray(layouts) |
                               (input.ConsumeBool() ? kAudioFormatFlagIsFloat : kAudioFormatFlagIsSignedInteger);
    description.mBytesPerFrame = hostileCount(input, 32);
    description.mChannelsPerFrame = hostileCount(input, 8);
    description.mBitsPerChannel =
        input.ConsumeIntegralInRange(0, 7) > 0 ? input.PickValueInArray(bits) : input.ConsumeIntegral<std::uint32_t>();
    return description;
}

} // namespace tolvenary::fuzz

#pragma once

#include "platform/audio_types.h"

#include <cstring>

namespace tolvenary
{

/// The value of kAudioDevicePropertyStreamConfiguration as bytes: a 32-bit count, four bytes of padding, then the
/// AudioBuffer entries (channel counts; no samples).
inline constexpr std::size_t streamConfigurationHeaderSize = 8;

inline std::size_t streamConfigurationSize(std::size_t bufferCount)
{
    return streamConfigurationHeaderSize + bufferCount * sizeof(AudioBuffer);
}

/// Writes the configuration into `bytes`, which must be streamConfigurationSize(buffers.size()) long.
inline void writeStreamConfiguration(ConstAudioBufferList buffers, std::span<std::byte> bytes)
{
    const auto count = static_cast<std::uint32_t>(buffers.size());
    std::memset(bytes.data(), 0, bytes.size());
    std::memcpy(bytes.data(), &count, sizeof count);
    if (count > 0)
        std::memcpy(bytes.data() + streamConfigurationHeaderSize, buffers.data(), buffers.size_bytes());
}

/// The entries found in `bytes`; never reads past its end, whatever the count says.
inline std::vector<AudioBuffer> readStreamConfiguration(std::span<const std::byte> bytes)
{
    if (bytes.size() < streamConfigurationHeaderSize)
        return {};
    std::uint32_t count = 0;
    std::memcpy(&count, bytes.data(), sizeof count);
    const std::size_t room = (bytes.size() - streamConfigurationHeaderSize) / sizeof(AudioBuffer);
    std::vector<AudioBuffer> buffers(count < room ? count : room);
    if (!buffers.empty())
        std::memcpy(buffers.data(), bytes.data() + streamConfigurationHeaderSize, buffers.size() * sizeof(AudioBuffer));
    return buffers;
}

} // namespace tolvenary

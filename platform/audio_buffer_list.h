#pragma once

#include "platform/audio_types.h"

#include <cstring>

namespace tolvenary
{

// A list of audio buffers as bytes, as the system writes it into the caller's memory: a 32-bit count, four bytes of
// padding, then the AudioBuffer entries.
inline constexpr std::size_t audioBufferListHeaderSize = 8;

inline std::size_t audioBufferListSize(std::size_t bufferCount)
{
    return audioBufferListHeaderSize + bufferCount * sizeof(AudioBuffer);
}

/// Writes the list into `bytes`, which must be at least audioBufferListSize(buffers.size()) long.
inline void writeAudioBufferList(ConstAudioBufferList buffers, std::span<std::byte> bytes)
{
    const auto count = static_cast<std::uint32_t>(buffers.size());
    std::memset(bytes.data(), 0, bytes.size());
    std::memcpy(bytes.data(), &count, sizeof count);
    if (count > 0)
        std::memcpy(bytes.data() + audioBufferListHeaderSize, buffers.data(), buffers.size_bytes());
}

/// The entries found in `bytes`; never reads past its end, whatever the count says.
inline std::vector<AudioBuffer> readAudioBufferList(std::span<const std::byte> bytes)
{
    if (bytes.size() < audioBufferListHeaderSize)
        return {};
    std::uint32_t count = 0;
    std::memcpy(&count, bytes.data(), sizeof count);
    const std::size_t room = (bytes.size() - audioBufferListHeaderSize) / sizeof(AudioBuffer);
    std::vector<AudioBuffer> buffers(count < room ? count : room);
    if (!buffers.empty())
        std::memcpy(buffers.data(), bytes.data() + audioBufferListHeaderSize, buffers.size() * sizeof(AudioBuffer));
    return buffers;
}

} // namespace tolvenary

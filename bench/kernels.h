#pragma once

#include "bench/duel.h"
#include "platform/audio/av_audio_format.h"

#include <array>
#include <cstdint>
#include <string>

namespace tolvenary::bench
{

// What happens in a cycle, each piece beside the least that it could cost or the best-known other way to do it.

/// Two gains and a sum, beside the same loads and stores: the plain loops, and the wide ones where the processor has
/// them.
void benchLoops(Duels &duels);
/// Buffers through queues, players and mixers into an output.
void benchGraph(Duels &duels);
/// The tap's block, beside memcpy. Throws std::runtime_error when there is no tap, or one that converts.
void benchTap(Duels &duels);
/// A buffer pulled and one scheduled. Throws std::runtime_error when one got lost.
void benchQueue(Duels &duels);

inline constexpr std::array<std::uint32_t, 5> cycleSizes{64, 128, 256, 512, 1024};
inline constexpr std::size_t longestCycle = 1024;

/// Stereo samples, aligned as the pool's and the server's are.
struct alignas(64) Stereo {
    std::array<std::array<float, longestCycle>, 2> channels{};

    std::array<float *, 2> pointers() { return {channels[0].data(), channels[1].data()}; }
};

inline std::string framesOf(std::uint32_t frames)
{
    return ", " + std::to_string(frames) + " frames";
}

inline AVAudioFormat mixFormat()
{
    return AVAudioFormat::standardFormat(48000, 2).value();
}

} // namespace tolvenary::bench

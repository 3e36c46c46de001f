#pragma once

#include <cstdint>

namespace tolvenary
{

/// Where in a buffer its sender says that the samples are, in bytes. It stands in memory that the sender may write to
/// at any time, and the library hands it through: to be read once, and believed only as far as it holdsCycle().
struct ChunkClaim {
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
};

/// real-time: whether a whole cycle of samples is where the claim says, within a buffer of `capacity` bytes.
constexpr bool holdsCycle(ChunkClaim claim, std::uint32_t capacity, std::uint32_t frames)
{
    const std::uint64_t needed = std::uint64_t{frames} * sizeof(float);
    return frames > 0 && claim.offset % alignof(float) == 0 && claim.offset <= capacity &&
           capacity - claim.offset >= needed && claim.size >= needed;
}

} // namespace tolvenary

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tolvenary::session
{

using Samples = std::vector<float>;

/// One cycle of the graph as the recorder met it.
struct RecordedCycle {
    std::uint64_t position = 0; ///< the driver's clock, in frames
    std::size_t start = 0;      ///< first frame of the cycle in the tracks
    std::uint32_t frames = 0;
};

/// Frames [begin, end) of a recording.
struct Stretch {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t length() const { return end - begin; }
};

/// Several ports, recorded in the same cycles: equal indices are equal moments.
struct Recording {
    double rate = 0;
    std::vector<Samples> tracks;
    std::vector<RecordedCycle> cycles;

    std::size_t frames() const { return tracks.empty() ? 0 : tracks.front().size(); }

    /// The stretches between jumps of the clock. A jump is the machine's fault: somebody woke up too late. Where the
    /// clock ran on and the sound did not, the fault is in what made the sound.
    std::vector<Stretch> unbroken() const;
    std::size_t jumps() const { return cycles.empty() ? 0 : unbroken().size() - 1; }
    Stretch longestUnbroken() const;

    /// The frames of one track in a stretch.
    Samples part(std::size_t track, Stretch stretch) const;
};

} // namespace tolvenary::session

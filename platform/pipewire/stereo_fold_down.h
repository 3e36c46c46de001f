#pragma once

#include "platform/pipewire/filter_node.h"

#include <array>
#include <vector>

namespace tolvenary
{

/// Makes left and right of what came in at a tap's ports: left and right as they are, the centre to both and each
/// surround to its side at -3 dB (ITU-R BS.775). The server has already added up the streams at each port.
class StereoFoldDown
{
  public:
    /// The ports of a tap, in the order that fold() expects.
    static std::vector<PortSpec> ports();

    StereoFoldDown();

    /// real-time. Gives the two channels, valid until the next call; empty when no sound came in at any port. Where
    /// nothing is to be added the graph's own buffers are handed on.
    std::span<const float *const> fold(const Cycle &cycle);

  private:
    const float *side(const Cycle &cycle, std::size_t front, std::size_t surround, std::vector<float> &mix) const;

    /// a + gain × b, where null is silence; null if both are.
    const float *sum(const float *a, const float *b, float gain, std::uint32_t frames, std::vector<float> &mix) const;

    std::vector<float> m_silence;
    std::array<std::vector<float>, 2> m_mix;
    std::array<const float *, 2> m_channels{};
};

} // namespace tolvenary

#pragma once

#include "platform/audio_types.h"

#include <algorithm>
#include <array>

namespace tolvenary
{

inline void silence(PlanarBlock block) // real-time
{
    for (float *const channel : block.channels)
        std::fill_n(channel, block.frames, 0.0F);
}

/// Shows parts of a block as blocks. What it hands out is valid until it is asked again. real-time
class PlanarSlice
{
  public:
    static constexpr std::size_t maxChannels = 8;

    /// Channels beyond the eighth are left out.
    explicit PlanarSlice(PlanarBlock whole) : m_whole(whole) {}

    PlanarBlock at(std::uint32_t first, std::uint32_t frames)
    {
        const std::size_t channels = std::min(m_whole.channels.size(), maxChannels);
        for (std::size_t c = 0; c < channels; ++c)
            m_channels[c] = m_whole.channels[c] + first;
        return {std::span(m_channels).first(channels), frames};
    }

  private:
    PlanarBlock m_whole;
    std::array<float *, maxChannels> m_channels{};
};

} // namespace tolvenary

#include "platform/audio/delay_guard.h"

#include <algorithm>

namespace tolvenary
{

void DelayGuard::setCushion(std::uint32_t frames)
{
    m_cushion = frames;
    restart();
}

std::uint32_t DelayGuard::observe(std::uint32_t queuedFrames)
{
    m_queued[m_observed % window] = queuedFrames;
    ++m_observed;
    if (m_observed < window)
        return 0;
    const std::uint32_t least = *std::min_element(m_queued.begin(), m_queued.end());
    return least > 2 * m_cushion ? least - m_cushion : 0;
}

} // namespace tolvenary

#include "platform/audio/scheduled_frames.h"

namespace tolvenary
{

std::uint32_t ScheduledFrames::available() const
{
    std::uint32_t frames = 0;
    const std::size_t buffers = m_queue.size();
    for (std::size_t i = 0; i < buffers; ++i)
        frames += m_queue[i].buffer->frameLength();
    return frames - m_playedOfFront;
}

void ScheduledFrames::drop(std::uint32_t count)
{
    while (m_queue.size() > 0) {
        const std::uint32_t left = m_queue[0].buffer->frameLength() - m_playedOfFront;
        if (count < left) {
            m_playedOfFront += count;
            return;
        }
        count -= left;
        m_playedOfFront = 0;
        const ScheduledBuffer played = m_queue.pop();
        if (played.completionHandler)
            played.completionHandler();
    }
}

void ScheduledFrames::clear()
{
    while (m_queue.size() > 0)
        m_queue.pop();
    m_playedOfFront = 0;
}

} // namespace tolvenary

#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"
#include "platform/audio/spsc_ring.h"

#include <algorithm>
#include <functional>

namespace tolvenary
{

struct ScheduledBuffer {
    AVAudioPCMBufferPtr buffer;
    std::function<void()> completionHandler;
};

/// A player's queue as its rendering thread sees it: one run of frames, wherever the buffers begin and end. real-time
class ScheduledFrames
{
  public:
    explicit ScheduledFrames(SpscRing<ScheduledBuffer>::Reader &queue) : m_queue(queue) {}

    /// Frames that can be visited now.
    std::uint32_t available() const;

    /// Shows the `count` frames that begin `offset` frames from the front, piece by piece, as
    /// visit(buffer, first frame in it, frames, frames already shown). They must be available.
    template <typename F> void visit(std::uint32_t offset, std::uint32_t count, F &&visit) const
    {
        std::uint32_t skip = m_playedOfFront + offset;
        std::uint32_t shown = 0;
        for (std::size_t i = 0; shown < count; ++i) {
            const AVAudioPCMBuffer &buffer = *m_queue[i].buffer;
            const std::uint32_t passed = std::min(skip, buffer.frameLength());
            const std::uint32_t frames = std::min(buffer.frameLength() - passed, count - shown);
            if (frames > 0)
                visit(buffer, passed, frames, shown);
            skip -= passed;
            shown += frames;
        }
    }

    /// Drops the next `count` frames: buffers that end within them, and empty ones next to them, go back to their pool,
    /// and their completion handlers are called.
    void drop(std::uint32_t count);

    /// Drops all; no completion handler is called.
    void clear();

  private:
    SpscRing<ScheduledBuffer>::Reader &m_queue;
    std::uint32_t m_playedOfFront = 0;
};

} // namespace tolvenary

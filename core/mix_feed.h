#pragma once

#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/os_allocated_unfair_lock.h"

#include <cstdint>

namespace tolvenary
{

/// Frames delivered since the start, by source.
struct FrameCounts {
    std::uint64_t mic = 0;
    std::uint64_t app = 0;
};

/// What the audio threads share with the coordinator, and all that they may touch of it: the counters under their lock,
/// and the two players. The callbacks hold it weakly; the coordinator owns it and ends the callbacks before it lets go.
class MixFeed
{
  public:
    /// Counts the buffer and queues it for the output. real-time, but for the counters' lock
    void deliverMicrophone(AVAudioPCMBufferPtr buffer);
    void deliverApplication(AVAudioPCMBufferPtr buffer);

    FrameCounts counts();
    void resetCounts();

    AVAudioPlayerNode &micPlayer() { return m_micPlayer; }
    AVAudioPlayerNode &appPlayer() { return m_appPlayer; }

  private:
    OSAllocatedUnfairLock<FrameCounts> m_counters;
    AVAudioPlayerNode m_micPlayer;
    AVAudioPlayerNode m_appPlayer;
};

} // namespace tolvenary

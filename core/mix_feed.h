#pragma once

#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/os_allocated_unfair_lock.h"

#include <cstdint>
#include <memory>

namespace tolvenary
{

/// Frames delivered since the start.
struct FrameCounts {
    std::uint64_t mic = 0;
    std::uint64_t app = 0;
};

/// Written by the audio threads, read by the meter. Its lock is held for one reset, add or paired read.
using FrameCounters = OSAllocatedUnfairLock<FrameCounts>;

/// All that an audio callback may touch: the counters and the two players. Callbacks hold it weakly and do nothing once
/// it is gone, so that no callback ever meets the coordinator itself.
class MixFeed
{
  public:
    explicit MixFeed(std::shared_ptr<FrameCounters> counters) : m_counters(std::move(counters)) {}

    /// Counts a buffer in the mix format and plays it. Each is called by one thread. real-time
    void feedMic(AVAudioPCMBufferPtr buffer);
    void feedApp(AVAudioPCMBufferPtr buffer);

    /// For attaching and starting them. Thread: main.
    AVAudioPlayerNode &micPlayer() { return m_micPlayer; }
    AVAudioPlayerNode &appPlayer() { return m_appPlayer; }

  private:
    const std::shared_ptr<FrameCounters> m_counters;
    AVAudioPlayerNode m_micPlayer;
    AVAudioPlayerNode m_appPlayer;
};

} // namespace tolvenary

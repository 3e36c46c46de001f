#pragma once

#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/audio/spsc_ring.h"

#include <memory>

namespace tolvenary
{

/// Samples of one format that follow each other, with the memory that they lie in.
struct SampleBlock {
    std::shared_ptr<AVAudioPCMBufferPool> pool; // declared first: the samples go back to it
    AVAudioPCMBufferPtr samples;
};

/// Brings sound from the real-time thread to another one. Neither waits for the other: the reader looks from time to
/// time, because waking it would be a system call, and what the reader leaves for too long is dropped.
class SampleQueue
{
  public:
    /// A longer cycle becomes several blocks, so that the room is shared fairly by cycles of any length.
    static constexpr std::uint32_t blockFrames = 1024;
    static constexpr std::uint32_t blocks = 256;
    static constexpr std::uint32_t maxChannels = 2;

    SampleQueue();

    /// Copies the sound of one cycle, of at most maxChannels channels. real-time
    void push(ConstPlanarBlock sound, double rate);

    /// Blocks that can be taken now. Thread: the reader's.
    std::size_t size() { return m_ring.reader().size(); }
    /// The oldest block, size() > 0; its buffers begin at addresses that are multiples of 16. Thread: the reader's.
    std::shared_ptr<const SampleBlock> pop();
    /// Drops what is there. Thread: the reader's.
    void clear();

  private:
    std::shared_ptr<AVAudioPCMBufferPool> m_pool;
    SpscRing<AVAudioPCMBufferPtr> m_ring;
};

} // namespace tolvenary

#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"

#include <atomic>
#include <vector>

namespace tolvenary
{

/// A fixed set of buffers, made and touched before the run. It must outlive every buffer made from it.
/// Buffers may be made on one thread and dropped on another: the free list is lock-free (indices with a tag).
class AVAudioPCMBufferPool
{
  public:
    /// `slotBytes` bounds the samples of one buffer, all channels together. At most 65534 slots.
    AVAudioPCMBufferPool(std::uint32_t slots, std::size_t slotBytes);
    ~AVAudioPCMBufferPool();

    AVAudioPCMBufferPool(const AVAudioPCMBufferPool &) = delete;
    AVAudioPCMBufferPool &operator=(const AVAudioPCMBufferPool &) = delete;

    /// A buffer with frameLength 0 and undefined samples; empty when none is free or the samples do not fit in a
    /// slot. real-time
    AVAudioPCMBufferPtr make(const AVAudioFormat &format, std::uint32_t frameCapacity);

    /// Buffers that could be made now. Thread: any; a snapshot.
    std::uint32_t freeSlots() const;

  private:
    friend struct AVAudioPCMBufferRecycler;

    struct alignas(64) CacheLine {
        std::array<std::byte, 64> bytes{};
    };

    std::uint32_t takeSlot();
    void recycle(std::uint32_t slot) noexcept;

    std::size_t m_slotBytes;
    std::vector<CacheLine> m_storage;
    std::unique_ptr<AVAudioPCMBuffer[]> m_buffers;
    std::vector<std::atomic<std::uint32_t>> m_next; ///< the free slot behind each free slot
    std::uint32_t m_slotCount;
    std::atomic<std::uint64_t> m_head; ///< tag, number of free slots, first free slot
};

} // namespace tolvenary

#include "platform/audio/av_audio_pcm_buffer_pool.h"

#include <cassert>

namespace tolvenary
{

namespace
{

// The head of the free list is one word, so that one exchange changes all of it: a tag, how many slots are free, and
// the first of them.

constexpr std::uint32_t noSlot = 0xFFFF;

constexpr std::uint32_t slotOf(std::uint64_t head)
{
    return static_cast<std::uint16_t>(head);
}

constexpr std::uint32_t freeOf(std::uint64_t head)
{
    return static_cast<std::uint16_t>(head >> 16);
}

/// The tag differs from the old head's, so that a thread that was suspended while the same slot was taken and given
/// back does not mistake the list for unchanged.
constexpr std::uint64_t nextHead(std::uint64_t oldHead, std::uint32_t free, std::uint32_t slot)
{
    return ((oldHead >> 32) + 1) << 32 | std::uint64_t{free} << 16 | slot;
}

} // namespace

AVAudioPCMBufferPool::AVAudioPCMBufferPool(std::uint32_t slots, std::size_t slotBytes)
    : m_slotBytes((slotBytes + sizeof(CacheLine) - 1) / sizeof(CacheLine) * sizeof(CacheLine)),
      m_storage(slots * (m_slotBytes / sizeof(CacheLine))),
      m_buffers(new AVAudioPCMBuffer[slots]),
      m_next(slots),
      m_slotCount(slots),
      m_head(std::uint64_t{slots} << 16 | (slots > 0 ? 0 : noSlot))
{
    assert(slots < noSlot);
    for (std::uint32_t i = 0; i < slots; ++i) {
        m_buffers[i].m_pool = this;
        m_buffers[i].m_slot = i;
        m_next[i].store(i + 1 < slots ? i + 1 : noSlot, std::memory_order_relaxed);
    }
}

AVAudioPCMBufferPool::~AVAudioPCMBufferPool()
{
    assert(freeSlots() == m_slotCount);
}

AVAudioPCMBufferPtr AVAudioPCMBufferPool::make(const AVAudioFormat &format, std::uint32_t frameCapacity)
{
    if (!AVAudioPCMBuffer::fits(format, frameCapacity, m_slotBytes))
        return nullptr;
    const std::uint32_t slot = takeSlot();
    if (slot == noSlot)
        return nullptr;
    const std::span<std::byte> storage(reinterpret_cast<std::byte *>(m_storage.data()) + slot * m_slotBytes,
                                       m_slotBytes);
    m_buffers[slot].layOut(format, frameCapacity, storage);
    return AVAudioPCMBufferPtr(&m_buffers[slot]);
}

std::uint32_t AVAudioPCMBufferPool::freeSlots() const
{
    return freeOf(m_head.load(std::memory_order_relaxed));
}

std::uint32_t AVAudioPCMBufferPool::takeSlot()
{
    std::uint64_t head = m_head.load(std::memory_order_acquire);
    while (slotOf(head) != noSlot) {
        // Stale if another thread has taken the slot meanwhile; the exchange fails then, because the tag has moved on.
        const std::uint32_t next = m_next[slotOf(head)].load(std::memory_order_relaxed);
        if (m_head.compare_exchange_weak(head, nextHead(head, freeOf(head) - 1, next), std::memory_order_acquire))
            return slotOf(head);
    }
    return noSlot;
}

void AVAudioPCMBufferPool::recycle(std::uint32_t slot) noexcept
{
    std::uint64_t head = m_head.load(std::memory_order_relaxed);
    do {
        m_next[slot].store(slotOf(head), std::memory_order_relaxed);
    } while (!m_head.compare_exchange_weak(head, nextHead(head, freeOf(head) + 1, slot), std::memory_order_release,
                                           std::memory_order_relaxed));
}

} // namespace tolvenary

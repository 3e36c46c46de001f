#pragma once

#include "platform/audio/av_audio_format.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace tolvenary
{

class AVAudioPCMBufferPool;
class AVAudioPCMBuffer;

/// Hands a buffer back to the pool that it came from. real-time
struct AVAudioPCMBufferRecycler {
    void operator()(AVAudioPCMBuffer *buffer) const noexcept;
};

/// The one owner of a pooled buffer; giving it up, on any thread, returns the buffer to its pool.
using AVAudioPCMBufferPtr = std::unique_ptr<AVAudioPCMBuffer, AVAudioPCMBufferRecycler>;

/// A block of samples in one format. Made by a pool, so that real-time threads can make and drop buffers without
/// touching the heap; or lent out as a view on samples that live elsewhere.
class AVAudioPCMBuffer
{
  public:
    static constexpr std::size_t maxBuffers = 64;

    AVAudioPCMBuffer(const AVAudioPCMBuffer &) = delete;
    AVAudioPCMBuffer &operator=(const AVAudioPCMBuffer &) = delete;

    /// A view for capture callbacks; no samples until setBorrowed(). Empty where the format has over maxBuffers
    /// buffers.
    static std::unique_ptr<AVAudioPCMBuffer> makeView(const AVAudioFormat &format);

    /// real-time: lets a view show `frames` frames at `channels` (one pointer per buffer of the format).
    void setBorrowed(std::span<const float *const> channels, std::uint32_t frames);

    const AVAudioFormat &format() const { return *m_format; }
    std::uint32_t frameCapacity() const { return m_frameCapacity; }
    std::uint32_t frameLength() const { return m_frameLength; }

    /// Sets the frames that count, at most frameCapacity(), and the buffers' byte sizes with it. real-time
    void setFrameLength(std::uint32_t frames)
    {
        m_frameLength = std::min(frames, m_frameCapacity);
        const std::uint32_t bytes = m_frameLength * m_format->bytesPerFrame();
        for (std::size_t i = 0; i < m_bufferCount; ++i)
            m_buffers[i].mDataByteSize = bytes;
    }

    /// The buffers to read and, unless this is a view, to write. real-time
    AudioBufferList mutableAudioBufferList() { return {m_buffers.data(), m_bufferCount}; }
    ConstAudioBufferList audioBufferList() const { return {m_buffers.data(), m_bufferCount}; }

    /// Channel `c` of a non-interleaved 32-bit float buffer. real-time
    const float *floatChannel(std::uint32_t c) const { return static_cast<const float *>(m_buffers[c].mData); }
    float *floatChannel(std::uint32_t c) { return static_cast<float *>(m_buffers[c].mData); }

  private:
    friend class AVAudioOutputNode;
    friend class AVAudioPCMBufferPool;
    friend struct AVAudioPCMBufferRecycler;

    AVAudioPCMBuffer() = default;

    /// Whether `frameCapacity` frames of the format go into `bytes`.
    static bool fits(const AVAudioFormat &format, std::uint32_t frameCapacity, std::size_t bytes);
    /// Becomes an empty buffer of the format on `storage`, in which it fits and which is the same each time. real-time
    void layOut(const AVAudioFormat &format, std::uint32_t frameCapacity, std::span<std::byte> storage);
    /// Becomes an empty buffer whose samples will be written into `block`. real-time
    void setBorrowedForWriting(PlanarBlock block);
    void takeFormat(const AVAudioFormat &format);

    std::optional<AVAudioFormat> m_format;
    std::uint32_t m_frameCapacity = 0;
    std::uint32_t m_frameLength = 0;
    std::size_t m_bufferCount = 0;
    std::array<AudioBuffer, maxBuffers> m_buffers{};
    AVAudioPCMBufferPool *m_pool = nullptr;
    std::uint32_t m_slot = 0;
};

} // namespace tolvenary

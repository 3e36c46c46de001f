#include "platform/audio/av_audio_pcm_buffer.h"

#include "platform/audio/av_audio_pcm_buffer_pool.h"

#include <cassert>

namespace tolvenary
{

void AVAudioPCMBufferRecycler::operator()(AVAudioPCMBuffer *buffer) const noexcept
{
    buffer->m_pool->recycle(buffer->m_slot);
}

std::unique_ptr<AVAudioPCMBuffer> AVAudioPCMBuffer::makeView(const AVAudioFormat &format)
{
    if (format.bufferCount() > maxBuffers)
        return nullptr;
    std::unique_ptr<AVAudioPCMBuffer> view(new AVAudioPCMBuffer);
    view->takeFormat(format);
    return view;
}

void AVAudioPCMBuffer::setBorrowed(std::span<const float *const> channels, std::uint32_t frames)
{
    assert(channels.size() >= m_bufferCount);
    for (std::size_t i = 0; i < m_bufferCount; ++i)
        m_buffers[i].mData = const_cast<float *>(channels[i]); // handed out for reading only
    m_frameCapacity = frames;
    setFrameLength(frames);
}

void AVAudioPCMBuffer::setBorrowedForWriting(PlanarBlock block)
{
    assert(block.channels.size() >= m_bufferCount);
    for (std::size_t i = 0; i < m_bufferCount; ++i)
        m_buffers[i].mData = block.channels[i];
    m_frameCapacity = block.frames;
    setFrameLength(0);
}

void AVAudioPCMBuffer::takeFormat(const AVAudioFormat &format)
{
    m_format = format;
    m_bufferCount = format.bufferCount();
    for (std::size_t i = 0; i < m_bufferCount; ++i)
        m_buffers[i] = {format.isInterleaved() ? format.channelCount() : 1, 0, nullptr};
}

bool AVAudioPCMBuffer::fits(const AVAudioFormat &format, std::uint32_t frameCapacity, std::size_t bytes)
{
    if (format.bufferCount() > maxBuffers)
        return false;
    // None of these products overflows: in a format of several buffers a frame has a few bytes.
    return std::size_t{frameCapacity} * format.bytesPerFrame() * format.bufferCount() <= bytes;
}

void AVAudioPCMBuffer::layOut(const AVAudioFormat &format, std::uint32_t frameCapacity, std::span<std::byte> storage)
{
    // A slot becomes the same again and again, and comparing is cheaper than writing all of it.
    if (m_format == format && m_frameCapacity == frameCapacity)
        return setFrameLength(0);
    takeFormat(format);
    m_frameCapacity = frameCapacity;
    const std::size_t stride = std::size_t{frameCapacity} * format.bytesPerFrame();
    for (std::size_t i = 0; i < m_bufferCount; ++i)
        m_buffers[i].mData = storage.data() + i * stride;
    setFrameLength(0);
}

} // namespace tolvenary

#include "platform/pipewire/pipewire_sample_buffer.h"

#include "platform/audio_buffer_list.h"

#include <cerrno>
#include <utility>

namespace tolvenary
{

PipeWireSampleBuffer::PipeWireSampleBuffer(std::shared_ptr<const SampleBlock> block)
    : m_block(std::move(block)), m_description{m_block->samples->format().streamDescription()}
{
}

CMItemCount PipeWireSampleBuffer::CMSampleBufferGetNumSamples() const
{
    return m_block->samples->frameLength();
}

// The buffers are aligned whether the flags ask for it or not.
OSStatus PipeWireSampleBuffer::CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(
    std::size_t *outSizeNeeded, std::span<std::byte> outBufferList, std::uint32_t, CMBlockBuffer &outBlockBuffer) const
{
    const ConstAudioBufferList buffers = std::as_const(*m_block->samples).audioBufferList();
    const std::size_t needed = audioBufferListSize(buffers.size());
    if (outSizeNeeded != nullptr)
        *outSizeNeeded = needed;
    if (outBufferList.size() < needed)
        return -ENOSPC;
    writeAudioBufferList(buffers, outBufferList);
    outBlockBuffer = m_block;
    return noErr;
}

} // namespace tolvenary

#pragma once

#include "platform/pipewire/sample_queue.h"
#include "platform/sample_buffer.h"

namespace tolvenary
{

/// A block of what a stream captured, as its outputs see it.
class PipeWireSampleBuffer final : public CMSampleBuffer
{
  public:
    explicit PipeWireSampleBuffer(std::shared_ptr<const SampleBlock> block);

    bool CMSampleBufferIsValid() const override { return true; }
    const CMFormatDescription *CMSampleBufferGetFormatDescription() const override { return &m_description; }
    CMItemCount CMSampleBufferGetNumSamples() const override;
    OSStatus CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(std::size_t *outSizeNeeded,
                                                                     std::span<std::byte> outBufferList,
                                                                     std::uint32_t flags,
                                                                     CMBlockBuffer &outBlockBuffer) const override;

  private:
    std::shared_ptr<const SampleBlock> m_block;
    CMFormatDescription m_description;
};

} // namespace tolvenary

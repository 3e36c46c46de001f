#pragma once

#include "platform/sample_buffer.h"

#include <vector>

namespace tolvenary
{

/// A sample buffer of which each part can be made wrong.
class FakeSampleBuffer final : public CMSampleBuffer
{
  public:
    bool isValid = true;
    std::optional<CMFormatDescription> formatDescription;
    CMItemCount numSamples = 0;
    /// Samples of each buffer of the list, as bytes.
    std::vector<std::vector<std::byte>> buffers;
    /// Entries of the list that have this length, but no memory.
    std::vector<std::uint32_t> buffersWithoutData;
    OSStatus bufferListStatus = noErr;

    /// One buffer a channel, `numSamples` samples each.
    void setPlanar(const std::vector<std::vector<float>> &channels);
    void addBuffer(std::span<const float> samples);

    bool CMSampleBufferIsValid() const override { return isValid; }
    const CMFormatDescription *CMSampleBufferGetFormatDescription() const override
    {
        return formatDescription ? &*formatDescription : nullptr;
    }
    CMItemCount CMSampleBufferGetNumSamples() const override { return numSamples; }
    OSStatus CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(std::size_t *outSizeNeeded,
                                                                     std::span<std::byte> outBufferList,
                                                                     std::uint32_t flags,
                                                                     CMBlockBuffer &outBlockBuffer) const override;

    /// How often the buffer list was asked for; the memory offered and the flags of the last time.
    int listsAskedFor() const { return m_listsAskedFor; }
    std::size_t listSizeOffered() const { return m_listSizeOffered; }
    std::uint32_t flagsGiven() const { return m_flagsGiven; }
    /// Blocks that were handed out and are still kept.
    long blocksKept() const { return m_block.use_count() - 1; }

  private:
    CMBlockBuffer m_block = std::make_shared<int>();
    mutable int m_listsAskedFor = 0;
    mutable std::size_t m_listSizeOffered = 0;
    mutable std::uint32_t m_flagsGiven = 0;
};

} // namespace tolvenary

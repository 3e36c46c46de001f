#include "platform/fake/fake_sample_buffer.h"

#include "platform/audio_buffer_list.h"

#include <cerrno>

namespace tolvenary
{

void FakeSampleBuffer::setPlanar(const std::vector<std::vector<float>> &channels)
{
    buffers.clear();
    for (const std::vector<float> &samples : channels)
        addBuffer(samples);
    numSamples = channels.empty() ? 0 : static_cast<CMItemCount>(channels.front().size());
}

void FakeSampleBuffer::addBuffer(std::span<const float> samples)
{
    const auto bytes = std::as_bytes(samples);
    buffers.emplace_back(bytes.begin(), bytes.end());
}

OSStatus FakeSampleBuffer::CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(std::size_t *outSizeNeeded,
                                                                                   std::span<std::byte> outBufferList,
                                                                                   std::uint32_t flags,
                                                                                   CMBlockBuffer &outBlockBuffer) const
{
    ++m_listsAskedFor;
    m_listSizeOffered = outBufferList.size();
    m_flagsGiven = flags;
    std::vector<AudioBuffer> list;
    for (const std::vector<std::byte> &samples : buffers) {
        // The list's type has no constant samples; who gets it only reads.
        auto *data = const_cast<std::byte *>(samples.data());
        list.push_back({1, static_cast<std::uint32_t>(samples.size()), data});
    }
    for (const std::uint32_t size : buffersWithoutData)
        list.push_back({1, size, nullptr});
    const std::size_t needed = audioBufferListSize(list.size());
    if (outSizeNeeded != nullptr)
        *outSizeNeeded = needed;
    if (bufferListStatus != noErr)
        return bufferListStatus;
    if (outBufferList.size() < needed)
        return -ENOSPC;
    writeAudioBufferList(list, outBufferList);
    outBlockBuffer = m_block;
    return noErr;
}

} // namespace tolvenary

#include "capture/block_conversion.h"
#include "capture/process_audio_tap.h"

#include <algorithm>
#include <cstring>

namespace tolvenary
{

// Everything in this file is real-time: it runs inside the device's cycle, and a cycle that cannot become a buffer is
// dropped without a word.

namespace
{

/// Copies what there is of `source`. A pooled buffer still holds an older block; what this cycle does not fill must not
/// be heard again.
void fill(const AudioBuffer &target, const AudioBuffer *source)
{
    if (target.mData == nullptr)
        return;
    const bool readable = source != nullptr && source->mData != nullptr;
    const std::uint32_t bytes = readable ? std::min(source->mDataByteSize, target.mDataByteSize) : 0;
    if (bytes > 0)
        std::memcpy(target.mData, source->mData, bytes);
    std::memset(static_cast<std::byte *>(target.mData) + bytes, 0, target.mDataByteSize - bytes);
}

} // namespace

void ProcessAudioTap::handle(ConstAudioBufferList inputData)
{
    AVAudioPCMBufferPtr copy = copyInput(inputData);
    if (copy == nullptr)
        return;
    AVAudioPCMBufferPtr converted = convert(std::move(copy));
    if (converted != nullptr)
        m_onBuffer(std::move(converted));
}

/// The cycle's input in a buffer of the tap's own format. The first buffer alone tells how many frames there are: it
/// holds all channels of an interleaved format, and a frame's share of one channel otherwise.
AVAudioPCMBufferPtr ProcessAudioTap::copyInput(ConstAudioBufferList inputData)
{
    if (!m_avFormat || inputData.empty())
        return nullptr;
    const AudioBuffer &first = inputData.front();
    if (first.mDataByteSize == 0 || first.mData == nullptr)
        return nullptr;
    const std::uint32_t bytesPerFrame = std::max(m_streamFormat.mBytesPerFrame, 1U);
    if (first.mDataByteSize < bytesPerFrame)
        return nullptr;
    const std::uint32_t frames = first.mDataByteSize / bytesPerFrame;

    AVAudioPCMBufferPtr copy = m_pool.make(*m_avFormat, frames);
    if (copy == nullptr)
        return nullptr;
    copy->setFrameLength(frames);
    const AudioBufferList targets = copy->mutableAudioBufferList();
    for (std::size_t i = 0; i < targets.size(); ++i)
        fill(targets[i], i < inputData.size() ? &inputData[i] : nullptr);
    return copy;
}

AVAudioPCMBufferPtr ProcessAudioTap::convert(AVAudioPCMBufferPtr buffer)
{
    if (buffer->format() == m_targetFormat)
        return buffer;
    if (m_converter == nullptr)
        return nullptr;
    return convertBlock(m_converter.get(), m_pool, *buffer, m_targetFormat);
}

} // namespace tolvenary

#include "capture/block_conversion.h"
#include "capture/block_copy.h"
#include "capture/process_audio_tap.h"

#include <algorithm>

namespace tolvenary
{

// Everything in this file is real-time: it runs inside the device's cycle, and a cycle that cannot become a buffer is
// dropped silently.

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
    copyBuffers(inputData, *copy);
    return copy;
}

AVAudioPCMBufferPtr ProcessAudioTap::convert(AVAudioPCMBufferPtr buffer)
{
    if (m_isInTargetFormat)
        return buffer;
    if (m_converter == nullptr)
        return nullptr;
    return convertBlock(m_converter.get(), m_pool, *buffer, m_targetFormat);
}

} // namespace tolvenary

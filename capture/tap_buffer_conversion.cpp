// The real-time half of ProcessAudioTap: runs in the device's cycle, reports nothing, and drops a cycle that cannot
// become a buffer.

#include "capture/block_conversion.h"
#include "capture/buffer_copy.h"
#include "capture/process_audio_tap.h"

#include <algorithm>

namespace tolvenary
{

void ProcessAudioTap::handle(ConstAudioBufferList inputData)
{
    AVAudioPCMBufferPtr buffer = copy(inputData);
    if (buffer == nullptr)
        return;
    buffer = convert(std::move(buffer));
    if (buffer != nullptr)
        m_onBuffer(std::move(buffer));
}

AVAudioPCMBufferPtr ProcessAudioTap::copy(ConstAudioBufferList source)
{
    if (!m_avFormat || source.empty() || source[0].mDataByteSize == 0 || source[0].mData == nullptr)
        return nullptr;
    const std::uint32_t bytesPerFrame = std::max(m_streamFormat.mBytesPerFrame, 1U);
    // The first buffer tells the frames of all: it is the only one, or one of as many equal ones as there are channels.
    const std::uint32_t frames = source[0].mDataByteSize / bytesPerFrame;
    if (frames == 0)
        return nullptr;
    AVAudioPCMBufferPtr buffer = m_pool.make(*m_avFormat, frames);
    if (buffer == nullptr)
        return nullptr;
    buffer->setFrameLength(frames);
    copyCommonBuffers(source, buffer->mutableAudioBufferList());
    return buffer;
}

AVAudioPCMBufferPtr ProcessAudioTap::convert(AVAudioPCMBufferPtr buffer)
{
    if (buffer->format() == m_targetFormat)
        return buffer;
    if (m_converter == nullptr)
        return nullptr;
    return convertBlock(*m_converter, m_pool, *buffer);
}

} // namespace tolvenary

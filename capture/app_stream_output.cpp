#include "capture/app_stream_output.h"

#include "capture/block_conversion.h"
#include "capture/block_copy.h"
#include "platform/audio_buffer_list.h"
#include "platform/sample_buffer.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace tolvenary
{

namespace
{

std::optional<AVAudioFormat> formatOf(const CMSampleBuffer &sampleBuffer)
{
    const CMFormatDescription *description = sampleBuffer.CMSampleBufferGetFormatDescription();
    if (description == nullptr || !description->streamBasicDescription)
        return std::nullopt;
    return AVAudioFormat::fromStreamDescription(*description->streamBasicDescription);
}

/// Stops the program if that is no 32-bit count: such a sample buffer is a defect, not a condition.
std::uint32_t frameCountOf(const CMSampleBuffer &sampleBuffer)
{
    const CMItemCount samples = sampleBuffer.CMSampleBufferGetNumSamples();
    if (samples < 0 || samples > std::numeric_limits<std::uint32_t>::max())
        std::abort();
    return static_cast<std::uint32_t>(samples);
}

/// Whether samples of the one format can be taken for samples of the other. Unlike for a tap, nothing else in the
/// formats matters here: what a stream delivers is fit to be mixed.
bool areSamplesAlike(const AVAudioFormat &one, const AVAudioFormat &other)
{
    return one.sampleRate() == other.sampleRate() && one.channelCount() == other.channelCount() &&
           one.commonFormat() == other.commonFormat() && one.isInterleaved() == other.isInterleaved();
}

} // namespace

AppStreamOutput::AppStreamOutput(AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat, OnBuffer onBuffer)
    : m_pool(pool), m_targetFormat(targetFormat), m_onBuffer(std::move(onBuffer))
{
}

void AppStreamOutput::streamDidOutputSampleBufferOfType(SCStream &, const CMSampleBuffer &sampleBuffer,
                                                        SCStreamOutputType type)
{
    if (type != SCStreamOutputType::audio || !sampleBuffer.CMSampleBufferIsValid())
        return;
    AVAudioPCMBufferPtr buffer = pcmBufferFrom(sampleBuffer);
    if (buffer == nullptr)
        return;
    AVAudioPCMBufferPtr converted = convertIfNeeded(std::move(buffer));
    if (converted != nullptr)
        m_onBuffer(std::move(converted));
}

/// The samples in a buffer of their own format.
AVAudioPCMBufferPtr AppStreamOutput::pcmBufferFrom(const CMSampleBuffer &sampleBuffer)
{
    const std::optional<AVAudioFormat> format = formatOf(sampleBuffer);
    if (!format)
        return nullptr;
    const std::uint32_t frames = frameCountOf(sampleBuffer);
    if (frames == 0)
        return nullptr;
    AVAudioPCMBufferPtr buffer = m_pool.make(*format, frames);
    if (buffer == nullptr)
        return nullptr;
    buffer->setFrameLength(frames);

    // Room for one more entry than there are channels.
    const std::uint32_t channels = std::max(format->channelCount(), 1U);
    std::vector<std::byte> list(audioBufferListSize(channels + 1));
    CMBlockBuffer block; // keeps the samples until they are copied
    const OSStatus status = sampleBuffer.CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(
        nullptr, list, kCMSampleBufferFlag_AudioBufferList_Assure16ByteAlignment, block);
    if (status != noErr)
        return nullptr;
    copyBuffers(readAudioBufferList(list), *buffer);
    return buffer;
}

AVAudioPCMBufferPtr AppStreamOutput::convertIfNeeded(AVAudioPCMBufferPtr buffer)
{
    if (areSamplesAlike(buffer->format(), m_targetFormat))
        return buffer;
    if (!prepareConverter(buffer->format()))
        return nullptr;
    return convertBlock(m_converter.get(), m_pool, *buffer, m_targetFormat);
}

/// False when there is no converter from that format.
bool AppStreamOutput::prepareConverter(const AVAudioFormat &format)
{
    if (m_converter == nullptr || m_sourceFormat != format) {
        m_sourceFormat = format;
        m_converter = AVAudioConverter::make(format, m_targetFormat);
    }
    return m_converter != nullptr;
}

} // namespace tolvenary

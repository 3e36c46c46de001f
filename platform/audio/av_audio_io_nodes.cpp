#include "platform/audio/av_audio_io_nodes.h"

#include "platform/audio/av_audio_sink_node.h"
#include "platform/audio/planar.h"

#include <cerrno>
#include <cmath>

namespace tolvenary
{

AudioOutputUnit *AVAudioOutputNode::audioUnit() const
{
    return m_unit.get();
}

void AVAudioOutputNode::setInput(std::uint32_t, AVAudioNode *source)
{
    m_source = source;
}

bool AVAudioOutputNode::rateIsConverted() const
{
    return m_unit != nullptr && m_inputFormat && m_unit->sampleRate() != m_inputFormat->sampleRate();
}

void AVAudioOutputNode::prepare(std::uint32_t maxFrames, bool rateIsConverted)
{
    m_pulled.reset();
    m_converter.reset();
    const auto unitFormat =
        rateIsConverted ? AVAudioFormat::standardFormat(m_unit->sampleRate(), 2) : std::optional<AVAudioFormat>();
    if (!unitFormat)
        return;
    const double longestPull = std::ceil(maxFrames * m_inputFormat->sampleRate() / unitFormat->sampleRate());
    const auto pullFrames = static_cast<std::uint32_t>(longestPull);
    m_converter = AVAudioConverter::make(*m_inputFormat, *unitFormat, pullFrames);
    m_outputView = AVAudioPCMBuffer::makeView(*unitFormat);
    m_pullPool = std::make_unique<AVAudioPCMBufferPool>(1, std::size_t{pullFrames} * m_inputFormat->bytesPerFrame() *
                                                               m_inputFormat->bufferCount());
    m_pulled = m_pullPool->make(*m_inputFormat, pullFrames);
}

OSStatus AVAudioOutputNode::start()
{
    if (m_unit == nullptr)
        return -ENODEV;
    if (rateIsConverted() && (m_converter == nullptr || m_pulled == nullptr))
        return -EINVAL;
    return m_unit->AudioOutputUnitStart([this](PlanarBlock output) { render(output); });
}

void AVAudioOutputNode::stop()
{
    m_unit->AudioOutputUnitStop();
}

void AVAudioOutputNode::render(PlanarBlock output)
{
    if (m_source == nullptr)
        return silence(output);
    if (m_converter == nullptr)
        return m_source->render(output);
    m_outputView->setBorrowedForWriting(output);
    m_converter->convertToBuffer(*m_outputView, nullptr,
                                 [this](std::uint32_t frames, AVAudioConverterInputStatus &) { return pull(frames); });
}

/// The next block of the graph, of the length asked for, or of the longest prepared for. real-time
const AVAudioPCMBuffer *AVAudioOutputNode::pull(std::uint32_t frames)
{
    m_pulled->setFrameLength(frames);
    const std::array<float *, 2> channels{m_pulled->floatChannel(0), m_pulled->floatChannel(1)};
    m_source->render({channels, m_pulled->frameLength()});
    return m_pulled.get();
}

std::optional<AVAudioFormat> AVAudioInputNode::inputFormatForBus(std::uint32_t bus) const
{
    if (bus != 0 || m_unit == nullptr)
        return std::nullopt;
    const InputUnitFormat format = m_unit->inputFormat();
    return AVAudioFormat::standardFormat(format.sampleRate, format.channelCount);
}

void AVAudioInputNode::installTapOnBus(std::uint32_t bus, std::uint32_t, const AVAudioFormat &format,
                                       AVAudioNodeTapBlock block)
{
    if (bus == 0)
        m_tap.install(format, std::move(block));
}

void AVAudioInputNode::removeTapOnBus(std::uint32_t bus)
{
    if (bus == 0)
        m_tap.remove();
}

OSStatus AVAudioInputNode::start()
{
    if (m_unit == nullptr)
        return -ENODEV;
    return m_unit->AudioOutputUnitStart(
        [this](const AudioTimeStamp &when, ConstPlanarBlock input) { capture(when, input); });
}

void AVAudioInputNode::stop()
{
    m_unit->AudioOutputUnitStop();
}

void AVAudioInputNode::capture(const AudioTimeStamp &when, ConstPlanarBlock input)
{
    m_tap.deliver(when, input);
    if (m_sink != nullptr)
        m_sink->receive(when, input);
}

} // namespace tolvenary

#include "platform/pipewire/pipewire_input_unit.h"

#include "platform/pipewire/port_names.h"

#include <cerrno>

namespace tolvenary
{

namespace
{

NodeSpec inputNode(const GraphSession &session, const MicrophonePorts &ports)
{
    NodeSpec spec{"com.tolvenary.microphone", "Tolvenary microphone", session.group(), "Capture", ports.specs()};
    spec.ports.push_back({PortDirection::output, port_names::order, false});
    return spec;
}

} // namespace

InputUnitFormat PipeWireInputUnit::inputFormat()
{
    const Connection::Lock lock(m_session.connection());
    const GraphNode *source = m_session.microphone();
    if (source == nullptr)
        return {};
    const auto channels = static_cast<std::uint32_t>(m_session.graph().capturePorts(*source).size());
    return channels == 0 ? InputUnitFormat{} : InputUnitFormat{static_cast<double>(m_session.rate()), channels};
}

OSStatus PipeWireInputUnit::AudioOutputUnitStart(CaptureCallback capture)
{
    const std::uint32_t channels = inputFormat().channelCount;
    if (channels == 0)
        return -ENODEV;
    m_node.reset();
    m_capture = std::move(capture);
    m_ports = std::make_unique<MicrophonePorts>(channels);
    m_node = std::make_unique<SessionNode>(m_session, inputNode(m_session, *m_ports), InputRole{m_ports.get()},
                                           [this](const Cycle &cycle) { process(cycle); });
    const Connection::Lock lock(m_session.connection());
    if (const OSStatus status = m_session.waitUntilThere(m_node->node()); status != noErr)
        return status;
    m_node->start();
    m_sign = std::make_unique<MicrophoneSign>(m_session);
    return noErr;
}

OSStatus PipeWireInputUnit::AudioOutputUnitStop()
{
    m_sign.reset();
    m_node.reset();
    return noErr;
}

void PipeWireInputUnit::process(const Cycle &cycle)
{
    const auto channels = m_ports->hear(cycle);
    if (!channels.empty())
        m_capture(cycle.when(), {channels, cycle.frames()});
}

} // namespace tolvenary

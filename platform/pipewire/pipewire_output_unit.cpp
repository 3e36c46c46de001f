#include "platform/pipewire/pipewire_output_unit.h"

#include "platform/pipewire/port_names.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tolvenary
{

namespace
{

enum Port : std::size_t { left, right, mono, order };

NodeSpec outputNode(const GraphSession &session)
{
    return {"com.tolvenary.output",
            "Tolvenary",
            session.group(),
            "Playback",
            {{PortDirection::output, port_names::left},
             {PortDirection::output, port_names::right},
             {PortDirection::output, port_names::mono},
             {PortDirection::input, port_names::order, false}}};
}

bool isCurrentDevice(std::uint32_t property, std::uint32_t scope, std::uint32_t element)
{
    return property == kAudioOutputUnitProperty_CurrentDevice && scope == kAudioUnitScope_Global && element == 0;
}

} // namespace

OSStatus PipeWireOutputUnit::AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                                  const void *data, std::uint32_t size)
{
    AudioObjectID device = kAudioObjectUnknown;
    if (!isCurrentDevice(property, scope, element) || size != sizeof device || data == nullptr)
        return -EINVAL;
    std::memcpy(&device, data, sizeof device);
    return bind(device);
}

OSStatus PipeWireOutputUnit::bind(AudioObjectID device)
{
    std::string name;
    {
        const Connection::Lock lock(m_session.connection());
        if (!m_session.connection().isResponsive())
            return -ENOTCONN;
        const GraphNode *found = m_session.device(device);
        if (found == nullptr)
            return -ENODEV;
        if (m_session.graph().playbackPorts(*found).empty())
            return -ENOTSUP;
        name = found->name;
    }
    m_left.resize(FilterNode::maxFrames);
    m_right.resize(FilterNode::maxFrames);
    m_node = std::make_unique<SessionNode>(m_session, outputNode(m_session), OutputRole{name},
                                           [this](const Cycle &cycle) { process(cycle); });
    const Connection::Lock lock(m_session.connection());
    if (const OSStatus status = m_session.waitUntilThere(m_node->node()); status != noErr)
        return status;
    if (const OSStatus status = m_session.waitUntilLinked(m_node->node()); status != noErr)
        return status;
    m_session.waitUntilRunning(m_node->node());
    return noErr;
}

OSStatus PipeWireOutputUnit::AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                                  void *outData, std::uint32_t &ioSize)
{
    if (!isCurrentDevice(property, scope, element) || ioSize < sizeof(AudioObjectID) || outData == nullptr)
        return -EINVAL;
    const Connection::Lock lock(m_session.connection());
    const AudioObjectID device = m_node ? m_session.linkedDevice(m_node->node()) : kAudioObjectUnknown;
    std::memcpy(outData, &device, sizeof device);
    ioSize = sizeof device;
    return noErr;
}

double PipeWireOutputUnit::sampleRate()
{
    const Connection::Lock lock(m_session.connection());
    return m_session.rate();
}

OSStatus PipeWireOutputUnit::AudioOutputUnitStart(RenderCallback render)
{
    if (!m_node)
        return -ENODEV;
    m_node->stop();
    m_render = std::move(render);
    m_node->start();
    return noErr;
}

OSStatus PipeWireOutputUnit::AudioOutputUnitStop()
{
    if (m_node)
        m_node->stop();
    return noErr;
}

void PipeWireOutputUnit::process(const Cycle &cycle)
{
    // Rendered also while the device is away: what is captured must not pile up until it comes back.
    const auto buffer = [&](Port port, std::vector<float> &own) {
        float *linked = cycle.output(port);
        return linked != nullptr ? linked : own.data();
    };
    const std::array channels{buffer(left, m_left), buffer(right, m_right)};
    m_render({channels, cycle.frames()});
    float *both = cycle.output(mono);
    if (both == nullptr)
        return;
    for (std::uint32_t i = 0; i < cycle.frames(); ++i)
        both[i] = (channels[0][i] + channels[1][i]) / 2;
}

} // namespace tolvenary

#include "platform/pipewire/tap_device.h"

#include "platform/pipewire/port_names.h"

#include <cerrno>

namespace tolvenary
{

namespace
{

NodeSpec tapNode(const GraphSession &session, const std::string &name, const std::string &uid)
{
    std::vector<PortSpec> ports = StereoFoldDown::ports();
    ports.push_back({PortDirection::output, port_names::order, false});
    return {uid, name, session.group(), "Capture", std::move(ports), false};
}

} // namespace

TapDevice::TapDevice(GraphSession &session, const std::string &name, const std::string &uid,
                     std::set<std::int32_t> excludedProcesses)
    : m_session(session),
      m_node(session, tapNode(session, name, uid), TapRole{std::move(excludedProcesses)},
             [this](const Cycle &cycle) { process(cycle); })
{
}

OSStatus TapDevice::waitUntilThere()
{
    const Connection::Lock lock(m_session.connection());
    return m_session.waitUntilThere(m_node.node());
}

AudioStreamBasicDescription TapDevice::streamFormat()
{
    const Connection::Lock lock(m_session.connection());
    AudioStreamBasicDescription format;
    format.mSampleRate = m_session.rate();
    format.mFormatID = kAudioFormatLinearPCM;
    format.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked | kAudioFormatFlagIsNonInterleaved;
    format.mBytesPerPacket = sizeof(float);
    format.mFramesPerPacket = 1;
    format.mBytesPerFrame = sizeof(float);
    format.mChannelsPerFrame = 2;
    format.mBitsPerChannel = 32;
    return format;
}

OSStatus TapDevice::addProc(AudioDeviceIOProcID proc, AudioDeviceIOBlock block)
{
    if (m_block)
        return -EBUSY;
    m_proc = proc;
    m_block = std::move(block);
    return noErr;
}

OSStatus TapDevice::removeProc(AudioDeviceIOProcID proc)
{
    const OSStatus status = stop(proc);
    if (status == noErr)
        m_block = nullptr;
    return status;
}

OSStatus TapDevice::start(AudioDeviceIOProcID proc)
{
    if (!m_block || proc != m_proc)
        return -EINVAL;
    const Connection::Lock lock(m_session.connection());
    if (!m_session.connection().isResponsive())
        return -ENOTCONN;
    m_node.start();
    m_node.node().setActive(true);
    return noErr;
}

OSStatus TapDevice::stop(AudioDeviceIOProcID proc)
{
    if (!m_block || proc != m_proc)
        return -EINVAL;
    m_node.stop();
    const Connection::Lock lock(m_session.connection());
    m_node.node().setActive(false);
    return noErr;
}

void TapDevice::process(const Cycle &cycle)
{
    const std::span<const float *const> channels = m_foldDown.fold(cycle);
    if (channels.empty())
        return;
    const std::uint32_t bytes = cycle.frames() * static_cast<std::uint32_t>(sizeof(float));
    // The list's type has no constant samples; the block only reads.
    const std::array buffers{AudioBuffer{1, bytes, const_cast<float *>(channels[0])},
                             AudioBuffer{1, bytes, const_cast<float *>(channels[1])}};
    m_block(cycle.when(), buffers, cycle.when(), {}, cycle.when());
}

} // namespace tolvenary

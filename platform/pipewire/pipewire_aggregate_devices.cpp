#include "platform/pipewire/pipewire_aggregate_devices.h"

#include <cerrno>

namespace tolvenary
{

namespace
{

std::string textOf(const Dictionary &description, const std::string &key)
{
    const auto found = description.find(key);
    const auto *text = found == description.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text == nullptr ? std::string() : *text;
}

} // namespace

OSStatus PipeWireAggregateDevices::AudioHardwareCreateAggregateDevice(const Dictionary &description,
                                                                      AudioObjectID &outDevice)
{
    const std::string name = textOf(description, "name");
    const std::string uid = textOf(description, "uid");
    const PipeWireProcessTaps::Tap *tap = m_taps.tapWithUid(textOf(description, "master"));
    if (name.empty() || uid.empty() || tap == nullptr)
        return -EINVAL;
    auto device = std::make_unique<TapDevice>(m_session, name, uid, tap->excludedProcesses);
    if (const OSStatus status = device->waitUntilThere(); status != noErr)
        return status;
    const Connection::Lock lock(m_session.connection());
    outDevice = m_session.ids().make();
    m_devices.emplace(outDevice, std::move(device));
    return noErr;
}

OSStatus PipeWireAggregateDevices::AudioHardwareDestroyAggregateDevice(AudioObjectID device)
{
    return m_devices.erase(device) > 0 ? noErr : -ENOENT;
}

TapDevice *PipeWireAggregateDevices::device(AudioObjectID id) const
{
    const auto found = m_devices.find(id);
    return found == m_devices.end() ? nullptr : found->second.get();
}

} // namespace tolvenary

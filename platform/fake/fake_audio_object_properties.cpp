#include "platform/fake/fake_audio_object_properties.h"

#include "platform/audio_buffer_list.h"

#include <algorithm>
#include <cerrno>

namespace tolvenary
{

namespace
{

std::string selectorText(std::uint32_t selector)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(selector >> shift & 0xFFU);
    return text;
}

template <typename T> std::vector<std::byte> bytesOf(std::span<const T> values)
{
    const auto bytes = std::as_bytes(values);
    return {bytes.begin(), bytes.end()};
}

bool isText(std::uint32_t selector)
{
    return selector == kAudioObjectPropertyName || selector == kAudioDevicePropertyDeviceUID ||
           selector == kAudioTapPropertyUID;
}

/// Where a property is found, as the system has it: nothing is answered elsewhere.
std::uint32_t scopeOf(std::uint32_t selector)
{
    if (selector == kAudioDevicePropertyStreamConfiguration)
        return kAudioDevicePropertyScopeOutput;
    return selector == kAudioDevicePropertyStreamFormat ? kAudioObjectPropertyScopeInput
                                                        : kAudioObjectPropertyScopeGlobal;
}

bool isThere(AudioObjectID object, const AudioObjectPropertyAddress &address)
{
    const bool isSystems = address.mSelector == kAudioHardwarePropertyDevices ||
                           address.mSelector == kAudioHardwarePropertyTranslatePIDToProcessObject;
    return address.mScope == scopeOf(address.mSelector) && address.mElement == kAudioObjectPropertyElementMain &&
           isSystems == (object == kAudioObjectSystemObject);
}

std::optional<std::vector<std::byte>> streamConfiguration(const FakeDevice &device)
{
    if (device.configurationHasNoSize)
        return std::vector<std::byte>();
    if (!device.outputBuffers)
        return std::nullopt;
    std::vector<AudioBuffer> buffers;
    for (const std::uint32_t channels : *device.outputBuffers)
        buffers.push_back({channels, 0, nullptr});
    std::vector<std::byte> bytes(audioBufferListSize(buffers.size()));
    writeAudioBufferList(buffers, bytes);
    return bytes;
}

} // namespace

OSStatus FakeAudioObjectProperties::AudioObjectGetPropertyDataSize(AudioObjectID object,
                                                                   const AudioObjectPropertyAddress &address,
                                                                   std::uint32_t &outDataSize)
{
    const OSStatus status = m_calls.note("AudioObjectGetPropertyDataSize " + selectorText(address.mSelector));
    if (status != noErr)
        return status;
    const auto bytes = isThere(object, address) ? value(object, address, {}) : std::nullopt;
    if (!bytes)
        return -ENOENT;
    outDataSize = static_cast<std::uint32_t>(bytes->size());
    return noErr;
}

OSStatus FakeAudioObjectProperties::AudioObjectGetPropertyData(AudioObjectID object,
                                                               const AudioObjectPropertyAddress &address,
                                                               std::span<const std::byte> qualifier,
                                                               std::uint32_t &ioDataSize, void *outData)
{
    m_reads.push_back({object, address, ioDataSize});
    const OSStatus status = m_calls.note("AudioObjectGetPropertyData " + selectorText(address.mSelector));
    if (status != noErr)
        return status;
    if (!isThere(object, address))
        return -ENOENT;
    if (isText(address.mSelector)) {
        const auto found = text(object, address.mSelector);
        if (!found || ioDataSize != sizeof(StringReference))
            return -ENOENT;
        **static_cast<StringReference *>(outData) = *found;
        return noErr;
    }
    const auto bytes = value(object, address, qualifier);
    if (!bytes)
        return -ENOENT;
    ioDataSize = std::min(ioDataSize, static_cast<std::uint32_t>(bytes->size()));
    std::memcpy(outData, bytes->data(), ioDataSize);
    return noErr;
}

std::optional<std::vector<std::byte>> FakeAudioObjectProperties::value(AudioObjectID object,
                                                                       const AudioObjectPropertyAddress &address,
                                                                       std::span<const std::byte> qualifier) const
{
    switch (address.mSelector) {
    case kAudioHardwarePropertyDevices:
        return deviceList();
    case kAudioHardwarePropertyTranslatePIDToProcessObject: {
        const AudioObjectID process = processObject(qualifier);
        return bytesOf(std::span(&process, 1));
    }
    case kAudioDevicePropertyStreamConfiguration: {
        const FakeDevice *const device = m_objects.device(object);
        return device == nullptr ? std::nullopt : streamConfiguration(*device);
    }
    case kAudioDevicePropertyStreamFormat:
        if (std::count(m_objects.aggregates.begin(), m_objects.aggregates.end(), object) == 0)
            return std::nullopt;
        return bytesOf(std::span(&m_objects.aggregateFormat, 1));
    default:
        return std::nullopt;
    }
}

std::optional<std::string> FakeAudioObjectProperties::text(AudioObjectID object, std::uint32_t selector) const
{
    if (selector == kAudioTapPropertyUID) {
        const auto tap = m_objects.taps.find(object);
        return tap == m_objects.taps.end() ? std::nullopt : std::optional(tap->second);
    }
    const FakeDevice *const device = m_objects.device(object);
    if (device == nullptr)
        return std::nullopt;
    return selector == kAudioObjectPropertyName ? device->name : device->uid;
}

std::vector<std::byte> FakeAudioObjectProperties::deviceList() const
{
    std::vector<AudioObjectID> ids;
    for (const FakeDevice &device : m_objects.devices)
        ids.push_back(device.id);
    return bytesOf(std::span<const AudioObjectID>(ids));
}

AudioObjectID FakeAudioObjectProperties::processObject(std::span<const std::byte> qualifier) const
{
    std::int32_t pid = 0;
    std::memcpy(&pid, qualifier.data(), std::min(sizeof pid, qualifier.size()));
    const auto process = m_objects.processes.find(pid);
    return process == m_objects.processes.end() ? kAudioObjectUnknown : process->second;
}

} // namespace tolvenary

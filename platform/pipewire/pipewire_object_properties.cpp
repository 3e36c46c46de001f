#include "platform/pipewire/pipewire_object_properties.h"

#include "platform/audio_buffer_list.h"

#include <algorithm>
#include <cerrno>

namespace tolvenary
{

namespace
{

template <typename T> std::vector<std::byte> bytesOf(const std::vector<T> &values)
{
    const std::span<const std::byte> bytes = std::as_bytes(std::span(values));
    return {bytes.begin(), bytes.end()};
}

std::string shownName(const GraphNode &device)
{
    if (!device.description.empty())
        return device.description;
    return device.nick.empty() ? device.name : device.nick;
}

} // namespace

OSStatus PipeWireObjectProperties::AudioObjectGetPropertyDataSize(AudioObjectID object,
                                                                  const AudioObjectPropertyAddress &address,
                                                                  std::uint32_t &outDataSize)
{
    const Value value = read(object, address, {});
    if (value.status == noErr)
        outDataSize = value.text ? sizeof(StringReference) : static_cast<std::uint32_t>(value.bytes.size());
    return value.status;
}

OSStatus PipeWireObjectProperties::AudioObjectGetPropertyData(AudioObjectID object,
                                                              const AudioObjectPropertyAddress &address,
                                                              std::span<const std::byte> qualifier,
                                                              std::uint32_t &ioDataSize, void *outData)
{
    const Value value = read(object, address, qualifier);
    if (value.status != noErr)
        return value.status;
    if (value.text) {
        if (ioDataSize < sizeof(StringReference))
            return -EINVAL;
        **static_cast<StringReference *>(outData) = *value.text;
        ioDataSize = sizeof(StringReference);
        return noErr;
    }
    // A list may have grown since its size was asked for: give as much as there is room for.
    ioDataSize = std::min(ioDataSize, static_cast<std::uint32_t>(value.bytes.size()));
    std::copy_n(value.bytes.begin(), ioDataSize, static_cast<std::byte *>(outData));
    return noErr;
}

PipeWireObjectProperties::Value PipeWireObjectProperties::read(AudioObjectID object,
                                                               const AudioObjectPropertyAddress &address,
                                                               std::span<const std::byte> qualifier)
{
    if (TapDevice *aggregate = m_aggregates.device(object); aggregate != nullptr) {
        if (address.mSelector != kAudioDevicePropertyStreamFormat || address.mScope != kAudioObjectPropertyScopeInput)
            return {-EINVAL, {}, {}};
        return {noErr, bytesOf(std::vector{aggregate->streamFormat()}), {}};
    }
    if (const PipeWireProcessTaps::Tap *tap = m_taps.tap(object); tap != nullptr) {
        if (address.mSelector != kAudioTapPropertyUID)
            return {-EINVAL, {}, {}};
        return {noErr, {}, tap->uid};
    }
    const Connection::Lock lock(m_session.connection());
    if (object == kAudioObjectSystemObject)
        return readSystem(address.mSelector, qualifier);
    const GraphNode *device = m_session.device(object);
    return device == nullptr ? Value{-ENODEV, {}, {}} : readDevice(*device, address);
}

PipeWireObjectProperties::Value PipeWireObjectProperties::readSystem(std::uint32_t selector,
                                                                     std::span<const std::byte> qualifier)
{
    if (selector == kAudioHardwarePropertyDevices) {
        std::vector<AudioObjectID> ids;
        for (const GraphNode *device : m_session.graph().devices()) {
            const AudioObjectID id = m_session.deviceId(*device);
            if (std::ranges::find(ids, id) == ids.end())
                ids.push_back(id);
        }
        return {noErr, bytesOf(ids), {}};
    }
    if (selector == kAudioHardwarePropertyTranslatePIDToProcessObject && qualifier.size() == sizeof(std::int32_t)) {
        if (!m_session.connection().isResponsive())
            return {-ENOTCONN, {}, {}};
        std::int32_t processId = 0;
        std::memcpy(&processId, qualifier.data(), sizeof processId);
        return {noErr, bytesOf(std::vector{processObject(processId)}), {}};
    }
    return {-EINVAL, {}, {}};
}

AudioObjectID PipeWireObjectProperties::processObject(std::int32_t processId)
{
    for (const auto &[id, client] : m_session.graph().clients) {
        if (client.processId == processId)
            return m_session.clientId(client);
    }
    return kAudioObjectUnknown;
}

PipeWireObjectProperties::Value PipeWireObjectProperties::readDevice(const GraphNode &device,
                                                                     const AudioObjectPropertyAddress &address)
{
    switch (address.mSelector) {
    case kAudioObjectPropertyName:
        return {noErr, {}, shownName(device)};
    case kAudioDevicePropertyDeviceUID:
        return {noErr, {}, device.name};
    case kAudioDevicePropertyStreamConfiguration: {
        if (address.mScope != kAudioDevicePropertyScopeOutput)
            return {-EINVAL, {}, {}};
        std::vector<AudioBuffer> buffers;
        if (const std::size_t channels = m_session.graph().playbackPorts(device).size(); channels > 0)
            buffers.push_back({static_cast<std::uint32_t>(channels), 0, nullptr});
        std::vector<std::byte> bytes(audioBufferListSize(buffers.size()));
        writeAudioBufferList(buffers, bytes);
        return {noErr, std::move(bytes), {}};
    }
    default:
        return {-EINVAL, {}, {}};
    }
}

} // namespace tolvenary

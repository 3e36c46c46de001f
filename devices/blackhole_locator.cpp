#include "devices/blackhole_locator.h"

#include "platform/audio_buffer_list.h"

#include <QString>

#include <cstdlib>

namespace tolvenary
{

namespace
{

/// Case is ignored, not only that of ASCII; with a space inside the name it is not a BlackHole.
bool isBlackHoleName(const std::string &name)
{
    return QString::fromStdString(name).contains(QLatin1String("blackhole"), Qt::CaseInsensitive);
}

std::optional<std::string> stringProperty(AudioObjectProperties &properties, AudioObjectID device,
                                          std::uint32_t selector)
{
    std::string text;
    StringReference reference = &text;
    std::uint32_t size = sizeof(StringReference);
    const AudioObjectPropertyAddress address{selector, kAudioObjectPropertyScopeGlobal,
                                             kAudioObjectPropertyElementMain};
    if (properties.AudioObjectGetPropertyData(device, address, {}, size, &reference) != noErr)
        return std::nullopt;
    return text;
}

/// Signed, as the system counts. A sum beyond that can only come from a broken system, and ends the program.
std::int32_t channelSum(const std::vector<AudioBuffer> &buffers)
{
    std::int32_t sum = 0;
    for (const AudioBuffer &buffer : buffers) {
        if (__builtin_add_overflow(sum, static_cast<std::int32_t>(buffer.mNumberChannels), &sum))
            std::abort();
    }
    return sum;
}

/// 0 also when the device does not tell.
std::int32_t outputChannels(AudioObjectProperties &properties, AudioObjectID device)
{
    const AudioObjectPropertyAddress address{kAudioDevicePropertyStreamConfiguration, kAudioDevicePropertyScopeOutput,
                                             kAudioObjectPropertyElementMain};
    std::uint32_t size = 0;
    if (properties.AudioObjectGetPropertyDataSize(device, address, size) != noErr || size == 0)
        return 0;
    std::vector<std::byte> bytes(size);
    if (properties.AudioObjectGetPropertyData(device, address, {}, size, bytes.data()) != noErr)
        return 0;
    return channelSum(readAudioBufferList(bytes));
}

} // namespace

std::vector<BlackHoleDevice> BlackHoleLocator::findAll(AudioObjectProperties &properties)
{
    std::vector<BlackHoleDevice> found;
    for (const AudioObjectID id : deviceIDs(properties)) {
        if (auto device = describe(properties, id))
            found.push_back(std::move(*device));
    }
    return found;
}

std::vector<AudioObjectID> BlackHoleLocator::deviceIDs(AudioObjectProperties &properties)
{
    const AudioObjectPropertyAddress address{kAudioHardwarePropertyDevices, kAudioObjectPropertyScopeGlobal,
                                             kAudioObjectPropertyElementMain};
    std::uint32_t size = 0;
    if (properties.AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, address, size) != noErr)
        return {};
    std::vector<AudioObjectID> ids(size / sizeof(AudioObjectID));
    if (ids.empty())
        return {};
    // Whole entries only: an odd size must not write past the list.
    auto room = static_cast<std::uint32_t>(ids.size() * sizeof(AudioObjectID));
    if (properties.AudioObjectGetPropertyData(kAudioObjectSystemObject, address, {}, room, ids.data()) != noErr)
        return {};
    return ids;
}

/// Empty for a device that is not a BlackHole, or has no output.
std::optional<BlackHoleDevice> BlackHoleLocator::describe(AudioObjectProperties &properties, AudioObjectID device)
{
    auto name = stringProperty(properties, device, kAudioObjectPropertyName);
    if (!name || !isBlackHoleName(*name) || outputChannels(properties, device) <= 0)
        return std::nullopt;
    const auto uid = stringProperty(properties, device, kAudioDevicePropertyDeviceUID);
    return BlackHoleDevice{device, std::move(*name), uid.value_or(std::string())};
}

} // namespace tolvenary

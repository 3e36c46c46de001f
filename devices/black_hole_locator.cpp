#include "devices/black_hole_locator.h"

#include "platform/stream_configuration.h"

#include <QString>
#include <cstdlib>
#include <limits>
#include <optional>

namespace tolvenary
{

namespace
{

constexpr AudioObjectPropertyAddress global(std::uint32_t selector)
{
    return {selector, kAudioObjectPropertyScopeGlobal, kAudioObjectPropertyElementMain};
}

std::optional<std::string> stringProperty(AudioObjectProperties &objects, AudioObjectID device, std::uint32_t selector)
{
    std::string text;
    StringReference reference = &text;
    std::uint32_t size = sizeof reference;
    if (objects.AudioObjectGetPropertyData(device, global(selector), {}, size, &reference) != noErr)
        return std::nullopt;
    return text;
}

bool isBlackHole(const std::string &name)
{
    return QString::fromStdString(name).contains(QStringLiteral("blackhole"), Qt::CaseInsensitive);
}

// The sum is signed, as the system's own counts are; one that overflows can only come from a broken system.
std::int32_t channelCount(const std::vector<AudioBuffer> &buffers)
{
    std::int64_t sum = 0;
    for (const AudioBuffer &buffer : buffers) {
        sum += static_cast<std::int32_t>(buffer.mNumberChannels);
        if (sum > std::numeric_limits<std::int32_t>::max() || sum < std::numeric_limits<std::int32_t>::min())
            std::abort();
    }
    return static_cast<std::int32_t>(sum);
}

bool hasOutputChannels(AudioObjectProperties &objects, AudioObjectID device)
{
    constexpr AudioObjectPropertyAddress address{kAudioDevicePropertyStreamConfiguration,
                                                 kAudioDevicePropertyScopeOutput, kAudioObjectPropertyElementMain};
    std::uint32_t size = 0;
    if (objects.AudioObjectGetPropertyDataSize(device, address, size) != noErr || size == 0)
        return false;
    std::vector<std::byte> bytes(size);
    if (objects.AudioObjectGetPropertyData(device, address, {}, size, bytes.data()) != noErr)
        return false;
    return channelCount(readStreamConfiguration(bytes)) > 0;
}

} // namespace

std::vector<AudioObjectID> BlackHoleLocator::deviceIDs(AudioObjectProperties &objects)
{
    constexpr AudioObjectPropertyAddress address = global(kAudioHardwarePropertyDevices);
    std::uint32_t size = 0;
    if (objects.AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, address, size) != noErr)
        return {};
    std::vector<AudioObjectID> ids(size / sizeof(AudioObjectID));
    if (objects.AudioObjectGetPropertyData(kAudioObjectSystemObject, address, {}, size, ids.data()) != noErr)
        return {};
    return ids;
}

std::vector<BlackHoleDevice> BlackHoleLocator::findAll(AudioObjectProperties &objects)
{
    std::vector<BlackHoleDevice> found;
    for (const AudioObjectID id : deviceIDs(objects)) {
        const std::optional<std::string> name = stringProperty(objects, id, kAudioObjectPropertyName);
        if (!name || !isBlackHole(*name) || !hasOutputChannels(objects, id))
            continue;
        found.push_back({id, *name, stringProperty(objects, id, kAudioDevicePropertyDeviceUID).value_or("")});
    }
    return found;
}

} // namespace tolvenary

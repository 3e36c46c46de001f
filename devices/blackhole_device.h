#pragma once

#include "platform/audio_types.h"

#include <functional>
#include <string>

namespace tolvenary
{

/// One BlackHole output device, as it was when the devices were listed.
struct BlackHoleDevice {
    AudioObjectID id = kAudioObjectUnknown;
    std::string name; ///< as the system reports it, UTF-8
    std::string uid;  ///< outlives a restart of the sound system; empty when the device would not report one

    friend bool operator==(const BlackHoleDevice &, const BlackHoleDevice &) = default;
};

} // namespace tolvenary

template <> struct std::hash<tolvenary::BlackHoleDevice> {
    std::size_t operator()(const tolvenary::BlackHoleDevice &device) const noexcept
    {
        // The odd factor keeps equal texts in different fields from cancelling each other out.
        constexpr std::size_t factor = 1000003;
        std::size_t result = std::hash<tolvenary::AudioObjectID>()(device.id);
        result = result * factor ^ std::hash<std::string>()(device.name);
        return result * factor ^ std::hash<std::string>()(device.uid);
    }
};

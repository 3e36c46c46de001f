#pragma once

#include "platform/audio_types.h"

#include <functional>
#include <string>

namespace tolvenary
{

/// One virtual output device that the mix can be played into, as it was when it was found.
struct BlackHoleDevice {
    AudioObjectID id = kAudioObjectUnknown;
    std::string name; ///< as the user knows it
    std::string uid;  ///< empty when the device would not tell

    friend bool operator==(const BlackHoleDevice &, const BlackHoleDevice &) = default;
};

} // namespace tolvenary

template <> struct std::hash<tolvenary::BlackHoleDevice> {
    std::size_t operator()(const tolvenary::BlackHoleDevice &device) const noexcept;
};

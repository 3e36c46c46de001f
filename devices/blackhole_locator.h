#pragma once

#include "devices/blackhole_device.h"
#include "platform/audio_object_properties.h"

#include <optional>
#include <vector>

namespace tolvenary
{

/// Finds the BlackHole devices that can be played into. Holds nothing: each call asks the system afresh.
class BlackHoleLocator
{
  public:
    BlackHoleLocator() = delete;

    /// In the system's order. Never fails: a question that the system does not answer shortens the list.
    /// Thread: any but a real-time one.
    static std::vector<BlackHoleDevice> findAll(AudioObjectProperties &properties);

  private:
    static std::vector<AudioObjectID> deviceIDs(AudioObjectProperties &properties);
    static std::optional<BlackHoleDevice> describe(AudioObjectProperties &properties, AudioObjectID device);
};

} // namespace tolvenary

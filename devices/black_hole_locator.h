#pragma once

#include "devices/black_hole_device.h"
#include "platform/audio_object_properties.h"

#include <vector>

namespace tolvenary
{

/// Finds the devices that the mix can be played into. Keeps nothing between calls. Thread: any but a real-time one.
class BlackHoleLocator
{
  public:
    BlackHoleLocator() = delete;

    /// The devices whose name contains "blackhole", in any case, and that have output channels, in the system's order.
    /// Never fails: a query that does shrinks the list.
    static std::vector<BlackHoleDevice> findAll(AudioObjectProperties &objects);

  private:
    static std::vector<AudioObjectID> deviceIDs(AudioObjectProperties &objects);
};

} // namespace tolvenary

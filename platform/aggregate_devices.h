#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <map>
#include <string>
#include <variant>

namespace tolvenary
{

struct DictionaryValue;
using Dictionary = std::map<std::string, DictionaryValue>;

/// A value of a device description: text, a number, or a list of dictionaries.
struct DictionaryValue : std::variant<std::string, int, std::vector<Dictionary>> {
    using variant::variant;
};

/// Makes and destroys aggregate devices. The one kind in use wraps a single process tap and gives it an IO cycle.
/// Other programs can see the device until it is destroyed. Thread: main.
class AggregateDevices
{
  public:
    virtual ~AggregateDevices() = default;

    /// Keys: "name", "uid", "master" (the tap's UID), "private", "stacked", "taps", "subdevices".
    virtual OSStatus AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice) = 0;
    virtual OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID device) = 0;
};

} // namespace tolvenary

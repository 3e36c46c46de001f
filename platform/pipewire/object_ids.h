#pragma once

#include "platform/audio_types.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tolvenary
{

/// Gives every object a number that is never given to another one. The server reuses its ids when an object has gone,
/// and its serials begin again when it restarts; a device keeps its number through both, by its name.
class ObjectIds
{
  public:
    // Made on first use.
    AudioObjectID ofDevice(const std::string &name);
    AudioObjectID ofClient(std::uint64_t serial);
    /// For an object that has no lasting name.
    AudioObjectID make() { return m_next++; }

    // Whose number it is; empty for anything else's.
    std::optional<std::string> deviceName(AudioObjectID id) const;
    std::optional<std::uint64_t> clientSerial(AudioObjectID id) const;

  private:
    std::map<std::string, AudioObjectID> m_devices;
    std::map<std::uint64_t, AudioObjectID> m_clients;
    AudioObjectID m_next = kAudioObjectSystemObject + 1;
};

} // namespace tolvenary

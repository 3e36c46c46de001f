#pragma once

#include "platform/audio_types.h"

#include <map>
#include <optional>
#include <string>

namespace tolvenary
{

/// Gives every object a number that is never given to another one. The server's own ids are reused when an object has
/// gone, and its serials begin anew when it restarts; a device keeps its number over both, by its name.
class ObjectIds
{
  public:
    /// The number for `key` in its namespace, made on first use.
    AudioObjectID idOf(const std::string &key);

    /// The key behind a number.
    std::optional<std::string> keyOf(AudioObjectID id) const;

    /// A number for an object that has no lasting key.
    AudioObjectID make() { return m_next++; }

  private:
    std::map<std::string, AudioObjectID> m_ids;
    std::map<AudioObjectID, std::string> m_keys;
    AudioObjectID m_next = kAudioObjectSystemObject + 1;
};

} // namespace tolvenary

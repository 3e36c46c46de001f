#include "platform/pipewire/object_ids.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

template <typename Key> AudioObjectID idOf(std::map<Key, AudioObjectID> &ids, const Key &key, AudioObjectID &next)
{
    const auto [found, isNew] = ids.try_emplace(key, next);
    if (isNew)
        ++next;
    return found->second;
}

template <typename Key> std::optional<Key> keyOf(const std::map<Key, AudioObjectID> &ids, AudioObjectID id)
{
    const auto found = std::ranges::find_if(ids, [id](const auto &entry) { return entry.second == id; });
    return found == ids.end() ? std::nullopt : std::optional(found->first);
}

} // namespace

AudioObjectID ObjectIds::ofDevice(const std::string &name)
{
    return idOf(m_devices, name, m_next);
}

AudioObjectID ObjectIds::ofClient(std::uint64_t serial)
{
    return idOf(m_clients, serial, m_next);
}

std::optional<std::string> ObjectIds::deviceName(AudioObjectID id) const
{
    return keyOf(m_devices, id);
}

std::optional<std::uint64_t> ObjectIds::clientSerial(AudioObjectID id) const
{
    return keyOf(m_clients, id);
}

} // namespace tolvenary

#include "platform/pipewire/object_ids.h"

namespace tolvenary
{

AudioObjectID ObjectIds::idOf(const std::string &key)
{
    const auto [found, isNew] = m_ids.try_emplace(key, m_next);
    if (isNew)
        m_keys.emplace(m_next++, key);
    return found->second;
}

std::optional<std::string> ObjectIds::keyOf(AudioObjectID id) const
{
    const auto found = m_keys.find(id);
    return found == m_keys.end() ? std::nullopt : std::optional(found->second);
}

} // namespace tolvenary

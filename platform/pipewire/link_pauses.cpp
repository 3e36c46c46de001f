#include "platform/pipewire/link_pauses.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

constexpr LinkPauses::Time firstPause{1};
constexpr LinkPauses::Time longestPause{16};
/// Who lets it stand for so long does not fight it.
constexpr LinkPauses::Time peace{30};

} // namespace

void LinkPauses::made(const GraphLink &link, Time now)
{
    Pause &pause = m_pauses[link];
    pause.madeAt = now;
    pause.end.reset();
}

void LinkPauses::lost(const GraphLink &link, Time now)
{
    Pause &pause = m_pauses[link];
    if (pause.end)
        return;
    if (now - pause.madeAt >= peace)
        pause.length = {};
    pause.length = std::clamp(pause.length * 2, firstPause, longestPause);
    pause.end = now + pause.length;
}

void LinkPauses::recovered(const GraphLink &link)
{
    const auto found = m_pauses.find(link);
    if (found != m_pauses.end())
        found->second.end.reset();
}

bool LinkPauses::isOver(const GraphLink &link, Time now) const
{
    const auto found = m_pauses.find(link);
    return found != m_pauses.end() && found->second.end && *found->second.end <= now;
}

bool LinkPauses::isAnyOver(Time now) const
{
    return std::ranges::any_of(m_pauses,
                               [now](const auto &entry) { return entry.second.end && *entry.second.end <= now; });
}

void LinkPauses::keep(const std::set<GraphLink> &wanted)
{
    std::erase_if(m_pauses, [&](const auto &entry) { return !wanted.contains(entry.first); });
}

void LinkPauses::forgetPort(GlobalId port)
{
    std::erase_if(m_pauses, [port](const auto &entry) {
        return entry.first.outputPort == port || entry.first.inputPort == port;
    });
}

} // namespace tolvenary

#include "platform/pipewire/link_pauses.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

/// Whoever leaves a link alone for so long does not fight it.
constexpr LinkPauses::Time peace{30};

} // namespace

void LinkPauses::made(const GraphLink &link, Time now)
{
    Entry &entry = m_pauses[link];
    entry.madeAt = now;
    entry.pause.end();
}

void LinkPauses::lost(const GraphLink &link, Time now)
{
    Entry &entry = m_pauses[link];
    if (entry.pause.isUnderWay())
        return;
    if (now - entry.madeAt >= peace)
        entry.pause.reset();
    entry.pause.begin(now);
}

void LinkPauses::recovered(const GraphLink &link)
{
    const auto found = m_pauses.find(link);
    if (found != m_pauses.end())
        found->second.pause.end();
}

bool LinkPauses::isOver(const GraphLink &link, Time now) const
{
    const auto found = m_pauses.find(link);
    return found != m_pauses.end() && found->second.pause.isOver(now);
}

bool LinkPauses::isAnyOver(Time now) const
{
    return std::ranges::any_of(m_pauses, [now](const auto &entry) { return entry.second.pause.isOver(now); });
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

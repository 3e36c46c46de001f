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
    m_lost.erase(link);
}

void LinkPauses::lost(const GraphLink &link, Time now)
{
    Entry &entry = m_pauses[link];
    if (entry.pause.isUnderWay())
        return;
    if (now - entry.madeAt >= peace)
        entry.pause.reset();
    entry.pause.begin(now);
    m_lost.insert(link);
}

void LinkPauses::recovered(const GraphLink &link)
{
    if (m_lost.erase(link) > 0)
        m_pauses.at(link).pause.end();
}

bool LinkPauses::isOver(const GraphLink &link, Time now) const
{
    const auto found = m_pauses.find(link);
    return found != m_pauses.end() && found->second.pause.isOver(now);
}

bool LinkPauses::isAnyOver(Time now) const
{
    return std::ranges::any_of(m_lost, [&](const GraphLink &link) { return isOver(link, now); });
}

void LinkPauses::keep(const std::set<GraphLink> &wanted)
{
    std::erase_if(m_pauses, [&](const auto &entry) { return !wanted.contains(entry.first); });
    std::erase_if(m_lost, [&](const GraphLink &link) { return !wanted.contains(link); });
}

void LinkPauses::forgetPort(GlobalId port)
{
    const auto isOfPort = [port](const GraphLink &link) { return link.outputPort == port || link.inputPort == port; };
    std::erase_if(m_pauses, [&](const auto &entry) { return isOfPort(entry.first); });
    std::erase_if(m_lost, isOfPort);
}

} // namespace tolvenary

#pragma once

#include "platform/pipewire/graph.h"
#include "platform/pipewire/growing_pause.h"

#include <map>
#include <set>

namespace tolvenary
{

/// When a link that has been lost, though both its ends are there, is to be made again: somebody took it away, in a
/// graph editor by a slip of the hand, or with a patchbay that wants it so and would do it again at once. The pauses
/// grow while that goes on.
///
/// Pure logic, with the time handed in. Control thread.
class LinkPauses
{
  public:
    using Time = GrowingPause::Time;

    void made(const GraphLink &link, Time now);
    /// Any number of times for one loss.
    void lost(const GraphLink &link, Time now);
    /// It has come back of itself, as one that failed does when the other side offers another format.
    void recovered(const GraphLink &link);

    /// Whether the link has been lost and its pause is over.
    bool isOver(const GraphLink &link, Time now) const;
    bool isAnyOver(Time now) const;

    /// Forgets all others.
    void keep(const std::set<GraphLink> &wanted);
    void forgetPort(GlobalId port);

  private:
    struct Entry {
        Time madeAt{};
        GrowingPause pause{Time(1)};
    };
    std::map<GraphLink, Entry> m_pauses;
    std::set<GraphLink> m_lost; ///< whose pause is under way: few of many
};

} // namespace tolvenary

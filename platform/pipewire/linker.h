#pragma once

#include "platform/os_status.h"
#include "platform/pipewire/graph.h"
#include "platform/pipewire/link_pauses.h"
#include "platform/pipewire/pw_handles.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace tolvenary
{

/// Makes the links that are wanted and drops those that are not any more. They are the connection's: when it ends, or
/// the process is killed, the server takes them away. Control thread, or under the control lock.
class Linker
{
  public:
    /// `changed` is called when a link failed, or when both its ends have agreed.
    Linker(pw_core *core, std::function<void()> changed);
    ~Linker();
    Linker(const Linker &) = delete;
    Linker &operator=(const Linker &) = delete;

    /// A link that has been lost is made again when its pause is over.
    void setWanted(const std::set<GraphLink> &wanted, LinkPauses::Time now);
    /// Whether there is one whose pause is over, so that setWanted() would make it.
    bool hasLinkToRemake(LinkPauses::Time now) const { return m_pauses.isAnyOver(now); }

    /// Lets go of the port's links. Call it as soon as the port has gone: its id may become another port's before links
    /// are planned again, and the old link must not be taken for that one's.
    void forgetPort(GlobalId port);

    /// Input ports of links that were asked for and are not made yet: their programs, or the server, have still to
    /// agree.
    const std::set<GlobalId> &awaitedInputs();

    /// Why nothing passes the link; -EINPROGRESS while its ends have still to agree, noErr when they have, or for a
    /// link that is not ours. A link that the server refused is not tried again as long as it is wanted, which it is
    /// not any more when one of its ports has gone; unless it was refused because somebody else had made it already:
    /// then it is tried again when that one may have gone.
    OSStatus statusOf(const GraphLink &link) const;

  private:
    struct Owned;

    pw_core *m_core;
    std::function<void()> m_changed;
    std::map<GraphLink, std::unique_ptr<Owned>> m_owned;
    /// Empty when it has to be reckoned anew: hundreds of links are asked for many times a second, and seldom change.
    std::optional<std::set<GlobalId>> m_awaitedInputs;
    LinkPauses m_pauses;
};

} // namespace tolvenary

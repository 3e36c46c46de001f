#pragma once

#include "platform/pipewire/filter_node.h"
#include "platform/pipewire/link_wishes.h"
#include "platform/pipewire/microphone_change.h"
#include "platform/pipewire/microphone_hold.h"
#include "platform/pipewire/microphone_ports.h"
#include "platform/pipewire/stall_watch.h"

#include <map>
#include <set>
#include <variant>

namespace tolvenary
{

/// What one of our nodes is for, and so what it is to be linked with.
struct OutputRole {
    std::string deviceName; ///< empty: to nothing
};
struct InputRole {
    MicrophonePorts *ports = nullptr;
    MicrophoneChange change = {};
    MicrophoneHold hold = {};
};
struct TapRole {
    std::set<std::int32_t> excludedProcesses;
};
/// Hears applications as a tap does, but hands on what it hears outside of the cycle: nobody waits for it.
struct StreamRole {
    std::optional<std::int32_t> onlyProcess; ///< none: all but the excluded
    std::set<std::int32_t> excludedProcesses;
};
/// A stream that hung is tried on it: nobody waits for it or hears it.
struct ProbeRole {
    GlobalId stream = 0;
};
using NodeRole = std::variant<OutputRole, InputRole, TapRole, StreamRole, ProbeRole>;

/// All nodes of ours, each with its role; together they say which links are wished for. Under the control lock.
class OwnNodes
{
  public:
    using Time = MicrophoneHold::Time;

    void add(FilterNode &node, NodeRole role) { m_roles.insert_or_assign(&node, std::move(role)); }
    void remove(FilterNode &node) { m_roles.erase(&node); }

    /// Makes them all in the server's graph.
    void realize(pw_core *core);
    /// Makes those again that somebody else had the server end, unless they would only be ended again.
    void remakeEnded(pw_core *core);
    /// The connection ends, and all that was known of the microphone with it.
    void release();

    /// Whether there is an output, and something that may come out of it.
    bool isMixing() const;
    /// The server's id of the output, once it has one.
    std::optional<GlobalId> outputId() const;
    /// The device that the output is for; none for any other node.
    std::optional<std::string> deviceOf(FilterNode &output) const;
    /// The graph's rate, 0 before the first cycle of any.
    std::uint32_t observedRate() const;
    /// How many cycles the nodes of this role have run.
    template <typename Role> std::uint64_t cyclesOf() const;

    /// The taps that the output waits for: those that have been started.
    std::set<GlobalId> awaitedTaps() const;

    LinkWishes wishes(const StallWatch::Verdict &verdict) const;

    /// `microphone` is the serial of the source that shall be heard.
    void followMicrophone(std::optional<std::uint64_t> microphone, Time now);
    /// From time to time. `awaited` are the nodes that a link is asked for into and not made.
    void watchForHungMicrophone(const std::set<GlobalId> &awaited, Time now);
    /// Whether it hangs, and so is not linked for now.
    bool isMicrophoneHeld() const;
    /// Whether one takes over from another.
    bool isChangingMicrophone() const;

  private:
    std::map<FilterNode *, NodeRole> m_roles;
};

template <typename Role> std::uint64_t OwnNodes::cyclesOf() const
{
    std::uint64_t cycles = 0;
    for (const auto &[node, role] : m_roles)
        cycles += std::holds_alternative<Role>(role) ? node->cycles() : 0;
    return cycles;
}

} // namespace tolvenary

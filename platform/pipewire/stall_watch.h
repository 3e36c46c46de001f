#pragma once

#include "platform/pipewire/graph.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>

namespace tolvenary
{

/// Keeps one program's hang from silencing the mix.
///
/// A node runs in a cycle only after everything linked into it has. A program that is stopped or hangs never finishes
/// its own, and so the tap, and by the order link the output, would wait for ever: the microphone would be gone because
/// some player froze. The watch sees that the output stands still while a capture node still runs; it then takes the
/// standing one out of the order, so that the rest flows, finds the stream that hangs by admitting one at a time, and
/// holds it back. Now and then it is tried again, on a node of its own: whatever is linked into the tap is missing
/// while that stands.
///
/// Pure logic: fed with counts, answers with a verdict. Control thread.
class StallWatch
{
  public:
    using Time = std::chrono::duration<double>;

    /// Cycles that each of our nodes has run so far.
    struct Progress {
        std::uint64_t microphone = 0;
        std::uint64_t tap = 0;
        std::uint64_t output = 0;
        std::uint64_t probe = 0;    ///< of the node on which held streams are tried
        bool isTrialLinked = false; ///< the stream that is tried plays into it
    };

    struct Verdict {
        bool isMicrophoneInOrder = true;
        bool isTapInOrder = true;
        std::set<GlobalId> heldStreams;
        std::optional<GlobalId> tried; ///< that one of them which is to play into the probe
        bool needsProbe = false;       ///< all of ours stand still: does the graph as well?

        friend bool operator==(const Verdict &, const Verdict &) = default;
    };

    /// `streams` are those that the tap should hear.
    const Verdict &tick(const Progress &progress, const std::set<GlobalId> &streams, Time now);
    const Verdict &verdict() const { return m_verdict; }

  private:
    enum class State { flowing, emptying, probing };

    void forget(const std::set<GlobalId> &streams);
    void watch(const Progress &progress, const std::set<GlobalId> &streams, Time now);
    void watchMicrophone(const Progress &progress);
    void watchAll(const Progress &progress, const std::set<GlobalId> &streams, Time now);
    void holdAll(const Progress &progress, const std::set<GlobalId> &streams);
    void probe(std::set<GlobalId> suspects);
    void waitForEmptyTap(const Progress &progress, Time now);
    void judge(const Progress &progress, Time now);
    void admitNext(const Progress &progress, Time now);
    void hold(GlobalId stream, Time now);
    void tryHeld(const Progress &progress, Time now);
    std::optional<GlobalId> dueForTrial(Time now) const;

    struct Retry {
        Time at{};
        Time pause{};
    };

    State m_state = State::flowing;
    Verdict m_verdict;
    Progress m_mark;
    Progress m_microphoneMark; ///< when it or the output was last seen to run
    Progress m_standing;       ///< when any of them was last seen to run
    Time m_standingSince{};
    std::set<GlobalId> m_suspects;
    GlobalId m_onTrial = 0;
    Time m_trialSince{};
    std::optional<std::uint64_t> m_probeMark; ///< where the probe stood when the stream that is tried was linked
    std::map<GlobalId, Retry> m_retries;
};

} // namespace tolvenary

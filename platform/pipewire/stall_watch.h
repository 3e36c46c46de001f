#pragma once

#include "platform/pipewire/graph.h"

#include <chrono>
#include <map>
#include <set>

namespace tolvenary
{

/// Keeps one program's hang from silencing the mix.
///
/// A node runs in a cycle only after everything linked into it has. A program that is stopped or hangs never finishes
/// its own, and so the tap, and by the order link the output, would wait for ever: the microphone would be gone because
/// some player froze. The watch sees that the output stands still while a capture node still runs; it then takes the
/// standing one out of the order, so that the rest flows, finds the stream that hangs by admitting one at a time, holds
/// it back, and tries it again now and then.
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
    };

    struct Verdict {
        bool isMicrophoneInOrder = true;
        bool isTapInOrder = true;
        std::set<GlobalId> heldStreams;

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
    void probe(std::set<GlobalId> suspects);
    void waitForEmptyTap(const Progress &progress, Time now);
    void judge(const Progress &progress, Time now);
    void admitNext(const Progress &progress, Time now);

    struct Retry {
        Time at{};
        Time pause{};
    };

    State m_state = State::flowing;
    Verdict m_verdict;
    Progress m_mark;
    Progress m_microphoneMark; ///< when it or the output was last seen to run
    std::set<GlobalId> m_suspects;
    GlobalId m_onTrial = 0;
    Time m_trialSince{};
    std::map<GlobalId, Retry> m_retries;
};

} // namespace tolvenary

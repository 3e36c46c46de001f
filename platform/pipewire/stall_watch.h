#pragma once

#include "platform/pipewire/graph.h"
#include "platform/pipewire/growing_pause.h"

#include <map>
#include <optional>
#include <set>

namespace tolvenary
{

/// Keeps one program's hang from silencing the mix.
///
/// A node runs in a cycle only after everything linked into it has. A program that is stopped or hangs never finishes
/// its own, and so the tap, and by the order link the output, would wait for ever: the microphone would be gone because
/// some player froze. The watch sees that they stand still, asks the server which nodes have not finished their cycle,
/// and holds back those of them that the tap hears. Now and then one is tried again, on a node of its own: whatever is
/// linked into the tap is missing while that stands. Where the server does not tell, all streams are held back, and
/// come in again by such trials.
///
/// Pure logic: fed with counts, answers with a verdict. Control thread.
class StallWatch
{
  public:
    using Time = GrowingPause::Time;
    using Streams = std::set<GlobalId>;

    /// Cycles that each of our nodes has run so far.
    struct Progress {
        std::uint64_t microphone = 0;
        std::uint64_t tap = 0;
        std::uint64_t output = 0;
        std::uint64_t probe = 0;           ///< of the node on which held streams are tried
        bool isTrialLinked = false;        ///< the stream that is tried plays into it
        std::optional<Streams> unfinished; ///< nodes that had not finished when their cycle was over; once it is told
    };

    struct Verdict {
        bool isMicrophoneInOrder = true;
        bool isTapInOrder = true;
        Streams heldStreams;
        std::optional<GlobalId> tried; ///< that one of them which is to play into the probe
        bool asksWhoStands = false;    ///< the server is to tell who has not finished

        friend bool operator==(const Verdict &, const Verdict &) = default;
    };

    /// `streams` are those that the tap should hear.
    const Verdict &tick(const Progress &progress, const Streams &streams, Time now);
    const Verdict &verdict() const { return m_verdict; }

    /// The stream has gone; its id may be another's before anybody tells of both.
    void forget(GlobalId stream);

  private:
    void forgetAllBut(const Streams &streams);
    void watchMicrophone(const Progress &progress);
    void watchStreams(const Progress &progress, const Streams &streams, Time now);
    void blame(const Streams &unfinished, const Streams &streams, Time now);
    void holdAll(const Progress &progress, const Streams &streams, Time now);
    void hold(GlobalId stream, Time now);
    void tryHeld(const Progress &progress, Time now);
    std::optional<GlobalId> dueForTrial(Time now) const;
    void mark(const Progress &progress, Time now);

    Verdict m_verdict;
    Progress m_microphoneMark; ///< when it or the output was last seen to run
    Progress m_mark;           ///< when the tap was last seen to run
    std::optional<Time> m_markedAt;
    Time m_trialSince{};
    std::optional<std::uint64_t> m_probeMark;   ///< where the probe stood when the stream that is tried was linked
    std::map<GlobalId, GrowingPause> m_retries; ///< of those that are held
};

} // namespace tolvenary

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
/// and holds back those of them that the tap hears. Each is tried on a probe, a node of its own that nobody waits for,
/// until that runs. Where the server does not tell, all streams are held back, and come in again by such trials.
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
        std::map<GlobalId, std::uint64_t> probes; ///< of the probe of each tried stream that plays into one
        std::optional<Streams> unfinished; ///< nodes that had not finished when their cycle was over; once it is told
    };

    struct Verdict {
        bool isMicrophoneInOrder = true;
        bool isTapInOrder = true;
        Streams heldStreams;
        Streams tried;              ///< those of them that are each to play into a probe
        bool asksWhoStands = false; ///< the server is to tell who has not finished

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
    void endTrials(const Progress &progress, Time now);
    bool hasPassed(GlobalId stream, const Progress &progress);
    std::optional<GlobalId> dueForTrial(Time now) const;
    void mark(const Progress &progress, Time now);

    Verdict m_verdict;
    Progress m_microphoneMark; ///< when it or the output was last seen to run
    Progress m_mark;           ///< when the tap was last seen to run
    std::optional<Time> m_markedAt;
    struct Trial {
        Time since;
        std::optional<std::uint64_t> mark; ///< where the probe stood when the stream was linked
    };
    std::map<GlobalId, Trial> m_trials;
    std::map<GlobalId, GrowingPause> m_rests; ///< of those that are held; under way until they are tried
};

} // namespace tolvenary

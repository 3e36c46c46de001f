#include "platform/pipewire/stall_watch.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

// In cycles of the node that still runs: enough for a late wake-up not to look like a hang.
constexpr std::uint64_t standsStill = 4;
constexpr std::uint64_t runsForGood = 8; // a link that has just been agreed on holds up nobody for a cycle or two

/// Who is late for less than this is waited for.
constexpr StallWatch::Time longestLateness{0.2};
/// How long the server may take to tell who stands.
constexpr StallWatch::Time longestStandstill{1};
/// Of a trial that others wait for; by itself it lasts until the stream runs. A program that hangs does not take what
/// the server sends it for each new link, descriptors among it, and the server would run out of them.
constexpr StallWatch::Time longestTrial{2};
constexpr std::size_t mostTrials = 16;      // each costs a node
constexpr StallWatch::Time firstRest{0.25}; // it may just have been late
constexpr StallWatch::Time longestRest{256};

} // namespace

const StallWatch::Verdict &StallWatch::tick(const Progress &progress, const Streams &streams, Time now)
{
    forgetAllBut(streams);
    watchMicrophone(progress);
    watchStreams(progress, streams, now);
    tryHeld(progress, now);
    return m_verdict;
}

// What has gone needs no judgement any more.
void StallWatch::forget(GlobalId stream)
{
    m_verdict.heldStreams.erase(stream);
    m_verdict.tried.erase(stream);
    m_trials.erase(stream);
    m_rests.erase(stream);
}

void StallWatch::forgetAllBut(const Streams &streams)
{
    Streams gone = m_verdict.heldStreams;
    std::erase_if(gone, [&](GlobalId stream) { return streams.contains(stream); });
    for (const GlobalId stream : gone)
        forget(stream);
}

void StallWatch::watchMicrophone(const Progress &progress)
{
    const bool runs = progress.microphone != m_microphoneMark.microphone;
    if (runs)
        m_verdict.isMicrophoneInOrder = true;
    if (runs || progress.output != m_microphoneMark.output)
        m_microphoneMark = progress;
    else if (progress.tap >= m_microphoneMark.tap + standsStill)
        m_verdict.isMicrophoneInOrder = false;
}

void StallWatch::watchStreams(const Progress &progress, const Streams &streams, Time now)
{
    if (progress.tap != m_mark.tap || streams.empty() || !m_markedAt) {
        m_verdict.isTapInOrder = true;
        m_verdict.asksWhoStands = false;
        return mark(progress, now);
    }
    // The microphone goes on meanwhile; at a start it waits for the tap's first cycle.
    if (m_mark.tap > 0 && progress.microphone >= m_mark.microphone + standsStill)
        m_verdict.isTapInOrder = false;
    const Time standstill = now - *m_markedAt;
    m_verdict.asksWhoStands = standstill >= longestLateness;
    if (!m_verdict.asksWhoStands)
        return;
    if (progress.unfinished)
        blame(*progress.unfinished, streams, now);
    const bool isGraphRunning = progress.microphone >= m_mark.microphone + standsStill || progress.unfinished;
    if (isGraphRunning && standstill >= longestStandstill)
        holdAll(progress, streams, now);
}

void StallWatch::blame(const Streams &unfinished, const Streams &streams, Time now)
{
    for (const GlobalId stream : unfinished) {
        if (streams.contains(stream) && !m_verdict.heldStreams.contains(stream))
            hold(stream, now);
    }
}

void StallWatch::holdAll(const Progress &progress, const Streams &streams, Time now)
{
    m_verdict.isTapInOrder = false; // until it runs: it might be none of the streams
    for (const GlobalId stream : streams) {
        if (!m_verdict.heldStreams.contains(stream))
            hold(stream, now);
    }
    mark(progress, now);
}

void StallWatch::hold(GlobalId stream, Time now)
{
    m_rests.try_emplace(stream, firstRest, longestRest).first->second.begin(now);
    m_verdict.heldStreams.insert(stream);
}

void StallWatch::tryHeld(const Progress &progress, Time now)
{
    endTrials(progress, now);
    while (m_trials.size() < mostTrials) {
        const std::optional<GlobalId> next = dueForTrial(now);
        if (!next)
            return;
        m_rests.at(*next).end();
        m_trials.emplace(*next, Trial{now, {}});
        m_verdict.tried.insert(*next);
    }
}

void StallWatch::endTrials(const Progress &progress, Time now)
{
    const Streams tried = m_verdict.tried;
    for (const GlobalId stream : tried) {
        if (hasPassed(stream, progress)) {
            forget(stream);
        } else if (m_trials.size() == mostTrials && now - m_trials.at(stream).since >= longestTrial &&
                   dueForTrial(now)) {
            m_trials.erase(stream);
            m_verdict.tried.erase(stream);
            hold(stream, now);
        }
    }
}

bool StallWatch::hasPassed(GlobalId stream, const Progress &progress)
{
    const auto probe = progress.probes.find(stream);
    if (probe == progress.probes.end())
        return false;
    Trial &trial = m_trials.at(stream);
    if (!trial.mark)
        trial.mark = probe->second;
    return probe->second >= *trial.mark + runsForGood;
}

// Who has waited longest.
std::optional<GlobalId> StallWatch::dueForTrial(Time now) const
{
    std::optional<GlobalId> due;
    for (const auto &[stream, rest] : m_rests) {
        if (rest.isOver(now) && (!due || rest.endsAt() < m_rests.at(*due).endsAt()))
            due = stream;
    }
    return due;
}

void StallWatch::mark(const Progress &progress, Time now)
{
    m_mark = progress;
    m_markedAt = now;
}

} // namespace tolvenary

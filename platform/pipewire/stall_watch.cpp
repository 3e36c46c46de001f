#include "platform/pipewire/stall_watch.h"

#include <algorithm>
#include <iterator>

namespace tolvenary
{

namespace
{

// In cycles of the node that still runs: enough for a late wake-up not to look like a hang.
constexpr std::uint64_t standsStill = 4;
constexpr std::uint64_t runsAgain = 2;
constexpr std::uint64_t neverRuns = 40;
constexpr std::uint64_t runsForGood = 8; // a link that has just been agreed on holds up nobody for a cycle or two

constexpr StallWatch::Time longestStandstill{1};
constexpr StallWatch::Time longestTrial{2};
constexpr StallWatch::Time firstRest{2};
constexpr StallWatch::Time longestRest{16};

} // namespace

const StallWatch::Verdict &StallWatch::tick(const Progress &progress, const std::set<GlobalId> &streams, Time now)
{
    forget(streams);
    watchMicrophone(progress);
    watchAll(progress, streams, now);
    switch (m_state) {
    case State::flowing:
        watch(progress, streams, now);
        break;
    case State::emptying:
        waitForEmptyTap(progress, now);
        break;
    case State::probing:
        judge(progress, now);
        break;
    }
    return m_verdict;
}

// What has gone needs no judgement any more.
void StallWatch::forget(const std::set<GlobalId> &streams)
{
    const auto hasGone = [&](GlobalId stream) { return !streams.contains(stream); };
    std::erase_if(m_verdict.heldStreams, hasGone);
    std::erase_if(m_suspects, hasGone);
    std::erase_if(m_retries, [&](const auto &entry) { return hasGone(entry.first); });
    if (hasGone(m_onTrial))
        m_onTrial = 0;
    if (m_verdict.tried && hasGone(*m_verdict.tried))
        m_verdict.tried.reset();
}

void StallWatch::watch(const Progress &progress, const std::set<GlobalId> &streams, Time now)
{
    if (progress.output != m_mark.output) {
        m_mark = progress;
    } else if (progress.tap == m_mark.tap && progress.microphone >= m_mark.microphone + standsStill) {
        return holdAll(progress, streams);
    }
    tryHeld(progress, now);
}

void StallWatch::tryHeld(const Progress &progress, Time now)
{
    if (!m_verdict.tried) {
        m_verdict.tried = dueForTrial(now);
        m_trialSince = now;
        m_probeMark.reset();
        return;
    }
    if (!m_probeMark && progress.isTrialLinked)
        m_probeMark = progress.probe;
    if (m_probeMark && progress.probe >= *m_probeMark + runsForGood) {
        m_verdict.heldStreams.erase(*m_verdict.tried);
        m_retries.erase(*m_verdict.tried);
        m_verdict.tried.reset();
    } else if (now - m_trialSince >= longestTrial) {
        hold(*m_verdict.tried, now);
        m_verdict.tried.reset();
    }
}

std::optional<GlobalId> StallWatch::dueForTrial(Time now) const
{
    for (const GlobalId stream : m_verdict.heldStreams) {
        const auto retry = m_retries.find(stream);
        if (retry == m_retries.end() || retry->second.at <= now)
            return stream;
    }
    return std::nullopt;
}

void StallWatch::hold(GlobalId stream, Time now)
{
    const Time pause = std::clamp(m_retries[stream].pause * 2, firstRest, longestRest);
    m_retries[stream] = {now + pause, pause};
    m_verdict.heldStreams.insert(stream);
}

// Always, for it may hang while a stream is on trial. The tap moves on with each verdict, so the count begins where the
// two stopped.
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

// A microphone's and an application's program that hang at once leave none of ours to count by: the probe tells whether
// it is they, or the graph that stands.
void StallWatch::watchAll(const Progress &progress, const std::set<GlobalId> &streams, Time now)
{
    const bool runs = progress.output != m_standing.output || progress.tap != m_standing.tap ||
                      progress.microphone != m_standing.microphone;
    if (runs || m_state != State::flowing) { // a trial has an end of its own
        m_verdict.needsProbe = false;
        m_standing = progress;
        m_standingSince = now;
    } else if (now - m_standingSince < longestStandstill) {
        return;
    } else if (!m_verdict.needsProbe) {
        m_verdict.needsProbe = true;
        m_standing.probe = progress.probe;
    } else if (progress.probe >= m_standing.probe + runsForGood) {
        m_verdict.isMicrophoneInOrder = false;
        holdAll(progress, streams);
        m_standing = progress;
        m_standingSince = now;
    }
}

void StallWatch::holdAll(const Progress &progress, const std::set<GlobalId> &streams)
{
    std::set<GlobalId> suspects;
    std::ranges::set_difference(streams, m_verdict.heldStreams, std::inserter(suspects, suspects.end()));
    m_verdict.heldStreams = streams;
    probe(std::move(suspects));
    m_mark = progress;
}

void StallWatch::probe(std::set<GlobalId> suspects)
{
    m_verdict.isTapInOrder = false;
    m_verdict.tried.reset();
    m_suspects = std::move(suspects);
    m_onTrial = 0;
    m_state = State::emptying;
}

void StallWatch::waitForEmptyTap(const Progress &progress, Time now)
{
    if (progress.tap >= m_mark.tap + runsAgain) {
        m_state = State::probing;
        admitNext(progress, now);
    } else if (progress.microphone >= m_mark.microphone + neverRuns) {
        // It was none of the streams. The tap stays out of the order, and is looked at again like any other.
        m_mark = progress;
    }
}

void StallWatch::judge(const Progress &progress, Time now)
{
    const bool runs = progress.tap >= m_mark.tap + runsAgain;
    // With a microphone that hangs, too, nothing is left to count by.
    const bool isTimeUp = progress.microphone >= m_mark.microphone + standsStill || now - m_trialSince >= longestTrial;
    const bool hangs = !runs && isTimeUp;
    if (m_onTrial == 0) {
        admitNext(progress, now);
    } else if (runs) {
        m_retries.erase(m_onTrial);
        admitNext(progress, now);
    } else if (hangs) {
        hold(m_onTrial, now);
        m_state = State::emptying;
        m_mark = progress;
        m_onTrial = 0;
    }
}

void StallWatch::admitNext(const Progress &progress, Time now)
{
    m_mark = progress;
    m_trialSince = now;
    if (m_suspects.empty()) {
        m_onTrial = 0;
        m_verdict.isTapInOrder = true;
        m_state = State::flowing;
        return;
    }
    m_onTrial = *m_suspects.begin();
    m_suspects.erase(m_onTrial);
    m_verdict.heldStreams.erase(m_onTrial);
}

} // namespace tolvenary

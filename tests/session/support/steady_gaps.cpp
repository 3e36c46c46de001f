#include "tests/session/support/steady_gaps.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace tolvenary::session
{

namespace
{

/// A fault's beginning and its end are one fault, and what a source does shows in the mix within this time.
constexpr std::size_t oneFault = 8192;

bool areOne(std::size_t a, std::size_t b)
{
    return std::max(a, b) - std::min(a, b) < oneFault;
}

} // namespace

std::vector<std::size_t> findSteps(std::span<const float> signal, float step, std::size_t apart)
{
    std::vector<std::size_t> steps;
    std::size_t last = 0;
    for (std::size_t i = 1; i < signal.size(); ++i) {
        if (std::abs(signal[i] - signal[i - 1]) <= step)
            continue;
        if (steps.empty() || i - last >= apart)
            steps.push_back(i);
        last = i;
    }
    return steps;
}

namespace
{

using Faults = std::vector<std::size_t>;

/// What each track from `first` on does around a fault: the levels between its steps, and how long they hold.
std::string account(const Recording &recording, Stretch stretch, std::size_t fault, std::size_t first, float step)
{
    std::ostringstream text;
    text << fault << " frames after " << (stretch.begin > 0 ? "a jump of the clock" : "the recording began") << ", in";
    for (std::size_t track = first; track < recording.tracks.size(); ++track) {
        const Samples samples = recording.part(track, stretch);
        const auto around = std::span(samples).subspan(fault - 1, std::min(oneFault, samples.size() - fault + 1));
        text << " track " << track << ": " << around.front();
        std::size_t last = 0;
        for (const std::size_t at : findSteps(around, step, 1)) {
            text << " for " << at - last << " frames, then " << around[at];
            last = at;
        }
    }
    return text.str();
}

/// Those of the tracks from `first` to before `end`, in order.
Faults faultsIn(const Recording &recording, Stretch stretch, std::size_t first, std::size_t end, float step)
{
    Faults faults;
    for (std::size_t track = first; track < end; ++track) {
        const Faults found = findSteps(recording.part(track, stretch), step, oneFault);
        faults.insert(faults.end(), found.begin(), found.end());
    }
    std::ranges::sort(faults);
    return faults;
}

} // namespace

SteadyGaps &SteadyGaps::operator+=(const SteadyGaps &other)
{
    ours += other.ours;
    sources += other.sources;
    xruns += other.xruns;
    jumps += other.jumps;
    accounts.insert(accounts.end(), other.accounts.begin(), other.accounts.end());
    return *this;
}

SteadyGaps findSteadyGaps(const Recording &recording, std::size_t firstMix, float step)
{
    SteadyGaps gaps;
    gaps.jumps = recording.jumps();
    for (const Stretch &stretch : recording.unbroken()) {
        const Faults before = faultsIn(recording, stretch, 0, firstMix, step);
        const Faults behind = faultsIn(recording, stretch, firstMix, recording.tracks.size(), step);
        const bool afterJump = stretch.begin > 0;
        const bool beforeJump = stretch.end < recording.frames();
        for (std::size_t i = 0; i < behind.size(); ++i) {
            if (i > 0 && areOne(behind[i - 1], behind[i]))
                continue; // its end, or the other side
            if ((afterJump && areOne(behind[i], 0)) || (beforeJump && areOne(behind[i], stretch.length())))
                ++gaps.xruns;
            else if (std::ranges::any_of(before, [&](std::size_t source) { return areOne(source, behind[i]); }))
                ++gaps.sources;
            else {
                ++gaps.ours;
                gaps.accounts.push_back(account(recording, stretch, behind[i], firstMix, step));
            }
        }
    }
    return gaps;
}

} // namespace tolvenary::session

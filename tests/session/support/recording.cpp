#include "tests/session/support/recording.h"

#include <algorithm>

namespace tolvenary::session
{

std::vector<Stretch> Recording::unbroken() const
{
    std::vector<Stretch> stretches;
    for (std::size_t i = 0; i < cycles.size(); ++i) {
        const RecordedCycle &cycle = cycles[i];
        const bool goesOn = i > 0 && cycle.position == cycles[i - 1].position + cycles[i - 1].frames;
        if (!goesOn)
            stretches.push_back({cycle.start, cycle.start});
        stretches.back().end = cycle.start + cycle.frames;
    }
    return stretches;
}

Stretch Recording::longestUnbroken() const
{
    const auto stretches = unbroken();
    const auto longest = std::max_element(stretches.begin(), stretches.end(),
                                          [](const Stretch &a, const Stretch &b) { return a.length() < b.length(); });
    return longest != stretches.end() ? *longest : Stretch{};
}

Samples Recording::part(std::size_t track, Stretch stretch) const
{
    const Samples &all = tracks.at(track);
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(stretch.begin);
    return {begin, begin + static_cast<std::ptrdiff_t>(stretch.length())};
}

} // namespace tolvenary::session

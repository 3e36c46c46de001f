#pragma once

#include "tests/session/support/recording.h"

#include <span>

namespace tolvenary::session
{

/// How a recorded mix is made of recorded sources.
struct SourceFit {
    std::vector<double> gains; ///< one a source
    double largestResidue = 0; ///< the largest deviation of the mix from the sum of gain times source
    std::vector<Stretch> gaps; ///< where the mix is silent and the sum is not
};

/// `sources` are as long as `mix` and already aligned with it.
SourceFit fitSources(std::span<const float> mix, const std::vector<Samples> &sources);

/// Frames by which `source` comes later in `mix` than in itself, at most `most`, by the best correlation of their
/// steps; speech and music alike.
long delayInMix(std::span<const float> mix, std::span<const float> source, long most);

/// Stretches of at least `shortest` frames of near silence in `mix` while `expected` has sound throughout.
std::vector<Stretch> findGaps(std::span<const float> mix, std::span<const float> expected, std::size_t shortest = 16);

} // namespace tolvenary::session

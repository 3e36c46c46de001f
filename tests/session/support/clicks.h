#pragma once

#include "tests/session/support/recording.h"

#include <span>

namespace tolvenary::session
{

/// Frames at which the signal peaks above `threshold`; a peak's neighbourhood of `apart` frames counts as one click.
std::vector<std::size_t> findClicks(std::span<const float> signal, float threshold, std::size_t apart = 1000);

/// For each click of `before` that has a click of `after` within `most` frames: how many frames later it came.
std::vector<long> clickDelays(const std::vector<std::size_t> &before, const std::vector<std::size_t> &after, long most);

/// The largest difference between two neighbouring samples.
float largestStep(std::span<const float> signal);

} // namespace tolvenary::session

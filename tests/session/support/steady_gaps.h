#pragma once

#include "tests/session/support/recording.h"

#include <span>

namespace tolvenary::session
{

/// Where a sound that never jumps of itself jumps by more than `step`: first frames of the jumps. What follows within
/// `apart` frames belongs to the same fault.
std::vector<std::size_t> findSteps(std::span<const float> signal, float step, std::size_t apart);

/// Faults heard behind a program, told apart by what was heard before it.
struct SteadyGaps {
    std::size_t ours = 0;    ///< all sources went on, and the mix did not
    std::size_t sources = 0; ///< a source had the fault already
    std::size_t xruns = 0;   ///< beside a jump of the clock: a cycle was cut short because somebody woke up too late
    std::size_t jumps = 0;   ///< of the clock, heard or not
    std::vector<std::string> accounts; ///< of ours, each in words

    SteadyGaps &operator+=(const SteadyGaps &other);
};

/// Listens to a recording of steady sounds: the tracks before `firstMix` are what goes in, those from there on what
/// comes out.
SteadyGaps findSteadyGaps(const Recording &recording, std::size_t firstMix, float step);

} // namespace tolvenary::session

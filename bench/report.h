#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tolvenary::bench
{

/// One line of the table: what a piece of work cost us in each round, and what it cost the other in the same rounds.
struct Row {
    std::string part;        ///< heading in the table under which it stands
    std::string work;        ///< what was done, with its size: "mix, 256 frames"
    std::string beside = {}; ///< who else did it; empty where nobody did
    std::string unit = {};   ///< "ns", "frames", "calls"
    std::vector<double> ours = {};
    std::vector<double> theirs = {};       ///< as many as ours, or none
    std::optional<double> mostRatio = {};  ///< the aim: ours / theirs is at most this
    std::optional<double> mostOfOurs = {}; ///< the aim where a ratio says nothing, as of 0 frames: ours is at most this
    std::optional<double> leastOfOurs = {}; ///< the aim where more is better, as of decibels
};

/// Prints the row as one line of JSON on standard output, where scripts/bench gathers it; nothing else may be written
/// there. Throws std::invalid_argument for a row that has no rounds, not as many of theirs as of ours, or a figure that
/// is no number.
void report(const Row &row);

/// What is being done now, on standard error, for whoever waits.
void progress(const std::string &text);

} // namespace tolvenary::bench

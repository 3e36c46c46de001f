#pragma once

#include <span>
#include <vector>

namespace tolvenary::session
{

/// Amplitudes of tones of known frequencies in `signal`, fitted together with a constant, so that none leaks into
/// another's figure.
std::vector<double> toneAmplitudes(std::span<const float> signal, double rate, const std::vector<double> &frequencies);

/// What is left of `signal` when these tones are taken out: the root of the mean square.
double residueBesideTones(std::span<const float> signal, double rate, const std::vector<double> &frequencies);

/// 20·log10(ratio), not below −200.
double decibels(double ratio);

} // namespace tolvenary::session

#pragma once

#include <numbers>

namespace tolvenary::test
{

/// A damped oscillator: the period of its undamped swing in seconds, and its share of critical damping.
struct Oscillator {
    double response;
    double dampingFraction;
};

/// How far from its target it is after so many seconds, stepped in small steps: x'' = -k x - c x', with k and c of a
/// unit mass.
inline double stepped(const Oscillator &oscillator, double offset, double speed, double seconds)
{
    const double undamped = 2 * std::numbers::pi / oscillator.response;
    const double stiffness = undamped * undamped;
    const double damping = 2 * oscillator.dampingFraction * undamped;
    constexpr double step = 1e-6;
    for (double t = 0; t < seconds; t += step) {
        speed += (-stiffness * offset - damping * speed) * step;
        offset += speed * step;
    }
    return offset;
}

} // namespace tolvenary::test

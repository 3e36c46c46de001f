#pragma once

#include <QUuid>

#include <cstdint>
#include <functional>
#include <vector>

namespace tolvenary
{

/// One star: its place as fractions of the field, its radius in points, its full opacity.
struct Star {
    QUuid id;
    double x = 0;
    double y = 0;
    double r = 0;
    double a = 0;

    friend bool operator==(const Star &, const Star &) = default;
};

/// The rhythm of one star's pulse, in seconds.
struct Pulse {
    double duration = 0; ///< from full opacity down, and as long up again
    double delay = 0;    ///< before the first pulse
};

/// Gives 64 random bits a call.
using RandomBits = std::function<std::uint64_t()>;

/// The bits of the system's generator.
std::uint64_t systemRandomBits();

/// A number from `low` to `high`, both included, every one of 2^53 + 1 steps as likely as the others.
double uniform(const RandomBits &bits, double low, double high);

std::vector<Star> makeStars(const RandomBits &bits);
std::vector<Pulse> makePulses(std::size_t count, const RandomBits &bits);

/// How bright a pulsing star is, as a share of its full opacity, so many seconds after the pulses were set off.
double brightness(const Pulse &pulse, double seconds);

} // namespace tolvenary

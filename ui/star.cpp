#include "ui/star.h"

#include <QEasingCurve>
#include <QPointF>
#include <QRandomGenerator>

#include <array>
#include <cmath>

namespace tolvenary
{

namespace
{

constexpr std::size_t starCount = 140;
constexpr double dimmed = 0.4;

/// Slow at both ends. Kept as a table: every star asks for it in every frame.
double easeInOut(double progress)
{
    constexpr std::size_t steps = 256;
    static const std::array<double, steps + 1> table = [] {
        QEasingCurve curve(QEasingCurve::BezierSpline);
        curve.addCubicBezierSegment(QPointF(0.42, 0), QPointF(0.58, 1), QPointF(1, 1));
        std::array<double, steps + 1> values{};
        for (std::size_t i = 0; i <= steps; ++i)
            values[i] = curve.valueForProgress(static_cast<double>(i) / steps);
        return values;
    }();
    return table[static_cast<std::size_t>(std::lround(progress * steps))];
}

} // namespace

std::uint64_t systemRandomBits()
{
    return QRandomGenerator::system()->generate64();
}

double uniform(const RandomBits &bits, double low, double high)
{
    constexpr std::uint64_t top = std::uint64_t{1} << 53;
    constexpr std::uint64_t mask = (top << 1) - 1;
    std::uint64_t step = bits() & mask;
    while (step > top)
        step = bits() & mask;
    return step == top ? high : low + static_cast<double>(step) * 0x1p-53 * (high - low);
}

std::vector<Star> makeStars(const RandomBits &bits)
{
    std::vector<Star> stars;
    stars.reserve(starCount);
    for (std::size_t i = 0; i < starCount; ++i) {
        const double x = uniform(bits, 0, 1);
        const double y = uniform(bits, 0, 1);
        const double r = uniform(bits, 0.6, 1.8);
        const double a = uniform(bits, 0.3, 0.95);
        stars.push_back({QUuid::createUuid(), x, y, r, a});
    }
    return stars;
}

std::vector<Pulse> makePulses(std::size_t count, const RandomBits &bits)
{
    std::vector<Pulse> pulses;
    pulses.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double duration = uniform(bits, 1.6, 3.2);
        pulses.push_back({duration, uniform(bits, 0, 2)});
    }
    return pulses;
}

double brightness(const Pulse &pulse, double seconds)
{
    if (seconds <= pulse.delay)
        return 1;
    const double swing = std::fmod((seconds - pulse.delay) / pulse.duration, 2.0);
    return 1 - (1 - dimmed) * easeInOut(swing > 1 ? 2 - swing : swing);
}

} // namespace tolvenary

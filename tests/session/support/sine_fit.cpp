#include "tests/session/support/sine_fit.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>

namespace tolvenary::session
{

namespace
{

using Column = std::vector<double>;

double product(const Column &a, const Column &b)
{
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

void subtract(Column &from, const Column &what, double times)
{
    std::transform(from.begin(), from.end(), what.begin(), from.begin(),
                   [times](double a, double b) { return a - times * b; });
}

Column wave(std::size_t frames, const std::function<double(double)> &shape)
{
    Column column(frames);
    for (std::size_t i = 0; i < frames; ++i)
        column[i] = shape(static_cast<double>(i));
    return column;
}

double rootMeanSquare(const Column &column)
{
    return std::sqrt(product(column, column) / static_cast<double>(column.size()));
}

} // namespace

SineFit::SineFit(double rate, const std::vector<double> &frequencies, std::size_t frames) : m_frames(frames)
{
    std::vector<Column> waves = {Column(frames, 1.0)};
    for (const double frequency : frequencies) {
        const double turn = 2 * std::numbers::pi * frequency / rate;
        waves.push_back(wave(frames, [turn](double i) { return std::sin(turn * i); }));
        waves.push_back(wave(frames, [turn](double i) { return std::cos(turn * i); }));
    }
    for (Column &next : waves) {
        for (const Column &earlier : m_basis)
            subtract(next, earlier, product(next, earlier));
        const double length = std::sqrt(product(next, next));
        std::ranges::transform(next, next.begin(), [length](double value) { return value / length; });
        m_basis.push_back(std::move(next));
    }
}

SineResidue SineFit::residue(std::span<const float> window) const
{
    Column left(window.begin(), window.end());
    subtract(left, m_basis.front(), product(left, m_basis.front()));
    const double level = rootMeanSquare(left);
    for (const Column &one : m_basis)
        subtract(left, one, product(left, one));
    if (level == 0)
        return {};
    const auto [least, most] = std::ranges::minmax(left);
    return {level, rootMeanSquare(left) / level, std::max(-least, most) / level};
}

} // namespace tolvenary::session

#include "tests/session/support/tone_level.h"

#include "tests/session/support/least_squares.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tolvenary::session
{

namespace
{

/// Function 0 is constant, then a sine and a cosine for each frequency.
class ToneBasis
{
  public:
    ToneBasis(double rate, const std::vector<double> &frequencies) : m_rate(rate), m_frequencies(frequencies) {}

    std::size_t count() const { return 1 + 2 * m_frequencies.size(); }
    double operator()(std::size_t k, std::size_t i) const
    {
        if (k == 0)
            return 1.0;
        const double phase = 2 * std::numbers::pi * m_frequencies[(k - 1) / 2] * static_cast<double>(i) / m_rate;
        return k % 2 == 1 ? std::sin(phase) : std::cos(phase);
    }

  private:
    double m_rate;
    const std::vector<double> &m_frequencies;
};

} // namespace

std::vector<double> toneAmplitudes(std::span<const float> signal, double rate, const std::vector<double> &frequencies)
{
    const ToneBasis basis(rate, frequencies);
    const std::vector<double> weights = leastSquares(signal, basis.count(), basis);
    std::vector<double> amplitudes;
    amplitudes.reserve(frequencies.size());
    for (std::size_t tone = 0; tone < frequencies.size(); ++tone)
        amplitudes.push_back(std::hypot(weights[1 + 2 * tone], weights[2 + 2 * tone]));
    return amplitudes;
}

double residueBesideTones(std::span<const float> signal, double rate, const std::vector<double> &frequencies)
{
    const ToneBasis basis(rate, frequencies);
    const std::vector<double> weights = leastSquares(signal, basis.count(), basis);
    double squares = 0;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        double left = static_cast<double>(signal[i]);
        for (std::size_t k = 0; k < weights.size(); ++k)
            left -= weights[k] * basis(k, i);
        squares += left * left;
    }
    return signal.empty() ? 0.0 : std::sqrt(squares / static_cast<double>(signal.size()));
}

double decibels(double ratio)
{
    return 20 * std::log10(std::max(std::abs(ratio), 1e-10));
}

} // namespace tolvenary::session

#include "tests/session/support/source_fit.h"

#include "tests/session/support/least_squares.h"

#include <algorithm>
#include <cmath>

namespace tolvenary::session
{

namespace
{

constexpr float nearSilence = 1e-6F;

Samples sumOf(const std::vector<Samples> &sources, const std::vector<double> &gains, std::size_t frames)
{
    Samples sum(frames, 0.0F);
    for (std::size_t i = 0; i < frames; ++i) {
        double value = 0;
        for (std::size_t k = 0; k < sources.size(); ++k)
            value += gains[k] * static_cast<double>(sources[k][i]);
        sum[i] = static_cast<float>(value);
    }
    return sum;
}

/// Differences of neighbours: what is slow in a sound says little about when it came.
Samples steps(std::span<const float> signal)
{
    Samples result(signal.size(), 0.0F);
    for (std::size_t i = 1; i < signal.size(); ++i)
        result[i] = signal[i] - signal[i - 1];
    return result;
}

bool soundsThroughout(std::span<const float> expected)
{
    const auto loud = std::count_if(expected.begin(), expected.end(), [](float x) { return std::abs(x) > 1e-4F; });
    return static_cast<std::size_t>(loud) * 4 > expected.size() * 3;
}

} // namespace

SourceFit fitSources(std::span<const float> mix, const std::vector<Samples> &sources)
{
    SourceFit fit;
    fit.gains = leastSquares(mix, sources.size(),
                             [&](std::size_t k, std::size_t i) { return static_cast<double>(sources[k][i]); });
    const Samples sum = sumOf(sources, fit.gains, mix.size());
    for (std::size_t i = 0; i < mix.size(); ++i)
        fit.largestResidue = std::max(fit.largestResidue, std::abs(static_cast<double>(mix[i] - sum[i])));
    fit.gaps = findGaps(mix, sum);
    return fit;
}

long delayInMix(std::span<const float> mix, std::span<const float> source, long most)
{
    const Samples mixSteps = steps(mix);
    const Samples sourceSteps = steps(source);
    const auto frames = static_cast<long>(std::min(mix.size(), source.size()));
    long best = 0;
    double bestCorrelation = 0;
    for (long delay = -most; delay <= most; ++delay) {
        double correlation = 0;
        for (long i = std::max(0L, delay); i < std::min(frames, frames + delay); ++i)
            correlation += static_cast<double>(mixSteps[static_cast<std::size_t>(i)]) *
                           static_cast<double>(sourceSteps[static_cast<std::size_t>(i - delay)]);
        if (correlation > bestCorrelation) {
            bestCorrelation = correlation;
            best = delay;
        }
    }
    return best;
}

std::vector<Stretch> findGaps(std::span<const float> mix, std::span<const float> expected, std::size_t shortest)
{
    std::vector<Stretch> gaps;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= mix.size(); ++i) {
        if (i < mix.size() && std::abs(mix[i]) <= nearSilence)
            continue;
        if (i - begin >= shortest && soundsThroughout(expected.subspan(begin, i - begin)))
            gaps.push_back({begin, i});
        begin = i + 1;
    }
    return gaps;
}

} // namespace tolvenary::session

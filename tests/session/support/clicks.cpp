#include "tests/session/support/clicks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tolvenary::session
{

std::vector<std::size_t> findClicks(std::span<const float> signal, float threshold, std::size_t apart)
{
    std::vector<std::size_t> clicks;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        if (std::abs(signal[i]) < threshold)
            continue;
        if (clicks.empty() || i - clicks.back() >= apart)
            clicks.push_back(i);
        else if (std::abs(signal[i]) > std::abs(signal[clicks.back()]))
            clicks.back() = i;
    }
    return clicks;
}

std::vector<long> clickDelays(const std::vector<std::size_t> &before, const std::vector<std::size_t> &after, long most)
{
    std::vector<long> delays;
    for (const std::size_t click : before) {
        const auto distance = [&](std::size_t other) { return static_cast<long>(other) - static_cast<long>(click); };
        const auto nearest = std::min_element(after.begin(), after.end(), [&](std::size_t a, std::size_t b) {
            return std::labs(distance(a)) < std::labs(distance(b));
        });
        if (nearest != after.end() && std::labs(distance(*nearest)) <= most)
            delays.push_back(distance(*nearest));
    }
    return delays;
}

float largestStep(std::span<const float> signal)
{
    float largest = 0;
    for (std::size_t i = 1; i < signal.size(); ++i)
        largest = std::max(largest, std::abs(signal[i] - signal[i - 1]));
    return largest;
}

} // namespace tolvenary::session

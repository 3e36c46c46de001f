#pragma once

#include <algorithm>
#include <vector>

namespace tolvenary::bench
{

/// The middle of what the rounds gave, with the best and the worst beside it. `values` must not be empty.
struct Spread {
    double least;
    double median;
    double most;
};

inline Spread spread(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return {values.front(), values[values.size() / 2], values.back()};
}

} // namespace tolvenary::bench

#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace tolvenary::session
{

/// How much of each of `count` basis functions is in `signal`: the weights w that leave the least of
/// signal[i] − Σ w[k]·basis(k, i). A basis function that is zero throughout, or a copy of another, gets weight 0.
std::vector<double> leastSquares(std::span<const float> signal, std::size_t count,
                                 const std::function<double(std::size_t k, std::size_t i)> &basis);

} // namespace tolvenary::session

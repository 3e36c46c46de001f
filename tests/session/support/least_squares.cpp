#include "tests/session/support/least_squares.h"

#include <cmath>
#include <utility>

namespace tolvenary::session
{

namespace
{

using Matrix = std::vector<std::vector<double>>;

/// The normal equations, the right-hand side as the last column.
Matrix normalEquations(std::span<const float> signal, std::size_t count,
                       const std::function<double(std::size_t, std::size_t)> &basis)
{
    Matrix equations(count, std::vector<double>(count + 1, 0.0));
    std::vector<double> values(count);
    for (std::size_t i = 0; i < signal.size(); ++i) {
        for (std::size_t k = 0; k < count; ++k)
            values[k] = basis(k, i);
        for (std::size_t row = 0; row < count; ++row) {
            for (std::size_t column = 0; column < count; ++column)
                equations[row][column] += values[row] * values[column];
            equations[row][count] += values[row] * static_cast<double>(signal[i]);
        }
    }
    return equations;
}

/// One step of Gauss and Jordan. The matrix is symmetric and semi-definite: the diagonal is a good pivot, and one that
/// has become tiny belongs to a function that the others already span.
bool eliminate(Matrix &equations, std::size_t pivot, double tiny)
{
    if (equations[pivot][pivot] <= tiny)
        return false;
    const std::vector<double> &source = equations[pivot];
    for (std::size_t row = 0; row < equations.size(); ++row) {
        if (row == pivot)
            continue;
        const double factor = equations[row][pivot] / source[pivot];
        for (std::size_t column = 0; column < source.size(); ++column)
            equations[row][column] -= factor * source[column];
    }
    return true;
}

} // namespace

std::vector<double> leastSquares(std::span<const float> signal, std::size_t count,
                                 const std::function<double(std::size_t k, std::size_t i)> &basis)
{
    Matrix equations = normalEquations(signal, count, basis);
    std::vector<double> energy(count);
    for (std::size_t k = 0; k < count; ++k)
        energy[k] = equations[k][k];
    std::vector<double> weights(count, 0.0);
    std::vector<bool> used(count);
    for (std::size_t k = 0; k < count; ++k)
        used[k] = eliminate(equations, k, 1e-9 * energy[k] + 1e-12);
    for (std::size_t k = 0; k < count; ++k)
        if (used[k])
            weights[k] = equations[k][count] / equations[k][k];
    return weights;
}

} // namespace tolvenary::session

// Least squares by Householder reflections: the stacked system itself is turned to triangular form, so that
// no normal equations are involved. And how far points lie apart.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "KineDll.h"

namespace kine::test {

using Rows = std::vector<std::vector<double>>;

// The x with the smallest |rows * x - right|, for rows of full rank.
inline std::vector<double> LeastSquares(Rows rows, std::vector<double> right)
{
    const std::size_t unknowns = rows[0].size();
    for (std::size_t k = 0; k < unknowns; ++k) {
        // v reflects column k, from row k on, onto row k; to the other side, so that nothing cancels.
        std::vector<double> v(rows.size(), 0.0);
        double square = 0.0;
        for (std::size_t i = k; i < rows.size(); ++i) {
            v[i] = rows[i][k];
            square += v[i] * v[i];
        }
        v[k] += std::copysign(std::sqrt(square), v[k]);
        double length = 0.0;
        for (const double x : v) length += x * x;
        const auto reflect = [&](auto entry) {
            double dot = 0.0;
            for (std::size_t i = k; i < rows.size(); ++i) dot += v[i] * entry(i);
            for (std::size_t i = k; i < rows.size(); ++i) entry(i) -= 2.0 * dot / length * v[i];
        };
        for (std::size_t j = k; j < unknowns; ++j)
            reflect([&](std::size_t i) -> double& { return rows[i][j]; });
        reflect([&](std::size_t i) -> double& { return right[i]; });
    }
    std::vector<double> x(unknowns, 0.0);
    for (std::size_t k = unknowns; k-- > 0;) {
        double rest = right[k];
        for (std::size_t j = k + 1; j < unknowns; ++j) rest -= rows[k][j] * x[j];
        x[k] = rest / rows[k][k];
    }
    return x;
}

// Largest, mean and smallest of the distances.
inline KineCalibError ReportOf(std::span<const double> distances)
{
    double sum = 0.0;
    for (const double distance : distances) sum += distance;
    return {*std::max_element(distances.begin(), distances.end()),
            sum / static_cast<double>(distances.size()),
            *std::min_element(distances.begin(), distances.end())};
}

}  // namespace kine::test

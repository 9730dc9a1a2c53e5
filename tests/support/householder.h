// Least squares by Householder reflections: the stacked system itself is turned to triangular form, so that
// no normal equations are involved. And the tool point that poses agree on best, found that way.
#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "KineDll.h"
#include "support/points.h"

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

// The tool point t for which (R0 - Ri) * t = pi - p0 agree best, all poses against the first. In the plane
// two equations of a pose and two unknowns, and z = 0.
inline Point PointOnFlange(std::span<const KinePose> poses, bool planar)
{
    const std::size_t n = planar ? 2 : 3;
    const Mat4 first = MatrixOf(poses[0].Frame);
    Rows rows;
    std::vector<double> right;
    for (const KinePose& pose : poses.subspan(1)) {
        const Mat4 other = MatrixOf(pose.Frame);
        for (std::size_t i = 0; i < n; ++i) {
            rows.emplace_back();
            for (std::size_t j = 0; j < n; ++j) rows.back().push_back(first[i][j] - other[i][j]);
            right.push_back(other[i][3] - first[i][3]);
        }
    }
    const std::vector<double> t = LeastSquares(rows, right);
    return {t[0], t[1], planar ? 0.0 : t[2]};
}

}  // namespace kine::test

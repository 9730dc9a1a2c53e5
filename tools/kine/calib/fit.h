// Least squares over a handful of points: the line, the plane and the circle that fit them best, and the
// principal directions behind them. Millimetres.
#pragma once

#include <array>
#include <vector>

#include "calib/geometry.h"

namespace kine_cli {

// The upper triangle of a symmetric matrix, row by row: xx, xy, xz, yy, yz, zz.
using Symmetric = std::array<double, 6>;

struct Principal
{
    std::array<double, 3> values{};  // rising
    std::array<Vec3, 3> directions;  // unit vectors, one for each value
};
Principal PrincipalOf(const Symmetric& matrix);

// How points lie about their mean: sums of squares along three directions.
Principal ScatterOf(const std::vector<Vec3>& points, const Vec3& mean);

// Distances of the points from the figure that fits them best.
std::vector<double> OffLine(const std::vector<Vec3>& points);
std::vector<double> OffPlane(const std::vector<Vec3>& points);
// The circle: in the best plane, by the algebraic fit. A point's distance counts its height over the plane
// too.
struct CircleFit
{
    double radius = 0.0;
    std::vector<double> off;
};
CircleFit OffCircle(const std::vector<Vec3>& points);

}  // namespace kine_cli

// The eigenvalues come by Jacobi's rotations: exact enough for any matrix of this size and never in trouble
// with equal values.
#include "calib/fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kine_cli {
namespace {

using Square = std::array<std::array<double, 3>, 3>;

// Each sweep squares what is left beside the diagonal; this many are never needed.
constexpr int kMostSweeps = 30;

// Turns the matrix so that its entry (p, q) vanishes, and the directions with it.
void Rotate(Square& a, Square& v, std::size_t p, std::size_t q)
{
    if (a[p][q] == 0.0) return;
    const double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
    const double t = std::copysign(1.0, theta) / (std::fabs(theta) + std::hypot(theta, 1.0));
    const double c = 1.0 / std::hypot(t, 1.0);
    const double s = t * c;
    for (std::size_t k = 0; k < 3; ++k) {
        const double kp = a[k][p];
        const double kq = a[k][q];
        a[k][p] = c * kp - s * kq;
        a[k][q] = s * kp + c * kq;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        const double pk = a[p][k];
        const double qk = a[q][k];
        a[p][k] = c * pk - s * qk;
        a[q][k] = s * pk + c * qk;
        const double vp = v[k][p];
        const double vq = v[k][q];
        v[k][p] = c * vp - s * vq;
        v[k][q] = s * vp + c * vq;
    }
}

}  // namespace

Principal PrincipalOf(const Symmetric& m)
{
    Square a = {{{m[0], m[1], m[2]}, {m[1], m[3], m[4]}, {m[2], m[4], m[5]}}};
    Square v = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
    for (int sweep = 0; sweep < kMostSweeps; ++sweep) {
        if (a[0][1] == 0.0 && a[0][2] == 0.0 && a[1][2] == 0.0) break;
        Rotate(a, v, 0, 1);
        Rotate(a, v, 0, 2);
        Rotate(a, v, 1, 2);
    }
    std::array<std::size_t, 3> order = {0, 1, 2};
    std::sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return a[i][i] < a[j][j]; });
    Principal principal;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t k = order[i];
        principal.values[i] = a[k][k];
        principal.directions[i] = {v[0][k], v[1][k], v[2][k]};
    }
    return principal;
}

Principal ScatterOf(const std::vector<Vec3>& points, const Vec3& mean)
{
    Symmetric sums{};
    for (const Vec3& point : points) {
        const Vec3 d = point - mean;
        const Symmetric products = {d.x * d.x, d.x * d.y, d.x * d.z, d.y * d.y, d.y * d.z, d.z * d.z};
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += products[i];
    }
    return PrincipalOf(sums);
}

std::vector<double> OffLine(const std::vector<Vec3>& points)
{
    const Vec3 mean = Mean(points);
    const Vec3 along = ScatterOf(points, mean).directions[2];
    std::vector<double> off;
    for (const Vec3& point : points) off.push_back(Norm(Cross(along, point - mean)));
    return off;
}

std::vector<double> OffPlane(const std::vector<Vec3>& points)
{
    const Vec3 mean = Mean(points);
    const Vec3 normal = ScatterOf(points, mean).directions[0];
    std::vector<double> off;
    for (const Vec3& point : points) off.push_back(std::fabs(Dot(normal, point - mean)));
    return off;
}

CircleFit OffCircle(const std::vector<Vec3>& points)
{
    const Vec3 mean = Mean(points);
    const Principal scatter = ScatterOf(points, mean);
    // u and v: coordinates in the plane, along its principal directions, so that the sum of u * v is zero.
    // The circle u^2 + v^2 = 2 a u + 2 b v + c has its centre at (a, b).
    double uCubed = 0.0;
    double vCubed = 0.0;
    for (const Vec3& point : points) {
        const double u = Dot(scatter.directions[2], point - mean);
        const double v = Dot(scatter.directions[1], point - mean);
        uCubed += u * (u * u + v * v);
        vCubed += v * (u * u + v * v);
    }
    const double a = uCubed / (2.0 * scatter.values[2]);
    const double b = vCubed / (2.0 * scatter.values[1]);
    CircleFit fit;
    fit.radius = std::sqrt(a * a + b * b +
                           (scatter.values[1] + scatter.values[2]) / static_cast<double>(points.size()));
    for (const Vec3& point : points) {
        const Vec3 d = point - mean;
        const double radial =
            std::hypot(Dot(scatter.directions[2], d) - a, Dot(scatter.directions[1], d) - b) - fit.radius;
        fit.off.push_back(std::hypot(radial, Dot(scatter.directions[0], d)));
    }
    return fit;
}

}  // namespace kine_cli

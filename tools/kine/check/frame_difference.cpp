#include "check/frame_difference.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kine_cli {
namespace {

constexpr double kRadian = 57.29577951308232;  // deg

// Rz(A) * Ry(B) * Rx(C), row by row.
std::array<double, 9> RotationOf(const KineFrame& f)
{
    const double ca = std::cos(f.A / kRadian);
    const double sa = std::sin(f.A / kRadian);
    const double cb = std::cos(f.B / kRadian);
    const double sb = std::sin(f.B / kRadian);
    const double cc = std::cos(f.C / kRadian);
    const double sc = std::sin(f.C / kRadian);
    return {ca * cb,
            ca * sb * sc - sa * cc,
            ca * sb * cc + sa * sc,
            sa * cb,
            sa * sb * sc + ca * cc,
            sa * sb * cc - ca * sc,
            -sb,
            cb * sc,
            cb * cc};
}

}  // namespace

FrameDifference DifferenceOf(const KineFrame& a, const KineFrame& b)
{
    const std::array<double, 9> r = RotationOf(a);
    const std::array<double, 9> s = RotationOf(b);
    double squares = 0.0;
    for (std::size_t i = 0; i < r.size(); ++i) squares += (r[i] - s[i]) * (r[i] - s[i]);
    // The entries of two rotations an angle t apart differ by 2 sqrt(2) sin(t / 2): good for small angles
    // too.
    const double half = std::asin(std::min(1.0, std::sqrt(squares / 8.0)));
    return {std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z), 2.0 * half * kRadian};
}

}  // namespace kine_cli

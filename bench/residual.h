// How far two poses are apart.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include "KineDll.h"

namespace kine::bench {

inline constexpr double kRadPerDeg = 0.017453292519943295;

// R[row][column] = Rz(A) * Ry(B) * Rx(C).
using Rotation = std::array<std::array<double, 3>, 3>;

inline Rotation RotationOf(const KineFrame& frame)
{
    const double ca = std::cos(frame.A * kRadPerDeg), sa = std::sin(frame.A * kRadPerDeg);
    const double cb = std::cos(frame.B * kRadPerDeg), sb = std::sin(frame.B * kRadPerDeg);
    const double cc = std::cos(frame.C * kRadPerDeg), sc = std::sin(frame.C * kRadPerDeg);
    return {{{ca * cb, ca * sb * sc - sa * cc, ca * sb * cc + sa * sc},
             {sa * cb, sa * sb * sc + ca * cc, sa * sb * cc - ca * sc},
             {-sb, cb * sc, cb * cc}}};
}

// In radians. From sine and cosine, so that small angles are exact to rounding.
inline double AngleBetween(const Rotation& a, const Rotation& b)
{
    Rotation r{};  // a transposed * b
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            for (std::size_t k = 0; k < 3; ++k) r[i][j] += a[k][i] * b[k][j];
        }
    }
    const double twiceSine = std::hypot(r[2][1] - r[1][2], r[0][2] - r[2][0], r[1][0] - r[0][1]);
    const double twiceCosine = r[0][0] + r[1][1] + r[2][2] - 1.0;
    return std::atan2(twiceSine, twiceCosine);
}

struct Residual
{
    double mm;
    double rad;
};

inline Residual ResidualOf(const KineFrame& a, const KineFrame& b)
{
    return {std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z), AngleBetween(RotationOf(a), RotationOf(b))};
}

}  // namespace kine::bench

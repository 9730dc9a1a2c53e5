// Rigid transforms of the tests' own, from and to frames in mm and degrees.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "KineDll.h"

namespace kine::test {

// Rows of [R | t].
using Rigid = std::array<std::array<double, 4>, 3>;

inline double InRadians(double degrees) { return degrees / 180.0 * 3.14159265358979323846; }

// R = Rz(A) * Ry(B) * Rx(C), written out as a product.
inline Rigid RigidOf(const KineFrame& f)
{
    const double a = InRadians(f.A), b = InRadians(f.B), c = InRadians(f.C);
    const double z[3][3] = {{std::cos(a), -std::sin(a), 0}, {std::sin(a), std::cos(a), 0}, {0, 0, 1}};
    const double y[3][3] = {{std::cos(b), 0, std::sin(b)}, {0, 1, 0}, {-std::sin(b), 0, std::cos(b)}};
    const double x[3][3] = {{1, 0, 0}, {0, std::cos(c), -std::sin(c)}, {0, std::sin(c), std::cos(c)}};
    Rigid result{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            for (std::size_t k = 0; k < 3; ++k)
                for (std::size_t l = 0; l < 3; ++l) result[i][j] += z[i][k] * y[k][l] * x[l][j];
    result[0][3] = f.X;
    result[1][3] = f.Y;
    result[2][3] = f.Z;
    return result;
}

inline Rigid Times(const Rigid& a, const Rigid& b)
{
    Rigid c{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
        }
        c[i][3] += a[i][3];
    }
    return c;
}

inline Rigid Inverted(const Rigid& a)
{
    Rigid b{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            b[i][j] = a[j][i];
            b[i][3] -= a[j][i] * a[j][3];
        }
    }
    return b;
}

inline Rigid Identity() { return RigidOf({}); }

// Valid for B clear of +-90.
inline KineFrame FrameOf(const Rigid& m)
{
    const double toDegrees = 180.0 / 3.14159265358979323846;
    return {m[0][3],
            m[1][3],
            m[2][3],
            std::atan2(m[1][0], m[0][0]) * toDegrees,
            std::asin(std::fmax(-1.0, std::fmin(1.0, -m[2][0]))) * toDegrees,
            std::atan2(m[2][1], m[2][2]) * toDegrees};
}

// Positions in mm, rotations by their matrix elements, so that no angle has an end of its range.
inline void ExpectSameRigid(const Rigid& a, const Rigid& b, double mm = 1e-8, double rotation = 1e-11)
{
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 4; ++j)
            EXPECT_NEAR(a[i][j], b[i][j], j < 3 ? rotation : mm) << i << "," << j;
}

}  // namespace kine::test

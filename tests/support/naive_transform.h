// Plain 4x4 matrices, written without the library's transforms so that tests can compare against them.
// Radians and millimetres; R = Rz(a) * Ry(b) * Rx(c).
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <random>

#include "math/transform.h"

namespace kine::test {

using Mat4 = std::array<std::array<double, 4>, 4>;

inline Mat4 Identity4()
{
    return {{{1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
}

inline Mat4 operator*(const Mat4& a, const Mat4& b)
{
    Mat4 product{};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 4; ++k) product[i][j] += a[i][k] * b[k][j];
        }
    }
    return product;
}

inline Mat4 Shift(double x, double y, double z)
{
    Mat4 m = Identity4();
    m[0][3] = x;
    m[1][3] = y;
    m[2][3] = z;
    return m;
}

inline Mat4 TurnX(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {{{1.0, 0.0, 0.0, 0.0}, {0.0, c, -s, 0.0}, {0.0, s, c, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
}

inline Mat4 TurnY(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {{{c, 0.0, s, 0.0}, {0.0, 1.0, 0.0, 0.0}, {-s, 0.0, c, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
}

inline Mat4 TurnZ(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {{{c, -s, 0.0, 0.0}, {s, c, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
}

inline Mat4 TurnZDeg(double degrees) { return TurnZ(degrees * (std::acos(-1.0) / 180.0)); }

inline Mat4 Of(const Pose& p) { return Shift(p.x, p.y, p.z) * TurnZ(p.a) * TurnY(p.b) * TurnX(p.c); }

// The rotation of m without its position.
inline Mat4 RotationOf(const Mat4& m)
{
    Mat4 rotation = m;
    for (std::size_t i = 0; i < 3; ++i) rotation[i][3] = 0.0;
    return rotation;
}

// Inverse of a rotation with a shift.
inline Mat4 Inverse4(const Mat4& m)
{
    Mat4 inverse = Identity4();
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            inverse[i][j] = m[j][i];
            inverse[i][3] -= m[j][i] * m[j][3];
        }
    }
    return inverse;
}

// A pose with the given matrix, for rotations away from b = +-90 degrees.
inline Pose PoseOf(const Mat4& m)
{
    return {m[0][3],
            m[1][3],
            m[2][3],
            std::atan2(m[1][0], m[0][0]),
            std::atan2(-m[2][0], std::hypot(m[0][0], m[1][0])),
            std::atan2(m[2][1], m[2][2])};
}

// The library's form of the same numbers.
inline HomMatrix ToHom(const Mat4& m)
{
    return {{m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]},
            {m[0][3], m[1][3], m[2][3]}};
}

inline HomMatrix HomOf(const Pose& p) { return ToHom(Of(p)); }

// Compares as matrices: mm in the last column, sines and cosines elsewhere. NaN is a difference.
inline ::testing::AssertionResult PoseIs(const Pose& actual, const Mat4& expected, double tolerance = 1e-9)
{
    const Mat4 m = Of(actual);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            if (std::fabs(m[i][j] - expected[i][j]) <= tolerance) continue;
            return ::testing::AssertionFailure()
                   << "element " << i << "," << j << ": " << m[i][j] << " instead of " << expected[i][j];
        }
    }
    return ::testing::AssertionSuccess();
}

// Uniform in [lower, upper); the same numbers on every platform.
inline double Uniform(std::mt19937_64& random, double lower, double upper)
{
    constexpr double kStep = 1.0 / 9007199254740992.0;  // 2^-53
    return lower + (upper - lower) * (static_cast<double>(random() >> 11U) * kStep);
}

// Any orientation up to a tenth of a radian from b = +-90 degrees.
inline Pose RandomPose(std::mt19937_64& random, double reach)
{
    const double x = Uniform(random, -reach, reach);
    const double y = Uniform(random, -reach, reach);
    const double z = Uniform(random, -reach, reach);
    const double a = Uniform(random, -3.1, 3.1);
    const double b = Uniform(random, -1.47, 1.47);
    const double c = Uniform(random, -3.1, 3.1);
    return {x, y, z, a, b, c};
}

}  // namespace kine::test

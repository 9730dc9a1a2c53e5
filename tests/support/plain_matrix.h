// Plain 4x4 matrices, written without the library so that tests can compare against them. Angles are in
// radians unless a name says degrees; frames turn as R = Rz(a) * Ry(b) * Rx(c).
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace kine::test {

inline constexpr double kHalfTurn = 3.14159265358979323846;
inline constexpr double kQuarterTurn = 0.5 * kHalfTurn;

constexpr double InRadians(double degrees) { return degrees / 180.0 * kHalfTurn; }
constexpr double InDegrees(double radians) { return radians / kHalfTurn * 180.0; }

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

// A turn of the plane spanned by axes i and j, from i toward j.
inline Mat4 TurnPlane(std::size_t i, std::size_t j, double angle)
{
    Mat4 m = Identity4();
    m[i][i] = m[j][j] = std::cos(angle);
    m[j][i] = std::sin(angle);
    m[i][j] = -std::sin(angle);
    return m;
}

inline Mat4 TurnX(double angle) { return TurnPlane(1, 2, angle); }
inline Mat4 TurnY(double angle) { return TurnPlane(2, 0, angle); }
inline Mat4 TurnZ(double angle) { return TurnPlane(0, 1, angle); }

inline Mat4 TurnXDeg(double degrees) { return TurnX(InRadians(degrees)); }
inline Mat4 TurnYDeg(double degrees) { return TurnY(InRadians(degrees)); }
inline Mat4 TurnZDeg(double degrees) { return TurnZ(InRadians(degrees)); }

// The rotation of m without its position.
inline Mat4 RotationOf(const Mat4& m)
{
    Mat4 rotation = m;
    for (std::size_t i = 0; i < 3; ++i) rotation[i][3] = 0.0;
    return rotation;
}

// For a rotation and a translation only: the transposed rotation takes the translation back.
inline Mat4 RigidInverse(const Mat4& m)
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

// a, b, c of R = Rz(a) * Ry(b) * Rx(c), for rotations away from b = +-90 degrees.
inline std::array<double, 3> EulerOf(const Mat4& m)
{
    return {std::atan2(m[1][0], m[0][0]), std::atan2(-m[2][0], std::hypot(m[0][0], m[1][0])),
            std::atan2(m[2][1], m[2][2])};
}

// Whether two transforms are the same: toleranceMm for the position, toleranceRotation for every element of
// the rotation, so that no angle has an end of its range. NaN is a difference.
inline ::testing::AssertionResult IsMatrix(const Mat4& actual, const Mat4& expected,
                                           double toleranceMm = 1e-8, double toleranceRotation = 1e-11)
{
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            const double tolerance = j == 3 ? toleranceMm : toleranceRotation;
            if (std::fabs(actual[i][j] - expected[i][j]) <= tolerance) continue;
            return ::testing::AssertionFailure()
                   << "element (" << i << ", " << j << ") is " << ::testing::PrintToString(actual[i][j])
                   << " instead of " << ::testing::PrintToString(expected[i][j]);
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace kine::test

// Rigid transforms as 4 x 4 matrices, written out apart from the library: expected poses are products of
// these. Angles in degrees, lengths in millimetres. An orientation is compared as a matrix, so that no
// extraction of angles is needed.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>

#include "KineDll.h"

namespace kine::test {

struct Mat4
{
    std::array<std::array<double, 4>, 4> e;
};

inline Mat4 Identity4() { return {{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}}; }

inline Mat4 Shift(double x, double y, double z)
{
    Mat4 m = Identity4();
    m.e[0][3] = x;
    m.e[1][3] = y;
    m.e[2][3] = z;
    return m;
}

// A turn of the plane spanned by axes i and j, from i toward j.
inline Mat4 TurnPlane(std::size_t i, std::size_t j, double degrees)
{
    const double radians = degrees / 180.0 * 3.14159265358979323846;
    Mat4 m = Identity4();
    m.e[i][i] = m.e[j][j] = std::cos(radians);
    m.e[j][i] = std::sin(radians);
    m.e[i][j] = -std::sin(radians);
    return m;
}

inline Mat4 TurnX(double degrees) { return TurnPlane(1, 2, degrees); }
inline Mat4 TurnY(double degrees) { return TurnPlane(2, 0, degrees); }
inline Mat4 TurnZ(double degrees) { return TurnPlane(0, 1, degrees); }

inline Mat4 operator*(const Mat4& a, const Mat4& b)
{
    Mat4 product{};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 4; ++k) product.e[i][j] += a.e[i][k] * b.e[k][j];
        }
    }
    return product;
}

// For a rotation and a translation only: the transposed rotation takes the translation back.
inline Mat4 RigidInverse(const Mat4& m)
{
    Mat4 inverse = Identity4();
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            inverse.e[i][j] = m.e[j][i];
            inverse.e[i][3] -= m.e[j][i] * m.e[j][3];
        }
    }
    return inverse;
}

inline Mat4 MatrixOf(const KineFrame& f)
{
    return Shift(f.X, f.Y, f.Z) * TurnZ(f.A) * TurnY(f.B) * TurnX(f.C);
}

// Whether a frame is the expected transform: toleranceMm for the position, toleranceRotation for every
// element of the rotation matrix. NaN is never the expected transform.
inline ::testing::AssertionResult IsFrame(const KineFrame& frame, const Mat4& expected,
                                          double toleranceMm = 1e-9, double toleranceRotation = 1e-12)
{
    const Mat4 actual = MatrixOf(frame);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            const double tolerance = j == 3 ? toleranceMm : toleranceRotation;
            if (!(std::fabs(actual.e[i][j] - expected.e[i][j]) <= tolerance)) {
                return ::testing::AssertionFailure() << "element (" << i << ", " << j << ") is "
                                                     << actual.e[i][j] << " instead of " << expected.e[i][j];
            }
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace kine::test

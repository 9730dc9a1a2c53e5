// The library's poses and transforms as plain matrices and back. Radians and millimetres.
#pragma once

#include <random>

#include "math/transform.h"
#include "support/plain_matrix.h"

namespace kine::test {

inline Mat4 MatrixOf(const Pose& p) { return Shift(p.x, p.y, p.z) * TurnZ(p.a) * TurnY(p.b) * TurnX(p.c); }

// A pose with the given matrix, for rotations away from b = +-90 degrees.
inline Pose PoseOf(const Mat4& m)
{
    const auto [a, b, c] = EulerOf(m);
    return {m[0][3], m[1][3], m[2][3], a, b, c};
}

// The library's form of the same numbers.
inline HomMatrix ToHom(const Mat4& m)
{
    return {{m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]},
            {m[0][3], m[1][3], m[2][3]}};
}

inline HomMatrix HomOf(const Pose& p) { return ToHom(MatrixOf(p)); }

// Compared as matrices: mm in the last column, sines and cosines elsewhere.
inline ::testing::AssertionResult PoseIs(const Pose& actual, const Mat4& expected, double tolerance = 1e-9)
{
    return IsMatrix(MatrixOf(actual), expected, tolerance, tolerance);
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

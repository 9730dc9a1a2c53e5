// The library's poses and transforms as plain matrices and back. Radians and millimetres.
#pragma once

#include "math/transform.h"
#include "support/plain_matrix.h"
#include "support/seeded_random.h"

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

// Any orientation some degrees clear of b = +-90.
inline Pose RandomPose(SeededRandom& random, double reach)
{
    return {random.Uniform(-reach, reach), random.Uniform(-reach, reach),
            random.Uniform(-reach, reach), random.Uniform(-kHalfTurn, kHalfTurn),
            random.Uniform(-1.5, 1.5),     random.Uniform(-kHalfTurn, kHalfTurn)};
}

}  // namespace kine::test

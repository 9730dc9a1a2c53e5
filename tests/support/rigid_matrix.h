// The frames of the exports as plain matrices and back. Degrees and millimetres.
#pragma once

#include "KineDll.h"
#include "support/plain_matrix.h"

namespace kine::test {

inline Mat4 MatrixOf(const KineFrame& f)
{
    return Shift(f.X, f.Y, f.Z) * TurnZDeg(f.A) * TurnYDeg(f.B) * TurnXDeg(f.C);
}

// A frame with the given matrix, for B away from +-90.
inline KineFrame FrameOf(const Mat4& m)
{
    const auto [a, b, c] = EulerOf(m);
    return {m[0][3], m[1][3], m[2][3], InDegrees(a), InDegrees(b), InDegrees(c)};
}

// Compared as matrices, so that no extraction of angles is needed.
inline ::testing::AssertionResult IsFrame(const KineFrame& frame, const Mat4& expected,
                                          double toleranceMm = 1e-9, double toleranceRotation = 1e-12)
{
    return IsMatrix(MatrixOf(frame), expected, toleranceMm, toleranceRotation);
}

}  // namespace kine::test

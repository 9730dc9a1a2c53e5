// 6x6 matrices and their inverse.
#pragma once

namespace kine {

// Row-major: m[row][column].
struct Matrix6
{
    double m[6][6];
};

// Inverts source by Gauss-Jordan elimination with full pivoting and returns its determinant.
// Returns 0 and leaves destination untouched when no element larger than the pivot threshold is left,
// which includes every source with a NaN. Both may be the same matrix.
[[nodiscard]] double Matrix6Inverse(Matrix6& destination, const Matrix6& source);

}  // namespace kine

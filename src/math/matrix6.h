// 6x6 matrices: inverse, and solution of a linear system.
#pragma once

#include <array>

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

// Solves a * x = b by Gaussian elimination with the pivots of Matrix6Inverse, without the inverse. False,
// with x untouched, exactly where Matrix6Inverse returns 0 for a pivot: both eliminate the same numbers.
[[nodiscard]] bool Matrix6Solve(const Matrix6& a, const std::array<double, 6>& b, std::array<double, 6>& x);

}  // namespace kine

// Gauss-Jordan inversion in place, and elimination with the same pivots. W: working matrix; P: product of the
// pivots; s: sign of the exchanges.
#include "math/matrix6.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace kine {

namespace {

constexpr int kSize = 6;

// Smallest usable pivot; equal passes. The single-precision 1e-4 as a double.
constexpr double kMinPivot = 9.999999747378752e-05;

struct Pivot
{
    int row;
    int column;
    double size;
};

// The largest element of W right of and below (k, k), the first found among equals. NaN is never larger. W
// may have more columns than the matrix.
template <std::size_t columns>
inline Pivot FindPivot(const double (&w)[kSize][columns], int k)
{
    Pivot pivot{k, k, 0.0};
    for (int i = k; i < kSize; ++i) {
        for (int j = k; j < kSize; ++j) {
            const double size = std::fabs(w[i][j]);
            if (size > pivot.size) pivot = {i, j, size};
        }
    }
    return pivot;
}

void SwapRows(Matrix6& w, int i, int j) { std::swap(w.m[i], w.m[j]); }

void SwapColumns(Matrix6& w, int i, int j)
{
    for (auto& row : w.m) std::swap(row[i], row[j]);
}

// One elimination step with the pivot already at (k, k).
void Eliminate(Matrix6& w, int k)
{
    const double reciprocal = 1.0 / w.m[k][k];
    w.m[k][k] = reciprocal;
    for (int j = 0; j < kSize; ++j) {
        if (j != k) w.m[k][j] *= reciprocal;
    }
    for (int i = 0; i < kSize; ++i) {
        if (i == k) continue;
        for (int j = 0; j < kSize; ++j) {
            if (j != k) w.m[i][j] -= w.m[i][k] * w.m[k][j];
        }
    }
    for (int i = 0; i < kSize; ++i) {
        if (i != k) w.m[i][k] *= -reciprocal;
    }
}

// A linear system. Rows of eight: the matrix, the right side, and a filler that keeps the rows aligned.
struct System
{
    alignas(16) double m[kSize][8];
    int unknown[kSize];  // which unknown the column belongs to
};

constexpr int kRight = 6;

// Steps k to 5 of the elimination. k is a constant, so that all loops are unrolled.
template <int k>
bool Eliminate(System& s)
{
    if constexpr (k == kSize) {
        return true;
    } else {
        const Pivot pivot = FindPivot(s.m, k);
        if (pivot.size < kMinPivot) return false;
        std::swap(s.m[pivot.row], s.m[k]);
        for (auto& row : s.m) std::swap(row[pivot.column], row[k]);
        std::swap(s.unknown[pivot.column], s.unknown[k]);

        const double reciprocal = 1.0 / s.m[k][k];
        for (int j = k + 1; j <= kRight; ++j) s.m[k][j] *= reciprocal;
        for (int i = k + 1; i < kSize; ++i) {
            for (int j = k + 1; j <= kRight; ++j) s.m[i][j] -= s.m[i][k] * s.m[k][j];
        }
        return Eliminate<k + 1>(s);
    }
}

}  // namespace

double Matrix6Inverse(Matrix6& destination, const Matrix6& source)
{
    Matrix6 w = source;
    Pivot pivots[kSize]{};
    double s = 1.0;
    double p = 1.0;

    for (int k = 0; k < kSize; ++k) {
        const Pivot pivot = FindPivot(w.m, k);
        if (pivot.size < kMinPivot) return 0.0;
        pivots[k] = pivot;
        if (pivot.row != k) {
            SwapRows(w, pivot.row, k);
            s = -s;
        }
        if (pivot.column != k) {
            SwapColumns(w, pivot.column, k);
            s = -s;
        }
        p *= w.m[k][k];
        Eliminate(w, k);
    }

    for (int k = kSize - 1; k >= 0; --k) {
        if (pivots[k].column != k) SwapRows(w, k, pivots[k].column);
        if (pivots[k].row != k) SwapColumns(w, k, pivots[k].row);
    }

    destination = w;
    return s * p;
}

bool Matrix6Solve(const Matrix6& a, const std::array<double, 6>& b, std::array<double, 6>& x)
{
    System system{};
    for (int i = 0; i < kSize; ++i) {
        for (int j = 0; j < kSize; ++j) system.m[i][j] = a.m[i][j];
        system.m[i][kRight] = b[static_cast<std::size_t>(i)];
        system.unknown[i] = i;
    }
    if (!Eliminate<0>(system)) return false;

    for (int k = kSize - 1; k >= 0; --k) {
        double value = system.m[k][kRight];
        for (int j = k + 1; j < kSize; ++j) value -= system.m[k][j] * system.m[j][kRight];
        system.m[k][kRight] = value;
        x[static_cast<std::size_t>(system.unknown[k])] = value;
    }
    return true;
}

}  // namespace kine

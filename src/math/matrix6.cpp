// Gauss-Jordan inversion in place. W: working matrix; P: product of the pivots; s: sign of the exchanges.
#include "math/matrix6.h"

#include <cmath>
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

// The largest element of W right of and below (k, k), the first found among equals. NaN is never larger.
Pivot FindPivot(const Matrix6& w, int k)
{
    Pivot pivot{k, k, 0.0};
    for (int i = k; i < kSize; ++i) {
        for (int j = k; j < kSize; ++j) {
            const double size = std::fabs(w.m[i][j]);
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

}  // namespace

double Matrix6Inverse(Matrix6& destination, const Matrix6& source)
{
    Matrix6 w = source;
    Pivot pivots[kSize]{};
    double s = 1.0;
    double p = 1.0;

    for (int k = 0; k < kSize; ++k) {
        const Pivot pivot = FindPivot(w, k);
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

}  // namespace kine

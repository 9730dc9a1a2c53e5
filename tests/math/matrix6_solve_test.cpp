// The solution of a linear system against its written-out form: the inverse times the right side. Both
// eliminate the same numbers, so that they refuse the same matrices, to the last bit of a pivot.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <optional>

#include "math/matrix6.h"
#include "support/math_compare.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;

constexpr std::size_t kSize = 6;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
// The single-precision 1e-4 as a double.
constexpr double kSmallestPivot = 9.999999747378752e-05;

using Vector = std::array<double, kSize>;

constexpr Vector kSomeRight{1.0, -2.0, 3.0, -4.0, 5.0, -6.0};

Matrix6 Diagonal(const Vector& d)
{
    Matrix6 m{};
    for (std::size_t i = 0; i < kSize; ++i) m.m[i][i] = d[i];
    return m;
}

Vector RandomVector(test::SeededRandom& random)
{
    Vector v{};
    for (double& element : v) element = random.Uniform(-2.0, 2.0);
    return v;
}

Matrix6 RandomMatrix(test::SeededRandom& random)
{
    Matrix6 m{};
    for (auto& row : m.m) {
        for (double& element : row) element = random.Uniform(-2.0, 2.0);
    }
    return m;
}

// Largest sum of sizes in a row.
double Norm(const Matrix6& m)
{
    double norm = 0.0;
    for (const auto& row : m.m) {
        double sum = 0.0;
        for (const double element : row) sum += std::fabs(element);
        norm = std::fmax(norm, sum);
    }
    return norm;
}

double Norm(const Vector& v)
{
    double norm = 0.0;
    for (const double element : v) norm = std::fmax(norm, std::fabs(element));
    return norm;
}

// The inverse times the right side; nothing where the inverse is refused.
std::optional<Vector> WrittenOut(const Matrix6& a, const Vector& b)
{
    Matrix6 inverse{};
    if (Matrix6Inverse(inverse, a) == 0.0) return std::nullopt;
    Vector x{};
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) x[i] += inverse.m[i][j] * b[j];
    }
    return x;
}

bool IsRefused(const Matrix6& a)
{
    auto x = test::Untouched<Vector>();
    const bool isSolved = Matrix6Solve(a, kSomeRight, x);
    EXPECT_NE(test::IsUntouched(x), isSolved);
    return !isSolved;
}

// Whether both refuse the matrix; a test failure when only one does.
bool IsRefusedByBoth(const Matrix6& a)
{
    const bool isRefused = IsRefused(a);
    EXPECT_EQ(isRefused, !WrittenOut(a, kSomeRight).has_value());
    return isRefused;
}

// Two solutions of one system: each may be off by a few roundings times the condition of the matrix.
void ExpectAgreement(const Matrix6& a, const Vector& b)
{
    Matrix6 inverse{};
    ASSERT_NE(Matrix6Inverse(inverse, a), 0.0);
    const std::optional<Vector> expected = WrittenOut(a, b);
    auto x = test::Untouched<Vector>();
    ASSERT_TRUE(Matrix6Solve(a, b, x));
    const double tolerance = 8.0 * kEpsilon * Norm(a) * Norm(inverse) * Norm(*expected);
    for (std::size_t i = 0; i < kSize; ++i) EXPECT_NEAR(x[i], (*expected)[i], tolerance) << i;

    // Without the inverse: what is left of the right side, in higher precision, is a few roundings of its
    // terms.
    for (std::size_t i = 0; i < kSize; ++i) {
        auto rest = static_cast<long double>(b[i]);
        for (std::size_t j = 0; j < kSize; ++j) {
            rest -= static_cast<long double>(a.m[i][j]) * static_cast<long double>(x[j]);
        }
        EXPECT_LE(std::fabs(static_cast<double>(rest)), 8.0 * kEpsilon * (Norm(a) * Norm(x) + Norm(b))) << i;
    }
}

TEST(Matrix6Solve, of_random_systems_is_the_inverse_times_the_right_side)
{
    test::SeededRandom random(60701);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const Matrix6 a = RandomMatrix(random);
        if (!IsRefusedByBoth(a)) ExpectAgreement(a, RandomVector(random));
    }
}

// Rows in mm beside rows without a unit, as in the Jacobian of an arm.
TEST(Matrix6Solve, of_systems_with_rows_of_different_size_is_the_inverse_times_the_right_side)
{
    test::SeededRandom random(60702);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        Matrix6 a = RandomMatrix(random);
        for (std::size_t row = 0; row < 3; ++row) {
            for (double& element : a.m[row]) element *= 1000.0;
        }
        if (!IsRefusedByBoth(a)) ExpectAgreement(a, RandomVector(random));
    }
}

TEST(Matrix6Solve, of_every_scaled_permutation_is_exact)
{
    constexpr Vector kScale{0.5, 8.0, 1.0, 16.0, 0.25, 2.0};
    std::array<std::size_t, kSize> to{};
    std::iota(to.begin(), to.end(), std::size_t{0});
    do {
        Matrix6 a{};
        for (std::size_t i = 0; i < kSize; ++i) a.m[i][to[i]] = kScale[i];
        auto x = test::Untouched<Vector>();
        ASSERT_TRUE(Matrix6Solve(a, kSomeRight, x));
        for (std::size_t i = 0; i < kSize; ++i) ASSERT_EQ(x[to[i]], kSomeRight[i] / kScale[i]);
    } while (std::next_permutation(to.begin(), to.end()));
}

// Integers that are found exactly: pivots of 16, 8, 4, 2, 1 and 1 below dyadic rows.
TEST(Matrix6Solve, of_a_dyadic_system_is_exact)
{
    const Matrix6 a{{{16, 8, 4, 0, 2, 1},
                     {8, 12, 2, 4, 1, 0.5},
                     {4, 2, 5, 0, 0.5, 0.25},
                     {0, 4, 0, 4, 0, 0},
                     {2, 1, 0.5, 0, 1.25, 0.125},
                     {1, 0.5, 0.25, 0, 0.125, 1.0625}}};
    const Vector solution{3.0, -7.0, 11.0, 2.0, -5.0, 13.0};
    Vector right{};
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) right[i] += a.m[i][j] * solution[j];
    }
    auto x = test::Untouched<Vector>();
    ASSERT_TRUE(Matrix6Solve(a, right, x));
    EXPECT_EQ(x, solution);
}

TEST(Matrix6Solve, of_a_zero_right_side_is_zero)
{
    test::SeededRandom random(60703);
    auto x = test::Untouched<Vector>();
    ASSERT_TRUE(Matrix6Solve(RandomMatrix(random), Vector{}, x));
    for (const double element : x) EXPECT_EQ(element, 0.0);
}

TEST(Matrix6Solve, pivot_at_the_threshold_passes_and_below_is_refused)
{
    for (std::size_t place = 0; place < kSize; ++place) {
        for (const double sign : {1.0, -1.0}) {
            SCOPED_TRACE(::testing::Message() << place << ' ' << sign);
            Vector d;
            d.fill(1.0);
            for (const double pivot : {kSmallestPivot, JustAbove(kSmallestPivot), 1e-4}) {
                d[place] = sign * pivot;
                Vector x{};
                ASSERT_TRUE(Matrix6Solve(Diagonal(d), kSomeRight, x));
                EXPECT_EQ(x[place], kSomeRight[place] * (1.0 / d[place]));
            }
            for (const double pivot : {JustBelow(kSmallestPivot), 0.00009, 1e-300, 0.0}) {
                d[place] = sign * pivot;
                EXPECT_TRUE(IsRefused(Diagonal(d))) << pivot;
            }
        }
    }
}

TEST(Matrix6Solve, threshold_is_on_the_pivot_and_not_on_the_determinant)
{
    EXPECT_TRUE(IsRefused(Diagonal({1e6, 1e6, 1e6, 1e6, 1e6, 9e-5})));
    EXPECT_FALSE(IsRefused(Diagonal({1e-3, 1e-3, 1e-3, 1e-3, 1e-3, 1e-3})));
    EXPECT_TRUE(IsRefused(Matrix6{}));
}

// Row 5 a sum of the others with off more in one place.
Matrix6 NearlySingular(const Matrix6& base, const Vector& share, std::size_t column, double off)
{
    Matrix6 m = base;
    for (std::size_t j = 0; j < kSize; ++j) {
        m.m[5][j] = 0.0;
        for (std::size_t i = 0; i < 5; ++i) m.m[5][j] += share[i] * base.m[i][j];
    }
    m.m[5][column] += off;
    return m;
}

TEST(Matrix6Solve, nearly_singular_matrices_are_refused_where_the_inverse_is)
{
    test::SeededRandom random(60704);
    int refused = 0;
    int solved = 0;
    for (int i = 0; i < 3000; ++i) {
        SCOPED_TRACE(i);
        const Matrix6 base = RandomMatrix(random);
        const Vector share = RandomVector(random);
        const double off = std::pow(10.0, random.Uniform(-6.0, -2.0));
        const Matrix6 a = NearlySingular(base, share, random.Below(kSize), off);
        const bool isRefused = IsRefusedByBoth(a);
        ++(isRefused ? refused : solved);
        if (!isRefused) ExpectAgreement(a, RandomVector(random));
    }
    EXPECT_GT(refused, 500);
    EXPECT_GT(solved, 500);
}

// Between two neighbouring doubles of one element the verdict on the last pivot turns: for both at once.
TEST(Matrix6Solve, the_last_matrix_that_is_refused_is_that_of_the_inverse)
{
    test::SeededRandom random(60705);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        const Matrix6 base = RandomMatrix(random);
        const Vector share = RandomVector(random);
        const std::size_t column = random.Below(kSize);
        double refused = 0.0;
        double solved = 1.0;
        ASSERT_TRUE(IsRefusedByBoth(NearlySingular(base, share, column, refused)));
        if (IsRefusedByBoth(NearlySingular(base, share, column, solved))) continue;
        for (;;) {
            const double middle = refused + 0.5 * (solved - refused);
            if (middle == refused || middle == solved) break;
            (IsRefusedByBoth(NearlySingular(base, share, column, middle)) ? refused : solved) = middle;
        }
    }
}

TEST(Matrix6Solve, nan_anywhere_is_refused)
{
    test::SeededRandom random(60706);
    const Matrix6 regular = RandomMatrix(random);
    ASSERT_FALSE(IsRefused(regular));
    for (auto place = std::size_t{0}; place < kSize * kSize; ++place) {
        SCOPED_TRACE(place);
        Matrix6 a = regular;
        a.m[place / kSize][place % kSize] = kNan;
        EXPECT_TRUE(IsRefusedByBoth(a));
        Matrix6 onlyNan{};
        onlyNan.m[place / kSize][place % kSize] = kNan;
        EXPECT_TRUE(IsRefusedByBoth(onlyNan));
    }
}

TEST(Matrix6Solve, infinities_are_refused_where_the_inverse_refuses_them)
{
    test::SeededRandom random(60707);
    const Matrix6 regular = RandomMatrix(random);
    for (auto first = std::size_t{0}; first < kSize * kSize; ++first) {
        for (auto second = first; second < kSize * kSize; ++second) {
            SCOPED_TRACE(::testing::Message() << first << ' ' << second);
            Matrix6 a = regular;
            a.m[first / kSize][first % kSize] = kInf;
            a.m[second / kSize][second % kSize] = first % 2 == 0 ? kInf : -kInf;
            static_cast<void>(IsRefusedByBoth(a));
        }
    }
    // 1 / infinity is 0 and 0 times the zeros around it stays 0.
    EXPECT_FALSE(IsRefusedByBoth(Diagonal({1.0, 2.0, kInf, 4.0, 1.0, 1.0})));
}

TEST(Matrix6Solve, anything_mixed_is_refused_where_the_inverse_refuses_it)
{
    const double elements[] = {0.0, -0.0, 1.0, -1.0, 0.5, 1e-4, -1e-4, 1e300, 1e-300, kInf, -kInf, kNan};
    test::SeededRandom random(60708);
    int solved = 0;
    for (int i = 0; i < 5000; ++i) {
        SCOPED_TRACE(i);
        // The rarer the last elements, the further the elimination gets.
        const std::size_t kinds = i % 2 == 0 ? 7 : std::size(elements);
        Matrix6 a = RandomMatrix(random);
        for (int k = 0; k < 6 + i % 30; ++k) {
            a.m[random.Below(kSize)][random.Below(kSize)] = elements[random.Below(kinds)];
        }
        solved += IsRefusedByBoth(a) ? 0 : 1;
    }
    EXPECT_GT(solved, 500);
}

// Elements of one size compete for nearly every pivot.
TEST(Matrix6Solve, of_small_integers_is_refused_where_the_inverse_is)
{
    test::SeededRandom random(60709);
    int refused = 0;
    for (int i = 0; i < 5000; ++i) {
        SCOPED_TRACE(i);
        Matrix6 a{};
        for (auto& row : a.m) {
            for (double& element : row) element = random.Whole(-1, 1);
        }
        const bool isRefused = IsRefusedByBoth(a);
        refused += isRefused ? 1 : 0;
        if (!isRefused) ExpectAgreement(a, RandomVector(random));
    }
    EXPECT_GT(refused, 500);
    EXPECT_LT(refused, 4500);
}

// A 3x3 block below right of large diagonal elements, which become the first three pivots in place.
Matrix6 WithLastBlock(const std::array<std::array<double, 3>, 3>& block)
{
    Matrix6 m = Diagonal({8.0, 4.0, 2.0, 0.0, 0.0, 0.0});
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) m.m[3 + i][3 + j] = block[i][j];
    }
    return m;
}

// As for the inverse: elements of equal size compete for the fourth pivot, all numbers are dyadic, and
// which one wins decides whether the sixth pivot (2^-13 or 2^-14) is above the threshold.
TEST(Matrix6Solve, of_equal_elements_the_first_of_the_rows_is_the_pivot)
{
    // From the first 1 on: pivots 1, 1/2, 2^-13. From the last element of size 1: 1, 1, 2^-14.
    const Matrix6 first =
        WithLastBlock({{{1.0, -0.5, -0.75}, {1.0, 0.0, -1.0}, {1.0, -1.0, -4097.0 / 8192.0}}});
    EXPECT_FALSE(IsRefusedByBoth(first));
    const Vector solution{1.0, 2.0, 3.0, 4.0, -5.0, 6.0};
    Vector right{};
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) right[i] += first.m[i][j] * solution[j];
    }
    Vector x{};
    ASSERT_TRUE(Matrix6Solve(first, right, x));
    EXPECT_EQ(x, solution);
    // By rows the -1 in the middle comes first: pivots 1, 1/2, 2^-14. By columns: 1, 1/4, 2^-13.
    EXPECT_TRUE(IsRefusedByBoth(
        WithLastBlock({{{0.0, 2047.0 / 8192.0, -0.25}, {0.75, -1.0, -0.5}, {-1.0, 1.0, 1.0}}})));
    // From the left: pivots 1, 1/2, 2^-14. From the right: 1, 1/4, 2^-13.
    EXPECT_TRUE(IsRefusedByBoth(
        WithLastBlock({{{1.0, -1.0, 1.0}, {-1.0, 4097.0 / 8192.0, -0.75}, {-0.75, 0.25, -0.5}}})));
}

// The matrix alone decides about the verdict; no unknown is finite then, in either form.
TEST(Matrix6Solve, of_a_right_side_that_is_not_finite_has_no_finite_unknown)
{
    test::SeededRandom random(60710);
    const Matrix6 a = RandomMatrix(random);
    for (const double bad : {kNan, kInf, -kInf}) {
        for (std::size_t place = 0; place < kSize; ++place) {
            SCOPED_TRACE(::testing::Message() << bad << ' ' << place);
            Vector right = kSomeRight;
            right[place] = bad;
            auto x = test::Untouched<Vector>();
            ASSERT_TRUE(Matrix6Solve(a, right, x));
            const std::optional<Vector> expected = WrittenOut(a, right);
            ASSERT_TRUE(expected.has_value());
            for (std::size_t i = 0; i < kSize; ++i) {
                EXPECT_FALSE(std::isfinite(x[i])) << i;
                EXPECT_FALSE(std::isfinite((*expected)[i])) << i;
            }
        }
    }
}

}  // namespace
}  // namespace kine

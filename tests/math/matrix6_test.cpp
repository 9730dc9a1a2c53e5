#include "math/matrix6.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>

#include "support/math_compare.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;

constexpr std::size_t kSize = 6;
// The single-precision 1e-4 as a double.
constexpr double kSmallestPivot = 9.999999747378752e-05;

using Permutation = std::array<std::size_t, kSize>;

Matrix6 Diagonal(const std::array<double, kSize>& d)
{
    Matrix6 m{};
    for (std::size_t i = 0; i < kSize; ++i) m.m[i][i] = d[i];
    return m;
}

// Row i has its single element scale[i] in column to[i].
Matrix6 Permuted(const Permutation& to, const std::array<double, kSize>& scale)
{
    Matrix6 m{};
    for (std::size_t i = 0; i < kSize; ++i) m.m[i][to[i]] = scale[i];
    return m;
}

int SignOf(const Permutation& to)
{
    int sign = 1;
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = i + 1; j < kSize; ++j) sign = to[i] > to[j] ? -sign : sign;
    }
    return sign;
}

Permutation Identity()
{
    Permutation p{};
    std::iota(p.begin(), p.end(), std::size_t{0});
    return p;
}

// The sum over all 720 permutations.
double Determinant(const Matrix6& m)
{
    Permutation p = Identity();
    double sum = 0.0;
    do {
        double product = SignOf(p);
        for (std::size_t i = 0; i < kSize; ++i) product *= m.m[i][p[i]];
        sum += product;
    } while (std::next_permutation(p.begin(), p.end()));
    return sum;
}

void ExpectIsInverse(const Matrix6& inverse, const Matrix6& m, double tolerance)
{
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) {
            double left = 0.0;
            double right = 0.0;
            for (std::size_t k = 0; k < kSize; ++k) {
                left += inverse.m[i][k] * m.m[k][j];
                right += m.m[i][k] * inverse.m[k][j];
            }
            EXPECT_NEAR(left, i == j ? 1.0 : 0.0, tolerance) << i << ' ' << j;
            EXPECT_NEAR(right, i == j ? 1.0 : 0.0, tolerance) << i << ' ' << j;
        }
    }
}

Matrix6 RandomMatrix(test::SeededRandom& random)
{
    Matrix6 m{};
    for (auto& row : m.m) {
        for (double& element : row) element = random.Uniform(-2.0, 2.0);
    }
    return m;
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

void ExpectSingular(const Matrix6& m)
{
    auto inverse = test::Untouched<Matrix6>();
    EXPECT_EQ(Matrix6Inverse(inverse, m), 0.0);
    EXPECT_TRUE(test::IsUntouched(inverse));
}

TEST(Matrix6, is_thirty_six_doubles_row_by_row)
{
    static_assert(sizeof(Matrix6) == 36 * sizeof(double));
    Matrix6 m{};
    m.m[2][5] = 1.0;
    std::array<double, 36> elements{};
    std::memcpy(elements.data(), &m, sizeof m);
    EXPECT_EQ(elements[2 * 6 + 5], 1.0);
}

TEST(Matrix6Inverse, of_identity_is_identity_with_determinant_one)
{
    const Matrix6 identity = Diagonal({1.0, 1.0, 1.0, 1.0, 1.0, 1.0});
    auto inverse = test::Untouched<Matrix6>();
    EXPECT_EQ(Matrix6Inverse(inverse, identity), 1.0);
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) EXPECT_EQ(inverse.m[i][j], i == j ? 1.0 : 0.0);
    }
}

TEST(Matrix6Inverse, of_diagonal_powers_of_two_is_exact)
{
    auto inverse = test::Untouched<Matrix6>();
    EXPECT_EQ(Matrix6Inverse(inverse, Diagonal({2.0, -4.0, 0.5, 8.0, 1.0, -16.0})), 512.0);
    const double expected[kSize] = {0.5, -0.25, 2.0, 0.125, 1.0, -0.0625};
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) EXPECT_EQ(inverse.m[i][j], i == j ? expected[i] : 0.0);
    }
}

TEST(Matrix6Inverse, of_every_scaled_permutation_is_exact_with_the_sign_of_the_permutation)
{
    // Distinct sizes, in an order that moves rows and columns about: the pivots come from all over.
    constexpr std::array<double, kSize> kScale{0.5, 8.0, 1.0, 16.0, 0.25, 2.0};  // product 32
    Permutation to = Identity();
    do {
        SCOPED_TRACE(::testing::Message() << to[0] << to[1] << to[2] << to[3] << to[4] << to[5]);
        auto inverse = test::Untouched<Matrix6>();
        ASSERT_EQ(Matrix6Inverse(inverse, Permuted(to, kScale)), 32.0 * SignOf(to));
        for (std::size_t i = 0; i < kSize; ++i) {
            for (std::size_t j = 0; j < kSize; ++j) {
                ASSERT_EQ(inverse.m[j][i], to[i] == j ? 1.0 / kScale[i] : 0.0);
            }
        }
    } while (std::next_permutation(to.begin(), to.end()));
}

TEST(Matrix6Inverse, of_random_matrices_is_the_inverse_with_the_determinant)
{
    test::SeededRandom random(60606);
    for (int i = 0; i < 200; ++i) {
        const Matrix6 m = RandomMatrix(random);
        SCOPED_TRACE(i);
        const double determinant = Determinant(m);
        if (std::fabs(determinant) < 1.0) continue;
        Matrix6 inverse{};
        EXPECT_NEAR(Matrix6Inverse(inverse, m), determinant, 1e-11 * (1.0 + std::fabs(determinant)));
        ExpectIsInverse(inverse, m, 1e-11);
    }
}

TEST(Matrix6Inverse, exchanged_rows_change_the_sign_of_the_determinant)
{
    test::SeededRandom random(77);
    Matrix6 m = RandomMatrix(random);
    Matrix6 inverse{};
    const double before = Matrix6Inverse(inverse, m);
    ASSERT_NE(before, 0.0);
    std::swap(m.m[1], m.m[4]);
    EXPECT_NEAR(Matrix6Inverse(inverse, m), -before, 1e-12 * std::fabs(before));
    for (auto& row : m.m) std::swap(row[0], row[3]);
    EXPECT_NEAR(Matrix6Inverse(inverse, m), before, 1e-12 * std::fabs(before));
}

TEST(Matrix6Inverse, may_write_into_its_source)
{
    test::SeededRandom random(78);
    const Matrix6 m = RandomMatrix(random);
    Matrix6 apart{};
    Matrix6 inPlace = m;
    const double determinant = Matrix6Inverse(apart, m);
    EXPECT_EQ(Matrix6Inverse(inPlace, inPlace), determinant);
    EXPECT_TRUE(test::SameBits(inPlace, apart));
    ExpectIsInverse(inPlace, m, 1e-11);
}

TEST(Matrix6Inverse, pivot_at_the_threshold_passes)
{
    for (const double pivot : {kSmallestPivot, JustAbove(kSmallestPivot), 1e-4}) {
        SCOPED_TRACE(pivot);
        Matrix6 inverse{};
        EXPECT_EQ(Matrix6Inverse(inverse, Diagonal({1.0, 1.0, 1.0, 1.0, 1.0, pivot})), pivot);
        EXPECT_EQ(inverse.m[5][5], 1.0 / pivot);
        // The sign of the element does not matter.
        EXPECT_EQ(Matrix6Inverse(inverse, Diagonal({1.0, 1.0, -pivot, 1.0, 1.0, 1.0})), -pivot);
        EXPECT_EQ(inverse.m[2][2], -1.0 / pivot);
    }
}

TEST(Matrix6Inverse, pivot_below_the_threshold_is_singular)
{
    for (const double pivot : {JustBelow(kSmallestPivot), 0.00009, 1e-300, 0.0}) {
        SCOPED_TRACE(pivot);
        ExpectSingular(Diagonal({1.0, 1.0, 1.0, 1.0, 1.0, pivot}));
        ExpectSingular(Diagonal({-pivot, 1.0, 1.0, 1.0, 1.0, 1.0}));
    }
}

TEST(Matrix6Inverse, threshold_is_on_the_pivot_and_not_on_the_determinant)
{
    ExpectSingular(Diagonal({1e6, 1e6, 1e6, 1e6, 1e6, 9e-5}));
    Matrix6 inverse{};
    EXPECT_NEAR(Matrix6Inverse(inverse, Diagonal({1e-3, 1e-3, 1e-3, 1e-3, 1e-3, 1e-3})), 1e-18, 1e-32);
}

TEST(Matrix6Inverse, of_all_zeros_is_singular) { ExpectSingular(Matrix6{}); }

TEST(Matrix6Inverse, with_two_equal_columns_is_singular)
{
    test::SeededRandom random(79);
    Matrix6 m = RandomMatrix(random);
    for (auto& row : m.m) row[4] = row[1];
    ExpectSingular(m);
}

TEST(Matrix6Inverse, singular_source_in_place_is_left_as_it_was)
{
    Matrix6 m = Diagonal({1.0, 2.0, 3.0, 4.0, 5.0, 9e-5});
    const Matrix6 before = m;
    EXPECT_EQ(Matrix6Inverse(m, m), 0.0);
    EXPECT_TRUE(test::SameBits(m, before));
}

// In the next three, elements of equal size compete for the fourth pivot. All numbers are dyadic, so every
// step is exact. Which one wins decides how the determinant splits into the last two pivots, and with it
// whether the sixth (2^-13 or 2^-14) is above the threshold.

TEST(Matrix6Inverse, of_equal_elements_the_first_is_the_pivot)
{
    // From the first 1 on: pivots 1, 1/2, 2^-13. From the last element of size 1: 1, 1, 2^-14.
    const Matrix6 m = WithLastBlock({{{1.0, -0.5, -0.75}, {1.0, 0.0, -1.0}, {1.0, -1.0, -4097.0 / 8192.0}}});
    Matrix6 inverse{};
    // 8 * 4 * 2 times the determinant of the block, -1 + 4095/16384 + 3/4.
    EXPECT_EQ(Matrix6Inverse(inverse, m), -64.0 / 16384.0);
    ExpectIsInverse(inverse, m, 0.0);
}

TEST(Matrix6Inverse, equal_elements_are_searched_row_by_row)
{
    // By rows the -1 in the middle comes first: pivots 1, 1/2, 2^-14. By columns the -1 below left would:
    // 1, 1/4, 2^-13.
    ExpectSingular(WithLastBlock({{{0.0, 2047.0 / 8192.0, -0.25}, {0.75, -1.0, -0.5}, {-1.0, 1.0, 1.0}}}));
}

TEST(Matrix6Inverse, equal_elements_of_a_row_are_searched_from_the_left)
{
    // From the left: pivots 1, 1/2, 2^-14. From the right: 1, 1/4, 2^-13.
    ExpectSingular(WithLastBlock({{{1.0, -1.0, 1.0}, {-1.0, 4097.0 / 8192.0, -0.75}, {-0.75, 0.25, -0.5}}}));
}

TEST(Matrix6Inverse, pivot_is_the_largest_of_the_whole_block)
{
    // 1000 first leaves 5e-5 - 0.1 * 0.2 / 1000 = 3e-5: singular. The largest of the first column alone, 0.2,
    // would leave 0.1 - 5e-5 * 1000 / 0.2 = -0.15; of the first row alone, 0.1, 0.2 - 0.5 = -0.3.
    Matrix6 m = Diagonal({1e4, 1e4, 1e4, 1e4, 5e-5, 1000.0});
    m.m[4][5] = 0.1;
    m.m[5][4] = 0.2;
    ExpectSingular(m);
}

TEST(Matrix6Inverse, nan_anywhere_is_singular)
{
    test::SeededRandom random(80);
    const Matrix6 m = RandomMatrix(random);
    for (std::size_t i = 0; i < kSize; ++i) {
        for (std::size_t j = 0; j < kSize; ++j) {
            SCOPED_TRACE(::testing::Message() << i << ' ' << j);
            Matrix6 bad = m;
            bad.m[i][j] = kNan;
            ExpectSingular(bad);
            Matrix6 onlyNan{};
            onlyNan.m[i][j] = kNan;
            ExpectSingular(onlyNan);
        }
    }
}

TEST(Matrix6Inverse, of_infinite_pivot_alone_has_a_zero_in_its_place)
{
    // 1 / infinity is 0 and 0 times the zeros around it stays 0.
    Matrix6 inverse{};
    EXPECT_EQ(Matrix6Inverse(inverse, Diagonal({1.0, 2.0, kInf, 4.0, 1.0, 1.0})), kInf);
    EXPECT_EQ(inverse.m[2][2], 0.0);
    EXPECT_EQ(inverse.m[3][3], 0.25);
}

TEST(Matrix6Inverse, two_infinities_in_one_row_are_singular)
{
    // The second one turns into 0 * infinity.
    test::SeededRandom random(81);
    Matrix6 m = RandomMatrix(random);
    m.m[3][1] = kInf;
    m.m[3][4] = -kInf;
    ExpectSingular(m);
}

}  // namespace
}  // namespace kine

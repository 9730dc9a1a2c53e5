// Small linear systems against results by hand and in whole numbers: with entries this small every product,
// sum and quotient is exact, so that results are compared for equality.
#include "calib/least_squares.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "support/seeded_random.h"

using namespace kine;
using namespace kine::test;

namespace {

void ExpectVec(const Vec3& actual, const Vec3& expected)
{
    EXPECT_EQ(actual.x, expected.x);
    EXPECT_EQ(actual.y, expected.y);
    EXPECT_EQ(actual.z, expected.z);
}

// Row by column.
using Whole3 = std::array<std::array<int, 3>, 3>;

// Sum over all six permutations of the columns.
int DeterminantOf(const Whole3& m)
{
    return m[0][0] * m[1][1] * m[2][2] + m[0][1] * m[1][2] * m[2][0] + m[0][2] * m[1][0] * m[2][1] -
           m[0][2] * m[1][1] * m[2][0] - m[0][0] * m[1][2] * m[2][1] - m[0][1] * m[1][0] * m[2][2];
}

Vec3 ColumnOf(const Whole3& m, std::size_t j)
{
    return {static_cast<double>(m[0][j]), static_cast<double>(m[1][j]), static_cast<double>(m[2][j])};
}

}  // namespace

// The line through (0, 1), (1, 3), (2, 4), (3, 4): sums 4, 6, 14 and 12, 23; determinant 4 * 14 - 6 * 6.
TEST(LinearSystem2, fits_a_line)
{
    LinearSystem2 normal{};
    const std::array<double, 4> heights = {1.0, 3.0, 4.0, 4.0};
    for (std::size_t i = 0; i < heights.size(); ++i) {
        AddEquation(normal, 1.0, static_cast<double>(i), heights[i]);
    }
    EXPECT_EQ(normal.n00, 4.0);
    EXPECT_EQ(normal.n01, 6.0);
    EXPECT_EQ(normal.n11, 14.0);
    EXPECT_EQ(normal.r0, 12.0);
    EXPECT_EQ(normal.r1, 23.0);
    EXPECT_EQ(Determinant(normal), 20.0);
    const Solution2 line = CramersRule(normal, 20.0);
    EXPECT_EQ(line.x0, 1.5);
    EXPECT_EQ(line.x1, 1.0);
}

TEST(LinearSystem2, whole_solutions_are_found_exactly)
{
    SeededRandom random(620101);
    int solved = 0;
    for (int round = 0; round < 500; ++round) {
        const int n00 = random.Whole(-9, 9);
        const int n01 = random.Whole(-9, 9);
        const int n11 = random.Whole(-9, 9);
        const int x0 = random.Whole(-9, 9);
        const int x1 = random.Whole(-9, 9);
        const LinearSystem2 system = {static_cast<double>(n00), static_cast<double>(n01),
                                      static_cast<double>(n11), static_cast<double>(n00 * x0 + n01 * x1),
                                      static_cast<double>(n01 * x0 + n11 * x1)};
        const double determinant = Determinant(system);
        EXPECT_EQ(determinant, n00 * n11 - n01 * n01);
        if (determinant == 0.0) continue;
        ++solved;
        const Solution2 solution = CramersRule(system, determinant);
        EXPECT_EQ(solution.x0, x0) << "round " << round;
        EXPECT_EQ(solution.x1, x1) << "round " << round;
    }
    EXPECT_GT(solved, 400);
}

// A single direction, twice.
TEST(LinearSystem2, parallel_equations_have_determinant_0)
{
    LinearSystem2 normal{};
    AddEquation(normal, 3.0, 4.0, 1.0);
    AddEquation(normal, -6.0, -8.0, 7.0);
    EXPECT_EQ(Determinant(normal), 0.0);
    EXPECT_EQ(Determinant(LinearSystem2{}), 0.0);
}

// Rows (1, 2, 0), (0, 1, 3), (2, 0, 1), (1, 1, 1) with right sides 1, 2, 3, 4: products by hand.
TEST(LinearSystem3, gathers_normal_equations)
{
    LinearSystem3 normal{};
    AddEquation(normal, {1.0, 2.0, 0.0}, 1.0);
    AddEquation(normal, {0.0, 1.0, 3.0}, 2.0);
    AddEquation(normal, {2.0, 0.0, 1.0}, 3.0);
    AddEquation(normal, {1.0, 1.0, 1.0}, 4.0);
    ExpectVec(normal.column0, {6.0, 3.0, 3.0});
    ExpectVec(normal.column1, {3.0, 6.0, 4.0});
    ExpectVec(normal.column2, {3.0, 4.0, 11.0});
    ExpectVec(normal.right, {11.0, 8.0, 13.0});
    // 6 * (66 - 16) - 3 * (33 - 12) + 3 * (12 - 18).
    EXPECT_EQ(Determinant(normal), 219.0);
}

// 60 times the Hilbert matrix: 60^3 / 2160. With right sides 110, 65, 47 the solution is 1, 1, 1.
TEST(LinearSystem3, scaled_hilbert_matrix)
{
    const LinearSystem3 system = {
        {60.0, 30.0, 20.0}, {30.0, 20.0, 15.0}, {20.0, 15.0, 12.0}, {110.0, 65.0, 47.0}};
    EXPECT_EQ(Determinant(system), 100.0);
    ExpectVec(CramersRule(system, 100.0), {1.0, 1.0, 1.0});
}

// The parabola nearest to heights 0, 5, 1, 4, 0 at -2..2: by symmetric sums (5, 10, 34; 10, -1, 9) its
// coefficients satisfy 5 a + 10 c = 10, 10 b = -1, 10 a + 34 c = 9.
TEST(LinearSystem3, fits_a_parabola)
{
    LinearSystem3 normal{};
    const std::array<double, 5> heights = {0.0, 5.0, 1.0, 4.0, 0.0};
    for (std::size_t i = 0; i < heights.size(); ++i) {
        const double x = static_cast<double>(i) - 2.0;
        AddEquation(normal, {1.0, x, x * x}, heights[i]);
    }
    ExpectVec(normal.column0, {5.0, 0.0, 10.0});
    ExpectVec(normal.column2, {10.0, 0.0, 34.0});
    ExpectVec(normal.right, {10.0, -1.0, 9.0});
    const double determinant = Determinant(normal);
    EXPECT_EQ(determinant, 10.0 * (5.0 * 34.0 - 10.0 * 10.0));
    // c = (5 * 9 - 10 * 10) / 70, a = 2 - 2 c.
    const Vec3 parabola = CramersRule(normal, determinant);
    EXPECT_DOUBLE_EQ(parabola.x, 25.0 / 7.0);
    EXPECT_DOUBLE_EQ(parabola.y, -0.1);
    EXPECT_DOUBLE_EQ(parabola.z, -11.0 / 14.0);
}

// Any matrix, symmetric or not.
TEST(LinearSystem3, whole_solutions_are_found_exactly)
{
    SeededRandom random(620102);
    int solved = 0;
    for (int round = 0; round < 500; ++round) {
        Whole3 m{};
        for (auto& row : m) {
            for (int& element : row) element = random.Whole(-9, 9);
        }
        const std::array<int, 3> x = {random.Whole(-9, 9), random.Whole(-9, 9), random.Whole(-9, 9)};
        const auto right = [&](std::size_t i) {
            return static_cast<double>(m[i][0] * x[0] + m[i][1] * x[1] + m[i][2] * x[2]);
        };
        const LinearSystem3 system = {
            ColumnOf(m, 0), ColumnOf(m, 1), ColumnOf(m, 2), {right(0), right(1), right(2)}};
        const double determinant = Determinant(system);
        EXPECT_EQ(determinant, DeterminantOf(m)) << "round " << round;
        if (determinant == 0.0) continue;
        ++solved;
        const Vec3 solution = CramersRule(system, determinant);
        EXPECT_EQ(solution.x, x[0]) << "round " << round;
        EXPECT_EQ(solution.y, x[1]) << "round " << round;
        EXPECT_EQ(solution.z, x[2]) << "round " << round;
    }
    EXPECT_GT(solved, 450);
}

TEST(LinearSystem3, equations_in_one_plane_have_determinant_0)
{
    LinearSystem3 normal{};
    AddEquation(normal, {1.0, 2.0, 3.0}, 1.0);
    AddEquation(normal, {4.0, 5.0, 6.0}, 2.0);
    AddEquation(normal, {7.0, 8.0, 9.0}, 3.0);
    EXPECT_EQ(Determinant(normal), 0.0);
    EXPECT_EQ(Determinant(LinearSystem3{}), 0.0);
}

// The limit is the caller's: a determinant of 0 divides as it is.
TEST(CramersRule, does_not_guard_the_determinant)
{
    const Solution2 two = CramersRule(LinearSystem2{0.0, 1.0, 1.0, 1.0, 2.0}, 0.0);
    EXPECT_TRUE(std::isinf(two.x0));
    EXPECT_TRUE(std::isinf(two.x1));
    const LinearSystem3 singular = {{1.0, 1.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {1.0, 2.0, 0.0}};
    const Vec3 three = CramersRule(singular, 0.0);
    EXPECT_TRUE(std::isinf(three.x));
    EXPECT_TRUE(std::isinf(three.y));
    EXPECT_TRUE(std::isnan(three.z));
}

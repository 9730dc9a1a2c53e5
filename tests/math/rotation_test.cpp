#include "math/rotation.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

#include "math/angles.h"
#include "support/math_compare.h"
#include "support/plain_matrix.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::Mat4;
using test::operator*;
using test::ExpectNear;
using test::JustAbove;
using test::JustBelow;
using test::kNan;
using test::TurnX;
using test::TurnY;
using test::TurnZ;

// The rotations of plain matrices.
RotMatrix Packed(const Mat4& m)
{
    return {m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]};
}

Mat4 RandomRows(test::SeededRandom& random)
{
    Mat4 m{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) m[i][j] = random.Uniform(-5.0, 5.0);
    }
    return m;
}

// A matrix with the given first column and remaining row 0/1 elements of column 1, for the cases where
// only those are looked at.
RotMatrix WithFirstColumn(double r00, double r10, double r20, double r01, double r11)
{
    return {r00, r01, 0.25, r10, r11, 0.5, r20, 0.125, 0.75};
}

TEST(RotMatrix, is_nine_doubles_row_by_row)
{
    static_assert(sizeof(RotMatrix) == 9 * sizeof(double));
    const RotMatrix r{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
    std::array<double, 9> elements{};
    std::memcpy(elements.data(), &r, sizeof r);
    for (std::size_t k = 0; k < 9; ++k) EXPECT_EQ(elements[k], static_cast<double>(k));
    EXPECT_EQ(r.r12, 5.0);
    EXPECT_EQ(r.r20, 6.0);
}

TEST(RotMatrix, columns_are_the_axes)
{
    const RotMatrix r{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
    ExpectNear(AxisX(r), {0.0, 3.0, 6.0}, 0.0);
    ExpectNear(AxisY(r), {1.0, 4.0, 7.0}, 0.0);
    ExpectNear(AxisZ(r), {2.0, 5.0, 8.0}, 0.0);
    ExpectNear(FromAxes(AxisX(r), AxisY(r), AxisZ(r)), r, 0.0);
    ExpectNear(Transpose(r), {0.0, 3.0, 6.0, 1.0, 4.0, 7.0, 2.0, 5.0, 8.0}, 0.0);
}

TEST(RotMultiply, is_the_product_of_the_rows_and_columns)
{
    test::SeededRandom random(41);
    for (int i = 0; i < 100; ++i) {
        const Mat4 p = RandomRows(random);
        const Mat4 q = RandomRows(random);
        SCOPED_TRACE(i);
        ExpectNear(RotMultiply(Packed(p), Packed(q)), Packed(p * q), 1e-13);
    }
}

TEST(Rotate, applies_rows_and_rotate_back_applies_columns)
{
    const RotMatrix r{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
    ExpectNear(Rotate(r, {1.0, 10.0, 100.0}), {210.0, 543.0, 876.0}, 0.0);
    ExpectNear(RotateBack(r, {1.0, 10.0, 100.0}), {630.0, 741.0, 852.0}, 0.0);
}

TEST(EulerToRotMatrix, of_zero_is_exactly_the_identity)
{
    ExpectNear(EulerToRotMatrix(0.0, 0.0, 0.0), kIdentityRotation, 0.0);
}

TEST(EulerToRotMatrix, turns_about_x_then_y_then_z)
{
    test::SeededRandom random(42);
    for (int i = 0; i < 500; ++i) {
        const double a = random.Uniform(-7.0, 7.0);
        const double b = random.Uniform(-7.0, 7.0);
        const double c = random.Uniform(-7.0, 7.0);
        SCOPED_TRACE(::testing::Message() << "a " << a << " b " << b << " c " << c);
        ExpectNear(EulerToRotMatrix(a, b, c), Packed(TurnZ(a) * TurnY(b) * TurnX(c)), 1e-15);
    }
}

TEST(EulerToRotMatrix, of_quarter_turns_moves_the_axes)
{
    // About X: y goes to z. About Y: z goes to x. About Z: x goes to y.
    ExpectNear(Rotate(EulerToRotMatrix(0.0, 0.0, kHalfPi), {0.0, 1.0, 0.0}), {0.0, 0.0, 1.0}, 1e-16);
    ExpectNear(Rotate(EulerToRotMatrix(0.0, kHalfPi, 0.0), {0.0, 0.0, 1.0}), {1.0, 0.0, 0.0}, 1e-16);
    ExpectNear(Rotate(EulerToRotMatrix(kHalfPi, 0.0, 0.0), {1.0, 0.0, 0.0}), {0.0, 1.0, 0.0}, 1e-16);
}

TEST(EulerToRotMatrix, of_nan_angle_fills_what_depends_on_it)
{
    const RotMatrix r = EulerToRotMatrix(kNan, 0.25, 0.5);
    EXPECT_TRUE(std::isnan(r.r00));
    EXPECT_TRUE(std::isnan(r.r12));
    EXPECT_EQ(r.r20, -std::sin(0.25));
}

TEST(RotMatrixToEuler, returns_the_angles_of_a_regular_rotation)
{
    test::SeededRandom random(43);
    for (int i = 0; i < 500; ++i) {
        const double a = random.Uniform(-kPi, kPi);
        const double b = random.Uniform(-1.5, 1.5);
        const double c = random.Uniform(-kPi, kPi);
        SCOPED_TRACE(::testing::Message() << "a " << a << " b " << b << " c " << c);
        const RotMatrix r = Packed(TurnZ(a) * TurnY(b) * TurnX(c));
        ExpectNear(RotMatrixToEuler(r), {a, b, c}, 1e-14);
        ExpectNear(RotMatrixToEulerExact(r), {a, b, c}, 1e-14);
    }
}

TEST(RotMatrixToEuler, of_b_beyond_a_quarter_turn_is_the_equivalent_triple)
{
    // (a, b, c) and (a + pi, pi - b, c + pi) are the same rotation.
    const RotMatrix r = EulerToRotMatrix(0.5, 2.0, -0.25);
    ExpectNear(RotMatrixToEuler(r), {0.5 - kPi, kPi - 2.0, kPi - 0.25}, 1e-14);
}

TEST(RotMatrixToEuler, of_half_turns_is_plus_pi)
{
    const RotMatrix aboutZ{-1.0, 0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0, 1.0};
    EXPECT_EQ(RotMatrixToEuler(aboutZ).a, kPi);
    const RotMatrix aboutX{1.0, 0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0, -1.0};
    EXPECT_EQ(RotMatrixToEuler(aboutX).c, kPi);
}

TEST(RotMatrixToEuler, takes_b_from_the_length_of_the_first_column)
{
    // 3, 4, -12: not normalised, so that the arc tangent against 5 differs from the arc sine of 12.
    const RotMatrix r{3.0, 0.0, 0.0, 4.0, 1.0, 0.0, -12.0, 6.0, 7.0};
    const EulerAngles expected{std::atan2(4.0, 3.0), std::atan2(12.0, 5.0), std::atan2(6.0, 7.0)};
    ExpectNear(RotMatrixToEuler(r), expected, 1e-15);
    ExpectNear(RotMatrixToEulerExact(r), expected, 1e-15);
}

TEST(RotMatrixToEuler, of_b_a_quarter_turn_gives_all_of_the_rest_to_c)
{
    // R = Rz(0.3) Ry(pi/2) Rx(0.2) depends on 0.2 - 0.3 only.
    ExpectNear(RotMatrixToEuler(EulerToRotMatrix(0.3, kHalfPi, 0.2)), {0.0, kHalfPi, -0.1}, 1e-15);
    // With b = -pi/2 on the sum 0.2 + 0.3 only.
    ExpectNear(RotMatrixToEuler(EulerToRotMatrix(0.3, -kHalfPi, 0.2)), {0.0, -kHalfPi, 0.5}, 1e-15);
}

TEST(RotMatrixToEuler, gimbal_sign_follows_r20)
{
    ExpectNear(RotMatrixToEuler(WithFirstColumn(0.0, 0.0, -1.0, 0.6, 0.8)),
               {0.0, kHalfPi, std::atan2(0.6, 0.8)}, 0.0);
    ExpectNear(RotMatrixToEuler(WithFirstColumn(0.0, 0.0, 1.0, 0.6, 0.8)),
               {0.0, -kHalfPi, std::atan2(-0.6, 0.8)}, 0.0);
}

TEST(RotMatrixToEuler, gimbal_limit_is_strict_in_both_elements)
{
    const double in = JustBelow(1e-5);
    const EulerAngles gimbal{0.0, kHalfPi, std::atan2(0.6, 0.8)};
    for (const double r00 : {0.0, 9e-6, -9e-6, in, -in}) {
        for (const double r10 : {0.0, 9e-6, -9e-6, in, -in}) {
            SCOPED_TRACE(::testing::Message() << r00 << ' ' << r10);
            ExpectNear(RotMatrixToEuler(WithFirstColumn(r00, r10, -1.0, 0.6, 0.8)), gimbal, 0.0);
        }
    }
    for (const double out : {1e-5, JustAbove(1e-5), -1e-5}) {
        SCOPED_TRACE(out);
        // Regular: a follows the first column, c the last row (0.125, 0.75).
        ExpectNear(RotMatrixToEuler(WithFirstColumn(out, 0.0, -1.0, 0.6, 0.8)),
                   {std::atan2(0.0, out), std::atan2(1.0, 1e-5), std::atan2(0.125, 0.75)}, 1e-15);
        ExpectNear(RotMatrixToEuler(WithFirstColumn(0.0, out, -1.0, 0.6, 0.8)),
                   {std::atan2(out, 0.0), std::atan2(1.0, 1e-5), std::atan2(0.125, 0.75)}, 1e-15);
    }
}

TEST(RotMatrixToEuler, gimbal_with_r20_not_close_to_one_counts_as_minus_one)
{
    // No double lies exactly 1e-5 from 1: 0.99999 is the last one inside, 1.00001 the first one outside.
    ASSERT_LT(1.0 - 0.99999, 1e-5);
    ASSERT_GT(1.0 - JustBelow(0.99999), 1e-5);
    ASSERT_GT(1.00001 - 1.0, 1e-5);
    ASSERT_LT(JustBelow(1.00001) - 1.0, 1e-5);
    const double c = std::atan2(0.6, 0.8);
    for (const double r20 : {0.99999, 1.0, JustBelow(1.00001)}) {
        SCOPED_TRACE(r20);
        ExpectNear(RotMatrixToEuler(WithFirstColumn(0.0, 0.0, r20, 0.6, 0.8)), {0.0, -kHalfPi, -c}, 0.0);
    }
    for (const double r20 : {JustBelow(0.99999), 1.00001, 0.5, 0.0, -0.5, 7.0, kNan}) {
        SCOPED_TRACE(r20);
        ExpectNear(RotMatrixToEuler(WithFirstColumn(0.0, 0.0, r20, 0.6, 0.8)), {0.0, kHalfPi, c}, 0.0);
    }
}

TEST(RotMatrixToEuler, nan_in_the_first_column_is_not_the_gimbal_case)
{
    for (const RotMatrix& r :
         {WithFirstColumn(kNan, 0.0, -1.0, 0.6, 0.8), WithFirstColumn(0.0, kNan, -1.0, 0.6, 0.8)}) {
        for (const EulerAngles& angles : {RotMatrixToEuler(r), RotMatrixToEulerExact(r)}) {
            EXPECT_TRUE(std::isnan(angles.a));
            EXPECT_TRUE(std::isnan(angles.b));
            EXPECT_EQ(angles.c, std::atan2(0.125, 0.75));
        }
    }
}

TEST(RotMatrixToEulerExact, treats_a_small_first_column_as_regular)
{
    const RotMatrix r = WithFirstColumn(9e-6, -9e-6, -1.0, 0.6, 0.8);
    EXPECT_EQ(RotMatrixToEuler(r).a, 0.0);
    ExpectNear(RotMatrixToEulerExact(r),
               {-kPi / 4.0, std::atan2(1.0, 9e-6 * std::sqrt(2.0)), std::atan2(0.125, 0.75)}, 1e-15);
}

TEST(RotMatrixToEulerExact, gimbal_limit_is_strict_in_both_elements)
{
    constexpr double kLimit = 1.1754943508222875e-38;
    const double in = JustBelow(kLimit);
    const EulerAngles gimbal{0.0, kHalfPi, std::atan2(0.6, 0.8)};
    for (const double r00 : {0.0, in, -in}) {
        for (const double r10 : {0.0, in, -in}) {
            SCOPED_TRACE(::testing::Message() << r00 << ' ' << r10);
            ExpectNear(RotMatrixToEulerExact(WithFirstColumn(r00, r10, -1.0, 0.6, 0.8)), gimbal, 0.0);
        }
    }
    for (const double out : {kLimit, -kLimit, JustAbove(kLimit)}) {
        SCOPED_TRACE(out);
        ExpectNear(RotMatrixToEulerExact(WithFirstColumn(out, 0.0, -1.0, 0.6, 0.8)),
                   {std::atan2(0.0, out), kHalfPi, std::atan2(0.125, 0.75)}, 0.0);
        ExpectNear(RotMatrixToEulerExact(WithFirstColumn(0.0, out, -1.0, 0.6, 0.8)),
                   {std::atan2(out, 0.0), kHalfPi, std::atan2(0.125, 0.75)}, 0.0);
    }
}

TEST(RotMatrixToEulerExact, gimbal_sign_is_that_of_r20)
{
    const double c = std::atan2(0.6, 0.8);
    for (const double r20 : {1.0, 0.5, 1e-300, 3.0}) {
        SCOPED_TRACE(r20);
        ExpectNear(RotMatrixToEulerExact(WithFirstColumn(0.0, 0.0, r20, 0.6, 0.8)), {0.0, -kHalfPi, -c}, 0.0);
    }
    for (const double r20 : {0.0, -0.0, -1e-300, -0.5, -1.0, kNan}) {
        SCOPED_TRACE(r20);
        ExpectNear(RotMatrixToEulerExact(WithFirstColumn(0.0, 0.0, r20, 0.6, 0.8)), {0.0, kHalfPi, c}, 0.0);
    }
}

}  // namespace
}  // namespace kine

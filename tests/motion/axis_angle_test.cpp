// Rotation about an axis, which is used as given.
#include "motion/axis_angle.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/numbers.h"
#include "support/records.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kQuarter = 1.5707963267948966;

Vec3 RandomVector(SeededRandom& random, double reach)
{
    const double x = random.Uniform(-reach, reach);
    const double y = random.Uniform(-reach, reach);
    const double z = random.Uniform(-reach, reach);
    return {x, y, z};
}

Vec3 RandomDirection(SeededRandom& random)
{
    Vec3 v = RandomVector(random, 1.0);
    while (Norm(v) < 0.1) v = RandomVector(random, 1.0);
    return Scale(1.0 / Norm(v), v);
}

Mat4 Skew(const Vec3& w)
{
    return {{{0.0, -w.z, w.y, 0.0}, {w.z, 0.0, -w.x, 0.0}, {-w.y, w.x, 0.0, 0.0}, {0.0, 0.0, 0.0, 0.0}}};
}

}  // namespace

TEST(AxisAngleMatrix, about_a_coordinate_axis_is_the_elementary_rotation)
{
    for (const double angle : {0.0, 0.3, -1.1, 2.0, kQuarter, 3.0, -7.5}) {
        ExpectNear(AxisAngleMatrix({1.0, 0.0, 0.0}, angle), ToHom(TurnX(angle)).r, 1e-15);
        ExpectNear(AxisAngleMatrix({0.0, 1.0, 0.0}, angle), ToHom(TurnY(angle)).r, 1e-15);
        ExpectNear(AxisAngleMatrix({0.0, 0.0, 1.0}, angle), ToHom(TurnZ(angle)).r, 1e-15);
    }
}

// A third of a turn about the diagonal takes x to y, y to z and z to x.
TEST(AxisAngleMatrix, about_the_diagonal_exchanges_the_axes)
{
    const double third = 1.0 / std::sqrt(3.0);
    ExpectNear(AxisAngleMatrix({third, third, third}, 4.0 * kQuarter / 3.0),
               {0.0, 0.0, 1.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0}, 1e-15);
}

TEST(AxisAngleMatrix, negative_axis_or_angle_turns_the_other_way)
{
    const Vec3 axis{2.0 / 3.0, -1.0 / 3.0, 2.0 / 3.0};
    const RotMatrix turned = AxisAngleMatrix(axis, 0.7);
    ExpectNear(AxisAngleMatrix(axis, -0.7), Transpose(turned), 1e-16);
    ExpectNear(AxisAngleMatrix(Scale(-1.0, axis), 0.7), Transpose(turned), 1e-16);
    ExpectNear(AxisAngleMatrix(Scale(-1.0, axis), -0.7), turned, 1e-16);
}

TEST(AxisAngleMatrix, without_axis_or_angle_is_the_identity)
{
    for (const double angle : {0.0, 0.3, kQuarter, -3.0}) {
        EXPECT_TRUE(SameBits(AxisAngleMatrix({0.0, 0.0, 0.0}, angle), kIdentityRotation)) << angle;
    }
    ExpectNear(AxisAngleMatrix({3.0, -4.0, 5.0}, 0.0), kIdentityRotation, 0.0);
}

// s = v = 1: the rows as the formula gives them for two axes at once, which is no rotation.
TEST(AxisAngleMatrix, takes_an_axis_longer_than_one_as_it_is)
{
    ExpectNear(AxisAngleMatrix({1.0, 1.0, 0.0}, kQuarter), {0.0, 1.0, 1.0, 1.0, 0.0, -1.0, -1.0, 1.0, -1.0},
               1e-15);
    ExpectNear(AxisAngleMatrix({0.0, 0.0, 2.0}, kQuarter), {-3.0, -2.0, 0.0, 2.0, -3.0, 0.0, 0.0, 0.0, 1.0},
               1e-15);
    ExpectNear(AxisAngleMatrix({0.0, 3.0, 0.0}, 2.0 * kQuarter),
               {-17.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, -17.0}, 1e-14);
}

// v' = v cos + (k x v) sin + k (k . v) (1 - cos).
TEST(AxisAngleMatrix, turns_vectors_about_a_unit_axis)
{
    SeededRandom random(551);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Vec3 k = RandomDirection(random);
        const Vec3 v = RandomVector(random, 10.0);
        const double angle = random.Uniform(-7.0, 7.0);
        const RotMatrix r = AxisAngleMatrix(k, angle);
        const Vec3 turned = Scale(std::cos(angle), v) + Scale(std::sin(angle), CrossProduct(k, v)) +
                            Scale(Dot(k, v) * (1.0 - std::cos(angle)), k);
        ExpectNear(Rotate(r, v), turned, 1e-13);
        ExpectNear(Rotate(r, k), k, 1e-14);
        ExpectNear(RotMultiply(r, Transpose(r)), kIdentityRotation, 1e-14);
        EXPECT_NEAR(r.r00 + r.r11 + r.r22, 1.0 + 2.0 * std::cos(angle), 1e-14);
    }
}

// I + s K + v K^2 with the skew matrix K of the axis, a rotation or not.
TEST(AxisAngleMatrix, is_second_order_in_the_axis)
{
    SeededRandom random(552);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Vec3 w = RandomVector(random, 2.0);
        const double angle = random.Uniform(-7.0, 7.0);
        const Mat4 k = Skew(w);
        const Mat4 square = k * k;
        Mat4 expected = Identity4();
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                expected[row][column] +=
                    std::sin(angle) * k[row][column] + (1.0 - std::cos(angle)) * square[row][column];
            }
        }
        ExpectNear(AxisAngleMatrix(w, angle), ToHom(expected).r, 1e-13);
    }
}

TEST(AxisAngleMatrix, of_a_nan_angle_is_nan)
{
    const RotMatrix r = AxisAngleMatrix({0.0, 0.0, 1.0}, kNan);
    EXPECT_TRUE(std::isnan(r.r00));
    EXPECT_TRUE(std::isnan(r.r01));
    EXPECT_TRUE(std::isnan(r.r10));
    EXPECT_TRUE(std::isnan(r.r11));
}

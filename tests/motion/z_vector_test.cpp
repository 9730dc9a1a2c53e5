// The normal of a plane.
#include "motion/z_vector.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/numbers.h"
#include "support/records.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr Vec3 kZero{0.0, 0.0, 0.0};
constexpr Vec3 kX{1.0, 0.0, 0.0};
constexpr Vec3 kY{0.0, 1.0, 0.0};

// FLT_MIN, which is 2^-126.
constexpr double kSmallest = 1.1754943508222875e-38;

Vec3 Normal(const Vec3& p1, const Vec3& p2, const Vec3& p3, double length)
{
    Vec3 normal = Untouched<Vec3>();
    EXPECT_TRUE(PlaneNormal(p1, p2, p3, length, normal));
    return normal;
}

void ExpectNoPlane(const Vec3& p1, const Vec3& p2, const Vec3& p3)
{
    Vec3 normal = Untouched<Vec3>();
    EXPECT_FALSE(PlaneNormal(p1, p2, p3, 5.0, normal));
    EXPECT_TRUE(IsUntouched(normal));
}

}  // namespace

TEST(PlaneNormal, is_right_handed_in_the_order_of_the_points)
{
    ExpectNear(Normal(kZero, kX, kY, 5.0), {0.0, 0.0, 5.0}, 0.0);
    ExpectNear(Normal(kZero, kY, kX, 5.0), {0.0, 0.0, -5.0}, 0.0);
    ExpectNear(Normal(kX, kY, kZero, 5.0), {0.0, 0.0, 5.0}, 0.0);
    ExpectNear(Normal(kY, kZero, kX, 5.0), {0.0, 0.0, 5.0}, 0.0);
}

TEST(PlaneNormal, length_may_be_negative_zero_or_nan)
{
    ExpectNear(Normal(kZero, kX, kY, -2.5), {0.0, 0.0, -2.5}, 0.0);
    ExpectNear(Normal(kZero, kX, kY, 0.0), kZero, 0.0);
    EXPECT_TRUE(std::isnan(Normal(kZero, kX, kY, kNan).z));
}

// (1, 2, 2) x (2, 1, -2) = (-6, 6, -3), of length 9.
TEST(PlaneNormal, depends_on_the_directions_alone)
{
    for (const double scale : {1e-15, 1e-3, 1.0, 1e6, 1e50}) {
        const Vec3 p2 = Scale(scale, {1.0, 2.0, 2.0});
        const Vec3 p3 = Scale(scale, {2.0, 1.0, -2.0});
        ExpectNear(Normal(kZero, p2, p3, 9.0), {-6.0, 6.0, -3.0}, 1e-14);
        ExpectNear(Normal(kZero, Scale(3.0, p2), p3 + p2, 9.0), {-6.0, 6.0, -3.0}, 1e-14);
    }
}

// The third axis of a frame is the normal of its first two.
TEST(PlaneNormal, is_the_third_axis_of_a_frame)
{
    SeededRandom random(571);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Mat4 frame = MatrixOf(RandomPose(random, 1000.0));
        const double a = random.Uniform(10.0, 100.0);
        const double b = random.Uniform(10.0, 100.0);
        const double shear = random.Uniform(-50.0, 50.0);
        const double length = random.Uniform(-20.0, 20.0);
        const auto point = [&frame](double x, double y) {
            const HomMatrix m = ToHom(frame * Shift(x, y, 0.0));
            return m.t;
        };
        const Vec3 z = AxisZ(ToHom(frame).r);
        ExpectNear(Normal(point(0.0, 0.0), point(a, 0.0), point(shear, b), length), Scale(length, z), 1e-10);
    }
}

TEST(PlaneNormal, is_none_for_points_on_a_line)
{
    ExpectNoPlane(kZero, kX, {3.0, 0.0, 0.0});
    ExpectNoPlane(kZero, {1.0, 2.0, 3.0}, {-2.0, -4.0, -6.0});
    ExpectNoPlane(kX, kX, kY);
    ExpectNoPlane(kX, kY, kX);
    ExpectNoPlane(kX, kY, kY);
    ExpectNoPlane(kX, kX, kX);
    ExpectNoPlane(kZero, {1e-170, 0.0, 0.0}, {0.0, 1e-170, 0.0});  // the product is lost
}

// Sides of 1 along an axis and t along the next: the product has the length t.
TEST(PlaneNormal, begins_above_the_smallest_single)
{
    const std::array<std::array<Vec3, 2>, 3> sides = {
        {{kX, kY}, {kY, Vec3{0.0, 0.0, 1.0}}, {Vec3{0.0, 0.0, 1.0}, kX}}};
    for (const auto& [first, second] : sides) {
        for (const double sign : {1.0, -1.0}) {
            ExpectNoPlane(kZero, first, Scale(sign * JustBelow(kSmallest), second));
            ExpectNoPlane(kZero, first, Scale(sign * kSmallest, second));
            const Vec3 above = Normal(kZero, first, Scale(sign * JustAbove(kSmallest), second), 5.0);
            ExpectNear(above, Scale(sign * 5.0, CrossProduct(first, second)), 1e-14);
        }
    }
}

TEST(PlaneNormal, is_none_for_nan)
{
    for (double Vec3::*axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        for (const int place : {0, 1, 2}) {
            std::array<Vec3, 3> points = {Vec3{1.0, 2.0, 3.0}, Vec3{4.0, -5.0, 6.0}, Vec3{-7.0, 8.0, 9.5}};
            points[static_cast<std::size_t>(place)].*axis = kNan;
            ExpectNoPlane(points[0], points[1], points[2]);
        }
    }
}

TEST(PlaneNormal, may_be_written_over_a_point)
{
    Vec3 p1{1.0, 2.0, 3.0};
    const Vec3 p2{4.0, -5.0, 6.0};
    const Vec3 p3{-7.0, 8.0, 9.5};
    const Vec3 expected = Normal(p1, p2, p3, 5.0);
    EXPECT_TRUE(PlaneNormal(p1, p2, p3, 5.0, p1));
    EXPECT_TRUE(SameBits(p1, expected));
}

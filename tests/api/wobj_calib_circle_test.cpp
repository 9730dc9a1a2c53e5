// User frames from three points of a circle: centre, direction of X, the side of Z, the tilt, and the limits
// of what still is a circle.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

Point OnCircle(const Mat4& centre, double radius, double degrees)
{
    return centre * Point{radius * std::cos(InRadians(degrees)), radius * std::sin(InRadians(degrees)), 0.0};
}

// Three points of which the first lies on X of the frame.
WobjCalibRequest CirclePoints(const Mat4& centre, double radius, double second, double third)
{
    return Points(OnCircle(centre, radius, 0.0), OnCircle(centre, radius, second),
                  OnCircle(centre, radius, third));
}

WobjCalibOutcome Circle(const Point& p1, const Point& p2, const Point& p3)
{
    return Solved(kCircle, Points(p1, p2, p3));
}

void ExpectCircle(KineResult code, const Point& p1, const Point& p2, const Point& p3)
{
    ExpectCode(kCircle, Points(p1, p2, p3), code);
}

constexpr Point kAtZero = {0.0, 0.0, 0.0};

}  // namespace

// Radius 5 about (1, 2, 7), points taken anticlockwise.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, hand_made_circles_have_their_frame_and_tilt)
{
    WobjCalibOutcome result = Circle({6.0, 2.0, 7.0}, {1.0, 7.0, 7.0}, {-4.0, 2.0, 7.0});
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 7.0, 0.0, 0.0, 0.0}, 1e-12, 1e-12));
    EXPECT_NEAR(result.tilt, 0.0, 1e-14);
    // From (5, 5): X points along (4, 3).
    result = Circle({5.0, 5.0, 7.0}, {1.0, 7.0, 7.0}, {1.0, -3.0, 7.0});
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 7.0, 36.86989764584402, 0.0, 0.0}, 1e-12, 1e-12));
    EXPECT_NEAR(result.tilt, 0.0, 1e-7);
    // Clockwise: Z down, y = z cross x = (0, -1, 0).
    result = Circle({6.0, 2.0, 7.0}, {-4.0, 2.0, 7.0}, {1.0, 7.0, 7.0});
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 7.0, 0.0, 0.0, 180.0}, 1e-12, 1e-12));
    EXPECT_NEAR(result.tilt, kHalfTurn, 1e-14);
    // Standing in the XZ plane about (1, 2, 7), from +X over +Z: Z is (0, -1, 0).
    result = Circle({6.0, 2.0, 7.0}, {1.0, 2.0, 12.0}, {-4.0, 2.0, 7.0});
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 7.0, 0.0, 0.0, 90.0}, 1e-12, 1e-12));
    EXPECT_NEAR(result.tilt, kQuarterTurn, 1e-14);
    // The first point straight above the centre, then over -Y: z = (0, 0, 1) cross (0, -1, 0) = (1, 0, 0),
    // y = (0, -1, 0), B = -90, A = 0, C = atan2(-y.x, y.y) = 180.
    result = Circle({1.0, 2.0, 12.0}, {1.0, -3.0, 7.0}, {1.0, 2.0, 2.0});
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 7.0, 0.0, -90.0, 180.0}, 1e-12, 1e-12));
    EXPECT_NEAR(result.tilt, kQuarterTurn, 1e-14);
}

// The axes of length 1 form an equilateral triangle about (1, 1, 1) / 3. x = (2, -1, -1) / root 6,
// z = (1, 1, 1) / root 3, y = z cross x = (0, 1, -1) / root 2.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, of_the_unit_points_stands_on_the_space_diagonal)
{
    const WobjCalibOutcome result = Circle({1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0});
    const double third = 1.0 / 3.0;
    EXPECT_NEAR(result.frame.X, third, 1e-15);
    EXPECT_NEAR(result.frame.Y, third, 1e-15);
    EXPECT_NEAR(result.frame.Z, third, 1e-15);
    EXPECT_NEAR(result.frame.A, InDegrees(std::atan2(-1.0, 2.0)), 1e-13);
    EXPECT_NEAR(result.frame.B, InDegrees(std::asin(1.0 / std::sqrt(6.0))), 1e-13);
    // y.z = -1 / root 2, z.z = 1 / root 3.
    EXPECT_NEAR(result.frame.C, InDegrees(std::atan2(-std::sqrt(0.5), std::sqrt(third))), 1e-13);
    EXPECT_NEAR(result.tilt, std::atan(std::sqrt(2.0)), 1e-14);
}

TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, recovers_the_frame_that_the_circle_was_drawn_in)
{
    SeededRandom random(630);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Mat4 truth = MatrixOf(AnyFrame(random));
        const double radius = random.Uniform(50.0, 800.0);
        const double second = random.Uniform(40.0, 160.0);
        const double third = second + random.Uniform(40.0, 160.0);
        const WobjCalibOutcome up = Solved(kCircle, CirclePoints(truth, radius, second, third));
        EXPECT_TRUE(IsFrame(up.frame, truth, 1e-8, 1e-10));
        ExpectTilt(up.tilt, truth);
        // In the order of the first, third and second the points turn the other way.
        const Mat4 over = truth * TurnXDeg(180.0);
        const WobjCalibOutcome down = Solved(kCircle, CirclePoints(truth, radius, third, second));
        EXPECT_TRUE(IsFrame(down.frame, over, 1e-8, 1e-10));
        ExpectTilt(down.tilt, over);
    }
}

// Through the corners of any triangle: seen from the result the points lie in the XY plane, equally far from
// the origin, the first on X, and turn anticlockwise.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, goes_through_the_corners_of_any_triangle)
{
    SeededRandom random(631);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const double size = i % 2 == 0 ? 1.0 : 300.0;
        const Mat4 plane = MatrixOf(AnyFrame(random));
        WobjCalibRequest request;
        const double start = random.Uniform(0.0, 360.0);
        for (std::size_t k = 0; k < 3; ++k) {
            const double degrees = start + 120.0 * static_cast<double>(k) + random.Uniform(-40.0, 40.0);
            request.poses[k] = TaughtAt(OnCircle(plane, size * random.Uniform(0.5, 1.5), degrees));
        }
        const Mat4 seen = RigidInverse(MatrixOf(Solved(kCircle, request).frame));
        double radius = 0.0;
        double lastTurn = 0.0;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto [x, y, z] = seen * PositionOf(request.poses[k]);
            EXPECT_NEAR(z, 0.0, 1e-7);
            const double distance = std::hypot(x, y);
            const double turn = std::atan2(y, x);
            if (k == 0) {
                radius = distance;
                EXPECT_NEAR(turn, 0.0, 1e-8);
            } else {
                EXPECT_NEAR(distance, radius, 1e-7);
                const double positive = turn < 0.0 ? turn + 2.0 * kHalfTurn : turn;
                EXPECT_GT(positive, lastTurn);
                lastTurn = positive;
            }
        }
    }
}

TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, horizontal_circles_have_a_tilt_of_0_or_half_a_turn)
{
    SeededRandom random(632);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const Mat4 truth = MatrixOf({400.0, -300.0, 200.0, random.Uniform(-180.0, 180.0), 0.0, 0.0});
        const double up = Solved(kCircle, CirclePoints(truth, 70.0, 100.0, 200.0)).tilt;
        EXPECT_GE(up, 0.0);
        EXPECT_LE(up, 1e-7);
        const double down = Solved(kCircle, CirclePoints(truth, 70.0, 200.0, 100.0)).tilt;
        EXPECT_GE(down, kHalfTurn - 1e-7);
        EXPECT_LE(down, kHalfTurn);
    }
}

// Right angles at the first point, so that only the distance in question is small: squared twice the area is
// (1e-5 * 1000)^2 = 1e-4.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, points_closer_than_1e_5_to_the_first_are_0x6065)
{
    const Point far = {0.0, 1000.0, 0.0};
    for (const double side : {1.0, -1.0}) {
        const Point below = {side * JustBelow(1e-5), 0.0, 0.0};
        const Point exact = {side * 1e-5, 0.0, 0.0};
        const Point above = {side * JustAbove(1e-5), 0.0, 0.0};
        ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, below, far);
        ExpectCircle(KINE_OK, kAtZero, exact, far);
        ExpectCircle(KINE_OK, kAtZero, above, far);
        ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, far, below);
        ExpectCircle(KINE_OK, kAtZero, far, exact);
        ExpectCircle(KINE_OK, kAtZero, far, above);
    }
    // The circle stands on the line between the two others, halfway.
    const WobjCalibOutcome exact = Circle(kAtZero, {1e-5, 0.0, 0.0}, far);
    EXPECT_NEAR(exact.frame.X, 5e-6, 1e-12);
    EXPECT_NEAR(exact.frame.Y, 500.0, 1e-9);
    EXPECT_NEAR(exact.frame.Z, 0.0, 1e-12);
}

// Two points that close together are on one line with the first, so the next limit answers for them.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, second_and_third_point_closer_than_1e_5_are_0x6065)
{
    const Point second = {1.0, 0.0, 0.0};
    for (const double side : {1.0, -1.0}) {
        ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, second, {1.0, side * JustBelow(1e-5), 0.0});
        ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, second, {1.0, side * 1e-5, 0.0});
        ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, second, {1.0, side * JustAbove(1e-5), 0.0});
    }
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, second, second);
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, second, second, kAtZero);
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, second, kAtZero, second);
}

// Sides (1, 0) and (1, q) from the first point: the cosine is 1 / root (1 + q^2). q is the first number whose
// quotient, rounded as doubles are, is 0.99999 itself.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, cosine_above_0_99999_either_way_is_0x6066)
{
    const auto cosine = [](double q) {
        const double square = q * q;
        return 1.0 / std::sqrt(1.0 + square);
    };
    const double exact = FirstNumber(0.004, 0.005, [&](double q) { return cosine(q) <= 0.99999; });
    ASSERT_EQ(cosine(exact), 0.99999);
    ASSERT_GT(cosine(JustBelow(exact)), 0.99999);
    const Point second = {1.0, 0.0, 0.0};
    for (const double along : {1.0, -1.0}) {
        for (const double side : {1.0, -1.0}) {
            ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, second, {along, side * JustBelow(exact), 0.0});
            ExpectCircle(KINE_OK, kAtZero, second, {along, side * exact, 0.0});
            ExpectCircle(KINE_OK, kAtZero, second, {along, 0.0, side * JustAbove(exact)});
        }
        ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, second, {3.0 * along, 0.0, 0.0});
        ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, second, {along, 0.0, 0.00447});
        ExpectCircle(KINE_OK, kAtZero, second, {along, 0.0, 0.00448});
    }
}

// The line is judged from the first point: the same thin triangle passes from its right angle.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, thin_triangle_is_judged_from_its_first_point)
{
    const Point near = {0.0, 0.01, 0.0};
    const Point far = {100.0, 0.0, 0.0};
    ExpectCircle(KINE_OK, kAtZero, near, far);
    ExpectCircle(KINE_ERR_CALIB_COLLINEAR, far, kAtZero, near);
    ExpectCircle(KINE_OK, near, far, kAtZero);
}

// Sides (0, 0, 1) and (x, y, 0) from the first point: the determinant is x^2 + y^2. x is the first number for
// which the sum, rounded as doubles are, is 1e-5 itself.
TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, determinant_below_1e_5_is_0x6063)
{
    constexpr double kY = 0.0031;
    const auto determinant = [](double x) {
        const double ySquare = kY * kY;
        const double xSquare = x * x;
        return ySquare + xSquare;
    };
    const double exact = FirstNumber(1e-4, 1e-3, [&](double x) { return determinant(x) >= 1e-5; });
    ASSERT_EQ(determinant(exact), 1e-5);
    ASSERT_LT(determinant(JustBelow(exact)), 1e-5);
    const Point up = {0.0, 0.0, 1.0};
    for (const double side : {1.0, -1.0}) {
        ExpectCircle(KINE_ERR_CALIB_3, kAtZero, up, {side * JustBelow(exact), kY, 0.0});
        ExpectCircle(KINE_OK, kAtZero, up, {side * exact, kY, 0.0});
        ExpectCircle(KINE_OK, kAtZero, up, {side * JustAbove(exact), kY, 0.0});
        ExpectCircle(KINE_ERR_CALIB_3, kAtZero, {side * JustBelow(exact), kY, 0.0}, up);
    }
    // Halfway between the two others.
    const WobjCalibOutcome result = Circle(kAtZero, up, {exact, kY, 0.0});
    EXPECT_NEAR(result.frame.X, 0.5 * exact, 1e-12);
    EXPECT_NEAR(result.frame.Y, 0.5 * kY, 1e-12);
    EXPECT_NEAR(result.frame.Z, 0.5, 1e-12);
    // Four times the squared area: legs of 0.05 mm are too small, of 0.06 mm are not.
    ExpectCircle(KINE_ERR_CALIB_3, kAtZero, {0.05, 0.0, 0.0}, {0.0, 0.05, 0.0});
    ExpectCircle(KINE_OK, kAtZero, {0.06, 0.0, 0.0}, {0.0, 0.06, 0.0});
}

TEST(Kine_CalcExtWobj_UserPrm_Cirle3P, of_two_limits_the_first_in_order_answers)
{
    // Close and on one line; close and too small; on one line and too small; all three.
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {5e-6, 0.0, 0.0}, {1.0, 0.0, 0.0});
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {5e-6, 0.0, 0.0}, {0.0, 1.0, 0.0});
    ExpectCircle(KINE_ERR_CALIB_COLLINEAR, kAtZero, {1.0, 0.0, 0.0}, {2.0, 0.0, 0.0});
    ExpectCircle(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {1e-6, 0.0, 0.0}, {2e-6, 0.0, 0.0});
}

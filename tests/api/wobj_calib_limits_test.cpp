// The limits of the two-point and the three-point solutions, each just inside, exactly on and just outside.
// Sides along the axes make the compared numbers exact or reachable by plain double arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

// The sine between (1, 0, 0) and (1, p, 0), as well as the horizontal part of the direction (p, 0, 1).
double Slope(double p)
{
    const double square = p * p;
    return p / std::sqrt(1.0 + square);
}

// The first number whose slope, rounded as doubles are, is 1e-5 itself.
double LegOfSlope()
{
    const double leg = FirstNumber(0.9e-5, 1.1e-5, [](double p) { return Slope(p) >= 1e-5; });
    EXPECT_EQ(Slope(leg), 1e-5);
    EXPECT_LT(Slope(JustBelow(leg)), 1e-5);
    return leg;
}

void ExpectAll(KineResult code, const Point& origin, const Point& x, const Point& xy)
{
    for (const WobjCalib& call : kThreePointCalibs) ExpectCode(call, Points(origin, x, xy), code);
}

constexpr Point kAtZero = {0.0, 0.0, 0.0};

}  // namespace

TEST(wobj_calibrations, x_point_closer_than_0_01_to_the_origin_is_0x6065)
{
    SetUpPlainUnit();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Point other = Along((axis + 1) % 3, 50.0);
        for (const double side : {1.0, -1.0}) {
            ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, Along(axis, side * JustBelow(0.01)), other);
            ExpectAll(KINE_OK, kAtZero, Along(axis, side * 0.01), other);
            ExpectAll(KINE_OK, kAtZero, Along(axis, side * JustAbove(0.01)), other);
        }
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, kAtZero, Along(0, 50.0));
}

TEST(wobj_calibrations, xy_point_closer_than_0_01_to_the_origin_is_0x6065)
{
    SetUpPlainUnit();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Point other = Along((axis + 2) % 3, 50.0);
        for (const double side : {1.0, -1.0}) {
            ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, other, Along(axis, side * JustBelow(0.01)));
            ExpectAll(KINE_OK, kAtZero, other, Along(axis, side * 0.01));
            ExpectAll(KINE_OK, kAtZero, other, Along(axis, side * JustAbove(0.01)));
        }
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, Along(0, 50.0), kAtZero);
}

TEST(wobj_calibrations, x_and_xy_point_closer_than_0_01_are_0x6065)
{
    SetUpPlainUnit();
    const Point x = {1.0, 0.0, 0.0};
    for (const double side : {1.0, -1.0}) {
        ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, {1.0, side * JustBelow(0.01), 0.0});
        ExpectAll(KINE_OK, kAtZero, x, {1.0, side * 0.01, 0.0});
        ExpectAll(KINE_OK, kAtZero, x, {1.0, 0.0, side * JustAbove(0.01)});
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, x);
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, x, x, x);
}

// 6 and 8 thousandths to the sides are 0.01 in space; a tenth of a micrometre less is too close.
TEST(wobj_calibrations, distances_of_three_points_are_those_in_space)
{
    SetUpPlainUnit();
    const Point far = {-3.0, 5.0, 40.0};
    ExpectAll(KINE_OK, kAtZero, {0.006, 0.0, 0.0081}, far);
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {0.006, 0.0, 0.0079}, far);
    ExpectAll(KINE_OK, kAtZero, far, {0.0, -0.006, 0.0081});
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, far, {0.0, -0.006, 0.0079});
    ExpectAll(KINE_OK, kAtZero, far, {-3.006, 5.0081, 40.0});
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, far, {-3.006, 5.0079, 40.0});
}

TEST(wobj_calibrations, three_points_of_sine_below_1e_5_are_0x6066)
{
    SetUpPlainUnit();
    const double leg = LegOfSlope();
    for (const double length : {1.0, 100.0, -100.0}) {
        const Point x = {4.0 * length, 0.0, 0.0};
        for (const double side : {1.0, -1.0}) {
            for (const double along : {1.0, -1.0}) {
                ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, {along, side * JustBelow(leg), 0.0});
                ExpectAll(KINE_OK, kAtZero, x, {along, side * leg, 0.0});
                ExpectAll(KINE_OK, kAtZero, x, {along, 0.0, side * JustAbove(leg)});
            }
        }
        ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, {length, 0.0, 0.0});
        ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, {-length, 0.0, 0.0});
    }
    // At the limit the frame is the one of the two directions.
    const WobjCalibOutcome result = Solved(kExtUser3P, Points(kAtZero, {4.0, 0.0, 0.0}, {1.0, leg, 0.0}));
    EXPECT_TRUE(IsNearFrame(result.frame, {}, 1e-12, 1e-12));
    EXPECT_EQ(result.tilt, 0.0);
}

TEST(wobj_calibrations, three_close_points_on_one_line_are_0x6065)
{
    SetUpPlainUnit();
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {0.005, 0.0, 0.0}, {1.0, 0.0, 0.0});
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {1.0, 0.0, 0.0}, {0.005, 0.0, 0.0});
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, {1.0, 0.0, 0.0}, {1.005, 0.0, 0.0});
    ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, {1.0, 0.0, 0.0}, {1.02, 0.0, 0.0});
}

// Held and moving objects are measured after their poses were turned into another frame; lengths and sines
// stay the same there.
TEST(wobj_calibrations, limits_of_three_points_are_the_same_in_any_user_frame)
{
    SeededRandom random(660);
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (int i = 0; i < 100; ++i) {
        StoreUnit(kPlainUnit, RotaryUnit(AnyFrame(random), 0));
        const Mat4 frame = MatrixOf(AnyFrame(random));
        const auto at = [&](double x, double y) { return frame * Point{x, y, 0.0}; };
        for (const WobjCalib& call : kThreePointCalibs) {
            SCOPED_TRACE(std::string(call.name) + " " + std::to_string(i));
            const auto expect = [&, user = AnyFrame(random)](KineResult code, const Point& x,
                                                             const Point& xy) {
                WobjCalibRequest request = Points(at(0.0, 0.0), x, xy);
                request.user = user;
                ExpectCode(call, request, code);
            };
            expect(KINE_OK, at(0.01001, 0.0), at(0.0, 1.0));
            expect(KINE_ERR_CALIB_POINTS_CLOSE, at(0.00999, 0.0), at(0.0, 1.0));
            expect(KINE_OK, at(1.0, 0.0), at(0.0, 0.01001));
            expect(KINE_ERR_CALIB_POINTS_CLOSE, at(1.0, 0.0), at(0.0, 0.00999));
            expect(KINE_OK, at(100.0, 0.0), at(100.0, 0.01001));
            expect(KINE_ERR_CALIB_POINTS_CLOSE, at(100.0, 0.0), at(100.0, 0.00999));
            expect(KINE_OK, at(100.0, 0.0), at(200.0, 0.0021));
            expect(KINE_ERR_CALIB_COLLINEAR, at(100.0, 0.0), at(200.0, 0.0019));
        }
    }
}

TEST(Kine_CalcExtWobj_UserPrm_2P, points_closer_than_0_001_are_0x6065)
{
    for (const double side : {1.0, -1.0}) {
        for (const std::size_t axis : {0U, 1U}) {
            ExpectCode(kUser2P, Points(kAtZero, Along(axis, side * JustBelow(0.001))),
                       KINE_ERR_CALIB_POINTS_CLOSE);
            ExpectCode(kUser2P, Points(kAtZero, Along(axis, side * 0.001)), KINE_OK);
            ExpectCode(kUser2P, Points(kAtZero, Along(axis, side * JustAbove(0.001))), KINE_OK);
        }
    }
    ExpectCode(kUser2P, Points(kAtZero, kAtZero), KINE_ERR_CALIB_POINTS_CLOSE);
    // Height counts: 6 and 8 ten-thousandths make 0.001.
    ExpectCode(kUser2P, Points(kAtZero, {0.0006, 0.0, 0.00081}), KINE_OK);
    ExpectCode(kUser2P, Points(kAtZero, {0.0006, 0.0, 0.00079}), KINE_ERR_CALIB_POINTS_CLOSE);
    const WobjCalibOutcome exact = Solved(kUser2P, Points(kAtZero, {0.0, -0.001, 0.0}));
    EXPECT_TRUE(IsNearFrame(exact.frame, {0.0, 0.0, 0.0, -90.0, 0.0, 0.0}, 1e-12, 1e-12));
}

TEST(Kine_CalcExtWobj_UserPrm_2P, vertical_direction_is_0x6065)
{
    const double leg = LegOfSlope();
    for (const double up : {1.0, -1.0}) {
        for (const double side : {1.0, -1.0}) {
            ExpectCode(kUser2P, Points(kAtZero, {side * JustBelow(leg), 0.0, up}),
                       KINE_ERR_CALIB_POINTS_CLOSE);
            ExpectCode(kUser2P, Points(kAtZero, {side * leg, 0.0, up}), KINE_OK);
            ExpectCode(kUser2P, Points(kAtZero, {0.0, side * leg, up}), KINE_OK);
            ExpectCode(kUser2P, Points(kAtZero, {0.0, side * JustAbove(leg), up}), KINE_OK);
            ExpectCode(kUser2P, Points(kAtZero, {0.0, side * JustBelow(leg), up}),
                       KINE_ERR_CALIB_POINTS_CLOSE);
        }
        ExpectCode(kUser2P, Points(kAtZero, {0.0, 0.0, up * 500.0}), KINE_ERR_CALIB_POINTS_CLOSE);
    }
    ExpectCode(kUser2P, Points({7.0, 8.0, 9.0}, {7.0, 8.0, 10.0}), KINE_ERR_CALIB_POINTS_CLOSE);
    // 6e-6 and 8e-6 to the sides are 1e-5 together.
    ExpectCode(kUser2P, Points(kAtZero, {6e-3, 8.01e-3, 1000.0}), KINE_OK);
    ExpectCode(kUser2P, Points(kAtZero, {6e-3, 7.99e-3, 1000.0}), KINE_ERR_CALIB_POINTS_CLOSE);
}

TEST(wobj_calibrations, between_0_001_and_0_01_mm_only_the_two_point_form_answers)
{
    SetUpPlainUnit();
    for (const double distance : {0.001, 0.002, 0.005, 0.009, JustBelow(0.01)}) {
        const Point x = {distance, 0.0, 0.0};
        ExpectCode(kUser2P, Points(kAtZero, x), KINE_OK);
        ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, {0.0, 100.0, 0.0});
    }
}

// X along (0, p, 1): from a horizontal part of 1e-5 on the angles are A = 90 with B short of -90; below it
// A = 0, B = -90 and, as Y is world X, C = -90.
TEST(wobj_calibrations, angles_count_x_as_vertical_below_1e_5)
{
    SetUpPlainUnit();
    const double leg = LegOfSlope();
    const Point xy = {10.0, 0.0, 0.0};
    const KineFrame vertical = {0.0, 0.0, 0.0, 0.0, -90.0, -90.0};
    const KineFrame inclined = {0.0, 0.0, 0.0, 90.0, -90.0 + InDegrees(1e-5), 180.0};
    for (const WobjCalib& call : kThreePointCalibs) {
        SCOPED_TRACE(call.name);
        EXPECT_TRUE(
            IsNearFrame(Solved(call, Points(kAtZero, {0.0, JustBelow(leg), 1.0}, xy)).frame, vertical));
        if (call == kExtObject) continue;  // its angles are taken twice, once from rounded angles
        EXPECT_TRUE(IsNearFrame(Solved(call, Points(kAtZero, {0.0, leg, 1.0}, xy)).frame, inclined));
    }
    // Both parts of the column are compared, each alone: 9e-6 and 9e-6 are vertical, 0 and 1.1e-5 are not.
    const auto solved = [&](double x, double y) {
        return Solved(kExtUser3P, Points(kAtZero, {x, y, 1.0}, xy)).frame;
    };
    EXPECT_EQ(solved(9e-6, 9e-6).A, 0.0);
    EXPECT_EQ(solved(9e-6, 9e-6).B, -90.0);
    EXPECT_NEAR(solved(0.0, 1.1e-5).A, 90.0, 1e-9);
    EXPECT_NEAR(solved(0.0, -1.1e-5).A, -90.0, 1e-9);
    EXPECT_NEAR(solved(-1.1e-5, 0.0).A, 180.0, 1e-9);
    EXPECT_NEAR(solved(1.1e-5, 1e-6).A, InDegrees(std::atan2(1.0, 11.0)), 1e-9);
    EXPECT_NEAR(solved(1.1e-5, 1e-6).B, -90.0 + InDegrees(std::hypot(1.1e-5, 1e-6)), 1e-9);
}

// The limits of the two-point and the three-point solutions, each just inside, exactly on and just outside.
// Sides along the axes make the compared numbers exact or reachable by plain double arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/taught_points.h"

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

void ExpectCode(const WobjCalib& call, KineResult code, const TaughtRequest& request)
{
    if (code == KINE_OK) {
        EXPECT_EQ(Perform(call, request).code, KINE_OK) << call.name;
    } else {
        ExpectRefused(call, request, code);
    }
}

void ExpectAll(KineResult code, const KinePose& origin, const KinePose& x, const KinePose& xy)
{
    for (const WobjCalib& call : kThreePointCalibs) ExpectCode(call, code, Points(origin, x, xy));
}

const KinePose kAtZero = TaughtAt(0.0, 0.0, 0.0);

KinePose Along(int axis, double length)
{
    return TaughtAt(axis == 0 ? length : 0.0, axis == 1 ? length : 0.0, axis == 2 ? length : 0.0);
}

}  // namespace

TEST(wobj_three_points, x_point_closer_than_0_01_to_the_origin_is_0x6065)
{
    SetUpPlainUnit();
    for (int axis = 0; axis < 3; ++axis) {
        const KinePose other = Along((axis + 1) % 3, 50.0);
        for (const double side : {1.0, -1.0}) {
            ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, Along(axis, side * JustBelow(0.01)), other);
            ExpectAll(KINE_OK, kAtZero, Along(axis, side * 0.01), other);
            ExpectAll(KINE_OK, kAtZero, Along(axis, side * JustAbove(0.01)), other);
        }
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, kAtZero, Along(0, 50.0));
}

TEST(wobj_three_points, xy_point_closer_than_0_01_to_the_origin_is_0x6065)
{
    SetUpPlainUnit();
    for (int axis = 0; axis < 3; ++axis) {
        const KinePose other = Along((axis + 2) % 3, 50.0);
        for (const double side : {1.0, -1.0}) {
            ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, other, Along(axis, side * JustBelow(0.01)));
            ExpectAll(KINE_OK, kAtZero, other, Along(axis, side * 0.01));
            ExpectAll(KINE_OK, kAtZero, other, Along(axis, side * JustAbove(0.01)));
        }
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, Along(0, 50.0), kAtZero);
}

TEST(wobj_three_points, x_and_xy_point_closer_than_0_01_are_0x6065)
{
    SetUpPlainUnit();
    const KinePose x = TaughtAt(1.0, 0.0, 0.0);
    for (const double side : {1.0, -1.0}) {
        ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, TaughtAt(1.0, side * JustBelow(0.01), 0.0));
        ExpectAll(KINE_OK, kAtZero, x, TaughtAt(1.0, side * 0.01, 0.0));
        ExpectAll(KINE_OK, kAtZero, x, TaughtAt(1.0, 0.0, side * JustAbove(0.01)));
    }
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, x);
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, x, x, x);
}

// 6 and 8 thousandths to the sides are 0.01 in space; a tenth of a micrometre less is too close.
TEST(wobj_three_points, distances_are_those_in_space)
{
    SetUpPlainUnit();
    const KinePose far = TaughtAt(-3.0, 5.0, 40.0);
    ExpectAll(KINE_OK, kAtZero, TaughtAt(0.006, 0.0, 0.0081), far);
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, TaughtAt(0.006, 0.0, 0.0079), far);
    ExpectAll(KINE_OK, kAtZero, far, TaughtAt(0.0, -0.006, 0.0081));
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, far, TaughtAt(0.0, -0.006, 0.0079));
    ExpectAll(KINE_OK, kAtZero, far, TaughtAt(-3.006, 5.0081, 40.0));
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, far, TaughtAt(-3.006, 5.0079, 40.0));
}

TEST(wobj_three_points, sine_below_1e_5_is_0x6066)
{
    SetUpPlainUnit();
    const double leg = LegOfSlope();
    for (const double length : {1.0, 100.0, -100.0}) {
        const KinePose x = TaughtAt(4.0 * length, 0.0, 0.0);
        for (const double side : {1.0, -1.0}) {
            for (const double along : {1.0, -1.0}) {
                ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, TaughtAt(along, side * JustBelow(leg), 0.0));
                ExpectAll(KINE_OK, kAtZero, x, TaughtAt(along, side * leg, 0.0));
                ExpectAll(KINE_OK, kAtZero, x, TaughtAt(along, 0.0, side * JustAbove(leg)));
            }
        }
        ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, TaughtAt(length, 0.0, 0.0));
        ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, x, TaughtAt(-length, 0.0, 0.0));
    }
    // At the limit the frame is the one of the two directions.
    const WobjOutcome result =
        Calibrated(kExtUser3P, Points(kAtZero, TaughtAt(4.0, 0.0, 0.0), TaughtAt(1.0, leg, 0.0)));
    ExpectFrameUpToTurns(result.frame, {}, 1e-12);
    EXPECT_EQ(result.tilt, 0.0);
}

TEST(wobj_three_points, close_points_on_one_line_are_0x6065)
{
    SetUpPlainUnit();
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, TaughtAt(0.005, 0.0, 0.0), TaughtAt(1.0, 0.0, 0.0));
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, TaughtAt(1.0, 0.0, 0.0), TaughtAt(0.005, 0.0, 0.0));
    ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, TaughtAt(1.0, 0.0, 0.0), TaughtAt(1.005, 0.0, 0.0));
    ExpectAll(KINE_ERR_CALIB_COLLINEAR, kAtZero, TaughtAt(1.0, 0.0, 0.0), TaughtAt(1.02, 0.0, 0.0));
}

// Held and moving objects are measured after their poses were turned into another frame; lengths and sines
// stay the same there.
TEST(wobj_three_points, limits_are_the_same_in_any_user_frame)
{
    SeededRandom random(660);
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (int i = 0; i < 100; ++i) {
        StoreUnit(kPlainUnit, RotaryUnit(AnyFrame(random), 0));
        const Mat4 frame = MatrixOf(AnyFrame(random));
        const auto at = [&](double x, double y) { return TaughtIn(frame, x, y, 0.0); };
        for (const WobjCalib& call : kThreePointCalibs) {
            SCOPED_TRACE(std::string(call.name) + " " + std::to_string(i));
            const auto expect = [&, user = AnyFrame(random)](KineResult code, const KinePose& x,
                                                             const KinePose& xy) {
                TaughtRequest request = Points(at(0.0, 0.0), x, xy);
                request.user = user;
                ExpectCode(call, code, request);
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
        for (const int axis : {0, 1}) {
            ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE,
                       Points(kAtZero, Along(axis, side * JustBelow(0.001))));
            ExpectCode(kUser2P, KINE_OK, Points(kAtZero, Along(axis, side * 0.001)));
            ExpectCode(kUser2P, KINE_OK, Points(kAtZero, Along(axis, side * JustAbove(0.001))));
        }
    }
    ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE, Points(kAtZero, kAtZero));
    // Height counts: 6 and 8 ten-thousandths make 0.001.
    ExpectCode(kUser2P, KINE_OK, Points(kAtZero, TaughtAt(0.0006, 0.0, 0.00081)));
    ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE, Points(kAtZero, TaughtAt(0.0006, 0.0, 0.00079)));
    const WobjOutcome exact = Calibrated(kUser2P, Points(kAtZero, TaughtAt(0.0, -0.001, 0.0)));
    ExpectFrameUpToTurns(exact.frame, {0.0, 0.0, 0.0, -90.0, 0.0, 0.0}, 1e-12);
}

TEST(Kine_CalcExtWobj_UserPrm_2P, vertical_direction_is_0x6065)
{
    const double leg = LegOfSlope();
    for (const double up : {1.0, -1.0}) {
        for (const double side : {1.0, -1.0}) {
            ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE,
                       Points(kAtZero, TaughtAt(side * JustBelow(leg), 0.0, up)));
            ExpectCode(kUser2P, KINE_OK, Points(kAtZero, TaughtAt(side * leg, 0.0, up)));
            ExpectCode(kUser2P, KINE_OK, Points(kAtZero, TaughtAt(0.0, side * leg, up)));
            ExpectCode(kUser2P, KINE_OK, Points(kAtZero, TaughtAt(0.0, side * JustAbove(leg), up)));
            ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE,
                       Points(kAtZero, TaughtAt(0.0, side * JustBelow(leg), up)));
        }
        ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE, Points(kAtZero, TaughtAt(0.0, 0.0, up * 500.0)));
    }
    ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE,
               Points(TaughtAt(7.0, 8.0, 9.0), TaughtAt(7.0, 8.0, 10.0)));
    // 6e-6 and 8e-6 to the sides are 1e-5 together.
    ExpectCode(kUser2P, KINE_OK, Points(kAtZero, TaughtAt(6e-3, 8.01e-3, 1000.0)));
    ExpectCode(kUser2P, KINE_ERR_CALIB_POINTS_CLOSE, Points(kAtZero, TaughtAt(6e-3, 7.99e-3, 1000.0)));
}

TEST(wobj_two_and_three_points, between_0_001_and_0_01_mm_only_the_two_point_form_answers)
{
    SetUpPlainUnit();
    for (const double distance : {0.001, 0.002, 0.005, 0.009, JustBelow(0.01)}) {
        const KinePose x = TaughtAt(distance, 0.0, 0.0);
        ExpectCode(kUser2P, KINE_OK, Points(kAtZero, x));
        ExpectAll(KINE_ERR_CALIB_POINTS_CLOSE, kAtZero, x, TaughtAt(0.0, 100.0, 0.0));
    }
}

// X along (0, p, 1): from a horizontal part of 1e-5 on the angles are A = 90 with B short of -90; below it
// A = 0, B = -90 and, as Y is world X, C = -90.
TEST(wobj_angles, count_x_as_vertical_below_1e_5)
{
    SetUpPlainUnit();
    const double leg = LegOfSlope();
    const KinePose xy = TaughtAt(10.0, 0.0, 0.0);
    const KineFrame vertical = {0.0, 0.0, 0.0, 0.0, -90.0, -90.0};
    const KineFrame inclined = {0.0, 0.0, 0.0, 90.0, -90.0 + InDegrees(1e-5), 180.0};
    for (const WobjCalib& call : kThreePointCalibs) {
        SCOPED_TRACE(call.name);
        ExpectFrameUpToTurns(Calibrated(call, Points(kAtZero, TaughtAt(0.0, JustBelow(leg), 1.0), xy)).frame,
                             vertical, 1e-9);
        if (call == kExtObject) continue;  // its angles are taken twice, once from rounded angles
        ExpectFrameUpToTurns(Calibrated(call, Points(kAtZero, TaughtAt(0.0, leg, 1.0), xy)).frame, inclined,
                             1e-9);
    }
    // Both parts of the column are compared, each alone: 9e-6 and 9e-6 are vertical, 0 and 1.1e-5 are not.
    const auto solved = [&](double x, double y) {
        return Calibrated(kExtUser3P, Points(kAtZero, TaughtAt(x, y, 1.0), xy)).frame;
    };
    EXPECT_EQ(solved(9e-6, 9e-6).A, 0.0);
    EXPECT_EQ(solved(9e-6, 9e-6).B, -90.0);
    EXPECT_NEAR(solved(0.0, 1.1e-5).A, 90.0, 1e-9);
    EXPECT_NEAR(solved(0.0, -1.1e-5).A, -90.0, 1e-9);
    EXPECT_NEAR(solved(-1.1e-5, 0.0).A, 180.0, 1e-9);
    EXPECT_NEAR(solved(1.1e-5, 1e-6).A, InDegrees(std::atan2(1.0, 11.0)), 1e-9);
    EXPECT_NEAR(solved(1.1e-5, 1e-6).B, -90.0 + InDegrees(std::hypot(1.1e-5, 1e-6)), 1e-9);
}

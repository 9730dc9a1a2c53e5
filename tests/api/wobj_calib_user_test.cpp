// User frames from two and from three taught points: where they stand, what turns them over, and the tilt.
//
// Expected frames come from the columns x, y, z of the rotation, worked out by hand, or are the frames that
// the points were taken from.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

const std::vector<WobjCalib> kUserCalibs = {kExtUser3P, kGripUser3P};

// The directions from the origin to the X point and to the XY point, the angles of the frame and its tilt.
struct HandCase
{
    const char* name;
    Point x, xy;
    KineFrame angles;  // at the origin
    double tilt;
};

const std::vector<HandCase> kHandCases = {
    {"on the axes", {10, 0, 0}, {0, 10, 0}, {0, 0, 0, 0, 0, 0}, 0.0},
    {"XY point behind the origin", {10, 0, 0}, {-30, 7, 0}, {0, 0, 0, 0, 0, 0}, 0.0},
    {"turned by 90", {0, 10, 0}, {-10, 3, 0}, {0, 0, 0, 90, 0, 0}, 0.0},
    {"turned by 180", {-10, 0, 0}, {4, -10, 0}, {0, 0, 0, 180, 0, 0}, 0.0},
    {"turned by -45", {5, -5, 0}, {2, 1, 0}, {0, 0, 0, -45, 0, 0}, 0.0},
    {"upside down about X", {10, 0, 0}, {2, -10, 0}, {0, 0, 0, 0, 0, 180}, kHalfTurn},
    {"upside down about Y", {-10, 0, 0}, {3, 10, 0}, {0, 0, 0, 180, 0, 180}, kHalfTurn},
    {"wall seen from -Y", {10, 0, 0}, {5, 0, 10}, {0, 0, 0, 0, 0, 90}, kQuarterTurn},
    {"wall seen from +Y", {10, 0, 0}, {5, 0, -10}, {0, 0, 0, 0, 0, -90}, kQuarterTurn},
    // z = x cross y = (-1, 0, 0); only A + C is determined and A is 0.
    {"X up", {0, 0, 10}, {0, 10, 2}, {0, 0, 0, 0, -90, 0}, kQuarterTurn},
    // y = (-1, 0, 0): C = atan2(-y.x, y.y) = 90.
    {"X up, Y against world X", {0, 0, 10}, {-10, 0, 2}, {0, 0, 0, 0, -90, 90}, kQuarterTurn},
    {"X up, Y along world X", {0, 0, 10}, {10, 0, 2}, {0, 0, 0, 0, -90, -90}, kQuarterTurn},
    {"X up, Y against world Y", {0, 0, 10}, {0, -10, 2}, {0, 0, 0, 0, -90, 180}, kQuarterTurn},
    // y = (1, 0, 0): C = atan2(y.x, y.y) = 90.
    {"X down", {0, 0, -10}, {0, 10, 2}, {0, 0, 0, 0, 90, 0}, kQuarterTurn},
    {"X down, Y along world X", {0, 0, -10}, {10, 0, 2}, {0, 0, 0, 0, 90, 90}, kQuarterTurn},
    {"X down, Y at 45 degrees", {0, 0, -10}, {10, 10, 2}, {0, 0, 0, 0, 90, 45}, kQuarterTurn},
    // X falls by 3 on 4: B = atan2(3, 4).
    {"ramp along X", {4, 0, -3}, {0, 5, 0}, {0, 0, 0, 0, 36.86989764584402, 0}, 0.6435011087932844},
    // Y rises by 5 on 12: C = atan2(5, 12).
    {"ramp along Y", {1, 0, 0}, {0, 12, 5}, {0, 0, 0, 0, 0, 22.61986494804043}, 0.3947911196997615},
    // x = (1, 2, 2) / 3, y = (-2, -1, 2) / 3, z = (2, -2, 1) / 3: A = atan2(2, 1), B = -asin(2 / 3),
    // C = atan2(2, 1), tilt acos(1 / 3).
    {"thirds",
     {1, 2, 2},
     {-3, -3, 0},
     {0, 0, 0, 63.43494882292201, -41.81031489577862, 63.43494882292201},
     1.2309594173407747}};

constexpr Point kOrigin = {100.0, -50.0, 30.0};

}  // namespace

TEST(wobj_calibrations, hand_made_user_frames_have_their_angles_and_tilt)
{
    for (const WobjCalib& call : kUserCalibs) {
        for (const HandCase& hand : kHandCases) {
            SCOPED_TRACE(std::string(call.name) + ", " + hand.name);
            const WobjCalibOutcome result =
                Solved(call, Points(kOrigin, kOrigin + hand.x, kOrigin + hand.xy));
            EXPECT_TRUE(IsNearFrame(result.frame, At(kOrigin, hand.angles), 1e-12, 1e-12));
            EXPECT_NEAR(result.tilt, hand.tilt, 1e-14);
        }
    }
}

TEST(wobj_calibrations, user_frame_that_the_points_were_taken_from_is_recovered)
{
    SeededRandom random(620);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Mat4 truth = MatrixOf(AnyFrame(random));
        const WobjCalibRequest request = PointsOf(truth, random);
        for (const WobjCalib& call : kUserCalibs) {
            const WobjCalibOutcome result = Solved(call, request);
            EXPECT_TRUE(IsFrame(result.frame, truth)) << call.name;
            ExpectTilt(result.tilt, truth);
        }
    }
}

// B = +-90 with any A and C: the same rotation with A = 0.
TEST(Kine_CalcExtWobj_UserPrm_3P, with_x_vertical_answers_with_a_zero)
{
    SeededRandom random(621);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const Mat4 truth = MatrixOf({random.Uniform(-900.0, 900.0), random.Uniform(-900.0, 900.0), 250.0,
                                     random.Uniform(-180.0, 180.0), i % 2 == 0 ? 90.0 : -90.0,
                                     random.Uniform(-180.0, 180.0)});
        const WobjCalibOutcome result = Solved(kExtUser3P, PointsOf(truth, random));
        EXPECT_EQ(result.frame.A, 0.0);
        EXPECT_EQ(result.frame.B, i % 2 == 0 ? 90.0 : -90.0);
        EXPECT_TRUE(IsFrame(result.frame, truth));
        EXPECT_NEAR(result.tilt, kQuarterTurn, 1e-13);
    }
}

// Mirroring the XY point in the X axis turns the frame by 180 degrees about X.
TEST(Kine_CalcExtWobj_UserPrm_3P, xy_point_on_the_other_side_turns_z_over)
{
    SeededRandom random(622);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const Mat4 truth = MatrixOf(AnyFrame(random));
        const double x = random.Uniform(-300.0, 300.0);
        const double y = random.Uniform(50.0, 500.0);
        WobjCalibRequest request =
            Points(PositionOf(truth), truth * Point{200.0, 0.0, 0.0}, truth * Point{x, y, 0.0});
        const double tilt = Solved(kExtUser3P, request).tilt;
        request.poses[2] = TaughtAt(truth * Point{x, -y, 0.0});
        const WobjCalibOutcome turned = Solved(kExtUser3P, request);
        EXPECT_TRUE(IsFrame(turned.frame, truth * TurnXDeg(180.0)));
        EXPECT_NEAR(turned.tilt, kHalfTurn - tilt, 1e-7);
    }
}

// How far away the X point lies, and where in the half plane the XY point, changes nothing.
TEST(Kine_CalcGripWobj_UserPrm_3P, places_of_the_points_in_their_half_plane_do_not_matter)
{
    SeededRandom random(623);
    const Mat4 truth = MatrixOf({300.0, -200.0, 100.0, 25.0, -35.0, 115.0});
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(IsFrame(Solved(kGripUser3P, PointsOf(truth, random)).frame, truth));
    }
}

TEST(wobj_calibrations, origin_of_a_user_frame_comes_back_bit_for_bit)
{
    SeededRandom random(624);
    for (int i = 0; i < 50; ++i) {
        const WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
        for (const WobjCalib& call : {kUser2P, kExtUser3P, kGripUser3P}) {
            const KineFrame frame = Solved(call, request).frame;
            EXPECT_EQ(PositionOf(frame), PositionOf(request.poses[0]));
        }
    }
}

TEST(wobj_calibrations, user_frames_of_fixed_and_held_work_objects_have_identical_bits)
{
    SeededRandom random(625);
    int solved = 0;
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
        if (i % 4 == 1) request.poses[random.Below(3)].Frame = random.AnyBits<KineFrame>();
        if (i % 4 == 2) request.poses[2].Frame = request.poses[random.Below(2)].Frame;
        const WobjCalibOutcome fixed = Perform(kExtUser3P, request);
        EXPECT_TRUE(SameResult(fixed, Perform(kGripUser3P, request)));
        if (fixed.code == KINE_OK) ++solved;
    }
    EXPECT_GT(solved, 1000);
    EXPECT_LT(solved, 2000);
}

// Horizontal frames give cosines a rounding above 1, upside-down ones below -1.
TEST(Kine_CalcExtWobj_UserPrm_3P, tilt_of_nearly_horizontal_frames_is_a_number)
{
    SeededRandom random(626);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const double turn = i % 2 == 0 ? 0.0 : 180.0;
        const Mat4 truth = MatrixOf({10.0, 20.0, 30.0, random.Uniform(-180.0, 180.0),
                                     random.Uniform(-1e-7, 1e-7), turn + random.Uniform(-1e-7, 1e-7)});
        const double tilt = Solved(kExtUser3P, PointsOf(truth, random)).tilt;
        EXPECT_NEAR(tilt, InRadians(turn), 1e-7);
        EXPECT_LE(tilt, kHalfTurn);
        EXPECT_GE(tilt, 0.0);
    }
}

TEST(Kine_CalcExtWobj_UserPrm_2P, hand_made_directions_have_their_angles_and_tilt)
{
    const struct
    {
        Point x;
        KineFrame expected;
        double tilt;
    } cases[] = {{{10, 0, 0}, {1, 2, 3, 0, 0, 0}, 0.0},
                 {{0, 10, 0}, {1, 2, 3, 90, 0, 0}, 0.0},
                 {{-10, 0, 0}, {1, 2, 3, 180, 0, 0}, 0.0},
                 {{0, -10, 0}, {1, 2, 3, -90, 0, 0}, 0.0},
                 {{-5, 5, 0}, {1, 2, 3, 135, 0, 0}, 0.0},
                 {{4, 0, -3}, {1, 2, 3, 0, 36.86989764584402, 0}, 0.6435011087932844},
                 {{4, 0, 3}, {1, 2, 3, 0, -36.86989764584402, 0}, 0.6435011087932844},
                 {{0, -4, 3}, {1, 2, 3, -90, -36.86989764584402, 0}, 0.6435011087932844},
                 // (1, 2, 2): A = atan2(2, 1), B = -asin(2 / 3).
                 {{1, 2, 2}, {1, 2, 3, 63.43494882292201, -41.81031489577862, 0}, 0.7297276562269663}};
    for (const auto& hand : cases) {
        SCOPED_TRACE(::testing::Message() << hand.x[0] << ' ' << hand.x[1] << ' ' << hand.x[2]);
        const WobjCalibOutcome result =
            Solved(kUser2P, Points({1.0, 2.0, 3.0}, Point{1.0, 2.0, 3.0} + hand.x));
        EXPECT_TRUE(IsNearFrame(result.frame, hand.expected, 1e-12, 1e-12));
        EXPECT_NEAR(result.tilt, hand.tilt, 1e-14);
    }
}

// A horizontal Y and a Z that points up leave A and B only: the frame is (A, B, 0) and its tilt |B|.
TEST(Kine_CalcExtWobj_UserPrm_2P, keeps_y_horizontal_and_z_up)
{
    SeededRandom random(627);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        KineFrame truth = AnyFrame(random);
        truth.B = random.Uniform(-89.0, 89.0);
        truth.C = 0.0;
        const WobjCalibOutcome result =
            Solved(kUser2P, Points(PositionOf(MatrixOf(truth)),
                                   MatrixOf(truth) * Point{random.Uniform(50.0, 500.0), 0.0, 0.0}));
        EXPECT_TRUE(IsNearFrame(result.frame, truth));
        EXPECT_EQ(result.frame.C, 0.0);
        ExpectTilt(result.tilt, MatrixOf(truth));
        EXPECT_NEAR(result.tilt, std::fabs(InRadians(truth.B)), 1e-7);
    }
}

// Nearly vertical, 8e-6 off towards X and Y alike: far enough for a horizontal Y at 45 degrees, close enough
// for angles with A = 0. Up: C = atan2(-y.x, y.y) = 45. Down: C = atan2(y.x, y.y) = -45.
TEST(Kine_CalcExtWobj_UserPrm_2P, close_to_the_vertical_answers_with_a_zero)
{
    for (const double up : {1.0, -1.0}) {
        const WobjCalibOutcome result = Solved(kUser2P, Points({0.0, 0.0, 0.0}, {8e-3, 8e-3, up * 1000.0}));
        EXPECT_EQ(result.frame.A, 0.0);
        EXPECT_EQ(result.frame.B, -up * 90.0);
        EXPECT_NEAR(result.frame.C, up * 45.0, 1e-12);
        // The tilt is not rounded to a quarter turn: Z still rises by 8e-6 times the root of 2.
        EXPECT_NEAR(result.tilt, kQuarterTurn - 8e-6 * std::sqrt(2.0), 1e-14);
    }
}

TEST(wobj_calibrations, angles_configuration_and_external_axes_of_the_poses_do_not_matter)
{
    SeededRandom random(628);
    for (const WobjCalib& call : {kUser2P, kExtUser3P, kGripUser3P, kCircle, kExtObject, kGripObject}) {
        for (int i = 0; i < 50; ++i) {
            WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
            request.user = AnyFrame(random);
            const WobjCalibOutcome expected = Solved(call, request);
            for (KinePose& pose : request.poses) {
                KinePose other = random.AnyBits<KinePose>();
                other.Frame = pose.Frame;
                for (const auto angle : kAngles) other.Frame.*angle = random.Uniform(-180.0, 180.0);
                if (i % 5 == 0) other.Frame.B = kNan;
                pose = other;
            }
            EXPECT_TRUE(SameResult(Solved(call, request), expected)) << call.name;
        }
    }
}

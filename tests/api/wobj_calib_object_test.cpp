// Object frames of fixed and of held work objects: the frame of the points seen from the user frame, and the
// two tilts, which are measured against different frames.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

const std::vector<WobjCalib> kObjectCalibs = {kExtObject, kGripObject};

WobjCalibRequest WithUser(WobjCalibRequest request, const KineFrame& user)
{
    request.user = user;
    return request;
}

// The points (x, y, z), one along world X from it and one along world Y.
WobjCalibRequest Level(double x, double y, double z)
{
    return Points({x, y, z}, {x + 10.0, y, z}, {x + 4.0, y + 10.0, z});
}

struct HandCase
{
    const char* name;
    WobjCalibRequest request;
    KineFrame frame;
    double extTilt;
    double gripTilt;
};

const std::vector<HandCase> kHandCases = {
    // U's X is world Y: 50 mm along it and 7 mm up.
    {"user frame turned",
     WithUser(Points({100.0, 50.0, 7.0}, {100.0, 60.0, 7.0}, {90.0, 50.0, 7.0}),
              {100.0, 0.0, 0.0, 90.0, 0.0, 0.0}),
     {50.0, 0.0, 7.0, 0.0, 0.0, 0.0},
     0.0,
     0.0},
    // U's Y is world Z and U's Z is world -Y.
    {"user frame on its side",
     WithUser(Level(1.0, 2.0, 3.0), {0.0, 0.0, 0.0, 0.0, 0.0, 90.0}),
     {1.0, 3.0, -2.0, 0.0, 0.0, -90.0},
     0.0,
     kQuarterTurn},
    {"user frame upside down",
     WithUser(Level(1.0, 2.0, 3.0), {0.0, 0.0, 10.0, 0.0, 0.0, 180.0}),
     {1.0, -2.0, 7.0, 0.0, 0.0, 180.0},
     0.0,
     kHalfTurn},
    // U falls by 3 on 4 along X; so does the object, 5 mm along U's X.
    {"both on a ramp",
     WithUser(Points({4.0, 0.0, -3.0}, {8.0, 0.0, -6.0}, {4.0, 5.0, -3.0}),
              {0.0, 0.0, 0.0, 0.0, 36.86989764584402, 0.0}),
     {5.0, 0.0, 0.0, 0.0, 0.0, 0.0},
     0.6435011087932844,
     0.0},
    // Only the object lies on the ramp.
    {"object on a ramp",
     WithUser(Points({4.0, 0.0, -3.0}, {8.0, 0.0, -6.0}, {4.0, 5.0, -3.0}), {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}),
     {4.0, 0.0, -4.0, 0.0, 36.86989764584402, 0.0},
     0.6435011087932844,
     0.6435011087932844},
    // U's X is world Z, its Z is world -X: the object's X is U's -Z.
    {"user frame with X up",
     WithUser(Level(1.0, 2.0, 3.0), {0.0, 0.0, 0.0, 0.0, -90.0, 0.0}),
     {3.0, 2.0, -1.0, 0.0, 90.0, 0.0},
     0.0,
     kQuarterTurn}};

}  // namespace

TEST(wobj_calibrations, hand_made_object_frames_have_their_angles_and_their_own_tilt)
{
    for (const HandCase& hand : kHandCases) {
        SCOPED_TRACE(hand.name);
        const WobjCalibOutcome ext = Solved(kExtObject, hand.request);
        EXPECT_TRUE(IsNearFrame(ext.frame, hand.frame, 1e-11, 1e-11));
        EXPECT_NEAR(ext.tilt, hand.extTilt, 1e-7);
        const WobjCalibOutcome grip = Solved(kGripObject, hand.request);
        EXPECT_TRUE(IsNearFrame(grip.frame, hand.frame, 1e-11, 1e-11));
        EXPECT_NEAR(grip.tilt, hand.gripTilt, 1e-7);
    }
}

// The points of an object frame that lies in a user frame; the tilt of the fixed object is that of their
// product, the tilt of the held one that of the object frame alone.
TEST(wobj_calibrations, object_frame_is_recovered_in_any_user_frame)
{
    SeededRandom random(640);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const KineFrame user = AnyFrame(random);
        const Mat4 truth = MatrixOf(AnyFrame(random));
        const Mat4 placed = MatrixOf(user) * truth;
        const WobjCalibRequest request = WithUser(PointsOf(placed, random), user);
        const WobjCalibOutcome ext = Solved(kExtObject, request);
        EXPECT_TRUE(IsFrame(ext.frame, truth));
        ExpectTilt(ext.tilt, placed);
        const WobjCalibOutcome grip = Solved(kGripObject, request);
        EXPECT_TRUE(IsFrame(grip.frame, truth));
        ExpectTilt(grip.tilt, truth);
    }
}

TEST(wobj_calibrations, object_frame_is_the_user_frame_of_the_same_points_seen_from_the_given_one)
{
    SeededRandom random(641);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const KineFrame user = AnyFrame(random);
        const WobjCalibRequest request = WithUser(PointsOf(MatrixOf(AnyFrame(random)), random), user);
        const WobjCalibOutcome inWorld = Solved(kExtUser3P, request);
        const Mat4 seen = RigidInverse(MatrixOf(user)) * MatrixOf(inWorld.frame);
        const WobjCalibOutcome ext = Solved(kExtObject, request);
        EXPECT_TRUE(IsFrame(ext.frame, seen));
        EXPECT_EQ(ext.tilt, inWorld.tilt);
        EXPECT_TRUE(IsFrame(Solved(kGripObject, request).frame, seen));
    }
}

TEST(wobj_calibrations, object_frame_in_a_user_frame_of_zeros_is_the_user_frame_of_the_points)
{
    SeededRandom random(642);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
        const WobjCalibOutcome expected = Solved(kExtUser3P, request);
        const WobjCalibOutcome ext = Solved(kExtObject, request);
        EXPECT_TRUE(IsNearFrame(ext.frame, expected.frame));
        EXPECT_EQ(ext.tilt, expected.tilt);
        // The points are shifted by zeros and turned by the identity.
        EXPECT_TRUE(SameResult(Solved(kGripObject, request), expected));
    }
}

TEST(wobj_calibrations, object_points_taken_from_the_user_frame_give_zeros)
{
    SeededRandom random(643);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const KineFrame user = AnyFrame(random);
        const WobjCalibRequest request = WithUser(PointsOf(MatrixOf(user), random), user);
        for (const WobjCalib& call : kObjectCalibs) {
            EXPECT_TRUE(IsNearFrame(Solved(call, request).frame, {}));
        }
        ExpectTilt(Solved(kExtObject, request).tilt, MatrixOf(user));
        EXPECT_NEAR(Solved(kGripObject, request).tilt, 0.0, 1e-7);
    }
}

TEST(wobj_calibrations, object_frame_with_x_along_z_of_the_user_frame_answers_with_a_zero)
{
    SeededRandom random(644);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const KineFrame user = AnyFrame(random);
        const double b = i % 2 == 0 ? 90.0 : -90.0;
        const Mat4 truth =
            MatrixOf({5.0, 6.0, 7.0, random.Uniform(-180.0, 180.0), b, random.Uniform(-180.0, 180.0)});
        const WobjCalibRequest request = WithUser(PointsOf(MatrixOf(user) * truth, random), user);
        for (const WobjCalib& call : kObjectCalibs) {
            const KineFrame frame = Solved(call, request).frame;
            EXPECT_EQ(frame.A, 0.0) << call.name;
            EXPECT_EQ(frame.B, b) << call.name;
            EXPECT_TRUE(IsFrame(frame, truth)) << call.name;
        }
    }
}

// The frame of the points goes through its angles for a fixed object, where an X axis within 1e-5 of the
// vertical counts as vertical. For a held object it never stands in the frame of the poses. X rises by 1000
// and moves 9e-3 along world X; the user frame has X up and Z against world X.
TEST(wobj_calibrations, x_within_1e_5_of_the_vertical_is_straightened_for_fixed_objects_only)
{
    const WobjCalibRequest request = WithUser(Points({0.0, 0.0, 0.0}, {9e-3, 0.0, 1000.0}, {0.0, 10.0, 0.0}),
                                              {0.0, 0.0, 0.0, 0.0, -90.0, 0.0});
    EXPECT_NEAR(Solved(kExtObject, request).frame.B, 0.0, 1e-13);
    EXPECT_NEAR(Solved(kGripObject, request).frame.B, InDegrees(9e-6), 1e-12);
    // Straightening leaves the tilt, which is that of the points.
    EXPECT_NEAR(Solved(kExtObject, request).tilt, kQuarterTurn - 9e-6, 1e-14);
    EXPECT_NEAR(Solved(kGripObject, request).tilt, 9e-6, 1e-10);
}

TEST(wobj_calibrations, angles_of_the_user_frame_may_have_any_size)
{
    const struct
    {
        double given;
        double same;
    } turns[] = {{370.0, 10.0},  {-350.0, 10.0},   {181.0, -179.0},    {-180.5, 179.5},
                 {540.0, 180.0}, {10000.0, -80.0}, {3600000.25, 0.25}, {JustAbove(180.0), 180.0},
                 {-725.0, -5.0}};
    SeededRandom random(645);
    for (const WobjCalib& call : kObjectCalibs) {
        for (const auto angle : kAngles) {
            for (const auto& turn : turns) {
                SCOPED_TRACE(::testing::Message() << call.name << ' ' << turn.given);
                KineFrame user = {100.0, -200.0, 300.0, 15.0, 25.0, -35.0};
                WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
                user.*angle = turn.same;
                request.user = user;
                const WobjCalibOutcome expected = Solved(call, request);
                request.user.*angle = turn.given;
                const WobjCalibOutcome result = Solved(call, request);
                EXPECT_TRUE(IsFrame(result.frame, MatrixOf(expected.frame), 1e-6, 1e-9));
                EXPECT_NEAR(result.tilt, expected.tilt, 1e-7);
                // The frame also agrees with plain matrices, at the angle as given.
                EXPECT_TRUE(IsFrame(
                    result.frame,
                    RigidInverse(MatrixOf(request.user)) * MatrixOf(Solved(kExtUser3P, request).frame), 1e-6,
                    1e-9));
            }
        }
    }
}

// NaN and infinity in the user frame reach the result. The tilt of a fixed object does not see the user
// frame.
TEST(wobj_calibrations, user_frame_that_is_not_finite_is_passed_on)
{
    SeededRandom random(646);
    const WobjCalibRequest good = PointsOf(MatrixOf(AnyFrame(random)), random);
    const double tilt = Solved(kExtUser3P, good).tilt;
    for (const double bad : {kNan, -kNan, kInf, -kInf}) {
        for (const auto angle : kAngles) {
            WobjCalibRequest request = good;
            request.user.*angle = bad;
            const WobjCalibOutcome ext = Solved(kExtObject, request);
            for (const double value : {ext.frame.X, ext.frame.Y, ext.frame.Z, ext.frame.A, ext.frame.B}) {
                EXPECT_TRUE(IsTheNan(value));
            }
            EXPECT_EQ(ext.tilt, tilt);
            const WobjCalibOutcome grip = Solved(kGripObject, request);
            EXPECT_TRUE(IsTheNan(grip.frame.C));
            EXPECT_TRUE(IsTheNan(grip.tilt));
        }
        for (const auto place : kCoordinates) {
            WobjCalibRequest request = good;
            request.user.*place = bad;
            // The position is lost in whole or in part, the rotation is not: nothing is turned by a position.
            const WobjCalibOutcome ext = Solved(kExtObject, request);
            EXPECT_FALSE(std::isfinite(ext.frame.*place));
            EXPECT_EQ(ext.tilt, tilt);
            EXPECT_TRUE(IsNearFrame({0.0, 0.0, 0.0, ext.frame.A, ext.frame.B, ext.frame.C},
                                    {0.0, 0.0, 0.0, Solved(kExtUser3P, good).frame.A,
                                     Solved(kExtUser3P, good).frame.B, Solved(kExtUser3P, good).frame.C}));
            const WobjCalibOutcome grip = Solved(kGripObject, request);
            EXPECT_TRUE(IsTheNan(grip.frame.C));
            EXPECT_TRUE(IsTheNan(grip.tilt));
        }
    }
}

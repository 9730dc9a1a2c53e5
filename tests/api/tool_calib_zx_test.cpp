// Tool frames from an origin, a pose along Z and a pose towards X.
//
// Z is the direction to the Z point; X lies in the half plane of Z and the X point, square to Z. Expected
// orientations are put together column by column: X is the X direction less its part along Z, Y is Z x X.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "support/seeded_random.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

constexpr Point kOrigin = {100.0, -200.0, 300.0};

ToolCalibRequest Points(const Point& origin, const Point& zPoint, const Point& xPoint)
{
    return {{TaughtPose(origin), TaughtPose(zPoint), TaughtPose(xPoint)}};
}

Angles AnyAngles(SeededRandom& random)
{
    return {random.Uniform(-180.0, 180.0), random.Uniform(-85.0, 85.0), random.Uniform(-180.0, 180.0)};
}

// An origin, a step from it along Z and one towards X.
struct ThreePoints
{
    Point origin, z, x;
};

ThreePoints AnyThreePoints(SeededRandom& random)
{
    return {AnyPoint(random, 1000.0), AnyPoint(random, 300.0), AnyPoint(random, 300.0)};
}

// Calls body with every pair of a Z and an X direction among +-X, +-Y, +-Z: 24 of them.
template <class Body>
void ForAllSquareFrames(Body&& body)
{
    for (std::size_t zAxis = 0; zAxis < 3; ++zAxis) {
        for (std::size_t xAxis = 0; xAxis < 3; ++xAxis) {
            if (zAxis == xAxis) continue;
            for (const double zSign : {1.0, -1.0}) {
                for (const double xSign : {1.0, -1.0}) body(Along(zAxis, zSign), Along(xAxis, xSign));
            }
        }
    }
}

void ExpectAngles(const KineFrame& frame, const Angles& angles, double tolerance)
{
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(frame.*kAngles[i], angles[i], tolerance);
}

// The three touching poses of a good request, then three more.
ToolCalibRequest WithFrameStep(const ToolCalib& call, std::uint32_t armType, const KinePose& origin,
                               const KinePose& zPoint, const KinePose& xPoint)
{
    ToolCalibRequest request = GoodRequest(call, armType);
    request.poses[3] = origin;
    request.poses[4] = zPoint;
    request.poses[5] = xPoint;
    return request;
}

}  // namespace

TEST(Kine_CalcExtToolPrm_1PZX, finds_the_24_square_frames)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ForAllSquareFrames([](const Point& z, const Point& x) {
        // The X point is 40 mm too far along Z.
        const Point zPoint = kOrigin + Scaled(z, 250.0);
        const Point xPoint = kOrigin + Scaled(x, 80.0) + Scaled(z, 40.0);
        const KineFrame frame = Solved(kExt1PZX, Points(kOrigin, zPoint, xPoint)).frame;
        EXPECT_TRUE(IsFrame(frame, FrameAlong(kOrigin, z, x)));
        EXPECT_EQ(PositionOf(frame), kOrigin);
        // X along -+Z of the base leaves A and C undetermined: A is 0 then.
        if (x[2] == 0.0) return;
        EXPECT_EQ(frame.A, 0.0);
        EXPECT_EQ(frame.B, -90.0 * x[2]);
    });
}

TEST(Kine_CalcExtToolPrm_1PZX, named_frames_have_the_angles_worked_out_by_hand)
{
    UseArm(KINE_ARM_SIX_AXIS);
    struct Case
    {
        Point z, x;
        Angles angles;
    };
    for (const auto& [z, x, angles] : {Case{{0.0, 0.0, 1.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, 0.0}},
                                       Case{{0.0, 0.0, 1.0}, {0.0, 1.0, 0.0}, {90.0, 0.0, 0.0}},
                                       Case{{0.0, 1.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, -90.0}},
                                       Case{{1.0, 0.0, 0.0}, {0.0, 0.0, -1.0}, {0.0, 90.0, 0.0}},
                                       Case{{-1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, -90.0, 0.0}},
                                       // Z half way between Y and Z: turned back by 45 degrees about X.
                                       Case{{0.0, 1.0, 1.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, -45.0}}}) {
        const KineFrame frame = Solved(kExt1PZX, Points(kOrigin, kOrigin + z, kOrigin + x)).frame;
        ExpectAngles(frame, angles, 1e-12);
    }
}

// X within 1e-5 of -+Z of the base counts as along it. The frame is turned about Y by nearly 90 degrees.
TEST(tool_calibrations, x_nearly_upright_has_b_of_exactly_90_and_a_of_0)
{
    UseArm(KINE_ARM_SIX_AXIS);
    for (const double side : {1.0, -1.0}) {
        for (const double off : {9e-6, 1.1e-5}) {
            const KinePose origin = TaughtPose({});
            const KinePose zPoint = TaughtPose({side, 0.0, off});
            const KinePose xPoint = TaughtPose({off, 0.0, -side});
            for (const ToolCalib& call : kFrameCalibs) {
                const ToolCalibRequest request = call.touches == 0
                                                     ? ToolCalibRequest{{origin, zPoint, xPoint}}
                                                     : ZeroToolRequest(6, {origin, zPoint, xPoint});
                const KineFrame frame = Solved(call, request).frame;
                EXPECT_EQ(frame.A, 0.0);
                EXPECT_NEAR(frame.C, 0.0, 1e-10);
                if (off < 1e-5) {
                    EXPECT_EQ(frame.B, side * 90.0);
                } else {
                    // The tangent of so small an angle is the angle.
                    EXPECT_NEAR(frame.B, side * (90.0 - InDegrees(off)), 1e-10);
                }
            }
        }
    }
}

TEST(Kine_CalcExtToolPrm_1PZX, finds_the_frame_of_any_three_points)
{
    UseArm(KINE_ARM_SIX_AXIS);
    SeededRandom random(6102);
    for (int round = 0; round < 200; ++round) {
        const auto [origin, z, x] = AnyThreePoints(random);
        const KineFrame frame = Solved(kExt1PZX, Points(origin, origin + z, origin + x)).frame;
        EXPECT_TRUE(IsFrame(frame, FrameAlong(origin, z, x), 1e-9, 1e-9)) << round;
    }
}

// A four-axis arm cannot tilt: its Z is the base's, wherever the Z point was taught.
TEST(Kine_CalcExtToolPrm_1PZX, four_axis_arms_only_take_the_heading_of_x)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (const double heading : {0.0, 30.0, 90.0, 179.0, -120.0}) {
            const Point x = {50.0 * std::cos(InRadians(heading)), 50.0 * std::sin(InRadians(heading)), -17.0};
            const KineFrame frame =
                Solved(kExt1PZX, Points(kOrigin, kOrigin + Point{70.0, 20.0, -5.0}, kOrigin + x)).frame;
            EXPECT_NEAR(frame.A, heading, 1e-11);
            EXPECT_NEAR(frame.B, 0.0, 1e-12);
            EXPECT_NEAR(frame.C, 0.0, 1e-12);
        }
    }
}

TEST(Kine_CalcExtToolPrm_1PZX, unknown_arm_types_use_the_z_point)
{
    const Point zPoint = kOrigin + Point{5.0, 0.0, 0.0};
    const Point xPoint = kOrigin + Point{0.0, 5.0, 0.0};
    for (const std::uint32_t armType : {0u, 5u, 4111u, 0xFFFFFFFFu, 0x80000004u}) {
        UseArm(armType);
        EXPECT_TRUE(IsFrame(Solved(kExt1PZX, Points(kOrigin, zPoint, xPoint)).frame,
                            FrameAlong(kOrigin, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0})));
    }
}

TEST(Kine_CalcExtToolPrm_3PZX, perfect_poses_give_the_frame_of_the_tips)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const ToolCalibOutcome outcome = Solved(kExt3PZX, GoodRequest(kExt3PZX, armType));
        KineFrame expected = GoodFrame(armType);
        // Four-axis arms do not know the length of the tool: the frame lies that much lower.
        if (IsFlat(armType)) expected.Z -= kGoodTool[2];
        EXPECT_TRUE(IsFrame(outcome.frame, MatrixOf(expected)));
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
    }
}

TEST(Kine_CalcExtToolPrm_3PZX, tips_are_taken_with_the_orientation_of_each_pose)
{
    UseArm(KINE_ARM_SIX_AXIS);
    SeededRandom random(6103);
    for (int round = 0; round < 100; ++round) {
        const auto [origin, z, x] = AnyThreePoints(random);
        const ToolCalibRequest request =
            WithFrameStep(kExt3PZX, KINE_ARM_SIX_AXIS, TouchingPose(kGoodTool, origin, AnyAngles(random)),
                          TouchingPose(kGoodTool, origin + z, AnyAngles(random)),
                          TouchingPose(kGoodTool, origin + x, AnyAngles(random)));
        EXPECT_TRUE(IsFrame(Solved(kExt3PZX, request).frame, FrameAlong(origin, z, x), 1e-9, 1e-9)) << round;
    }
}

// Touching poses that solve to a tool of exactly (0, 0, 0): what is left is the frame of the positions.
TEST(Kine_CalcExtToolPrm_3PZX, with_a_zero_tool_is_the_frame_of_the_positions_bit_for_bit)
{
    SeededRandom random(6104);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 20; ++round) {
            const KinePose origin = TaughtPose(AnyPoint(random, 500.0), AnyAngles(random));
            const KinePose zPoint = TaughtPose(AnyPoint(random, 500.0), AnyAngles(random));
            const KinePose xPoint = TaughtPose(AnyPoint(random, 500.0), AnyAngles(random));
            EXPECT_TRUE(SameBits(Solved(kExt3PZX, ZeroToolRequest(armType, {origin, zPoint, xPoint})).frame,
                                 Solved(kExt1PZX, {{origin, zPoint, xPoint}}).frame));
        }
    }
}

TEST(Kine_CalcGripToolPrm_3PZX, perfect_poses_give_the_tool_frame_seen_from_the_origin_pose)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const ToolCalibRequest request = GoodRequest(kGrip3PZX, armType);
        const ToolCalibOutcome outcome = Solved(kGrip3PZX, request);
        const Mat4 flangeFromWorld = RigidInverse(RotationOf(MatrixOf(request.poses[3].Frame)));
        const Mat4 expected = Shift(kGoodTool[0], kGoodTool[1], IsFlat(armType) ? 0.0 : kGoodTool[2]) *
                              flangeFromWorld * RotationOf(MatrixOf(GoodFrame(armType)));
        EXPECT_TRUE(IsFrame(outcome.frame, expected));
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
    }
}

// Origin pose turned by 90 degrees about Z: its X axis is Y of the base, its Y axis -X of the base.
TEST(Kine_CalcGripToolPrm_3PZX, orientation_is_relative_to_the_turned_flange)
{
    const Angles turned = {90.0, 0.0, 0.0};
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        const auto frameFor = [&](const Point& z, const Point& x) {
            return Solved(kGrip3PZX,
                          WithFrameStep(kGrip3PZX, armType, TouchingPose(kGoodTool, kOrigin, turned),
                                        TouchingPose(kGoodTool, kOrigin + z, turned),
                                        TouchingPose(kGoodTool, kOrigin + x, turned)))
                .frame;
        };
        ExpectAngles(frameFor({0.0, 0.0, 20.0}, {0.0, 30.0, 0.0}), {0.0, 0.0, 0.0}, 1e-10);
        ExpectAngles(frameFor({0.0, 0.0, 20.0}, {30.0, 0.0, 0.0}), {-90.0, 0.0, 0.0}, 1e-10);
        if (IsFlat(armType)) continue;
        // Z along Y of the flange, X along its X: turned back by 90 degrees about X.
        ExpectAngles(frameFor({-20.0, 0.0, 0.0}, {0.0, 30.0, 0.0}), {0.0, 0.0, -90.0}, 1e-10);
        // Z along X of the flange, X along its -Z.
        ExpectAngles(frameFor({0.0, 20.0, 0.0}, {0.0, 0.0, -30.0}), {0.0, 90.0, 0.0}, 1e-10);
    }
}

TEST(Kine_CalcGripToolPrm_3PZX, finds_any_tool_orientation_with_poses_of_any_orientation)
{
    UseArm(KINE_ARM_SIX_AXIS);
    SeededRandom random(6105);
    for (int round = 0; round < 100; ++round) {
        const auto [at, z, x] = AnyThreePoints(random);
        const KinePose origin = TouchingPose(kGoodTool, at, AnyAngles(random));
        const ToolCalibRequest request = WithFrameStep(kGrip3PZX, KINE_ARM_SIX_AXIS, origin,
                                                       TouchingPose(kGoodTool, at + z, AnyAngles(random)),
                                                       TouchingPose(kGoodTool, at + x, AnyAngles(random)));
        // The frame at the tip, seen from the flange of the origin pose.
        const Mat4 expected = RigidInverse(MatrixOf(origin.Frame)) * FrameAlong(at, z, x);
        EXPECT_TRUE(IsFrame(Solved(kGrip3PZX, request).frame, expected, 1e-9, 1e-9)) << round;
    }
}

// A Z point 1000 m away: seen from there, X is told by a tenth of a millimetre that would be parallel to Z
// seen from the origin, and an X point near the origin is parallel to Z.
TEST(Kine_CalcGripToolPrm_3PZX, x_travel_is_measured_from_the_z_pose)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const KinePose origin = TaughtPose({});
    const KinePose zPoint = TaughtPose({0.0, 0.0, 1e6});
    const ToolCalibRequest nearZ =
        ZeroToolRequest(KINE_ARM_SIX_AXIS, {origin, zPoint, TaughtPose({0.0, 0.1, 1e6})});
    EXPECT_TRUE(IsFrame(Solved(kGrip3PZX, nearZ).frame, TurnZDeg(90.0)));
    const ToolCalibRequest nearOrigin =
        ZeroToolRequest(KINE_ARM_SIX_AXIS, {origin, zPoint, TaughtPose({0.0, 1.0, 0.0})});
    const ToolCalibOutcome outcome = Perform(kGrip3PZX, nearOrigin);
    EXPECT_EQ(outcome.code, KINE_ERR_CALIB_COLLINEAR);
    EXPECT_TRUE(IsUntouched(outcome.frame));
}

TEST(tool_calibrations, z_point_of_a_four_axis_arm_may_hold_anything_and_counts_as_the_origin_raised_by_10_mm)
{
    for (const ToolCalib& call : kFrameCalibs) {
        const std::size_t origin = call.touches;
        for (const std::uint32_t armType : kFlatArmTypes) {
            UseArm(armType);
            ToolCalibRequest request = GoodRequest(call, armType);
            // A tilted origin pose: its copy has the same orientation.
            request.poses[origin].Frame.B = 20.0;
            request.poses[origin].Frame.C = -35.0;
            request.poses[origin + 1] = request.poses[origin];
            request.poses[origin + 1].Frame.Z += 10.0;
            const ToolCalibOutcome expected = Solved(call, request);
            for (const Point& at : {Point{1.0, 2.0, 3.0}, Point{kNan, kNan, kNan}, Point{kInf, -kInf, 0.0},
                                    PositionOf(request.poses[origin])}) {
                for (const Angles& angles : {Angles{1.0, 2.0, 3.0}, Angles{kNan, kNan, kNan}}) {
                    request.poses[origin + 1] = TaughtPose(at, angles);
                    const ToolCalibOutcome outcome = Solved(call, request);
                    EXPECT_TRUE(SameResult(outcome, expected)) << call.name;
                }
            }
            request.poses[origin + 1] = TaughtPose({}, {0.0, 0.0, JustAbove(180.0)});
            ExpectRefused(call, request, KINE_ERR_POSE);
        }
    }
}

TEST(tool_calibrations, z_point_counts_on_a_six_axis_arm)
{
    UseArm(KINE_ARM_SIX_AXIS);
    for (const ToolCalib& call : kFrameCalibs) {
        ToolCalibRequest request = GoodRequest(call, KINE_ARM_SIX_AXIS);
        const KineFrame straight = Solved(call, request).frame;
        request.poses[call.touches + 1].Frame.X += 5.0;
        EXPECT_FALSE(SameBits(Solved(call, request).frame, straight)) << call.name;
    }
}

// So high up that 10 mm are lost in rounding, the raised origin is the origin.
TEST(tool_calibrations, z_point_of_a_four_axis_arm_lost_in_rounding_is_no_direction)
{
    const KinePose origin = TaughtPose({0.0, 0.0, 1e18});
    const KinePose xPoint = TaughtPose({500.0, 0.0, 1e18});
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        ExpectRefused(kExt1PZX, {{origin, {}, xPoint}}, KINE_ERR_ZERO_VECTOR);
        const ToolCalibRequest request = ZeroToolRequest(armType, {origin, {}, xPoint});
        EXPECT_EQ(Perform(kExt3PZX, request).code, KINE_ERR_ZERO_VECTOR);
        EXPECT_EQ(Perform(kGrip3PZX, request).code, KINE_ERR_CALIB_POINTS_CLOSE);
    }
}

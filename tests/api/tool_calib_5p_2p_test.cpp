// Tool points from five poses (six-axis arms) and from two headings (four-axis arms), on cases that can be
// worked out by hand.
//
// R0 .. R4 and p0 .. p4 are the rotations and positions of the poses, di = pi - p0 and t the tool point.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>

#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

constexpr Point kTool = {10.0, 20.0, 30.0};
constexpr Point kAt = {500.0, -300.0, 250.0};

// Half turns about X, Y and Z and no turn beside an unturned first pose: R0 - Ri = diag(0, 2, 2),
// diag(2, 0, 2), diag(2, 2, 0) and 0, normal equations 8 t = 2 (d2x + d3x, d1y + d3y, d1z + d2z). The steps
// are those of the tool (10, 20, 30) plus a slip, and the tips, seen from the first, are the slips. Slips
// that cancel in the normal equations (x of 2 and 3, y of 1 and 3, z of 1 and 2) leave the solution as it is.
ToolCalibRequest HalfTurns(const std::array<Point, 4>& slips)
{
    const Angles angles[] = {{0.0, 0.0, 180.0}, {0.0, 180.0, 0.0}, {180.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    const Point steps[] = {{0.0, 40.0, 60.0}, {20.0, 0.0, 60.0}, {20.0, 40.0, 0.0}, {0.0, 0.0, 0.0}};
    ToolCalibRequest request{{TaughtPose(kAt)}};
    for (std::size_t i = 0; i < 4; ++i) {
        request.poses.push_back(TaughtPose(kAt + steps[i] + slips[i], angles[i]));
    }
    return request;
}

// Two headings a quarter turn apart that touch one point: R0 - R1 = ((1, 1), (-1, 1)) in the plane, which
// takes the tool (10, 20) to the step (30, 10).
ToolCalibRequest QuarterTurn(double z0 = 0.0, double z1 = 0.0)
{
    return {{TaughtPose({400.0, 100.0, z0}), TaughtPose({430.0, 110.0, z1}, {90.0, 0.0, 0.0})}};
}

}  // namespace

TEST(Kine_CalcGripToolPrm_5P, half_turns_give_the_tool_point)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome outcome = Solved(kGrip5P, HalfTurns({}));
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTool));
    ExpectReport(outcome.report, {0.0, 0.0, 0.0});
}

TEST(Kine_CalcGripToolPrm_5P, disagreeing_poses_give_the_least_squares_point_and_a_report_of_ten_pairs)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome outcome = Solved(
        kGrip5P, HalfTurns({{{0.0, 12.0, 3.0}, {4.0, 0.0, -3.0}, {-4.0, -12.0, 0.0}, {0.0, 0.0, 12.0}}}));
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTool));
    // First with the others: sqrt(153), 5, sqrt(160), 12. Second: (4, -12, -6), (-4, -24, -3), (0, -12, 9).
    // Third: (-8, -12, 3), (-4, 0, 15). Fourth with fifth: (4, 12, 12).
    const double sum = std::sqrt(153.0) + 5.0 + std::sqrt(160.0) + 12.0 + 14.0 + std::sqrt(601.0) + 15.0 +
                       std::sqrt(217.0) + std::sqrt(241.0) + std::sqrt(304.0);
    ExpectReport(outcome.report, {std::sqrt(601.0), sum / 10.0, 5.0});
}

TEST(Kine_CalcGripToolPrm_5P, fifth_pose_alone_off_the_point_is_in_four_pairs)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome outcome = Solved(kGrip5P, HalfTurns({{{}, {}, {}, {3.0, -4.0, 12.0}}}));
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTool));
    ExpectReport(outcome.report, {13.0, 4.0 * 13.0 / 10.0, 0.0});
}

TEST(Kine_CalcGripToolPrm_5P, equal_positions_and_positions_on_one_line_are_solved)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ToolCalibRequest request = HalfTurns({});
    for (KinePose& pose : request.poses) {
        pose.Frame.X = pose.Frame.Y = pose.Frame.Z = 77.0;
    }
    const ToolCalibOutcome equal = Solved(kGrip5P, request);
    EXPECT_TRUE(IsPointFrame(equal.frame, {0.0, 0.0, 0.0}, 0.0));
    ExpectReport(equal.report, {0.0, 0.0, 0.0}, 0.0);
    // Steps along X of 8, 16, 24, 32: t.x = 2 (16 + 24) / 8, the other two 0.
    for (std::size_t i = 1; i < 5; ++i) request.poses[i].Frame.X += 8.0 * static_cast<double>(i);
    EXPECT_TRUE(IsPointFrame(Solved(kGrip5P, request).frame, {10.0, 0.0, 0.0}));
}

TEST(Kine_CalcGripToolPrm_5P, smallest_distance_reads_10000_beyond_10000_mm)
{
    UseArm(KINE_ARM_SIX_AXIS);
    // Every two of the slips are more than 10000 apart: 12000 and more.
    const std::array<Point, 4> slips = {
        {{0.0, 24000.0, 0.0}, {12000.0, 0.0, 0.0}, {-12000.0, -24000.0, 0.0}, {0.0, 0.0, 36000.0}}};
    const ToolCalibOutcome outcome = Solved(kGrip5P, HalfTurns(slips));
    EXPECT_TRUE(IsPointFrame(outcome.frame, kTool, 1e-8));
    EXPECT_EQ(outcome.report.Smallest, 10000.0);
    EXPECT_NEAR(outcome.report.Largest, std::hypot(12000.0, 48000.0), 1e-8);
    std::array<Point, 4> nearer = slips;
    nearer[1][0] = 9000.0;
    nearer[2][0] = -9000.0;
    EXPECT_NEAR(Solved(kGrip5P, HalfTurns(nearer)).report.Smallest, 9000.0, 1e-8);
}

TEST(Kine_CalcGripToolPrm_5P, equal_orientations_and_turns_about_one_axis_are_0x6060)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ToolCalibRequest request = HalfTurns({});
    for (KinePose& pose : request.poses) pose.Frame.A = pose.Frame.B = pose.Frame.C = 0.0;
    ExpectRefused(kGrip5P, request, KINE_ERR_CALIB_SINGULAR);
    for (std::size_t i = 0; i < 5; ++i) request.poses[i].Frame.A = 30.0 * static_cast<double>(i);
    ExpectRefused(kGrip5P, request, KINE_ERR_CALIB_SINGULAR);
    request.poses[4].Frame.B = 30.0;
    Solved(kGrip5P, request);
}

TEST(Kine_CalcGripToolPrm_5P, four_axis_arms_are_0x6001)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        ExpectRefused(kGrip5P, HalfTurns({}), KINE_ERR_NOT_INITIALISED);
    }
}

TEST(Kine_CalcGripToolPrm_Scara2P, quarter_turn_gives_the_tool_point)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        EXPECT_TRUE(IsPointFrame(Solved(kScara2P, QuarterTurn()).frame, {10.0, 20.0, 0.0}));
    }
}

// R0 - R1 = 2 in the plane: t is half the step.
TEST(Kine_CalcGripToolPrm_Scara2P, half_turn_gives_half_the_step)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const ToolCalibRequest request{
            {TaughtPose({400.0, 100.0, 5.0}), TaughtPose({424.0, 64.0, 5.0}, {180.0, 0.0, 0.0})}};
        EXPECT_TRUE(IsPointFrame(Solved(kScara2P, request).frame, {12.0, -18.0, 0.0}));
    }
}

TEST(Kine_CalcGripToolPrm_Scara2P, solution_is_the_same_bits_at_any_heights)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        const KineFrame level = Solved(kScara2P, QuarterTurn()).frame;
        EXPECT_TRUE(SameBits(level.Z, 0.0));
        for (const auto& [z0, z1] : {std::pair{3.0, 8.0}, {-1e300, 1e300}, {kNan, 0.0}, {kInf, kInf}}) {
            EXPECT_TRUE(SameBits(Solved(kScara2P, QuarterTurn(z0, z1)).frame, level));
        }
    }
}

TEST(Kine_CalcGripToolPrm_Scara2P, equal_headings_are_0x6060)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        ToolCalibRequest request = QuarterTurn();
        request.poses[0].Frame.A = 90.0;
        ExpectRefused(kScara2P, request, KINE_ERR_CALIB_SINGULAR);
        // +180 and -180 are one heading.
        request.poses[0].Frame.A = 180.0;
        request.poses[1].Frame.A = -180.0;
        ExpectRefused(kScara2P, request, KINE_ERR_CALIB_SINGULAR);
    }
}

TEST(Kine_CalcGripToolPrm_Scara2P, six_axis_arm_is_0x6001)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ExpectRefused(kScara2P, QuarterTurn(), KINE_ERR_NOT_INITIALISED);
}

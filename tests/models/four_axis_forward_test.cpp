// Tool point, heading and planar pose of the four-axis arms.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_geometry.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

constexpr double kMm = 1e-11;
constexpr double kRad = 1e-14;

TEST(FourAxisForward, an_arm_without_tilts_is_the_plane_formula)
{
    const NaiveArm arm;
    const FourAxisParams params = BlockOf(arm);
    SeededRandom random(21);
    for (int i = 0; i < 100; ++i) {
        const FourAngles q{random.Uniform(-7, 7), random.Uniform(-7, 7), random.Uniform(-60, 60),
                           random.Uniform(-7, 7)};
        SCOPED_TRACE(i);
        const Pose pose = ToolPoseOf(params, q, {});
        EXPECT_NEAR(pose.x, arm.l1 * std::cos(q[0]) + arm.l2 * std::cos(q[0] + q[1]), kMm);
        EXPECT_NEAR(pose.y, arm.l1 * std::sin(q[0]) + arm.l2 * std::sin(q[0] + q[1]), kMm);
        EXPECT_NEAR(pose.z, arm.z0 + arm.lead * q[2] / (2 * kHalfTurn), kMm);
        EXPECT_NEAR(std::remainder(pose.a - (q[0] + q[1] + q[3]), 2 * kHalfTurn), 0.0, kRad);
        EXPECT_LE(std::fabs(pose.a), kHalfTurn);
        EXPECT_EQ(pose.b, 0.0);
        EXPECT_EQ(pose.c, 0.0);
    }
}

TEST(FourAxisForward, one_turn_of_the_screw_lifts_by_one_lead)
{
    for (const double lead : {1e-5, 16.0, 25.0}) {
        NaiveArm arm;
        arm.lead = lead;
        const FourAxisParams params = BlockOf(arm);
        const double low = ToolPoseOf(params, {0.3, 0.4, 0.0, 0.1}, {}).z;
        const double high = ToolPoseOf(params, {0.3, 0.4, 2 * kHalfTurn, 0.1}, {}).z;
        EXPECT_EQ(low, 80.0);
        EXPECT_EQ(high, 80.0 + lead);
    }
}

TEST(FourAxisForward, tilted_arms_are_the_product_of_their_rotations)
{
    SeededRandom random(22);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        NaiveArm arm = SteepArm();
        for (double* tilt : {&arm.tiltX1, &arm.tiltX2, &arm.tiltY1, &arm.tiltY2})
            *tilt = random.Uniform(-30, 30);
        const FourAngles q{random.Uniform(-4, 4), random.Uniform(-4, 4), random.Uniform(-60, 60),
                           random.Uniform(-9, 9)};
        const Pose tool{random.Uniform(-90, 90),
                        random.Uniform(-90, 90),
                        random.Uniform(-90, 90),
                        random.Uniform(-3, 3),
                        0,
                        0};
        const Pose pose = ToolPoseOf(BlockOf(arm), q, tool);
        const auto naive = NaiveForward<double>(arm, q, tool);
        EXPECT_NEAR(pose.x, naive.tip[0], kMm);
        EXPECT_NEAR(pose.y, naive.tip[1], kMm);
        EXPECT_NEAR(pose.z, naive.tip[2], kMm);
        const double heading = std::atan2(naive.tool[1][0], naive.tool[0][0]);
        EXPECT_NEAR(std::remainder(pose.a - heading, 2 * kHalfTurn), 0.0, kRad);
        EXPECT_EQ(pose.b, 0.0);
        EXPECT_EQ(pose.c, 0.0);
    }
}

TEST(FourAxisForward, the_first_link_is_not_tilted)
{
    // Links of 400 and 1e-5 mm and no height: the elbow. Whatever tilt 1 is, it stays in the plane.
    NaiveArm arm{400.0, 1e-5, 0.0, 10.0, 30.0, 0.0, -20.0, 0.0};
    const Pose pose = ToolPoseOf(BlockOf(arm), {0.5, 0.0, 0.0, 0.0}, {});
    EXPECT_NEAR(pose.x, 400.0 * std::cos(0.5), 2e-5);
    EXPECT_NEAR(pose.y, 400.0 * std::sin(0.5), 2e-5);
    EXPECT_NEAR(pose.z, 0.0, 2e-5);
}

TEST(FourAxisForward, tilt_1_about_x_tips_the_second_link_and_the_screw)
{
    // Elbow at 90 degrees: the second link lies along Y of link 1 and goes up with a tilt of 90 about X;
    // the screw then points along -Y.
    NaiveArm arm{400.0, 300.0, 50.0, 10.0, 90.0, 0.0, 0.0, 0.0};
    const Pose pose = ToolPoseOf(BlockOf(arm), {0.0, kHalfTurn / 2, 0.0, 0.0}, {});
    EXPECT_NEAR(pose.x, 400.0, kMm);
    EXPECT_NEAR(pose.y, -50.0, kMm);
    EXPECT_NEAR(pose.z, 300.0, kMm);
}

TEST(FourAxisForward, tilt_2_about_y_tips_the_screw_only)
{
    NaiveArm arm{400.0, 300.0, 50.0, 10.0, 0.0, 0.0, 0.0, 90.0};
    const Pose pose = ToolPoseOf(BlockOf(arm), {0.0, 0.0, 0.0, 0.0}, {});
    EXPECT_NEAR(pose.x, 750.0, kMm);
    EXPECT_NEAR(pose.y, 0.0, kMm);
    EXPECT_NEAR(pose.z, 0.0, kMm);
}

TEST(FourAxisForward, tilts_act_about_x_before_y)
{
    // Ry(90) takes z to x, where Rx(90) leaves it; the other order would take z to -y and leave it there.
    NaiveArm arm{400.0, 300.0, 50.0, 10.0, 0.0, 90.0, 0.0, 90.0};
    const Pose pose = ToolPoseOf(BlockOf(arm), {0.0, 0.0, 0.0, 0.0}, {});
    EXPECT_NEAR(pose.x, 750.0, kMm);
    EXPECT_NEAR(pose.y, 0.0, kMm);
    EXPECT_NEAR(pose.z, 0.0, kMm);
}

TEST(FourAxisForward, of_the_tool_only_position_and_a_count)
{
    const FourAxisParams params = BlockOf(SteepArm());
    const FourAngles q{0.4, -0.9, 11.0, 2.0};
    const Pose plain = ToolPoseOf(params, q, {10, 20, 30, 0.5, 0.0, 0.0});
    const Pose tipped = ToolPoseOf(params, q, {10, 20, 30, 0.5, 1.1, -2.2});
    const Pose broken = ToolPoseOf(params, q, {10, 20, 30, 0.5, kNan, kNan});
    for (const Pose& other : {tipped, broken}) {
        EXPECT_EQ(plain.x, other.x);
        EXPECT_EQ(plain.y, other.y);
        EXPECT_EQ(plain.z, other.z);
        EXPECT_EQ(plain.a, other.a);
        EXPECT_EQ(other.b, 0.0);
        EXPECT_EQ(other.c, 0.0);
    }
}

TEST(FourAxisForward, planar_pose_is_the_flange_in_the_plane_with_the_forearm_heading)
{
    SeededRandom random(23);
    const NaiveArm arm = SteepArm();
    for (int i = 0; i < 50; ++i) {
        SCOPED_TRACE(i);
        const FourAngles q{random.Uniform(-4, 4), random.Uniform(-4, 4), random.Uniform(-60, 60),
                           random.Uniform(-9, 9)};
        const Pose pose = FourAxisPlanarPose(BlockOf(arm), q);
        const auto naive = NaiveForward<double>(arm, q, {});
        EXPECT_NEAR(pose.x, naive.flange[0], kMm);
        EXPECT_NEAR(pose.y, naive.flange[1], kMm);
        EXPECT_NEAR(pose.a, std::atan2(naive.forearm[1][0], naive.forearm[0][0]), kRad);
        EXPECT_EQ(pose.z, 0.0);
        EXPECT_EQ(pose.b, 0.0);
        EXPECT_EQ(pose.c, 0.0);
    }
}

TEST(FourAxisForward, planar_pose_does_not_look_at_axis_4)
{
    const FourAxisParams params = BlockOf(SteepArm());
    const Pose first = FourAxisPlanarPose(params, {0.4, -0.9, 11.0, 2.0});
    const Pose second = FourAxisPlanarPose(params, {0.4, -0.9, 11.0, kNan});
    EXPECT_EQ(first.x, second.x);
    EXPECT_EQ(first.y, second.y);
    EXPECT_EQ(first.a, second.a);
}

TEST(FourAxisForward, not_a_number_is_passed_on)
{
    const FourAxisParams params = BlockOf({});
    EXPECT_TRUE(std::isnan(ToolPoseOf(params, {kNan, 0.1, 0.2, 0.3}, {}).x));
    EXPECT_TRUE(std::isnan(ToolPoseOf(params, {0.1, kNan, 0.2, 0.3}, {}).y));
    EXPECT_TRUE(std::isnan(ToolPoseOf(params, {0.1, 0.2, kNan, 0.3}, {}).z));
    EXPECT_TRUE(std::isnan(ToolPoseOf(params, {0.1, 0.2, 0.3, kNan}, {}).a));
    EXPECT_TRUE(std::isnan(ToolPoseOf(params, {0.1, 0.2, 0.3, 0.4}, {kNan, 0, 0, 0, 0, 0}).x));
    EXPECT_TRUE(std::isnan(FourAxisPlanarPose(params, {kNan, 0.1, 0.2, 0.3}).a));
}

}  // namespace
}  // namespace kine::test

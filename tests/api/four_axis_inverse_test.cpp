// The inverse of arm types 4 and 4110 through the export: codes, lines, untouched records, turns.
#include <gtest/gtest.h>

#include <cmath>

#include "support/four_axis_calls.h"
#include "support/numbers.h"
#include "support/plain_matrix.h"

namespace kine::test {
namespace {

void ExpectFailure(const KinePose& target, KineResult code, const std::string& line)
{
    KineJoint joints = Untouched<KineJoint>();
    const std::string printed = PrintedBy([&] { EXPECT_EQ(Solve(target, joints), code); });
    EXPECT_EQ(printed, line);
    EXPECT_TRUE(IsUntouched(joints));
}

TEST(FourAxisInverse, each_failure_prints_its_line_and_writes_nothing)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        SCOPED_TRACE(type);
        Initialise(type, Scara());
        for (const std::int32_t side : {0, 2, -2, 100})
            ExpectFailure(Target(400, 100, 0, 0, {side, 0, 0, 0}), KINE_ERR_CONFIG, "IK error 5:24720\n");
        for (const double x : {600.1, 49.9, 1e6})
            ExpectFailure(Target(x, 0, 0, 0, {1, 0, 0, 0}), KINE_ERR_IK_REACH, "IK error 5:24724\n");
        ExpectFailure(Target(600, 0, 0, 0, {1, 0, 0, 0}), KINE_ERR_IK_SINGULAR, "IK error 5:24723\n");
        ExpectFailure(Target(0, -50, 0, 0, {-1, 0, 0, 0}), KINE_ERR_IK_SINGULAR, "IK error 5:24723\n");
    }
}

TEST(FourAxisInverse, the_posture_is_tested_before_the_reach)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, Scara());
        ExpectFailure(Target(9000, 0, 0, 0, {0, 0, 0, 0}), KINE_ERR_CONFIG, "IK error 5:24720\n");
    }
}

TEST(FourAxisInverse, a_turn_outside_the_limits_is_found_first_and_prints_nothing)
{
    Initialise(4, Scara());
    ExpectFailure(Target(9000, 0, 0, 0, {0, 0, 0, 700}), KINE_ERR_CONFIG, "");
    ExpectFailure(Target(9000, 0, 0, 0, {0, 700, -700, 0}), KINE_ERR_CONFIG, "IK error 5:24720\n");
    Initialise(4110, Scara());
    for (const KineArmConfig& config :
         {KineArmConfig{0, 700, 0, 0}, KineArmConfig{0, 0, -700, 0}, KineArmConfig{0, 0, 0, INT32_MAX}})
        ExpectFailure(Target(9000, 0, 0, 0, config), KINE_ERR_CONFIG, "");
}

TEST(FourAxisInverse, a_turn_number_beyond_a_million_within_huge_limits_is_0x6090)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, Scara());
        KineJoint upper{}, lower{};
        for (double& axis : upper.Axis) axis = 1e12;
        for (double& axis : lower.Axis) axis = -1e12;
        ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
        ExpectFailure(Target(9000, 0, 0, 0, {1, 0, 0, 1000001}), KINE_ERR_CONFIG, "IK error 5:24720\n");
        ExpectFailure(Target(400, 100, 0, 0, {1, 0, 0, INT32_MIN}), KINE_ERR_CONFIG, "IK error 5:24720\n");
        KineJoint joints{};
        EXPECT_EQ(Solve(Target(400, 100, 0, 0, {1, 0, 0, 1000000}), joints), KINE_OK);
        EXPECT_NEAR(joints.Axis[3] / 90.0, 1000000.0, 3.0);
    }
}

TEST(FourAxisInverse, a_tiny_tilted_arm_is_0x6095)
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = param.FourAxis.Link2Length = param.FourAxis.ScrewLead = 0.01;
    param.FourAxis.Link1TiltX = 3.0;
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, param);
        ExpectFailure(Target(0.01, 0.01, 0, 0, {1, 0, 0, 0}), KINE_ERR_SINGULAR, "IK error 5:24725\n");
    }
}

TEST(FourAxisInverse, a_target_that_is_not_a_number_is_0x6094)
{
    // One such value makes the whole position one in the product of the chain.
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, TiltedScara());
        for (const double bad : {kNan, kInf, -kInf}) {
            ExpectFailure(Target(bad, 100, 0, 0, {1, 0, 0, 0}), KINE_ERR_IK_REACH, "IK error 5:24724\n");
            ExpectFailure(Target(400, bad, 0, 0, {1, 0, 0, 0}), KINE_ERR_IK_REACH, "IK error 5:24724\n");
            ExpectFailure(Target(400, 100, bad, 0, {1, 0, 0, 0}), KINE_ERR_IK_REACH, "IK error 5:24724\n");
        }
        ExpectFailure(Target(400, 100, 0, kNan, {1, 0, 0, 0}), KINE_ERR_IK_REACH, "IK error 5:24724\n");
        ExpectFailure(Target(400, 100, 0, kInf, {1, 0, 0, 0}), KINE_ERR_POSE, "");
    }
}

TEST(FourAxisInverse, a_solution_fills_the_record)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, Scara());
        KinePose target = Target(400, 100, 0, 0, {1, 0, 0, 0});
        for (std::size_t i = 0; i < 6; ++i) target.ExtAxis[i] = 10.0 + static_cast<double>(i);
        KineJoint joints = Untouched<KineJoint>();
        ASSERT_EQ(Solve(target, joints), KINE_OK);
        for (std::size_t i = 4; i < 8; ++i) EXPECT_EQ(joints.Axis[i], 0.0);
        for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(joints.ExtAxis[i], 10.0 + static_cast<double>(i));
        EXPECT_NEAR(joints.Axis[2], -50.0 / 20.0 * 360.0, 1e-9);  // 50 mm down at 20 mm a turn
    }
}

TEST(FourAxisInverse, both_elbow_sides)
{
    // 325 and 275 mm at right angles: the flange on a circle of sqrt(325^2 + 275^2), the angle at the base
    // atan(275 / 325).
    const double reach = std::sqrt(325.0 * 325.0 + 275.0 * 275.0);
    const double atBase = InDegrees(std::atan2(275.0, 325.0));
    for (const std::int32_t side : {1, -1}) {
        Initialise(4, Scara());
        KineJoint joints{};
        ASSERT_EQ(Solve(Target(0, reach, 0, 0, {side, 0, 0, 0}), joints), KINE_OK);
        EXPECT_NEAR(joints.Axis[0], 90.0 - side * atBase, 1e-10);
        EXPECT_NEAR(joints.Axis[1], side * 90.0, 1e-10);
        EXPECT_NEAR(joints.Axis[3], -joints.Axis[0] - joints.Axis[1], 1e-10);

        Initialise(4110, Scara());
        ASSERT_EQ(Solve(Target(0, reach, 0, 0, {side, 0, side > 0 ? -1 : 1, -1}), joints), KINE_OK);
        EXPECT_NEAR(joints.Axis[0], 90.0 - side * atBase, 1e-10);
        EXPECT_NEAR(std::remainder(joints.Axis[1] - (side * 90.0 - 180.0), 360.0), 0.0, 1e-10);
    }
}

TEST(FourAxisInverse, the_second_shift_of_axis_4)
{
    Initialise(4, Scara());
    // Elbow at 90 degrees with axis 1 at 0, so that axis 4 is the heading less 90: -105.8.
    KineJoint joints{};
    ASSERT_EQ(Solve(Target(325, 275, 0, -15.8, {1, 0, 0, 4}), joints), KINE_OK);
    EXPECT_NEAR(joints.Axis[3], 614.2, 1e-9);
    ASSERT_EQ(Solve(Target(325, 275, 0, -15.8, {1, 0, 0, 0}), joints), KINE_OK);
    EXPECT_NEAR(joints.Axis[3], -105.8, 1e-9);
}

TEST(FourAxisInverse, refined_tilts_reproduce_the_pose)
{
    for (const std::uint32_t type : kFourAxisTypes) {
        Initialise(type, TiltedScara());
        const KineTool tool = HeldTool({30, -10, 25, 15, 0, 0});
        for (const std::int32_t side : {1, -1}) {
            const KinePose target = Target(350, -150, 20, 40, {side, 0, 0, 0});
            KineJoint joints{};
            ASSERT_EQ(Solve(target, joints, tool), KINE_OK);
            const KineWobj wobj = FixedWobj();
            const KineLoad load{};
            KinePose reached{};
            ASSERT_EQ(Kine_JointToWobjPos(&joints, &tool, &wobj, &load, &reached), KINE_OK);
            EXPECT_NEAR(reached.Frame.X, 350, 1e-6);
            EXPECT_NEAR(reached.Frame.Y, -150, 1e-6);
            EXPECT_NEAR(reached.Frame.Z, 20, 1e-6);
            EXPECT_NEAR(reached.Frame.A, 40, 1e-4);
            EXPECT_EQ(reached.Cfg1, side);
        }
    }
}

TEST(FourAxisInverse, target_and_joints_may_share_their_memory)
{
    Initialise(4, Scara());
    union Shared
    {
        KinePose pose;
        KineJoint joints;
    } shared{};
    shared.pose = Target(400, 100, 0, 10, {1, 0, 0, 0});
    KineJoint separate{};
    ASSERT_EQ(Solve(shared.pose, separate), KINE_OK);
    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    const KineLoad load{};
    ASSERT_EQ(Kine_WobjPosToJoint(&shared.pose, &tool, &wobj, &load, &shared.joints), KINE_OK);
    EXPECT_TRUE(SameBits(shared.joints, separate));
}

}  // namespace
}  // namespace kine::test

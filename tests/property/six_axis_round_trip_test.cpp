// Forward and inverse of the six-axis arm undo each other.
#include <gtest/gtest.h>

#include "six_axis_cases.h"
#include "support/stdout_capture.h"

namespace kine::test {
namespace {

constexpr double kDeg = 1e-8;

struct Solved
{
    KineResult code;
    KineJoint joints;
};

Solved Solve(const KinePose& target, const KineTool& tool, const KineWobj& wobj, const KineLoad& load)
{
    Solved result{};
    result.code = Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &result.joints);
    return result;
}

KinePose Forward(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj, const KineLoad& load)
{
    KinePose pose{};
    EXPECT_EQ(Kine_JointToWobjPos(&joints, &tool, &wobj, &load, &pose), KINE_OK);
    return pose;
}

TEST(SixAxisRoundTrip, the_pose_of_joints_gives_these_joints)
{
    SeededRandom random(1001);
    for (const NamedArm& arm : SixAxisArms()) {
        ASSERT_EQ(Kine_InitKinematicParam(6, &arm.param), KINE_OK);
        for (int i = 0; i < 1000; ++i) {
            const KineJoint q = RegularJoints(random, arm.param.SixAxis, 1900.0);
            SCOPED_TRACE(::testing::Message() << arm.name << " " << i << " " << q);
            const KineTool tool = RandomTool(random, 4.0);
            const KineWobj wobj =
                FixedWobj(RandomFrame(random, 800.0, 80.0), RandomFrame(random, 200.0, 80.0));
            const KineLoad load = RandomLoad(random, 3.0);
            const Solved solved = Solve(Forward(q, tool, wobj, load), tool, wobj, load);
            ASSERT_EQ(solved.code, KINE_OK);
            for (std::size_t k = 0; k < 6; ++k)
                EXPECT_NEAR(solved.joints.Axis[k], q.Axis[k], kDeg) << "axis " << k + 1;
        }
    }
}

TEST(SixAxisRoundTrip, axis_2_5_or_3_beyond_its_turn_comes_back_as_an_equivalent_arm)
{
    SeededRandom random(1002);
    const KineKinematicParam param = WristArm();
    ASSERT_EQ(Kine_InitKinematicParam(6, &param), KINE_OK);
    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    const KineLoad load{};
    for (int i = 0; i < 300; ++i) {
        const KineJoint inside = RegularJoints(random, param.SixAxis, 170.0);
        for (const std::size_t axis : {1U, 2U, 4U}) {
            KineJoint q = inside;
            q.Axis[axis] += random.Whole(0, 1) == 1 ? 360.0 : -360.0;
            SCOPED_TRACE(::testing::Message() << i << " " << q);
            const KinePose pose = Forward(q, tool, wobj, load);
            const Solved solved = Solve(pose, tool, wobj, load);
            ASSERT_EQ(solved.code, KINE_OK);
            EXPECT_TRUE(
                IsMatrix(MatrixOf(Forward(solved.joints, tool, wobj, load).Frame), MatrixOf(pose.Frame)));
            EXPECT_LE(std::fabs(solved.joints.Axis[1]), 180.0 + kDeg);
            EXPECT_LE(std::fabs(solved.joints.Axis[4]), 180.0 + kDeg);
        }
    }
}

TEST(SixAxisRoundTrip, all_eight_postures_reproduce_the_pose)
{
    SeededRandom random(1003);
    int solutions = 0;
    int attempts = 0;
    for (const NamedArm& arm : SixAxisArms()) {
        ASSERT_EQ(Kine_InitKinematicParam(6, &arm.param), KINE_OK);
        const bool nominal = arm.param.SixAxis.k2 == 0.0;
        for (int i = 0; i < 200; ++i) {
            const KineJoint q = RegularJoints(random, arm.param.SixAxis, 170.0);
            const KineTool tool = RandomTool(random, 4.0);
            const KineWobj wobj = FixedWobj(RandomFrame(random, 800.0, 80.0));
            const KineLoad load = RandomLoad(random, 3.0);
            KinePose pose = Forward(q, tool, wobj, load);
            for (int posture = 0; posture < 8; ++posture) {
                SCOPED_TRACE(::testing::Message() << arm.name << " " << posture << " " << q);
                pose.Cfg4 = posture;
                ++attempts;
                Solved solved{};
                (void)PrintedBy([&] { solved = Solve(pose, tool, wobj, load); });
                // With a shoulder offset the arm bent over backward may be too short.
                if (solved.code != KINE_OK) {
                    EXPECT_EQ(solved.code, KINE_ERR_IK_7);
                    EXPECT_GT(arm.param.SixAxis.a1, 0.0);
                    continue;
                }
                ++solutions;
                if (!IsClearOfSingularities(arm.param.SixAxis, solved.joints)) continue;
                const KinePose again = Forward(solved.joints, tool, wobj, load);
                EXPECT_TRUE(IsMatrix(MatrixOf(again.Frame), MatrixOf(pose.Frame), 1e-7));
                EXPECT_EQ(again.Cfg4, posture);
                if (nominal) {
                    EXPECT_LE(std::fabs(solved.joints.Axis[1]), 180.0 + kDeg);
                }
            }
        }
    }
    EXPECT_GT(solutions, attempts * 3 / 4);
}

TEST(SixAxisRoundTrip, four_quarter_turns_in_the_configuration_move_one_turn)
{
    SeededRandom random(1004);
    for (const NamedArm& arm : SixAxisArms()) {
        ASSERT_EQ(Kine_InitKinematicParam(6, &arm.param), KINE_OK);
        for (int i = 0; i < 150; ++i) {
            const KineJoint q = RegularJoints(random, arm.param.SixAxis, 700.0);
            SCOPED_TRACE(::testing::Message() << arm.name << " " << i << " " << q);
            const KineTool tool = RandomTool(random, 4.0);
            const KineWobj wobj = FixedWobj();
            const KineLoad load = RandomLoad(random, 3.0);
            const KinePose pose = Forward(q, tool, wobj, load);
            const int turns[3] = {random.Whole(-5, 5), random.Whole(-5, 5), random.Whole(-5, 5)};
            KinePose turned = pose;
            turned.Cfg1 += 4 * turns[0];
            turned.Cfg2 += 4 * turns[1];
            turned.Cfg3 += 4 * turns[2];
            const Solved solved = Solve(turned, tool, wobj, load);
            ASSERT_EQ(solved.code, KINE_OK);
            const double moved[6] = {360.0 * turns[0], 0, 0, 360.0 * turns[1], 0, 360.0 * turns[2]};
            for (std::size_t k = 0; k < 6; ++k)
                EXPECT_NEAR(solved.joints.Axis[k], q.Axis[k] + moved[k], kDeg) << "axis " << k + 1;
        }
    }
}

TEST(SixAxisRoundTrip, any_configuration_within_two_quarters_gives_an_axis_within_two_quarters)
{
    SeededRandom random(1005);
    const KineKinematicParam param = CalibratedWristArm();
    ASSERT_EQ(Kine_InitKinematicParam(6, &param), KINE_OK);
    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    const KineLoad load{};
    for (int i = 0; i < 500; ++i) {
        const KineJoint q = RegularJoints(random, param.SixAxis, 179.0);
        KinePose target = Forward(q, tool, wobj, load);
        const int wanted[3] = {random.Whole(-30, 30), random.Whole(-30, 30), random.Whole(-30, 30)};
        target.Cfg1 = wanted[0];
        target.Cfg2 = wanted[1];
        target.Cfg3 = wanted[2];
        SCOPED_TRACE(::testing::Message() << q << " " << wanted[0] << " " << wanted[1] << " " << wanted[2]);
        const Solved solved = Solve(target, tool, wobj, load);
        ASSERT_EQ(solved.code, KINE_OK);
        const double axes[3] = {solved.joints.Axis[0], solved.joints.Axis[3], solved.joints.Axis[5]};
        for (std::size_t k = 0; k < 3; ++k) {
            // A degree of slack: the turn of axis 1 is selected on the nominal arm.
            EXPECT_GE(axes[k], 90.0 * (wanted[k] - 2) - 1.0);
            EXPECT_LE(axes[k], 90.0 * (wanted[k] + 3) + 1.0);
        }
    }
}

}  // namespace
}  // namespace kine::test

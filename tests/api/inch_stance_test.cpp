// Cartesian jog: who holds what, which turns and posture stay, and what is read.
#include <gtest/gtest.h>

#include "support/motion_cells.h"

using namespace kine::test;

TEST(Kine_InchMovePosCalc, a_held_byte_of_2_counts_everywhere_but_in_the_turn_of_work_object_mode)
{
    for (const MovedArm& arm : {MovedGravityArm(), MovedScara(), MovedScara4110()}) {
        Initialise(arm);
        for (const bool isTool : {true, false}) {
            MotionRequest request = isTool ? ToolOnRobot(arm) : WobjOnRobot(arm);
            (isTool ? request.tool.HeldByRobot : request.wobj.HeldByRobot) = 2;
            ExpectEveryDirectionMoves(arm, request, StandingCell(request));
        }
    }
}

TEST(Kine_InchMovePosCalc,
     base_and_world_mode_move_the_flange_when_nothing_is_held_and_the_tool_when_both_are)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const uint8_t byte : {uint8_t{0}, uint8_t{1}}) {
            MotionRequest request = WobjOnRobot(arm);
            request.tool.HeldByRobot = request.wobj.HeldByRobot = byte;
            for (const int32_t mode : {2, 5}) {
                request.mode = mode;
                for (const KineInchDir& dir : SingleDirections()) {
                    request.dir = dir;
                    SCOPED_TRACE(::testing::Message() << Shown(arm, request) << ", both " << int{byte});
                    ExpectJogMoves(arm, request, StandingCell(request));
                }
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, no_direction_returns_the_current_joints)
{
    for (const MovedArm& arm : MovedArms()) {
        for (const bool isOnTrack : {false, true}) {
            Initialise(arm);
            if (isOnTrack) PutRobotOn(LinearUnit(kRail, kTravel, 2));
            for (MotionRequest request : BothSetUps(arm)) {
                for (const int32_t mode : kCartesianModes) {
                    request.mode = mode;
                    SCOPED_TRACE(Shown(arm, request));
                    const MotionOutcome outcome = Jog(request);
                    ExpectOutcome(outcome, KINE_OK);
                    // The screw of the four-axis arms turns 18 degrees per mm.
                    const double degrees = arm.IsSixAxis() ? 1e-9 : arm.tolerance * 20.0;
                    EXPECT_TRUE(IsJoints(outcome.target, arm.start, degrees, arm.Axes()));
                }
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, the_turns_and_the_posture_of_the_current_joints_stay)
{
    struct Stance
    {
        MovedArm arm;
        KineJoint joints;
    };
    const Stance stances[] = {{MovedWristArm(), MakeJoints({395.0, -25.0, 20.0, -320.0, 55.0, 290.0})},
                              {MovedWristArm(), MakeJoints({-325.0, -25.0, 20.0, 400.0, -55.0, -430.0})},
                              {MovedScara(), MakeJoints({-40.0, -60.0, 200.0, 435.0})},
                              {MovedScara4110(), MakeJoints({-40.0, -120.0, 200.0, 435.0})},
                              {MovedScara4110(), MakeJoints({320.0, 240.0, 200.0, -285.0})},
                              {MovedScara4110(), MakeJoints({-400.0, -240.0, 200.0, 75.0})}};
    for (const auto& [arm, joints] : stances) {
        Initialise(arm);
        for (MotionRequest request : BothSetUps(arm)) {
            request.current = joints;
            for (const int32_t mode : kCartesianModes) {
                request.mode = mode;
                request.dir = {};
                SCOPED_TRACE(Shown(arm, request));
                EXPECT_TRUE(IsJoints(Jog(request).target, joints, 1e-6, arm.Axes()));
                request.dir.Slot[1] = 1;
                ExpectJogMoves(arm, request, StandingCell(request));
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, cartesian_modes_read_six_slots_and_not_the_joint_step)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (MotionRequest request : BothSetUps(arm)) {
            for (const int32_t mode : kCartesianModes) {
                request.mode = mode;
                request.dir = {{1, -1, 1, -1}};
                request.steps[0] = 1.0;
                SCOPED_TRACE(Shown(arm, request));
                const MotionOutcome clean = Jog(request);
                ExpectOutcome(clean, KINE_OK);
                for (int slot = 6; slot < 14; ++slot) request.dir.Slot[slot] = 1000 + slot;
                request.steps[0] = 1e6;
                EXPECT_TRUE(SameBits(Jog(request).target, clean.target));
            }
        }
    }
}

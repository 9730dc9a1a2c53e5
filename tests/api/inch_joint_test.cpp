// Joint jog, the modes that move nothing, and what every mode does to the caller's step array.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "support/cell_setup.h"
#include "support/motion_calls.h"
#include "support/plain_matrix.h"

using namespace kine::test;

namespace {

// deg; a joint goes to radians and back.
constexpr double kRounding = 1e-11;

MotionRequest JointJog(const MovedArm& arm, double step)
{
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 1;
    request.steps[0] = step;
    return request;
}

// Modes without a meaning.
const int32_t kOtherModes[] = {
    0, 6, -1, 7, 257, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};

KineJoint JogJoints(const MotionRequest& request)
{
    const MotionOutcome outcome = Jog(request);
    ExpectOutcome(outcome, KINE_OK);
    return outcome.target;
}

}  // namespace

TEST(Kine_InchMovePosCalc, joint_mode_takes_slot_n_of_a_four_axis_arm_as_external_axis_1)
{
    for (const MovedArm& arm : {MovedScara(), MovedScara4110()}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = JointJog(arm, 1.0);
        request.dir.Slot[0] = request.dir.Slot[4] = 1;
        KineJoint expected = arm.start;
        expected.Axis[0] += 1.0;
        const KineJoint target = JogJoints(request);
        EXPECT_NEAR(target.ExtAxis[0], 34.0, kRounding);
        expected.ExtAxis[0] = target.ExtAxis[0];
        EXPECT_TRUE(IsJoints(target, expected, kRounding));
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_moves_the_axis_of_every_slot_by_factor_times_step)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (int slot = 0; slot < arm.Axes() + 6; ++slot) {
            for (const int32_t factor : {1, -1, 3, -1000}) {
                SCOPED_TRACE(::testing::Message() << arm.name << ", slot " << slot << " = " << factor);
                MotionRequest request = JointJog(arm, 2.5);
                request.dir.Slot[slot] = factor;
                const KineJoint target = JogJoints(request);
                for (int i = 0; i < 8; ++i) {
                    const double moved = i == slot && i < arm.Axes() ? 2.5 * factor : 0.0;
                    EXPECT_NEAR(target.Axis[i], arm.start.Axis[i] + moved, kRounding);
                }
                for (int j = 0; j < 6; ++j) {
                    const double moved = arm.Axes() + j == slot ? 2.5 * factor : 0.0;
                    EXPECT_NEAR(target.ExtAxis[j], arm.start.ExtAxis[j] + moved, kRounding);
                }
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_moves_all_slots_at_once)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 0.5);
    for (int slot = 0; slot < 12; ++slot) request.dir.Slot[slot] = slot - 5;
    const KineJoint target = JogJoints(request);
    for (int i = 0; i < 6; ++i) {
        EXPECT_NEAR(target.Axis[i], arm.start.Axis[i] + 0.5 * (i - 5), kRounding);
        EXPECT_NEAR(target.ExtAxis[i], arm.start.ExtAxis[i] + 0.5 * (i + 1), kRounding);
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_keeps_the_axes_that_the_arm_does_not_have)
{
    for (const MovedArm& arm : {MovedWristArm(), MovedScara(), MovedScara4110()}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = JointJog(arm, 10.0);
        for (int i = arm.Axes(); i < 8; ++i) request.current.Axis[i] = 100.0 + i;
        for (int32_t& factor : request.dir.Slot) factor = 1;
        const KineJoint target = JogJoints(request);
        for (int i = arm.Axes(); i < 8; ++i) EXPECT_NEAR(target.Axis[i], 100.0 + i, kRounding);
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_does_not_read_the_slots_behind_the_external_axes)
{
    for (const MovedArm& arm : {MovedWristArm(), MovedScara(), MovedScara4110()}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = JointJog(arm, 10.0);
        for (int slot = 0; slot < arm.Axes() + 6; ++slot) request.dir.Slot[slot] = slot % 3 - 1;
        const KineJoint clean = JogJoints(request);
        for (int slot = arm.Axes() + 6; slot < 14; ++slot) request.dir.Slot[slot] = 1000 + slot;
        EXPECT_TRUE(SameBits(JogJoints(request), clean));
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_has_neither_singularity_test_nor_limit_test)
{
    const MovedArm six = MovedWristArm();
    const MovedArm four = MovedScara();
    for (const MovedArm& arm : {six, four}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        const KineJoint upper = MakeJoints({10.0, 10.0, 10.0, 10.0, 10.0, 10.0});
        const KineJoint lower = MakeJoints({-10.0, -10.0, -10.0, -10.0, -10.0, -10.0});
        ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
        MotionRequest request = JointJog(arm, 5.0);
        // Axis 2 of the four-axis arm ends at 0, axis 5 of the other: both singular.
        request.current = MakeJoints({500.0, -5.0, 20.0, 40.0, -5.0, -70.0});
        request.dir.Slot[arm.IsSixAxis() ? 4 : 1] = 1;
        const KineJoint target = JogJoints(request);
        EXPECT_NEAR(target.Axis[arm.IsSixAxis() ? 4 : 1], 0.0, kRounding);
        EXPECT_NEAR(target.Axis[0], 500.0, kRounding);
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_takes_axis_2_of_type_4110_as_it_is)
{
    const MovedArm arm = MovedScara4110();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 10.0);
    request.dir.Slot[1] = 1;
    for (const double axis2 : {-120.0, 0.0, 175.0, 370.0, -900.0}) {
        request.current.Axis[1] = axis2;
        EXPECT_NEAR(JogJoints(request).Axis[1], axis2 + 10.0, kRounding);
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_does_not_ask_who_holds_what_nor_where_the_work_object_is)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    for (const int toolByte : {0, 1, 2}) {
        for (const int wobjByte : {0, 1, 2}) {
            MotionRequest request = JointJog(arm, 1.0);
            request.tool.HeldByRobot = static_cast<uint8_t>(toolByte);
            request.wobj = WobjOnUnit(-1);
            request.wobj.HeldByRobot = static_cast<uint8_t>(wobjByte);
            request.dir.Slot[5] = -1;
            EXPECT_NEAR(JogJoints(request).Axis[5], arm.start.Axis[5] - 1.0, kRounding);
        }
    }
}

TEST(Kine_InchMovePosCalc, joint_mode_passes_not_a_number_on_where_it_stands)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 1.0);
    request.dir.Slot[0] = 1;
    request.current.Axis[0] = request.current.ExtAxis[3] = std::nan("");
    const KineJoint target = JogJoints(request);
    EXPECT_TRUE(std::isnan(target.Axis[0]));
    EXPECT_TRUE(std::isnan(target.ExtAxis[3]));
    EXPECT_NEAR(target.Axis[1], arm.start.Axis[1], kRounding);
}

TEST(Kine_InchMovePosCalc, takes_every_integer_as_a_factor)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 0x1p-20);
    request.dir.Slot[0] = std::numeric_limits<int32_t>::min();
    request.dir.Slot[6] = std::numeric_limits<int32_t>::max();
    const KineJoint target = JogJoints(request);
    // 2^31 steps of 2^-20.
    EXPECT_NEAR(target.Axis[0], arm.start.Axis[0] - 2048.0, 1e-9);
    EXPECT_NEAR(target.ExtAxis[0], arm.start.ExtAxis[0] + 2048.0, 1e-5);
}

TEST(Kine_InchMovePosCalc, called_twice_with_one_array_takes_its_radians_for_degrees)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 30.0);
    request.steps[2] = 90.0;
    request.dir.Slot[0] = 1;
    const MotionOutcome first = Jog(request);
    EXPECT_NEAR(first.target.Axis[0], arm.start.Axis[0] + 30.0, kRounding);
    EXPECT_NEAR(first.steps[0], 0.52359877559829887, 1e-15);  // pi / 6
    EXPECT_EQ(first.steps[1], 12.5);
    EXPECT_NEAR(first.steps[2], 1.5707963267948966, 1e-15);  // pi / 2

    for (std::size_t i = 0; i < 3; ++i) request.steps[i] = first.steps[i];
    const MotionOutcome second = Jog(request);
    EXPECT_NEAR(second.target.Axis[0], arm.start.Axis[0] + 0.52359877559829887, kRounding);
    EXPECT_NEAR(second.steps[0], 0.009138522593601258, 1e-15);  // pi^2 / 1080
    EXPECT_EQ(second.steps[1], 12.5);
    EXPECT_NEAR(second.steps[2], 0.02741556778080377, 1e-15);  // pi^2 / 360
}

TEST(Kine_InchMovePosCalc, the_target_may_be_the_current_joints)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = JointJog(arm, 3.0);
    request.dir.Slot[2] = 1;
    const KineJoint apart = JogJoints(request);
    EXPECT_EQ(Kine_InchMovePosCalc(&request.dir, 1, &request.tool, &request.wobj, &request.load,
                                   request.steps, &request.current, &request.current),
              KINE_OK);
    EXPECT_TRUE(SameBits(request.current, apart));
}

TEST(Kine_InchMovePosCalc, a_mode_without_meaning_keeps_the_joints_and_asks_nothing)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const int32_t mode : kOtherModes) {
            for (const uint8_t heldByte : {uint8_t{0}, uint8_t{1}}) {
                SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
                MotionRequest request = ToolOnRobot(arm);
                request.mode = mode;
                request.tool.HeldByRobot = heldByte;
                request.wobj = WobjOnUnit(-1);
                request.wobj.HeldByRobot = heldByte;
                for (int32_t& factor : request.dir.Slot) factor = 1;
                EXPECT_TRUE(IsJoints(JogJoints(request), arm.start, kRounding));
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, tool_mode_with_nothing_held_keeps_the_joints_and_asks_nothing)
{
    for (const MovedArm& arm : MovedArms()) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.mode = 3;
        request.tool.HeldByRobot = 0;
        request.wobj = WobjOnUnit(-1);
        for (int32_t& factor : request.dir.Slot) factor = 1;
        EXPECT_TRUE(IsJoints(JogJoints(request), arm.start, kRounding));
    }
}

// The joints of a mode without meaning are tested as they are: the thresholds seen from both sides.
class JogSingularity : public ::testing::Test
{
protected:
    static void ExpectAt(const MovedArm& arm, const KineJoint& joints, KineResult code)
    {
        for (const int32_t mode : {0, 3}) {
            MotionRequest request = ToolOnRobot(arm);
            request.mode = mode;
            request.tool.HeldByRobot = 0;
            request.current = joints;
            SCOPED_TRACE(::testing::Message()
                         << arm.name << ", mode " << mode << ", axis 2 " << joints.Axis[1] << ", axis 3 "
                         << joints.Axis[2] << ", axis 5 " << joints.Axis[4]);
            ExpectOutcome(Jog(request), code);
        }
    }

    // deg; far above rounding, far below anything that matters.
    static constexpr double kAside = 1e-9;
};

TEST_F(JogSingularity, wrist_counts_when_the_sine_of_axis_5_is_below_0_087266)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    const double limit = InDegrees(std::asin(0.087266));
    for (const double centre : {0.0, 180.0, -180.0}) {
        for (const double side : {1.0, -1.0}) {
            KineJoint joints = arm.start;
            joints.Axis[4] = centre + side * (limit - kAside);
            ExpectAt(arm, joints, KINE_ERR_INCH_SINGULAR);
            joints.Axis[4] = centre + side * (limit + kAside);
            ExpectAt(arm, joints, KINE_OK);
        }
    }
}

TEST_F(JogSingularity, elbow_counts_when_its_cosine_is_below_0_087266)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    // Straight when axis 3 is 90 degrees less the angle of the elbow offset.
    const double offset = InDegrees(std::atan(135.0 / 755.0));
    const double limit = InDegrees(std::asin(0.087266));
    for (const double straight : {90.0 - offset, -90.0 - offset}) {
        for (const double side : {1.0, -1.0}) {
            KineJoint joints = arm.start;
            // Keep the forearm level, so that the wrist stays away from axis 1.
            joints.Axis[2] = straight + side * (limit - kAside);
            joints.Axis[1] = -joints.Axis[2];
            ExpectAt(arm, joints, KINE_ERR_INCH_SINGULAR);
            joints.Axis[2] = straight + side * (limit + kAside);
            joints.Axis[1] = -joints.Axis[2];
            ExpectAt(arm, joints, KINE_OK);
        }
    }
}

TEST_F(JogSingularity, shoulder_counts_when_the_wrist_is_less_than_30_mm_from_axis_1)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    // With axes 2 and 3 adding up to 90 degrees the wrist centre is at 100 - 705 sin q2 - 135.
    for (const double side : {1.0, -1.0}) {
        for (const auto& [distance, code] :
             {std::pair{30.0 - 1e-8, KINE_ERR_INCH_SINGULAR}, std::pair{30.0 + 1e-8, KINE_OK}}) {
            KineJoint joints = arm.start;
            joints.Axis[1] = InDegrees(std::asin((-35.0 - side * distance) / 705.0));
            joints.Axis[2] = 90.0 - joints.Axis[1];
            ExpectAt(arm, joints, code);
        }
    }
}

TEST_F(JogSingularity, four_axis_arms_count_when_axis_2_is_within_0_0524_of_a_whole_number_of_half_turns)
{
    const double limit = InDegrees(0.0524);
    for (const MovedArm& arm : {MovedScara(), MovedScara4110()}) {
        Initialise(arm);
        for (const double centre : {0.0, 180.0, -180.0, 360.0, -540.0}) {
            // Counted from the half turn nearer to zero: just short of one the arm is not singular.
            const double outward = centre < 0.0 ? -1.0 : 1.0;
            KineJoint joints = arm.start;
            joints.Axis[1] = centre + outward * (limit - kAside);
            ExpectAt(arm, joints, KINE_ERR_INCH_SINGULAR);
            joints.Axis[1] = centre + outward * (limit + kAside);
            ExpectAt(arm, joints, KINE_OK);
            joints.Axis[1] = centre - outward * (limit - kAside);
            ExpectAt(arm, joints, centre == 0.0 ? KINE_ERR_INCH_SINGULAR : KINE_OK);
        }
    }
}

TEST_F(JogSingularity, joints_that_are_not_a_number_do_not_count)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    KineJoint joints = arm.start;
    for (double& axis : joints.Axis) axis = std::nan("");
    ExpectAt(arm, joints, KINE_OK);
}

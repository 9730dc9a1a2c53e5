// Jog along and about the axes of the base, the tool, the work object and the world: forward kinematics of
// the target shows the step. The steps are those of support/motion_calls.h, 12.5 mm and 4 degrees.
#include <gtest/gtest.h>

#include <vector>

#include "support/motion_cells.h"
#include "support/naive_jog.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

constexpr KineFrame kPositioner = {900.0, -400.0, 300.0, -40.0, 17.0, 11.0};

KinePose PoseOf(const MotionRequest& request, const KineJoint& joints,
                KineResult (*call)(const KineJoint*, const KineTool*, const KineWobj*, const KineLoad*,
                                   KinePose*))
{
    KinePose pose{};
    EXPECT_EQ(call(&joints, &request.tool, &request.wobj, &request.load, &pose), KINE_OK);
    return pose;
}

Mat4 InWobj(const MotionRequest& request, const KineJoint& joints)
{
    return MatrixOf(PoseOf(request, joints, Kine_JointToWobjPos).Frame);
}

// The six elementary steps of the six-axis arm, in its slots.
Mat4 ElementaryStep(int slot)
{
    switch (slot) {
        case 0: return Shift(12.5, 0, 0);
        case 1: return Shift(0, 12.5, 0);
        case 2: return Shift(0, 0, 12.5);
        case 3: return TurnXDeg(4.0);
        case 4: return TurnYDeg(4.0);
        default: return TurnZDeg(4.0);
    }
}

}  // namespace

TEST(Kine_InchMovePosCalc, tool_mode_makes_the_step_in_the_held_tool)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 3;
    for (int slot = 0; slot < 6; ++slot) {
        request.dir = {};
        request.dir.Slot[slot] = 1;
        SCOPED_TRACE(Shown(arm, request));
        const Mat4 expected = InWobj(request, request.current) * ElementaryStep(slot);
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, expected, 1e-8, 1e-10));
    }
}

TEST(Kine_InchMovePosCalc, tool_mode_moves_a_held_work_object_along_the_stationary_tool)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = WobjOnRobot(arm);
    request.mode = 3;
    for (int slot = 0; slot < 6; ++slot) {
        request.dir = {};
        request.dir.Slot[slot] = 1;
        SCOPED_TRACE(Shown(arm, request));
        // The work object seen from the tool: the inverse of what the forward call gives.
        const Mat4 toolFromWobj = RigidInverse(InWobj(request, request.current));
        const Mat4 expected = RigidInverse(ElementaryStep(slot) * toolFromWobj);
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, expected, 1e-8, 1e-10));
    }
}

TEST(Kine_InchMovePosCalc, work_object_mode_makes_the_step_in_the_work_object)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 4;
    for (int slot = 0; slot < 6; ++slot) {
        request.dir = {};
        request.dir.Slot[slot] = 1;
        SCOPED_TRACE(Shown(arm, request));
        const Mat4 expected = ElementaryStep(slot) * InWobj(request, request.current);
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, expected, 1e-8, 1e-10));
    }
}

TEST(Kine_InchMovePosCalc, work_object_mode_turns_a_held_work_object_the_other_way_about_the_tool_point)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = WobjOnRobot(arm);
    request.mode = 4;
    const Mat4 before = InWobj(request, request.current);
    for (int slot = 3; slot < 6; ++slot) {
        request.dir = {};
        request.dir.Slot[slot] = 1;
        // A linear direction beside it is lost.
        request.dir.Slot[slot - 3] = 1;
        SCOPED_TRACE(Shown(arm, request));
        const Mat4 expected = MovedTo(RigidInverse(ElementaryStep(slot)) * before, before);
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, expected, 1e-8, 1e-10));
    }
}

TEST(Kine_InchMovePosCalc, base_mode_shifts_along_and_turns_about_the_base_axes_in_place)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    for (const int32_t mode : {2, 5}) {  // a standing robot: the base is the world
        request.mode = mode;
        const Mat4 before = MatrixOf(PoseOf(request, request.current, Kine_JointToBasePos).Frame);
        for (int slot = 0; slot < 6; ++slot) {
            request.dir = {};
            request.dir.Slot[slot] = 1;
            SCOPED_TRACE(Shown(arm, request));
            const Mat4 stepped = ElementaryStep(slot) * before;
            const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
            EXPECT_TRUE(IsFrame(after.Frame, slot < 3 ? stepped : MovedTo(stepped, before), 1e-8, 1e-10));
        }
    }
}

TEST(Kine_InchMovePosCalc, four_axis_arms_turn_about_z_with_slot_3_and_heading_by_tilt_with_slots_4_and_5)
{
    for (const MovedArm& arm : {MovedScara(), MovedScara4110()}) {
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.mode = 2;
        const KineFrame before = PoseOf(request, request.current, Kine_JointToBasePos).Frame;
        // Heading of the turned X axis (cos a, sin a, 0): about Y its first number shrinks, about X its
        // second.
        const double c = std::cos(InRadians(before.A));
        const double s = std::sin(InRadians(before.A));
        const double shrink = std::cos(InRadians(4.0));
        const double expected[3] = {before.A + 4.0, InDegrees(std::atan2(s, shrink * c)),
                                    InDegrees(std::atan2(shrink * s, c))};
        for (int slot = 3; slot < 6; ++slot) {
            request.dir = {};
            request.dir.Slot[slot] = 1;
            SCOPED_TRACE(Shown(arm, request));
            KineFrame frame = before;
            frame.A = expected[slot - 3];
            const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
            EXPECT_TRUE(IsFrame(after.Frame, MatrixOf(frame), 1e-8, 1e-10));
        }
    }
}

TEST(Kine_InchMovePosCalc, every_direction_moves_every_arm_in_every_mode)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const MotionRequest& request : BothSetUps(arm)) {
            ExpectEveryDirectionMoves(arm, request, StandingCell(request));
        }
    }
}

TEST(Kine_InchMovePosCalc, every_direction_moves_robots_on_units_of_each_kind)
{
    for (const MovedArm& arm : MovedArms()) {
        for (const KineMechUnit& carrier :
             {LinearUnit(kRail, kTravel, 2), RotaryUnit(kRail, 0), TwoRotaryUnit(kRail, kTravel, 4, 1)}) {
            Initialise(arm);
            PutRobotOn(carrier);
            for (const MotionRequest& request : BothSetUps(arm)) {
                JogCell cell = StandingCell(request);
                cell.worldFromBase = UnitMatrix(carrier, request.current.ExtAxis);
                ExpectEveryDirectionMoves(arm, request, cell);
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, every_direction_moves_a_tool_over_a_work_object_on_a_positioner)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        const KineMechUnit positioner = RotaryUnit(kPositioner, 5);
        SetUnitCounts(3, 6);
        StoreUnit(2, positioner);
        MotionRequest request = ToolOnRobot(arm);
        request.wobj = WobjOnUnit(2, {30.0, 60.0, 20.0, 35.0, 10.0, -15.0});
        const JogCell cell = {
            Identity4(), UnitMatrix(positioner, request.current.ExtAxis) * MatrixOf(request.wobj.OFrame)};
        ExpectEveryDirectionMoves(arm, request, cell);
    }
}

// World mode turns the direction by the carrier and takes the result along the base axes.
TEST(Kine_InchMovePosCalc, world_mode_moves_along_the_world_while_the_carrier_is_not_turned)
{
    const MovedArm arm = MovedGravityArm();
    for (const double turn : {0.0, 180.0}) {
        Initialise(arm);
        PutRobotOn(LinearUnit({700.0, -50.0, 30.0, turn, 0.0, 0.0}, {}, 2));
        MotionRequest request = ToolOnRobot(arm);
        request.mode = 5;
        request.dir.Slot[0] = 1;
        const Mat4 before = MatrixOf(PoseOf(request, request.current, Kine_JointToWorldPos).Frame);
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWorldPos);
        EXPECT_TRUE(IsFrame(after.Frame, Shift(12.5, 0, 0) * before, 1e-8, 1e-10)) << turn;
    }
}

TEST(Kine_InchMovePosCalc, world_mode_on_a_carrier_turned_by_90_degrees_moves_along_base_y_for_x)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    PutRobotOn(RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 5;
    request.current.ExtAxis[0] = 90.0;
    const Mat4 before = MatrixOf(PoseOf(request, request.current, Kine_JointToBasePos).Frame);
    request.dir.Slot[0] = 1;
    KinePose after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
    EXPECT_TRUE(IsFrame(after.Frame, Shift(0, 12.5, 0) * before, 1e-8, 1e-10));

    request.dir = {};
    request.dir.Slot[3] = 1;
    after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
    EXPECT_TRUE(IsFrame(after.Frame, MovedTo(TurnYDeg(4.0) * before, before), 1e-8, 1e-10));
}

TEST(Kine_InchMovePosCalc, a_factor_multiplies_the_linear_step)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 2;
    request.dir = {{2, -3, 4}};
    const Mat4 before = MatrixOf(PoseOf(request, request.current, Kine_JointToBasePos).Frame);
    const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
    EXPECT_TRUE(IsFrame(after.Frame, Shift(25.0, -37.5, 50.0) * before, 1e-8, 1e-10));
}

// The axis is used as it is: for (2, 0, 0) the matrix of the step has 1, 1 - 4 v, 1 - 4 v on its diagonal and
// 2 s beside it, with s and 1 - v the sine and cosine of 4 degrees. The angles are read off the product.
TEST(Kine_InchMovePosCalc, a_factor_on_a_rotation_slot_is_not_a_multiple_of_the_angle)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 2;
    request.dir.Slot[3] = 2;
    const Mat4 before = MatrixOf(PoseOf(request, request.current, Kine_JointToBasePos).Frame);
    const double s = std::sin(InRadians(4.0));
    const double v = 1.0 - std::cos(InRadians(4.0));
    Mat4 step = Identity4();
    step[1][1] = step[2][2] = 1.0 - 4.0 * v;
    step[1][2] = -2.0 * s;
    step[2][1] = 2.0 * s;
    const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToBasePos);
    EXPECT_TRUE(IsFrame(after.Frame, AsRigid(MovedTo(step * before, before)), 1e-8, 1e-10));
    EXPECT_FALSE(IsFrame(after.Frame, MovedTo(TurnXDeg(8.0) * before, before), 1e-8, 1e-6));
}

TEST(Kine_InchMovePosCalc, several_slots_and_factors_at_once_follow_the_step_matrix)
{
    SeededRandom random(20260701);
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (int round = 0; round < 120; ++round) {
            MotionRequest request = BothSetUps(arm)[random.Below(2)];
            request.mode = kCartesianModes[random.Below(4)];
            for (int slot = 0; slot < 6; ++slot) {
                request.dir.Slot[slot] = static_cast<int32_t>(random.Below(5)) - 2;
            }
            request.steps[1] = random.Uniform(-8.0, 8.0);
            request.steps[2] = random.Uniform(-3.0, 3.0);
            for (int i = 0; i < arm.Axes(); ++i) request.current.Axis[i] += random.Uniform(-5.0, 5.0);
            SCOPED_TRACE(::testing::Message() << Shown(arm, request) << ", round " << round << ", steps "
                                              << request.steps[1] << ' ' << request.steps[2]);
            ExpectJogMoves(arm, request, StandingCell(request));
        }
    }
}

TEST(Kine_InchMovePosCalc, two_rotation_slots_give_a_held_work_object_its_sense_back)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = WobjOnRobot(arm);
    request.mode = 4;
    const Mat4 before = InWobj(request, request.current);
    // Both senses, the slots' common axis, and how many slots are in use.
    const struct
    {
        KineInchDir dir;
        std::array<double, 3> axis;
    } cases[] = {{{{0, 0, 0, 1, 1, 0}}, {1, 1, 0}},
                 {{{0, 0, 0, -1, 0, 1}}, {-1, 0, 1}},
                 {{{0, 0, 0, 1, -1, 1}}, {-1, 1, -1}}};
    for (const auto& [dir, axis] : cases) {
        request.dir = dir;
        SCOPED_TRACE(Shown(arm, request));
        const Mat4 expected = AsRigid(MovedTo(TurnAbout(axis, 4.0) * before, before));
        const KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, expected, 1e-8, 1e-10));
    }
}

TEST(Kine_InchMovePosCalc, four_axis_arms_turn_a_held_work_object_round_for_slot_3_only)
{
    for (const MovedArm& arm : {MovedScara(), MovedScara4110()}) {
        Initialise(arm);
        MotionRequest request = WobjOnRobot(arm);
        request.mode = 4;
        // An upright tool, so that a turn about Z of the work object is one about the vertical.
        request.tool.TFrame = {500.0, 150.0, 300.0, 40.0, 0.0, 0.0};
        const Mat4 before = InWobj(request, request.current);
        request.dir.Slot[3] = 1;
        KinePose after = PoseOf(request, Jog(request).target, Kine_JointToWobjPos);
        EXPECT_TRUE(IsFrame(after.Frame, MovedTo(TurnZDeg(-4.0) * before, before), 1e-8, 1e-10)) << arm.name;
        // Slots 4 and 5 are in no count: one of them neither turns round nor keeps the point.
        request.dir = {{0, 0, 0, 1, 1, 1}};
        ExpectJogMoves(arm, request, StandingCell(request));
        request.dir = {{0, 0, 0, 0, 1, 0}};
        ExpectJogMoves(arm, request, StandingCell(request));
    }
}

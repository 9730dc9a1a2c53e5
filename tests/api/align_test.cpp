// Alignment: the Z axis of the tool, or of the flange under a held work object, ends on the nearest axis of
// the reference, and its origin stays.
#include <gtest/gtest.h>

#include <vector>

#include "support/motion_cells.h"
#include "support/naive_align.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

// With axes 4 and 6 at 0 the Z axis of the flange lies in the upright plane of the arm, at an angle to the
// horizon of the sum of axes 2, 3 and 5 (the axes are parallel). A tool point in the wrist centre keeps axes
// 1 to 3 where they are while it turns, so that the alignment is a motion of axis 5 alone. Turned about its Z
// axis the tool keeps its X axis off the vertical, where the angles of the aligned frame would be made of
// rounding.
constexpr KineFrame kWristCentre = {0.0, 0.0, -85.0, 40.0, 0.0, 0.0};

MotionRequest WristRequest(const KineJoint& joints, int32_t mode = 2)
{
    MotionRequest request = ToolOnRobot(MovedWristArm());
    request.mode = mode;
    request.tool = HeldTool(kWristCentre);
    request.current = joints;
    return request;
}

// The joints with another axis 5.
KineJoint WithAxis5(KineJoint joints, double degrees)
{
    joints.Axis[4] = degrees;
    return joints;
}

void ExpectWristTurnsTo(const MotionRequest& request, double axis5)
{
    SCOPED_TRACE(::testing::Message() << "axis 5 from " << request.current.Axis[4] << " to " << axis5);
    const MotionOutcome outcome = Align(request);
    ExpectOutcome(outcome, KINE_OK);
    EXPECT_TRUE(IsJoints(outcome.target, WithAxis5(request.current, axis5), 1e-9, 6));
}

MovedArm SixAxisArms(std::size_t i) { return i == 0 ? MovedWristArm() : MovedGravityArm(); }

constexpr double kHalfTie = InDegrees(0.5e-5);  // deg

}  // namespace

TEST(Kine_CalcAlignPos, turns_axis_5_alone_where_the_wrist_centre_stays)
{
    Initialise(MovedWristArm());
    // Sums 60, 30 and 100 degrees: nearest are 90, 0 and 90.
    ExpectWristTurnsTo(WristRequest(MakeJoints({0.0, -20.0, 30.0, 0.0, 50.0, 0.0})), 80.0);
    ExpectWristTurnsTo(WristRequest(MakeJoints({0.0, -50.0, 20.0, 0.0, 60.0, 0.0})), 30.0);
    ExpectWristTurnsTo(WristRequest(MakeJoints({0.0, -20.0, 30.0, 0.0, 90.0, 0.0})), 80.0);
    // Downward: sums -60 and -100 degrees, both to -90.
    ExpectWristTurnsTo(WristRequest(MakeJoints({0.0, -20.0, 30.0, 0.0, -70.0, 0.0})), -100.0);
    ExpectWristTurnsTo(WristRequest(MakeJoints({0.0, -50.0, 20.0, 0.0, -70.0, 0.0})), -60.0);
}

// Axis 5 ten degrees short of a multiple of 90 degrees in the sum of axes 2, 3 and 5, in each posture: axis 5
// of either sign, elbow near and far, wrist in front of and behind axis 1.
TEST(Kine_CalcAlignPos, stays_in_each_of_the_eight_postures)
{
    Initialise(MovedWristArm());
    const struct
    {
        double axis2, axis3, positive5, negative5;
    } stances[] = {{-20.0, 30.0, 80.0, -100.0},
                   {-60.0, 120.0, 30.0, -60.0},
                   {70.0, 30.0, 80.0, -100.0},
                   {60.0, 120.0, 90.0, -90.0}};
    int32_t posture = 0;
    for (const auto& stance : stances) {
        for (const double axis5 : {stance.positive5, stance.negative5}) {
            const KineJoint joints = MakeJoints({0.0, stance.axis2, stance.axis3, 0.0, axis5 - 10.0, 0.0});
            KineArmConfig config{};
            ASSERT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
            EXPECT_EQ(config.Cfg4, posture++);
            ExpectWristTurnsTo(WristRequest(joints), axis5);
        }
    }
}

TEST(Kine_CalcAlignPos, takes_the_axes_of_the_reference_of_its_mode)
{
    Initialise(MovedWristArm());
    // A work object turned by 35 degrees about the vertical and tilted by 10 degrees about its own Y, which
    // lowers its X axis: seen from it the sum is 10 degrees more.
    const KineJoint joints = MakeJoints({35.0, -50.0, 20.0, 0.0, 60.0, 0.0});
    for (const int32_t mode : {4, -1}) {
        MotionRequest request = WristRequest(joints, mode);
        request.wobj = FixedWobj({0.0, 0.0, 0.0, 35.0, 0.0, 0.0}, {300.0, 20.0, 10.0, 0.0, 10.0, 0.0});
        ExpectWristTurnsTo(request, 20.0);  // sum -10 degrees: along X of the work object
    }
    // A carrier turned by -35 degrees brings the plane of the arm into that of the world axes.
    PutRobotOn(RotaryUnit({0.0, 0.0, 50.0, 0.0, 0.0, 0.0}, 0));
    MotionRequest request = WristRequest(joints, 5);
    request.current.ExtAxis[0] = -35.0;
    ExpectWristTurnsTo(request, 30.0);
    // For the base it is 35 degrees out of plane still.
    request.mode = 2;
    const MotionOutcome outcome = Align(request);
    ExpectOutcome(outcome, KINE_OK);
    EXPECT_GT(std::fabs(outcome.target.Axis[3]), 1.0);
}

TEST(Kine_CalcAlignPos, of_two_axes_within_1e_5_rad_the_first_is_taken)
{
    Initialise(MovedWristArm());
    // Axis 5 = 75 + excess: the angle to Z is smaller than that to X (with axis 1 at 90 degrees: to Y) by
    // twice the excess.
    for (const double axis1 : {0.0, 90.0, -90.0}) {
        const KineJoint joints = MakeJoints({axis1, -50.0, 20.0, 0.0, 75.0, 0.0});
        for (const double excess : {-1.0, -1e-6, 0.0, 1e-6, 0.99 * kHalfTie}) {
            ExpectWristTurnsTo(WristRequest(WithAxis5(joints, 75.0 + excess)), 30.0);
        }
        for (const double excess : {1.01 * kHalfTie, 2.0 * kHalfTie, 1.0}) {
            ExpectWristTurnsTo(WristRequest(WithAxis5(joints, 75.0 + excess)), 120.0);
        }
    }
}

TEST(Kine_CalcAlignPos, the_tie_rule_is_the_same_between_negative_axes)
{
    Initialise(MovedWristArm());
    // Backward and up: between -X and Z with a sum of 135 degrees, so axis 5 goes to 180 or 90 less the sum
    // of axes 2 and 3; forward and down: between X and -Z with a sum of -45 degrees.
    const KineJoint up = MakeJoints({0.0, 20.0, 30.0, 0.0, 85.0, 0.0});
    ExpectWristTurnsTo(WristRequest(up), 130.0);
    ExpectWristTurnsTo(WristRequest(WithAxis5(up, 85.0 - 0.99 * kHalfTie)), 130.0);
    ExpectWristTurnsTo(WristRequest(WithAxis5(up, 85.0 - 1.01 * kHalfTie)), 40.0);
    const KineJoint down = MakeJoints({0.0, 20.0, 30.0, 0.0, -95.0, 0.0});
    ExpectWristTurnsTo(WristRequest(down), -50.0);
    ExpectWristTurnsTo(WristRequest(WithAxis5(down, -95.0 - 0.99 * kHalfTie)), -50.0);
    ExpectWristTurnsTo(WristRequest(WithAxis5(down, -95.0 - 1.01 * kHalfTie)), -140.0);
}

TEST(Kine_CalcAlignPos, between_x_and_y_the_first_is_taken)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    // Level, in the plane at 45 degrees: axis 1 turns it from X to Y.
    for (const auto& [excess, axis] :
         {std::pair{0.0, std::size_t{0}}, std::pair{0.99 * kHalfTie, std::size_t{0}},
          std::pair{1.01 * kHalfTie, std::size_t{1}}}) {
        const MotionRequest request = WristRequest(MakeJoints({45.0 + excess, -60.0, 10.0, 0.0, 50.0, 0.0}));
        const MotionOutcome outcome = ExpectAligns(arm, request, StandingCell(request));
        const Mat4 after = MatrixOf(CarriedInBase(request, outcome.target));
        EXPECT_NEAR(after[axis][2], 1.0, 1e-9) << excess;
    }
}

TEST(Kine_CalcAlignPos, an_aligned_tool_returns_the_current_joints)
{
    Initialise(MovedWristArm());
    // Z up, forward and down.
    for (const KineJoint& joints : {MakeJoints({0.0, -20.0, 30.0, 40.0, 80.0, 0.0}),
                                    MakeJoints({0.0, -50.0, 20.0, 0.0, 30.0, -60.0})}) {
        MotionRequest request = WristRequest(joints);
        // Whatever the wrist does, the tool makes up for it: its frame is the base's, seen from the flange.
        const Mat4 flange = MatrixOf(CarriedInBase(ThroughFlange(request), joints));
        for (const Mat4& upright :
             {TurnZDeg(25.0), TurnXDeg(180.0) * TurnZDeg(70.0), TurnYDeg(90.0) * TurnZDeg(-30.0)}) {
            request.tool.TFrame = FrameOf(RotationOf(RigidInverse(flange)) * upright);
            request.tool.TFrame.Z = 150.0;
            for (const int32_t mode : {2, 5}) {
                request.mode = mode;
                const MotionOutcome outcome = Align(request);
                ExpectOutcome(outcome, KINE_OK);
                EXPECT_TRUE(IsJoints(outcome.target, joints, 1e-6, 6));
            }
        }
    }
}

TEST(Kine_CalcAlignPos, aligning_twice_changes_nothing_more)
{
    for (const std::size_t which : {0u, 1u}) {
        const MovedArm arm = SixAxisArms(which);
        Initialise(arm);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            for (const int32_t mode : {2, 5}) {
                request.mode = mode;
                request.current = arm.start;
                const MotionOutcome first = Align(request);
                ExpectOutcome(first, KINE_OK);
                EXPECT_FALSE(IsJoints(first.target, request.current, 1.0, 6));
                request.current = first.target;
                const MotionOutcome second = Align(request);
                ExpectOutcome(second, KINE_OK);
                EXPECT_TRUE(IsJoints(second.target, first.target, 1e-6, 6));
            }
        }
    }
}

TEST(Kine_CalcAlignPos, a_held_tool_is_aligned_and_its_point_stays)
{
    for (const std::size_t which : {0u, 1u}) {
        const MovedArm arm = SixAxisArms(which);
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        for (const int32_t mode : {2, 4, 5, -1}) {
            SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
            request.mode = mode;
            const Mat4 before = MatrixOf(CarriedInBase(request, request.current));
            const MotionOutcome outcome = ExpectAligns(arm, request, StandingCell(request));
            // The direction itself, apart from the rest: along one axis of the reference.
            const Mat4 reference = BaseFromReference(request, StandingCell(request));
            const Mat4 after = RigidInverse(reference) * MatrixOf(CarriedInBase(request, outcome.target));
            int along = 0;
            for (std::size_t i = 0; i < 3; ++i) along += std::fabs(std::fabs(after[i][2]) - 1.0) < 1e-9;
            EXPECT_EQ(along, 1);
            EXPECT_FALSE(IsFrame(FrameOf(before), reference * after, 1.0, 0.01));
        }
    }
}

TEST(Kine_CalcAlignPos, follows_the_robot_on_units_of_each_kind)
{
    for (const std::size_t which : {0u, 1u}) {
        const MovedArm arm = SixAxisArms(which);
        for (const KineMechUnit& carrier :
             {LinearUnit(kRail, kTravel, 2), RotaryUnit(kRail, 0), TwoRotaryUnit(kRail, kTravel, 4, 1)}) {
            Initialise(arm);
            PutRobotOn(carrier);
            for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
                JogCell cell = StandingCell(request);
                cell.worldFromBase = UnitMatrix(carrier, request.current.ExtAxis);
                for (const int32_t mode : {2, 4, 5, -1}) {
                    request.mode = mode;
                    SCOPED_TRACE(::testing::Message()
                                 << arm.name << ", mode " << mode << ", carrier " << carrier.UnitKind
                                 << ", tool byte " << int{request.tool.HeldByRobot});
                    const KineResult code = AlignCode(arm, request, cell, AfterAlign(request, cell));
                    if (code == KINE_OK) {
                        ExpectAligns(arm, request, cell);
                    } else {
                        ExpectOutcome(Align(request), code);
                    }
                }
            }
        }
    }
}

TEST(Kine_CalcAlignPos, follows_a_work_object_on_a_positioner)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    const KineMechUnit positioner = RotaryUnit({900.0, -400.0, 300.0, -40.0, 17.0, 11.0}, 5);
    SetUnitCounts(3, 6);
    StoreUnit(2, positioner);
    MotionRequest request = ToolOnRobot(arm);
    request.wobj = WobjOnUnit(2, {30.0, 60.0, 20.0, 35.0, 10.0, -15.0});
    const JogCell cell = {Identity4(),
                          UnitMatrix(positioner, request.current.ExtAxis) * MatrixOf(request.wobj.OFrame)};
    for (const int32_t mode : {4, -1}) {
        request.mode = mode;
        ExpectAligns(arm, request, cell);
    }
}

TEST(Kine_CalcAlignPos, under_a_held_work_object_base_and_world_mode_align_the_flange)
{
    for (const std::size_t which : {0u, 1u}) {
        const MovedArm arm = SixAxisArms(which);
        Initialise(arm);
        MotionRequest request = WobjOnRobot(arm);
        for (const int32_t mode : {2, 5}) {
            SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
            request.mode = mode;
            const MotionOutcome outcome = ExpectAligns(arm, request, StandingCell(request));
            const MotionRequest flange = ThroughFlange(request);
            const KineFrame before = CarriedInBase(flange, request.current);
            const KineFrame after = CarriedInBase(flange, outcome.target);
            EXPECT_NEAR(after.X, before.X, 1e-8);
            EXPECT_NEAR(after.Y, before.Y, 1e-8);
            EXPECT_NEAR(after.Z, before.Z, 1e-8);
            int along = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                along += std::fabs(std::fabs(MatrixOf(after)[i][2]) - 1.0) < 1e-9;
            }
            EXPECT_EQ(along, 1);
        }
    }
}

TEST(Kine_CalcAlignPos, under_a_held_work_object_modes_4_and_minus_1_turn_backwards_and_do_not_align)
{
    for (const std::size_t which : {0u, 1u}) {
        const MovedArm arm = SixAxisArms(which);
        Initialise(arm);
        MotionRequest request = WobjOnRobot(arm);
        for (const int32_t mode : {4, -1}) {
            SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
            request.mode = mode;
            const MotionOutcome outcome = ExpectAligns(arm, request, StandingCell(request));
            // The work object, and the flange, as the stationary tool sees them.
            const Mat4 toolFromAligned = RigidInverse(MatrixOf(request.tool.TFrame)) *
                                         MatrixOf(CarriedInBase(AlignedRequest(request), outcome.target));
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_LT(std::fabs(toolFromAligned[2][i]), 0.9999);
            }
        }
    }
}

TEST(Kine_CalcAlignPos, mode_minus_1_is_mode_4_for_a_held_tool)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 4;
    const MotionOutcome outcome = Align(request);
    ExpectOutcome(outcome, KINE_OK);
    request.mode = -1;
    EXPECT_TRUE(SameBits(Align(request).target, outcome.target));
}

TEST(Kine_CalcAlignPos, any_held_byte_but_0_is_held)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    for (const bool isTool : {true, false}) {
        for (const int32_t mode : {2, 4, 5, -1}) {
            MotionRequest request = isTool ? ToolOnRobot(arm) : WobjOnRobot(arm);
            request.mode = mode;
            const MotionOutcome outcome = Align(request);
            ExpectOutcome(outcome, KINE_OK);
            (isTool ? request.tool.HeldByRobot : request.wobj.HeldByRobot) = 2;
            EXPECT_TRUE(SameBits(Align(request).target, outcome.target)) << mode;
        }
    }
}

TEST(Kine_CalcAlignPos, base_and_world_mode_align_the_flange_when_nothing_is_held_and_the_tool_when_both_are)
{
    const MovedArm arm = MovedGravityArm();
    Initialise(arm);
    for (const uint8_t byte : {uint8_t{0}, uint8_t{1}}) {
        MotionRequest request = ToolOnRobot(arm);
        request.tool.HeldByRobot = request.wobj.HeldByRobot = byte;
        for (const int32_t mode : {2, 5}) {
            request.mode = mode;
            ExpectAligns(arm, request, StandingCell(request));
        }
    }
}

TEST(Kine_CalcAlignPos, the_target_may_be_the_current_joints)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    const MotionOutcome outcome = Align(request);
    ExpectOutcome(outcome, KINE_OK);
    EXPECT_EQ(
        Kine_CalcAlignPos(2, &request.current, &request.tool, &request.wobj, &request.load, &request.current),
        KINE_OK);
    EXPECT_TRUE(IsJoints(request.current, outcome.target, 0.0, 6));
}

TEST(Kine_CalcAlignPos, random_calls_agree_with_the_naive_procedure)
{
    SeededRandom random(20260702);
    int codes[3] = {};
    for (int round = 0; round < 600; ++round) {
        const MovedArm arm = SixAxisArms(random.Below(2));
        Initialise(arm);
        MotionRequest request = random.Below(2) == 0 ? ToolOnRobot(arm) : WobjOnRobot(arm);
        const int32_t modes[] = {2, 4, 5, -1};
        request.mode = modes[random.Below(4)];
        const double low[6] = {-170.0, -60.0, -50.0, -170.0, -110.0, -170.0};
        const double high[6] = {170.0, 60.0, 50.0, 170.0, 110.0, 170.0};
        ::testing::Message shown;
        for (int i = 0; i < 6; ++i)
            shown << (request.current.Axis[i] = random.Uniform(low[i], high[i])) << ' ';
        SCOPED_TRACE(::testing::Message()
                     << "round " << round << ", " << arm.name << ", mode " << request.mode << ", tool byte "
                     << int{request.tool.HeldByRobot} << ", joints " << shown);
        const JogCell cell = StandingCell(request);
        const KineResult code = AlignCode(arm, request, cell, AfterAlign(request, cell));
        if (code == KINE_OK) {
            ExpectAligns(arm, request, cell);
        } else {
            ExpectOutcome(Align(request), code);
        }
        ++codes[code == KINE_OK ? 0 : code == KINE_ERR_ALIGN_NO_SOLUTION ? 1 : 2];
    }
    for (const int count : codes) EXPECT_GT(count, 3);
}

// Refused jogs: order of the checks, codes, printed lines. That a refusal keeps every bit of the result and
// converts the step array all the same is checked in every call, see support/motion_calls.h.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "support/cell_setup.h"
#include "support/naive_jog.h"

using namespace kine::test;

namespace {

const std::string kWobjLine = "IsLegalWobj,!pWobj->UFFix:0;\n";

MotionRequest WristRequest(int32_t mode)
{
    MotionRequest request = ToolOnRobot(MovedWristArm());
    request.mode = mode;
    request.dir.Slot[0] = 1;
    return request;
}

// The records that are checked, each made unacceptable in one way, in the order of their checks.
struct Fault
{
    KineResult code;
    const char* printed;
    std::function<void(MotionRequest&)> make;
};

const Fault kFaults[] = {
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TFrame.A = 180.0000001; }},
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.wobj.UFrame.B = -181.0; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.load.Mass = -0.0001; }},
    {KINE_ERR_JOINT, "", [](MotionRequest& r) { r.null.current = true; }},
    {KINE_ERR_JOINT, "", [](MotionRequest& r) { r.null.target = true; }},
    // From here on inside the call.
    {KINE_ERR_NOT_INITIALISED, "", [](MotionRequest&) { SetUpRefusedArm(); }},
};

const Fault kOtherFaults[] = {
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.null.tool = true; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TLoad.Mass = -1e-9; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TLoad.Inertia[2] = -1.0; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TLoad.Aom[0] = 190.0; }},
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.null.wobj = true; }},
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.wobj.OFrame.C = 180.5; }},
    {KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:0;\n", [](MotionRequest& r) { r.wobj.UFFix = 0; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.null.load = true; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.load.Aom[1] = -180.1; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.load.Inertia[0] = -1e-9; }},
};

void ExpectJogRefused(const MotionRequest& request, KineResult code, const std::string& printed = "")
{
    SCOPED_TRACE(::testing::Message() << "mode " << request.mode);
    ExpectOutcome(Jog(request), code, printed);
}

constexpr int32_t kEveryMode[] = {1, 2, 3, 4, 5, 0, 6, -1};

}  // namespace

TEST(Kine_InchMovePosCalc, null_directions_or_steps_are_0x6018_before_everything_and_nothing_is_converted)
{
    SetUpRefusedArm();
    for (const int32_t mode : kEveryMode) {
        for (const bool isDir : {true, false}) {
            MotionRequest request = WristRequest(mode);
            (isDir ? request.null.dir : request.null.steps) = true;
            ExpectJogRefused(request, KINE_ERR_DIRECTION);
            for (const Fault& fault : kOtherFaults) {
                MotionRequest worse = request;
                fault.make(worse);
                ExpectJogRefused(worse, KINE_ERR_DIRECTION);
            }
            request.null = {true, true, true, true, true, true, true};
            ExpectJogRefused(request, KINE_ERR_DIRECTION);
        }
    }
}

TEST(Kine_InchMovePosCalc, refuses_each_record_with_its_code_and_converts_the_steps_all_the_same)
{
    Initialise(MovedWristArm());
    for (const int32_t mode : kEveryMode) {
        for (const Fault& fault : kOtherFaults) {
            MotionRequest request = WristRequest(mode);
            fault.make(request);
            ExpectJogRefused(request, fault.code, fault.printed);
        }
    }
}

TEST(Kine_InchMovePosCalc, of_two_faults_the_first_in_order_tool_wobj_load_joints_result_state_is_returned)
{
    for (std::size_t first = 0; first < std::size(kFaults); ++first) {
        for (std::size_t second = first; second < std::size(kFaults); ++second) {
            for (const int32_t mode : kEveryMode) {
                SCOPED_TRACE(::testing::Message() << "faults " << first << " and " << second);
                Initialise(MovedWristArm());
                MotionRequest request = WristRequest(mode);
                kFaults[first].make(request);
                kFaults[second].make(request);
                ExpectJogRefused(request, kFaults[first].code);
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, the_work_object_line_comes_from_whatever_call_checks_it)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(1);
    request.wobj.UFFix = 0;
    request.load.Mass = -1.0;
    ExpectJogRefused(request, KINE_ERR_WOBJ, kWobjLine);
    // A refused tool does not end the copying, but it ends the checks.
    request.tool.TFrame.C = 200.0;
    ExpectJogRefused(request, KINE_ERR_TOOL);
    // A negative index passes.
    request = WristRequest(1);
    request.wobj = WobjOnUnit(-1);
    ExpectOutcome(Jog(request), KINE_OK);
}

TEST(Kine_InchMovePosCalc, angles_of_exactly_180_degrees_pass)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(2);
    request.tool.TFrame.A = 180.0;
    request.wobj.OFrame.C = -180.0;
    request.load.Aom[2] = 180.0;
    ExpectOutcome(Jog(request), KINE_OK);
}

TEST(Kine_InchMovePosCalc, an_uninitialised_library_is_0x6001_without_a_line_in_every_mode)
{
    SetUpRefusedArm();
    for (const int32_t mode : kEveryMode) {
        MotionRequest request = WristRequest(mode);
        ExpectJogRefused(request, KINE_ERR_NOT_INITIALISED);
        // Also before the question who holds what.
        request.wobj.HeldByRobot = 1;
        ExpectJogRefused(request, KINE_ERR_NOT_INITIALISED);
    }
}

TEST(Kine_InchMovePosCalc, both_held_is_0x6050_with_its_line_in_tool_and_work_object_mode)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const uint8_t byte : {uint8_t{1}, uint8_t{2}, uint8_t{255}}) {
            MotionRequest request = ToolOnRobot(arm);
            request.wobj.HeldByRobot = byte;
            for (const int32_t mode : {3, 4}) {
                request.mode = mode;
                ExpectJogRefused(request, KINE_ERR_HOLD_CONFLICT, "FK Error 2:24656\n");
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, neither_held_is_0x6050_with_its_line_in_work_object_mode_only)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.tool.HeldByRobot = 0;
        for (const int32_t mode : kEveryMode) {
            request.mode = mode;
            const bool isRefused = mode == 4;
            ExpectOutcome(Jog(request), isRefused ? KINE_ERR_HOLD_CONFLICT : KINE_OK,
                          isRefused ? "FK Error 2:24656\n" : "");
        }
    }
}

TEST(Kine_InchMovePosCalc, unusable_unit_under_the_robot_stops_world_mode_silently_and_the_chains_with_line_4)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        SetUnitCounts(3, 6);
        KineMechUnit unit = RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0);
        unit.UnitKind = 9;
        StoreUnit(0, CarryingRobot(unit, 1));
        StoreUnit(1, unit);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            for (const int32_t mode : {1, 2, 0}) {
                request.mode = mode;
                ExpectOutcome(Jog(request), KINE_OK);
            }
            request.mode = 5;
            ExpectJogRefused(request, KINE_ERR_F2W_UNIT_KIND);
            // Before the target out of reach is solved for.
            request.dir.Slot[0] = 1000;
            ExpectJogRefused(request, KINE_ERR_F2W_UNIT_KIND);
            for (const int32_t mode : {3, 4}) {
                request.mode = mode;
                ExpectJogRefused(request, KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n");
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, axis_frame_at_the_origin_under_the_robot_stops_the_inverse_chain_only)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    SetUnitCounts(3, 6);
    const KineMechUnit unit = RotaryUnit({0.0, 0.0, 0.0, 30.0, 0.0, 0.0}, 0);
    StoreUnit(0, CarryingRobot(unit, 1));
    StoreUnit(1, unit);
    for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
        for (const int32_t mode : {3, 4}) {
            request.mode = mode;
            ExpectJogRefused(request, KINE_ERR_AXIS_ORIGIN, "IK error 3:24628\n");
        }
        for (const int32_t mode : {2, 5}) {
            request.mode = mode;
            ExpectOutcome(Jog(request), KINE_OK);
        }
    }
}

TEST(Kine_InchMovePosCalc, unusable_unit_under_the_work_object_stops_the_chains_with_line_6)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.wobj = WobjOnUnit(-1);
        for (const int32_t mode : kEveryMode) {
            request.mode = mode;
            const bool isRefused = mode == 3 || mode == 4;
            ExpectOutcome(Jog(request), isRefused ? KINE_ERR_W2F_UNIT_KIND : KINE_OK,
                          isRefused ? "FK Error 6:24625\n" : "");
        }
    }
}

TEST(Kine_InchMovePosCalc, out_of_reach_is_the_code_of_the_arm_with_line_5_of_the_inverse_in_the_chains)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        const KineResult code = arm.IsSixAxis() ? KINE_ERR_IK_7 : KINE_ERR_IK_REACH;
        const std::string line = arm.IsSixAxis() ? "IK error 5:24727\n" : "IK error 5:24724\n";
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            request.steps[1] = 10000.0;
            request.dir.Slot[0] = request.dir.Slot[1] = 1;
            for (const int32_t mode : {2, 3, 4, 5}) {
                request.mode = mode;
                ExpectJogRefused(request, code, mode == 3 || mode == 4 ? line : "");
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, posture_beyond_the_axis_limits_is_0x6090_without_a_line_in_the_chains_only)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        const KineJoint upper = MakeJoints({10.0, 10.0, 10.0, 10.0, 10.0, 10.0});
        const KineJoint lower = MakeJoints({-10.0, -10.0, -10.0, -10.0, -10.0, -10.0});
        ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            request.current.Axis[3] = 300.0;  // quarter turn 3, two beyond that of 10 degrees and one more
            for (const int32_t mode : {2, 3, 4, 5}) {
                request.mode = mode;
                ExpectOutcome(Jog(request), mode == 3 || mode == 4 ? KINE_ERR_CONFIG : KINE_OK);
            }
        }
    }
}

TEST(Kine_InchMovePosCalc, singular_target_is_0x6092_without_a_line_in_every_cartesian_mode)
{
    // Nearly stretched, the tilts of a calibrated four-axis arm take the target out of reach of its closed
    // form.
    for (const MovedArm& arm : {MovedWristArm(), MovedGravityArm(), MovedScara(), MovedScara4110()}) {
        Initialise(arm);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            // 2.9 degrees: within 0.0524 rad and below a sine of 0.087266, but no trouble to the inverse.
            if (arm.IsSixAxis()) request.current.Axis[4] = 2.9;
            if (arm.type == KINE_ARM_FOUR_AXIS) request.current.Axis[1] = 2.9;
            if (arm.type == KINE_ARM_FOUR_AXIS_4110) request.current.Axis[1] = -182.9;
            for (const int32_t mode : {2, 3, 4, 5}) {
                request.mode = mode;
                ExpectJogRefused(request, KINE_ERR_INCH_SINGULAR);
            }
        }
    }
}

// Along X the flange of a SCARA in the XZ plane, elbow angle e, is sqrt(325^2 + 275^2 + 2 325 275 cos e)
// away.
TEST(Kine_InchMovePosCalc, four_axis_step_ends_at_the_singularity_threshold_of_axis_2)
{
    const auto distance = [](double elbow) {
        return std::sqrt(325.0 * 325.0 + 275.0 * 275.0 + 2.0 * 325.0 * 275.0 * std::cos(elbow));
    };
    const MovedArm arm = MovedScara();
    Initialise(arm);
    constexpr double kFrom = 0.06;
    MotionRequest request = ToolOnRobot(arm);
    request.tool.TFrame = {};
    const double axis1 = -std::atan2(275.0 * std::sin(kFrom), 325.0 + 275.0 * std::cos(kFrom));
    request.current = MakeJoints({InDegrees(axis1), InDegrees(kFrom), 200.0, 30.0});
    request.dir.Slot[0] = 1;
    for (const auto& [elbow, code] :
         {std::pair{0.05, KINE_ERR_INCH_SINGULAR}, std::pair{0.0524 - 1e-7, KINE_ERR_INCH_SINGULAR},
          std::pair{0.0524 + 1e-7, KINE_OK}}) {
        request.steps[1] = distance(elbow) - distance(kFrom);
        const MotionOutcome outcome = Jog(request);
        ExpectOutcome(outcome, code);
        if (code == KINE_OK) {
            EXPECT_NEAR(outcome.target.Axis[1], InDegrees(elbow), 1e-9);
        }
    }
}

// With axes 4 and 6 at 0 the Y axis of the flange is that of axis 5, and a tool point in the wrist centre
// leaves axes 1 to 3 where they are: a turn about Y of the tool is one of axis 5.
TEST(Kine_InchMovePosCalc, six_axis_turn_ends_at_the_singularity_threshold_of_the_wrist)
{
    const MovedArm arm = MovedWristArm();
    Initialise(arm);
    MotionRequest request = ToolOnRobot(arm);
    request.mode = 3;
    request.tool.TFrame = {0.0, 0.0, -85.0, 0.0, 0.0, 0.0};
    request.current = MakeJoints({35.0, -25.0, 20.0, 0.0, 10.0, 0.0});
    request.dir.Slot[4] = -1;
    const double threshold = InDegrees(std::asin(0.087266));
    request.steps[2] = 10.0 - (threshold + 1e-7);
    const MotionOutcome outcome = Jog(request);
    ExpectOutcome(outcome, KINE_OK);
    EXPECT_TRUE(
        IsJoints(outcome.target, MakeJoints({35.0, -25.0, 20.0, 0.0, threshold + 1e-7, 0.0}), 1e-9, 6));
    request.steps[2] = 10.0 - (threshold - 1e-7);
    ExpectJogRefused(request, KINE_ERR_INCH_SINGULAR);
}

TEST(Kine_InchMovePosCalc, a_step_that_is_not_a_number_is_refused_by_the_inverse)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const std::size_t step : {1u, 2u}) {
            for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()}) {
                MotionRequest request = ToolOnRobot(arm);
                request.steps[step] = value;
                request.dir = {{1, 1, 1, 1, 1, 1}};
                for (const int32_t mode : {2, 3, 4, 5}) {
                    request.mode = mode;
                    SCOPED_TRACE(::testing::Message() << arm.name << ", mode " << mode);
                    const MotionOutcome outcome = Jog(request);
                    EXPECT_GE(outcome.code, KINE_ERR_CONFIG);
                    EXPECT_LE(outcome.code, KINE_ERR_IK_ACCURACY);
                }
            }
        }
    }
}

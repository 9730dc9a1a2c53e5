// Refused alignments: order of the checks, codes, printed lines. That a refusal keeps every bit of the result
// is checked in every call, see support/motion_calls.h.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "support/cell_setup.h"
#include "support/motion_calls.h"

using namespace kine::test;

namespace {

const std::string kWobjLine = "IsLegalWobj,!pWobj->UFFix:0;\n";

constexpr int32_t kModes[] = {2, 4, 5, -1};
const int32_t kUndefinedModes[] = {
    0, 1, 3, 6, -2, 7, 258, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};

MotionRequest WristRequest(int32_t mode)
{
    MotionRequest request = ToolOnRobot(MovedWristArm());
    request.mode = mode;
    return request;
}

struct Fault
{
    KineResult code;
    const char* printed;
    std::function<void(MotionRequest&)> make;
};

// In the order of their checks.
const Fault kFaults[] = {
    {KINE_ERR_JOINT, "", [](MotionRequest& r) { r.null.current = true; }},
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.wobj.UFrame.B = -181.0; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TFrame.A = 180.0000001; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.load.Mass = -0.0001; }},
    {KINE_ERR_JOINT, "", [](MotionRequest& r) { r.null.target = true; }},
    // From here on inside the call.
    {KINE_ERR_NOT_INITIALISED, "", [](MotionRequest&) { SetUpRefusedArm(); }},
    {KINE_ERR_DIRECTION, "", [](MotionRequest& r) { r.mode = 3; }},
};

const Fault kOtherFaults[] = {
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.null.wobj = true; }},
    {KINE_ERR_WOBJ, "", [](MotionRequest& r) { r.wobj.OFrame.C = 180.5; }},
    {KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:0;\n", [](MotionRequest& r) { r.wobj.UFFix = 0; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.null.tool = true; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TLoad.Mass = -1e-9; }},
    {KINE_ERR_TOOL, "", [](MotionRequest& r) { r.tool.TLoad.Inertia[1] = -1.0; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.null.load = true; }},
    {KINE_ERR_LOAD, "", [](MotionRequest& r) { r.load.Aom[0] = 181.0; }},
};

void ExpectAlignRefused(const MotionRequest& request, KineResult code, const std::string& printed = "")
{
    SCOPED_TRACE(::testing::Message() << "mode " << request.mode);
    ExpectOutcome(Align(request), code, printed);
}

std::vector<MovedArm> RigidArms() { return {MovedWristArm(), MovedScara(), MovedScara4110()}; }

}  // namespace

TEST(Kine_CalcAlignPos, refuses_each_record_with_its_code)
{
    Initialise(MovedWristArm());
    for (const int32_t mode : kModes) {
        for (const Fault& fault : kOtherFaults) {
            MotionRequest request = WristRequest(mode);
            fault.make(request);
            ExpectAlignRefused(request, fault.code, fault.printed);
        }
    }
}

TEST(Kine_CalcAlignPos, of_two_faults_the_first_in_order_joints_wobj_tool_load_result_state_mode_is_returned)
{
    for (std::size_t first = 0; first < std::size(kFaults); ++first) {
        for (std::size_t second = first; second < std::size(kFaults); ++second) {
            for (const int32_t mode : kModes) {
                SCOPED_TRACE(::testing::Message() << "faults " << first << " and " << second);
                Initialise(MovedWristArm());
                MotionRequest request = WristRequest(mode);
                kFaults[first].make(request);
                kFaults[second].make(request);
                ExpectAlignRefused(request, kFaults[first].code);
            }
        }
    }
}

TEST(Kine_CalcAlignPos, the_work_object_line_is_printed_before_the_tool_is_looked_at_and_not_after_the_joints)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(2);
    request.wobj.UFFix = 0;
    request.tool.TFrame.B = 200.0;
    request.load.Mass = -1.0;
    ExpectAlignRefused(request, KINE_ERR_WOBJ, kWobjLine);
    request.null.current = true;
    ExpectAlignRefused(request, KINE_ERR_JOINT);
}

TEST(Kine_CalcAlignPos, an_uninitialised_library_is_0x6001_without_a_line_in_every_mode)
{
    SetUpRefusedArm();
    for (const int32_t mode : kModes) {
        MotionRequest request = WristRequest(mode);
        ExpectAlignRefused(request, KINE_ERR_NOT_INITIALISED);
        request.wobj.HeldByRobot = 1;
        ExpectAlignRefused(request, KINE_ERR_NOT_INITIALISED);
        request.tool.HeldByRobot = request.wobj.HeldByRobot = 0;
        ExpectAlignRefused(request, KINE_ERR_NOT_INITIALISED);
    }
    for (const int32_t mode : kUndefinedModes) {
        ExpectAlignRefused(WristRequest(mode), KINE_ERR_NOT_INITIALISED);
    }
}

TEST(Kine_CalcAlignPos, undefined_mode_is_0x6018_before_any_chain_prints)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        // A robot on a unit that cannot be used, over a work object on another one.
        SetUnitCounts(3, 6);
        KineMechUnit unit = RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0);
        unit.UnitKind = 9;
        StoreUnit(0, CarryingRobot(unit, 1));
        StoreUnit(1, unit);
        for (const int32_t mode : kUndefinedModes) {
            for (const uint8_t toolByte : {uint8_t{0}, uint8_t{1}}) {
                for (const uint8_t wobjByte : {uint8_t{0}, uint8_t{1}}) {
                    MotionRequest request = ToolOnRobot(arm);
                    request.mode = mode;
                    request.tool.HeldByRobot = toolByte;
                    request.wobj = WobjOnUnit(1);
                    request.wobj.HeldByRobot = wobjByte;
                    ExpectAlignRefused(request, KINE_ERR_DIRECTION);
                }
            }
        }
    }
}

TEST(Kine_CalcAlignPos, work_object_modes_with_nothing_held_are_0x6018_without_a_line)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.tool.HeldByRobot = 0;
        for (const int32_t mode : {4, -1}) {
            request.mode = mode;
            ExpectAlignRefused(request, KINE_ERR_DIRECTION);
        }
    }
}

TEST(Kine_CalcAlignPos, work_object_modes_with_both_held_are_0x6050_with_their_line)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (const uint8_t byte : {uint8_t{1}, uint8_t{2}, uint8_t{255}}) {
            MotionRequest request = ToolOnRobot(arm);
            request.wobj.HeldByRobot = byte;
            for (const int32_t mode : {4, -1}) {
                request.mode = mode;
                ExpectAlignRefused(request, KINE_ERR_HOLD_CONFLICT, "FK Error 2:24656\n");
            }
        }
    }
}

TEST(Kine_CalcAlignPos, unusable_unit_under_the_robot_stops_world_mode_silently_and_the_chains_with_line_4)
{
    for (const MovedArm& arm : RigidArms()) {
        Initialise(arm);
        SetUnitCounts(3, 6);
        KineMechUnit unit = RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0);
        unit.UnitKind = 9;
        StoreUnit(0, CarryingRobot(unit, 1));
        StoreUnit(1, unit);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            request.mode = 2;
            ExpectOutcome(Align(request), KINE_OK);
            request.mode = 5;
            ExpectAlignRefused(request, KINE_ERR_F2W_UNIT_KIND);
            for (const int32_t mode : {4, -1}) {
                request.mode = mode;
                ExpectAlignRefused(request, KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n");
            }
        }
    }
}

TEST(Kine_CalcAlignPos, unusable_unit_under_the_work_object_stops_the_work_object_modes_with_line_6)
{
    for (const MovedArm& arm : RigidArms()) {
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.wobj = WobjOnUnit(-1);
        for (const int32_t mode : kModes) {
            request.mode = mode;
            const bool isRefused = mode == 4 || mode == -1;
            ExpectOutcome(Align(request), isRefused ? KINE_ERR_W2F_UNIT_KIND : KINE_OK,
                          isRefused ? "FK Error 6:24625\n" : "");
        }
    }
}

// The tool point in the wrist centre, axes 4 and 6 at 0: axis 5 has to make the sum of axes 2, 3 and 5 a
// multiple of 90 degrees.
TEST(Kine_CalcAlignPos, straight_wrist_in_the_aligned_pose_is_0x6080)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(2);
    request.tool = HeldTool({0.0, 0.0, -85.0, 40.0, 0.0, 0.0});
    request.current = MakeJoints({0.0, -30.0, 30.0, 0.0, 20.0, 0.0});
    for (const int32_t mode : {2, 5}) {
        request.mode = mode;
        ExpectAlignRefused(request, KINE_ERR_ALIGN_NO_SOLUTION);
    }
}

// The same with a sum of 30 degrees, axis 5 at 20: it has to go to -10. The current posture, with a positive
// axis 5, gets there only by half a turn of axes 4 and 6; the posture with the other sign is nearer.
TEST(Kine_CalcAlignPos, another_posture_of_the_six_axis_arm_nearer_to_the_current_joints_is_0x6081)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(2);
    request.tool = HeldTool({0.0, 0.0, -85.0, 40.0, 0.0, 0.0});
    request.current = MakeJoints({0.0, -20.0, 30.0, 0.0, 20.0, 0.0});
    ExpectAlignRefused(request, KINE_ERR_ALIGN_TURN);
    request.current = MakeJoints({0.0, 20.0, -30.0, 0.0, -20.0, 0.0});
    ExpectAlignRefused(request, KINE_ERR_ALIGN_TURN);
    // From the other side of the straight wrist it is a small step.
    request.current = MakeJoints({0.0, -20.0, 30.0, 0.0, -20.0, 0.0});
    ExpectOutcome(Align(request), KINE_OK);
}

// The inverse brings axis 2 back to within half a turn, however many turns away it stands. From 2160 rad on
// no solution counts and the search stays at the posture it begins with, 0. 343 turns are 2155.1 rad, 344 are
// 2161.4, and axis 5 adds 0.2 to either.
TEST(Kine_CalcAlignPos, from_2160_rad_on_every_posture_but_0_is_0x6081)
{
    Initialise(MovedWristArm());
    MotionRequest request = WristRequest(2);
    request.tool = HeldTool({0.0, 0.0, -85.0, 40.0, 0.0, 0.0});
    for (const double turns : {-344.0, -343.0, 343.0, 344.0}) {
        SCOPED_TRACE(turns);
        // Posture 0, with a positive axis 5.
        request.current = MakeJoints({0.0, -20.0 + 360.0 * turns, 30.0, 0.0, 70.0, 0.0});
        const MotionOutcome outcome = Align(request);
        ExpectOutcome(outcome, KINE_OK);
        EXPECT_TRUE(IsJoints(outcome.target, MakeJoints({0.0, -20.0, 30.0, 0.0, 80.0, 0.0}), 1e-6, 6));
        // Posture 1.
        request.current.Axis[4] = -110.0;
        ExpectOutcome(Align(request), std::fabs(turns) < 344.0 ? KINE_OK : KINE_ERR_ALIGN_TURN);
    }
}

TEST(Kine_CalcAlignPos, negative_axis_4_of_a_four_axis_arm_is_0x6081)
{
    for (const MovedArm& arm : {MovedScara(), MovedScara4110(), Tilted(MovedScara(), "tilted type 4"),
                                Tilted(MovedScara4110(), "tilted type 4110")}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        for (MotionRequest request : {ToolOnRobot(arm), WobjOnRobot(arm)}) {
            for (const double axis4 : {-0.01, -30.0, -100.0, -300.0, -1000.0}) {
                request.current.Axis[3] = axis4;
                for (const int32_t mode : kModes) {
                    request.mode = mode;
                    ExpectAlignRefused(request, KINE_ERR_ALIGN_TURN);
                }
            }
        }
    }
}

// Three whole turns on: the solutions for Cfg4 up to 7 end two quarter turns above 7.
TEST(Kine_CalcAlignPos, axis_4_of_a_four_axis_arm_beyond_the_turns_tried_is_0x6081)
{
    for (const MovedArm& arm : {MovedScara(), MovedScara4110()}) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.current.Axis[3] = 75.0 + 3.0 * 360.0;
        ExpectAlignRefused(request, KINE_ERR_ALIGN_TURN);
    }
}

TEST(Kine_CalcAlignPos, stretched_elbow_of_arm_type_4_is_0x6080)
{
    Initialise(MovedScara());
    MotionRequest request = ToolOnRobot(MovedScara());
    request.current.Axis[1] = 0.02;  // below 0.0005 rad: refused by the inverse
    for (const int32_t mode : kModes) {
        request.mode = mode;
        ExpectAlignRefused(request, KINE_ERR_ALIGN_NO_SOLUTION);
    }
}

TEST(Kine_CalcAlignPos, turn_numbers_beyond_a_million_are_0x6080)
{
    for (const MovedArm& arm : RigidArms()) {
        SCOPED_TRACE(arm.name);
        Initialise(arm);
        MotionRequest request = ToolOnRobot(arm);
        request.current.Axis[3] = 1e9;
        ExpectAlignRefused(request, KINE_ERR_ALIGN_NO_SOLUTION);
    }
}

TEST(Kine_CalcAlignPos, not_a_number_is_0x6080)
{
    for (const MovedArm& arm : MovedArms()) {
        Initialise(arm);
        for (int axis = 0; axis < arm.Axes(); ++axis) {
            SCOPED_TRACE(::testing::Message() << arm.name << ", axis " << axis + 1);
            MotionRequest request = ToolOnRobot(arm);
            request.current.Axis[axis] = std::nan("");
            for (const int32_t mode : kModes) {
                request.mode = mode;
                ExpectAlignRefused(request, KINE_ERR_ALIGN_NO_SOLUTION);
            }
        }
    }
}

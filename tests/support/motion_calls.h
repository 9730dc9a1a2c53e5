// The jog and the alignment call behind one face each: every call here also checks what holds for all of
// them, refused ones included. And the arms on which they are tried.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "KineDll.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stdout_capture.h"

namespace kine::test {

// The factor of the interface, written out once more.
inline constexpr double kDegToRad = 0.017453292519943295;

struct MotionNulls
{
    bool dir = false;
    bool steps = false;
    bool tool = false;
    bool wobj = false;
    bool load = false;
    bool current = false;
    bool target = false;
};

struct MotionRequest
{
    int32_t mode = 2;
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
    KineJoint current{};
    // Of the jog only.
    KineInchDir dir{};
    double steps[3] = {1.0, 12.5, 4.0};
    MotionNulls null{};
};

struct MotionOutcome
{
    KineResult code;
    bool untouched;  // the result record kept every bit
    std::string printed;
    KineJoint target;
    double steps[3];  // the caller's array after the jog
};

inline void ExpectInputsKept(const MotionRequest& after, const MotionRequest& before)
{
    EXPECT_TRUE(SameBits(after.dir, before.dir));
    EXPECT_TRUE(SameBits(after.tool, before.tool));
    EXPECT_TRUE(SameBits(after.wobj, before.wobj));
    EXPECT_TRUE(SameBits(after.load, before.load));
    EXPECT_TRUE(SameBits(after.current, before.current));
}

// Joint and rotation step become radians in the caller's array, the linear step stays; nothing changes when
// the array or the directions are missing.
inline void ExpectStepsConverted(const MotionRequest& after, const MotionRequest& before)
{
    const bool isConverted = !before.null.dir && !before.null.steps;
    const double factor = isConverted ? kDegToRad : 1.0;
    for (const std::size_t i : {0u, 2u}) {
        const double expected = before.steps[i] * factor;
        EXPECT_TRUE(after.steps[i] == expected || (std::isnan(after.steps[i]) && std::isnan(expected)));
    }
    EXPECT_TRUE(SameBits(after.steps[1], before.steps[1]));
}

template <class Call>
MotionOutcome PerformMotion(const MotionRequest& request, Call&& call)
{
    MotionRequest given = request;
    MotionOutcome outcome{};
    outcome.target = Untouched<KineJoint>();
    outcome.printed = PrintedBy([&] {
        outcome.code =
            call(given, request.null.tool ? nullptr : &given.tool, request.null.wobj ? nullptr : &given.wobj,
                 request.null.load ? nullptr : &given.load, request.null.current ? nullptr : &given.current,
                 request.null.target ? nullptr : &outcome.target);
    });
    outcome.untouched = IsUntouched(outcome.target);
    for (std::size_t i = 0; i < 3; ++i) outcome.steps[i] = given.steps[i];
    ExpectInputsKept(given, request);
    if (outcome.code != KINE_OK) {
        EXPECT_TRUE(outcome.untouched) << "a refused call wrote its result";
    }
    return outcome;
}

inline MotionOutcome Jog(const MotionRequest& request)
{
    return PerformMotion(request, [&](MotionRequest& given, const auto* tool, const auto* wobj,
                                      const auto* load, const auto* current, auto* target) {
        const KineResult code =
            Kine_InchMovePosCalc(request.null.dir ? nullptr : &given.dir, request.mode, tool, wobj, load,
                                 request.null.steps ? nullptr : given.steps, current, target);
        ExpectStepsConverted(given, request);
        return code;
    });
}

inline MotionOutcome Align(const MotionRequest& request)
{
    return PerformMotion(request, [&](MotionRequest&, const auto* tool, const auto* wobj, const auto* load,
                                      const auto* current, auto* target) {
        return Kine_CalcAlignPos(request.mode, current, tool, wobj, load, target);
    });
}

inline void ExpectOutcome(const MotionOutcome& outcome, KineResult code, const std::string& printed = "")
{
    EXPECT_EQ(outcome.code, code) << "0x" << std::hex << outcome.code << " instead of 0x" << code;
    EXPECT_EQ(outcome.printed, printed);
}

// The axes of two joint sets are the same within a tolerance in degrees, the external axes bit for bit.
inline ::testing::AssertionResult IsJoints(const KineJoint& actual, const KineJoint& expected,
                                           double tolerance, int axes = 8)
{
    for (int i = 0; i < axes; ++i) {
        if (!(std::fabs(actual.Axis[i] - expected.Axis[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "axis " << i + 1 << " is " << actual.Axis[i] << " instead of " << expected.Axis[i];
        }
    }
    if (!SameBits(actual.ExtAxis, expected.ExtAxis)) {
        return ::testing::AssertionFailure() << "the external axes differ";
    }
    return ::testing::AssertionSuccess();
}

// An arm to move: the joints are away from every singularity.
struct MovedArm
{
    const char* name;
    uint32_t type;
    KineKinematicParam param;
    KineJoint start;
    double tolerance;  // of a result, mm and rotation-matrix elements

    [[nodiscard]] bool IsSixAxis() const { return type == KINE_ARM_SIX_AXIS; }
    [[nodiscard]] int Axes() const { return IsSixAxis() ? 6 : 4; }
};

inline KineJoint WithExtAxes(KineJoint joints)
{
    const double values[6] = {33.0, -47.0, 250.0, -360.0, 62.0, 118.0};
    for (int i = 0; i < 6; ++i) joints.ExtAxis[i] = values[i];
    return joints;
}

inline MovedArm MovedWristArm()
{
    return {"wrist arm", KINE_ARM_SIX_AXIS, WristArm(),
            WithExtAxes(MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0})), 1e-8};
}

inline MovedArm MovedGravityArm()
{
    MovedArm arm = MovedWristArm();
    arm.name = "calibrated wrist arm with gravity";
    arm.param = CalibratedWristArm();
    return arm;
}

inline MovedArm MovedScara()
{
    return {"arm type 4", KINE_ARM_FOUR_AXIS, Scara(), WithExtAxes(MakeJoints({-40.0, 60.0, 200.0, 75.0})),
            1e-8};
}

// Axis 2 is the angle between the links less half a turn: the same stance as that of type 4.
inline MovedArm MovedScara4110()
{
    MovedArm arm = MovedScara();
    arm.name = "arm type 4110";
    arm.type = KINE_ARM_FOUR_AXIS_4110;
    arm.start.Axis[1] = -120.0;
    return arm;
}

// With tilts the inverse of these arms stops at a squared error of 1e-12.
inline MovedArm Tilted(MovedArm arm, const char* name)
{
    arm.name = name;
    arm.param = TiltedScara();
    arm.tolerance = 2e-6;
    return arm;
}

inline std::vector<MovedArm> MovedArms()
{
    return {MovedWristArm(),
            MovedGravityArm(),
            MovedScara(),
            MovedScara4110(),
            Tilted(MovedScara(), "arm type 4 with tilts"),
            Tilted(MovedScara4110(), "arm type 4110 with tilts")};
}

inline void Initialise(const MovedArm& arm)
{
    ASSERT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 1), KINE_OK);
    ASSERT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
}

// The records of a cell with a loaded tool on the flange and a work object in the world.
inline MotionRequest ToolOnRobot(const MovedArm& arm)
{
    MotionRequest request;
    request.tool = HeldTool({30.0, -40.0, 150.0, 20.0, -35.0, 75.0});
    request.tool.TLoad = MakeLoad(3.0, 10.0, -5.0, 60.0);
    request.wobj =
        FixedWobj({400.0, -200.0, 100.0, 15.0, 25.0, -10.0}, {-50.0, 80.0, 20.0, -95.0, 5.0, 45.0});
    request.load = MakeLoad(5.0, -20.0, 30.0, 40.0);
    request.current = arm.start;
    return request;
}

// The work object on the flange, moved past a tool in the world.
inline MotionRequest WobjOnRobot(const MovedArm& arm)
{
    MotionRequest request = ToolOnRobot(arm);
    request.tool.HeldByRobot = 0;
    request.tool.TFrame = {500.0, 150.0, 300.0, 40.0, -15.0, 20.0};
    request.wobj = HeldWobj({20.0, 35.0, 110.0, -30.0, 25.0, 50.0}, {15.0, -10.0, 5.0, 10.0, -40.0, 30.0});
    return request;
}

}  // namespace kine::test

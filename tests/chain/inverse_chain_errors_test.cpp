// What stops the inverse chain: code, line and order of the steps. A failing chain leaves the joints alone.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "chain/inverse_chain.h"
#include "support/cell_plans.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::uint8_t kBytes[] = {0, 1, 2, 255};

constexpr CellPlan kPlan{kSix, kOneRotaryAxis, kTwoRotaryAxes};
constexpr Pose kWobjFrame{1.0, 2.0, 3.0, 0.1, 0.2, 0.3};

// A target that the cell of kPlan reaches, with a held tool and the work object on its unit.
InverseRequest GoodRequest()
{
    const Pose toolFrame = CarriedFrame(kPlan);
    const Mat4 target = RigidInverse(WorldFromWobj(kPlan, kWobjFrame)) * WorldFromBase(kPlan) *
                        BaseFromFlange(kPlan) * MatrixOf(toolFrame);
    return {MakeTool(1, toolFrame),
            CellWobj(kPlan, kWobjFrame),
            {},
            {PoseOf(target), CellConfig(kPlan), kExtAxis}};
}

InverseRequest StationaryToolRequest()
{
    InverseRequest request = GoodRequest();
    request.tool = MakeTool(0, {500.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    request.wobj = MakeWobj(1, CarriedFrame(kPlan));
    return request;
}

// A target in the base of an arm at the origin, with neither tool frame nor work object.
InverseRequest TargetInBase(const Pose& target, const KineArmConfig& config)
{
    return {MakeTool(1, {}), MakeWobj(0, {}), {}, {target, config, {}}};
}

void ExpectFailure(const Store& store, const InverseRequest& request, KineResult code,
                   const std::string& line)
{
    Joints joints = Untouched<Joints>();
    KineResult result = 0;
    EXPECT_EQ(PrintedBy([&] { result = WobjToJoint(store, request, joints); }), line);
    EXPECT_EQ(result, code);
    EXPECT_TRUE(IsUntouched(joints));
}

// Calls the code with the good request for every pair of hold bytes that contradict each other.
template <class Code>
void ForAllConflicts(Code&& code)
{
    for (const std::uint8_t tool : kBytes) {
        for (const std::uint8_t wobj : kBytes) {
            if ((tool != 0) != (wobj != 0)) continue;
            SCOPED_TRACE(testing::Message() << int{tool} << ", " << int{wobj});
            InverseRequest request = GoodRequest();
            request.tool.heldByRobot = tool;
            request.wobj.heldByRobot = wobj;
            code(request);
        }
    }
}

}  // namespace

TEST(WobjToJoint, good_request_of_these_tests_succeeds)
{
    Joints joints{};
    EXPECT_EQ(WobjToJoint(MakeCell(kPlan), GoodRequest(), joints), 0u);
    EXPECT_NEAR(joints.axis[5], kAxes[5], 1e-9);
}

TEST(WobjToJoint, not_initialised_fails_silently)
{
    for (const std::int32_t state : {0, 1, 3}) {
        Store store = MakeCell(kPlan);
        store.arm.initState = state;
        ExpectFailure(store, GoodRequest(), 0x6001u, "");
        ExpectFailure(store, StationaryToolRequest(), 0x6001u, "");
    }
}

TEST(WobjToJoint, unknown_arm_type_fails_silently)
{
    for (const std::int32_t type : {0, 5, kMax}) {
        Store store = MakeCell(kPlan);
        store.arm.armType = type;
        ExpectFailure(store, GoodRequest(), 0xFFFFFFFFu, "");
    }
}

// Axis 1 up to 170 degrees, quarter turn 1: 3 is two beyond it and 4 too many. Down to -170: quarter turn -2.
TEST(WobjToJoint, configuration_beyond_the_limits_fails_silently)
{
    Store store = MakeCell(kPlan);
    AxisLimits limits = OpenLimits();
    limits.upper.axis[0] = InRadians(170.0);
    limits.lower.axis[0] = InRadians(-170.0);
    ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);

    for (const std::int32_t cfg1 : {4, -5, kMax, std::numeric_limits<std::int32_t>::min()}) {
        InverseRequest request = GoodRequest();
        request.target.config.Cfg1 = cfg1;
        ExpectFailure(store, request, 0x6090u, "");
    }
    for (const std::int32_t cfg1 : {3, -4}) {
        InverseRequest request = GoodRequest();
        request.target.config.Cfg1 = cfg1;
        Joints joints{};
        EXPECT_EQ(WobjToJoint(store, request, joints), 0u) << cfg1;
    }
}

// Only the integers are compared: the angles of the target may have any size, and NaN is for the arm to
// refuse.
TEST(WobjToJoint, configuration_check_does_not_look_at_the_frame)
{
    InverseRequest request = GoodRequest();
    Pose frame = request.target.frame;
    frame.a += 4.0 * kHalfTurn;
    request.target.frame = frame;
    Joints joints{};
    EXPECT_EQ(WobjToJoint(MakeCell(kPlan), request, joints), 0u);
    EXPECT_NEAR(joints.axis[0], kAxes[0], 1e-9);

    frame.x = kNan;
    request.target.frame = frame;
    ExpectFailure(MakeCell(kPlan), request, 0x6096u, "IK error 5:24726\n");
}

TEST(WobjToJoint, hold_conflict_stops_with_line_zero)
{
    const Store store = MakeCell(kPlan);
    ForAllConflicts([&store](const InverseRequest& request) {
        ExpectFailure(store, request, 0x6050u, "IK error 0:24656\n");
    });
}

TEST(WobjToJoint, unusable_unit_under_the_work_object_stops_with_line_two)
{
    for (const Store& store : CellsWithBadPositioner(kPlan)) {
        ExpectFailure(store, GoodRequest(), 0x6033u, "IK error 2:24627\n");
    }
    for (const std::int32_t unit : {-1, -128, 3, 127}) {
        InverseRequest request = GoodRequest();
        request.wobj.mechUnit = unit;
        ExpectFailure(MakeCell(kPlan), request, 0x6033u, "IK error 2:24627\n");
    }
}

// A tool that is not fixed would ride on a unit: no export makes one. Unit 0 of the cell has no kind.
TEST(WobjToJoint, stationary_tool_on_an_unusable_unit_stops_with_line_two)
{
    InverseRequest request = StationaryToolRequest();
    request.tool.fixedInWorld = 0;
    ExpectFailure(MakeCell(kPlan), request, 0x6033u, "IK error 2:24627\n");
}

TEST(WobjToJoint, bad_mounting_stops_with_line_three)
{
    for (const std::int32_t mode : {0, 1, 4, -1}) {
        Store store = MakeCell(kPlan);
        store.mounting.mode = mode;
        ExpectFailure(store, GoodRequest(), 0x6030u, "IK error 3:24624\n");
        ExpectFailure(store, StationaryToolRequest(), 0x6030u, "IK error 3:24624\n");
    }
    for (const Store& store : CellsWithBadCarrier(kPlan)) {
        ExpectFailure(store, GoodRequest(), 0x6031u, "IK error 3:24625\n");
    }
    Store atOrigin = MakeCell(kPlan);
    atOrigin.mechUnits.units[1].axisFrame[0].t = {0.0, 0.0, 0.0};
    ExpectFailure(atOrigin, GoodRequest(), 0x6034u, "IK error 3:24628\n");
    ExpectFailure(atOrigin, StationaryToolRequest(), 0x6034u, "IK error 3:24628\n");
}

TEST(WobjToJoint, codes_of_the_six_axis_arm_come_with_line_five)
{
    Store store = ReadyStore(kSix, WristArm());
    const Pose inReach{900.0, 100.0, 700.0, 0.1, 1.0, 0.2};
    for (const std::int32_t posture : {-1, 8, kMax}) {
        ExpectFailure(store, TargetInBase(inReach, {0, 0, 0, posture}), 0x6090u, "IK error 5:24720\n");
    }
    ExpectFailure(store, TargetInBase({0.0, 0.0, 1700.0, 0.0, 0.0, 0.0}, {}), 0x6096u, "IK error 5:24726\n");
    ExpectFailure(store, TargetInBase({9000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {}), 0x6097u, "IK error 5:24727\n");
    const Pose straightWrist = PoseOf(
        NaiveSixAxisChain(WristArm().SixAxis, std::array<double, 6>{0.3, -0.2, 0.4, 0.6, 0.0, 0.5}).flange);
    ExpectFailure(store, TargetInBase(straightWrist, {}), 0x6098u, "IK error 5:24728\n");

    // Limits that let through turn numbers the arm does not serve.
    AxisLimits limits = OpenLimits(1e7);
    ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);
    ExpectFailure(store, TargetInBase(inReach, {1000001, 0, 0, 0}), 0x6090u, "IK error 5:24720\n");
    ExpectFailure(store, TargetInBase(inReach, {0, -1000001, 0, 0}), 0x6090u, "IK error 5:24720\n");
}

// Example twists of a forward chain that the closed form does not describe.
TEST(WobjToJoint, codes_of_the_refinement_come_with_line_five)
{
    KineKinematicParam param = WristArm();
    param.SixAxis.alpha1 = -90.0;
    param.SixAxis.alpha3 = -90.0;
    param.SixAxis.alpha4 = 90.0;
    param.SixAxis.alpha5 = -90.0;
    Joints joints = Untouched<Joints>();
    KineResult code = KINE_OK;
    const std::string printed = PrintedBy([&] {
        code = WobjToJoint(ReadyStore(kSix, param), TargetInBase({900.0, 100.0, 700.0, 0.1, 1.0, 0.2}, {}),
                           joints);
    });
    ASSERT_TRUE(code == 0x6099u || code == 0x609Au) << code;
    EXPECT_EQ(printed, code == 0x6099u ? "IK error 5:24729\n" : "IK error 5:24730\n");
    EXPECT_TRUE(IsUntouched(joints));
}

TEST(WobjToJoint, codes_of_the_four_axis_arms_come_with_line_five)
{
    for (const std::int32_t type : {kFour, k4110}) {
        const Store store = ReadyStore(type, Scara());
        const Pose inReach{400.0, 100.0, 60.0, 0.0, 0.0, 0.0};
        for (const std::int32_t posture : {0, 2, -2, kMax}) {
            ExpectFailure(store, TargetInBase(inReach, {posture, 0, 0, 0}), 0x6090u, "IK error 5:24720\n");
        }
        ExpectFailure(store, TargetInBase({600.0, 0.0, 60.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}), 0x6093u,
                      "IK error 5:24723\n");
        ExpectFailure(store, TargetInBase({601.0, 0.0, 60.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}), 0x6094u,
                      "IK error 5:24724\n");
        ExpectFailure(store, TargetInBase({400.0, 0.0, kNan, 0.0, 0.0, 0.0}, {1, 0, 0, 0}), 0x6094u,
                      "IK error 5:24724\n");
    }
}

// Every earlier failure hides the later ones.
TEST(WobjToJoint, the_first_failing_step_decides)
{
    Store store = MakeCell(kPlan);
    store.arm.initState = 1;
    store.mounting.mode = 0;
    store.mechUnits.units[2].unitKind = 0;
    InverseRequest request = GoodRequest();
    request.target.config = {kMax, 0, 0, 8};
    request.wobj.heldByRobot = 1;
    ExpectFailure(store, request, 0x6001u, "");
    store.arm.initState = 2;
    ExpectFailure(store, request, 0x6090u, "");
    request.target.config.Cfg1 = 0;
    ExpectFailure(store, request, 0x6050u, "IK error 0:24656\n");
    request.wobj.heldByRobot = 0;
    ExpectFailure(store, request, 0x6033u, "IK error 2:24627\n");
    store.mechUnits.units[2].unitKind = kTwoRotaryAxes;
    ExpectFailure(store, request, 0x6030u, "IK error 3:24624\n");
    store.mounting.mode = kOnMechUnit;
    ExpectFailure(store, request, 0x6090u, "IK error 5:24720\n");
}

// The chain refuses such bytes before it comes to these steps. Each call has a second fault, which a later
// step would refuse.
TEST(RelativeToBase, hold_conflict_stops_at_step_one_and_keeps_the_pose)
{
    Store store = MakeCell(kPlan);
    store.mechUnits = {};
    ForAllConflicts([&](const InverseRequest& request) {
        PoseRecord pose = request.target;
        KineResult code = 0;
        EXPECT_EQ(PrintedBy([&] { code = RelativeToBase(store, request.tool, request.wobj, pose); }),
                  "IK error 1:24656\n");
        EXPECT_EQ(code, 0x6050u);
        EXPECT_TRUE(SameRecordBits(pose, request.target));
    });
}

TEST(BaseToJoint, hold_conflict_stops_at_step_four_and_keeps_the_joints)
{
    Store store = MakeCell(kPlan);
    store.arm.initState = 1;
    ForAllConflicts([&](const InverseRequest& request) {
        Joints joints = Untouched<Joints>();
        KineResult code = 0;
        EXPECT_EQ(PrintedBy([&] {
                      code = BaseToJoint(store, request.tool, request.wobj, request.payload, request.target,
                                         joints);
                  }),
                  "IK error 4:24656\n");
        EXPECT_EQ(code, 0x6050u);
        EXPECT_TRUE(IsUntouched(joints));
    });
}

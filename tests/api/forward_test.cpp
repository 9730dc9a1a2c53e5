// The forward calls in a cell without mechanical units.
//
// Expected poses: B from F, the flange in the base, is the naive product of links. With the robot at the
// world origin, a held tool T lies at B from F * T; a stationary tool T in the world is seen from the base as
// T.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr KineFrame kToolFrame = {30.0, -40.0, 150.0, 20.0, -35.0, 75.0};
constexpr KineFrame kUser = {700.0, 200.0, 100.0, 15.0, 25.0, -10.0};
constexpr KineFrame kObject = {-50.0, 80.0, 20.0, -95.0, 5.0, 45.0};
const KineJoint kJoints = [] {
    KineJoint joints = MakeJoints({100.0, -20.0, 40.0, -110.0, 50.0, 190.0});
    for (std::size_t i = 0; i < 6; ++i) joints.ExtAxis[i] = 1.5 + static_cast<double>(i);
    return joints;
}();

Mat4 Arm() { return NaiveSixAxisChain(CalibratedWristArm().SixAxis, kJoints).flange; }

Request HeldToolRequest()
{
    Request request;
    request.joints = kJoints;
    request.tool = HeldTool(kToolFrame);
    request.wobj = FixedWobj(kUser, kObject);
    return request;
}

Request StationaryToolRequest() { return Swapped(HeldToolRequest()); }

// No stiffness: the arm is rigid.
void SetUpRigidArm()
{
    KineKinematicParam param = CalibratedWristArm();
    param.SixAxis.k2 = param.SixAxis.k3 = param.SixAxis.k5 = 0.0;
    SetUpArm(param);
}

KinePose Succeed(const ChainCall& call, const Request& request)
{
    const Outcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK) << call.name;
    EXPECT_EQ(outcome.printed, "") << call.name;
    return outcome.pose;
}

void ExpectConfigAndExtAxes(const KinePose& pose, const double (&extAxis)[6])
{
    KineArmConfig config{};
    EXPECT_EQ(Kine_GetArmType(&kJoints, &config), KINE_OK);
    EXPECT_EQ(pose.Cfg1, config.Cfg1);
    EXPECT_EQ(pose.Cfg2, config.Cfg2);
    EXPECT_EQ(pose.Cfg3, config.Cfg3);
    EXPECT_EQ(pose.Cfg4, config.Cfg4);
    EXPECT_EQ(std::memcmp(pose.ExtAxis, extAxis, sizeof extAxis), 0);
}

}  // namespace

// Textbook joints 0: the forearm points up, the wrist centre stands at (a2 + a3, offset, d4).
TEST(Kine_JointToBasePos, published_arm_with_textbook_joints_zero)
{
    SetUpArm(Puma());
    Request request;
    request.joints = MakeJoints(PumaJointsDeg({}));
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    EXPECT_TRUE(IsFrame(Succeed(kBase, request).Frame, Shift(452.1, -150.05, 431.8)));
}

TEST(Kine_JointToBasePos, published_arm_with_textbook_joints_1_to_6_tenths)
{
    SetUpArm(Puma());
    Request request;
    request.joints = MakeJoints(PumaJointsDeg({0.1, 0.2, 0.3, 0.4, 0.5, 0.6}));
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    const KinePose pose = Succeed(kBase, request);
    EXPECT_TRUE(IsFrame(pose.Frame, MatrixOf({247.8027, -125.9402, 474.4579, 81.5416, -34.1712, -47.5481}),
                        1e-4, 2e-6));
    EXPECT_EQ(pose.Cfg1, 2);
    EXPECT_EQ(pose.Cfg2, 0);
    EXPECT_EQ(pose.Cfg3, 0);
    EXPECT_EQ(pose.Cfg4, 5);
}

TEST(Kine_JointToBasePos, held_tool)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kBase, HeldToolRequest());
    EXPECT_TRUE(IsFrame(pose.Frame, Arm() * MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToBasePos, stationary_tool)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kBase, StationaryToolRequest());
    EXPECT_TRUE(IsFrame(pose.Frame, MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToFlangePos, held_tool_is_its_own_frame_without_external_axes)
{
    SetUpRigidArm();
    Request request = HeldToolRequest();
    // Angles that an extraction would give in another form: B beyond 90 degrees.
    request.tool.TFrame = {1.0, -2.0, 3.0, 170.0, 120.0, -10.0};
    const KinePose pose = Succeed(kFlange, request);
    EXPECT_EQ(pose.Frame.X, 1.0);
    EXPECT_EQ(pose.Frame.Y, -2.0);
    EXPECT_EQ(pose.Frame.Z, 3.0);
    EXPECT_DOUBLE_EQ(pose.Frame.A, 170.0);
    EXPECT_DOUBLE_EQ(pose.Frame.B, 120.0);
    EXPECT_DOUBLE_EQ(pose.Frame.C, -10.0);
    constexpr double none[6] = {};
    ExpectConfigAndExtAxes(pose, none);
}

TEST(Kine_JointToFlangePos, stationary_tool_is_seen_from_the_flange)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kFlange, StationaryToolRequest());
    EXPECT_TRUE(IsFrame(pose.Frame, RigidInverse(Arm()) * MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToWorldPos, held_tool)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kWorld, HeldToolRequest());
    EXPECT_TRUE(IsFrame(pose.Frame, Arm() * MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToWorldPos, stationary_tool_stands_where_it_stands)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kWorld, StationaryToolRequest());
    EXPECT_TRUE(IsFrame(pose.Frame, MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToWobjPos, held_tool_in_user_times_object)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kWobj, HeldToolRequest());
    const Mat4 wobj = MatrixOf(kUser) * MatrixOf(kObject);
    EXPECT_TRUE(IsFrame(pose.Frame, RigidInverse(wobj) * Arm() * MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToWobjPos, stationary_tool_in_the_held_work_object)
{
    SetUpRigidArm();
    const KinePose pose = Succeed(kWobj, StationaryToolRequest());
    const Mat4 carried = Arm() * MatrixOf(kUser) * MatrixOf(kObject);
    EXPECT_TRUE(IsFrame(pose.Frame, RigidInverse(carried) * MatrixOf(kToolFrame)));
    ExpectConfigAndExtAxes(pose, kJoints.ExtAxis);
}

TEST(Kine_JointToWobjPos, zero_work_object_is_the_world)
{
    SetUpRigidArm();
    Request request = HeldToolRequest();
    request.wobj = FixedWobj();
    EXPECT_TRUE(IsFrame(Succeed(kWobj, request).Frame, MatrixOf(Succeed(kWorld, request).Frame)));
}

// 2 is held for the choice of the flange's frame and for the object in the cell, but not "on the robot":
// the base, flange and world calls go through the work object as they do for a stationary tool.
TEST(tool_byte_2, work_object_call_gives_the_held_answer)
{
    SetUpRigidArm();
    Request request = HeldToolRequest();
    const KinePose held = Succeed(kWobj, request);
    request.tool.HeldByRobot = 2;
    EXPECT_TRUE(SameBits(Succeed(kWobj, request), held));
}

TEST(tool_byte_2, other_calls_take_the_path_of_the_stationary_tool)
{
    SetUpRigidArm();
    for (const uint8_t byte : {uint8_t{2}, uint8_t{128}, uint8_t{255}}) {
        Request request = HeldToolRequest();
        request.tool.HeldByRobot = byte;
        const Mat4 wobj = MatrixOf(kUser) * MatrixOf(kObject);
        const Mat4 tcp = Arm() * MatrixOf(kToolFrame);
        const Mat4 relative = RigidInverse(wobj) * tcp;
        const KinePose base = Succeed(kBase, request);
        EXPECT_TRUE(IsFrame(base.Frame, tcp * relative));
        ExpectConfigAndExtAxes(base, kJoints.ExtAxis);
        const KinePose world = Succeed(kWorld, request);
        EXPECT_TRUE(IsFrame(world.Frame, tcp * relative));
        ExpectConfigAndExtAxes(world, kJoints.ExtAxis);
        const KinePose flange = Succeed(kFlange, request);
        EXPECT_TRUE(IsFrame(flange.Frame, wobj * relative));
        ExpectConfigAndExtAxes(flange, kJoints.ExtAxis);
    }
}

TEST(wobj_byte_2, is_a_held_work_object)
{
    SetUpRigidArm();
    Request request = StationaryToolRequest();
    for (const ChainCall& call : kForwardCalls) {
        request.wobj.HeldByRobot = 1;
        const KinePose held = Succeed(call, request);
        request.wobj.HeldByRobot = 2;
        EXPECT_TRUE(SameBits(Succeed(call, request), held)) << call.name;
    }
}

TEST(reserved_bytes, of_tool_and_work_object_are_not_read)
{
    SetUpRigidArm();
    for (const Request& plain : {HeldToolRequest(), StationaryToolRequest()}) {
        Request filled = plain;
        std::memset(filled.tool.Reserved, 0xFF, sizeof filled.tool.Reserved);
        std::memset(filled.wobj.Reserved, 0xFF, sizeof filled.wobj.Reserved);
        filled.wobj.MechUnitIndex = 77;
        filled.joints.Axis[6] = filled.joints.Axis[7] = kNan;
        for (const ChainCall& call : kForwardCalls) {
            EXPECT_TRUE(SameBits(Succeed(call, filled), Succeed(call, plain))) << call.name;
        }
    }
}

TEST(Kine_FKineVision, gives_the_wrist_frame_and_no_external_axes)
{
    SetUpRigidArm();
    KineJoint joints = kJoints;
    KinePose pose = Untouched<KinePose>();
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK); }), "");
    EXPECT_TRUE(IsFrame(pose.Frame, NaiveSixAxisChain(CalibratedWristArm().SixAxis, kJoints).frame[5]));
    constexpr double none[6] = {};
    ExpectConfigAndExtAxes(pose, none);
    EXPECT_TRUE(SameBits(joints, kJoints));

    // Axis 6 turns the flange only.
    joints.Axis[5] = 200.0;
    KinePose turned{};
    EXPECT_EQ(Kine_FKineVision(&joints, &turned), KINE_OK);
    EXPECT_TRUE(SameBits(turned.Frame, pose.Frame));
}

// The example chain with twists of the other sign: at joints zero the wrist centre lies at
// (-d4 + a1, 0, d1 - a2 - a3) = (-300, 0, -250) and the approach axis points along -X.
TEST(Kine_FKineVision, twists_of_the_other_sign)
{
    KineKinematicParam param{};
    KineSixAxisParam& p = param.SixAxis;
    p.a1 = 100.0;
    p.a2 = 500.0;
    p.a3 = 50.0;
    p.d4 = 400.0;
    p.d6 = 80.0;
    p.d1 = 300.0;
    p.alpha1 = p.alpha3 = p.alpha5 = -90.0;
    p.alpha4 = 90.0;
    SetUpArm(param);
    const KineJoint joints{};
    KinePose pose{};
    EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
    EXPECT_NEAR(pose.Frame.X, -300.0, 1e-9);
    EXPECT_NEAR(pose.Frame.Y, 0.0, 1e-9);
    EXPECT_NEAR(pose.Frame.Z, -250.0, 1e-9);

    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    const KinePose tool = Succeed(kBase, request);
    EXPECT_NEAR(tool.Frame.X, -380.0, 1e-9);
    EXPECT_NEAR(tool.Frame.Y, 0.0, 1e-9);
    EXPECT_NEAR(tool.Frame.Z, -250.0, 1e-9);
}

TEST(Kine_FKineVision, refusals_in_order_leave_the_result_and_print_nothing)
{
    SetUpRefusedArm();
    const KineJoint joints{};
    KinePose pose = Untouched<KinePose>();
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_FKineVision(nullptr, nullptr), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_FKineVision(nullptr, &pose), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_FKineVision(&joints, nullptr), KINE_ERR_POSE);
                  EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_ERR_NOT_INITIALISED);
              }),
              "");
    EXPECT_TRUE(IsUntouched(pose));
}

// A NaN is passed on; the joints are not validated.
TEST(forward_calls, nan_and_infinite_joints_succeed)
{
    SetUpRigidArm();
    for (const double value : {kNan, kInf}) {
        for (std::size_t axis = 0; axis < 6; ++axis) {
            Request request = HeldToolRequest();
            request.joints.Axis[axis] = value;
            for (const ChainCall& call : kForwardCalls) {
                const Outcome outcome = Perform(call, request);
                EXPECT_EQ(outcome.code, KINE_OK) << call.name;
                // The flange call gives the tool frame, whatever the joints.
                if (call.forward == kFlange.forward) continue;
                EXPECT_TRUE(std::isnan(outcome.pose.Frame.A)) << axis;
            }
        }
    }
}

// Kine_WobjPosToJoint: solutions, and every code of the arm.
//
// Targets are products of links (support/naive_arms.h), given to the call as positions in a work object
// that lies in the world and a tool that lies in the flange.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

// The target of an arm's own joints, with their configuration.
Request RequestFor(const KineKinematicParam& arm, const KineJoint& joints)
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.target.Frame = FrameOf(NaiveSixAxisChain(arm.SixAxis, joints).flange);
    KineArmConfig config{};
    EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
    request.target.Cfg1 = config.Cfg1;
    request.target.Cfg2 = config.Cfg2;
    request.target.Cfg3 = config.Cfg3;
    request.target.Cfg4 = config.Cfg4;
    return request;
}

KineJoint Solve(const Request& request)
{
    const Outcome outcome = Perform(kInverseCall, request);
    EXPECT_EQ(outcome.code, KINE_OK) << std::hex << outcome.code;
    EXPECT_EQ(outcome.printed, "");
    return outcome.joints;
}

void ExpectAxes(const KineJoint& actual, const KineJoint& expected, double tolerance)
{
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(actual.Axis[i], expected.Axis[i], tolerance) << i;
}

void ExpectArmRefuses(const Request& request, KineResult code)
{
    ExpectRefused(kInverseCall, request, code, "IK error 5:" + std::to_string(code) + "\n");
}

const KineJoint kJoints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});

}  // namespace

TEST(Kine_WobjPosToJoint, published_pose_gives_the_published_joints)
{
    SetUpArm(Puma());
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.target.Frame = {247.8027, -125.9402, 474.4579, 81.5416, -34.1712, -47.5481};
    request.target.Cfg1 = 2;
    request.target.Cfg4 = 5;
    ExpectAxes(Solve(request), MakeJoints(PumaJointsDeg({0.1, 0.2, 0.3, 0.4, 0.5, 0.6})), 2e-4);
}

TEST(Kine_WobjPosToJoint, eight_postures_reach_one_pose)
{
    SetUpArm(Puma());
    constexpr double kQuarter = 0.78539816339744831;
    const KineJoint joints = MakeJoints(PumaJointsDeg({0.0, kQuarter, 4.0 * kQuarter, 0.0, kQuarter, 0.0}));
    Request request = RequestFor(Puma(), joints);
    EXPECT_NEAR(request.target.Frame.X, 596.3031, 1e-4);
    EXPECT_NEAR(request.target.Frame.Y, -150.05, 1e-4);
    EXPECT_NEAR(request.target.Frame.Z, -14.3543, 1e-4);
    for (int32_t posture = 0; posture < 8; ++posture) {
        SCOPED_TRACE(posture);
        request.target.Cfg1 = request.target.Cfg2 = request.target.Cfg3 = 0;
        request.target.Cfg4 = posture;
        const KineJoint solution = Solve(request);
        EXPECT_TRUE(
            IsFrame(request.target.Frame, NaiveSixAxisChain(Puma().SixAxis, solution).flange, 1e-8, 1e-10));
        KineArmConfig config{};
        EXPECT_EQ(Kine_GetArmType(&solution, &config), KINE_OK);
        EXPECT_EQ(config.Cfg4, posture);
    }
}

TEST(Kine_WobjPosToJoint, four_quarter_turns_more_are_one_turn_of_that_axis)
{
    SetUpArm(WristArm());
    const Request plain = RequestFor(WristArm(), kJoints);
    ExpectAxes(Solve(plain), kJoints, 1e-9);
    struct Case
    {
        int32_t KinePose::*turn;
        std::size_t axis;
    };
    for (const auto& [turn, axis] :
         {Case{&KinePose::Cfg1, 0}, Case{&KinePose::Cfg2, 3}, Case{&KinePose::Cfg3, 5}}) {
        for (const int turns : {1, -1, 2, -3}) {
            Request request = plain;
            request.target.*turn += 4 * turns;
            KineJoint expected = kJoints;
            expected.Axis[axis] += 360.0 * turns;
            ExpectAxes(Solve(request), expected, 1e-9);
        }
    }
}

TEST(Kine_WobjPosToJoint, gives_unused_axes_zero_and_the_external_axes_of_the_target)
{
    SetUpArm(WristArm());
    Request request = RequestFor(WristArm(), kJoints);
    const double values[6] = {1.1, -2.2, 1e300, kNan, -0.0, kInf};
    for (std::size_t i = 0; i < 6; ++i) request.target.ExtAxis[i] = values[i];
    const KineJoint joints = Solve(request);
    EXPECT_EQ(joints.Axis[6], 0.0);
    EXPECT_EQ(joints.Axis[7], 0.0);
    EXPECT_TRUE(SameBits(joints.ExtAxis, request.target.ExtAxis));
}

TEST(Kine_WobjPosToJoint, stationary_tool_gives_the_external_axes_of_the_target)
{
    SetUpArm(WristArm());
    Request request = RequestFor(WristArm(), kJoints);
    // A stationary tool at T sees a held work object at the flange F: the target is F^-1 T.
    const KineFrame tool = {900.0, 100.0, 800.0, 10.0, 20.0, 30.0};
    request.tool = StationaryTool(tool);
    request.wobj = HeldWobj();
    request.target.Frame =
        FrameOf(RigidInverse(NaiveSixAxisChain(WristArm().SixAxis, kJoints).flange) * MatrixOf(tool));
    for (std::size_t i = 0; i < 6; ++i) request.target.ExtAxis[i] = 3.25 * static_cast<double>(i);
    const KineJoint joints = Solve(request);
    ExpectAxes(joints, kJoints, 1e-9);
    EXPECT_TRUE(SameBits(joints.ExtAxis, request.target.ExtAxis));
}

TEST(Kine_WobjPosToJoint, solves_the_calibrated_arm_under_load)
{
    SetUpArm(CalibratedWristArm());
    Request request;
    request.joints = kJoints;
    request.tool = HeldTool({10.0, 20.0, 100.0, 30.0, 40.0, 50.0});
    request.tool.TLoad = MakeLoad(8.0, 5.0, -10.0, 60.0);
    request.load = MakeLoad(12.0, -20.0, 10.0, 30.0);
    request.wobj = FixedWobj();
    const Outcome forward = Perform(kWobj, request);
    ASSERT_EQ(forward.code, KINE_OK);
    request.target = forward.pose;
    ExpectAxes(Solve(request), kJoints, 1e-9);
    // Without the load the same target needs other joints: the load does bend the arm.
    request.load = {};
    request.tool.TLoad = {};
    EXPECT_GT(std::fabs(Solve(request).Axis[1] - kJoints.Axis[1]), 1e-3);
}

TEST(Kine_WobjPosToJoint, posture_outside_0_to_7_is_0x6090)
{
    SetUpArm(WristArm());
    Request request = RequestFor(WristArm(), kJoints);
    for (const int32_t posture :
         {8, -1, 100, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        request.target.Cfg4 = posture;
        ExpectArmRefuses(request, KINE_ERR_CONFIG);
    }
}

TEST(Kine_WobjPosToJoint, turn_beyond_a_million_is_0x6090_before_any_geometry)
{
    SetUpArm(WristArm());
    KineJoint upper{};
    KineJoint lower{};
    for (std::size_t i = 0; i < 6; ++i) {
        upper.Axis[i] = kInf;
        lower.Axis[i] = -kInf;
    }
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    for (int32_t KinePose::*turn : {&KinePose::Cfg1, &KinePose::Cfg2, &KinePose::Cfg3}) {
        for (const int32_t number :
             {1000001, -1000001, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
            Request request = RequestFor(WristArm(), kJoints);
            request.target.*turn = number;
            ExpectArmRefuses(request, KINE_ERR_CONFIG);
            request.target.Frame = {};  // the wrist centre on axis 1 would be 0x6096
            ExpectArmRefuses(request, KINE_ERR_CONFIG);
        }
    }
    Request request = RequestFor(WristArm(), kJoints);
    request.target.Frame = {};
    request.target.Cfg1 = 1000000;
    request.target.Cfg2 = -1000000;
    ExpectArmRefuses(request, KINE_ERR_IK_6);
}

// The wrist centre lies at (X, 0, 1000 - 85).
TEST(Kine_WobjPosToJoint, wrist_centre_within_1e_minus_5_of_axis_1_is_0x6096)
{
    SetUpArm(WristArm());
    Request request = RequestFor(WristArm(), kJoints);
    // Posture 8 is refused by the next test, so that the margin alone decides between the two codes.
    request.target.Cfg4 = 8;
    for (const double x : {0.0, 0.999e-5, -0.999e-5, kNan}) {
        request.target.Frame = {x, 0.0, 1000.0, 0.0, 0.0, 0.0};
        ExpectArmRefuses(request, KINE_ERR_IK_6);
    }
    for (const double x : {1e-5, -1e-5, 1.001e-5}) {
        request.target.Frame = {x, 0.0, 1000.0, 0.0, 0.0, 0.0};
        ExpectArmRefuses(request, KINE_ERR_CONFIG);
    }
}

TEST(Kine_WobjPosToJoint, lateral_offset_widens_the_shoulder_circle)
{
    SetUpArm(Puma());
    Request request = RequestFor(Puma(), MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0}));
    request.target.Cfg4 = 8;
    request.target.Frame = {150.0, 0.0, 300.0, 0.0, 0.0, 0.0};
    ExpectArmRefuses(request, KINE_ERR_IK_6);
    request.target.Frame.X = 150.1;
    ExpectArmRefuses(request, KINE_ERR_CONFIG);
}

TEST(Kine_WobjPosToJoint, out_of_reach_stretched_or_folded_is_0x6097)
{
    SetUpArm(WristArm());
    const double elbowAngle = InDegrees(std::atan2(135.0, 755.0));
    for (const double stretched : {90.0 - elbowAngle, -90.0 - elbowAngle}) {
        ExpectArmRefuses(RequestFor(WristArm(), MakeJoints({35.0, -70.0, stretched, 40.0, 55.0, -70.0})),
                         KINE_ERR_IK_7);
    }
    Request request = RequestFor(WristArm(), kJoints);
    for (const double far : {5000.0, -5000.0, 1e150}) {
        request.target.Frame.Z = far;
        ExpectArmRefuses(request, KINE_ERR_IK_7);
    }
}

// A wrist whose cosine exceeds 0.99999, that is within 0.25624 degrees of straight or folded back.
TEST(Kine_WobjPosToJoint, straight_wrist_is_0x6098_whatever_the_posture)
{
    SetUpArm(WristArm());
    for (const double q5 : {0.0, 0.0286, 0.256, -0.256, 180.0, 179.75}) {
        SCOPED_TRACE(q5);
        Request request = RequestFor(WristArm(), MakeJoints({35.0, -25.0, 20.0, 40.0, q5, -70.0}));
        // The other elbow and shoulder need another wrist, so the two wrists of this arm posture only.
        for (const int32_t flip : {0, 1}) {
            request.target.Cfg4 = flip;
            ExpectArmRefuses(request, KINE_ERR_IK_8);
        }
    }
    for (const double q5 : {0.2565, -0.2565}) {
        const KineJoint joints = MakeJoints({35.0, -25.0, 20.0, 40.0, q5, -70.0});
        ExpectAxes(Solve(RequestFor(WristArm(), joints)), joints, 1e-6);
    }
}

// All six axes parallel: three of the six directions cannot be reached, the Jacobian has rank 3.
TEST(Kine_WobjPosToJoint, arm_without_twists_is_0x6095)
{
    SetUpArm(WristArm());
    const Request request = RequestFor(WristArm(), kJoints);
    KineKinematicParam flat = WristArm();
    flat.SixAxis.alpha1 = flat.SixAxis.alpha3 = flat.SixAxis.alpha4 = flat.SixAxis.alpha5 = 0.0;
    SetUpArm(flat);
    ExpectArmRefuses(request, KINE_ERR_SINGULAR);
}

// The twists of the other sign are an arm that the closed form does not describe: the refinement then starts
// anywhere. What it solves it has solved; what it does not ends in one of its codes, and both occur.
TEST(Kine_WobjPosToJoint, arm_that_is_not_nominal_is_0x6099_or_0x609A)
{
    KineKinematicParam arm = NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    SetUpArm(arm);
    SeededRandom random(20240611);
    std::set<KineResult> codes;
    for (int i = 0; i < 200; ++i) {
        KineJoint joints{};
        for (std::size_t axis = 0; axis < 6; ++axis) joints.Axis[axis] = random.Uniform(-80.0, 80.0);
        arm.SixAxis.alpha1 = 90.0;
        arm.SixAxis.alpha3 = 90.0;
        arm.SixAxis.alpha4 = -90.0;
        arm.SixAxis.alpha5 = 90.0;
        const Request request = RequestFor(arm, joints);
        for (double KineSixAxisParam::*twist : {&KineSixAxisParam::alpha1, &KineSixAxisParam::alpha3,
                                                &KineSixAxisParam::alpha4, &KineSixAxisParam::alpha5}) {
            arm.SixAxis.*twist *= -1.0;
        }
        SetUpArm(arm);
        const Outcome outcome = Perform(kInverseCall, request);
        codes.insert(outcome.code);
        if (outcome.code == KINE_OK) {
            EXPECT_TRUE(IsFrame(request.target.Frame, NaiveSixAxisChain(arm.SixAxis, outcome.joints).flange,
                                1e-2, 1e-4))
                << i;
        } else {
            EXPECT_TRUE(outcome.untouched) << i;
            EXPECT_EQ(outcome.printed, "IK error 5:" + std::to_string(outcome.code) + "\n") << i;
        }
    }
    EXPECT_TRUE(codes.contains(KINE_ERR_IK_9));
    EXPECT_TRUE(codes.contains(KINE_ERR_IK_ACCURACY));
}

TEST(Kine_WobjPosToJoint, turn_number_beyond_the_limits_is_0x6090_without_a_line)
{
    SetUpArm(WristArm());
    KineJoint upper{};
    KineJoint lower{};
    for (std::size_t i = 0; i < 6; ++i) {
        upper.Axis[i] = 170.0;   // quarter turn 1
        lower.Axis[i] = -170.0;  // quarter turn -2
    }
    ASSERT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    for (int32_t KinePose::*turn : {&KinePose::Cfg1, &KinePose::Cfg2, &KinePose::Cfg3}) {
        for (const int32_t outside :
             {4, 5, -5, -6, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
            Request request = RequestFor(WristArm(), kJoints);
            request.target.*turn = outside;
            ExpectRefused(kInverseCall, request, KINE_ERR_CONFIG, "");
            // Silent too when every later step would fail.
            request.wobj.HeldByRobot = 2;
            request.target.Frame.X = 1e6;
            ExpectRefused(kInverseCall, request, KINE_ERR_CONFIG, "");
        }
        for (const int32_t inside : {3, -4}) {
            Request request = RequestFor(WristArm(), kJoints);
            request.target.*turn = inside;
            Solve(request);
        }
    }
}

TEST(Kine_WobjPosToJoint, nan_and_infinity_end_in_an_error)
{
    SetUpArm(CalibratedWristArm());
    const Request plain = RequestFor(WristArm(), kJoints);
    for (const double value : {kNan, kInf, -kInf, 1e300, -1e300}) {
        const auto expectError = [&](Request request, const char* what) {
            SCOPED_TRACE(what);
            const Outcome outcome = Perform(kInverseCall, request);
            EXPECT_GE(outcome.code, KINE_ERR_SINGULAR);
            EXPECT_LE(outcome.code, KINE_ERR_IK_ACCURACY);
            EXPECT_TRUE(outcome.untouched);
            EXPECT_EQ(outcome.printed, "IK error 5:" + std::to_string(outcome.code) + "\n");
        };
        for (double KineFrame::*field : {&KineFrame::X, &KineFrame::Y, &KineFrame::Z}) {
            Request request = plain;
            request.target.Frame.*field = value;
            expectError(request, "target");
            request = plain;
            request.tool.TFrame.*field = value;
            expectError(request, "tool");
            request = plain;
            request.wobj.UFrame.*field = value;
            expectError(request, "user frame");
            request = plain;
            request.wobj.OFrame.*field = value;
            expectError(request, "object frame");
        }
    }
    for (double KineFrame::*field : {&KineFrame::A, &KineFrame::B, &KineFrame::C}) {
        for (KineFrame* (*frame)(Request&) :
             {+[](Request& r) { return &r.target.Frame; }, +[](Request& r) { return &r.tool.TFrame; },
              +[](Request& r) { return &r.wobj.UFrame; }, +[](Request& r) { return &r.wobj.OFrame; }}) {
            Request request = plain;
            (*frame(request)).*field = kNan;
            const Outcome outcome = Perform(kInverseCall, request);
            EXPECT_GE(outcome.code, KINE_ERR_SINGULAR);
            EXPECT_LE(outcome.code, KINE_ERR_IK_ACCURACY);
            EXPECT_TRUE(outcome.untouched);
        }
    }
}

TEST(Kine_WobjPosToJoint, joints_need_not_be_valid_and_are_not_read)
{
    SetUpArm(WristArm());
    const Request request = RequestFor(WristArm(), kJoints);
    KineJoint joints = Untouched<KineJoint>();
    EXPECT_EQ(Kine_WobjPosToJoint(&request.target, &request.tool, &request.wobj, &request.load, &joints),
              KINE_OK);
    EXPECT_TRUE(SameBits(joints, Solve(request)));
}

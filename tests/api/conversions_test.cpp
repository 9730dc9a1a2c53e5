// Poses between the world and work objects, through the exports.
#include <gtest/gtest.h>

#include <cmath>

#include "support/cell_setup.h"
#include "support/numbers.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

Mat4 CombinedMatrix(const KineWobj& wobj) { return MatrixOf(wobj.UFrame) * MatrixOf(wobj.OFrame); }

void ExpectFrame(const KineFrame& actual, const KineFrame& expected)
{
    EXPECT_NEAR(actual.X, expected.X, 1e-10);
    EXPECT_NEAR(actual.Y, expected.Y, 1e-10);
    EXPECT_NEAR(actual.Z, expected.Z, 1e-10);
    EXPECT_NEAR(actual.A, expected.A, 1e-11);
    EXPECT_NEAR(actual.B, expected.B, 1e-11);
    EXPECT_NEAR(actual.C, expected.C, 1e-11);
}

PoseRequest RandomRequest(const PoseCall& call, SeededRandom& random)
{
    PoseRequest request = GoodPoseRequest(call);
    request.pose.Frame = AnyFrame(random);
    request.flange.Frame = AnyFrame(random);
    request.wobj.UFrame = AnyFrame(random);
    request.wobj.OFrame = AnyFrame(random);
    return request;
}

const KineMechUnit kRail =
    LinearUnit({-100.0, 50.0, 25.0, 5.0, -15.0, 25.0}, {0.0, 0.0, 0.0, 40.0, 0.0, 10.0}, 4);

}  // namespace

// The object lies at (100, 0, 0) + Rz(90) * (0, 50, 0) = (50, 0, 0), turned by 90 degrees: from there
// (50, 30, 7) is 30 mm out along its x.
TEST(Kine_WorldPosToFixWobjPos, expresses_a_world_pose_in_user_times_object)
{
    SetUpArm(WristArm());
    PoseRequest request;
    request.wobj = FixedWobj({100.0, 0.0, 0.0, 90.0, 0.0, 0.0}, {0.0, 50.0, 0.0, 0.0, 0.0, 0.0});
    request.pose = FullPose({50.0, 30.0, 7.0, 90.0, 0.0, 0.0});
    const KinePose result = Converted(kFixCall, request);
    ExpectFrame(result.Frame, {30.0, 0.0, 7.0, 0.0, 0.0, 0.0});
    EXPECT_TRUE(SameBesideFrame(result, request.pose));
}

TEST(Kine_WorldPosToFixWobjPos, agrees_with_plain_matrices)
{
    SetUpArm(WristArm());
    SeededRandom random(501);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const PoseRequest request = RandomRequest(kFixCall, random);
        const KinePose result = Converted(kFixCall, request);
        EXPECT_TRUE(
            IsFrame(result.Frame, RigidInverse(CombinedMatrix(request.wobj)) * MatrixOf(request.pose.Frame)));
        EXPECT_TRUE(SameBesideFrame(result, request.pose));
    }
}

TEST(Kine_WorldPosToFixWobjPos, ignores_the_user_frame_unless_fixed_is_exactly_one)
{
    SetUpArm(WristArm());
    for (const int fixed : {2, 255}) {
        PoseRequest request = GoodPoseRequest(kFixCall);
        request.wobj.UFFix = static_cast<uint8_t>(fixed);
        EXPECT_TRUE(IsFrame(Converted(kFixCall, request).Frame,
                            RigidInverse(MatrixOf(request.wobj.OFrame)) * MatrixOf(request.pose.Frame)));
    }
}

TEST(Kine_WorldPosToFixWobjPos, refuses_a_work_object_held_by_exactly_one)
{
    SetUpArm(WristArm());
    PoseRequest request = GoodPoseRequest(kFixCall);
    const KinePose expected = Converted(kFixCall, request);
    for (const int held : {2, 3, 128, 255}) {
        request.wobj.HeldByRobot = static_cast<uint8_t>(held);
        EXPECT_TRUE(SameBits(Converted(kFixCall, request), expected)) << held;
    }
    request.wobj.HeldByRobot = 1;
    ExpectRefused(kFixCall, request, KINE_ERR_WOBJ);
}

TEST(Kine_WorldPosToFixWobjPos, refuses_a_work_object_on_a_unit_that_passes_elsewhere)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    PoseRequest request = GoodPoseRequest(kCrdCall);
    request.wobj = WobjOnUnit(2);
    Converted(kCrdCall, request);
    ExpectRefused(kFixCall, request, KINE_ERR_WOBJ);
}

// The flange stands at (1000, 0, 0) turned by 90 degrees; the object 20 mm out along its x, so at
// (1000, 20, 0).
TEST(Kine_WorldPosToGripWobjPos, expresses_a_world_pose_in_the_object_on_the_flange)
{
    SetUpArm(WristArm());
    PoseRequest request;
    request.wobj = HeldWobj({20.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    request.flange.Frame = {1000.0, 0.0, 0.0, 90.0, 0.0, 0.0};
    request.pose = FullPose({1000.0, 50.0, 4.0, 180.0, 0.0, 0.0});
    const KinePose result = Converted(kGripCall, request);
    ExpectFrame(result.Frame, {30.0, 0.0, 4.0, 90.0, 0.0, 0.0});
    EXPECT_TRUE(SameBesideFrame(result, request.pose));
}

TEST(Kine_GripWobjPosToWorldPos, is_flange_times_object_times_pose)
{
    SetUpArm(WristArm());
    PoseRequest request;
    request.wobj = HeldWobj({20.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    request.flange.Frame = {1000.0, 0.0, 0.0, 90.0, 0.0, 0.0};
    request.pose = FullPose({30.0, 0.0, 4.0, 90.0, 0.0, 10.0});
    const KinePose result = Converted(kGripBackCall, request);
    ExpectFrame(result.Frame, {1000.0, 50.0, 4.0, 180.0, 0.0, 10.0});
    EXPECT_TRUE(SameBesideFrame(result, request.pose));
}

TEST(grip_conversions, agree_with_plain_matrices_and_undo_each_other)
{
    SetUpArm(WristArm());
    SeededRandom random(502);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        PoseRequest request = RandomRequest(kGripCall, random);
        const Mat4 worldFromWobj = MatrixOf(request.flange.Frame) * CombinedMatrix(request.wobj);
        const KinePose inWobj = Converted(kGripCall, request);
        EXPECT_TRUE(IsFrame(inWobj.Frame, RigidInverse(worldFromWobj) * MatrixOf(request.pose.Frame)));
        const KinePose inWorld = Converted(kGripBackCall, request);
        EXPECT_TRUE(IsFrame(inWorld.Frame, worldFromWobj * MatrixOf(request.pose.Frame)));
        EXPECT_TRUE(SameBesideFrame(inWobj, request.pose));
        EXPECT_TRUE(SameBesideFrame(inWorld, request.pose));

        const Mat4 start = MatrixOf(request.pose.Frame);
        request.pose = inWobj;
        EXPECT_TRUE(IsFrame(Converted(kGripBackCall, request).Frame, start));
    }
}

TEST(grip_conversions, read_only_the_frame_of_the_flange_pose)
{
    SetUpArm(WristArm());
    SeededRandom random(503);
    for (const PoseCall* call : {&kGripCall, &kGripBackCall}) {
        PoseRequest request = GoodPoseRequest(*call);
        const KinePose expected = Converted(*call, request);
        const KineFrame flange = request.flange.Frame;
        request.flange = random.AnyBits<KinePose>();
        request.flange.Frame = flange;
        EXPECT_TRUE(SameBits(Converted(*call, request), expected)) << call->name;
    }
}

TEST(grip_conversions, need_a_held_work_object_on_the_way_there_only)
{
    SetUpArm(WristArm());
    PoseRequest request = GoodPoseRequest(kGripCall);
    const KinePose there = Converted(kGripCall, request);
    const KinePose back = Converted(kGripBackCall, request);
    for (const int held : {2, 255}) {
        request.wobj.HeldByRobot = static_cast<uint8_t>(held);
        EXPECT_TRUE(SameBits(Converted(kGripCall, request), there));
        EXPECT_TRUE(SameBits(Converted(kGripBackCall, request), back));
    }
    request.wobj.HeldByRobot = 0;
    ExpectRefused(kGripCall, request, KINE_ERR_WOBJ);
    EXPECT_TRUE(SameBits(Converted(kGripBackCall, request), back));
}

TEST(grip_conversions, ignore_the_user_frame_unless_fixed_is_exactly_one)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (const int fixed : {0, 2}) {
        PoseRequest request = GoodPoseRequest(kGripCall);
        request.wobj.UFFix = static_cast<uint8_t>(fixed);
        request.wobj.MechUnitIndex = 1;
        const Mat4 worldFromWobj = MatrixOf(request.flange.Frame) * MatrixOf(request.wobj.OFrame);
        EXPECT_TRUE(IsFrame(Converted(kGripCall, request).Frame,
                            RigidInverse(worldFromWobj) * MatrixOf(request.pose.Frame)));
        EXPECT_TRUE(
            IsFrame(Converted(kGripBackCall, request).Frame, worldFromWobj * MatrixOf(request.pose.Frame)));
    }
}

TEST(conversions, do_not_ask_for_an_initialised_library)
{
    for (const PoseCall& call : {kFixCall, kGripCall, kGripBackCall, kCrdCall}) {
        for (const int32_t mode : {0, -1, -2}) {
            SetUpArm(WristArm());
            PoseRequest request = GoodPoseRequest(call);
            request.mode = mode;
            if (mode == -2) request.tool.HeldByRobot = request.wobj.HeldByRobot == 0 ? 1 : 0;
            const KinePose expected = Converted(call, request);
            SetUpRefusedArm();
            EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name << mode;
            const KineKinematicParam scara = Scara();
            for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
                EXPECT_EQ(Kine_InitKinematicParam(type, &scara), KINE_OK);
                EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name << mode;
            }
            EXPECT_EQ(Kine_InitKinematicParam(5, &scara), KINE_ERR_UNKNOWN_ARM_TYPE);
            EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name << mode;
        }
    }
}

TEST(conversions, consult_neither_units_nor_mounting_but_in_mode_minus_2)
{
    for (const PoseCall& call : {kFixCall, kGripCall, kGripBackCall, kCrdCall}) {
        SetUpArm(WristArm());
        PoseRequest request = GoodPoseRequest(call);
        request.mode = -1;
        const KinePose expected = Converted(call, request);
        SetUnitCounts(3, 6);
        StoreUnit(0, CarryingRobot(kRail, 0));
        EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name;
        StoreUnit(0, CarryingRobot(KineMechUnit{}, 99));
        EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name;
    }
}

TEST(conversions, keep_every_bit_of_configuration_and_external_axes)
{
    SetUpArm(WristArm());
    SeededRandom random(507);
    for (const PoseCall& call : kPoseCalls) {
        for (int i = 0; i < 20; ++i) {
            PoseRequest request = GoodPoseRequest(call);
            const KineFrame frame = request.pose.Frame;
            request.pose = random.AnyBits<KinePose>();
            request.pose.Frame = frame;
            EXPECT_TRUE(SameBesideFrame(Converted(call, request), request.pose)) << call.name;
        }
    }
}

// With B at 90 degrees only C - A is determined: A becomes 0, C becomes 50 - 30.
TEST(conversions, answer_vertical_orientations_with_a_zero)
{
    SetUpArm(WristArm());
    for (const PoseCall& call : {kFixCall, kGripCall, kGripBackCall}) {
        PoseRequest request;
        request.wobj = FixedWobj();
        request.wobj.HeldByRobot = call.run == kFixCall.run ? 0 : 1;
        request.pose.Frame = {1.0, 2.0, 3.0, 30.0, 90.0, 50.0};
        ExpectFrame(Converted(call, request).Frame, {1.0, 2.0, 3.0, 0.0, 90.0, 20.0});
        request.pose.Frame.B = -90.0;  // here C + A
        ExpectFrame(Converted(call, request).Frame, {1.0, 2.0, 3.0, 0.0, -90.0, 80.0});
    }
}

TEST(conversions, pass_what_is_not_finite_on_as_one_nan)
{
    SetUpArm(WristArm());
    for (const PoseCall& call : kPoseCalls) {
        for (const double value : {kNan, -kNan, kInf, -kInf}) {
            PoseRequest request = GoodPoseRequest(call);
            request.mode = -1;
            request.pose.Frame.X = value;
            request.pose.Frame.Y = value;
            const KineFrame frame = Converted(call, request).Frame;
            for (const double position : {frame.X, frame.Y, frame.Z}) {
                EXPECT_FALSE(std::isnan(position) && !IsTheNan(position)) << call.name;
            }
            EXPECT_FALSE(std::isfinite(frame.X)) << call.name;
            EXPECT_TRUE(std::isfinite(frame.A)) << call.name;  // the orientation has nothing to do with it
        }
        PoseRequest request = GoodPoseRequest(call);
        request.mode = -1;
        request.pose.Frame.A = -kNan;
        const KineFrame frame = Converted(call, request).Frame;
        EXPECT_TRUE(IsTheNan(frame.A)) << call.name;
    }
}

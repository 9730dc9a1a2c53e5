// The calls that need no arm, as they are when the library has been loaded: nothing in this process calls a
// setter that succeeds.
#include <gtest/gtest.h>

#include "support/pose_calls.h"
#include "support/rigid_matrix.h"

using namespace kine::test;

TEST(at_load, conversions_and_offsets_work)
{
    const auto combined = [](const KineWobj& wobj) { return MatrixOf(wobj.UFrame) * MatrixOf(wobj.OFrame); };
    const PoseRequest fixed = GoodPoseRequest(kFixCall);
    EXPECT_TRUE(IsFrame(Converted(kFixCall, fixed).Frame,
                        RigidInverse(combined(fixed.wobj)) * MatrixOf(fixed.pose.Frame)));
    const PoseRequest held = GoodPoseRequest(kGripCall);
    const Mat4 worldFromWobj = MatrixOf(held.flange.Frame) * combined(held.wobj);
    EXPECT_TRUE(
        IsFrame(Converted(kGripCall, held).Frame, RigidInverse(worldFromWobj) * MatrixOf(held.pose.Frame)));
    EXPECT_TRUE(IsFrame(Converted(kGripBackCall, held).Frame, worldFromWobj * MatrixOf(held.pose.Frame)));
    PoseRequest crd = GoodPoseRequest(kCrdCall);
    EXPECT_TRUE(IsFrame(Converted(kCrdCall, crd).Frame, MatrixOf(crd.pose.Frame)));
    crd.mode = -1;
    EXPECT_TRUE(
        IsFrame(Converted(kCrdCall, crd).Frame, RigidInverse(combined(crd.wobj)) * MatrixOf(crd.pose.Frame)));
    const PoseRequest moved = GoodPoseRequest(kToolOffsetCall);
    EXPECT_TRUE(IsFrame(Converted(kToolOffsetCall, moved).Frame,
                        MatrixOf(moved.pose.Frame) * MatrixOf(moved.offset)));
    EXPECT_EQ(Converted(kWobjOffsetCall, moved).Frame.Z, 903.0);
}

// Nobody has said yet where the robot stands; that is asked before the hold.
TEST(at_load, conversion_from_the_base_is_0x6032_without_a_line)
{
    for (const int toolHeld : {0, 1}) {
        for (const int wobjHeld : {0, 1}) {
            PoseRequest request = GoodPoseRequest(kCrdCall);
            request.mode = -2;
            request.tool.HeldByRobot = static_cast<uint8_t>(toolHeld);
            request.wobj.HeldByRobot = static_cast<uint8_t>(wobjHeld);
            ExpectRefused(kCrdCall, request, KINE_ERR_F2W_MODE);
            request.nullOut = true;
            ExpectRefused(kCrdCall, request, KINE_ERR_POSE);
        }
    }
}

TEST(at_load, conversions_check_their_records)
{
    for (const PoseCall& call : kPoseCalls) {
        PoseRequest request = GoodPoseRequest(call);
        request.pose.Frame.A = 181.0;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
    for (const PoseCall* call : {&kFixCall, &kGripCall, &kGripBackCall, &kCrdCall}) {
        PoseRequest request = GoodPoseRequest(*call);
        request.wobj.UFFix = 0;
        request.wobj.MechUnitIndex = 1;
        ExpectRefused(*call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:0;\n");
    }
}

TEST(at_load, difference_and_normal_work)
{
    const KinePose first = FullPose({10.0, 20.0, 30.0, 90.0, 0.0, 0.0});
    const KinePose second = FullPose({110.0, 20.0, 30.0, 90.0, 0.0, 0.0});
    KineFrame difference{};
    EXPECT_EQ(Kine_CalcPosDif(&first, &second, -1, &difference), KINE_OK);
    EXPECT_NEAR(difference.Y, -100.0, 1e-10);
    EXPECT_EQ(Kine_CalcPosDif(&first, &second, 0, &difference), KINE_ERR_DIRECTION);

    const KineFrame points[3] = {{0, 0, 0, 0, 0, 0}, {1, 0, 0, 0, 0, 0}, {0, 1, 0, 0, 0, 0}};
    double normal[3] = {};
    EXPECT_EQ(Kine_CalcZVec(&points[0], &points[1], &points[2], 5.0, normal), KINE_OK);
    EXPECT_EQ(normal[2], 5.0);
}

TEST(at_load, roles_of_tool_and_work_object_can_be_swapped)
{
    KineTool tool = StationaryTool({1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
    KineWobj wobj = HeldWobj({7.0, 8.0, 9.0, 10.0, 11.0, 12.0});
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_CalcAlignCoordProc(&tool, &wobj), KINE_OK); }), "");
    EXPECT_TRUE(IsFrame(tool.TFrame, MatrixOf({7.0, 8.0, 9.0, 10.0, 11.0, 12.0})));
    EXPECT_EQ(wobj.UFrame.Z, 3.0);
    EXPECT_EQ(Kine_CalcAlignCoordProc(&tool, &wobj), KINE_ERR_TOOL);
}

TEST(at_load, safe_area_is_0x6012_with_its_line)
{
    const KineJoint joints{};
    const double centre[3] = {};
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(SafeArea_Check(&joints, centre, 100.0), 0x6012); }),
              "IsLegalWobj,!pWobj->UFFix:0;\n");
}

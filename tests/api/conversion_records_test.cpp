// Where the caller of the conversions and offsets keeps its records: in one place, anywhere in memory, or at
// the end of what can be read.
#include <gtest/gtest.h>

#include "support/cell_setup.h"
#include "support/guarded_memory.h"
#include "support/odd_record.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

const KineLoad kLoad{};

void SetUpTwoUnits()
{
    SetUpArm(WristArm());
    SetUnitCounts(2, 6);
}

}  // namespace

TEST(conversion_records, result_may_be_the_memory_of_any_input)
{
    SetUpTwoUnits();
    for (const PoseCall& call : kPoseCalls) {
        const PoseRequest request = GoodPoseRequest(call);
        const KinePose expected = Converted(call, request);
        PoseRequest onPose = request;
        EXPECT_EQ(call.run(onPose, &onPose.pose), KINE_OK);
        EXPECT_TRUE(SameBits(onPose.pose, expected)) << call.name;
        PoseRequest onFlange = request;
        EXPECT_EQ(call.run(onFlange, &onFlange.flange), KINE_OK);
        EXPECT_TRUE(SameBits(onFlange.flange, expected)) << call.name;
    }
    PoseRequest both = GoodPoseRequest(kGripCall);
    both.flange = both.pose;
    KinePose shared = both.pose;
    const KinePose expected = Converted(kGripCall, both);
    EXPECT_EQ(Kine_WorldPosToGripWobjPos(&shared, &both.wobj, &shared, &shared), KINE_OK);
    EXPECT_TRUE(SameBits(shared, expected));
}

TEST(conversion_records, shared_memory_keeps_its_bits_on_failure)
{
    SetUpTwoUnits();
    for (const PoseCall& call : kPoseCalls) {
        PoseRequest request = GoodPoseRequest(call);
        request.pose.Frame.A = 181.0;
        const KinePose before = request.pose;
        EXPECT_EQ(call.run(request, &request.pose), KINE_ERR_POSE);
        EXPECT_TRUE(SameBits(request.pose, before)) << call.name;
    }
}

TEST(conversion_records, may_lie_at_odd_addresses)
{
    SetUpTwoUnits();
    const PoseRequest held = GoodPoseRequest(kGripCall);
    const PoseRequest fixed = GoodPoseRequest(kFixCall);
    OddRecord<KinePose> pose(held.pose);
    OddRecord<KinePose> flange(held.flange);
    OddRecord<KineFrame> offset(held.offset);
    OddRecord<KineTool> tool(held.tool);
    OddRecord<KineWobj> heldWobj(held.wobj);
    OddRecord<KineWobj> fixedWobj(fixed.wobj);
    OddRecord<KinePose> out(Untouched<KinePose>());
    EXPECT_EQ(Kine_WorldPosToFixWobjPos(pose.Get(), fixedWobj.Get(), out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kFixCall, fixed)));
    EXPECT_EQ(Kine_WorldPosToGripWobjPos(pose.Get(), heldWobj.Get(), flange.Get(), out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kGripCall, held)));
    EXPECT_EQ(Kine_GripWobjPosToWorldPos(pose.Get(), heldWobj.Get(), flange.Get(), out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kGripBackCall, held)));
    PoseRequest crd = held;
    crd.mode = -2;
    EXPECT_EQ(Kine_CrdPosToWobjPos(pose.Get(), -2, tool.Get(), heldWobj.Get(), &kLoad, out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kCrdCall, crd)));
    EXPECT_EQ(Kine_ToolCoordOffset(pose.Get(), offset.Get(), out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kToolOffsetCall, held)));
    EXPECT_EQ(Kine_WobjCoordOffset(pose.Get(), offset.Get(), out.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(out.Value(), Converted(kWobjOffsetCall, held)));
}

TEST(conversion_records, are_read_and_written_within_their_bounds)
{
    SetUpTwoUnits();
    for (const bool behind : {true, false}) {
        const auto guard = [behind]<class Record>(const Record& value) {
            return GuardedRecord<Record>(value, behind ? Guard::kBehind : Guard::kBefore);
        };
        const PoseRequest held = GoodPoseRequest(kGripCall);
        auto pose = guard(held.pose);
        auto flange = guard(held.flange);
        auto offset = guard(held.offset);
        auto tool = guard(held.tool);
        auto heldWobj = guard(held.wobj);
        auto fixedWobj = guard(GoodPoseRequest(kFixCall).wobj);
        auto out = guard(KinePose{});
        pose.Freeze();
        flange.Freeze();
        offset.Freeze();
        tool.Freeze();
        heldWobj.Freeze();
        fixedWobj.Freeze();
        EXPECT_EQ(Kine_WorldPosToFixWobjPos(pose.Get(), fixedWobj.Get(), out.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kFixCall, GoodPoseRequest(kFixCall))));
        EXPECT_EQ(Kine_WorldPosToGripWobjPos(pose.Get(), heldWobj.Get(), flange.Get(), out.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kGripCall, held)));
        EXPECT_EQ(Kine_GripWobjPosToWorldPos(pose.Get(), heldWobj.Get(), flange.Get(), out.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kGripBackCall, held)));
        EXPECT_EQ(Kine_CrdPosToWobjPos(pose.Get(), 0, tool.Get(), heldWobj.Get(), &kLoad, out.Get()),
                  KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kCrdCall, held)));
        EXPECT_EQ(Kine_ToolCoordOffset(pose.Get(), offset.Get(), out.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kToolOffsetCall, held)));
        EXPECT_EQ(Kine_WobjCoordOffset(pose.Get(), offset.Get(), out.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(out.Value(), Converted(kWobjOffsetCall, held)));
    }
}

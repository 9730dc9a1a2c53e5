// Where the caller keeps its records: anywhere in memory, in one place, or at the end of what can be read.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/guarded_memory.h"
#include "support/odd_record.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

Request GoodRequest()
{
    Request request;
    request.joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    for (std::size_t i = 0; i < 6; ++i) request.joints.ExtAxis[i] = static_cast<double>(i) + 0.5;
    request.target.Frame = {700.0, 100.0, 900.0, 20.0, 30.0, 40.0};
    for (std::size_t i = 0; i < 6; ++i) request.target.ExtAxis[i] = static_cast<double>(i) + 0.25;
    request.tool = HeldTool({10.0, 20.0, 30.0, 40.0, 50.0, 60.0});
    request.tool.TLoad = MakeLoad(3.0, 1.0, 2.0, 3.0);
    request.wobj = FixedWobj({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, {7.0, 8.0, 9.0, 10.0, 11.0, 12.0});
    request.load = MakeLoad(2.0, 3.0, 4.0, 5.0);
    return request;
}

// Room for one record of either kind: the calls read one and write the other in the same bytes.
template <class Input, class Output>
class SharedMemory
{
public:
    explicit SharedMemory(const Input& input) { std::memcpy(bytes_.data(), &input, sizeof input); }
    Input* AsInput() { return static_cast<Input*>(static_cast<void*>(bytes_.data())); }
    Output* AsOutput() { return static_cast<Output*>(static_cast<void*>(bytes_.data())); }
    Output Result() const
    {
        Output copy;
        std::memcpy(&copy, bytes_.data(), sizeof copy);
        return copy;
    }

private:
    alignas(16) std::array<unsigned char, 512> bytes_{};
};

}  // namespace

TEST(records, may_lie_at_odd_addresses)
{
    SetUpArm(WristArm());
    const Request request = GoodRequest();
    OddRecord<KineJoint> joints(request.joints);
    OddRecord<KinePose> target(request.target);
    OddRecord<KineTool> tool(request.tool);
    OddRecord<KineWobj> wobj(request.wobj);
    OddRecord<KineLoad> load(request.load);
    for (const ChainCall& call : kForwardCalls) {
        OddRecord<KinePose> pose(Untouched<KinePose>());
        EXPECT_EQ(call.forward(joints.Get(), tool.Get(), wobj.Get(), load.Get(), pose.Get()), KINE_OK);
        EXPECT_TRUE(SameBits(pose.Value(), Perform(call, request).pose)) << call.name;
    }
    OddRecord<KineJoint> solved(Untouched<KineJoint>());
    EXPECT_EQ(Kine_WobjPosToJoint(target.Get(), tool.Get(), wobj.Get(), load.Get(), solved.Get()), KINE_OK);
    EXPECT_TRUE(SameBits(solved.Value(), Perform(kInverseCall, request).joints));
}

TEST(records, of_setup_and_queries_may_lie_at_odd_addresses)
{
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 1), KINE_OK);
    OddRecord<KineKinematicParam> param(WristArm());
    EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, param.Get()), KINE_OK);
    SetUnitCounts(3, 6);
    OddRecord<KineMechUnit> unit(CarryingRobot(LinearUnit({}, {}, 0), 0));
    EXPECT_EQ(Kine_SetMechUnitParam(0, unit.Get()), KINE_OK);
    OddRecord<KineExtAxisParam> axis(KineExtAxisParam{});
    EXPECT_EQ(Kine_SetExtAxisParam(0, axis.Get()), KINE_OK);
    OddRecord<KineJoint> upper(MakeJoints({170, 170, 170, 170, 170, 170}));
    OddRecord<KineJoint> lower(MakeJoints({-170, -170, -170, -170, -170, -170}));
    EXPECT_EQ(Kine_SetAxisLimit(upper.Get(), lower.Get()), KINE_OK);

    OddRecord<KineJoint> joints(MakeJoints({100, 0, 0, 200, 1, 300}));
    OddRecord<KineArmConfig> config(Untouched<KineArmConfig>());
    EXPECT_EQ(Kine_GetArmType(joints.Get(), config.Get()), KINE_OK);
    EXPECT_EQ(config.Value().Cfg3, 3);
    EXPECT_EQ(Kine_IsSingularity(joints.Get(), 0), KINE_SINGULAR);
    KinePose beyond{};
    beyond.Cfg1 = 4;
    OddRecord<KinePose> pose(beyond);
    EXPECT_EQ(Kine_IsArmTypeValid(pose.Get()), KINE_ERR_CONFIG);
    EXPECT_EQ(Kine_FKineVision(joints.Get(), pose.Get()), KINE_OK);
    EXPECT_EQ(pose.Value().Cfg3, 3);
}

TEST(records, joints_and_pose_may_be_the_same_memory)
{
    SetUpArm(WristArm());
    const Request request = GoodRequest();
    for (const ChainCall& call : kForwardCalls) {
        SharedMemory<KineJoint, KinePose> memory(request.joints);
        EXPECT_EQ(
            call.forward(memory.AsInput(), &request.tool, &request.wobj, &request.load, memory.AsOutput()),
            KINE_OK);
        EXPECT_TRUE(SameBits(memory.Result(), Perform(call, request).pose)) << call.name;
    }
    SharedMemory<KineJoint, KinePose> vision(request.joints);
    KinePose apart{};
    EXPECT_EQ(Kine_FKineVision(vision.AsInput(), vision.AsOutput()), KINE_OK);
    EXPECT_EQ(Kine_FKineVision(&request.joints, &apart), KINE_OK);
    EXPECT_TRUE(SameBits(vision.Result(), apart));
}

TEST(records, any_input_and_the_pose_may_be_the_same_memory)
{
    SetUpArm(WristArm());
    const Request request = GoodRequest();
    for (const ChainCall& call : kForwardCalls) {
        const KinePose expected = Perform(call, request).pose;
        SharedMemory<KineTool, KinePose> tool(request.tool);
        EXPECT_EQ(
            call.forward(&request.joints, tool.AsInput(), &request.wobj, &request.load, tool.AsOutput()),
            KINE_OK);
        EXPECT_TRUE(SameBits(tool.Result(), expected));
        SharedMemory<KineWobj, KinePose> wobj(request.wobj);
        EXPECT_EQ(
            call.forward(&request.joints, &request.tool, wobj.AsInput(), &request.load, wobj.AsOutput()),
            KINE_OK);
        EXPECT_TRUE(SameBits(wobj.Result(), expected));
        SharedMemory<KineLoad, KinePose> load(request.load);
        EXPECT_EQ(
            call.forward(&request.joints, &request.tool, &request.wobj, load.AsInput(), load.AsOutput()),
            KINE_OK);
        EXPECT_TRUE(SameBits(load.Result(), expected));
    }
}

TEST(records, target_and_joints_may_be_the_same_memory)
{
    SetUpArm(WristArm());
    const Request request = GoodRequest();
    SharedMemory<KinePose, KineJoint> memory(request.target);
    EXPECT_EQ(
        Kine_WobjPosToJoint(memory.AsInput(), &request.tool, &request.wobj, &request.load, memory.AsOutput()),
        KINE_OK);
    EXPECT_TRUE(SameBits(memory.Result(), Perform(kInverseCall, request).joints));
}

TEST(records, joints_and_configuration_may_be_the_same_memory)
{
    SetUpArm(WristArm());
    SharedMemory<KineJoint, KineArmConfig> memory(MakeJoints({100, 0, 0, 200, 1, 300}));
    EXPECT_EQ(Kine_GetArmType(memory.AsInput(), memory.AsOutput()), KINE_OK);
    EXPECT_EQ(memory.Result().Cfg1, 1);
    EXPECT_EQ(memory.Result().Cfg2, 2);
    EXPECT_EQ(memory.Result().Cfg3, 3);
    EXPECT_EQ(memory.Result().Cfg4, 0);
}

TEST(records, shared_memory_keeps_its_bits_on_failure)
{
    SetUpArm(WristArm());
    Request request = GoodRequest();
    request.wobj.HeldByRobot = 2;
    for (const ChainCall& call : kForwardCalls) {
        SharedMemory<KineJoint, KinePose> memory(request.joints);
        EXPECT_EQ(
            call.forward(memory.AsInput(), &request.tool, &request.wobj, &request.load, memory.AsOutput()),
            KINE_ERR_HOLD_CONFLICT);
        KineJoint after;
        std::memcpy(&after, memory.AsInput(), sizeof after);
        EXPECT_TRUE(SameBits(after, request.joints));
    }
}

// Inputs in memory that cannot be written, with nothing readable behind them or before them, and a result at
// the very end of what can be written.
TEST(records, are_read_and_written_within_their_bounds)
{
    for (const bool behind : {true, false}) {
        const auto guard = [behind]<class Record>(const Record& value) {
            return GuardedRecord<Record>(value, behind ? Guard::kBehind : Guard::kBefore);
        };
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 1), KINE_OK);
        auto param = guard(WristArm());
        param.Freeze();
        EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, param.Get()), KINE_OK);
        SetUnitCounts(3, 6);
        auto unit = guard(KineMechUnit{});
        unit.Freeze();
        EXPECT_EQ(Kine_SetMechUnitParam(0, unit.Get()), KINE_OK);
        auto axis = guard(KineExtAxisParam{});
        axis.Freeze();
        EXPECT_EQ(Kine_SetExtAxisParam(0, axis.Get()), KINE_OK);

        const Request request = GoodRequest();
        auto joints = guard(request.joints);
        auto target = guard(request.target);
        auto tool = guard(request.tool);
        auto wobj = guard(request.wobj);
        auto load = guard(request.load);
        joints.Freeze();
        target.Freeze();
        tool.Freeze();
        wobj.Freeze();
        load.Freeze();
        EXPECT_EQ(Kine_SetAxisLimit(joints.Get(), joints.Get()), KINE_OK);
        auto config = guard(KineArmConfig{});
        EXPECT_EQ(Kine_GetArmType(joints.Get(), config.Get()), KINE_OK);
        EXPECT_EQ(Kine_IsArmTypeValid(target.Get()), KINE_OK);
        EXPECT_EQ(Kine_IsSingularity(joints.Get(), 0), KINE_OK);
        auto pose = guard(KinePose{});
        EXPECT_EQ(Kine_FKineVision(joints.Get(), pose.Get()), KINE_OK);
        for (const ChainCall& call : kForwardCalls) {
            EXPECT_EQ(call.forward(joints.Get(), tool.Get(), wobj.Get(), load.Get(), pose.Get()), KINE_OK);
            EXPECT_TRUE(SameBits(pose.Value(), Perform(call, request).pose));
        }
        auto solved = guard(KineJoint{});
        EXPECT_EQ(Kine_WobjPosToJoint(target.Get(), tool.Get(), wobj.Get(), load.Get(), solved.Get()),
                  KINE_OK);
        EXPECT_TRUE(SameBits(solved.Value(), Perform(kInverseCall, request).joints));
    }
}

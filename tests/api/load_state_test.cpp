// The library as it is when it has been loaded: nothing in this process calls a setter that succeeds.
#include <gtest/gtest.h>

#include "support/chain_calls.h"

using namespace kine::test;

TEST(at_load, forward_calls_are_0x6001_with_their_line)
{
    for (const bool heldTool : {true, false}) {
        Request request;
        request.tool = heldTool ? HeldTool() : StationaryTool();
        request.wobj = heldTool ? FixedWobj() : HeldWobj();
        for (const ChainCall& call : kForwardCalls) {
            ExpectRefused(call, request, KINE_ERR_NOT_INITIALISED, "FK Error 1:24577\n");
        }
    }
}

TEST(at_load, inverse_call_is_0x6001_without_a_line)
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    ExpectRefused(kInverseCall, request, KINE_ERR_NOT_INITIALISED, "");
    request.target.Cfg1 = 100000;
    request.wobj.HeldByRobot = 2;
    ExpectRefused(kInverseCall, request, KINE_ERR_NOT_INITIALISED, "");
}

TEST(at_load, queries_and_limits_are_0x6001_without_a_line)
{
    const KineJoint joints{};
    const KinePose target{};
    KinePose pose = Untouched<KinePose>();
    KineArmConfig config = Untouched<KineArmConfig>();
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_SetAxisLimit(&joints, &joints), KINE_ERR_NOT_INITIALISED);
                  EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_ERR_NOT_INITIALISED);
                  EXPECT_EQ(Kine_IsArmTypeValid(&target), KINE_ERR_NOT_INITIALISED);
                  for (const uint32_t kind : {0u, 1u, 2u, 3u}) {
                      EXPECT_EQ(Kine_IsSingularity(&joints, kind), KINE_ERR_NOT_INITIALISED);
                  }
                  EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_ERR_NOT_INITIALISED);
              }),
              "");
    EXPECT_TRUE(IsUntouched(pose));
    EXPECT_TRUE(IsUntouched(config));
}

TEST(at_load, records_are_checked_all_the_same)
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    for (const ChainCall& call : kChainCalls) {
        Request bad = request;
        bad.tool.TFrame.A = 181.0;
        ExpectRefused(call, bad, KINE_ERR_TOOL, "");
        bad = request;
        bad.load.Mass = -1.0;
        ExpectRefused(call, bad, KINE_ERR_LOAD, "");
        bad = request;
        bad.wobj.HeldByRobot = 1;
        ExpectRefused(call, bad, KINE_ERR_HOLD, "");
        bad = request;
        bad.nullResult = true;
        EXPECT_NE(Perform(call, bad).code, KINE_ERR_NOT_INITIALISED);
    }
    KinePose pose{};
    pose.Frame.A = 181.0;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_POSE);
}

TEST(at_load, there_are_no_mechanical_units)
{
    Request request;
    request.tool = HeldTool();
    request.wobj = WobjOnUnit(1);
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:0;\n");
    }
}

TEST(at_load, mechanical_units_are_not_enabled)
{
    const KineMechUnit unit{};
    const KineExtAxisParam param{};
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(0, nullptr), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(-1, &param), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(0, nullptr), KINE_OK);
              }),
              "");
}

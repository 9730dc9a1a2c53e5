// The setters of mechanical units before any initialisation: nothing in this process stores an arm type.
#include <gtest/gtest.h>

#include "support/cell_setup.h"
#include "support/chain_calls.h"

using namespace kine::test;

TEST(before_initialisation, counts_are_stored)
{
    SetUnitCounts(2, 4);
    ExpectCounts(2, 4);
    SetUnitCounts(3, 6);
    ExpectCounts(3, 6);
}

TEST(before_initialisation, counts_are_checked)
{
    SetUnitCounts(2, 4);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(4, 4, 1), KINE_ERR_MECH_UNIT_COUNT);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(2, 7, 1), KINE_ERR_MECH_UNIT_COUNT);
    EXPECT_EQ(UnitCountLine(), UnitCountLineFor(2));
}

TEST(before_initialisation, units_and_axes_are_stored_and_checked)
{
    SetUnitCounts(2, 1);
    KineMechUnit unit = RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0);
    EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_OK);
    unit.AxisCount = 2;
    EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_ERR_MECH_UNIT);
    const KineExtAxisParam param{};
    EXPECT_EQ(Kine_SetExtAxisParam(0, &param), KINE_OK);
    EXPECT_EQ(Kine_SetExtAxisParam(6, &param), KINE_ERR_EXT_AXIS_PARAM);
}

TEST(before_initialisation, work_object_index_is_held_against_the_count)
{
    SetUnitCounts(2, 6);
    Request request;
    request.tool = HeldTool();
    request.wobj = WobjOnUnit(2);
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:2;\n");
    }
    request.wobj = WobjOnUnit(1);
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, request, KINE_ERR_NOT_INITIALISED, "FK Error 1:24577\n");
    }
    ExpectRefused(kInverseCall, request, KINE_ERR_NOT_INITIALISED, "");
}

TEST(before_initialisation, flag_can_be_cleared)
{
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    const KineMechUnit unit{};
    EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_OK);
}

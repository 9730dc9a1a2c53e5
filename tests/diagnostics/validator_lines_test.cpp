// The lines of the validators, byte for byte.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

std::string CountsLine(uint32_t units, uint32_t items)
{
    return PrintedBy(
        [&] { EXPECT_EQ(Kine_SetMechUnitGlobalCfg(units, items, 1), KINE_ERR_MECH_UNIT_COUNT); });
}

std::string UnitLine(int32_t index, const KineMechUnit& unit)
{
    return PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(index, &unit), KINE_ERR_MECH_UNIT); });
}

std::string ExtAxisLine(int32_t index)
{
    const KineExtAxisParam param{};
    return PrintedBy([&] { EXPECT_EQ(Kine_SetExtAxisParam(index, &param), KINE_ERR_EXT_AXIS_PARAM); });
}

void SetUpCounts(uint32_t units, uint32_t items)
{
    SetUpArm(Puma());
    SetUnitCounts(units, items);
}

KineMechUnit UnitWithAxes(int axes)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.AxisCount = static_cast<uint8_t>(axes);
    return unit;
}

}  // namespace

TEST(counts_line, too_many_units)
{
    SetUpArm(Puma());
    EXPECT_EQ(CountsLine(4, 2), "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n");
    EXPECT_EQ(CountsLine(1000, 0), "IsLegalMechUnitAndExtAxisNum:mechUnitCount:1000,3\n");
}

TEST(counts_line, too_many_external_axes)
{
    SetUpArm(Puma());
    EXPECT_EQ(CountsLine(3, 7), "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:7,6\n");
    EXPECT_EQ(CountsLine(0, 100), "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:100,6\n");
}

TEST(counts_line, too_many_of_both_is_the_line_of_the_units_alone)
{
    SetUpArm(Puma());
    EXPECT_EQ(CountsLine(4, 7), "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n");
}

TEST(counts_line, counts_are_compared_unsigned_and_printed_signed)
{
    SetUpArm(Puma());
    EXPECT_EQ(CountsLine(0xFFFFFFFFu, 0), "IsLegalMechUnitAndExtAxisNum:mechUnitCount:-1,3\n");
    EXPECT_EQ(CountsLine(0x80000000u, 0), "IsLegalMechUnitAndExtAxisNum:mechUnitCount:-2147483648,3\n");
    EXPECT_EQ(CountsLine(0, 0xFFFFFFFEu), "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:-2,6\n");
    EXPECT_EQ(CountsLine(0, 0x7FFFFFFFu),
              "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:2147483647,6\n");
}

TEST(unit_index_line, shows_index_and_unit_count)
{
    SetUpCounts(2, 5);
    const KineMechUnit unit{};
    EXPECT_EQ(UnitLine(-1, unit), "IsLegalMechUnit:index:-1,2\n");
    EXPECT_EQ(UnitLine(3, unit), "IsLegalMechUnit:index:3,2\n");
    EXPECT_EQ(UnitLine(kMinInt, unit), "IsLegalMechUnit:index:-2147483648,2\n");
    EXPECT_EQ(UnitLine(kMaxInt, unit), "IsLegalMechUnit:index:2147483647,2\n");
    SetUnitCounts(0, 0);
    EXPECT_EQ(UnitLine(-7, unit), "IsLegalMechUnit:index:-7,0\n");
}

TEST(unit_index_line, comes_before_the_axis_count_and_a_null)
{
    SetUpCounts(2, 0);
    EXPECT_EQ(UnitLine(-1, UnitWithAxes(9)), "IsLegalMechUnit:index:-1,2\n");
    EXPECT_EQ(UnitLine(3, UnitWithAxes(9)), "IsLegalMechUnit:index:3,2\n");
    for (const int32_t index : {-1, 3}) {
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(index, nullptr), KINE_ERR_MECH_UNIT); }),
                  "IsLegalMechUnit:index:" + std::to_string(index) + ",2\n");
    }
}

TEST(axis_count_line, has_a_full_width_colon_in_gbk)
{
    SetUpCounts(2, 2);
    const std::string start =
        "IsLegalMechUnit\xA3\xBApArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:";
    EXPECT_EQ(UnitLine(1, UnitWithAxes(3)), start + "3,2\n");
    EXPECT_EQ(UnitLine(0, UnitWithAxes(255)), start + "255,2\n");
    SetUnitCounts(2, 0);
    EXPECT_EQ(UnitLine(2, UnitWithAxes(1)), start + "1,0\n");
}

TEST(axis_count_line, is_not_printed_for_a_unit_that_is_not_active)
{
    SetUpCounts(2, 2);
    KineMechUnit unit = UnitWithAxes(255);
    unit.Active = 0;
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_OK); }), "");
}

TEST(ext_axis_index_line, shows_index_and_item_count)
{
    SetUpCounts(2, 5);
    EXPECT_EQ(ExtAxisLine(-1), "IsLegalExtAxisParam:index:-1,5\n");
    EXPECT_EQ(ExtAxisLine(6), "IsLegalExtAxisParam:index:6,5\n");
    EXPECT_EQ(ExtAxisLine(kMinInt), "IsLegalExtAxisParam:index:-2147483648,5\n");
    EXPECT_EQ(ExtAxisLine(kMaxInt), "IsLegalExtAxisParam:index:2147483647,5\n");
    EXPECT_EQ(PrintedBy([] { EXPECT_EQ(Kine_SetExtAxisParam(-1, nullptr), KINE_ERR_EXT_AXIS_PARAM); }),
              "IsLegalExtAxisParam:index:-1,5\n");
}

TEST(wobj_line, is_printed_by_every_call_that_takes_a_work_object)
{
    for (const uint32_t count : {0u, 1u, 2u, 3u}) {
        SetUpCounts(count, 6);
        Request request;
        request.tool = HeldTool();
        request.wobj = WobjOnUnit(3);
        for (const ChainCall& call : kChainCalls) {
            ExpectRefused(call, request, KINE_ERR_WOBJ,
                          "IsLegalWobj,!pWobj->UFFix:" + std::to_string(count) + ";\n");
        }
    }
}

TEST(wobj_line, is_not_printed_when_an_earlier_record_is_refused)
{
    SetUpCounts(3, 6);
    Request request;
    request.tool = HeldTool();
    request.tool.TFrame.A = 181.0;
    request.wobj = WobjOnUnit(0);
    for (const ChainCall& call : kChainCalls) ExpectRefused(call, request, KINE_ERR_TOOL, "");
}

TEST(wobj_line, is_printed_when_later_records_are_bad_too)
{
    SetUpCounts(3, 6);
    Request request;
    request.tool = HeldTool();
    request.wobj = WobjOnUnit(0);
    request.wobj.HeldByRobot = 1;
    request.load.Mass = -1.0;
    request.target.Frame.A = 181.0;
    request.nullResult = true;
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n");
    }
}

// The enable flag is about the setters only.
TEST(wobj_line, is_printed_while_units_are_disabled)
{
    SetUpCounts(3, 6);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    Request request;
    request.tool = HeldTool();
    request.wobj = WobjOnUnit(0);
    for (const ChainCall& call : kChainCalls) {
        ExpectRefused(call, request, KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n");
    }
}

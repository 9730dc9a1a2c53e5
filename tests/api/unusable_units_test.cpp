// Mechanical units that the calls through the chains cannot use, and axis frames at the origin.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr KineFrame kAxis = {800.0, 100.0, 50.0, 10.0, 20.0, 30.0};
constexpr KineFrame kAtOrigin = {0.0, 0.0, 0.0, 10.0, 20.0, 30.0};

const std::string kFk4 = "FK Error 4:24627\n";
const std::string kFk6Kind = "FK Error 6:24625\n";
const std::string kFk6Origin = "FK Error 6:24628\n";
const std::string kIk2 = "IK error 2:24627\n";
const std::string kIk3Kind = "IK error 3:24625\n";
const std::string kIk3Origin = "IK error 3:24628\n";

void SetUpCell(uint32_t units = 3)
{
    SetUpArm(WristArm());
    SetUnitCounts(units, 6);
}

Request OnUnit(int unit)
{
    Request request;
    request.joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    request.tool = HeldTool();
    request.wobj = WobjOnUnit(unit);
    return request;
}

Request FixedWithTool(uint8_t toolByte)
{
    Request request = OnUnit(0);
    request.tool.HeldByRobot = toolByte;
    request.wobj = FixedWobj();
    request.wobj.HeldByRobot = toolByte == 0 ? 1 : 0;
    return request;
}

struct BadUnit
{
    const char* name;
    KineMechUnit unit;
};

// All of them have an axis frame away from the origin.
const std::vector<BadUnit>& BadUnits()
{
    static const std::vector<BadUnit> units = [] {
        std::vector<BadUnit> list;
        for (const int kind : {0, 4, 255, 256, 258, 65535}) {
            KineMechUnit unit = TwoRotaryUnit(kAxis, kAxis, 0, 1);
            unit.UnitKind = static_cast<uint16_t>(kind);
            list.push_back({"unknown kind", unit});
        }
        for (const uint16_t kind : {kLinearKind, kRotaryKind, kTwoRotaryKind}) {
            KineMechUnit unit = TwoRotaryUnit(kAxis, kAxis, 0, 1);
            unit.UnitKind = kind;
            unit.AxisCount = 0;
            list.push_back({"no axes", unit});
            for (const int driver : {6, 7, 128, 255}) {
                unit.AxisCount = 2;
                unit.AxisParamIndex[0] = static_cast<uint8_t>(driver);
                list.push_back({"first axis driven by no external axis", unit});
            }
        }
        KineMechUnit unit = TwoRotaryUnit(kAxis, kAxis, 0, 1);
        unit.AxisCount = 1;
        list.push_back({"two rotary axes of which one is there", unit});
        list.push_back({"second axis driven by no external axis", TwoRotaryUnit(kAxis, kAxis, 0, 6)});
        list.push_back({"second axis driven by no external axis", TwoRotaryUnit(kAxis, kAxis, 0, 255)});
        return list;
    }();
    return units;
}

void ExpectWobjRefused(const Request& request)
{
    ExpectRefused(kWobj, request, KINE_ERR_W2F_UNIT_KIND, kFk6Kind);
    ExpectRefused(kInverseCall, request, KINE_ERR_F2W_UNIT_KIND, kIk2);
    // The other forward calls do not look at the work object of a held tool.
    for (const std::size_t call : {0u, 1u, 2u})
        EXPECT_EQ(Perform(kForwardCalls[call], request).code, KINE_OK);
    // With a tool byte of 2 all of them do.
    Request byte2 = request;
    byte2.tool.HeldByRobot = 2;
    for (const ChainCall& call : kForwardCalls) ExpectRefused(call, byte2, KINE_ERR_W2F_UNIT_KIND, kFk6Kind);
}

void ExpectCarrierRefused()
{
    const Request held = FixedWithTool(1);
    EXPECT_EQ(Perform(kBase, held).code, KINE_OK);
    EXPECT_EQ(Perform(kFlange, held).code, KINE_OK);
    ExpectRefused(kWorld, held, KINE_ERR_F2W_UNIT_KIND, kFk4);
    ExpectRefused(kWobj, held, KINE_ERR_F2W_UNIT_KIND, kFk4);
    ExpectRefused(kInverseCall, held, KINE_ERR_W2F_UNIT_KIND, kIk3Kind);
    const Request stationary = FixedWithTool(0);
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, stationary, KINE_ERR_F2W_UNIT_KIND, kFk4);
    }
    ExpectRefused(kInverseCall, stationary, KINE_ERR_W2F_UNIT_KIND, kIk3Kind);
}

}  // namespace

TEST(unusable_unit, under_the_work_object_is_0x6031_forward_and_0x6033_inverse)
{
    for (const auto& [name, unit] : BadUnits()) {
        SCOPED_TRACE(::testing::Message()
                     << name << ", kind " << unit.UnitKind << ", driver " << int{unit.AxisParamIndex[0]});
        SetUpCell();
        StoreUnit(1, unit);
        ExpectWobjRefused(OnUnit(1));
    }
}

TEST(unusable_unit, never_stored_is_0x6031_forward_and_0x6033_inverse)
{
    SetUpCell();
    ExpectWobjRefused(OnUnit(2));
}

TEST(unusable_unit, under_the_robot_is_0x6033_forward_and_0x6031_inverse)
{
    for (const auto& [name, unit] : BadUnits()) {
        SCOPED_TRACE(::testing::Message()
                     << name << ", kind " << unit.UnitKind << ", driver " << int{unit.AxisParamIndex[0]});
        SetUpCell();
        StoreUnit(1, unit);
        StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
        ExpectCarrierRefused();
    }
}

TEST(unusable_unit, single_axis_kinds_need_neither_second_axis_nor_second_driver)
{
    for (const uint16_t kind : {kLinearKind, kRotaryKind}) {
        SetUpCell();
        KineMechUnit unit = TwoRotaryUnit(kAxis, kAxis, 0, 255);
        unit.UnitKind = kind;
        unit.AxisCount = 1;
        StoreUnit(1, unit);
        EXPECT_EQ(Perform(kWobj, OnUnit(1)).code, KINE_OK);
    }
}

TEST(unit_index, negative_passes_the_validator_and_fails_in_the_conversion)
{
    SetUpCell();
    for (int index = 0; index < 3; ++index) StoreUnit(index, RotaryUnit(kAxis, 0));
    for (const int index : {-1, -2, -128}) {
        ExpectWobjRefused(OnUnit(index));
        // Neither is the index of the robot's own unit taken for it.
        Request request = OnUnit(index);
        request.wobj.UFFix = 2;
        ExpectWobjRefused(request);
    }
}

TEST(unit_index, above_the_count_or_above_2_is_refused_by_the_conversion)
{
    for (uint32_t count = 0; count <= 3; ++count) {
        SetUpCell(count);
        for (int index = 0; index < 3; ++index) StoreUnit(index, RotaryUnit(kAxis, 0));
        for (int index = 0; index < 128; ++index) {
            if (index > 5 && index < 125) continue;
            SCOPED_TRACE(::testing::Message() << "index " << index << ", count " << count);
            Request request = OnUnit(index);
            request.wobj.UFFix = 2;  // the index is not validated
            if (index <= 2 && index <= static_cast<int>(count)) {
                EXPECT_EQ(Perform(kWobj, request).code, KINE_OK);
            } else {
                ExpectWobjRefused(request);
            }
        }
    }
}

// What lies behind the three units in memory is not taken for a fourth, even where it would make one: every
// word that an external axis can hold is 1, the number of the linear kind and a fair number of axes.
TEST(unit_index, of_3_is_no_unit_whatever_the_external_axes_hold)
{
    SetUpCell(3);
    KineExtAxisParam ones{};
    for (int16_t& word : ones.Word) word = 1;
    ones.Raw0 = ones.Raw1 = 1;
    for (uint32_t& value : ones.Value) value = 1;
    for (int16_t& tail : ones.Tail) tail = 1;
    for (int index = 0; index < 6; ++index) EXPECT_EQ(Kine_SetExtAxisParam(index, &ones), KINE_OK);
    Request request = OnUnit(3);
    request.wobj.UFFix = 2;
    ExpectWobjRefused(request);
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 3));
    ExpectCarrierRefused();
}

TEST(unit_index, of_the_carrier_above_the_count_or_above_2_is_refused)
{
    for (uint32_t count = 0; count <= 3; ++count) {
        for (const int carrier : {0, 1, 2, 3, 4, 127, 128, 255}) {
            SCOPED_TRACE(::testing::Message() << "carrier " << carrier << ", count " << count);
            SetUpCell(count);
            for (int index = 0; index < 3; ++index) {
                StoreUnit(index, CarryingRobot(RotaryUnit(kAxis, 0), carrier));
            }
            if (carrier <= 2 && carrier <= static_cast<int>(count)) {
                EXPECT_EQ(Perform(kWorld, FixedWithTool(1)).code, KINE_OK);
            } else {
                ExpectCarrierRefused();
            }
        }
    }
}

TEST(unit_index, count_lowered_later_hides_the_unit)
{
    SetUpCell(3);
    StoreUnit(2, RotaryUnit(kAxis, 0));
    Request request = OnUnit(2);
    request.wobj.UFFix = 2;
    EXPECT_EQ(Perform(kWobj, request).code, KINE_OK);
    SetUnitCounts(2, 6);
    EXPECT_EQ(Perform(kWobj, request).code, KINE_OK);
    SetUnitCounts(1, 6);
    ExpectWobjRefused(request);
}

TEST(axis_at_the_origin, under_the_work_object_is_0x6034_forward_and_served_inverse)
{
    const KineMechUnit units[] = {RotaryUnit(kAtOrigin, 0), TwoRotaryUnit(kAtOrigin, kAxis, 0, 1),
                                  TwoRotaryUnit(kAxis, kAtOrigin, 0, 1),
                                  TwoRotaryUnit(kAtOrigin, kAtOrigin, 0, 1),
                                  RotaryUnit({-0.0, -0.0, -0.0, 0.0, 0.0, 0.0}, 0)};
    for (const KineMechUnit& unit : units) {
        SetUpCell();
        StoreUnit(1, unit);
        ExpectRefused(kWobj, OnUnit(1), KINE_ERR_AXIS_ORIGIN, kFk6Origin);
        // The inverse goes from the unit to the world, where no axis is turned back.
        EXPECT_NE(Perform(kInverseCall, OnUnit(1)).printed, kIk2);
    }
}

TEST(axis_at_the_origin, under_the_robot_is_served_forward_and_0x6034_inverse)
{
    for (const KineMechUnit& unit : {RotaryUnit(kAtOrigin, 0), TwoRotaryUnit(kAxis, kAtOrigin, 0, 1)}) {
        SetUpCell();
        StoreUnit(0, CarryingRobot(unit, 0));
        for (const uint8_t byte : {uint8_t{0}, uint8_t{1}, uint8_t{2}}) {
            for (const ChainCall& call : kForwardCalls) {
                EXPECT_EQ(Perform(call, FixedWithTool(byte)).code, KINE_OK) << call.name;
            }
            ExpectRefused(kInverseCall, FixedWithTool(byte), KINE_ERR_AXIS_ORIGIN, kIk3Origin);
        }
    }
}

TEST(axis_at_the_origin, any_coordinate_off_zero_is_enough)
{
    const double denormal = std::numeric_limits<double>::denorm_min();
    for (const double off : {1e-300, -1e-300, denormal, kNan}) {
        for (double KineFrame::*field : {&KineFrame::X, &KineFrame::Y, &KineFrame::Z}) {
            KineFrame axis{};
            axis.*field = off;
            SetUpCell();
            StoreUnit(1, RotaryUnit(axis, 0));
            EXPECT_EQ(Perform(kWobj, OnUnit(1)).code, KINE_OK);
        }
    }
}

TEST(axis_at_the_origin, second_frame_of_a_single_axis_and_linear_units_are_not_tested)
{
    SetUpCell();
    StoreUnit(1, LinearUnit(kAtOrigin, kAtOrigin, 0));
    EXPECT_EQ(Perform(kWobj, OnUnit(1)).code, KINE_OK);
    StoreUnit(1, RotaryUnit(kAxis, 0));
    EXPECT_EQ(Perform(kWobj, OnUnit(1)).code, KINE_OK);
}

TEST(axis_at_the_origin, comes_after_the_unit_itself)
{
    KineMechUnit unit = TwoRotaryUnit(kAtOrigin, kAtOrigin, 0, 1);
    const auto expectKind = [&] {
        SetUpCell();
        StoreUnit(1, unit);
        ExpectRefused(kWobj, OnUnit(1), KINE_ERR_W2F_UNIT_KIND, kFk6Kind);
    };
    unit.AxisCount = 1;
    expectKind();
    unit.AxisCount = 2;
    unit.AxisParamIndex[1] = 6;
    expectKind();
    unit.AxisParamIndex[1] = 1;
    unit.UnitKind = 4;
    expectKind();
}

// The setters of mechanical units and external axes, without the lines they print.
#include <gtest/gtest.h>

#include <limits>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

// How far the world position lies from the base position along X: the travel of the track under the robot,
// 0 for a robot that stands at the world origin.
double RobotTravel()
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.joints = MakeJoints({5, 10, -20, 30, 40, 50});
    for (std::size_t i = 0; i < 6; ++i) request.joints.ExtAxis[i] = 100.0 * static_cast<double>(i + 1);
    const Outcome base = Perform(kBase, request);
    const Outcome world = Perform(kWorld, request);
    EXPECT_EQ(base.code, KINE_OK);
    EXPECT_EQ(world.code, KINE_OK);
    return world.pose.Frame.X - base.pose.Frame.X;
}

KineMechUnit Track(int extAxis) { return LinearUnit({}, {}, extAxis); }

void SetUpCell(uint32_t units, uint32_t items)
{
    SetUpArm(WristArm());
    SetUnitCounts(units, items);
}

}  // namespace

TEST(Kine_SetMechUnitGlobalCfg, stores_both_counts_up_to_3_and_6)
{
    SetUpArm(Puma());
    for (uint32_t units = 0; units <= 3; ++units) {
        for (uint32_t items = 0; items <= 6; ++items) {
            SetUnitCounts(units, items);
            ExpectCounts(static_cast<int>(units), static_cast<int>(items));
        }
    }
}

TEST(Kine_SetMechUnitGlobalCfg, refused_counts_are_0x6004_and_keep_the_earlier_ones)
{
    SetUpCell(2, 5);
    for (const uint32_t bad : {4u, 7u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(bad, 1, 1), KINE_ERR_MECH_UNIT_COUNT) << bad;
        ExpectCounts(2, 5);
    }
    for (const uint32_t bad : {7u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(1, bad, 1), KINE_ERR_MECH_UNIT_COUNT) << bad;
        ExpectCounts(2, 5);
    }
}

TEST(Kine_SetMechUnitGlobalCfg, disabling_ignores_bad_counts_and_keeps_the_earlier_ones)
{
    SetUpCell(2, 5);
    EXPECT_EQ(PrintedBy([] { EXPECT_EQ(Kine_SetMechUnitGlobalCfg(5, 9, 0), KINE_OK); }), "");
    // Refused counts enable again and show what was kept.
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(9, 9, 1), KINE_ERR_MECH_UNIT_COUNT);
    ExpectCounts(2, 5);
}

TEST(Kine_SetMechUnitGlobalCfg, disabling_ignores_good_counts_too)
{
    SetUpCell(2, 5);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(1, 1, 0), KINE_OK);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(9, 9, 1), KINE_ERR_MECH_UNIT_COUNT);
    ExpectCounts(2, 5);
}

TEST(Kine_SetMechUnitGlobalCfg, refused_counts_still_enable)
{
    SetUpCell(2, 5);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(3, 7, 1), KINE_ERR_MECH_UNIT_COUNT);
    const KineMechUnit unit{};
    EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_ERR_MECH_UNIT);
}

TEST(Kine_SetMechUnitGlobalCfg, any_flag_but_zero_enables)
{
    SetUpArm(Puma());
    const KineMechUnit unit{};
    for (const uint32_t flag : {1u, 2u, 0x100u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(1, 1, 0), KINE_OK);
        EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_OK);
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(1, 1, flag), KINE_OK);
        EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_ERR_MECH_UNIT) << flag;
    }
}

TEST(Kine_SetMechUnitGlobalCfg, disabling_leaves_stored_units_at_work)
{
    SetUpCell(2, 6);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    StoreUnit(1, Track(2));
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, while_disabled_returns_success_and_stores_nothing)
{
    SetUpCell(2, 6);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    StoreUnit(1, Track(2));
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    KineMechUnit bad = Track(5);
    bad.AxisCount = 255;
    const KineMechUnit good = Track(5);
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_SetMechUnitParam(0, &good), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(1, &good), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(1, &bad), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(-1, &good), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(3, &good), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(0, nullptr), KINE_OK);
              }),
              "");
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, index_outside_0_to_2_is_0x6002_whatever_the_count)
{
    for (const uint32_t count : {0u, 3u}) {
        SetUpCell(count, 6);
        const KineMechUnit unit = Track(0);
        for (const int32_t index : {-1, 3, 4, 255, 256, kMinInt, kMaxInt}) {
            EXPECT_EQ(Kine_SetMechUnitParam(index, &unit), KINE_ERR_MECH_UNIT) << index;
        }
        for (const int32_t index : {0, 1, 2}) {
            EXPECT_EQ(Kine_SetMechUnitParam(index, &unit), KINE_OK) << index;
        }
    }
}

TEST(Kine_SetMechUnitParam, refused_index_changes_neither_units_nor_mounting)
{
    SetUpCell(3, 6);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    StoreUnit(1, Track(2));
    const KineMechUnit other = Track(5);
    for (const int32_t index : {-1, 3, kMinInt, kMaxInt}) {
        EXPECT_EQ(Kine_SetMechUnitParam(index, &other), KINE_ERR_MECH_UNIT);
    }
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, axis_count_of_an_active_unit_is_held_against_the_items)
{
    for (uint32_t items = 0; items <= 6; ++items) {
        SetUpCell(3, items);
        KineMechUnit unit = Track(0);
        for (const int32_t active : {1, -1, 2, 256, kMinInt, kMaxInt}) {
            unit.Active = active;
            unit.AxisCount = static_cast<uint8_t>(items);
            EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_OK) << items;
            unit.AxisCount = static_cast<uint8_t>(items + 1);
            EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_ERR_MECH_UNIT) << items;
            unit.AxisCount = 255;
            EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_ERR_MECH_UNIT) << items;
        }
        unit.Active = 0;
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_OK); }), "");
    }
}

TEST(Kine_SetMechUnitParam, refused_axis_count_keeps_slot_and_mounting)
{
    SetUpCell(3, 2);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    StoreUnit(1, Track(2));
    KineMechUnit bad = Track(5);
    bad.AxisCount = 3;
    EXPECT_EQ(Kine_SetMechUnitParam(1, &bad), KINE_ERR_MECH_UNIT);
    EXPECT_EQ(Kine_SetMechUnitParam(0, &bad), KINE_ERR_MECH_UNIT);
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, unit_that_is_not_active_is_stored_like_any_other)
{
    SetUpCell(3, 6);
    KineMechUnit track = Track(3);
    track.Active = 0;
    track.AxisCount = 200;
    StoreUnit(1, track);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    EXPECT_NEAR(RobotTravel(), 400.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, null_is_0x6002_after_the_index_and_keeps_everything)
{
    SetUpCell(3, 6);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    StoreUnit(1, Track(2));
    EXPECT_EQ(PrintedBy([] {
                  EXPECT_EQ(Kine_SetMechUnitParam(0, nullptr), KINE_ERR_MECH_UNIT);
                  EXPECT_EQ(Kine_SetMechUnitParam(1, nullptr), KINE_ERR_MECH_UNIT);
              }),
              "");
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, option1_at_index_0_puts_the_robot_on_unit_option2)
{
    SetUpCell(3, 6);
    StoreUnit(1, Track(1));
    StoreUnit(2, Track(2));
    EXPECT_NEAR(RobotTravel(), 0.0, 1e-9);
    StoreUnit(0, CarryingRobot(Track(0), 1));
    EXPECT_NEAR(RobotTravel(), 200.0, 1e-9);
    StoreUnit(0, CarryingRobot(Track(0), 2));
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
    StoreUnit(0, CarryingRobot(Track(0), 0));
    EXPECT_NEAR(RobotTravel(), 100.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, only_option1_of_exactly_1_carries_the_robot)
{
    SetUpCell(3, 6);
    StoreUnit(1, Track(1));
    for (const uint8_t option : {uint8_t{0}, uint8_t{2}, uint8_t{255}}) {
        StoreUnit(0, CarryingRobot(Track(0), 1));
        EXPECT_NEAR(RobotTravel(), 200.0, 1e-9);
        KineMechUnit unit = CarryingRobot(Track(0), 1);
        unit.Option1 = option;
        StoreUnit(0, unit);
        EXPECT_NEAR(RobotTravel(), 0.0, 1e-9) << int{option};
    }
}

TEST(Kine_SetMechUnitParam, units_1_and_2_never_change_the_mounting)
{
    SetUpCell(3, 6);
    StoreUnit(1, CarryingRobot(Track(1), 1));
    StoreUnit(2, CarryingRobot(Track(2), 1));
    EXPECT_NEAR(RobotTravel(), 0.0, 1e-9);
    StoreUnit(0, CarryingRobot(Track(0), 2));
    StoreUnit(1, Track(1));
    StoreUnit(2, Track(2));
    EXPECT_NEAR(RobotTravel(), 300.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, keeps_the_record_and_needs_it_no_longer)
{
    SetUpCell(3, 6);
    KineMechUnit unit = CarryingRobot(Track(4), 0);
    const KineMechUnit before = unit;
    StoreUnit(0, unit);
    EXPECT_TRUE(SameBits(unit, before));
    unit = Untouched<KineMechUnit>();
    EXPECT_NEAR(RobotTravel(), 500.0, 1e-9);
}

TEST(Kine_SetMechUnitParam, reserved_bytes_and_unused_axes_are_not_read)
{
    SetUpCell(3, 6);
    KineMechUnit unit = Untouched<KineMechUnit>();
    const KineMechUnit track = CarryingRobot(Track(4), 0);
    unit.Active = track.Active;
    unit.UnitKind = track.UnitKind;
    unit.Option1 = track.Option1;
    unit.Option2 = track.Option2;
    unit.AxisCount = track.AxisCount;
    unit.AxisFrame[0] = track.AxisFrame[0];
    unit.AxisFrame[1] = track.AxisFrame[1];
    unit.AxisParamIndex[0] = track.AxisParamIndex[0];
    StoreUnit(0, unit);
    EXPECT_NEAR(RobotTravel(), 500.0, 1e-9);
}

TEST(Kine_SetExtAxisParam, index_outside_0_to_5_is_0x6003_whatever_the_count)
{
    const KineExtAxisParam param{};
    for (const uint32_t items : {0u, 6u}) {
        SetUpCell(3, items);
        for (const int32_t index : {-1, 6, 7, 256, kMinInt, kMaxInt}) {
            EXPECT_EQ(Kine_SetExtAxisParam(index, &param), KINE_ERR_EXT_AXIS_PARAM) << index;
        }
        for (int32_t index = 0; index < 6; ++index) {
            EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetExtAxisParam(index, &param), KINE_OK); }), "");
        }
    }
}

TEST(Kine_SetExtAxisParam, null_is_0x6003_after_the_index)
{
    SetUpCell(3, 6);
    EXPECT_EQ(PrintedBy([] { EXPECT_EQ(Kine_SetExtAxisParam(0, nullptr), KINE_ERR_EXT_AXIS_PARAM); }), "");
    EXPECT_NE(PrintedBy([] { EXPECT_EQ(Kine_SetExtAxisParam(6, nullptr), KINE_ERR_EXT_AXIS_PARAM); }), "");
}

TEST(Kine_SetExtAxisParam, while_disabled_returns_success_for_anything)
{
    SetUpCell(3, 6);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    const KineExtAxisParam param{};
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_SetExtAxisParam(0, &param), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(-1, &param), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(6, &param), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(0, nullptr), KINE_OK);
              }),
              "");
}

TEST(Kine_SetExtAxisParam, any_bits_are_accepted_and_kept_in_the_record)
{
    SetUpCell(3, 6);
    KineExtAxisParam param = Untouched<KineExtAxisParam>();
    EXPECT_EQ(Kine_SetExtAxisParam(5, &param), KINE_OK);
    EXPECT_TRUE(IsUntouched(param));
}

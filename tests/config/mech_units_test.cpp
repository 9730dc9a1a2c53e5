// Look-ups in the mechanical units, also with counts and indexes that no caller should give.
#include "config/mech_units.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using namespace kine;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

// Unit u drives its axis k by external axis 5 - k, all six of them; external axis j has word[3] = 100 + j.
MechUnitBlock FullBlock(std::int32_t unitCount)
{
    MechUnitBlock block{};
    block.mechUnitCount = unitCount;
    block.extAxisItemCount = 6;
    for (MechUnitSlot& unit : block.units) {
        unit.active = 1;
        unit.unitKind = kOneRotaryAxis;
        unit.axisCount = 6;
        for (std::int32_t k = 0; k < 6; ++k) unit.axisParamIndex[static_cast<std::size_t>(k)] = 5 - k;
    }
    for (std::int32_t j = 0; j < 6; ++j) {
        block.extAxes[static_cast<std::size_t>(j)].word = {10 + j, 20 + j, 30 + j, 100 + j};
    }
    return block;
}

}  // namespace

TEST(FindUnit, finds_units_up_to_the_count_inclusive)
{
    for (std::int32_t count = 0; count <= 3; ++count) {
        const MechUnitBlock block = FullBlock(count);
        for (std::int32_t unit = 0; unit <= 2; ++unit) {
            const MechUnitSlot* expected =
                unit <= count ? &block.units[static_cast<std::size_t>(unit)] : nullptr;
            EXPECT_EQ(FindUnit(block, unit), expected) << unit << " of " << count;
        }
    }
}

TEST(FindUnit, finds_nothing_outside_the_slots)
{
    for (const std::int32_t count : {0, 3, 4, 100, kMax}) {
        const MechUnitBlock block = FullBlock(count);
        for (const std::int32_t unit : {-1, -2, kMin, 3, 4, 255, kMax}) {
            EXPECT_EQ(FindUnit(block, unit), nullptr) << unit << " of " << count;
        }
    }
}

TEST(DrivingExtAxis, gives_the_index_of_every_axis_the_unit_has)
{
    MechUnitSlot unit = FullBlock(1).units[0];
    for (std::int32_t axis = 0; axis < 6; ++axis) {
        EXPECT_EQ(DrivingExtAxis(unit, axis), static_cast<std::size_t>(5 - axis));
    }
    unit.axisCount = 2;
    EXPECT_EQ(DrivingExtAxis(unit, 1), std::size_t{4});
    EXPECT_EQ(DrivingExtAxis(unit, 2), std::nullopt);
    unit.axisCount = 0;
    EXPECT_EQ(DrivingExtAxis(unit, 0), std::nullopt);
}

TEST(DrivingExtAxis, axis_outside_the_unit_gives_nothing)
{
    MechUnitSlot unit = FullBlock(1).units[0];
    unit.axisCount = 255;  // more than a unit can have
    EXPECT_EQ(DrivingExtAxis(unit, 5), std::size_t{0});
    for (const std::int32_t axis : {-1, kMin, 6, 7, 254, kMax})
        EXPECT_EQ(DrivingExtAxis(unit, axis), std::nullopt);
}

TEST(DrivingExtAxis, index_beyond_the_external_axes_gives_nothing)
{
    for (const std::int32_t index : {6, 7, 255, kMax, -1, kMin}) {
        MechUnitSlot unit = FullBlock(1).units[0];
        unit.axisParamIndex[1] = index;
        EXPECT_EQ(DrivingExtAxis(unit, 1), std::nullopt) << index;
        EXPECT_EQ(DrivingExtAxis(unit, 0), std::size_t{5}) << "the other axes are not affected";
    }
}

TEST(GetUnitAxisInfo, reports_kind_fourth_word_and_driving_axis)
{
    const MechUnitBlock block = FullBlock(3);
    for (std::int32_t unit = 0; unit < 3; ++unit) {
        for (std::int32_t axis = 0; axis < 6; ++axis) {
            const std::optional<UnitAxisInfo> info = GetUnitAxisInfo(block, unit, axis);
            ASSERT_TRUE(info);
            EXPECT_TRUE(info->hasKind);
            EXPECT_EQ(info->word3, 100 + 5 - axis);
            EXPECT_EQ(info->extAxis, 5 - axis);
        }
    }
}

TEST(GetUnitAxisInfo, units_differ)
{
    MechUnitBlock block = FullBlock(3);
    block.units[1].axisParamIndex[0] = 2;
    block.extAxes[2].word[3] = -7;
    EXPECT_EQ(GetUnitAxisInfo(block, 0, 0)->extAxis, 5);
    EXPECT_EQ(GetUnitAxisInfo(block, 1, 0)->extAxis, 2);
    EXPECT_EQ(GetUnitAxisInfo(block, 1, 0)->word3, -7);
}

TEST(GetUnitAxisInfo, any_kind_but_zero_is_a_kind)
{
    for (const std::int32_t kind : {1, 2, 3, 4, 65535, -1}) {
        MechUnitBlock block = FullBlock(1);
        block.units[0].unitKind = kind;
        EXPECT_TRUE(GetUnitAxisInfo(block, 0, 0)->hasKind) << kind;
    }
    MechUnitBlock block = FullBlock(1);
    block.units[0].unitKind = 0;
    const std::optional<UnitAxisInfo> info = GetUnitAxisInfo(block, 0, 2);
    ASSERT_TRUE(info) << "a unit without a kind is still looked up";
    EXPECT_FALSE(info->hasKind);
    EXPECT_EQ(info->word3, 103);
    EXPECT_EQ(info->extAxis, 3);
}

TEST(GetUnitAxisInfo, an_inactive_unit_is_looked_up_too)
{
    MechUnitBlock block = FullBlock(1);
    block.units[0].active = 0;
    EXPECT_TRUE(GetUnitAxisInfo(block, 0, 0));
}

TEST(GetUnitAxisInfo, unit_index_equal_to_the_count_is_accepted)
{
    for (std::int32_t count = 0; count <= 2; ++count) {
        const MechUnitBlock block = FullBlock(count);
        EXPECT_TRUE(GetUnitAxisInfo(block, count, 0)) << count;
        EXPECT_FALSE(GetUnitAxisInfo(block, count + 1, 0)) << count;
    }
    // The slot beyond the last one does not exist.
    EXPECT_FALSE(GetUnitAxisInfo(FullBlock(3), 3, 0));
}

TEST(GetUnitAxisInfo, unit_index_out_of_range_fails)
{
    for (const std::int32_t unit : {-1, kMin, 3, 4, kMax}) {
        EXPECT_FALSE(GetUnitAxisInfo(FullBlock(3), unit, 0)) << unit;
        EXPECT_FALSE(GetUnitAxisInfo(FullBlock(kMax), unit, 0)) << unit;
    }
}

TEST(GetUnitAxisInfo, axis_index_out_of_range_fails)
{
    MechUnitBlock block = FullBlock(1);
    block.units[0].axisCount = 2;
    EXPECT_TRUE(GetUnitAxisInfo(block, 0, 1));
    for (const std::int32_t axis : {-1, kMin, 2, 3, kMax})
        EXPECT_FALSE(GetUnitAxisInfo(block, 0, axis)) << axis;

    block.units[0].axisCount = 255;
    EXPECT_TRUE(GetUnitAxisInfo(block, 0, 5));
    for (const std::int32_t axis : {6, 254, 255}) EXPECT_FALSE(GetUnitAxisInfo(block, 0, axis)) << axis;
}

TEST(GetUnitAxisInfo, driving_axis_beyond_the_six_fails)
{
    for (const std::int32_t index : {6, 255}) {
        MechUnitBlock block = FullBlock(1);
        block.units[0].axisParamIndex[0] = index;
        EXPECT_FALSE(GetUnitAxisInfo(block, 0, 0)) << index;
    }
}

// The number of external-axis items bounds nothing here: it only says which slots were meant to be filled.
TEST(GetUnitAxisInfo, item_count_is_not_looked_at)
{
    MechUnitBlock block = FullBlock(1);
    block.extAxisItemCount = 0;
    const std::optional<UnitAxisInfo> info = GetUnitAxisInfo(block, 0, 0);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->word3, 105);
}

// From a frame to the world and back: modes, codes and their order, and what is copied.
#include "chain/frame_services.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "support/naive_transform.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

constexpr Pose kFirst{100.0, -50.0, 25.0, 0.3, -0.4, 0.5};
constexpr Pose kSecond{30.0, 60.0, -90.0, -1.1, 0.2, 0.7};
constexpr Pose kFrame{5.0, 6.0, 7.0, 0.8, 0.9, -1.0};

PoseRecord SomeRecord()
{
    PoseRecord record{};
    record.frame = Pose{12.0, -34.0, 56.0, 2.0, 0.5, -1.5};
    record.config = {kMin, -1, 7, kMax};
    record.extAxis = {15.0, -20.0, 300.0, 45.0, 400.0, -75.0};
    return record;
}

// Unit 0 has two rotary axes, unit 1 one, unit 2 a linear one.
MechUnitBlock ThreeUnits()
{
    MechUnitBlock block{};
    block.mechUnitCount = 3;
    block.extAxisItemCount = 6;
    block.units[0] = MakeUnit(kTwoRotaryAxes, kFirst, kSecond, 0, 1);
    block.units[1] = MakeUnit(kOneRotaryAxis, kFirst, kSecond, 3);
    block.units[2] = MakeUnit(kOneLinearAxis, kFirst, kSecond, 4);
    return block;
}

// Both directions refuse with their own code, print nothing and leave the record alone.
void ExpectRefused(const MechUnitBlock& units, const FrameDescriptor& descriptor, KineResult toWorldCode,
                   KineResult toFrameCode)
{
    const std::string printed = PrintedBy([&] {
        PoseRecord result = SomeRecord();
        EXPECT_EQ(FrameToWorld(units, descriptor, result), toWorldCode);
        EXPECT_TRUE(SameRecordBits(result, SomeRecord()));
        result = SomeRecord();
        EXPECT_EQ(WorldToFrame(units, descriptor, result), toFrameCode);
        EXPECT_TRUE(SameRecordBits(result, SomeRecord()));
    });
    EXPECT_EQ(printed, "");
}

void ExpectUnitRefused(const MechUnitBlock& units, std::int32_t unit)
{
    ExpectRefused(units, {3, unit, kFrame}, 0x6033u, 0x6031u);
}

void ExpectUnitAccepted(const MechUnitBlock& units, std::int32_t unit)
{
    PoseRecord result = SomeRecord();
    EXPECT_EQ(FrameToWorld(units, {3, unit, kFrame}, result), 0u);
    result = SomeRecord();
    EXPECT_EQ(WorldToFrame(units, {3, unit, kFrame}, result), 0u);
}

}  // namespace

TEST(FrameToWorld, fixed_frame_is_multiplied_from_the_left)
{
    const PoseRecord record = SomeRecord();
    PoseRecord world = record;
    EXPECT_EQ(FrameToWorld(ThreeUnits(), {2, 0, kFrame}, world), 0u);
    EXPECT_TRUE(PoseIs(world.frame, MatrixOf(kFrame) * MatrixOf(record.frame)));
}

TEST(WorldToFrame, fixed_frame_is_inverted_and_multiplied_from_the_left)
{
    const PoseRecord record = SomeRecord();
    PoseRecord inFrame = record;
    EXPECT_EQ(WorldToFrame(ThreeUnits(), {2, 0, kFrame}, inFrame), 0u);
    EXPECT_TRUE(PoseIs(inFrame.frame, RigidInverse(MatrixOf(kFrame)) * MatrixOf(record.frame)));
}

TEST(FrameServices, fixed_frame_does_not_look_at_the_unit)
{
    const PoseRecord record = SomeRecord();
    for (const std::int32_t unit : {-1, 0, 2, 3, kMax, kMin}) {
        PoseRecord result = record;
        EXPECT_EQ(FrameToWorld(MechUnitBlock{}, {2, unit, kFrame}, result), 0u);
        EXPECT_TRUE(PoseIs(result.frame, MatrixOf(kFrame) * MatrixOf(record.frame)));
        result = record;
        EXPECT_EQ(WorldToFrame(MechUnitBlock{}, {2, unit, kFrame}, result), 0u);
        EXPECT_TRUE(PoseIs(result.frame, RigidInverse(MatrixOf(kFrame)) * MatrixOf(record.frame)));
    }
}

TEST(FrameServices, configuration_and_external_axes_stay_bit_for_bit)
{
    PoseRecord record = SomeRecord();
    // Not used by units 1 and 2, so that they may hold anything.
    record.extAxis[0] = -0.0;
    record.extAxis[1] = kNan;
    record.extAxis[2] = kInf;
    record.extAxis[5] = 5e-324;
    for (const FrameDescriptor& descriptor :
         {FrameDescriptor{2, 0, kFrame}, FrameDescriptor{3, 1, kFrame}, FrameDescriptor{3, 2, kFrame}}) {
        PoseRecord result = record;
        EXPECT_EQ(FrameToWorld(ThreeUnits(), descriptor, result), 0u);
        EXPECT_TRUE(SameBits(result.config, record.config));
        EXPECT_TRUE(SameBits(result.extAxis, record.extAxis));
        result = record;
        EXPECT_EQ(WorldToFrame(ThreeUnits(), descriptor, result), 0u);
        EXPECT_TRUE(SameBits(result.config, record.config));
        EXPECT_TRUE(SameBits(result.extAxis, record.extAxis));
    }
}

TEST(FrameServices, other_modes_are_refused)
{
    for (const std::int32_t mode : {0, 1, 4, -2, -3, 258, kMax, kMin}) {
        SCOPED_TRACE(mode);
        ExpectRefused(ThreeUnits(), {mode, 1, kFrame}, 0x6032u, 0x6030u);
    }
}

TEST(FrameServices, mode_comes_before_the_unit)
{
    MechUnitBlock units = ThreeUnits();
    units.units[0].unitKind = 9;
    units.units[0].axisFrame = {};
    for (const std::int32_t unit : {-1, 0, 3}) ExpectRefused(units, {1, unit, kFrame}, 0x6032u, 0x6030u);
}

TEST(FrameServices, unit_kinds_but_one_two_and_three_are_refused)
{
    for (const std::int32_t kind : {0, 4, 5, 65535, -1, kMax, kMin}) {
        SCOPED_TRACE(kind);
        MechUnitBlock units = ThreeUnits();
        units.units[0].unitKind = kind;
        ExpectUnitRefused(units, 0);
    }
}

TEST(FrameServices, unit_index_may_equal_the_count)
{
    for (std::int32_t count = 0; count <= 2; ++count) {
        MechUnitBlock units = ThreeUnits();
        units.mechUnitCount = count;
        for (std::int32_t unit = 0; unit <= 2; ++unit) {
            SCOPED_TRACE(testing::Message() << "unit " << unit << " of " << count);
            if (unit <= count) {
                ExpectUnitAccepted(units, unit);
            } else {
                ExpectUnitRefused(units, unit);
            }
        }
    }
}

TEST(FrameServices, unit_index_outside_the_slots_is_refused)
{
    for (const std::int32_t count : {3, 4, kMax}) {
        MechUnitBlock units = ThreeUnits();
        units.mechUnitCount = count;
        for (const std::int32_t unit : {-1, -128, kMin, 3, 4, 127, kMax}) {
            SCOPED_TRACE(unit);
            ExpectUnitRefused(units, unit);
        }
    }
}

TEST(FrameServices, unit_needs_the_axes_of_its_kind)
{
    struct Case
    {
        std::int32_t kind, needed;
    };
    for (const Case& c : {Case{kOneLinearAxis, 1}, Case{kOneRotaryAxis, 1}, Case{kTwoRotaryAxes, 2}}) {
        for (const std::int32_t axisCount : {kMin, -1, 0, 1, 2, 3, 6, 255}) {
            SCOPED_TRACE(testing::Message() << "kind " << c.kind << ", axes " << axisCount);
            MechUnitBlock units = ThreeUnits();
            units.units[0].unitKind = c.kind;
            units.units[0].axisCount = axisCount;
            if (axisCount >= c.needed) {
                ExpectUnitAccepted(units, 0);
            } else {
                ExpectUnitRefused(units, 0);
            }
        }
    }
}

TEST(FrameServices, driving_axis_beyond_the_six_is_refused_where_it_is_needed)
{
    for (const std::int32_t index : {6, 7, 255, kMax, -1, kMin}) {
        for (const std::int32_t kind : {kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
            SCOPED_TRACE(testing::Message() << "kind " << kind << ", index " << index);
            MechUnitBlock units = ThreeUnits();
            units.units[0].unitKind = kind;
            units.units[0].axisCount = 2;
            units.units[0].axisParamIndex[1] = index;
            if (kind == kTwoRotaryAxes) {
                ExpectUnitRefused(units, 0);
            } else {
                ExpectUnitAccepted(units, 0);
            }
            units.units[0].axisParamIndex = {index, 1, 0, 0, 0, 0};
            ExpectUnitRefused(units, 0);
        }
    }
}

// Whether a unit is in use is asked where it is set up, not here.
TEST(FrameServices, an_inactive_unit_is_served)
{
    MechUnitBlock units = ThreeUnits();
    for (MechUnitSlot& unit : units.units) unit.active = 0;
    for (const std::int32_t unit : {0, 1, 2}) ExpectUnitAccepted(units, unit);
}

// A frame set up only in part still counts as set up.
TEST(WorldToFrame, rotary_axis_exactly_at_the_origin_is_refused)
{
    const double tiny = std::numeric_limits<double>::denorm_min();
    struct Case
    {
        double x, y, z;
        bool atOrigin;
    };
    const Case cases[] = {{0.0, 0.0, 0.0, true},    {-0.0, 0.0, -0.0, true}, {tiny, 0.0, 0.0, false},
                          {0.0, -tiny, 0.0, false}, {0.0, 0.0, tiny, false}, {1.0, 0.0, 0.0, false},
                          {0.0, 1.0, 0.0, false},   {0.0, 0.0, -1.0, false}};
    for (const Case& c : cases) {
        for (const std::int32_t kind : {kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
            for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
                SCOPED_TRACE(testing::Message() << c.x << " " << c.y << " " << c.z << ", kind " << kind
                                                << ", axis " << axis + 1);
                MechUnitBlock units = ThreeUnits();
                units.units[0].unitKind = kind;
                units.units[0].axisFrame[axis].t = {c.x, c.y, c.z};
                const bool isTested = kind == kTwoRotaryAxes || (kind == kOneRotaryAxis && axis == 0);
                const bool refused = c.atOrigin && isTested;
                PoseRecord result = SomeRecord();
                EXPECT_EQ(WorldToFrame(units, {3, 0, kFrame}, result), refused ? 0x6034u : 0u);
                EXPECT_EQ(SameRecordBits(result, SomeRecord()), refused);
                // The way to the world asks no such question.
                result = SomeRecord();
                EXPECT_EQ(FrameToWorld(units, {3, 0, kFrame}, result), 0u);
            }
        }
    }
}

TEST(WorldToFrame, nan_position_of_an_axis_is_not_the_origin)
{
    MechUnitBlock units = ThreeUnits();
    units.units[1].axisFrame[0].t = {kNan, 0.0, 0.0};
    PoseRecord result = SomeRecord();
    EXPECT_EQ(WorldToFrame(units, {3, 1, kFrame}, result), 0u);
}

TEST(WorldToFrame, kind_and_indexes_come_before_the_origin)
{
    MechUnitBlock units = ThreeUnits();
    units.units[0].axisFrame = {};  // both axes at the origin
    ExpectRefused(units, {1, 0, kFrame}, 0x6032u, 0x6030u);

    units.units[0].axisParamIndex[1] = 6;
    ExpectUnitRefused(units, 0);
    units.units[0].axisParamIndex[1] = 1;
    units.units[0].axisCount = 1;
    ExpectUnitRefused(units, 0);
    units.units[0].axisCount = 2;
    units.units[0].unitKind = 4;
    ExpectUnitRefused(units, 0);
    units.units[0].unitKind = kTwoRotaryAxes;
    PoseRecord result = SomeRecord();
    EXPECT_EQ(WorldToFrame(units, {3, 0, kFrame}, result), 0x6034u);
}

// What the setup exports leave in the store, where the other exports do not show it.
#include "config/store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "config/dispatch.h"
#include "support/cell_setup.h"
#include "support/records.h"
#include "support/sample_arms.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kDegToRad = 0.017453292519943295;

AxisLimits StoredLimits()
{
    AxisLimits limits{};
    EXPECT_EQ(GetAxisLimits(Library(), limits), KINE_OK);
    return limits;
}

// The configurations at the limits that the store keeps are those of the limits it has stored.
void ExpectLimitConfigsKept()
{
    const Store& store = Library();
    const AxisLimits limits = StoredLimits();
    LimitConfigs expected{};
    EXPECT_EQ(GetArmConfig(store, limits.upper, expected.upper), KINE_OK);
    EXPECT_EQ(GetArmConfig(store, limits.lower, expected.lower), KINE_OK);
    EXPECT_TRUE(SameBits(store.limitConfigs, expected));
}

bool IsZero(const ExtAxisSlot& slot)
{
    const ExtAxisSlot zero{};
    return std::memcmp(&slot, &zero, sizeof slot) == 0;
}

bool IsZero(const MechUnitSlot& slot)
{
    const auto isZero = [](double value) { return value == 0.0; };
    for (const HomMatrix& m : slot.axisFrame) {
        const double elements[] = {m.r.r00, m.r.r01, m.r.r02, m.r.r10, m.r.r11, m.r.r12,
                                   m.r.r20, m.r.r21, m.r.r22, m.t.x,   m.t.y,   m.t.z};
        if (!std::all_of(std::begin(elements), std::end(elements), isZero)) return false;
    }
    return slot.active == 0 && slot.unitKind == 0 && slot.option1 == 0 && slot.option2 == 0 &&
           slot.axisCount == 0 && slot.axisParamIndex == decltype(slot.axisParamIndex){};
}

void ExpectClearCell()
{
    const Store& store = Library();
    EXPECT_EQ(store.mechUnits.mechUnitCount, 0);
    EXPECT_EQ(store.mechUnits.extAxisItemCount, 0);
    for (const MechUnitSlot& slot : store.mechUnits.units) EXPECT_TRUE(IsZero(slot));
    for (const ExtAxisSlot& slot : store.mechUnits.extAxes) EXPECT_TRUE(IsZero(slot));
    EXPECT_EQ(store.mounting.mode, 2);
    EXPECT_EQ(store.mounting.unit, 0);
    EXPECT_TRUE(store.mounting.frame.IsZero());
    const Pose frame = store.mounting.frame;
    for (const double value : {frame.x, frame.y, frame.z, frame.a, frame.b, frame.c}) EXPECT_EQ(value, 0.0);
}

KineExtAxisParam SomeExtAxis(int seed)
{
    KineExtAxisParam param{};
    for (int i = 0; i < 4; ++i) param.Word[i] = static_cast<int16_t>(-100 * seed - i);
    param.Raw0 = 0x80000000u;
    param.AngleA = 180.0f;
    param.Value[6] = 0xFFFFFFFFu;
    param.Tail[2] = static_cast<int16_t>(seed);
    return param;
}

void FillCell()
{
    SetUnitCounts(3, 6);
    for (int index = 0; index < 3; ++index) {
        StoreUnit(index, CarryingRobot(TwoRotaryUnit({1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, 1, 2), 2));
    }
    for (int index = 0; index < 6; ++index) {
        const KineExtAxisParam param = SomeExtAxis(index + 1);
        EXPECT_EQ(Kine_SetExtAxisParam(index, &param), KINE_OK);
    }
}

}  // namespace

TEST(Kine_InitKinematicParam, default_limits_are_exactly_999_rad)
{
    SetUpArm(Puma());
    const AxisLimits limits = StoredLimits();
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(limits.upper.axis[i], 999.0) << i;
        EXPECT_EQ(limits.lower.axis[i], -999.0) << i;
    }
}

TEST(Kine_InitKinematicParam, success_stores_type_family_and_state_2_and_clears_the_cell)
{
    SetUpArm(Puma());
    FillCell();
    SetUpArm(Puma());
    EXPECT_EQ(Library().arm.armType, 6);
    EXPECT_EQ(Library().arm.modelFamily, 6);
    EXPECT_EQ(Library().arm.initState, 2);
    ExpectClearCell();
}

TEST(Kine_InitKinematicParam, failure_leaves_state_1_and_clears_the_cell)
{
    for (const uint32_t type : {6u, 5u, 0xFFFFFFFFu}) {
        SetUpArm(Puma());
        FillCell();
        EXPECT_NE(Kine_InitKinematicParam(type, nullptr), KINE_OK);
        EXPECT_EQ(Library().arm.armType, static_cast<std::int32_t>(type));
        EXPECT_EQ(Library().arm.initState, 1);
        ExpectClearCell();
    }
}

TEST(Kine_InitKinematicParam, leaves_the_enable_flag_as_it_was_given)
{
    const KineKinematicParam puma = Puma();
    for (const uint32_t flag : {0u, 1u, 2u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, flag), KINE_OK);
        EXPECT_EQ(Library().mechUnitCfgEnabled, static_cast<std::int32_t>(flag));
        EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &puma), KINE_OK);
        EXPECT_EQ(Library().mechUnitCfgEnabled, static_cast<std::int32_t>(flag));
    }
}

TEST(Kine_SetAxisLimit, stores_radians_and_999_for_equal_or_inverted_pairs)
{
    SetUpArm(Puma());
    const KineJoint upper = MakeJoints({170.0, 90.0, 45.0, 190.0, -1.0, 360.0});
    const KineJoint lower = MakeJoints({-160.0, 90.0, -45.0, -190.0, 1.0, 359.0});
    EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    const AxisLimits limits = StoredLimits();
    for (const std::size_t i : {0u, 2u, 3u, 5u}) {
        EXPECT_EQ(limits.upper.axis[i], upper.Axis[i] * kDegToRad) << i;
        EXPECT_EQ(limits.lower.axis[i], lower.Axis[i] * kDegToRad) << i;
    }
    for (const std::size_t i : {1u, 4u}) {
        EXPECT_EQ(limits.upper.axis[i], 999.0) << i;
        EXPECT_EQ(limits.lower.axis[i], -999.0) << i;
    }
}

// Whatever arm was there before, and whatever failed in between.
TEST(Kine_SetAxisLimit, keeps_the_configurations_at_the_limits_of_the_arm_that_is_initialised)
{
    const KineKinematicParam params[] = {Scara(), Puma(), TiltedScara(), CalibratedWristArm()};
    const uint32_t types[] = {KINE_ARM_FOUR_AXIS, KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS_4110,
                              KINE_ARM_SIX_AXIS};
    const KineJoint upper = MakeJoints({170.0, 130.0, 45.0, 400.0, -1.0, 360.0});
    const KineJoint lower = MakeJoints({-160.0, 90.0, -45.0, -190.0, 1.0, -800.0});
    for (std::size_t first = 0; first < 4; ++first) {
        for (std::size_t second = 0; second < 4; ++second) {
            SCOPED_TRACE(testing::Message() << types[first] << " then " << types[second]);
            ASSERT_EQ(Kine_InitKinematicParam(types[first], &params[first]), KINE_OK);
            ExpectLimitConfigsKept();
            EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
            ExpectLimitConfigsKept();
            // A refused call changes nothing.
            EXPECT_EQ(Kine_SetAxisLimit(nullptr, &lower), KINE_ERR_JOINT);
            EXPECT_EQ(Kine_SetAxisLimit(&upper, nullptr), KINE_ERR_JOINT);
            ExpectLimitConfigsKept();
            // Neither does one without an arm, after an initialisation that failed.
            EXPECT_NE(Kine_InitKinematicParam(types[second], nullptr), KINE_OK);
            EXPECT_EQ(Kine_SetAxisLimit(&lower, &upper), KINE_ERR_NOT_INITIALISED);

            ASSERT_EQ(Kine_InitKinematicParam(types[second], &params[second]), KINE_OK);
            ExpectLimitConfigsKept();
            EXPECT_EQ(Kine_SetAxisLimit(&lower, &upper), KINE_OK);
            ExpectLimitConfigsKept();
        }
    }
}

TEST(Kine_SetMechUnitParam, fills_the_slot_of_its_index_only)
{
    for (int index = 0; index < 3; ++index) {
        SetUpArm(Puma());
        SetUnitCounts(3, 6);
        StoreUnit(index, TwoRotaryUnit({1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, 4, 5));
        for (int slot = 0; slot < 3; ++slot) {
            EXPECT_EQ(IsZero(Library().mechUnits.units[static_cast<std::size_t>(slot)]), slot != index);
        }
        const MechUnitSlot& stored = Library().mechUnits.units[static_cast<std::size_t>(index)];
        EXPECT_EQ(stored.active, 1);
        EXPECT_EQ(stored.unitKind, 3);
        EXPECT_EQ(stored.axisCount, 2);
        EXPECT_EQ(stored.axisParamIndex[0], 4);
        EXPECT_EQ(stored.axisParamIndex[1], 5);
        EXPECT_EQ(stored.axisFrame[1].t.y, 8.0);
    }
}

TEST(Kine_SetMechUnitParam, mounting_block_follows_the_unit_at_index_0)
{
    SetUpArm(Puma());
    SetUnitCounts(3, 6);
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
    EXPECT_EQ(Library().mounting.mode, 3);
    EXPECT_EQ(Library().mounting.unit, 1);
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 255));
    EXPECT_EQ(Library().mounting.unit, 255);
    KineMechUnit fixed{};
    fixed.Option2 = 2;
    StoreUnit(0, fixed);
    EXPECT_EQ(Library().mounting.mode, 2);
    EXPECT_EQ(Library().mounting.unit, 0);
    EXPECT_TRUE(Library().mounting.frame.IsZero());
}

TEST(Kine_SetExtAxisParam, fills_the_slot_of_its_index_only)
{
    for (int index = 0; index < 6; ++index) {
        SetUpArm(Puma());
        SetUnitCounts(0, 0);  // the counts do not bound the slots
        const KineExtAxisParam param = SomeExtAxis(7);
        EXPECT_EQ(Kine_SetExtAxisParam(index, &param), KINE_OK);
        for (int slot = 0; slot < 6; ++slot) {
            EXPECT_EQ(IsZero(Library().mechUnits.extAxes[static_cast<std::size_t>(slot)]), slot != index);
        }
        const ExtAxisSlot& stored = Library().mechUnits.extAxes[static_cast<std::size_t>(index)];
        EXPECT_EQ(stored.word[3], -703);
        EXPECT_EQ(stored.raw0, 0x80000000u);
        EXPECT_EQ(stored.angleA, 3.14159274f);  // the single-precision number nearest to pi
        EXPECT_EQ(stored.value[6], 0xFFFFFFFFu);
        EXPECT_EQ(stored.tail[2], 7);
    }
}

TEST(Kine_SetExtAxisParam, stores_nothing_while_disabled_or_refused)
{
    SetUpArm(Puma());
    const KineExtAxisParam param = SomeExtAxis(7);
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 0), KINE_OK);
    EXPECT_EQ(Kine_SetExtAxisParam(2, &param), KINE_OK);
    ExpectClearCell();
    SetUnitCounts(0, 0);
    EXPECT_EQ(Kine_SetExtAxisParam(-1, &param), KINE_ERR_EXT_AXIS_PARAM);
    EXPECT_EQ(Kine_SetExtAxisParam(6, &param), KINE_ERR_EXT_AXIS_PARAM);
    EXPECT_EQ(Kine_SetExtAxisParam(0, nullptr), KINE_ERR_EXT_AXIS_PARAM);
    ExpectClearCell();
}

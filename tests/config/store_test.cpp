// The store as it is loaded, and its reset.
#include "config/store.h"

#include <gtest/gtest.h>

#include "config/dispatch.h"
#include "support/naive_arms.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

void ExpectNoUnits(const MechUnitBlock& block)
{
    EXPECT_EQ(block.mechUnitCount, 0);
    EXPECT_EQ(block.extAxisItemCount, 0);
    for (const MechUnitSlot& unit : block.units) {
        EXPECT_EQ(unit.active, 0);
        EXPECT_EQ(unit.unitKind, 0);
        EXPECT_EQ(unit.option1, 0);
        EXPECT_EQ(unit.option2, 0);
        EXPECT_EQ(unit.axisCount, 0);
        EXPECT_TRUE(SameBits(unit.axisFrame, decltype(unit.axisFrame){}));
        EXPECT_TRUE(SameBits(unit.axisParamIndex, decltype(unit.axisParamIndex){}));
    }
    EXPECT_TRUE(SameBits(block.extAxes, decltype(block.extAxes){}));
}

}  // namespace

// No test of this program writes to the instance.
TEST(Library, is_all_zero_when_loaded)
{
    const Store& store = Library();
    EXPECT_EQ(store.arm.armType, 0);
    EXPECT_EQ(store.arm.initState, 0);
    EXPECT_EQ(store.arm.modelFamily, 0);
    EXPECT_EQ(store.mechUnitCfgEnabled, 0);
    ExpectNoUnits(store.mechUnits);
    EXPECT_EQ(store.mounting.mode, 0);
    EXPECT_EQ(store.mounting.unit, 0);
    EXPECT_TRUE(store.mounting.frame.IsZero());
    EXPECT_TRUE(SameBits(store.limitConfigs, LimitConfigs{}));

    for (const std::int32_t type : {kFour, kSix, k4110}) {
        EXPECT_TRUE(SameBits(StoredLimits(store, type), AxisLimits{}));
    }
}

TEST(Library, is_not_initialised_when_loaded)
{
    const Store& store = Library();
    LazyPose tip;
    Pose pose{};
    Joints joints{};
    KineArmConfig config{};
    AxisLimits limits{};
    std::int32_t family = 0;
    EXPECT_EQ(ForwardKinematics(store, joints, ToolBlock{}, tip), 0x6001u);
    EXPECT_EQ(FlangePose(store, joints, pose), 0x6001u);
    EXPECT_EQ(GetArmConfig(store, joints, config), 0x6001u);
    EXPECT_EQ(GetAxisLimits(store, limits), 0x6001u);
    EXPECT_EQ(InverseKinematics(store, pose, ToolBlock{}, config, joints), 0x6001u);
    EXPECT_EQ(IsSingularity(store, joints, 0), 0x6001u);
    EXPECT_EQ(GetModelFamily(store, family), 0x6001u);
    EXPECT_EQ(CheckArmConfig(store, config), 0x6001u);
}

TEST(Library, is_one_instance) { EXPECT_EQ(&Library(), &Library()); }

TEST(ResetCell, clears_units_axes_and_mounting_and_fixes_the_base)
{
    Store store{};
    store.mechUnits = Untouched<MechUnitBlock>();
    store.mounting = Untouched<FrameDescriptor>();
    ResetCell(store);
    ExpectNoUnits(store.mechUnits);
    EXPECT_EQ(store.mounting.mode, 2);
    EXPECT_EQ(store.mounting.unit, 0);
    EXPECT_TRUE(store.mounting.frame.IsZero());
    EXPECT_TRUE(SameBits(store.mounting.frame.AsPose(), Pose{}));
}

TEST(ResetCell, keeps_the_enable_flag_the_arm_and_its_model)
{
    Store store = ReadyStore(kSix, WristArm());
    store.mechUnitCfgEnabled = 5;
    ResetCell(store);
    EXPECT_EQ(store.mechUnitCfgEnabled, 5);
    EXPECT_EQ(store.arm.armType, 6);
    EXPECT_EQ(store.arm.initState, 2);
    EXPECT_EQ(store.arm.modelFamily, 6);

    LazyPose pose;
    EXPECT_EQ(ForwardKinematics(store, Joints{}, ToolBlock{}, pose), 0u);
    EXPECT_TRUE(PoseIs(pose, NaiveSixAxisChain(WristArm().SixAxis, std::array<double, 6>{}).flange));
    AxisLimits limits{};
    EXPECT_EQ(GetAxisLimits(store, limits), 0u);
    EXPECT_EQ(limits.upper.axis[0], 999.0);
}

TEST(Store, two_stores_are_independent)
{
    const Store six = ReadyStore(kSix, WristArm());
    const Store four = ReadyStore(kFour, Scara());
    std::int32_t family = 0;
    EXPECT_EQ(GetModelFamily(six, family), 0u);
    EXPECT_EQ(family, 6);
    EXPECT_EQ(GetModelFamily(four, family), 0u);
    EXPECT_EQ(family, 4);
}

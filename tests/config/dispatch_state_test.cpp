// The dispatch without a usable model: every operation in every state and for arm types that have no model.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "config/dispatch.h"
#include "support/naive_arms.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

// Types without a model: next to the known ones, nothing, and what becomes of a huge unsigned type.
const std::vector<std::int32_t> kUnknownTypes = {0, 3, 5, 7, 4109, 4111, -4, -6, kMax, kMin, -1};
const std::vector<std::int32_t> kKnownTypes = {kFour, kSix, k4110};
const std::vector<std::int32_t> kStatesNotReady = {0, 1, 3, -1, kMax, kMin};

std::string CaseName(std::int32_t type, std::int32_t state)
{
    return "arm type " + std::to_string(type) + ", state " + std::to_string(state);
}

// All three models hold good parameters, so that only state and type decide.
Store FullStore(std::int32_t type, std::int32_t state)
{
    const KineKinematicParam six = WristArm();
    const KineKinematicParam four = Scara();
    Store store{};
    ResetCell(store);
    for (const std::int32_t each : kKnownTypes) {
        store.arm.armType = each;
        EXPECT_EQ(InitModel(store, each == kSix ? &six : &four), KINE_OK);
    }
    store.arm = {type, state, 77};
    return store;
}

// A joint set that is singular for all three arms: elbow of the four-axis arms and wrist of the other at 0.
Joints SingularJoints()
{
    Joints joints{};
    joints.axis = {0.1, 0.0, 0.2, 0.3, 0.0, 0.5, 0.6, 0.7};
    return joints;
}

// Empty, equal and good ranges.
AxisLimits MixedLimits()
{
    AxisLimits limits{};
    limits.upper.axis = {1.0, 2.0, -3.0, 4.0, 5.0, 6.0, -7.0, -8.0};
    limits.lower.axis = {-1.0, 2.0, 3.0, -4.0, -5.0, 6.5, 7.0, 8.0};
    limits.upper.extAxis.fill(-9.0);
    limits.lower.extAxis.fill(9.0);
    return limits;
}

// Calls all operations but SetAxisLimits and IsSingularity and expects one code and no result from each.
// configCode is that of GetArmConfig, which has its own answer for an unknown type.
void ExpectNoResult(const Store& store, KineResult code, KineResult configCode)
{
    const Joints joints = SingularJoints();
    LazyPose tip = Untouched<LazyPose>();
    EXPECT_EQ(ForwardKinematics(store, joints, ToolBlock{}, tip), code);
    EXPECT_TRUE(IsUntouched(tip));
    Pose pose = Untouched<Pose>();
    EXPECT_EQ(FlangePose(store, joints, pose), code);
    EXPECT_TRUE(IsUntouched(pose));

    KineArmConfig config = Untouched<KineArmConfig>();
    EXPECT_EQ(GetArmConfig(store, joints, config), configCode);
    EXPECT_TRUE(IsUntouched(config));

    AxisLimits limits = Untouched<AxisLimits>();
    EXPECT_EQ(GetAxisLimits(store, limits), code);
    EXPECT_TRUE(IsUntouched(limits));

    Joints solution = Untouched<Joints>();
    EXPECT_EQ(InverseKinematics(store, Pose{400.0, 100.0, 60.0, 0.1, 0.2, 0.3}, ToolBlock{},
                                KineArmConfig{1, 0, 0, 0}, solution),
              code);
    EXPECT_TRUE(IsUntouched(solution));

    // Integers that no limit allows: the look-up of the limits fails first.
    EXPECT_EQ(CheckArmConfig(store, KineArmConfig{kMax, kMax, kMax, kMax}), code);
}

}  // namespace

TEST(Dispatch, every_operation_of_every_type_needs_the_ready_state)
{
    std::vector<std::int32_t> types = kKnownTypes;
    types.insert(types.end(), kUnknownTypes.begin(), kUnknownTypes.end());
    for (const std::int32_t type : types) {
        for (const std::int32_t state : kStatesNotReady) {
            SCOPED_TRACE(CaseName(type, state));
            Store store = FullStore(type, state);
            ExpectNoResult(store, 0x6001u, 0x6001u);

            for (const std::uint32_t kind : {0u, 1u, 2u, 3u}) {
                EXPECT_EQ(IsSingularity(store, SingularJoints(), kind), 0x6001u);
            }
            std::int32_t family = 1234;
            EXPECT_EQ(GetModelFamily(store, family), 0x6001u);
            EXPECT_EQ(family, 1234);
        }
    }
}

// The state comes before the cleaning of the ranges.
TEST(SetAxisLimits, not_ready_neither_cleans_nor_stores)
{
    for (const std::int32_t type : {kFour, kSix, k4110, 5, kMax}) {
        for (const std::int32_t state : kStatesNotReady) {
            SCOPED_TRACE(CaseName(type, state));
            Store store = FullStore(type, state);
            AxisLimits limits = MixedLimits();
            EXPECT_EQ(SetAxisLimits(store, limits), 0x6001u);
            EXPECT_TRUE(SameBits(limits, MixedLimits()));

            for (const std::int32_t each : kKnownTypes) {
                EXPECT_TRUE(SameBits(StoredLimits(store, each), AxisLimits{}));
            }
        }
    }
}

TEST(Dispatch, unknown_type_is_refused_but_has_an_empty_configuration)
{
    for (const std::int32_t type : kUnknownTypes) {
        SCOPED_TRACE(CaseName(type, 2));
        const Store store = FullStore(type, 2);
        ExpectNoResult(store, 0xFFFFFFFFu, 0u);
    }
}

TEST(IsSingularity, unknown_type_is_never_singular)
{
    for (const std::int32_t type : kUnknownTypes) {
        SCOPED_TRACE(CaseName(type, 2));
        const Store store = FullStore(type, 2);
        for (const std::uint32_t kind : {0u, 1u, 2u, 3u}) {
            EXPECT_EQ(IsSingularity(store, SingularJoints(), kind), 0u);
        }
    }
}

TEST(GetModelFamily, gives_the_stored_number_for_any_type)
{
    for (const std::int32_t type : {kFour, kSix, k4110, 5, kMax}) {
        const Store store = FullStore(type, 2);
        std::int32_t family = 0;
        EXPECT_EQ(GetModelFamily(store, family), 0u);
        EXPECT_EQ(family, 77) << CaseName(type, 2);
    }
}

TEST(SetAxisLimits, unknown_type_cleans_the_ranges_and_stores_nothing)
{
    // Axes 2, 3 and 6 are empty; axes 7, 8 and the external axes are not looked at.
    AxisLimits cleaned = MixedLimits();
    cleaned.upper.axis = {1.0, 999.0, 999.0, 4.0, 5.0, 999.0, -7.0, -8.0};
    cleaned.lower.axis = {-1.0, -999.0, -999.0, -4.0, -5.0, -999.0, 7.0, 8.0};
    for (const std::int32_t type : kUnknownTypes) {
        SCOPED_TRACE(CaseName(type, 2));
        Store store = FullStore(type, 2);
        AxisLimits limits = MixedLimits();
        EXPECT_EQ(SetAxisLimits(store, limits), 0xFFFFFFFFu);
        EXPECT_TRUE(SameBits(limits, cleaned));

        for (const std::int32_t each : kKnownTypes) {
            EXPECT_TRUE(SameBits(StoredLimits(store, each), AxisLimits{}));
        }
    }
}

TEST(InitModel, unknown_type_is_refused_in_every_state_and_changes_nothing)
{
    const KineKinematicParam param = Puma();
    for (const std::int32_t type : kUnknownTypes) {
        for (const std::int32_t state : {0, 1, 2}) {
            SCOPED_TRACE(CaseName(type, state));
            Store store = FullStore(type, state);
            EXPECT_EQ(InitModel(store, &param), 0xFFFFFFFFu);
            EXPECT_EQ(InitModel(store, nullptr), 0xFFFFFFFFu);
            EXPECT_EQ(store.arm.armType, type);
            EXPECT_EQ(store.arm.initState, state);
            EXPECT_EQ(store.arm.modelFamily, 77);

            // The wrist arm is still there: its flange at rest.
            store.arm = {kSix, 2, 6};
            LazyPose pose;
            EXPECT_EQ(ForwardKinematics(store, Joints{}, ToolBlock{}, pose), 0u);
            EXPECT_TRUE(PoseIs(pose, NaiveSixAxisChain(WristArm().SixAxis, std::array<double, 6>{}).flange));
        }
    }
}

TEST(ModelOf, looks_at_the_type_only)
{
    for (const std::int32_t state : {0, 1, 2}) {
        Store store = FullStore(kFour, state);
        const Store& readOnly = store;
        EXPECT_EQ(ModelOf(store), &store.fourAxis);
        EXPECT_EQ(ModelOf(readOnly), &store.fourAxis);
        store.arm.armType = kSix;
        EXPECT_EQ(ModelOf(store), &store.sixAxis);
        EXPECT_EQ(ModelOf(readOnly), &store.sixAxis);
        store.arm.armType = k4110;
        EXPECT_EQ(ModelOf(store), &store.fourAxis4110);
        EXPECT_EQ(ModelOf(readOnly), &store.fourAxis4110);
        for (const std::int32_t type : kUnknownTypes) {
            store.arm.armType = type;
            EXPECT_EQ(ModelOf(store), nullptr) << CaseName(type, state);
            EXPECT_EQ(ModelOf(readOnly), nullptr) << CaseName(type, state);
        }
    }
}

// The configurations at the axis limits that a store keeps, against those of the limits that its model
// has stored, and the check of a target against the look-up written out.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "config/dispatch.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kTypes[] = {kFour, kSix, k4110};

KineKinematicParam ParamOf(std::int32_t type) { return type == kSix ? CalibratedWristArm() : Scara(); }

// The limits looked up, and their configurations.
LimitConfigs WrittenOut(const Store& store)
{
    AxisLimits limits{};
    LimitConfigs configs{};
    EXPECT_EQ(GetAxisLimits(store, limits), KINE_OK);
    EXPECT_EQ(GetArmConfig(store, limits.upper, configs.upper), KINE_OK);
    EXPECT_EQ(GetArmConfig(store, limits.lower, configs.lower), KINE_OK);
    return configs;
}

KineResult WrittenOutCheck(const Store& store, const KineArmConfig& config)
{
    const LimitConfigs configs = WrittenOut(store);
    return IsConfigWithin(store.arm.armType, config, configs.lower, configs.upper) ? KINE_OK
                                                                                   : KINE_ERR_CONFIG;
}

// What is kept, and the verdict on configurations around it.
void ExpectKept(const Store& store)
{
    const LimitConfigs expected = WrittenOut(store);
    EXPECT_TRUE(SameBits(store.limitConfigs, expected));
    const auto near = [](std::int32_t value) {
        std::vector<std::int32_t> values;
        for (const std::int64_t off : {-4, -3, -2, -1, 0, 1, 2, 3, 4}) {
            const std::int64_t moved = value + off;
            if (moved >= kMin && moved <= kMax) values.push_back(static_cast<std::int32_t>(moved));
        }
        return values;
    };
    constexpr std::int32_t KineArmConfig::*kMembers[] = {&KineArmConfig::Cfg1, &KineArmConfig::Cfg2,
                                                         &KineArmConfig::Cfg3, &KineArmConfig::Cfg4};
    for (const auto member : kMembers) {
        for (const KineArmConfig& limit : {expected.upper, expected.lower}) {
            for (const std::int32_t value : near(limit.*member)) {
                KineArmConfig config = expected.upper;
                config.*member = value;
                EXPECT_EQ(CheckArmConfig(store, config), WrittenOutCheck(store, config));
            }
        }
    }
    for (const std::int32_t value : {kMin, -700, -1, 0, 1, 700, kMax}) {
        const KineArmConfig config{value, value, value, value};
        EXPECT_EQ(CheckArmConfig(store, config), WrittenOutCheck(store, config));
    }
}

// Any angle, some of them beyond what the numbers count, some not finite.
double AnyLimit(SeededRandom& random)
{
    const double special[] = {0.0, 999.0, -999.0, 1e15, -1e15, 1e300, kInf, -kInf, kNan};
    return random.Below(5) == 0 ? special[random.Below(std::size(special))] : random.Uniform(-30.0, 30.0);
}

AxisLimits AnyLimits(SeededRandom& random)
{
    AxisLimits limits{};
    for (double& axis : limits.upper.axis) axis = AnyLimit(random);
    for (double& axis : limits.lower.axis) axis = AnyLimit(random);
    return limits;
}

}  // namespace

TEST(LimitConfigs, are_those_of_the_limits_after_every_call_that_sets_them)
{
    SeededRandom random(9101);
    for (const std::int32_t type : kTypes) {
        SCOPED_TRACE(type);
        Store store = ReadyStore(type, ParamOf(type));
        ExpectKept(store);
        for (int i = 0; i < 300; ++i) {
            SCOPED_TRACE(i);
            // Pairs in order, equal, inverted and with NaN: what is stored counts, not what was given.
            AxisLimits limits = AnyLimits(random);
            if (i % 3 == 0) limits.upper.axis[random.Below(6)] = limits.lower.axis[0];
            ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);
            ExpectKept(store);
        }
    }
}

// 170 and -190 degrees lie in quarter turns 1 and -3.
TEST(LimitConfigs, of_given_limits_are_their_quarter_turns)
{
    for (const std::int32_t type : kTypes) {
        Store store = ReadyStore(type, ParamOf(type));
        AxisLimits limits = OpenLimits();
        limits.upper.axis.fill(InRadians(170.0));
        limits.lower.axis.fill(InRadians(-190.0));
        ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);
        const LimitConfigs& kept = store.limitConfigs;
        if (type == kSix) {
            for (const auto member : {&KineArmConfig::Cfg1, &KineArmConfig::Cfg2, &KineArmConfig::Cfg3}) {
                EXPECT_EQ(kept.upper.*member, 1);
                EXPECT_EQ(kept.lower.*member, -3);
            }
        } else {
            EXPECT_EQ(kept.upper.Cfg4, 1);
            EXPECT_EQ(kept.lower.Cfg4, -3);
            EXPECT_EQ(kept.upper.Cfg2, type == k4110 ? 1 : 0);
            EXPECT_EQ(kept.lower.Cfg3, type == k4110 ? -3 : 0);
        }
    }
}

// Another arm type in the same store: nothing of the first one stays.
TEST(LimitConfigs, are_those_of_the_new_arm_after_another_initialisation)
{
    SeededRandom random(9102);
    for (const std::int32_t first : kTypes) {
        for (const std::int32_t second : kTypes) {
            SCOPED_TRACE(testing::Message() << first << " then " << second);
            Store store = ReadyStore(first, ParamOf(first));
            AxisLimits narrow = OpenLimits(InRadians(100.0));
            ASSERT_EQ(SetAxisLimits(store, narrow), KINE_OK);
            ExpectKept(store);

            const KineKinematicParam param = ParamOf(second);
            store.arm.armType = second;
            store.arm.initState = kInitStateTypeStored;
            ASSERT_EQ(InitModel(store, &param), KINE_OK);
            store.arm.initState = kInitStateReady;
            AxisLimits open = OpenLimits();
            ASSERT_EQ(SetAxisLimits(store, open), KINE_OK);
            ExpectKept(store);
            // 999 rad: quarter turn 635 and two more.
            EXPECT_EQ(CheckArmConfig(store, {637, 637, 637, 637}), KINE_OK);
            AxisLimits any = AnyLimits(random);
            ASSERT_EQ(SetAxisLimits(store, any), KINE_OK);
            ExpectKept(store);
        }
    }
}

// The posture at the limits depends on the lengths of the arm.
TEST(LimitConfigs, are_taken_with_the_parameters_of_the_arm)
{
    // Upper arm of 500 mm leaning back by 60 degrees, forearm of 400 mm level: the wrist centre stands at
    // a1 - 433 + 400 mm, in front of joint 1 for a1 = 100 and behind it for a1 = 0.
    const double lean = InRadians(60.0);
    for (const double a1 : {100.0, 0.0}) {
        Store store = ReadyStore(kSix, NominalSixAxis({a1, 500.0, 0.0, 400.0, 80.0, 0.0, 0.0}));
        AxisLimits limits = OpenLimits();
        limits.upper.axis = {1.0, lean, -lean, 1.0, 1.0, 1.0, 0.0, 0.0};
        limits.lower.axis = {-1.0, lean - 1.0, -lean - 1.0, -1.0, -1.0, -1.0, 0.0, 0.0};
        ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);
        ExpectKept(store);
        EXPECT_EQ(store.limitConfigs.upper.Cfg4 >= 4, a1 == 0.0);
    }
}

TEST(StoreLimitConfigs, takes_the_configurations_once_more)
{
    SeededRandom random(9103);
    for (const std::int32_t type : kTypes) {
        Store store = ReadyStore(type, ParamOf(type));
        for (int i = 0; i < 50; ++i) {
            // Limits that come to the model by another way.
            ModelOf(store)->SetAxisLimits(AnyLimits(random));
            store.limitConfigs = Untouched<LimitConfigs>();
            ASSERT_EQ(StoreLimitConfigs(store), KINE_OK);
            ExpectKept(store);
        }
    }
}

TEST(StoreLimitConfigs, of_a_store_that_is_not_ready_or_has_no_model_is_refused_and_keeps_the_old_ones)
{
    for (const std::int32_t state : {0, 1, 3, -1, kMax}) {
        Store store = ReadyStore(kSix, WristArm());
        store.limitConfigs = Untouched<LimitConfigs>();
        store.arm.initState = state;
        EXPECT_EQ(StoreLimitConfigs(store), 0x6001u);
        EXPECT_TRUE(IsUntouched(store.limitConfigs));
    }
    for (const std::int32_t type : {0, 3, 5, 7, 4111, kMax}) {
        Store store = ReadyStore(kSix, WristArm());
        store.limitConfigs = Untouched<LimitConfigs>();
        store.arm.armType = type;
        EXPECT_EQ(StoreLimitConfigs(store), 0xFFFFFFFFu);
        EXPECT_TRUE(IsUntouched(store.limitConfigs));
    }
}

TEST(SetAxisLimits, that_is_refused_keeps_the_configurations)
{
    Store store = ReadyStore(kSix, WristArm());
    AxisLimits narrow = OpenLimits(InRadians(100.0));
    ASSERT_EQ(SetAxisLimits(store, narrow), KINE_OK);
    const LimitConfigs kept = store.limitConfigs;
    AxisLimits wide = OpenLimits();
    store.arm.initState = kInitStateTypeStored;
    EXPECT_EQ(SetAxisLimits(store, wide), 0x6001u);
    EXPECT_TRUE(SameBits(store.limitConfigs, kept));
    store.arm = {5, kInitStateReady, 6};
    EXPECT_EQ(SetAxisLimits(store, wide), 0xFFFFFFFFu);
    EXPECT_TRUE(SameBits(store.limitConfigs, kept));
    store.arm = {kSix, kInitStateReady, 6};
    ExpectKept(store);
}

TEST(ResetCell, keeps_the_configurations_at_the_limits)
{
    Store store = ReadyStore(kSix, WristArm());
    const LimitConfigs kept = store.limitConfigs;
    ResetCell(store);
    EXPECT_TRUE(SameBits(store.limitConfigs, kept));
}

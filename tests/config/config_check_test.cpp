// Configuration integers of a target against those of the axis limits.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "config/dispatch.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/sample_arms.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

std::int32_t& Member(KineArmConfig& config, int number)
{
    switch (number) {
        case 1: return config.Cfg1;
        case 2: return config.Cfg2;
        case 3: return config.Cfg3;
        default: return config.Cfg4;
    }
}

// Whether the arm type compares this integer.
bool IsCompared(std::int32_t armType, int number)
{
    switch (armType) {
        case 4: return number == 4;
        case 6: return number <= 3;
        case 4110: return number >= 2;
        default: return false;
    }
}

bool IsWithin(std::int32_t armType, int number, std::int32_t lower, std::int32_t value, std::int32_t upper)
{
    KineArmConfig config{};
    KineArmConfig low{};
    KineArmConfig high{};
    Member(config, number) = value;
    Member(low, number) = lower;
    Member(high, number) = upper;
    return IsConfigWithin(armType, config, low, high);
}

// Limits in degrees on one axis, the others open.
Store LimitedArm(std::int32_t armType, std::size_t axis, double lowerDeg, double upperDeg)
{
    Store store = ReadyStore(armType, armType == kSix ? WristArm() : Scara());
    AxisLimits limits = OpenLimits();
    limits.lower.axis[axis] = InRadians(lowerDeg);
    limits.upper.axis[axis] = InRadians(upperDeg);
    EXPECT_EQ(SetAxisLimits(store, limits), KINE_OK);
    return store;
}

KineResult CheckOne(const Store& store, int number, std::int32_t value)
{
    KineArmConfig config{};
    Member(config, number) = value;
    return CheckArmConfig(store, config);
}

}  // namespace

TEST(IsConfigWithin, each_compared_integer_may_lie_two_outside)
{
    for (const std::int32_t type : {4, 6, 4110, 5, 0, kMax}) {
        for (const int number : {1, 2, 3, 4}) {
            SCOPED_TRACE(testing::Message() << "arm type " << type << ", Cfg" << number);
            const bool compared = IsCompared(type, number);
            EXPECT_TRUE(IsWithin(type, number, -5, -7, 3));
            EXPECT_EQ(IsWithin(type, number, -5, -8, 3), !compared);
            EXPECT_TRUE(IsWithin(type, number, -5, -5, 3));
            EXPECT_TRUE(IsWithin(type, number, -5, 0, 3));
            EXPECT_TRUE(IsWithin(type, number, -5, 3, 3));
            EXPECT_TRUE(IsWithin(type, number, -5, 5, 3));
            EXPECT_EQ(IsWithin(type, number, -5, 6, 3), !compared);
            EXPECT_EQ(IsWithin(type, number, -5, kMax, 3), !compared);
            EXPECT_EQ(IsWithin(type, number, -5, kMin, 3), !compared);
        }
    }
}

TEST(IsConfigWithin, limits_at_the_ends_of_int32_do_not_wrap)
{
    for (const std::int32_t type : {4, 6, 4110}) {
        for (const int number : {1, 2, 3, 4}) {
            if (!IsCompared(type, number)) continue;
            SCOPED_TRACE(testing::Message() << "arm type " << type << ", Cfg" << number);
            // Everything fits the full range.
            for (const std::int32_t value : {kMin, kMin + 1, -1, 0, 1, kMax - 1, kMax}) {
                EXPECT_TRUE(IsWithin(type, number, kMin, value, kMax)) << value;
            }
            // An upper limit so high that the tolerance leaves int32.
            EXPECT_TRUE(IsWithin(type, number, 0, kMax, kMax - 1));
            EXPECT_TRUE(IsWithin(type, number, 0, kMax, kMax - 2));
            EXPECT_FALSE(IsWithin(type, number, 0, kMax, kMax - 3));
            EXPECT_FALSE(IsWithin(type, number, 0, kMin, kMax));
            // A lower limit so low that the tolerance leaves int32.
            EXPECT_TRUE(IsWithin(type, number, kMin + 1, kMin, 0));
            EXPECT_TRUE(IsWithin(type, number, kMin + 2, kMin, 0));
            EXPECT_FALSE(IsWithin(type, number, kMin + 3, kMin, 0));
            EXPECT_FALSE(IsWithin(type, number, kMin, kMax, 0));
            // Both limits at one end.
            EXPECT_TRUE(IsWithin(type, number, kMax, kMax - 2, kMax));
            EXPECT_FALSE(IsWithin(type, number, kMax, kMax - 3, kMax));
            EXPECT_TRUE(IsWithin(type, number, kMin, kMin + 2, kMin));
            EXPECT_FALSE(IsWithin(type, number, kMin, kMin + 3, kMin));
        }
    }
}

// Limits that cross, as a NaN among them can give: both sides still count.
TEST(IsConfigWithin, crossed_limits_leave_what_both_sides_allow)
{
    EXPECT_TRUE(IsWithin(6, 1, 2, 0, -2));
    EXPECT_FALSE(IsWithin(6, 1, 2, 1, -2));
    EXPECT_FALSE(IsWithin(6, 1, 2, -1, -2));
    EXPECT_FALSE(IsWithin(6, 1, 3, 0, -2));
}

// Limits of -170 and 200 degrees lie in the quarter turns -2 and 2.
TEST(CheckArmConfig, six_axis_arm_compares_axes_one_four_and_six)
{
    const std::size_t axisOf[] = {0, 3, 5};
    for (const int number : {1, 2, 3}) {
        SCOPED_TRACE(number);
        const Store store = LimitedArm(kSix, axisOf[number - 1], -170.0, 200.0);
        EXPECT_EQ(CheckOne(store, number, -5), 0x6090u);
        EXPECT_EQ(CheckOne(store, number, -4), 0u);
        EXPECT_EQ(CheckOne(store, number, 4), 0u);
        EXPECT_EQ(CheckOne(store, number, 5), 0x6090u);
        for (const std::int32_t posture : {kMin, -1, 8, kMax}) EXPECT_EQ(CheckOne(store, 4, posture), 0u);
    }
}

TEST(CheckArmConfig, four_axis_arm_compares_axis_four_only)
{
    const Store store = LimitedArm(kFour, 3, -170.0, 200.0);
    EXPECT_EQ(CheckOne(store, 4, -5), 0x6090u);
    EXPECT_EQ(CheckOne(store, 4, -4), 0u);
    EXPECT_EQ(CheckOne(store, 4, 4), 0u);
    EXPECT_EQ(CheckOne(store, 4, 5), 0x6090u);
    for (const int number : {1, 2, 3}) {
        EXPECT_EQ(CheckOne(store, number, kMin), 0u);
        EXPECT_EQ(CheckOne(store, number, kMax), 0u);
    }
}

// Axis 2 counts with its whole turns: the limit of 560 degrees is not wrapped before its number is taken.
TEST(CheckArmConfig, arm_type_4110_compares_axes_one_two_and_four)
{
    const std::size_t axisOf[] = {0, 1, 3};
    for (const int number : {2, 3, 4}) {
        SCOPED_TRACE(number);
        const Store store = LimitedArm(k4110, axisOf[number - 2], -170.0, 560.0);
        EXPECT_EQ(CheckOne(store, number, -5), 0x6090u);
        EXPECT_EQ(CheckOne(store, number, -4), 0u);
        EXPECT_EQ(CheckOne(store, number, 8), 0u);
        EXPECT_EQ(CheckOne(store, number, 9), 0x6090u);
        EXPECT_EQ(CheckOne(store, 1, kMin), 0u);
        EXPECT_EQ(CheckOne(store, 1, kMax), 0u);
    }
}

// 999 rad are 635.98 quarter turns; below zero one is taken off: -636.98.
TEST(CheckArmConfig, open_limits_allow_some_six_hundred_quarter_turns)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        const Store store = ReadyStore(type, type == kSix ? WristArm() : Scara());
        for (const int number : {1, 2, 3, 4}) {
            if (!IsCompared(type, number)) continue;
            SCOPED_TRACE(testing::Message() << "arm type " << type << ", Cfg" << number);
            EXPECT_EQ(CheckOne(store, number, 637), 0u);
            EXPECT_EQ(CheckOne(store, number, 638), 0x6090u);
            EXPECT_EQ(CheckOne(store, number, -638), 0u);
            EXPECT_EQ(CheckOne(store, number, -639), 0x6090u);
            EXPECT_EQ(CheckOne(store, number, kMax), 0x6090u);
            EXPECT_EQ(CheckOne(store, number, kMin), 0x6090u);
        }
    }
}

// Before any limits are set they are all zero: quarter turn 0 on both sides.
TEST(CheckArmConfig, fresh_model_allows_two_around_zero)
{
    Store store{};
    store.arm.armType = kSix;
    const KineKinematicParam param = WristArm();
    ASSERT_EQ(InitModel(store, &param), KINE_OK);
    store.arm.initState = kInitStateReady;
    EXPECT_EQ(CheckOne(store, 1, 2), 0u);
    EXPECT_EQ(CheckOne(store, 1, 3), 0x6090u);
    EXPECT_EQ(CheckOne(store, 1, -2), 0u);
    EXPECT_EQ(CheckOne(store, 1, -3), 0x6090u);
}

// Limits far beyond int32 saturate and still compare without overflow.
TEST(CheckArmConfig, huge_limits_allow_every_integer)
{
    for (const double limit : {1e15, 1e300, kInf}) {
        Store store = ReadyStore(kSix, WristArm());
        AxisLimits limits = OpenLimits(limit);
        ASSERT_EQ(SetAxisLimits(store, limits), KINE_OK);
        for (const int number : {1, 2, 3}) {
            EXPECT_EQ(CheckOne(store, number, kMax), 0u) << limit;
            EXPECT_EQ(CheckOne(store, number, kMin), 0u) << limit;
        }
    }
}

// The look-up moves axis 2 of copies only.
TEST(CheckArmConfig, asking_a_4110_arm_again_gives_the_same_answer)
{
    const Store store = LimitedArm(k4110, 1, 500.0, 560.0);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(CheckOne(store, 3, 8), 0u);
        EXPECT_EQ(CheckOne(store, 3, 9), 0x6090u);
        EXPECT_EQ(CheckOne(store, 3, 3), 0u);
        EXPECT_EQ(CheckOne(store, 3, 2), 0x6090u);
    }
}

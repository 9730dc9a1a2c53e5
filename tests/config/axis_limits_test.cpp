// Axis limits through the dispatch: which pairs are opened, and which model stores them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "config/dispatch.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

// Three arms with open limits; one is selected.
Store ThreeArms(std::int32_t type)
{
    const KineKinematicParam six = WristArm();
    const KineKinematicParam four = Scara();
    Store store{};
    ResetCell(store);
    for (const std::int32_t each : {kSix, kFour, k4110}) {
        store.arm = {each, kInitStateReady, 0};
        EXPECT_EQ(InitModel(store, each == kSix ? &six : &four), KINE_OK);
        AxisLimits limits = OpenLimits();
        EXPECT_EQ(SetAxisLimits(store, limits), KINE_OK);
    }
    store.arm.armType = type;
    return store;
}

}  // namespace

TEST(SetAxisLimits, stores_the_axes_of_the_model_of_the_type_only)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        SCOPED_TRACE(type);
        Store store = ThreeArms(type);
        AxisLimits limits{};
        limits.upper.axis = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
        limits.lower.axis = {-1.5, -2.5, -3.5, -4.5, -5.5, -6.5, -7.5, -8.5};
        EXPECT_EQ(SetAxisLimits(store, limits), 0u);

        const std::size_t axes = type == kSix ? 6 : 4;
        AxisLimits expected = Untouched<AxisLimits>();
        for (std::size_t i = 0; i < axes; ++i) {
            expected.upper.axis[i] = limits.upper.axis[i];
            expected.lower.axis[i] = limits.lower.axis[i];
        }
        AxisLimits stored = Untouched<AxisLimits>();
        EXPECT_EQ(GetAxisLimits(store, stored), 0u);
        EXPECT_TRUE(SameBits(stored, expected));

        for (const std::int32_t other : {kFour, kSix, k4110}) {
            if (other == type) continue;
            store.arm.armType = other;
            EXPECT_EQ(GetAxisLimits(store, stored), 0u);
            EXPECT_EQ(stored.upper.axis[0], 999.0) << other;
            EXPECT_EQ(stored.lower.axis[3], -999.0) << other;
        }
    }
}

TEST(SetAxisLimits, each_empty_range_is_opened_alone)
{
    for (std::size_t axis = 0; axis < 6; ++axis) {
        for (const double lower : {0.25, 0.5}) {  // equal, inverted
            SCOPED_TRACE(axis);
            Store store = ThreeArms(kSix);
            AxisLimits limits = OpenLimits(2.0);
            limits.upper.axis[axis] = 0.25;
            limits.lower.axis[axis] = lower;
            EXPECT_EQ(SetAxisLimits(store, limits), 0u);

            AxisLimits expected = OpenLimits(2.0);
            expected.upper.axis[axis] = 999.0;
            expected.lower.axis[axis] = -999.0;
            EXPECT_TRUE(SameBits(limits, expected));

            AxisLimits stored{};
            EXPECT_EQ(GetAxisLimits(store, stored), 0u);
            for (std::size_t i = 0; i < 6; ++i) {
                EXPECT_EQ(stored.upper.axis[i], i == axis ? 999.0 : 2.0);
                EXPECT_EQ(stored.lower.axis[i], i == axis ? -999.0 : -2.0);
            }
        }
    }
}

TEST(SetAxisLimits, narrow_and_huge_ranges_are_kept)
{
    Store store = ThreeArms(kSix);
    AxisLimits limits = OpenLimits(2.0);
    limits.lower.axis[0] = 0.25;
    limits.upper.axis[0] = std::nextafter(0.25, 1.0);
    limits.lower.axis[1] = -kInf;
    limits.upper.axis[1] = kInf;
    limits.lower.axis[2] = -5000.0;
    limits.upper.axis[2] = -4000.0;
    const AxisLimits before = limits;
    EXPECT_EQ(SetAxisLimits(store, limits), 0u);
    EXPECT_TRUE(SameBits(limits, before));
}

// NaN is not "greater than or equal": such a pair stays as it is.
TEST(SetAxisLimits, nan_limits_are_kept)
{
    Store store = ThreeArms(kSix);
    AxisLimits limits = OpenLimits(2.0);
    limits.lower.axis[0] = kNan;
    limits.upper.axis[1] = kNan;
    limits.lower.axis[2] = kNan;
    limits.upper.axis[2] = kNan;
    const AxisLimits before = limits;
    EXPECT_EQ(SetAxisLimits(store, limits), 0u);
    EXPECT_TRUE(SameBits(limits, before));

    AxisLimits stored{};
    EXPECT_EQ(GetAxisLimits(store, stored), 0u);
    EXPECT_TRUE(std::isnan(stored.lower.axis[0]));
    EXPECT_EQ(stored.upper.axis[0], 2.0);
    EXPECT_EQ(stored.lower.axis[1], -2.0);
    EXPECT_TRUE(std::isnan(stored.upper.axis[1]));
}

TEST(SetAxisLimits, axes_beyond_the_sixth_are_not_cleaned)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        Store store = ThreeArms(type);
        AxisLimits limits = OpenLimits(2.0);
        for (const std::size_t axis : {std::size_t{6}, std::size_t{7}}) {
            limits.upper.axis[axis] = -1.0;
            limits.lower.axis[axis] = 1.0;
        }
        limits.upper.extAxis.fill(-3.0);
        limits.lower.extAxis.fill(3.0);
        const AxisLimits before = limits;
        EXPECT_EQ(SetAxisLimits(store, limits), 0u);
        EXPECT_TRUE(SameBits(limits, before)) << type;
    }
}

// The four-axis arms have no axes 5 and 6; their pairs are cleaned all the same.
TEST(SetAxisLimits, six_pairs_are_cleaned_for_four_axis_arms_too)
{
    for (const std::int32_t type : {kFour, k4110}) {
        Store store = ThreeArms(type);
        AxisLimits limits = OpenLimits(2.0);
        limits.upper.axis[4] = -2.0;
        limits.lower.axis[5] = 2.0;
        EXPECT_EQ(SetAxisLimits(store, limits), 0u);
        EXPECT_EQ(limits.upper.axis[4], 999.0);
        EXPECT_EQ(limits.lower.axis[4], -999.0);
        EXPECT_EQ(limits.upper.axis[5], 999.0);
        EXPECT_EQ(limits.lower.axis[5], -999.0);
    }
}

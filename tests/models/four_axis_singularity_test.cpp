// The singularity test of the four-axis arms: axis 2 shortly above a multiple of half a turn, counted toward
// zero.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_4110_model.h"
#include "models/four_axis_geometry.h"
#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

bool IsSingular(double q2, std::uint32_t kind) { return FourAxisSingularity(q2, kind) != 0; }

void ExpectThreshold(std::uint32_t kind, double threshold)
{
    SCOPED_TRACE(kind);
    for (const double side : {1.0, -1.0}) {
        EXPECT_TRUE(IsSingular(0.0, kind));
        EXPECT_TRUE(IsSingular(side * 0.01, kind));
        EXPECT_TRUE(IsSingular(side * std::nextafter(threshold, 0.0), kind));
        EXPECT_FALSE(IsSingular(side * threshold, kind));  // strictly below
        EXPECT_FALSE(IsSingular(side * std::nextafter(threshold, 1.0), kind));
        EXPECT_FALSE(IsSingular(side * 1.0, kind));
        // Around half a turn: above it only, seen from zero.
        EXPECT_FALSE(IsSingular(side * 3.13, kind));
        EXPECT_TRUE(IsSingular(side * kHalfTurn, kind));
        EXPECT_TRUE(IsSingular(side * 3.15, kind));
        EXPECT_TRUE(IsSingular(side * (kHalfTurn + threshold - 1e-9), kind));
        EXPECT_FALSE(IsSingular(side * (kHalfTurn + threshold + 1e-9), kind));
        EXPECT_FALSE(IsSingular(side * (2 * kHalfTurn - 0.001), kind));
        EXPECT_TRUE(IsSingular(side * (2 * kHalfTurn + 0.001), kind));
        EXPECT_TRUE(IsSingular(side * (40 * kHalfTurn + 0.001), kind));
    }
}

TEST(FourAxisSingularity, kinds_0_and_1_use_0_0192_rad)
{
    ExpectThreshold(0, 0.0192);
    ExpectThreshold(1, 0.0192);
}

TEST(FourAxisSingularity, kind_2_uses_0_0524_rad) { ExpectThreshold(2, 0.0524); }

TEST(FourAxisSingularity, any_other_kind_is_never_singular)
{
    for (const std::uint32_t kind : {3U, 4U, 256U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(IsSingular(0.0, kind));
        EXPECT_FALSE(IsSingular(kHalfTurn, kind));
    }
}

TEST(FourAxisSingularity, not_a_number_and_infinity_are_not_singular)
{
    for (const double bad : {kInf, -kInf, kNan}) EXPECT_FALSE(IsSingular(bad, 0));
}

TEST(FourAxisSingularity, half_turns_beyond_the_integers_are_counted_in_double)
{
    // 3e10 half turns, rounded to the nearest double: some 1e-5 rad of rounding.
    EXPECT_TRUE(IsSingular(3e10 * kHalfTurn + 0.001, 0));
    EXPECT_FALSE(IsSingular(3e10 * kHalfTurn + 1.5, 0));
}

TEST(FourAxisSingularity, both_models_read_axis_2_as_given)
{
    const KineKinematicParam param = ParamOf({});
    FourAxisModel type4;
    FourAxis4110Model type4110;
    ASSERT_EQ(type4.InitModel(4, &param), KINE_OK);
    ASSERT_EQ(type4110.InitModel(4110, &param), KINE_OK);
    for (const double q2 : {0.0, 0.01, 1.5, 3.13, 3.15, -0.01}) {
        const Joints q = JointsOf(1.0, q2, 1.0, 1.0);
        EXPECT_EQ(type4.IsSingularity(q, 0) != 0, IsSingular(q2, 0)) << q2;
        EXPECT_EQ(type4110.IsSingularity(q, 0) != 0, IsSingular(q2, 0)) << q2;
        EXPECT_EQ(type4.IsSingularity(q, 3), 0U);
        EXPECT_EQ(type4110.IsSingularity(q, 3), 0U);
    }
}

}  // namespace
}  // namespace kine::test

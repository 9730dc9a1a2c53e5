#include "math/angles.h"

#include <gtest/gtest.h>

#include "support/math_compare.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;

constexpr std::int32_t kInt32Max = 2147483647;
constexpr std::int32_t kInt32Min = -2147483647 - 1;

TEST(AngleFactors, are_the_doubles_nearest_to_their_quotients)
{
    // Full circles come out to the last bit or its neighbour; a wrong digit would show a million times
    // larger.
    EXPECT_DOUBLE_EQ(DEG2RAD * 360.0, 8.0 * std::atan(1.0));
    EXPECT_DOUBLE_EQ(RAD2DEG * std::atan(1.0), 45.0);
    EXPECT_EQ(DEG2RAD, 0.017453292519943295);
    EXPECT_EQ(RAD2DEG, 57.29577951308232);
}

TEST(AngleConstants, are_the_arcs_of_the_c_library)
{
    EXPECT_EQ(kPi, std::acos(-1.0));
    EXPECT_EQ(kHalfPi, std::acos(0.0));
    EXPECT_EQ(kTwoPi, 2.0 * std::acos(-1.0));
}

TEST(SinCosOf, gives_sine_and_cosine)
{
    EXPECT_EQ(SinCosOf(0.0).sin, 0.0);
    EXPECT_EQ(SinCosOf(0.0).cos, 1.0);
    EXPECT_NEAR(SinCosOf(kPi / 6.0).sin, 0.5, 1e-15);
    EXPECT_NEAR(SinCosOf(-kPi / 3.0).cos, 0.5, 1e-15);
    EXPECT_NEAR(SinCosOf(-kPi / 3.0).sin, -std::sqrt(0.75), 1e-15);
}

TEST(SinCosOf, passes_nan_and_turns_infinity_into_nan)
{
    EXPECT_TRUE(std::isnan(SinCosOf(kNan).sin));
    EXPECT_TRUE(std::isnan(SinCosOf(kNan).cos));
    EXPECT_TRUE(std::isnan(SinCosOf(kInf).sin));
    EXPECT_TRUE(std::isnan(SinCosOf(-kInf).cos));
}

TEST(SafeAcos, inside_is_the_arc_cosine)
{
    EXPECT_NEAR(SafeAcos(0.5), kPi / 3.0, 1e-15);
    EXPECT_NEAR(SafeAcos(-0.5), 2.0 * kPi / 3.0, 1e-15);
    EXPECT_EQ(SafeAcos(0.0), kHalfPi);
    EXPECT_EQ(SafeAcos(1.0), 0.0);
    EXPECT_EQ(SafeAcos(-1.0), kPi);
}

TEST(SafeAcos, just_inside_one_is_not_clamped)
{
    // arccos(1 - h) = sqrt(2 h) up to terms of h^1.5
    const double h = 1.0 - JustBelow(1.0);
    EXPECT_DOUBLE_EQ(SafeAcos(JustBelow(1.0)), std::sqrt(2.0 * h));
    EXPECT_DOUBLE_EQ(SafeAcos(JustAbove(-1.0)), kPi - std::sqrt(2.0 * h));
}

TEST(SafeAcos, rounding_noise_beyond_one_counts_as_one)
{
    for (const double x : {JustAbove(1.0), 1.000005, JustBelow(1.00001)}) {
        SCOPED_TRACE(x);
        EXPECT_EQ(SafeAcos(x), 0.0);
        EXPECT_EQ(SafeAcos(-x), kPi);
    }
}

TEST(SafeAcos, at_or_beyond_the_tolerance_is_nan)
{
    for (const double x : {1.00001, JustAbove(1.00001), 2.0, 1e300, kInf}) {
        SCOPED_TRACE(x);
        EXPECT_TRUE(std::isnan(SafeAcos(x)));
        EXPECT_TRUE(std::isnan(SafeAcos(-x)));
    }
    EXPECT_TRUE(std::isnan(SafeAcos(kNan)));
}

TEST(SafeAsin, inside_is_the_arc_sine)
{
    EXPECT_NEAR(SafeAsin(0.5), kPi / 6.0, 1e-15);
    EXPECT_NEAR(SafeAsin(-0.5), -kPi / 6.0, 1e-15);
    EXPECT_EQ(SafeAsin(0.0), 0.0);
    EXPECT_EQ(SafeAsin(1.0), kHalfPi);
    EXPECT_EQ(SafeAsin(-1.0), -kHalfPi);
}

TEST(SafeAsin, just_inside_one_is_not_clamped)
{
    // arcsin(1 - h) = pi/2 - sqrt(2 h) up to terms of h^1.5
    const double h = 1.0 - JustBelow(1.0);
    EXPECT_DOUBLE_EQ(SafeAsin(JustBelow(1.0)), kHalfPi - std::sqrt(2.0 * h));
    EXPECT_DOUBLE_EQ(SafeAsin(JustAbove(-1.0)), std::sqrt(2.0 * h) - kHalfPi);
}

TEST(SafeAsin, rounding_noise_beyond_one_counts_as_one)
{
    for (const double x : {JustAbove(1.0), 1.000005, JustBelow(1.00001)}) {
        SCOPED_TRACE(x);
        EXPECT_EQ(SafeAsin(x), kHalfPi);
        EXPECT_EQ(SafeAsin(-x), -kHalfPi);
    }
}

TEST(SafeAsin, at_or_beyond_the_tolerance_is_nan)
{
    for (const double x : {1.00001, JustAbove(1.00001), 2.0, 1e300, kInf}) {
        SCOPED_TRACE(x);
        EXPECT_TRUE(std::isnan(SafeAsin(x)));
        EXPECT_TRUE(std::isnan(SafeAsin(-x)));
    }
    EXPECT_TRUE(std::isnan(SafeAsin(kNan)));
}

TEST(TruncToInt32, rounds_toward_zero)
{
    EXPECT_EQ(TruncToInt32(0.0), 0);
    EXPECT_EQ(TruncToInt32(-0.0), 0);
    EXPECT_EQ(TruncToInt32(JustBelow(1.0)), 0);
    EXPECT_EQ(TruncToInt32(1.0), 1);
    EXPECT_EQ(TruncToInt32(2.9), 2);
    EXPECT_EQ(TruncToInt32(JustAbove(-1.0)), 0);
    EXPECT_EQ(TruncToInt32(-1.0), -1);
    EXPECT_EQ(TruncToInt32(-2.9), -2);
}

TEST(TruncToInt32, ends_of_the_range_are_reached_from_inside)
{
    EXPECT_EQ(TruncToInt32(2147483646.9), kInt32Max - 1);
    EXPECT_EQ(TruncToInt32(2147483647.0), kInt32Max);
    EXPECT_EQ(TruncToInt32(2147483647.9), kInt32Max);
    EXPECT_EQ(TruncToInt32(-2147483647.9), kInt32Min + 1);
    EXPECT_EQ(TruncToInt32(-2147483648.0), kInt32Min);
    EXPECT_EQ(TruncToInt32(-2147483648.9), kInt32Min);
}

TEST(TruncToInt32, beyond_the_range_is_its_nearest_end)
{
    for (const double x : {2147483648.0, 4294967296.0, 1e300, kInf}) {
        SCOPED_TRACE(x);
        EXPECT_EQ(TruncToInt32(x), kInt32Max);
    }
    for (const double x : {-2147483649.0, -4294967296.0, -1e300, -kInf}) {
        SCOPED_TRACE(x);
        EXPECT_EQ(TruncToInt32(x), kInt32Min);
    }
}

TEST(TruncToInt32, of_nan_is_the_lower_end) { EXPECT_EQ(TruncToInt32(kNan), kInt32Min); }

}  // namespace
}  // namespace kine

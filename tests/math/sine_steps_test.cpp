// Sines and cosines that are moved on instead of computed anew, against the sine and cosine of the sum in
// higher precision.
#include <gtest/gtest.h>

#include <limits>

#include "math/angles.h"
#include "support/math_compare.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::kNan;

// The angle before the step is rounded to half of 1.1e-16 in sine and cosine, the result once more, and
// the addition theorems between them once or twice in terms of the size of the step.
constexpr double kBound = 2.3e-16;

constexpr long double Wide(double value) { return static_cast<long double>(value); }

// How far sine and cosine lie from those of an angle.
double ErrorAt(const SinCos& actual, long double angle)
{
    const auto sine = static_cast<double>(std::fabs(Wide(actual.sin) - std::sin(angle)));
    const auto cosine = static_cast<double>(std::fabs(Wide(actual.cos) - std::cos(angle)));
    return std::fmax(sine, cosine);
}

double ErrorOfStep(double angle, double by)
{
    return ErrorAt(Advanced(SinCosOf(angle), by), Wide(angle) + Wide(by));
}

TEST(Advanced, any_step_up_to_the_largest_is_the_sine_and_cosine_of_the_sum)
{
    test::SeededRandom random(3101);
    for (int i = 0; i < 100000; ++i) {
        const double angle = random.Uniform(-7.0, 7.0);
        const double by = random.Uniform(-kMaxSeriesStep, kMaxSeriesStep);
        ASSERT_LE(ErrorOfStep(angle, by), kBound) << angle << " by " << by;
    }
}

TEST(Advanced, the_whole_range_of_steps_is_covered_from_the_ends_to_the_smallest)
{
    for (const double angle : {0.0, 0.3, kPi / 4.0, kHalfPi, 2.0, kPi, -kHalfPi, -3.0, 100.0}) {
        for (int k = -2000; k <= 2000; ++k) {
            const double by = kMaxSeriesStep * k / 2000.0;
            ASSERT_LE(ErrorOfStep(angle, by), kBound) << angle << " by " << by;
        }
        for (double by = kMaxSeriesStep; by > 0.0; by *= 0.5) {
            ASSERT_LE(ErrorOfStep(angle, by), kBound) << angle << " by " << by;
            ASSERT_LE(ErrorOfStep(angle, -by), kBound) << angle << " by " << -by;
        }
    }
}

// From 0 on the step itself is seen: the sine to its own last bits, the cosine to the last bit of 1. A
// term that the series leaves out, or an end of the range further out, would show here.
TEST(Advanced, from_zero_on_the_series_are_exact_to_rounding)
{
    for (int k = -40000; k <= 40000; ++k) {
        const double by = kMaxSeriesStep * k / 40000.0;
        const SinCos moved = Advanced({0.0, 1.0}, by);
        const long double sine = std::sin(Wide(by));
        const long double cosine = std::cos(Wide(by));
        ASSERT_LE(std::fabs(Wide(moved.sin) - sine), 2.3e-16L * std::fabs(sine)) << by;
        ASSERT_LE(std::fabs(Wide(moved.cos) - cosine), 0.7e-16L) << by;
    }
}

// Steps add up: where a hundred of them lead is still the sine and cosine to a hundred roundings.
TEST(Advanced, many_steps_stay_on_the_circle)
{
    test::SeededRandom random(3102);
    for (int round = 0; round < 200; ++round) {
        const double start = random.Uniform(-3.0, 3.0);
        long double angle = Wide(start);
        SinCos moved = SinCosOf(start);
        for (int step = 0; step < 100; ++step) {
            const double by = random.Uniform(-kMaxSeriesStep, kMaxSeriesStep);
            moved = Advanced(moved, by);
            angle += Wide(by);
        }
        EXPECT_LE(ErrorAt(moved, angle), 100.0 * 1.2e-16);
        EXPECT_NEAR(moved.sin * moved.sin + moved.cos * moved.cos, 1.0, 100.0 * 2.3e-16);
    }
}

TEST(Advanced, by_zero_is_the_same_to_the_last_bit)
{
    test::SeededRandom random(3103);
    for (const double zero : {0.0, -0.0}) {
        for (int i = 0; i < 1000; ++i) {
            const SinCos at = SinCosOf(random.Uniform(-7.0, 7.0));
            ASSERT_TRUE(test::SameBits(Advanced(at, zero), at));
        }
        for (const SinCos& at : {SinCos{0.0, 1.0}, SinCos{0.0, -1.0}, SinCos{1.0, 0.0}, SinCos{-1.0, 0.0}}) {
            EXPECT_TRUE(test::SameBits(Advanced(at, zero), at));
        }
        // Like the sum -0 + 0 of the angles.
        EXPECT_TRUE(test::SameBits(Advanced({-0.0, 1.0}, zero), SinCosOf(-0.0 + 0.0)));
    }
}

TEST(Advanced, nan_in_the_angle_or_the_step_is_nan_in_both)
{
    for (const SinCos& moved :
         {Advanced({kNan, kNan}, 0.01), Advanced({kNan, kNan}, 0.0), Advanced({0.6, 0.8}, kNan)}) {
        EXPECT_TRUE(std::isnan(moved.sin));
        EXPECT_TRUE(std::isnan(moved.cos));
    }
}

TEST(Advanced, serves_every_deflection_that_is_applied)
{
    // 2 degrees, from where on the arm counts as rigid.
    EXPECT_LT(2.0 * DEG2RAD, kMaxSeriesStep);
}

TEST(SumOf, is_the_sine_and_cosine_of_the_sum)
{
    // Four roundings of the arguments, two products and a sum.
    test::SeededRandom random(3104);
    for (int i = 0; i < 100000; ++i) {
        const double a = random.Uniform(-7.0, 7.0);
        const double b = random.Uniform(-7.0, 7.0);
        ASSERT_LE(ErrorAt(SumOf(SinCosOf(a), SinCosOf(b)), Wide(a) + Wide(b)), 3.4e-16) << a << " and " << b;
    }
}

TEST(SumOf, quarter_turns_are_exact)
{
    constexpr SinCos kQuarters[] = {{0.0, 1.0}, {1.0, 0.0}, {0.0, -1.0}, {-1.0, 0.0}};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            const SinCos sum = SumOf(kQuarters[i], kQuarters[j]);
            EXPECT_EQ(sum.sin, kQuarters[(i + j) % 4].sin);
            EXPECT_EQ(sum.cos, kQuarters[(i + j) % 4].cos);
        }
    }
}

TEST(SumOf, with_the_zero_angle_changes_no_bit)
{
    test::SeededRandom random(3105);
    for (int i = 0; i < 1000; ++i) {
        const SinCos at = SinCosOf(random.Uniform(0.1, 7.0));
        EXPECT_TRUE(test::SameBits(SumOf(at, {0.0, 1.0}), at));
        EXPECT_TRUE(test::SameBits(SumOf({0.0, 1.0}, at), at));
    }
}

TEST(SumOf, nan_in_either_is_nan_in_both)
{
    for (const SinCos& sum : {SumOf({kNan, kNan}, {0.0, 1.0}), SumOf({0.6, 0.8}, {kNan, kNan})}) {
        EXPECT_TRUE(std::isnan(sum.sin));
        EXPECT_TRUE(std::isnan(sum.cos));
    }
}

}  // namespace
}  // namespace kine

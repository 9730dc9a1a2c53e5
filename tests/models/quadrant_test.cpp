#include "models/quadrant.h"

#include <gtest/gtest.h>

#include "math/angles.h"
#include "support/math_compare.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::kInf;
using test::kNan;

constexpr std::int32_t kInt32Max = 2147483647;
constexpr std::int32_t kInt32Min = -2147483647 - 1;
constexpr double kBias = 5.555555556e-6;
// The bias as an angle: 5.555555556e-6 quarter turns of pi/2.
constexpr double kMargin = 8.726646260669664e-6;

TEST(QuadrantOf, of_listed_angles)
{
    EXPECT_EQ(QuadrantOf(0.0), 0);
    EXPECT_EQ(QuadrantOf(-0.0), 0);
    EXPECT_EQ(QuadrantOf(-1e-9), 0);
    EXPECT_EQ(QuadrantOf(-1e-6), 0);
    EXPECT_EQ(QuadrantOf(-1e-5), -1);
    EXPECT_EQ(QuadrantOf(-1e-4), -1);
    EXPECT_EQ(QuadrantOf(-0.001), -1);
    EXPECT_EQ(QuadrantOf(0.5), 0);
    EXPECT_EQ(QuadrantOf(kHalfPi - 1e-6), 1);
    EXPECT_EQ(QuadrantOf(kHalfPi), 1);
    EXPECT_EQ(QuadrantOf(-kHalfPi), -1);
    EXPECT_EQ(QuadrantOf(-0.1), -1);
    EXPECT_EQ(QuadrantOf(-2.0), -2);
    EXPECT_EQ(QuadrantOf(kPi), 2);
    EXPECT_EQ(QuadrantOf(-kPi), -2);
}

TEST(QuadrantOf, every_boundary_lies_lower_by_the_bias)
{
    // The quadrant n >= 1 begins at n pi/2, and n <= -1 ends at (n + 1) pi/2, both less the bias.
    for (int n = 1; n <= 40; ++n) {
        SCOPED_TRACE(n);
        const double boundary = n * kHalfPi - kMargin;
        EXPECT_EQ(QuadrantOf(boundary - 1e-12), n - 1);
        EXPECT_EQ(QuadrantOf(boundary + 1e-12), n);
    }
    for (int n = 0; n >= -40; --n) {
        SCOPED_TRACE(n);
        const double boundary = n * kHalfPi - kMargin;
        EXPECT_EQ(QuadrantOf(boundary - 1e-12), n - 1);
        EXPECT_EQ(QuadrantOf(boundary + 1e-12), n);
    }
}

// Below zero the sum that decides lies near -1, where doubles are 1.1e-16 quarter turns apart: 6e-16 rad to
// either side are sure, and the last digit of the bias, 1e-15 quarter turns, counts.
TEST(QuadrantOf, boundary_below_zero_lies_lower_by_the_bias_to_its_last_digit)
{
    EXPECT_EQ(QuadrantOf(-kMargin - 6e-16), -1);
    EXPECT_EQ(QuadrantOf(-kMargin + 6e-16), 0);
}

TEST(QuadrantOf, zero_and_the_smallest_positive_angle_are_in_quadrant_zero)
{
    EXPECT_EQ(QuadrantOf(5e-324), 0);
    EXPECT_EQ(QuadrantOf(-5e-324), 0);
}

TEST(QuadrantOf, beyond_int32_is_an_end_of_its_range)
{
    EXPECT_EQ(QuadrantOf(1e12), kInt32Max);
    EXPECT_EQ(QuadrantOf(-1e12), kInt32Min);
    EXPECT_EQ(QuadrantOf(kInf), kInt32Max);
    EXPECT_EQ(QuadrantOf(-kInf), kInt32Min);
    EXPECT_EQ(QuadrantOf(kNan), kInt32Min);
}

TEST(WindowQuadrantOf, positive_boundaries_are_not_moved)
{
    EXPECT_EQ(WindowQuadrantOf(0.5, kBias), 0);
    EXPECT_EQ(WindowQuadrantOf(kHalfPi - 1e-6, kBias), 0);
    EXPECT_EQ(WindowQuadrantOf(test::JustBelow(kHalfPi), kBias), 0);
    EXPECT_EQ(WindowQuadrantOf(kHalfPi, kBias), 1);
    EXPECT_EQ(WindowQuadrantOf(kPi - 1e-6, kBias), 1);
    EXPECT_EQ(WindowQuadrantOf(kPi, kBias), 2);
    EXPECT_EQ(WindowQuadrantOf(5e-324, kBias), 0);
}

TEST(WindowQuadrantOf, boundaries_at_and_below_zero_are_lower_by_the_bias)
{
    EXPECT_EQ(WindowQuadrantOf(0.0, kBias), 0);
    EXPECT_EQ(WindowQuadrantOf(-0.0, kBias), 0);
    for (int n = 0; n >= -40; --n) {
        SCOPED_TRACE(n);
        const double boundary = n * kHalfPi - kMargin;
        EXPECT_EQ(WindowQuadrantOf(boundary - 1e-12, kBias), n - 1);
        EXPECT_EQ(WindowQuadrantOf(boundary + 1e-12, kBias), n);
    }
}

TEST(WindowQuadrantOf, takes_its_bias_from_the_caller)
{
    // Without a bias 0 itself is in quadrant -1.
    EXPECT_EQ(WindowQuadrantOf(0.0, 0.0), -1);
    EXPECT_EQ(WindowQuadrantOf(-0.1, 0.0), -1);
    EXPECT_EQ(WindowQuadrantOf(-0.1, 0.1), 0);
    EXPECT_EQ(WindowQuadrantOf(kHalfPi - 0.1, 0.1), 0);
}

TEST(WindowQuadrantOf, beyond_int32_is_an_end_of_its_range)
{
    EXPECT_EQ(WindowQuadrantOf(1e12, kBias), kInt32Max);
    EXPECT_EQ(WindowQuadrantOf(-1e12, kBias), kInt32Min);
    EXPECT_EQ(WindowQuadrantOf(kNan, kBias), kInt32Min);
}

TEST(IsTurnNumberServed, up_to_a_million_either_way)
{
    EXPECT_TRUE(IsTurnNumberServed(0));
    EXPECT_TRUE(IsTurnNumberServed(999999));
    EXPECT_TRUE(IsTurnNumberServed(1000000));
    EXPECT_FALSE(IsTurnNumberServed(1000001));
    EXPECT_TRUE(IsTurnNumberServed(-999999));
    EXPECT_TRUE(IsTurnNumberServed(-1000000));
    EXPECT_FALSE(IsTurnNumberServed(-1000001));
    EXPECT_FALSE(IsTurnNumberServed(kInt32Max));
    EXPECT_FALSE(IsTurnNumberServed(kInt32Min));
}

TEST(ShiftByTurn, moves_by_the_whole_turns_in_the_number_toward_zero)
{
    const struct
    {
        std::int32_t turn;
        int wholeTurns;
    } cases[] = {{0, 0},  {1, 0},  {3, 0},   {4, 1},   {5, 1},   {7, 1},   {8, 2},    {11, 2},   {12, 3},
                 {-1, 0}, {-3, 0}, {-4, -1}, {-5, -1}, {-7, -1}, {-8, -2}, {-11, -2}, {-12, -3}, {401, 100}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.turn);
        EXPECT_NEAR(ShiftByTurn(0.75, c.turn), 0.75 + 2.0 * kPi * c.wholeTurns, 1e-12);
        EXPECT_NEAR(ShiftByTurn(-3.0, c.turn), -3.0 + 2.0 * kPi * c.wholeTurns, 1e-12);
    }
}

TEST(QuadrantWindow, keeps_an_angle_within_two_quadrants)
{
    // 0.1 is in quadrant 0.
    for (const std::int32_t turn : {-2, -1, 0, 1, 2}) {
        SCOPED_TRACE(turn);
        double angle = 0.1;
        EXPECT_TRUE(QuadrantWindow(angle, turn, kBias));
        EXPECT_EQ(angle, 0.1);
    }
}

TEST(QuadrantWindow, moves_an_angle_three_quadrants_off_by_one_turn)
{
    double angle = 0.1;
    EXPECT_TRUE(QuadrantWindow(angle, 3, kBias));
    EXPECT_EQ(angle, 0.1 + kTwoPi);
    angle = 0.1;
    EXPECT_TRUE(QuadrantWindow(angle, -3, kBias));
    EXPECT_EQ(angle, 0.1 - kTwoPi);
}

TEST(QuadrantWindow, stops_at_the_first_value_inside)
{
    // 10.1 turns: quadrant 40. Coming down by 4 it is inside the window of 0 first at 0; of 2 at 4, because
    // that is two away; of 1 at 0 (4 is three away). Coming up from -10 turns, quadrant -40: of 2 at 0.
    const double tenTurns = 0.1 + 10.0 * kTwoPi;
    const struct
    {
        double angle;
        std::int32_t turn;
        double expected;
    } cases[] = {{tenTurns, 0, 0.1},
                 {tenTurns, 1, 0.1},
                 {tenTurns, 2, 0.1 + kTwoPi},
                 {0.1 - 10.0 * kTwoPi, 2, 0.1},
                 {0.1 - 10.0 * kTwoPi, -2, 0.1 - kTwoPi},
                 {tenTurns, 40, tenTurns}};
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.angle << " to " << c.turn);
        double angle = c.angle;
        EXPECT_TRUE(QuadrantWindow(angle, c.turn, kBias));
        EXPECT_NEAR(angle, c.expected, 1e-12);
    }
}

TEST(QuadrantWindow, ends_inside_for_any_angle_and_turn)
{
    test::SeededRandom random(31);
    for (int i = 0; i < 500; ++i) {
        const double start = random.Uniform(-2000.0, 2000.0);
        const auto turn = static_cast<std::int32_t>(random.Uniform(-1300.0, 1300.0));
        SCOPED_TRACE(::testing::Message() << start << " to " << turn);
        double angle = start;
        ASSERT_TRUE(QuadrantWindow(angle, turn, kBias));
        EXPECT_LE(WindowQuadrantOf(angle, kBias) - turn, 2);
        EXPECT_GE(WindowQuadrantOf(angle, kBias) - turn, -2);
        EXPECT_NEAR(std::sin(angle - start), 0.0, 1e-9);
        EXPECT_GT(std::cos(angle - start), 0.0);
    }
}

TEST(QuadrantWindow, of_an_angle_that_is_not_finite_fails)
{
    for (const double bad : {kNan, kInf, -kInf}) {
        SCOPED_TRACE(bad);
        double angle = bad;
        EXPECT_FALSE(QuadrantWindow(angle, 0, kBias));
    }
}

TEST(QuadrantWindow, of_an_angle_that_a_turn_no_longer_changes_fails)
{
    for (const double far : {1e17, -1e17, 1e300, -1e300}) {
        SCOPED_TRACE(far);
        double angle = far;
        EXPECT_FALSE(QuadrantWindow(angle, 1000000, kBias));
    }
}

TEST(QuadrantWindow, covers_a_million_quadrants)
{
    double angle = 0.1;
    EXPECT_TRUE(QuadrantWindow(angle, 1000000, kBias));
    // 250000 turns; each addition rounds by up to half of 2^-32 (the spacing of doubles above 2^20).
    EXPECT_NEAR(angle, 0.1 + 250000.0 * kTwoPi, 250000.0 * 0x1p-33);
    EXPECT_TRUE(QuadrantWindow(angle, -1000000, kBias));
    EXPECT_NEAR(angle, 0.1 - 250000.0 * kTwoPi, 4.0 * 250000.0 * 0x1p-33);
}

}  // namespace
}  // namespace kine

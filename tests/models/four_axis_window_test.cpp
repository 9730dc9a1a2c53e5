// Quarter-turn numbers and turn windows as the four-axis arms use them. Boundaries are approached by 1e-7
// quarter turns; the biases are 5.6e-6 and 1e-5.
#include <gtest/gtest.h>

#include <cmath>

#include "models/quadrant.h"
#include "support/numbers.h"
#include "support/plain_matrix.h"

namespace kine::test {
namespace {

constexpr double kBias4 = 1e-5;
constexpr double kBias4110 = 5.555555556e-6;

// An angle from quarter turns.
double Quarters(double n) { return n * kHalfTurn / 2; }

double Windowed(double angle, std::int32_t turn, double bias)
{
    EXPECT_TRUE(QuadrantWindow(angle, turn, bias));
    return angle;
}

TEST(FourAxisQuadrant, numbers_quarter_turns)
{
    EXPECT_EQ(QuadrantOf(0.0), 0);
    EXPECT_EQ(QuadrantOf(Quarters(0.5)), 0);
    EXPECT_EQ(QuadrantOf(Quarters(1.0)), 1);
    EXPECT_EQ(QuadrantOf(Quarters(2.0)), 2);
    EXPECT_EQ(QuadrantOf(Quarters(-0.5)), -1);
    EXPECT_EQ(QuadrantOf(Quarters(-1.0)), -1);
    EXPECT_EQ(QuadrantOf(Quarters(-90.01 / 90.0)), -2);
    EXPECT_EQ(QuadrantOf(Quarters(-2.0)), -2);
}

TEST(FourAxisQuadrant, the_bias_lowers_every_boundary_of_a_joint_set)
{
    for (int n = -9; n <= 9; ++n) {
        SCOPED_TRACE(n);
        if (n == 0) continue;
        EXPECT_EQ(QuadrantOf(Quarters(n - kBias4110 + 1e-7)), n);
        EXPECT_EQ(QuadrantOf(Quarters(n - kBias4110 - 1e-7)), n - 1);
    }
    EXPECT_EQ(QuadrantOf(Quarters(-kBias4110 + 1e-7)), 0);
    EXPECT_EQ(QuadrantOf(Quarters(-kBias4110 - 1e-7)), -1);
}

TEST(FourAxisQuadrant, the_window_number_has_its_bias_at_and_below_zero_only)
{
    for (const double bias : {kBias4, kBias4110}) {
        for (int n = 1; n <= 9; ++n) {
            SCOPED_TRACE(n);
            EXPECT_EQ(WindowQuadrantOf(Quarters(n + 1e-7), bias), n);
            EXPECT_EQ(WindowQuadrantOf(Quarters(n - 1e-7), bias), n - 1);
            EXPECT_EQ(WindowQuadrantOf(Quarters(-n - bias + 1e-7), bias), -n);
            EXPECT_EQ(WindowQuadrantOf(Quarters(-n - bias - 1e-7), bias), -n - 1);
        }
        EXPECT_EQ(WindowQuadrantOf(0.0, bias), 0);
        EXPECT_EQ(WindowQuadrantOf(Quarters(-bias + 1e-7), bias), 0);
        EXPECT_EQ(WindowQuadrantOf(Quarters(-bias - 1e-7), bias), -1);
    }
}

TEST(FourAxisWindow, a_number_within_two_stays)
{
    for (const double bias : {kBias4, kBias4110}) {
        for (std::int32_t turn = -7; turn <= 7; ++turn) {
            for (int offset = -2; offset <= 2; ++offset) {
                const int n = turn + offset;
                // The middle of quarter n; negative angles carry one less.
                const double angle = Quarters(n + 0.5);
                EXPECT_EQ(Windowed(angle, turn, bias), angle) << turn << " " << offset;
            }
        }
    }
}

TEST(FourAxisWindow, a_number_three_away_moves_by_one_turn)
{
    for (std::int32_t turn = -7; turn <= 7; ++turn) {
        SCOPED_TRACE(turn);
        const double above = Quarters(turn + 3.5);
        const double below = Quarters(turn - 2.5);
        EXPECT_NEAR(Windowed(above, turn, kBias4), above - 2 * kHalfTurn, 1e-13);
        EXPECT_NEAR(Windowed(below, turn, kBias4), below + 2 * kHalfTurn, 1e-13);
    }
}

TEST(FourAxisWindow, the_first_value_in_range_is_kept)
{
    // Quarters -2.5 .. 2.5 hold more than one turn: from above the upper, from below the lower one is kept.
    EXPECT_NEAR(Windowed(Quarters(20 + 2.5), 0, kBias4), Quarters(2.5), 1e-12);
    EXPECT_NEAR(Windowed(Quarters(-20 + 2.5), 0, kBias4), Quarters(-1.5), 1e-12);
}

TEST(FourAxisWindow, the_edge_below_zero_depends_on_the_arm)
{
    // Half a turn back and 7e-6 quarters more: inside the bias of type 4, outside that of type 4110.
    const double angle = Quarters(-2.0 - 7e-6);
    EXPECT_EQ(Windowed(angle, 0, kBias4), angle);
    EXPECT_NEAR(Windowed(angle, 0, kBias4110), angle + 2 * kHalfTurn, 1e-13);
    EXPECT_EQ(Windowed(Quarters(-2.0 - kBias4 + 1e-7), 0, kBias4), Quarters(-2.0 - kBias4 + 1e-7));
    EXPECT_GT(Windowed(Quarters(-2.0 - kBias4 - 1e-7), 0, kBias4), 0.0);
    EXPECT_EQ(Windowed(Quarters(-2.0 - kBias4110 + 1e-7), 0, kBias4110), Quarters(-2.0 - kBias4110 + 1e-7));
    EXPECT_GT(Windowed(Quarters(-2.0 - kBias4110 - 1e-7), 0, kBias4110), 0.0);
}

TEST(FourAxisWindow, the_edge_above_zero_has_no_bias)
{
    for (const double bias : {kBias4, kBias4110}) {
        EXPECT_EQ(Windowed(Quarters(3.0 - 1e-7), 0, bias), Quarters(3.0 - 1e-7));
        EXPECT_LT(Windowed(Quarters(3.0 + 1e-7), 0, bias), 0.0);
    }
}

TEST(FourAxisWindow, an_angle_that_is_not_finite_is_refused)
{
    for (const double bad : {kInf, -kInf, kNan, 1e300, -1e300}) {
        for (const std::int32_t turn : {0, 5, -1000000, 1000000}) {
            double angle = bad;
            EXPECT_FALSE(QuadrantWindow(angle, turn, kBias4)) << bad;
        }
    }
}

TEST(FourAxisShift, moves_by_the_whole_turns_of_the_number)
{
    // The remainder has the sign of the number: -5 holds one negative turn and -1 quarter.
    const struct
    {
        std::int32_t turn;
        double wholeTurns;
    } cases[] = {{0, 0},  {1, 0},  {3, 0},   {4, 1},   {7, 1},   {8, 2},
                 {-1, 0}, {-3, 0}, {-4, -1}, {-5, -1}, {-8, -2}, {640, 160}};
    for (const auto& c : cases)
        EXPECT_NEAR(ShiftByTurn(0.25, c.turn), 0.25 + c.wholeTurns * 2 * kHalfTurn, 1e-11) << c.turn;
}

}  // namespace
}  // namespace kine::test

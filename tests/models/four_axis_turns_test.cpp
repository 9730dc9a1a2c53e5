// Turns of axis 4 in the inverse of arm type 4.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"

namespace kine::test {
namespace {

FourAxisModel ModelOf(const NaiveArm& arm) { return Initialised<FourAxisModel>(4, arm); }

// An arm without tilts with axis 1 at 0 and the elbow at 90 degrees, its flange heading such that axis 4 is
// rawDeg before any turn is selected.
double SolvedAxis4Deg(double rawDeg, std::int32_t turn)
{
    const FourAxisModel model = ModelOf({});
    const Pose target{425.0, 375.0, 80.0, InRadians(90.0 + rawDeg), 0.0, 0.0};
    Joints joints = MarkedJoints();
    EXPECT_EQ(model.InverseKinematics(target, {}, {1, 0, 0, turn}, joints), KINE_OK);
    EXPECT_NEAR(joints.axis[0], 0.0, 1e-12);
    EXPECT_NEAR(joints.axis[1], kHalfTurn / 2, 1e-12);
    return InDegrees(joints.axis[3]);
}

TEST(FourAxisTurns, the_shift_is_applied_twice)
{
    // -105.8 shifted by one turn twice is 614.2, quarter 6: within 2 of 4, so it stays. Shifted once it would
    // be 254.2, quarter 2, within 2 as well.
    EXPECT_NEAR(SolvedAxis4Deg(-105.8, 4), 614.2, 1e-10);
}

TEST(FourAxisTurns, a_heading_of_zero_with_turn_number_4_is_one_turn)
{
    const FourAxisModel model = ModelOf({});
    // Arm along +X and -Y: axes 1 and 2 are -90 and 90 degrees, so a heading of 0 leaves 0 for axis 4.
    const Pose target{375.0, -425.0, 80.0, 0.0, 0.0, 0.0};
    Joints joints{};
    ASSERT_EQ(model.InverseKinematics(target, {}, {1, 0, 0, 4}, joints), KINE_OK);
    EXPECT_NEAR(joints.axis[3], 2 * kHalfTurn, 1e-12);
}

struct TurnCase
{
    double rawDeg;
    std::int32_t turn;
    double solvedDeg;
};

TEST(FourAxisTurns, worked_examples)
{
    // Shift twice by the whole turns of the number, then full turns until the quarter lies within 2 of it.
    // A negative angle carries the number one below its quotient: -10 is in quarter -1.
    const TurnCase cases[] = {
        {30.0, 0, 30.0},       // quarter 0
        {30.0, 2, 30.0},       // 0 - 2
        {30.0, 3, 390.0},      // 0 - 3: one turn up, quarter 4
        {30.0, -2, 30.0},      // 0 + 2
        {30.0, -3, -330.0},    // 0 + 3: one turn down, quarter -4
        {30.0, 4, 390.0},      // twice up 750, quarter 8: one down
        {30.0, 5, 390.0},      // 750, 8 - 5 = 3: one down
        {30.0, 6, 750.0},      // 750, 8 - 6 = 2: stays
        {30.0, 8, 750.0},      // 1470, quarter 16: two down
        {30.0, -4, -330.0},    // -690, quarter -8: one up
        {30.0, -5, -330.0},    // remainder -1; -690, -8 + 5 = -3: one up, quarter -4
        {30.0, -6, -690.0},    // -690, -8 + 6 = -2: stays
        {30.0, 24, 2190.0},    // twelve turns up 4350, quarter 48: down to quarter 24
        {30.0, -24, -2130.0},  // down 4290, up to the first within 2: quarter -24
        {-100.0, 1, 260.0},    // quarter -2 - 1 = -3: one up, quarter 2
        {-10.0, 2, 350.0},     // quarter -1 - 2 = -3: one up, quarter 3
        {-10.0, 1, -10.0},     // -1 - 1 = -2: stays
    };
    for (const TurnCase& c : cases)
        EXPECT_NEAR(SolvedAxis4Deg(c.rawDeg, c.turn), c.solvedDeg, 1e-9) << c.rawDeg << " " << c.turn;
}

TEST(FourAxisTurns, the_result_lies_within_two_quarters_of_the_number)
{
    SeededRandom random(61);
    for (int i = 0; i < 400; ++i) {
        SCOPED_TRACE(i);
        const double raw = random.Uniform(-269.0, 89.0);  // heading within half a turn
        const auto turn = static_cast<std::int32_t>(random.Uniform(-641.0, 641.0));
        const double solved = SolvedAxis4Deg(raw, turn);
        const double quarter = std::floor(solved / 90.0);
        EXPECT_LE(std::fabs(quarter - turn), 2.0) << raw << " " << turn << " " << solved;
        EXPECT_NEAR(std::remainder(solved - raw, 360.0), 0.0, 1e-9);
    }
}

TEST(FourAxisTurns, the_window_edge_below_zero_carries_1e_5_quarters)
{
    // Half a turn back and some more: with 7e-6 quarters it stays, with 13e-6 it goes a turn up.
    EXPECT_NEAR(SolvedAxis4Deg(-180.0 - 7e-6 * 90.0, 0), -180.0 - 7e-6 * 90.0, 1e-9);
    EXPECT_NEAR(SolvedAxis4Deg(-180.0 - 13e-6 * 90.0, 0), 180.0 - 13e-6 * 90.0, 1e-9);
}

TEST(FourAxisTurns, axes_1_and_2_are_not_brought_into_any_range)
{
    const FourAxisModel model = ModelOf({});
    for (const std::int32_t turn : {-9, -4, 0, 4, 9}) {
        Joints joints{};
        const Pose target{-425.0, -375.0, 80.0, 0.0, 0.0, 0.0};
        // Cfg2 and Cfg3 are not read at all.
        ASSERT_EQ(model.InverseKinematics(target, {}, {1, INT32_MAX, INT32_MIN, turn}, joints), KINE_OK);
        EXPECT_NEAR(std::fabs(joints.axis[0]), kHalfTurn, 1e-12);
        EXPECT_NEAR(joints.axis[1], kHalfTurn / 2, 1e-12);
    }
}

TEST(FourAxisTurns, a_turn_number_beyond_a_million_is_0x6090_before_any_geometry)
{
    const FourAxisModel model = ModelOf({});
    const Pose near{425.0, 375.0, 80.0, 0.0, 0.0, 0.0};
    const Pose far{9000.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    for (const std::int32_t turn : {1000001, -1000001, INT32_MAX, INT32_MIN}) {
        Joints joints = MarkedJoints();
        EXPECT_EQ(model.InverseKinematics(near, {}, {1, 0, 0, turn}, joints), KINE_ERR_CONFIG) << turn;
        EXPECT_EQ(model.InverseKinematics(far, {}, {1, 0, 0, turn}, joints), KINE_ERR_CONFIG) << turn;
        EXPECT_TRUE(AreMarked(joints));
    }
}

TEST(FourAxisTurns, a_million_is_served)
{
    for (const std::int32_t turn : {1000000, -1000000}) {
        const double solved = SolvedAxis4Deg(30.0, turn);
        EXPECT_LE(std::fabs(std::floor(solved / 90.0) - turn), 2.0);
        // Half a million full turns, each rounded at 6e6 rad.
        EXPECT_NEAR(std::remainder(solved - 30.0, 360.0), 0.0, 0.05);
    }
}

}  // namespace
}  // namespace kine::test

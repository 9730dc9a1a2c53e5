// The seed of the inverse: the arm without tilts solved by triangles.
#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "models/four_axis_inverse.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

FourAxisSeed MarkedSeed() { return {91.0, 92.0, 93.0, 94.0}; }

TEST(FourAxisClosedForm, finds_the_joints_of_an_arm_without_tilts)
{
    const NaiveArm arm;
    const FourAxisParams params = BlockOf(arm);
    SeededRandom random(41);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const double elbow = (i % 2 == 0 ? 1.0 : -1.0) * random.Uniform(0.02, 3.1);
        const double q1 = random.Uniform(-3.1, 3.1);
        const double q3 = random.Uniform(-50, 50);
        const double q4 = random.Uniform(-3, 3);
        const Pose tool{random.Uniform(-90, 90),
                        random.Uniform(-90, 90),
                        random.Uniform(-90, 90),
                        random.Uniform(-3, 3),
                        0,
                        0};
        const auto state = NaiveForward<double>(arm, {q1, elbow, q3, q4}, tool);
        // The heading as a sum, so that the flange heading less axes 1 and 2 is axis 4 itself.
        const Pose target{state.tip[0], state.tip[1], state.tip[2], q1 + elbow + q4 + tool.a, 0.0, 0.0};
        FourAxisSeed seed{};
        ASSERT_EQ(FourAxisClosedForm(params, target, tool, elbow > 0.0 ? 1 : -1, seed), KINE_OK);
        EXPECT_NEAR(seed.q1, q1, 1e-11);
        EXPECT_NEAR(seed.elbow, elbow, 1e-11);
        EXPECT_NEAR(seed.q3, q3, 1e-11);
        EXPECT_NEAR(seed.q4, q4, 1e-11);
    }
}

TEST(FourAxisClosedForm, ignores_tilts_and_tool_angles_b_and_c)
{
    const Pose target{500.0, 200.0, 30.0, 0.7, 1.0, -1.0};
    FourAxisSeed flat{}, tilted{};
    ASSERT_EQ(FourAxisClosedForm(BlockOf({}), target, {10, 20, 5, 0.3, 0.0, 0.0}, 1, flat), KINE_OK);
    const Pose flatTarget{500.0, 200.0, 30.0, 0.7, kNan, kNan};
    ASSERT_EQ(FourAxisClosedForm(BlockOf(SteepArm()), flatTarget, {10, 20, 5, 0.3, kNan, kNan}, 1, tilted),
              KINE_OK);
    EXPECT_EQ(flat.q1, tilted.q1);
    EXPECT_EQ(flat.elbow, tilted.elbow);
    EXPECT_EQ(flat.q3, tilted.q3);
    EXPECT_EQ(flat.q4, tilted.q4);
}

TEST(FourAxisClosedForm, a_posture_other_than_one_and_minus_one_is_0x6090)
{
    const FourAxisParams params = BlockOf({});
    for (const std::int32_t posture : {0, 2, -2, 3, 4110, INT32_MAX, INT32_MIN}) {
        FourAxisSeed seed = MarkedSeed();
        EXPECT_EQ(FourAxisClosedForm(params, {500, 0, 0, 0, 0, 0}, {}, posture, seed), KINE_ERR_CONFIG);
        EXPECT_EQ(seed.q1, 91.0);
    }
}

TEST(FourAxisClosedForm, the_posture_is_tested_before_any_geometry)
{
    const FourAxisParams params = BlockOf({});
    FourAxisSeed seed{};
    EXPECT_EQ(FourAxisClosedForm(params, {9000, 0, 0, 0, 0, 0}, {}, 0, seed), KINE_ERR_CONFIG);
    EXPECT_EQ(FourAxisClosedForm(params, {kNan, 0, 0, 0, 0, 0}, {}, 0, seed), KINE_ERR_CONFIG);
    EXPECT_EQ(FourAxisClosedForm(params, {9000, 0, 0, 0, 0, 0}, {}, 1, seed), KINE_ERR_IK_REACH);
}

// A target on the X axis whose elbow cosine, evaluated as (px^2 + py^2 - L1^2 - L2^2) / (2 L1 L2), is exactly
// k; the second link is varied until one exists.
struct ReachCase
{
    FourAxisParams params;
    double x;
};

std::optional<ReachCase> ReachCaseFor(double k)
{
    for (double l2 = 200.0; l2 < 420.0; l2 += 1.0) {
        NaiveArm arm;
        arm.l2 = l2;
        const double square = arm.l1 * arm.l1 + l2 * l2 + 2.0 * arm.l1 * l2 * k;
        if (square <= 0.0) continue;
        double x = std::sqrt(square);
        for (int i = 0; i < 30; ++i) x = std::nextafter(x, 0.0);
        for (int i = 0; i < 60; ++i, x = std::nextafter(x, 1e9)) {
            if ((x * x + 0.0 - arm.l1 * arm.l1 - l2 * l2) / (2.0 * arm.l1 * l2) == k)
                return ReachCase{BlockOf(arm), x};
        }
    }
    return std::nullopt;
}

void ExpectReach(double k, KineResult code)
{
    SCOPED_TRACE(k);
    const auto c = ReachCaseFor(k);
    ASSERT_TRUE(c.has_value());
    FourAxisSeed seed = MarkedSeed();
    EXPECT_EQ(FourAxisClosedForm(c->params, {c->x, 0, 0, 0, 0, 0}, {}, 1, seed), code);
    if (code == KINE_OK) {
        EXPECT_EQ(seed.elbow, 0.0);
        EXPECT_EQ(seed.q1, 0.0);
    } else {
        EXPECT_EQ(seed.elbow, 92.0);
    }
}

constexpr double kLimit = 1.00001;

TEST(FourAxisClosedForm, a_cosine_just_below_the_limit_counts_as_stretched)
{
    ExpectReach(std::nextafter(kLimit, 0.0), KINE_OK);
    ExpectReach(-std::nextafter(kLimit, 0.0), KINE_OK);  // folded: literally the same
}

TEST(FourAxisClosedForm, a_cosine_at_and_above_the_limit_is_0x6094)
{
    for (const double side : {1.0, -1.0}) {
        ExpectReach(side * kLimit, KINE_ERR_IK_REACH);
        ExpectReach(side * std::nextafter(kLimit, 2.0), KINE_ERR_IK_REACH);
        ExpectReach(side * 1.01, KINE_ERR_IK_REACH);
    }
}

TEST(FourAxisClosedForm, an_arm_stretched_exactly_points_at_the_target)
{
    // Links of 400 and 300 have exact squares: at 700 the cosine is exactly 1.
    NaiveArm arm;
    arm.l1 = 400.0;
    arm.l2 = 300.0;
    FourAxisSeed seed{};
    ASSERT_EQ(FourAxisClosedForm(BlockOf(arm), {0.0, -700.0, 0, 0.5, 0, 0}, {}, -1, seed), KINE_OK);
    EXPECT_EQ(seed.elbow, 0.0);
    EXPECT_NEAR(seed.q1, -kHalfTurn / 2, 1e-15);
    EXPECT_NEAR(seed.q4, 0.5 + kHalfTurn / 2, 1e-15);
}

TEST(FourAxisClosedForm, an_arm_folded_exactly_counts_as_stretched_toward_the_target)
{
    NaiveArm arm;
    arm.l1 = 400.0;
    arm.l2 = 300.0;
    FourAxisSeed seed{};
    ASSERT_EQ(FourAxisClosedForm(BlockOf(arm), {0.0, 100.0, 0, 0, 0, 0}, {}, 1, seed), KINE_OK);
    EXPECT_EQ(seed.elbow, 0.0);
    EXPECT_NEAR(seed.q1, kHalfTurn / 2, 1e-15);
}

TEST(FourAxisClosedForm, the_flange_point_is_the_target_less_the_turned_tool)
{
    // Flange heading = 90 - 30 degrees; the tool offset (100, 50) turned by it leads from flange to target.
    NaiveArm arm;
    arm.l1 = 400.0;
    arm.l2 = 300.0;
    const double th = InRadians(60.0);
    const double fx = 400.0, fy = 300.0;  // elbow at 90 degrees
    const Pose tool{100.0, 50.0, 7.0, InRadians(30.0), 0.0, 0.0};
    const Pose target{fx + 100.0 * std::cos(th) - 50.0 * std::sin(th),
                      fy + 100.0 * std::sin(th) + 50.0 * std::cos(th),
                      80.0 + 7.0 + 12.5,
                      InRadians(90.0),
                      0.0,
                      0.0};
    FourAxisSeed seed{};
    ASSERT_EQ(FourAxisClosedForm(BlockOf(arm), target, tool, 1, seed), KINE_OK);
    EXPECT_NEAR(seed.q1, 0.0, 1e-14);
    EXPECT_NEAR(seed.elbow, InRadians(90.0), 1e-14);
    EXPECT_NEAR(seed.q3, kHalfTurn, 1e-14);  // half a turn of the screw of 25 mm
    EXPECT_NEAR(seed.q4, InRadians(-30.0), 1e-14);
}

TEST(FourAxisClosedForm, a_target_that_is_not_a_number_is_0x6094)
{
    const FourAxisParams params = BlockOf({});
    for (const double bad : {kNan, kInf, -kInf}) {
        FourAxisSeed seed = MarkedSeed();
        EXPECT_EQ(FourAxisClosedForm(params, {bad, 0, 0, 0, 0, 0}, {}, 1, seed), KINE_ERR_IK_REACH);
        EXPECT_EQ(FourAxisClosedForm(params, {500, bad, 0, 0, 0, 0}, {}, 1, seed), KINE_ERR_IK_REACH);
        EXPECT_EQ(FourAxisClosedForm(params, {500, 0, 0, bad, 0, 0}, {}, 1, seed), KINE_ERR_IK_REACH);
        EXPECT_EQ(FourAxisClosedForm(params, {500, 0, 0, 0, 0, 0}, {bad, 0, 0, 0, 0, 0}, 1, seed),
                  KINE_ERR_IK_REACH);
        EXPECT_EQ(FourAxisClosedForm(params, {500, 0, 0, 0, 0, 0}, {0, bad, 0, 0, 0, 0}, 1, seed),
                  KINE_ERR_IK_REACH);
        EXPECT_EQ(FourAxisClosedForm(params, {500, 0, 0, 0, 0, 0}, {0, 0, 0, bad, 0, 0}, 1, seed),
                  KINE_ERR_IK_REACH);
        EXPECT_EQ(seed.elbow, 92.0);
    }
}

}  // namespace
}  // namespace kine::test

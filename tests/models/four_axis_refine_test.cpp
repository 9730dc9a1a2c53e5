// The Newton steps of the four-axis inverse.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_geometry.h"
#include "models/four_axis_inverse.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

TEST(FourAxisRefine, a_tilted_arm_meets_its_target_from_the_seed_of_the_straight_one)
{
    const NaiveArm arm = SteepArm();
    const FourAxisParams params = BlockOf(arm);
    SeededRandom random(51);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const double elbow = (i % 2 == 0 ? 1.0 : -1.0) * random.Uniform(0.4, 2.7);
        const FourAngles known{random.Uniform(-3, 3), elbow, random.Uniform(-30, 30), 0.2 - elbow};
        const Pose tool{
            random.Uniform(-60, 60), random.Uniform(-60, 60), 20.0, random.Uniform(-0.5, 0.5), 0.0, 0.0};
        const Pose target = ToolPoseOf(params, known, tool);
        if (std::fabs(target.a) > 2.9) continue;
        FourAxisSeed seed{};
        ASSERT_EQ(FourAxisClosedForm(params, target, tool, elbow > 0 ? 1 : -1, seed), KINE_OK);
        FourAngles q{seed.q1, seed.elbow, seed.q3, seed.q4};
        ASSERT_EQ(FourAxisRefine(params, target, tool, q), KINE_OK);
        const Pose reached = ToolPoseOf(params, q, tool);
        // Strictly below 1e-12 in the sum of squares.
        const double square = std::pow(target.x - reached.x, 2) + std::pow(target.y - reached.y, 2) +
                              std::pow(target.z - reached.z, 2) + std::pow(target.a - reached.a, 2);
        EXPECT_LT(square, 1e-12);
    }
}

// An arm at height 0 whose screw angle 0 stands exactly at z = 0.
FourAxisParams LevelArm()
{
    NaiveArm arm;
    arm.z0 = 0.0;
    return BlockOf(arm);
}

// Joints of that arm refined toward the pose it already has, lifted by dz.
FourAngles RefinedByLift(double dz)
{
    const FourAxisParams params = LevelArm();
    FourAngles q{0.3, 0.9, 0.0, 0.4};
    Pose target = ToolPoseOf(params, q, {});
    EXPECT_EQ(target.z, 0.0);
    target.z = dz;
    EXPECT_EQ(FourAxisRefine(params, target, {}, q), KINE_OK);
    return q;
}

TEST(FourAxisRefine, a_squared_error_below_1e_12_is_left_alone)
{
    const FourAngles start{0.3, 0.9, 0.0, 0.4};
    EXPECT_EQ(RefinedByLift(0.0), start);
    EXPECT_EQ(RefinedByLift(0.999e-6), start);
    EXPECT_EQ(RefinedByLift(-0.999e-6), start);
    EXPECT_EQ(RefinedByLift(std::nextafter(1e-6, 0.0)), start);
}

TEST(FourAxisRefine, a_squared_error_of_1e_12_and_more_is_refined)
{
    static_assert(1e-6 * 1e-6 == 1e-12);
    for (const double dz : {1e-6, -1e-6, 1.001e-6, 1e-3, 40.0}) {
        const FourAngles q = RefinedByLift(dz);
        EXPECT_NEAR(q[2] * 25.0 / (2 * kHalfTurn), dz, 1e-9) << dz;
        EXPECT_NE(q[2], 0.0);
    }
}

TEST(FourAxisRefine, millimetres_and_radians_are_added_as_they_are)
{
    // 0.8e-6 mm alone or 0.8e-6 rad alone is met, both together are not: 1.28e-12.
    const FourAxisParams params = LevelArm();
    const FourAngles start{0.3, 0.9, 0.0, 0.4};
    const Pose pose = ToolPoseOf(params, start, {});
    const auto refined = [&](double dz, double da) {
        FourAngles q = start;
        EXPECT_EQ(FourAxisRefine(params, {pose.x, pose.y, dz, pose.a + da, 0.0, 0.0}, {}, q), KINE_OK);
        return q;
    };
    EXPECT_EQ(refined(0.8e-6, 0.0), start);
    EXPECT_EQ(refined(0.0, 0.8e-6), start);
    EXPECT_NE(refined(0.8e-6, 0.8e-6), start);
}

TEST(FourAxisRefine, the_heading_error_is_the_raw_difference_and_the_steps_are_five)
{
    // A heading one turn beyond what atan2 gives is never met: each step turns axis 4 by a full turn more.
    // Without tilts and tool offset nothing else moves.
    const FourAxisParams params = LevelArm();
    const FourAngles start{0.3, 0.9, 0.0, 0.4};
    Pose target = ToolPoseOf(params, start, {});
    for (const double turn : {1.0, -1.0}) {
        FourAngles q = start;
        Pose beyond = target;
        beyond.a += turn * 2 * kHalfTurn;
        EXPECT_EQ(FourAxisRefine(params, beyond, {}, q), KINE_OK);
        EXPECT_NEAR(q[0], 0.3, 1e-12);
        EXPECT_NEAR(q[1], 0.9, 1e-12);
        EXPECT_NEAR(q[2], 0.0, 1e-12);
        EXPECT_NEAR(q[3], 0.4 + turn * 10 * kHalfTurn, 1e-11);
    }
}

TEST(FourAxisRefine, not_meeting_the_target_is_no_error)
{
    const FourAxisParams params = LevelArm();
    FourAngles q{0.3, 0.9, 0.0, 0.4};
    EXPECT_EQ(FourAxisRefine(params, {5000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {}, q), KINE_OK);
    EXPECT_GT(std::fabs(ToolPoseOf(params, q, {}).x - 5000.0), 1.0);
}

TEST(FourAxisRefine, a_singular_jacobian_is_0x6095)
{
    // The determinant of a straight arm without tilts is L1 L2 sin(q2) lead / 2 pi: zero with the elbow at 0.
    const FourAxisParams params = LevelArm();
    FourAngles q{0.3, 0.0, 0.0, 0.4};
    EXPECT_EQ(FourAxisRefine(params, {700.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {}, q), KINE_ERR_SINGULAR);
}

TEST(FourAxisRefine, the_determinant_bound_is_in_cubic_millimetres)
{
    // Links of 0.01 mm: L1 L2 sin(90 deg) lead / 2 pi = 1e-4 * lead / 2 pi. The bound 1e-5 is met from a lead
    // of 0.2 pi = 0.628 mm on.
    for (const double lead : {0.62, 0.64}) {
        NaiveArm arm;
        arm.l1 = arm.l2 = 0.01;
        arm.z0 = 0.0;
        arm.lead = lead;
        FourAngles q{0.0, kHalfTurn / 2, 0.0, 0.0};
        const KineResult code =
            FourAxisRefine(BlockOf(arm), {0.01, 0.01, 0.001, kHalfTurn / 2, 0.0, 0.0}, {}, q);
        EXPECT_EQ(code, lead < 0.2 * kHalfTurn ? KINE_ERR_SINGULAR : KINE_OK);
    }
}

TEST(FourAxisRefine, a_target_already_met_needs_no_jacobian)
{
    const FourAxisParams params = LevelArm();
    FourAngles q{0.3, 0.0, 0.0, 0.4};
    EXPECT_EQ(FourAxisRefine(params, ToolPoseOf(params, q, {}), {}, q), KINE_OK);
    EXPECT_EQ(q, (FourAngles{0.3, 0.0, 0.0, 0.4}));
}

TEST(FourAxisRefine, an_arm_that_is_not_a_number_is_0x6095)
{
    NaiveArm arm;
    arm.tiltX1 = kNan;
    FourAngles q{0.3, 0.9, 0.0, 0.4};
    EXPECT_EQ(FourAxisRefine(BlockOf(arm), {500.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {}, q), KINE_ERR_SINGULAR);
}

TEST(WriteFourAxes, writes_four_axes_and_four_zeros)
{
    std::array<double, 8> axes;
    axes.fill(9.0);
    EXPECT_EQ(WriteFourAxes({1.0, 2.0, 3.0, 4.0}, axes), KINE_OK);
    EXPECT_EQ(axes, (std::array<double, 8>{1, 2, 3, 4, 0, 0, 0, 0}));
}

// The largest double is 1.7976931348623157e308; divided by 180 / pi that is 3.13756...e306.
TEST(WriteFourAxes, an_axis_that_overflows_in_degrees_is_0x6094_and_writes_nothing)
{
    std::array<double, 8> axes{};
    axes.fill(7.0);
    for (std::size_t i = 0; i < 4; ++i) {
        FourAngles q{1.0, 2.0, 3.0, 4.0};
        q[i] = 3.138e306;
        EXPECT_EQ(WriteFourAxes(q, axes), KINE_ERR_IK_REACH) << i;
        q[i] = -3.138e306;
        EXPECT_EQ(WriteFourAxes(q, axes), KINE_ERR_IK_REACH) << i;
        for (const double axis : axes) EXPECT_EQ(axis, 7.0) << i;
    }
    EXPECT_EQ(WriteFourAxes({1.0, 2.0, 3.137e306, 4.0}, axes), KINE_OK);
}

TEST(WriteFourAxes, an_axis_that_is_not_finite_is_0x6094_and_writes_nothing)
{
    for (const double bad : {kInf, -kInf, kNan}) {
        for (std::size_t i = 0; i < 4; ++i) {
            FourAngles q{1.0, 2.0, 3.0, 4.0};
            q[i] = bad;
            std::array<double, 8> axes;
            axes.fill(9.0);
            EXPECT_EQ(WriteFourAxes(q, axes), KINE_ERR_IK_REACH);
            for (const double value : axes) EXPECT_EQ(value, 9.0);
        }
    }
}

}  // namespace
}  // namespace kine::test

#include "models/six_axis_posture.h"

#include <gtest/gtest.h>

#include "models/six_axis_forward.h"

#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;
using test::ParamsOf;

// Of the joints alone and with their sines at hand, which must agree.
KineArmConfig ConfigOf(const SixAxisParams& params, const SixAngles& q)
{
    const KineArmConfig config = SixAxisArmConfig(params, q);
    EXPECT_TRUE(test::SameBits(config, SixAxisArmConfig(params, q, SinesOf(q)))) << test::Shown(q);
    return config;
}

// Straight elbow, no shoulder offset.
SixAxisParams PlainArm(double a1, double a2, double d4)
{
    return ParamsOf(test::NominalSixAxis({a1, a2, 0.0, d4, 0.0, 0.0, 0.0}));
}

// q2 = 90 degrees lays the upper arm backward, q3 = -90 turns the forearm forward again: with these angles
// the sines and cosines are exact and the wrist centre is at a1 - a2 + d4 from the axis of joint 1.
constexpr SixAngles kFoldedForward{0.0, kHalfPi, -kHalfPi, 0.0, 1.0, 0.0};

TEST(SixAxisArmConfig, turn_numbers_are_the_quadrants_of_axes_1_4_and_6)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    const KineArmConfig config = ConfigOf(params, {0.5, 20.0, 30.0, kPi, 20.0, -kHalfPi});
    EXPECT_EQ(config.Cfg1, 0);
    EXPECT_EQ(config.Cfg2, 2);
    EXPECT_EQ(config.Cfg3, -1);
    const KineArmConfig other = ConfigOf(params, {-13.0, 0.0, 0.0, 13.0, 0.0, 100.0});
    EXPECT_EQ(other.Cfg1, -9);  // -13 is 8.28 quarters below 0
    EXPECT_EQ(other.Cfg2, 8);
    EXPECT_EQ(other.Cfg3, 63);  // 63.66 quarters
}

TEST(SixAxisArmConfig, turn_boundaries_are_lower_by_the_bias_on_both_sides_of_zero)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    EXPECT_EQ(ConfigOf(params, {-1e-6, 0.0, 0.0, 0.0, 0.0, 0.0}).Cfg1, 0);
    EXPECT_EQ(ConfigOf(params, {-1e-4, 0.0, 0.0, 0.0, 0.0, 0.0}).Cfg1, -1);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, 0.0, kHalfPi - 8e-6, 0.0, 0.0}).Cfg2, 1);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, 0.0, kHalfPi - 9e-6, 0.0, 0.0}).Cfg2, 0);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, 0.0, 0.0, 0.0, -8e-6}).Cfg3, 0);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, 0.0, 0.0, 0.0, -9e-6}).Cfg3, -1);
}

TEST(SixAxisArmConfig, turn_numbers_of_angles_that_are_no_numbers_are_ends_of_int32)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    const KineArmConfig config = ConfigOf(params, {kNan, 0.0, 0.0, kInf, 0.0, -kInf});
    EXPECT_EQ(config.Cfg1, INT32_MIN);
    EXPECT_EQ(config.Cfg2, INT32_MAX);
    EXPECT_EQ(config.Cfg3, INT32_MIN);
}

TEST(SixAxisArmConfig, wrist_bit_is_set_for_negative_joint_5_only)
{
    const SixAxisParams params = PlainArm(100.0, 400.0, 400.0);
    const auto postureOf = [&params](double q5) {
        return ConfigOf(params, {0.0, 0.0, 0.0, 0.0, q5, 0.0}).Cfg4;
    };
    EXPECT_EQ(postureOf(1.0), 0);
    EXPECT_EQ(postureOf(5e-324), 0);
    EXPECT_EQ(postureOf(0.0), 0);
    EXPECT_EQ(postureOf(-0.0), 0);
    EXPECT_EQ(postureOf(-5e-324), 1);
    EXPECT_EQ(postureOf(-1.0), 1);
    EXPECT_EQ(postureOf(kNan), 1);
    // Half a turn and more is not wrapped.
    EXPECT_EQ(postureOf(4.0), 0);
    EXPECT_EQ(postureOf(-4.0), 1);
}

TEST(SixAxisArmConfig, elbow_bit_is_set_from_the_stretched_arm_on)
{
    const SixAxisParams straight = PlainArm(500.0, 400.0, 400.0);
    const auto postureOf = [&straight](double q3) {
        return ConfigOf(straight, {0.0, 0.0, q3, 0.0, 1.0, 0.0}).Cfg4;
    };
    EXPECT_EQ(postureOf(JustBelow(kHalfPi)), 0);
    EXPECT_EQ(postureOf(kHalfPi), 2);
    EXPECT_EQ(postureOf(JustAbove(kHalfPi)), 2);
    EXPECT_EQ(postureOf(-3.0), 0);
    EXPECT_EQ(postureOf(kNan), 0);
}

TEST(SixAxisArmConfig, elbow_bit_counts_the_elbow_angle)
{
    // 300-400-500: stretched at 90 degrees less the angle of sine 3/5, the angle of cosine 3/5.
    const SixAxisParams params = ParamsOf(test::NominalSixAxis({900.0, 500.0, 300.0, 400.0, 0.0, 0.0, 0.0}));
    const double stretched = std::acos(0.6);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, stretched - 1e-12, 0.0, 1.0, 0.0}).Cfg4, 0);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, stretched + 1e-12, 0.0, 1.0, 0.0}).Cfg4, 2);
    EXPECT_EQ(ConfigOf(params, {0.0, 0.0, kHalfPi - params.elbowAngle, 0.0, 1.0, 0.0}).Cfg4, 2);
}

TEST(SixAxisArmConfig, shoulder_bit_is_set_behind_the_joint_1_axis_only)
{
    EXPECT_EQ(ConfigOf(PlainArm(0.0, 400.0, 400.5), kFoldedForward).Cfg4, 0);
    EXPECT_EQ(ConfigOf(PlainArm(0.0, 400.0, 400.0), kFoldedForward).Cfg4, 0);  // on the axis
    EXPECT_EQ(ConfigOf(PlainArm(0.0, 400.0, JustBelow(400.0)), kFoldedForward).Cfg4, 4);
    EXPECT_EQ(ConfigOf(PlainArm(0.25, 400.0, 399.75), kFoldedForward).Cfg4, 0);
    EXPECT_EQ(ConfigOf(PlainArm(0.25, 400.0, 399.5), kFoldedForward).Cfg4, 4);
    EXPECT_EQ(ConfigOf(PlainArm(0.0, 400.0, 399.0), {0.0, kNan, 0.0, 0.0, 1.0, 0.0}).Cfg4, 0);
}

TEST(SixAxisArmConfig, bits_are_independent)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    test::SeededRandom random(2301);
    unsigned seen = 0;
    for (int i = 0; i < 500; ++i) {
        SixAngles q{};
        for (double& angle : q) angle = random.Uniform(-3.1, 3.1);
        SCOPED_TRACE(::testing::Message() << q[0] << ' ' << q[1] << ' ' << q[2] << ' ' << q[4]);
        // The wrist centre seen in the plane that joint 1 turns: frame 4 of the chain, turned back.
        using test::operator*;
        const test::Mat4 wrist =
            test::TurnZ(-q[0]) * test::NaiveSixAxisChain(test::WristArm().SixAxis, q).frame[4];
        const double elbow = std::atan(135.0 / 755.0);
        const int expected =
            (wrist[0][3] < 0.0 ? 4 : 0) + (q[2] >= std::acos(0.0) - elbow ? 2 : 0) + (q[4] < 0.0 ? 1 : 0);
        EXPECT_EQ(ConfigOf(params, q).Cfg4, expected);
        seen |= 1U << static_cast<unsigned>(expected);
    }
    EXPECT_EQ(seen, 0xFFU);
}

// Thresholds of the kinds. Angles in which the other two tests are quiet: wrist at 1 rad, elbow bent by a
// right angle (q3 + elbow angle = 0 or pi/2 steps away), shoulder far out.
constexpr std::uint32_t kAnyOtherKinds[] = {3, 4, 255, 0x80000000U, 0xFFFFFFFFU};

TEST(SixAxisSingularity, shoulder_bit_is_set_strictly_within_the_threshold)
{
    const struct
    {
        std::uint32_t kind;
        double threshold;
    } cases[] = {{0, 20.0}, {1, 20.0}, {2, 30.0}};
    constexpr double kStep = 0x1p-40;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        const auto bitsAt = [&c](double distance) {
            // Wrist centre at a1 - a2 + d4, exact in doubles; elbow at q3 = -90 degrees is stretched.
            const SixAxisParams params =
                distance >= 0.0 ? PlainArm(distance, 400.0, 400.0) : PlainArm(0.0, 400.0 - distance, 400.0);
            return SixAxisSingularity(params, kFoldedForward, c.kind) & 1U;
        };
        EXPECT_EQ(bitsAt(0.0), 1U);
        EXPECT_EQ(bitsAt(c.threshold - kStep), 1U);
        EXPECT_EQ(bitsAt(c.threshold), 0U);
        EXPECT_EQ(bitsAt(c.threshold + kStep), 0U);
        EXPECT_EQ(bitsAt(-c.threshold + kStep), 1U);
        EXPECT_EQ(bitsAt(-c.threshold), 0U);
        EXPECT_EQ(bitsAt(-c.threshold - kStep), 0U);
    }
}

TEST(SixAxisSingularity, elbow_bit_is_set_strictly_within_the_threshold)
{
    const struct
    {
        std::uint32_t kind;
        double threshold;
    } cases[] = {{0, 0.05}, {1, 0.05}, {2, 0.087266}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        // At q3 = 0 the cosine is d4 over the reach; a reach set by hand makes it any number.
        const auto bitsAt = [&c](double cosine) {
            SixAxisParams params = PlainArm(900.0, 400.0, 1.0);
            params.d4 = cosine;
            params.wristReach = 1.0;
            return SixAxisSingularity(params, {0.0, 0.0, 0.0, 0.0, 1.0, 0.0}, c.kind);
        };
        EXPECT_EQ(bitsAt(JustBelow(c.threshold)), 2U);
        EXPECT_EQ(bitsAt(c.threshold), 0U);
        EXPECT_EQ(bitsAt(JustAbove(c.threshold)), 0U);
        EXPECT_EQ(bitsAt(JustAbove(-c.threshold)), 2U);
        EXPECT_EQ(bitsAt(-c.threshold), 0U);
    }
}

TEST(SixAxisSingularity, elbow_bit_counts_the_elbow_angle)
{
    // 300-400-500: stretched at the angle of cosine 3/5, folded half a turn on. The cosine of
    // q3 + elbow angle is the sine of the way from there.
    const SixAxisParams params = ParamsOf(test::NominalSixAxis({2000.0, 500.0, 300.0, 400.0, 0.0, 0.0, 0.0}));
    for (const double centre : {std::acos(0.6), std::acos(0.6) - kPi}) {
        const auto bitsAt = [&](double off, std::uint32_t kind) {
            return SixAxisSingularity(params, {0.0, 0.0, centre + off, 0.0, 1.0, 0.0}, kind);
        };
        EXPECT_EQ(bitsAt(0.0, 0), 2U);
        EXPECT_EQ(bitsAt(std::asin(0.05) - 1e-9, 0), 2U);
        EXPECT_EQ(bitsAt(std::asin(0.05) + 1e-9, 0), 0U);
        EXPECT_EQ(bitsAt(-std::asin(0.05) + 1e-9, 1), 2U);
        EXPECT_EQ(bitsAt(-std::asin(0.05) - 1e-9, 1), 0U);
        EXPECT_EQ(bitsAt(std::asin(0.087266) - 1e-9, 2), 2U);
        EXPECT_EQ(bitsAt(std::asin(0.087266) + 1e-9, 2), 0U);
    }
}

// The angle next to arcsin(sine) whose sine rounds to exactly that number.
double AngleOfExactSine(double sine)
{
    double angle = std::asin(sine) * (1.0 - 1e-15);
    for (int i = 0; i < 40 && SinCosOf(angle).sin != sine; ++i) angle = JustAbove(angle);
    EXPECT_EQ(SinCosOf(angle).sin, sine);
    return angle;
}

TEST(SixAxisSingularity, wrist_bit_is_set_strictly_within_the_threshold)
{
    const struct
    {
        std::uint32_t kind;
        double threshold;
    } cases[] = {{0, 0.05}, {1, 0.05}, {2, 0.087266}};
    const SixAxisParams params = PlainArm(900.0, 400.0, 400.0);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        const auto bitsAt = [&](double q5) {
            return SixAxisSingularity(params, {0.0, 0.0, 0.0, 0.0, q5, 0.0}, c.kind);
        };
        const double on = AngleOfExactSine(c.threshold);
        EXPECT_EQ(bitsAt(on), 0U);
        EXPECT_EQ(bitsAt(-on), 0U);
        EXPECT_EQ(bitsAt(on - 1e-15), 4U);
        EXPECT_EQ(bitsAt(1e-15 - on), 4U);
        EXPECT_EQ(bitsAt(on + 1e-15), 0U);
        EXPECT_EQ(bitsAt(0.0), 4U);
        EXPECT_EQ(bitsAt(kPi - on + 1e-9), 4U);
        EXPECT_EQ(bitsAt(kPi - on - 1e-9), 0U);
    }
}

TEST(SixAxisSingularity, kind_2_is_not_five_degrees)
{
    // 0.087266 is less than 5 degrees in radians (0.0872664...) and more than its sine (0.0871557...).
    const SixAxisParams params = PlainArm(900.0, 400.0, 400.0);
    EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, 0.0, 0.0, 5.0 * DEG2RAD, 0.0}, 2), 4U);
    EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, 0.0, 0.0, std::asin(0.0872662), 0.0}, 2), 0U);
}

TEST(SixAxisSingularity, bits_add_up)
{
    // Arm straight up with the wrist centre on the joint-1 axis, stretched and with a straight wrist.
    const SixAxisParams params = PlainArm(0.0, 400.0, 400.0);
    for (const std::uint32_t kind : {0U, 1U, 2U}) {
        EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, kHalfPi, 0.0, 0.0, 0.0}, kind), 7U);
    }
    const SixAxisParams offset = PlainArm(25.0, 400.0, 400.0);
    EXPECT_EQ(SixAxisSingularity(offset, {0.0, 0.0, kHalfPi, 0.0, 0.0, 0.0}, 1), 6U);
    EXPECT_EQ(SixAxisSingularity(offset, {0.0, 0.0, kHalfPi, 0.0, 0.0, 0.0}, 2), 7U);
}

TEST(SixAxisSingularity, of_any_other_kind_is_never_reported)
{
    const SixAxisParams params = PlainArm(0.0, 400.0, 400.0);
    for (const std::uint32_t kind : kAnyOtherKinds) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, kHalfPi, 0.0, 0.0, 0.0}, kind), 0U);
    }
}

TEST(SixAxisSingularity, is_blind_to_axes_1_4_and_6)
{
    const SixAxisParams params = PlainArm(900.0, 400.0, 400.0);
    for (const double angle : {0.0, 1.0, kPi, kNan}) {
        EXPECT_EQ(SixAxisSingularity(params, {angle, 0.0, 0.0, angle, 1.0, angle}, 0), 0U);
        EXPECT_EQ(SixAxisSingularity(params, {angle, 0.0, 0.0, angle, 0.0, angle}, 0), 4U);
    }
}

TEST(SixAxisSingularity, of_nan_is_not_singular)
{
    const SixAxisParams params = PlainArm(0.0, 400.0, 400.0);
    EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, kHalfPi, 0.0, kNan, 0.0}, 0), 3U);
    EXPECT_EQ(SixAxisSingularity(params, {0.0, kNan, kHalfPi, 0.0, 0.0, 0.0}, 0), 6U);
    EXPECT_EQ(SixAxisSingularity(params, {0.0, 0.0, kNan, 0.0, 0.0, 0.0}, 0), 4U);
}

// Round angles put the wrist centre of many arms on the axis of joint 1 but for rounding, and steps of every
// size put it beside it.
TEST(SixAxisArmConfig, sides_next_to_the_joint_1_axis_do_not_hang_on_where_the_sines_come_from)
{
    test::SeededRandom random(2416);
    for (const SixAxisParams& params :
         {PlainArm(0.0, 400.0, 400.0), PlainArm(200.0, 400.0, 200.0), ParamsOf(test::Puma()),
          ParamsOf(test::WristArm()),
          ParamsOf(test::NominalSixAxis({0.0, 300.0, 40.0, 60.0, 0.0, 0.0, 0.0}))}) {
        for (int quarter2 = -24; quarter2 <= 24; ++quarter2) {
            for (int quarter3 = -24; quarter3 <= 24; ++quarter3) {
                const double q2 = quarter2 * (kHalfPi / 6.0);
                const double q3 = quarter3 * (kHalfPi / 6.0);
                const double step = std::pow(10.0, random.Uniform(-18.0, -1.0));
                static_cast<void>(ConfigOf(params, {0.0, q2, q3, 0.0, 1.0, 0.0}));
                static_cast<void>(ConfigOf(params, {0.0, q2 + step, q3, 0.0, 1.0, 0.0}));
                static_cast<void>(ConfigOf(params, {0.0, q2, q3 - step, 0.0, 1.0, 0.0}));
            }
        }
    }
}

TEST(SixAxisArmConfig, any_joints_have_one_configuration)
{
    test::SeededRandom random(2417);
    for (int i = 0; i < 20000; ++i) {
        const SixAxisParams params =
            ParamsOf(test::RandomLinks(random, std::pow(10.0, random.Uniform(1.1, 6.0))));
        const double size = std::pow(10.0, random.Uniform(-3.0, 6.0));
        static_cast<void>(ConfigOf(params, test::RandomAngles(random, size)));
    }
    for (const double bad : {kNan, kInf, -kInf, 1e300, -1e300}) {
        for (std::size_t joint = 0; joint < 6; ++joint) {
            SixAngles q{0.1, 0.2, 0.3, 0.4, 0.5, 0.6};
            q[joint] = bad;
            static_cast<void>(ConfigOf(ParamsOf(test::WristArm()), q));
        }
    }
}

}  // namespace
}  // namespace kine

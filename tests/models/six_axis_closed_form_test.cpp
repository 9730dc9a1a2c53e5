// The closed form of the six-axis inverse on arms that are nominal, so that its joints are the solution.
#include <gtest/gtest.h>

#include <algorithm>

#include "models/six_axis_inverse.h"
#include "models/six_axis_posture.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::ExpectNear;
using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;
using test::ParamsOf;

using Axes = std::array<double, 8>;

SixAngles FirstSix(const Axes& axes) { return {axes[0], axes[1], axes[2], axes[3], axes[4], axes[5]}; }

KineArmConfig Posture(std::int32_t cfg4) { return {0, 0, 0, cfg4}; }

KineArmConfig WithPosture(KineArmConfig config, std::int32_t cfg4)
{
    config.Cfg4 = cfg4;
    return config;
}

// The closed form of a flange given by its pose.
KineResult ClosedFormOf(const SixAxisParams& params, const Pose& flange, const KineArmConfig& config,
                        Axes& axes)
{
    return ClosedFormIK(params, PoseToMatrix(flange), config, axes);
}

KineResult ResultOf(const SixAxisParams& params, const Pose& flange, std::int32_t cfg4)
{
    Axes axes{};
    return ClosedFormOf(params, flange, Posture(cfg4), axes);
}

Pose FlangeOf(const KineKinematicParam& param, const SixAngles& q)
{
    return MatrixToPose(test::ToHom(test::RefFlange(param.SixAxis, q)));
}

// Upper arm and forearm of 1 mm on joint 1 itself, no flange: the wrist centre is the pose's position.
SixAxisParams UnitArm() { return ParamsOf(test::NominalSixAxis({0.0, 1.0, 0.0, 1.0, 0.0, 0.0, 0.0})); }

TEST(ClosedFormIK, eight_postures_of_a_pose_reproduce_it)
{
    test::SeededRandom random(2401);
    int solved = 0;
    for (int i = 0; i < 300; ++i) {
        const double lateral = random.Uniform(-150.0, 150.0);
        const KineKinematicParam param = test::NominalSixAxis(
            {random.Uniform(0, 150), random.Uniform(400, 900), random.Uniform(0, 150),
             random.Uniform(400, 900), random.Uniform(0, 150), random.Uniform(0, 600), lateral});
        const SixAxisParams params = ParamsOf(param);
        const SixAngles q = test::RandomAngles(random, 3.1);
        const Pose flange = FlangeOf(param, q);
        for (std::int32_t cfg4 = 0; cfg4 <= 7; ++cfg4) {
            SCOPED_TRACE(test::Shown(q) + " posture " + std::to_string(cfg4));
            Axes axes{};
            const KineResult code = ClosedFormOf(params, flange, Posture(cfg4), axes);
            if (code != KINE_OK) {
                // The other shoulder side or a straight wrist or elbow may be out of reach.
                EXPECT_TRUE(code == 0x6096U || code == 0x6097U || code == 0x6098U) << code;
                continue;
            }
            ++solved;
            ExpectNear(test::ToHom(test::RefFlange(param.SixAxis, FirstSix(axes))), PoseToMatrix(flange),
                       1e-8);
            EXPECT_EQ(SixAxisArmConfig(params, FirstSix(axes)).Cfg4, cfg4);
            EXPECT_EQ(axes[6], 0.0);
            EXPECT_EQ(axes[7], 0.0);
        }
    }
    // At least the two wrist postures of the pose itself, nearly always.
    EXPECT_GT(solved, 1200);
}

TEST(ClosedFormIK, returns_the_joints_of_a_pose_for_their_own_configuration)
{
    test::SeededRandom random(2402);
    for (int i = 0; i < 300; ++i) {
        const KineKinematicParam param = i % 2 == 0 ? test::Puma() : test::WristArm();
        const SixAxisParams params = ParamsOf(param);
        SixAngles q = test::RandomAngles(random, 3.1);
        q[0] = random.Uniform(-30.0, 30.0);
        q[2] = random.Uniform(-kHalfPi, 3.0 * kHalfPi) - params.elbowAngle;
        q[3] = random.Uniform(-30.0, 30.0);
        q[5] = random.Uniform(-30.0, 30.0);
        // Away from the singularities, which have codes of their own.
        if (SixAxisSingularity(params, q, 0) != 0) continue;
        SCOPED_TRACE(test::Shown(q));
        Axes axes{};
        ASSERT_EQ(ClosedFormOf(params, FlangeOf(param, q), SixAxisArmConfig(params, q), axes), KINE_OK);
        for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], q[j], 1e-9);
    }
}

TEST(ClosedFormIK, eight_solutions_of_the_puma_are_distinct)
{
    const SixAxisParams params = ParamsOf(test::Puma());
    SixAngles q{};
    const std::array<double, 6> degrees = test::PumaJointsDeg({0.0, kPi / 4.0, kPi, 0.0, kPi / 4.0, 0.0});
    for (std::size_t i = 0; i < 6; ++i) q[i] = degrees[i] * DEG2RAD;
    const Pose flange = FlangeOf(test::Puma(), q);
    ExpectNear(Vec3{flange.x, flange.y, flange.z}, {596.3031, -150.05, -14.3543}, 5e-5);
    std::array<Axes, 8> solutions{};
    for (std::size_t cfg4 = 0; cfg4 < 8; ++cfg4) {
        SCOPED_TRACE(cfg4);
        ASSERT_EQ(ClosedFormOf(params, flange, Posture(static_cast<std::int32_t>(cfg4)), solutions[cfg4]),
                  KINE_OK);
        ExpectNear(test::ToHom(test::RefFlange(test::Puma().SixAxis, FirstSix(solutions[cfg4]))),
                   PoseToMatrix(flange), 1e-9);
        for (std::size_t other = 0; other < cfg4; ++other) {
            double apart = 0.0;
            for (std::size_t j = 0; j < 6; ++j) {
                apart = std::max(apart, std::fabs(solutions[cfg4][j] - solutions[other][j]));
            }
            EXPECT_GT(apart, 0.1);
        }
    }
}

TEST(ClosedFormIK, wrist_centre_close_to_the_joint_1_axis_is_0x6096)
{
    const SixAxisParams params = UnitArm();
    // With z = 1 the pose is in reach; the flange points away, so that nothing else is wrong.
    const auto at = [](double x, double y) { return Pose{x, y, 1.0, 0.3, 0.4, 0.5}; };
    EXPECT_EQ(ResultOf(params, at(0.0, 0.0), 0), 0x6096U);
    EXPECT_EQ(ResultOf(params, at(JustBelow(1e-5), 0.0), 0), 0x6096U);
    EXPECT_EQ(ResultOf(params, at(0.0, -JustBelow(1e-5)), 0), 0x6096U);
    EXPECT_EQ(ResultOf(params, at(1e-5, 0.0), 0), KINE_OK);
    EXPECT_EQ(ResultOf(params, at(0.0, -1e-5), 0), KINE_OK);
    EXPECT_EQ(ResultOf(params, at(kNan, 1.0), 0), 0x6096U);
}

TEST(ClosedFormIK, wrist_centre_close_to_the_circle_of_the_lateral_offset_is_0x6096)
{
    for (const double lateral : {0.5, -0.5}) {
        SCOPED_TRACE(lateral);
        const SixAxisParams params = ParamsOf(test::NominalSixAxis({0.0, 1.0, 0.0, 1.0, 0.0, 0.0, lateral}));
        const auto at = [](double x) { return Pose{x, 0.0, 1.0, 0.3, 0.4, 0.5}; };
        EXPECT_EQ(ResultOf(params, at(0.1), 0), 0x6096U);  // inside the circle
        EXPECT_EQ(ResultOf(params, at(0.5), 0), 0x6096U);  // on it
        EXPECT_EQ(ResultOf(params, at(0.5 + 1e-5 - 1e-12), 0), 0x6096U);
        EXPECT_EQ(ResultOf(params, at(0.5 + 1e-5 + 1e-12), 0), KINE_OK);
    }
}

TEST(ClosedFormIK, posture_number_outside_0_to_7_is_0x6090)
{
    const Pose reachable{1.0, 0.0, 1.0, 0.3, 0.4, 0.5};
    for (const std::int32_t cfg4 : {-1, 8, 9, 16, -8, INT32_MAX, INT32_MIN}) {
        SCOPED_TRACE(cfg4);
        auto axes = test::Untouched<Axes>();
        EXPECT_EQ(ClosedFormOf(UnitArm(), reachable, Posture(cfg4), axes), 0x6090U);
        EXPECT_TRUE(test::IsUntouched(axes));
    }
    for (std::int32_t cfg4 = 0; cfg4 <= 7; ++cfg4) EXPECT_EQ(ResultOf(UnitArm(), reachable, cfg4), KINE_OK);
}

TEST(ClosedFormIK, shoulder_is_tested_before_the_posture_number)
{
    EXPECT_EQ(ResultOf(UnitArm(), {0.0, 0.0, 1.0, 0.3, 0.4, 0.5}, 8), 0x6096U);
    EXPECT_EQ(ResultOf(UnitArm(), {1e-5, 0.0, 1.0, 0.3, 0.4, 0.5}, 8), 0x6090U);
}

TEST(ClosedFormIK, posture_number_is_tested_before_the_reach)
{
    EXPECT_EQ(ResultOf(UnitArm(), {50.0, 0.0, 1.0, 0.3, 0.4, 0.5}, 8), 0x6090U);
    EXPECT_EQ(ResultOf(UnitArm(), {50.0, 0.0, 1.0, 0.3, 0.4, 0.5}, 0), 0x6097U);
}

TEST(ClosedFormIK, reach_is_tested_before_the_wrist)
{
    // At (sqrt 2, 0, 0) with the flange along the forearm the wrist is straight. Upper arm at 45 degrees up,
    // forearm at 45 degrees down.
    const double r = std::sqrt(2.0);
    EXPECT_EQ(ResultOf(UnitArm(), {r, 0.0, 0.0, 0.0, kHalfPi + kPi / 4.0, 0.0}, 0), 0x6098U);
    EXPECT_EQ(ResultOf(UnitArm(), {50.0 * r, 0.0, 0.0, 0.0, kHalfPi + kPi / 4.0, 0.0}, 0), 0x6097U);
}

TEST(ClosedFormIK, elbow_cosine_beyond_the_limit_is_0x6097)
{
    // Sides 1 and 1 of the triangle: cosine (2 - r^2) / 2 at distance r. Just short of stretched, then of
    // folded.
    const double nearlyStretched = std::sqrt(2.0 + 2.0 * 0.99999);
    const double nearlyFolded = std::sqrt(2.0 - 2.0 * 0.99999);
    const auto at = [](double r) { return Pose{0.6 * r, 0.0, 0.8 * r, 0.3, 0.4, 0.5}; };
    for (std::int32_t cfg4 = 0; cfg4 <= 7; ++cfg4) {
        SCOPED_TRACE(cfg4);
        EXPECT_EQ(ResultOf(UnitArm(), at(nearlyStretched - 1e-9), cfg4), KINE_OK);
        EXPECT_EQ(ResultOf(UnitArm(), at(nearlyStretched + 1e-9), cfg4), 0x6097U);
        EXPECT_EQ(ResultOf(UnitArm(), at(2.5), cfg4), 0x6097U);
        EXPECT_EQ(ResultOf(UnitArm(), at(nearlyFolded + 1e-9), cfg4), KINE_OK);
        EXPECT_EQ(ResultOf(UnitArm(), at(nearlyFolded - 1e-9), cfg4), 0x6097U);
    }
}

TEST(ClosedFormIK, elbow_cosine_at_the_limit_passes)
{
    // Sides 1/2 and 1: cosine 5/4 - r^2, without a rounding but that of r^2 and the difference.
    const SixAxisParams params = ParamsOf(test::NominalSixAxis({0.0, 0.5, 0.0, 1.0, 0.0, 0.0, 0.0}));
    double r = std::sqrt(1.25 - 0.99999) - 1e-13;
    double on = 0.0;
    double beyond = 0.0;
    for (int i = 0; i < 4000; ++i, r = JustAbove(r)) {
        if (1.25 - r * r == 0.99999) on = r;
        if (1.25 - r * r > 0.99999) beyond = r;
    }
    ASSERT_GT(on, 0.0);
    ASSERT_GT(beyond, 0.0);
    EXPECT_EQ(ResultOf(params, {on, 0.0, 0.0, 0.3, 0.4, 0.5}, 0), KINE_OK);
    EXPECT_EQ(ResultOf(params, {beyond, 0.0, 0.0, 0.3, 0.4, 0.5}, 0), 0x6097U);
}

// At (1, 0, 1) the unit arm stands straight up with its forearm level: q1 = q2 = q3 = 0, all exactly, and
// the cosine of joint 5 is the x component of the approach axis, sin b for angles (0, b, 0).
constexpr std::int32_t kNearElbow = 0;

Pose WithWristCosine(double b) { return {1.0, 0.0, 1.0, 0.0, b, 0.0}; }

TEST(ClosedFormIK, wrist_cosine_beyond_the_straight_limit_is_0x6098)
{
    // The angle whose sine rounds to exactly 0.99999, with its neighbours in sine.
    double b = std::asin(0.99999) - 1e-12;
    double on = 0.0;
    double beyond = 0.0;
    for (int i = 0; i < 10000 && beyond == 0.0; ++i, b = JustAbove(b)) {
        const double sine = SinCosOf(b).sin;
        if (sine == 0.99999) on = b;
        if (sine > 0.99999) beyond = b;
    }
    ASSERT_GT(on, 0.0);
    ASSERT_GT(beyond, 0.0);
    for (const double sign : {1.0, -1.0}) {
        for (const std::int32_t wrist : {0, 1}) {
            SCOPED_TRACE(::testing::Message() << sign << ' ' << wrist);
            EXPECT_EQ(ResultOf(UnitArm(), WithWristCosine(sign * on), kNearElbow + wrist), KINE_OK);
            EXPECT_EQ(ResultOf(UnitArm(), WithWristCosine(sign * beyond), kNearElbow + wrist), 0x6098U);
            EXPECT_EQ(ResultOf(UnitArm(), WithWristCosine(sign * kHalfPi), kNearElbow + wrist), 0x6098U);
        }
    }
}

TEST(ClosedFormIK, joint_5_at_zero_or_half_a_turn_is_0x6098_in_every_posture_of_that_arm)
{
    for (const double q5 : {0.0, 1e-4, 4.4e-3, kPi, kPi - 4.4e-3}) {
        SCOPED_TRACE(q5);
        const SixAngles q{0.3, -0.4, 0.5, 0.6, q5, 0.8};
        const SixAxisParams params = ParamsOf(test::WristArm());
        for (const std::int32_t wrist : {0, 1}) {
            const KineArmConfig config = WithPosture(SixAxisArmConfig(params, q), wrist);
            auto axes = test::Untouched<Axes>();
            EXPECT_EQ(ClosedFormOf(params, FlangeOf(test::WristArm(), q), config, axes), 0x6098U);
            EXPECT_TRUE(test::IsUntouched(axes));
        }
    }
    // arccos 0.99999 = 0.00447216...
    for (const double q5 : {4.5e-3, kPi - 4.5e-3}) {
        SCOPED_TRACE(q5);
        const SixAngles q{0.3, -0.4, 0.5, 0.6, q5, 0.8};
        EXPECT_EQ(ResultOf(ParamsOf(test::WristArm()), FlangeOf(test::WristArm(), q), 0), KINE_OK);
    }
}

TEST(ClosedFormIK, joint_1_of_the_back_postures_is_half_a_turn_toward_zero)
{
    // Without a lateral offset joint 1 is the direction of the wrist centre, and half a turn away from it,
    // on the side of zero, for the back postures. A direction of exactly 0 counts as positive.
    const struct
    {
        double x, y, front, back;
    } cases[] = {{1.0, 0.0, 0.0, -kPi},
                 {1.0, 1.0, kPi / 4.0, -3.0 * kPi / 4.0},
                 {0.0, 1.0, kHalfPi, -kHalfPi},
                 {-1.0, 0.0, kPi, 0.0},
                 {-1.0, -1e-300, -kPi, 0.0},
                 {0.0, -1.0, -kHalfPi, kHalfPi},
                 {1.0, -1.0, -kPi / 4.0, 3.0 * kPi / 4.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.x << ' ' << c.y);
        const Pose flange{c.x, c.y, 0.5, 0.3, 0.4, 0.5};
        Axes axes{};
        ASSERT_EQ(ClosedFormOf(UnitArm(), flange, Posture(0), axes), KINE_OK);
        EXPECT_NEAR(axes[0], c.front, 1e-15);
        ASSERT_EQ(ClosedFormOf(UnitArm(), flange, Posture(4), axes), KINE_OK);
        EXPECT_NEAR(axes[0], c.back, 1e-15);
    }
}

TEST(ClosedFormIK, direction_below_the_rounding_of_a_turn_counts_as_zero)
{
    // The direction is added to a whole turn, in which 1e-20 is lost, also with its sign: half a turn toward
    // zero is then -pi on both sides.
    for (const double y : {1e-20, -1e-20}) {
        SCOPED_TRACE(y);
        Axes axes{};
        ASSERT_EQ(ClosedFormOf(UnitArm(), {1.0, y, 0.5, 0.3, 0.4, 0.5}, Posture(0), axes), KINE_OK);
        EXPECT_EQ(axes[0], 0.0);
        ASSERT_EQ(ClosedFormOf(UnitArm(), {1.0, y, 0.5, 0.3, 0.4, 0.5}, Posture(4), axes), KINE_OK);
        EXPECT_EQ(axes[0], -kPi);
    }
}

TEST(ClosedFormIK, joint_1_takes_the_lateral_offset_into_account_and_is_wrapped)
{
    // Offset 0.5 at distance 1: 30 degrees, added in front, subtracted at the back.
    const SixAxisParams params = ParamsOf(test::NominalSixAxis({0.0, 1.0, 0.0, 1.0, 0.0, 0.0, 0.5}));
    const struct
    {
        double direction, front, back;
    } cases[] = {{0.0, 30.0, 150.0},
                 {90.0, 120.0, -120.0},
                 {170.0, -160.0, -40.0},
                 {-170.0, -140.0, -20.0},
                 {20.0, 50.0, 170.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.direction);
        const double phi = c.direction * DEG2RAD;
        const Pose flange{std::cos(phi), std::sin(phi), 0.5, 0.3, 0.4, 0.5};
        Axes axes{};
        ASSERT_EQ(ClosedFormOf(params, flange, Posture(0), axes), KINE_OK);
        EXPECT_NEAR(axes[0] * RAD2DEG, c.front, 1e-12);
        ASSERT_EQ(ClosedFormOf(params, flange, Posture(4), axes), KINE_OK);
        EXPECT_NEAR(axes[0] * RAD2DEG, c.back, 1e-12);
    }
}

TEST(ClosedFormIK, joint_6_is_determined_when_joints_4_and_5_are_both_a_quarter_turn)
{
    // Then its first form is 0 / 0 and the second takes over; close by, both must agree.
    const SixAxisParams params = ParamsOf(test::WristArm());
    for (const double q4 : {kHalfPi, -kHalfPi}) {
        for (const double q5 : {kHalfPi, -kHalfPi}) {
            for (const double off : {0.0, 1e-7, 1e-3, 3e-3, 4e-3, 1e-2}) {
                for (const double q6 : {-3.0, -1.0, 0.25, 2.0}) {
                    const SixAngles q{0.7, -0.3, 0.4, q4 + off, q5 - off, q6};
                    SCOPED_TRACE(test::Shown(q));
                    Axes axes{};
                    ASSERT_EQ(ClosedFormOf(params, FlangeOf(test::WristArm(), q), SixAxisArmConfig(params, q),
                                           axes),
                              KINE_OK);
                    for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], q[j], 1e-9);
                }
            }
        }
    }
}

TEST(ClosedFormIK, fails_closed_on_nan_and_infinity)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    constexpr double Pose::*kFields[] = {&Pose::x, &Pose::y, &Pose::z, &Pose::a, &Pose::b, &Pose::c};
    for (const double bad : {kNan, kInf, -kInf}) {
        for (auto field : kFields) {
            Pose flange = FlangeOf(test::WristArm(), {0.3, -0.4, 0.5, 0.6, 0.7, 0.8});
            flange.*field = bad;
            auto axes = test::Untouched<Axes>();
            const KineResult code = ClosedFormOf(params, flange, Posture(0), axes);
            EXPECT_TRUE(code == 0x6096U || code == 0x6097U || code == 0x6098U) << code;
            EXPECT_TRUE(test::IsUntouched(axes));
        }
    }
    EXPECT_EQ(ResultOf(params, {500.0, 0.0, kNan, 0.1, 0.2, 0.3}, 0), 0x6097U);
}

TEST(ClosedFormIK, fails_closed_on_a_block_with_nan)
{
    const Pose flange = FlangeOf(test::WristArm(), {0.3, -0.4, 0.5, 0.6, 0.7, 0.8});
    const struct
    {
        double SixAxisParams::*field;
        KineResult code;
    } cases[] = {{&SixAxisParams::d6, 0x6096U},        {&SixAxisParams::lateralOffset, 0x6096U},
                 {&SixAxisParams::a1, 0x6097U},        {&SixAxisParams::a2, 0x6097U},
                 {&SixAxisParams::d1, 0x6097U},        {&SixAxisParams::wristReach, 0x6097U},
                 {&SixAxisParams::elbowAngle, 0x6098U}};
    for (const auto& c : cases) {
        SixAxisParams params = ParamsOf(test::WristArm());
        params.*c.field = kNan;
        auto axes = test::Untouched<Axes>();
        EXPECT_EQ(ClosedFormOf(params, flange, Posture(0), axes), c.code);
        EXPECT_TRUE(test::IsUntouched(axes));
    }
}

}  // namespace
}  // namespace kine

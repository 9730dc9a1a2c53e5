// Selection of the turns of joints 1, 4 and 6 by the configuration of the six-axis inverse.
#include <gtest/gtest.h>

#include "models/six_axis_inverse.h"
#include "models/six_axis_posture.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::kInf;
using test::kNan;
using test::ParamsOf;

using Axes = std::array<double, 8>;

// The selection as a plain procedure: shift by the whole turns in n, then by one turn, or by as many as it
// takes, to within two quadrants.
double PlainQuadrant(double x)
{
    const double t = 2.0 * x / std::acos(-1.0);
    return std::trunc(x > 0.0 ? t : t - 1.0 + 5.555555556e-6);
}

double PlainShift(double x, int n)
{
    const double pi = std::acos(-1.0);
    return x - (n % 4) * pi / 2.0 + n * pi / 2.0;
}

double PlainTurnOnce(double x, int n)
{
    x = PlainShift(x, n);
    const double k = PlainQuadrant(x) - n;
    if (k > 2.0) return x - 2.0 * std::acos(-1.0);
    if (k < -2.0) return x + 2.0 * std::acos(-1.0);
    return x;
}

double PlainTurn(double x, int n)
{
    x = PlainShift(x, n);
    for (double k = PlainQuadrant(x) - n; k > 2.0 || k < -2.0; k = PlainQuadrant(x) - n) {
        x += k > 2.0 ? -2.0 * std::acos(-1.0) : 2.0 * std::acos(-1.0);
    }
    return x;
}

Pose FlangeOf(const KineKinematicParam& param, const SixAngles& q)
{
    return MatrixToPose(test::ToHom(test::RefFlange(param.SixAxis, q)));
}

// Posture 0 of the wrist arm, with joints 1, 4 and 6 anywhere within half a turn.
SixAngles Arm(double q1, double q4, double q6) { return {q1, -0.4, 0.5, q4, 0.7, q6}; }

constexpr double kSamples[] = {-3.0, -2.0, -1.0, -0.2, 0.2, 1.0, 2.0, 3.0};

TEST(ClosedFormIK, selects_every_turn_of_joints_1_4_and_6_once)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    for (const double q : kSamples) {
        const Pose flange = FlangeOf(test::WristArm(), Arm(q, -q, 0.7 * q));
        for (int n = -21; n <= 21; ++n) {
            SCOPED_TRACE(::testing::Message() << q << " turn " << n);
            Axes axes{};
            ASSERT_EQ(ClosedFormIK(params, PoseToMatrix(flange), {n, 1 - n, n + 2, 0}, axes), KINE_OK);
            EXPECT_NEAR(axes[0], PlainTurnOnce(q, n), 1e-10);
            EXPECT_NEAR(axes[3], PlainTurnOnce(-q, 1 - n), 1e-10);
            EXPECT_NEAR(axes[5], PlainTurnOnce(0.7 * q, n + 2), 1e-10);
        }
    }
}

TEST(SixAxisInverse, selects_every_turn_again_after_refinement)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    for (const double q : kSamples) {
        const Pose flange = FlangeOf(test::WristArm(), Arm(q, -q, 0.7 * q));
        for (int n = -21; n <= 21; ++n) {
            SCOPED_TRACE(::testing::Message() << q << " turn " << n);
            Axes axes{};
            ASSERT_EQ(SixAxisInverse(params, flange, {}, {n, 1 - n, n + 2, 0}, axes), KINE_OK);
            EXPECT_NEAR(axes[0], PlainTurnOnce(q, n), 1e-10);
            EXPECT_NEAR(axes[3], PlainTurn(PlainTurnOnce(-q, 1 - n), 1 - n), 1e-10);
            EXPECT_NEAR(axes[5], PlainTurn(PlainTurnOnce(0.7 * q, n + 2), n + 2), 1e-10);
        }
    }
}

TEST(SixAxisInverse, turn_number_4_is_one_turn_further_and_8_two)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    const Pose flange = FlangeOf(test::WristArm(), Arm(0.3, 0.6, 0.8));
    const struct
    {
        std::int32_t number;
        double turns;
    } cases[] = {{0, 0.0}, {4, 1.0}, {-4, -1.0}, {8, 2.0}, {-8, -2.0}, {400, 100.0}, {-640, -160.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.number);
        Axes axes{};
        ASSERT_EQ(SixAxisInverse(params, flange, {}, {c.number, 0, 0, 0}, axes), KINE_OK);
        EXPECT_NEAR(axes[0], 0.3 + c.turns * kTwoPi, 1e-9);
        EXPECT_NEAR(axes[3], 0.6, 1e-9);
        EXPECT_NEAR(axes[5], 0.8, 1e-9);
        ASSERT_EQ(SixAxisInverse(params, flange, {}, {0, c.number, 0, 0}, axes), KINE_OK);
        EXPECT_NEAR(axes[0], 0.3, 1e-9);
        EXPECT_NEAR(axes[3], 0.6 + c.turns * kTwoPi, 1e-9);
        EXPECT_NEAR(axes[5], 0.8, 1e-9);
        ASSERT_EQ(SixAxisInverse(params, flange, {}, {0, 0, c.number, 0}, axes), KINE_OK);
        EXPECT_NEAR(axes[0], 0.3, 1e-9);
        EXPECT_NEAR(axes[3], 0.6, 1e-9);
        EXPECT_NEAR(axes[5], 0.8 + c.turns * kTwoPi, 1e-9);
    }
}

TEST(SixAxisInverse, two_quadrants_off_the_second_shift_shows_on_joints_4_and_6)
{
    // -2 lies in quadrant -2. Number 4 shifts it to -2 + 2 pi (quadrant 2, two below 4: kept), and after the
    // refinement to -2 + 4 pi (quadrant 6, two above 4: kept). Joint 1 is shifted only once.
    const SixAxisParams params = ParamsOf(test::WristArm());
    Axes axes{};
    ASSERT_EQ(
        SixAxisInverse(params, FlangeOf(test::WristArm(), Arm(-2.0, -2.0, -2.0)), {}, {4, 4, 4, 0}, axes),
        KINE_OK);
    EXPECT_NEAR(axes[0], -2.0 + kTwoPi, 1e-9);
    EXPECT_NEAR(axes[3], -2.0 + 2.0 * kTwoPi, 1e-9);
    EXPECT_NEAR(axes[5], -2.0 + 2.0 * kTwoPi, 1e-9);
}

TEST(SixAxisInverse, serves_turn_numbers_up_to_a_million)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    const Pose flange = FlangeOf(test::WristArm(), Arm(0.3, 0.6, 0.8));
    for (const std::int32_t n : {1000000, -1000000}) {
        SCOPED_TRACE(n);
        Axes axes{};
        ASSERT_EQ(SixAxisInverse(params, flange, {}, {n, n, n, 0}, axes), KINE_OK);
        // A quarter million turns. On the way down from twice as many each step rounds by up to 2^-32.
        const double turns = n / 4 * kTwoPi;
        EXPECT_NEAR(axes[0], 0.3 + turns, 1e-8);
        EXPECT_NEAR(axes[3], 0.6 + turns, 250000.0 * 0x1p-32);
        EXPECT_NEAR(axes[5], 0.8 + turns, 250000.0 * 0x1p-32);
    }
}

TEST(SixAxisInverse, turn_number_beyond_a_million_is_0x6090_before_any_geometry)
{
    const SixAxisParams params = ParamsOf(test::WristArm());
    const Pose reachable = FlangeOf(test::WristArm(), Arm(0.3, 0.6, 0.8));
    const Pose onAxis{0.0, 0.0, 2000.0, 0.0, 0.0, 0.0};
    const Pose nan{kNan, kNan, kNan, kNan, kNan, kNan};
    for (const std::int32_t n : {1000001, -1000001, INT32_MAX, INT32_MIN}) {
        for (const KineArmConfig& config :
             {KineArmConfig{n, 0, 0, 0}, KineArmConfig{0, n, 0, 0}, KineArmConfig{0, 0, n, 0}}) {
            for (const Pose& target : {reachable, onAxis, nan}) {
                SCOPED_TRACE(n);
                auto axes = test::Untouched<Axes>();
                EXPECT_EQ(SixAxisInverse(params, target, {}, config, axes), 0x6090U);
                EXPECT_TRUE(test::IsUntouched(axes));
            }
        }
    }
}

TEST(SixAxisInverse, posture_number_is_no_turn_number)
{
    // Far out of range, but found only after the shoulder.
    Axes axes{};
    EXPECT_EQ(SixAxisInverse(ParamsOf(test::WristArm()), Pose{0.0, 0.0, 2000.0, 0.0, 0.0, 0.0}, {},
                             {0, 0, 0, INT32_MAX}, axes),
              0x6096U);
}

TEST(SelectWristTurns, moves_joints_4_and_6_only)
{
    SixAngles q{40.0, 50.0, 60.0, 0.1, 70.0, 0.2};
    EXPECT_EQ(SelectWristTurns({0, 4, -4, 0}, q), KINE_OK);
    EXPECT_EQ(q[0], 40.0);
    EXPECT_EQ(q[1], 50.0);
    EXPECT_EQ(q[2], 60.0);
    EXPECT_NEAR(q[3], 0.1 + kTwoPi, 1e-14);
    EXPECT_EQ(q[4], 70.0);
    EXPECT_NEAR(q[5], 0.2 - kTwoPi, 1e-14);
}

TEST(SelectWristTurns, brings_an_angle_back_over_many_turns)
{
    test::SeededRandom random(2601);
    for (int i = 0; i < 300; ++i) {
        const double q4 = random.Uniform(-1000.0, 1000.0);
        const double q6 = random.Uniform(-1000.0, 1000.0);
        const int n4 = static_cast<int>(random.Uniform(-700.0, 700.0));
        const int n6 = static_cast<int>(random.Uniform(-700.0, 700.0));
        SCOPED_TRACE(::testing::Message() << q4 << " to " << n4 << ", " << q6 << " to " << n6);
        SixAngles q{0.0, 0.0, 0.0, q4, 0.0, q6};
        ASSERT_EQ(SelectWristTurns({0, n4, n6, 0}, q), KINE_OK);
        EXPECT_NEAR(q[3], PlainTurn(q4, n4), 1e-9);
        EXPECT_NEAR(q[5], PlainTurn(q6, n6), 1e-9);
    }
}

// Asked for a quarter turn, axes 4 and 6 at the angle move by so many turns.
struct WristTurn
{
    double angle;
    std::int32_t number;
    double turns;
};

void ExpectWristTurns(std::initializer_list<WristTurn> cases)
{
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.angle << " to " << c.number);
        SixAngles q{0.0, 0.0, 0.0, c.angle, 0.0, c.angle};
        ASSERT_EQ(SelectWristTurns({0, c.number, c.number, 0}, q), KINE_OK);
        EXPECT_NEAR(q[3], c.angle + c.turns * kTwoPi, 1e-14);
        EXPECT_NEAR(q[5], c.angle + c.turns * kTwoPi, 1e-14);
    }
}

TEST(SelectWristTurns, window_keeps_two_quadrants_and_moves_three)
{
    // 0.1 is in quadrant 0, -0.1 in -1.
    ExpectWristTurns(
        {{0.1, 2, 0.0}, {0.1, 3, 1.0}, {0.1, -2, 0.0}, {0.1, -3, -1.0}, {-0.1, 1, 0.0}, {-0.1, 2, 1.0}});
}

TEST(SelectWristTurns, bias_applies_at_and_below_zero_only)
{
    // -1e-6 counts as quadrant 0, -1e-5 as -1: seen from 2, the first stays and the second moves.
    // pi/2 - 1e-6 counts as quadrant 0, not 1: seen from 3 it moves.
    ExpectWristTurns(
        {{0.0, 2, 0.0}, {-1e-6, 2, 0.0}, {-1e-5, 2, 1.0}, {kHalfPi - 1e-6, 3, 1.0}, {kHalfPi, 3, 0.0}});
}

TEST(SelectWristTurns, of_an_angle_without_a_turn_is_0x609A)
{
    for (const double bad : {kNan, kInf, -kInf, 1e17, -1e17, 1e300}) {
        SCOPED_TRACE(bad);
        SixAngles q{0.0, 0.0, 0.0, bad, 0.0, 0.0};
        EXPECT_EQ(SelectWristTurns({0, 0, 0, 0}, q), 0x609AU);
        q = {0.0, 0.0, 0.0, 0.0, 0.0, bad};
        EXPECT_EQ(SelectWristTurns({0, 0, 0, 0}, q), 0x609AU);
    }
}

TEST(WriteSixAxes, writes_the_axes_with_the_wrist_at_its_turns_and_two_zeros)
{
    auto axes = test::Untouched<Axes>();
    EXPECT_EQ(WriteSixAxes({8, 4, -4, 0}, {0.3, -0.4, 0.5, 0.1, 0.7, 0.2}, axes), KINE_OK);
    EXPECT_EQ(axes[0], 0.3);
    EXPECT_EQ(axes[1], -0.4);
    EXPECT_EQ(axes[2], 0.5);
    EXPECT_NEAR(axes[3], 0.1 + kTwoPi, 1e-14);
    EXPECT_EQ(axes[4], 0.7);
    EXPECT_NEAR(axes[5], 0.2 - kTwoPi, 1e-14);
    EXPECT_EQ(axes[6], 0.0);
    EXPECT_EQ(axes[7], 0.0);
}

TEST(WriteSixAxes, of_an_angle_without_a_turn_is_0x609A_and_writes_nothing)
{
    for (const double bad : {kNan, kInf, 1e17, -1e17}) {
        SCOPED_TRACE(bad);
        auto axes = test::Untouched<Axes>();
        EXPECT_EQ(WriteSixAxes({0, 0, 0, 0}, {0.0, 0.0, 0.0, bad, 0.0, 0.0}, axes), 0x609AU);
        EXPECT_EQ(WriteSixAxes({0, 0, 0, 0}, {0.0, 0.0, 0.0, 0.0, 0.0, bad}, axes), 0x609AU);
        EXPECT_TRUE(test::IsUntouched(axes));
    }
}

}  // namespace
}  // namespace kine

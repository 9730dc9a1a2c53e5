// Deflection and its gradient against the products F . (axis x m) of every pair of joints, written out, and
// against difference quotients of the written-out deflection.
#include <gtest/gtest.h>

#include "models/six_axis_forward.h"
#include "models/six_axis_gravity.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_samples.h"
#include "support/written_out_six_axis.h"

namespace kine {
namespace {

using test::ParamsOf;
using test::RandomAngles;

// rad, and rad per rad: of deflections up to 2 degrees and torques that cancel in part.
constexpr double kTolerance = 2e-16;

CombinedLoad AnyLoad(test::SeededRandom& random)
{
    const auto u = [&random] { return random.Uniform(-0.3, 0.3); };
    return {random.Uniform(0.0, 60.0), {u(), u(), u()}, {}, {}};
}

void ExpectNear(const SixAngles& actual, const SixAngles& expected, double tolerance)
{
    for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(actual[j], expected[j], tolerance) << "joint " << j + 1;
}

// One arm at one joint set, in both forms.
void ExpectWrittenOut(const SixAxisParams& params, const SixAngles& q, const CombinedLoad& load)
{
    Deflection d{};
    DeflectionGradient gradient{};
    ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, d, gradient), KINE_OK);
    Deflection expected{};
    DeflectionGradient expectedGradient{};
    test::WrittenOutDeflection(params, q, load, expected, expectedGradient);
    EXPECT_NEAR(d.q2, expected.q2, kTolerance);
    EXPECT_NEAR(d.q3, expected.q3, kTolerance);
    EXPECT_NEAR(d.q5, expected.q5, kTolerance);
    ExpectNear(gradient.q2, expectedGradient.q2, kTolerance);
    ExpectNear(gradient.q3, expectedGradient.q3, kTolerance);
    ExpectNear(gradient.q5, expectedGradient.q5, kTolerance);
}

TEST(GravityDeflection, of_any_arm_and_load_is_the_written_out_sum_of_moments)
{
    test::SeededRandom random(2951);
    for (int i = 0; i < 1000; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(test::Shown(q));
        ExpectWrittenOut(params, q, AnyLoad(random));
    }
}

TEST(GravityDeflection, of_the_payload_alone_is_the_written_out_sum_of_moments)
{
    test::SeededRandom random(2952);
    for (int i = 0; i < 500; ++i) {
        KineKinematicParam param = test::RandomGravityArm(random);
        for (double& weight : param.SixAxis.G) weight = 0.0;
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(test::Shown(q));
        ExpectWrittenOut(ParamsOf(param), q, AnyLoad(random));
    }
}

TEST(GravityDeflection, of_one_link_weight_alone_is_the_written_out_one)
{
    test::SeededRandom random(2953);
    for (std::size_t weight = 0; weight < 7; ++weight) {
        for (int i = 0; i < 50; ++i) {
            KineKinematicParam param = test::RandomGravityArm(random);
            for (double& each : param.SixAxis.G) each = 0.0;
            param.SixAxis.G[weight] = 1e6;
            const SixAngles q = RandomAngles(random);
            SCOPED_TRACE(test::Shown(q));
            ExpectWrittenOut(ParamsOf(param), q, {});
        }
    }
}

// Angles at which sines and cosines are zero or of one size, so that terms vanish or meet.
TEST(GravityDeflection, at_quarter_and_eighth_turns_is_the_written_out_one)
{
    test::SeededRandom random(2954);
    for (int i = 0; i < 500; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        SixAngles q{};
        for (double& angle : q) angle = random.Whole(-8, 8) * (kPi / 4.0);
        SCOPED_TRACE(test::Shown(q));
        ExpectWrittenOut(params, q, AnyLoad(random));
    }
}

// The triple product of a pair is the same from either side, and the derivative of the torque: central
// differences of the torque as it is written out, of eighth order.
TEST(GravityDeflection, written_out_gradient_is_the_difference_quotient_of_the_written_out_deflection)
{
    constexpr double kStep = 0.02;
    constexpr double kWeights[] = {4.0 / 5.0, -1.0 / 5.0, 4.0 / 105.0, -1.0 / 280.0};
    test::SeededRandom random(2955);
    for (int i = 0; i < 100; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = AnyLoad(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        DeflectionGradient gradient{};
        test::WrittenOutDeflection(params, q, load, d, gradient);
        for (std::size_t j = 0; j < 6; ++j) {
            Deflection sum{};
            for (int n = 1; n <= 4; ++n) {
                for (const int side : {-1, 1}) {
                    SixAngles moved = q;
                    moved[j] += side * n * kStep;
                    Deflection at{};
                    DeflectionGradient unused{};
                    test::WrittenOutDeflection(params, moved, load, at, unused);
                    const double weight = side * kWeights[n - 1] / kStep;
                    sum = {sum.q2 + weight * at.q2, sum.q3 + weight * at.q3, sum.q5 + weight * at.q5};
                }
            }
            EXPECT_NEAR(gradient.q2[j], sum.q2, 1e-13);
            EXPECT_NEAR(gradient.q3[j], sum.q3, 1e-13);
            EXPECT_NEAR(gradient.q5[j], sum.q5, 1e-13);
        }
    }
}

// The verdict turns at 2 degrees for both: just inside and just outside of it by one part in 1e12.
TEST(GravityDeflection, is_refused_where_the_written_out_one_is)
{
    test::SeededRandom random(2956);
    for (int i = 0; i < 300; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = AnyLoad(random);
        Deflection d{};
        ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, d), KINE_OK);
        const double largest = std::fmax(std::fabs(d.q2), std::fmax(std::fabs(d.q3), std::fabs(d.q5)));
        for (const double share : {1.0 - 1e-12, 1.0 + 1e-12}) {
            SixAxisParams softer = params;
            const double factor = share * 0.03490658503988659 / largest;
            softer.c2 *= factor;
            softer.c3 *= factor;
            softer.c5 *= factor;
            Deflection expected{};
            DeflectionGradient gradient{};
            test::WrittenOutDeflection(softer, q, load, expected, gradient);
            const bool isRefused = expected.q2 == 0.0 && expected.q3 == 0.0 && expected.q5 == 0.0;
            EXPECT_EQ(isRefused, share > 1.0);
            EXPECT_EQ(GravityDeflection(softer, SinesOf(q), load, d), isRefused ? KINE_ERR_IK_1 : KINE_OK);
        }
    }
}

}  // namespace
}  // namespace kine

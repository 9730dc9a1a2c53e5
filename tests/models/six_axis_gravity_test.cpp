#include "models/six_axis_gravity.h"

#include <gtest/gtest.h>

#include "models/six_axis_forward.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::InRadians;
using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;
using test::ParamsOf;
using test::RandomAngles;

// rad, 2 degrees.
constexpr double kLimit = 0.03490658503988659;
constexpr SixAngles kZero{};

CombinedLoad LoadOf(double mass, const Vec3& centreInMetres) { return {mass, centreInMetres, {}, {}}; }

// Compliances of 1e-9 rad / (N mm): the deflection is the torque in units of 1e-9, far inside the limit.
KineKinematicParam SoftArm()
{
    KineKinematicParam param = test::NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    param.SixAxis.k2 = 1e6;
    param.SixAxis.k3 = 1e6;
    param.SixAxis.k5 = 1e6;
    return param;
}

struct Torques
{
    double q2, q3, q5;
};

Torques TorquesOf(const KineKinematicParam& param, const SixAngles& q, const CombinedLoad& load)
{
    Deflection d{};
    EXPECT_EQ(GravityDeflection(ParamsOf(param), SinesOf(q), load, d), KINE_OK);
    return {d.q2 * 1e9, d.q3 * 1e9, d.q5 * 1e9};
}

void ExpectTorques(const Torques& t, double q2, double q3, double q5)
{
    EXPECT_NEAR(t.q2, q2, 1e-6);
    EXPECT_NEAR(t.q3, q3, 1e-6);
    EXPECT_NEAR(t.q5, q5, 1e-6);
}

CombinedLoad RandomLoad(test::SeededRandom& random)
{
    return LoadOf(random.Uniform(0.0, 60.0),
                  {random.Uniform(-0.3, 0.3), random.Uniform(-0.3, 0.3), random.Uniform(-0.3, 0.3)});
}

TEST(GravityDeflection, of_stretched_arm_is_weight_times_distance)
{
    // Forearm level: 98 N at 400 + 80 mm from joints 2 and 3 and at 80 mm from joint 5; the arm sags.
    ExpectTorques(TorquesOf(SoftArm(), kZero, LoadOf(10.0, {})), -47040.0, -47040.0, -7840.0);
    // 100 mm further out.
    ExpectTorques(TorquesOf(SoftArm(), kZero, LoadOf(10.0, {0.0, 0.0, 0.1})), -56840.0, -56840.0, -17640.0);
    // 100 mm along the flange's x axis, which points up, changes nothing; nor does y, across.
    ExpectTorques(TorquesOf(SoftArm(), kZero, LoadOf(10.0, {0.1, 0.1, 0.0})), -47040.0, -47040.0, -7840.0);
}

TEST(GravityDeflection, of_upper_arm_laid_forward_reaches_over_both_links)
{
    // q2 = -90: upper arm level (500 out), elbow offset level (50 out), forearm pointing down.
    ExpectTorques(TorquesOf(SoftArm(), {0.0, -kHalfPi, 0.0, 0.0, 0.0, 0.0}, LoadOf(10.0, {})), -98.0 * 550.0,
                  -98.0 * 50.0, 0.0);
}

TEST(GravityDeflection, of_tilted_base_pulls_sideways)
{
    // F = m g (cos x sin y, -sin x, -cos x cos y). With y = 90 degrees it points along +X: at q = 0 its
    // moment about joint 2 (Y down, over the flange at height 550) is that of a force pushing outward, over
    // joint 3 at height 50.
    KineKinematicParam param = SoftArm();
    param.SixAxis.mountY = 90.0;
    ExpectTorques(TorquesOf(param, kZero, LoadOf(10.0, {})), -98.0 * 550.0, -98.0 * 50.0, 0.0);
    // Turned half round by joint 1 it pushes inward.
    ExpectTorques(TorquesOf(param, {kPi, 0.0, 0.0, 0.0, 0.0, 0.0}, LoadOf(10.0, {})), 98.0 * 550.0,
                  98.0 * 50.0, 0.0);
    // With x = 90 degrees it points along -Y: outward when joint 1 stands at -90 degrees.
    param.SixAxis.mountY = 0.0;
    param.SixAxis.mountX = 90.0;
    ExpectTorques(TorquesOf(param, kZero, LoadOf(10.0, {})), 0.0, 0.0, 0.0);
    ExpectTorques(TorquesOf(param, {-kHalfPi, 0.0, 0.0, 0.0, 0.0, 0.0}, LoadOf(10.0, {})), -98.0 * 550.0,
                  -98.0 * 50.0, 0.0);
}

TEST(GravityDeflection, payload_torques_are_moments_about_the_axes_of_the_nominal_chain)
{
    test::SeededRandom random(2101);
    for (int i = 0; i < 500; ++i) {
        KineKinematicParam param = test::RandomGravityArm(random);
        for (double& weight : param.SixAxis.G) weight = 0.0;
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = RandomLoad(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        ASSERT_EQ(GravityDeflection(ParamsOf(param), SinesOf(q), load, d), KINE_OK);
        const KineSixAxisParam& p = param.SixAxis;
        EXPECT_NEAR(d.q2 * p.k2 * 1e3, test::RefPayloadTorque(p, q, load, 1), 1e-6);
        EXPECT_NEAR(d.q3 * p.k3 * 1e3, test::RefPayloadTorque(p, q, load, 2), 1e-6);
        EXPECT_NEAR(d.q5 * p.k5 * 1e3, test::RefPayloadTorque(p, q, load, 4), 1e-6);
    }
}

TEST(GravityDeflection, is_unaffected_by_what_only_the_calibrated_chain_has)
{
    test::SeededRandom random(2102);
    const SixAngles q = RandomAngles(random);
    const CombinedLoad load = RandomLoad(random);
    KineKinematicParam param = test::RandomGravityArm(random);
    Deflection before{};
    DeflectionGradient gradientBefore{};
    ASSERT_EQ(GravityDeflection(ParamsOf(param), SinesOf(q), load, before, gradientBefore), KINE_OK);
    for (auto field : {&KineSixAxisParam::d1, &KineSixAxisParam::lateralOffset, &KineSixAxisParam::alpha1,
                       &KineSixAxisParam::alpha2, &KineSixAxisParam::alpha3, &KineSixAxisParam::alpha4,
                       &KineSixAxisParam::alpha5, &KineSixAxisParam::beta2, &KineSixAxisParam::d3,
                       &KineSixAxisParam::d5, &KineSixAxisParam::a4, &KineSixAxisParam::a5}) {
        param.SixAxis.*field += 33.0;
    }
    Deflection after{};
    DeflectionGradient gradientAfter{};
    ASSERT_EQ(GravityDeflection(ParamsOf(param), SinesOf(q), load, after, gradientAfter), KINE_OK);
    EXPECT_TRUE(test::SameBits(before, after));
    EXPECT_TRUE(test::SameBits(gradientBefore, gradientAfter));
}

// One link coefficient of 1000 N mm at a time.
Torques TorquesOfWeight(std::size_t index, const SixAngles& q, double mountX = 0.0)
{
    KineKinematicParam param = SoftArm();
    param.SixAxis.G[index] = 1000.0;
    param.SixAxis.mountX = mountX;
    return TorquesOf(param, q, CombinedLoad{});
}

// q2 = -60 degrees: theta2 = 30. q3 = 30: A = 60. q4 = 60. q5 = 30.
constexpr SixAngles kBentArm{0.4, InRadians(-60), InRadians(30), InRadians(60), InRadians(30), 0.7};

TEST(GravityDeflection, of_link_weights_follows_their_coefficients)
{
    const double h = std::sqrt(0.75);
    ExpectTorques(TorquesOfWeight(0, kBentArm), -1000.0 * h, 0.0, 0.0);          // cos theta2, joint 2 only
    ExpectTorques(TorquesOfWeight(1, kBentArm), -500.0, 0.0, 0.0);               // sin theta2, joint 2 only
    ExpectTorques(TorquesOfWeight(2, kBentArm), -500.0, -500.0, 0.0);            // cos A
    ExpectTorques(TorquesOfWeight(3, kBentArm), -1000.0 * h, -1000.0 * h, 0.0);  // sin A
    // cos q4 cos A sin q5 + cos q5 sin A = 1/8 + 3/4
    ExpectTorques(TorquesOfWeight(4, kBentArm), -875.0, -875.0, 0.0);
    // -(cos q4 sin A cos q5 + sin q5 cos A) = -(3/8 + 1/4), and T5 is added, not subtracted
    ExpectTorques(TorquesOfWeight(5, kBentArm), 0.0, 0.0, -625.0);
    ExpectTorques(TorquesOfWeight(6, kBentArm), 0.0, 0.0, 0.0);
}

TEST(GravityDeflection, of_link_weights_is_scaled_by_the_tilt_about_x)
{
    ExpectTorques(TorquesOfWeight(4, kBentArm, 60.0), -437.5, -437.5, 0.0);
    ExpectTorques(TorquesOfWeight(5, kBentArm, 120.0), 0.0, 0.0, 312.5);
}

TEST(GravityDeflection, of_payload_is_that_of_links_with_the_same_moments)
{
    // A mass m on the flange is a weight of m g at a2 along the upper arm, a3 and d4 along the forearm, and
    // d6 along the approach.
    test::SeededRandom random(2103);
    for (int i = 0; i < 100; ++i) {
        KineKinematicParam bare = SoftArm();
        KineKinematicParam heavy = SoftArm();
        const double weight = 7.0 * 9.8;
        heavy.SixAxis.G[0] = weight * heavy.SixAxis.a2;
        heavy.SixAxis.G[2] = weight * heavy.SixAxis.a3;
        heavy.SixAxis.G[3] = weight * heavy.SixAxis.d4;
        heavy.SixAxis.G[4] = weight * heavy.SixAxis.d6;
        heavy.SixAxis.G[5] = weight * heavy.SixAxis.d6;
        const SixAngles q = RandomAngles(random);
        const Torques expected = TorquesOf(bare, q, LoadOf(7.0, {}));
        ExpectTorques(TorquesOf(heavy, q, CombinedLoad{}), expected.q2, expected.q3, expected.q5);
    }
}

TEST(GravityDeflection, of_links_and_payload_together_is_the_reference_sum)
{
    test::SeededRandom random(2104);
    for (int i = 0; i < 300; ++i) {
        const KineKinematicParam param = test::RandomGravityArm(random);
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = RandomLoad(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        ASSERT_EQ(GravityDeflection(ParamsOf(param), SinesOf(q), load, d), KINE_OK);
        const test::RefVector expected = test::RefDeflection(param.SixAxis, q, load);
        EXPECT_NEAR(d.q2, expected[0], 1e-14);
        EXPECT_NEAR(d.q3, expected[1], 1e-14);
        EXPECT_NEAR(d.q5, expected[2], 1e-14);
    }
}

TEST(GravityDeflection, reads_mass_and_centre_of_the_load_only)
{
    CombinedLoad load = LoadOf(10.0, {0.1, 0.2, 0.3});
    const Torques expected = TorquesOf(SoftArm(), kBentArm, load);
    load.aom = {kNan, kNan, kNan};
    load.inertia = {kNan, kInf, -1.0};
    EXPECT_TRUE(test::SameBits(TorquesOf(SoftArm(), kBentArm, load), expected));
}

// At q = 0 the torques T2 = G1, T3 = G3 (in T2 too) and T5 = -G5 come out of exact sines. With a weight of 1
// the compliance is the deflection.
struct Softness
{
    double c2, c3, c5;
};

KineResult ResultAtZero(const Softness& c, Deflection& d)
{
    SixAxisParams params = ParamsOf(SoftArm());
    params.gs[1] = c.c2 != 0.0 ? 1.0 : 0.0;
    params.gs[3] = c.c3 != 0.0 ? 1.0 : 0.0;
    params.gs[5] = c.c5 != 0.0 ? 1.0 : 0.0;
    params.c2 = c.c2;
    params.c3 = c.c3;
    params.c5 = c.c5;
    return GravityDeflection(params, SinesOf(kZero), CombinedLoad{}, d);
}

TEST(GravityDeflection, just_below_two_degrees_is_applied)
{
    const double below = JustBelow(kLimit);
    Deflection d{};
    EXPECT_EQ(ResultAtZero({below, 0.0, 0.0}, d), KINE_OK);
    EXPECT_EQ(d.q2, -below);
    EXPECT_EQ(ResultAtZero({0.0, below, 0.0}, d), KINE_OK);
    EXPECT_EQ(d.q3, -below);
    EXPECT_EQ(ResultAtZero({0.0, 0.0, below}, d), KINE_OK);
    EXPECT_EQ(d.q5, -below);
    // The sign of the deflection does not matter.
    EXPECT_EQ(ResultAtZero({-below, 0.0, 0.0}, d), KINE_OK);
    EXPECT_EQ(d.q2, below);
}

TEST(GravityDeflection, of_two_degrees_or_more_is_0x6091_and_zero)
{
    for (const double limit : {kLimit, JustAbove(kLimit), 1.0, kInf, -kLimit, -1.0, kNan}) {
        SCOPED_TRACE(limit);
        for (const Softness& c :
             {Softness{limit, 0.0, 0.0}, Softness{0.0, limit, 0.0}, Softness{0.0, 0.0, limit}}) {
            auto d = test::Untouched<Deflection>();
            EXPECT_EQ(ResultAtZero(c, d), 0x6091U);
            EXPECT_TRUE(test::SameBits(d, Deflection{}));
        }
    }
}

TEST(GravityDeflection, one_joint_beyond_the_limit_takes_the_others_with_it)
{
    Deflection d{};
    EXPECT_EQ(ResultAtZero({0.01, 0.0, 0.03}, d), KINE_OK);
    EXPECT_EQ(d.q2, -0.01);
    EXPECT_EQ(ResultAtZero({0.01, 0.0, 0.035}, d), 0x6091U);
    EXPECT_EQ(d.q2, 0.0);
}

TEST(GravityDeflection, of_zero_stiffness_is_0x6091_with_or_without_a_load)
{
    // Infinity times a torque is infinite, times no torque NaN.
    const KineKinematicParam rigid = test::WristArm();
    Deflection d{};
    EXPECT_EQ(GravityDeflection(ParamsOf(rigid), SinesOf(kBentArm), LoadOf(5.0, {}), d), 0x6091U);
    EXPECT_EQ(GravityDeflection(ParamsOf(rigid), SinesOf(kBentArm), CombinedLoad{}, d), 0x6091U);
    KineKinematicParam oneSoft = SoftArm();
    oneSoft.SixAxis.k5 = 0.0;
    EXPECT_EQ(GravityDeflection(ParamsOf(oneSoft), SinesOf(kBentArm), CombinedLoad{}, d), 0x6091U);
}

TEST(GravityDeflection, of_nan_or_infinity_is_0x6091_and_zero)
{
    const SixAxisParams params = ParamsOf(SoftArm());
    for (const double bad : {kNan, kInf, -kInf}) {
        SCOPED_TRACE(bad);
        for (std::size_t i = 0; i < 6; ++i) {
            SixAngles q = kBentArm;
            q[i] = bad;
            auto d = test::Untouched<Deflection>();
            auto gradient = test::Untouched<DeflectionGradient>();
            EXPECT_EQ(GravityDeflection(params, SinesOf(q), LoadOf(5.0, {}), d, gradient), 0x6091U) << i;
            EXPECT_TRUE(test::SameBits(d, Deflection{}));
            EXPECT_TRUE(test::SameBits(gradient, DeflectionGradient{}));
        }
        for (const CombinedLoad& load : {LoadOf(bad, {}), LoadOf(5.0, {bad, 0.0, 0.0}),
                                         LoadOf(5.0, {0.0, bad, 0.0}), LoadOf(5.0, {0.0, 0.0, bad})}) {
            Deflection d{};
            EXPECT_EQ(GravityDeflection(params, SinesOf(kBentArm), load, d), 0x6091U);
            EXPECT_TRUE(test::SameBits(d, Deflection{}));
        }
    }
}

TEST(GravityDeflection, with_gradient_is_the_same_deflection)
{
    test::SeededRandom random(2105);
    for (int i = 0; i < 50; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = RandomLoad(random);
        Deflection alone{};
        Deflection together{};
        DeflectionGradient gradient{};
        ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, alone), KINE_OK);
        ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, together, gradient), KINE_OK);
        EXPECT_TRUE(test::SameBits(alone, together));
    }
}

// Central difference of eighth order; with this step it is as exact as the arithmetic.
Deflection DifferenceQuotient(const SixAxisParams& params, const SixAngles& q, const CombinedLoad& load,
                              std::size_t joint)
{
    constexpr double kStep = 0.02;
    constexpr double kWeights[] = {4.0 / 5.0, -1.0 / 5.0, 4.0 / 105.0, -1.0 / 280.0};
    Deflection sum{};
    for (int n = 1; n <= 4; ++n) {
        for (const int side : {-1, 1}) {
            SixAngles moved = q;
            moved[joint] += side * n * kStep;
            Deflection d{};
            EXPECT_EQ(GravityDeflection(params, SinesOf(moved), load, d), KINE_OK);
            const double weight = side * kWeights[n - 1] / kStep;
            sum = {sum.q2 + weight * d.q2, sum.q3 + weight * d.q3, sum.q5 + weight * d.q5};
        }
    }
    return sum;
}

TEST(GravityDeflection, gradient_is_the_derivative)
{
    test::SeededRandom random(2106);
    for (int i = 0; i < 100; ++i) {
        const SixAxisParams params = ParamsOf(test::RandomGravityArm(random));
        const SixAngles q = RandomAngles(random);
        const CombinedLoad load = RandomLoad(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        DeflectionGradient gradient{};
        ASSERT_EQ(GravityDeflection(params, SinesOf(q), load, d, gradient), KINE_OK);
        for (std::size_t j = 0; j < 6; ++j) {
            SCOPED_TRACE(j);
            const Deflection expected = DifferenceQuotient(params, q, load, j);
            EXPECT_NEAR(gradient.q2[j], expected.q2, 1e-13);
            EXPECT_NEAR(gradient.q3[j], expected.q3, 1e-13);
            EXPECT_NEAR(gradient.q5[j], expected.q5, 1e-13);
        }
    }
}

TEST(GravityDeflection, gradient_of_the_highest_deflection_that_is_applied_is_not_zeroed)
{
    SixAxisParams params = ParamsOf(SoftArm());
    params.gs[1] = 1.0;
    params.c2 = JustBelow(kLimit);
    Deflection d{};
    DeflectionGradient gradient{};
    const SixAngles q{0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    ASSERT_EQ(GravityDeflection(params, SinesOf({0.0, 0.5, 0.0, 0.0, 0.0, 0.0}), CombinedLoad{}, d, gradient),
              KINE_OK);
    // T2 = sin(q2 + pi/2) = cos q2.
    EXPECT_NEAR(gradient.q2[1], std::sin(0.5) * params.c2, 1e-15);
    params.c2 = kLimit;
    ASSERT_EQ(GravityDeflection(params, SinesOf(q), CombinedLoad{}, d, gradient), 0x6091U);
    EXPECT_TRUE(test::SameBits(gradient, DeflectionGradient{}));
}

}  // namespace
}  // namespace kine

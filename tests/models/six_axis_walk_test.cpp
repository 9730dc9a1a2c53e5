// The walk along the chain and the deflection carried in sines and cosines, against plain products of
// links at the sums of the angles.
#include <gtest/gtest.h>

#include "models/six_axis_forward.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"
#include "support/written_out_six_axis.h"

namespace kine {
namespace {

using test::ExpectNear;
using test::ParamsOf;
using test::RandomAngles;

// mm and the sine of an angle: 1e-9 mm and 1e-11 degrees, of arms of a few metres.
constexpr double kMm = 1e-9;
constexpr double kSine = 1.7e-13;

constexpr double kLimit = 0.03490658503988659;

void ExpectTransform(const HomMatrix& actual, const HomMatrix& expected)
{
    ExpectNear(actual.r, expected.r, kSine);
    ExpectNear(actual.t, expected.t, kMm);
}

// Every length away from zero, the twists anywhere.
KineKinematicParam AnyArm(test::SeededRandom& random)
{
    KineKinematicParam param = test::RandomLinks(random, 900.0);
    KineSixAxisParam& p = param.SixAxis;
    for (double& weight : p.G) weight = random.Uniform(-3e5, 3e5);
    p.k2 = std::pow(10.0, random.Uniform(3.3, 5.5));
    p.k3 = std::pow(10.0, random.Uniform(3.3, 5.5));
    p.k5 = std::pow(10.0, random.Uniform(3.3, 5.5));
    return param;
}

ToolBlock AnyTool(test::SeededRandom& random)
{
    const auto u = [&random](double size) { return random.Uniform(-size, size); };
    return {{u(300), u(300), u(300), u(3), u(1.4), u(3)},
            {random.Uniform(0, 30), {u(0.3), u(0.3), u(0.3)}, {}, {}}};
}

TEST(WalkLinks, of_the_bent_angles_is_the_product_of_links)
{
    test::SeededRandom random(2901);
    for (int i = 0; i < 200; ++i) {
        const SixAxisParams params = ParamsOf(AnyArm(random));
        const SixAngles q = RandomAngles(random);
        const auto bend = [&random] { return random.Uniform(-kLimit, kLimit); };
        const Deflection d{bend(), bend(), bend()};
        SCOPED_TRACE(test::Shown(q));
        const LinkChain chain = WalkLinks(params, Deflected(SinesOf(q), d));
        const test::WrittenOutChain expected = test::WrittenOutLinks(params, test::WrittenOutBent(q, d));
        ExpectTransform(chain.baseFromFlange, expected.flange);
        for (std::size_t j = 0; j < 6; ++j) {
            ExpectNear(chain.joints[j].direction, AxisZ(expected.frame[j].r), kSine);
            ExpectNear(chain.joints[j].origin, expected.frame[j].t, kMm);
        }
    }
}

TEST(Deflected, by_nothing_changes_no_bit)
{
    const JointSines sines = SinesOf({0.3, -0.4, 0.5, 0.6, 0.7, 0.8});
    EXPECT_TRUE(test::SameBits(Deflected(sines, {}), sines));
}

// Up to the bound of the deflection, to the last bits of a sine.
TEST(Deflected, is_the_sine_and_cosine_of_the_sum_for_every_deflection_that_is_applied)
{
    test::SeededRandom random(2902);
    for (int i = 0; i < 5000; ++i) {
        const SixAngles q = RandomAngles(random);
        const double ends[] = {-kLimit, kLimit, random.Uniform(-kLimit, kLimit)};
        const Deflection d{ends[i % 3], ends[(i + 1) % 3], ends[(i + 2) % 3]};
        const JointSines sines = SinesOf(q);
        const JointSines bent = Deflected(sines, d);
        const SixAngles sum = test::WrittenOutBent(q, d);
        for (const std::size_t j : {1U, 2U, 4U}) {
            const double theta = j == 1 ? sum[j] + kHalfPi : sum[j];
            // The sum in double is itself off by half its last bit.
            ASSERT_NEAR(bent[j].sin, std::sin(theta), 1.2e-15) << test::Shown(q);
            ASSERT_NEAR(bent[j].cos, std::cos(theta), 1.2e-15) << test::Shown(q);
        }
        for (const std::size_t j : {0U, 3U, 5U}) ASSERT_TRUE(test::SameBits(bent[j], sines[j]));
    }
}

TEST(SixAxisToolPose, of_the_bent_arm_is_the_product_of_links_and_tool)
{
    test::SeededRandom random(2903);
    int bent = 0;
    for (int i = 0; i < 200; ++i) {
        const KineKinematicParam param = AnyArm(random);
        const SixAxisParams params = ParamsOf(param);
        const SixAngles q = RandomAngles(random);
        const ToolBlock tool = AnyTool(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        DeflectionGradient gradient{};
        test::WrittenOutDeflection(params, q, tool.load, d, gradient);
        bent += d.q2 != 0.0 ? 1 : 0;
        const HomMatrix expected =
            test::WrittenOutLinks(params, test::WrittenOutBent(q, d)).flange * PoseToMatrix(tool.frame);
        const LazyPose pose = SixAxisToolPose(params, SinesOf(q), tool);
        ExpectTransform(pose.AsMatrix(), expected);
        ExpectNear(pose.Position(), expected.t, kMm);
        // The same from the parameter record, without anything of the library.
        ExpectTransform(pose.AsMatrix(), test::ToHom(test::RefToolPoint(param.SixAxis, q, tool)));
    }
    // Both arms that bend and arms that count as rigid.
    EXPECT_GT(bent, 50);
    EXPECT_LT(bent, 190);
}

TEST(SixAxisToolPose, of_the_sample_arms_is_the_product_of_links_and_tool)
{
    test::SeededRandom random(2904);
    for (const KineKinematicParam& param :
         {test::Puma(), test::PumaWithGravity(), test::WristArm(), test::CalibratedWristArm()}) {
        for (int i = 0; i < 60; ++i) {
            const SixAngles q = RandomAngles(random, 7.0);
            const ToolBlock tool = AnyTool(random);
            SCOPED_TRACE(test::Shown(q));
            ExpectTransform(SixAxisToolPose(ParamsOf(param), SinesOf(q), tool).AsMatrix(),
                            test::ToHom(test::RefToolPoint(param.SixAxis, q, tool)));
        }
    }
}

TEST(SixAxisFrame5Pose, of_the_bent_arm_is_the_product_of_five_links)
{
    test::SeededRandom random(2905);
    for (int i = 0; i < 300; ++i) {
        const SixAxisParams params = ParamsOf(AnyArm(random));
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(test::Shown(q));
        Deflection d{};
        DeflectionGradient gradient{};
        test::WrittenOutDeflection(params, q, {}, d, gradient);
        const test::WrittenOutChain chain = test::WrittenOutLinks(params, test::WrittenOutBent(q, d));
        ExpectTransform(PoseToMatrix(SixAxisFrame5Pose(params, q)), chain.frame[5]);
    }
}

}  // namespace
}  // namespace kine

// The whole six-axis inverse: round trips and codes. The refinement has a file of its own.
#include "models/six_axis_inverse.h"

#include <gtest/gtest.h>

#include "models/six_axis_forward.h"
#include "models/six_axis_posture.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::ExpectNear;
using test::kInf;
using test::kNan;
using test::ParamsOf;

using Axes = std::array<double, 8>;

constexpr SixAngles kSample{0.3, -0.4, 0.5, 0.6, 0.7, 0.8};
constexpr KineArmConfig kSampleConfig{0, 0, 0, 0};

const ToolBlock kHeavyTool{{50.0, -30.0, 120.0, 0.4, -0.5, 0.6}, {12.0, {0.02, -0.05, 0.11}, {}, {}}};

SixAngles FirstSix(const Axes& axes) { return {axes[0], axes[1], axes[2], axes[3], axes[4], axes[5]}; }

Pose PoseOf(const KineKinematicParam& param, const SixAngles& q, const ToolBlock& tool)
{
    return MatrixToPose(test::ToHom(test::RefToolPoint(param.SixAxis, q, tool)));
}

void ExpectFails(const SixAxisParams& params, const Pose& target, const ToolBlock& tool,
                 const KineArmConfig& config, KineResult code)
{
    auto axes = test::Untouched<Axes>();
    EXPECT_EQ(SixAxisInverse(params, target, tool, config, axes), code);
    EXPECT_TRUE(test::IsUntouched(axes));
}

// Joints in the range in which a configuration names them uniquely, off the singularities.
bool DrawJoints(test::SeededRandom& random, const SixAxisParams& params, SixAngles& q)
{
    q = test::RandomAngles(random, kPi);
    for (const std::size_t j : {std::size_t{0}, std::size_t{3}, std::size_t{5}})
        q[j] = random.Uniform(-40.0, 40.0);
    q[2] = random.Uniform(-kHalfPi, 3.0 * kHalfPi) - params.elbowAngle;
    return SixAxisSingularity(params, q, 2) == 0;
}

void ExpectRoundTrips(const KineKinematicParam& param, const ToolBlock& tool, std::uint64_t seed,
                      double tolerance)
{
    const SixAxisParams params = ParamsOf(param);
    test::SeededRandom random(seed);
    int solved = 0;
    while (solved < 200) {
        SixAngles q{};
        if (!DrawJoints(random, params, q)) continue;
        SCOPED_TRACE(test::Shown(q));
        auto axes = test::Untouched<Axes>();
        ASSERT_EQ(SixAxisInverse(params, PoseOf(param, q, tool), tool, SixAxisArmConfig(params, q), axes),
                  KINE_OK);
        for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], q[j], tolerance);
        EXPECT_EQ(axes[6], 0.0);
        EXPECT_EQ(axes[7], 0.0);
        ++solved;
    }
}

TEST(SixAxisInverse, of_rigid_nominal_arm_returns_the_joints)
{
    ExpectRoundTrips(test::WristArm(), {}, 2501, 1e-10);
    ExpectRoundTrips(test::Puma(), {}, 2502, 1e-10);
}

TEST(SixAxisInverse, of_tool_returns_the_joints)
{
    ExpectRoundTrips(test::WristArm(), kHeavyTool, 2503, 1e-10);
}

TEST(SixAxisInverse, of_arm_that_sags_returns_the_joints)
{
    ExpectRoundTrips(test::PumaWithGravity(), kHeavyTool, 2504, 1e-10);
}

TEST(SixAxisInverse, of_calibrated_arm_that_sags_returns_the_joints)
{
    ExpectRoundTrips(test::CalibratedWristArm(), kHeavyTool, 2505, 1e-10);
}

TEST(SixAxisInverse, eight_postures_of_several_poses_reproduce_them)
{
    const KineKinematicParam param = test::CalibratedWristArm();
    const SixAxisParams params = ParamsOf(param);
    for (const SixAngles& q :
         {SixAngles{0.3, 0.3, -0.2, 0.6, 0.7, 0.8}, SixAngles{-2.0, 0.2, -0.4, -1.0, 1.1, 2.0},
          SixAngles{1.5, 0.5, 0.2, 2.5, -0.9, -2.5}}) {
        const Pose target = PoseOf(param, q, kHeavyTool);
        for (std::int32_t cfg4 = 0; cfg4 <= 7; ++cfg4) {
            SCOPED_TRACE(test::Shown(q) + " posture " + std::to_string(cfg4));
            Axes axes{};
            ASSERT_EQ(SixAxisInverse(params, target, kHeavyTool, {0, 0, 0, cfg4}, axes), KINE_OK);
            ExpectNear(test::ToHom(test::RefToolPoint(param.SixAxis, FirstSix(axes), kHeavyTool)),
                       PoseToMatrix(target), 1e-8);
            EXPECT_EQ(SixAxisArmConfig(params, FirstSix(axes)).Cfg4, cfg4);
        }
    }
}

TEST(SixAxisInverse, uses_the_payload_of_the_tool_block)
{
    // The same target with and without the load needs joint angles that differ by the deflections.
    const KineKinematicParam param = test::CalibratedWristArm();
    const SixAxisParams params = ParamsOf(param);
    const Pose target = PoseOf(param, kSample, kHeavyTool);
    ToolBlock light = kHeavyTool;
    light.load = {};
    Axes axes{};
    ASSERT_EQ(SixAxisInverse(params, target, light, kSampleConfig, axes), KINE_OK);
    EXPECT_GT(std::fabs(axes[1] - kSample[1]), 1e-5);
    ExpectNear(test::ToHom(test::RefToolPoint(param.SixAxis, FirstSix(axes), light)), PoseToMatrix(target),
               1e-8);
}

TEST(SixAxisInverse, of_a_load_that_is_no_number_takes_the_arm_as_rigid)
{
    // As the forward operation does.
    const KineKinematicParam param = test::CalibratedWristArm();
    const Pose target = MatrixToPose(test::ToHom(test::NaiveSixAxisChain(param.SixAxis, kSample).flange));
    for (const double bad : {kNan, kInf}) {
        ToolBlock tool{};
        tool.load.mass = bad;
        Axes axes{};
        ASSERT_EQ(SixAxisInverse(ParamsOf(param), target, tool, kSampleConfig, axes), KINE_OK);
        for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], kSample[j], 1e-10);
    }
}

TEST(SixAxisInverse, of_target_on_the_joint_1_axis_is_0x6096)
{
    ExpectFails(ParamsOf(test::WristArm()), {0.0, 0.0, 1500.0, 0.0, 0.0, 0.0}, {}, kSampleConfig, 0x6096U);
}

TEST(SixAxisInverse, of_posture_number_outside_0_to_7_is_0x6090)
{
    const Pose target = PoseOf(test::WristArm(), kSample, {});
    for (const std::int32_t cfg4 : {-1, 8, INT32_MAX, INT32_MIN}) {
        ExpectFails(ParamsOf(test::WristArm()), target, {}, {0, 0, 0, cfg4}, 0x6090U);
    }
}

TEST(SixAxisInverse, of_target_beyond_the_reach_is_0x6097)
{
    // Upper arm 705, forearm hypot(135, 755) = 767, shoulder 100, flange 85: 1657 at the most.
    ExpectFails(ParamsOf(test::WristArm()), {1700.0, 0.0, 615.0, 0.0, kHalfPi, 0.0}, {}, kSampleConfig,
                0x6097U);
}

TEST(SixAxisInverse, of_straight_wrist_is_0x6098_in_every_posture_of_that_elbow)
{
    const SixAngles straight{0.3, -0.4, 0.5, 0.6, 0.0, 0.8};
    const Pose target = PoseOf(test::WristArm(), straight, {});
    ExpectFails(ParamsOf(test::WristArm()), target, {}, {0, 0, 0, 0}, 0x6098U);
    ExpectFails(ParamsOf(test::WristArm()), target, {}, {0, 0, 0, 1}, 0x6098U);
}

TEST(SixAxisInverse, of_wrist_whose_axes_are_parallel_is_0x6095)
{
    // Twists 4 and 5 of zero make joints 4, 5 and 6 turn about one line.
    KineKinematicParam param = test::WristArm();
    param.SixAxis.alpha4 = 0.0;
    param.SixAxis.alpha5 = 0.0;
    ExpectFails(ParamsOf(param), PoseOf(test::WristArm(), kSample, {}), {}, kSampleConfig, 0x6095U);
}

TEST(SixAxisInverse, of_full_chain_with_nan_is_0x6095)
{
    // What only the refinement reads.
    const Pose target = PoseOf(test::WristArm(), kSample, {});
    for (auto field :
         {&KineSixAxisParam::alpha1, &KineSixAxisParam::alpha2, &KineSixAxisParam::alpha3,
          &KineSixAxisParam::alpha4, &KineSixAxisParam::alpha5, &KineSixAxisParam::beta2,
          &KineSixAxisParam::d3, &KineSixAxisParam::d5, &KineSixAxisParam::a4, &KineSixAxisParam::a5}) {
        for (const double bad : {kNan, kInf}) {
            KineKinematicParam param = test::WristArm();
            param.SixAxis.*field = bad;
            auto axes = test::Untouched<Axes>();
            const KineResult code = SixAxisInverse(ParamsOf(param), target, {}, kSampleConfig, axes);
            EXPECT_TRUE(code == 0x6095U || code == 0x6099U || code == 0x609AU) << code;
            EXPECT_EQ(code == 0x6095U || bad == kInf, true) << code;
            EXPECT_TRUE(test::IsUntouched(axes));
        }
    }
}

TEST(SixAxisInverse, ignores_tilt_of_the_base_when_it_is_rigid)
{
    KineKinematicParam param = test::WristArm();
    param.SixAxis.mountX = kNan;
    param.SixAxis.G[0] = kNan;
    Axes axes{};
    ASSERT_EQ(SixAxisInverse(ParamsOf(param), PoseOf(test::WristArm(), kSample, {}), {}, kSampleConfig, axes),
              KINE_OK);
    for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], kSample[j], 1e-10);
}

TEST(SixAxisInverse, of_twists_with_the_opposite_signs_does_not_converge)
{
    // A chain the closed form does not describe.
    KineKinematicParam param = test::NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    const SixAxisParams nominal = ParamsOf(param);
    KineSixAxisParam& p = param.SixAxis;
    p.alpha1 = -90.0;
    p.alpha3 = -90.0;
    p.alpha4 = 90.0;
    p.alpha5 = -90.0;
    const SixAxisParams params = ParamsOf(param);
    test::SeededRandom random(2506);
    int failed = 0;
    for (int i = 0; i < 100; ++i) {
        const SixAngles q = test::RandomAngles(random, 1.2);
        SCOPED_TRACE(test::Shown(q));
        auto axes = test::Untouched<Axes>();
        const Pose target = PoseOf(param, q, {});
        if (SixAxisInverse(nominal, target, {}, {0, 0, 0, 0}, axes) != KINE_OK) continue;
        axes = test::Untouched<Axes>();
        const KineResult code = SixAxisInverse(params, target, {}, {0, 0, 0, 0}, axes);
        if (code == KINE_OK) {
            ExpectNear(test::ToHom(test::RefToolPoint(p, FirstSix(axes), {})), PoseToMatrix(target), 10.0);
            continue;
        }
        ++failed;
        EXPECT_TRUE(code == 0x6099U || code == 0x609AU) << code;
        EXPECT_TRUE(test::IsUntouched(axes));
    }
    EXPECT_GT(failed, 20);
}

TEST(SixAxisInverse, fails_closed_on_nan_and_infinity_in_target_and_tool_frame)
{
    const SixAxisParams params = ParamsOf(test::CalibratedWristArm());
    constexpr double Pose::*kFields[] = {&Pose::x, &Pose::y, &Pose::z, &Pose::a, &Pose::b, &Pose::c};
    const auto expectRefused = [&params](const Pose& target, const ToolBlock& tool) {
        auto axes = test::Untouched<Axes>();
        const KineResult code = SixAxisInverse(params, target, tool, kSampleConfig, axes);
        EXPECT_TRUE(code == 0x6096U || code == 0x6097U || code == 0x6098U) << code;
        EXPECT_TRUE(test::IsUntouched(axes));
    };
    for (const double bad : {kNan, kInf, -kInf}) {
        for (auto field : kFields) {
            Pose target = PoseOf(test::CalibratedWristArm(), kSample, {});
            target.*field = bad;
            expectRefused(target, {});
            ToolBlock tool = kHeavyTool;
            tool.frame.*field = bad;
            expectRefused(PoseOf(test::CalibratedWristArm(), kSample, {}), tool);
        }
    }
}

TEST(SixAxisInverse, never_returns_an_axis_that_is_not_finite)
{
    // Every field of the record in turn.
    const Pose target = PoseOf(test::CalibratedWristArm(), kSample, kHeavyTool);
    for (std::size_t at = 0; at < sizeof(KineSixAxisParam) / sizeof(double); ++at) {
        for (const double bad : {kNan, kInf, 1e300, 1e-300}) {
            SCOPED_TRACE(::testing::Message() << bad << " at " << at * sizeof(double));
            KineKinematicParam param = test::CalibratedWristArm();
            std::memcpy(reinterpret_cast<unsigned char*>(&param) + at * sizeof bad, &bad, sizeof bad);
            SixAxisParams params{};
            if (InitSixAxisParams(6, &param, params) != KINE_OK) continue;
            auto axes = test::Untouched<Axes>();
            if (SixAxisInverse(params, target, kHeavyTool, kSampleConfig, axes) != KINE_OK) {
                EXPECT_TRUE(test::IsUntouched(axes));
                continue;
            }
            for (const double axis : axes) EXPECT_TRUE(std::isfinite(axis));
        }
    }
}

}  // namespace
}  // namespace kine

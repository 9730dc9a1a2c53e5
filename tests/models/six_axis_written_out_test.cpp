// The whole six-axis inverse against its written-out form: the same codes, and joints equal to rounding.
#include <gtest/gtest.h>

#include <vector>

#include "models/six_axis_forward.h"
#include "models/six_axis_inverse.h"
#include "models/six_axis_posture.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"
#include "support/written_out_six_axis.h"

namespace kine {
namespace {

using test::kInf;
using test::kNan;
using test::ParamsOf;

using Axes = std::array<double, 8>;

constexpr double kDegrees = 1e-11 * DEG2RAD;

SixAngles FirstSix(const Axes& axes) { return {axes[0], axes[1], axes[2], axes[3], axes[4], axes[5]}; }

ToolBlock AnyTool(test::SeededRandom& random)
{
    const auto u = [&random](double size) { return random.Uniform(-size, size); };
    return {{u(200), u(200), u(200), u(3), u(1.4), u(3)},
            {random.Uniform(0, 20), {u(0.1), u(0.1), u(0.2)}, {}, {}}};
}

std::vector<KineKinematicParam> SampleArms()
{
    return {test::Puma(), test::PumaWithGravity(), test::WristArm(), test::CalibratedWristArm()};
}

// What the way through the angles takes from a rotation: a and c share their rounding with the smaller of
// cos b. Where both forms take that way it is nothing.
double LossOfAngles(const HomMatrix& m) { return IsGimbal(m.r) ? 0.0 : 4e-15 / std::hypot(m.r.r00, m.r.r10); }

// The code; on success the joints are compared, where the arm is far enough from its singularities.
KineResult ExpectWrittenOut(const SixAxisParams& params, const LazyPose& target, const ToolBlock& tool,
                            const KineArmConfig& config)
{
    auto axes = test::Untouched<Axes>();
    auto expected = test::Untouched<Axes>();
    const KineResult code = SixAxisInverse(params, target, tool, config, axes);
    EXPECT_EQ(code, test::WrittenOutInverse(params, target, tool, config, expected));
    EXPECT_EQ(test::IsUntouched(axes), code != KINE_OK);
    if (code != KINE_OK) return code;
    if (SixAxisSingularity(params, FirstSix(expected), 2) != 0) return code;
    const HomMatrix flange = target.AsMatrix() * MatrixInverse(PoseToMatrix(tool.frame));
    const double tolerance = std::fmax(kDegrees, LossOfAngles(target.AsMatrix()) + LossOfAngles(flange));
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(axes[i], expected[i], tolerance) << "joint " << i + 1;
    }
    EXPECT_EQ(axes[6], 0.0);
    EXPECT_EQ(axes[7], 0.0);
    return code;
}

TEST(SixAxisInverse, of_poses_in_reach_is_the_written_out_one)
{
    test::SeededRandom random(2981);
    for (const KineKinematicParam& param : SampleArms()) {
        const SixAxisParams params = ParamsOf(param);
        int solved = 0;
        for (int i = 0; i < 120; ++i) {
            const SixAngles q = test::RandomAngles(random, 3.1);
            const ToolBlock tool = AnyTool(random);
            SCOPED_TRACE(test::Shown(q));
            const LazyPose target = SixAxisToolPose(params, SinesOf(q), tool);
            for (std::int32_t posture = 0; posture < 8; ++posture) {
                KineArmConfig config = SixAxisArmConfig(params, q);
                config.Cfg4 = posture;
                solved += ExpectWrittenOut(params, target, tool, config) == KINE_OK ? 1 : 0;
                // Also from the angles of the same pose.
                ExpectWrittenOut(params, target.AsPose(), tool, config);
            }
        }
        EXPECT_GT(solved, 350);
    }
}

// Corrections from the nominal solution beyond the reach of the series, some refused.
TEST(SixAxisInverse, of_arms_far_from_nominal_is_the_written_out_one)
{
    test::SeededRandom random(2982);
    int solved = 0;
    int refused = 0;
    for (int i = 0; i < 500; ++i) {
        KineKinematicParam param = test::CalibratedWristArm();
        KineSixAxisParam& p = param.SixAxis;
        const double size = std::pow(10.0, random.Uniform(-2.0, 1.7));
        for (double* angle : {&p.alpha1, &p.alpha2, &p.alpha3, &p.alpha4, &p.alpha5, &p.beta2}) {
            *angle += random.Uniform(-size, size);
        }
        for (double* length : {&p.d3, &p.d5, &p.a4, &p.a5}) *length += 3.0 * random.Uniform(-size, size);
        const SixAxisParams params = ParamsOf(param);
        const SixAngles q{random.Uniform(-3, 3), random.Uniform(-1, 1),    random.Uniform(-1, 1),
                          random.Uniform(-3, 3), random.Uniform(0.4, 2.6), random.Uniform(-3, 3)};
        SCOPED_TRACE(::testing::Message() << test::Shown(q) << " size " << size);
        const ToolBlock tool = AnyTool(random);
        auto axes = test::Untouched<Axes>();
        auto expected = test::Untouched<Axes>();
        const LazyPose target = SixAxisToolPose(params, SinesOf(q), tool);
        const KineArmConfig config = SixAxisArmConfig(params, q);
        const KineResult code = SixAxisInverse(params, target, tool, config, axes);
        EXPECT_EQ(code, test::WrittenOutInverse(params, target, tool, config, expected));
        ++(code == KINE_OK ? solved : refused);
        if (code != KINE_OK) continue;
        // Steps that have not converged hand the rounding of the earlier ones on.
        const HomMatrix reached = SixAxisToolPose(params, SinesOf(FirstSix(expected)), tool).AsMatrix();
        const double distance = Norm(reached.t - target.Position());
        for (std::size_t j = 0; j < 6; ++j) {
            EXPECT_NEAR(axes[j], expected[j], distance < 1e-6 ? kDegrees : 1e-9) << "joint " << j + 1;
        }
    }
    EXPECT_GT(solved, 150);
    EXPECT_GT(refused, 25);
}

// Target and tool such that the flange stands inside, on the edge of and outside the gimbal, where its
// pose has an a of 0 and its rotation is another one.
TEST(SixAxisInverse, of_a_flange_at_the_gimbal_is_the_written_out_one)
{
    test::SeededRandom random(2983);
    for (const KineKinematicParam& param : {test::WristArm(), test::CalibratedWristArm()}) {
        const SixAxisParams params = ParamsOf(param);
        for (const double off : {0.0, 1e-12, 1e-7, 3e-6, 9.9e-6, 1.01e-5, 1e-4, 1e-3}) {
            for (int i = 0; i < 40; ++i) {
                const double side = i % 2 == 0 ? 1.0 : -1.0;
                const Pose flange{random.Uniform(500, 1000), random.Uniform(-400, 400),
                                  random.Uniform(400, 1200), random.Uniform(-3.0, 3.0),
                                  side * (kHalfPi - off),    random.Uniform(-3.0, 3.0)};
                const ToolBlock tool = AnyTool(random);
                SCOPED_TRACE(::testing::Message() << off << ", " << i);
                const HomMatrix target = PoseToMatrix(flange) * PoseToMatrix(tool.frame);
                ExpectWrittenOut(params, LazyPose(target), tool, {0, 0, 0, i % 8});
                // The target itself there, without a tool.
                ExpectWrittenOut(params, LazyPose(PoseToMatrix(flange)), {}, {0, 0, 0, i % 8});
                ExpectWrittenOut(params, flange, {}, {0, 0, 0, i % 8});
            }
        }
    }
}

TEST(SixAxisInverse, of_numbers_that_are_not_finite_has_the_code_of_the_written_out_one)
{
    test::SeededRandom random(2984);
    const SixAxisParams params = ParamsOf(test::CalibratedWristArm());
    const Pose good{700.0, 100.0, 900.0, 0.3, 0.4, 0.5};
    const ToolBlock goodTool = AnyTool(random);
    constexpr double Pose::*kFields[] = {&Pose::x, &Pose::y, &Pose::z, &Pose::a, &Pose::b, &Pose::c};
    ASSERT_EQ(ExpectWrittenOut(params, good, goodTool, {}), KINE_OK);
    for (const double bad : {kNan, kInf, -kInf, 1e300}) {
        for (auto field : kFields) {
            SCOPED_TRACE(bad);
            Pose target = good;
            target.*field = bad;
            ToolBlock tool = goodTool;
            tool.frame.*field = bad;
            ExpectWrittenOut(params, target, goodTool, {});
            ExpectWrittenOut(params, LazyPose(PoseToMatrix(target)), goodTool, {});
            ExpectWrittenOut(params, good, tool, {});
        }
        ToolBlock heavy = goodTool;
        heavy.load.mass = bad;
        EXPECT_EQ(ExpectWrittenOut(params, good, heavy, {}), KINE_OK);
        for (auto field : {&SixAxisParams::d3, &SixAxisParams::d5, &SixAxisParams::a4, &SixAxisParams::a5}) {
            SixAxisParams broken = params;
            broken.*field = bad;
            EXPECT_NE(ExpectWrittenOut(broken, good, goodTool, {}), KINE_OK);
        }
    }
}

}  // namespace
}  // namespace kine

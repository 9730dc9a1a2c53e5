// Targets out of reach: the six-axis inverse refuses most of them before it has all angles, with the code
// that the written-out tests give.
#include <gtest/gtest.h>

#include <cmath>

#include "models/six_axis_inverse.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/six_axis_samples.h"
#include "support/written_out_six_axis.h"

namespace kine {
namespace {

using test::kInf;
using test::kNan;
using test::ParamsOf;

// The written-out code of a target, and whether the inverse agrees: it may go on to later tests where the
// written-out ones have no objection.
KineResult ExpectWrittenOutReach(const SixAxisParams& params, const Pose& target, const Pose& tool,
                                 std::int32_t posture)
{
    const HomMatrix flange =
        PoseToMatrix(MatrixToPose(PoseToMatrix(target) * MatrixInverse(PoseToMatrix(tool))));
    const KineResult expected = test::WrittenOutReach(params, flange, posture);
    std::array<double, 8> axes{};
    // As the chains hand it over.
    const LazyPose asMatrix(PoseToMatrix(target));
    const KineResult code = SixAxisInverse(params, asMatrix, {tool, {}}, {0, 0, 0, posture}, axes);
    EXPECT_EQ(SixAxisInverse(params, target, {tool, {}}, {0, 0, 0, posture}, axes), code);
    if (expected != KINE_OK) {
        EXPECT_EQ(code, expected);
    } else {
        EXPECT_NE(code, KINE_ERR_IK_6);
        EXPECT_NE(code, KINE_ERR_CONFIG);
        EXPECT_NE(code, KINE_ERR_IK_7);
    }
    return expected;
}

// Lengths of every proportion, joint 2 above or below the base, offsets to both sides.
SixAxisParams RandomArm(test::SeededRandom& random)
{
    const auto length = [&random] { return std::pow(10.0, random.Uniform(1.0, 3.0)); };
    const auto sign = [&random] { return random.Uniform(-1, 1) < 0.0 ? -1.0 : 1.0; };
    KineKinematicParam param = test::NominalSixAxis(
        {length(), length(), length(), length(), length(), sign() * length(), sign() * length()});
    if (random.Uniform(0, 1) < 0.3) param.SixAxis.a1 = 0.0;
    if (random.Uniform(0, 1) < 0.3) param.SixAxis.d6 = 0.0;
    return ParamsOf(param);
}

Pose RandomTool(test::SeededRandom& random)
{
    const double size = random.Uniform(0, 1) < 0.3 ? 0.0 : std::pow(10.0, random.Uniform(0.0, 3.0));
    const auto u = [&random](double s) { return random.Uniform(-s, s); };
    return {u(size), u(size), u(size), u(3.0), u(1.5), u(3.0)};
}

TEST(SixAxisInverse, refuses_targets_out_of_reach_with_the_written_out_code)
{
    test::SeededRandom random(2418);
    int near = 0, far = 0, above = 0, refusedPostures = 0;
    for (int i = 0; i < 100000; ++i) {
        SCOPED_TRACE(i);
        const SixAxisParams params = RandomArm(random);
        const Pose tool = RandomTool(random);
        // From inside the arm to far away, in every direction, some straight above joint 1.
        const double reach = std::fabs(params.a2) + params.wristReach;
        const double distance = reach * std::pow(10.0, random.Uniform(-1.0, 1.5));
        const double azimuth = random.Uniform(-4.0, 4.0);
        const double elevation = random.Uniform(-1.6, 1.6);
        const double radius = random.Uniform(0, 1) < 0.1 ? 0.0 : distance * std::cos(elevation);
        const Pose target{radius * std::cos(azimuth),
                          radius * std::sin(azimuth),
                          params.d1 + distance * std::sin(elevation),
                          random.Uniform(-3.0, 3.0),
                          random.Uniform(-1.5, 1.5),
                          random.Uniform(-3.0, 3.0)};
        const auto posture = static_cast<std::int32_t>(random.Uniform(-1.5, 8.5));
        switch (ExpectWrittenOutReach(params, target, tool, posture)) {
            case KINE_OK: ++near; break;
            case KINE_ERR_IK_7: ++far; break;
            case KINE_ERR_IK_6: ++above; break;
            default: ++refusedPostures; break;
        }
    }
    EXPECT_GT(near, 1000);
    EXPECT_GT(far, 10000);
    EXPECT_GT(above, 1000);
    EXPECT_GT(refusedPostures, 1000);
}

// With a long tool the tip lies far outside of the reach, and the wrist centre may lie inside.
TEST(SixAxisInverse, refuses_with_long_tools_what_the_written_out_code_refuses)
{
    test::SeededRandom random(2421);
    int near = 0, far = 0;
    for (int i = 0; i < 20000; ++i) {
        SCOPED_TRACE(i);
        const SixAxisParams params = RandomArm(random);
        const double size = std::pow(10.0, random.Uniform(3.0, 12.0));
        const auto u = [&random](double s) { return random.Uniform(-s, s); };
        const Pose tool{u(size), u(size), u(size), u(3.0), u(1.5), u(3.0)};
        // A flange around the reach, and where the tool on it ends.
        const double reach = std::fabs(params.a2) + params.wristReach + params.d6;
        const Pose flange{u(reach), u(reach), params.d1 + u(reach), u(3.0), u(1.5), u(3.0)};
        const Pose target = MatrixToPose(PoseToMatrix(flange) * PoseToMatrix(tool));
        switch (ExpectWrittenOutReach(params, target, tool, 0)) {
            case KINE_OK: ++near; break;
            default: ++far; break;
        }
    }
    EXPECT_GT(near, 1000);
    EXPECT_GT(far, 1000);
}

// The wrist centre on the sphere that the stretched arm describes, a little inside and a little outside, also
// by less than what the tests before the angles are sure of.
TEST(SixAxisInverse, refuses_the_shell_of_the_reach_with_the_written_out_code)
{
    test::SeededRandom random(2419);
    int refused = 0;
    for (int i = 0; i < 20000; ++i) {
        SCOPED_TRACE(i);
        // Without a1, offset, flange and tool the wrist centre is the target and its distance is exact.
        const double upperArm = random.Uniform(100, 900);
        const double forearm = random.Uniform(100, 900);
        const SixAxisParams params =
            ParamsOf(test::NominalSixAxis({0.0, upperArm, 0.0, forearm, 0.0, 300.0, 0.0}));
        // An elbow cosine of -0.99999 lies some 1e-5 inside, so that no target here is close to it.
        const double off =
            (random.Uniform(-1, 1) < 0.0 ? -1.0 : 1.0) * std::pow(10.0, random.Uniform(-12, -1));
        const double distance = (upperArm + forearm) * (1.0 + off);
        const double elevation = random.Uniform(-1.5, 1.5);
        const Pose target{
            distance * std::cos(elevation), 0.0, 300.0 + distance * std::sin(elevation), 0.0, 0.5, 0.0};
        if (ExpectWrittenOutReach(params, target, {}, 0) == KINE_ERR_IK_7) ++refused;
    }
    EXPECT_GT(refused, 10000);
}

// Arms so small that 1 mm beside the line from joint 2 counts: within reach by less than 1 mm^2 of the
// squared distance, level with joint 2 and straight above it.
TEST(SixAxisInverse, does_not_refuse_a_small_arm_that_is_nearly_stretched)
{
    // An elbow cosine of -0.99998: d^2 = 100^2 + 100^2 + 2 * 100 * 100 * 0.99998.
    const double distance = std::sqrt(39999.6);
    const SixAxisParams level = ParamsOf(test::NominalSixAxis({0.0, 100.0, 0.0, 100.0, 0.0, 300.0, 0.0}));
    EXPECT_EQ(ExpectWrittenOutReach(level, {distance, 0.0, 300.0, 0.0, 0.5, 0.0}, {}, 0), KINE_OK);
    const SixAxisParams above = ParamsOf(test::NominalSixAxis({50.0, 100.0, 0.0, 100.0, 0.0, 300.0, 0.0}));
    EXPECT_EQ(ExpectWrittenOutReach(above, {50.0, 0.0, 300.0 + distance, 0.0, 0.5, 0.0}, {}, 0), KINE_OK);
}

TEST(SixAxisInverse, refuses_targets_and_tools_that_are_not_finite_with_the_written_out_code)
{
    test::SeededRandom random(2420);
    constexpr double Pose::*kPlaces[] = {&Pose::x, &Pose::y, &Pose::z, &Pose::a, &Pose::b, &Pose::c};
    const SixAxisParams params = ParamsOf(test::WristArm());
    for (const double bad : {kNan, kInf, -kInf, 1e155, -1e200, 1e308}) {
        for (const auto place : kPlaces) {
            for (const double distance : {500.0, 1e5}) {
                Pose target{distance, 0.1 * distance, 900.0, 0.3, 1.2, 0.4};
                Pose tool = RandomTool(random);
                ExpectWrittenOutReach(params, target, tool, 0);
                Pose badTool = tool;
                badTool.*place = bad;
                const KineResult ofTool = ExpectWrittenOutReach(params, target, badTool, 0);
                target.*place = bad;
                const KineResult ofTarget = ExpectWrittenOutReach(params, target, tool, 0);
                if (std::isfinite(bad)) continue;
                EXPECT_NE(ofTool, KINE_OK);
                EXPECT_NE(ofTarget, KINE_OK);
            }
        }
    }
}

}  // namespace
}  // namespace kine

// The Newton steps of the six-axis inverse against the same steps computed with difference quotients.
#include <gtest/gtest.h>

#include "models/six_axis_inverse.h"
#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::ParamsOf;

using Axes = std::array<double, 8>;

constexpr SixAngles kSample{0.3, -0.4, 0.5, 0.6, 0.7, 0.8};
constexpr KineArmConfig kSampleConfig{0, 0, 0, 0};
constexpr double kMaxFirstCorrection = 2.9670597283903604;   // 170 degrees
constexpr double kMaxLastCorrection = 0.003490658503988659;  // 0.2 degrees

Pose PoseOf(const KineKinematicParam& param, const SixAngles& q, const ToolBlock& tool)
{
    return MatrixToPose(test::ToHom(test::RefToolPoint(param.SixAxis, q, tool)));
}

// The largest correction of each Newton step when the nominal solution of kSample meets a chain that differs
// from the nominal one in a single field.
std::array<double, 4> CorrectionsFor(const KineKinematicParam& param)
{
    const test::Mat4 target = test::RefFlange(test::WristArm().SixAxis, kSample);
    std::array<double, 4> largest{};
    test::RefAngles q = kSample;
    for (double& size : largest) {
        const test::RefAngles correction = test::RefNewtonCorrection(param.SixAxis, q, {}, target);
        size = test::RefLargest(correction);
        for (std::size_t i = 0; i < 6; ++i) q[i] += correction[i];
    }
    return largest;
}

KineKinematicParam WristArmWith(double KineSixAxisParam::*field, double change)
{
    KineKinematicParam param = test::WristArm();
    param.SixAxis.*field += change;
    return param;
}

// The change of field between inside and outside at which the correction of the given step reaches limit.
double ChangeAt(double KineSixAxisParam::*field, std::size_t step, double limit, double inside,
                double outside)
{
    EXPECT_LT(CorrectionsFor(WristArmWith(field, inside))[step], limit);
    EXPECT_GT(CorrectionsFor(WristArmWith(field, outside))[step], limit);
    while (std::fabs(outside - inside) > 1e-9) {
        const double middle = 0.5 * (inside + outside);
        (CorrectionsFor(WristArmWith(field, middle))[step] < limit ? inside : outside) = middle;
    }
    return 0.5 * (inside + outside);
}

KineResult ResultOf(const KineKinematicParam& param)
{
    auto axes = test::Untouched<Axes>();
    const KineResult code =
        SixAxisInverse(ParamsOf(param), PoseOf(test::WristArm(), kSample, {}), {}, kSampleConfig, axes);
    EXPECT_EQ(test::IsUntouched(axes), code != KINE_OK);
    return code;
}

TEST(SixAxisInverse, first_correction_beyond_170_degrees_is_0x6099)
{
    // Twist 1 in degrees off its nominal 90. Within the limit the steps go on, but do not converge.
    const double limit = ChangeAt(&KineSixAxisParam::alpha1, 0, kMaxFirstCorrection, 70.0, 80.0);
    ASSERT_GT(CorrectionsFor(WristArmWith(&KineSixAxisParam::alpha1, limit - 1e-5))[3], kMaxLastCorrection);
    EXPECT_EQ(ResultOf(WristArmWith(&KineSixAxisParam::alpha1, limit + 1e-5)), 0x6099U);
    EXPECT_EQ(ResultOf(WristArmWith(&KineSixAxisParam::alpha1, limit - 1e-5)), 0x609AU);
}

TEST(SixAxisInverse, fourth_correction_beyond_a_fifth_of_a_degree_is_0x609A)
{
    // Offset 5 in mm off its nominal 0, either way.
    for (const double side : {1.0, -1.0}) {
        SCOPED_TRACE(side);
        const double limit =
            ChangeAt(&KineSixAxisParam::d5, 3, kMaxLastCorrection, 420.0 * side, 480.0 * side);
        ASSERT_LT(CorrectionsFor(WristArmWith(&KineSixAxisParam::d5, limit + side))[0], kMaxFirstCorrection);
        EXPECT_EQ(ResultOf(WristArmWith(&KineSixAxisParam::d5, limit - 1e-4 * side)), KINE_OK);
        EXPECT_EQ(ResultOf(WristArmWith(&KineSixAxisParam::d5, limit + 1e-4 * side)), 0x609AU);
    }
}

TEST(SixAxisInverse, code_follows_the_corrections_for_any_error_of_the_chain)
{
    const struct
    {
        double KineSixAxisParam::*field;
        double step;
    } sweeps[] = {{&KineSixAxisParam::alpha1, 10.0}, {&KineSixAxisParam::alpha3, 10.0},
                  {&KineSixAxisParam::alpha4, 10.0}, {&KineSixAxisParam::alpha5, 10.0},
                  {&KineSixAxisParam::d5, 60.0},     {&KineSixAxisParam::a5, 60.0}};
    for (const auto& sweep : sweeps) {
        for (int n = -18; n <= 18; ++n) {
            const KineKinematicParam param = WristArmWith(sweep.field, n * sweep.step);
            const std::array<double, 4> sizes = CorrectionsFor(param);
            // At a twist a quarter turn off the axes line up.
            if (sizes[0] > 1e6) continue;
            SCOPED_TRACE(::testing::Message()
                         << sweep.step << " * " << n << ": first " << sizes[0] << " last " << sizes[3]);
            const KineResult expected = sizes[0] > kMaxFirstCorrection  ? 0x6099U
                                        : sizes[3] > kMaxLastCorrection ? 0x609AU
                                                                        : KINE_OK;
            EXPECT_EQ(ResultOf(param), expected);
        }
    }
}

TEST(SixAxisInverse, ends_after_four_steps_converged_or_not)
{
    // An error of the chain that leaves the fourth correction at 1e-3: the fifth would be seen in the joints.
    const KineKinematicParam param = WristArmWith(&KineSixAxisParam::d5, -420.0);
    const test::Mat4 target = test::RefFlange(test::WristArm().SixAxis, kSample);
    test::RefAngles expected = kSample;
    for (int step = 0; step < 4; ++step) {
        const test::RefAngles correction = test::RefNewtonCorrection(param.SixAxis, expected, {}, target);
        for (std::size_t i = 0; i < 6; ++i) expected[i] += correction[i];
    }
    ASSERT_GT(test::RefLargest(test::RefNewtonCorrection(param.SixAxis, expected, {}, target)), 1e-7);
    Axes axes{};
    ASSERT_EQ(SixAxisInverse(ParamsOf(param), PoseOf(test::WristArm(), kSample, {}), {}, kSampleConfig, axes),
              KINE_OK);
    for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], expected[j], 1e-8);
}

TEST(SixAxisInverse, of_arm_that_sags_by_a_degree_is_exact_after_four_steps)
{
    // Such an arm shows whether the steps know how the deflection changes with the joints: if not, each of
    // them leaves a fixed share of the error, some percent here, instead of squaring it.
    KineKinematicParam param = test::WristArm();
    param.SixAxis.k2 = 4e4;
    param.SixAxis.k3 = 3e4;
    param.SixAxis.k5 = 5e3;
    const ToolBlock tool{{}, {45.0, {0.05, 0.05, 0.1}, {}, {}}};
    const test::RefVector sag = test::RefDeflection(param.SixAxis, kSample, tool.load);
    ASSERT_GT(std::fabs(sag[0]), 0.01);
    ASSERT_LT(std::fabs(sag[0]), 0.0349);
    ASSERT_LT(std::fabs(sag[1]), 0.0349);
    ASSERT_LT(std::fabs(sag[2]), 0.0349);
    Axes axes{};
    ASSERT_EQ(SixAxisInverse(ParamsOf(param), PoseOf(param, kSample, tool), tool, kSampleConfig, axes),
              KINE_OK);
    for (std::size_t j = 0; j < 6; ++j) EXPECT_NEAR(axes[j], kSample[j], 1e-12);
}

}  // namespace
}  // namespace kine

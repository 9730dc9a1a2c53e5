// The gradient of the six-axis deflection is the derivative of the deflection.
#include <gtest/gtest.h>

#include "models/six_axis_gravity.h"
#include "models/six_axis_params.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"

namespace kine::test {
namespace {

TEST(DeflectionGradient, agrees_with_differences)
{
    SeededRandom random(9001);
    KineKinematicParam param = CalibratedWristArm();
    // Weights of one size, so that no term hides behind another.
    for (double& weight : param.SixAxis.G) weight = 1e5;
    SixAxisParams params{};
    ASSERT_EQ(InitSixAxisParams(6, &param, params), KINE_OK);
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        SixAngles q{};
        for (double& angle : q) angle = random.Uniform(-3.1, 3.1);
        CombinedLoad load{};
        load.mass = random.Uniform(0.0, 15.0);
        load.centre = {random.Uniform(-0.2, 0.2), random.Uniform(-0.2, 0.2), random.Uniform(-0.2, 0.2)};
        Deflection at{};
        DeflectionGradient gradient{};
        ASSERT_EQ(GravityDeflection(params, q, load, at, gradient), KINE_OK);
        for (std::size_t k = 0; k < 6; ++k) {
            // Fourth-order differences: an error of h^4 and of rounding / h, both some 1e-14.
            constexpr double kStep = 1e-3;
            const double weights[4] = {1.0 / 12, -8.0 / 12, 8.0 / 12, -1.0 / 12};
            const double offsets[4] = {-2.0, -1.0, 1.0, 2.0};
            double by2 = 0.0, by3 = 0.0, by5 = 0.0;
            for (std::size_t n = 0; n < 4; ++n) {
                SixAngles moved = q;
                moved[k] += offsets[n] * kStep;
                Deflection d{};
                ASSERT_EQ(GravityDeflection(params, moved, load, d), KINE_OK);
                by2 += weights[n] * d.q2 / kStep;
                by3 += weights[n] * d.q3 / kStep;
                by5 += weights[n] * d.q5 / kStep;
            }
            EXPECT_NEAR(gradient.q2[k], by2, 1e-12) << "axis " << k + 1;
            EXPECT_NEAR(gradient.q3[k], by3, 1e-12) << "axis " << k + 1;
            EXPECT_NEAR(gradient.q5[k], by5, 1e-12) << "axis " << k + 1;
        }
    }
}

}  // namespace
}  // namespace kine::test

// Reading, checking and deriving the six-axis parameter block.
#include "models/six_axis_params.h"

#include "models/param_view.h"

namespace kine {

namespace {

// mm. Links that carry another link must have a length; equal passes, NaN passes.
constexpr double kMinLength = 1e-5;
// mm. Offsets may be zero, or rounding noise below it; equal passes, NaN passes.
constexpr double kMinOffset = -1e-5;

// Stiffness in N m / rad to compliance in rad / (N mm). Zero stiffness gives infinity, which makes every
// deflection fail its bound: such an arm is not corrected.
double Compliance(double stiffness) { return 1.0 / (stiffness * 1000.0); }

}  // namespace

KineResult InitSixAxisParams(std::uint32_t armType, const KineKinematicParam* param, SixAxisParams& params)
{
    if (armType != KINE_ARM_SIX_AXIS || param == nullptr) return KINE_ERR_MODEL_PARAM;
    const auto in = CopyView<KineSixAxisParam>(param, {{0, 56}, {64, 160}, {192, 272}});

    params = {};
    params.a1 = in.a1;
    params.a2 = in.a2;
    params.a3 = in.a3;
    params.d4 = in.d4;
    params.d6 = in.d6;
    params.d1 = in.d1;
    params.lateralOffset = in.lateralOffset;

    if (in.a1 < kMinOffset) return KINE_ERR_MODEL_PARAM;
    if (in.a2 < kMinLength) return KINE_ERR_MODEL_PARAM;
    if (in.a3 < kMinOffset) return KINE_ERR_MODEL_PARAM;
    if (in.d4 < kMinLength) return KINE_ERR_MODEL_PARAM;
    if (in.d6 < kMinOffset) return KINE_ERR_MODEL_PARAM;

    params.wristReach = std::sqrt(in.a3 * in.a3 + in.d4 * in.d4);
    params.elbowAngle = SafeAsin(in.a3 / params.wristReach);

    params.alpha1 = SinCosDeg(in.alpha1);
    params.alpha2 = SinCosDeg(in.alpha2);
    params.alpha3 = SinCosDeg(in.alpha3);
    params.alpha4 = SinCosDeg(in.alpha4);
    params.alpha5 = SinCosDeg(in.alpha5);
    params.beta2 = SinCosDeg(in.beta2);
    params.d3 = in.d3;
    params.d5 = in.d5;
    params.a4 = in.a4;
    params.a5 = in.a5;

    params.mountX = SinCosDeg(in.mountX);
    params.mountY = SinCosDeg(in.mountY);
    for (std::size_t i = 0; i < params.gs.size(); ++i) params.gs[i] = in.G[i] * params.mountX.cos;
    params.c2 = Compliance(in.k2);
    params.c3 = Compliance(in.k3);
    params.c5 = Compliance(in.k5);
    return KINE_OK;
}

}  // namespace kine

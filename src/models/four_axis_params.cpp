// Reading and checking the four-axis parameter block.
#include "models/four_axis_params.h"

#include "models/param_view.h"

namespace kine {

namespace {

// mm; equal passes, NaN passes. ZOffset is not checked and may be negative.
constexpr double kMinLength = 1e-5;

// Rx(alpha) * Ry(beta).
RotMatrix TiltOf(const SinCos& alpha, const SinCos& beta)
{
    return {beta.cos,
            0.0,
            beta.sin,  //
            alpha.sin * beta.sin,
            alpha.cos,
            -alpha.sin * beta.cos,  //
            -alpha.cos * beta.sin,
            alpha.sin,
            alpha.cos * beta.cos};
}

}  // namespace

KineResult InitFourAxisParams(std::uint32_t ownType, std::uint32_t armType, const KineKinematicParam* param,
                              FourAxisParams& params)
{
    if (armType != ownType || param == nullptr) return KINE_ERR_MODEL_PARAM;
    const auto in = CopyView<KineFourAxisParam>(param, {{0, 32}, {64, 96}});

    params = {};
    params.l1 = in.Link1Length;
    params.l2 = in.Link2Length;
    params.z0 = in.ZOffset;
    params.lead = in.ScrewLead;

    if (in.ScrewLead < kMinLength) return KINE_ERR_MODEL_PARAM;
    if (in.Link1Length < kMinLength) return KINE_ERR_MODEL_PARAM;
    if (in.Link2Length < kMinLength) return KINE_ERR_MODEL_PARAM;

    params.tilt1 = TiltOf(SinCosDeg(in.Link1TiltX), SinCosDeg(in.Link1TiltY));
    params.tilt2 = TiltOf(SinCosDeg(in.Link2TiltX), SinCosDeg(in.Link2TiltY));
    return KINE_OK;
}

}  // namespace kine

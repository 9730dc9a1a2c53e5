// Reading and checking the four-axis parameter block.
#include "models/four_axis_params.h"

#include "models/param_view.h"

namespace kine {

namespace {

// mm; equal passes, NaN passes. ZOffset is not checked and may be negative.
constexpr double kMinLength = 1e-5;

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

    params.alpha1 = SinCosDeg(in.Link1TiltX);
    params.alpha2 = SinCosDeg(in.Link2TiltX);
    params.beta1 = SinCosDeg(in.Link1TiltY);
    params.beta2 = SinCosDeg(in.Link2TiltY);
    return KINE_OK;
}

}  // namespace kine

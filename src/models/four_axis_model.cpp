// Arm type 4 behind the model interface.
#include "models/four_axis_model.h"

#include "models/four_axis_geometry.h"
#include "models/four_axis_inverse.h"
#include "models/quadrant.h"

namespace kine {

namespace {

// Bias of the turn window of axis 4. Arm type 4110 and GetArmConfig have another one.
constexpr double kTurnBias = 1e-5;

}  // namespace

FourAngles FourAnglesOf(const Joints& joints)
{
    return {joints.axis[0], joints.axis[1], joints.axis[2], joints.axis[3]};
}

void ReadFourAxisLimits(const FourAxisParams& params, AxisLimits& limits)
{
    for (std::size_t i = 0; i < params.upperLimit.size(); ++i) {
        limits.upper.axis[i] = params.upperLimit[i];
        limits.lower.axis[i] = params.lowerLimit[i];
    }
}

void StoreFourAxisLimits(const AxisLimits& limits, FourAxisParams& params)
{
    params.upperLimit = FourAnglesOf(limits.upper);
    params.lowerLimit = FourAnglesOf(limits.lower);
}

KineResult FourAxisModel::InitModel(std::uint32_t armType, const KineKinematicParam* param)
{
    return InitFourAxisParams(KINE_ARM_FOUR_AXIS, armType, param, params_);
}

LazyPose FourAxisModel::ForwardKinematics(Joints& joints, const ToolBlock& tool) const
{
    return FourAxisToolPose(FourAxisStateOf(params_, FourAnglesOf(joints), FourAxisToolOf(tool.frame)));
}

Pose FourAxisModel::FlangePose(const Joints& joints) const
{
    return FourAxisPlanarPose(params_, FourAnglesOf(joints));
}

KineArmConfig FourAxisModel::GetArmConfig(Joints& joints) const
{
    return {joints.axis[1] > 0.0 ? 1 : -1, 0, 0, QuadrantOf(joints.axis[3])};
}

void FourAxisModel::GetAxisLimits(AxisLimits& limits) const { ReadFourAxisLimits(params_, limits); }

void FourAxisModel::SetAxisLimits(const AxisLimits& limits) { StoreFourAxisLimits(limits, params_); }

KineResult FourAxisModel::InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                            const KineArmConfig& config, Joints& joints) const
{
    if (!IsTurnNumberServed(config.Cfg4)) return KINE_ERR_CONFIG;
    const Pose goal = FourAxisGoal(target);
    FourAxisSeed seed{};
    if (const KineResult code = FourAxisClosedForm(params_, goal, tool.frame, config.Cfg1, seed)) return code;
    if (std::fabs(seed.elbow) < kMinElbowAngle) return KINE_ERR_IK_SINGULAR;

    FourAngles q{seed.q1, seed.elbow, seed.q3, ShiftByTurn(seed.q4, config.Cfg4)};
    if (const KineResult code = FourAxisRefine(params_, goal, tool.frame, q)) return code;

    // The shift is applied a second time; the window brings the axis back. Axes 1 and 2 stay where they are.
    q[3] = ShiftByTurn(q[3], config.Cfg4);
    if (!QuadrantWindow(q[3], config.Cfg4, kTurnBias)) return KINE_ERR_IK_REACH;
    return WriteFourAxes(q, joints.axis);
}

std::uint32_t FourAxisModel::IsSingularity(const Joints& joints, std::uint32_t kind) const
{
    return FourAxisSingularity(joints.axis[1], kind);
}

}  // namespace kine

// Arm type 6 behind the model interface.
#include "models/six_axis_model.h"

#include "models/six_axis_forward.h"
#include "models/six_axis_inverse.h"
#include "models/six_axis_posture.h"

namespace kine {

namespace {

SixAngles AnglesOf(const Joints& joints)
{
    const auto& axis = joints.axis;
    return {axis[0], axis[1], axis[2], axis[3], axis[4], axis[5]};
}

}  // namespace

KineResult SixAxisModel::InitModel(std::uint32_t armType, const KineKinematicParam* param)
{
    return InitSixAxisParams(armType, param, params_);
}

LazyPose SixAxisModel::ForwardKinematics(Joints& joints, const ToolBlock& tool) const
{
    return SixAxisToolPose(params_, SinesOf(AnglesOf(joints)), tool);
}

Pose SixAxisModel::FlangePose(const Joints& joints) const
{
    return SixAxisFrame5Pose(params_, AnglesOf(joints));
}

KineArmConfig SixAxisModel::GetArmConfig(Joints& joints) const
{
    return SixAxisArmConfig(params_, AnglesOf(joints));
}

void SixAxisModel::ForwardWithConfig(const Joints& joints, const ToolBlock& tool, LazyPose& pose,
                                     KineArmConfig& config) const
{
    const SixAngles q = AnglesOf(joints);
    const JointSines sines = SinesOf(q);
    pose = SixAxisToolPose(params_, sines, tool);
    config = SixAxisArmConfig(params_, q, sines);
}

void SixAxisModel::GetAxisLimits(AxisLimits& limits) const
{
    for (std::size_t i = 0; i < params_.upperLimit.size(); ++i) {
        limits.upper.axis[i] = params_.upperLimit[i];
        limits.lower.axis[i] = params_.lowerLimit[i];
    }
}

void SixAxisModel::SetAxisLimits(const AxisLimits& limits)
{
    params_.upperLimit = AnglesOf(limits.upper);
    params_.lowerLimit = AnglesOf(limits.lower);
}

KineResult SixAxisModel::InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                           const KineArmConfig& config, Joints& joints) const
{
    return SixAxisInverse(params_, target, tool, config, joints.axis);
}

std::uint32_t SixAxisModel::IsSingularity(const Joints& joints, std::uint32_t kind) const
{
    return SixAxisSingularity(params_, AnglesOf(joints), kind);
}

}  // namespace kine

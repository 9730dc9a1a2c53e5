// Arm type 4110: the arm of type 4 with its axis 2 counted from the folded elbow (elbow angle less pi) and
// with the turns of axes 1, 2 and 4 in the configuration.
#pragma once

#include "models/arm_model.h"
#include "models/four_axis_params.h"

namespace kine {

// Makes public axes of a refined solution, whose q[1] is the elbow angle, and brings axes 1, 2 and 4 to their
// turns. KINE_ERR_IK_REACH, with q in an unspecified state, when the refinement carried one of them too many
// turns away.
[[nodiscard]] KineResult Select4110Turns(const KineArmConfig& config, FourAngles& q);

class FourAxis4110Model final : public ArmModel
{
public:
    [[nodiscard]] KineResult InitModel(std::uint32_t armType, const KineKinematicParam* param) override;

    // Adds pi to axis 2 of joints.
    [[nodiscard]] LazyPose ForwardKinematics(Joints& joints, const ToolBlock& tool) const override;

    // Takes axis 2 as the elbow angle itself, unlike ForwardKinematics.
    [[nodiscard]] Pose FlangePose(const Joints& joints) const override;

    // Wraps axis 2 of joints into +-pi.
    [[nodiscard]] KineArmConfig GetArmConfig(Joints& joints) const override;

    void GetAxisLimits(AxisLimits& limits) const override;
    void SetAxisLimits(const AxisLimits& limits) override;
    [[nodiscard]] KineResult InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                               const KineArmConfig& config, Joints& joints) const override;
    [[nodiscard]] std::uint32_t IsSingularity(const Joints& joints, std::uint32_t kind) const override;

private:
    FourAxisParams params_{};
};

}  // namespace kine

// Arm type 6: one parameter block and the operations of the six_axis_ files.
#pragma once

#include "models/arm_model.h"
#include "models/six_axis_params.h"

namespace kine {

class SixAxisModel final : public ArmModel
{
public:
    [[nodiscard]] KineResult InitModel(std::uint32_t armType, const KineKinematicParam* param) override;
    [[nodiscard]] LazyPose ForwardKinematics(Joints& joints, const ToolBlock& tool) const override;
    [[nodiscard]] Pose FlangePose(const Joints& joints) const override;
    [[nodiscard]] KineArmConfig GetArmConfig(Joints& joints) const override;
    void ForwardWithConfig(const Joints& joints, const ToolBlock& tool, LazyPose& pose,
                           KineArmConfig& config) const override;
    void GetAxisLimits(AxisLimits& limits) const override;
    void SetAxisLimits(const AxisLimits& limits) override;
    [[nodiscard]] KineResult InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                               const KineArmConfig& config, Joints& joints) const override;
    [[nodiscard]] std::uint32_t IsSingularity(const Joints& joints, std::uint32_t kind) const override;

private:
    SixAxisParams params_{};
};

}  // namespace kine

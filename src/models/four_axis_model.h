// Arm type 4: one parameter block and the operations of the four_axis_ files.
#pragma once

#include "models/arm_model.h"
#include "models/four_axis_params.h"

namespace kine {

class FourAxisModel final : public ArmModel
{
public:
    [[nodiscard]] KineResult InitModel(std::uint32_t armType, const KineKinematicParam* param) override;
    [[nodiscard]] LazyPose ForwardKinematics(Joints& joints, const ToolBlock& tool) const override;
    [[nodiscard]] Pose FlangePose(const Joints& joints) const override;
    [[nodiscard]] KineArmConfig GetArmConfig(Joints& joints) const override;
    void GetAxisLimits(AxisLimits& limits) const override;
    void SetAxisLimits(const AxisLimits& limits) override;
    [[nodiscard]] KineResult InverseKinematics(const LazyPose& target, const ToolBlock& tool,
                                               const KineArmConfig& config, Joints& joints) const override;
    [[nodiscard]] std::uint32_t IsSingularity(const Joints& joints, std::uint32_t kind) const override;

private:
    FourAxisParams params_{};
};

// The first four axes of a joint set, and the limits of these axes; shared by the four-axis models.
FourAngles FourAnglesOf(const Joints& joints);
void ReadFourAxisLimits(const FourAxisParams& params, AxisLimits& limits);
void StoreFourAxisLimits(const AxisLimits& limits, FourAxisParams& params);

}  // namespace kine

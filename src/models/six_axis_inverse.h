// Inverse kinematics of the six-axis arm: a closed form on the nominal arm, steered to posture and turns by
// the configuration, then four Newton steps on the full chain. Radians and millimetres, base frame.
#pragma once

#include <array>

#include "KineDll.h"
#include "math/lazy_pose.h"
#include "models/arm_model.h"
#include "models/six_axis_params.h"

namespace kine {

// Joints that bring the nominal flange to the given pose: six angles and two zeros.
//
// Fails closed: a comparison with NaN counts as out of range. Codes in this order: KINE_ERR_IK_6,
// KINE_ERR_CONFIG, KINE_ERR_IK_7, KINE_ERR_IK_8. Turn numbers must be served (quadrant.h).
[[nodiscard]] KineResult ClosedFormIK(const SixAxisParams& params, const HomMatrix& flange,
                                      const KineArmConfig& config, std::array<double, 8>& axes);

// Brings axes 4 and 6 of a refined solution to their turns. KINE_ERR_IK_ACCURACY when the refinement
// carried one of them too many turns away.
[[nodiscard]] KineResult SelectWristTurns(const KineArmConfig& config, SixAngles& q);

// The end of the inverse: SelectWristTurns, then the six axes and two zeros; written only on success.
[[nodiscard]] KineResult WriteSixAxes(const KineArmConfig& config, SixAngles q, std::array<double, 8>& axes);

// Joints that bring the tool block's frame to target. Writes the eight axes, and only on success; they are
// finite. Codes: KINE_ERR_CONFIG for a turn number that is not served, the closed form's, then
// KINE_ERR_SINGULAR, KINE_ERR_IK_9 and KINE_ERR_IK_ACCURACY.
[[nodiscard]] KineResult SixAxisInverse(const SixAxisParams& params, const LazyPose& target,
                                        const ToolBlock& tool, const KineArmConfig& config,
                                        std::array<double, 8>& axes);

}  // namespace kine

// Posture and singularity of the six-axis arm, on its nominal geometry.
#pragma once

#include <cstdint>

#include "KineDll.h"
#include "models/six_axis_params.h"

namespace kine {

// Bits of the posture number Cfg4.
inline constexpr std::int32_t kWristFlipped = 1;  // q5 negative
inline constexpr std::int32_t kElbowFar = 2;      // q3 at or beyond pi/2 - elbowAngle
inline constexpr std::int32_t kShoulderBack = 4;  // wrist centre behind the joint-1 axis
inline constexpr std::int32_t kMaxPosture = 7;

KineArmConfig SixAxisArmConfig(const SixAxisParams& params, const SixAngles& q);

// The same with the sines of q at hand.
KineArmConfig SixAxisArmConfig(const SixAxisParams& params, const SixAngles& q, const JointSines& sines);

// Bit 0: wrist centre near the joint-1 axis; bit 1: elbow stretched or folded; bit 2: wrist straight.
std::uint32_t SixAxisSingularity(const SixAxisParams& params, const SixAngles& q, std::uint32_t kind);

}  // namespace kine

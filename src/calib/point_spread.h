// The error report of the calibrations.
#pragma once

#include <span>

#include "KineDll.h"
#include "math/vec3.h"

namespace kine {

// Distances in mm between the positions, two or more, that one point should keep: every pair counts once. A
// NaN distance enters the mean only.
KineCalibError SpreadOf(std::span<const Vec3> positions);

}  // namespace kine

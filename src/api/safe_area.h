// The answer of the safe-area check, apart from the call that finds the position.
#pragma once

#include <cstdint>

#include "KineDll.h"

namespace kine {

// The code of a world-position call that failed; otherwise 1 for a position in the cube with this edge, its
// faces included, and 0 for one outside. centre holds three doubles; without it nothing is inside.
std::int32_t SafeAreaAnswer(KineResult code, const KinePose& position, const double* centre, double size);

}  // namespace kine

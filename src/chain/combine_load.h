// The load on the flange.
#pragma once

#include "math/transform.h"
#include "models/arm_model.h"

namespace kine {

// Tool load and payload together. The centre of the payload is moved by the position of the flange frame
// (the frame the flange carries), not turned by it. Result in metres; see CombinedLoad.
CombinedLoad CombineLoad(const Load& toolLoad, const Load& payload, const Pose& flangeFrame);

}  // namespace kine

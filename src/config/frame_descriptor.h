// Where a frame stands: fixed in the world or on a mechanical unit. Describes work objects and the robot
// base alike.
#pragma once

#include <cstdint>

#include "math/lazy_pose.h"

namespace kine {

inline constexpr std::int32_t kFixedInWorld = 2;
inline constexpr std::int32_t kOnMechUnit = 3;

struct FrameDescriptor
{
    std::int32_t mode = 0;  // kFixedInWorld or kOnMechUnit; the frame services refuse anything else
    std::int32_t unit = 0;  // index of the mechanical unit, with kOnMechUnit
    LazyPose frame;         // in the world, or in the last axis of the mechanical unit
};

}  // namespace kine

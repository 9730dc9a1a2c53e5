// The positions of taught poses, mm.
#pragma once

#include <array>
#include <span>

#include "chain/records.h"
#include "math/vec3.h"

namespace kine {

inline Vec3 PointOf(const PoseRecord& pose) { return {pose.frame.x, pose.frame.y, pose.frame.z}; }

inline std::array<Vec3, 3> PointsOf(std::span<const PoseRecord, 3> taught)
{
    return {PointOf(taught[0]), PointOf(taught[1]), PointOf(taught[2])};
}

}  // namespace kine

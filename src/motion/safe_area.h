// The cube of a safe area.
#pragma once

#include <cmath>

#include "math/vec3.h"

namespace kine {

// Whether a point lies in the axis-aligned cube with this edge length around centre, its faces included. NaN
// is outside.
inline bool IsInCube(const Vec3& point, const Vec3& centre, double edge)
{
    const double half = edge * 0.5;
    return half >= std::fabs(point.x - centre.x) && half >= std::fabs(point.y - centre.y) &&
           half >= std::fabs(point.z - centre.z);
}

}  // namespace kine

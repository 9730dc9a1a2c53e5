// The normal of a plane.
#pragma once

#include "math/vec3.h"

namespace kine {

// Normal of the plane through three points, (p2 - p1) x (p3 - p1), scaled to length. False, with normal
// untouched, when the points do not span a plane or one of them is NaN.
[[nodiscard]] bool PlaneNormal(const Vec3& p1, const Vec3& p2, const Vec3& p3, double length, Vec3& normal);

}  // namespace kine

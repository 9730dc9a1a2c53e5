// Rotation about an axis.
#pragma once

#include "math/rotation.h"
#include "math/vec3.h"

namespace kine {

// Rotation by angle (rad) about the axis, which is used as given: an axis that is not a unit vector gives a
// matrix that is not a rotation.
RotMatrix AxisAngleMatrix(const Vec3& axis, double angle);

}  // namespace kine

// AxisAngleMatrix. v: 1 - cos of the angle.
#include "motion/axis_angle.h"

#include "math/angles.h"

namespace kine {

RotMatrix AxisAngleMatrix(const Vec3& axis, double angle)
{
    const auto& [x, y, z] = axis;
    const auto [s, c] = SinCosOf(angle);
    const double v = 1.0 - c;
    return {1.0 - (y * y + z * z) * v, x * y * v - s * z,         x * z * v + s * y,  //
            x * y * v + s * z,         1.0 - (x * x + z * z) * v, y * z * v - s * x,  //
            x * z * v - s * y,         y * z * v + s * x,         1.0 - (x * x + y * y) * v};
}

}  // namespace kine

// PlaneNormal.
#include "motion/z_vector.h"

#include "math/angles.h"

namespace kine {

namespace {

// Length of the cross product, mm^2; equal fails, NaN fails. The smallest normal single-precision value: in
// practice only collinear points are below it.
constexpr double kMinNormal = 1.1754943508222875e-38;

}  // namespace

bool PlaneNormal(const Vec3& p1, const Vec3& p2, const Vec3& p3, double length, Vec3& normal)
{
    const Vec3 n = CrossProduct(p2 - p1, p3 - p1);
    const double size = Norm(n);
    if (!(size > kMinNormal)) return false;
    normal = {WithOneNaN(length * n.x / size), WithOneNaN(length * n.y / size),
              WithOneNaN(length * n.z / size)};
    return true;
}

}  // namespace kine

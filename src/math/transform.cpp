// Conversions between poses and transforms, their product, inverse and difference.
#include "math/transform.h"

#include "math/angles.h"

namespace kine {

Pose PoseDiff(const Pose& first, const Pose& second, std::int32_t flag)
{
    const RotMatrix r1 = EulerToRotMatrix(first.a, first.b, first.c);
    const RotMatrix r2 = EulerToRotMatrix(second.a, second.b, second.c);
    const Vec3 d{second.x - first.x, second.y - first.y, second.z - first.z};

    if (flag == kDiffInReference) return MatrixToPose({RotMultiply(r2, Transpose(r1)), d});
    return MatrixToPose({RotMultiply(Transpose(r1), r2), RotateBack(r1, d)});
}

}  // namespace kine

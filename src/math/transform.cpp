// Conversions between poses and transforms, their product, inverse and difference.
#include "math/transform.h"

#include "math/angles.h"

namespace kine {

HomMatrix PoseToMatrix(const Pose& pose)
{
    return {EulerToRotMatrix(pose.a, pose.b, pose.c), {pose.x, pose.y, pose.z}};
}

Pose MatrixToPose(const HomMatrix& m)
{
    const auto [a, b, c] = RotMatrixToEuler(m.r);
    return {m.t.x, m.t.y, m.t.z, a, b, c};
}

HomMatrix MatrixMultiply(const HomMatrix& a, const HomMatrix& b)
{
    return {RotMultiply(a.r, b.r), Rotate(a.r, b.t) + a.t};
}

HomMatrix MatrixInverse(const HomMatrix& m)
{
    const RotMatrix& r = m.r;
    const double det = r.r00 * (r.r11 * r.r22 - r.r12 * r.r21) - r.r01 * (r.r10 * r.r22 - r.r12 * r.r20) +
                       r.r02 * (r.r10 * r.r21 - r.r11 * r.r20);
    const RotMatrix inverse{(r.r11 * r.r22 - r.r12 * r.r21) / det, (r.r02 * r.r21 - r.r01 * r.r22) / det,
                            (r.r01 * r.r12 - r.r02 * r.r11) / det, (r.r12 * r.r20 - r.r10 * r.r22) / det,
                            (r.r00 * r.r22 - r.r02 * r.r20) / det, (r.r02 * r.r10 - r.r00 * r.r12) / det,
                            (r.r10 * r.r21 - r.r11 * r.r20) / det, (r.r01 * r.r20 - r.r00 * r.r21) / det,
                            (r.r00 * r.r11 - r.r01 * r.r10) / det};
    const Vec3 moved = Rotate(inverse, m.t);
    return {inverse, {-moved.x, -moved.y, -moved.z}};
}

HomMatrix MatrixTransX(double d) { return {kIdentityRotation, {d, 0.0, 0.0}}; }

HomMatrix MatrixRotZDeg(double angleDeg)
{
    const auto [s, c] = SinCosOf(angleDeg * DEG2RAD);
    return {{c, -s, 0.0, s, c, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}};
}

Pose PoseDiff(const Pose& first, const Pose& second, std::int32_t flag)
{
    const RotMatrix r1 = EulerToRotMatrix(first.a, first.b, first.c);
    const RotMatrix r2 = EulerToRotMatrix(second.a, second.b, second.c);
    const Vec3 d{second.x - first.x, second.y - first.y, second.z - first.z};

    if (flag == kDiffInReference) return MatrixToPose({RotMultiply(r2, Transpose(r1)), d});
    return MatrixToPose({RotMultiply(Transpose(r1), r2), RotateBack(r1, d)});
}

}  // namespace kine

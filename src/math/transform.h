// Poses (position and Euler angles) and homogeneous transforms. Radians; lengths in the caller's unit,
// millimetres throughout the library. Transforms are named target-from-source and multiply left to right:
// worldFromTcp = worldFromBase * baseFromTcp.
#pragma once

#include <cstdint>

#include "math/rotation.h"
#include "math/vec3.h"

namespace kine {

// Orientation R = Rz(a) * Ry(b) * Rx(c).
struct Pose
{
    double x, y, z;
    double a, b, c;
};

// Maps a point p of the child frame to r * p + t in the parent frame. Twelve doubles: the rotation block
// row by row, then the translation.
struct HomMatrix
{
    RotMatrix r;
    Vec3 t;
};
static_assert(sizeof(HomMatrix) == 12 * sizeof(double));

inline constexpr HomMatrix kIdentityTransform{kIdentityRotation, {0.0, 0.0, 0.0}};

// Far below overflow: the sum is finite when every element is. A sum beyond the range of doubles counts as
// not finite.
inline bool IsFinite(const HomMatrix& m) { return IsFinite(m.r) && std::isfinite(m.t.x + m.t.y + m.t.z); }

inline HomMatrix PoseToMatrix(const Pose& pose)
{
    return {EulerToRotMatrix(pose.a, pose.b, pose.c), {pose.x, pose.y, pose.z}};
}

inline Pose MatrixToPose(const HomMatrix& m)
{
    const auto [a, b, c] = RotMatrixToEuler(m.r);
    return {m.t.x, m.t.y, m.t.z, a, b, c};
}

inline HomMatrix MatrixMultiply(const HomMatrix& a, const HomMatrix& b)
{
    return {RotMultiply(a.r, b.r), Rotate(a.r, b.t) + a.t};
}

inline HomMatrix operator*(const HomMatrix& a, const HomMatrix& b) { return MatrixMultiply(a, b); }

// Inverse of any affine transform; the rotation block need not be orthonormal. A singular block gives
// infinities or NaN.
inline HomMatrix MatrixInverse(const HomMatrix& m)
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

// Translation by d along X.
inline HomMatrix MatrixTransX(double d) { return {kIdentityRotation, {d, 0.0, 0.0}}; }

// Rotation about Z. The only function here that takes degrees.
inline HomMatrix MatrixRotZDeg(double angleDeg)
{
    const auto [s, c] = SinCosOf(angleDeg * DEG2RAD);
    return {{c, -s, 0.0, s, c, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}};
}

// The value of PoseDiff's flag that asks for the difference in the reference frame of both poses.
inline constexpr std::int32_t kDiffInReference = 1;

// Difference of second relative to first: along and about the axes of their reference frame when flag is
// kDiffInReference, otherwise those of first.
Pose PoseDiff(const Pose& first, const Pose& second, std::int32_t flag);

}  // namespace kine

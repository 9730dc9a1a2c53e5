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

HomMatrix PoseToMatrix(const Pose& pose);
Pose MatrixToPose(const HomMatrix& m);

HomMatrix MatrixMultiply(const HomMatrix& a, const HomMatrix& b);
inline HomMatrix operator*(const HomMatrix& a, const HomMatrix& b) { return MatrixMultiply(a, b); }

// Inverse of any affine transform; the rotation block need not be orthonormal. A singular block gives
// infinities or NaN.
HomMatrix MatrixInverse(const HomMatrix& m);

// Translation by d along X.
HomMatrix MatrixTransX(double d);

// Rotation about Z. The only function here that takes degrees.
HomMatrix MatrixRotZDeg(double angleDeg);

// The value of PoseDiff's flag that asks for the difference in the reference frame of both poses.
inline constexpr std::int32_t kDiffInReference = 1;

// Difference of second relative to first: along and about the axes of their reference frame when flag is
// kDiffInReference, otherwise those of first.
Pose PoseDiff(const Pose& first, const Pose& second, std::int32_t flag);

}  // namespace kine

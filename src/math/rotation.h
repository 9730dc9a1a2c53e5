// 3x3 rotation matrices and their Euler angles (a, b, c) in radians, R = Rz(a) * Ry(b) * Rx(c).
#pragma once

#include "math/vec3.h"

namespace kine {

// Row-major; the columns are the axes of the rotated frame in the reference frame.
struct RotMatrix
{
    double r00, r01, r02;
    double r10, r11, r12;
    double r20, r21, r22;
};

struct EulerAngles
{
    double a;  // about Z
    double b;  // about Y
    double c;  // about X
};

inline constexpr RotMatrix kIdentityRotation{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};

RotMatrix EulerToRotMatrix(double a, double b, double c);

// The conversion in general use. Within 1e-5 of cos b = 0 only c - a or c + a is determined: a is then 0.
EulerAngles RotMatrixToEuler(const RotMatrix& r);

// The variant of the jog targets: treats only an exact zero of cos b as the special case, and there takes
// the sign of b from the sign of r20.
EulerAngles RotMatrixToEulerExact(const RotMatrix& r);

inline Vec3 AxisX(const RotMatrix& r) { return {r.r00, r.r10, r.r20}; }
inline Vec3 AxisY(const RotMatrix& r) { return {r.r01, r.r11, r.r21}; }
inline Vec3 AxisZ(const RotMatrix& r) { return {r.r02, r.r12, r.r22}; }

// The rotation with the given axes as its columns.
inline RotMatrix FromAxes(const Vec3& x, const Vec3& y, const Vec3& z)
{
    return {x.x, y.x, z.x, x.y, y.y, z.y, x.z, y.z, z.z};
}

inline RotMatrix Transpose(const RotMatrix& r)
{
    return {r.r00, r.r10, r.r20, r.r01, r.r11, r.r21, r.r02, r.r12, r.r22};
}

// R * v.
inline Vec3 Rotate(const RotMatrix& r, const Vec3& v)
{
    return {r.r00 * v.x + r.r01 * v.y + r.r02 * v.z, r.r10 * v.x + r.r11 * v.y + r.r12 * v.z,
            r.r20 * v.x + r.r21 * v.y + r.r22 * v.z};
}

// Transpose of R * v.
inline Vec3 RotateBack(const RotMatrix& r, const Vec3& v)
{
    return {r.r00 * v.x + r.r10 * v.y + r.r20 * v.z, r.r01 * v.x + r.r11 * v.y + r.r21 * v.z,
            r.r02 * v.x + r.r12 * v.y + r.r22 * v.z};
}

// A * B.
inline RotMatrix RotMultiply(const RotMatrix& a, const RotMatrix& b)
{
    return FromAxes(Rotate(a, AxisX(b)), Rotate(a, AxisY(b)), Rotate(a, AxisZ(b)));
}

}  // namespace kine

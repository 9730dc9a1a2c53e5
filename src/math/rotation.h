// 3x3 rotation matrices and their Euler angles (a, b, c) in radians, R = Rz(a) * Ry(b) * Rx(c).
#pragma once

#include "math/angles.h"
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

inline RotMatrix EulerToRotMatrix(double a, double b, double c)
{
    const auto [sa, ca] = SinCosOf(a);
    const auto [sb, cb] = SinCosOf(b);
    const auto [sc, cc] = SinCosOf(c);
    return {ca * cb,
            ca * sb * sc - sa * cc,
            ca * sb * cc + sa * sc,  //
            sa * cb,
            sa * sb * sc + ca * cc,
            sa * sb * cc - ca * sc,  //
            -sb,
            cb * sc,
            cb * cc};
}

// |r00| and |r10| strictly below this are cos b = 0; NaN is not.
inline constexpr double kGimbalLimit = 1e-5;

// Whether cos b counts as 0 in the conversion in general use.
inline bool IsGimbal(const RotMatrix& r)
{
    return std::fabs(r.r00) < kGimbalLimit && std::fabs(r.r10) < kGimbalLimit;
}

// The elements of a rotation are too small for their sum to overflow.
inline bool IsFinite(const RotMatrix& r)
{
    return std::isfinite(r.r00 + r.r01 + r.r02 + r.r10 + r.r11 + r.r12 + r.r20 + r.r21 + r.r22);
}

// The conversion in general use. Within 1e-5 of cos b = 0 only c - a or c + a is determined: a is then 0.
EulerAngles RotMatrixToEuler(const RotMatrix& r);

// The a of RotMatrixToEuler alone.
inline double HeadingOf(const RotMatrix& r) { return IsGimbal(r) ? 0.0 : std::atan2(r.r10, r.r00); }

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

// A * B. Row by row, so that neighbours in a row can be computed side by side.
inline RotMatrix RotMultiply(const RotMatrix& a, const RotMatrix& b)
{
    return {a.r00 * b.r00 + a.r01 * b.r10 + a.r02 * b.r20, a.r00 * b.r01 + a.r01 * b.r11 + a.r02 * b.r21,
            a.r00 * b.r02 + a.r01 * b.r12 + a.r02 * b.r22,  //
            a.r10 * b.r00 + a.r11 * b.r10 + a.r12 * b.r20, a.r10 * b.r01 + a.r11 * b.r11 + a.r12 * b.r21,
            a.r10 * b.r02 + a.r11 * b.r12 + a.r12 * b.r22,  //
            a.r20 * b.r00 + a.r21 * b.r10 + a.r22 * b.r20, a.r20 * b.r01 + a.r21 * b.r11 + a.r22 * b.r21,
            a.r20 * b.r02 + a.r21 * b.r12 + a.r22 * b.r22};
}

}  // namespace kine

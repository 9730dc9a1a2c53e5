// Points and frames in space, for pictures. Millimetres and degrees.
#pragma once

#include "KineDll.h"

namespace kine_cli {

struct Vec3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(double k, const Vec3& v) { return {k * v.x, k * v.y, k * v.z}; }
inline double Dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
double Length(const Vec3& v);

// The axes and the origin of a frame, in the frame that it is given in.
struct Transform
{
    Vec3 x{1.0, 0.0, 0.0};
    Vec3 y{0.0, 1.0, 0.0};
    Vec3 z{0.0, 0.0, 1.0};
    Vec3 origin;

    Vec3 Turned(const Vec3& v) const { return v.x * x + v.y * y + v.z * z; }
    Vec3 At(const Vec3& point) const { return Turned(point) + origin; }
};

Transform operator*(const Transform& a, const Transform& b);

Transform Move(const Vec3& by);
Transform TurnX(double deg);
Transform TurnY(double deg);
Transform TurnZ(double deg);
Transform FromFrame(const KineFrame& frame);

// The rotation alone.
Transform RotationOf(const Transform& transform);

}  // namespace kine_cli

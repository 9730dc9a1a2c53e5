// Vectors, rotations and frames for the analysis of taught poses: lengths in mm, angles in radians but for
// those of the library's records. The library solves; this only measures what it has solved.
#pragma once

#include <array>
#include <vector>

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
inline Vec3 Scale(double k, const Vec3& v) { return {k * v.x, k * v.y, k * v.z}; }
inline double Dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vec3 Cross(const Vec3& a, const Vec3& b);
double Norm(const Vec3& v);
Vec3 Mean(const std::vector<Vec3>& points);

// Row by row.
using Rotation = std::array<double, 9>;

// Rz(A) * Ry(B) * Rx(C)
Rotation RotationOf(const KineFrame& frame);
Vec3 Turn(const Rotation& r, const Vec3& v);
Vec3 TurnBack(const Rotation& r, const Vec3& v);
Vec3 TurnAboutZ(double angle, const Vec3& v);
Vec3 ZAxis(const Rotation& r);
// How far one orientation is turned against another, 0 to pi.
double AngleBetween(const Rotation& a, const Rotation& b);
// Between two unit vectors, 0 to pi.
double AngleBetween(const Vec3& a, const Vec3& b);

Vec3 PositionOf(const KineFrame& frame);
void SetPosition(KineFrame& frame, const Vec3& position);
// A point of the frame around, seen from `frame`.
Vec3 SeenFrom(const KineFrame& frame, const Vec3& point);
bool IsFinite(const KineFrame& frame);

double Degrees(double radians);
double Radians(double degrees);

}  // namespace kine_cli

// Three-component vectors. A vector has no operator*: write Dot or CrossProduct.
#pragma once

#include <cmath>

namespace kine {

struct Vec3
{
    double x;
    double y;
    double z;
};

inline Vec3 operator+(const Vec3& u, const Vec3& v) { return {u.x + v.x, u.y + v.y, u.z + v.z}; }

inline Vec3 operator-(const Vec3& u, const Vec3& v) { return {u.x - v.x, u.y - v.y, u.z - v.z}; }

// s * v.
inline Vec3 Scale(double s, const Vec3& v) { return {s * v.x, s * v.y, s * v.z}; }

// Each component divided by s. Not the same bits as Scale(1 / s, v).
inline Vec3 operator/(const Vec3& v, double s) { return {v.x / s, v.y / s, v.z / s}; }

inline double Dot(const Vec3& u, const Vec3& v) { return u.x * v.x + u.y * v.y + u.z * v.z; }

inline Vec3 CrossProduct(const Vec3& u, const Vec3& v)
{
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

inline double Norm(const Vec3& v) { return std::sqrt(Dot(v, v)); }

}  // namespace kine

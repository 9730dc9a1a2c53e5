#include "calib/geometry.h"

#include <cmath>
#include <numbers>

namespace kine_cli {

Vec3 Cross(const Vec3& a, const Vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Norm(const Vec3& v) { return std::sqrt(Dot(v, v)); }

Vec3 Mean(const std::vector<Vec3>& points)
{
    Vec3 sum;
    for (const Vec3& point : points) sum = sum + point;
    return Scale(1.0 / static_cast<double>(points.size()), sum);
}

double Degrees(double radians) { return radians * 180.0 / std::numbers::pi; }
double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

Rotation RotationOf(const KineFrame& frame)
{
    const double ca = std::cos(Radians(frame.A));
    const double sa = std::sin(Radians(frame.A));
    const double cb = std::cos(Radians(frame.B));
    const double sb = std::sin(Radians(frame.B));
    const double cc = std::cos(Radians(frame.C));
    const double sc = std::sin(Radians(frame.C));
    return {ca * cb,
            ca * sb * sc - sa * cc,
            ca * sb * cc + sa * sc,
            sa * cb,
            sa * sb * sc + ca * cc,
            sa * sb * cc - ca * sc,
            -sb,
            cb * sc,
            cb * cc};
}

Vec3 Turn(const Rotation& r, const Vec3& v)
{
    return {r[0] * v.x + r[1] * v.y + r[2] * v.z, r[3] * v.x + r[4] * v.y + r[5] * v.z,
            r[6] * v.x + r[7] * v.y + r[8] * v.z};
}

Vec3 TurnBack(const Rotation& r, const Vec3& v)
{
    return {r[0] * v.x + r[3] * v.y + r[6] * v.z, r[1] * v.x + r[4] * v.y + r[7] * v.z,
            r[2] * v.x + r[5] * v.y + r[8] * v.z};
}

Vec3 TurnAboutZ(double angle, const Vec3& v)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

Vec3 ZAxis(const Rotation& r) { return {r[2], r[5], r[8]}; }

double AngleBetween(const Rotation& a, const Rotation& b)
{
    // By sine and cosine of the turn M from one to the other: neither end of the range loses digits.
    const auto m = [&](std::size_t row, std::size_t column) {
        return a[row] * b[column] + a[3 + row] * b[3 + column] + a[6 + row] * b[6 + column];
    };
    const double twiceSine = Norm({m(2, 1) - m(1, 2), m(0, 2) - m(2, 0), m(1, 0) - m(0, 1)});
    return std::atan2(twiceSine, m(0, 0) + m(1, 1) + m(2, 2) - 1.0);
}

double AngleBetween(const Vec3& a, const Vec3& b) { return std::atan2(Norm(Cross(a, b)), Dot(a, b)); }

Vec3 PositionOf(const KineFrame& frame) { return {frame.X, frame.Y, frame.Z}; }

void SetPosition(KineFrame& frame, const Vec3& position)
{
    frame.X = position.x;
    frame.Y = position.y;
    frame.Z = position.z;
}

Vec3 SeenFrom(const KineFrame& frame, const Vec3& point)
{
    return TurnBack(RotationOf(frame), point - PositionOf(frame));
}

bool IsFinite(const KineFrame& frame)
{
    return std::isfinite(frame.X) && std::isfinite(frame.Y) && std::isfinite(frame.Z) &&
           std::isfinite(frame.A) && std::isfinite(frame.B) && std::isfinite(frame.C);
}

}  // namespace kine_cli

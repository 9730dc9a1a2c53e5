#include "plot/transform.h"

#include <cmath>

namespace kine_cli {
namespace {

constexpr double kRadPerDeg = 0.017453292519943295;

}  // namespace

double Length(const Vec3& v) { return std::sqrt(Dot(v, v)); }

Transform operator*(const Transform& a, const Transform& b)
{
    return {a.Turned(b.x), a.Turned(b.y), a.Turned(b.z), a.At(b.origin)};
}

Transform Move(const Vec3& by)
{
    Transform moved;
    moved.origin = by;
    return moved;
}

Transform TurnX(double deg)
{
    const double c = std::cos(deg * kRadPerDeg);
    const double s = std::sin(deg * kRadPerDeg);
    return {{1.0, 0.0, 0.0}, {0.0, c, s}, {0.0, -s, c}, {}};
}

Transform TurnY(double deg)
{
    const double c = std::cos(deg * kRadPerDeg);
    const double s = std::sin(deg * kRadPerDeg);
    return {{c, 0.0, -s}, {0.0, 1.0, 0.0}, {s, 0.0, c}, {}};
}

Transform TurnZ(double deg)
{
    const double c = std::cos(deg * kRadPerDeg);
    const double s = std::sin(deg * kRadPerDeg);
    return {{c, s, 0.0}, {-s, c, 0.0}, {0.0, 0.0, 1.0}, {}};
}

Transform FromFrame(const KineFrame& frame)
{
    return Move({frame.X, frame.Y, frame.Z}) * TurnZ(frame.A) * TurnY(frame.B) * TurnX(frame.C);
}

Transform RotationOf(const Transform& transform) { return {transform.x, transform.y, transform.z, {}}; }

}  // namespace kine_cli

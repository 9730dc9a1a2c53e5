// Points in space, in millimetres: their arithmetic, where they are in frames, and frames put together from
// directions. Written without the library.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include "KineDll.h"
#include "support/rigid_matrix.h"
#include "support/seeded_random.h"

namespace kine::test {

using Point = std::array<double, 3>;  // or a direction

inline Point operator+(const Point& a, const Point& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
inline Point operator-(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

inline Point Scaled(const Point& v, double factor) { return {v[0] * factor, v[1] * factor, v[2] * factor}; }

inline double Dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

inline Point CrossProduct(const Point& a, const Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Distance(const Point& a, const Point& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

// The direction alone.
inline Point UnitVector(const Point& v) { return Scaled(v, 1.0 / std::sqrt(Dot(v, v))); }

// A step of this length along X, Y or Z.
inline Point Along(std::size_t axis, double length)
{
    Point step{};
    step[axis] = length;
    return step;
}

inline Point AnyPoint(SeededRandom& random, double reach)
{
    return {random.Uniform(-reach, reach), random.Uniform(-reach, reach), random.Uniform(-reach, reach)};
}

inline Point PositionOf(const Mat4& m) { return {m[0][3], m[1][3], m[2][3]}; }
inline Point PositionOf(const KineFrame& frame) { return {frame.X, frame.Y, frame.Z}; }
inline Point PositionOf(const KinePose& pose) { return PositionOf(pose.Frame); }

inline Mat4 Shift(const Point& p) { return Shift(p[0], p[1], p[2]); }

// A point of the child frame in the frame of m.
inline Point operator*(const Mat4& m, const Point& p) { return PositionOf(m * Shift(p)); }

// The same orientation at another place.
inline KineFrame At(const Point& position, KineFrame frame)
{
    frame.X = position[0];
    frame.Y = position[1];
    frame.Z = position[2];
    return frame;
}

// The frame at a place with Z along one direction and X towards another: less its part along Z.
inline Mat4 FrameAlong(const Point& at, const Point& zDirection, const Point& xDirection)
{
    const Point z = UnitVector(zDirection);
    const Point x = UnitVector(xDirection - Scaled(z, Dot(xDirection, z)));
    const Point y = CrossProduct(z, x);
    Mat4 m = Shift(at);
    for (std::size_t i = 0; i < 3; ++i) {
        m[i][0] = x[i];
        m[i][1] = y[i];
        m[i][2] = z[i];
    }
    return m;
}

}  // namespace kine::test

// Poses as they are taught for a calibration, worked out with plain matrices. Degrees and millimetres.
//
// A pose touches a point when its orientation, applied to a tool point that is fixed in it, ends there.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include "KineDll.h"
#include "support/rigid_matrix.h"

namespace kine::test {

using Point = std::array<double, 3>;
using Angles = std::array<double, 3>;  // A, B, C in degrees

inline KinePose TaughtPose(const Point& at, const Angles& angles = {})
{
    KinePose pose{};
    pose.Frame = {at[0], at[1], at[2], angles[0], angles[1], angles[2]};
    return pose;
}

inline Point PlaceOf(const KinePose& pose) { return {pose.Frame.X, pose.Frame.Y, pose.Frame.Z}; }

inline Point Sum(const Point& a, const Point& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }

inline Point Difference(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

inline double Distance(const Point& a, const Point& b)
{
    const Point d = Difference(a, b);
    return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
}

// A point of the child frame in the frame of m.
inline Point Through(const Mat4& m, const Point& p)
{
    Point out{};
    for (std::size_t i = 0; i < 3; ++i) {
        out[i] = m[i][0] * p[0] + m[i][1] * p[1] + m[i][2] * p[2] + m[i][3];
    }
    return out;
}

// Where a tool point is when the flange has this pose.
inline Point TipOf(const KinePose& flange, const Point& tool)
{
    return Through(MatrixOf(flange.Frame), tool);
}

// The flange pose in this orientation whose tool point touches a point.
inline KinePose TouchingPose(const Point& tool, const Point& touched, const Angles& angles)
{
    const Point arm = TipOf(TaughtPose({}, angles), tool);
    return TaughtPose(Difference(touched, arm), angles);
}

// The same pose with the configuration and the external axes that a controller would have stored.
inline KinePose WithArmState(KinePose pose, int32_t config, double extAxis)
{
    pose.Cfg1 = pose.Cfg2 = pose.Cfg3 = pose.Cfg4 = config;
    for (double& value : pose.ExtAxis) value = extAxis;
    return pose;
}

}  // namespace kine::test

// Poses as they are taught for a calibration, worked out with plain matrices. Degrees and millimetres.
//
// A pose touches a point when its orientation, applied to a tool point that is fixed in it, ends there.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "support/numbers.h"
#include "support/points.h"

namespace kine::test {

using Angles = std::array<double, 3>;  // A, B, C in degrees

inline KinePose TaughtPose(const Point& at, const Angles& angles = {})
{
    KinePose pose{};
    pose.Frame = {at[0], at[1], at[2], angles[0], angles[1], angles[2]};
    return pose;
}

// Where a tool point is when the flange has this pose.
inline Point TipOf(const KinePose& flange, const Point& tool) { return MatrixOf(flange.Frame) * tool; }

// The flange pose in this orientation whose tool point touches a point.
inline KinePose TouchingPose(const Point& tool, const Point& touched, const Angles& angles)
{
    return TaughtPose(touched - TipOf(TaughtPose({}, angles), tool), angles);
}

// The same pose with the configuration and the external axes that a controller would have stored.
inline KinePose WithArmState(KinePose pose, int32_t config, double extAxis)
{
    pose.Cfg1 = pose.Cfg2 = pose.Cfg3 = pose.Cfg4 = config;
    for (double& value : pose.ExtAxis) value = extAxis;
    return pose;
}

// A pose of which only the position counts: angles and configuration are legal and mean nothing.
inline KinePose TaughtAt(const Point& point)
{
    KinePose pose = TaughtPose(point, {180.0, -180.0, 47.0});
    pose.Cfg1 = 7;
    pose.Cfg2 = -8;
    pose.Cfg4 = 99;
    return pose;
}

// The same with one external axis that counts: all others hold NaN.
inline KinePose TaughtAt(const Point& point, int extAxis, double value)
{
    KinePose pose = TaughtAt(point);
    for (double& other : pose.ExtAxis) other = kNan;
    pose.ExtAxis[extAxis] = value;
    return pose;
}

using ThreePoses = std::array<KinePose, 3>;

inline ThreePoses TaughtPoints(const Point& p0, const Point& p1, const Point& p2)
{
    return {TaughtAt(p0), TaughtAt(p1), TaughtAt(p2)};
}

}  // namespace kine::test

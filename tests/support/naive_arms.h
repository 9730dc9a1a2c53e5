// The rigid arms as products of elementary 4x4 matrices, straight from the parameter records. Joints in
// radians.
#pragma once

#include <array>
#include <cmath>

#include "KineDll.h"
#include "support/naive_transform.h"

namespace kine::test {

inline constexpr double kDegree = 0.017453292519943295;
inline constexpr double kQuarterTurn = 1.5707963267948966;
inline constexpr double kHalfTurn = 3.141592653589793;

// One Denavit-Hartenberg link.
inline Mat4 Link(double theta, double d, double a, double alphaDeg)
{
    return TurnZ(theta) * Shift(0.0, 0.0, d) * Shift(a, 0.0, 0.0) * TurnX(alphaDeg * kDegree);
}

// Frame 5 of the six-axis arm: neither joint 6 nor d6.
inline Mat4 NaiveFrame5(const KineSixAxisParam& p, const std::array<double, 8>& q)
{
    return Link(q[0], p.d1, p.a1, p.alpha1) * Link(q[1] + kQuarterTurn, 0.0, p.a2, p.alpha2) *
           TurnY(p.beta2 * kDegree) * Link(q[2], p.d3, p.a3, p.alpha3) * Link(q[3], p.d4, p.a4, p.alpha4) *
           Link(q[4], p.d5, p.a5, p.alpha5);
}

inline Mat4 NaiveSixAxisFlange(const KineSixAxisParam& p, const std::array<double, 8>& q)
{
    return NaiveFrame5(p, q) * TurnZ(q[5]) * Shift(0.0, 0.0, p.d6);
}

// Flange of the four-axis arms without tilts; elbow is the angle between the links.
inline Mat4 NaiveFourAxisFlange(const KineFourAxisParam& p, double q1, double elbow, double screw, double q4)
{
    return TurnZ(q1) * Shift(p.Link1Length, 0.0, 0.0) * TurnZ(elbow) * Shift(p.Link2Length, 0.0, 0.0) *
           Shift(0.0, 0.0, p.ZOffset + p.ScrewLead * screw / (2.0 * kHalfTurn)) * TurnZ(q4);
}

}  // namespace kine::test

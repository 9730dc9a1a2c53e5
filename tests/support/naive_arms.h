// The rigid arms and the mechanical units as products of plain matrices, straight from the parameter records.
// Joints in radians, or in degrees where they come as a record.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "KineDll.h"
#include "support/plain_matrix.h"

namespace kine::test {

// One Denavit-Hartenberg link.
inline Mat4 Link(double theta, double d, double a, double alphaDeg)
{
    return TurnZ(theta) * Shift(0.0, 0.0, d) * Shift(a, 0.0, 0.0) * TurnXDeg(alphaDeg);
}

// Frames 0 (base) to 5 (neither joint 6 nor d6) of the six-axis arm, and its flange. Joint i + 1 turns about
// the z axis of frame i; link 2 has a turn about y behind it.
struct SixAxisChain
{
    std::array<Mat4, 6> frame;
    Mat4 flange;
};

inline SixAxisChain NaiveSixAxisChain(const KineSixAxisParam& p, std::span<const double> q)
{
    SixAxisChain chain{};
    chain.frame[0] = Identity4();
    chain.frame[1] = chain.frame[0] * Link(q[0], p.d1, p.a1, p.alpha1);
    chain.frame[2] = chain.frame[1] * Link(q[1] + kQuarterTurn, 0.0, p.a2, p.alpha2) * TurnYDeg(p.beta2);
    chain.frame[3] = chain.frame[2] * Link(q[2], p.d3, p.a3, p.alpha3);
    chain.frame[4] = chain.frame[3] * Link(q[3], p.d4, p.a4, p.alpha4);
    chain.frame[5] = chain.frame[4] * Link(q[4], p.d5, p.a5, p.alpha5);
    chain.flange = chain.frame[5] * TurnZ(q[5]) * Shift(0.0, 0.0, p.d6);
    return chain;
}

inline SixAxisChain NaiveSixAxisChain(const KineSixAxisParam& p, const KineJoint& joints)
{
    std::array<double, 6> q{};
    for (std::size_t i = 0; i < q.size(); ++i) q[i] = InRadians(joints.Axis[i]);
    return NaiveSixAxisChain(p, q);
}

// Flange of the four-axis arms without tilts; elbow is the angle between the links.
inline Mat4 NaiveFourAxisFlange(const KineFourAxisParam& p, double q1, double elbow, double screw, double q4)
{
    return TurnZ(q1) * Shift(p.Link1Length, 0.0, 0.0) * TurnZ(elbow) * Shift(p.Link2Length, 0.0, 0.0) *
           Shift(0.0, 0.0, p.ZOffset + p.ScrewLead * screw / (2.0 * kHalfTurn)) * TurnZ(q4);
}

// World from the last axis of a mechanical unit, at values in mm or degrees. Kind 1 moves along X of the
// first frame and is turned as the second is; kind 2 turns about Z of the first frame; kind 3 turns about Z
// of both, the second riding on the first.
inline Mat4 NaiveUnit(int kind, const Mat4& first, const Mat4& second, double value1, double value2)
{
    if (kind == 1) return first * Shift(value1, 0.0, 0.0) * RotationOf(second);
    const Mat4 firstAxis = first * TurnZDeg(value1);
    return kind == 2 ? firstAxis : firstAxis * second * TurnZDeg(value2);
}

}  // namespace kine::test

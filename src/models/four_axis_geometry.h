// Geometry shared by the four-axis arms: two links turning about tilted verticals, a screw along the second
// of them and a flange turning about it. Radians and millimetres, base frame. q[1] is the elbow angle.
#pragma once

#include "KineDll.h"
#include "math/lazy_pose.h"
#include "models/four_axis_params.h"

namespace kine {

// 4x4 matrix, m[row][column].
struct Matrix4
{
    double m[4][4];
};

// What counts of a tool frame: tip in the flange and angle about Z. b and c do not.
struct FourAxisTool
{
    Vec3 tip;
    SinCos a;
};

FourAxisTool FourAxisToolOf(const Pose& tool);

// What counts of a target: position and a; b and c are 0.
inline Pose FourAxisGoal(const LazyPose& target)
{
    const Vec3 p = target.Position();
    return {p.x, p.y, p.z, target.Heading(), 0.0, 0.0};
}

// The arm with a tool at one joint set.
struct FourAxisState
{
    Vec3 axis2, axis4;  // directions of these axes
    Vec3 tool;          // flange to tip
    Vec3 fromJoint2;    // joint 2 to tip
    Vec3 tip;
    Vec3 heading;  // X axis of the tool
};

// Sines and cosines of axes 1, 2 and 4.
struct FourSines
{
    SinCos q1, q2, q4;
};

FourSines FourSinesOf(const FourAngles& q);

// q3: the angle of the screw.
FourAxisState FourAxisStateOf(const FourAxisParams& params, const FourSines& sines, double q3,
                              const FourAxisTool& tool);

inline FourAxisState FourAxisStateOf(const FourAxisParams& params, const FourAngles& q,
                                     const FourAxisTool& tool)
{
    return FourAxisStateOf(params, FourSinesOf(q), q[2], tool);
}

// Pose of the tool frame; b and c are 0.
Pose FourAxisToolPose(const FourAxisState& state);

// The flange in the plane with the heading of the forearm: z is 0 and axis 4 is left out of the heading, so
// this is not FourAxisToolPose with a zero tool. Vision calibration works with it.
Pose FourAxisPlanarPose(const FourAxisParams& params, const FourAngles& q);

// Derivatives of x, y, z and a of FourAxisToolPose by the four axes. Rows x, y, z, a. Two entries are zero
// for every tilt and exactly zero here: z by axis 1 and a by axis 3.
Matrix4 FourAxisJacobian(const FourAxisParams& params, const FourAxisState& state);

// Inverts a matrix with the two zeros of FourAxisJacobian. KINE_ERR_SINGULAR, with inverse untouched, for a
// determinant below its bound or NaN.
[[nodiscard]] KineResult Jacobian4Inverse(const Matrix4& jacobian, Matrix4& inverse);

// Solves jacobian * solution = right by Cramer's rule, without the inverse. Refuses with
// solution untouched what Jacobian4Inverse refuses: the determinants have the same bits.
[[nodiscard]] KineResult Jacobian4Solve(const Matrix4& jacobian, const std::array<double, 4>& right,
                                        std::array<double, 4>& solution);

// Nonzero for an elbow within a threshold above a multiple of pi, counted toward zero.
std::uint32_t FourAxisSingularity(double q2, std::uint32_t kind);

}  // namespace kine

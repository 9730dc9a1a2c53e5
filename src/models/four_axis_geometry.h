// Geometry shared by the four-axis arms: two links turning about tilted verticals, a screw along the second
// of them and a flange turning about it. Radians and millimetres, base frame. q[1] is the elbow angle.
#pragma once

#include "KineDll.h"
#include "math/transform.h"
#include "models/four_axis_params.h"

namespace kine {

// 4x4 matrix, m[row][column].
struct Matrix4
{
    double m[4][4];
};

// Pose of a tool frame on the flange. Of tool only x, y, z and a count; b and c of the result are 0.
Pose FourAxisToolPose(const FourAxisParams& params, const FourAngles& q, const Pose& tool);

// The flange in the plane with the heading of the forearm: z is 0 and axis 4 is left out of the heading, so
// this is not FourAxisToolPose with a zero tool. Vision calibration works with it.
Pose FourAxisPlanarPose(const FourAxisParams& params, const FourAngles& q);

// Derivatives of x, y, z and a of FourAxisToolPose by the four axes. Rows x, y, z, a. Two entries are zero
// for every tilt and exactly zero here: z by axis 1 and a by axis 3.
Matrix4 FourAxisJacobian(const FourAxisParams& params, const FourAngles& q, const Pose& tool);

// Inverts a matrix with the two zeros of FourAxisJacobian. KINE_ERR_SINGULAR, with inverse untouched, for a
// determinant below its bound or NaN.
[[nodiscard]] KineResult Jacobian4Inverse(const Matrix4& jacobian, Matrix4& inverse);

// Nonzero for an elbow within a threshold above a multiple of pi, counted toward zero.
std::uint32_t FourAxisSingularity(double q2, std::uint32_t kind);

}  // namespace kine

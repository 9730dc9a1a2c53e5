// Tool frames from taught poses. A taught pose is the transform of the flange, or of whatever else carries
// the tool point, in a fixed frame: base or world. Radians and millimetres.
//
// The solved point is called tip: fixed in the flange, and standing still in the fixed frame while it
// touches.
#pragma once

#include <cstdint>
#include <span>

#include "KineDll.h"
#include "math/transform.h"

namespace kine {

// The tip, given in the flange, in the frame of the poses.
inline Vec3 TipAt(const HomMatrix& flange, const Vec3& tip) { return Rotate(flange.r, tip) + flange.t; }

// The tip from three touching poses, with the report about them; both are written on success. Codes in this
// order: KINE_ERR_NOT_INITIALISED (armType is none of the known ones), KINE_ERR_CALIB_POINTS_CLOSE,
// KINE_ERR_CALIB_COLLINEAR, KINE_ERR_CALIB_4 (six-axis) or KINE_ERR_CALIB_SINGULAR (four-axis).
[[nodiscard]] KineResult CalcTcp3P(std::int32_t armType, std::span<const HomMatrix, 3> touching, Vec3& tip,
                                   KineCalibError& report);

// The tip from five touching poses of a six-axis arm; positions are not tested. Codes in this order:
// KINE_ERR_NOT_INITIALISED (another arm type), KINE_ERR_CALIB_SINGULAR.
[[nodiscard]] KineResult CalcTcp5P(std::int32_t armType, std::span<const HomMatrix, 5> touching, Vec3& tip,
                                   KineCalibError& report);

// The tip from two touching poses of a four-axis arm. Codes in this order: KINE_ERR_NOT_INITIALISED (another
// arm type), KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_SINGULAR.
[[nodiscard]] KineResult CalcTcpScara2P(std::int32_t armType, std::span<const HomMatrix, 2> touching,
                                        Vec3& tip);

// The pose that shows the Z direction of a tool frame: zPose itself, or on a four-axis arm, whose tools
// cannot tilt, the origin pose raised along Z.
HomMatrix ZPoseFor(std::int32_t armType, const HomMatrix& origin, const HomMatrix& zPose);

// The frame at origin with Z towards zPoint and X on the side of xPoint. Codes in this order:
// KINE_ERR_ZERO_VECTOR, KINE_ERR_CALIB_COLLINEAR.
[[nodiscard]] KineResult CalcFrameZX(const Vec3& origin, const Vec3& zPoint, const Vec3& xPoint, Pose& frame);

// The tool frame in the flange: tip as its origin, its Z and X axes along the tip's travels between three
// flange poses. Codes in this order: KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR.
[[nodiscard]] KineResult CalcToolFrameZX(const Vec3& tip, const HomMatrix& origin, const HomMatrix& zPose,
                                         const HomMatrix& xPose, Pose& frame);

}  // namespace kine

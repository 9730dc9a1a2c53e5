// Work-object frames from taught points. Points in millimetres in one frame, which is called the frame of the
// points; radians.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "KineDll.h"
#include "chain/records.h"
#include "config/mech_units.h"
#include "math/transform.h"

namespace kine {

struct CalibratedFrame
{
    Pose frame;   // in the frame of the points
    double tilt;  // rad, between the Z axes of the two frames
};

// Origin, a point on the positive X axis, and one in the XY plane with a positive y.
using FramePoints = std::array<Vec3, 3>;

// Codes in this order: KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR.
[[nodiscard]] KineResult CalcUserFrame3P(const FramePoints& points, CalibratedFrame& result);

// Keeps the Y axis horizontal. KINE_ERR_CALIB_POINTS_CLOSE for points too close and for a vertical X axis.
[[nodiscard]] KineResult CalcUserFrame2P(const Vec3& origin, const Vec3& xPoint, CalibratedFrame& result);

// The frame in the centre of the circle through three points, X towards the first, Z so that they turn about
// it anticlockwise. Codes in this order: KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR,
// KINE_ERR_CALIB_3.
[[nodiscard]] KineResult CalcCircleFrame3P(const std::array<Vec3, 3>& circle, CalibratedFrame& result);

// The points seen from a frame.
FramePoints CalcPointsInFrame(const Pose& frame, const FramePoints& points);

// Points taught in the world, seen from the last axis of a mechanical unit where it stood when each was
// taught. A unit that cannot be used leaves zero points.
FramePoints PointsOnMechUnit(const MechUnitBlock& units, std::int32_t unit,
                             std::span<const PoseRecord, 3> taught);

}  // namespace kine

// Frames of the rotary axes of a positioner, and the robot base on a track, from a mark taught at three
// values of the axis. Angles in radians, lengths in millimetres; external axes in degrees or millimetres.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "KineDll.h"
#include "chain/records.h"
#include "config/mech_units.h"
#include "math/transform.h"

namespace kine {

// The frame of a rotary axis from three positions of a mark that it turns: origin in the centre of the
// circle, Z along the axis so that they turn about it anticlockwise, X towards the first. Not finite, without
// a code, where the axis lies in the XY plane. Codes in this order: KINE_ERR_CALIB_POINTS_CLOSE,
// KINE_ERR_CALIB_COLLINEAR.
[[nodiscard]] KineResult CalcAxisFrame3P(const std::array<Vec3, 3>& mark, HomMatrix& axisFrame);

// The frame of the unit's first axis where it reads 0. Codes in this order: those of CalcAxisFrame3P,
// KINE_ERR_TOOL (unit or axis not known).
[[nodiscard]] KineResult CalcPositionerJ1(const MechUnitBlock& units, std::int32_t unit,
                                          std::span<const PoseRecord, 3> taught, Pose& frame);

// The frame of axis axisNumber, from 1, in a reference frame. Codes in this order: KINE_ERR_POSE (linear
// axis), KINE_ERR_CALIB_INPUT (axisNumber below 1), those of CalcAxisFrame3P, KINE_ERR_TOOL (unit, axis or
// second axis not known).
[[nodiscard]] KineResult CalcPositionerJn(const MechUnitBlock& units, std::int32_t unit,
                                          std::int32_t axisNumber, std::span<const PoseRecord, 3> taught,
                                          const Pose& reference, Pose& frame);

// The rotation of the robot base about Z against the track that is the unit's first axis, with the spread of
// the mark in the frame of the track. Codes in this order: KINE_ERR_POSE (not a linear axis), KINE_ERR_TOOL
// (unit or axis not known), KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_INPUT.
[[nodiscard]] KineResult CalcRobotBase(const MechUnitBlock& units, std::int32_t unit,
                                       std::span<const PoseRecord, 3> taught, Pose& frame,
                                       KineCalibError& report);

}  // namespace kine

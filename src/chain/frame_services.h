// The steps that the chains share: which frame the flange carries, where the other object stands, and the
// way from a frame to the world and back. Nothing here prints.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/frame_descriptor.h"
#include "config/mech_units.h"

namespace kine {

// KINE_ERR_HOLD_CONFLICT when tool and work object are both held or both not held.
[[nodiscard]] KineResult CheckHold(const Tool& tool, const Wobj& wobj);

// The frame carried by the flange: the tool's, or user * object of a held work object. KINE_ERR_CHAIN_1 when
// neither is held; the chains check the hold first.
[[nodiscard]] KineResult FrameOnFlange(const Tool& tool, const Wobj& wobj, Pose& frame);

// FrameOnFlange after CheckHold.
[[nodiscard]] KineResult CheckedFrameOnFlange(const Tool& tool, const Wobj& wobj, Pose& frame);

// Describes the object that is not held by the robot. KINE_ERR_HOLD_CONFLICT as in CheckHold.
[[nodiscard]] KineResult MakeFrameDescriptor(const Tool& tool, const Wobj& wobj, FrameDescriptor& descriptor);

// MakeFrameDescriptor without its hold check: KINE_ERR_CHAIN_2 when both objects are held.
[[nodiscard]] KineResult DescribeObjectInCell(const Tool& tool, const Wobj& wobj,
                                              FrameDescriptor& descriptor);

// The services below change the frame of a record in place, and nothing when they fail: configuration and
// external axes go with it as they are.

// From the described frame to the world. The external axes of the record place the mechanical unit. Codes:
// KINE_ERR_F2W_MODE, KINE_ERR_F2W_UNIT_KIND (the unit is not usable: its index, kind, axes or driving
// external axes).
[[nodiscard]] KineResult FrameToWorld(const MechUnitBlock& units, const FrameDescriptor& descriptor,
                                      PoseRecord& record);

// The way back. Codes in this order: KINE_ERR_W2F_MODE, KINE_ERR_W2F_UNIT_KIND (as above),
// KINE_ERR_AXIS_ORIGIN for a rotary axis whose frame lies exactly at the origin: it was never set up.
[[nodiscard]] KineResult WorldToFrame(const MechUnitBlock& units, const FrameDescriptor& descriptor,
                                      PoseRecord& record);

// The pose of the reference frame seen from the record's.
void InvertFrame(PoseRecord& record);

// From the carried frame in the frame of the other object to the tool centre point in the work object: the
// record as it is with a held tool, its inverse with a stationary one. KINE_ERR_CHAIN_3 when the hold flags
// contradict; the chains check the hold first.
[[nodiscard]] KineResult ToolRelativePose(const Tool& tool, const Wobj& wobj, PoseRecord& record);

}  // namespace kine

// Public records to internal forms and back. Angles change unit, positions, configuration integers and
// external axes are copied bit for bit.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/mech_units.h"

namespace kine {

Pose ToRadians(const KineFrame& frame);
PoseRecord ToRadians(const KinePose& pose);
Joints ToRadians(const KineJoint& joints);

// Scales the inertias by DEG2RAD and leaves the Aom angles in degrees.
Load ToRadians(const KineLoad& load);
Tool ToRadians(const KineTool& tool);

// The user frame is zero unless UFFix is exactly 1.
Wobj ToRadians(const KineWobj& wobj);

MechUnitSlot ToSlot(const KineMechUnit& unit);
ExtAxisSlot ToSlot(const KineExtAxisParam& param);

KineFrame ToDegrees(const Pose& pose);
KinePose ToDegrees(const PoseRecord& pose);
KineJoint ToDegrees(const Joints& joints);

}  // namespace kine

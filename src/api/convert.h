// Public records to internal forms and back. Angles change unit, positions, configuration integers and
// external axes are copied bit for bit.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/mech_units.h"
#include "math/angles.h"

namespace kine {

inline Vec3 ToVec3(const double (&v)[3]) { return {v[0], v[1], v[2]}; }

inline std::array<double, 6> ToArray(const double (&v)[6]) { return {v[0], v[1], v[2], v[3], v[4], v[5]}; }

inline Pose ToRadians(const KineFrame& frame)
{
    return {frame.X, frame.Y, frame.Z, frame.A * DEG2RAD, frame.B * DEG2RAD, frame.C * DEG2RAD};
}

inline PoseRecord ToRadians(const KinePose& pose)
{
    return {ToRadians(pose.Frame), {pose.Cfg1, pose.Cfg2, pose.Cfg3, pose.Cfg4}, ToArray(pose.ExtAxis)};
}

inline Joints ToRadians(const KineJoint& joints)
{
    Joints result{};
    for (std::size_t i = 0; i < result.axis.size(); ++i) result.axis[i] = joints.Axis[i] * DEG2RAD;
    result.extAxis = ToArray(joints.ExtAxis);
    return result;
}

// Scales the inertias by DEG2RAD and leaves the Aom angles in degrees.
inline Load ToRadians(const KineLoad& load)
{
    // The record is converted as if the inertias were the angles of a frame at Aom: nothing reads either.
    return {load.Mass, ToVec3(load.Cog), ToVec3(load.Aom), Scale(DEG2RAD, ToVec3(load.Inertia))};
}

inline Tool ToRadians(const KineTool& tool)
{
    Tool result{};
    result.heldByRobot = tool.HeldByRobot;
    result.fixedInWorld = 1;
    result.frame = ToRadians(tool.TFrame);
    result.load = ToRadians(tool.TLoad);
    return result;
}

// The user frame is zero unless UFFix is exactly 1.
inline Wobj ToRadians(const KineWobj& wobj)
{
    Wobj result{};
    result.heldByRobot = wobj.HeldByRobot;
    result.userFixed = wobj.UFFix;
    result.mechUnit = wobj.MechUnitIndex;  // NOLINT(bugprone-signed-char-misuse,cert-str34-c): with its sign
    if (wobj.UFFix == 1) result.user = ToRadians(wobj.UFrame);
    result.object = ToRadians(wobj.OFrame);
    return result;
}

MechUnitSlot ToSlot(const KineMechUnit& unit);
ExtAxisSlot ToSlot(const KineExtAxisParam& param);

KineFrame ToDegrees(const Pose& pose);
KinePose ToDegrees(const PoseRecord& pose);
KineJoint ToDegrees(const Joints& joints);

}  // namespace kine

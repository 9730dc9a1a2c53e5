// The rules by which the exports refuse a record, in degrees, before conversion: one rule set per record.
// Angles are within range when |angle| <= 180; NaN passes every rule.
#pragma once

#include <cmath>

#include "KineDll.h"
#include "config/store.h"

namespace kine {

// deg; equal passes, NaN passes.
inline constexpr double kMaxAngle = 180.0;

inline bool IsLegalAngle(double degrees) { return !(std::fabs(degrees) > kMaxAngle); }

inline bool AreLegalAngles(const double (&degrees)[3])
{
    return IsLegalAngle(degrees[0]) && IsLegalAngle(degrees[1]) && IsLegalAngle(degrees[2]);
}

// Zero passes, NaN passes.
inline bool IsNegative(double value) { return value < 0.0; }

inline bool IsLegalFrame(const KineFrame& frame)
{
    return IsLegalAngle(frame.A) && IsLegalAngle(frame.B) && IsLegalAngle(frame.C);
}

inline bool IsLegalPose(const KinePose& pose) { return IsLegalFrame(pose.Frame); }

inline bool IsLegalLoad(const KineLoad& load)
{
    return AreLegalAngles(load.Aom) && !IsNegative(load.Mass) && !IsNegative(load.Inertia[0]) &&
           !IsNegative(load.Inertia[1]) && !IsNegative(load.Inertia[2]);
}

inline bool IsLegalTool(const KineTool& tool) { return IsLegalFrame(tool.TFrame) && IsLegalLoad(tool.TLoad); }

// Prints a line when the index of the mechanical unit is refused.
bool IsLegalWobj(const Store& store, const KineWobj& wobj);

// Accepts every joint set. It holds the place, and the code, of a check of joint values.
inline bool IsLegalJoint(const KineJoint& /*joints*/) { return true; }

}  // namespace kine

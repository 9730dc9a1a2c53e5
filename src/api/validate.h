// The rules by which the exports refuse a record, in degrees, before conversion: one rule set per record.
// Angles are within range when |angle| <= 180; NaN passes every rule.
#pragma once

#include "KineDll.h"
#include "config/store.h"

namespace kine {

bool IsLegalFrame(const KineFrame& frame);
bool IsLegalPose(const KinePose& pose);
bool IsLegalLoad(const KineLoad& load);
bool IsLegalTool(const KineTool& tool);

// Prints a line when the index of the mechanical unit is refused.
bool IsLegalWobj(const Store& store, const KineWobj& wobj);

// Accepts every joint set. It holds the place, and the code, of a check of joint values.
bool IsLegalJoint(const KineJoint& joints);

}  // namespace kine

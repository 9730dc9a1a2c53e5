// Joints to the tool centre point in the base, flange, world or work object. Every failing step prints its
// numbered line once; the record is of no use then.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

// What goes into a forward chain.
struct ForwardRequest
{
    Joints joints;
    Tool tool;
    Wobj wobj;
    Load payload;
};

[[nodiscard]] KineResult JointToBase(const Store& store, const ForwardRequest& request, PoseRecord& inBase);
[[nodiscard]] KineResult JointToFlange(const Store& store, const ForwardRequest& request,
                                       PoseRecord& inFlange);
[[nodiscard]] KineResult JointToWorld(const Store& store, const ForwardRequest& request, PoseRecord& inWorld);
[[nodiscard]] KineResult JointToWobj(const Store& store, const ForwardRequest& request, PoseRecord& inWobj);

// Steps 5 to 7 of the chains: from the carried frame in the world to the tool centre point in the work
// object. Step 5 checks the hold once more.
[[nodiscard]] KineResult WorldToRelative(const Store& store, const Tool& tool, const Wobj& wobj,
                                         PoseRecord& record);

// The model's reduced pose with the configuration of the joints and external axes 0. Prints nothing.
[[nodiscard]] KineResult JointToVision(const Store& store, const Joints& joints, PoseRecord& inBase);

}  // namespace kine

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

// The model's reduced pose with the configuration of the joints and external axes 0. Prints nothing.
[[nodiscard]] KineResult JointToVision(const Store& store, const Joints& joints, PoseRecord& inBase);

}  // namespace kine

// The tool centre point in the work object to joints: the way of JointToWobj walked back.
#pragma once

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

struct InverseRequest
{
    Tool tool{};
    Wobj wobj{};
    Load payload{};
    PoseRecord target;  // in the work object
};

// Every failing step but the check of the configuration prints its numbered line once; the joints are written
// only on success.
[[nodiscard]] KineResult WobjToJoint(const Store& store, const InverseRequest& request, Joints& joints);

// Makes the target a pose of the carried frame in the frame of the other object: as it is with a held tool,
// its inverse with a stationary one. KINE_ERR_CHAIN_4 when the hold flags contradict; the chain checks the
// hold first. The target is changed in place.
[[nodiscard]] KineResult RelativeTarget(const Tool& tool, const Wobj& wobj, PoseRecord& target);

// The steps that follow, with their lines. Both begin with a hold check of their own: KINE_ERR_HOLD_CONFLICT.
// From the frame of the object in the cell through the world to the base, in place: steps 1 to 3.
[[nodiscard]] KineResult RelativeToBase(const Store& store, const Tool& tool, const Wobj& wobj,
                                        PoseRecord& pose);
// From the carried frame in the base to the joints: steps 4 and 5. The joints are written only on success.
[[nodiscard]] KineResult BaseToJoint(const Store& store, const Tool& tool, const Wobj& wobj,
                                     const Load& payload, const PoseRecord& inBase, Joints& joints);

}  // namespace kine

// Conversions of Cartesian poses between frames, and offsets; no arm is needed. Configuration and external
// axes of a result are those of the pose that goes in. Nothing here prints.
#pragma once

#include <cstdint>

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

// World to the frame of a fixed work object (user * object). Mechanical units play no part.
PoseRecord WorldToFixedWobj(const PoseRecord& inWorld, const Wobj& wobj);

// World to the frame of a work object on a flange that stands at worldFromFlange, and back.
PoseRecord WorldToHeldWobj(const PoseRecord& inWorld, const Wobj& wobj, const LazyPose& worldFromFlange);
PoseRecord HeldWobjToWorld(const PoseRecord& inWobj, const Wobj& wobj, const LazyPose& worldFromFlange);

// The modes of CoordinateToWobj. Every other mode leaves the pose as it is.
inline constexpr std::int32_t kFromWorldToFixedWobj = -1;
inline constexpr std::int32_t kFromBaseToWobj = -2;

// A pose to the work object. From the world: KINE_ERR_CRD_WOBJ for a held tool. From the base: through the
// robot mounting and the object in the cell, with the codes of the frame services.
[[nodiscard]] KineResult CoordinateToWobj(const Store& store, std::int32_t mode, const PoseRecord& pose,
                                          const Tool& tool, const Wobj& wobj, PoseRecord& result);

// Moves and turns a pose along and about its own axes.
PoseRecord OffsetInOwnFrame(const PoseRecord& pose, const Pose& offset);

// Moves a pose along the axes of its reference frame and turns it about them in place. Not a product of
// frames: the rotation of the offset does not move the position.
PoseRecord OffsetInReference(const PoseRecord& pose, const Pose& offset);

}  // namespace kine

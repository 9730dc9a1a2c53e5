// Alignment of the tool with a reference frame.
#pragma once

#include <cstdint>

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

// The frames a tool is aligned with.
enum class AlignMode : std::int32_t
{
    kWobjThroughFlange = -1,  // the work-object frame; a held work object is turned by its flange
    kBase = 2,
    kWobj = 4,
    kWorld = 5
};

struct AlignRequest
{
    std::int32_t mode;  // a value outside AlignMode is refused
    Joints current;
    Tool tool;
    Wobj wobj;
    Load payload;
};

// Joints that turn the carried frame about its origin, by the smallest rotation that brings its Z axis onto
// the nearest axis of the reference frame; written only on success. Codes: those of the model and, in world
// mode, of the carrier of the robot; KINE_ERR_DIRECTION for an undefined mode, and for the work-object modes
// with nothing on the flange; those of the forward chain with their lines (work-object modes);
// KINE_ERR_ALIGN_NO_SOLUTION; KINE_ERR_ALIGN_TURN.
[[nodiscard]] KineResult AlignTarget(const Store& store, const AlignRequest& request, Joints& target);

}  // namespace kine

// Targets of jog steps.
#pragma once

#include <array>
#include <cstdint>

#include "KineDll.h"
#include "chain/records.h"
#include "config/store.h"

namespace kine {

inline constexpr std::size_t kInchSlots = 14;

enum class InchMode : std::int32_t
{
    kJoint = 1,
    kBase = 2,
    kTool = 3,
    kWobj = 4,
    kWorld = 5
};

// One jog step. The modes are those of InchMode; any other one stays where it is.
struct InchRequest
{
    std::array<double, kInchSlots> slots;  // factors of the steps; see Kine_InchMovePosCalc
    std::int32_t mode;
    Tool tool;
    Wobj wobj;
    Load payload;
    double jointStep;     // rad
    double linearStep;    // mm
    double rotationStep;  // rad
    Joints current;
};

// Joints after the step; written only on success. Codes: KINE_ERR_NOT_INITIALISED; those of the forward and
// inverse chains with their lines (tool and work-object mode); those of the model's inverse and of the
// carrier of the robot (base and world mode); KINE_ERR_INCH_SINGULAR when the target of any mode but joint
// jog is singular.
[[nodiscard]] KineResult InchTarget(const Store& store, const InchRequest& request, Joints& target);

}  // namespace kine

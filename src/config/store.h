// The configuration of one arm and its cell. Everything below the exports takes it as an argument; only
// the exports use the one instance.
#pragma once

#include <cstdint>

#include "config/frame_descriptor.h"
#include "config/mech_units.h"
#include "models/four_axis_4110_model.h"
#include "models/four_axis_model.h"
#include "models/six_axis_model.h"

namespace kine {

inline constexpr std::int32_t kInitStateTypeStored = 1;  // an arm type is stored, nothing more
inline constexpr std::int32_t kInitStateReady = 2;       // the model accepted its parameters

struct ArmState
{
    std::int32_t armType;      // 0 at load
    std::int32_t initState;    // 0 at load
    std::int32_t modelFamily;  // 4 for both four-axis arms, 6 for the six-axis arm
};

// The configuration of the arm at its axis limits.
struct LimitConfigs
{
    KineArmConfig upper;
    KineArmConfig lower;
};

struct Store
{
    ArmState arm{};
    std::int32_t mechUnitCfgEnabled = 0;  // survives an initialisation
    MechUnitBlock mechUnits{};
    FrameDescriptor mounting{};   // of the robot base
    LimitConfigs limitConfigs{};  // of the axis limits, kept for the check of every target
    FourAxisModel fourAxis;
    SixAxisModel sixAxis;
    FourAxis4110Model fourAxis4110;
};

// Clears the mechanical units and puts the robot base at the world origin.
void ResetCell(Store& store);

// The process-wide instance: static storage, zero when the library is loaded, never freed. It has no lock:
// setup calls must not run beside other calls.
Store& Library();

}  // namespace kine

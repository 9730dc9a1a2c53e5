// Mechanical units and external axes as the store keeps them. Axis frames are transforms (mm); values of
// external axes stay in degrees or millimetres.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "math/transform.h"

namespace kine {

inline constexpr std::int32_t kMaxMechUnits = 3;
inline constexpr std::int32_t kMaxExtAxes = 6;

// Kinds of mechanical units.
inline constexpr std::int32_t kOneLinearAxis = 1;
inline constexpr std::int32_t kOneRotaryAxis = 2;
inline constexpr std::int32_t kTwoRotaryAxes = 3;

struct MechUnitSlot
{
    std::int32_t active;
    std::int32_t unitKind;
    std::int32_t option1;
    std::int32_t option2;
    std::int32_t axisCount;
    std::array<HomMatrix, kMaxExtAxes> axisFrame;
    std::array<std::int32_t, kMaxExtAxes> axisParamIndex;
};

// One external axis, stored for the caller; only word[3] is read.
struct ExtAxisSlot
{
    std::array<std::int32_t, 4> word;
    std::uint32_t raw0;
    std::uint32_t raw1;
    float angleA;  // rad
    float angleB;  // rad
    std::array<std::uint32_t, 7> value;
    std::array<std::int32_t, 3> tail;
};
static_assert(sizeof(ExtAxisSlot) == 72);

struct MechUnitBlock
{
    std::int32_t mechUnitCount;
    std::int32_t extAxisItemCount;
    std::array<MechUnitSlot, kMaxMechUnits> units;
    std::array<ExtAxisSlot, kMaxExtAxes> extAxes;
};

// The slot with this index; null when the index is negative, beyond the slots or above the unit count. An
// index equal to the count is accepted: that slot then holds whatever was stored in it.
const MechUnitSlot* FindUnit(const MechUnitBlock& block, std::int32_t unit);

// The external axis that drives an axis of a unit; nothing when the unit has no such axis or the axis names
// none of the six external axes.
std::optional<std::size_t> DrivingExtAxis(const MechUnitSlot& unit, std::int32_t axis);

struct UnitAxisInfo
{
    bool hasKind;          // the unit's kind is not 0
    std::int32_t word3;    // word[3] of the driving external axis
    std::int32_t extAxis;  // index of the driving external axis
};

// What the calibrations ask about an axis of a unit; nothing where FindUnit or DrivingExtAxis finds nothing.
std::optional<UnitAxisInfo> GetUnitAxisInfo(const MechUnitBlock& block, std::int32_t unit, std::int32_t axis);

}  // namespace kine

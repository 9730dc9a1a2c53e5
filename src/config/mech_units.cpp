// Look-ups in the mechanical units.
#include "config/mech_units.h"

namespace kine {

const MechUnitSlot* FindUnit(const MechUnitBlock& block, std::int32_t unit)
{
    if (unit < 0 || unit >= kMaxMechUnits || unit > block.mechUnitCount) return nullptr;
    return &block.units[static_cast<std::size_t>(unit)];
}

std::optional<std::size_t> DrivingExtAxis(const MechUnitSlot& unit, std::int32_t axis)
{
    if (axis < 0 || axis >= kMaxExtAxes || axis >= unit.axisCount) return std::nullopt;
    const std::int32_t extAxis = unit.axisParamIndex[static_cast<std::size_t>(axis)];
    if (extAxis < 0 || extAxis >= kMaxExtAxes) return std::nullopt;
    return static_cast<std::size_t>(extAxis);
}

std::optional<UnitAxisInfo> GetUnitAxisInfo(const MechUnitBlock& block, std::int32_t unit, std::int32_t axis)
{
    const MechUnitSlot* slot = FindUnit(block, unit);
    if (slot == nullptr) return std::nullopt;
    const std::optional<std::size_t> extAxis = DrivingExtAxis(*slot, axis);
    if (!extAxis) return std::nullopt;
    return UnitAxisInfo{slot->unitKind != 0, block.extAxes[*extAxis].word[3],
                        static_cast<std::int32_t>(*extAxis)};
}

}  // namespace kine

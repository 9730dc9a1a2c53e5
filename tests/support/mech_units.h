// Builders of mechanical units.
#pragma once

#include <cstdint>

#include "KineDll.h"

namespace kine::test {

inline constexpr uint16_t kLinearKind = 1;
inline constexpr uint16_t kRotaryKind = 2;
inline constexpr uint16_t kTwoRotaryKind = 3;

// A unit with one axis along X of rail; travel gives the orientation after the travel.
inline KineMechUnit LinearUnit(const KineFrame& rail, const KineFrame& travel, int extAxis)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = kLinearKind;
    unit.AxisCount = 1;
    unit.AxisFrame[0] = rail;
    unit.AxisFrame[1] = travel;
    unit.AxisParamIndex[0] = static_cast<uint8_t>(extAxis);
    return unit;
}

inline KineMechUnit RotaryUnit(const KineFrame& axis, int extAxis)
{
    KineMechUnit unit = LinearUnit(axis, {}, extAxis);
    unit.UnitKind = kRotaryKind;
    return unit;
}

inline KineMechUnit TwoRotaryUnit(const KineFrame& first, const KineFrame& second, int firstExtAxis,
                                  int secondExtAxis)
{
    KineMechUnit unit = LinearUnit(first, second, firstExtAxis);
    unit.UnitKind = kTwoRotaryKind;
    unit.AxisCount = 2;
    unit.AxisParamIndex[1] = static_cast<uint8_t>(secondExtAxis);
    return unit;
}

// The same unit saying, when stored at index 0, that the robot stands on unit carrier.
inline KineMechUnit CarryingRobot(KineMechUnit unit, int carrier)
{
    unit.Option1 = 1;
    unit.Option2 = static_cast<uint8_t>(carrier);
    return unit;
}

}  // namespace kine::test

// Setting up a cell through the exports, and where its mechanical units stand, apart from the library.
#pragma once

#include <gtest/gtest.h>

#include "KineDll.h"
#include "support/naive_arms.h"
#include "support/rigid_matrix.h"
#include "support/stdout_capture.h"

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

// World from the unit's last axis.
inline Mat4 UnitMatrix(const KineMechUnit& unit, const double (&extAxis)[6])
{
    const double first = extAxis[unit.AxisParamIndex[0]];
    const double second = unit.UnitKind == kTwoRotaryKind ? extAxis[unit.AxisParamIndex[1]] : 0.0;
    return NaiveUnit(unit.UnitKind, MatrixOf(unit.AxisFrame[0]), MatrixOf(unit.AxisFrame[1]), first, second);
}

// An initialised arm with mechanical units enabled and none configured.
inline void SetUpArm(const KineKinematicParam& arm)
{
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 1), KINE_OK);
    EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm), KINE_OK);
}

// A library that holds an arm type and nothing more.
inline void SetUpRefusedArm()
{
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(0, 0, 1), KINE_OK);
    EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, nullptr), KINE_ERR_MODEL_PARAM);
}

inline void SetUnitCounts(uint32_t units, uint32_t extAxisItems)
{
    EXPECT_EQ(Kine_SetMechUnitGlobalCfg(units, extAxisItems, 1), KINE_OK);
}

inline void StoreUnit(int index, const KineMechUnit& unit)
{
    EXPECT_EQ(Kine_SetMechUnitParam(index, &unit), KINE_OK);
}

// The lines that show the two counts of the store: a refused index prints them.
inline std::string UnitCountLine()
{
    const KineMechUnit unit{};
    return PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_ERR_MECH_UNIT); });
}

inline std::string ItemCountLine()
{
    const KineExtAxisParam param{};
    return PrintedBy([&] { EXPECT_EQ(Kine_SetExtAxisParam(-1, &param), KINE_ERR_EXT_AXIS_PARAM); });
}

inline std::string UnitCountLineFor(int count)
{
    return "IsLegalMechUnit:index:-1," + std::to_string(count) + "\n";
}

inline std::string ItemCountLineFor(int count)
{
    return "IsLegalExtAxisParam:index:-1," + std::to_string(count) + "\n";
}

inline void ExpectCounts(int units, int items)
{
    EXPECT_EQ(UnitCountLine(), UnitCountLineFor(units));
    EXPECT_EQ(ItemCountLine(), ItemCountLineFor(items));
}

}  // namespace kine::test

// Setting up a cell through the exports, and where its mechanical units stand, apart from the library.
#pragma once

#include <gtest/gtest.h>

#include "KineDll.h"
#include "support/mech_units.h"
#include "support/naive_arms.h"
#include "support/rigid_matrix.h"
#include "support/stdout_capture.h"

namespace kine::test {

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

// Stores of the tests' own, and the internal records that go into the chains.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "chain/records.h"
#include "config/dispatch.h"
#include "config/store.h"
#include "support/naive_transform.h"
#include "support/records.h"

namespace kine::test {

inline constexpr std::int32_t kFour = 4;
inline constexpr std::int32_t kSix = 6;
inline constexpr std::int32_t k4110 = 4110;

inline AxisLimits OpenLimits(double limit = 999.0)
{
    AxisLimits limits{};
    limits.upper.axis.fill(limit);
    limits.lower.axis.fill(-limit);
    return limits;
}

// An arm ready for use, with open limits, standing at the world origin.
inline Store ReadyStore(std::int32_t armType, const KineKinematicParam& param)
{
    Store store{};
    ResetCell(store);
    store.arm.armType = armType;
    store.arm.initState = kInitStateTypeStored;
    EXPECT_EQ(InitModel(store, &param), KINE_OK);
    store.arm.initState = kInitStateReady;
    AxisLimits limits = OpenLimits();
    EXPECT_EQ(SetAxisLimits(store, limits), KINE_OK);
    return store;
}

// The limits that the model of a type has stored, whatever the type and state of the store.
inline AxisLimits StoredLimits(Store store, std::int32_t armType)
{
    store.arm.armType = armType;
    store.arm.initState = kInitStateReady;
    AxisLimits limits{};
    EXPECT_EQ(GetAxisLimits(store, limits), KINE_OK);
    return limits;
}

// The pose that a frame stands for, bit by bit. The frame itself has bytes that stand for nothing.
inline bool SamePoseBits(const LazyPose& a, const LazyPose& b) { return SameBits(a.AsPose(), b.AsPose()); }

inline bool SameRecordBits(const PoseRecord& a, const PoseRecord& b)
{
    return SamePoseBits(a.frame, b.frame) && SameBits(a.config, b.config) && SameBits(a.extAxis, b.extAxis);
}

inline bool SameDescriptorBits(const FrameDescriptor& a, const FrameDescriptor& b)
{
    return a.mode == b.mode && a.unit == b.unit && SamePoseBits(a.frame, b.frame);
}

// A mechanical unit whose axes stand at the given frames; external axis driver drives the first of them and
// secondDriver the second.
inline MechUnitSlot MakeUnit(std::int32_t kind, const Pose& first, const Pose& second,
                             std::int32_t driver = 0, std::int32_t secondDriver = 1)
{
    MechUnitSlot unit{};
    unit.active = 1;
    unit.unitKind = kind;
    unit.axisCount = kind == kTwoRotaryAxes ? 2 : 1;
    unit.axisFrame[0] = HomOf(first);
    unit.axisFrame[1] = HomOf(second);
    unit.axisParamIndex[0] = driver;
    unit.axisParamIndex[1] = secondDriver;
    return unit;
}

// An object held (byte 1 unless told otherwise) or in the cell.
inline Tool MakeTool(std::uint8_t held, const Pose& frame)
{
    Tool tool{};
    tool.heldByRobot = held;
    tool.fixedInWorld = 1;
    tool.frame = frame;
    return tool;
}

inline Wobj MakeWobj(std::uint8_t held, const Pose& user, const Pose& object = {})
{
    Wobj wobj{};
    wobj.heldByRobot = held;
    wobj.userFixed = 1;
    wobj.user = user;
    wobj.object = object;
    return wobj;
}

inline Wobj MakeWobjOnUnit(std::int32_t unit, const Pose& object)
{
    Wobj wobj{};
    wobj.mechUnit = unit;
    wobj.object = object;
    return wobj;
}

}  // namespace kine::test

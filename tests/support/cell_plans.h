// Cells of arm, carrier and positioner, with the answers of the chains composed from plain 4x4 matrices.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "chain/forward_chain.h"
#include "support/naive_arms.h"
#include "support/naive_transform.h"
#include "support/sample_arms.h"
#include "support/stores.h"

namespace kine::test {

// Kind of unit that a cell does without.
inline constexpr std::int32_t kNoUnit = 0;

// What a cell consists of: the arm type, the kind of unit under the robot and of the unit under the work
// object.
struct CellPlan
{
    std::int32_t armType;
    std::int32_t carrierKind;
    std::int32_t positionerKind;
};

inline std::vector<CellPlan> AllCellPlans()
{
    std::vector<CellPlan> plans;
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        for (const std::int32_t carrier : {kNoUnit, kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
            for (const std::int32_t positioner : {kNoUnit, kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
                plans.push_back({type, carrier, positioner});
            }
        }
    }
    return plans;
}

inline std::string NameOf(const CellPlan& plan)
{
    return "arm type " + std::to_string(plan.armType) + ", carrier kind " + std::to_string(plan.carrierKind) +
           ", positioner kind " + std::to_string(plan.positionerKind);
}

// The carrier is unit 1, driven by external axes 4 and 1; the positioner is unit 2, driven by 0 and 5.
inline constexpr Pose kCarrierFirst{-300.0, 150.0, 80.0, 0.4, -0.2, 0.1};
inline constexpr Pose kCarrierSecond{40.0, -60.0, 120.0, -0.3, 0.5, -0.6};
inline constexpr Pose kPositionerFirst{900.0, -400.0, 300.0, -0.7, 0.3, 0.2};
inline constexpr Pose kPositionerSecond{-25.0, 35.0, 45.0, 0.6, -0.1, 0.9};
inline constexpr Pose kBaseFrame{70.0, -80.0, 90.0, 1.2, -0.3, 0.4};
inline constexpr std::array<double, 6> kExtAxis{33.0, -47.0, 1e6, -1e6, 62.0, 118.0};
inline constexpr std::array<double, 8> kAxes{2.3, -0.5, 0.7, -2.0, -0.9, 4.0, 5.0, 6.0};

inline Store MakeCell(const CellPlan& plan)
{
    Store store = ReadyStore(plan.armType, plan.armType == kSix ? WristArm() : Scara());
    store.mechUnits.mechUnitCount = 3;
    store.mechUnits.extAxisItemCount = 6;
    store.mechUnits.units[1] = MakeUnit(plan.carrierKind, kCarrierFirst, kCarrierSecond, 4, 1);
    store.mechUnits.units[2] = MakeUnit(plan.positionerKind, kPositionerFirst, kPositionerSecond, 0, 5);
    store.mounting = {plan.carrierKind == kNoUnit ? kFixedInWorld : kOnMechUnit, 1, kBaseFrame};
    return store;
}

// Cells whose carrier, unit 1, cannot be used; the positioner can.
inline std::vector<Store> CellsWithBadCarrier(const CellPlan& plan)
{
    std::vector<Store> cells(4, MakeCell(plan));
    cells[0].mechUnits.units[1].unitKind = 4;
    cells[1].mounting.unit = 3;
    cells[2].mechUnits.units[1].axisCount = 0;
    cells[3].mechUnits.units[1].axisParamIndex[0] = 6;
    return cells;
}

// Cells whose positioner, unit 2 with two axes, cannot be used; the carrier can.
inline std::vector<Store> CellsWithBadPositioner(const CellPlan& plan)
{
    std::vector<Store> cells(5, MakeCell(plan));
    cells[0].mechUnits.units[2].unitKind = 0;
    cells[1].mechUnits.mechUnitCount = 1;
    cells[2].mechUnits.units[2].axisCount = 1;
    cells[3].mechUnits.units[2].axisParamIndex[1] = 6;
    cells[4].mechUnits.units[2].axisParamIndex[1] = 255;
    return cells;
}

// The tool point of the four-axis arms is turned about z only.
inline Pose CarriedFrame(const CellPlan& plan)
{
    return plan.armType == kSix ? Pose{15.0, -25.0, 120.0, 0.5, -0.6, 0.7}
                                : Pose{15.0, -25.0, 120.0, 0.5, 0.0, 0.0};
}

inline Joints CellJoints() { return {kAxes, kExtAxis}; }

// Quarter turns and postures of kAxes: 2.3 rad lie in quarter turn 1, -0.5 in -1, -2 in -2 and 4 in 2. Wrist
// arm: the wrist centre is in front (100 + 705 sin 0.5 + 755 cos 0.2 - 135 sin 0.2 > 0), the elbow near, axis
// 5 negative.
inline KineArmConfig CellConfig(const CellPlan& plan)
{
    if (plan.armType == kSix) return {1, -2, 2, 1};
    if (plan.armType == kFour) return {-1, 0, 0, -2};
    return {1, 1, -1, -2};
}

inline Mat4 BaseFromFlange(const CellPlan& plan)
{
    if (plan.armType == kSix) return NaiveSixAxisChain(WristArm().SixAxis, kAxes).flange;
    const double elbow = plan.armType == kFour ? kAxes[1] : kAxes[1] + kHalfTurn;
    return NaiveFourAxisFlange(Scara().FourAxis, kAxes[0], elbow, kAxes[2], kAxes[3]);
}

inline Mat4 WorldFromBase(const CellPlan& plan)
{
    if (plan.carrierKind == kNoUnit) return MatrixOf(kBaseFrame);
    return NaiveUnit(plan.carrierKind, MatrixOf(kCarrierFirst), MatrixOf(kCarrierSecond), kExtAxis[4],
                     kExtAxis[1]) *
           MatrixOf(kBaseFrame);
}

// A work object in the cell whose combined frame is the given one.
inline Wobj CellWobj(const CellPlan& plan, const Pose& object)
{
    return plan.positionerKind == kNoUnit ? MakeWobj(0, object) : MakeWobjOnUnit(2, object);
}

inline Mat4 WorldFromWobj(const CellPlan& plan, const Pose& object)
{
    if (plan.positionerKind == kNoUnit) return MatrixOf(object);
    return NaiveUnit(plan.positionerKind, MatrixOf(kPositionerFirst), MatrixOf(kPositionerSecond),
                     kExtAxis[0], kExtAxis[5]) *
           MatrixOf(object);
}

}  // namespace kine::test

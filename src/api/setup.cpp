// The setup exports: the only writers of the store.
#include "KineDll.h"
#include "api/arguments.h"
#include "api/convert.h"
#include "api/record_access.h"
#include "config/dispatch.h"
#include "config/print.h"
#include "config/store.h"

using namespace kine;

namespace {

// rad. The limits of a fresh arm; no joint value comes near them.
constexpr double kDefaultLimit = 999.0;

AxisLimits DefaultLimits()
{
    AxisLimits limits{};
    limits.upper.axis.fill(kDefaultLimit);
    limits.upper.extAxis.fill(kDefaultLimit);
    limits.lower.axis.fill(-kDefaultLimit);
    limits.lower.extAxis.fill(-kDefaultLimit);
    return limits;
}

// What the robot stands on, as the unit stored at index 0 says.
FrameDescriptor MountingOf(const MechUnitSlot& unit)
{
    if (unit.option1 == 1) return {kOnMechUnit, unit.option2, {}};
    return {kFixedInWorld, 0, {}};
}

}  // namespace

KineResult Kine_InitKinematicParam(uint32_t armType, const KineKinematicParam* param)
{
    Store& store = Library();
    // Stored before the type is looked at: an unknown type also leaves the library uninitialised.
    store.arm.armType = static_cast<std::int32_t>(armType);
    store.arm.initState = kInitStateTypeStored;
    ResetCell(store);
    if (const KineResult code = InitModel(store, param)) return code;
    store.arm.initState = kInitStateReady;

    AxisLimits limits = DefaultLimits();
    return SetAxisLimits(store, limits);
}

KineResult Kine_SetAxisLimit(const KineJoint* upper, const KineJoint* lower)
{
    Store& store = Library();
    Arguments in(store);
    AxisLimits limits{};
    limits.upper = in.Take(upper);
    limits.lower = in.Take(lower);
    if (const KineResult code = in.Code()) return code;
    return SetAxisLimits(store, limits);
}

KineResult Kine_SetMechUnitGlobalCfg(uint32_t mechUnitCount, uint32_t extAxisItemCount, uint32_t enable)
{
    Store& store = Library();
    // Stored before the counts are looked at: bad counts leave the units enabled with the earlier counts.
    store.mechUnitCfgEnabled = static_cast<std::int32_t>(enable);
    if (enable == 0) return KINE_OK;

    const auto units = static_cast<std::int32_t>(mechUnitCount);
    const auto items = static_cast<std::int32_t>(extAxisItemCount);
    if (mechUnitCount > static_cast<std::uint32_t>(kMaxMechUnits)) {
        Print("IsLegalMechUnitAndExtAxisNum:mechUnitCount:%d,%d\n", {units, kMaxMechUnits});
        return KINE_ERR_MECH_UNIT_COUNT;
    }
    if (extAxisItemCount > static_cast<std::uint32_t>(kMaxExtAxes)) {
        Print("IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:%d,%d\n", {items, kMaxExtAxes});
        return KINE_ERR_MECH_UNIT_COUNT;
    }
    store.mechUnits.mechUnitCount = units;
    store.mechUnits.extAxisItemCount = items;
    return KINE_OK;
}

KineResult Kine_SetMechUnitParam(int32_t index, const KineMechUnit* unit)
{
    Store& store = Library();
    if (store.mechUnitCfgEnabled == 0) return KINE_OK;
    if (index < 0 || index >= kMaxMechUnits) {
        Print("IsLegalMechUnit:index:%d,%d\n", {index, store.mechUnits.mechUnitCount});
        return KINE_ERR_MECH_UNIT;
    }
    if (unit == nullptr) return KINE_ERR_MECH_UNIT;

    const KineMechUnit copy = CopyIn(unit);
    const std::int32_t axisCount = copy.AxisCount;
    const std::int32_t items = store.mechUnits.extAxisItemCount;
    if (copy.Active != 0 && axisCount > items) {
        // The two bytes are a full-width colon in code page GBK.
        Print(
            "IsLegalMechUnit\xA3\xBA"
            "pArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:%d,%d\n",
            {axisCount, items});
        return KINE_ERR_MECH_UNIT;
    }

    const MechUnitSlot slot = ToSlot(copy);
    store.mechUnits.units[static_cast<std::size_t>(index)] = slot;
    // Only the unit at index 0 says what the robot stands on.
    if (index == 0) store.mounting = MountingOf(slot);
    return KINE_OK;
}

KineResult Kine_SetExtAxisParam(int32_t index, const KineExtAxisParam* param)
{
    Store& store = Library();
    if (store.mechUnitCfgEnabled == 0) return KINE_OK;
    if (index < 0 || index >= kMaxExtAxes) {
        Print("IsLegalExtAxisParam:index:%d,%d\n", {index, store.mechUnits.extAxisItemCount});
        return KINE_ERR_EXT_AXIS_PARAM;
    }
    if (param == nullptr) return KINE_ERR_EXT_AXIS_PARAM;
    store.mechUnits.extAxes[static_cast<std::size_t>(index)] = ToSlot(CopyIn(param));
    return KINE_OK;
}

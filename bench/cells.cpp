// The arms and cells that are measured.
#include "cells.h"

#include <stdexcept>

#include "support/mech_units.h"
#include "support/sample_arms.h"

namespace kine::bench {

namespace {

using test::CellRecords;

// The unit under the robot and the unit under the work object; unit 0 says what carries the robot.
constexpr int kCarrierUnit = 1;
constexpr int kPositionerUnit = 2;

// The calibrated arm with one part of it taken away.
KineKinematicParam WithoutGravity(KineKinematicParam param)
{
    param.SixAxis.k2 = param.SixAxis.k3 = param.SixAxis.k5 = 0.0;
    return param;
}

KineKinematicParam OnLevelBase(KineKinematicParam param)
{
    param.SixAxis.mountX = param.SixAxis.mountY = 0.0;
    return param;
}

CellRecords EmptyCell() { return {test::HeldTool(), test::FixedWobj(), {}}; }

CellRecords LoadedCell()
{
    CellRecords records = test::WorkingCell();
    records.wobj = test::FixedWobj();
    return records;
}

CellRecords StationaryToolCell()
{
    CellRecords records = test::WorkingCell();
    records.tool = test::StationaryTool({500.0, 150.0, 300.0, 40.0, -15.0, 20.0});
    records.wobj =
        test::HeldWobj({20.0, 35.0, 110.0, -30.0, 25.0, 50.0}, {15.0, -10.0, 5.0, 10.0, -40.0, 30.0});
    return records;
}

CellRecords WobjOnPositioner()
{
    CellRecords records = test::WorkingCell();
    records.wobj = test::WobjOnUnit(kPositionerUnit, records.wobj.OFrame);
    return records;
}

constexpr KineFrame kFirstAxis = {-300.0, 150.0, 80.0, 23.0, -11.0, 6.0};
constexpr KineFrame kSecondAxis = {40.0, -60.0, 120.0, -17.0, 29.0, -34.0};

KineMechUnit NoUnit() { return {}; }
KineMechUnit Linear(int extAxis) { return test::LinearUnit(kFirstAxis, kSecondAxis, extAxis); }
KineMechUnit Rotary(int extAxis) { return test::RotaryUnit(kFirstAxis, extAxis); }
KineMechUnit TwoRotary(int extAxis)
{
    return test::TwoRotaryUnit(kFirstAxis, kSecondAxis, extAxis, extAxis + 1);
}

template <class Entry>
Entry Called(const std::vector<Entry>& entries, const std::string& name)
{
    for (const Entry& entry : entries) {
        if (entry.name == name) return entry;
    }
    throw std::out_of_range("nothing is called " + name);
}

void Require(KineResult code, const char* call)
{
    if (code != KINE_OK) throw std::runtime_error(std::string(call) + " refuses its arguments");
}

void StoreUnit(int index, const KineMechUnit& unit)
{
    Require(Kine_SetMechUnitParam(index, &unit), "Kine_SetMechUnitParam");
}

}  // namespace

std::vector<Arm> Arms()
{
    const KineKinematicParam calibrated = test::CalibratedWristArm();
    return {
        {"puma", KINE_ARM_SIX_AXIS, test::Puma()},
        {"puma_gravity", KINE_ARM_SIX_AXIS, test::PumaWithGravity()},
        {"wrist", KINE_ARM_SIX_AXIS, test::WristArm()},
        {"wrist_calibrated", KINE_ARM_SIX_AXIS, WithoutGravity(calibrated)},
        {"wrist_calibrated_gravity", KINE_ARM_SIX_AXIS, OnLevelBase(calibrated)},
        {"wrist_calibrated_gravity_tilted_base", KINE_ARM_SIX_AXIS, calibrated},
        {"four_axis", KINE_ARM_FOUR_AXIS, test::Scara()},
        {"four_axis_tilts", KINE_ARM_FOUR_AXIS, test::TiltedScara()},
        {"four_axis_4110", KINE_ARM_FOUR_AXIS_4110, test::Scara()},
        {"four_axis_4110_tilts", KINE_ARM_FOUR_AXIS_4110, test::TiltedScara()},
    };
}

Arm ArmCalled(const std::string& name) { return Called(Arms(), name); }

std::vector<Cell> Cells()
{
    const CellRecords working = test::WorkingCell();
    const CellRecords onUnit = WobjOnPositioner();
    return {
        {"empty", EmptyCell(), NoUnit(), NoUnit(), 0},
        {"loads", LoadedCell(), NoUnit(), NoUnit(), 0},
        {"loads_frames", working, NoUnit(), NoUnit(), 0},
        {"stationary_tool", StationaryToolCell(), NoUnit(), NoUnit(), 0},
        {"robot_on_linear", working, Linear(0), NoUnit(), 1},
        {"robot_on_rotary", working, Rotary(0), NoUnit(), 1},
        {"robot_on_two_rotary", working, TwoRotary(0), NoUnit(), 2},
        {"wobj_on_linear", onUnit, NoUnit(), Linear(2), 1},
        {"wobj_on_rotary", onUnit, NoUnit(), Rotary(2), 1},
        {"wobj_on_two_rotary", onUnit, NoUnit(), TwoRotary(2), 2},
        {"both_on_two_rotary", onUnit, TwoRotary(0), TwoRotary(2), 4},
    };
}

Cell CellCalled(const std::string& name) { return Called(Cells(), name); }

void SetUp(const Arm& arm, const Cell& cell)
{
    Require(Kine_InitKinematicParam(arm.type, &arm.param), "Kine_InitKinematicParam");
    constexpr std::uint32_t kUnits = 3;
    constexpr std::uint32_t kExtAxes = 6;
    Require(Kine_SetMechUnitGlobalCfg(kUnits, kExtAxes, 1), "Kine_SetMechUnitGlobalCfg");
    const bool isCarried = cell.carrier.UnitKind != 0;
    StoreUnit(0, isCarried ? test::CarryingRobot(cell.carrier, kCarrierUnit) : NoUnit());
    StoreUnit(kCarrierUnit, cell.carrier);
    StoreUnit(kPositionerUnit, cell.positioner);
}

}  // namespace kine::bench

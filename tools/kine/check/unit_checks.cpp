// Mechanical units and external axes.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "check/static_checks.h"

namespace kine_cli {
namespace {

constexpr std::uint16_t kLinearKind = 1;
constexpr std::array<const char*, 4> kKinds = {"", "linear", "rotary", "two-rotary"};

std::size_t AxesOf(const KineMechUnit& unit) { return unit.UnitKind == 3 ? 2 : 1; }

std::string UnitPath(std::size_t unit) { return Indexed("mechanical_units", unit); }
std::string AxisPath(std::size_t unit, std::size_t axis) { return Indexed(UnitPath(unit) + ".axes", axis); }

bool CarriesWorkObject(const Cell& cell, std::size_t unit)
{
    return std::any_of(cell.workObjects.begin(), cell.workObjects.end(), [&](const Named<KineWobj>& wobj) {
        return wobj.record.UFFix == 0 && wobj.record.MechUnitIndex == static_cast<int>(unit);
    });
}

bool CarriesRobot(const Cell& cell, std::size_t unit)
{
    return cell.carrier && *cell.carrier == static_cast<int>(unit);
}

void CheckAxisCount(const Cell& cell, std::size_t index, FindingList& findings)
{
    const KineMechUnit& unit = cell.units[index].record;
    const std::size_t needed = AxesOf(unit);
    const std::string what = std::string("kind \"") + kKinds[unit.UnitKind] + "\" has " +
                             std::to_string(needed) + (needed == 1 ? " axis" : " axes") + ", this unit " +
                             std::to_string(unit.AxisCount);
    if (unit.AxisCount < needed) {
        findings.Error("unit_axes_missing", UnitPath(index) + ".axes",
                       {what, "Such a unit is not usable: calls that need it end in 0x6031 or 0x6033.",
                        "Give every axis of the kind, or another kind."});
    } else if (unit.AxisCount > needed) {
        findings.Warning(
            "unit_axes_unused", AxisPath(index, needed),
            {what, "The library reads the first axes only.", "Give another kind, or leave them out."});
    }
}

void CheckDrive(const Cell& cell, std::size_t index, std::size_t axis, FindingList& findings)
{
    const KineMechUnit& unit = cell.units[index].record;
    const std::string path = AxisPath(index, axis) + ".external_axis";
    const std::size_t drive = unit.AxisParamIndex[axis];
    const std::size_t count = cell.externalAxes.size();
    if (drive >= count) {
        findings.Error(
            "external_axis_unknown", path,
            {"external axis " + std::to_string(drive) + " is not in the cell, which has " +
                 std::to_string(count) + ", counted from 0",
             drive >= kExternalAxes ? "The unit is not usable: 0x6031 or 0x6033."
                                    : "Nothing drives the axis; poses carry a value that means nothing.",
             "Count from 0, or add the axis to external_axes."});
        return;
    }
    const bool isLinear = unit.UnitKind == kLinearKind;
    if (cell.externalAxes[drive].linear != isLinear) {
        findings.Error("external_axis_kind", path,
                       {std::string("a ") + (isLinear ? "linear" : "rotary") + " unit is driven by the " +
                            (isLinear ? "rotary" : "linear") + " external axis " + std::to_string(drive),
                        "Its values would be taken as " + std::string(isLinear ? "mm" : "degrees") +
                            ", and calibrations refuse it.",
                        "Correct kind of the unit or of the external axis."});
    }
}

void CheckFrames(const Cell& cell, std::size_t index, FindingList& findings)
{
    const KineMechUnit& unit = cell.units[index].record;
    if (unit.UnitKind == kLinearKind) {
        const KineFrame& turned = unit.AxisFrame[1];
        if (turned.X != 0.0 || turned.Y != 0.0 || turned.Z != 0.0) {
            findings.Warning("position_ignored", UnitPath(index) + ".carried_frame",
                             {"the carried frame of a linear unit has a position",
                              "Only its rotation is read; its position is the travel.",
                              "Put the position into the frame of the first axis."});
        }
        return;
    }
    const bool isUsed = CarriesRobot(cell, index) || CarriesWorkObject(cell, index);
    for (std::size_t axis = 0; axis < std::min<std::size_t>(AxesOf(unit), unit.AxisCount); ++axis) {
        const KineFrame& frame = unit.AxisFrame[axis];
        if (frame.X != 0.0 || frame.Y != 0.0 || frame.Z != 0.0) continue;
        findings.Add(
            isUsed ? Severity::kError : Severity::kWarning, "axis_at_origin",
            AxisPath(index, axis) + ".frame",
            {"the frame of the rotary axis lies exactly at the origin",
             "It counts as never set up: on the way from the world the library ends in 0x6034.",
             "Give the frame that a calibration has found; for an axis that truly stands there 0.001 mm."});
    }
}

// External axes that drive two axes, or none.
void CheckDriven(const Cell& cell, FindingList& findings)
{
    std::vector<std::string> users(cell.externalAxes.size());
    for (std::size_t index = 0; index < cell.units.size(); ++index) {
        const KineMechUnit& unit = cell.units[index].record;
        for (std::size_t axis = 0; axis < std::min<std::size_t>(AxesOf(unit), unit.AxisCount); ++axis) {
            const std::size_t drive = unit.AxisParamIndex[axis];
            if (drive >= users.size()) continue;
            const std::string path = AxisPath(index, axis);
            if (!users[drive].empty()) {
                const bool isSameUnit = users[drive].starts_with(UnitPath(index) + ".");
                findings.Add(
                    isSameUnit ? Severity::kError : Severity::kWarning, "external_axis_used_twice",
                    path + ".external_axis",
                    {"external axis " + std::to_string(drive) + " drives " + users[drive] + " too",
                     "Both always have the same value.", "Count the external axes from 0, each once."});
            }
            users[drive] = path;
        }
    }
    for (std::size_t drive = 0; drive < users.size(); ++drive) {
        if (!users[drive].empty()) continue;
        findings.Warning("external_axis_unused", Indexed("external_axes", drive),
                         {"no mechanical unit is driven by it", "Its values change no position.",
                          "Name it in the axes of a unit, or leave it out."});
    }
}

void CheckTravel(const Cell& cell, FindingList& findings)
{
    for (std::size_t i = 0; i < cell.externalAxes.size(); ++i) {
        const ExternalAxis& axis = cell.externalAxes[i];
        const std::string path = Indexed("external_axes", i);
        if (!axis.travel) {
            findings.Note(
                "travel_missing", path,
                {std::string("the travel is not given"), "The round trip below leaves the axis at 0.",
                 std::string("Give ") + (axis.linear ? "travel_mm." : "travel_deg.")});
        } else if (axis.travel->first > axis.travel->second) {
            findings.Error("travel_inverted", path + (axis.linear ? ".travel_mm" : ".travel_deg"),
                           {"the travel ends at " + Shown(axis.travel->second) + " below its start " +
                                Shown(axis.travel->first),
                            "No value of the axis lies within it.", "Exchange the two numbers."});
        }
    }
}

void CheckCarrier(const Cell& cell, FindingList& findings)
{
    for (std::size_t index = 0; index < cell.units.size(); ++index) {
        if (CarriesRobot(cell, index) && CarriesWorkObject(cell, index)) {
            findings.Warning("unit_carries_both", UnitPath(index),
                             {"the unit carries the robot and a work object",
                              "They move together: its axis changes no position in that work object.",
                              "Put one of them on a unit of its own."});
        }
        if (CarriesRobot(cell, index) || CarriesWorkObject(cell, index)) continue;
        findings.Warning(
            "unit_carries_nothing", UnitPath(index),
            {"nothing stands on the unit",
             index == 0 ? "No work object may stand on unit 0; the robot may, with robot_on_unit 0."
                        : "Its axes change no position.",
             index == 0 ? "Give positioners the indexes 1 and 2, or set robot_on_unit."
                        : "Name it in mechanical_unit of a work object, or in robot_on_unit."});
    }
    if (!cell.carrier || *cell.carrier < static_cast<int>(cell.units.size())) return;
    const bool isCount = *cell.carrier == static_cast<int>(cell.units.size());
    findings.Error(
        "robot_on_unit_unknown", "robot_on_unit",
        {"unit " + std::to_string(*cell.carrier) + " is not in the cell, which has " +
             std::to_string(cell.units.size()) + ", counted from 0",
         std::string(isCount ? "The library allows this index for the robot alone, but nothing is stored "
                               "there: "
                             : "") +
             "every call of the cell ends in 0x6033 or 0x6031.",
         "Count from 0."});
}

}  // namespace

void CheckUnits(const Cell& cell, FindingList& findings)
{
    for (std::size_t index = 0; index < cell.units.size(); ++index) {
        CheckAxisCount(cell, index, findings);
        const KineMechUnit& unit = cell.units[index].record;
        for (std::size_t axis = 0; axis < std::min<std::size_t>(AxesOf(unit), unit.AxisCount); ++axis)
            CheckDrive(cell, index, axis, findings);
        CheckFrames(cell, index, findings);
    }
    CheckDriven(cell, findings);
    CheckTravel(cell, findings);
    CheckCarrier(cell, findings);
}

}  // namespace kine_cli

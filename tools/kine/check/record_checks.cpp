// Tools, work objects, loads, and how they are combined.
#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "check/static_checks.h"

namespace kine_cli {
namespace {

constexpr double kFurthestCentre = 2000.0;  // mm

void CheckAngles(const KineFrame& frame, const std::string& path, const char* code, FindingList& findings)
{
    const std::array<std::pair<const char*, double>, 3> angles = {
        {{"a_deg", frame.A}, {"b_deg", frame.B}, {"c_deg", frame.C}}};
    for (const auto& [key, angle] : angles) {
        if (!(std::fabs(angle) > 180.0)) continue;
        findings.Error("angle_beyond_180", path + "." + key,
                       {std::string(key) + " is " + Shown(angle),
                        std::string("Every call with it is refused with ") + code + ".",
                        "Give " + Shown(std::remainder(angle, 360.0)) + "."});
    }
}

void CheckLoad(const KineLoad& load, const std::string& path, const char* code, FindingList& findings)
{
    const std::string refused = std::string("Every call with it is refused with ") + code + ".";
    for (std::size_t i = 0; i < 3; ++i) {
        if (std::fabs(load.Aom[i]) > 180.0) {
            findings.Error("angle_beyond_180", Indexed(path + ".axes_of_moment_deg", i),
                           {"the angle is " + Shown(load.Aom[i]), refused,
                            "Give " + Shown(std::remainder(load.Aom[i], 360.0)) + "."});
        }
        if (load.Inertia[i] < 0.0) {
            findings.Error("inertia_negative", Indexed(path + ".inertia", i),
                           {"the inertia is " + Shown(load.Inertia[i]), refused, "Give 0 or more."});
        }
    }
    if (load.Mass < 0.0) {
        findings.Error("mass_negative", path + ".mass_kg",
                       {"the mass is " + Shown(load.Mass) + " kg", refused, "Give 0 for none."});
    }
    const double centre = std::hypot(load.Cog[0], load.Cog[1], load.Cog[2]);
    if (centre > kFurthestCentre) {
        findings.Warning("centre_of_gravity_far", path + ".cog_mm",
                         {"the centre of gravity is " + Fixed(centre, 1) + " mm away",
                          "It would bend the arm like nothing that a robot carries.", "Give millimetres."});
    } else if (load.Mass > 0.0 && centre > 0.0 && centre < 1.0) {
        findings.Warning(
            "centre_of_gravity_in_metres", path + ".cog_mm",
            {"the centre of gravity is less than 1 mm away", "It looks like metres.", "Give millimetres."});
    }
}

void CheckTools(const Cell& cell, FindingList& findings)
{
    const bool bends = cell.IsSixAxis() && cell.param.SixAxis.k2 != 0.0 && cell.param.SixAxis.k3 != 0.0 &&
                       cell.param.SixAxis.k5 != 0.0;
    for (const Named<KineTool>& tool : cell.tools) {
        const std::string path = "tools." + tool.name;
        CheckAngles(tool.record.TFrame, path + ".frame", "0x6011", findings);
        CheckLoad(tool.record.TLoad, path + ".load", "0x6011", findings);
        if (tool.record.HeldByRobot == 0 && bends && tool.record.TLoad.Mass > 0.0) {
            findings.Warning(
                "stationary_tool_load", path + ".load",
                {"a tool that the robot does not hold has a load", "It bends the arm all the same.",
                 "Leave it out; the held work object is a load of \"loads\"."});
        }
    }
}

bool IsZero(const KineFrame& f)
{
    return f.X == 0.0 && f.Y == 0.0 && f.Z == 0.0 && f.A == 0.0 && f.B == 0.0 && f.C == 0.0;
}

void CheckCarryingUnit(const Cell& cell, const KineWobj& wobj, const std::string& path, FindingList& findings)
{
    const int unit = wobj.MechUnitIndex;
    const std::string unitPath = path + ".mechanical_unit";
    const auto count = static_cast<int>(cell.units.size());
    if (unit == 0) {
        findings.Error(
            "work_object_on_unit_0", unitPath,
            {"no work object may stand on unit 0", "Every call with it is refused with 0x6012.",
             "Give positioners the indexes 1 and 2: the first unit of mechanical_units may carry the "
             "robot."});
    } else if (unit < 0 || unit >= count) {
        findings.Error(
            "work_object_unit_unknown", unitPath,
            {"unit " + std::to_string(unit) + " is not in the cell, which has " + std::to_string(count) +
                 ", counted from 0",
             unit < 0 ? "The calls end in 0x6031 or 0x6033." : "Every call with it is refused with 0x6012.",
             "Count from 0, and leave out 0."});
    }
    if (wobj.HeldByRobot != 0) {
        findings.Warning(
            "held_work_object_on_unit", unitPath,
            {"the robot holds the work object, and it names a mechanical unit",
             "The unit plays no part, and the user frame is taken as zero.", "Leave mechanical_unit out."});
    } else if (!IsZero(wobj.UFrame)) {
        findings.Warning("user_frame_ignored", path + ".user_frame",
                         {"the user frame has no effect",
                          "On a mechanical unit the last axis of the unit is the user frame.",
                          "Put what it says into object_frame."});
    }
}

void CheckUse(const Cell& cell, FindingList& findings)
{
    const KineTool* tool = Find(cell.tools, cell.use.tool);
    const KineWobj* wobj = Find(cell.workObjects, cell.use.workObject);
    if (!tool || !wobj || tool->HeldByRobot != wobj->HeldByRobot) return;
    const bool isBoth = tool->HeldByRobot != 0;
    findings.Error("hold_flags", "use",
                   {"tool \"" + cell.use.tool + "\" and work object \"" + cell.use.workObject + "\" are " +
                        (isBoth ? "both held by the robot" : "both not held by the robot"),
                    "Every position call is refused with 0x6016.",
                    isBoth ? "A held work object needs a tool with held_by_robot false."
                           : "A stationary tool needs a work object with held_by_robot true."});
}

}  // namespace

void CheckRecords(const Cell& cell, FindingList& findings)
{
    CheckTools(cell, findings);
    for (const Named<KineWobj>& wobj : cell.workObjects) {
        const std::string path = "work_objects." + wobj.name;
        CheckAngles(wobj.record.UFrame, path + ".user_frame", "0x6012", findings);
        CheckAngles(wobj.record.OFrame, path + ".object_frame", "0x6012", findings);
        if (wobj.record.UFFix == 0) CheckCarryingUnit(cell, wobj.record, path, findings);
    }
    for (const Named<KineLoad>& load : cell.loads)
        CheckLoad(load.record, "loads." + load.name, "0x6013", findings);
    CheckUse(cell, findings);
}

}  // namespace kine_cli

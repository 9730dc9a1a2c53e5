// kine calib tool and kine calib wobj.
#include <CLI/CLI.hpp>
#include "commands/calib.h"

namespace kine_cli {
namespace {

using Json = nlohmann::ordered_json;

struct ToolOptions : CalibOptions
{
    bool held = false;
    bool stationary = false;
};

struct WobjOptions : CalibOptions
{
    bool user = false;
    bool object = false;
    bool fixed = false;
    bool held = false;
    std::string unit;
};

bool IsZero(const KineFrame& f)
{
    return f.X == 0.0 && f.Y == 0.0 && f.Z == 0.0 && f.A == 0.0 && f.B == 0.0 && f.C == 0.0;
}

Json LoadAsJson(const KineLoad& load)
{
    return {{"mass_kg", load.Mass},
            {"cog_mm", load.Cog},
            {"axes_of_moment_deg", load.Aom},
            {"inertia", load.Inertia}};
}

bool IsNothing(const KineLoad& load)
{
    return load.Mass == 0.0 && load.Inertia[0] == 0.0 && load.Inertia[1] == 0.0 && load.Inertia[2] == 0.0;
}

ExitCode RunTool(const ToolOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const bool isHeld = !options.stationary;
    const auto methods = [&](const Poses&, std::vector<std::string>&) {
        return isHeld ? HeldToolMethods(ready.cell.armType) : StationaryToolMethods(ready.cell.armType);
    };
    const auto paste = [&](const Outcome& outcome) {
        // A stationary tool is none of the tools that it was touched with.
        const std::string name =
            isHeld ? ResultName(options.name, options.cell.selection.tool, ready.cell.use.tool, "calibrated")
                   : ResultName(options.name, "none", "", "calibrated");
        Json tool = {{"held_by_robot", isHeld}, {"frame", FrameAsJson(outcome.solution.frame)}};
        if (isHeld && !IsNothing(ready.records.tool.TLoad))
            tool["load"] = LoadAsJson(ready.records.tool.TLoad);
        return Json{{"tools", {{name, tool}}}};
    };
    return RunCalibration(options, ready, isHeld ? "tool on the robot" : "stationary tool", methods, paste,
                          printed);
}

// The user frame that an object frame is seen from belongs to a work object of the same kind.
void CheckUserFrame(const WobjOptions& options, const KineWobj& wobj)
{
    if (IsZero(wobj.UFrame) && wobj.UFFix != 0) return;
    if (wobj.UFFix == 0) {
        FailUsage("the work object rides on a mechanical unit: calibrate its object frame with --unit");
    }
    if ((wobj.HeldByRobot != 0) != options.held) {
        FailUsage(options.held ? "the work object is not held by the robot: leave out --held"
                               : "the work object is held by the robot: add --held");
    }
}

std::vector<Method> WobjMethods(const WobjOptions& options, const Cell& cell, const KineFrame& user)
{
    if (!options.unit.empty()) return UnitObjectMethods(UnitNamed(cell, options.unit));
    if (options.object) return options.held ? HeldObjectMethods(user) : FixedObjectMethods(user);
    return options.held ? HeldUserMethods() : FixedUserMethods();
}

Json WobjAsJson(const WobjOptions& options, const ReadyCell& ready, const KineFrame& found)
{
    const KineWobj& chosen = ready.records.wobj;
    Json wobj;
    wobj["held_by_robot"] = options.held;
    if (!options.unit.empty()) {
        wobj["mechanical_unit"] = UnitNamed(ready.cell, options.unit);
        wobj["object_frame"] = FrameAsJson(found);
    } else if (options.object) {
        wobj["user_frame"] = FrameAsJson(chosen.UFrame);
        wobj["object_frame"] = FrameAsJson(found);
    } else {
        wobj["user_frame"] = FrameAsJson(found);
        if (!IsZero(chosen.OFrame)) wobj["object_frame"] = FrameAsJson(chosen.OFrame);
    }
    return wobj;
}

ExitCode RunWobj(const WobjOptions& options, PrintedLines& printed)
{
    if (!options.unit.empty() && options.user)
        FailUsage(
            "the user frame of a work object on a mechanical unit is the unit: use --object with --unit");
    const ReadyCell ready(options.cell, printed);
    const bool isObject = options.object || !options.unit.empty();
    if (options.object && options.unit.empty()) CheckUserFrame(options, ready.records.wobj);
    const std::string what = std::string(isObject ? "object frame" : "user frame") + " of a work object " +
                             (options.held            ? "held by the robot"
                              : !options.unit.empty() ? "on mechanical unit " + options.unit
                                                      : "fixed in the cell");
    const auto methods = [&](const Poses&, std::vector<std::string>&) {
        return WobjMethods(options, ready.cell, ready.records.wobj.UFrame);
    };
    const auto paste = [&](const Outcome& outcome) {
        const std::string name = ResultName(options.name, options.cell.selection.workObject,
                                            ready.cell.use.workObject, "calibrated");
        return Json{{"work_objects", {{name, WobjAsJson(options, ready, outcome.solution.frame)}}}};
    };
    return RunCalibration(options, ready, what, methods, paste, printed);
}

}  // namespace

void AddCalibTool(CLI::App& calib, Action& action)
{
    const auto options = std::make_shared<ToolOptions>();
    CLI::App& command = *calib.add_subcommand("tool", "Frame of a tool from touches of one point");
    options->AddTo(command);
    CLI::Option* held = command.add_flag("--held", options->held, "A tool on the robot (usual)");
    command.add_flag("--stationary", options->stationary, "A tool that stands in the cell")->excludes(held);
    command.footer(
        "Methods: on the robot 3p, 5p (six axes), 2p (four axes), 3pzx (3 touches, then origin, z, x);\n"
        "stationary 1p and 1pzx with a calibrated tip, 3p and 3pzx with any point on the flange.\n"
        "Joints become what the method wants; --tool is the tool they were taught with: its load counts.\n"
        "Further points do not change the result and serve the analysis.\n"
        "Examples:\n"
        "  kine calib tool puma.json -i touches.csv --name torch\n"
        "  kine calib tool puma.json -i touches.csv --method 3pzx --plot residuals.svg\n"
        "  kine calib tool puma.json @touch1 @touch2 @touch3 --json");
    SetAction(command, action, options, RunTool);
}

void AddCalibWobj(CLI::App& calib, Action& action)
{
    const auto options = std::make_shared<WobjOptions>();
    CLI::App& command = *calib.add_subcommand("wobj", "Frame of a work object from points on it");
    options->AddTo(command);
    CLI::Option* user = command.add_flag("--user", options->user, "Its user frame (usual)");
    command.add_flag("--object", options->object, "Its object frame, in the user frame of --wobj")
        ->excludes(user);
    CLI::Option* fixed = command.add_flag("--fixed", options->fixed, "It stands in the cell (usual)");
    CLI::Option* held =
        command.add_flag("--held", options->held, "The robot holds it; a stationary tool touches it");
    command.add_option("--unit", options->unit, "It stands on this mechanical unit: object frame only")
        ->type_name("NAME")
        ->excludes(fixed)
        ->excludes(held);
    held->excludes(fixed);
    command.footer(
        "Methods: 3p (origin, on +X, on the side of +Y); for a fixed user frame also 2p (origin, on +X;\n"
        "Y is level) and circle (three points of a rim).\n"
        "Joints become the place of the tip: --tool touches.\n"
        "Further points lie in the plane, on the line or on the rim, and serve the analysis.\n"
        "Examples:\n"
        "  kine calib wobj cell.json -i corner.csv --method 3p --tool pointer --name table\n"
        "  kine calib wobj cell.json -i part.csv --object --wobj table --tool pointer\n"
        "  kine calib wobj cell.json -i part.csv --unit 1 --tool pointer --json");
    SetAction(command, action, options, RunWobj);
}

}  // namespace kine_cli

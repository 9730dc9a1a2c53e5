// kine calib: the frames of tools, work objects, positioners and a base on a track, from taught points.
#include "commands/calib.h"
#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <cstdio>

#include "calib/residual_plot.h"
#include "commands/commands.h"
#include "plot/svg.h"
#include "text/numbers.h"

namespace kine_cli {

void CalibOptions::AddTo(CLI::App& command)
{
    cell.AddTo(command);
    targets.AddTo(command, "POINTS", "Taught points in the order of the method, @NAME each", false);
    command
        .add_option("--method", method,
                    "How to calibrate; without it the number of points says it, if it can")
        ->type_name("METHOD");
    command.add_option("--name", name, "Name of the result in the lines for the cell file")
        ->type_name("NAME");
    command.add_option("--plot", plot, "Draw the residuals into an SVG file")->type_name("FILE");
    format.AddTo(command, false);
}

namespace {

// The picture and the report share the standard output badly.
void CheckOutput(const CalibOptions& options)
{
    if (options.plot == "-")
        FailUsage("--plot needs the name of a file; the report goes to the standard output");
}

ExitCode Write(const CalibOptions& options, const Outcome& outcome, PrintedLines& printed)
{
    if (options.format.json) {
        WriteAll(printed.DataDescriptor(), JsonReport(outcome));
    } else if (outcome.IsRefused()) {
        std::fputs(("kine: " + RefusalInWords(outcome)).c_str(), stderr);
    } else {
        WriteAll(printed.DataDescriptor(), TableReport(outcome));
    }
    if (outcome.IsRefused()) return ExitCode::kRefused;
    if (!options.plot.empty()) WriteDocument(options.plot, ResidualPlot(outcome), printed.DataDescriptor());
    return IsFinite(outcome.solution.frame) ? ExitCode::kDone : ExitCode::kRefused;
}

}  // namespace

ExitCode RunCalibration(const CalibOptions& options, const ReadyCell& ready, const std::string& what,
                        const MethodsFor& methodsFor, const PasteFor& pasteFor, PrintedLines& printed)
{
    CheckOutput(options);
    Outcome outcome;
    outcome.what = what;
    outcome.taught = ReadTaught(ready, options.targets.source);
    Taught& taught = outcome.taught;
    const std::size_t count = taught.poses.size();
    const std::vector<Method> methods = methodsFor(taught.poses, outcome.advice);
    outcome.method = ChosenMethod(methods, options.method, count);
    if (count < outcome.method.roles.size()) {
        std::string roles;
        for (const std::string& role : outcome.method.roles) roles += (roles.empty() ? "" : ", ") + role;
        FailPoints(options.targets.source, "there are " + std::to_string(count) + " points, and " +
                                               outcome.method.name + " takes " +
                                               std::to_string(outcome.method.roles.size()) + ": " + roles);
    }
    FindPoses(ready, outcome.method.teach, taught, printed);
    if (taught.code != KINE_OK) {
        outcome.solution.code = taught.code;
        outcome.method.call = taught.call;
        outcome.lines = taught.lines;
        outcome.blame = {{taught.refused}, {"point " + taught.names[taught.refused] + ": its joints"}};
        return Write(options, outcome, printed);
    }
    outcome.solution = outcome.method.solve(taught.poses);
    if (outcome.IsRefused()) {
        outcome.lines = printed.Take();
        outcome.blame = BlameFor(outcome.method, taught.poses, taught.names, outcome.solution);
        return Write(options, outcome, printed);
    }
    outcome.analysis = Analyse(outcome.method, taught.poses, outcome.solution.frame);
    const std::vector<std::string> advice = AdviceOn(outcome);
    outcome.advice.insert(outcome.advice.end(), advice.begin(), advice.end());
    outcome.cellFile = pasteFor(outcome);
    return Write(options, outcome, printed);
}

std::string ResultName(const std::string& given, const std::string& chosen, const std::string& used,
                       const std::string& otherwise)
{
    if (!given.empty()) return given;
    const std::string& name = chosen.empty() ? used : chosen;
    return name == kNone ? otherwise : name;
}

std::int32_t UnitNamed(const Cell& cell, const std::string& name)
{
    for (std::size_t i = 0; i < cell.units.size(); ++i) {
        if (!name.empty() && cell.units[i].name == name) return static_cast<std::int32_t>(i);
    }
    std::int32_t index = 0;
    const char* end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(name.data(), end, index);
    if (error == std::errc() && rest == end) return index;
    FailUsage(cell.file + " has no mechanical unit \"" + name + "\"; give its name or its index");
}

void AddCalib(CLI::App& program, Action& action)
{
    CLI::App& command = *program.add_subcommand("calib", "Frames from taught points");
    command.require_subcommand(1);
    command.footer(
        "Points are joints or poses of a CSV file with a header; its target column names them.\n"
        "`kine calib tool --help` and so on show what each calibration takes.");
    AddCalibTool(command, action);
    AddCalibWobj(command, action);
    AddCalibPositioner(command, action);
    AddCalibBase(command, action);
}

}  // namespace kine_cli

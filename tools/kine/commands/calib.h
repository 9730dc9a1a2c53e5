// What the commands of `kine calib` share.
#pragma once

#include <functional>
#include <string>

#include "calib/report.h"
#include "options.h"

namespace kine_cli {

struct CalibOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    std::string method;
    std::string name;
    std::string plot;

    void AddTo(CLI::App& command);
};

// The methods to choose from; they may hang on the points, and there may be something to say about these.
using MethodsFor = std::function<std::vector<Method>(const Poses&, std::vector<std::string>& advice)>;
// What to paste into the cell file.
using PasteFor = std::function<nlohmann::ordered_json(const Outcome&)>;

// Reads the points, solves, analyses, reports.
ExitCode RunCalibration(const CalibOptions& options, const ReadyCell& ready, const std::string& what,
                        const MethodsFor& methodsFor, const PasteFor& pasteFor, PrintedLines& printed);

// The name to paste under: the given one, or the one that the points were touched with.
std::string ResultName(const std::string& given, const std::string& chosen, const std::string& used,
                       const std::string& otherwise);

// By name or index; the library says whether an index is one. Fails (usage) for another word.
std::int32_t UnitNamed(const Cell& cell, const std::string& name);

void AddCalibTool(CLI::App& calib, Action& action);
void AddCalibWobj(CLI::App& calib, Action& action);
void AddCalibPositioner(CLI::App& calib, Action& action);
void AddCalibBase(CLI::App& calib, Action& action);

}  // namespace kine_cli

// kine calib positioner and kine calib base.
#include <CLI/CLI.hpp>
#include <cmath>
#include <limits>

#include "commands/calib.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr double kHalfTurn = 180.0;
constexpr double kTurn = 360.0;

struct PositionerOptions : CalibOptions
{
    std::string unit;
    std::int32_t axis = 1;
    std::string reference;
};

struct BaseOptions : CalibOptions
{
    std::string unit;
};

const KineMechUnit* Unit(const Cell& cell, std::int32_t index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= cell.units.size()) return nullptr;
    return &cell.units[static_cast<std::size_t>(index)].record;
}

// The external axis that drives an axis of a unit; axes count from 1.
std::optional<std::size_t> DriverOf(const Cell& cell, std::int32_t unitIndex, std::int32_t axis)
{
    const KineMechUnit* unit = Unit(cell, unitIndex);
    if (!unit || axis < 1 || axis > unit->AxisCount || static_cast<std::size_t>(axis) > kExternalAxes)
        return std::nullopt;
    const std::size_t driver = unit->AxisParamIndex[axis - 1];
    return driver < kExternalAxes ? std::optional(driver) : std::nullopt;
}

KineFrame ParseReference(const std::string& text)
{
    KineFrame frame{};
    std::string_view rest = text;
    for (double* value : {&frame.X, &frame.Y, &frame.Z, &frame.A, &frame.B, &frame.C}) {
        const std::size_t end = std::min(rest.find(','), rest.size());
        const std::optional<double> number = ParseNumber(rest.substr(0, end));
        const bool isLast = value == &frame.C;
        if (!number || (end == rest.size()) != isLast)
            FailUsage("--reference \"" + text + "\" should be x,y,z,a,b,c in mm and degrees");
        *value = *number;
        rest.remove_prefix(isLast ? end : end + 1);
    }
    for (const double angle : {frame.A, frame.B, frame.C}) {
        if (std::fabs(angle) > kHalfTurn) FailUsage("--reference: an angle is beyond 180 degrees");
    }
    return frame;
}

// Where the axis before stands while the points are taught: the product of the frames of the unit up to it,
// each turned by its value in the first point.
KineFrame ReferenceFromCell(const Cell& cell, std::int32_t unitIndex, std::int32_t axis, const Poses& poses,
                            std::vector<std::string>& advice)
{
    KinePose stands{};
    const KineMechUnit* const unit = Unit(cell, unitIndex);
    if (!unit) return {};  // the library refuses it
    for (std::int32_t before = 1; before < axis; ++before) {
        const std::optional<std::size_t> driver = DriverOf(cell, unitIndex, before);
        if (!driver) break;  // nor does it take such a unit
        KineFrame frame = unit->AxisFrame[before - 1];
        for (double* angle : {&frame.A, &frame.B, &frame.C}) *angle = std::remainder(*angle, kTurn);
        KineFrame turned{};
        turned.A = std::remainder(poses.front().ExtAxis[*driver], kTurn);
        KinePose next{};
        (void)Kine_ToolCoordOffset(&stands, &frame, &next);  // the angles fit
        (void)Kine_ToolCoordOffset(&next, &turned, &stands);
        for (const KinePose& pose : poses) {
            if (pose.ExtAxis[*driver] == poses.front().ExtAxis[*driver]) continue;
            advice.push_back("axis " + std::to_string(before) +
                             " of the unit moved between the points: the result is wrong. Keep it at rest.");
            break;
        }
    }
    return stands.Frame;
}

// The units of the cell file, the one at `index` with this frame for its axis (counted from 0).
Json UnitsAsJson(const Cell& cell, std::int32_t index, std::size_t axis, const KineFrame& frame)
{
    constexpr const char* kKinds[] = {"linear", "rotary", "two-rotary"};
    Json units = Json::array();
    for (std::size_t i = 0; i < cell.units.size(); ++i) {
        const KineMechUnit& record = cell.units[i].record;
        const bool isFound = i == static_cast<std::size_t>(index);
        const bool isTrack = record.UnitKind == 1;
        Json unit;
        if (!cell.units[i].name.empty()) unit["name"] = cell.units[i].name;
        unit["kind"] = kKinds[record.UnitKind - 1];
        unit["axes"] = Json::array();
        for (std::size_t k = 0; k < record.AxisCount; ++k) {
            const bool isNew = isFound && k == axis;
            unit["axes"].push_back({{"external_axis", record.AxisParamIndex[k]},
                                    {"frame", FrameAsJson(isNew ? frame : record.AxisFrame[k])}});
        }
        if (isTrack && record.AxisCount < 2)
            unit["carried_frame"] = FrameAsJson(isFound && axis == 1 ? frame : record.AxisFrame[1]);
        units.push_back(unit);
    }
    return {{"mechanical_units", units}};
}

ExitCode RunPositioner(const PositionerOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const Cell& cell = ready.cell;
    const std::int32_t unit = UnitNamed(cell, options.unit);
    const bool isFirst = options.axis == 1 && options.reference.empty();
    const auto methods = [&](const Poses& poses, std::vector<std::string>& advice) -> std::vector<Method> {
        const std::optional<std::size_t> driver = DriverOf(cell, unit, options.axis);
        if (isFirst) return {FirstAxisMethod(unit, driver)};
        const KineFrame reference = options.reference.empty()
                                        ? ReferenceFromCell(cell, unit, options.axis, poses, advice)
                                        : ParseReference(options.reference);
        return {FurtherAxisMethod(unit, options.axis, driver, reference)};
    };
    const auto paste = [&](const Outcome& outcome) {
        return UnitsAsJson(cell, unit, static_cast<std::size_t>(options.axis - 1), outcome.solution.frame);
    };
    return RunCalibration(options, ready,
                          "axis " + std::to_string(options.axis) + " of mechanical unit " + options.unit,
                          methods, paste, printed);
}

ExitCode RunBase(const BaseOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const Cell& cell = ready.cell;
    if (options.unit.empty() && !cell.carrier)
        FailUsage(cell.file + " does not say on which unit the robot stands; give it with --unit");
    const std::int32_t unit = options.unit.empty() ? *cell.carrier : UnitNamed(cell, options.unit);
    const auto methods = [&](const Poses&, std::vector<std::string>&) -> std::vector<Method> {
        return {TrackMethod(unit, DriverOf(cell, unit, 1))};
    };
    const auto paste = [&](const Outcome& outcome) {
        return UnitsAsJson(cell, unit, 1, outcome.solution.frame);
    };
    return RunCalibration(options, ready,
                          "base of the robot on the track, mechanical unit " +
                              (options.unit.empty() ? std::to_string(unit) : options.unit),
                          methods, paste, printed);
}

}  // namespace

void AddCalibPositioner(CLI::App& calib, Action& action)
{
    const auto options = std::make_shared<PositionerOptions>();
    CLI::App& command = *calib.add_subcommand("positioner", "Frame of an axis that turns a mark");
    options->AddTo(command);
    command.add_option("--unit", options->unit, "The mechanical unit, by name or index")
        ->type_name("NAME")
        ->required();
    command.add_option("--axis", options->axis, "Number of the axis on its unit, from 1")->type_name("N");
    command
        .add_option("--reference", options->reference,
                    "Frame of the axis before as it stands: x,y,z,a,b,c; usually from the cell file")
        ->type_name("FRAME");
    command.footer(
        "Touch one mark at three or more values of the axis, in rising order, the other axes at rest.\n"
        "Joints become the place of the tip: --tool touches. The external axes come along.\n"
        "Examples:\n"
        "  kine calib positioner cell.json -i table.csv --unit table --tool pointer\n"
        "  kine calib positioner cell.json -i tilt.csv --unit 1 --axis 2 --plot residuals.svg");
    SetAction(command, action, options, RunPositioner);
}

void AddCalibBase(CLI::App& calib, Action& action)
{
    const auto options = std::make_shared<BaseOptions>();
    CLI::App& command = *calib.add_subcommand("base", "How the robot stands on its track");
    options->AddTo(command);
    command
        .add_option("--unit", options->unit, "The track, by name or index; usually what the robot stands on")
        ->type_name("NAME");
    command.footer(
        "Touch one fixed mark from three or more places on the track.\n"
        "Joints become the place of the tip in the base: --tool touches. The external axes come along.\n"
        "Example:\n"
        "  kine calib base cell.json -i mark.csv --tool pointer");
    SetAction(command, action, options, RunBase);
}

}  // namespace kine_cli

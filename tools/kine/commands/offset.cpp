// kine offset: poses moved and turned by one offset.
#include <CLI/CLI.hpp>
#include "commands/commands.h"
#include "commands/pose_rows.h"

namespace kine_cli {
namespace {

struct OffsetOptions
{
    TargetOptions targets;
    FormatOptions format;
    std::string by;
    std::string along = "tool";
    std::string cell;
};

ExitCode RunOffset(const OffsetOptions& options, PrintedLines& printed)
{
    const NamesOfCell names(options.cell);
    const Target by = TargetOf(options.by, Shape::kPoses, {}, names.Get(), "--by");
    if (by.hasConfig) FailUsage("--by: an offset has six values and no configuration");
    const auto call = options.along == "tool" ? &Kine_ToolCoordOffset : &Kine_WobjCoordOffset;
    PoseFilter filter(names.widths, [call, offset = by.pose.Frame](const KinePose& pose, KinePose& out) {
        return call(&pose, &offset, &out);
    });
    return RunFilter(filter, Shape::kPoses, names.widths, names.Get(), options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddOffset(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<OffsetOptions>();
    CLI::App& command = *program.add_subcommand("offset", "Poses moved and turned by an offset");
    options->targets.AddTo(command, "POSE", "Poses in mm and degrees");
    command.add_option("--by", options->by, "The offset: X,Y,Z in mm and A,B,C in degrees")
        ->required()
        ->type_name("OFFSET");
    command
        .add_option(
            "--along", options->along,
            "tool: along and about the axes of each pose; wobj: along the axes of its frame, turned in place")
        ->capture_default_str()
        ->type_name("AXES")
        ->check(CLI::IsMember({"tool", "wobj"}));
    AddNamesOption(command, options->cell);
    options->format.AddTo(command);
    command.footer(
        "Examples:\n"
        "  kine offset 400,150,450,0,-90,0 --by 0,0,-50,0,0,0\n"
        "  kine offset @pick --cell puma.json --by 0,0,50,0,0,0 --along wobj\n"
        "  kine offset --by 0,0,-50,0,0,0 --csv -i poses.csv > approach.csv");
    SetAction(command, action, options, RunOffset);
}

}  // namespace kine_cli

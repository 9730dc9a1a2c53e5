#include "commands/pose_rows.h"
#include <CLI/CLI.hpp>

#include <utility>

#include "cell/cell_reader.h"
#include "failure.h"
#include "rows/stream.h"

namespace kine_cli {

PoseFilter::PoseFilter(Widths widths, PoseFunction function) : widths_(widths), function_(std::move(function))
{}

void PoseFilter::Answer(const Target& target, Answers& answers)
{
    KinePose pose{};
    if (!answers.Accept(target, function_(target.pose, pose))) return;
    answers.row.Begin(target.name);
    answers.row.Pose(pose, target.hasConfig);
    answers.row.End();
}

Target TargetOf(const std::string& argument, Shape shape, Widths widths, const Cell* cell,
                const std::string& option)
{
    try {
        Target target = ReadTargets(shape, widths, cell, {{argument}, {}}).front().target;
        target.name = {};  // it pointed into what was read
        return target;
    } catch (const Failure& failure) {
        throw Failure(failure.code, option + ": " + failure.what());
    }
}

NamesOfCell::NamesOfCell(const std::string& file)
{
    if (file.empty()) return;
    cell = ReadCell(file);
    widths = WidthsOf(*cell);
}

void AddNamesOption(CLI::App& command, std::string& file)
{
    command.add_option("--cell", file, "Cell file (JSON) for @NAME targets and external axes")
        ->type_name("CELL");
}

}  // namespace kine_cli

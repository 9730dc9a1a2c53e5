// kine fk: joints to poses.
#include <CLI/CLI.hpp>
#include <array>

#include "commands/commands.h"
#include "rows/row_filter.h"

namespace kine_cli {
namespace {

struct FkOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    std::string in = "wobj";
};

class FkFilter : public RowFilter
{
public:
    FkFilter(const ReadyCell& ready, Reference reference) : ready_(ready), reference_(reference) {}

    std::vector<Column> Columns() const override { return PoseColumns(ready_.widths); }
    void Answer(const Target& target, Answers& answers) override
    {
        KinePose pose{};
        if (!answers.Accept(target, JointsToPose(target.joints, ready_.records, reference_, pose))) return;
        answers.row.Begin(target.name);
        answers.row.Pose(pose);
        answers.row.End();
    }

private:
    const ReadyCell& ready_;
    Reference reference_;
};

ExitCode RunFk(const FkOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    FkFilter filter(ready, ReferenceNamed(options.in));
    return RunFilter(filter, Shape::kJoints, ready.widths, &ready.cell, options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddFk(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<FkOptions>();
    CLI::App& command = *program.add_subcommand("fk", "Forward kinematics: joints to poses");
    options->cell.AddTo(command);
    options->targets.AddTo(command, "JOINTS", "Joints in degrees, then external axes");
    AddReferenceOption(command, options->in);
    options->format.AddTo(command);
    command.footer(
        "Examples:\n"
        "  kine fk puma.json 10,20,30,40,50,60\n"
        "  kine fk puma.json @ready --in base --json\n"
        "  kine fk puma.json --csv -i joints.csv | kine ik puma.json --csv");
    SetAction(command, action, options, RunFk);
}

}  // namespace kine_cli

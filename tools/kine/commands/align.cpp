// kine align: joints with the tool square to a frame.
#include <CLI/CLI.hpp>
#include <string_view>

#include "commands/commands.h"
#include "commands/joint_rows.h"
#include "rows/row_filter.h"

namespace kine_cli {
namespace {

struct AlignOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    std::string to;
};

// What Kine_CalcAlignPos calls the frames.
std::int32_t ModeOf(std::string_view frame)
{
    if (frame == "base") return 2;
    if (frame == "world") return 5;
    return frame == "wobj" ? 4 : -1;
}

class AlignFilter : public RowFilter
{
public:
    AlignFilter(const ReadyCell& ready, std::int32_t mode)
        : ready_(ready), mode_(mode), texts_(ready.cell.armType)
    {}

    [[nodiscard]] std::vector<Column> Columns() const override
    {
        return JointAndPostureColumns(ready_.widths, texts_);
    }
    void Answer(const Target& target, Answers& answers) override
    {
        const CellRecords& records = ready_.records;
        KineJoint aligned{};
        if (!answers.Accept(target, Kine_CalcAlignPos(mode_, &target.joints, &records.tool, &records.wobj,
                                                      &records.load, &aligned))) {
            return;
        }
        answers.row.Begin(target.name);
        answers.row.Joints(aligned);
        answers.row.Text(PostureOf(aligned, texts_));
        answers.row.End();
    }

private:
    const ReadyCell& ready_;
    std::int32_t mode_;
    PostureTexts texts_;
};

ExitCode RunAlign(const AlignOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    AlignFilter filter(ready, ModeOf(options.to));
    return RunFilter(filter, Shape::kJoints, ready.widths, &ready.cell, options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddAlign(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<AlignOptions>();
    CLI::App& command = *program.add_subcommand("align", "Joints with the tool square to a frame");
    options->cell.AddTo(command);
    options->targets.AddTo(command, "JOINTS", "Joints in degrees, then external axes");
    command.add_option("--to", options->to, "Frame to align with: base, world, wobj or wobj-flange")
        ->required()
        ->type_name("FRAME")
        ->check(CLI::IsMember({"base", "world", "wobj", "wobj-flange"}));
    options->format.AddTo(command);
    command.footer(
        "The tool point stays, and the tool turns by the smallest rotation that brings its Z axis onto the "
        "nearest\n"
        "of +-X, +-Y, +-Z of the frame. A held work object turns instead: with wobj itself, otherwise with "
        "the\n"
        "flange about its own origin; wobj and wobj-flange do not align it exactly. Where another posture "
        "lies\n"
        "nearer the joints are refused with 0x6081: jog closer. Four-axis arms get this for most values of "
        "axis 4.\n"
        "\n"
        "Examples:\n"
        "  kine align puma.json 10,20,30,40,50,60 --to base\n"
        "  kine align puma.json -i taught.csv --to wobj --csv | kine fk puma.json");
    SetAction(command, action, options, RunAlign);
}

}  // namespace kine_cli

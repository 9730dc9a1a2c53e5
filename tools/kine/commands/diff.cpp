// kine diff: how far poses are from a first one.
#include <CLI/CLI.hpp>
#include <cmath>

#include "commands/commands.h"
#include "commands/pose_rows.h"

namespace kine_cli {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

struct DiffOptions
{
    TargetOptions targets;
    FormatOptions format;
    std::string first;
    std::string along = "reference";
    std::string cell;
};

// The angle of the one rotation that Rz(A) * Ry(B) * Rx(C) is, 0 to 180 degrees. From its quaternion, which
// is exact to rounding at both ends, where the arc cosine of the trace would lose half of the digits.
double TotalAngleDeg(const KineFrame& frame)
{
    const double half = 0.5 / kDegreesPerRadian;
    const double ca = std::cos(frame.A * half), sa = std::sin(frame.A * half);
    const double cb = std::cos(frame.B * half), sb = std::sin(frame.B * half);
    const double cc = std::cos(frame.C * half), sc = std::sin(frame.C * half);
    const double w = ca * cb * cc + sa * sb * sc;
    const double x = ca * cb * sc - sa * sb * cc;
    const double y = ca * sb * cc + sa * cb * sc;
    const double z = sa * cb * cc - ca * sb * sc;
    return 2.0 * std::atan2(std::hypot(x, y, z), std::fabs(w)) * kDegreesPerRadian;
}

class DiffFilter : public RowFilter
{
public:
    DiffFilter(const KinePose& first, std::int32_t frame) : first_(first), frame_(frame) {}

    std::vector<Column> Columns() const override
    {
        std::vector<Column> columns = FrameColumns();
        for (const char* name : {"distance_mm", "angle_deg"}) {
            columns.push_back(columns.front());
            columns.back().name = name;
        }
        return columns;
    }
    void Answer(const Target& target, Answers& answers) override
    {
        KineFrame frame{};
        if (!answers.Accept(target, Kine_CalcPosDif(&first_, &target.pose, frame_, &frame))) return;
        answers.row.Begin(target.name);
        answers.row.Frame(frame);
        answers.row.Number(std::hypot(frame.X, frame.Y, frame.Z));
        answers.row.Number(TotalAngleDeg(frame));
        answers.row.End();
    }

private:
    KinePose first_;
    std::int32_t frame_;
};

ExitCode RunDiff(const DiffOptions& options, PrintedLines& printed)
{
    const NamesOfCell names(options.cell);
    const Target first = TargetOf(options.first, Shape::kPoses, names.widths, names.Get(), "FIRST");
    DiffFilter filter(first.pose, options.along == "reference" ? 1 : -1);
    return RunFilter(filter, Shape::kPoses, names.widths, names.Get(), options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddDiff(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<DiffOptions>();
    CLI::App& command = *program.add_subcommand("diff", "The difference of poses to a first one");
    command.add_option("FIRST", options->first, "The pose to compare with, in the frame of the others")
        ->required();
    options->targets.AddTo(command, "SECOND", "Poses in mm and degrees");
    command
        .add_option("--along", options->along,
                    "reference: along and about the axes of the frame of the poses; first: those of FIRST")
        ->capture_default_str()
        ->type_name("AXES")
        ->check(CLI::IsMember({"reference", "first"}));
    AddNamesOption(command, options->cell);
    options->format.AddTo(command);
    command.footer(
        "A, B and C are the rotation that leads from the first orientation to the second,\n"
        "not the differences of the angles; angle_deg is its size. The six numbers lead back\n"
        "to the second pose: kine offset FIRST --by NUMBERS --along wobj, or --along tool for\n"
        "those of --along first.\n\n"
        "Examples:\n"
        "  kine diff 400,150,450,0,-90,0 401,150,450,0,-89,0\n"
        "  kine diff @taught @measured --cell puma.json --along first\n"
        "  kine diff 400,150,450,0,-90,0 --csv -i measured.csv");
    SetAction(command, action, options, RunDiff);
}

}  // namespace kine_cli

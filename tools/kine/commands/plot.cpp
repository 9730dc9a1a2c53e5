// kine plot: pictures of a cell as SVG files.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "commands/commands.h"
#include "plot/pictures.h"
#include "plot/svg.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

struct PlotOptions
{
    CellOptions cell;
    std::string kind;  // of the picture
    std::string output;
    std::string target;
    bool isJoints = false;
    std::string plane;
    std::string at;
    std::string orientation = "0,0,180";
    std::string step;
    std::string posture;
    std::string joints;
};

// The folder and the ending of the cell file taken off: pictures go where the command runs.
std::string OutputFile(const PlotOptions& options)
{
    if (!options.output.empty()) return options.output;
    std::string stem = options.cell.file.substr(options.cell.file.find_last_of('/') + 1);
    if (const std::size_t dot = stem.find_last_of('.'); dot != std::string::npos && dot > 0) stem.resize(dot);
    return stem + "-" + options.kind + ".svg";
}

ExitCode Write(const PlotOptions& options, const std::string& picture, const PrintedLines& printed)
{
    const std::string file = OutputFile(options);
    WriteDocument(file, picture, printed.DataDescriptor());
    if (options.output.empty()) std::fprintf(stderr, "kine: wrote %s\n", file.c_str());
    return ExitCode::kDone;
}

// One target from the command line; home when there is none.
KineJoint JointsNamed(const std::string& text, const ReadyCell& ready)
{
    if (text.empty()) return HomeOf(ready.cell);
    Shape shape = Shape::kJoints;
    return ReadTargets(shape, ready.widths, &ready.cell, {{text}, ""}).front().target.joints;
}

KinePose PoseOf(const KineJoint& joints, const ReadyCell& ready, PrintedLines& printed)
{
    KinePose pose{};
    const KineResult code = JointsToPose(joints, ready.records, Reference::kWorkObject, pose);
    if (code != KINE_OK) FailRefused("the joints", code, printed);
    return pose;
}

// A name may be that of joints or of a pose.
KinePose PoseNamed(const PlotOptions& options, const ReadyCell& ready, PrintedLines& printed)
{
    const std::string& text = options.target;
    const bool isNamedJoints = text.starts_with('@') && !Find(ready.cell.poses, text.substr(1)) &&
                               Find(ready.cell.joints, text.substr(1));
    if (text.empty() || options.isJoints || isNamedJoints)
        return PoseOf(JointsNamed(text, ready), ready, printed);
    Shape shape = Shape::kPoses;
    return ReadTargets(shape, ready.widths, &ready.cell, {{text}, ""}).front().target.pose;
}

double NumberOf(const std::string& option, const std::string& text)
{
    constexpr double kLargest = 1e7;
    const std::optional<double> number = ParseNumber(text);
    if (!number || std::fabs(*number) > kLargest)
        FailUsage(option + ": \"" + text + "\" is not a number from -10000000 to 10000000");
    return *number;
}

KineFrame OrientationOf(const std::string& text)
{
    std::array<double, 3> angles{};
    std::size_t start = 0;
    for (std::size_t i = 0; i < angles.size(); ++i) {
        const std::size_t end = i + 1 < angles.size() ? text.find(',', start) : text.size();
        const std::optional<double> angle =
            end == std::string::npos ? std::nullopt : ParseNumber(text.substr(start, end - start));
        if (!angle || std::fabs(*angle) > 180.0) {
            FailUsage("--orientation: \"" + text +
                      "\" should be three angles A,B,C from -180 to 180, parted by commas");
        }
        angles[i] = *angle;
        start = end + 1;
    }
    return {0.0, 0.0, 0.0, angles[0], angles[1], angles[2]};
}

PlaneOptions PlaneOf(const PlotOptions& options, const ReadyCell& ready)
{
    PlaneOptions plane;
    plane.isVertical = options.plane == "xz";
    if (!options.at.empty()) plane.at = NumberOf("--at", options.at);
    plane.orientation = OrientationOf(options.orientation);
    if (!options.step.empty()) {
        plane.step = NumberOf("--step", options.step);
        if (!(*plane.step > 0.0)) FailUsage("--step: \"" + options.step + "\" should be above 0");
    }
    plane.posture = options.posture;
    plane.joints = JointsNamed(options.joints, ready);
    return plane;
}

ExitCode RunArm(const PlotOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const KineJoint joints = JointsNamed(options.target, ready);
    return Write(options, ArmPicture(ready, options.cell.selection, joints, printed), printed);
}

ExitCode RunPostures(const PlotOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const KinePose pose = PoseNamed(options, ready, printed);
    return Write(options, PosturesPicture(ready, options.cell.selection, pose, printed), printed);
}

ExitCode RunReach(const PlotOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const PlaneOptions plane = PlaneOf(options, ready);
    return Write(options, ReachPicture(ready, options.cell.selection, plane, printed), printed);
}

ExitCode RunDeflection(const PlotOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const PlaneOptions plane = PlaneOf(options, ready);
    return Write(options, DeflectionPicture(ready, options.cell.selection, plane, printed), printed);
}

CLI::App& AddPicture(CLI::App& plot, const std::string& kind, const std::string& what,
                     const std::shared_ptr<PlotOptions>& options)
{
    CLI::App& command = *plot.add_subcommand(kind, what);
    options->kind = kind;
    options->cell.AddTo(command);
    return command;
}

void AddOutput(CLI::App& command, const std::shared_ptr<PlotOptions>& options)
{
    command
        .add_option("-o,--output", options->output,
                    "Picture to write; - is the standard output. Default: name of the cell file with -" +
                        options->kind + ".svg, here")
        ->type_name("FILE");
}

void AddPlaneOptions(CLI::App& command, const std::shared_ptr<PlotOptions>& options)
{
    command.add_option("--plane", options->plane, "Plane of the world: xz (upright) or xy (level)")
        ->type_name("PLANE")
        ->required()
        ->check(CLI::IsMember({"xz", "xy"}));
    command
        .add_option("--at", options->at,
                    "Y of the plane xz, Z of the plane xy. Default: through the base; a level plane of a "
                    "four-axis arm: through the tool with axis 3 at 0")
        ->type_name("MM");
    command
        .add_option("--orientation", options->orientation,
                    "Of the tool in the world; a four-axis arm has A only")
        ->type_name("A,B,C")
        ->capture_default_str();
    command
        .add_option("--step", options->step,
                    "Distance of the targets. Default: 80 to 200 of them across the reach")
        ->type_name("MM");
    command.add_option("--posture", options->posture, "Only postures of these words, such as \"front near\"")
        ->type_name("WORDS");
    command
        .add_option("--joints", options->joints,
                    "Arm drawn over the map; its external axes place the units. Default: @home, the first "
                    "joints of the cell, or zeros")
        ->type_name("JOINTS");
}

void AddArm(CLI::App& plot, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App& command =
        AddPicture(plot, "arm", "The arm with its frames, from the side and from above", options);
    command.add_option(
        "JOINTS", options->target,
        "Joints in degrees, then external axes: numbers parted by commas, or @NAME of the cell. "
        "Default: @home, the first joints of the cell, or zeros");
    AddOutput(command, options);
    command.footer(
        "Examples:\n"
        "  kine plot arm puma.json @ready\n"
        "  kine plot arm puma.json 10,-20,30,0,45,0 -o arm.svg");
    SetAction(command, action, options, RunArm);
}

void AddPostures(CLI::App& plot, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App& command = AddPicture(plot, "postures", "Every posture that reaches one target", options);
    command.add_option(
        "TARGET", options->target,
        "Pose in the work object, or @NAME of a pose or joints of the cell. Default: as for arm");
    command.add_flag("--joints", options->isJoints, "TARGET are joints");
    AddOutput(command, options);
    command.footer(
        "Examples:\n"
        "  kine plot postures puma.json 300,300,200,0,0,180\n"
        "  kine plot postures puma.json 10,-20,30,0,45,0 --joints -o postures.svg");
    SetAction(command, action, options, RunPostures);
}

void AddMaps(CLI::App& plot, Action& action)
{
    const auto reach = std::make_shared<PlotOptions>();
    CLI::App& reachCommand = AddPicture(
        plot, "reach", "Where the arm reaches in a plane, and where it is close to a singularity", reach);
    AddPlaneOptions(reachCommand, reach);
    AddOutput(reachCommand, reach);
    reachCommand.footer(
        "Examples:\n"
        "  kine plot reach puma.json --plane xz\n"
        "  kine plot reach puma.json --plane xy --at -200 --orientation 0,90,0 --posture \"front far\" -o "
        "r.svg");
    SetAction(reachCommand, action, reach, RunReach);

    const auto deflection = std::make_shared<PlotOptions>();
    CLI::App& deflectionCommand = AddPicture(
        plot, "deflection", "How far gravity bends the arm over a plane; six-axis arms", deflection);
    AddPlaneOptions(deflectionCommand, deflection);
    AddOutput(deflectionCommand, deflection);
    deflectionCommand.footer(
        "The deflection at a target is the largest over the postures that reach it.\n"
        "Examples:\n"
        "  kine plot deflection wrist.json --plane xz\n"
        "  kine plot deflection wrist.json --plane xz --load box --step 50 -o bend.svg");
    SetAction(deflectionCommand, action, deflection, RunDeflection);
}

}  // namespace

void AddPlot(CLI::App& program, Action& action)
{
    CLI::App& plot = *program.add_subcommand("plot", "Pictures of the cell as SVG files");
    plot.require_subcommand(1);
    plot.footer(
        "Examples:\n"
        "  kine plot arm puma.json @ready\n"
        "  kine plot reach puma.json --plane xz -o reach.svg");
    AddArm(plot, action);
    AddPostures(plot, action);
    AddMaps(plot, action);
}

}  // namespace kine_cli

// kine convert: poses from one frame to another. Each pair of frames is one call of the library.
#include <CLI/CLI.hpp>
#include <string>

#include "commands/commands.h"
#include "commands/pose_rows.h"
#include "library/codes.h"

namespace kine_cli {
namespace {

constexpr std::int32_t kFromBase = -2;  // Kine_CrdPosToWobjPos: through mounting and mechanical units
constexpr std::int32_t kWithStationaryTool = -1;  // Kine_CrdPosToWobjPos: from the world

struct ConvertOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    std::string from;
    std::string to;
    std::string flange;
    std::string joints;

    [[nodiscard]] bool HasFlange() const { return !flange.empty() || !joints.empty(); }
};

// A work object and the pose that its frames are counted from: the flange, or the origin of the world.
struct PlacedWobj
{
    KineWobj wobj{};
    KinePose carrier{};
};

bool IsHeld(const KineWobj& wobj) { return wobj.HeldByRobot != 0; }

std::string WobjInWords(const ConvertOptions& options, const Cell& cell)
{
    const std::string& name = options.cell.selection.workObject;
    return "work object \"" + (name.empty() ? cell.use.workObject : name) + "\"";
}

void Require(KineResult code, PrintedLines& printed)
{
    if (code == KINE_OK) return;
    std::string text = "--joints: " + InWords(code) + "\n" + AsUtf8(printed.Take());
    if (text.ends_with('\n')) text.pop_back();
    throw Failure(ExitCode::kRefused, text);
}

// The held work object where these joints carry it. It stands where a tool with its frame would, and so the
// load bends the arm as it does in the library's own chains, which count the load from there too.
PlacedWobj CarriedByJoints(const ReadyCell& ready, const KineJoint& joints, PrintedLines& printed)
{
    const CellRecords& records = ready.records;
    const KinePose origin{};
    KinePose inFlange{};
    Require(Kine_GripWobjPosToWorldPos(&origin, &records.wobj, &origin, &inFlange), printed);
    KineTool asTool = records.tool;
    asTool.HeldByRobot = 1;
    asTool.TFrame = inFlange.Frame;
    KineWobj world{};
    world.UFFix = 1;
    PlacedWobj placed;
    Require(Kine_JointToWorldPos(&joints, &asTool, &world, &records.load, &placed.carrier), printed);
    placed.wobj.HeldByRobot = 1;
    placed.wobj.UFFix = 1;
    return placed;
}

PlacedWobj PlaceOfWobj(const ConvertOptions& options, const ReadyCell& ready, PrintedLines& printed)
{
    const Cell& cell = ready.cell;
    const KineWobj& wobj = ready.records.wobj;
    if (!IsHeld(wobj)) {
        // The calls from and to the world would leave the unit out and answer as if the user frame were zero.
        if (wobj.UFFix == 0) {
            FailUsage(WobjInWords(options, cell) +
                      " is carried by a mechanical unit: the library brings poses to it from the base only "
                      "(--from base --to wobj)");
        }
        return {wobj, {}};
    }
    if (!options.flange.empty())
        return {wobj, TargetOf(options.flange, Shape::kPoses, ready.widths, &cell, "--flange").pose};
    if (!options.joints.empty()) {
        const Target target = TargetOf(options.joints, Shape::kJoints, ready.widths, &cell, "--joints");
        return CarriedByJoints(ready, target.joints, printed);
    }
    FailUsage(WobjInWords(options, cell) +
              " is held by the robot: say where it is with --flange POSE or --joints JOINTS");
}

PoseFunction FromBase(const CellRecords& records)
{
    return [records](const KinePose& pose, KinePose& out) {
        return Kine_CrdPosToWobjPos(&pose, kFromBase, &records.tool, &records.wobj, &records.load, &out);
    };
}

PoseFunction FromWorldToWobj(const CellRecords& records, const PlacedWobj& placed)
{
    if (IsHeld(placed.wobj)) {
        return [placed](const KinePose& pose, KinePose& out) {
            return Kine_WorldPosToGripWobjPos(&pose, &placed.wobj, &placed.carrier, &out);
        };
    }
    if (records.tool.HeldByRobot == 0) {
        return [records](const KinePose& pose, KinePose& out) {
            return Kine_CrdPosToWobjPos(&pose, kWithStationaryTool, &records.tool, &records.wobj,
                                        &records.load, &out);
        };
    }
    return [wobj = placed.wobj](const KinePose& pose, KinePose& out) {
        return Kine_WorldPosToFixWobjPos(&pose, &wobj, &out);
    };
}

PoseFunction ConversionOf(const ConvertOptions& options, const ReadyCell& ready, PrintedLines& printed)
{
    if (options.from == options.to) FailUsage("--from and --to are the same frame");
    const bool wantsFlange = options.from != "base" && IsHeld(ready.records.wobj);
    if (options.HasFlange() && !wantsFlange) {
        FailUsage("--flange and --joints say where a held work object is; " +
                  (options.from == "base" ? "from the base they take no part"
                                          : WobjInWords(options, ready.cell) + " is not held"));
    }
    if (options.from == "base") {
        // The world is the work object that every cell has.
        const bool isToWorld = options.to == "world";
        return FromBase(isToWorld ? RecordsOf(ready.cell, {std::string(kNone), std::string(kNone), {}})
                                  : ready.records);
    }
    const PlacedWobj placed = PlaceOfWobj(options, ready, printed);
    if (options.from == "world") return FromWorldToWobj(ready.records, placed);
    return [placed](const KinePose& pose, KinePose& out) {
        return Kine_GripWobjPosToWorldPos(&pose, &placed.wobj, &placed.carrier, &out);
    };
}

ExitCode RunConvert(const ConvertOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    PoseFilter filter(ready.widths, ConversionOf(options, ready, printed));
    return RunFilter(filter, Shape::kPoses, ready.widths, &ready.cell, options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddConvert(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App& command =
        *program.add_subcommand("convert", "Poses from one frame to another, without the arm");
    options->cell.AddTo(command);
    options->targets.AddTo(command, "POSE", "Poses in mm and degrees");
    command.add_option("--from", options->from, "Frame of the poses: world, base or wobj")
        ->required()
        ->type_name("FRAME")
        ->check(CLI::IsMember({"world", "base", "wobj"}));
    command.add_option("--to", options->to, "Frame of the answers: wobj or world")
        ->required()
        ->type_name("FRAME")
        ->check(CLI::IsMember({"wobj", "world"}));
    CLI::Option* flange = command.add_option("--flange", options->flange,
                                             "Pose of the flange in the world, for a held work object");
    flange->type_name("POSE");
    command
        .add_option("--joints", options->joints, "Joints that bring the flange there, for a held work object")
        ->type_name("JOINTS")
        ->excludes(flange);
    options->format.AddTo(command);
    command.footer(
        "Configuration integers and external axes go through as they are; a pose without\n"
        "them gets zeros. From the base, the mounting of the robot, its mechanical units and\n"
        "the external axes of each pose take part; with a held work object the pose is that\n"
        "of the work object, and the answer the stationary tool in it.\n\n"
        "Examples:\n"
        "  kine convert puma.json 400,150,450,0,-90,0 --from world --to wobj --wobj table\n"
        "  kine convert puma.json @pick --from wobj --to world --json\n"
        "  kine convert held.json @tip --from world --to wobj --joints 0,0,0,0,90,0\n"
        "  kine convert track.json --from base --to wobj --csv -i poses.csv");
    SetAction(command, action, options, RunConvert);
}

}  // namespace kine_cli

// kine jog: joints after one jog step or several.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

#include "commands/commands.h"
#include "commands/joint_rows.h"
#include "rows/row_filter.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr int kMostSteps = 1000;
constexpr std::size_t kDirections = 6;
constexpr std::array<std::string_view, kDirections> kDirectionNames = {"x", "y", "z", "rx", "ry", "rz"};
// Four-axis arms have the rotations the other way round.
constexpr std::array<std::size_t, kDirections> kSixAxisSlots = {0, 1, 2, 3, 4, 5};
constexpr std::array<std::size_t, kDirections> kFourAxisSlots = {0, 1, 2, 5, 4, 3};

// In the order of the modes of Kine_InchMovePosCalc, which begin with 1.
constexpr std::array<std::string_view, 5> kModes = {"joint", "base", "tool", "wobj", "world"};
constexpr std::int32_t kJointMode = 1;

struct JogOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    std::string mode;
    std::string moves;
    double step = 0.0;
    std::optional<double> rotationStep;
    std::optional<int> repeat;
};

// What --move says.
struct Moves
{
    KineInchDir directions{};
    bool alongAxes = false;  // joints and external axes
    bool linear = false;
    int rotations = 0;
    bool tilts = false;  // about X or Y
};

struct Jog
{
    std::int32_t mode = 0;
    KineInchDir directions{};
    std::array<double, 3> steps{};  // deg of joints, mm, deg of rotations
    int count = 1;
    bool isNumbered = false;
};

// "j3" -> 2 for prefix 'j' and at least 3 axes
std::optional<std::size_t> AxisNamed(std::string_view name, char prefix, std::size_t axes)
{
    if (name.size() != 2 || name[0] != prefix || name[1] < '1') return std::nullopt;
    const auto index = static_cast<std::size_t>(name[1] - '1');
    return index < axes ? std::optional(index) : std::nullopt;
}

[[noreturn]] void FailMove(std::string_view move, Widths widths)
{
    std::string known = "x, y, z, rx, ry, rz, j1 to j" + std::to_string(widths.axes);
    if (widths.externalAxes > 0) known += ", e1 to e" + std::to_string(widths.externalAxes);
    FailUsage("--move: \"" + std::string(move) + "\" is no move of this cell; moves are " + known +
              ", each with + or -");
}

// Notes what kind of move a name is. Its slot.
std::size_t SlotOf(std::string_view name, std::string_view move, Widths widths, Moves& moves)
{
    if (const auto axis = AxisNamed(name, 'j', widths.axes)) {
        moves.alongAxes = true;
        return *axis;
    }
    if (const auto axis = AxisNamed(name, 'e', widths.externalAxes)) {
        moves.alongAxes = true;
        return widths.axes + *axis;
    }
    for (std::size_t i = 0; i < kDirections; ++i) {
        if (kDirectionNames[i] != name) continue;
        if (i < 3) moves.linear = true;
        if (i == 3 || i == 4) moves.tilts = true;
        if (i >= 3) ++moves.rotations;
        return (widths.axes == 6 ? kSixAxisSlots : kFourAxisSlots)[i];
    }
    FailMove(move, widths);
}

Moves MovesOf(const std::string& text, Widths widths)
{
    Moves moves;
    std::string_view rest = text;
    for (bool more = true; more;) {
        const std::size_t end = std::min(rest.find(','), rest.size());
        const std::string_view move = Trim(rest.substr(0, end));
        more = end < rest.size();
        rest.remove_prefix(more ? end + 1 : end);
        const bool isSigned = !move.empty() && (move[0] == '+' || move[0] == '-');
        const std::size_t place = SlotOf(move.substr(isSigned ? 1 : 0), move, widths, moves);
        if (moves.alongAxes && (moves.linear || moves.rotations > 0)) {
            FailUsage(
                "--move: joints and external axes do not go together with x, y, z, rx, ry, rz in one step");
        }
        std::int32_t& slot = moves.directions.Slot[place];
        if (slot != 0) FailUsage("--move: \"" + std::string(move) + "\" comes on top of the same move");
        slot = isSigned && move[0] == '-' ? -1 : 1;
    }
    return moves;
}

std::int32_t ModeOf(const std::string& word, const Moves& moves)
{
    if (word.empty()) {
        if (!moves.alongAxes) FailUsage("--mode: give base, tool, wobj or world for x, y, z, rx, ry, rz");
        return kJointMode;
    }
    std::int32_t mode = kJointMode;
    for (const std::string_view known : kModes) {
        if (known == word) break;
        ++mode;
    }
    if ((mode == kJointMode) != moves.alongAxes) {
        FailUsage("--mode " + word + " moves " +
                  (mode == kJointMode ? "joints and external axes" : "along x, y, z and about rx, ry, rz"));
    }
    return mode;
}

Jog JogOf(const JogOptions& options, const Moves& moves)
{
    Jog jog;
    jog.mode = ModeOf(options.mode, moves);
    jog.directions = moves.directions;
    if (!std::isfinite(options.step)) FailUsage("--step: should be a finite number");
    if (!std::isfinite(options.rotationStep.value_or(0.0)))
        FailUsage("--rotation-step: should be a finite number");
    if (moves.linear && moves.rotations > 0 && !options.rotationStep)
        FailUsage("--rotation-step: needed beside --step where --move has both x, y, z and rx, ry, rz");
    jog.steps = {options.step, options.step, options.rotationStep.value_or(options.step)};
    jog.count = options.repeat.value_or(1);
    jog.isNumbered = options.repeat.has_value();
    return jog;
}

class JogFilter : public RowFilter
{
public:
    JogFilter(const ReadyCell& ready, const Jog& jog) : ready_(ready), jog_(jog), texts_(ready.cell.armType)
    {}

    [[nodiscard]] std::vector<Column> Columns() const override
    {
        std::vector<Column> columns;
        if (jog_.isNumbered) columns.push_back({"step", 5, 0});
        for (const Column& column : JointAndPostureColumns(ready_.widths, texts_)) columns.push_back(column);
        return columns;
    }
    // Ends with the step that is refused: there is nothing to go on from.
    void Answer(const Target& target, Answers& answers) override
    {
        KineJoint joints = target.joints;
        for (int step = 1; step <= jog_.count; ++step) {
            const KineResult code = Step(joints);
            answers.row.Begin(target.name);
            if (jog_.isNumbered) answers.row.Integer(step);
            if (code != KINE_OK) return answers.Refuse(target, code);
            answers.row.Joints(joints);
            answers.row.Text(PostureOf(joints, texts_));
            answers.row.End();
        }
    }

private:
    KineResult Step(KineJoint& joints) const
    {
        const CellRecords& records = ready_.records;
        std::array<double, 3> steps = jog_.steps;  // the call turns its own into radians
        return Kine_InchMovePosCalc(&jog_.directions, jog_.mode, &records.tool, &records.wobj, &records.load,
                                    steps.data(), &joints, &joints);
    }

    const ReadyCell& ready_;
    const Jog& jog_;
    PostureTexts texts_;
};

ExitCode RunJog(const JogOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const Moves moves = MovesOf(options.moves, ready.widths);
    const Jog jog = JogOf(options, moves);
    std::string notes;
    if (moves.rotations > 1)
        notes += "kine: note: several rotations in one step are not exactly a rotation\n";
    if (moves.tilts && !ready.cell.IsSixAxis())
        notes += "kine: note: a four-axis arm does not tilt its tool: rx and ry lead elsewhere\n";
    if (!options.targets.quiet) static_cast<void>(std::fputs(notes.c_str(), stderr));
    JogFilter filter(ready, jog);
    return RunFilter(filter, Shape::kJoints, ready.widths, &ready.cell, options.targets.source,
                     options.targets.Stream(options.format), printed);
}

}  // namespace

void AddJog(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<JogOptions>();
    CLI::App& command = *program.add_subcommand("jog", "Joints after a jog step");
    options->cell.AddTo(command);
    options->targets.AddTo(command, "JOINTS", "Joints in degrees, then external axes");
    command
        .add_option("--mode", options->mode,
                    "Axes to move along: joint, base, tool, wobj or world; joint goes without saying")
        ->type_name("MODE")
        ->check(CLI::IsMember({"joint", "base", "tool", "wobj", "world"}));
    command
        .add_option(
            "--move", options->moves,
            "Where to: x, y, z along and rx, ry, rz about the axes, or j1, j2 ... and e1, e2 ... for\n"
            "joints and external axes, each with + or -; several parted by commas")
        ->required()
        ->type_name("MOVES");
    command
        .add_option("--step", options->step,
                    "How far: mm for x, y, z; degrees for rx, ry, rz and joints; external axes in their own\n"
                    "unit")
        ->required()
        ->type_name("SIZE");
    command
        .add_option("--rotation-step", options->rotationStep,
                    "Degrees for rx, ry, rz where --move has x, y or z beside them")
        ->type_name("DEG");
    command.add_option("--repeat", options->repeat, "Go on from each result, with a row for every step")
        ->type_name("N")
        ->check(CLI::Range(1, kMostSteps));
    options->format.AddTo(command);
    command.footer(
        "--mode wobj turns about the origin of the work object, the other modes about the tool point. The "
        "joints\n"
        "are not compared with the axis limits. A step that ends close to a singularity is refused with "
        "0x6092;\n"
        "--mode joint leads out of one.\n"
        "\n"
        "Examples:\n"
        "  kine jog puma.json 10,20,30,40,50,60 --mode tool --move +z --step 10\n"
        "  kine jog puma.json 10,20,30,40,50,60 --mode base --move -x,+rz --step 5 --rotation-step 2\n"
        "  kine jog puma.json 10,20,30,40,50,60 --move +j1,-j3 --step 1 --repeat 5 --csv");
    SetAction(command, action, options, RunJog);
}

}  // namespace kine_cli

// kine ik: poses in the work object to joints. With the four integers of a pose the library is asked once;
// without them all its solutions are looked at.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>

#include "commands/commands.h"
#include "commands/joint_rows.h"
#include "library/codes.h"
#include "rows/row_filter.h"
#include "solve/solutions.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr const char* kOutside = "solutions outside the axis limits\n";

struct IkOptions
{
    CellOptions cell;
    TargetOptions targets;
    FormatOptions format;
    bool all = false;
    std::optional<std::string> posture;
    std::optional<std::string> near;
};

// What an open target is solved with.
struct Wish
{
    PostureChoice choice;
    KineJoint near{};
};

// The joints of an option: numbers, or @ and a name of the cell.
KineJoint JointsOfOption(const ReadyCell& ready, const std::string& option, const std::string& text)
{
    Shape shape = Shape::kJoints;
    try {
        return ReadTargets(shape, ready.widths, &ready.cell, {{text}, ""}).front().target.joints;
    } catch (const Failure& failure) {
        FailUsage(option + ": " + failure.what());
    }
}

Wish WishOf(const IkOptions& options, const ReadyCell& ready)
{
    Wish wish;
    wish.choice = PostureNamed(ready.cell.armType, options.posture.value_or(""));
    if (options.near) {
        wish.near = JointsOfOption(ready, "--near", *options.near);
    } else if (const KineJoint* home = Find(ready.cell.joints, "home")) {
        wish.near = *home;
    }
    return wish;
}

// Why there is no solution: one outside the limits, or the first posture that the library refused.
void RefuseUnsolved(const Target& target, const Solutions& solutions, const PostureChoice& choice,
                    Answers& answers)
{
    const PostureAnswer* refused = nullptr;
    for (std::size_t posture = 0; posture < solutions.postures.size(); ++posture) {
        const PostureAnswer& answer = solutions.postures[posture];
        if (!choice.Matches(posture)) continue;
        if (answer.code == KINE_OK) return answers.RefuseRow(target, KINE_ERR_CONFIG, kOutside);
        if (refused == nullptr) refused = &answer;
    }
    if (refused != nullptr) answers.RefuseRow(target, refused->code, refused->lines);
}

class IkFilter : public RowFilter
{
public:
    IkFilter(const ReadyCell& ready, const Wish& wish, bool overrides, PrintedLines& printed)
        : ready_(ready),
          wish_(wish),
          overrides_(overrides),
          printed_(printed),
          texts_(ready.cell.armType),
          columns_(JointAndPostureColumns(ready.widths, texts_))
    {}

    [[nodiscard]] std::vector<Column> Columns() const override { return columns_; }
    void Answer(const Target& target, Answers& answers) override
    {
        if (!target.hasConfig || overrides_) return AnswerOpen(target, answers);
        const KinePose& pose = target.pose;
        const CellRecords& records = ready_.records;
        KineJoint joints{};
        if (answers.Accept(
                target, Kine_WobjPosToJoint(&pose, &records.tool, &records.wobj, &records.load, &joints))) {
            Write(target, joints, {pose.Cfg1, pose.Cfg2, pose.Cfg3, pose.Cfg4}, answers);
        }
    }

private:
    void AnswerOpen(const Target& target, Answers& answers)
    {
        const Solutions solutions = Solve(ready_, target.pose, printed_, &wish_.near);
        const Solution* nearest = Nearest(ready_, solutions, wish_.near, wish_.choice);
        if (nearest == nullptr) return RefuseUnsolved(target, solutions, wish_.choice, answers);
        Write(target, nearest->joints, nearest->config, answers);
    }
    void Write(const Target& target, const KineJoint& joints, const KineArmConfig& config, Answers& answers)
    {
        answers.row.Begin(target.name);
        answers.row.Joints(joints);
        answers.row.Text(texts_.Of(config));
        answers.row.End();
    }

    const ReadyCell& ready_;
    const Wish& wish_;
    bool overrides_;
    PrintedLines& printed_;
    PostureTexts texts_;
    std::vector<Column> columns_;
};

// Every solution, one row each.
class AllFilter : public RowFilter
{
public:
    AllFilter(const ReadyCell& ready, const Wish& wish, bool nearestFirst, PrintedLines& printed)
        : ready_(ready),
          wish_(wish),
          nearestFirst_(nearestFirst),
          printed_(printed),
          texts_(ready.cell.armType)
    {}

    [[nodiscard]] std::vector<Column> Columns() const override
    {
        std::vector<Column> columns = {{"solution", 8, 0}};
        for (const Column& column : JointColumns(ready_.widths)) columns.push_back(column);
        for (const char* name : {"cfg1", "cfg2", "cfg3", "cfg4"}) columns.push_back({name, 5, 0});
        columns.push_back(PostureColumn(texts_));
        return columns;
    }
    void Answer(const Target& target, Answers& answers) override
    {
        Solutions solutions = Solve(ready_, target.pose, printed_);
        std::vector<Solution>& all = solutions.all;
        std::erase_if(all, [&](const Solution& s) { return !wish_.choice.Matches(s.posture); });
        if (nearestFirst_) {
            std::stable_sort(all.begin(), all.end(), [&](const Solution& a, const Solution& b) {
                return Travel(ready_, a.joints, wish_.near) < Travel(ready_, b.joints, wish_.near);
            });
        }
        for (std::size_t i = 0; i < all.size(); ++i) Write(target, i + 1, all[i], answers);
        for (std::size_t i = 0; i < solutions.postures.size(); ++i) {
            const PostureAnswer& answer = solutions.postures[i];
            if (wish_.choice.Matches(i) && !answer.withinLimits) Report(target, i, answer, answers);
        }
        if (all.empty()) RefuseUnsolved(target, solutions, wish_.choice, answers);
    }

private:
    void Write(const Target& target, std::size_t number, const Solution& solution, Answers& answers)
    {
        RowWriter& row = answers.row;
        row.Begin(target.name);
        row.Integer(static_cast<std::int64_t>(number));
        row.Joints(solution.joints);
        const KineArmConfig& config = solution.config;
        for (const std::int32_t value : {config.Cfg1, config.Cfg2, config.Cfg3, config.Cfg4})
            row.Integer(value);
        row.Text(texts_.Of(solution.posture));
        row.End();
    }
    // Why a posture has no solution: an object of its own in JSON, a line for people otherwise.
    void Report(const Target& target, std::size_t posture, const PostureAnswer& answer, Answers& answers)
    {
        const KineResult code = answer.code != KINE_OK ? answer.code : KINE_ERR_CONFIG;
        const std::string why = answer.code != KINE_OK ? answer.lines : Outside(answer.joints);
        RowWriter& row = answers.row;
        if (row.OutputFormat() == Format::kJson) {
            row.Begin(target.name);
            const std::size_t before = Columns().size() - 1;
            for (std::size_t i = 0; i < before; ++i) row.Empty();
            row.Text(texts_.Of(posture));
            row.EndRefused(code, why);
            return;
        }
        std::string& text = answers.diagnostics;
        ((((text += "kine: target ") += target.name) += ": ") += texts_.Of(posture)) += ": ";
        ((text += HexCode(code)) += ' ') += NameOf(code);
        text += why.empty() ? "\n" : ": " + why;
    }
    [[nodiscard]] std::string Outside(const KineJoint& joints) const
    {
        std::string axes;
        for (const std::size_t axis : AxesOutside(ready_, joints)) {
            axes += (axes.empty() ? ": axis " : ", axis ") + std::to_string(axis + 1) + " at " +
                    Fixed(joints.Axis[axis], 4) + " deg";
        }
        return "outside the axis limits" + axes + "\n";
    }

    const ReadyCell& ready_;
    const Wish& wish_;
    bool nearestFirst_;
    PrintedLines& printed_;
    PostureTexts texts_;
};

ExitCode RunIk(const IkOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const Wish wish = WishOf(options, ready);
    const auto run = [&](RowFilter&& filter) {
        return RunFilter(filter, Shape::kPoses, ready.widths, &ready.cell, options.targets.source,
                         options.targets.Stream(options.format), printed);
    };
    if (options.all) return run(AllFilter(ready, wish, options.near.has_value(), printed));
    return run(IkFilter(ready, wish, options.posture || options.near, printed));
}

}  // namespace

void AddIk(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<IkOptions>();
    CLI::App& command =
        *program.add_subcommand("ik", "Inverse kinematics: poses in the work object to joints");
    options->cell.AddTo(command);
    options->targets.AddTo(command, "POSE",
                           "x,y,z in mm, a,b,c in degrees, with or without cfg1 to cfg4, then external axes");
    command
        .add_option("--near", options->near,
                    "Of the solutions the one nearest to these joints; numbers parted by commas, or @NAME")
        ->type_name("JOINTS");
    command
        .add_option(
            "--posture", options->posture,
            "Solutions of this posture only: of front|back, near|far, plain|flipped, or elbow+|elbow-")
        ->type_name("WORDS");
    command.add_flag("--all", options->all,
                     "Every posture and turn within the axis limits; with --near the nearest first");
    options->format.AddTo(command);
    command.footer(
        "A pose with its four integers is solved as they say, whatever the axis limits are. Without them, "
        "and\n"
        "wherever --near or --posture is given, the integers are left open: the answer is the solution "
        "within the\n"
        "axis limits with the smallest sum of axis travels from --near, or from the joints \"home\" of the "
        "cell, or\n"
        "from zeros. A target that has none is refused with 0x6090 where it has solutions outside the axis "
        "limits,\n"
        "otherwise with the code of the first posture.\n"
        "\n"
        "Examples:\n"
        "  kine ik puma.json 431.8,150.05,452.1,0,-45,0,0,0,0,0\n"
        "  kine ik puma.json 300,200,300,0,0,90 --near 20,0,0,0,30,0 --posture \"front plain\"\n"
        "  kine ik puma.json 300,200,300,0,0,90 --all --csv | kine fk puma.json");
    SetAction(command, action, options, RunIk);
}

}  // namespace kine_cli

#include "check/round_trip.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "check/frame_difference.h"
#include "check/joint_ranges.h"
#include "check/joint_samples.h"
#include "library/codes.h"
#include "library/session.h"
#include "solve/solutions.h"

namespace kine_cli {
namespace {

// Joints nearer than this are the same, deg: far above what the refinement leaves, far below what an
// arm repeats.
constexpr double kSameJoints = 1e-4;

// Poses next to a singularity have answers of another kind, and none of them says anything about the cell.
bool IsNearSingular(const Cell& cell, const KineJoint& joints)
{
    constexpr std::uint32_t kWideKind = 2;
    if (Kine_IsSingularity(&joints, kWideKind) != KINE_OK) return true;
    if (cell.IsSixAxis()) return false;
    // The library's own test takes the stretched and the folded elbow from one side only.
    constexpr double kSmallSine = 0.0524;
    return std::fabs(std::sin(joints.Axis[1] / 57.29577951308232)) < kSmallSine;
}

// A four-axis arm with its tool off the flange axis may answer with other joints where the heading is
// within rounding
// of a half turn.
bool IsAtHeadingCut(const Cell& cell, const KinePose& pose)
{
    return !cell.IsSixAxis() && std::fabs(pose.Frame.A) > 180.0 - 1e-6;
}

double LargestDifference(const Cell& cell, const KineJoint& a, const KineJoint& b)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < cell.AxisCount(); ++i)
        largest = std::max(largest, std::fabs(a.Axis[i] - b.Axis[i]));
    return largest;
}

std::size_t PostureOf(const Cell& cell, const KineJoint& joints)
{
    KineArmConfig config{};
    if (Kine_GetArmType(&joints, &config) != KINE_OK) return 0;
    if (!cell.IsSixAxis()) return config.Cfg1 > 0 ? 0 : 1;
    return static_cast<std::size_t>(std::clamp(config.Cfg4, 0, 7));
}

void Refuse(PostureTally& tally, KineResult code, const KineJoint& joints, PrintedLines& printed)
{
    printed.Take();
    ++tally.refused[code];
    if (!tally.firstRefused) tally.firstRefused = joints;
}

void TryJoints(const Cell& cell, const CellRecords& records, const KineJoint& joints, PostureTally& tally,
               PrintedLines& printed)
{
    if (IsNearSingular(cell, joints)) {
        ++tally.nearSingular;
        return;
    }
    KinePose pose{};
    KinePose reached{};
    KineJoint back{};
    KineResult code = JointsToPose(joints, records, Reference::kWorkObject, pose);
    if (code == KINE_OK && IsAtHeadingCut(cell, pose)) {
        ++tally.nearSingular;
        return;
    }
    if (code == KINE_OK)
        code = Kine_WobjPosToJoint(&pose, &records.tool, &records.wobj, &records.load, &back);
    if (code == KINE_OK) code = JointsToPose(back, records, Reference::kWorkObject, reached);
    if (code != KINE_OK) {
        Refuse(tally, code, joints, printed);
        return;
    }
    const FrameDifference residual = DifferenceOf(pose.Frame, reached.Frame);
    const double difference = LargestDifference(cell, joints, back);
    tally.position.Take(residual.mm, joints);
    tally.rotation.Take(residual.deg, joints);
    tally.joint.Take(difference, joints);
    const bool isSame = difference <= kSameJoints;
    ++(isSame ? tally.same : tally.other);
    if (!isSame && !tally.firstOther) tally.firstOther = joints;
}

// A word of a command line, in quotes when a shell would take it apart.
std::string ShellWord(const std::string& word)
{
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-+=.,/:@%";
    if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) return word;
    std::string quoted = "'";
    for (const char c : word) (c == '\'') ? quoted += "'\\''" : quoted += c;
    return quoted + "'";
}

std::string Selected(const Cell& cell, const Selection& selection)
{
    std::string options;
    if (selection.tool != cell.use.tool) options += " --tool " + ShellWord(selection.tool);
    if (selection.workObject != cell.use.workObject) options += " --wobj " + ShellWord(selection.workObject);
    if (selection.load != cell.use.load) options += " --load " + ShellWord(selection.load);
    return options;
}

}  // namespace

void Worst::Take(double candidate, const KineJoint& at)
{
    if (joints && !(candidate > value)) return;
    value = candidate;
    joints = at;
}

std::uint64_t PostureTally::Refused() const
{
    std::uint64_t sum = 0;
    for (const auto& [code, count] : refused) sum += count;
    return sum;
}

void PostureTally::Add(const PostureTally& more)
{
    same += more.same;
    other += more.other;
    nearSingular += more.nearSingular;
    for (const auto& [code, count] : more.refused) refused[code] += count;
    const std::array<Worst PostureTally::*, 3> figures = {&PostureTally::position, &PostureTally::rotation,
                                                          &PostureTally::joint};
    for (const auto figure : figures) {
        const Worst& worst = more.*figure;
        if (worst.joints) (this->*figure).Take(worst.value, *worst.joints);
    }
    if (!firstOther) firstOther = more.firstOther;
    if (!firstRefused) firstRefused = more.firstRefused;
}

PostureTally RoundTrip::Total() const
{
    PostureTally total;
    for (const PostureTally& posture : postures) total.Add(posture);
    return total;
}

std::vector<Selection> CombinationsOf(const Cell& cell)
{
    const std::string none(kNone);
    std::vector<Selection> combinations;
    for (unsigned left = 0; left < 8; ++left) {
        const Selection selection = {(left & 1U) != 0 ? none : cell.use.tool,
                                     (left & 2U) != 0 ? none : cell.use.workObject,
                                     (left & 4U) != 0 ? none : cell.use.load};
        const CellRecords records = RecordsOf(cell, selection);
        if (records.tool.HeldByRobot == records.wobj.HeldByRobot) continue;
        const bool isKnown =
            std::any_of(combinations.begin(), combinations.end(), [&](const Selection& known) {
                return known.tool == selection.tool && known.workObject == selection.workObject &&
                       known.load == selection.load;
            });
        if (!isKnown) combinations.push_back(selection);
    }
    return combinations;
}

RoundTrip TryRoundTrip(const Cell& cell, const Selection& selection, std::size_t samples,
                       PrintedLines& printed)
{
    const CellRecords records = RecordsOf(cell, selection);
    const JointSamples drawn(cell);
    RoundTrip trip;
    trip.selection = selection;
    trip.postures.resize(PosturesOf(cell.armType).size());
    for (std::size_t n = 0; n < samples; ++n) {
        const KineJoint joints = drawn.At(n);
        TryJoints(cell, records, joints, trip.postures[PostureOf(cell, joints)], printed);
    }
    return trip;
}

void JudgeRoundTrip(const RoundTrip& trip, FindingList& findings)
{
    const PostureTally total = trip.Total();
    const std::string of =
        " of " + std::to_string(total.Tried()) + " joint sets (" + InWords(trip.selection) + ")";
    if (total.Tried() == 0) {
        findings.Warning(
            "round_trip_empty", "limits",
            {"every joint set tried is close to a singularity", "The round trip says nothing about the cell.",
             "Check the lengths of the arm and the limits."});
        return;
    }
    if (total.other > 0) {
        findings.Error("round_trip_other_joints", "arm",
                       {std::to_string(total.other) + of + " come back as other joints, with KINE_OK",
                        "The parameters are not those of a nominal arm with small errors.",
                        "Check twists, d3 and lateral offset; of a four-axis arm the tilts."});
    }
    for (const auto& [code, count] : total.refused) {
        const kinedll::CodeText* text = TextsOf(code);
        findings.Error(
            "round_trip_refused", "arm",
            {std::to_string(count) + of + " are refused with " + HexCode(code) + " " +
                 std::string(NameOf(code)),
             text ? std::string("The code means: ") + text->cause + "." : "", text ? text->remedy : ""});
    }
}

std::string RepeatCommand(const Cell& cell, const Selection& selection, const KineJoint& joints)
{
    const std::string options = " " + ShellWord(cell.file) + Selected(cell, selection) + " --csv";
    std::string numbers;
    for (std::size_t i = 0; i < cell.AxisCount(); ++i) numbers += (i ? "," : "") + Shown(joints.Axis[i]);
    for (std::size_t i = 0; i < std::min(cell.externalAxes.size(), kExternalAxes); ++i)
        numbers += "," + Shown(joints.ExtAxis[i]);
    return "kine fk" + options + " -- " + numbers + " | kine ik" + options;
}

std::string InWords(const Selection& selection)
{
    return "tool " + selection.tool + ", work object " + selection.workObject + ", load " + selection.load;
}

}  // namespace kine_cli

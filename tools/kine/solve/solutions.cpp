#include "solve/solutions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>

#include "failure.h"

namespace kine_cli {
namespace {

constexpr double kTurn = 360.0;
// A turned solution that comes back further from its joints than rounding would bring it is not the one asked for.
constexpr double kSameJointsDeg = 1e-6;

struct PostureWord
{
    std::string_view word;
    std::uint32_t bit;
    bool isSet;
};
constexpr std::array<PostureWord, 6> kSixAxisWords = {{{"front", 4, false},
                                                       {"back", 4, true},
                                                       {"near", 2, false},
                                                       {"far", 2, true},
                                                       {"noflip", 1, false},
                                                       {"flip", 1, true}}};
constexpr std::array<PostureWord, 2> kFourAxisWords = {{{"elbow+", 1, false}, {"elbow-", 1, true}}};

std::span<const PostureWord> WordsOf(std::uint32_t armType)
{
    if (armType == KINE_ARM_SIX_AXIS) return kSixAxisWords;
    return kFourAxisWords;
}

// An axis whose whole turns a configuration integer selects.
struct TurnedAxis
{
    std::size_t axis;
    std::int32_t KinePose::*number;
};
std::vector<TurnedAxis> TurnedAxesOf(std::uint32_t armType)
{
    if (armType == KINE_ARM_SIX_AXIS)
        return {{0, &KinePose::Cfg1}, {3, &KinePose::Cfg2}, {5, &KinePose::Cfg3}};
    if (armType == KINE_ARM_FOUR_AXIS) return {{3, &KinePose::Cfg4}};
    return {{0, &KinePose::Cfg2}, {1, &KinePose::Cfg3}, {3, &KinePose::Cfg4}};
}

// The quarter turn of zero, or of the limit that is nearest to it.
std::int32_t NumberNearZero(const Cell& cell, std::size_t axis)
{
    if (!cell.hasLimits || cell.lower.Axis[axis] >= cell.upper.Axis[axis]) return 0;
    const double angle = std::clamp(0.0, cell.lower.Axis[axis], cell.upper.Axis[axis]);
    return static_cast<std::int32_t>(std::floor(std::clamp(angle / 90.0, -1e6, 1e6)));
}

// Turns of an angle within the limits of its axis.
std::vector<double> TurnsOf(const Cell& cell, std::size_t axis, double angle)
{
    double lower = -kTurn / 2;
    double upper = kTurn / 2;
    if (cell.hasLimits && cell.lower.Axis[axis] < cell.upper.Axis[axis]) {
        // The library takes turn numbers far beyond these; so many turns of one axis help nobody.
        constexpr double kFurthest = 10 * kTurn;
        lower = std::max(cell.lower.Axis[axis], -kFurthest);
        upper = std::min(cell.upper.Axis[axis], kFurthest);
    }
    std::vector<double> turns;
    for (double n = std::ceil((lower - angle) / kTurn); angle + n * kTurn <= upper; n += 1.0) {
        turns.push_back(angle + n * kTurn);
        if (!cell.hasLimits) break;  // +-180 are the same turn
    }
    return turns;
}

bool IsWithinLimits(const Cell& cell, std::size_t axis, double angle)
{
    if (!cell.hasLimits || cell.lower.Axis[axis] >= cell.upper.Axis[axis]) return true;
    return cell.lower.Axis[axis] <= angle && angle <= cell.upper.Axis[axis];
}

KineResult Inverse(const ReadyCell& ready, const KinePose& pose, KineJoint& joints)
{
    const CellRecords& records = ready.records;
    return Kine_WobjPosToJoint(&pose, &records.tool, &records.wobj, &records.load, &joints);
}

double Travel(const ReadyCell& ready, const KineJoint& a, const KineJoint& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < ready.widths.axes; ++i) sum += std::fabs(a.Axis[i] - b.Axis[i]);
    return sum;
}

// Adds the solution in the turns of `wanted`, if the library leads there.
void AddTurned(const ReadyCell& ready, KinePose pose, const KineJoint& wanted, std::size_t posture,
               std::vector<Solution>& all, PrintedLines& printed)
{
    Solution solution;
    solution.posture = posture;
    if (Kine_GetArmType(&wanted, &solution.config) != KINE_OK) return;
    pose.Cfg1 = solution.config.Cfg1;
    pose.Cfg2 = solution.config.Cfg2;
    pose.Cfg3 = solution.config.Cfg3;
    pose.Cfg4 = solution.config.Cfg4;
    if (Inverse(ready, pose, solution.joints) != KINE_OK) {
        printed.Take();
        return;
    }
    if (Travel(ready, solution.joints, wanted) < kSameJointsDeg) all.push_back(solution);
}

}  // namespace

std::vector<KineArmConfig> PosturesOf(std::uint32_t armType)
{
    if (armType != KINE_ARM_SIX_AXIS) return {{1, 0, 0, 0}, {-1, 0, 0, 0}};
    std::vector<KineArmConfig> postures;
    for (std::int32_t posture = 0; posture < 8; ++posture) postures.push_back({0, 0, 0, posture});
    return postures;
}

std::string PostureWords(std::uint32_t armType, const KineArmConfig& config)
{
    const bool isSixAxis = armType == KINE_ARM_SIX_AXIS;
    const auto posture = static_cast<std::uint32_t>(isSixAxis ? config.Cfg4 : config.Cfg1 > 0 ? 0 : 1);
    std::string text;
    for (const PostureWord& word : WordsOf(armType)) {
        if (((posture & word.bit) != 0) == word.isSet) (text += text.empty() ? "" : " ") += word.word;
    }
    return text;
}

PostureChoice PostureNamed(std::uint32_t armType, const std::string& words)
{
    PostureChoice choice;
    std::string_view rest = words;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(" ,"), rest.size());
        const std::string_view name = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (name.empty()) continue;
        const std::span<const PostureWord> known = WordsOf(armType);
        const auto word =
            std::find_if(known.begin(), known.end(), [&](const PostureWord& w) { return w.word == name; });
        if (word == known.end() || (choice.known & word->bit) != 0) {
            std::string list;
            for (const PostureWord& w : known) (list += list.empty() ? "" : ", ") += w.word;
            FailUsage("\"" + words + "\" is no posture of this arm; words are: " + list +
                      ", one of each pair");
        }
        choice.known |= word->bit;
        if (word->isSet) choice.value |= word->bit;
    }
    return choice;
}

Solutions Solve(const ReadyCell& ready, const KinePose& pose, PrintedLines& printed)
{
    const Cell& cell = ready.cell;
    const std::vector<TurnedAxis> turned = TurnedAxesOf(cell.armType);
    const std::vector<KineArmConfig> postures = PosturesOf(cell.armType);
    Solutions solutions;
    for (std::size_t posture = 0; posture < postures.size(); ++posture) {
        PostureAnswer& answer = solutions.postures.emplace_back();
        KinePose asked = pose;
        asked.Cfg1 = postures[posture].Cfg1;
        asked.Cfg2 = asked.Cfg3 = 0;
        asked.Cfg4 = postures[posture].Cfg4;
        for (const TurnedAxis& axis : turned) asked.*axis.number = NumberNearZero(cell, axis.axis);
        answer.code = Inverse(ready, asked, answer.joints);
        if (answer.code != KINE_OK) {
            answer.lines = printed.Take();
            continue;
        }
        std::vector<KineJoint> wanted = {answer.joints};
        for (std::size_t axis = 0; axis < ready.widths.axes; ++axis) {
            const bool isTurned = std::any_of(turned.begin(), turned.end(),
                                              [&](const TurnedAxis& t) { return t.axis == axis; });
            std::vector<KineJoint> next;
            for (const KineJoint& joints : wanted) {
                if (!isTurned) {
                    if (IsWithinLimits(cell, axis, joints.Axis[axis])) next.push_back(joints);
                    continue;
                }
                for (const double angle : TurnsOf(cell, axis, joints.Axis[axis])) {
                    next.push_back(joints);
                    next.back().Axis[axis] = angle;
                }
            }
            wanted = next;
        }
        const std::size_t before = solutions.all.size();
        for (const KineJoint& joints : wanted)
            AddTurned(ready, pose, joints, posture, solutions.all, printed);
        answer.withinLimits = solutions.all.size() > before;
    }
    return solutions;
}

const Solution* Nearest(const ReadyCell& ready, const Solutions& solutions, const KineJoint& joints,
                        const PostureChoice& choice)
{
    const Solution* nearest = nullptr;
    double shortest = 0.0;
    for (const Solution& solution : solutions.all) {
        if (!choice.Matches(solution.posture)) continue;
        const double travel = Travel(ready, solution.joints, joints);
        if (nearest && !(travel < shortest)) continue;
        nearest = &solution;
        shortest = travel;
    }
    return nearest;
}

}  // namespace kine_cli

#include "solve/solutions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "failure.h"

namespace kine_cli {
namespace {

constexpr double kTurn = 360.0;
// The library takes turn numbers far beyond these; so many turns of one axis help nobody.
constexpr double kFurthest = 10 * kTurn;
constexpr double kOpenLimit = 57000.0;   // within the 999 rad of an axis without limits
constexpr double kFurthestNumber = 1e6;  // of quarter turns, that the library takes
// An axis that stands on its limit may come back beyond it by rounding.
constexpr double kAtLimitDeg = 1e-6;
// A turned solution that comes back further from its joints than rounding would bring it is not the one
// asked for.
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
                                                       {"plain", 1, false},
                                                       {"flipped", 1, true}}};
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
constexpr std::array<TurnedAxis, 3> kSixAxisTurns = {
    {{0, &KinePose::Cfg1}, {3, &KinePose::Cfg2}, {5, &KinePose::Cfg3}}};
constexpr std::array<TurnedAxis, 1> kFourAxisTurns = {{{3, &KinePose::Cfg4}}};
constexpr std::array<TurnedAxis, 3> kFourAxis4110Turns = {
    {{0, &KinePose::Cfg2}, {1, &KinePose::Cfg3}, {3, &KinePose::Cfg4}}};

std::span<const TurnedAxis> TurnedAxesOf(std::uint32_t armType)
{
    if (armType == KINE_ARM_SIX_AXIS) return kSixAxisTurns;
    if (armType == KINE_ARM_FOUR_AXIS) return kFourAxisTurns;
    return kFourAxis4110Turns;
}

using Range = std::pair<double, double>;

// None where the library opens the axis.
std::optional<Range> LimitsOf(const Cell& cell, std::size_t axis)
{
    const double lower = cell.lower.Axis[axis];
    const double upper = cell.upper.Axis[axis];
    if (!cell.hasLimits || lower >= upper) return std::nullopt;
    return Range(lower, upper);
}

// A turn number that the limits allow: that of zero, or of the limit nearest to it. Axis 2 of type 4110
// needs a whole turn: with another number the library takes some bent elbows for stretched ones.
std::int32_t NumberNearZero(const Cell& cell, std::size_t axis)
{
    const std::optional<Range> limits = LimitsOf(cell, axis);
    if (!limits) return 0;
    const double angle = std::clamp(0.0, limits->first, limits->second);
    const double number = std::floor(std::clamp(angle / 90.0, -kFurthestNumber, kFurthestNumber));
    const bool isWhole = cell.armType == KINE_ARM_FOUR_AXIS_4110 && axis == 1;
    return static_cast<std::int32_t>(isWhole ? 4.0 * std::round(number / 4.0) : number);
}

// What an axis may stand at.
struct Turns
{
    double angle;
    double lowest;  // in whole turns from the angle
    double highest;

    [[nodiscard]] std::vector<double> All() const
    {
        std::vector<double> angles(static_cast<std::size_t>(highest - lowest) + 1);
        for (std::size_t i = 0; i < angles.size(); ++i)
            angles[i] = angle + (lowest + static_cast<double>(i)) * kTurn;
        return angles;
    }
    // Half way between two turns the angle stays as it is.
    [[nodiscard]] double NearestTo(double wanted) const
    {
        return angle + std::clamp(std::rint((wanted - angle) / kTurn), lowest, highest) * kTurn;
    }
};

// None when the axis has no turn within its limits. Axes whose turns no number selects have only the one that
// the library gives them. Without limits all turns count that the library takes when the joints near which
// they should be are known, otherwise the one that it gives.
std::optional<Turns> TurnsOf(const Cell& cell, std::size_t axis, double angle, bool isNearKnown)
{
    const std::span<const TurnedAxis> turned = TurnedAxesOf(cell.armType);
    const bool isTurned =
        std::any_of(turned.begin(), turned.end(), [&](const TurnedAxis& t) { return t.axis == axis; });
    const std::optional<Range> limits = LimitsOf(cell, axis);
    if (!limits) {
        const double most = isTurned && isNearKnown ? std::floor(kOpenLimit / kTurn) : 0.0;
        return Turns{angle, -most, most};
    }
    const double middle = std::clamp(0.0, limits->first, limits->second);
    const double lower = std::max(limits->first, middle - kFurthest) - kAtLimitDeg;
    const double upper = std::min(limits->second, middle + kFurthest) + kAtLimitDeg;
    Turns turns{angle, 0.0, 0.0};
    if (!isTurned) return lower <= angle && angle <= upper ? std::optional(turns) : std::nullopt;
    turns.lowest = std::ceil((lower - angle) / kTurn);
    turns.highest = std::floor((upper - angle) / kTurn);
    return turns.lowest <= turns.highest ? std::optional(turns) : std::nullopt;
}

// The joints in every turn within the limits, or in those nearest to `near`.
std::vector<KineJoint> Turned(const ReadyCell& ready, const KineJoint& joints, const KineJoint* near)
{
    std::vector<KineJoint> all = {joints};
    for (std::size_t axis = 0; axis < ready.widths.axes; ++axis) {
        const std::optional<Turns> turns = TurnsOf(ready.cell, axis, joints.Axis[axis], near != nullptr);
        if (!turns) return {};
        const std::vector<double> angles =
            near != nullptr ? std::vector<double>{turns->NearestTo(near->Axis[axis])} : turns->All();
        std::vector<KineJoint> next;
        for (const KineJoint& before : all) {
            for (const double angle : angles) next.emplace_back(before).Axis[axis] = angle;
        }
        all = std::move(next);
    }
    return all;
}

KineResult Inverse(const ReadyCell& ready, const KinePose& pose, KineJoint& joints)
{
    const CellRecords& records = ready.records;
    return Kine_WobjPosToJoint(&pose, &records.tool, &records.wobj, &records.load, &joints);
}

void SetConfig(KinePose& pose, const KineArmConfig& config)
{
    pose.Cfg1 = config.Cfg1;
    pose.Cfg2 = config.Cfg2;
    pose.Cfg3 = config.Cfg3;
    pose.Cfg4 = config.Cfg4;
}

// The solution in the turns of `wanted`, when the integers lead the library there.
std::optional<Solution> Led(const ReadyCell& ready, KinePose pose, const KineArmConfig& config,
                            const KineJoint& wanted, PrintedLines& printed)
{
    Solution solution;
    solution.config = config;
    solution.posture = PostureIndex(ready.cell.armType, config);
    SetConfig(pose, config);
    if (Inverse(ready, pose, solution.joints) != KINE_OK) {
        printed.Take();
        return std::nullopt;
    }
    if (!(Travel(ready, solution.joints, wanted) < kSameJointsDeg)) return std::nullopt;
    return solution;
}

// One posture of a pose.
struct AskedPosture
{
    std::size_t index;
    KinePose pose;  // with the integers it was solved with
};

// Adds the solution in the turns of `wanted`. Whether there is one.
bool AddTurned(const ReadyCell& ready, const AskedPosture& asked, const KineJoint& answer,
               const KineJoint& wanted, std::vector<Solution>& all, PrintedLines& printed)
{
    const std::uint32_t armType = ready.cell.armType;
    KineArmConfig config{};
    if (Kine_GetArmType(&wanted, &config) != KINE_OK) return false;
    // A solution of another posture is listed there.
    if (PostureIndex(armType, config) != asked.index && Led(ready, asked.pose, config, wanted, printed))
        return true;
    (armType == KINE_ARM_SIX_AXIS ? config.Cfg4 : config.Cfg1) =
        armType == KINE_ARM_SIX_AXIS ? asked.pose.Cfg4 : asked.pose.Cfg1;
    std::optional<Solution> solution = Led(ready, asked.pose, config, wanted, printed);
    if (!solution && Travel(ready, answer, wanted) == 0.0) {
        const KinePose& pose = asked.pose;
        solution = Solution{answer, {pose.Cfg1, pose.Cfg2, pose.Cfg3, pose.Cfg4}, asked.index};
    }
    if (solution) all.push_back(*solution);
    return solution.has_value();
}

}  // namespace

double Travel(const ReadyCell& ready, const KineJoint& a, const KineJoint& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < ready.widths.axes; ++i) sum += std::fabs(a.Axis[i] - b.Axis[i]);
    return sum;
}

std::vector<std::size_t> AxesOutside(const ReadyCell& ready, const KineJoint& joints)
{
    std::vector<std::size_t> axes;
    for (std::size_t axis = 0; axis < ready.widths.axes; ++axis) {
        if (!TurnsOf(ready.cell, axis, joints.Axis[axis], false)) axes.push_back(axis);
    }
    return axes;
}

std::vector<KineArmConfig> PosturesOf(std::uint32_t armType)
{
    if (armType != KINE_ARM_SIX_AXIS) return {{1, 0, 0, 0}, {-1, 0, 0, 0}};
    std::vector<KineArmConfig> postures;
    for (std::int32_t posture = 0; posture < 8; ++posture) postures.push_back({0, 0, 0, posture});
    return postures;
}

std::size_t PostureIndex(std::uint32_t armType, const KineArmConfig& config)
{
    if (armType == KINE_ARM_SIX_AXIS) return static_cast<std::uint32_t>(config.Cfg4) & 7U;
    return config.Cfg1 > 0 ? 0 : 1;
}

PostureTexts::PostureTexts(std::uint32_t armType) : armType_(armType)
{
    for (const KineArmConfig& config : PosturesOf(armType)) texts_.push_back(PostureWords(armType, config));
}

std::size_t PostureTexts::Longest() const
{
    std::size_t longest = 0;
    for (const std::string& text : texts_) longest = std::max(longest, text.size());
    return longest;
}

std::string PostureWords(std::uint32_t armType, const KineArmConfig& config)
{
    const std::size_t posture = PostureIndex(armType, config);
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

Solutions Solve(const ReadyCell& ready, const KinePose& pose, PrintedLines& printed, const KineJoint* near)
{
    const Cell& cell = ready.cell;
    const std::span<const TurnedAxis> turned = TurnedAxesOf(cell.armType);
    const std::vector<KineArmConfig> postures = PosturesOf(cell.armType);
    Solutions solutions;
    for (std::size_t posture = 0; posture < postures.size(); ++posture) {
        PostureAnswer& answer = solutions.postures.emplace_back();
        AskedPosture asked = {posture, pose};
        SetConfig(asked.pose, postures[posture]);
        for (const TurnedAxis& axis : turned) asked.pose.*axis.number = NumberNearZero(cell, axis.axis);
        answer.code = Inverse(ready, asked.pose, answer.joints);
        if (answer.code != KINE_OK) {
            answer.lines = printed.Take();
            continue;
        }
        for (const KineJoint& wanted : Turned(ready, answer.joints, near)) {
            if (AddTurned(ready, asked, answer.joints, wanted, solutions.all, printed))
                answer.withinLimits = true;
        }
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
        if (nearest != nullptr && !(travel < shortest)) continue;
        nearest = &solution;
        shortest = travel;
    }
    return nearest;
}

}  // namespace kine_cli

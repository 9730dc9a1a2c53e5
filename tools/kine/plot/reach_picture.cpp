// A target is reached in a posture when this solves it within the limits in some turn of its axes, away from
// singularities. It is close to a singularity, or at one, when no posture that reaches it is better.
#include <algorithm>
#include <array>

#include "plot/pictures.h"
#include "plot/plane_map.h"

namespace kine_cli {
namespace {

constexpr MapClass kOutOfReach = 0;
constexpr MapClass kOutsideLimits = 1;
constexpr MapClass kAtSingularity = 2;
constexpr MapClass kNearSingularity = 3;
constexpr MapClass kReached = 4;  // and on, by the number of postures

constexpr std::array<std::string_view, 4> kBlues = {"#dbeafe", "#93c5fd", "#4f8ff0", "#1e4fc4"};

// How close joints are to a singularity: within the wide bounds of the library, within the narrow ones, or
// neither.
enum Closeness : int
{
    kFar,
    kClose,
    kAt,
    kNotReached
};

Closeness ClosenessOf(const KineJoint& joints)
{
    constexpr std::uint32_t kNarrow = 0;
    constexpr std::uint32_t kWide = 2;
    if (Kine_IsSingularity(&joints, kNarrow) != KINE_OK) return kAt;
    return Kine_IsSingularity(&joints, kWide) != KINE_OK ? kClose : kFar;
}

// Refusals of the arm at a singularity itself, as against out of reach.
bool IsSingularCode(KineResult code)
{
    return code == KINE_ERR_IK_SINGULAR || code == KINE_ERR_SINGULAR || code == KINE_ERR_IK_8;
}

// Postures that a class of colour stands for.
std::size_t PosturesPerClass(std::size_t most) { return most > kBlues.size() ? 2 : 1; }

MapClass ClassOf(const Solutions& solutions, const PostureChoice& choice, std::size_t most)
{
    std::size_t reached = 0;
    Closeness closeness = kNotReached;
    std::size_t last = solutions.postures.size();
    for (const Solution& solution : solutions.all) {
        if (!choice.Matches(solution.posture)) continue;
        const Closeness here = ClosenessOf(solution.joints);
        closeness = std::min(closeness, here);
        if (here == kAt || solution.posture == last) continue;
        ++reached;
        last = solution.posture;
    }
    if (closeness == kFar) return static_cast<MapClass>(kReached + (reached - 1) / PosturesPerClass(most));
    if (closeness != kNotReached) return closeness == kAt ? kAtSingularity : kNearSingularity;
    bool isSolved = false;
    bool isSingular = false;
    for (std::size_t i = 0; i < solutions.postures.size(); ++i) {
        if (!choice.Matches(i)) continue;
        isSolved = isSolved || solutions.postures[i].code == KINE_OK;
        isSingular = isSingular || IsSingularCode(solutions.postures[i].code);
    }
    if (isSolved) return kOutsideLimits;
    return isSingular ? kAtSingularity : kOutOfReach;
}

std::vector<LegendEntry> LegendOf(std::size_t most)
{
    std::vector<LegendEntry> legend = {{"out of reach", colour::kWhite},
                                       {"outside the limits", "#cbd5e1"},
                                       {"at a singularity", "#c2272d"},
                                       {"close to a singularity", "#f0a35a"}};
    const std::size_t each = PosturesPerClass(most);
    const std::size_t classes = (most + each - 1) / each;
    for (std::size_t i = 0; i < classes; ++i) {
        const std::string number = std::to_string(each * i + 1);
        std::string text = "reached in " + number;
        if (each == 2) text += " or " + std::to_string(2 * i + 2);
        text += each == 1 && i == 0 ? " posture" : " postures";
        legend.push_back({most == 1 ? "reached" : text, kBlues[kBlues.size() - classes + i]});
    }
    return legend;
}

}  // namespace

std::string ReachPicture(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
                         PrintedLines& printed)
{
    const PostureChoice choice = PostureNamed(ready.cell.armType, options.posture);
    std::size_t most = 0;
    for (std::size_t i = 0; i < PosturesOf(ready.cell.armType).size(); ++i)
        most += choice.Matches(i) ? 1U : 0U;
    PlaneMap map(ready, selection, options, printed);
    for (std::size_t row = 0; row < map.Rows(); ++row) {
        for (std::size_t column = 0; column < map.Columns(); ++column) {
            const Solutions solutions = Solve(map.Targets(), map.TargetAt(column, row), printed);
            map.Set(column, row, ClassOf(solutions, choice, most));
        }
    }
    const std::string bounds = ready.cell.IsSixAxis() ? "30 or 20 mm, 5 or 2.9 deg" : "3 or 1.1 deg";
    const std::vector<std::string> notes = {
        "A target is close to a singularity, or at one, when every posture that reaches it is: within the "
        "wide "
        "or the narrow bounds (" +
            bounds + ").",
        "A posture at a singularity is not counted."};
    return map.Draw("reach in the " + map.PlaneText(), LegendOf(most), notes, nullptr);
}

}  // namespace kine_cli

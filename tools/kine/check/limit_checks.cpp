// Axis limits that are inverted, in another unit, or wider than what the inverse answers.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "check/joint_ranges.h"
#include "check/static_checks.h"

namespace kine_cli {
namespace {

constexpr double kWidest = 999.0;           // deg
constexpr double kLargestTurnNumber = 1e6;  // quarter turns, of the library

std::string AxisName(std::size_t axis) { return "axis " + std::to_string(axis + 1); }

std::string Both(const Range& range) { return Shown(range.lower) + " to " + Shown(range.upper); }

void CheckOrder(std::size_t axis, const Range& limits, FindingList& findings)
{
    const bool isEmpty = limits.lower == limits.upper;
    findings.Error(
        isEmpty ? "limits_empty" : "limits_inverted", Indexed("limits.lower_deg", axis),
        {AxisName(axis) + ": the lower limit " + Shown(limits.lower) +
             (isEmpty ? " is the upper limit too" : " is above the upper limit " + Shown(limits.upper)),
         "The library does not refuse such a pair but opens the axis: every turn number is allowed.",
         isEmpty ? "Give the travel of the axis; for one that does not move a small one around it."
                 : "Exchange them. An axis that is counted the other way swaps its limits."});
}

void CheckSize(const Cell& cell, std::size_t axis, const Range& limits, FindingList& findings)
{
    if (IsScrew(cell, axis)) return;
    const double furthest = std::max(std::fabs(limits.lower), std::fabs(limits.upper));
    if (!(furthest > kWidest)) return;
    const std::string path =
        Indexed(std::fabs(limits.lower) >= furthest ? "limits.lower_deg" : "limits.upper_deg", axis);
    if (furthest / 90.0 > kLargestTurnNumber) {
        findings.Error("limits_beyond_turn_numbers", path,
                       {AxisName(axis) + " may go to " + Shown(furthest),
                        "Turn numbers beyond 1000000 quarter turns are refused with 0x6090.",
                        "Give the travel of the axis in degrees."});
        return;
    }
    findings.Warning("limits_wide", path,
                     {AxisName(axis) + " may turn to " + Shown(furthest) + " degrees",
                      "Limits bound the turn numbers of targets; so wide ones catch no mistake.",
                      "Give the travel of the axis."});
}

void CheckWindow(const Cell& cell, std::size_t axis, const Range& limits, FindingList& findings)
{
    const std::optional<Range> window = PostureWindow(cell, axis);
    if (!window) return;
    const bool isOutside = limits.upper < window->lower || limits.lower > window->upper;
    if (!isOutside && limits.lower >= window->lower && limits.upper <= window->upper) return;
    const std::string path =
        Indexed(limits.lower < window->lower ? "limits.lower_deg" : "limits.upper_deg", axis);
    const std::string ends = Fixed(window->lower, 3) + " to " + Fixed(window->upper, 3);
    findings.Add(isOutside ? Severity::kError : Severity::kWarning,
                 isOutside ? "limits_outside_window" : "limits_beyond_window", path,
                 {AxisName(axis) + " may move from " + Both(limits) + ", the inverse answers with " + ends,
                  isOutside ? "No pose leads to joints within these limits."
                            : "Joints beyond that range come back as others, with KINE_OK.",
                  isOutside ? "Check zero and sign of the axis against the conventions of the library."
                            : "Check zero and sign of the axis, or teach no targets there."});
}

// Limits of every turning axis are below 7: 400 degrees in radians.
void CheckRadians(const Cell& cell, FindingList& findings)
{
    constexpr double kLargestInRadians = 7.0;
    for (std::size_t axis = 0; axis < cell.AxisCount(); ++axis) {
        if (IsScrew(cell, axis)) continue;
        if (!(std::fabs(cell.lower.Axis[axis]) < kLargestInRadians)) return;
        if (!(std::fabs(cell.upper.Axis[axis]) < kLargestInRadians)) return;
    }
    findings.Error("limits_in_radians", "limits",
                   {"all limits are below 7 degrees", "They look like radians.", "Give degrees."});
}

void CheckFourAxisLimits(const Cell& cell, FindingList& findings)
{
    constexpr double kShortestTravel = 20.0;  // mm
    const KineFourAxisParam& p = cell.param.FourAxis;
    const double travel = (cell.upper.Axis[2] - cell.lower.Axis[2]) / 360.0 * p.ScrewLead;
    if (HasLimits(cell, 2) && travel < kShortestTravel) {
        findings.Warning("screw_limits_in_mm", "limits.lower_deg[2]",
                         {"the screw travels " + Fixed(travel, 3) + " mm within its limits",
                          "Axis 3 is the angle of the screw in degrees, not the height of the flange.",
                          "Give millimetres * 360 / screw_lead_mm_per_turn."});
    }
    if (cell.armType == KINE_ARM_FOUR_AXIS_4110 && HasLimits(cell, 1) && cell.lower.Axis[1] < 0.0 &&
        cell.upper.Axis[1] > 0.0) {
        findings.Warning("limits_contain_folded_elbow", "limits.lower_deg[1]",
                         {"the limits of axis 2 contain 0, where the arm is folded",
                          "Arm type 4110 counts axis 2 from the folded elbow; few arms move through it.",
                          "Subtract 180 from elbow angles, or take arm type 4."});
    }
}

}  // namespace

void CheckLimits(const Cell& cell, FindingList& findings)
{
    if (!cell.hasLimits) {
        findings.Note("limits_missing", "arm",
                      {"the cell has no limits", "Every turn of an axis counts as reachable.",
                       "Give limits.lower_deg and limits.upper_deg."});
        return;
    }
    for (std::size_t axis = 0; axis < cell.AxisCount(); ++axis) {
        const Range limits = {cell.lower.Axis[axis], cell.upper.Axis[axis]};
        if (!HasLimits(cell, axis)) {
            CheckOrder(axis, limits, findings);
            continue;
        }
        CheckSize(cell, axis, limits, findings);
        CheckWindow(cell, axis, limits, findings);
    }
    CheckRadians(cell, findings);
    if (!cell.IsSixAxis()) CheckFourAxisLimits(cell, findings);
}

}  // namespace kine_cli

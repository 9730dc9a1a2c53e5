// Named joints and poses: can the cell reach them.
#include <algorithm>
#include <cmath>

#include "check/joint_ranges.h"
#include "check/static_checks.h"
#include "library/codes.h"
#include "solve/solutions.h"

namespace kine_cli {
namespace {

// "axis 3 is at 200, limits are -80 to 160", or nothing when all are within.
std::string BeyondLimits(const Cell& cell, const KineJoint& joints)
{
    constexpr double kRounding = 1e-6;  // of solved joints, deg
    for (std::size_t axis = 0; axis < cell.AxisCount(); ++axis) {
        if (!HasLimits(cell, axis)) continue;
        const Range limits = {cell.lower.Axis[axis] - kRounding, cell.upper.Axis[axis] + kRounding};
        if (limits.Contains(joints.Axis[axis])) continue;
        return "axis " + std::to_string(axis + 1) + " is at " + Fixed(joints.Axis[axis], 3) +
               ", its limits are " + Shown(cell.lower.Axis[axis]) + " to " + Shown(cell.upper.Axis[axis]);
    }
    return "";
}

void CheckTravelOf(const Cell& cell, const double (&values)[kExternalAxes], const std::string& path,
                   FindingList& findings)
{
    for (std::size_t i = 0; i < std::min(cell.externalAxes.size(), kExternalAxes); ++i) {
        const auto& travel = cell.externalAxes[i].travel;
        if (!travel || travel->first > travel->second) continue;
        if (travel->first <= values[i] && values[i] <= travel->second) continue;
        findings.Error("target_outside_travel", Indexed(path + ".external_mm_or_deg", i),
                       {"external axis " + std::to_string(i) + " is at " + Shown(values[i]) +
                            ", its travel is " + Shown(travel->first) + " to " + Shown(travel->second),
                        "The library does not check external axes; the cell cannot go there.",
                        "Correct the target or the travel."});
    }
}

void CheckJoints(const Cell& cell, const Named<KineJoint>& joints, FindingList& findings)
{
    const std::string path = "joints." + joints.name;
    CheckTravelOf(cell, joints.record.ExtAxis, path, findings);
    const std::string beyond = BeyondLimits(cell, joints.record);
    if (!beyond.empty()) {
        findings.Error("target_outside_limits", path + ".axes_deg",
                       {beyond, "The library does not check joints; the arm cannot go there.",
                        "Correct the target or the limits."});
    }
    if (Kine_IsSingularity(&joints.record, 0) == KINE_SINGULAR) {
        findings.Note("target_singular", path + ".axes_deg",
                      {"the joints are singular",
                       "The pose of these joints has no solution, or one that is not these joints.",
                       "Move there by joints, or a few degrees beside it."});
    }
}

void ReportUnsolved(const std::string& path, KineResult code, FindingList& findings)
{
    const kinedll::CodeText* text = TextsOf(code);
    findings.Error(
        "target_unsolved", path,
        {"the pose has no solution: " + HexCode(code) + " " + std::string(NameOf(code)),
         text ? std::string("The code means: ") + text->cause + "." : "", text ? text->remedy : ""});
}

void ReportBeyond(const std::string& path, const std::string& beyond, FindingList& findings)
{
    findings.Error(
        "target_outside_limits", path,
        {"the pose leads outside the limits: " + beyond,
         "The library does not check the joints that it gives.", "Correct the pose, its cfg or the limits."});
}

// In the configuration that it names.
void CheckConfigured(const ReadyCell& ready, const Named<PoseTarget>& target, PrintedLines& printed,
                     FindingList& findings)
{
    const std::string path = "poses." + target.name;
    KineJoint joints{};
    const CellRecords& records = ready.records;
    const KineResult code =
        Kine_WobjPosToJoint(&target.record.pose, &records.tool, &records.wobj, &records.load, &joints);
    if (code != KINE_OK) {
        printed.Take();
        ReportUnsolved(path, code, findings);
        return;
    }
    const std::string beyond = BeyondLimits(ready.cell, joints);
    if (!beyond.empty()) ReportBeyond(path, beyond, findings);
}

// In any posture.
void CheckOpen(const ReadyCell& ready, const Named<PoseTarget>& target, PrintedLines& printed,
               FindingList& findings)
{
    const std::string path = "poses." + target.name;
    const Solutions solutions = Solve(ready, target.record.pose, printed);
    if (!solutions.all.empty()) return;
    for (const PostureAnswer& answer : solutions.postures) {
        if (answer.code != KINE_OK) continue;
        const std::string beyond = BeyondLimits(ready.cell, answer.joints);
        ReportBeyond(path, beyond.empty() ? "in every posture" : beyond, findings);
        return;
    }
    ReportUnsolved(path, solutions.postures.front().code, findings);
}

}  // namespace

void CheckTargets(const ReadyCell& ready, PrintedLines& printed, FindingList& findings)
{
    for (const Named<KineJoint>& joints : ready.cell.joints) CheckJoints(ready.cell, joints, findings);
    for (const Named<PoseTarget>& pose : ready.cell.poses) {
        CheckTravelOf(ready.cell, pose.record.pose.ExtAxis, "poses." + pose.name, findings);
        if (pose.record.hasConfig) {
            CheckConfigured(ready, pose, printed, findings);
        } else {
            CheckOpen(ready, pose, printed, findings);
        }
    }
}

}  // namespace kine_cli

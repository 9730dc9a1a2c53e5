// The report for machines.
#include <algorithm>
#include <cstddef>

#include "check/report.h"
#include "library/codes.h"
#include "solve/solutions.h"

namespace kine_cli {
namespace {

using Json = nlohmann::ordered_json;

Json FindingsJson(const CheckReport& report)
{
    Json list = Json::array();
    for (const Finding& finding : report.findings.All()) {
        list.push_back({{"severity", InWords(finding.severity)},
                        {"check", finding.check},
                        {"place", report.cell.PlaceOf(finding.path)},
                        {"path", finding.path},
                        {"what", finding.what},
                        {"why", finding.why},
                        {"do", finding.remedy}});
    }
    return list;
}

Json ExpectationsJson(const CheckReport& report)
{
    Json list = Json::array();
    for (std::size_t i = 0; i < report.confirmations.size(); ++i) {
        const Expectation& expectation = report.cell.expectations[i];
        const Confirmation& confirmation = report.confirmations[i];
        Json entry = {{"what", expectation.what},
                      {"source", expectation.source},
                      {"confirmed", confirmation.isConfirmed},
                      {"result", HexCode(confirmation.code)}};
        if (confirmation.code == KINE_OK && !expectation.code) {
            entry["off_mm"] = confirmation.difference.mm;
            entry["off_deg"] = confirmation.difference.deg;
        }
        list.push_back(entry);
    }
    return list;
}

Json JointsJson(const CheckReport& report, const KineJoint& joints)
{
    Json list = Json::array();
    for (std::size_t i = 0; i < report.cell.AxisCount(); ++i) list.push_back(joints.Axis[i]);
    return list;
}

Json WorstJson(const CheckReport& report, const RoundTrip& trip, const char* unit, const Worst& worst)
{
    if (!worst.joints) return nullptr;
    return {{unit, worst.value},
            {"axes_deg", JointsJson(report, *worst.joints)},
            {"repeat", RepeatCommand(report.cell, trip.selection, *worst.joints)}};
}

Json TallyJson(const CheckReport& report, const RoundTrip& trip, const PostureTally& tally)
{
    Json refused = Json::object();
    for (const auto& [code, count] : tally.refused) refused[HexCode(code)] = count;
    Json entry = {{"tried", tally.Tried()},
                  {"same_joints", tally.same},
                  {"other_joints", tally.other},
                  {"refused", refused},
                  {"near_singular", tally.nearSingular},
                  {"worst_position", WorstJson(report, trip, "mm", tally.position)},
                  {"worst_rotation", WorstJson(report, trip, "deg", tally.rotation)},
                  {"worst_joint", WorstJson(report, trip, "deg", tally.joint)}};
    if (tally.firstOther)
        entry["first_other"] = RepeatCommand(report.cell, trip.selection, *tally.firstOther);
    if (tally.firstRefused)
        entry["first_refused"] = RepeatCommand(report.cell, trip.selection, *tally.firstRefused);
    return entry;
}

Json TripJson(const CheckReport& report, const RoundTrip& trip)
{
    const std::vector<KineArmConfig> postures = PosturesOf(report.cell.armType);
    Json list = Json::array();
    for (std::size_t i = 0; i < postures.size(); ++i) {
        Json entry = {{"posture", report.cell.IsSixAxis() ? postures[i].Cfg4 : postures[i].Cfg1},
                      {"words", PostureWords(report.cell.armType, postures[i])}};
        entry.update(TallyJson(report, trip, trip.postures[i]));
        list.push_back(entry);
    }
    return {{"tool", trip.selection.tool},
            {"work_object", trip.selection.workObject},
            {"load", trip.selection.load},
            {"samples", report.samples},
            {"all", TallyJson(report, trip, trip.Total())},
            {"postures", list}};
}

}  // namespace

Json ReportJson(const CheckReport& report)
{
    if (!report.unreadable.empty())
        return {{"file", report.file}, {"verdict", report.Verdict()}, {"unreadable", report.unreadable}};
    Json trips = Json::array();
    for (const RoundTrip& trip : report.trips) trips.push_back(TripJson(report, trip));
    return {{"file", report.file},
            {"name", report.cell.name},
            {"arm_type", report.cell.armType},
            {"verdict", report.Verdict()},
            {"errors", report.findings.Count(Severity::kError)},
            {"warnings", report.findings.Count(Severity::kWarning)},
            {"findings", FindingsJson(report)},
            {"set_up", report.isSetUp},
            {"expectations", ExpectationsJson(report)},
            {"round_trips", trips}};
}

}  // namespace kine_cli

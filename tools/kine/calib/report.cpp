#include "calib/report.h"

#include <cmath>

#include "library/codes.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kDecimals = 4;
constexpr int kNumberWidth = 11;
constexpr std::size_t kLabelWidth = 15;
constexpr std::size_t kRoleWidth = 9;

// A zero without a sign.
Json NumberOrNull(double value) { return std::isfinite(value) ? Json(value + 0.0) : Json(); }
Json NumberOrNull(const std::optional<double>& value) { return value ? NumberOrNull(*value) : Json(); }
Json DegreesOrNull(const std::optional<double>& rad) { return rad ? NumberOrNull(Degrees(*rad)) : Json(); }

Json ReportAsJson(const std::optional<KineCalibError>& report)
{
    if (!report) return {};
    return {{"largest", NumberOrNull(report->Largest)},
            {"mean", NumberOrNull(report->Mean)},
            {"smallest", NumberOrNull(report->Smallest)}};
}

std::string RoleOf(const Method& method, std::size_t point)
{
    return point < method.roles.size() ? method.roles[point] : "further";
}

Json PointsAsJson(const Outcome& outcome)
{
    Json points = Json::array();
    for (std::size_t i = 0; i < outcome.taught.names.size(); ++i) {
        const PointReport& point = outcome.analysis.points[i];
        points.push_back({{"target", outcome.taught.names[i]},
                          {"role", RoleOf(outcome.method, i)},
                          {"residual_mm", NumberOrNull(point.residual)},
                          {"without_it_mm", NumberOrNull(point.withoutMm)},
                          {"without_it_deg", DegreesOrNull(point.withoutRad)}});
    }
    return points;
}

Json LeaveOneOutAsJson(const LeaveOneOut& out)
{
    if (out.needsMore > 0) return {{"needs_more_points", out.needsMore}};
    return {{"largest_mm", NumberOrNull(out.largestMm)},
            {"largest_deg", DegreesOrNull(out.largestRad)},
            {"solutions", out.solutions},
            {"refused", out.refused}};
}

Json SpreadAsJson(const OrientationSpread& spread)
{
    return {{"smallest_deg", Degrees(spread.smallestRad)},
            {"mean_deg", Degrees(spread.meanRad)},
            {"largest_deg", Degrees(spread.largestRad)}};
}

Json AnalysisAsJson(const Outcome& outcome)
{
    const Analysis& analysis = outcome.analysis;
    Json json;
    json["points"] = PointsAsJson(outcome);
    Json& residuals = json["residuals"];
    residuals["of"] = outcome.method.residualOf;
    residuals["worst"] = analysis.worst ? Json(outcome.taught.names[*analysis.worst]) : Json();
    if (analysis.residualsNeedMore > 0) residuals["needs_more_points"] = analysis.residualsNeedMore;
    json["radius_mm"] = NumberOrNull(analysis.radius);
    json["leave_one_out"] = LeaveOneOutAsJson(analysis.leaveOneOut);
    if (const std::optional<Conditioning>& c = analysis.conditioning) {
        json["conditioning"] = {{"condition", NumberOrNull(c->condition)},
                                {"amplification", NumberOrNull(c->amplification)},
                                {"verdict", c->verdict}};
    } else {
        json["conditioning"] = nullptr;
    }
    json["orientations"] = analysis.spread ? SpreadAsJson(*analysis.spread) : Json();
    json["advice"] = outcome.advice;
    json["cell_file"] = outcome.cellFile;
    return json;
}

Json RefusalAsJson(const Outcome& outcome)
{
    const KineResult code = outcome.solution.code;
    const kinedll::CodeText text = kinedll::TextOf(code);
    Json json = {{"error", text.name}, {"cause", text.cause}, {"remedy", text.remedy}};
    json["points"] = Json::array();
    for (const std::size_t point : outcome.blame.points)
        json["points"].push_back(outcome.taught.names[point]);
    json["reasons"] = outcome.blame.reasons;
    json["report_mm"] = ReportAsJson(outcome.solution.report);
    json["lines"] = Json::array();
    const std::string lines = AsUtf8(outcome.lines);
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', at), lines.size());
        json["lines"].push_back(lines.substr(at, end - at));
        at = end + 1;
    }
    return json;
}

std::string Padded(std::string_view text, std::size_t width)
{
    std::string padded(text);
    if (padded.size() < width) padded.append(width - padded.size(), ' ');
    return padded;
}

std::string Millimetres(double value) { return Fixed(value, kDecimals) + " mm"; }
std::string InDegrees(double rad) { return Fixed(Degrees(rad), kDecimals) + " deg"; }

void AppendCell(std::string& text, const std::optional<double>& value, int width)
{
    text += ' ';
    if (value) {
        AppendFixed(text, *value, width, kDecimals);
    } else {
        text.append(static_cast<std::size_t>(width - 1), ' ');
        text += '-';
    }
}

std::string FrameAsTable(const KineFrame& frame)
{
    std::string head;
    std::string values;
    for (const auto& [name, value] : {std::pair{"x_mm", frame.X},
                                      {"y_mm", frame.Y},
                                      {"z_mm", frame.Z},
                                      {"a_deg", frame.A},
                                      {"b_deg", frame.B},
                                      {"c_deg", frame.C}}) {
        const std::string_view column = name;
        head += " " + std::string(static_cast<std::size_t>(kNumberWidth) - column.size(), ' ');
        head += column;
        AppendCell(values, value, kNumberWidth);
    }
    return head.substr(1) + "\n" + values.substr(1) + "\n";
}

std::string PointsAsTable(const Outcome& outcome)
{
    constexpr int kWidths[] = {11, 13, 14};
    std::size_t nameWidth = kLabelWidth - 1;
    for (const std::string& name : outcome.taught.names) nameWidth = std::max(nameWidth, name.size());
    std::string text = Padded("point", nameWidth) + " " + Padded("role", kRoleWidth) +
                       " residual_mm without_it_mm without_it_deg\n";
    for (std::size_t i = 0; i < outcome.taught.names.size(); ++i) {
        const PointReport& point = outcome.analysis.points[i];
        text +=
            Padded(outcome.taught.names[i], nameWidth) + " " + Padded(RoleOf(outcome.method, i), kRoleWidth);
        AppendCell(text, point.residual, kWidths[0]);
        AppendCell(text, point.withoutMm, kWidths[1]);
        AppendCell(text, point.withoutRad ? std::optional(Degrees(*point.withoutRad)) : std::nullopt,
                   kWidths[2]);
        text += '\n';
    }
    return text;
}

std::string Label(std::string_view label) { return Padded(label, kLabelWidth); }

std::string NeedsMore(std::size_t points)
{
    return "needs " + std::to_string(points) + (points == 1 ? " more point" : " more points");
}

std::string LeaveOneOutInWords(const LeaveOneOut& out)
{
    if (out.needsMore > 0) return NeedsMore(out.needsMore);
    std::string text = "the result moves by ";
    if (out.largestMm) text += Millimetres(*out.largestMm);
    if (out.largestRad) text += (out.largestMm ? " and " : "") + InDegrees(*out.largestRad);
    if (out.solutions == 0) text = "no result without a point";
    text += out.solutions == 0 ? "" : " at most, in " + std::to_string(out.solutions) + " solutions";
    return text + (out.refused > 0 ? "; " + std::to_string(out.refused) + " refused" : "");
}

std::string ConditioningInWords(const Conditioning& c)
{
    if (!std::isfinite(c.condition)) return "condition number infinite: " + std::string(c.verdict);
    return "condition number " + Fixed(c.condition, 2) + ", an error in the touches counts up to " +
           Fixed(c.amplification, 2) + " times: " + std::string(c.verdict);
}

void AdviseOnOrientations(const Outcome& outcome, std::vector<std::string>& advice)
{
    const Analysis& analysis = outcome.analysis;
    if (analysis.conditioning && analysis.conditioning->verdict != "good") {
        advice.push_back("the touches determine the tip poorly: turn the tool further between them" +
                         std::string(outcome.method.isPlanar ? "." : ", and about more than one axis."));
    }
    if (analysis.spread && Degrees(analysis.spread->smallestRad) < kAdvisedTurnDeg) {
        const std::vector<std::string>& names = outcome.taught.names;
        advice.push_back(
            "points " + names[analysis.spread->nearestA] + " and " + names[analysis.spread->nearestB] +
            " are turned by " + Fixed(Degrees(analysis.spread->smallestRad), 1) +
            " degrees against each other only: turn the tool by " + Fixed(kAdvisedTurnDeg, 0) + " or more.");
    }
}

}  // namespace

Json FrameAsJson(const KineFrame& frame)
{
    return {{"x_mm", NumberOrNull(frame.X)},  {"y_mm", NumberOrNull(frame.Y)},
            {"z_mm", NumberOrNull(frame.Z)},  {"a_deg", NumberOrNull(frame.A)},
            {"b_deg", NumberOrNull(frame.B)}, {"c_deg", NumberOrNull(frame.C)}};
}

std::vector<std::string> AdviceOn(const Outcome& outcome)
{
    std::vector<std::string> advice = outcome.method.notes;
    if (!IsFinite(outcome.solution.frame))
        advice.push_back("the result is not finite: do not use it, look at the points.");
    AdviseOnOrientations(outcome, advice);
    const auto& value = outcome.method.axisValue;
    const Poses& poses = outcome.taught.poses;
    if (outcome.method.followsOrder &&
        !(value(poses[0]) < value(poses[1]) && value(poses[1]) < value(poses[2]))) {
        advice.push_back(
            "the values of the axis do not rise from point to point: Z follows the order of the "
            "points, not the sense of the axis. Give them in rising order.");
    }
    return advice;
}

std::string JsonReport(const Outcome& outcome)
{
    Json json = {{"finds", outcome.what},
                 {"method", outcome.method.name},
                 {"call", outcome.method.call},
                 {"points_are", outcome.taught.of},
                 {"result", HexCode(outcome.solution.code)}};
    if (outcome.IsRefused()) {
        json.update(RefusalAsJson(outcome));
    } else {
        json["frame"] = FrameAsJson(outcome.solution.frame);
        json["report_mm"] = ReportAsJson(outcome.solution.report);
        json["tilt_deg"] = DegreesOrNull(outcome.solution.tiltRad);
        json.update(AnalysisAsJson(outcome));
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string TableReport(const Outcome& outcome)
{
    const Analysis& analysis = outcome.analysis;
    std::string text = outcome.what + " (" + outcome.method.name + ", " + outcome.method.call + ") from " +
                       outcome.taught.of + "\n\n" + FrameAsTable(outcome.solution.frame) + "\n" +
                       PointsAsTable(outcome) + "\n";
    text += Label("residual") + outcome.method.residualOf;
    if (analysis.residualsNeedMore > 0) text += "; " + NeedsMore(analysis.residualsNeedMore);
    if (analysis.worst) text += "; worst: " + outcome.taught.names[*analysis.worst];
    text += '\n';
    if (const std::optional<KineCalibError>& report = outcome.solution.report) {
        text += Label("error report") + "largest " + Millimetres(report->Largest) + ", mean " +
                Millimetres(report->Mean) + ", smallest " + Millimetres(report->Smallest) + "\n";
    }
    if (outcome.solution.tiltRad) text += Label("tilt") + InDegrees(*outcome.solution.tiltRad) + "\n";
    if (analysis.radius) text += Label("radius") + Millimetres(*analysis.radius) + "\n";
    text += Label("leave one out") + LeaveOneOutInWords(analysis.leaveOneOut) + "\n";
    if (analysis.conditioning)
        text += Label("conditioning") + ConditioningInWords(*analysis.conditioning) + "\n";
    if (const std::optional<OrientationSpread>& spread = analysis.spread) {
        text += Label("orientations") + "turned by " + Fixed(Degrees(spread->smallestRad), 1) + " to " +
                Fixed(Degrees(spread->largestRad), 1) + " deg against each other, mean " +
                Fixed(Degrees(spread->meanRad), 1) + " deg\n";
    }
    for (const std::string& advice : outcome.advice) text += Label("advice") + advice + "\n";
    // Without the braces around it, so that it can be pasted beside other keys.
    std::string paste = outcome.cellFile.dump(2, ' ', false, Json::error_handler_t::replace);
    return text + "\nfor the cell file:\n" + paste.substr(2, paste.size() - 3);
}

std::string RefusalInWords(const Outcome& outcome)
{
    std::string text = outcome.method.call + ": " + InWords(outcome.solution.code) + "\n";
    for (const std::string& reason : outcome.blame.reasons) text += "  " + reason + "\n";
    text += std::string("  ") + kinedll::TextOf(outcome.solution.code).remedy + "\n";
    if (const std::optional<KineCalibError>& report = outcome.solution.report) {
        text += "  The tip is found all the same: largest " + Millimetres(report->Largest) + ", mean " +
                Millimetres(report->Mean) + ", smallest " + Millimetres(report->Smallest) + "\n";
    }
    return text + AsUtf8(outcome.lines);
}

}  // namespace kine_cli

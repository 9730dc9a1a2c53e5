// The report as people read it.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "check/report.h"
#include "library/codes.h"
#include "solve/solutions.h"

namespace kine_cli {
namespace {

constexpr std::size_t kNameWidth = 22;
constexpr std::size_t kCountWidth = 9;
constexpr std::size_t kFigureWidth = 11;

std::string Padded(std::string text, std::size_t width)
{
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

void AppendRight(std::string& text, const std::string& word, std::size_t width)
{
    if (word.size() < width) text.append(width - word.size(), ' ');
    text += word;
}

// Two digits: the figures run from rounding to metres.
std::string Figure(double value)
{
    if (value == 0.0) return "0";
    std::array<char, 32> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific, 1);
    return {digits.data(), result.ptr};
}

std::string FindingsText(const CheckReport& report)
{
    std::string text;
    for (const Finding& finding : report.findings.All()) {
        text += "  " + report.cell.PlaceOf(finding.path) + ": " + std::string(InWords(finding.severity)) +
                ": " + finding.path + ": " + finding.what + "\n";
        if (!finding.why.empty()) text += "      " + finding.why + "\n";
        if (!finding.remedy.empty()) text += "      " + finding.remedy + "\n";
    }
    return text.empty() ? "Findings: none\n" : "Findings:\n" + text;
}

std::string ExpectationsText(const CheckReport& report)
{
    if (report.confirmations.empty()) return "";
    const auto confirmed = std::count_if(report.confirmations.begin(), report.confirmations.end(),
                                         [](const Confirmation& c) { return c.isConfirmed; });
    std::string text = "Expectations: " + std::to_string(confirmed) + " of " +
                       std::to_string(report.confirmations.size()) + " confirmed\n";
    for (std::size_t i = 0; i < report.confirmations.size(); ++i) {
        const Expectation& expectation = report.cell.expectations[i];
        text += std::string("  ") + (report.confirmations[i].isConfirmed ? "yes  " : "NO   ") +
                expectation.what + ": " + ResultInWords(expectation, report.confirmations[i]) + "\n";
    }
    return text;
}

void AppendRow(std::string& text, const std::string& name, const PostureTally& tally)
{
    text += "  " + Padded(name, kNameWidth);
    for (const std::uint64_t count :
         {tally.Tried(), tally.same, tally.other, tally.Refused(), tally.nearSingular})
        AppendRight(text, std::to_string(count), kCountWidth);
    for (const double figure : {tally.position.value, tally.rotation.value, tally.joint.value}) {
        AppendRight(text, tally.same + tally.other > 0 ? Figure(figure) : "-", kFigureWidth);
    }
    text += "\n";
}

std::string TableHead()
{
    std::string text = "  " + Padded("posture", kNameWidth);
    for (const char* word : {"tried", "same", "other", "refused", "singular"})
        AppendRight(text, word, kCountWidth);
    for (const char* word : {"worst mm", "worst deg", "joint deg"}) AppendRight(text, word, kFigureWidth);
    return text + "\n";
}

std::string RefusedText(const PostureTally& total)
{
    std::string text;
    for (const auto& [code, count] : total.refused) {
        text += "  refused " + HexCode(code) + " " + std::string(NameOf(code)) + ": " +
                std::to_string(count) + "\n";
    }
    return text;
}

std::string ExampleText(const CheckReport& report, const RoundTrip& trip, const char* what,
                        const std::optional<KineJoint>& joints)
{
    if (!joints) return "";
    return std::string("  ") + what + ", repeat with\n    " +
           RepeatCommand(report.cell, trip.selection, *joints) + "\n";
}

std::string TripText(const CheckReport& report, const RoundTrip& trip)
{
    const PostureTally total = trip.Total();
    std::string text = "Round trip with " + InWords(trip.selection) + ":\n" + TableHead();
    const std::vector<KineArmConfig> postures = PosturesOf(report.cell.armType);
    for (std::size_t i = 0; i < postures.size(); ++i) {
        const std::int32_t number = report.cell.IsSixAxis() ? postures[i].Cfg4 : postures[i].Cfg1;
        AppendRow(text, std::to_string(number) + " " + PostureWords(report.cell.armType, postures[i]),
                  trip.postures[i]);
    }
    AppendRow(text, "all", total);
    return text + RefusedText(total) + ExampleText(report, trip, "worst position", total.position.joints) +
           ExampleText(report, trip, "first with other joints", total.firstOther) +
           ExampleText(report, trip, "first refused", total.firstRefused);
}

// All joints came back: one line says it.
std::string CleanTripText(const RoundTrip& trip)
{
    const PostureTally total = trip.Total();
    return "Also with " + InWords(trip.selection) + ": " + std::to_string(total.same) + " of " +
           std::to_string(total.Tried()) + " the same, worst " + Figure(total.position.value) + " mm, " +
           Figure(total.rotation.value) + " deg\n";
}

std::string TripsText(const CheckReport& report)
{
    std::string text;
    for (const RoundTrip& trip : report.trips) {
        const PostureTally total = trip.Total();
        const bool isClean = total.other == 0 && total.Refused() == 0;
        text += isClean && &trip != report.trips.data() ? CleanTripText(trip) : TripText(report, trip);
    }
    return text;
}

}  // namespace

std::string ReportText(const CheckReport& report)
{
    if (!report.unreadable.empty()) return "";
    std::string text = report.file + ": " + (report.cell.name.empty() ? "" : report.cell.name + ", ") +
                       "arm type " + std::to_string(report.cell.armType) + "\n" + FindingsText(report) +
                       ExpectationsText(report);
    if (!report.isSetUp)
        text += "Not tried, because the library does not take the cell: targets, expectations, round trip\n";
    return text + TripsText(report) + "Verdict: " + report.Verdict() + "\n";
}

}  // namespace kine_cli

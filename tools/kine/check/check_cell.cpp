// All checks of one cell, in their order.
#include "cell/cell_reader.h"
#include "check/report.h"
#include "check/static_checks.h"
#include "failure.h"

namespace kine_cli {
namespace {

std::string Counted(std::size_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// Everything that asks the library.
void AskLibrary(CheckReport& report, PrintedLines& printed)
{
    const ReadyCell ready(report.cell, report.cell.use);
    CheckTargets(ready, printed, report.findings);
    report.confirmations = ConfirmExpectations(report.cell, printed, report.findings);
    for (const Selection& selection : CombinationsOf(report.cell)) {
        report.trips.push_back(TryRoundTrip(report.cell, selection, report.samples, printed));
        JudgeRoundTrip(report.trips.back(), report.findings);
    }
}

}  // namespace

std::string CheckReport::Verdict() const
{
    if (!unreadable.empty()) return "not readable";
    const std::size_t errors = findings.Count(Severity::kError);
    const std::size_t warnings = findings.Count(Severity::kWarning);
    if (errors > 0) return "wrong: " + Counted(errors, "error");
    return warnings > 0 ? "good with " + Counted(warnings, "warning") : "good";
}

CheckReport CheckCell(const std::string& file, std::size_t samples, PrintedLines& printed)
{
    CheckReport report;
    report.file = file;
    report.samples = samples;
    try {
        report.cell = ReadCell(file);
    } catch (const Failure& failure) {
        report.unreadable = failure.what();
        return report;
    }
    const std::vector<RefusedSetup> refused = SetUpLibrary(report.cell, printed);
    CheckSetUp(refused, report.findings);
    report.isSetUp = refused.empty();
    if (report.cell.IsSixAxis()) {
        CheckSixAxisArm(report.cell, report.findings);
    } else {
        CheckFourAxisArm(report.cell, report.findings);
    }
    CheckLimits(report.cell, report.findings);
    CheckUnits(report.cell, report.findings);
    CheckRecords(report.cell, report.findings);
    if (report.isSetUp) AskLibrary(report, printed);
    return report;
}

}  // namespace kine_cli

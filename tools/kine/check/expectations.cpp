#include "check/expectations.h"

#include "library/codes.h"
#include "library/session.h"

namespace kine_cli {
namespace {

Confirmation Confirm(const Cell& cell, const Expectation& expectation, PrintedLines& printed)
{
    Confirmation confirmation;
    KinePose pose{};
    confirmation.code =
        JointsToPose(expectation.joints, RecordsOf(cell, expectation.selection), expectation.reference, pose);
    if (confirmation.code != KINE_OK) printed.Take();
    if (expectation.code) {
        confirmation.isConfirmed = confirmation.code == *expectation.code;
    } else if (confirmation.code == KINE_OK) {
        confirmation.difference = DifferenceOf(pose.Frame, expectation.frame);
        confirmation.isConfirmed = confirmation.difference.mm <= expectation.withinMm &&
                                   confirmation.difference.deg <= expectation.withinDeg;
    }
    return confirmation;
}

}  // namespace

std::string ResultInWords(const Expectation& expectation, const Confirmation& confirmation)
{
    if (confirmation.code != KINE_OK || expectation.code) {
        return HexCode(confirmation.code) + " " + std::string(NameOf(confirmation.code));
    }
    return Fixed(confirmation.difference.mm, 6) + " mm, " + Fixed(confirmation.difference.deg, 6) + " deg";
}

std::vector<Confirmation> ConfirmExpectations(const Cell& cell, PrintedLines& printed, FindingList& findings)
{
    std::vector<Confirmation> confirmations;
    for (std::size_t i = 0; i < cell.expectations.size(); ++i) {
        const Expectation& expectation = cell.expectations[i];
        const Confirmation confirmation = Confirm(cell, expectation, printed);
        confirmations.push_back(confirmation);
        if (confirmation.isConfirmed) continue;
        const std::string answer = ResultInWords(expectation, confirmation);
        const bool isCode = expectation.code || confirmation.code != KINE_OK;
        const std::string wanted = expectation.code ? HexCode(*expectation.code) : "a frame";
        std::string what = "\"" + expectation.what + "\" is not confirmed: ";
        if (isCode) {
            what.append("the library answers ").append(answer).append(", expected is ").append(wanted);
        } else {
            what.append("off by ")
                .append(answer)
                .append(", allowed are ")
                .append(Shown(expectation.withinMm));
            what.append(" mm, ").append(Shown(expectation.withinDeg)).append(" deg");
        }
        findings.Error("expectation_not_confirmed", Indexed("expect", i),
                       {what,
                        expectation.source.empty() ? "The cell is not what its author knows about it."
                                                   : "It comes from: " + expectation.source,
                        "Compare the numbers of the arm with their source, then those of the expectation."});
    }
    return confirmations;
}

}  // namespace kine_cli

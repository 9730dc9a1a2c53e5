// Setup calls that the library refuses.
#include "check/static_checks.h"
#include "library/codes.h"

namespace kine_cli {

std::string_view InWords(Severity severity)
{
    switch (severity) {
        case Severity::kError: return "error";
        case Severity::kWarning: return "warning";
        case Severity::kNote: return "note";
    }
    return "";
}

void CheckSetUp(const std::vector<RefusedSetup>& refused, FindingList& findings)
{
    for (const RefusedSetup& refusal : refused) {
        const kinedll::CodeText* text = TextsOf(refusal.code);
        findings.Error("setup_refused", refusal.path,
                       {refusal.call + " refuses it with " + HexCode(refusal.code) + " " +
                            std::string(NameOf(refusal.code)),
                        text ? std::string("The code means: ") + text->cause + "." : "It is no known code.",
                        text ? text->remedy : "See the printed line."});
        // Without an arm, or without the counts, everything after it is refused as well.
        if (refusal.path == "arm" || refusal.code == KINE_ERR_MECH_UNIT_COUNT) return;
    }
}

}  // namespace kine_cli

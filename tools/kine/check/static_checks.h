// The checks of a cell that need no sampling. Each adds what it finds; none looks at what another has found.
#pragma once

#include "cell/cell.h"
#include "check/finding.h"
#include "library/printed_lines.h"
#include "options.h"

namespace kine_cli {

// Setup calls that the library has refused, with the code explained. Calls that were refused only
// because an earlier
// one was are left out.
void CheckSetUp(const std::vector<RefusedSetup>& refused, FindingList& findings);

void CheckSixAxisArm(const Cell& cell, FindingList& findings);
void CheckFourAxisArm(const Cell& cell, FindingList& findings);
void CheckLimits(const Cell& cell, FindingList& findings);
void CheckUnits(const Cell& cell, FindingList& findings);
void CheckRecords(const Cell& cell, FindingList& findings);

// The library holds the cell.
void CheckTargets(const ReadyCell& ready, PrintedLines& printed, FindingList& findings);

}  // namespace kine_cli

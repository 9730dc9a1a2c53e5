// The one configuration of the library in this process: a cell sent to it, and its calls with what they
// print.
#pragma once

#include <string>
#include <vector>

#include "KineDll.h"
#include "cell/cell.h"
#include "library/printed_lines.h"

namespace kine_cli {

// A setup call that the library did not take.
struct RefusedSetup
{
    std::string path;  // of the field in the cell file
    std::string call;
    KineResult code = KINE_OK;
    std::string lines;
};

// Sends the whole cell, also after a refusal. Empty when all was taken.
std::vector<RefusedSetup> SetUpLibrary(const Cell& cell, PrintedLines& printed);

// The same; a refusal makes it a bad file.
void RequireSetUp(const Cell& cell, PrintedLines& printed);

// The records a command works with.
struct CellRecords
{
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
};

// By name; an empty name is the cell's own choice. Fails (usage) for a name that the cell does not have, with
// those that it has.
CellRecords RecordsOf(const Cell& cell, const Selection& selection);

// Joints to a pose.
KineResult JointsToPose(const KineJoint& joints, const CellRecords& records, Reference reference,
                        KinePose& pose);

}  // namespace kine_cli

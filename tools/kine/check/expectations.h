// What the author of a cell knows about it, compared with the library's answers.
#pragma once

#include <vector>

#include "cell/cell.h"
#include "check/finding.h"
#include "check/frame_difference.h"
#include "library/printed_lines.h"

namespace kine_cli {

struct Confirmation
{
    KineResult code = KINE_OK;
    FrameDifference difference;  // for KINE_OK where a frame is expected
    bool isConfirmed = false;
};

// One for each expectation of the cell, which the library holds. What is not confirmed is a finding.
std::vector<Confirmation> ConfirmExpectations(const Cell& cell, PrintedLines& printed, FindingList& findings);

// "0.000012 mm, 0.000000 deg", or the code
std::string ResultInWords(const Expectation& expectation, const Confirmation& confirmation);

}  // namespace kine_cli

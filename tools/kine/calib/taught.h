// The taught points of a calibration, as poses of what the call wants to know: the flange, or the tip of a
// tool.
#pragma once

#include "calib/method.h"
#include "library/printed_lines.h"
#include "options.h"

namespace kine_cli {

struct Taught
{
    std::vector<std::string> names;
    bool areJoints = false;
    std::vector<KineJoint> joints;
    Poses poses;     // of joints at first with their external axes only
    std::string of;  // "the flange in the base"
    // Joints that the library refuses, and the call that does.
    std::string call;
    KineResult code = KINE_OK;
    std::size_t refused = 0;
    std::string lines;
};

// Fails when there are no points, or more than anybody teaches.
Taught ReadTaught(const ReadyCell& ready, const TargetSource& source);

// Joints to poses. Fails (usage) when the tool is not of the kind that is needed.
void FindPoses(const ReadyCell& ready, Teach teach, Taught& taught, PrintedLines& printed);

// Too few points are a fault of the file, or of the command line.
[[noreturn]] void FailPoints(const TargetSource& source, const std::string& text);

}  // namespace kine_cli

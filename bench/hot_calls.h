// The hot exports behind one face, and the distinct inputs they are measured on.
#pragma once

#include <string>
#include <vector>

#include "cells.h"

namespace kine::bench {

struct Input
{
    KineJoint joints;
    KinePose target;    // of these joints, in the work object
    KinePose touch[3];  // the flange with one point of the tool at one place
};

struct HotCall
{
    std::string name;
    KineResult (*run)(const test::CellRecords& cell, const Input& input);
};

// Forward, inverse, jog and alignment.
const std::vector<HotCall>& HotCalls();
const HotCall& HotCallCalled(const std::string& name);
const HotCall& ToolCalibration();

// Inputs that a call succeeds on, of the arm and cell that the library is set up for. Throws when hardly any
// does.
std::vector<Input> InputsFor(const HotCall& call, const Arm& arm, const Cell& cell, std::size_t count);

}  // namespace kine::bench

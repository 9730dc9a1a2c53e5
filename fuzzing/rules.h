// What the outcome of a call must look like. Every function says what is broken, or null.
#pragma once

#include "call.h"

namespace kine::fuzz {

// The promises that all exports share, and the rule of the export.
const char* JudgeOutcome(const Call& call, const Outcome& outcome, const Cell& cell);

// The printed text: cell as it was before the call.
const char* JudgeText(const Call& call, const Outcome& outcome, const Cell& cell);

// The configuration after a setup call.
void Follow(const Call& call, KineResult code, Cell& cell);

// --- Rules of single exports ----------------------------------------------------------------------------

// External axes of the joints in the result.
const char* HandsJointAxesThrough(const Call& call, const Outcome& outcome, const Cell& cell);
// The same, but with a tool on the flange zeros.
const char* HandsJointAxesThroughPastTool(const Call& call, const Outcome& outcome, const Cell& cell);
const char* HasNoExtAxes(const Call& call, const Outcome& outcome, const Cell& cell);
// Configuration and external axes of the first pose in the result.
const char* HandsPoseThrough(const Call& call, const Outcome& outcome, const Cell& cell);
const char* GivesJointsOfTarget(const Call& call, const Outcome& outcome, const Cell& cell);
const char* InchRule(const Call& call, const Outcome& outcome, const Cell& cell);
const char* AlignRule(const Call& call, const Outcome& outcome, const Cell& cell);
const char* SwapRule(const Call& call, const Outcome& outcome, const Cell& cell);
const char* TaughtPositionRule(const Call& call, const Outcome& outcome, const Cell& cell);

}  // namespace kine::fuzz

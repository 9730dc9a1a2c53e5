// The joints that the inverse gives back, and those to try.
#pragma once

#include <optional>
#include <vector>

#include "cell/cell.h"

namespace kine_cli {

struct Range
{
    double lower = 0.0;
    double upper = 0.0;

    bool Contains(double value) const { return lower <= value && value <= upper; }
};

// The values of an axis that the inverse can answer with, deg; nothing for an axis that it answers in
// any turn, and for
// the screw.
std::optional<Range> PostureWindow(const Cell& cell, std::size_t axis);

// Whether the limits of an axis are given and leave something. The library opens others.
bool HasLimits(const Cell& cell, std::size_t axis);

bool IsScrew(const Cell& cell, std::size_t axis);

// For each axis of the arm, then each external axis of the cell: what the round trip draws from.
std::vector<Range> RangesToTry(const Cell& cell);

}  // namespace kine_cli

// Random targets that a cell can reach: joints within the limits, away from singular places, whose pose leads
// back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "KineDll.h"
#include "library/printed_lines.h"
#include "options.h"

namespace kine_cli {

struct ReachableTarget
{
    KineJoint joints{};
    KinePose inWobj{};
};

struct ReachableTargets
{
    std::vector<ReachableTarget> targets;
    std::size_t tried = 0;     // joint sets
    std::size_t singular = 0;  // of them
    std::map<KineResult, std::size_t> refused;
};

// Axes without limits go +-170 degrees, external axes their travel, or stay at zero when the cell does not
// tell it. The same seed gives the same targets everywhere.
ReachableTargets FindReachable(const ReadyCell& ready, std::uint64_t seed, std::size_t wanted,
                               PrintedLines& printed);

}  // namespace kine_cli

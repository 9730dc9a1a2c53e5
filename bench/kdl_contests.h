// The library against Orocos KDL on the same targets.
#pragma once

#include "results.h"

namespace kine::bench {

// The arm that KDL knows, and the same arm as the library alone models it; bent says how they differ.
struct SixAxisPair
{
    std::string title, rigidArm, bentArm, bent;
};

// Throws when the two disagree about where an arm is.
void CompareSixAxis(const Plan& plan, const SixAxisPair& pair, Results& results);
void CompareFourAxis(const Plan& plan, Results& results);

}  // namespace kine::bench

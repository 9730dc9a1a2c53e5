// The inner steps of the library, each on numbered inputs: what no export performs alone. The only part of
// the benchmarks that knows the inside.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "KineDll.h"

namespace kine::bench {

struct InnerStep
{
    std::string name;
    void (*run)(std::size_t input);  // input below the number of joint sets prepared
};

// Names that other programs look up: of the calibrated six-axis arm, the chain with the axes of its joints,
// and the inverse of a target that it solves and of one that it refuses.
inline constexpr const char* kChainWithAxes = "six_axis_chain_and_axes";
inline constexpr const char* kInverse = "six_axis_inverse";
inline constexpr const char* kInverseOutOfReach = "six_axis_inverse_out_of_reach";

// Makes the inputs of all steps from joints in degrees.
void PrepareInnerSteps(const std::vector<KineJoint>& sixAxis, const std::vector<KineJoint>& fourAxis);

const std::vector<InnerStep>& InnerSteps();
const InnerStep& InnerStepCalled(const std::string& name);

}  // namespace kine::bench

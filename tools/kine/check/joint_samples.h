// Joint sets spread evenly over the joint space, the same in every run.
#pragma once

#include <cstddef>
#include <vector>

#include "cell/cell.h"
#include "check/joint_ranges.h"

namespace kine_cli {

// The additive recurrence of Roberts: axis k of set n stands at the fraction n * g^-k of its range,
// where g is the
// root above 1 of g^(d + 1) = g + 1 for d axes. Rounded to 0.0001, so that a person can type it.
class JointSamples
{
public:
    explicit JointSamples(const Cell& cell);

    KineJoint At(std::size_t n) const;

private:
    double Value(std::size_t n, std::size_t dimension) const;

    std::vector<Range> ranges_;
    std::vector<double> steps_;
    std::size_t axes_;
};

}  // namespace kine_cli

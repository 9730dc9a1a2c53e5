#include "check/joint_samples.h"

#include <algorithm>
#include <cmath>

namespace kine_cli {

JointSamples::JointSamples(const Cell& cell) : ranges_(RangesToTry(cell)), axes_(cell.AxisCount())
{
    const auto dimensions = static_cast<double>(ranges_.size());
    double root = 1.5;
    for (int i = 0; i < 100; ++i) root = std::pow(1.0 + root, 1.0 / (dimensions + 1.0));
    double step = 1.0;
    for (std::size_t k = 0; k < ranges_.size(); ++k) steps_.push_back(step /= root);
}

double JointSamples::Value(std::size_t n, std::size_t dimension) const
{
    const Range& range = ranges_[dimension];
    const double turns = 0.5 + static_cast<double>(n + 1) * steps_[dimension];
    const double value = range.lower + (range.upper - range.lower) * (turns - std::floor(turns));
    return std::clamp(std::round(value * 1e4) / 1e4, range.lower, range.upper);
}

KineJoint JointSamples::At(std::size_t n) const
{
    KineJoint joints{};
    for (std::size_t k = 0; k < ranges_.size(); ++k)
        (k < axes_ ? joints.Axis[k] : joints.ExtAxis[k - axes_]) = Value(n, k);
    return joints;
}

}  // namespace kine_cli

#include "check/joint_ranges.h"

#include <algorithm>
#include <cmath>

namespace kine_cli {
namespace {

constexpr double kHalfTurn = 180.0;
constexpr double kUsual = 170.0;           // tried without limits, deg
constexpr double kMostTried = 3 * 360.0;   // of limits that are wider, deg
constexpr double kScrewTurns = 2 * 360.0;  // tried without limits, deg
constexpr double kClearOfWindow = 0.001;   // deg; the ends belong to one side only
constexpr double kUsualClearance = 10.0;   // deg, without limits

// atan(a3 / d4), deg
double ElbowAngle(const Cell& cell)
{
    return std::atan2(cell.param.SixAxis.a3, cell.param.SixAxis.d4) * 57.29577951308232;
}

Range UsualRange(const Cell& cell, std::size_t axis)
{
    if (IsScrew(cell, axis)) return {0.0, kScrewTurns};
    const std::optional<Range> window = PostureWindow(cell, axis);
    if (!window) return {-kUsual, kUsual};
    return {window->lower + kUsualClearance, window->upper - kUsualClearance};
}

Range RangeOfAxis(const Cell& cell, std::size_t axis)
{
    if (!HasLimits(cell, axis)) return UsualRange(cell, axis);
    Range range = {cell.lower.Axis[axis], cell.upper.Axis[axis]};
    const std::optional<Range> window = PostureWindow(cell, axis);
    Range widest = window ? Range{window->lower + kClearOfWindow, window->upper - kClearOfWindow}
                          : Range{-kMostTried, kMostTried};
    if (IsScrew(cell, axis)) widest = {-1e6, 1e6};
    range.lower = std::max(range.lower, widest.lower);
    range.upper = std::min(range.upper, widest.upper);
    return range.lower < range.upper ? range : UsualRange(cell, axis);
}

}  // namespace

std::optional<Range> PostureWindow(const Cell& cell, std::size_t axis)
{
    if (cell.IsSixAxis()) {
        if (axis == 1 || axis == 4) return Range{-kHalfTurn, kHalfTurn};
        if (axis == 2) return Range{-90.0 - ElbowAngle(cell), 270.0 - ElbowAngle(cell)};
        return std::nullopt;
    }
    if (cell.armType == KINE_ARM_FOUR_AXIS && axis < 2) return Range{-kHalfTurn, kHalfTurn};
    return std::nullopt;
}

bool HasLimits(const Cell& cell, std::size_t axis)
{
    return cell.hasLimits && cell.lower.Axis[axis] < cell.upper.Axis[axis];
}

bool IsScrew(const Cell& cell, std::size_t axis) { return !cell.IsSixAxis() && axis == 2; }

std::vector<Range> RangesToTry(const Cell& cell)
{
    std::vector<Range> ranges;
    for (std::size_t axis = 0; axis < cell.AxisCount(); ++axis) ranges.push_back(RangeOfAxis(cell, axis));
    for (std::size_t i = 0; i < std::min(cell.externalAxes.size(), kExternalAxes); ++i) {
        const auto& travel = cell.externalAxes[i].travel;
        // Without travel the axis stays where it is set up.
        ranges.push_back(travel && travel->first <= travel->second ? Range{travel->first, travel->second}
                                                                   : Range{});
    }
    return ranges;
}

}  // namespace kine_cli

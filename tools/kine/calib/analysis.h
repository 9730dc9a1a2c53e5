// What the taught points say about themselves: how far each is from the place it should have, how much the
// result hangs on each, and how well their orientations determine a tool.
#pragma once

#include <optional>

#include "calib/method.h"

namespace kine_cli {

struct PointReport
{
    std::optional<double> residual;   // mm
    std::optional<Vec3> offset;       // from the mean place, where there is one
    std::optional<double> withoutMm;  // furthest result without this point
    std::optional<double> withoutRad;
};

struct LeaveOneOut
{
    std::size_t needsMore = 0;  // points; the rest is empty then
    std::optional<double> largestMm;
    std::optional<double> largestRad;
    std::size_t solutions = 0;
    std::size_t refused = 0;
};

struct Conditioning
{
    double condition = 0.0;  // of the rotation differences; infinity when one direction is not seen at all
    double amplification = 0.0;  // mm of the tip for 1 mm in the touches, at most
    std::string_view verdict;    // "good", "weak", "do not use"
};

struct OrientationSpread
{
    double smallestRad = 0.0;
    double meanRad = 0.0;
    double largestRad = 0.0;
    std::size_t nearestA = 0;  // the pair that is turned least
    std::size_t nearestB = 0;
};

struct Analysis
{
    std::vector<PointReport> points;
    std::optional<std::size_t> worst;
    std::size_t residualsNeedMore = 0;  // points
    std::optional<double> radius;       // of the circle, mm
    LeaveOneOut leaveOneOut;
    std::optional<Conditioning> conditioning;
    std::optional<OrientationSpread> spread;
};

// Below this angle between two touches the tool hardly moves about its tip.
inline constexpr double kAdvisedTurnDeg = 30.0;

Analysis Analyse(const Method& method, const Poses& poses, const KineFrame& found);

// Also of poses that the library refuses.
Conditioning ConditioningOf(const Poses& touches, bool isPlanar);
OrientationSpread SpreadOf(const Poses& touches);

// The points that can stand in for each other: indices into all points.
std::vector<std::size_t> AlikeOf(const Method& method, std::size_t points);

}  // namespace kine_cli

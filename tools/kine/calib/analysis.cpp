// The thresholds of conditioning. Three touches with the same turn phi about two axes that stand gamma apart
// have the condition number 1 / sin(gamma / 2) and the amplification 1 / (2 sin(phi / 2) sqrt(1 -
// cos(gamma))). Both "good" limits stand for 30 degrees and both "weak" limits for 10: an axis 30 degrees off
// the first one gives the condition number 3.9, and turns of 30 degrees about perpendicular axes the
// amplification 1.9; at 10 degrees these are 11.5 and 5.7.
#include "calib/analysis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "calib/fit.h"

namespace kine_cli {
namespace {

constexpr double kGoodCondition = 4.0;
constexpr double kGoodAmplification = 2.0;
constexpr double kWeakCondition = 12.0;
constexpr double kWeakAmplification = 6.0;

// An eigenvalue this much smaller than the largest is rounding.
constexpr double kRounding = 1e-14;

// mm. Residuals up to here are rounding: no point is worse than another.
constexpr double kNoResidual = 1e-6;

void Raise(std::optional<double>& largest, double value)
{
    if (!largest || !(value <= *largest)) largest = value;
}

Poses SeenPoses(const Method& method, const Poses& poses)
{
    return method.seenFrom ? method.seenFrom(poses) : poses;
}

void FindResiduals(const Method& method, const Poses& poses, const KineFrame& found, Analysis& analysis)
{
    std::vector<std::size_t> counted = AlikeOf(method, poses.size());
    if (method.figure != Figure::kOnePlace) {
        counted.resize(poses.size());
        for (std::size_t i = 0; i < counted.size(); ++i) counted[i] = i;
    }
    const std::size_t needed = std::max<std::size_t>(
        2, method.figure == Figure::kOnePlace ? method.exactWith : method.exactWith + 1);
    if (counted.size() < needed) {
        analysis.residualsNeedMore = needed - counted.size();
        return;
    }
    const std::vector<Vec3> all = method.places(found, poses);
    std::vector<Vec3> places;
    places.reserve(counted.size());
    for (const std::size_t i : counted) places.push_back(all[i]);
    std::vector<double> residuals;
    switch (method.figure) {
        case Figure::kOnePlace: {
            const Vec3 mean = Mean(places);
            for (std::size_t i = 0; i < places.size(); ++i) {
                analysis.points[counted[i]].offset = places[i] - mean;
                residuals.push_back(Norm(places[i] - mean));
            }
            break;
        }
        case Figure::kLine: residuals = OffLine(places); break;
        case Figure::kPlane: residuals = OffPlane(places); break;
        case Figure::kCircle: residuals = OffCircle(places).off; break;
    }
    for (std::size_t i = 0; i < counted.size(); ++i) analysis.points[counted[i]].residual = residuals[i];
    const auto worst = std::max_element(residuals.begin(), residuals.end());
    if (*worst > kNoResidual) {
        analysis.worst = counted[static_cast<std::size_t>(worst - residuals.begin())];
    }
}

// A further point of a plane or a line takes the side of the point it stands in for: the direction of Y or X
// hangs on it, and the fit does not. Turned by half about the line from the origin to X, or about the origin.
KinePose OnTheSide(const Method& method, const Poses& poses, std::size_t index)
{
    KinePose pose = poses[index];
    const Vec3 origin = PositionOf(poses[0].Frame);
    const Vec3 given = PositionOf(poses[method.firstAlike].Frame) - origin;
    const Vec3 point = PositionOf(pose.Frame) - origin;
    if (method.figure == Figure::kLine) {
        if (Dot(given, point) < 0.0) SetPosition(pose.Frame, origin - point);
    } else if (method.figure == Figure::kPlane) {
        const Vec3 x = PositionOf(poses[1].Frame) - origin;
        const Vec3 alongX = Scale(Dot(point, x) / Dot(x, x), x);
        if (Dot(given - Scale(Dot(given, x) / Dot(x, x), x), point - alongX) < 0.0)
            SetPosition(pose.Frame, origin + Scale(2.0, alongX) - point);
    }
    return pose;
}

class LeavingOut
{
public:
    LeavingOut(const Method& method, const Poses& poses, const KineFrame& found, Analysis& analysis)
        : method_(method),
          poses_(SeenPoses(method, poses)),
          found_(found),
          analysis_(analysis),
          alike_(AlikeOf(method, poses.size()))
    {
        if (!method.followsOrder) return;
        // Further points may have been taught between the others. Rising or falling, as the first two.
        const double sign = method.axisValue(poses[1]) < method.axisValue(poses[0]) ? -1.0 : 1.0;
        std::stable_sort(alike_.begin(), alike_.end(), [&](std::size_t i, std::size_t j) {
            return sign * method.axisValue(poses[i]) < sign * method.axisValue(poses[j]);
        });
    }

    void Run()
    {
        const Method* with = &method_;
        const std::size_t left = alike_.size() - 1;
        if (left < with->alike && method_.smaller) with = method_.smaller.get();
        LeaveOneOut& out = analysis_.leaveOneOut;
        if (left < with->alike) {
            out.needsMore = with->alike - left;
            return;
        }
        EveryGroup(*with);
    }

private:
    // Every group of as many points as the method takes, in the order of the points.
    void EveryGroup(const Method& with)
    {
        std::vector<bool> isIn(alike_.size(), false);
        std::fill_n(isIn.begin(), with.alike, true);
        do {
            std::vector<std::size_t> group;
            for (std::size_t i = 0; i < alike_.size(); ++i) {
                if (isIn[i]) group.push_back(alike_[i]);
            }
            Compare(with, group);
        } while (std::prev_permutation(isIn.begin(), isIn.end()));
    }

    void Compare(const Method& with, const std::vector<std::size_t>& group)
    {
        Poses chosen(poses_.begin(), poses_.begin() + static_cast<std::ptrdiff_t>(with.roles.size()));
        for (std::size_t i = 0; i < group.size(); ++i) {
            const bool isFurther = group[i] >= method_.roles.size();
            chosen[with.firstAlike + i] = isFurther ? OnTheSide(method_, poses_, group[i]) : poses_[group[i]];
        }
        LeaveOneOut& out = analysis_.leaveOneOut;
        const Solution solution = with.solveSeen ? with.solveSeen(chosen) : with.solve(chosen);
        if (solution.code != KINE_OK || !IsFinite(solution.frame)) {
            ++out.refused;
            return;
        }
        ++out.solutions;
        const std::optional<double> mm = DistanceOf(solution.frame);
        const std::optional<double> rad =
            &with == &method_ ? AngleOf(solution.frame) : std::optional<double>();
        if (mm) Raise(out.largestMm, *mm);
        if (rad) Raise(out.largestRad, *rad);
        for (const std::size_t i : alike_) {
            if (std::find(group.begin(), group.end(), i) != group.end()) continue;
            if (mm) Raise(analysis_.points[i].withoutMm, *mm);
            if (rad) Raise(analysis_.points[i].withoutRad, *rad);
        }
    }

    [[nodiscard]] std::optional<double> DistanceOf(const KineFrame& frame) const
    {
        if (!method_.comparesPositions) return std::nullopt;
        Vec3 apart = PositionOf(frame) - PositionOf(found_);
        if (method_.comparesInPlane) apart.z = 0.0;
        return Norm(apart);
    }

    [[nodiscard]] std::optional<double> AngleOf(const KineFrame& frame) const
    {
        const Rotation a = RotationOf(frame);
        const Rotation b = RotationOf(found_);
        if (method_.comparesDirections == Directions::kEvery) return AngleBetween(a, b);
        if (method_.comparesDirections == Directions::kNotFound) return std::nullopt;
        // Which way the axis of a circle points is a matter of the order of its points.
        const Vec3 z = ZAxis(a);
        return std::min(AngleBetween(z, ZAxis(b)), AngleBetween(Scale(-1.0, z), ZAxis(b)));
    }

    const Method& method_;
    Poses poses_;
    const KineFrame& found_;
    Analysis& analysis_;
    std::vector<std::size_t> alike_;
};

std::string_view VerdictOf(double condition, double amplification)
{
    if (condition <= kGoodCondition && amplification <= kGoodAmplification) return "good";
    return condition <= kWeakCondition && amplification <= kWeakAmplification ? "weak" : "do not use";
}

}  // namespace

std::vector<std::size_t> AlikeOf(const Method& method, std::size_t points)
{
    std::vector<std::size_t> alike;
    for (std::size_t i = 0; i < method.alike; ++i) alike.push_back(method.firstAlike + i);
    for (std::size_t i = method.roles.size(); i < points; ++i) alike.push_back(i);
    return alike;
}

Conditioning ConditioningOf(const Poses& touches, bool isPlanar)
{
    // N, the sum over the touches of D' D with D = R_i - R_0; for a four-axis arm of the upper left 2 by 2 of
    // D. Its eigenvalues are the squares of the singular values of all D on top of each other.
    Symmetric sums{};
    const Rotation first = RotationOf(touches.front().Frame);
    const std::size_t rows = isPlanar ? 2 : 3;
    for (const KinePose& pose : touches) {
        const Rotation r = RotationOf(pose.Frame);
        for (std::size_t row = 0; row < rows; ++row) {
            std::array<double, 3> d{};
            for (std::size_t column = 0; column < rows; ++column)
                d[column] = r[3 * row + column] - first[3 * row + column];
            const Symmetric products = {d[0] * d[0], d[0] * d[1], d[0] * d[2],
                                        d[1] * d[1], d[1] * d[2], d[2] * d[2]};
            for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += products[i];
        }
    }
    const Principal principal = PrincipalOf(sums);
    // The empty third direction of the planar form has the eigenvalue 0, the smallest.
    const double smallest = principal.values[isPlanar ? 1 : 0];
    const double largest = principal.values[2];
    Conditioning conditioning;
    if (!(smallest > kRounding * largest) || !(smallest > kRounding)) {
        conditioning.condition = conditioning.amplification = std::numeric_limits<double>::infinity();
    } else {
        conditioning.condition = std::sqrt(largest / smallest);
        conditioning.amplification = 1.0 / std::sqrt(smallest);
    }
    conditioning.verdict = VerdictOf(conditioning.condition, conditioning.amplification);
    return conditioning;
}

OrientationSpread SpreadOf(const Poses& touches)
{
    OrientationSpread spread;
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < touches.size(); ++i) {
        for (std::size_t j = i + 1; j < touches.size(); ++j) {
            const double angle = AngleBetween(RotationOf(touches[i].Frame), RotationOf(touches[j].Frame));
            if (pairs == 0 || angle < spread.smallestRad) {
                spread.smallestRad = angle;
                spread.nearestA = i;
                spread.nearestB = j;
            }
            spread.largestRad = std::max(spread.largestRad, angle);
            spread.meanRad += angle;
            ++pairs;
        }
    }
    if (pairs > 0) spread.meanRad /= static_cast<double>(pairs);
    return spread;
}

Analysis Analyse(const Method& method, const Poses& poses, const KineFrame& found)
{
    Analysis analysis;
    analysis.points.resize(poses.size());
    if (!IsFinite(found)) return analysis;
    const Poses seen = SeenPoses(method, poses);
    FindResiduals(method, seen, found, analysis);
    if (method.figure == Figure::kCircle) analysis.radius = OffCircle(Positions(seen)).radius;
    LeavingOut(method, poses, found, analysis).Run();
    if (method.turnsTool) {
        const Poses touches(poses.begin(), poses.begin() + static_cast<std::ptrdiff_t>(method.alike));
        analysis.conditioning = ConditioningOf(touches, method.isPlanar);
        analysis.spread = SpreadOf(touches);
    }
    return analysis;
}

}  // namespace kine_cli

// The library's code tells the kind of fault; which points have it is looked up here. What cannot be pinned
// on points is left to the remedy of the code.
#include "calib/blame.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "calib/analysis.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

// mm. The widest limit of the calls for points that are too close.
constexpr double kClose = 0.01;
// mm. How far the track has to move.
constexpr double kLeastTravel = 0.1;
// Orientations that differ by less say nothing about the tip; more is a matter of axes that are alike.
constexpr double kAlikeDeg = 10.0;

class Finder
{
public:
    Finder(const Method& method, const Poses& poses, const std::vector<std::string>& names,
           const Solution& refused)
        : method_(method), poses_(poses), names_(names), refused_(refused)
    {}

    Blame Find()
    {
        switch (refused_.code) {
            case KINE_ERR_POSE: Angles(); break;
            case KINE_ERR_CALIB_POINTS_CLOSE: TooClose(); break;
            case KINE_ERR_CALIB_COLLINEAR: OnALine(); break;
            case KINE_ERR_CALIB_SINGULAR:
            case KINE_ERR_CALIB_4: OrientationsAlike(); break;
            case KINE_ERR_CALIB_3:
                Note({0, 1, 2}, "the circle through " + List({0, 1, 2}) + " is too small");
                break;
            case KINE_ERR_ZERO_VECTOR: TooCloseToOrigin(); break;
            case KINE_ERR_CALIB_INPUT: TooLittleTravel(); break;
            default: break;
        }
        std::sort(blame_.points.begin(), blame_.points.end());
        blame_.points.erase(std::unique(blame_.points.begin(), blame_.points.end()), blame_.points.end());
        return blame_;
    }

private:
    void Note(const std::vector<std::size_t>& points, const std::string& reason)
    {
        blame_.points.insert(blame_.points.end(), points.begin(), points.end());
        blame_.reasons.push_back(reason);
    }

    std::string List(const std::vector<std::size_t>& points) const
    {
        std::string text = "points ";
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (i > 0) text += i + 1 == points.size() ? " and " : ", ";
            text += names_[points[i]];
        }
        return text;
    }

    // The call looks at the poses it takes only.
    void Angles()
    {
        for (std::size_t i = 0; i < method_.roles.size(); ++i) {
            const KineFrame& frame = poses_[i].Frame;
            for (const auto& [angle, name] :
                 {std::pair{frame.A, "a_deg"}, {frame.B, "b_deg"}, {frame.C, "c_deg"}}) {
                if (std::fabs(angle) <= 180.0) continue;
                std::string value;
                AppendNumber(value, angle);
                Note({i}, "point " + names_[i] + ": " + name + " is " + value + ", beyond 180 degrees");
            }
        }
    }

    // The report is written once the tip is solved: what is refused then is the orientation.
    bool IsOrientationRefused() const { return refused_.report.has_value(); }

    // The tip in the poses that give the orientation.
    std::vector<Vec3> OrientationPlaces() const
    {
        const std::size_t origin = method_.roles.size() - 3;
        Poses poses(poses_.begin() + static_cast<std::ptrdiff_t>(origin),
                    poses_.begin() + static_cast<std::ptrdiff_t>(method_.roles.size()));
        if (!method_.turnsTool) return Positions(poses);
        KineFrame tip{};
        (void)Kine_CalcGripToolPrm_3P(&poses_[0], &poses_[1], &poses_[2], &tip, nullptr);  // solved before
        if (method_.isPlanar) {
            constexpr double kRaised = 10.0;  // as the call does
            poses[1] = poses[0];
            poses[1].Frame.Z += kRaised;
        }
        return TipPlaces(PositionOf(tip), poses);
    }

    void ClosePairs(const std::vector<std::size_t>& points, const std::vector<Vec3>& places, bool inPlane)
    {
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (std::size_t j = i + 1; j < places.size(); ++j) {
                Vec3 apart = places[j] - places[i];
                if (inPlane) apart.z = 0.0;
                if (!(Norm(apart) < kClose)) continue;
                Note({points[i], points[j]}, List({points[i], points[j]}) + " are " + Fixed(Norm(apart), 6) +
                                                 (inPlane ? " mm apart in X and Y" : " mm apart"));
            }
        }
    }

    void TooClose()
    {
        if (IsOrientationRefused()) {
            const std::size_t origin = method_.roles.size() - 3;
            const std::vector<Vec3> tip = OrientationPlaces();
            ClosePairs({origin, origin + 1}, {tip[0], tip[1]}, false);
            ClosePairs({origin + 1, origin + 2}, {tip[1], tip[2]}, false);
            return;
        }
        const std::size_t count = method_.turnsTool ? method_.alike : method_.roles.size();
        std::vector<std::size_t> points;
        for (std::size_t i = 0; i < count; ++i) points.push_back(i);
        std::vector<Vec3> places = Positions(poses_);
        places.resize(count);
        ClosePairs(points, places, method_.isPlanar);
        if (!blame_.reasons.empty()) return;
        if (method_.figure == Figure::kLine) {
            Note(points, "point " + names_[1] + " is straight above or below point " + names_[0] +
                             ", which gives X no heading");
        } else if (method_.seenFrom) {
            places = Positions(method_.seenFrom(poses_));
            places.resize(count);
            if (std::all_of(places.begin(), places.end(), [](const Vec3& p) { return Norm(p) == 0.0; })) {
                blame_.reasons.push_back(
                    "the mechanical unit cannot be used: see its index, its kind, its axes and their frames");
            } else {
                ClosePairs(points, places, false);
            }
        }
    }

    void OnALine()
    {
        const std::size_t last = method_.roles.size();
        if (IsOrientationRefused() || method_.roles.back() == "x") {
            if (IsOrientationRefused() || !method_.turnsTool) {
                const std::vector<std::size_t> points = {last - 3, last - 2, last - 1};
                Note(points, "the directions to z and to x of " + List(points) + " are parallel");
                return;
            }
        }
        Note({0, 1, 2}, List({0, 1, 2}) + " lie on one line");
    }

    void OrientationsAlike()
    {
        const Poses touches(poses_.begin(), poses_.begin() + static_cast<std::ptrdiff_t>(method_.alike));
        const OrientationSpread spread = SpreadOf(touches);
        const std::vector<std::size_t> nearest = {spread.nearestA, spread.nearestB};
        if (Degrees(spread.smallestRad) < kAlikeDeg) {
            Note(nearest, List(nearest) + " are turned by " + Fixed(Degrees(spread.smallestRad), 2) +
                              " degrees against each other only");
        }
        if (method_.isPlanar) return;
        if (!std::isfinite(ConditioningOf(touches, false).condition)) {
            blame_.reasons.emplace_back("the tool is turned about one axis only: turn it about a second");
        } else if (blame_.reasons.empty()) {
            blame_.reasons.push_back("the orientations differ by " + Fixed(Degrees(spread.largestRad), 2) +
                                     " degrees at most: turn the tool further");
        }
    }

    // Of a track. An axis that there cannot be has no points to blame.
    void TooLittleTravel()
    {
        if (!method_.axisValue || method_.followsOrder) return;
        double travel = 0.0;
        for (std::size_t i = 1; i < method_.roles.size(); ++i) {
            travel = std::max(travel, std::fabs(method_.axisValue(poses_[i]) - method_.axisValue(poses_[0])));
        }
        blame_.reasons.push_back(
            travel < kLeastTravel
                ? "the track moved by " + Fixed(travel, 4) + " mm at most"
                : "the points differ in height only: the mark stays where it is beside the robot");
    }

    void TooCloseToOrigin()
    {
        const std::size_t origin = method_.roles.size() - 3;
        const std::vector<Vec3> places = OrientationPlaces();
        ClosePairs({origin, origin + 1}, {places[0], places[1]}, false);
        ClosePairs({origin, origin + 2}, {places[0], places[2]}, false);
    }

    const Method& method_;
    const Poses& poses_;
    const std::vector<std::string>& names_;
    const Solution& refused_;
    Blame blame_;
};

}  // namespace

Blame BlameFor(const Method& method, const Poses& poses, const std::vector<std::string>& names,
               const Solution& refused)
{
    return Finder(method, poses, names, refused).Find();
}

}  // namespace kine_cli

// The calibrations of the library: what each finds, which points it takes in which order, and what the
// analysis of the taught points needs to know about it.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "calib/geometry.h"
#include "cell/cell.h"

namespace kine_cli {

using Poses = std::vector<KinePose>;

// What the library answers. The report may come with a refusal too.
struct Solution
{
    KineResult code = KINE_OK;
    KineFrame frame{};
    std::optional<KineCalibError> report;
    std::optional<double> tiltRad;
};

// The figure on which the taught points should lie once they are seen from where they belong.
enum class Figure
{
    kOnePlace,
    kLine,
    kPlane,
    kCircle
};

// What two solutions are compared by.
enum class Directions
{
    kNotFound,
    kOnlyZ,
    kEvery
};

// What the poses of a calibration are poses of.
enum class Teach
{
    kFlange,  // in the base; in the world when the robot rides between the points
    kFlangeInWorld,
    kTipInWorld,
    kTipInBase,
    kStationaryTipInFlange
};

struct Method
{
    std::string name;                // "3pzx"
    std::string call;                // "Kine_CalcGripToolPrm_3PZX"
    std::vector<std::string> roles;  // of the points, in the order of the call
    Teach teach = Teach::kTipInWorld;
    bool suitsArm = true;  // otherwise the library refuses it, and only its name chooses it
    // The points that can stand in for each other: these of the roles and all behind them.
    std::size_t firstAlike = 0;
    std::size_t alike = 0;
    std::function<Solution(const Poses&)> solve;

    Figure figure = Figure::kOnePlace;
    std::string residualOf;     // in words
    std::size_t exactWith = 1;  // so many points lie on the figure by themselves
    // Every point where it belongs: the touched places of a tool, the places of a mark on its unit.
    std::function<std::vector<Vec3>(const KineFrame& found, const Poses&)> places;

    bool comparesPositions = true;
    bool comparesInPlane = false;  // X and Y only: a four-axis arm does not find the height
    Directions comparesDirections = Directions::kNotFound;
    // The value of the axis that is calibrated, in a taught pose; whether the order of the points says its
    // sense.
    std::function<double(const KinePose&)> axisValue;
    bool followsOrder = false;
    // For a frame on a moving unit: the points seen from it, and the solver of those.
    std::function<Poses(const Poses&)> seenFrom;
    std::function<Solution(const Poses&)> solveSeen;

    // Orientations decide: the flange carries what touches. Planar for a four-axis arm.
    bool turnsTool = false;
    bool isPlanar = false;
    // The same with fewer points, for the times when one is left out.
    std::shared_ptr<const Method> smaller;
    std::vector<std::string> notes;  // what a person should know about this calibration
};

// The lists of methods that a command offers.
std::vector<Method> HeldToolMethods(std::uint32_t armType);
std::vector<Method> StationaryToolMethods(std::uint32_t armType);
std::vector<Method> FixedUserMethods();
std::vector<Method> HeldUserMethods();
std::vector<Method> FixedObjectMethods(const KineFrame& user);
std::vector<Method> HeldObjectMethods(const KineFrame& user);
std::vector<Method> UnitObjectMethods(std::int32_t unit);

// `driver`: the external axis that drives the axis, if there is one. `axis` counts from 1. The reference is
// the frame of the axis before as it stands.
Method FirstAxisMethod(std::int32_t unit, std::optional<std::size_t> driver);
Method FurtherAxisMethod(std::int32_t unit, std::int32_t axis, std::optional<std::size_t> driver,
                         const KineFrame& reference);
Method TrackMethod(std::int32_t unit, std::optional<std::size_t> driver);

// The method of that name, or the one that the number of points leaves: the only one, or the only one that
// takes just so many. Fails (usage) otherwise, with what there is.
const Method& ChosenMethod(const std::vector<Method>& methods, const std::string& name, std::size_t points);

// The places of the tip in poses of what carries it.
std::vector<Vec3> TipPlaces(const Vec3& tip, const Poses& poses);
std::vector<Vec3> Positions(const Poses& poses);

}  // namespace kine_cli

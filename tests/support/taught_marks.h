// Taught poses of a mark that a rotary axis turns, or that stands beside a track, and mechanical units whose
// axes are known. Degrees and millimetres. The poses hold NaN in every external axis but the one that moved.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "KineDll.h"
#include "support/cell_setup.h"
#include "support/sample_arms.h"
#include "support/taught_poses.h"

namespace kine::test {

using Values = std::array<double, 3>;  // of an external axis, one for each taught pose

// A mark on a table: where it is, in the frame of the axis, when the axis reads 0.
struct Mark
{
    double radius;
    double phase;
    double height;
};

inline ThreePoses MarkOnTable(const Mat4& axis, const Mark& mark, const Values& values, int extAxis)
{
    ThreePoses taught{};
    for (std::size_t i = 0; i < taught.size(); ++i) {
        const Point turned = axis * TurnZDeg(mark.phase + values[i]) * Point{mark.radius, 0.0, mark.height};
        taught[i] = TaughtAt(turned, extAxis, values[i]);
    }
    return taught;
}

// The mark at 0, 90 and 180 degrees of an upright table at (100, 200, 50): the axis shows without a turn. No
// external axis has moved.
inline ThreePoses UprightTable()
{
    return TaughtPoints({130.0, 200.0, 50.0}, {100.0, 230.0, 50.0}, {70.0, 200.0, 50.0});
}

// Whether the positions at these values follow one another anticlockwise about the axis.
inline bool IsAnticlockwise(const Values& values)
{
    const auto turnTo = [&](double value) {
        const double turn = std::fmod(value - values[0], 360.0);
        return turn < 0.0 ? turn + 360.0 : turn;
    };
    return turnTo(values[1]) < turnTo(values[2]);
}

// Whether the circle of a mark lies well: the axis frame is computed in the XY plane, where an axis in that
// plane and a bisector of the first two positions along X divide by nearly nothing. At the turn halfway, in
// degrees, the mark is halfway between these positions; the limits are sines.
inline bool IsWellPlaced(const Mat4& axis, double halfway, double axisLimit, double bisectorLimit)
{
    const Mat4 bisector = RotationOf(axis) * TurnZDeg(halfway);
    return std::fabs(axis[2][2]) > axisLimit && std::fabs(bisector[1][0]) > bisectorLimit;
}

// The axis frame that the positions alone can show: in the centre of the circle, X towards the first of them,
// Z so that they follow one another anticlockwise.
inline Mat4 SeenAxis(const Mat4& axis, const Mark& mark, const Values& values)
{
    const Mat4 towardsFirst = axis * Shift(0.0, 0.0, mark.height) * TurnZDeg(mark.phase + values[0]);
    return IsAnticlockwise(values) ? towardsFirst : towardsFirst * TurnXDeg(180.0);
}

// A fixed mark as a robot sees it that stands at these travels of a track. headingDeg turns the base on the
// track; mark is seen from the track's zero.
inline ThreePoses MarkBesideTrack(double headingDeg, const Point& mark, const Values& travels, int extAxis)
{
    ThreePoses taught{};
    for (std::size_t i = 0; i < taught.size(); ++i) {
        const Mat4 trackFromBase = Shift(travels[i], 0.0, 0.0) * TurnZDeg(headingDeg);
        taught[i] = TaughtAt(RigidInverse(trackFromBase) * mark, extAxis, travels[i]);
    }
    return taught;
}

// An axis of a mechanical unit: the external axis that drives it and that one's type.
struct AxisPlan
{
    int extAxis;
    int type;
};

inline constexpr int kRotaryType = 0;
inline constexpr int kLinearType = 1;

inline void StoreAxisType(int extAxis, int type)
{
    KineExtAxisParam param{};
    for (int16_t& word : param.Word) word = 1;  // only the last one is the type
    param.Word[3] = static_cast<int16_t>(type);
    EXPECT_EQ(Kine_SetExtAxisParam(extAxis, &param), KINE_OK);
}

inline void StoreUnitWithAxes(int index, std::initializer_list<AxisPlan> axes)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = kTwoRotaryKind;
    unit.AxisCount = static_cast<uint8_t>(axes.size());
    std::size_t i = 0;
    for (const AxisPlan& axis : axes) {
        unit.AxisParamIndex[i++] = static_cast<uint8_t>(axis.extAxis);
        if (axis.extAxis < 6) StoreAxisType(axis.extAxis, axis.type);
    }
    StoreUnit(index, unit);
}

// A cell whose unit 0 has these axes.
inline void SetUpUnit(std::initializer_list<AxisPlan> axes)
{
    SetUpArm(WristArm());
    SetUnitCounts(1, 6);
    StoreUnitWithAxes(0, axes);
}

// A cell whose unit 0 is a track.
inline void SetUpTrack(int extAxis = 0) { SetUpUnit({{extAxis, kLinearType}}); }

}  // namespace kine::test

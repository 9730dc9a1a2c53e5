// Taught poses of a mark that a rotary axis turns, or that stands beside a track, and mechanical units whose
// axes are known. Degrees and millimetres.
//
// The poses carry values that are legal but not asked for: angles and configuration integers of some kind,
// NaN in every external axis but the one that moved.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "KineDll.h"
#include "support/cell_setup.h"
#include "support/numbers.h"
#include "support/rigid_matrix.h"
#include "support/sample_arms.h"

namespace kine::test {

using Taught = std::array<KinePose, 3>;
using Values = std::array<double, 3>;  // of an external axis, one for each taught pose
using Point = std::array<double, 3>;

inline KinePose TaughtAt(const Point& point)
{
    KinePose pose{};
    pose.Frame = {point[0], point[1], point[2], 180.0, -180.0, 47.0};
    pose.Cfg1 = 7;
    pose.Cfg2 = -8;
    pose.Cfg4 = 99;
    for (double& value : pose.ExtAxis) value = kNan;
    return pose;
}

inline KinePose TaughtAt(const Point& point, int extAxis, double value)
{
    KinePose pose = TaughtAt(point);
    pose.ExtAxis[extAxis] = value;
    return pose;
}

// Three positions with all external axes at 0.
inline Taught TaughtPoints(const Point& p0, const Point& p1, const Point& p2)
{
    Taught taught = {TaughtAt(p0), TaughtAt(p1), TaughtAt(p2)};
    for (KinePose& pose : taught) {
        for (double& value : pose.ExtAxis) value = 0.0;
    }
    return taught;
}

// A mark on a table: where it is, in the frame of the axis, when the axis reads 0.
struct Mark
{
    double radius;
    double phase;
    double height;
};

inline Point PositionOf(const Mat4& m) { return {m[0][3], m[1][3], m[2][3]}; }

inline Taught MarkOnTable(const Mat4& axis, const Mark& mark, const Values& values, int extAxis)
{
    Taught taught{};
    for (std::size_t i = 0; i < taught.size(); ++i) {
        const Mat4 turned = axis * TurnZDeg(mark.phase + values[i]) * Shift(mark.radius, 0.0, mark.height);
        taught[i] = TaughtAt(PositionOf(turned), extAxis, values[i]);
    }
    return taught;
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

// The axis frame that the positions alone can show: in the centre of the circle, X towards the first of them,
// Z so that they follow one another anticlockwise.
inline Mat4 SeenAxis(const Mat4& axis, const Mark& mark, const Values& values)
{
    const Mat4 towardsFirst = axis * Shift(0.0, 0.0, mark.height) * TurnZDeg(mark.phase + values[0]);
    return IsAnticlockwise(values) ? towardsFirst : towardsFirst * TurnXDeg(180.0);
}

// A fixed mark as a robot sees it that stands at these travels of a track. headingDeg turns the base on the
// track; mark is seen from the track's zero.
inline Taught MarkBesideTrack(double headingDeg, const Point& mark, const Values& travels, int extAxis)
{
    Taught taught{};
    for (std::size_t i = 0; i < taught.size(); ++i) {
        const Mat4 trackFromBase = Shift(travels[i], 0.0, 0.0) * TurnZDeg(headingDeg);
        const Mat4 baseFromMark = RigidInverse(trackFromBase) * Shift(mark[0], mark[1], mark[2]);
        taught[i] = TaughtAt(PositionOf(baseFromMark), extAxis, travels[i]);
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

}  // namespace kine::test

// Positioner axes and the robot base on a track.
#include "calib/positioner_calib.h"

#include <cmath>
#include <cstddef>
#include <optional>

#include "calib/point_spread.h"
#include "calib/taught_points.h"
#include "math/rotation.h"

namespace kine {

namespace {

// word[3] of the external axis that drives a linear axis.
constexpr std::int32_t kLinearAxis = 1;

// Three positions of the mark on a rotary axis.
constexpr TriangleLimits kMarkLimits{1e-5, 0.99999};

// Shortest position of the mark on a track, mm; equal passes, NaN passes.
constexpr double kMinTrackPointDistance = 1e-5;
// Shortest move of the track, mm; equal passes, NaN passes. One move that is long enough will do.
constexpr double kMinTrackMove = 0.1;
// Determinant of the normal equations for the rotation, mm^4; equal fails, NaN passes.
constexpr double kMinTrackDeterminant = 1e-10;

double ExtAxisOf(const PoseRecord& pose, const UnitAxisInfo& axis)
{
    return pose.extAxis[static_cast<std::size_t>(axis.extAxis)];
}

// The rotation about Z, times a scale, that carries the moves of the mark seen from the base onto the moves
// of the track along X. (u, v): its first column.
KineResult CalcTrackRotation3P(const UnitAxisInfo& track, std::span<const PoseRecord, 3> taught, RotMatrix& m)
{
    const auto [p0, p1, p2] = PointsOf(taught);
    if (Norm(p0 - p1) < kMinTrackPointDistance || Norm(p0 - p2) < kMinTrackPointDistance ||
        Norm(p1 - p2) < kMinTrackPointDistance) {
        return KINE_ERR_CALIB_POINTS_CLOSE;
    }
    const double d1 = ExtAxisOf(taught[1], track) - ExtAxisOf(taught[0], track);
    const double d2 = ExtAxisOf(taught[2], track) - ExtAxisOf(taught[0], track);
    if (std::fabs(d1) < kMinTrackMove && std::fabs(d2) < kMinTrackMove) return KINE_ERR_CALIB_INPUT;

    // The mark stands still, so that p0 - pi is the move of the base in its own frame. Two equations each:
    // a.x * u - a.y * v = d and a.y * u + a.x * v = 0.
    const Vec3 a1 = p0 - p1;
    const Vec3 a2 = p0 - p2;
    const double s = (a1.x * a1.x + a1.y * a1.y) + (a2.x * a2.x + a2.y * a2.y);
    if (std::fabs(s * s) <= kMinTrackDeterminant) return KINE_ERR_CALIB_INPUT;
    const double u = (d1 * a1.x + d2 * a2.x) / s;
    const double v = -(d1 * a1.y + d2 * a2.y) / s;
    m = {u, -v, 0.0, v, u, 0.0, 0.0, 0.0, 1.0};
    return KINE_OK;
}

// With the scale of m: it belongs to the fit.
KineCalibError CalcTrackError3P(const UnitAxisInfo& track, std::span<const PoseRecord, 3> taught,
                                const RotMatrix& m)
{
    std::array<Vec3, 3> onTrack{};
    for (std::size_t i = 0; i < onTrack.size(); ++i) {
        onTrack[i] = Rotate(m, PointOf(taught[i])) + Vec3{ExtAxisOf(taught[i], track), 0.0, 0.0};
    }
    return SpreadOf(onTrack);
}

}  // namespace

KineResult CalcAxisFrame3P(const std::array<Vec3, 3>& mark, HomMatrix& axisFrame)
{
    const auto& [q1, q2, q3] = mark;
    if (const KineResult code = CheckTriangle(q1, q2, q3, kMarkLimits)) return code;

    // m1, m2: directions of the perpendicular bisectors of the chords q1 q2 and q2 q3 in the plane of the
    // circle; mid1, mid2: where these start.
    const Vec3 d12 = q2 - q1;
    const Vec3 n = CrossProduct(d12, q3 - q1);
    const Vec3 m1 = CrossProduct(n, d12);
    const Vec3 m2 = CrossProduct(n, q3 - q2);
    const Vec3 mid1 = (q1 + q2) / 2.0;
    const Vec3 mid2 = (q2 + q3) / 2.0;

    // The centre, from the x and y of the bisectors alone. No division is guarded: bisectors that are
    // parallel in x and y (the axis lies in the XY plane), or a first one without a y, give a frame that is
    // not finite.
    const double k1 = m1.y * mid1.x - m1.x * mid1.y;
    const double k2 = m2.y * mid2.x - m2.x * mid2.y;
    const double y = (k1 * m2.y - k2 * m1.y) / (m2.x * m1.y - m2.y * m1.x);
    const double s = (y - mid1.y) / m1.y;
    const Vec3 centre{mid1.x + s * m1.x, y, mid1.z + s * m1.z};

    const Vec3 toFirst = q1 - centre;
    const Vec3 sideways = CrossProduct(n, toFirst);
    const RotMatrix axes = FromAxes(toFirst / Norm(toFirst), sideways / Norm(sideways), n / Norm(n));
    // By way of the angles: next to B = +-90 degrees they keep less than the axes do.
    axisFrame = PoseToMatrix(MatrixToPose({axes, centre}));
    return KINE_OK;
}

KineResult CalcPositionerJ1(const MechUnitBlock& units, std::int32_t unit,
                            std::span<const PoseRecord, 3> taught, Pose& frame)
{
    HomMatrix axisFrame{};
    if (const KineResult code = CalcAxisFrame3P(PointsOf(taught), axisFrame)) return code;
    const auto axis = GetUnitAxisInfo(units, unit, 0);
    if (!axis) return KINE_ERR_TOOL;
    frame = MatrixToPose(axisFrame * MatrixRotZDeg(-ExtAxisOf(taught[0], *axis)));
    return KINE_OK;
}

KineResult CalcPositionerJn(const MechUnitBlock& units, std::int32_t unit, std::int32_t axisNumber,
                            std::span<const PoseRecord, 3> taught, const Pose& reference, Pose& frame)
{
    // No unit has an axis with a number below 1, so that this test may come first: the lowest number would
    // overflow in the look-up.
    if (axisNumber < 1) return KINE_ERR_CALIB_INPUT;
    const auto axis = GetUnitAxisInfo(units, unit, axisNumber - 1);
    if (axis && axis->word3 == kLinearAxis) return KINE_ERR_POSE;
    HomMatrix axisFrame{};
    if (const KineResult code = CalcAxisFrame3P(PointsOf(taught), axisFrame)) return code;
    // The turn back belongs to the second axis of the unit, whichever axis is calibrated.
    const auto secondAxis = GetUnitAxisInfo(units, unit, 1);
    if (!axis || !secondAxis) return KINE_ERR_TOOL;

    // The number of degrees is taken as radians here, and only here: the reference frame is turned by 57
    // times the angle of the axis.
    const HomMatrix turn = PoseToMatrix({0.0, 0.0, 0.0, ExtAxisOf(taught[0], *axis), 0.0, 0.0});
    const HomMatrix turnedReference = turn * PoseToMatrix(reference);
    frame = MatrixToPose(MatrixInverse(turnedReference) * axisFrame *
                         MatrixRotZDeg(-ExtAxisOf(taught[0], *secondAxis)));
    return KINE_OK;
}

KineResult CalcRobotBase(const MechUnitBlock& units, std::int32_t unit, std::span<const PoseRecord, 3> taught,
                         Pose& frame, KineCalibError& report)
{
    const auto track = GetUnitAxisInfo(units, unit, 0);
    if (track && track->word3 != kLinearAxis) return KINE_ERR_POSE;
    if (!track) return KINE_ERR_TOOL;
    RotMatrix m{};
    if (const KineResult code = CalcTrackRotation3P(*track, taught, m)) return code;
    frame = MatrixToPose({m, {0.0, 0.0, 0.0}});
    report = CalcTrackError3P(*track, taught, m);
    return KINE_OK;
}

}  // namespace kine

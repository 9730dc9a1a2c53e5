// Work-object frames. x, y, z: the axes of the frame in the frame of the points.
#include "calib/wobj_calib.h"

#include <cmath>

#include "calib/least_squares.h"
#include "calib/taught_points.h"
#include "chain/frame_services.h"
#include "math/angles.h"
#include "math/rotation.h"

namespace kine {

namespace {

// Shortest distance between two taught points, mm; equal passes, NaN passes. Ten times the two-point form's
// limit: three points must also span a plane.
constexpr double kMinPointDistance3P = 0.01;
constexpr double kMinPointDistance2P = 0.001;
// Three points of a circle: they may be closer than those of a frame.
constexpr TriangleLimits kCircleLimits{1e-5, 0.99999};

// Smallest sine between the two directions from the origin; equal passes, NaN passes.
constexpr double kMinPlaneSine = 1e-5;
// Smallest horizontal part of the X direction of the two-point form; equal passes, NaN passes.
constexpr double kMinHorizontalPart = 1e-5;
// Determinant of the equations for the centre of a circle, mm^4; equal passes, NaN passes.
constexpr double kMinCentreDeterminant = 1e-5;

CalibratedFrame FrameFromAxes(const Vec3& origin, const Vec3& x, const Vec3& y, const Vec3& z)
{
    return {MatrixToPose({FromAxes(x, y, z), origin}), SafeAcos(z.z)};
}

}  // namespace

KineResult CalcUserFrame3P(const FramePoints& points, CalibratedFrame& result)
{
    const auto& [origin, xPoint, xyPoint] = points;
    const Vec3 a = xPoint - origin;
    const Vec3 b = xyPoint - origin;
    const double aLength = Norm(a);
    const double bLength = Norm(b);
    if (aLength < kMinPointDistance3P || bLength < kMinPointDistance3P) return KINE_ERR_CALIB_POINTS_CLOSE;
    if (Norm(xyPoint - xPoint) < kMinPointDistance3P) return KINE_ERR_CALIB_POINTS_CLOSE;
    const Vec3 x = a / aLength;
    const Vec3 n = CrossProduct(x, b / bLength);
    const double sine = Norm(n);
    if (sine < kMinPlaneSine) return KINE_ERR_CALIB_COLLINEAR;
    const Vec3 z = n / sine;
    result = FrameFromAxes(origin, x, CrossProduct(z, x), z);
    return KINE_OK;
}

KineResult CalcUserFrame2P(const Vec3& origin, const Vec3& xPoint, CalibratedFrame& result)
{
    const Vec3 a = xPoint - origin;
    const double length = Norm(a);
    if (length < kMinPointDistance2P) return KINE_ERR_CALIB_POINTS_CLOSE;
    const Vec3 x = a / length;
    const Vec3 m{-x.y, x.x, 0.0};  // the vertical x X
    const double horizontalPart = Norm(m);
    // A vertical X axis has the code of points too close, not that of parallel directions.
    if (horizontalPart < kMinHorizontalPart) return KINE_ERR_CALIB_POINTS_CLOSE;
    const Vec3 y = m / horizontalPart;
    result = FrameFromAxes(origin, x, y, CrossProduct(x, y));
    return KINE_OK;
}

KineResult CalcCircleFrame3P(const std::array<Vec3, 3>& circle, CalibratedFrame& result)
{
    const auto& [q1, q2, q3] = circle;
    if (const KineResult code = CheckTriangle(q1, q2, q3, kCircleLimits)) return code;

    // The centre lies in the plane of the points, with normal n, and in the planes that bisect the chords u
    // and w at right angles.
    const Vec3 u = q1 - q2;
    const Vec3 w = q1 - q3;
    const Vec3 n = CrossProduct(q2 - q1, q3 - q1);
    const LinearSystem3 centreEquations{
        {n.x, u.x, w.x},
        {n.y, u.y, w.y},
        {n.z, u.z, w.z},
        {Dot(n, q1), (Dot(q1, q1) - Dot(q2, q2)) / 2.0, (Dot(q1, q1) - Dot(q3, q3)) / 2.0}};
    const double determinant = Determinant(centreEquations);
    if (std::fabs(determinant) < kMinCentreDeterminant) return KINE_ERR_CALIB_3;
    const Vec3 centre = CramersRule(centreEquations, determinant);

    const Vec3 toFirst = q1 - centre;
    const Vec3 x = toFirst / Norm(toFirst);
    const Vec3 z = n / Norm(n);
    result = FrameFromAxes(centre, x, CrossProduct(z, x), z);
    return KINE_OK;
}

FramePoints CalcPointsInFrame(const Pose& frame, const FramePoints& points)
{
    const auto [r, p] = PoseToMatrix(frame);
    return {RotateBack(r, points[0] - p), RotateBack(r, points[1] - p), RotateBack(r, points[2] - p)};
}

FramePoints PointsOnMechUnit(const MechUnitBlock& units, std::int32_t unit,
                             std::span<const PoseRecord, 3> taught)
{
    const FrameDescriptor lastAxis{kOnMechUnit, unit, {}};
    FramePoints points{};
    for (std::size_t i = 0; i < points.size(); ++i) {
        PoseRecord onUnit = taught[i];
        // A failed conversion is not reported: it leaves zero, and equal points are refused by the solver.
        if (WorldToFrame(units, lastAxis, onUnit) == KINE_OK) points[i] = PointOf(onUnit);
    }
    return points;
}

}  // namespace kine

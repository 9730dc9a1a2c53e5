// Tool frames. R, p: rotation and position of a taught pose; t: the tip in the flange. From
// Ri * t + pi = R0 * t + p0 follows (R0 - Ri) * t = pi - p0.
#include "calib/tool_calib.h"

#include <array>
#include <cmath>

#include "calib/least_squares.h"
#include "calib/point_spread.h"
#include "calib/taught_points.h"
#include "math/rotation.h"
#include "models/arm_model.h"

namespace kine {

namespace {

// Shortest distance between two touching positions, mm; equal passes, NaN passes. In the plane for four-axis
// arms.
constexpr double kMinTouchDistance = 1e-5;
// Three touching positions.
constexpr TriangleLimits kTouchLimits{kMinTouchDistance, 0.99999};

// Determinants of the normal equations; equal fails, NaN passes. Three poses of a six-axis arm just determine
// the tip, so that they are held to more than five poses, or than two unknowns.
constexpr double kMinDeterminant3P = 0.01;
constexpr double kMinDeterminant5P = 1e-10;
constexpr double kMinDeterminantPlanar = 1e-10;

// Height of the point that stands for the Z direction of a four-axis arm over its origin, mm.
constexpr double kZStep = 10.0;

// CalcFrameZX. Touched points: shortest direction, mm, and smallest sine between the two (0.57 degrees);
// equal passes, NaN passes.
constexpr double kMinDirection = 0.01;
constexpr double kMinDirectionSine = 0.01;
// CalcToolFrameZX. Travels of the tip, held to far less than touched points: shortest travel, mm, and
// smallest sine between the two; equal passes, NaN passes.
constexpr double kMinTravel = 1e-5;
constexpr double kMinTravelSine = 1e-5;

bool IsFourAxis(std::int32_t armType)
{
    return armType == kArmTypeFourAxis || armType == kArmTypeFourAxis4110;
}

Vec3 InPlane(const Vec3& v) { return {v.x, v.y, 0.0}; }

RotMatrix Subtract(const RotMatrix& a, const RotMatrix& b)
{
    return FromAxes(AxisX(a) - AxisX(b), AxisY(a) - AxisY(b), AxisZ(a) - AxisZ(b));
}

// Each touching pose after the first gives three equations for t.
LinearSystem3 SpatialNormalEquations(std::span<const HomMatrix> touching)
{
    LinearSystem3 normal{};
    for (const HomMatrix& pose : touching.subspan(1)) {
        const RotMatrix a = Subtract(touching[0].r, pose.r);
        const Vec3 b = pose.t - touching[0].t;
        AddEquation(normal, {a.r00, a.r01, a.r02}, b.x);
        AddEquation(normal, {a.r10, a.r11, a.r12}, b.y);
        AddEquation(normal, {a.r20, a.r21, a.r22}, b.z);
    }
    return normal;
}

// The same for tools that turn about the base Z axis only: two equations for the x and y of t.
LinearSystem2 PlanarNormalEquations(std::span<const HomMatrix> touching)
{
    LinearSystem2 normal{};
    for (const HomMatrix& pose : touching.subspan(1)) {
        const RotMatrix a = Subtract(touching[0].r, pose.r);
        const Vec3 b = pose.t - touching[0].t;
        AddEquation(normal, a.r00, a.r01, b.x);
        AddEquation(normal, a.r10, a.r11, b.y);
    }
    return normal;
}

// Its height cannot be told from turns about Z: t.z is 0.
KineResult SolvePlanar(std::span<const HomMatrix> touching, Vec3& tip)
{
    const LinearSystem2 normal = PlanarNormalEquations(touching);
    const double determinant = Determinant(normal);
    if (std::fabs(determinant) <= kMinDeterminantPlanar) return KINE_ERR_CALIB_SINGULAR;
    const auto [x, y] = CramersRule(normal, determinant);
    tip = {x, y, 0.0};
    return KINE_OK;
}

KineResult CalcTcp3PSixAxis(std::span<const HomMatrix, 3> touching, Vec3& tip)
{
    if (const KineResult code = CheckTriangle(touching[0].t, touching[1].t, touching[2].t, kTouchLimits)) {
        return code;
    }
    const LinearSystem3 normal = SpatialNormalEquations(touching);
    const double determinant = Determinant(normal);
    if (std::fabs(determinant) <= kMinDeterminant3P) return KINE_ERR_CALIB_4;
    tip = CramersRule(normal, determinant);
    return KINE_OK;
}

KineResult CalcTcp3PFourAxis(std::span<const HomMatrix, 3> touching, Vec3& tip)
{
    if (const KineResult code = CheckTriangle(InPlane(touching[0].t), InPlane(touching[1].t),
                                              InPlane(touching[2].t), kTouchLimits)) {
        return code;
    }
    return SolvePlanar(touching, tip);
}

template <std::size_t N>
KineCalibError TipSpread(std::span<const HomMatrix, N> touching, const Vec3& tip)
{
    std::array<Vec3, N> tips{};
    for (std::size_t i = 0; i < N; ++i) tips[i] = TipAt(touching[i], tip);
    return SpreadOf(tips);
}

}  // namespace

KineResult CalcTcp3P(std::int32_t armType, std::span<const HomMatrix, 3> touching, Vec3& tip,
                     KineCalibError& report)
{
    if (armType != kArmTypeSixAxis && !IsFourAxis(armType)) return KINE_ERR_NOT_INITIALISED;
    const auto solve = IsFourAxis(armType) ? CalcTcp3PFourAxis : CalcTcp3PSixAxis;
    if (const KineResult code = solve(touching, tip)) return code;
    // Distances in space with the whole orientations, for planar solutions too.
    report = TipSpread(touching, tip);
    return KINE_OK;
}

KineResult CalcTcp5P(std::int32_t armType, std::span<const HomMatrix, 5> touching, Vec3& tip,
                     KineCalibError& report)
{
    if (armType != kArmTypeSixAxis) return KINE_ERR_NOT_INITIALISED;
    const LinearSystem3 normal = SpatialNormalEquations(touching);
    const double determinant = Determinant(normal);
    if (std::fabs(determinant) <= kMinDeterminant5P) return KINE_ERR_CALIB_SINGULAR;
    tip = CramersRule(normal, determinant);
    report = TipSpread(touching, tip);
    return KINE_OK;
}

KineResult CalcTcpScara2P(std::int32_t armType, std::span<const HomMatrix, 2> touching, Vec3& tip)
{
    if (!IsFourAxis(armType)) return KINE_ERR_NOT_INITIALISED;
    if (Norm(InPlane(touching[1].t - touching[0].t)) < kMinTouchDistance) return KINE_ERR_CALIB_POINTS_CLOSE;
    return SolvePlanar(touching, tip);
}

HomMatrix ZPoseFor(std::int32_t armType, const HomMatrix& origin, const HomMatrix& zPose)
{
    if (!IsFourAxis(armType)) return zPose;
    HomMatrix raised = origin;
    raised.t.z += kZStep;
    return raised;
}

KineResult CalcFrameZX(const Vec3& origin, const Vec3& zPoint, const Vec3& xPoint, Pose& frame)
{
    const Vec3 a = zPoint - origin;
    const Vec3 b = xPoint - origin;
    const double aLength = Norm(a);
    const double bLength = Norm(b);
    if (bLength < kMinDirection || aLength < kMinDirection) return KINE_ERR_ZERO_VECTOR;
    const Vec3 z = a / aLength;
    const Vec3 c = CrossProduct(z, b / bLength);
    const double sine = Norm(c);
    if (sine < kMinDirectionSine) return KINE_ERR_CALIB_COLLINEAR;
    const Vec3 y = c / sine;
    frame = MatrixToPose({FromAxes(CrossProduct(y, z), y, z), origin});
    return KINE_OK;
}

KineResult CalcToolFrameZX(const Vec3& tip, const HomMatrix& origin, const HomMatrix& zPose,
                           const HomMatrix& xPose, Pose& frame)
{
    const Vec3 vz = Rotate(Subtract(zPose.r, origin.r), tip) + (zPose.t - origin.t);
    // From the Z pose, not from the origin: what it has along Z drops out of y.
    const Vec3 vx = Rotate(Subtract(xPose.r, zPose.r), tip) + (xPose.t - zPose.t);
    const double zLength = Norm(vz);
    const double xLength = Norm(vx);
    if (xLength < kMinTravel || zLength < kMinTravel) return KINE_ERR_CALIB_POINTS_CLOSE;
    const Vec3 z = vz / zLength;
    const Vec3 n = CrossProduct(z, vx / xLength);
    const double sine = Norm(n);
    if (sine < kMinTravelSine) return KINE_ERR_CALIB_COLLINEAR;
    const Vec3 y = n / sine;
    const RotMatrix baseFromTool = FromAxes(CrossProduct(y, z), y, z);
    frame = MatrixToPose({RotMultiply(Transpose(origin.r), baseFromTool), tip});
    return KINE_OK;
}

}  // namespace kine

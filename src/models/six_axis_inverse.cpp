// Inverse kinematics of the six-axis arm.
//
// Closed form: w: wrist centre; h: its height above joint 2; r: its distance from the joint-1 axis; phi: its
// direction; rNM: elements of the flange rotation; s1, c1, s23, ...: sines and cosines of the joints.
// Refinement: e: error of the flange, in the current flange frame; J: body Jacobian of the flange.
#include "models/six_axis_inverse.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "math/matrix6.h"
#include "math/vec3.h"
#include "models/quadrant.h"
#include "models/six_axis_forward.h"
#include "models/six_axis_gravity.h"
#include "models/six_axis_posture.h"

namespace kine {

namespace {

// mm between the wrist centre and the circle of the lateral offset; equal passes, NaN fails. Closer, the
// direction of joint 1 is not determined.
constexpr double kMinShoulderMargin = 1e-5;
// The lengths that the tests of IsWristOutOfReach and IsTipOutOfReach compare are taken this much longer: far
// more than the rounding of their sums.
constexpr double kLengthened = 1.0 + 1e-6;
// mm from the circle of the lateral offset: no shoulder margin is in doubt so far away.
constexpr double kClearOfShoulder = 1.0;
// Cosine of the angle at the elbow; equal passes, NaN fails. Beyond, out of reach or stretched.
constexpr double kMaxElbowCosine = 0.99999;
// Cosine of q5; equal passes, NaN fails. Beyond, no rotation has it.
constexpr double kMaxWristCosine = 1.00001;
// Cosine of q5; equal is kept. Beyond it, also near -1, the wrist counts as straight.
constexpr double kStraightWristCosine = 0.99999;
// rad; equal passes, NaN fails. A wrist this close to straight is rejected.
constexpr double kMinWristAngle = 0.0005;
// Both arguments of the angle of joint 6 strictly below this: the second form takes over.
constexpr double kMinJoint6Vector = 1e-5;

// rad, 170 degrees; equal passes, NaN fails. A first correction beyond it means that the chain is not a
// calibrated nominal arm.
constexpr double kMaxFirstCorrection = 2.9670597283903604;
// rad, 0.2 degrees; equal passes, NaN fails. A last correction beyond it has not converged.
constexpr double kMaxLastCorrection = 0.003490658503988659;
constexpr int kNewtonSteps = 4;

// The inverse numbers quadrants with the bias for angles <= 0 only, unlike SixAxisArmConfig.
constexpr double kTurnBias = 5.555555556e-6;

// The turn selection of the closed form: one correction at most, since its angles lie within +-pi.
double SelectTurnOnce(double angle, std::int32_t turn)
{
    const double shifted = ShiftByTurn(angle, turn);
    const std::int64_t distance = std::int64_t{WindowQuadrantOf(shifted, kTurnBias)} - turn;
    if (distance > 2) return shifted - kTwoPi;
    if (distance < -2) return shifted + kTwoPi;
    return shifted;
}

bool IsPosture(std::int32_t number) { return number >= 0 && number <= kMaxPosture; }

// phi + delta, formed on phi moved by 2 pi away from zero, which fixes the rounding of the sum.
double SumAwayFromZero(double phi, double delta)
{
    const double shift = phi < 0.0 ? -kTwoPi : kTwoPi;
    return phi + shift + delta - shift;
}

double WrapOnce(double angle)
{
    if (angle > kPi) return angle - kTwoPi;
    if (angle < -kPi) return angle + kTwoPi;
    return angle;
}

double HalfTurnTowardZero(double angle) { return angle >= 0.0 ? angle - kPi : angle + kPi; }

// e as the rotation and translation that are still missing, seen from the current flange. The rotation is
// read off the three elements of targetFromCurrent that a small rotation fills.
std::array<double, 6> FlangeError(const HomMatrix& target, const HomMatrix& current)
{
    const Vec3 position = RotateBack(current.r, target.t - current.t);
    return {position.x,
            position.y,
            position.z,
            Dot(AxisY(target.r), AxisZ(current.r)),
            Dot(AxisZ(target.r), AxisX(current.r)),
            Dot(AxisX(target.r), AxisY(current.r))};
}

// Column i: velocity and angular velocity of the flange per radian of joint i + 1, in the flange frame, on
// the deflected chain.
Matrix6 BodyJacobian(const LinkChain& chain)
{
    const HomMatrix& flange = chain.baseFromFlange;
    Matrix6 jacobian{};
    for (std::size_t i = 0; i < 6; ++i) {
        const auto& [direction, origin] = chain.joints[i];
        const Vec3 v = RotateBack(flange.r, CrossProduct(direction, flange.t - origin));
        const Vec3 w = RotateBack(flange.r, direction);
        const double column[6] = {v.x, v.y, v.z, w.x, w.y, w.z};
        for (std::size_t row = 0; row < 6; ++row) jacobian.m[row][i] = column[row];
    }
    return jacobian;
}

// Makes J * (I + d deflection / dq) of J: what a change of the commanded joints does to the flange once the
// arm has given way. Without this factor every step leaves a share of the error, the size of the gradient,
// behind.
void AddDeflection(const DeflectionGradient& gradient, Matrix6& jacobian)
{
    for (auto& row : jacobian.m) {
        const double by2 = row[1];
        const double by3 = row[2];
        const double by5 = row[4];
        for (std::size_t j = 0; j < 6; ++j) {
            row[j] += by2 * gradient.q2[j] + by3 * gradient.q3[j] + by5 * gradient.q5[j];
        }
    }
}

bool IsWithin(const SixAngles& correction, double limit)
{
    return std::ranges::all_of(correction, [limit](double angle) { return std::fabs(angle) <= limit; });
}

// Moves the joints by the correction, and their sines with them.
void Advance(SixAngles& q, JointSines& sines, const SixAngles& correction)
{
    for (std::size_t i = 0; i < q.size(); ++i) q[i] += correction[i];
    if (!IsWithin(correction, kMaxSeriesStep)) {
        sines = SinesOf(q);
        return;
    }
    for (std::size_t i = 0; i < q.size(); ++i) sines[i] = Advanced(sines[i], correction[i]);
}

// Two tests that spare a target far out of reach what only nearer ones need. They are sure of what they
// refuse and leave the rest to the cosine at the elbow.

// For a wrist centre at least r from the joint-1 axis and h above or below joint 2: whether it is out of
// reach wherever joint 1 turns joint 2, up to a1 and the lateral offset from the axis.
bool IsWristOutOfReach(const SixAxisParams& p, double r, double h)
{
    const double horizontal = std::max(0.0, r - std::fabs(p.lateralOffset) - std::fabs(p.a1));
    const double reach = kLengthened * (std::fabs(p.a2) + p.wristReach);
    return horizontal * horizontal + h * h > reach * reach;
}

// The same for every wrist centre that the tool may have with its tip in the target. One that may fail in the
// shoulder, or is not a number, is not refused here.
bool IsTipOutOfReach(const SixAxisParams& p, const LazyPose& target, const Pose& tool)
{
    if (!target.IsFiniteMatrix() || !std::isfinite(tool.a + tool.b + tool.c)) return false;
    const Vec3 tip = target.Position();
    const double fromTip = kLengthened * (Norm({tool.x, tool.y, tool.z}) + std::fabs(p.d6));
    const double r = std::sqrt(tip.x * tip.x + tip.y * tip.y) - fromTip;
    const double h = std::max(0.0, std::fabs(tip.z - p.d1) - fromTip);
    return r - std::fabs(p.lateralOffset) > kClearOfShoulder && IsWristOutOfReach(p, r, h);
}

// The Newton steps from the closed form's q.
KineResult Refine(const SixAxisParams& params, const HomMatrix& flange, const CombinedLoad& load,
                  SixAngles& q)
{
    JointSines sines = SinesOf(q);

    for (int step = 0; step < kNewtonSteps; ++step) {
        Deflection deflection{};
        DeflectionGradient gradient{};
        // Out of bounds the arm counts as rigid, as it does in the forward operations.
        static_cast<void>(GravityDeflection(params, sines, load, deflection, gradient));
        const LinkChain chain = WalkLinks(params, Deflected(sines, deflection));
        const std::array<double, 6> e = FlangeError(flange, chain.baseFromFlange);

        Matrix6 jacobian = BodyJacobian(chain);
        AddDeflection(gradient, jacobian);

        SixAngles correction{};
        if (!Matrix6Solve(jacobian, e, correction)) return KINE_ERR_SINGULAR;
        if (step == 0 && !IsWithin(correction, kMaxFirstCorrection)) return KINE_ERR_IK_9;
        if (step == kNewtonSteps - 1 && !IsWithin(correction, kMaxLastCorrection)) {
            return KINE_ERR_IK_ACCURACY;
        }
        Advance(q, sines, correction);
    }
    // q is finite: a joint that is not makes the next Jacobian singular, and the last correction is small.
    return KINE_OK;
}

}  // namespace

KineResult ClosedFormIK(const SixAxisParams& params, const HomMatrix& flange, const KineArmConfig& config,
                        std::array<double, 8>& axes)
{
    const SixAxisParams& p = params;
    const RotMatrix& rot = flange.r;
    const Vec3 w = flange.t - Scale(p.d6, AxisZ(rot));
    const double h = w.z - p.d1;

    // Joint 1. The shoulder margin is tested before the posture number.
    const double r = std::sqrt(w.x * w.x + w.y * w.y);
    if (!(r - std::fabs(p.lateralOffset) >= kMinShoulderMargin)) return KINE_ERR_IK_6;
    if (!IsPosture(config.Cfg4)) return KINE_ERR_CONFIG;
    if (IsWristOutOfReach(p, r, h)) return KINE_ERR_IK_7;
    const bool isShoulderBack = (config.Cfg4 & kShoulderBack) != 0;
    const bool isElbowFar = (config.Cfg4 & kElbowFar) != 0;
    const bool isWristFlipped = (config.Cfg4 & kWristFlipped) != 0;

    const double delta = SafeAsin(p.lateralOffset / r);
    const double phi = std::atan2(w.y, w.x);
    double q1 = WrapOnce(SumAwayFromZero(phi, isShoulderBack ? -delta : delta));
    if (isShoulderBack) q1 = HalfTurnTowardZero(q1);
    q1 = SelectTurnOnce(q1, config.Cfg1);
    const auto [s1, c1] = SinCosOf(q1);

    // Joint 3 from the triangle of upper arm, elbow to wrist centre, and shoulder to wrist centre.
    const double u = w.x - p.lateralOffset * s1 - p.a1 * c1;
    const double v = p.lateralOffset * c1 + w.y - p.a1 * s1;
    const double elbowCosine =
        (p.wristReach * p.wristReach + p.a2 * p.a2 - u * u - v * v - h * h) / (2.0 * p.a2 * p.wristReach);
    if (!(std::fabs(elbowCosine) <= kMaxElbowCosine)) return KINE_ERR_IK_7;
    const double stretched = kHalfPi - p.elbowAngle;
    const double bend = kPi - SafeAcos(elbowCosine);
    const double q3 = isElbowFar ? stretched + bend : stretched - bend;

    // Joint 2.
    const auto [se, ce] = SinCosOf(q3 + p.elbowAngle);
    const double rho = s1 * w.y + c1 * w.x - p.a1;
    const double m = se * p.wristReach + p.a2;
    const double q2 = -std::atan2(m * rho - ce * p.wristReach * h, ce * p.wristReach * rho + m * h);

    // Joint 5.
    const auto [s23, c23] = SinCosOf(q2 + q3);
    const double g = rot.r12 * s1 + rot.r02 * c1;
    double wristCosine = s23 * rot.r22 + c23 * g;
    if (!(std::fabs(wristCosine) <= kMaxWristCosine)) return KINE_ERR_IK_8;
    // The sign is dropped: such a wrist is straight and the next test rejects it.
    if (std::fabs(wristCosine) > kStraightWristCosine) wristCosine = 1.0;
    const double q5 = isWristFlipped ? -SafeAcos(wristCosine) : SafeAcos(wristCosine);
    if (!(std::fabs(q5) >= kMinWristAngle)) return KINE_ERR_IK_8;
    const auto [s5, c5] = SinCosOf(q5);

    // Joint 4.
    double y4 = rot.r02 * s1 - rot.r12 * c1;
    double x4 = c23 * rot.r22 - g * s23;
    if (s5 <= 0.0) {
        y4 = -y4;
        x4 = -x4;
    }
    const double q4 = SelectTurnOnce(std::atan2(y4, x4), config.Cfg2);
    const auto [s4, c4] = SinCosOf(q4);

    // Joint 6.
    const double a = rot.r01 * s1 - rot.r11 * c1;
    const double b = rot.r00 * s1 - rot.r10 * c1;
    double y6 = b * c4 - a * s4 * c5;
    double x6 = a * c4 + b * s4 * c5;
    if (std::fabs(x6) < kMinJoint6Vector && std::fabs(y6) < kMinJoint6Vector) {
        const double along = c4 * c5 * c1 * s23 - c5 * s1 * s4 + s5 * c1 * c23;
        const double across = s4 * c1 * s23 + c4 * s1;
        x6 = rot.r01 * across - along * rot.r00;
        y6 = rot.r01 * along + across * rot.r00;
    }
    const double q6 = SelectTurnOnce(std::atan2(y6, x6), config.Cfg3);

    axes = {q1, q2, q3, q4, q5, q6, 0.0, 0.0};
    return KINE_OK;
}

KineResult SelectWristTurns(const KineArmConfig& config, SixAngles& q)
{
    q[3] = ShiftByTurn(q[3], config.Cfg2);
    if (!QuadrantWindow(q[3], config.Cfg2, kTurnBias)) return KINE_ERR_IK_ACCURACY;
    q[5] = ShiftByTurn(q[5], config.Cfg3);
    if (!QuadrantWindow(q[5], config.Cfg3, kTurnBias)) return KINE_ERR_IK_ACCURACY;
    return KINE_OK;
}

KineResult WriteSixAxes(const KineArmConfig& config, SixAngles q, std::array<double, 8>& axes)
{
    // The turns of axes 4 and 6 are selected again with the whole shift; that of axis 1 is left alone.
    if (const KineResult code = SelectWristTurns(config, q)) return code;
    axes = {q[0], q[1], q[2], q[3], q[4], q[5], 0.0, 0.0};
    return KINE_OK;
}

KineResult SixAxisInverse(const SixAxisParams& params, const LazyPose& target, const ToolBlock& tool,
                          const KineArmConfig& config, std::array<double, 8>& axes)
{
    if (!IsTurnNumberServed(config.Cfg1) || !IsTurnNumberServed(config.Cfg2) ||
        !IsTurnNumberServed(config.Cfg3)) {
        return KINE_ERR_CONFIG;
    }
    if (IsPosture(config.Cfg4) && IsTipOutOfReach(params, target, tool.frame)) return KINE_ERR_IK_7;
    const HomMatrix flange = LazyPose(target.AsMatrix() * MatrixInverse(PoseToMatrix(tool.frame))).AsMatrix();

    std::array<double, 8> start{};
    if (const KineResult code = ClosedFormIK(params, flange, config, start)) return code;

    SixAngles q{start[0], start[1], start[2], start[3], start[4], start[5]};
    if (const KineResult code = Refine(params, flange, tool.load, q)) return code;
    return WriteSixAxes(config, q, axes);
}

}  // namespace kine

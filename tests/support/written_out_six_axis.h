// The six-axis arm step by step as it is written down: links as products of transforms, every sine and
// cosine anew, torques and their derivatives pair by pair of joints, the Newton steps with the inverse of
// the Jacobian and with poses between the frames. The parameter block is the library's; nothing of it is
// computed ahead.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>

#include "math/matrix6.h"
#include "math/transform.h"
#include "models/quadrant.h"
#include "models/six_axis_gravity.h"
#include "models/six_axis_inverse.h"
#include "models/six_axis_params.h"

namespace kine::test {

inline HomMatrix TurnedZ(const SinCos& s)
{
    return {{s.cos, -s.sin, 0.0, s.sin, s.cos, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}};
}

inline HomMatrix TurnedX(const SinCos& s)
{
    return {{1.0, 0.0, 0.0, 0.0, s.cos, -s.sin, 0.0, s.sin, s.cos}, {0.0, 0.0, 0.0}};
}

inline HomMatrix TurnedY(const SinCos& s)
{
    return {{s.cos, 0.0, s.sin, 0.0, 1.0, 0.0, -s.sin, 0.0, s.cos}, {0.0, 0.0, 0.0}};
}

inline HomMatrix Moved(double x, double z) { return {kIdentityRotation, {x, 0.0, z}}; }

// Frame i is turned by joint i + 1 about its z axis.
struct WrittenOutChain
{
    std::array<HomMatrix, 6> frame;
    HomMatrix flange;
};

inline WrittenOutChain WrittenOutLinks(const SixAxisParams& p, const SixAngles& q)
{
    const auto link = [](double theta, double d, double a, const SinCos& alpha) {
        return TurnedZ(SinCosOf(theta)) * Moved(0.0, d) * Moved(a, 0.0) * TurnedX(alpha);
    };
    WrittenOutChain chain{};
    chain.frame[0] = {kIdentityRotation, {0.0, 0.0, 0.0}};
    chain.frame[1] = chain.frame[0] * link(q[0], p.d1, p.a1, p.alpha1);
    chain.frame[2] = chain.frame[1] * link(q[1] + kHalfPi, 0.0, p.a2, p.alpha2) * TurnedY(p.beta2);
    chain.frame[3] = chain.frame[2] * link(q[2], p.d3, p.a3, p.alpha3);
    chain.frame[4] = chain.frame[3] * link(q[3], p.d4, p.a4, p.alpha4);
    chain.frame[5] = chain.frame[4] * link(q[4], p.d5, p.a5, p.alpha5);
    chain.flange = chain.frame[5] * TurnedZ(SinCosOf(q[5])) * Moved(0.0, p.d6);
    return chain;
}

// Axis and motion of the payload's centre of gravity for every joint of the nominal arm, in the frame that
// turns with joint 1 (X outward, Y up, Z across), and the weight in that frame.
struct WrittenOutPayload
{
    std::array<Vec3, 6> axis;
    std::array<Vec3, 6> m;
    Vec3 force;
};

inline WrittenOutPayload PayloadOf(const SixAxisParams& p, const SixAngles& q, const CombinedLoad& load)
{
    const Vec3 up{0.0, 1.0, 0.0};
    const Vec3 across{0.0, 0.0, 1.0};
    const double theta2 = q[1] + kHalfPi;
    const double a = theta2 + q[2];
    const Vec3 upperArm{std::cos(theta2), std::sin(theta2), 0.0};
    const Vec3 elbow{std::cos(a), std::sin(a), 0.0};
    const Vec3 forearm{std::sin(a), -std::cos(a), 0.0};
    const Vec3 x4 = Scale(std::cos(q[3]), elbow) + Scale(std::sin(q[3]), across);
    const Vec3 axis5 = Scale(std::cos(q[3]), across) - Scale(std::sin(q[3]), elbow);
    const Vec3 x5 = Scale(std::cos(q[4]), x4) - Scale(std::sin(q[4]), forearm);
    const Vec3 approach = Scale(std::sin(q[4]), x4) + Scale(std::cos(q[4]), forearm);
    const Vec3 x6 = Scale(std::cos(q[5]), x5) + Scale(std::sin(q[5]), axis5);
    const Vec3 y6 = Scale(std::cos(q[5]), axis5) - Scale(std::sin(q[5]), x5);

    const Vec3 fromWrist = Scale(1000.0 * load.centre.x, x6) + Scale(1000.0 * load.centre.y, y6) +
                           Scale(p.d6 + 1000.0 * load.centre.z, approach);
    const Vec3 fromJoint3 = Scale(p.a3, elbow) + Scale(p.d4, forearm) + fromWrist;
    const Vec3 fromJoint2 = Scale(p.a2, upperArm) + fromJoint3;
    const Vec3 fromJoint1 = Vec3{p.a1, 0.0, 0.0} + fromJoint2;

    WrittenOutPayload payload{};
    payload.axis = {up, across, across, forearm, axis5, approach};
    const Vec3 arms[6] = {fromJoint1, fromJoint2, fromJoint3, fromWrist, fromWrist, fromWrist};
    for (std::size_t i = 0; i < 6; ++i) payload.m[i] = CrossProduct(payload.axis[i], arms[i]);
    const double weight = load.mass * 9.8;
    const Vec3 inBase{weight * (p.mountX.cos * p.mountY.sin), weight * -p.mountX.sin,
                      weight * (-p.mountX.cos * p.mountY.cos)};
    payload.force = {std::cos(q[0]) * inBase.x + std::sin(q[0]) * inBase.y, inBase.z,
                     std::sin(q[0]) * inBase.x - std::cos(q[0]) * inBase.y};
    return payload;
}

// Torque of the payload about joint i + 1, and its derivative by joint j + 1: F . (axis x m), where the
// axis is that of the joint nearer to the base, which turns the motion m that the other one causes.
inline double PayloadTorque(const WrittenOutPayload& payload, std::size_t i)
{
    return Dot(payload.m[i], payload.force);
}

inline double PayloadTorqueBy(const WrittenOutPayload& payload, std::size_t i, std::size_t j)
{
    const std::size_t nearer = std::min(i, j);
    const std::size_t further = std::max(i, j);
    return Dot(payload.force, CrossProduct(payload.axis[nearer], payload.m[further]));
}

// Torques of the links about joints 2, 3 and 5, for real angles or for complex ones.
template <class T>
std::array<T, 3> LinkTorques(const SixAxisParams& p, const std::array<T, 6>& q)
{
    using std::cos;
    using std::sin;
    const T theta2 = q[1] + kHalfPi;
    const T a = theta2 + q[2];
    const T w = cos(q[3]) * cos(a) * sin(q[4]) + cos(q[4]) * sin(a);
    const T t3 = cos(a) * p.gs[2] + sin(a) * p.gs[3] + w * p.gs[4];
    return {sin(theta2) * p.gs[1] + cos(theta2) * p.gs[0] + t3, t3,
            -(cos(q[3]) * sin(a) * cos(q[4]) + sin(q[4]) * cos(a)) * p.gs[5]};
}

// By the imaginary part of a step too small to be seen in the real one: exact to rounding.
inline std::array<double, 3> LinkTorquesBy(const SixAxisParams& p, const SixAngles& q, std::size_t j)
{
    constexpr double kStep = 1e-30;
    std::array<std::complex<double>, 6> moved{q[0], q[1], q[2], q[3], q[4], q[5]};
    moved[j] += std::complex<double>(0.0, kStep);
    const auto torques = LinkTorques(p, moved);
    return {torques[0].imag() / kStep, torques[1].imag() / kStep, torques[2].imag() / kStep};
}

// Deflection and gradient, both zero where a joint would give way by 2 degrees or more.
inline void WrittenOutDeflection(const SixAxisParams& p, const SixAngles& q, const CombinedLoad& load,
                                 Deflection& deflection, DeflectionGradient& gradient)
{
    const WrittenOutPayload payload = PayloadOf(p, q, load);
    const auto links = LinkTorques(p, q);
    const double d2 = (PayloadTorque(payload, 1) - links[0]) * p.c2;
    const double d3 = (PayloadTorque(payload, 2) - links[1]) * p.c3;
    const double d5 = (PayloadTorque(payload, 4) + links[2]) * p.c5;
    constexpr double kLimit = 0.03490658503988659;
    deflection = {};
    gradient = {};
    if (!(std::fabs(d2) < kLimit && std::fabs(d3) < kLimit && std::fabs(d5) < kLimit)) return;
    deflection = {d2, d3, d5};
    for (std::size_t j = 0; j < 6; ++j) {
        const auto linksBy = LinkTorquesBy(p, q, j);
        gradient.q2[j] = (PayloadTorqueBy(payload, 1, j) - linksBy[0]) * p.c2;
        gradient.q3[j] = (PayloadTorqueBy(payload, 2, j) - linksBy[1]) * p.c3;
        gradient.q5[j] = (PayloadTorqueBy(payload, 4, j) + linksBy[2]) * p.c5;
    }
}

inline SixAngles WrittenOutBent(const SixAngles& q, const Deflection& d)
{
    return {q[0], q[1] + d.q2, q[2] + d.q3, q[3], q[4] + d.q5, q[5]};
}

// Motion of the flange per radian of each joint, in the flange: the deflected chain, with what a joint makes
// the bending joints give way.
inline Matrix6 WrittenOutJacobian(const WrittenOutChain& chain, const DeflectionGradient& gradient)
{
    Matrix6 plain{};
    for (std::size_t i = 0; i < 6; ++i) {
        const Vec3 z = AxisZ(chain.frame[i].r);
        const Vec3 v = RotateBack(chain.flange.r, CrossProduct(z, chain.flange.t - chain.frame[i].t));
        const Vec3 w = RotateBack(chain.flange.r, z);
        const double column[6] = {v.x, v.y, v.z, w.x, w.y, w.z};
        for (std::size_t row = 0; row < 6; ++row) plain.m[row][i] = column[row];
    }
    Matrix6 jacobian = plain;
    for (std::size_t row = 0; row < 6; ++row) {
        for (std::size_t j = 0; j < 6; ++j) {
            jacobian.m[row][j] += plain.m[row][1] * gradient.q2[j] + plain.m[row][2] * gradient.q3[j] +
                                  plain.m[row][4] * gradient.q5[j];
        }
    }
    return jacobian;
}

// Four Newton steps from q on.
inline KineResult WrittenOutRefine(const SixAxisParams& p, const Pose& flange, const CombinedLoad& load,
                                   SixAngles& q)
{
    const HomMatrix target = PoseToMatrix(flange);
    for (int step = 0; step < 4; ++step) {
        Deflection deflection{};
        DeflectionGradient gradient{};
        WrittenOutDeflection(p, q, load, deflection, gradient);
        const WrittenOutChain chain = WrittenOutLinks(p, WrittenOutBent(q, deflection));
        const Vec3 missing = RotateBack(chain.flange.r, target.t - chain.flange.t);
        const RotMatrix turn = RotMultiply(Transpose(target.r), chain.flange.r);
        const double e[6] = {missing.x, missing.y, missing.z, turn.r12, turn.r20, turn.r01};

        Matrix6 inverse{};
        if (Matrix6Inverse(inverse, WrittenOutJacobian(chain, gradient)) == 0.0) return KINE_ERR_SINGULAR;
        SixAngles correction{};
        for (std::size_t i = 0; i < 6; ++i) {
            for (std::size_t j = 0; j < 6; ++j) correction[i] += inverse.m[i][j] * e[j];
        }
        const auto isWithin = [&correction](double limit) {
            return std::ranges::all_of(correction, [limit](double c) { return std::fabs(c) <= limit; });
        };
        if (step == 0 && !isWithin(2.9670597283903604)) return KINE_ERR_IK_9;
        if (step == 3 && !isWithin(0.003490658503988659)) return KINE_ERR_IK_ACCURACY;
        for (std::size_t i = 0; i < 6; ++i) q[i] += correction[i];
    }
    return KINE_OK;
}

// What the tests of the shoulder, the posture number and the elbow say about a flange, in this order, each
// with all that it depends on.
inline KineResult WrittenOutReach(const SixAxisParams& p, const HomMatrix& flange, std::int32_t posture)
{
    const double x = flange.t.x - p.d6 * flange.r.r02;
    const double y = flange.t.y - p.d6 * flange.r.r12;
    const double h = flange.t.z - p.d6 * flange.r.r22 - p.d1;
    const double r = std::sqrt(x * x + y * y);
    if (!(r - std::fabs(p.lateralOffset) >= 1e-5)) return KINE_ERR_IK_6;
    if (posture < 0 || posture > 7) return KINE_ERR_CONFIG;
    const double delta = std::asin(p.lateralOffset / r);
    const double q1 = posture < 4 ? std::atan2(y, x) + delta : std::atan2(y, x) - delta - std::acos(-1.0);
    const double u = x - p.lateralOffset * std::sin(q1) - p.a1 * std::cos(q1);
    const double v = p.lateralOffset * std::cos(q1) + y - p.a1 * std::sin(q1);
    const double cosine =
        (p.wristReach * p.wristReach + p.a2 * p.a2 - u * u - v * v - h * h) / (2.0 * p.a2 * p.wristReach);
    return std::fabs(cosine) <= 0.99999 ? KINE_OK : KINE_ERR_IK_7;
}

// The whole inverse, with a pose for the flange.
inline KineResult WrittenOutInverse(const SixAxisParams& p, const Pose& target, const ToolBlock& tool,
                                    const KineArmConfig& config, std::array<double, 8>& axes)
{
    for (const std::int32_t turn : {config.Cfg1, config.Cfg2, config.Cfg3}) {
        if (!IsTurnNumberServed(turn)) return KINE_ERR_CONFIG;
    }
    const Pose flange = MatrixToPose(PoseToMatrix(target) * MatrixInverse(PoseToMatrix(tool.frame)));
    if (const KineResult code = WrittenOutReach(p, PoseToMatrix(flange), config.Cfg4)) return code;
    std::array<double, 8> start{};
    if (const KineResult code = ClosedFormIK(p, PoseToMatrix(flange), config, start)) return code;
    SixAngles q{start[0], start[1], start[2], start[3], start[4], start[5]};
    if (const KineResult code = WrittenOutRefine(p, flange, tool.load, q)) return code;
    if (const KineResult code = SelectWristTurns(config, q)) return code;
    axes = {q[0], q[1], q[2], q[3], q[4], q[5], 0.0, 0.0};
    return KINE_OK;
}

}  // namespace kine::test

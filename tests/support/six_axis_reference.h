// A second, plain computation of the six-axis arm, from the parameter record alone: 4x4 matrices multiplied
// out link by link, torques as moments about joint axes, the inverse by Newton steps with difference
// quotients. Slow and without any case distinction. Joint angles in radians, lengths in mm.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "models/arm_model.h"
#include "support/naive_arms.h"
#include "support/naive_transform.h"

namespace kine::test {

using RefAngles = std::array<double, 6>;
using RefVector = std::array<double, 3>;

// The arm that the torques are taken on: lengths of the record, twists (90, 0, 90, -90, 90), nothing else.
inline KineSixAxisParam RefNominal(const KineSixAxisParam& p)
{
    KineSixAxisParam nominal{};
    nominal.a1 = p.a1;
    nominal.a2 = p.a2;
    nominal.a3 = p.a3;
    nominal.d4 = p.d4;
    nominal.d6 = p.d6;
    nominal.alpha1 = 90.0;
    nominal.alpha3 = 90.0;
    nominal.alpha4 = -90.0;
    nominal.alpha5 = 90.0;
    return nominal;
}

// Moment of the payload's weight about the axis of joint i + 1: (z x (p - o)) . F, N mm.
inline double RefPayloadTorque(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load,
                               std::size_t i)
{
    const SixAxisChain chain = NaiveSixAxisChain(RefNominal(p), q);
    const Mat4 centre =
        chain.flange * Shift(1000.0 * load.centre.x, 1000.0 * load.centre.y, 1000.0 * load.centre.z);
    const Mat4& axis = chain.frame[i];
    const RefVector z{axis[0][2], axis[1][2], axis[2][2]};
    const RefVector arm{centre[0][3] - axis[0][3], centre[1][3] - axis[1][3], centre[2][3] - axis[2][3]};
    const double weight = load.mass * 9.8;
    const double tiltX = InRadians(p.mountX);
    const double tiltY = InRadians(p.mountY);
    const RefVector force{weight * std::cos(tiltX) * std::sin(tiltY), -weight * std::sin(tiltX),
                          -weight * std::cos(tiltX) * std::cos(tiltY)};
    return (z[1] * arm[2] - z[2] * arm[1]) * force[0] + (z[2] * arm[0] - z[0] * arm[2]) * force[1] +
           (z[0] * arm[1] - z[1] * arm[0]) * force[2];
}

// Deflection of joints 2, 3 and 5 in radians, without the 2-degree limit.
inline RefVector RefDeflection(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load)
{
    const double theta2 = q[1] + kQuarterTurn;
    const double a = theta2 + q[2];
    double g[7];
    for (int i = 0; i < 7; ++i) g[i] = p.G[i] * std::cos(InRadians(p.mountX));
    const double w = std::cos(q[3]) * std::cos(a) * std::sin(q[4]) + std::cos(q[4]) * std::sin(a);
    const double t3 = std::cos(a) * g[2] + std::sin(a) * g[3] + w * g[4];
    const double t2 = std::sin(theta2) * g[1] + std::cos(theta2) * g[0] + t3;
    const double t5 = -(std::cos(q[3]) * std::sin(a) * std::cos(q[4]) + std::sin(q[4]) * std::cos(a)) * g[5];
    return {(RefPayloadTorque(p, q, load, 1) - t2) / (1000.0 * p.k2),
            (RefPayloadTorque(p, q, load, 2) - t3) / (1000.0 * p.k3),
            (RefPayloadTorque(p, q, load, 4) + t5) / (1000.0 * p.k5)};
}

inline RefAngles RefBent(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load)
{
    const RefVector d = RefDeflection(p, q, load);
    const double limit = InRadians(2.0);
    const bool isStiff = std::fabs(d[0]) < limit && std::fabs(d[1]) < limit && std::fabs(d[2]) < limit;
    if (!isStiff) return q;
    return {q[0], q[1] + d[0], q[2] + d[1], q[3], q[4] + d[2], q[5]};
}

// Flange and tool point of the bent arm.
inline Mat4 RefFlange(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load = {})
{
    return NaiveSixAxisChain(p, RefBent(p, q, load)).flange;
}

inline Mat4 RefToolPoint(const KineSixAxisParam& p, const RefAngles& q, const ToolBlock& tool)
{
    return RefFlange(p, q, tool.load) * MatrixOf(tool.frame);
}

// Position and orientation that lead from one transform to a close-by one, in the frame of the first: the
// translation and the skew part of the rotation (which is small).
inline RefAngles RefSmallMotion(const Mat4& from, const Mat4& to)
{
    RefAngles motion{};
    Mat4 relative{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            motion[i] += from[k][i] * (to[k][3] - from[k][3]);
            for (std::size_t j = 0; j < 3; ++j) relative[i][j] += from[k][i] * to[k][j];
        }
    }
    motion[3] = 0.5 * (relative[2][1] - relative[1][2]);
    motion[4] = 0.5 * (relative[0][2] - relative[2][0]);
    motion[5] = 0.5 * (relative[1][0] - relative[0][1]);
    return motion;
}

// Solves the 6x6 system with the right side in the last column; plain elimination.
inline RefAngles RefSolve(std::array<std::array<double, 7>, 6> m)
{
    for (std::size_t k = 0; k < 6; ++k) {
        std::size_t best = k;
        for (std::size_t i = k; i < 6; ++i) {
            if (std::fabs(m[i][k]) > std::fabs(m[best][k])) best = i;
        }
        std::swap(m[k], m[best]);
        for (std::size_t i = 0; i < 6; ++i) {
            const double factor = i == k ? 0.0 : m[i][k] / m[k][k];
            for (std::size_t j = k; j < 7; ++j) m[i][j] -= factor * m[k][j];
        }
    }
    RefAngles x{};
    for (std::size_t k = 0; k < 6; ++k) x[k] = m[k][6] / m[k][k];
    return x;
}

// One Newton step of the flange toward target. The motion of the flange per radian of each joint comes from
// central differences; the missing rotation is read off the product target^T * current at (1,2), (2,0),
// (0,1).
inline RefAngles RefNewtonCorrection(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load,
                                     const Mat4& target)
{
    constexpr double kStep = 1e-4;
    const Mat4 current = RefFlange(p, q, load);
    std::array<std::array<double, 7>, 6> system{};
    for (std::size_t j = 0; j < 6; ++j) {
        RefAngles ahead = q;
        RefAngles behind = q;
        ahead[j] += kStep;
        behind[j] -= kStep;
        const RefAngles there = RefSmallMotion(current, RefFlange(p, ahead, load));
        const RefAngles back = RefSmallMotion(current, RefFlange(p, behind, load));
        for (std::size_t i = 0; i < 6; ++i) system[i][j] = (there[i] - back[i]) / (2.0 * kStep);
    }
    const auto rotation = [&](std::size_t i, std::size_t j) {
        return target[0][i] * current[0][j] + target[1][i] * current[1][j] + target[2][i] * current[2][j];
    };
    const RefAngles motion = RefSmallMotion(current, target);
    for (std::size_t i = 0; i < 3; ++i) system[i][6] = motion[i];
    system[3][6] = rotation(1, 2);
    system[4][6] = rotation(2, 0);
    system[5][6] = rotation(0, 1);
    return RefSolve(system);
}

inline double RefLargest(const RefAngles& v)
{
    double largest = 0.0;
    for (const double x : v) largest = std::fmax(largest, std::fabs(x));
    return largest;
}

}  // namespace kine::test

// A second, plain computation of the six-axis arm, from the parameter record alone: 4x4 matrices multiplied
// out link by link, torques as moments about joint axes, the inverse by Newton steps with difference
// quotients. Slow and without any case distinction. Joint angles in radians, lengths in mm.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "KineDll.h"
#include "math/transform.h"
#include "models/arm_model.h"

namespace kine::test {

using RefMatrix = std::array<std::array<double, 4>, 4>;
using RefAngles = std::array<double, 6>;
using RefVector = std::array<double, 3>;

inline double Rad(double degrees) { return degrees * (std::acos(-1.0) / 180.0); }

inline RefMatrix RefProduct(const RefMatrix& p, const RefMatrix& q)
{
    RefMatrix result{};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 4; ++k) result[i][j] += p[i][k] * q[k][j];
        }
    }
    return result;
}

inline RefMatrix RefMove(double x, double y, double z)
{
    return {{{1, 0, 0, x}, {0, 1, 0, y}, {0, 0, 1, z}, {0, 0, 0, 1}}};
}

inline RefMatrix RefTurnX(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    return {{{1, 0, 0, 0}, {0, c, -s, 0}, {0, s, c, 0}, {0, 0, 0, 1}}};
}

inline RefMatrix RefTurnY(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    return {{{c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}, {0, 0, 0, 1}}};
}

inline RefMatrix RefTurnZ(double t)
{
    const double c = std::cos(t);
    const double s = std::sin(t);
    return {{{c, -s, 0, 0}, {s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

inline RefMatrix RefLink(double theta, double d, double a, double alpha)
{
    return RefProduct(RefProduct(RefTurnZ(theta), RefMove(0, 0, d)),
                      RefProduct(RefMove(a, 0, 0), RefTurnX(alpha)));
}

// Frames 0 (base) to 5 (after joint 5) and the flange. Joint i + 1 turns about the z axis of frame i.
struct RefChain
{
    std::array<RefMatrix, 6> frame;
    RefMatrix flange;
};

inline RefChain RefChainOf(const KineSixAxisParam& p, const RefAngles& q)
{
    const double quarter = std::acos(0.0);
    RefChain chain{};
    chain.frame[0] = RefMove(0, 0, 0);
    chain.frame[1] = RefProduct(chain.frame[0], RefLink(q[0], p.d1, p.a1, Rad(p.alpha1)));
    chain.frame[2] = RefProduct(RefProduct(chain.frame[1], RefLink(q[1] + quarter, 0, p.a2, Rad(p.alpha2))),
                                RefTurnY(Rad(p.beta2)));
    chain.frame[3] = RefProduct(chain.frame[2], RefLink(q[2], p.d3, p.a3, Rad(p.alpha3)));
    chain.frame[4] = RefProduct(chain.frame[3], RefLink(q[3], p.d4, p.a4, Rad(p.alpha4)));
    chain.frame[5] = RefProduct(chain.frame[4], RefLink(q[4], p.d5, p.a5, Rad(p.alpha5)));
    chain.flange = RefProduct(chain.frame[5], RefProduct(RefTurnZ(q[5]), RefMove(0, 0, p.d6)));
    return chain;
}

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
    const RefChain chain = RefChainOf(RefNominal(p), q);
    const RefMatrix centre = RefProduct(
        chain.flange, RefMove(1000.0 * load.centre.x, 1000.0 * load.centre.y, 1000.0 * load.centre.z));
    const RefMatrix& axis = chain.frame[i];
    const RefVector z{axis[0][2], axis[1][2], axis[2][2]};
    const RefVector arm{centre[0][3] - axis[0][3], centre[1][3] - axis[1][3], centre[2][3] - axis[2][3]};
    const double weight = load.mass * 9.8;
    const double tiltX = Rad(p.mountX);
    const double tiltY = Rad(p.mountY);
    const RefVector force{weight * std::cos(tiltX) * std::sin(tiltY), -weight * std::sin(tiltX),
                          -weight * std::cos(tiltX) * std::cos(tiltY)};
    return (z[1] * arm[2] - z[2] * arm[1]) * force[0] + (z[2] * arm[0] - z[0] * arm[2]) * force[1] +
           (z[0] * arm[1] - z[1] * arm[0]) * force[2];
}

// Deflection of joints 2, 3 and 5 in radians, without the 2-degree limit.
inline RefVector RefDeflection(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load)
{
    const double quarter = std::acos(0.0);
    const double theta2 = q[1] + quarter;
    const double a = theta2 + q[2];
    double g[7];
    for (int i = 0; i < 7; ++i) g[i] = p.G[i] * std::cos(Rad(p.mountX));
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
    const double limit = Rad(2.0);
    const bool isStiff = std::fabs(d[0]) < limit && std::fabs(d[1]) < limit && std::fabs(d[2]) < limit;
    if (!isStiff) return q;
    return {q[0], q[1] + d[0], q[2] + d[1], q[3], q[4] + d[2], q[5]};
}

inline HomMatrix Packed(const RefMatrix& m)
{
    return {{m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]},
            {m[0][3], m[1][3], m[2][3]}};
}

inline RefMatrix RefOfPose(const Pose& pose)
{
    return RefProduct(RefMove(pose.x, pose.y, pose.z),
                      RefProduct(RefTurnZ(pose.a), RefProduct(RefTurnY(pose.b), RefTurnX(pose.c))));
}

// Flange and tool point of the bent arm.
inline RefMatrix RefFlange(const KineSixAxisParam& p, const RefAngles& q, const CombinedLoad& load = {})
{
    return RefChainOf(p, RefBent(p, q, load)).flange;
}

inline RefMatrix RefToolPoint(const KineSixAxisParam& p, const RefAngles& q, const ToolBlock& tool)
{
    return RefProduct(RefFlange(p, q, tool.load), RefOfPose(tool.frame));
}

// Position and orientation that lead from one transform to a close-by one, in the frame of the first: the
// translation and the skew part of the rotation (which is small).
inline RefAngles RefSmallMotion(const RefMatrix& from, const RefMatrix& to)
{
    RefAngles motion{};
    RefMatrix relative{};
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
                                     const RefMatrix& target)
{
    constexpr double kStep = 1e-4;
    const RefMatrix current = RefFlange(p, q, load);
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

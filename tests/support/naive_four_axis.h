// The four-axis arm written down a second time, rotation by rotation, for any scalar type: doubles for
// positions, complex numbers for derivatives. Angles in rad, tilts in degrees as in the parameter record.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <cstdint>

#include "KineDll.h"
#include "models/arm_model.h"
#include "models/four_axis_geometry.h"
#include "models/four_axis_params.h"
#include "support/plain_matrix.h"
#include "support/seeded_random.h"

namespace kine::test {

struct NaiveArm
{
    double l1 = 425.0, l2 = 375.0, z0 = 80.0, lead = 25.0;
    double tiltX1 = 0.0, tiltX2 = 0.0, tiltY1 = 0.0, tiltY2 = 0.0;
};

inline NaiveArm SteepArm() { return {425.0, 375.0, 80.0, 25.0, -2.5, 3.0, 1.5, -2.0}; }

inline KineKinematicParam ParamOf(const NaiveArm& arm)
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = arm.l1;
    param.FourAxis.Link2Length = arm.l2;
    param.FourAxis.ZOffset = arm.z0;
    param.FourAxis.ScrewLead = arm.lead;
    param.FourAxis.Link1TiltX = arm.tiltX1;
    param.FourAxis.Link2TiltX = arm.tiltX2;
    param.FourAxis.Link1TiltY = arm.tiltY1;
    param.FourAxis.Link2TiltY = arm.tiltY2;
    return param;
}

inline FourAxisParams BlockOf(const NaiveArm& arm)
{
    const KineKinematicParam param = ParamOf(arm);
    FourAxisParams block{};
    if (InitFourAxisParams(4, 4, &param, block) != KINE_OK) std::abort();
    return block;
}

// The arm with the tool frame of a block, and the pose of that frame.
inline FourAxisState StateOf(const FourAxisParams& params, const FourAngles& q, const Pose& tool)
{
    return FourAxisStateOf(params, q, FourAxisToolOf(tool));
}

inline Pose ToolPoseOf(const FourAxisParams& params, const FourAngles& q, const Pose& tool)
{
    return FourAxisToolPose(StateOf(params, q, tool));
}

template <class T>
using Triple = std::array<T, 3>;

template <class T>
using Square = std::array<Triple<T>, 3>;

template <class T>
Square<T> Product(const Square<T>& a, const Square<T>& b)
{
    Square<T> c{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            for (std::size_t k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
    return c;
}

template <class T>
Triple<T> Turned(const Square<T>& a, const Triple<T>& v)
{
    Triple<T> w{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) w[i] += a[i][k] * v[k];
    return w;
}

template <class T>
Square<T> AboutX(T t)
{
    using std::cos;
    using std::sin;
    return {{{T(1), T(0), T(0)}, {T(0), cos(t), -sin(t)}, {T(0), sin(t), cos(t)}}};
}

template <class T>
Square<T> AboutY(T t)
{
    using std::cos;
    using std::sin;
    return {{{cos(t), T(0), sin(t)}, {T(0), T(1), T(0)}, {-sin(t), T(0), cos(t)}}};
}

template <class T>
Square<T> AboutZ(T t)
{
    using std::cos;
    using std::sin;
    return {{{cos(t), -sin(t), T(0)}, {sin(t), cos(t), T(0)}, {T(0), T(0), T(1)}}};
}

template <class T>
struct NaiveState
{
    Triple<T> flange;
    Triple<T> tip;
    Square<T> forearm;  // R12
    Square<T> tool;     // R'
};

// q[1] is the elbow angle; of the tool x, y, z and a.
template <class T>
NaiveState<T> NaiveForward(const NaiveArm& arm, const std::array<T, 4>& q, const Pose& tool)
{
    using std::cos;
    using std::sin;
    const Square<T> r1 =
        Product(Product(AboutZ(q[0]), AboutX(T(InRadians(arm.tiltX1)))), AboutY(T(InRadians(arm.tiltY1))));
    const Square<T> r2 =
        Product(Product(AboutZ(q[1]), AboutX(T(InRadians(arm.tiltX2)))), AboutY(T(InRadians(arm.tiltY2))));
    NaiveState<T> state{};
    state.forearm = Product(r1, r2);
    const T travel = T(arm.lead) * q[2] / T(2.0 * kHalfTurn) + T(arm.z0);
    const Triple<T> first{T(arm.l1) * cos(q[0]), T(arm.l1) * sin(q[0]), T(0)};
    const Triple<T> second = Turned(r1, Triple<T>{T(arm.l2) * cos(q[1]), T(arm.l2) * sin(q[1]), T(0)});
    const Triple<T> third = Turned(state.forearm, Triple<T>{T(0), T(0), travel});
    const Square<T> hand = Product(state.forearm, AboutZ(q[3]));
    const Triple<T> offset = Turned(hand, Triple<T>{T(tool.x), T(tool.y), T(tool.z)});
    for (std::size_t i = 0; i < 3; ++i) {
        state.flange[i] = first[i] + second[i] + third[i];
        state.tip[i] = state.flange[i] + offset[i];
    }
    state.tool = Product(hand, AboutZ(T(tool.a)));
    return state;
}

// A model of its class, initialised for an arm type.
template <class Model>
Model Initialised(std::uint32_t type, const NaiveArm& arm)
{
    Model model;
    const KineKinematicParam param = ParamOf(arm);
    EXPECT_EQ(model.InitModel(type, &param), KINE_OK);
    return model;
}

inline ToolBlock BlockWithTool(const Pose& tool)
{
    ToolBlock block{};
    block.frame = tool;
    return block;
}

inline Joints JointsOf(double q1, double q2, double q3, double q4)
{
    Joints joints{};
    joints.axis = {q1, q2, q3, q4, 0.0, 0.0, 0.0, 0.0};
    return joints;
}

// A joint record that no solution has.
inline Joints MarkedJoints()
{
    Joints joints{};
    joints.axis.fill(-77.25);
    joints.extAxis.fill(-88.5);
    return joints;
}

inline bool AreMarked(const Joints& joints)
{
    const Joints marked = MarkedJoints();
    return joints.axis == marked.axis && joints.extAxis == marked.extAxis;
}

}  // namespace kine::test

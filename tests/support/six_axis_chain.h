// The rigid six-axis arm as a plain product of link matrices, apart from the library.
#pragma once

#include <array>

#include "KineDll.h"
#include "support/rigid_matrix.h"

namespace kine::test {

// Frame 5, the wrist: five links Rz(theta) * Tz(d) * Tx(a) * Rx(alpha), link 2 with a turn about Y after it.
inline Mat4 WristOf(const KineSixAxisParam& p, const KineJoint& joints)
{
    const double* q = joints.Axis;
    return TurnZ(q[0]) * Shift(p.a1, 0, p.d1) * TurnX(p.alpha1) *                       //
           TurnZ(q[1] + 90.0) * Shift(p.a2, 0, 0) * TurnX(p.alpha2) * TurnY(p.beta2) *  //
           TurnZ(q[2]) * Shift(p.a3, 0, p.d3) * TurnX(p.alpha3) *                       //
           TurnZ(q[3]) * Shift(p.a4, 0, p.d4) * TurnX(p.alpha4) *                       //
           TurnZ(q[4]) * Shift(p.a5, 0, p.d5) * TurnX(p.alpha5);
}

inline Mat4 FlangeOf(const KineSixAxisParam& p, const KineJoint& joints)
{
    return WristOf(p, joints) * TurnZ(joints.Axis[5]) * Shift(0, 0, p.d6);
}

}  // namespace kine::test

// Jog targets as products of plain 4x4 matrices: where the frame on the flange has to be after a step.
//
// C: the frame that the flange carries; B: robot base; O: work object; P: stationary tool; each "a from b".
#pragma once

#include <array>
#include <cmath>

#include "support/motion_calls.h"
#include "support/rigid_matrix.h"

namespace kine::test {

// Also of a matrix that is no rotation: first column for A and B, last row for C.
inline Mat4 AsRigid(const Mat4& m) { return MatrixOf(FrameOf(m)); }

// The same rotation at another place.
inline Mat4 MovedTo(Mat4 m, const Mat4& place)
{
    for (std::size_t i = 0; i < 3; ++i) m[i][3] = place[i][3];
    return m;
}

// I + sin K + (1 - cos) K K with K the cross product with w: a rotation about w when w is a unit vector.
inline Mat4 TurnAbout(const std::array<double, 3>& w, double degrees)
{
    const Mat4 k = {{{0, -w[2], w[1], 0}, {w[2], 0, -w[0], 0}, {-w[1], w[0], 0, 0}, {0, 0, 0, 0}}};
    const Mat4 kk = k * k;
    Mat4 turn = Identity4();
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            turn[i][j] +=
                std::sin(InRadians(degrees)) * k[i][j] + (1.0 - std::cos(InRadians(degrees))) * kk[i][j];
        }
    }
    return turn;
}

inline std::array<double, 3> Rotated(const Mat4& m, const std::array<double, 3>& v)
{
    const Mat4 product = RotationOf(m) * Shift(v[0], v[1], v[2]);
    return {product[0][3], product[1][3], product[2][3]};
}

// The frame that the flange carries, in the flange.
inline Mat4 Carried(const MotionRequest& request)
{
    if (request.tool.HeldByRobot != 0) return MatrixOf(request.tool.TFrame);
    if (request.wobj.HeldByRobot == 0) return Identity4();
    return MatrixOf(request.wobj.UFrame) * MatrixOf(request.wobj.OFrame);
}

// B from C by the forward call: the carried frame is given to it as a held tool, with the same load.
inline KineFrame CarriedInBase(const MotionRequest& request, const KineJoint& joints)
{
    KineTool tool = HeldTool(FrameOf(Carried(request)));
    tool.TLoad = request.tool.TLoad;
    const KineWobj wobj = FixedWobj();
    KinePose pose{};
    EXPECT_EQ(Kine_JointToBasePos(&joints, &tool, &wobj, &request.load, &pose), KINE_OK);
    return pose.Frame;
}

// Where robot base and work object stand in the world; the work object matters only when it is not held.
struct JogCell
{
    Mat4 worldFromBase = Identity4();
    Mat4 worldFromWobj = Identity4();
};

inline JogCell StandingCell(const MotionRequest& request)
{
    return {Identity4(), MatrixOf(request.wobj.UFrame) * MatrixOf(request.wobj.OFrame)};
}

struct JogStep
{
    std::array<double, 3> shift;
    std::array<double, 3> axis;
    int reversals;  // rotation slots in use among slots 3 to n - 1
};

inline JogStep StepOf(const MotionRequest& request, const MovedArm& arm)
{
    const int32_t* d = request.dir.Slot;
    JogStep step{};
    for (std::size_t i = 0; i < 3; ++i) step.shift[i] = request.steps[1] * d[i];
    for (std::size_t i = 0; i < 3; ++i) step.axis[i] = arm.IsSixAxis() ? d[3 + i] : d[5 - i];
    for (int i = 3; i < arm.Axes(); ++i) step.reversals += d[i] != 0 ? 1 : 0;
    return step;
}

// O from P (or from the held tool) after the step of modes 3 and 4, from the one before it.
inline Mat4 AfterStepInCell(const MotionRequest& request, const JogStep& step, const Mat4& t)
{
    const double degrees = request.steps[2];
    const Mat4 s = Shift(step.shift[0], step.shift[1], step.shift[2]) * TurnAbout(step.axis, degrees);
    if (request.mode == 3) return request.tool.HeldByRobot != 0 ? t * s : t * RigidInverse(s);
    if (request.wobj.HeldByRobot != 1 || step.reversals == 0) return s * t;
    const double sense = step.reversals % 2 == 0 ? 1.0 : -1.0;
    return MovedTo(TurnAbout({sense * step.axis[0], sense * step.axis[1], sense * step.axis[2]}, degrees) * t,
                   t);
}

// B from C after the step, from the one before it.
inline Mat4 AfterJog(const MotionRequest& request, const MovedArm& arm, const JogCell& cell,
                     const Mat4& baseFromCarried)
{
    const JogStep step = StepOf(request, arm);
    if (request.mode == 2 || request.mode == 5) {
        // World mode turns the directions by world-from-base and then takes them along the base axes.
        const Mat4 m = request.mode == 2 ? Identity4() : cell.worldFromBase;
        const auto shift = Rotated(m, step.shift);
        const Mat4 turned = TurnAbout(Rotated(m, step.axis), request.steps[2]) * baseFromCarried;
        return AsRigid(Shift(shift[0], shift[1], shift[2]) * MovedTo(turned, baseFromCarried));
    }
    const Mat4 baseFromWorld = RigidInverse(cell.worldFromBase);
    if (request.tool.HeldByRobot != 0) {
        const Mat4 baseFromWobj = baseFromWorld * cell.worldFromWobj;
        const Mat4 t = RigidInverse(baseFromWobj) * baseFromCarried;
        return baseFromWobj * AsRigid(AfterStepInCell(request, step, t));
    }
    const Mat4 baseFromTool = baseFromWorld * MatrixOf(request.tool.TFrame);
    const Mat4 t = RigidInverse(baseFromCarried) * baseFromTool;
    return baseFromTool * RigidInverse(AsRigid(AfterStepInCell(request, step, t)));
}

// What an arm can do of it: the four-axis arms take over position and heading.
inline Mat4 WithinReach(const MovedArm& arm, const Mat4& m)
{
    if (arm.IsSixAxis()) return m;
    return MovedTo(TurnZ(std::atan2(m[1][0], m[0][0])), m);
}

// The jog succeeds silently, the frame on the flange ends where it has to, in the stance that it had, and the
// external axes stay.
inline void ExpectJogMoves(const MovedArm& arm, const MotionRequest& request, const JogCell& cell)
{
    const Mat4 before = MatrixOf(CarriedInBase(request, request.current));
    const Mat4 expected = WithinReach(arm, AfterJog(request, arm, cell, before));
    const MotionOutcome outcome = Jog(request);
    ExpectOutcome(outcome, KINE_OK);
    if (outcome.code != KINE_OK) return;
    EXPECT_TRUE(IsFrame(CarriedInBase(request, outcome.target), expected, arm.tolerance, arm.tolerance));
    for (int i = 0; i < arm.Axes(); ++i) {
        if (!arm.IsSixAxis() && i == 2) continue;  // a screw turns far
        EXPECT_NEAR(outcome.target.Axis[i], request.current.Axis[i], 60.0) << "axis " << i + 1;
    }
    EXPECT_TRUE(SameBits(outcome.target.ExtAxis, request.current.ExtAxis));
}

}  // namespace kine::test

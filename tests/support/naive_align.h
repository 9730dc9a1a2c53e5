// Alignment as plain 4x4 matrices: where the frame on the flange has to be, and which turn is the nearest.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include "support/naive_jog.h"

namespace kine::test {

using Direction = std::array<double, 3>;

inline Direction Column(const Mat4& m, std::size_t j) { return {m[0][j], m[1][j], m[2][j]}; }

inline double Dot(const Direction& u, const Direction& v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; }

inline Direction Cross(const Direction& u, const Direction& v)
{
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

// The axis of a reference, positive or negative, that is nearest to a direction; of equally near ones the
// first. Both are given in the same frame.
inline Direction NearestAxis(const Direction& z, const Mat4& reference)
{
    Direction nearest{};
    double smallest = 4.0;  // rad, beyond any angle
    for (std::size_t i = 0; i < 3; ++i) {
        Direction axis = Column(reference, i);
        if (Dot(z, axis) < 0.0) axis = {-axis[0], -axis[1], -axis[2]};
        const Direction normal = Cross(z, axis);
        const double angle = std::atan2(std::sqrt(Dot(normal, normal)), Dot(z, axis));
        if (!(angle < smallest - 1e-5)) continue;
        smallest = angle;
        nearest = axis;
    }
    return nearest;
}

// The smallest rotation from one unit vector to another: I + K + K K / (1 + cos), K the cross product with
// from x to.
inline Mat4 SmallestTurn(const Direction& from, const Direction& to)
{
    const Direction w = Cross(from, to);
    const Mat4 k = {{{0, -w[2], w[1], 0}, {w[2], 0, -w[0], 0}, {-w[1], w[0], 0, 0}, {0, 0, 0, 0}}};
    const Mat4 kk = k * k;
    Mat4 turn = Identity4();
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) turn[i][j] += k[i][j] + kk[i][j] / (1.0 + Dot(from, to));
    }
    return turn;
}

// A frame turned about its own origin until its Z axis is the nearest axis of the reference.
inline Mat4 AlignedWith(const Mat4& reference, const Mat4& frame)
{
    const Direction z = Column(frame, 2);
    return MovedTo(SmallestTurn(z, NearestAxis(z, reference)) * frame, frame);
}

// The reference axes of modes 2, 5, 4 and -1 in the base.
inline Mat4 BaseFromReference(const MotionRequest& request, const JogCell& cell)
{
    const Mat4 baseFromWorld = RigidInverse(cell.worldFromBase);
    if (request.mode == 2) return Identity4();
    return request.mode == 5 ? baseFromWorld : baseFromWorld * cell.worldFromWobj;
}

// The request whose carried frame is the flange, with the load where it was.
inline MotionRequest ThroughFlange(const MotionRequest& request)
{
    MotionRequest flange = request;
    const Mat4 carried = Carried(request);
    for (std::size_t i = 0; i < 3; ++i) flange.load.Cog[i] += carried[i][3];
    flange.tool.HeldByRobot = 1;
    flange.tool.TFrame = {};
    return flange;
}

inline bool IsWobjCarried(const MotionRequest& request)
{
    return request.tool.HeldByRobot == 0 && request.wobj.HeldByRobot != 0;
}

// The request whose carried frame is the one that is aligned: the flange for a held work object, but for
// mode 4.
inline MotionRequest AlignedRequest(const MotionRequest& request)
{
    return IsWobjCarried(request) && request.mode != 4 ? ThroughFlange(request) : request;
}

// With a held work object, step by step. M: the reference axes seen from the aligned frame, where W takes the
// place of the work object in the flange; in mode 4 and -1 it is the work object (the flange) seen from the
// stationary tool instead, and the turn from z to its nearest axis is taken backwards in the aligned frame.
// A four-axis arm keeps its frames upright while W may be tilted, so that M is then not what it is called.
inline Mat4 AfterHeldWobjAlign(const MotionRequest& request, const JogCell& cell, const Mat4& baseFromWobj,
                               const Mat4& aligned)
{
    const Mat4 baseFromTool = RigidInverse(cell.worldFromBase) * MatrixOf(request.tool.TFrame);
    const Mat4 wobjFromTool = RigidInverse(baseFromWobj) * baseFromTool;
    const Mat4 w = Carried(request);
    const Direction z = {0, 0, 1};
    if (request.mode == 2 || request.mode == 5) {
        const Mat4 m = w * RigidInverse(baseFromWobj) * BaseFromReference(request, cell);
        return aligned * SmallestTurn(z, NearestAxis(z, m));
    }
    const Mat4 m = RigidInverse(request.mode == 4 ? wobjFromTool : w * wobjFromTool);
    return aligned * RigidInverse(SmallestTurn(z, NearestAxis(z, m)));
}

// Base from the aligned frame after the call.
inline Mat4 AfterAlign(const MotionRequest& request, const JogCell& cell)
{
    const Mat4 before = MatrixOf(CarriedInBase(AlignedRequest(request), request.current));
    if (IsWobjCarried(request)) {
        return AfterHeldWobjAlign(request, cell, MatrixOf(CarriedInBase(request, request.current)), before);
    }
    return AlignedWith(BaseFromReference(request, cell), before);
}

// Solutions of a pose of the aligned frame, by the inverse call over a work object at the world origin.
inline KineResult SolveInBase(const MotionRequest& request, const JogCell& cell, const Mat4& pose,
                              const KineArmConfig& config, KineJoint& joints)
{
    KineTool tool = HeldTool(FrameOf(Carried(request)));
    tool.TLoad = request.tool.TLoad;
    const KineWobj wobj = FixedWobj();
    KinePose target{};
    target.Frame = FrameOf(cell.worldFromBase * pose);
    target.Cfg1 = config.Cfg1;
    target.Cfg2 = config.Cfg2;
    target.Cfg3 = config.Cfg3;
    target.Cfg4 = config.Cfg4;
    for (std::size_t i = 0; i < 6; ++i) target.ExtAxis[i] = request.current.ExtAxis[i];
    KineResult code = KINE_OK;
    static_cast<void>(
        PrintedBy([&] { code = Kine_WobjPosToJoint(&target, &tool, &wobj, &request.load, &joints); }));
    return code;
}

// What the call has to answer for an aligned pose: 0x6080 without a solution in the current configuration,
// 0x6081 when another one of Cfg4 = 0 to 7 leads nearer to the current joints.
inline KineResult AlignCode(const MovedArm& arm, const MotionRequest& request, const JogCell& cell,
                            const Mat4& pose)
{
    const MotionRequest aligned = AlignedRequest(request);
    KineArmConfig config{};
    EXPECT_EQ(Kine_GetArmType(&request.current, &config), KINE_OK);
    KineJoint joints{};
    if (SolveInBase(aligned, cell, pose, config, joints) != KINE_OK) return KINE_ERR_ALIGN_NO_SOLUTION;
    int32_t nearest = 0;
    double smallest = InDegrees(2160.0);
    KineArmConfig tried = config;
    for (tried.Cfg4 = 0; tried.Cfg4 < 8; ++tried.Cfg4) {
        if (SolveInBase(aligned, cell, pose, tried, joints) != KINE_OK) continue;
        double sum = 0.0;
        for (int i = 0; i < arm.Axes(); ++i) sum += std::fabs(joints.Axis[i] - request.current.Axis[i]);
        if (!(sum < smallest)) continue;
        smallest = sum;
        nearest = tried.Cfg4;
    }
    return nearest == config.Cfg4 ? KINE_OK : KINE_ERR_ALIGN_TURN;
}

// The call succeeds silently, the frame ends where it has to and the external axes stay.
inline MotionOutcome ExpectAligns(const MovedArm& arm, const MotionRequest& request, const JogCell& cell)
{
    const MotionOutcome outcome = Align(request);
    ExpectOutcome(outcome, KINE_OK);
    if (outcome.code != KINE_OK) return outcome;
    const Mat4 expected = WithinReach(arm, AfterAlign(request, cell));
    EXPECT_TRUE(IsFrame(CarriedInBase(AlignedRequest(request), outcome.target), expected, arm.tolerance,
                        arm.tolerance));
    EXPECT_TRUE(SameBits(outcome.target.ExtAxis, request.current.ExtAxis));
    return outcome;
}

}  // namespace kine::test

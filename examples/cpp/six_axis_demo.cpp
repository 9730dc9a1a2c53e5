// A real six-axis arm in a small cell: joints to positions, and the same position in all eight postures.
// Exits with 1 when a call fails or a solution does not bring the tool back to its target.
#include <cstdio>

#include "KineDll.h"
#include "cell_demo.h"

namespace {

using demo::Cell;

// A solution this far off its target is wrong.
constexpr double kMaxResidualMm = 1e-6;
constexpr double kMaxResidualDeg = 1e-6;

// Link weights: Armstrong, Khatib and Burdick, ICRA 1986.
// The stiffnesses are illustrative; none are published.
KineKinematicParam BendingPuma560()
{
    KineKinematicParam param = demo::Puma560();
    KineSixAxisParam& p = param.SixAxis;
    const double weights[7] = {37234.7, 1024.2, 248.9, 8743.9, 28.25, 28.25, 0.0};
    for (int i = 0; i < 7; ++i) p.G[i] = weights[i];
    p.k2 = 3.0e4;
    p.k3 = 2.0e4;
    p.k5 = 5.0e3;
    return param;
}

Cell MakeCell()
{
    Cell cell{};
    cell.tool.HeldByRobot = 1;
    cell.tool.TFrame = {20.0, 0.0, 120.0, 0.0, 30.0, 0.0};
    cell.tool.TLoad.Mass = 1.2;
    cell.tool.TLoad.Cog[2] = 60.0;
    cell.wobj.UFFix = 1;
    cell.wobj.UFrame = {500.0, -300.0, -200.0, 30.0, 0.0, 0.0};
    cell.wobj.OFrame = {40.0, 25.0, 10.0, 0.0, 0.0, 5.0};
    cell.payload.Mass = 1.0;
    return cell;
}

void Describe(const KineKinematicParam& arm, const Cell& cell)
{
    std::printf("Puma 560, arm type 6 (stiffnesses illustrative)\n");
    std::printf("  a2 %.1f  a3 %.1f  d4 %.1f  d3 = lateral offset %.2f mm; twists 90, 0, 90, -90, 90 deg\n",
                arm.SixAxis.a2, arm.SixAxis.a3, arm.SixAxis.d4, arm.SixAxis.d3);
    demo::PrintFrame("tool", cell.tool.TFrame);
    demo::PrintFrame("user frame", cell.wobj.UFrame);
    demo::PrintFrame("object frame", cell.wobj.OFrame);
    std::printf("  tool %.1f kg, payload %.1f kg\n\n", cell.tool.TLoad.Mass, cell.payload.Mass);
}

bool ShowPositions(const KineJoint& joints, const Cell& cell, KinePose& inWobj)
{
    KinePose inBase{};
    KinePose inWorld{};
    if (!demo::Succeeded("Kine_JointToBasePos",
                         Kine_JointToBasePos(&joints, &cell.tool, &cell.wobj, &cell.payload, &inBase)) ||
        !demo::Succeeded("Kine_JointToWorldPos",
                         Kine_JointToWorldPos(&joints, &cell.tool, &cell.wobj, &cell.payload, &inWorld)) ||
        !demo::Succeeded("Kine_JointToWobjPos",
                         Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.payload, &inWobj))) {
        return false;
    }
    std::printf("Joints");
    for (int i = 0; i < 6; ++i) std::printf(" %.4f", joints.Axis[i]);
    std::printf(" deg put the tool centre point at\n");
    demo::PrintFrame("base", inBase.Frame);
    demo::PrintFrame("world", inWorld.Frame);
    demo::PrintFrame("work object", inWobj.Frame);
    std::printf("  configuration  %d %d %d, posture %d\n\n", inWobj.Cfg1, inWobj.Cfg2, inWobj.Cfg3,
                inWobj.Cfg4);
    return true;
}

bool SolvePosture(const KinePose& position, int posture, const Cell& cell)
{
    KinePose target = position;
    target.Cfg1 = target.Cfg2 = target.Cfg3 = 0;  // the turns nearest to zero
    target.Cfg4 = posture;
    KineJoint joints{};
    KinePose reached{};
    if (!demo::Succeeded("Kine_WobjPosToJoint",
                         Kine_WobjPosToJoint(&target, &cell.tool, &cell.wobj, &cell.payload, &joints)) ||
        !demo::Succeeded("Kine_JointToWobjPos",
                         Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.payload, &reached))) {
        return false;
    }
    const demo::Residual off = demo::ResidualOf(target.Frame, reached.Frame);
    std::printf("  %4d  %-5s %-4s %-7s", posture, (posture & 4) != 0 ? "back" : "front",
                (posture & 2) != 0 ? "far" : "near", (posture & 1) != 0 ? "flipped" : "plain");
    for (int i = 0; i < 6; ++i) std::printf(" %10.4f", joints.Axis[i]);
    std::printf("  %8.1e %8.1e\n", off.mm, off.deg);
    return reached.Cfg4 == posture && off.mm < kMaxResidualMm && off.deg < kMaxResidualDeg;
}

}  // namespace

int main()
{
    const KineKinematicParam arm = BendingPuma560();
    const Cell cell = MakeCell();
    if (!demo::Succeeded("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm)))
        return 1;
    Describe(arm, cell);

    // The arm reaching forward and down, elbow above; the wrist turned a little.
    const KineJoint joints = {{180.0, 45.0, 180.0, 10.0, -45.0, 20.0}, {}};
    KinePose inWobj{};
    if (!ShowPositions(joints, cell, inWobj)) return 1;

    std::printf("The same position in the work object, solved in all eight postures\n");
    std::printf("   Cfg4  shoulder elbow wrist %9s %10s %10s %10s %10s %10s  off by mm      deg\n", "q1",
                "q2", "q3", "q4", "q5", "q6");
    int right = 0;
    for (int posture = 0; posture < 8; ++posture) right += SolvePosture(inWobj, posture, cell) ? 1 : 0;
    std::printf("\n%d of 8 postures reach the target within %.0e mm and %.0e deg\n", right, kMaxResidualMm,
                kMaxResidualDeg);
    return right == 8 ? 0 : 1;
}

// A four-axis arm in a small cell: joints to positions, and the same position with both elbows and several
// turns of axis 4, for the ideal arm and for a calibrated one with tilted axes.
// Exits with 1 when a call fails or a solution does not bring the tool back to its target.
#include <cstdio>

#include "KineDll.h"
#include "cell_demo.h"

namespace {

using demo::Cell;

// A solution this far off its target is wrong: the refinement ends at a squared error of 1e-12.
constexpr double kMaxResidualMm = 1e-5;
constexpr double kMaxResidualDeg = 1e-4;

// Textbook proportions, not a product: links of 325 and 275 mm, a screw of 20 mm per revolution.
KineKinematicParam ExampleScara()
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = 325.0;
    param.FourAxis.Link2Length = 275.0;
    param.FourAxis.ZOffset = 150.0;
    param.FourAxis.ScrewLead = 20.0;
    return param;
}

KineKinematicParam CalibratedScara()
{
    KineKinematicParam param = ExampleScara();
    param.FourAxis.Link1TiltX = 0.05;
    param.FourAxis.Link1TiltY = -0.08;
    param.FourAxis.Link2TiltX = 0.03;
    param.FourAxis.Link2TiltY = 0.06;
    return param;
}

Cell MakeCell()
{
    Cell cell{};
    cell.tool.HeldByRobot = 1;
    cell.tool.TFrame = {35.0, 0.0, -80.0, 15.0, 0.0, 0.0};
    cell.wobj.UFFix = 1;
    cell.wobj.UFrame = {250.0, 150.0, 0.0, 20.0, 0.0, 0.0};
    return cell;
}

bool SolveAs(const KinePose& position, int elbow, int turn, const Cell& cell)
{
    KinePose target = position;
    target.Cfg1 = elbow;
    target.Cfg4 = turn;
    KineJoint joints{};
    KinePose reached{};
    if (!demo::Succeeded("Kine_WobjPosToJoint",
                         Kine_WobjPosToJoint(&target, &cell.tool, &cell.wobj, &cell.payload, &joints)) ||
        !demo::Succeeded("Kine_JointToWobjPos",
                         Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.payload, &reached))) {
        return false;
    }
    const demo::Residual off = demo::ResidualOf(target.Frame, reached.Frame);
    std::printf("  %+4d %4d ", elbow, turn);
    for (int i = 0; i < 4; ++i) std::printf(" %12.4f", joints.Axis[i]);
    std::printf("  %8.1e %8.1e\n", off.mm, off.deg);
    return off.mm < kMaxResidualMm && off.deg < kMaxResidualDeg;
}

// The number of solutions that reach the target; 0 when a call fails.
int ShowArm(const char* title, const KineKinematicParam& arm, const Cell& cell)
{
    std::printf("%s, arm type 4 (an example)\n", title);
    std::printf(
        "  links %.0f and %.0f mm, screw %.0f mm per revolution; tilts %.2f, %.2f and %.2f, %.2f deg\n",
        arm.FourAxis.Link1Length, arm.FourAxis.Link2Length, arm.FourAxis.ScrewLead, arm.FourAxis.Link1TiltX,
        arm.FourAxis.Link1TiltY, arm.FourAxis.Link2TiltX, arm.FourAxis.Link2TiltY);
    // Axis 3 is the angle of the screw: -2.5 revolutions lower the flange by 50 mm.
    const KineJoint joints = {{30.0, 45.0, -900.0, 25.0}, {}};
    KinePose inBase{};
    KinePose inWobj{};
    if (!demo::Succeeded("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_FOUR_AXIS, &arm)) ||
        !demo::Succeeded("Kine_JointToBasePos",
                         Kine_JointToBasePos(&joints, &cell.tool, &cell.wobj, &cell.payload, &inBase)) ||
        !demo::Succeeded("Kine_JointToWobjPos",
                         Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.payload, &inWobj))) {
        return 0;
    }
    std::printf("Joints %.1f %.1f %.1f %.1f deg put the tool centre point at\n", joints.Axis[0],
                joints.Axis[1], joints.Axis[2], joints.Axis[3]);
    demo::PrintFrame("base", inBase.Frame);
    demo::PrintFrame("work object", inWobj.Frame);

    std::printf("  Cfg1 Cfg4  %12s %12s %12s %12s  off by mm      deg\n", "q1", "q2", "q3 (screw)", "q4");
    int right = 0;
    for (const int elbow : {1, -1}) {
        for (const int turn : {0, 4, -8}) right += SolveAs(inWobj, elbow, turn, cell) ? 1 : 0;
    }
    std::printf("\n");
    return right;
}

}  // namespace

int main()
{
    const Cell cell = MakeCell();
    const int right =
        ShowArm("Ideal SCARA", ExampleScara(), cell) + ShowArm("Calibrated SCARA", CalibratedScara(), cell);
    std::printf("%d of 12 solutions reach the target within %.0e mm and %.0e deg\n", right, kMaxResidualMm,
                kMaxResidualDeg);
    return right == 12 ? 0 : 1;
}

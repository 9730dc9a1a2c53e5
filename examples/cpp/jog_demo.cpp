// A session at the teach pendant: jog steps in the base, the tool and the work object, then an alignment of
// the tool. Exits with 1 when a call fails or the tool does not move as it was asked to.
#include <cstdio>

#include "KineDll.h"
#include "cell_demo.h"

namespace {

using demo::Cell;

// Farther than this from where a step should lead is wrong.
constexpr double kMaxErrorMm = 1e-6;
// Sine of the angle that an aligned Z axis may be off.
constexpr double kMaxErrorAxis = 1e-8;

constexpr int32_t kJogBase = 2;
constexpr int32_t kJogTool = 3;
constexpr int32_t kJogWobj = 4;
constexpr int32_t kAlignWithBase = 2;

Cell MakeCell()
{
    Cell cell{};
    cell.tool.HeldByRobot = 1;
    cell.tool.TFrame.Z = 120.0;
    cell.wobj.UFFix = 1;
    cell.wobj.UFrame = {500.0, -300.0, -200.0, 30.0, 0.0, 0.0};
    return cell;
}

bool PositionOf(const KineJoint& joints, const Cell& cell, KineFrame& inBase)
{
    KinePose pose{};
    const KineResult code = Kine_JointToBasePos(&joints, &cell.tool, &cell.wobj, &cell.payload, &pose);
    inBase = pose.Frame;
    return demo::Succeeded("Kine_JointToBasePos", code);
}

// One step in a slot; expected is how far it should move the tool centre point, in mm.
bool Jog(const char* label, int32_t mode, int slot, double expected, const Cell& cell, KineJoint& joints)
{
    KineInchDir direction{};
    direction.Slot[slot] = 1;
    // The call converts the steps in place: they are filled in anew for every step.
    double steps[3] = {1.0, 10.0, 5.0};  // deg, mm, deg
    KineFrame before{};
    KineFrame after{};
    if (!PositionOf(joints, cell, before) ||
        !demo::Succeeded("Kine_InchMovePosCalc",
                         Kine_InchMovePosCalc(&direction, mode, &cell.tool, &cell.wobj, &cell.payload, steps,
                                              &joints, &joints)) ||
        !PositionOf(joints, cell, after)) {
        return false;
    }
    demo::PrintFrame(label, after);
    return std::fabs(demo::ResidualOf(before, after).mm - expected) < kMaxErrorMm;
}

// The Z axis of a frame.
void PrintApproach(const char* label, const KineFrame& frame)
{
    const auto r = demo::RotationOf(frame);
    std::printf("  %-14s Z axis of the tool (%.6f, %.6f, %.6f)\n", label, r[2], r[5], r[8]);
}

bool Align(const Cell& cell, KineJoint& joints)
{
    KineFrame before{};
    KineFrame after{};
    if (!PositionOf(joints, cell, before) ||
        !demo::Succeeded("Kine_CalcAlignPos", Kine_CalcAlignPos(kAlignWithBase, &joints, &cell.tool,
                                                                &cell.wobj, &cell.payload, &joints)) ||
        !PositionOf(joints, cell, after)) {
        return false;
    }
    PrintApproach("before", before);
    PrintApproach("aligned", after);
    const auto r = demo::RotationOf(after);
    const bool isDown = std::hypot(r[2], r[5]) < kMaxErrorAxis && r[8] < 0.0;
    return isDown && std::hypot(after.X - before.X, after.Y - before.Y, after.Z - before.Z) < kMaxErrorMm;
}

}  // namespace

int main()
{
    const KineKinematicParam arm = demo::Puma560();
    const Cell cell = MakeCell();
    if (!demo::Succeeded("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm)))
        return 1;

    // The tool points down, some degrees off.
    KineJoint joints = {{180.0, 45.0, 180.0, 3.0, 42.0, 20.0}, {}};
    KineFrame start{};
    if (!PositionOf(joints, cell, start)) return 1;
    std::printf("Jog steps of 10 mm and 5 deg; the tool centre point in the base\n");
    demo::PrintFrame("start", start);
    bool isRight = Jog("base +X", kJogBase, 0, 10.0, cell, joints);
    isRight = Jog("base +X", kJogBase, 0, 10.0, cell, joints) && isRight;
    isRight = Jog("tool +Z", kJogTool, 2, 10.0, cell, joints) && isRight;
    isRight = Jog("about tool Z", kJogTool, 5, 0.0, cell, joints) && isRight;
    isRight = Jog("object +Y", kJogWobj, 1, 10.0, cell, joints) && isRight;

    std::printf("Alignment with the base, the tool centre point kept\n");
    isRight = Align(cell, joints) && isRight;
    std::printf("%s\n",
                isRight ? "Every step moved the tool as asked" : "A step did not move the tool as asked");
    return isRight ? 0 : 1;
}

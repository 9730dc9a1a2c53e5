/* A first program: describe an arm, ask where its flange is, and find the joints that bring it back there. */
#include <stdio.h>

#include "KineDll.h"

int main(void)
{
    /* The Puma 560, lengths in mm and twists in degrees. */
    KineKinematicParam arm = {0};
    arm.SixAxis.a2 = 431.8;
    arm.SixAxis.a3 = 20.3;
    arm.SixAxis.d4 = 431.8;
    arm.SixAxis.d3 = arm.SixAxis.lateralOffset = -150.05;
    arm.SixAxis.alpha1 = 90.0;
    arm.SixAxis.alpha3 = 90.0;
    arm.SixAxis.alpha4 = -90.0;
    arm.SixAxis.alpha5 = 90.0;

    KineResult code = Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm);
    if (code != KINE_OK) return (int)code;

    /* A tool on the flange, a work object that stands still at the world origin, no payload. */
    KineTool tool = {0};
    tool.HeldByRobot = 1;
    tool.TFrame.Z = 100.0;
    KineWobj wobj = {0};
    wobj.UFFix = 1;
    const KineLoad load = {0};

    const KineJoint joints = {.Axis = {180.0, 45.0, 180.0, 0.0, -45.0, 0.0}};
    KinePose pose;
    code = Kine_JointToWobjPos(&joints, &tool, &wobj, &load, &pose);
    if (code != KINE_OK) return (int)code;
    printf("tool centre point: X %.4f  Y %.4f  Z %.4f mm, A %.4f  B %.4f  C %.4f deg\n", pose.Frame.X,
           pose.Frame.Y, pose.Frame.Z, pose.Frame.A, pose.Frame.B, pose.Frame.C);

    /* The pose carries the configuration of the joints, so it leads back to the same ones. */
    KineJoint solved;
    code = Kine_WobjPosToJoint(&pose, &tool, &wobj, &load, &solved);
    if (code != KINE_OK) return (int)code;
    printf("joints:");
    for (int i = 0; i < 6; ++i) printf("  %.4f", solved.Axis[i]);
    printf(" deg\n");
    return 0;
}

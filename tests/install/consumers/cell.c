/* Asks a four-axis arm where its flange is. Ends with 0 when the answer is the one worked out by hand. */
#include <math.h>
#include <stdio.h>

#include "KineDll.h"

int main(void)
{
    KineKinematicParam arm = {0};
    arm.FourAxis.Link1Length = 400.0;
    arm.FourAxis.Link2Length = 300.0;
    arm.FourAxis.ZOffset = 150.0;
    arm.FourAxis.ScrewLead = 20.0;
    KineResult code = Kine_InitKinematicParam(KINE_ARM_FOUR_AXIS, &arm);

    const KineTool tool = {.HeldByRobot = 1};
    const KineWobj wobj = {.UFFix = 1};
    const KineLoad load = {0};
    KinePose pose = {0};
    /* Link 1 points along Y, link 2 along X, the screw has made one turn. */
    const KineJoint joints = {.Axis = {90.0, -90.0, 360.0, 30.0}};
    if (code == KINE_OK) code = Kine_JointToWorldPos(&joints, &tool, &wobj, &load, &pose);

    printf("0x%04X: X %.3f  Y %.3f  Z %.3f  A %.3f\n", (unsigned)code, pose.Frame.X, pose.Frame.Y,
           pose.Frame.Z, pose.Frame.A);
    return code == KINE_OK && fabs(pose.Frame.X - 300.0) < 1e-9 && fabs(pose.Frame.Y - 400.0) < 1e-9 &&
                   fabs(pose.Frame.Z - 170.0) < 1e-9 && fabs(pose.Frame.A - 30.0) < 1e-9
               ? 0
               : 1;
}

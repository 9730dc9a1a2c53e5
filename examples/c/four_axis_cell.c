/*
 * A four-axis arm with a screw at a pallet: describe the arm, ask where the gripper is, reach the same place
 * with the other elbow, lower the gripper by the screw, and see what a place out of reach is answered with.
 *
 * Millimetres and degrees. Every answer is compared with the value that a pencil gives; the program ends with
 * 1 when one differs.
 */
#include <math.h>
#include <stdio.h>

#include "KineDll.h"

static int wrong = 0;

static void Expect(const char* call, KineResult code, KineResult expected)
{
    if (code == expected) return;
    fprintf(stderr, "%s: 0x%04X, expected 0x%04X\n", call, (unsigned)code, (unsigned)expected);
    wrong = 1;
}

/* The refinement of the inverse ends below a micrometre. */
static void ExpectNear(const char* what, double value, double expected)
{
    if (fabs(value - expected) < 1e-4) return;
    fprintf(stderr, "%s is %.9f, expected %.9f\n", what, value, expected);
    wrong = 1;
}

/* Zero without the sign that rounding may have left. */
static double Shown(double value) { return fabs(value) < 1e-6 ? 0.0 : value; }

static void ExpectPlace(const char* title, KineFrame f, double x, double y, double z, double heading)
{
    printf("%-22s X %8.2f  Y %8.2f  Z %8.2f mm   A %7.2f deg\n", title, Shown(f.X), Shown(f.Y), Shown(f.Z),
           Shown(f.A));
    ExpectNear("X", f.X, x);
    ExpectNear("Y", f.Y, y);
    ExpectNear("Z", f.Z, z);
    ExpectNear("A", f.A, heading);
}

static void ExpectJoints(const char* title, const KineJoint* joints, double q1, double q2, double q3,
                         double q4)
{
    const double expected[4] = {q1, q2, q3, q4};
    int i;
    printf("%-22s", title);
    for (i = 0; i < 4; ++i) {
        printf(" %9.3f", joints->Axis[i]);
        ExpectNear("axis", joints->Axis[i], expected[i]);
    }
    printf(" deg\n");
}

int main(void)
{
    KineKinematicParam arm = {0};
    KineTool gripper = {0};
    KineWobj pallet = {0};
    KineWobj world = {0};
    const KineLoad payload = {0};
    /* Axis 3 is the angle of the screw: 2.5 revolutions back, at 20 mm each, lower the flange by 50 mm. */
    const KineJoint joints = {{90.0, -90.0, -900.0, 90.0}, {0.0}};
    KinePose pose = {0};
    KinePose target;
    KineJoint solved = {0};
    KineResult code;

    arm.FourAxis.Link1Length = 325.0;
    arm.FourAxis.Link2Length = 275.0;
    arm.FourAxis.ZOffset = 250.0; /* height of the flange with axis 3 at 0 */
    arm.FourAxis.ScrewLead = 20.0;
    Expect("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_FOUR_AXIS, &arm), KINE_OK);

    /* The gripper hangs 60 mm below the flange, 40 mm off its axis. */
    gripper.HeldByRobot = 1;
    gripper.TFrame.X = 40.0;
    gripper.TFrame.Z = -60.0;
    world.UFFix = 1;
    pallet.UFFix = 1;
    pallet.UFrame.X = 200.0;
    pallet.UFrame.Y = 300.0;
    pallet.UFrame.A = 90.0;

    /* Link 1 points along Y and link 2 along X, so that the flange is at (275, 325). Its heading is the sum
     * of axes 1, 2 and 4, 90 degrees: the gripper is 40 mm further along Y. Height: 250 - 50 - 60. */
    Expect("Kine_JointToBasePos", Kine_JointToBasePos(&joints, &gripper, &world, &payload, &pose), KINE_OK);
    ExpectPlace("gripper in the base", pose.Frame, 275.0, 365.0, 140.0, 90.0);

    /* Seen from the corner of the pallet it is (75, 65) away; the pallet's X is Y of the base, its Y is -X.
     * */
    Expect("Kine_JointToWobjPos", Kine_JointToWobjPos(&joints, &gripper, &pallet, &payload, &pose), KINE_OK);
    ExpectPlace("gripper at the pallet", pose.Frame, 65.0, -75.0, 140.0, 0.0);

    /* Cfg1 is the elbow: -1 for a negative axis 2, +1 for a positive one. The other elbow mirrors the arm
     * about the line to the flange, which stands at atan2(325, 275); axis 4 keeps the sum. */
    ExpectNear("Cfg1", pose.Cfg1, -1.0);
    target = pose;
    target.Cfg1 = 1;
    Expect("other elbow", Kine_WobjPosToJoint(&target, &gripper, &pallet, &payload, &solved), KINE_OK);
    {
        const double q1 = 2.0 * atan2(325.0, 275.0) * 57.29577951308232 - 90.0;
        ExpectJoints("other elbow", &solved, q1, 90.0, -900.0, -q1);
    }

    /* Down by 10 mm is half a revolution of the screw and nothing else. */
    target = pose;
    target.Frame.Z -= 10.0;
    Expect("10 mm lower", Kine_WobjPosToJoint(&target, &gripper, &pallet, &payload, &solved), KINE_OK);
    ExpectJoints("10 mm lower", &solved, 90.0, -90.0, -1080.0, 90.0);

    /* The links are 600 mm together. The library prints one line, with the code as a decimal number: 24724 is
     * 0x6094. */
    target = pose;
    target.Frame.X += 600.0;
    code = Kine_WobjPosToJoint(&target, &gripper, &pallet, &payload, &solved);
    Expect("600 mm further", code, KINE_ERR_IK_REACH);
    printf("600 mm further: 0x%04X %s\n", (unsigned)code,
           code == KINE_ERR_IK_REACH ? "KINE_ERR_IK_REACH" : "");

    printf("%s\n", wrong ? "WRONG" : "all as expected");
    return wrong;
}

/*
 * A six-axis robot on a track beside a turntable: describe the cell, ask where the tool is, drive the same
 * target with the wrist the other way round, and see what a target out of reach is answered with.
 *
 * Millimetres and degrees. Every answer is compared with the value that a pencil gives; the program ends with
 * 1 when one differs.
 */
#include <math.h>
#include <stdio.h>

#include "KineDll.h"

static int wrong = 0;

/* What the codes are called that this program meets; docs/result_codes.md lists them all. */
static const char* NameOf(KineResult code)
{
    switch (code) {
        case KINE_OK: return "KINE_OK";
        case KINE_ERR_NOT_INITIALISED: return "KINE_ERR_NOT_INITIALISED";
        case KINE_ERR_CONFIG: return "KINE_ERR_CONFIG";
        case KINE_ERR_IK_7: return "KINE_ERR_IK_7 (out of reach)";
        default: return "another code";
    }
}

static void Expect(const char* call, KineResult code, KineResult expected)
{
    if (code == expected) return;
    fprintf(stderr, "%s: 0x%04X %s, expected %s\n", call, (unsigned)code, NameOf(code), NameOf(expected));
    wrong = 1;
}

/* The tolerance is far above rounding and far below what a robot can show. Angles that differ by a turn are
 * one. */
static void ExpectNear(const char* what, double value, double expected, int isAngle)
{
    const double difference = isAngle ? remainder(value - expected, 360.0) : value - expected;
    if (fabs(difference) < 1e-6) return;
    fprintf(stderr, "%s is %.9f, expected %.9f\n", what, value, expected);
    wrong = 1;
}

/* Zero without the sign that rounding may have left. */
static double Shown(double value) { return fabs(value) < 1e-6 ? 0.0 : value; }

static void ExpectFrame(const char* title, KineFrame f, KineFrame expected)
{
    printf("%-22s X %8.2f  Y %8.2f  Z %8.2f mm   A %7.2f  B %7.2f  C %7.2f deg\n", title, Shown(f.X),
           Shown(f.Y), Shown(f.Z), Shown(f.A), Shown(f.B), Shown(f.C));
    ExpectNear("X", f.X, expected.X, 0);
    ExpectNear("Y", f.Y, expected.Y, 0);
    ExpectNear("Z", f.Z, expected.Z, 0);
    ExpectNear("A", f.A, expected.A, 1);
    ExpectNear("B", f.B, expected.B, 1);
    ExpectNear("C", f.C, expected.C, 1);
}

/* The lengths are those on the data sheet. The twists and d3 = lateralOffset are the same for every robot of
 * this build: leave them as they are here. */
static void DescribeArm(void)
{
    KineKinematicParam arm = {0};
    arm.SixAxis.d1 = 450.0; /* floor to axis 2 */
    arm.SixAxis.a1 = 150.0; /* axis 1 to axis 2, forward */
    arm.SixAxis.a2 = 600.0; /* upper arm */
    arm.SixAxis.a3 = 100.0; /* from the elbow up to the forearm */
    arm.SixAxis.d4 = 650.0; /* forearm */
    arm.SixAxis.d6 = 100.0; /* wrist to flange */
    arm.SixAxis.lateralOffset = arm.SixAxis.d3 = 0.0;
    arm.SixAxis.alpha1 = 90.0;
    arm.SixAxis.alpha2 = 0.0;
    arm.SixAxis.alpha3 = 90.0;
    arm.SixAxis.alpha4 = -90.0;
    arm.SixAxis.alpha5 = 90.0;
    Expect("Kine_InitKinematicParam", Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm), KINE_OK);

    /* Limits bound the whole turns that a target may ask for. Joints are not checked against them. */
    {
        const KineJoint upper = {{170.0, 130.0, 160.0, 190.0, 120.0, 360.0}, {0.0}};
        const KineJoint lower = {{-170.0, -100.0, -80.0, -190.0, -120.0, -360.0}, {0.0}};
        Expect("Kine_SetAxisLimit", Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    }
}

/* Unit 0: a track under the robot, driven by external axis 0. Unit 1: a turntable, driven by external axis 1.
 * A work object cannot stand on unit 0, so that the track comes first. */
static void DescribeUnits(void)
{
    const KineFrame trackInWorld = {0.0, -500.0, 0.0, 90.0, 0.0, 0.0}; /* runs along Y of the world */
    const KineFrame tableInWorld = {0.0, 1500.0, 600.0, 0.0, 0.0, 0.0};
    KineMechUnit track = {0};
    KineMechUnit table = {0};
    track.Active = 1;
    track.UnitKind = 1;
    track.AxisCount = 1;
    track.AxisFrame[0] = trackInWorld;
    track.AxisParamIndex[0] = 0;
    track.Option1 = 1; /* the robot stands on a unit ... */
    track.Option2 = 0; /* ... on this one */
    table.Active = 1;
    table.UnitKind = 2;
    table.AxisCount = 1;
    table.AxisFrame[0] = tableInWorld;
    table.AxisParamIndex[0] = 1;

    /* The counts come first: a unit may not have more axes than there are. */
    Expect("Kine_SetMechUnitGlobalCfg", Kine_SetMechUnitGlobalCfg(2, 2, 1), KINE_OK);
    Expect("Kine_SetMechUnitParam", Kine_SetMechUnitParam(0, &track), KINE_OK);
    Expect("Kine_SetMechUnitParam", Kine_SetMechUnitParam(1, &table), KINE_OK);
}

int main(void)
{
    KineTool tool = {0};
    KineWobj world = {0};
    KineWobj fixture = {0};
    const KineLoad payload = {0};
    const KineJoint joints = {{0.0, 0.0, 0.0, 0.0, -90.0, 0.0}, {1200.0, 90.0}};
    KinePose pose = {0};
    KinePose target;
    KineJoint solved = {0};
    int i;

    DescribeArm();
    DescribeUnits();

    /* On the flange a gripper of 200 mm. On the turntable a fixture, 50 mm off the middle and 100 mm high. */
    tool.HeldByRobot = 1;
    tool.TFrame.Z = 200.0;
    fixture.UFFix = 0;
    fixture.MechUnitIndex = 1;
    fixture.OFrame.X = 50.0;
    fixture.OFrame.Z = 100.0;
    world.UFFix = 1;

    /* With these joints the upper arm is upright, the forearm level, and the gripper points straight down:
     * X = a1 + d4 = 800, Z = d1 + a2 + a3 - d6 - 200 = 850. Pointing down is a half turn about X: C = 180. */
    {
        const KineFrame expected = {800.0, 0.0, 850.0, 0.0, 0.0, 180.0};
        Expect("Kine_JointToBasePos", Kine_JointToBasePos(&joints, &tool, &world, &payload, &pose), KINE_OK);
        ExpectFrame("gripper in the base", pose.Frame, expected);
    }
    /* The track has brought the base to Y = -500 + 1200 = 700, turned by 90 degrees: forward is Y of the
     * world. */
    {
        const KineFrame expected = {0.0, 1500.0, 850.0, 90.0, 0.0, 180.0};
        Expect("Kine_JointToWorldPos", Kine_JointToWorldPos(&joints, &tool, &world, &payload, &pose),
               KINE_OK);
        ExpectFrame("gripper in the world", pose.Frame, expected);
    }
    /* The table is turned by 90 degrees, so that the fixture stands at Y = 1550, Z = 700 and its X axis looks
     * along Y of the world: the gripper is 50 mm behind it and 150 mm above. */
    {
        const KineFrame expected = {-50.0, 0.0, 150.0, 0.0, 0.0, 180.0};
        Expect("Kine_JointToWobjPos", Kine_JointToWobjPos(&joints, &tool, &fixture, &payload, &pose),
               KINE_OK);
        ExpectFrame("gripper at the fixture", pose.Frame, expected);
    }

    /* The pose says how it was reached: Cfg4 is the posture, here 1 for a negative axis 5. Asked for posture
     * 0, the wrist comes the other way: axis 5 at +90, axes 4 and 6 half a turn away. Cfg2 and Cfg3 say which
     * half turn, in quarter turns: axis 4 towards +180, axis 6 towards -180. */
    ExpectNear("Cfg4", pose.Cfg4, 1.0, 0);
    target = pose;
    target.Cfg4 = 0;
    target.Cfg2 = 1;
    target.Cfg3 = -1;
    Expect("Kine_WobjPosToJoint", Kine_WobjPosToJoint(&target, &tool, &fixture, &payload, &solved), KINE_OK);
    {
        const double expected[6] = {0.0, 0.0, 0.0, 180.0, 90.0, -180.0};
        printf("other wrist           ");
        for (i = 0; i < 6; ++i) {
            printf(" %8.2f", Shown(solved.Axis[i]));
            ExpectNear("axis", solved.Axis[i], expected[i], 0);
        }
        printf(" deg\n");
    }

    /* A turn that the limits of axis 6 exclude, and a fixture that is too far away. The library prints one
     * line where a step of the chain fails, with the code as a decimal number: 24727 is 0x6097. */
    target = pose;
    target.Cfg3 = 12;
    Expect("a turn too many", Kine_WobjPosToJoint(&target, &tool, &fixture, &payload, &solved),
           KINE_ERR_CONFIG);
    target = pose;
    target.Frame.Z += 2000.0;
    {
        const KineResult code = Kine_WobjPosToJoint(&target, &tool, &fixture, &payload, &solved);
        Expect("2 m higher", code, KINE_ERR_IK_7);
        printf("2 m higher: 0x%04X %s\n", (unsigned)code, NameOf(code));
    }
    printf("%s\n", wrong ? "WRONG" : "all as expected");
    return wrong;
}

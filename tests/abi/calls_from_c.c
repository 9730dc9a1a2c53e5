/*
 * Every function called from C, with function pointers of the documented types: a different parameter type
 * does not compile, a different name does not link.
 */
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "KineDll.h"

static int failures = 0;

static void Expect(int condition, const char* what, int line)
{
    if (!condition) {
        printf("line %d: %s\n", line, what);
        ++failures;
    }
}

#define EXPECT(condition) Expect((condition) != 0, #condition, __LINE__)

typedef KineResult(KINE_CALL* ForwardCall)(const KineJoint*, const KineTool*, const KineWobj*,
                                           const KineLoad*, KinePose*);

static KineResult(KINE_CALL* const init)(uint32_t, const KineKinematicParam*) = Kine_InitKinematicParam;
static KineResult(KINE_CALL* const setLimit)(const KineJoint*, const KineJoint*) = Kine_SetAxisLimit;
static KineResult(KINE_CALL* const setCounts)(uint32_t, uint32_t, uint32_t) = Kine_SetMechUnitGlobalCfg;
static KineResult(KINE_CALL* const setUnit)(int32_t, const KineMechUnit*) = Kine_SetMechUnitParam;
static KineResult(KINE_CALL* const setExtAxis)(int32_t, const KineExtAxisParam*) = Kine_SetExtAxisParam;
static KineResult(KINE_CALL* const getArmType)(const KineJoint*, KineArmConfig*) = Kine_GetArmType;
static KineResult(KINE_CALL* const isValid)(const KinePose*) = Kine_IsArmTypeValid;
static KineResult(KINE_CALL* const isSingular)(const KineJoint*, uint32_t) = Kine_IsSingularity;
static KineResult(KINE_CALL* const vision)(const KineJoint*, KinePose*) = Kine_FKineVision;
static KineResult(KINE_CALL* const inverse)(const KinePose*, const KineTool*, const KineWobj*,
                                            const KineLoad*, KineJoint*) = Kine_WobjPosToJoint;

typedef KineResult(KINE_CALL* GripCall)(const KinePose*, const KineWobj*, const KinePose*, KinePose*);
typedef KineResult(KINE_CALL* OffsetCall)(const KinePose*, const KineFrame*, KinePose*);

static KineResult(KINE_CALL* const worldToFix)(const KinePose*, const KineWobj*,
                                               KinePose*) = Kine_WorldPosToFixWobjPos;
static const GripCall worldToGrip = Kine_WorldPosToGripWobjPos;
static const GripCall gripToWorld = Kine_GripWobjPosToWorldPos;
static KineResult(KINE_CALL* const crdToWobj)(const KinePose*, int32_t, const KineTool*, const KineWobj*,
                                              const KineLoad*, KinePose*) = Kine_CrdPosToWobjPos;
static const OffsetCall toolOffset = Kine_ToolCoordOffset;
static const OffsetCall wobjOffset = Kine_WobjCoordOffset;
static KineResult(KINE_CALL* const inch)(const KineInchDir*, int32_t, const KineTool*, const KineWobj*,
                                         const KineLoad*, double*, const KineJoint*,
                                         KineJoint*) = Kine_InchMovePosCalc;
static KineResult(KINE_CALL* const align)(int32_t, const KineJoint*, const KineTool*, const KineWobj*,
                                          const KineLoad*, KineJoint*) = Kine_CalcAlignPos;
static KineResult(KINE_CALL* const swapRoles)(KineTool*, KineWobj*) = Kine_CalcAlignCoordProc;
static KineResult(KINE_CALL* const normal)(const KineFrame*, const KineFrame*, const KineFrame*, double,
                                           double*) = Kine_CalcZVec;
static int32_t(KINE_CALL* const safeArea)(const KineJoint*, const double*, double) = SafeArea_Check;
static KineResult(KINE_CALL* const difference)(const KinePose*, const KinePose*, int32_t,
                                               KineFrame*) = Kine_CalcPosDif;

/* n taught poses, then the results. */
#define POSES_1 const KinePose*
#define POSES_2 POSES_1, const KinePose*
#define POSES_3 POSES_2, const KinePose*
#define POSES_5 POSES_3, POSES_2
#define POSES_6 POSES_5, const KinePose*
typedef KineResult(KINE_CALL* Tool3PCall)(POSES_3, KineFrame*, KineCalibError*);
typedef KineResult(KINE_CALL* Tool3PZXCall)(POSES_6, KineFrame*, KineCalibError*);
typedef KineResult(KINE_CALL* User3PCall)(POSES_3, KineFrame*, double*);
typedef KineResult(KINE_CALL* Object3PCall)(POSES_3, const KineFrame*, KineFrame*, double*);

static KineResult(KINE_CALL* const extTool1P)(POSES_1, KineFrame*) = Kine_CalcExtToolPrm_1P;
static KineResult(KINE_CALL* const extTool1PZX)(POSES_3, KineFrame*) = Kine_CalcExtToolPrm_1PZX;
static const Tool3PCall extTool3P = Kine_CalcExtToolPrm_3P;
static const Tool3PZXCall extTool3PZX = Kine_CalcExtToolPrm_3PZX;
static const Tool3PCall gripTool3P = Kine_CalcGripToolPrm_3P;
static const Tool3PZXCall gripTool3PZX = Kine_CalcGripToolPrm_3PZX;
static KineResult(KINE_CALL* const gripTool5P)(POSES_5, KineFrame*,
                                               KineCalibError*) = Kine_CalcGripToolPrm_5P;
static KineResult(KINE_CALL* const scara2P)(POSES_2, KineFrame*) = Kine_CalcGripToolPrm_Scara2P;
static KineResult(KINE_CALL* const user2P)(POSES_2, KineFrame*, double*) = Kine_CalcExtWobj_UserPrm_2P;
static const User3PCall extUser3P = Kine_CalcExtWobj_UserPrm_3P;
static const User3PCall gripUser3P = Kine_CalcGripWobj_UserPrm_3P;
static const User3PCall circle3P = Kine_CalcExtWobj_UserPrm_Cirle3P;
static const Object3PCall extObject3P = Kine_CalcExtWobj_ObjPrm_3P;
static const Object3PCall gripObject3P = Kine_CalcGripWobj_ObjPrm_3P;
static KineResult(KINE_CALL* const unFixObject3P)(int32_t, POSES_3, KineFrame*,
                                                  double*) = Kine_CalcUnFixWobj_ObjPrm_3P;
static KineResult(KINE_CALL* const firstAxis)(int32_t, POSES_3, KineFrame*) = Kine_CalcPositionerJ1Prm_3P;
static KineResult(KINE_CALL* const furtherAxis)(int32_t, int32_t, POSES_3, const KineFrame*,
                                                KineFrame*) = Kine_CalcPositionerJnPrm_3P;
static KineResult(KINE_CALL* const robotBase)(int32_t, POSES_3, KineFrame*,
                                              KineCalibError*) = Kine_CalcRobotBasePrm_3P;

/* An arm of 500 and 400 mm on a column of 300 mm: stretched up and forward at joints 0. */
static KineKinematicParam PlainArm(void)
{
    KineKinematicParam param;
    memset(&param, 0, sizeof param);
    param.SixAxis.a2 = 500.0;
    param.SixAxis.d4 = 400.0;
    param.SixAxis.d1 = 300.0;
    param.SixAxis.alpha1 = 90.0;
    param.SixAxis.alpha3 = 90.0;
    param.SixAxis.alpha4 = -90.0;
    param.SixAxis.alpha5 = 90.0;
    return param;
}

static void CheckSetup(void)
{
    const KineKinematicParam param = PlainArm();
    KineJoint upper;
    KineJoint lower;
    KineMechUnit unit;
    KineExtAxisParam axis;
    int i;
    memset(&upper, 0, sizeof upper);
    memset(&lower, 0, sizeof lower);
    memset(&unit, 0, sizeof unit);
    memset(&axis, 0, sizeof axis);
    for (i = 0; i < 6; ++i) {
        upper.Axis[i] = 360.0;
        lower.Axis[i] = -360.0;
    }
    EXPECT(init(KINE_ARM_SIX_AXIS, &param) == KINE_OK);
    EXPECT(setLimit(&upper, &lower) == KINE_OK);
    EXPECT(setCounts(3, 6, 1) == KINE_OK);
    EXPECT(setUnit(0, &unit) == KINE_OK);
    EXPECT(setExtAxis(0, &axis) == KINE_OK);
}

static void CheckChains(void)
{
    const ForwardCall forward[4] = {Kine_JointToBasePos, Kine_JointToFlangePos, Kine_JointToWorldPos,
                                    Kine_JointToWobjPos};
    KineJoint joints;
    KineJoint solved;
    KineArmConfig config;
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
    KinePose pose;
    int i;
    memset(&joints, 0, sizeof joints);
    memset(&tool, 0, sizeof tool);
    memset(&wobj, 0, sizeof wobj);
    memset(&load, 0, sizeof load);
    tool.HeldByRobot = 1;
    wobj.UFFix = 1;
    EXPECT(isSingular(&joints, 0) == KINE_SINGULAR);
    joints.Axis[4] = 90.0;
    EXPECT(isSingular(&joints, 0) == KINE_OK);
    EXPECT(getArmType(&joints, &config) == KINE_OK);
    EXPECT(config.Cfg1 == 0 && config.Cfg2 == 0 && config.Cfg3 == 0 && config.Cfg4 == 0);
    EXPECT(vision(&joints, &pose) == KINE_OK);
    EXPECT(fabs(pose.Frame.X - 400.0) < 1e-9);
    for (i = 0; i < 4; ++i) EXPECT(forward[i](&joints, &tool, &wobj, &load, &pose) == KINE_OK);
    EXPECT(fabs(pose.Frame.X - 400.0) < 1e-9);
    EXPECT(fabs(pose.Frame.Y) < 1e-9);
    EXPECT(fabs(pose.Frame.Z - 800.0) < 1e-9);
    EXPECT(isValid(&pose) == KINE_OK);
    EXPECT(inverse(&pose, &tool, &wobj, &load, &solved) == KINE_OK);
    for (i = 0; i < 6; ++i) EXPECT(fabs(solved.Axis[i] - joints.Axis[i]) < 1e-9);
}

static int IsAt(const KinePose* pose, double x, double y, double z, double a)
{
    return fabs(pose->Frame.X - x) < 1e-9 && fabs(pose->Frame.Y - y) < 1e-9 &&
           fabs(pose->Frame.Z - z) < 1e-9 && fabs(pose->Frame.A - a) < 1e-9;
}

/* The object stands at (100, 0, 0), turned by 90 degrees: its x is y of the reference. */
static void CheckConversions(void)
{
    KinePose pose;
    KinePose flange;
    KinePose out;
    KineFrame offset;
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
    memset(&pose, 0, sizeof pose);
    memset(&flange, 0, sizeof flange);
    memset(&offset, 0, sizeof offset);
    memset(&tool, 0, sizeof tool);
    memset(&wobj, 0, sizeof wobj);
    memset(&load, 0, sizeof load);
    wobj.UFFix = 1;
    wobj.UFrame.X = 100.0;
    wobj.UFrame.A = 90.0;
    pose.Frame.X = 100.0;
    pose.Frame.Y = 30.0;
    pose.Frame.A = 90.0;
    EXPECT(worldToFix(&pose, &wobj, &out) == KINE_OK);
    EXPECT(IsAt(&out, 30.0, 0.0, 0.0, 0.0));
    EXPECT(crdToWobj(&pose, -1, &tool, &wobj, &load, &out) == KINE_OK);
    EXPECT(IsAt(&out, 30.0, 0.0, 0.0, 0.0));
    wobj.HeldByRobot = 1;
    flange.Frame.Z = 5.0;
    EXPECT(worldToGrip(&pose, &wobj, &flange, &out) == KINE_OK);
    EXPECT(IsAt(&out, 30.0, 0.0, -5.0, 0.0));
    EXPECT(gripToWorld(&out, &wobj, &flange, &out) == KINE_OK);
    EXPECT(IsAt(&out, 100.0, 30.0, 0.0, 90.0));
    offset.X = 7.0;
    EXPECT(toolOffset(&pose, &offset, &out) == KINE_OK);
    EXPECT(IsAt(&out, 100.0, 37.0, 0.0, 90.0));
    EXPECT(wobjOffset(&pose, &offset, &out) == KINE_OK);
    EXPECT(IsAt(&out, 107.0, 30.0, 0.0, 90.0));
    EXPECT(difference(&pose, &out, -1, &offset) == KINE_OK);
    EXPECT(fabs(offset.X) < 1e-9 && fabs(offset.Y + 7.0) < 1e-9);
    EXPECT(swapRoles(&tool, &wobj) == KINE_OK);
    EXPECT(tool.HeldByRobot == 1 && wobj.HeldByRobot == 0);
    EXPECT(fabs(tool.TFrame.X - 100.0) < 1e-9 && fabs(tool.TFrame.A - 90.0) < 1e-9);
    EXPECT(wobj.UFrame.X == 0.0);
}

static void CheckMotion(void)
{
    const double centre[3] = {0.0, 0.0, 0.0};
    double steps[3] = {10.0, 0.0, 0.0};
    double n[3] = {0.0, 0.0, 0.0};
    KineFrame p[3];
    KineInchDir dir;
    KineJoint joints;
    KineJoint target;
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
    int i;
    memset(p, 0, sizeof p);
    memset(&dir, 0, sizeof dir);
    memset(&joints, 0, sizeof joints);
    memset(&tool, 0, sizeof tool);
    memset(&wobj, 0, sizeof wobj);
    memset(&load, 0, sizeof load);
    p[1].X = 1.0;
    p[2].Y = 1.0;
    EXPECT(normal(&p[0], &p[1], &p[2], 5.0, n) == KINE_OK);
    EXPECT(n[0] == 0.0 && n[1] == 0.0 && n[2] == 5.0);
    EXPECT(safeArea(&joints, centre, 1000.0) == (int32_t)KINE_ERR_WOBJ);

    tool.HeldByRobot = 1;
    wobj.UFFix = 1;
    joints.Axis[4] = 80.0;
    dir.Slot[1] = -1;
    EXPECT(inch(&dir, 1, &tool, &wobj, &load, steps, &joints, &target) == KINE_OK);
    for (i = 0; i < 6; ++i) EXPECT(fabs(target.Axis[i] - (i == 1 ? -10.0 : joints.Axis[i])) < 1e-9);
    EXPECT(fabs(steps[0] - 10.0 / 57.29577951308232) < 1e-15);

    /* All links lie in one plane, and axis 5 stands across it: ten degrees more and the tool points along the
     * base. */
    EXPECT(align(2, &joints, &tool, &wobj, &load, &target) == KINE_OK);
    for (i = 0; i < 6; ++i) EXPECT(fabs(target.Axis[i] - (i == 4 ? 90.0 : 0.0)) < 1e-9);
}

static KinePose PoseAt(double x, double y, double z, double a, double b, double c)
{
    const KineFrame frame = {x, y, z, a, b, c};
    KinePose pose;
    memset(&pose, 0, sizeof pose);
    pose.Frame = frame;
    return pose;
}

static int IsFrame(const KineFrame* frame, double x, double y, double z, double a, double b, double c)
{
    return fabs(frame->X - x) < 1e-9 && fabs(frame->Y - y) < 1e-9 && fabs(frame->Z - z) < 1e-9 &&
           fabs(frame->A - a) < 1e-9 && fabs(frame->B - b) < 1e-9 && fabs(frame->C - c) < 1e-9;
}

/* A tip at (10, 20, 30) in the flange touches the origin, upright and turned by 90 degrees about each axis. */
static void CheckToolCalibrations(void)
{
    const KinePose upright = PoseAt(-10.0, -20.0, -30.0, 0.0, 0.0, 0.0);
    const KinePose aboutZ = PoseAt(20.0, -10.0, -30.0, 90.0, 0.0, 0.0);
    const KinePose aboutY = PoseAt(-30.0, -20.0, 10.0, 0.0, 90.0, 0.0);
    const KinePose aboutX = PoseAt(-10.0, 30.0, -20.0, 0.0, 0.0, 90.0);
    const KinePose turned = PoseAt(10.0, 20.0, -30.0, 180.0, 0.0, 0.0);
    const KinePose zPose = PoseAt(-10.0, -20.0, -20.0, 0.0, 0.0, 0.0);
    const KinePose xPose = PoseAt(-10.0, -10.0, -30.0, 0.0, 0.0, 0.0);
    KineFrame frame;
    KineCalibError error;
    EXPECT(extTool1P(&upright, &frame) == KINE_OK);
    EXPECT(IsFrame(&frame, -10.0, -20.0, -30.0, 0.0, 0.0, 0.0));
    EXPECT(extTool1PZX(&upright, &zPose, &xPose, &frame) == KINE_OK);
    EXPECT(IsFrame(&frame, -10.0, -20.0, -30.0, 90.0, 0.0, 0.0));
    EXPECT(extTool3P(&upright, &aboutZ, &aboutY, &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT(extTool3PZX(&upright, &aboutZ, &aboutY, &upright, &zPose, &xPose, &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 0.0, 0.0, 0.0, 90.0, 0.0, 0.0));
    EXPECT(gripTool3P(&upright, &aboutZ, &aboutY, &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 10.0, 20.0, 30.0, 0.0, 0.0, 0.0));
    EXPECT(error.Largest < 1e-9 && error.Mean < 1e-9 && error.Smallest < 1e-9);
    EXPECT(gripTool3PZX(&upright, &aboutZ, &aboutY, &upright, &zPose, &xPose, &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 10.0, 20.0, 30.0, 90.0, 0.0, 0.0));
    EXPECT(gripTool5P(&upright, &aboutZ, &aboutY, &aboutX, &turned, &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 10.0, 20.0, 30.0, 0.0, 0.0, 0.0));
    EXPECT(scara2P(&upright, &aboutZ, &frame) == KINE_ERR_NOT_INITIALISED);
}

/* A frame at (1, 2, 3), turned by 90 degrees about Z. */
static void CheckWobjCalibrations(void)
{
    const KinePose origin = PoseAt(1.0, 2.0, 3.0, 0.0, 0.0, 0.0);
    const KinePose x = PoseAt(1.0, 7.0, 3.0, 0.0, 0.0, 0.0);
    const KinePose xy = PoseAt(-4.0, 2.0, 3.0, 0.0, 0.0, 0.0);
    const KinePose opposite = PoseAt(1.0, -3.0, 3.0, 0.0, 0.0, 0.0);
    const KineFrame user = {1.0, 0.0, 0.0, 90.0, 0.0, 0.0};
    KineFrame frame;
    double tilt;
    EXPECT(user2P(&origin, &x, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 1.0, 2.0, 3.0, 90.0, 0.0, 0.0) && tilt == 0.0);
    EXPECT(extUser3P(&origin, &x, &xy, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 1.0, 2.0, 3.0, 90.0, 0.0, 0.0) && tilt == 0.0);
    EXPECT(gripUser3P(&origin, &x, &xy, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 1.0, 2.0, 3.0, 90.0, 0.0, 0.0) && tilt == 0.0);
    EXPECT(circle3P(&x, &xy, &opposite, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 1.0, 2.0, 3.0, 90.0, 0.0, 0.0) && tilt == 0.0);
    EXPECT(extObject3P(&origin, &x, &xy, &user, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 2.0, 0.0, 3.0, 0.0, 0.0, 0.0) && tilt == 0.0);
    EXPECT(gripObject3P(&origin, &x, &xy, &user, &frame, &tilt) == KINE_OK);
    EXPECT(IsFrame(&frame, 2.0, 0.0, 3.0, 0.0, 0.0, 0.0) && tilt < 1e-9);
    /* The unit is none: it leaves all points at zero. */
    EXPECT(unFixObject3P(0, &origin, &x, &xy, &frame, &tilt) == KINE_ERR_CALIB_POINTS_CLOSE);
}

/* A mark that turns about the vertical through (1, 2), and a track along the base X axis. */
static void CheckPositionerCalibrations(void)
{
    const KinePose q1 = PoseAt(6.0, 2.0, 3.0, 0.0, 0.0, 0.0);
    const KinePose q2 = PoseAt(1.0, 7.0, 3.0, 0.0, 0.0, 0.0);
    const KinePose q3 = PoseAt(-4.0, 2.0, 3.0, 0.0, 0.0, 0.0);
    KinePose onTrack[3];
    KineMechUnit unit;
    KineExtAxisParam axis;
    KineFrame frame;
    KineCalibError error;
    int i;
    memset(&unit, 0, sizeof unit);
    memset(&axis, 0, sizeof axis);
    memset(&frame, 0, sizeof frame);
    unit.AxisCount = 2;
    unit.AxisParamIndex[1] = 1;
    EXPECT(setUnit(0, &unit) == KINE_OK);
    EXPECT(firstAxis(0, &q1, &q2, &q3, &frame) == KINE_OK);
    EXPECT(IsFrame(&frame, 1.0, 2.0, 3.0, 0.0, 0.0, 0.0));
    EXPECT(furtherAxis(0, 2, &q1, &q2, &q3, &frame, &frame) == KINE_OK);
    EXPECT(IsFrame(&frame, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0));

    for (i = 0; i < 3; ++i) {
        onTrack[i] = PoseAt(500.0 - 100.0 * i, 0.0, 0.0, 0.0, 0.0, 0.0);
        onTrack[i].ExtAxis[0] = 100.0 * i;
    }
    axis.Word[3] = 1;
    EXPECT(setExtAxis(0, &axis) == KINE_OK);
    EXPECT(robotBase(0, &onTrack[0], &onTrack[1], &onTrack[2], &frame, &error) == KINE_OK);
    EXPECT(IsFrame(&frame, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT(error.Largest < 1e-9 && error.Mean < 1e-9 && error.Smallest < 1e-9);
}

int main(void)
{
    CheckSetup();
    CheckChains();
    CheckConversions();
    CheckMotion();
    CheckToolCalibrations();
    CheckWobjCalibrations();
    CheckPositionerCalibrations();
    return failures == 0 ? 0 : 1;
}

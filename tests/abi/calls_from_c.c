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

int main(void)
{
    CheckSetup();
    CheckChains();
    return failures == 0 ? 0 : 1;
}

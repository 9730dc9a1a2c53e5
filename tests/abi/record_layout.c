/*
 * Sizes, offsets and types of the public records and the values of the result codes, as a C compiler sees
 * them, apart from the header's own assertions: records are filled byte by byte and read back by name.
 */
#include <stddef.h>
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

/* The field starts at the offset and is as wide as the type. */
#define EXPECT_FIELD(record, field, offset, type)        \
    EXPECT(offsetof(record, field) == (size_t)(offset)); \
    EXPECT(sizeof(((record*)0)->field) == sizeof(type))

/* A value written at the offset is read back through the field. */
#define EXPECT_VALUE(record, field, offset, type, value)                      \
    do {                                                                      \
        record filled;                                                        \
        const type written = (value);                                         \
        memset(&filled, 0, sizeof filled);                                    \
        memcpy((unsigned char*)&filled + (offset), &written, sizeof written); \
        EXPECT(filled.field == (value));                                      \
    } while (0)

static void CheckPlatform(void)
{
    const uint32_t one = 1;
    EXPECT(*(const unsigned char*)&one == 1);
    EXPECT(sizeof(double) == 8);
    EXPECT(sizeof(float) == 4);
    EXPECT(sizeof(KineResult) == 4);
    EXPECT((KineResult)-1 > 0);
}

static void CheckFrame(void)
{
    EXPECT(sizeof(KineFrame) == 48);
    EXPECT_VALUE(KineFrame, X, 0, double, 1.5);
    EXPECT_VALUE(KineFrame, Y, 8, double, 1.5);
    EXPECT_VALUE(KineFrame, Z, 16, double, 1.5);
    EXPECT_VALUE(KineFrame, A, 24, double, 1.5);
    EXPECT_VALUE(KineFrame, B, 32, double, 1.5);
    EXPECT_VALUE(KineFrame, C, 40, double, 1.5);
}

static void CheckPoseAndConfig(void)
{
    EXPECT(sizeof(KinePose) == 112);
    EXPECT_FIELD(KinePose, Frame, 0, KineFrame);
    EXPECT_VALUE(KinePose, Cfg1, 48, int32_t, -1);
    EXPECT_VALUE(KinePose, Cfg2, 52, int32_t, -2);
    EXPECT_VALUE(KinePose, Cfg3, 56, int32_t, -3);
    EXPECT_VALUE(KinePose, Cfg4, 60, int32_t, -4);
    EXPECT_FIELD(KinePose, ExtAxis, 64, double[6]);
    EXPECT_VALUE(KinePose, ExtAxis[5], 104, double, 2.5);

    EXPECT(sizeof(KineArmConfig) == 16);
    EXPECT_VALUE(KineArmConfig, Cfg1, 0, int32_t, -1);
    EXPECT_VALUE(KineArmConfig, Cfg2, 4, int32_t, -2);
    EXPECT_VALUE(KineArmConfig, Cfg3, 8, int32_t, -3);
    EXPECT_VALUE(KineArmConfig, Cfg4, 12, int32_t, -4);
}

static void CheckJoint(void)
{
    EXPECT(sizeof(KineJoint) == 112);
    EXPECT_FIELD(KineJoint, Axis, 0, double[8]);
    EXPECT_VALUE(KineJoint, Axis[7], 56, double, 2.5);
    EXPECT_FIELD(KineJoint, ExtAxis, 64, double[6]);
    EXPECT_VALUE(KineJoint, ExtAxis[5], 104, double, 2.5);
}

static void CheckLoadToolWobj(void)
{
    EXPECT(sizeof(KineLoad) == 80);
    EXPECT_VALUE(KineLoad, Mass, 0, double, 2.5);
    EXPECT_VALUE(KineLoad, Cog[0], 8, double, 2.5);
    EXPECT_VALUE(KineLoad, Cog[2], 24, double, 2.5);
    EXPECT_VALUE(KineLoad, Aom[0], 32, double, 2.5);
    EXPECT_VALUE(KineLoad, Aom[2], 48, double, 2.5);
    EXPECT_VALUE(KineLoad, Inertia[0], 56, double, 2.5);
    EXPECT_VALUE(KineLoad, Inertia[2], 72, double, 2.5);

    EXPECT(sizeof(KineTool) == 136);
    EXPECT_VALUE(KineTool, HeldByRobot, 0, uint8_t, 255);
    EXPECT_FIELD(KineTool, Reserved, 1, uint8_t[7]);
    EXPECT_FIELD(KineTool, TFrame, 8, KineFrame);
    EXPECT_FIELD(KineTool, TLoad, 56, KineLoad);

    EXPECT(sizeof(KineWobj) == 104);
    EXPECT_VALUE(KineWobj, HeldByRobot, 0, uint8_t, 255);
    EXPECT_VALUE(KineWobj, UFFix, 1, uint8_t, 255);
    EXPECT_VALUE(KineWobj, MechUnitIndex, 2, int8_t, -128);
    EXPECT_FIELD(KineWobj, Reserved, 3, uint8_t[5]);
    EXPECT_FIELD(KineWobj, UFrame, 8, KineFrame);
    EXPECT_FIELD(KineWobj, OFrame, 56, KineFrame);
}

static void CheckMechUnit(void)
{
    EXPECT(sizeof(KineMechUnit) == 312);
    EXPECT_VALUE(KineMechUnit, Active, 0, int32_t, -5);
    EXPECT_VALUE(KineMechUnit, UnitKind, 4, uint16_t, 65535);
    EXPECT_VALUE(KineMechUnit, Option1, 6, uint8_t, 255);
    EXPECT_VALUE(KineMechUnit, Option2, 7, uint8_t, 255);
    EXPECT_VALUE(KineMechUnit, AxisCount, 8, uint8_t, 255);
    EXPECT_FIELD(KineMechUnit, Reserved, 9, uint8_t[7]);
    EXPECT_FIELD(KineMechUnit, AxisFrame, 16, KineFrame[6]);
    EXPECT_VALUE(KineMechUnit, AxisFrame[5].C, 296, double, 2.5);
    EXPECT_VALUE(KineMechUnit, AxisParamIndex[0], 304, uint8_t, 255);
    EXPECT_VALUE(KineMechUnit, AxisParamIndex[5], 309, uint8_t, 255);
    EXPECT_FIELD(KineMechUnit, Reserved2, 310, uint8_t[2]);
}

static void CheckExtAxisParam(void)
{
    EXPECT(sizeof(KineExtAxisParam) == 60);
    EXPECT_VALUE(KineExtAxisParam, Word[0], 0, int16_t, -32768);
    EXPECT_VALUE(KineExtAxisParam, Word[3], 6, int16_t, -32768);
    EXPECT_VALUE(KineExtAxisParam, Raw0, 8, uint32_t, 0xFFFFFFFFu);
    EXPECT_VALUE(KineExtAxisParam, Raw1, 12, uint32_t, 0xFFFFFFFFu);
    EXPECT_VALUE(KineExtAxisParam, AngleA, 16, float, 2.5f);
    EXPECT_VALUE(KineExtAxisParam, AngleB, 20, float, 2.5f);
    EXPECT_VALUE(KineExtAxisParam, Value[0], 24, uint32_t, 0xFFFFFFFFu);
    EXPECT_VALUE(KineExtAxisParam, Value[6], 48, uint32_t, 0xFFFFFFFFu);
    EXPECT_VALUE(KineExtAxisParam, Tail[0], 52, int16_t, -1);
    EXPECT_VALUE(KineExtAxisParam, Tail[2], 56, int16_t, -1);
    EXPECT_FIELD(KineExtAxisParam, Reserved, 58, uint8_t[2]);
}

static void CheckInchDir(void)
{
    EXPECT(sizeof(KineInchDir) == 56);
    EXPECT_FIELD(KineInchDir, Slot, 0, int32_t[14]);
    EXPECT_VALUE(KineInchDir, Slot[0], 0, int32_t, -1);
    EXPECT_VALUE(KineInchDir, Slot[1], 4, int32_t, -2);
    EXPECT_VALUE(KineInchDir, Slot[13], 52, int32_t, -2147483647);
}

static void CheckCalibError(void)
{
    EXPECT(sizeof(KineCalibError) == 24);
    EXPECT_VALUE(KineCalibError, Largest, 0, double, 2.5);
    EXPECT_VALUE(KineCalibError, Mean, 8, double, 2.5);
    EXPECT_VALUE(KineCalibError, Smallest, 16, double, 2.5);
}

static void CheckKinematicParam(void)
{
    EXPECT(sizeof(KineKinematicParam) >= 272);
    EXPECT_VALUE(KineKinematicParam, SixAxis.a1, 0, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.a2, 8, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.a3, 16, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.d4, 24, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.d6, 32, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.d1, 40, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.lateralOffset, 48, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.alpha1, 64, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.alpha2, 72, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.alpha3, 80, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.alpha4, 88, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.alpha5, 96, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.beta2, 104, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.d3, 112, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.d5, 120, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.a4, 128, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.a5, 136, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.mountX, 144, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.mountY, 152, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.G[0], 192, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.G[6], 240, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.k2, 248, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.k3, 256, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, SixAxis.k5, 264, double, 2.5);

    EXPECT(sizeof(KineFourAxisParam) == 96);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link1Length, 0, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link2Length, 8, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.ZOffset, 16, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.ScrewLead, 24, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link1TiltX, 64, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link2TiltX, 72, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link1TiltY, 80, double, 2.5);
    EXPECT_VALUE(KineKinematicParam, FourAxis.Link2TiltY, 88, double, 2.5);
}

static void CheckCodes(void)
{
    EXPECT(KINE_OK == 0x0000u);
    EXPECT(KINE_ERR_MODEL_PARAM == 0x6000u);
    EXPECT(KINE_ERR_NOT_INITIALISED == 0x6001u);
    EXPECT(KINE_ERR_MECH_UNIT == 0x6002u);
    EXPECT(KINE_ERR_EXT_AXIS_PARAM == 0x6003u);
    EXPECT(KINE_ERR_MECH_UNIT_COUNT == 0x6004u);
    EXPECT(KINE_ERR_POSE == 0x6010u);
    EXPECT(KINE_ERR_TOOL == 0x6011u);
    EXPECT(KINE_ERR_WOBJ == 0x6012u);
    EXPECT(KINE_ERR_LOAD == 0x6013u);
    EXPECT(KINE_ERR_JOINT == 0x6014u);
    EXPECT(KINE_ERR_HOLD == 0x6016u);
    EXPECT(KINE_ERR_OFFSET_FRAME == 0x6017u);
    EXPECT(KINE_ERR_DIRECTION == 0x6018u);
    EXPECT(KINE_ERR_W2F_MODE == 0x6030u);
    EXPECT(KINE_ERR_W2F_UNIT_KIND == 0x6031u);
    EXPECT(KINE_ERR_F2W_MODE == 0x6032u);
    EXPECT(KINE_ERR_F2W_UNIT_KIND == 0x6033u);
    EXPECT(KINE_ERR_AXIS_ORIGIN == 0x6034u);
    EXPECT(KINE_ERR_HOLD_CONFLICT == 0x6050u);
    EXPECT(KINE_ERR_CHAIN_1 == 0x6051u);
    EXPECT(KINE_ERR_CHAIN_2 == 0x6052u);
    EXPECT(KINE_ERR_CHAIN_3 == 0x6053u);
    EXPECT(KINE_ERR_CHAIN_4 == 0x6054u);
    EXPECT(KINE_ERR_CALIB_SINGULAR == 0x6060u);
    EXPECT(KINE_ERR_CALIB_INPUT == 0x6061u);
    EXPECT(KINE_ERR_CALIB_3 == 0x6063u);
    EXPECT(KINE_ERR_CALIB_4 == 0x6064u);
    EXPECT(KINE_ERR_CALIB_POINTS_CLOSE == 0x6065u);
    EXPECT(KINE_ERR_CALIB_COLLINEAR == 0x6066u);
    EXPECT(KINE_ERR_ZERO_VECTOR == 0x6070u);
    EXPECT(KINE_ERR_CRD_WOBJ == 0x6071u);
    EXPECT(KINE_ERR_ALIGN_NO_SOLUTION == 0x6080u);
    EXPECT(KINE_ERR_ALIGN_TURN == 0x6081u);
    EXPECT(KINE_ERR_CONFIG == 0x6090u);
    EXPECT(KINE_ERR_IK_1 == 0x6091u);
    EXPECT(KINE_ERR_INCH_SINGULAR == 0x6092u);
    EXPECT(KINE_ERR_IK_SINGULAR == 0x6093u);
    EXPECT(KINE_ERR_IK_REACH == 0x6094u);
    EXPECT(KINE_ERR_SINGULAR == 0x6095u);
    EXPECT(KINE_ERR_IK_6 == 0x6096u);
    EXPECT(KINE_ERR_IK_7 == 0x6097u);
    EXPECT(KINE_ERR_IK_8 == 0x6098u);
    EXPECT(KINE_ERR_IK_9 == 0x6099u);
    EXPECT(KINE_ERR_IK_ACCURACY == 0x609Au);
    EXPECT(KINE_ERR_UNKNOWN_ARM_TYPE == 0xFFFFFFFFu);
    EXPECT(KINE_SINGULAR == 0xFFFFFFFFu);
    EXPECT(KINE_ARM_FOUR_AXIS == 4u);
    EXPECT(KINE_ARM_SIX_AXIS == 6u);
    EXPECT(KINE_ARM_FOUR_AXIS_4110 == 0x100Eu);
}

int main(void)
{
    CheckPlatform();
    CheckFrame();
    CheckPoseAndConfig();
    CheckJoint();
    CheckLoadToolWobj();
    CheckMechUnit();
    CheckExtAxisParam();
    CheckInchDir();
    CheckCalibError();
    CheckKinematicParam();
    CheckCodes();
    return failures == 0 ? 0 : 1;
}

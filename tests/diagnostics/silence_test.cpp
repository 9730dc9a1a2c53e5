// Calls that print nothing.
#include <gtest/gtest.h>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

TEST(silence, of_calls_that_succeed)
{
    const KineKinematicParam arm = WristArm();
    const KineJoint joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    const KineJoint upper = MakeJoints({360, 360, 360, 360, 360, 360});
    const KineJoint lower = MakeJoints({-360, -360, -360, -360, -360, -360});
    const KineMechUnit unit = RotaryUnit({500.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0);
    const KineExtAxisParam axis{};
    const KineTool tool = HeldTool();
    const KineWobj wobj = WobjOnUnit(1);
    const KineLoad load{};
    EXPECT_EQ(PrintedBy([&] {
                  KineArmConfig config{};
                  KinePose pose{};
                  KineJoint solved{};
                  EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm), KINE_OK);
                  EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitGlobalCfg(3, 6, 1), KINE_OK);
                  EXPECT_EQ(Kine_SetMechUnitParam(1, &unit), KINE_OK);
                  EXPECT_EQ(Kine_SetExtAxisParam(0, &axis), KINE_OK);
                  EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
                  EXPECT_EQ(Kine_IsSingularity(&joints, 2), KINE_OK);
                  EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
                  EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
                  for (const ChainCall& call : kForwardCalls) {
                      EXPECT_EQ(call.forward(&joints, &tool, &wobj, &load, &pose), KINE_OK);
                  }
                  EXPECT_EQ(Kine_WobjPosToJoint(&pose, &tool, &wobj, &load, &solved), KINE_OK);
              }),
              "");
}

TEST(silence, of_refused_arms_and_joints)
{
    KineKinematicParam bad = WristArm();
    bad.SixAxis.a2 = 0.0;
    const KineJoint joints{};
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &bad), KINE_ERR_MODEL_PARAM);
                  EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, nullptr), KINE_ERR_MODEL_PARAM);
                  EXPECT_EQ(Kine_InitKinematicParam(5, &bad), KINE_ERR_UNKNOWN_ARM_TYPE);
                  EXPECT_EQ(Kine_SetAxisLimit(&joints, &joints), KINE_ERR_NOT_INITIALISED);
                  EXPECT_EQ(Kine_SetAxisLimit(nullptr, nullptr), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_IsSingularity(&joints, 0), KINE_ERR_NOT_INITIALISED);
              }),
              "");
}

TEST(silence, of_an_inverse_whose_configuration_or_state_is_refused)
{
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.target.Cfg3 = 638;
    SetUpArm(WristArm());
    ExpectRefused(kInverseCall, request, KINE_ERR_CONFIG, "");
    SetUpRefusedArm();
    ExpectRefused(kInverseCall, request, KINE_ERR_NOT_INITIALISED, "");
}

TEST(silence, of_singular_joints_and_turns_beyond_the_limits)
{
    SetUpArm(WristArm());
    const KineJoint joints{};
    KinePose pose{};
    pose.Cfg1 = 638;
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_IsSingularity(&joints, 0), KINE_SINGULAR);
                  EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG);
              }),
              "");
}

// Gravity that bends the arm too far leaves the correction out and says nothing.
TEST(silence, of_an_arm_too_soft_for_its_load)
{
    KineKinematicParam soft = WristArm();
    soft.SixAxis.k2 = soft.SixAxis.k3 = soft.SixAxis.k5 = 1.0;
    SetUpArm(soft);
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.load.Mass = 100.0;
    for (const ChainCall& call : kForwardCalls) {
        const Outcome outcome = Perform(call, request);
        EXPECT_EQ(outcome.code, KINE_OK);
        EXPECT_EQ(outcome.printed, "");
    }
}

// Seventeen of the eighteen calibrations refuse three equal points, each with the first code of its own.
TEST(silence, of_calibrations)
{
    SetUpArm(WristArm());
    const KinePose p{};
    const KineFrame given{};
    KineFrame frame{};
    KineCalibError error{};
    double tilt = 0.0;
    const KineResult close = KINE_ERR_CALIB_POINTS_CLOSE;
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_CalcExtToolPrm_1P(&p, &frame), KINE_OK);
                  EXPECT_EQ(Kine_CalcExtToolPrm_1PZX(&p, &p, &p, &frame), KINE_ERR_ZERO_VECTOR);
                  EXPECT_EQ(Kine_CalcExtToolPrm_3P(&p, &p, &p, &frame, &error), close);
                  EXPECT_EQ(Kine_CalcExtToolPrm_3PZX(&p, &p, &p, &p, &p, &p, &frame, &error), close);
                  EXPECT_EQ(Kine_CalcGripToolPrm_3P(&p, &p, &p, &frame, &error), close);
                  EXPECT_EQ(Kine_CalcGripToolPrm_3PZX(&p, &p, &p, &p, &p, &p, &frame, &error), close);
                  EXPECT_EQ(Kine_CalcGripToolPrm_5P(&p, &p, &p, &p, &p, &frame, &error),
                            KINE_ERR_CALIB_SINGULAR);
                  EXPECT_EQ(Kine_CalcGripToolPrm_Scara2P(&p, &p, &frame), KINE_ERR_NOT_INITIALISED);
                  EXPECT_EQ(Kine_CalcExtWobj_UserPrm_2P(&p, &p, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcExtWobj_UserPrm_3P(&p, &p, &p, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcExtWobj_UserPrm_Cirle3P(&p, &p, &p, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcExtWobj_ObjPrm_3P(&p, &p, &p, &given, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcGripWobj_UserPrm_3P(&p, &p, &p, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcGripWobj_ObjPrm_3P(&p, &p, &p, &given, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcUnFixWobj_ObjPrm_3P(9, &p, &p, &p, &frame, &tilt), close);
                  EXPECT_EQ(Kine_CalcPositionerJ1Prm_3P(9, &p, &p, &p, &frame), close);
                  EXPECT_EQ(Kine_CalcPositionerJnPrm_3P(9, 2, &p, &p, &p, &given, &frame), close);
                  EXPECT_EQ(Kine_CalcRobotBasePrm_3P(9, &p, &p, &p, &frame, &error), KINE_ERR_TOOL);
              }),
              "");
}

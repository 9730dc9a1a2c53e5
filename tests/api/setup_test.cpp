// Kine_InitKinematicParam through the exports.
#include <gtest/gtest.h>

#include <cmath>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

KineResult InitSix(const KineKinematicParam& param)
{
    return Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &param);
}

KineResult StateCode()
{
    KineArmConfig config{};
    const KineJoint joints{};
    return Kine_GetArmType(&joints, &config);
}

KineResult CheckTurn(int32_t cfg1)
{
    KinePose pose{};
    pose.Cfg1 = cfg1;
    return Kine_IsArmTypeValid(&pose);
}

// A length of the arm and the smallest value that is accepted.
struct BoundedLength
{
    const char* name;
    double KineSixAxisParam::*field;
    double bound;
};

const BoundedLength kLengths[] = {{"a1", &KineSixAxisParam::a1, -1e-5},
                                  {"a2", &KineSixAxisParam::a2, 1e-5},
                                  {"a3", &KineSixAxisParam::a3, -1e-5},
                                  {"d4", &KineSixAxisParam::d4, 1e-5},
                                  {"d6", &KineSixAxisParam::d6, -1e-5}};

}  // namespace

TEST(Kine_InitKinematicParam, accepts_an_arm_without_a_line)
{
    const KineKinematicParam param = Puma();
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(InitSix(param), KINE_OK); }), "");
    EXPECT_EQ(StateCode(), KINE_OK);
}

TEST(Kine_InitKinematicParam, length_on_its_bound_is_accepted_and_below_it_is_0x6000)
{
    for (const auto& [name, field, bound] : kLengths) {
        SCOPED_TRACE(name);
        KineKinematicParam param = WristArm();
        param.SixAxis.*field = bound;
        EXPECT_EQ(InitSix(param), KINE_OK);
        param.SixAxis.*field = std::nextafter(bound, 1.0);
        EXPECT_EQ(InitSix(param), KINE_OK);
        EXPECT_EQ(StateCode(), KINE_OK);
        param.SixAxis.*field = std::nextafter(bound, -1.0);
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(InitSix(param), KINE_ERR_MODEL_PARAM); }), "");
        EXPECT_EQ(StateCode(), KINE_ERR_NOT_INITIALISED);
        param.SixAxis.*field = kNan;
        EXPECT_EQ(InitSix(param), KINE_OK);
    }
}

TEST(Kine_InitKinematicParam, other_numbers_are_not_checked)
{
    for (const double value : {kNan, -1e300, kInf}) {
        KineKinematicParam param = WristArm();
        param.SixAxis.d1 = param.SixAxis.lateralOffset = param.SixAxis.alpha1 = value;
        param.SixAxis.d3 = param.SixAxis.mountX = param.SixAxis.G[0] = param.SixAxis.k2 = value;
        EXPECT_EQ(InitSix(param), KINE_OK);
    }
}

TEST(Kine_InitKinematicParam, null_parameters_are_0x6000)
{
    EXPECT_EQ(PrintedBy([] {
                  EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, nullptr), KINE_ERR_MODEL_PARAM);
              }),
              "");
    EXPECT_EQ(StateCode(), KINE_ERR_NOT_INITIALISED);
}

TEST(Kine_InitKinematicParam, unknown_arm_type_is_0xFFFFFFFF_before_the_parameters_are_looked_at)
{
    const KineKinematicParam good = Puma();
    KineKinematicParam bad = Puma();
    bad.SixAxis.a2 = 0.0;
    for (const uint32_t type : {0u, 1u, 3u, 5u, 7u, 40u, 4109u, 4111u, 0x80000006u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(InitSix(good), KINE_OK);
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_InitKinematicParam(type, &good), 0xFFFFFFFFu); }), "");
        EXPECT_EQ(StateCode(), KINE_ERR_NOT_INITIALISED);
        EXPECT_EQ(Kine_InitKinematicParam(type, &bad), 0xFFFFFFFFu);
        EXPECT_EQ(Kine_InitKinematicParam(type, nullptr), 0xFFFFFFFFu);
    }
}

TEST(Kine_InitKinematicParam, refused_arm_makes_every_model_call_0x6001)
{
    SetUpArm(Puma());
    KineKinematicParam bad = Puma();
    bad.SixAxis.d4 = 0.0;
    EXPECT_EQ(InitSix(bad), KINE_ERR_MODEL_PARAM);

    const KineJoint joints{};
    KineArmConfig config = Untouched<KineArmConfig>();
    EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_ERR_NOT_INITIALISED);
    EXPECT_TRUE(IsUntouched(config));
    KinePose pose{};
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_NOT_INITIALISED);
    EXPECT_EQ(Kine_IsSingularity(&joints, 0), KINE_ERR_NOT_INITIALISED);
    EXPECT_EQ(Kine_SetAxisLimit(&joints, &joints), KINE_ERR_NOT_INITIALISED);
    pose = Untouched<KinePose>();
    EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_ERR_NOT_INITIALISED);
    EXPECT_TRUE(IsUntouched(pose));

    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, request, KINE_ERR_NOT_INITIALISED, "FK Error 1:24577\n");
    }
    ExpectRefused(kInverseCall, request, KINE_ERR_NOT_INITIALISED, "");
}

TEST(Kine_InitKinematicParam, good_arm_after_a_refused_one_works_again)
{
    SetUpRefusedArm();
    EXPECT_EQ(StateCode(), KINE_ERR_NOT_INITIALISED);
    EXPECT_EQ(InitSix(Puma()), KINE_OK);
    EXPECT_EQ(StateCode(), KINE_OK);
}

TEST(Kine_InitKinematicParam, second_arm_replaces_the_first)
{
    const KineJoint joints = MakeJoints({10.0, -20.0, 30.0, -40.0, 50.0, -60.0});
    KinePose pose{};
    SetUpArm(Puma());
    SetUpArm(WristArm());
    EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
    EXPECT_TRUE(IsFrame(pose.Frame, NaiveSixAxisChain(WristArm().SixAxis, joints).frame[5]));
}

TEST(Kine_InitKinematicParam, clears_counts_units_and_mounting)
{
    const KineKinematicParam good = WristArm();
    KineKinematicParam bad = WristArm();
    bad.SixAxis.a2 = 0.0;
    struct Case
    {
        const char* name;
        uint32_t type;
        const KineKinematicParam* param;
        KineResult code;
    };
    const Case cases[] = {{"accepted", 6, &good, KINE_OK},
                          {"refused", 6, &bad, KINE_ERR_MODEL_PARAM},
                          {"null", 6, nullptr, KINE_ERR_MODEL_PARAM},
                          {"unknown type", 5, &good, KINE_ERR_UNKNOWN_ARM_TYPE}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SetUpArm(good);
        SetUnitCounts(3, 6);
        StoreUnit(0, CarryingRobot(LinearUnit({}, {}, 0), 1));
        StoreUnit(1, LinearUnit({100, 0, 0, 0, 0, 0}, {}, 0));
        ExpectCounts(3, 6);

        EXPECT_EQ(Kine_InitKinematicParam(c.type, c.param), c.code);
        ExpectCounts(0, 0);

        // The arm below is set up without another reset of the cell being needed: what the failed call left
        // is what the next successful one starts from.
        EXPECT_EQ(InitSix(good), KINE_OK);
        SetUnitCounts(3, 6);
        Request request;
        request.joints = MakeJoints({10.0, 20.0, -30.0, 40.0, 50.0, 60.0});
        request.joints.ExtAxis[0] = 500.0;
        request.tool = HeldTool();
        request.wobj = FixedWobj();
        const Outcome world = Perform(kWorld, request);
        const Outcome base = Perform(kBase, request);
        EXPECT_EQ(world.code, KINE_OK);
        EXPECT_NEAR(world.pose.Frame.X, base.pose.Frame.X, 1e-9);
        request.wobj = WobjOnUnit(1);
        ExpectRefused(kWobj, request, KINE_ERR_W2F_UNIT_KIND, "FK Error 6:24625\n");
    }
}

TEST(Kine_InitKinematicParam, refused_arm_clears_the_mounting_too)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnit(0, CarryingRobot(LinearUnit({}, {}, 0), 2));
    EXPECT_EQ(Kine_InitKinematicParam(5, nullptr), KINE_ERR_UNKNOWN_ARM_TYPE);
    SetUnitCounts(3, 6);
    // Without an arm the mounting shows nowhere; with the next arm it is fixed.
    EXPECT_EQ(InitSix(WristArm()), KINE_OK);
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    EXPECT_EQ(Perform(kWorld, request).code, KINE_OK);
}

TEST(Kine_InitKinematicParam, enable_flag_survives)
{
    const KineMechUnit unit{};
    for (const bool accepted : {true, false}) {
        SCOPED_TRACE(accepted);
        const KineKinematicParam puma = Puma();
        const KineKinematicParam* param = accepted ? &puma : nullptr;

        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(2, 3, 0), KINE_OK);
        static_cast<void>(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, param));
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetMechUnitParam(-1, &unit), KINE_OK); }), "");

        EXPECT_EQ(Kine_SetMechUnitGlobalCfg(2, 3, 7), KINE_OK);
        static_cast<void>(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, param));
        EXPECT_EQ(UnitCountLine(), UnitCountLineFor(0));
    }
}

TEST(Kine_InitKinematicParam, opens_the_limits_again)
{
    SetUpArm(Puma());
    const KineJoint upper = MakeJoints({10, 10, 10, 10, 10, 10});
    const KineJoint lower = MakeJoints({-10, -10, -10, -10, -10, -10});
    EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
    EXPECT_EQ(CheckTurn(100), KINE_ERR_CONFIG);
    EXPECT_EQ(InitSix(Puma()), KINE_OK);
    EXPECT_EQ(CheckTurn(100), KINE_OK);
}

// 999 rad are 635.98 quarter turns: number 635 above zero and -636 below, with two to spare on either side.
TEST(Kine_InitKinematicParam, default_limits_are_999_rad_on_every_axis)
{
    SetUpArm(Puma());
    for (int32_t KinePose::*field : {&KinePose::Cfg1, &KinePose::Cfg2, &KinePose::Cfg3}) {
        KinePose pose{};
        for (const int32_t inside : {637, -638}) {
            pose.*field = inside;
            EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
        }
        for (const int32_t outside : {638, -639}) {
            pose.*field = outside;
            EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG);
        }
    }
}

TEST(Kine_InitKinematicParam, keeps_the_record_and_needs_it_no_longer)
{
    KineKinematicParam param = CalibratedWristArm();
    const KineKinematicParam before = param;
    SetUpArm(param);
    EXPECT_TRUE(SameBits(param, before));

    const KineJoint joints = MakeJoints({10, 20, -30, 40, 50, 60});
    KinePose first{};
    KinePose second{};
    EXPECT_EQ(Kine_FKineVision(&joints, &first), KINE_OK);
    param = Untouched<KineKinematicParam>();
    EXPECT_EQ(Kine_FKineVision(&joints, &second), KINE_OK);
    EXPECT_TRUE(SameBits(first, second));
}

TEST(Kine_InitKinematicParam, reserved_numbers_are_not_read)
{
    KineKinematicParam param = CalibratedWristArm();
    Request request;
    request.joints = MakeJoints({10, 20, -30, 40, 50, 60});
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.load.Mass = 5.0;
    SetUpArm(param);
    const Outcome plain = Perform(kBase, request);
    ASSERT_EQ(plain.code, KINE_OK);

    param.SixAxis.reserved0 = kNan;
    for (double& reserved : param.SixAxis.reserved1) reserved = kNan;
    param.SixAxis.G[6] = 1e9;
    SetUpArm(param);
    EXPECT_TRUE(SameBits(Perform(kBase, request).pose, plain.pose));
}

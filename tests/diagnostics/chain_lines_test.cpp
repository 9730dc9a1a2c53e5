// The numbered lines of the chains, byte for byte: one line per failing call.
#include <gtest/gtest.h>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/naive_arms.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr KineFrame kAxis = {800.0, 100.0, 50.0, 0.0, 0.0, 0.0};

// The robot on unit 1; unit 2 for a work object.
void SetUpCell(const KineMechUnit& carrier, const KineMechUnit& other)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
    StoreUnit(1, carrier);
    StoreUnit(2, other);
}

KineMechUnit UnknownUnit()
{
    KineMechUnit unit = RotaryUnit(kAxis, 0);
    unit.UnitKind = 4;
    return unit;
}

}  // namespace

TEST(forward_line, 1_not_initialised)
{
    SetUpRefusedArm();
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, PlainRequest(), KINE_ERR_NOT_INITIALISED, "FK Error 1:24577\n");
    }
}

TEST(forward_line, 2_both_held)
{
    SetUpArm(WristArm());
    Request request = PlainRequest();
    request.wobj.HeldByRobot = 2;
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, request, KINE_ERR_HOLD_CONFLICT, "FK Error 2:24656\n");
    }
}

TEST(forward_line, 4_unit_under_the_robot)
{
    SetUpCell(UnknownUnit(), RotaryUnit(kAxis, 0));
    Request request = PlainRequest();
    ExpectRefused(kWorld, request, KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n");
    ExpectRefused(kWobj, request, KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n");
    request.tool.HeldByRobot = 0;
    request.wobj.HeldByRobot = 1;
    for (const ChainCall& call : kForwardCalls) {
        ExpectRefused(call, request, KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n");
    }
}

// A work object on unit 2: asked for by the work-object call alone, or by all when the tool byte is 2.
void ExpectStepSixRefuses(KineResult code, const std::string& line)
{
    Request request = PlainRequest();
    request.wobj = WobjOnUnit(2);
    ExpectRefused(kWobj, request, code, line);
    request.tool.HeldByRobot = 2;
    for (const ChainCall& call : kForwardCalls) ExpectRefused(call, request, code, line);
}

TEST(forward_line, 6_unit_under_the_work_object)
{
    SetUpCell(RotaryUnit(kAxis, 0), UnknownUnit());
    ExpectStepSixRefuses(KINE_ERR_W2F_UNIT_KIND, "FK Error 6:24625\n");
}

TEST(forward_line, 6_axis_at_the_origin)
{
    SetUpCell(RotaryUnit(kAxis, 0), RotaryUnit({}, 0));
    ExpectStepSixRefuses(KINE_ERR_AXIS_ORIGIN, "FK Error 6:24628\n");
}

TEST(inverse_line, 0_both_held)
{
    SetUpArm(WristArm());
    Request request = PlainRequest();
    request.tool.HeldByRobot = 2;
    request.wobj.HeldByRobot = 1;
    ExpectRefused(kInverseCall, request, KINE_ERR_HOLD_CONFLICT, "IK error 0:24656\n");
}

TEST(inverse_line, 2_unit_under_the_work_object)
{
    SetUpCell(RotaryUnit(kAxis, 0), UnknownUnit());
    Request request = PlainRequest();
    request.wobj = WobjOnUnit(2);
    ExpectRefused(kInverseCall, request, KINE_ERR_F2W_UNIT_KIND, "IK error 2:24627\n");
}

TEST(inverse_line, 3_unit_under_the_robot)
{
    SetUpCell(UnknownUnit(), RotaryUnit(kAxis, 0));
    ExpectRefused(kInverseCall, PlainRequest(), KINE_ERR_W2F_UNIT_KIND, "IK error 3:24625\n");
    SetUpCell(RotaryUnit({}, 0), RotaryUnit(kAxis, 0));
    ExpectRefused(kInverseCall, PlainRequest(), KINE_ERR_AXIS_ORIGIN, "IK error 3:24628\n");
}

TEST(inverse_line, 5_codes_of_the_arm)
{
    SetUpArm(WristArm());
    Request request = PlainRequest();
    request.target.Cfg4 = -1;
    ExpectRefused(kInverseCall, request, KINE_ERR_CONFIG, "IK error 5:24720\n");
    request = PlainRequest();
    request.target.Frame = {0.0, 0.0, 1000.0, 0.0, 0.0, 0.0};
    ExpectRefused(kInverseCall, request, KINE_ERR_IK_6, "IK error 5:24726\n");
    request = PlainRequest();
    request.target.Frame.X = 1e5;
    ExpectRefused(kInverseCall, request, KINE_ERR_IK_7, "IK error 5:24727\n");
}

// With the forearm level and the wrist straight the flange lies at (a1 + d4 + d6, 0, d1 + a2 + a3) and its
// approach axis along X.
TEST(inverse_line, 5_straight_wrist)
{
    SetUpArm(WristArm());
    Request request = PlainRequest();
    request.target.Frame = {940.0, 0.0, 1455.0, 0.0, 90.0, 0.0};
    ExpectRefused(kInverseCall, request, KINE_ERR_IK_8, "IK error 5:24728\n");
}

TEST(inverse_line, 5_arm_of_parallel_axes)
{
    KineKinematicParam flat = WristArm();
    flat.SixAxis.alpha1 = flat.SixAxis.alpha3 = flat.SixAxis.alpha4 = flat.SixAxis.alpha5 = 0.0;
    SetUpArm(flat);
    ExpectRefused(kInverseCall, PlainRequest(), KINE_ERR_SINGULAR, "IK error 5:24725\n");
}

TEST(lines, of_two_calls_follow_each_other)
{
    SetUpRefusedArm();
    const Request request = PlainRequest();
    KinePose pose{};
    EXPECT_EQ(PrintedBy([&] {
                  for (const ChainCall& call : kForwardCalls) {
                      static_cast<void>(
                          call.forward(&request.joints, &request.tool, &request.wobj, &request.load, &pose));
                  }
                  static_cast<void>(Kine_SetMechUnitGlobalCfg(4, 0, 1));
              }),
              "FK Error 1:24577\nFK Error 1:24577\nFK Error 1:24577\nFK Error 1:24577\n"
              "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n");
}

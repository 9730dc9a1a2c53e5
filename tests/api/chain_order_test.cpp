// The order of checks of the calls through the chains: every two of them are broken at once, and the earlier
// one answers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

// A call and the cell it runs in. As it stands it passes every check.
struct Scenario
{
    bool initialised = true;
    KineMechUnit carrier = LinearUnit({}, {}, 0);
    KineMechUnit wobjUnit = RotaryUnit({300.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 1);
    Request request;
};

// Breaks one check: the code and the text that answer when nothing earlier is broken.
struct Break
{
    const char* name;
    KineResult code;
    std::string printed;
    void (*apply)(Scenario&);
};

// A tool byte of 2 leads all four forward calls through all their steps.
Scenario GoodScenario()
{
    Scenario scenario;
    Request& request = scenario.request;
    request.joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    request.tool = HeldTool();
    request.tool.HeldByRobot = 2;
    request.wobj = WobjOnUnit(2);
    request.target.Frame = {500.0, 100.0, 900.0, 20.0, 30.0, 40.0};
    return scenario;
}

void SetUpCell(const Scenario& scenario)
{
    if (scenario.initialised) {
        SetUpArm(WristArm());
    } else {
        SetUpRefusedArm();
    }
    SetUnitCounts(3, 6);
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
    StoreUnit(1, scenario.carrier);
    StoreUnit(2, scenario.wobjUnit);
}

void ExpectOrder(const ChainCall& call, const std::vector<Break>& breaks)
{
    for (std::size_t first = 0; first < breaks.size(); ++first) {
        for (std::size_t second = first; second < breaks.size(); ++second) {
            SCOPED_TRACE(std::string(breaks[first].name) + " and " + breaks[second].name);
            Scenario scenario = GoodScenario();
            breaks[second].apply(scenario);
            breaks[first].apply(scenario);
            SetUpCell(scenario);
            ExpectRefused(call, scenario.request, breaks[first].code, breaks[first].printed);
        }
    }
}

void BreakToolAngle(Scenario& s) { s.request.tool.TFrame.B = 181.0; }
void BreakToolLoad(Scenario& s) { s.request.tool.TLoad.Inertia[2] = -1.0; }
void BreakUserFrame(Scenario& s) { s.request.wobj.UFrame.A = 181.0; }
void BreakWobjIndex(Scenario& s) { s.request.wobj.MechUnitIndex = 3; }
void BreakObjectFrame(Scenario& s) { s.request.wobj.OFrame.C = -181.0; }
void BreakLoadMass(Scenario& s) { s.request.load.Mass = -1.0; }
void BreakLoadAom(Scenario& s) { s.request.load.Aom[0] = 181.0; }
void BreakHold(Scenario& s) { s.request.wobj.HeldByRobot = s.request.tool.HeldByRobot; }
void BreakResult(Scenario& s) { s.request.nullResult = true; }
void BreakState(Scenario& s) { s.initialised = false; }
void BreakInnerHold(Scenario& s) { s.request.wobj.HeldByRobot = 1; }
void BreakCarrier(Scenario& s) { s.carrier.UnitKind = 9; }
void BreakWobjUnit(Scenario& s) { s.wobjUnit.UnitKind = 9; }

const std::vector<Break>& ForwardBreaks()
{
    static const std::vector<Break> breaks = {
        {"joints null", KINE_ERR_JOINT, "", [](Scenario& s) { s.request.nullJoints = true; }},
        {"tool", KINE_ERR_TOOL, "", BreakToolAngle},
        {"user frame", KINE_ERR_WOBJ, "", BreakUserFrame},
        {"unit index", KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n", BreakWobjIndex},
        {"object frame", KINE_ERR_WOBJ, "", BreakObjectFrame},
        {"load", KINE_ERR_LOAD, "", BreakLoadMass},
        {"hold", KINE_ERR_HOLD, "", BreakHold},
        {"pose null", KINE_ERR_POSE, "", BreakResult},
        {"state", KINE_ERR_NOT_INITIALISED, "FK Error 1:24577\n", BreakState},
        {"inner hold", KINE_ERR_HOLD_CONFLICT, "FK Error 2:24656\n", BreakInnerHold},
        {"carrier", KINE_ERR_F2W_UNIT_KIND, "FK Error 4:24627\n", BreakCarrier},
        {"work object's unit", KINE_ERR_W2F_UNIT_KIND, "FK Error 6:24625\n", BreakWobjUnit},
        {"axis at the origin", KINE_ERR_AXIS_ORIGIN, "FK Error 6:24628\n",
         [](Scenario& s) { s.wobjUnit.AxisFrame[0] = {}; }}};
    return breaks;
}

const std::vector<Break>& InverseBreaks()
{
    static const std::vector<Break> breaks = {
        {"tool", KINE_ERR_TOOL, "", BreakToolLoad},
        {"user frame", KINE_ERR_WOBJ, "", BreakUserFrame},
        {"unit index", KINE_ERR_WOBJ, "IsLegalWobj,!pWobj->UFFix:3;\n", BreakWobjIndex},
        {"object frame", KINE_ERR_WOBJ, "", BreakObjectFrame},
        {"load", KINE_ERR_LOAD, "", BreakLoadAom},
        {"target", KINE_ERR_POSE, "", [](Scenario& s) { s.request.target.Frame.A = 181.0; }},
        {"hold", KINE_ERR_HOLD, "", BreakHold},
        {"joints null", KINE_ERR_JOINT, "", BreakResult},
        {"state", KINE_ERR_NOT_INITIALISED, "", BreakState},
        {"configuration", KINE_ERR_CONFIG, "", [](Scenario& s) { s.request.target.Cfg2 = 638; }},
        {"inner hold", KINE_ERR_HOLD_CONFLICT, "IK error 0:24656\n", BreakInnerHold},
        {"work object's unit", KINE_ERR_F2W_UNIT_KIND, "IK error 2:24627\n", BreakWobjUnit},
        {"carrier", KINE_ERR_W2F_UNIT_KIND, "IK error 3:24625\n", BreakCarrier},
        {"carrier at the origin", KINE_ERR_AXIS_ORIGIN, "IK error 3:24628\n",
         [](Scenario& s) {
             // As a rotary unit at the origin, unless its kind is broken already.
             if (s.carrier.UnitKind == kLinearKind) s.carrier.UnitKind = kRotaryKind;
         }},
        {"posture", KINE_ERR_CONFIG, "IK error 5:24720\n", [](Scenario& s) { s.request.target.Cfg4 = 8; }},
        {"reach", KINE_ERR_IK_7, "IK error 5:24727\n",
         [](Scenario& s) { s.request.target.Frame.Z = 9000.0; }}};
    return breaks;
}

}  // namespace

TEST(order_of_checks, scenario_passes_every_check)
{
    const Scenario scenario = GoodScenario();
    for (const ChainCall& call : kForwardCalls) {
        SetUpCell(scenario);
        EXPECT_EQ(Perform(call, scenario.request).code, KINE_OK) << call.name;
    }
    SetUpCell(scenario);
    EXPECT_EQ(Perform(kInverseCall, scenario.request).code, KINE_OK);
}

TEST(order_of_checks, Kine_JointToBasePos) { ExpectOrder(kBase, ForwardBreaks()); }

TEST(order_of_checks, Kine_JointToFlangePos) { ExpectOrder(kFlange, ForwardBreaks()); }

TEST(order_of_checks, Kine_JointToWorldPos) { ExpectOrder(kWorld, ForwardBreaks()); }

TEST(order_of_checks, Kine_JointToWobjPos) { ExpectOrder(kWobj, ForwardBreaks()); }

TEST(order_of_checks, Kine_WobjPosToJoint) { ExpectOrder(kInverseCall, InverseBreaks()); }

// The joints and the target are not inputs of the other kind of call.
TEST(order_of_checks, forward_calls_do_not_look_at_a_target_nor_the_inverse_at_joints)
{
    Scenario scenario = GoodScenario();
    scenario.request.joints.Axis[0] = 1e308;
    SetUpCell(scenario);
    EXPECT_EQ(Perform(kInverseCall, scenario.request).code, KINE_OK);
}

// Neither held: refused by the bytes, never by the chain.
TEST(order_of_checks, neither_held_is_0x6016_before_the_state)
{
    Scenario scenario = GoodScenario();
    scenario.initialised = false;
    scenario.request.tool.HeldByRobot = 0;
    SetUpCell(scenario);
    for (const ChainCall& call : kChainCalls) ExpectRefused(call, scenario.request, KINE_ERR_HOLD, "");
}

TEST(order_of_checks, wrist_centre_on_axis_1_comes_before_the_posture_and_the_posture_before_the_reach)
{
    SetUpArm(WristArm());
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.target.Cfg4 = 8;
    request.target.Frame.Z = 9000.0;  // out of reach as well
    ExpectRefused(kInverseCall, request, KINE_ERR_IK_6, "IK error 5:24726\n");
    request.target.Frame.X = 1.0;
    ExpectRefused(kInverseCall, request, KINE_ERR_CONFIG, "IK error 5:24720\n");
    request.target.Cfg4 = 7;
    ExpectRefused(kInverseCall, request, KINE_ERR_IK_7, "IK error 5:24727\n");
}

// The forward calls with mechanical units under the work object and under the robot, and with loads.
//
// W from M, where the robot stands, and W from U, where the work object's unit stands, come from
// support/cell_setup.h; F is the flange in the base.
#include <gtest/gtest.h>

#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr KineFrame kToolFrame = {30.0, -40.0, 150.0, 20.0, -35.0, 75.0};
constexpr KineFrame kUser = {700.0, 200.0, 100.0, 15.0, 25.0, -10.0};
constexpr KineFrame kObject = {-50.0, 80.0, 20.0, -95.0, 5.0, 45.0};
constexpr KineFrame kFirstAxis = {1200.0, -300.0, 400.0, 30.0, -20.0, 10.0};
constexpr KineFrame kSecondAxis = {10.0, 20.0, -30.0, -5.0, 85.0, 40.0};

struct NamedUnit
{
    const char* name;
    KineMechUnit unit;
};

// One unit of each kind, driven by external axes 3 and 1.
const std::vector<NamedUnit>& UnitsOfEachKind()
{
    static const std::vector<NamedUnit> units = {
        {"linear", LinearUnit(kFirstAxis, kSecondAxis, 3)},
        {"rotary", RotaryUnit(kFirstAxis, 3)},
        {"two rotary", TwoRotaryUnit(kFirstAxis, kSecondAxis, 3, 1)}};
    return units;
}

Request HeldToolRequest()
{
    Request request;
    request.joints = MakeJoints({100.0, -20.0, 40.0, -110.0, 50.0, 190.0});
    for (std::size_t i = 0; i < 6; ++i) request.joints.ExtAxis[i] = 11.0 + 37.0 * static_cast<double>(i);
    request.tool = HeldTool(kToolFrame);
    request.wobj = FixedWobj(kUser, kObject);
    return request;
}

Request StationaryToolRequest() { return Swapped(HeldToolRequest()); }

Mat4 Arm(const Request& request) { return NaiveSixAxisChain(WristArm().SixAxis, request.joints).flange; }

void SetUpCell(uint32_t units = 3)
{
    SetUpArm(WristArm());
    SetUnitCounts(units, 6);
}

void ExpectFrame(const ChainCall& call, const Request& request, const Mat4& expected)
{
    SCOPED_TRACE(call.name);
    const Outcome outcome = Perform(call, request);
    EXPECT_EQ(outcome.code, KINE_OK);
    EXPECT_EQ(outcome.printed, "");
    EXPECT_TRUE(IsFrame(outcome.pose.Frame, expected));
    EXPECT_TRUE(SameBits(outcome.pose.ExtAxis, request.joints.ExtAxis));
}

}  // namespace

TEST(work_object_on_a_unit, is_where_the_unit_is)
{
    SetUpCell();
    for (const auto& [name, unit] : UnitsOfEachKind()) {
        for (const int index : {1, 2}) {
            SCOPED_TRACE(name);
            StoreUnit(index, unit);
            Request request = HeldToolRequest();
            request.wobj = WobjOnUnit(index, kObject);
            request.wobj.UFrame = kUser;  // ignored: the unit carries the frame
            const Mat4 tcp = Arm(request) * MatrixOf(kToolFrame);
            const Mat4 wobj = UnitMatrix(unit, request.joints.ExtAxis) * MatrixOf(kObject);
            ExpectFrame(kWobj, request, RigidInverse(wobj) * tcp);
            ExpectFrame(kBase, request, tcp);
            ExpectFrame(kWorld, request, tcp);
        }
    }
}

TEST(work_object_on_a_unit, frame_with_tool_byte_2_goes_through_the_unit)
{
    SetUpCell();
    for (const auto& [name, unit] : UnitsOfEachKind()) {
        SCOPED_TRACE(name);
        StoreUnit(1, unit);
        Request request = HeldToolRequest();
        request.tool.HeldByRobot = 2;
        request.wobj = WobjOnUnit(1, kObject);
        const Mat4 tcp = Arm(request) * MatrixOf(kToolFrame);
        const Mat4 relative =
            RigidInverse(UnitMatrix(unit, request.joints.ExtAxis) * MatrixOf(kObject)) * tcp;
        ExpectFrame(kBase, request, tcp * relative);
        ExpectFrame(kWorld, request, tcp * relative);
        ExpectFrame(kFlange, request, MatrixOf(kObject) * relative);
        ExpectFrame(kWobj, request, relative);
    }
}

// Neither 1 nor 0: no test of the index, no user frame, and the unit carries the frame.
TEST(user_frame_byte_2, skips_the_index_test_and_the_user_frame)
{
    SetUpCell(1);
    for (const uint8_t byte : {uint8_t{2}, uint8_t{255}}) {
        // Index 0 would be refused with UFFix 0, and so would 1, the count.
        for (const int index : {0, 1}) {
            const KineMechUnit unit = RotaryUnit(kFirstAxis, 3);
            StoreUnit(index, unit);
            Request request = HeldToolRequest();
            request.wobj = WobjOnUnit(index, kObject);
            request.wobj.UFFix = byte;
            request.wobj.UFrame = kUser;
            const Mat4 tcp = Arm(request) * MatrixOf(kToolFrame);
            const Mat4 wobj = UnitMatrix(unit, request.joints.ExtAxis) * MatrixOf(kObject);
            ExpectFrame(kWobj, request, RigidInverse(wobj) * tcp);
        }
    }
}

TEST(held_work_object, with_user_frame_byte_other_than_1_has_no_user_frame)
{
    SetUpCell();
    for (const uint8_t byte : {uint8_t{0}, uint8_t{2}}) {
        Request request = StationaryToolRequest();
        request.wobj.UFFix = byte;
        request.wobj.MechUnitIndex = 1;  // of a unit that was never stored: a held work object needs none
        const Mat4 carried = Arm(request) * MatrixOf(kObject);
        ExpectFrame(kWobj, request, RigidInverse(carried) * MatrixOf(kToolFrame));
    }
}

TEST(robot_on_a_unit, moves_the_world_and_the_work_object_but_not_the_base)
{
    SetUpCell();
    for (const auto& [name, unit] : UnitsOfEachKind()) {
        for (const int carrier : {0, 1, 2}) {
            SCOPED_TRACE(name);
            StoreUnit(0, CarryingRobot(carrier == 0 ? unit : KineMechUnit{}, carrier));
            if (carrier != 0) StoreUnit(carrier, unit);
            const Request request = HeldToolRequest();
            const Mat4 mount = UnitMatrix(unit, request.joints.ExtAxis);
            const Mat4 tcp = Arm(request) * MatrixOf(kToolFrame);
            const Mat4 wobj = MatrixOf(kUser) * MatrixOf(kObject);
            ExpectFrame(kBase, request, tcp);
            ExpectFrame(kWorld, request, mount * tcp);
            ExpectFrame(kWobj, request, RigidInverse(wobj) * mount * tcp);
        }
    }
}

TEST(robot_on_a_unit, stationary_tool_stays_in_the_world)
{
    SetUpCell();
    for (const auto& [name, unit] : UnitsOfEachKind()) {
        SCOPED_TRACE(name);
        StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
        StoreUnit(1, unit);
        const Request request = StationaryToolRequest();
        const Mat4 mount = UnitMatrix(unit, request.joints.ExtAxis);
        const Mat4 flange = mount * Arm(request);
        const Mat4 carried = flange * MatrixOf(kUser) * MatrixOf(kObject);
        const Mat4 tool = MatrixOf(kToolFrame);
        ExpectFrame(kWorld, request, tool);
        ExpectFrame(kBase, request, RigidInverse(mount) * tool);
        ExpectFrame(kFlange, request, RigidInverse(flange) * tool);
        ExpectFrame(kWobj, request, RigidInverse(carried) * tool);
    }
}

TEST(robot_on_a_unit, and_work_object_on_another_or_the_same)
{
    SetUpCell();
    for (const int wobjUnit : {1, 2}) {
        const KineMechUnit track = LinearUnit(kFirstAxis, kSecondAxis, 0);
        const KineMechUnit table = TwoRotaryUnit(kFirstAxis, kSecondAxis, 5, 2);
        StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
        StoreUnit(1, track);
        StoreUnit(2, table);
        Request request = HeldToolRequest();
        request.wobj = WobjOnUnit(wobjUnit, kObject);
        const Mat4 mount = UnitMatrix(track, request.joints.ExtAxis);
        const Mat4 unit = wobjUnit == 1 ? mount : UnitMatrix(table, request.joints.ExtAxis);
        const Mat4 tcp = mount * Arm(request) * MatrixOf(kToolFrame);
        ExpectFrame(kWobj, request, RigidInverse(unit * MatrixOf(kObject)) * tcp);
    }
}

TEST(external_axis, is_chosen_by_the_axis_param_index)
{
    SetUpCell();
    for (int first = 0; first < 6; ++first) {
        for (int second = 0; second < 6; ++second) {
            const KineMechUnit unit = TwoRotaryUnit(kFirstAxis, kSecondAxis, first, second);
            StoreUnit(1, unit);
            Request request = HeldToolRequest();
            request.wobj = WobjOnUnit(1, kObject);
            const Mat4 tcp = Arm(request) * MatrixOf(kToolFrame);
            const Mat4 wobj = UnitMatrix(unit, request.joints.ExtAxis) * MatrixOf(kObject);
            ExpectFrame(kWobj, request, RigidInverse(wobj) * tcp);
        }
    }
}

// A quarter turn of a table in front of the robot: the point that lay along X now lies along -Y.
TEST(external_axis, of_a_rotary_unit_is_in_degrees)
{
    SetUpCell();
    StoreUnit(1, RotaryUnit({1000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    const KineFrame tcp = Perform(kWorld, request).pose.Frame;
    request.wobj = WobjOnUnit(1);
    request.joints.ExtAxis[0] = 90.0;
    const KineFrame seen = Perform(kWobj, request).pose.Frame;
    EXPECT_NEAR(seen.X, tcp.Y, 1e-9);
    EXPECT_NEAR(seen.Y, -(tcp.X - 1000.0), 1e-9);
    EXPECT_NEAR(seen.Z, tcp.Z, 1e-9);
}

// Gravity of 10 kg on the level arm: 10 * 9.8 * 480 N mm about axes 2 and 3, 10 * 9.8 * 80 about axis 5,
// downward, over 1000 k N mm / rad.
namespace {

KineKinematicParam ElasticArm()
{
    KineKinematicParam param = NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    param.SixAxis.k2 = 2.0e5;
    param.SixAxis.k3 = 1.0e5;
    param.SixAxis.k5 = 3.0e4;
    return param;
}

Mat4 SaggedArm(double reachMm, double wristReachMm)
{
    const double torque = -10.0 * 9.8 * reachMm;
    const double wristTorque = -10.0 * 9.8 * wristReachMm;
    const KineJoint sagged = MakeJoints({0.0, InDegrees(torque / 2.0e8), InDegrees(torque / 1.0e8), 0.0,
                                         InDegrees(wristTorque / 3.0e7), 0.0});
    return NaiveSixAxisChain(ElasticArm().SixAxis, sagged).flange;
}

}  // namespace

TEST(load, sags_the_arm_as_payload_and_as_tool_load_alike)
{
    SetUpArm(ElasticArm());
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    EXPECT_NEAR(Perform(kBase, request).pose.Frame.Z, 850.0, 1e-9);

    request.load = MakeLoad(10.0, 0.0, 0.0, 0.0);
    const Outcome payload = Perform(kBase, request);
    EXPECT_TRUE(IsFrame(payload.pose.Frame, SaggedArm(480.0, 80.0)));
    EXPECT_NEAR(payload.pose.Frame.Z, 849.6403790922636, 1e-9);

    request.tool.TLoad = request.load;
    request.load = {};
    EXPECT_TRUE(IsFrame(Perform(kBase, request).pose.Frame, SaggedArm(480.0, 80.0)));

    request.tool.TLoad.Mass = 4.0;
    request.load.Mass = 6.0;
    EXPECT_TRUE(IsFrame(Perform(kBase, request).pose.Frame, SaggedArm(480.0, 80.0)));
}

TEST(load, centre_of_gravity_is_in_millimetres)
{
    SetUpArm(ElasticArm());
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    request.tool.TLoad = MakeLoad(10.0, 0.0, 0.0, 100.0);
    const Outcome outcome = Perform(kBase, request);
    EXPECT_TRUE(IsFrame(outcome.pose.Frame, SaggedArm(580.0, 180.0)));
    EXPECT_NEAR(outcome.pose.Frame.Z, 849.5436737156, 1e-9);
}

// The payload sits at the frame the flange carries, the tool load in the flange itself; the frame's rotation
// turns neither.
TEST(load, payload_is_moved_by_the_position_of_the_carried_frame_only)
{
    SetUpArm(ElasticArm());
    const KineFrame frame = {0.0, 0.0, 60.0, 0.0, 90.0, 0.0};
    Request request;
    request.tool = HeldTool(frame);
    request.wobj = FixedWobj();
    request.load = MakeLoad(10.0, 0.0, 0.0, 40.0);
    EXPECT_TRUE(IsFrame(Perform(kBase, request).pose.Frame, SaggedArm(580.0, 180.0) * MatrixOf(frame)));

    request.tool.TLoad = MakeLoad(10.0, 0.0, 0.0, 40.0);
    request.load = {};
    EXPECT_TRUE(IsFrame(Perform(kBase, request).pose.Frame, SaggedArm(520.0, 120.0) * MatrixOf(frame)));
}

TEST(load, held_work_object_moves_the_payload_by_user_times_object)
{
    SetUpArm(ElasticArm());
    Request request;
    request.tool = StationaryTool();
    request.wobj = HeldWobj({0.0, 0.0, 50.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 10.0, 0.0, 0.0, 0.0});
    request.load = MakeLoad(10.0, 0.0, 0.0, 40.0);
    const Mat4 carried = SaggedArm(580.0, 180.0) * Shift(0.0, 0.0, 60.0);
    EXPECT_TRUE(IsFrame(Perform(kWobj, request).pose.Frame, RigidInverse(carried)));
}

TEST(load, inertia_and_axes_of_moment_have_no_effect)
{
    SetUpArm(ElasticArm());
    Request request;
    request.tool = HeldTool(kToolFrame);
    request.wobj = FixedWobj();
    request.load = MakeLoad(10.0, 1.0, 2.0, 3.0);
    request.tool.TLoad = MakeLoad(5.0, 4.0, 5.0, 6.0);
    const Outcome plain = Perform(kBase, request);
    for (KineLoad* load : {&request.load, &request.tool.TLoad}) {
        for (double& angle : load->Aom) angle = 77.0;
        for (double& inertia : load->Inertia) inertia = kInf;
    }
    EXPECT_TRUE(SameBits(Perform(kBase, request).pose, plain.pose));
}

// Up to 1e-5 kg, equal included, the centre of gravity counts as the flange.
TEST(load, mass_of_1e_minus_5_has_no_centre)
{
    KineKinematicParam soft = ElasticArm();
    soft.SixAxis.k5 = 1e-3;
    SetUpArm(soft);
    Request request;
    request.tool = HeldTool();
    request.wobj = FixedWobj();
    const auto heightWith = [&](double mass, double along) {
        request.tool.TLoad = MakeLoad(mass, 0.0, 0.0, along);
        return Perform(kBase, request).pose.Frame.Z;
    };
    EXPECT_EQ(heightWith(1e-5, 0.0), heightWith(1e-5, 50.0));
    const double above = 1.0000001e-5;
    EXPECT_NE(heightWith(above, 0.0), heightWith(above, 50.0));
}

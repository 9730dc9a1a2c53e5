// The inverse chain: targets composed from plain matrices at known joints give these joints.
#include "chain/inverse_chain.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>

#include "support/cell_plans.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr Pose kWobjFrame{640.0, 210.0, -130.0, -0.9, 0.3, 0.8};
constexpr Pose kStationaryTool{850.0, 330.0, 420.0, 2.0, -0.4, 1.1};
constexpr double kTolerance = 1e-9;  // rad; the screw turns 0.3 rad per millimetre

std::size_t AxesOf(const CellPlan& plan) { return plan.armType == kSix ? 6 : 4; }

// The external axes of the cell with values in the unused places that survive only as copied bits.
std::array<double, 6> TargetExtAxis()
{
    std::array<double, 6> extAxis = kExtAxis;
    extAxis[2] = -0.0;
    extAxis[3] = kNan;
    return extAxis;
}

PoseRecord Target(const CellPlan& plan, const Mat4& frame)
{
    return {PoseOf(frame), CellConfig(plan), TargetExtAxis()};
}

// The chain succeeds silently with these axes; axes the arm does not have are zero, external axes are those
// of the target.
void ExpectJoints(const Store& store, const InverseRequest& request, const std::array<double, 8>& axes,
                  std::size_t axisCount)
{
    Joints joints = Untouched<Joints>();
    KineResult code = KINE_ERR_CONFIG;
    const InverseRequest before = request;
    EXPECT_EQ(PrintedBy([&] { code = WobjToJoint(store, request, joints); }), "");
    ASSERT_EQ(code, 0u);
    for (std::size_t i = 0; i < 8; ++i) {
        if (i < axisCount) {
            EXPECT_NEAR(joints.axis[i], axes[i], kTolerance) << "axis " << i + 1;
        } else {
            EXPECT_EQ(joints.axis[i], 0.0) << "axis " << i + 1;
        }
    }
    EXPECT_TRUE(SameBits(joints.extAxis, request.target.extAxis));
    EXPECT_TRUE(SameRecordBits(request.target, before.target));
}

}  // namespace

// Any tool byte but 0 is a held tool here.
TEST(WobjToJoint, held_tool_in_every_cell)
{
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Pose toolFrame = CarriedFrame(plan);
        const Mat4 target = RigidInverse(WorldFromWobj(plan, kWobjFrame)) * WorldFromBase(plan) *
                            BaseFromFlange(plan) * MatrixOf(toolFrame);
        for (const std::uint8_t toolByte : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
            SCOPED_TRACE(int{toolByte});
            ExpectJoints(
                MakeCell(plan),
                {MakeTool(toolByte, toolFrame), CellWobj(plan, kWobjFrame), {}, Target(plan, target)}, kAxes,
                AxesOf(plan));
        }
    }
}

TEST(WobjToJoint, stationary_tool_in_every_cell)
{
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Pose held = CarriedFrame(plan);
        const Mat4 target = RigidInverse(WorldFromBase(plan) * BaseFromFlange(plan) * MatrixOf(held)) *
                            MatrixOf(kStationaryTool);
        for (const std::uint8_t wobjByte : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
            SCOPED_TRACE(int{wobjByte});
            ExpectJoints(MakeCell(plan),
                         {MakeTool(0, kStationaryTool), MakeWobj(wobjByte, held), {}, Target(plan, target)},
                         kAxes, AxesOf(plan));
        }
    }
}

// Whole turns of axes 1, 4 and 6 above and below those of kAxes.
TEST(WobjToJoint, configuration_of_the_target_selects_the_turns)
{
    const CellPlan plan{kSix, kOneLinearAxis, kOneRotaryAxis};
    const Pose toolFrame = CarriedFrame(plan);
    const Mat4 frame = RigidInverse(WorldFromWobj(plan, kWobjFrame)) * WorldFromBase(plan) *
                       BaseFromFlange(plan) * MatrixOf(toolFrame);
    PoseRecord target = Target(plan, frame);
    target.config = {5, -6, 10, 1};
    std::array<double, 8> axes = kAxes;
    axes[0] += 4.0 * kQuarterTurn;
    axes[3] -= 4.0 * kQuarterTurn;
    axes[5] += 8.0 * kQuarterTurn;
    ExpectJoints(MakeCell(plan), {MakeTool(1, toolFrame), CellWobj(plan, kWobjFrame), {}, target}, axes, 6);
}

// The other side of the wrist: axis 4 half a turn on, axis 5 mirrored, axis 6 half a turn back.
TEST(WobjToJoint, configuration_of_the_target_selects_the_posture)
{
    const CellPlan plan{kSix, kNoUnit, kNoUnit};
    const Pose toolFrame = CarriedFrame(plan);
    const Mat4 frame =
        RigidInverse(MatrixOf(kWobjFrame)) * WorldFromBase(plan) * BaseFromFlange(plan) * MatrixOf(toolFrame);
    PoseRecord target = Target(plan, frame);
    std::array<double, 8> axes = kAxes;
    axes[3] += kHalfTurn;  // 1.14 rad, quarter turn 0
    axes[4] = -axes[4];
    axes[5] -= kHalfTurn;  // 0.86 rad, quarter turn 0
    target.config = {1, 0, 0, 0};
    ExpectJoints(MakeCell(plan), {MakeTool(1, toolFrame), CellWobj(plan, kWobjFrame), {}, target}, axes, 6);
}

TEST(WobjToJoint, work_object_counts_through_its_combined_frame)
{
    const CellPlan plan{kSix, kNoUnit, kNoUnit};
    const Pose user{10.0, 20.0, 30.0, 0.4, 0.5, 0.6};
    const Pose object{-7.0, -8.0, -9.0, -0.7, -0.8, -0.9};
    const Mat4 combined = MatrixOf(user) * MatrixOf(object);
    const Mat4 worldFromFlange = WorldFromBase(plan) * BaseFromFlange(plan);
    const Pose toolFrame = CarriedFrame(plan);
    ExpectJoints(MakeCell(plan),
                 {MakeTool(1, toolFrame),
                  MakeWobj(0, user, object),
                  {},
                  Target(plan, RigidInverse(combined) * worldFromFlange * MatrixOf(toolFrame))},
                 kAxes, 6);
    ExpectJoints(MakeCell(plan),
                 {MakeTool(0, kStationaryTool),
                  MakeWobj(1, user, object),
                  {},
                  Target(plan, RigidInverse(worldFromFlange * combined) * MatrixOf(kStationaryTool))},
                 kAxes, 6);
}

// An axis frame at the origin stops the way into a frame only, and the target comes out of this one.
TEST(WobjToJoint, positioner_at_the_origin_is_served)
{
    const CellPlan plan{kSix, kNoUnit, kOneRotaryAxis};
    Store store = MakeCell(plan);
    store.mechUnits.units[2] = MakeUnit(kOneRotaryAxis, {}, {}, 0);
    const Pose toolFrame = CarriedFrame(plan);
    const Mat4 worldFromWobj = TurnZDeg(kExtAxis[0]) * MatrixOf(kWobjFrame);
    const Mat4 target =
        RigidInverse(worldFromWobj) * WorldFromBase(plan) * BaseFromFlange(plan) * MatrixOf(toolFrame);
    ExpectJoints(store, {MakeTool(1, toolFrame), CellWobj(plan, kWobjFrame), {}, Target(plan, target)}, kAxes,
                 6);
}

// The target may be given at the arm as it bends: with the upper arm upright and the forearm level, only the
// wrist bent up by 0.5 rad, a weight z mm along the approach axis from the wrist lies z cos 0.5 in front of
// axis 5 and 400 mm more in front of axes 2 and 3.
class SaggingArmInverse : public ::testing::Test
{
protected:
    static KineKinematicParam Param()
    {
        KineKinematicParam param = NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
        param.SixAxis.k2 = 2e5;
        param.SixAxis.k3 = 1e5;
        param.SixAxis.k5 = 3e4;
        return param;
    }

    // Flange of the bent arm under 10 kg (98 N) at z; moments in N mm, stiffnesses in N m / rad.
    static Mat4 BentFlange(double z)
    {
        const double out = z * std::cos(0.5);
        const double moment = -98.0 * (400.0 + out);
        return NaiveSixAxisChain(Param().SixAxis, std::array<double, 6>{0.0, moment / 2e8, moment / 1e8, 0.0,
                                                                        0.5 - 98.0 * out / 3e7, 0.0})
            .flange;
    }

    static Load Weight(double mass, double z)
    {
        Load load{};
        load.mass = mass;
        load.centre = {0.0, 0.0, z};
        return load;
    }

    static constexpr std::array<double, 8> kUnbent{0.0, 0.0, 0.0, 0.0, 0.5, 0.0, 0.0, 0.0};
};

// 4 kg of tool 20 mm from the flange, 6 kg of payload 30 mm from the tool frame at 50 mm: 56 mm together.
TEST_F(SaggingArmInverse, tool_load_and_payload_act_behind_the_tool_frame)
{
    const Pose toolFrame{0.0, 0.0, 50.0, 0.2, 0.1, -0.3};
    Tool tool = MakeTool(1, toolFrame);
    tool.load = Weight(4.0, 20.0);
    const PoseRecord target{PoseOf(BentFlange(136.0) * MatrixOf(toolFrame)), {0, 0, 0, 0}, {}};
    ExpectJoints(ReadyStore(kSix, Param()), {tool, MakeWobj(0, {}), Weight(6.0, 30.0), target}, kUnbent, 6);
}

TEST_F(SaggingArmInverse, payload_acts_behind_the_held_work_object)
{
    const Pose held{0.0, 0.0, 50.0, 0.2, 0.1, -0.3};
    const PoseRecord target{
        PoseOf(RigidInverse(BentFlange(160.0) * MatrixOf(held)) * MatrixOf(kStationaryTool)),
        {0, 0, 0, 0},
        {}};
    ExpectJoints(ReadyStore(kSix, Param()),
                 {MakeTool(0, kStationaryTool), MakeWobj(1, held), Weight(10.0, 30.0), target}, kUnbent, 6);
}

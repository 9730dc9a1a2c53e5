// The four forward chains and the vision pose, against compositions of plain matrices.
#include "chain/forward_chain.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>

#include "support/cell_plans.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr Pose kWobjFrame{640.0, 210.0, -130.0, -0.9, 0.3, 0.8};
constexpr Pose kStationaryTool{850.0, 330.0, 420.0, 2.0, -0.4, 1.1};
constexpr std::array<double, 6> kNoExtAxis{};
constexpr double kTolerance = 1e-8;

using Chain = KineResult (*)(const Store&, const ForwardRequest&, PoseRecord&);

// Runs a chain that must succeed silently, and checks its whole answer.
void ExpectAnswer(Chain chain, const Store& store, const ForwardRequest& request, const Mat4& frame,
                  const KineArmConfig& config, const std::array<double, 6>& extAxis)
{
    PoseRecord answer = Untouched<PoseRecord>();
    KineResult code = KINE_OK;
    const ForwardRequest before = request;
    const std::string printed = PrintedBy([&] { code = chain(store, request, answer); });
    EXPECT_EQ(code, 0u);
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(PoseIs(answer.frame, frame, kTolerance));
    EXPECT_TRUE(SameBits(answer.config, config));
    EXPECT_TRUE(SameBits(answer.extAxis, extAxis));
    EXPECT_TRUE(SameBits(request.joints, before.joints));
}

}  // namespace

TEST(ForwardChains, held_tool_in_every_cell)
{
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store store = MakeCell(plan);
        const Pose toolFrame = CarriedFrame(plan);
        const ForwardRequest request{CellJoints(), MakeTool(1, toolFrame), CellWobj(plan, kWobjFrame), {}};
        const KineArmConfig config = CellConfig(plan);

        const Mat4 inBase = BaseFromFlange(plan) * MatrixOf(toolFrame);
        const Mat4 inWorld = WorldFromBase(plan) * inBase;
        const Mat4 inWobj = RigidInverse(WorldFromWobj(plan, kWobjFrame)) * inWorld;
        ExpectAnswer(JointToBase, store, request, inBase, config, kExtAxis);
        ExpectAnswer(JointToFlange, store, request, MatrixOf(toolFrame), config, kNoExtAxis);
        ExpectAnswer(JointToWorld, store, request, inWorld, config, kExtAxis);
        ExpectAnswer(JointToWobj, store, request, inWobj, config, kExtAxis);
    }
}

// The tool stands at one place in the world whatever the arm does; base and flange see it from where they
// are, and the held work object sees it as the tool centre point.
TEST(ForwardChains, stationary_tool_in_every_cell)
{
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store store = MakeCell(plan);
        const Pose held = CarriedFrame(plan);
        const KineArmConfig config = CellConfig(plan);
        const Mat4 tool = MatrixOf(kStationaryTool);
        const Mat4 worldFromFlange = WorldFromBase(plan) * BaseFromFlange(plan);
        for (const std::uint8_t wobjByte : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
            SCOPED_TRACE(int{wobjByte});
            const ForwardRequest request{
                CellJoints(), MakeTool(0, kStationaryTool), MakeWobj(wobjByte, held), {}};
            ExpectAnswer(JointToBase, store, request, RigidInverse(WorldFromBase(plan)) * tool, config,
                         kExtAxis);
            ExpectAnswer(JointToFlange, store, request, RigidInverse(worldFromFlange) * tool, config,
                         kExtAxis);
            ExpectAnswer(JointToWorld, store, request, tool, config, kExtAxis);
            ExpectAnswer(JointToWobj, store, request, RigidInverse(worldFromFlange * MatrixOf(held)) * tool,
                         config, kExtAxis);
        }
    }
}

// Held for the choice of the flange's frame, yet not "on the robot": three chains go on as with a stationary
// tool, and set the tool centre point in the work object behind the carried frame.
TEST(ForwardChains, tool_byte_other_than_one_takes_the_stationary_path)
{
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store store = MakeCell(plan);
        const Pose toolFrame = CarriedFrame(plan);
        const KineArmConfig config = CellConfig(plan);
        const Mat4 inBase = BaseFromFlange(plan) * MatrixOf(toolFrame);
        const Mat4 inWorld = WorldFromBase(plan) * inBase;
        const Mat4 relative = RigidInverse(WorldFromWobj(plan, kWobjFrame)) * inWorld;
        for (const std::uint8_t toolByte : {std::uint8_t{2}, std::uint8_t{255}}) {
            SCOPED_TRACE(int{toolByte});
            const ForwardRequest request{
                CellJoints(), MakeTool(toolByte, toolFrame), CellWobj(plan, kWobjFrame), {}};
            ExpectAnswer(JointToBase, store, request, inBase * relative, config, kExtAxis);
            ExpectAnswer(JointToFlange, store, request, MatrixOf(kWobjFrame) * relative, config, kExtAxis);
            ExpectAnswer(JointToWorld, store, request, inWorld * relative, config, kExtAxis);
            ExpectAnswer(JointToWobj, store, request, relative, config, kExtAxis);
        }
    }
}

// User and object frame count through their product only.
TEST(ForwardChains, work_object_counts_through_its_combined_frame)
{
    const CellPlan plan{kSix, kNoUnit, kNoUnit};
    const Store store = MakeCell(plan);
    const Pose user{10.0, 20.0, 30.0, 0.4, 0.5, 0.6};
    const Pose object{-7.0, -8.0, -9.0, -0.7, -0.8, -0.9};
    const Pose toolFrame = CarriedFrame(plan);
    const ForwardRequest inCell{CellJoints(), MakeTool(1, toolFrame), MakeWobj(0, user, object), {}};
    const Mat4 combined = MatrixOf(user) * MatrixOf(object);
    const Mat4 worldFromFlange = WorldFromBase(plan) * BaseFromFlange(plan);
    ExpectAnswer(JointToWobj, store, inCell, RigidInverse(combined) * worldFromFlange * MatrixOf(toolFrame),
                 CellConfig(plan), kExtAxis);
    const ForwardRequest held{CellJoints(), MakeTool(0, kStationaryTool), MakeWobj(1, user, object), {}};
    ExpectAnswer(JointToWobj, store, held,
                 RigidInverse(worldFromFlange * combined) * MatrixOf(kStationaryTool), CellConfig(plan),
                 kExtAxis);
}

// The whole frame is copied, not taken apart and put together again: angles out of range and NaN survive.
TEST(JointToFlange, held_tool_gives_the_bits_of_its_frame)
{
    const Store store = MakeCell({kSix, kNoUnit, kNoUnit});
    const Pose odd{1.0, -0.0, std::nan(""), 9.0, -1.5707963267948966, 4.0};
    for (const double axis1 : {0.0, 0.7, -3.0}) {
        ForwardRequest request{CellJoints(), MakeTool(1, odd), MakeWobj(0, {}), {}};
        request.joints.axis[0] = axis1;
        PoseRecord answer = Untouched<PoseRecord>();
        EXPECT_EQ(JointToFlange(store, request, answer), 0u);
        EXPECT_TRUE(SameBits(answer.frame.AsPose(), odd));
        EXPECT_TRUE(SameBits(answer.extAxis, kNoExtAxis));
        // 0, 0.7 and -3 rad: quarter turns 0, 0 and -1.91 - 1.
        EXPECT_EQ(answer.config.Cfg1, axis1 < 0.0 ? -2 : 0);
    }
}

TEST(JointToWobj, agrees_with_the_world_for_a_zero_work_object_and_a_base_at_the_origin)
{
    Store store = MakeCell({kSix, kNoUnit, kNoUnit});
    store.mounting = {kFixedInWorld, 0, {}};
    const ForwardRequest request{
        CellJoints(), MakeTool(1, {15.0, -25.0, 120.0, 0.5, -0.6, 0.7}), MakeWobj(0, {}), {}};
    PoseRecord world{};
    PoseRecord wobj{};
    PoseRecord base{};
    ASSERT_EQ(JointToWorld(store, request, world), 0u);
    ASSERT_EQ(JointToWobj(store, request, wobj), 0u);
    ASSERT_EQ(JointToBase(store, request, base), 0u);
    EXPECT_TRUE(PoseIs(wobj.frame, MatrixOf(world.frame)));
    EXPECT_TRUE(PoseIs(base.frame, MatrixOf(world.frame)));
}

// 4110 counts its axis 2 with whole turns for the configuration and from the folded elbow for the pose; both
// see the caller's value.
TEST(ForwardChains, arm_type_4110_sees_the_joints_of_the_caller_in_every_step)
{
    const CellPlan plan{k4110, kNoUnit, kNoUnit};
    const Store store = MakeCell(plan);
    ForwardRequest request{CellJoints(), MakeTool(1, CarriedFrame(plan)), CellWobj(plan, kWobjFrame), {}};
    request.joints.axis[1] = InRadians(370.0);
    const Mat4 inBase =
        NaiveFourAxisFlange(Scara().FourAxis, kAxes[0], InRadians(190.0), kAxes[2], kAxes[3]) *
        MatrixOf(CarriedFrame(plan));
    // 370 degrees lie in quarter turn 4; wrapped they are 10, not negative.
    const KineArmConfig config{-1, 1, 4, -2};
    ExpectAnswer(JointToBase, store, request, inBase, config, kExtAxis);
    ExpectAnswer(JointToBase, store, request, inBase, config, kExtAxis);
    ExpectAnswer(JointToWorld, store, request, WorldFromBase(plan) * inBase, config, kExtAxis);
}

// The arm at rest stretches level from its elbow: axes 2 and 3 lie 500 mm above each other, the flange
// 400 + 80 mm out and up by 50. The weight of 10 kg (98 N), r mm in front of axes 2 and 3 and r - 400 in
// front of axis 5, turns the joints by moment / stiffness.
class SaggingArm : public ::testing::Test
{
protected:
    static Store Arm()
    {
        KineKinematicParam param = NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
        param.SixAxis.k2 = 2e5;
        param.SixAxis.k3 = 1e5;
        param.SixAxis.k5 = 3e4;
        return ReadyStore(kSix, param);
    }

    // Flange of the bent arm, with the centre of gravity of 10 kg r mm out, at the height of the flange.
    static Mat4 BentFlange(double r)
    {
        const double q2 = -98.0 * r / 2e8;  // moments in N mm, stiffnesses in N m / rad
        const double q3 = -98.0 * r / 1e8;
        const double q5 = -98.0 * (r - 400.0) / 3e7;
        return NaiveSixAxisChain(NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0}).SixAxis,
                                 std::array<double, 6>{0.0, q2, q3, 0.0, q5, 0.0})
            .flange;
    }

    static Load Weight(double mass, double z)
    {
        Load load{};
        load.mass = mass;
        load.centre = {0.0, 0.0, z};
        return load;
    }
};

TEST_F(SaggingArm, payload_at_the_flange_bends_the_arm)
{
    const ForwardRequest request{{}, MakeTool(1, {}), MakeWobj(0, {}), Weight(10.0, 0.0)};
    ExpectAnswer(JointToBase, Arm(), request, BentFlange(480.0), {0, 0, 0, 0}, kNoExtAxis);
    // Plain trigonometry: 300 + 500 cos q2 + 400 sin (q2 + q3) + 50 cos (q2 + q3) + 80 sin (q2 + q3 + q5).
    PoseRecord answer{};
    EXPECT_EQ(JointToBase(Arm(), request, answer), 0u);
    const double q2 = -2.352e-4;
    const double q3 = -4.704e-4;
    const double q5 = -7840.0 / 3e7;
    EXPECT_NEAR(answer.frame.AsPose().z,
                300.0 + 500.0 * std::cos(q2) + 400.0 * std::sin(q2 + q3) + 50.0 * std::cos(q2 + q3) +
                    80.0 * std::sin(q2 + q3 + q5),
                1e-9);
}

// The payload counts from the frame the flange carries: 50 + 30 mm out.
TEST_F(SaggingArm, payload_lies_behind_the_tool_frame)
{
    const Pose toolFrame{0.0, 0.0, 50.0, 0.0, 0.0, 0.0};
    const ForwardRequest request{{}, MakeTool(1, toolFrame), MakeWobj(0, {}), Weight(10.0, 30.0)};
    const Mat4 expected = BentFlange(560.0) * MatrixOf(toolFrame);
    ExpectAnswer(JointToBase, Arm(), request, expected, {0, 0, 0, 0}, kNoExtAxis);
    ExpectAnswer(JointToWorld, Arm(), request, expected, {0, 0, 0, 0}, kNoExtAxis);
    ExpectAnswer(JointToWobj, Arm(), request, expected, {0, 0, 0, 0}, kNoExtAxis);
}

// 4 kg of tool 20 mm out and 6 kg of payload 80 mm out: (80 + 480) / 10 = 56 mm.
TEST_F(SaggingArm, tool_load_and_payload_are_combined)
{
    const Pose toolFrame{0.0, 0.0, 50.0, 0.0, 0.0, 0.0};
    Tool tool = MakeTool(1, toolFrame);
    tool.load = Weight(4.0, 20.0);
    const ForwardRequest request{{}, tool, MakeWobj(0, {}), Weight(6.0, 30.0)};
    ExpectAnswer(JointToBase, Arm(), request, BentFlange(536.0) * MatrixOf(toolFrame), {0, 0, 0, 0},
                 kNoExtAxis);
}

TEST_F(SaggingArm, payload_lies_behind_the_held_work_object)
{
    const Pose held{0.0, 0.0, 50.0, 0.3, 0.0, 0.0};
    const Pose stationary{700.0, 20.0, 800.0, 0.1, 0.2, 0.3};
    const ForwardRequest request{{}, MakeTool(0, stationary), MakeWobj(1, held), Weight(10.0, 30.0)};
    const Mat4 flange = BentFlange(560.0);
    ExpectAnswer(JointToWobj, Arm(), request, RigidInverse(flange * MatrixOf(held)) * MatrixOf(stationary),
                 {0, 0, 0, 0}, kNoExtAxis);
    ExpectAnswer(JointToFlange, Arm(), request, RigidInverse(flange) * MatrixOf(stationary), {0, 0, 0, 0},
                 kNoExtAxis);
}

TEST(JointToVision, gives_frame_five_or_the_plane_of_the_forearm_with_the_configuration)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        SCOPED_TRACE(type);
        const CellPlan plan{type, kOneRotaryAxis, kNoUnit};
        const Store store = MakeCell(plan);
        Mat4 expected = NaiveSixAxisChain(WristArm().SixAxis, kAxes).frame[5];
        if (type != kSix) {
            // Both four-axis arms take axis 2 as the elbow angle itself.
            expected = NaiveFourAxisFlange(Scara().FourAxis, kAxes[0], kAxes[1], 0.0, 0.0);
            expected[2][3] = 0.0;
        }
        PoseRecord answer = Untouched<PoseRecord>();
        const std::string printed =
            PrintedBy([&] { EXPECT_EQ(JointToVision(store, CellJoints(), answer), 0u); });
        EXPECT_EQ(printed, "");
        EXPECT_TRUE(PoseIs(answer.frame, expected));
        EXPECT_TRUE(SameBits(answer.config, CellConfig(plan)));
        EXPECT_TRUE(SameBits(answer.extAxis, kNoExtAxis));
    }
}

TEST(JointToVision, does_not_depend_on_joint_six)
{
    const Store store = MakeCell({kSix, kNoUnit, kNoUnit});
    Joints joints = CellJoints();
    PoseRecord first{};
    PoseRecord second{};
    EXPECT_EQ(JointToVision(store, joints, first), 0u);
    joints.axis[5] = 1.3;
    EXPECT_EQ(JointToVision(store, joints, second), 0u);
    EXPECT_TRUE(SamePoseBits(first.frame, second.frame));
    EXPECT_EQ(first.config.Cfg3, 2);
    EXPECT_EQ(second.config.Cfg3, 0);
}

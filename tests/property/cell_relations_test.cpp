// How the poses in base, flange, world and work object hang together, for every arm.
#include <gtest/gtest.h>

#include "six_axis_cases.h"
#include "support/chain_calls.h"

namespace kine::test {
namespace {

struct Cell
{
    KineJoint q{};
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};

    Mat4 Get(ForwardCall call) const
    {
        KinePose pose{};
        EXPECT_EQ(call(&q, &tool, &wobj, &load, &pose), KINE_OK);
        return MatrixOf(pose.Frame);
    }
    Mat4 Base() const { return Get(Kine_JointToBasePos); }
    Mat4 Flange() const { return Get(Kine_JointToFlangePos); }
    Mat4 World() const { return Get(Kine_JointToWorldPos); }
    Mat4 Object() const { return Get(Kine_JointToWobjPos); }
};

KineMechUnit RandomUnit(SeededRandom& random)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = static_cast<uint16_t>(random.Whole(1, 3));
    unit.AxisCount = 2;
    for (std::size_t i = 0; i < 2; ++i) {
        unit.AxisFrame[i] = RandomFrame(random, 600.0, 80.0);
        unit.AxisParamIndex[i] = static_cast<uint8_t>(random.Whole(0, 5));
    }
    return unit;
}

struct Arm
{
    std::uint32_t type;
    KineKinematicParam param;
};

Arm RandomArm(SeededRandom& random)
{
    switch (random.Whole(0, 5)) {
        case 0: return {6, Puma()};
        case 1: return {6, WristArm()};
        case 2: return {6, CalibratedWristArm()};
        case 3: return {4, TiltedScara()};
        case 4: return {4110, TiltedScara()};
        default: return {4, Scara()};
    }
}

// An arm in a cell with two units, the robot on the ground or on unit 2.
void SetUpCell(SeededRandom& random, const Arm& arm, bool onCarrier)
{
    ASSERT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
    ASSERT_EQ(Kine_SetMechUnitGlobalCfg(3, 6, 1), KINE_OK);
    KineMechUnit ground{};
    ground.Option1 = onCarrier ? 1 : 0;
    ground.Option2 = 2;
    const KineMechUnit first = RandomUnit(random);
    const KineMechUnit second = RandomUnit(random);
    ASSERT_EQ(Kine_SetMechUnitParam(0, &ground), KINE_OK);
    ASSERT_EQ(Kine_SetMechUnitParam(1, &first), KINE_OK);
    ASSERT_EQ(Kine_SetMechUnitParam(2, &second), KINE_OK);
}

Cell RandomCell(SeededRandom& random)
{
    Cell cell;
    for (double& axis : cell.q.Axis) axis = random.Uniform(-400, 400);
    for (double& axis : cell.q.ExtAxis) axis = random.Uniform(-300, 300);
    cell.tool = RandomTool(random, 4.0);
    cell.wobj = FixedWobj(RandomFrame(random, 700.0, 80.0), RandomFrame(random, 150.0, 80.0));
    cell.load = RandomLoad(random, 3.0);
    return cell;
}

template <class Check>
void ForRandomCells(std::uint64_t seed, bool onCarrier, Check check)
{
    SeededRandom random(seed);
    for (int i = 0; i < 400; ++i) {
        const Arm arm = RandomArm(random);
        SetUpCell(random, arm, onCarrier);
        const Cell cell = RandomCell(random);
        SCOPED_TRACE(::testing::Message() << "case " << i << " arm " << arm.type << " " << cell.q);
        check(random, cell, arm);
    }
}

Mat4 CombinedFrame(const KineWobj& wobj) { return MatrixOf(wobj.UFrame) * MatrixOf(wobj.OFrame); }

TEST(CellRelations, a_robot_on_the_ground_has_its_base_at_the_world_origin)
{
    ForRandomCells(3001, false, [](SeededRandom&, const Cell& cell, const Arm&) {
        EXPECT_TRUE(IsMatrix(cell.Base(), cell.World()));
    });
}

TEST(CellRelations, the_object_pose_is_the_world_pose_seen_from_the_object)
{
    for (const bool onCarrier : {false, true}) {
        ForRandomCells(3002, onCarrier, [](SeededRandom&, const Cell& cell, const Arm&) {
            EXPECT_TRUE(IsMatrix(CombinedFrame(cell.wobj) * cell.Object(), cell.World()));
        });
    }
}

TEST(CellRelations, the_way_from_base_to_world_is_the_same_for_every_joint_set_and_tool)
{
    ForRandomCells(3003, true, [](SeededRandom& random, const Cell& cell, const Arm&) {
        Cell other = RandomCell(random);
        for (std::size_t i = 0; i < 6; ++i) other.q.ExtAxis[i] = cell.q.ExtAxis[i];
        EXPECT_TRUE(IsMatrix(cell.World() * RigidInverse(cell.Base()),
                             other.World() * RigidInverse(other.Base()), 1e-7));
    });
}

TEST(CellRelations, the_way_to_an_object_on_a_unit_is_the_same_for_every_joint_set_and_tool)
{
    for (const bool onCarrier : {false, true}) {
        ForRandomCells(3004, onCarrier, [](SeededRandom& random, Cell cell, const Arm&) {
            Cell other = RandomCell(random);
            for (std::size_t i = 0; i < 6; ++i) other.q.ExtAxis[i] = cell.q.ExtAxis[i];
            cell.wobj = other.wobj = WobjOnUnit(1, RandomFrame(random, 150.0, 80.0));
            EXPECT_TRUE(IsMatrix(cell.World() * RigidInverse(cell.Object()),
                                 other.World() * RigidInverse(other.Object()), 1e-7));
        });
    }
}

TEST(CellRelations, the_base_pose_of_a_held_tool_does_not_look_at_the_cell)
{
    ForRandomCells(3005, true, [](SeededRandom& random, const Cell& cell, const Arm&) {
        Cell other = cell;
        for (double& axis : other.q.ExtAxis) axis = random.Uniform(-300, 300);
        other.wobj = FixedWobj(RandomFrame(random, 700.0, 80.0));
        EXPECT_TRUE(IsMatrix(cell.Base(), other.Base(), 0.0, 0.0));
    });
}

TEST(CellRelations, splitting_user_and_object_frame_differently_changes_nothing)
{
    for (const bool held : {false, true}) {
        ForRandomCells(3006, true, [held](SeededRandom& random, Cell cell, const Arm&) {
            cell.wobj.HeldByRobot = held ? 1 : 0;
            cell.tool.HeldByRobot = held ? 0 : 1;
            Cell other = cell;
            const Mat4 user = MatrixOf(RandomFrame(random, 500.0, 80.0));
            other.wobj.UFrame = FrameOf(user);
            other.wobj.OFrame = FrameOf(RigidInverse(user) * CombinedFrame(cell.wobj));
            EXPECT_TRUE(IsMatrix(cell.Base(), other.Base(), 1e-7, 1e-9));
            EXPECT_TRUE(IsMatrix(cell.World(), other.World(), 1e-7, 1e-9));
            EXPECT_TRUE(IsMatrix(cell.Object(), other.Object(), 1e-7, 1e-9));
            EXPECT_TRUE(IsMatrix(cell.Flange(), other.Flange(), 1e-7, 1e-9));
        });
    }
}

TEST(CellRelations, a_stationary_tool_stands_where_it_stands)
{
    for (const bool onCarrier : {false, true}) {
        ForRandomCells(3007, onCarrier, [onCarrier](SeededRandom&, Cell cell, const Arm&) {
            cell.tool.HeldByRobot = 0;
            cell.wobj.HeldByRobot = 1;
            EXPECT_TRUE(IsMatrix(cell.World(), MatrixOf(cell.tool.TFrame), 1e-7));
            if (!onCarrier) {
                EXPECT_TRUE(IsMatrix(cell.Base(), MatrixOf(cell.tool.TFrame), 1e-7));
            }
        });
    }
}

TEST(CellRelations, holding_the_object_mirrors_holding_the_tool)
{
    // The frame carried by the arm, taken as a tool, has a world pose W. A stationary tool T is then at
    // inverse(W) * T in it.
    for (const bool onCarrier : {false, true}) {
        ForRandomCells(3008, onCarrier, [](SeededRandom&, Cell cell, const Arm&) {
            cell.wobj.OFrame = {};
            cell.tool.HeldByRobot = 0;
            cell.wobj.HeldByRobot = 1;
            Cell mirrored = cell;
            mirrored.tool = HeldTool(cell.wobj.UFrame);
            mirrored.tool.TLoad = cell.tool.TLoad;
            mirrored.wobj = FixedWobj();
            EXPECT_TRUE(
                IsMatrix(cell.Object(), RigidInverse(mirrored.World()) * MatrixOf(cell.tool.TFrame), 1e-7));
            EXPECT_TRUE(IsMatrix(cell.Flange(), MatrixOf(cell.wobj.UFrame) * cell.Object(), 1e-7));
            EXPECT_TRUE(IsMatrix(cell.Base(), mirrored.Base() * cell.Object(), 1e-7));
        });
    }
}

TEST(CellRelations, a_rigid_arm_puts_the_tool_frame_behind_the_flange)
{
    SeededRandom random(3009);
    for (const auto& param : {Puma(), WristArm()}) {
        ASSERT_EQ(Kine_InitKinematicParam(6, &param), KINE_OK);
        for (int i = 0; i < 200; ++i) {
            Cell cell = RandomCell(random);
            SCOPED_TRACE(::testing::Message() << i << " " << cell.q);
            Cell bare = cell;
            bare.tool.TFrame = {};
            EXPECT_TRUE(IsMatrix(cell.Base(), bare.Base() * cell.Flange()));
            EXPECT_TRUE(IsMatrix(cell.Flange(), MatrixOf(cell.tool.TFrame)));
        }
    }
}

TEST(CellRelations, solving_in_a_cell_returns_the_joints_and_external_axes)
{
    for (const bool onCarrier : {false, true}) {
        for (const bool stationary : {false, true}) {
            SeededRandom random(3010);
            const KineKinematicParam param = CalibratedWristArm();
            for (int i = 0; i < 200; ++i) {
                SetUpCell(random, {6, param}, onCarrier);
                Cell cell = RandomCell(random);
                const KineJoint axes = RegularJoints(random, param.SixAxis, 700.0);
                for (std::size_t k = 0; k < 6; ++k) cell.q.Axis[k] = axes.Axis[k];
                if (stationary) {
                    cell.tool.HeldByRobot = 0;
                    cell.wobj.HeldByRobot = 1;
                } else if (i % 2 == 0) {
                    cell.wobj = WobjOnUnit(1, RandomFrame(random, 150.0, 80.0));
                }
                SCOPED_TRACE(::testing::Message() << onCarrier << stationary << " " << i << " " << cell.q);
                KinePose target{};
                ASSERT_EQ(Kine_JointToWobjPos(&cell.q, &cell.tool, &cell.wobj, &cell.load, &target), KINE_OK);
                KineJoint solved{};
                ASSERT_EQ(Kine_WobjPosToJoint(&target, &cell.tool, &cell.wobj, &cell.load, &solved), KINE_OK);
                for (std::size_t k = 0; k < 6; ++k) {
                    EXPECT_NEAR(solved.Axis[k], cell.q.Axis[k], 1e-7) << "axis " << k + 1;
                    EXPECT_EQ(solved.ExtAxis[k], cell.q.ExtAxis[k]);
                }
            }
        }
    }
}

}  // namespace
}  // namespace kine::test

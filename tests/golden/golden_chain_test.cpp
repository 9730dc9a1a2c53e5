// Complete cells through the exports: tool or work object on the flange, work object and robot on mechanical
// units of every kind, all arm types.
#include <gtest/gtest.h>

#include "golden_table.h"
#include "support/records.h"
#include "support/stdout_capture.h"

namespace kine::test {
namespace {

struct GoldenCell
{
    std::string name;
    std::uint32_t type = 0;
    KineKinematicParam param{};
    std::array<KineMechUnit, 3> units{};
    KineTool tool{};
    KineWobj wobj{};
    KineLoad load{};
    KineJoint joints{};
    KineFrame base{}, flange{}, world{}, object{};
    KineArmConfig config{};
    std::array<double, 6> solved{};
};

void ReadUnit(Row& row, std::array<KineMechUnit, 3>& units)
{
    KineMechUnit& unit = units[static_cast<std::size_t>(row.Integer())];
    unit.Active = 1;
    unit.UnitKind = static_cast<uint16_t>(row.Integer());
    unit.AxisCount = static_cast<uint8_t>(row.Integer());
    for (std::size_t i = 0; i < 2; ++i) unit.AxisParamIndex[i] = static_cast<uint8_t>(row.Integer());
    for (std::size_t i = 0; i < 2; ++i) unit.AxisFrame[i] = row.Frame();
}

void ReadTool(Row& row, KineTool& tool)
{
    tool.HeldByRobot = static_cast<uint8_t>(row.Integer());
    tool.TFrame = row.Frame();
    tool.TLoad = row.LoadOf();
}

void ReadWobj(Row& row, KineWobj& wobj)
{
    wobj.HeldByRobot = static_cast<uint8_t>(row.Integer());
    wobj.UFFix = static_cast<uint8_t>(row.Integer());
    wobj.MechUnitIndex = static_cast<int8_t>(row.Integer());
    wobj.UFrame = row.Frame();
    wobj.OFrame = row.Frame();
}

// Takes one line into the cell; the name in front says what it holds.
void ReadLine(Row& row, const std::string& what, GoldenCell& cell)
{
    if (what == "arm") {
        cell.type = static_cast<std::uint32_t>(row.Integer());
        cell.param = ArmOfTable(row.Word()).param;
    } else if (what == "unit") {
        ReadUnit(row, cell.units);
    } else if (what == "carrier") {
        cell.units[0].Option1 = 1;
        cell.units[0].Option2 = static_cast<uint8_t>(row.Integer());
    } else if (what == "tool") {
        ReadTool(row, cell.tool);
    } else if (what == "wobj") {
        ReadWobj(row, cell.wobj);
    } else if (what == "load") {
        cell.load = row.LoadOf();
    } else if (what == "joints") {
        for (std::size_t i = 0; !row.AtEnd(); ++i) cell.joints.Axis[i] = row.Number();
    } else if (what == "ext") {
        for (double& value : cell.joints.ExtAxis) value = row.Number();
    } else if (what == "base") {
        cell.base = row.Frame();
    } else if (what == "flange") {
        cell.flange = row.Frame();
    } else if (what == "world") {
        cell.world = row.Frame();
    } else if (what == "object") {
        cell.object = row.Frame();
    } else if (what == "cfg") {
        cell.config = row.Config();
    } else if (what == "solved") {
        for (std::size_t i = 0; !row.AtEnd(); ++i) cell.solved[i] = row.Number();
    } else {
        ADD_FAILURE() << row.Place() << ": unknown line " << what;
    }
    EXPECT_TRUE(row.AtEnd()) << row.Place();
}

std::vector<GoldenCell> ReadCells()
{
    std::vector<GoldenCell> cells;
    for (Row& row : ReadTable("chains.txt")) {
        const std::string what = row.Word();
        if (what == "case") {
            cells.emplace_back().name = row.Word();
        } else if (what != "end") {
            ReadLine(row, what, cells.back());
        }
    }
    return cells;
}

void Configure(const GoldenCell& cell)
{
    ASSERT_EQ(Kine_InitKinematicParam(cell.type, &cell.param), KINE_OK);
    ASSERT_EQ(Kine_SetMechUnitGlobalCfg(3, 6, 1), KINE_OK);
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(Kine_SetMechUnitParam(i, &cell.units[static_cast<std::size_t>(i)]), KINE_OK);
}

using ForwardCall = KineResult(KINE_CALL*)(const KineJoint*, const KineTool*, const KineWobj*,
                                           const KineLoad*, KinePose*);

void ExpectForward(const GoldenCell& cell, ForwardCall call, const char* name, const KineFrame& expected,
                   bool withExtAxes)
{
    SCOPED_TRACE(name);
    KinePose pose = Untouched<KinePose>();
    ASSERT_EQ(call(&cell.joints, &cell.tool, &cell.wobj, &cell.load, &pose), KINE_OK);
    ExpectFrameNear(pose.Frame, expected);
    ExpectConfig(pose, cell.config);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(pose.ExtAxis[i], withExtAxes ? cell.joints.ExtAxis[i] : 0.0);
}

TEST(GoldenChain, forward_poses_in_every_frame)
{
    const auto cells = ReadCells();
    ASSERT_EQ(cells.size(), 120U);
    for (const GoldenCell& cell : cells) {
        SCOPED_TRACE(cell.name);
        Configure(cell);
        const std::string printed = PrintedBy([&] {
            ExpectForward(cell, Kine_JointToBasePos, "base", cell.base, true);
            // The pose in the flange of a held tool is the tool frame itself, without external axes.
            ExpectForward(cell, Kine_JointToFlangePos, "flange", cell.flange, cell.tool.HeldByRobot == 0);
            ExpectForward(cell, Kine_JointToWorldPos, "world", cell.world, true);
            ExpectForward(cell, Kine_JointToWobjPos, "object", cell.object, true);
        });
        EXPECT_EQ(printed, "");
    }
}

TEST(GoldenChain, inverse_of_the_pose_in_the_object)
{
    for (const GoldenCell& cell : ReadCells()) {
        SCOPED_TRACE(cell.name);
        Configure(cell);
        KinePose target = TargetOf(cell.object, cell.config);
        for (std::size_t i = 0; i < 6; ++i) target.ExtAxis[i] = cell.joints.ExtAxis[i];
        KineJoint joints = Untouched<KineJoint>();
        const std::string printed = PrintedBy([&] {
            EXPECT_EQ(Kine_WobjPosToJoint(&target, &cell.tool, &cell.wobj, &cell.load, &joints), KINE_OK);
        });
        EXPECT_EQ(printed, "");
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_NEAR(joints.Axis[i], cell.solved[i], kDegTolerance) << "axis " << i + 1;
            EXPECT_EQ(joints.ExtAxis[i], cell.joints.ExtAxis[i]);
        }
    }
}

}  // namespace
}  // namespace kine::test

// Arm type 6 through the exports, against the tables.
#include <gtest/gtest.h>

#include "golden_table.h"
#include "support/records.h"

namespace kine::test {
namespace {

KineJoint JointsOf(const std::array<double, 6>& q) { return MakeJoints(q); }

TEST(GoldenSixAxis, forward_poses_and_configurations)
{
    auto rows = ReadTable("six_forward.txt");
    ASSERT_GE(rows.size(), 80U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const GoldenArm arm = ArmOfTable(row.Word());
        ASSERT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
        const KineJoint joints = JointsOf(row.Numbers<6>());
        KineTool tool = HeldTool(row.Frame());
        tool.TLoad = row.LoadOf();
        const KineLoad load = row.LoadOf();

        ExpectForward(joints, tool, load, row);
        ASSERT_TRUE(row.AtEnd());
    }
}

TEST(GoldenSixAxis, inverse_solutions_in_all_postures)
{
    auto rows = ReadTable("six_inverse.txt");
    ASSERT_GE(rows.size(), 150U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const GoldenArm arm = ArmOfTable(row.Word());
        ASSERT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
        const KineFrame frame = row.Frame();
        KineTool tool = HeldTool(row.Frame());
        tool.TLoad = row.LoadOf();
        const KineLoad load = row.LoadOf();
        const KinePose target = TargetOf(frame, row.Config());
        const auto code = static_cast<KineResult>(row.Integer());

        ExpectInverse<6>(target, tool, load, code, row);
        ASSERT_TRUE(row.AtEnd());
    }
}

TEST(GoldenSixAxis, configuration_integers_of_all_arm_types)
{
    auto rows = ReadTable("config.txt");
    ASSERT_GE(rows.size(), 150U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const auto type = static_cast<std::uint32_t>(row.Integer());
        const GoldenArm arm = ArmOfTable(row.Word());
        ASSERT_EQ(Kine_InitKinematicParam(type, &arm.param), KINE_OK);
        const KineJoint joints = JointsOf(row.Numbers<6>());
        KineArmConfig config = Untouched<KineArmConfig>();
        ASSERT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
        const KineArmConfig expected = row.Config();
        EXPECT_EQ(config.Cfg1, expected.Cfg1);
        EXPECT_EQ(config.Cfg2, expected.Cfg2);
        EXPECT_EQ(config.Cfg3, expected.Cfg3);
        EXPECT_EQ(config.Cfg4, expected.Cfg4);
        ASSERT_TRUE(row.AtEnd());
    }
}

}  // namespace
}  // namespace kine::test

// Arm types 4 and 4110 through the exports, against the tables.
#include <gtest/gtest.h>

#include "golden_table.h"
#include "support/records.h"

namespace kine::test {
namespace {

KineTool FlatTool(const std::array<double, 4>& v) { return HeldTool({v[0], v[1], v[2], v[3], 0.0, 0.0}); }

TEST(GoldenFourAxis, forward_poses_and_configurations)
{
    auto rows = ReadTable("four_forward.txt");
    ASSERT_GE(rows.size(), 100U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const auto type = static_cast<std::uint32_t>(row.Integer());
        const GoldenArm arm = ArmOfTable(row.Word());
        ASSERT_EQ(Kine_InitKinematicParam(type, &arm.param), KINE_OK);
        const auto q = row.Numbers<4>();
        const KineJoint joints = MakeJoints({q[0], q[1], q[2], q[3]});
        const KineTool tool = FlatTool(row.Numbers<4>());

        const auto [tip, vision] = ExpectForward(joints, tool, {}, row);
        EXPECT_EQ(tip.Frame.B, 0.0);
        EXPECT_EQ(tip.Frame.C, 0.0);
        EXPECT_EQ(vision.Frame.Z, 0.0);
        ASSERT_TRUE(row.AtEnd());
    }
}

TEST(GoldenFourAxis, inverse_solutions_and_codes)
{
    auto rows = ReadTable("four_inverse.txt");
    ASSERT_GE(rows.size(), 180U);
    for (Row& row : rows) {
        SCOPED_TRACE(row.Place());
        const auto type = static_cast<std::uint32_t>(row.Integer());
        const GoldenArm arm = ArmOfTable(row.Word());
        ASSERT_EQ(Kine_InitKinematicParam(type, &arm.param), KINE_OK);
        const auto at = row.Numbers<4>();
        const KineTool tool = FlatTool(row.Numbers<4>());
        const KinePose target = TargetOf({at[0], at[1], at[2], at[3], 0.0, 0.0}, row.Config());
        const auto code = static_cast<KineResult>(row.Integer());

        ExpectInverse<4>(target, tool, {}, code, row);
        ASSERT_TRUE(row.AtEnd());
    }
}

}  // namespace
}  // namespace kine::test

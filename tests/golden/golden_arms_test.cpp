// The arms of the tables and the arms that other tests use are the same, double by double.
#include <gtest/gtest.h>

#include "golden_table.h"
#include "support/records.h"
#include "support/sample_arms.h"

namespace kine::test {
namespace {

void ExpectSameArm(const char* name, const KineKinematicParam& expected)
{
    SCOPED_TRACE(name);
    const KineKinematicParam actual = ArmOfTable(name).param;
    const auto* a = reinterpret_cast<const double*>(&actual);
    const auto* b = reinterpret_cast<const double*>(&expected);
    for (std::size_t i = 0; i < sizeof actual / sizeof(double); ++i) EXPECT_EQ(a[i], b[i]) << "double " << i;
}

TEST(GoldenArms, sample_arms_are_those_of_the_tables)
{
    ExpectSameArm("puma", Puma());
    ExpectSameArm("puma_gravity", PumaWithGravity());
    ExpectSameArm("wrist", WristArm());
    ExpectSameArm("wrist_calibrated", CalibratedWristArm());
    ExpectSameArm("scara", Scara());
    ExpectSameArm("scara_tilted", TiltedScara());
}

TEST(GoldenArms, every_arm_is_accepted)
{
    const auto rows = ReadTable("arms.txt");
    ASSERT_EQ(rows.size(), 11U);
    for (Row row : rows) {
        const std::string name = row.Word();
        SCOPED_TRACE(name);
        const GoldenArm arm = ArmOfTable(name);
        EXPECT_EQ(Kine_InitKinematicParam(arm.type, &arm.param), KINE_OK);
    }
}

}  // namespace
}  // namespace kine::test

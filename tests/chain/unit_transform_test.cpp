// Where a mechanical unit carries a frame: each kind by hand and against plain matrices.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>

#include "chain/frame_services.h"
#include "support/naive_arms.h"
#include "support/naive_transform.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kKinds[] = {kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes};

MechUnitBlock OneUnit(const MechUnitSlot& unit)
{
    MechUnitBlock block{};
    block.mechUnitCount = 1;
    block.units[0] = unit;
    return block;
}

void ExpectPose(const Pose& actual, const Pose& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-10);
    EXPECT_NEAR(actual.y, expected.y, 1e-10);
    EXPECT_NEAR(actual.z, expected.z, 1e-10);
    EXPECT_NEAR(actual.a, expected.a, 1e-13);
    EXPECT_NEAR(actual.b, expected.b, 1e-13);
    EXPECT_NEAR(actual.c, expected.c, 1e-13);
}

// The record at (10, 0, 0) on the unit, in the world; and the way back.
void ExpectPlaced(const MechUnitSlot& unit, const std::array<double, 6>& extAxis, const Pose& expected)
{
    PoseRecord record{};
    record.frame = Pose{10.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    record.extAxis = extAxis;
    PoseRecord world = record;
    ASSERT_EQ(FrameToWorld(OneUnit(unit), {3, 0, {}}, world), 0u);
    ExpectPose(world.frame, expected);
    PoseRecord back = world;
    ASSERT_EQ(WorldToFrame(OneUnit(unit), {3, 0, {}}, back), 0u);
    ExpectPose(back.frame, record.frame);
}

}  // namespace

// A table turned by 90 degrees (the value is in degrees): 10 mm out along y.
TEST(UnitTransform, one_rotary_axis_turns_about_z_of_its_frame)
{
    const MechUnitSlot unit = MakeUnit(kOneRotaryAxis, {100.0, 0.0, 7.0, 0.0, 0.0, 0.0}, {});
    ExpectPlaced(unit, {90.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {100.0, 10.0, 7.0, kQuarterTurn, 0.0, 0.0});
    ExpectPlaced(unit, {-360.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {110.0, 0.0, 7.0, 0.0, 0.0, 0.0});
}

// The first axis turns all behind it by 90 degrees; the second, 200 mm out on it, turns by 90 degrees more.
TEST(UnitTransform, second_rotary_axis_rides_on_the_first)
{
    const MechUnitSlot unit =
        MakeUnit(kTwoRotaryAxes, {1000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {200.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    ExpectPlaced(unit, {90.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1000.0, 210.0, 0.0, kQuarterTurn, 0.0, 0.0});
    ExpectPlaced(unit, {90.0, 60.0, 0.0, 0.0, 0.0, 0.0},
                 {1000.0 - 5.0 * std::sqrt(3.0), 205.0, 0.0, InRadians(150.0), 0.0, 0.0});
    ExpectPlaced(unit, {0.0, 90.0, 0.0, 0.0, 0.0, 0.0}, {1200.0, 10.0, 0.0, kQuarterTurn, 0.0, 0.0});
}

// A track along y of the world: its frame is turned by 90 degrees, so its x is the world's y.
TEST(UnitTransform, linear_axis_moves_along_x_of_its_frame_in_millimetres)
{
    const MechUnitSlot unit = MakeUnit(kOneLinearAxis, {0.0, 0.0, 5.0, kQuarterTurn, 0.0, 0.0}, {});
    ExpectPlaced(unit, {250.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0.0, 260.0, 5.0, kQuarterTurn, 0.0, 0.0});
    ExpectPlaced(unit, {-250.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0.0, -240.0, 5.0, kQuarterTurn, 0.0, 0.0});
}

// The second frame turns what stands on the track by -90 degrees; where it stands itself does not count.
TEST(UnitTransform, linear_axis_takes_only_the_rotation_of_the_second_frame)
{
    const MechUnitSlot unit = MakeUnit(kOneLinearAxis, {0.0, 0.0, 5.0, 0.0, 0.0, 0.0},
                                       {777.0, -888.0, 999.0, -kQuarterTurn, 0.0, 0.0});
    ExpectPlaced(unit, {250.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {250.0, -10.0, 5.0, -kQuarterTurn, 0.0, 0.0});
}

// Frames of unused axes, and the second frame of a single rotary axis, do not count.
TEST(UnitTransform, one_rotary_axis_does_not_look_at_the_second_frame)
{
    const MechUnitSlot unit = MakeUnit(kOneRotaryAxis, {100.0, 0.0, 7.0, 0.0, 0.0, 0.0},
                                       {777.0, -888.0, 999.0, -kQuarterTurn, 0.5, 0.0});
    ExpectPlaced(unit, {90.0, 40.0, 0.0, 0.0, 0.0, 0.0}, {100.0, 10.0, 7.0, kQuarterTurn, 0.0, 0.0});
}

TEST(UnitTransform, values_are_selected_by_the_driving_axes)
{
    for (std::int32_t driver = 0; driver < 6; ++driver) {
        for (std::int32_t second = 0; second < 6; ++second) {
            SCOPED_TRACE(testing::Message() << driver << ", " << second);
            std::array<double, 6> extAxis{11.0, 22.0, 33.0, 44.0, 55.0, 66.0};
            extAxis[static_cast<std::size_t>(driver)] = 90.0;
            extAxis[static_cast<std::size_t>(second)] = 0.0;
            if (driver == second) continue;
            ExpectPlaced(MakeUnit(kTwoRotaryAxes, {1000.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                                  {200.0, 0.0, 0.0, 0.0, 0.0, 0.0}, driver, second),
                         extAxis, {1000.0, 210.0, 0.0, kQuarterTurn, 0.0, 0.0});
            ExpectPlaced(
                MakeUnit(kOneLinearAxis, {0.0, 0.0, 5.0, kQuarterTurn, 0.0, 0.0}, {}, driver, second),
                extAxis, {0.0, 100.0, 5.0, kQuarterTurn, 0.0, 0.0});
        }
    }
}

// One external axis may drive both axes of a unit: 45 degrees twice, the second 200 mm out.
TEST(UnitTransform, one_external_axis_may_drive_both_axes)
{
    const MechUnitSlot unit =
        MakeUnit(kTwoRotaryAxes, {1000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {200.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 4, 4);
    const double diagonal = 200.0 * std::sqrt(0.5);
    ExpectPlaced(unit, {0.0, 0.0, 0.0, 0.0, 45.0, 0.0},
                 {1000.0 + diagonal, diagonal + 10.0, 0.0, kQuarterTurn, 0.0, 0.0});
}

TEST(UnitTransform, random_cells_agree_with_plain_matrices)
{
    SeededRandom random(20240611);
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(testing::Message() << "seed 20240611, round " << round);
        const Pose first = RandomPose(random, 2000.0);
        const Pose second = RandomPose(random, 500.0);
        const FrameDescriptor descriptor{3, 0, RandomPose(random, 300.0)};
        const FrameDescriptor fixed{2, 0, descriptor.frame};
        PoseRecord record{};
        record.frame = RandomPose(random, 400.0);
        for (double& value : record.extAxis) value = random.Uniform(-720.0, 720.0);
        PoseRecord result = record;
        ASSERT_EQ(FrameToWorld({}, fixed, result), 0u);
        EXPECT_TRUE(PoseIs(result.frame, MatrixOf(fixed.frame) * MatrixOf(record.frame), 1e-8));
        result = record;
        ASSERT_EQ(WorldToFrame({}, fixed, result), 0u);
        EXPECT_TRUE(PoseIs(result.frame, RigidInverse(MatrixOf(fixed.frame)) * MatrixOf(record.frame), 1e-8));
        for (const std::int32_t kind : kKinds) {
            SCOPED_TRACE(kind);
            const MechUnitBlock units = OneUnit(MakeUnit(kind, first, second, 2, 5));
            const Mat4 worldFromFrame =
                NaiveUnit(kind, MatrixOf(first), MatrixOf(second), record.extAxis[2], record.extAxis[5]) *
                MatrixOf(descriptor.frame);
            result = record;
            ASSERT_EQ(FrameToWorld(units, descriptor, result), 0u);
            EXPECT_TRUE(PoseIs(result.frame, worldFromFrame * MatrixOf(record.frame), 1e-8));
            result = record;
            ASSERT_EQ(WorldToFrame(units, descriptor, result), 0u);
            EXPECT_TRUE(PoseIs(result.frame, RigidInverse(worldFromFrame) * MatrixOf(record.frame), 1e-8));
        }
    }
}

// Frame to world and world to frame undo each other, fixed or on a mechanical unit of any kind.
#include "chain/frame_services.h"

#include <gtest/gtest.h>

#include "support/naive_transform.h"

namespace kine::test {
namespace {

void ExpectSamePlace(const Pose& p, const Pose& q)
{
    const HomMatrix difference = MatrixInverse(PoseToMatrix(p)) * PoseToMatrix(q);
    EXPECT_NEAR(Norm(difference.t), 0.0, 1e-9);
    EXPECT_NEAR(difference.r.r00 + difference.r.r11 + difference.r.r22, 3.0, 1e-11);
}

MechUnitBlock RandomBlock(SeededRandom& random)
{
    MechUnitBlock block{};
    block.mechUnitCount = 3;
    block.extAxisItemCount = 6;
    for (MechUnitSlot& unit : block.units) {
        unit.unitKind = random.Whole(1, 3);
        unit.axisCount = 2;
        for (std::size_t i = 0; i < 2; ++i) {
            unit.axisFrame[i] = PoseToMatrix(RandomPose(random, 900.0));
            unit.axisParamIndex[i] = random.Whole(0, 5);
        }
    }
    return block;
}

TEST(FrameServicesProperty, to_the_world_and_back_is_the_same_record)
{
    SeededRandom random(8001);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const MechUnitBlock block = RandomBlock(random);
        const FrameDescriptor descriptor{random.Whole(2, 3), random.Whole(0, 2), RandomPose(random, 900.0)};
        PoseRecord record{};
        record.frame = RandomPose(random, 900.0);
        record.config = {random.Whole(-9, 9), random.Whole(-9, 9), random.Whole(-9, 9), random.Whole(-9, 9)};
        for (double& value : record.extAxis) value = random.Uniform(-400, 400);
        PoseRecord world{}, back{};
        ASSERT_EQ(FrameToWorld(block, record, descriptor, world), KINE_OK);
        ASSERT_EQ(WorldToFrame(block, world, descriptor, back), KINE_OK);
        ExpectSamePlace(back.frame, record.frame);
        EXPECT_EQ(back.extAxis, record.extAxis);
        EXPECT_EQ(back.config.Cfg1, record.config.Cfg1);
        EXPECT_EQ(back.config.Cfg2, record.config.Cfg2);
        EXPECT_EQ(back.config.Cfg3, record.config.Cfg3);
        EXPECT_EQ(back.config.Cfg4, record.config.Cfg4);
        // And the other way round.
        PoseRecord inFrame{}, again{};
        ASSERT_EQ(WorldToFrame(block, record, descriptor, inFrame), KINE_OK);
        ASSERT_EQ(FrameToWorld(block, inFrame, descriptor, again), KINE_OK);
        ExpectSamePlace(again.frame, record.frame);
    }
}

TEST(FrameServicesProperty, inverting_a_record_twice_is_the_same_place)
{
    SeededRandom random(8002);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        PoseRecord record{};
        record.frame = RandomPose(random, 900.0);
        record.extAxis.fill(random.Uniform(-9, 9));
        const PoseRecord inverse = InvertFrame(record);
        ExpectSamePlace(InvertFrame(inverse).frame, record.frame);
        EXPECT_EQ(inverse.extAxis, record.extAxis);
        const HomMatrix product = PoseToMatrix(record.frame) * PoseToMatrix(inverse.frame);
        EXPECT_NEAR(Norm(product.t), 0.0, 1e-9);
    }
}

}  // namespace
}  // namespace kine::test

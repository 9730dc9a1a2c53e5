// Frame to world and world to frame undo each other, fixed or on a mechanical unit of any kind.
#include "chain/frame_services.h"

#include <gtest/gtest.h>

#include "draw.h"

namespace kine::test {
namespace {

Pose RandomPose(Draw& draw)
{
    return {draw.Between(-900, 900), draw.Between(-900, 900), draw.Between(-900, 900),
            draw.Between(-3.1, 3.1), draw.Between(-1.5, 1.5), draw.Between(-3.1, 3.1)};
}

void ExpectSamePlace(const Pose& p, const Pose& q)
{
    const HomMatrix difference = MatrixInverse(PoseToMatrix(p)) * PoseToMatrix(q);
    EXPECT_NEAR(Norm(difference.t), 0.0, 1e-9);
    EXPECT_NEAR(difference.r.r00 + difference.r.r11 + difference.r.r22, 3.0, 1e-11);
}

MechUnitBlock RandomBlock(Draw& draw)
{
    MechUnitBlock block{};
    block.mechUnitCount = 3;
    block.extAxisItemCount = 6;
    for (MechUnitSlot& unit : block.units) {
        unit.unitKind = draw.Whole(1, 3);
        unit.axisCount = 2;
        for (std::size_t i = 0; i < 2; ++i) {
            unit.axisFrame[i] = PoseToMatrix(RandomPose(draw));
            unit.axisParamIndex[i] = draw.Whole(0, 5);
        }
    }
    return block;
}

TEST(FrameServicesProperty, to_the_world_and_back_is_the_same_record)
{
    Draw draw(8001);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const MechUnitBlock block = RandomBlock(draw);
        const FrameDescriptor descriptor{draw.Whole(2, 3), draw.Whole(0, 2), RandomPose(draw)};
        PoseRecord record{};
        record.frame = RandomPose(draw);
        record.config = {draw.Whole(-9, 9), draw.Whole(-9, 9), draw.Whole(-9, 9), draw.Whole(-9, 9)};
        for (double& value : record.extAxis) value = draw.Between(-400, 400);
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
    Draw draw(8002);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        PoseRecord record{};
        record.frame = RandomPose(draw);
        record.extAxis.fill(draw.Between(-9, 9));
        const PoseRecord inverse = InvertFrame(record);
        ExpectSamePlace(InvertFrame(inverse).frame, record.frame);
        EXPECT_EQ(inverse.extAxis, record.extAxis);
        const HomMatrix product = PoseToMatrix(record.frame) * PoseToMatrix(inverse.frame);
        EXPECT_NEAR(Norm(product.t), 0.0, 1e-9);
    }
}

}  // namespace
}  // namespace kine::test

// A positioner axis that lies in the XY plane of the world, calibrated in a turned work object instead: the way
// that the documentation of the calibrations recommends.
#include <gtest/gtest.h>

#include "support/cell_setup.h"
#include "support/sample_arms.h"

namespace kine::test {
namespace {

// The mark, 200 mm off an axis, where the axis stands at this many degrees.
KinePose MarkAt(const Mat4& axis, double degrees)
{
    const Mat4 mark = axis * TurnZDeg(degrees) * Shift(200.0, 0.0, 0.0);
    KinePose pose{};
    pose.Frame.X = mark[0][3];
    pose.Frame.Y = mark[1][3];
    pose.Frame.Z = mark[2][3];
    pose.ExtAxis[3] = degrees;
    return pose;
}

TEST(Kine_CalcPositionerJ1Prm_3P, horizontal_axis_seen_from_a_turned_work_object_is_found)
{
    SetUpArm(Puma());
    SetUnitCounts(2, 4);
    StoreUnit(1, RotaryUnit({}, 3));

    KineWobj turned{};
    turned.UFFix = 1;
    turned.UFrame = {100.0, 50.0, -30.0, 10.0, 40.0, 20.0};
    KinePose turnedPose{};
    turnedPose.Frame = turned.UFrame;

    for (const double heading : {0.0, 35.0, -90.0, 160.0}) {
        SCOPED_TRACE(heading);
        // Z along the horizontal: turned over by 90 degrees, then into the heading.
        const Mat4 truth = Shift(900.0, -200.0, 650.0) * TurnZDeg(heading) * TurnXDeg(90.0) * TurnZDeg(25.0);
        KinePose seen[3] = {MarkAt(truth, -20.0), MarkAt(truth, 70.0), MarkAt(truth, 150.0)};
        for (KinePose& pose : seen) ASSERT_EQ(Kine_WorldPosToFixWobjPos(&pose, &turned, &pose), KINE_OK);
        KineFrame inTurned{};
        ASSERT_EQ(Kine_CalcPositionerJ1Prm_3P(1, &seen[0], &seen[1], &seen[2], &inTurned), KINE_OK);
        KinePose inWorld{};
        ASSERT_EQ(Kine_ToolCoordOffset(&turnedPose, &inTurned, &inWorld), KINE_OK);
        EXPECT_TRUE(IsFrame(inWorld.Frame, truth, 1e-9, 1e-11));
    }
}

}  // namespace
}  // namespace kine::test

// A positioner axis that lies in the XY plane of the world, calibrated in a turned work object instead: the
// way that the documentation of the calibrations recommends.
#include <gtest/gtest.h>

#include "support/positioner_calib_calls.h"

namespace kine::test {
namespace {

TEST(Kine_CalcPositionerJ1Prm_3P, horizontal_axis_seen_from_a_turned_work_object_is_found)
{
    SetUpArm(Puma());
    SetUnitCounts(2, 4);
    StoreUnit(1, RotaryUnit({}, 3));

    const KineWobj turned = FixedWobj({100.0, 50.0, -30.0, 10.0, 40.0, 20.0});
    KinePose turnedPose{};
    turnedPose.Frame = turned.UFrame;

    for (const double heading : {0.0, 35.0, -90.0, 160.0}) {
        SCOPED_TRACE(heading);
        // Z along the horizontal: turned over by 90 degrees, then into the heading.
        const Mat4 truth = Shift(900.0, -200.0, 650.0) * TurnZDeg(heading) * TurnXDeg(90.0) * TurnZDeg(25.0);
        ThreePoses seen = MarkOnTable(truth, {200.0, 0.0, 0.0}, {-20.0, 70.0, 150.0}, 3);
        for (KinePose& pose : seen) ASSERT_EQ(Kine_WorldPosToFixWobjPos(&pose, &turned, &pose), KINE_OK);
        const KineFrame inTurned = Solved(kJ1, {seen, {}, 1}).frame;
        KinePose inWorld{};
        ASSERT_EQ(Kine_ToolCoordOffset(&turnedPose, &inTurned, &inWorld), KINE_OK);
        EXPECT_TRUE(IsFrame(inWorld.Frame, truth, 1e-9, 1e-11));
    }
}

}  // namespace
}  // namespace kine::test

// Work-object calibrations in a library as it is loaded: neither arm nor units, and none are asked for.
#include <gtest/gtest.h>

#include "support/taught_points.h"

using namespace kine::test;

namespace {

TaughtRequest LevelPoints()
{
    return Points(TaughtAt(10.0, 20.0, 30.0), TaughtAt(20.0, 20.0, 30.0), TaughtAt(10.0, 30.0, 30.0));
}

}  // namespace

TEST(wobj_calibration_at_load, frames_without_a_unit_are_solved)
{
    for (const WobjCalib& call : {kUser2P, kExtUser3P, kGripUser3P, kExtObject, kGripObject}) {
        const WobjOutcome result = Calibrated(call, LevelPoints());
        ExpectFrameUpToTurns(result.frame, {10.0, 20.0, 30.0, 0.0, 0.0, 0.0}, 1e-12);
        EXPECT_EQ(result.tilt, 0.0) << call.name;
    }
    // The corner is a right angle: the centre lies halfway between the other points, X points back at it.
    ExpectFrameUpToTurns(Calibrated(kCircle, LevelPoints()).frame, {15.0, 25.0, 30.0, -135.0, 0.0, 0.0},
                         1e-12);
}

TEST(wobj_calibration_at_load, every_unit_is_0x6065)
{
    for (const int32_t unit : {-1, 0, 1, 2, 3}) {
        TaughtRequest request = LevelPoints();
        request.unit = unit;
        ExpectRefused(kUnFixObject, request, KINE_ERR_CALIB_POINTS_CLOSE);
    }
}

TEST(wobj_calibration_at_load, poses_are_checked)
{
    for (const WobjCalib& call : kWobjCalibs) {
        TaughtRequest request = LevelPoints();
        request.points[1].Frame.A = 181.0;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
}

// Work-object calibrations in a library as it is loaded: neither arm nor units, and none are asked for.
#include <gtest/gtest.h>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

WobjCalibRequest LevelPoints() { return Points({10.0, 20.0, 30.0}, {20.0, 20.0, 30.0}, {10.0, 30.0, 30.0}); }

}  // namespace

TEST(at_load, wobj_calibrations_without_a_unit_are_solved)
{
    for (const WobjCalib& call : {kUser2P, kExtUser3P, kGripUser3P, kExtObject, kGripObject}) {
        const WobjCalibOutcome result = Solved(call, LevelPoints());
        EXPECT_TRUE(IsNearFrame(result.frame, {10.0, 20.0, 30.0, 0.0, 0.0, 0.0}, 1e-12, 1e-12));
        EXPECT_EQ(result.tilt, 0.0) << call.name;
    }
    // The corner is a right angle: the centre lies halfway between the other points, X points back at it.
    EXPECT_TRUE(IsNearFrame(Solved(kCircle, LevelPoints()).frame, {15.0, 25.0, 30.0, -135.0, 0.0, 0.0}, 1e-12,
                            1e-12));
}

TEST(at_load, wobj_calibrations_on_any_unit_are_0x6065)
{
    for (const int32_t unit : {-1, 0, 1, 2, 3}) {
        WobjCalibRequest request = LevelPoints();
        request.unit = unit;
        ExpectRefused(kUnFixObject, request, KINE_ERR_CALIB_POINTS_CLOSE);
    }
}

TEST(at_load, wobj_calibrations_check_their_records)
{
    for (const WobjCalib& call : kWobjCalibs) {
        WobjCalibRequest request = LevelPoints();
        request.poses[1].Frame.A = 181.0;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
}

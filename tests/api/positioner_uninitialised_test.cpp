// The calibrations of positioner and robot base on units that are set up before any initialisation: nothing
// in this process stores an arm type.
#include <gtest/gtest.h>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

TEST(before_initialisation, positioners_are_calibrated)
{
    for (const PositionerCalib& call : {kJ1, kJn}) {
        StoreGoodUnit(call);
        PositionerCalibRequest request = GoodRequest(call);
        request.reference = {};
        EXPECT_TRUE(IsFrame(Solved(call, request).frame, Shift(100.0, 200.0, 50.0)));
    }
}

TEST(before_initialisation, robot_bases_are_calibrated)
{
    StoreGoodUnit(kRobotBase);
    const PositionerCalibOutcome outcome = Solved(kRobotBase, GoodRequest(kRobotBase));
    EXPECT_TRUE(IsFrame(outcome.frame, TurnZDeg(25.0)));
    EXPECT_NEAR(outcome.report.Largest, 0.0, 1e-9);
}

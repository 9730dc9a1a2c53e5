// The calibrations of positioner and robot base as they are when the library has been loaded: nothing in this
// process calls a setter that succeeds.
#include <gtest/gtest.h>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

// Unit 0 equals the count of units, but has no axes yet. That the library is not initialised is no code here.
TEST(at_load, positioner_calibrations_know_no_unit)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = GoodRequest(call);
        for (const int32_t unit : {0, 1, -1}) {
            request.unit = unit;
            ExpectRefused(call, request, KINE_ERR_TOOL);
        }
    }
}

TEST(at_load, positioner_calibrations_check_their_records)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = GoodRequest(call);
        request.poses[2].Frame.B = 181.0;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
    PositionerCalibRequest request = GoodRequest(kJn);
    request.axis = 0;
    ExpectRefused(kJn, request, KINE_ERR_CALIB_INPUT);
    request = GoodRequest(kJ1);
    request.poses[2].Frame = request.poses[1].Frame;
    ExpectRefused(kJ1, request, KINE_ERR_CALIB_POINTS_CLOSE);
}

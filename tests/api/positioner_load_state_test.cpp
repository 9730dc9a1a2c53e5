// The calibrations of positioner and robot base as they are when the library has been loaded: nothing in this
// process calls a setter that succeeds.
#include <gtest/gtest.h>

#include "support/positioner_calls.h"

using namespace kine::test;

// Unit 0 equals the count of units, but has no axes yet. That the library is not initialised is no code here.
TEST(at_load, positioner_calibrations_know_no_unit)
{
    for (const PositionerCall& call : kPositionerCalls) {
        PositionerRequest request = GoodRequest(call);
        for (const int32_t unit : {0, 1, -1}) {
            request.unit = unit;
            ExpectRefused(call, request, KINE_ERR_TOOL);
        }
    }
}

TEST(at_load, positioner_calibrations_check_their_records)
{
    for (const PositionerCall& call : kPositionerCalls) {
        PositionerRequest request = GoodRequest(call);
        request.taught[2].Frame.B = 181.0;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
    PositionerRequest request = GoodRequest(kJnCall);
    request.axis = 0;
    ExpectRefused(kJnCall, request, KINE_ERR_CALIB_INPUT);
    request = GoodRequest(kJ1Call);
    request.taught[2].Frame = request.taught[1].Frame;
    ExpectRefused(kJ1Call, request, KINE_ERR_CALIB_POINTS_CLOSE);
}

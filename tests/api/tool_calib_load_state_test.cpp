// The tool calibrations as they are when the library has been loaded: nothing in this process calls a setter
// that succeeds, and none of these calls needs one.
#include <gtest/gtest.h>

#include "support/stdout_capture.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

TEST(at_load, tool_points_are_0x6001_without_a_line)
{
    EXPECT_EQ(PrintedBy([] {
                  for (const ToolCalib& call : kToolCalibs) {
                      if (call.touches == 0) continue;
                      ExpectRefused(call, GoodRequest(call, KINE_ARM_SIX_AXIS), KINE_ERR_NOT_INITIALISED);
                      ExpectRefused(call, GoodRequest(call, KINE_ARM_FOUR_AXIS), KINE_ERR_NOT_INITIALISED);
                  }
              }),
              "");
}

TEST(at_load, tool_calibrations_check_their_records)
{
    for (const ToolCalib& call : kToolCalibs) {
        ToolCalibRequest request = GoodRequest(call, KINE_ARM_SIX_AXIS);
        request.nullFrame = true;
        ExpectRefused(call, request, KINE_ERR_POSE);
        request.nullFrame = false;
        request.poses.back().Frame.B = JustAbove(180.0);
        ExpectRefused(call, request, KINE_ERR_POSE);
        request.nullPose[call.poses - 1] = true;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
}

// No arm type is no four-axis arm: the Z point counts.
TEST(at_load, external_tools_need_no_arm_when_their_points_are_taught)
{
    const KineFrame point = Solved(kExt1P, {{TaughtPose({1.0, 2.0, 3.0}, {40.0, 50.0, 60.0})}}).frame;
    EXPECT_TRUE(SameBits(point, KineFrame{1.0, 2.0, 3.0, 0.0, 0.0, 0.0}));
    EXPECT_TRUE(IsFrame(Solved(kExt1PZX, GoodRequest(kExt1PZX, KINE_ARM_SIX_AXIS)).frame,
                        MatrixOf(GoodFrame(KINE_ARM_SIX_AXIS))));
}

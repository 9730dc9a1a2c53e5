// Offsets of a pose along its own axes and along those of its reference frame.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/cell_setup.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

KineFrame Offset(const PoseCall& call, const KineFrame& frame, const KineFrame& offset)
{
    PoseRequest request;
    request.pose = FullPose(frame);
    request.offset = offset;
    const KinePose result = Converted(call, request);
    EXPECT_TRUE(SameBesideFrame(result, request.pose)) << call.name;
    return result.Frame;
}

void ExpectFrame(const KineFrame& actual, const KineFrame& expected)
{
    EXPECT_NEAR(actual.X, expected.X, 1e-10);
    EXPECT_NEAR(actual.Y, expected.Y, 1e-10);
    EXPECT_NEAR(actual.Z, expected.Z, 1e-10);
    EXPECT_NEAR(actual.A, expected.A, 1e-11);
    EXPECT_NEAR(actual.B, expected.B, 1e-11);
    EXPECT_NEAR(actual.C, expected.C, 1e-11);
}

const KineFrame kStart = {10.0, 20.0, 30.0, 90.0, 0.0, 0.0};

}  // namespace

TEST(Kine_ToolCoordOffset, moves_along_the_axes_of_the_pose)
{
    ExpectFrame(Offset(kToolOffsetCall, kStart, {5.0, 0.0, 0.0, 0.0, 0.0, 0.0}),
                {10.0, 25.0, 30.0, 90.0, 0.0, 0.0});
    ExpectFrame(Offset(kToolOffsetCall, kStart, {0.0, 5.0, 7.0, 0.0, 0.0, 0.0}),
                {5.0, 20.0, 37.0, 90.0, 0.0, 0.0});
}

// Rz(90) * Rx(90).
TEST(Kine_ToolCoordOffset, turns_about_the_axes_of_the_pose_in_place)
{
    ExpectFrame(Offset(kToolOffsetCall, kStart, {0.0, 0.0, 0.0, 0.0, 0.0, 90.0}),
                {10.0, 20.0, 30.0, 90.0, 0.0, 90.0});
    ExpectFrame(Offset(kToolOffsetCall, kStart, {0.0, 0.0, 0.0, 0.0, 30.0, 0.0}),
                {10.0, 20.0, 30.0, 90.0, 30.0, 0.0});
}

// The axes along which it moves are those before the turn.
TEST(Kine_ToolCoordOffset, moves_before_it_turns)
{
    ExpectFrame(Offset(kToolOffsetCall, kStart, {5.0, 0.0, 0.0, 45.0, 0.0, 0.0}),
                {10.0, 25.0, 30.0, 135.0, 0.0, 0.0});
}

TEST(Kine_WobjCoordOffset, moves_along_the_axes_of_the_reference)
{
    ExpectFrame(Offset(kWobjOffsetCall, kStart, {5.0, 6.0, 7.0, 0.0, 0.0, 0.0}),
                {15.0, 26.0, 37.0, 90.0, 0.0, 0.0});
}

// Rx(90) * Rz(90): x of the pose, along y, is turned upward, and y, along -x, stays. That is B = -90, where A
// is taken as 0, and C = 90.
TEST(Kine_WobjCoordOffset, turns_about_the_axes_of_the_reference)
{
    ExpectFrame(Offset(kWobjOffsetCall, kStart, {0.0, 0.0, 0.0, 0.0, 0.0, 90.0}),
                {10.0, 20.0, 30.0, 0.0, -90.0, 90.0});
}

// A product of frames would swing the position to (-20, 10, 30).
TEST(Kine_WobjCoordOffset, rotation_does_not_move_the_position)
{
    ExpectFrame(Offset(kWobjOffsetCall, {10.0, 20.0, 30.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 90.0, 0.0, 0.0}),
                {10.0, 20.0, 30.0, 90.0, 0.0, 0.0});
    ExpectFrame(Offset(kWobjOffsetCall, {10.0, 20.0, 30.0, 0.0, 0.0, 25.0}, {1.0, 2.0, 3.0, 90.0, 0.0, 0.0}),
                {11.0, 22.0, 33.0, 90.0, 0.0, 25.0});
}

TEST(Kine_WobjCoordOffset, adds_positions_to_the_last_bit)
{
    SeededRandom random(511);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const KineFrame frame = AnyFrame(random);
        const KineFrame offset = AnyFrame(random);
        const KineFrame result = Offset(kWobjOffsetCall, frame, offset);
        EXPECT_EQ(result.X, frame.X + offset.X);
        EXPECT_EQ(result.Y, frame.Y + offset.Y);
        EXPECT_EQ(result.Z, frame.Z + offset.Z);
    }
}

TEST(offsets, agree_with_plain_matrices)
{
    SeededRandom random(512);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const KineFrame frame = AnyFrame(random);
        const KineFrame offset = AnyFrame(random);
        EXPECT_TRUE(IsFrame(Offset(kToolOffsetCall, frame, offset), MatrixOf(frame) * MatrixOf(offset)));
        const Mat4 position = Shift(frame.X + offset.X, frame.Y + offset.Y, frame.Z + offset.Z);
        const Mat4 turn = TurnZDeg(offset.A) * TurnYDeg(offset.B) * TurnXDeg(offset.C) * TurnZDeg(frame.A) *
                          TurnYDeg(frame.B) * TurnXDeg(frame.C);
        EXPECT_TRUE(IsFrame(Offset(kWobjOffsetCall, frame, offset), position * turn));
    }
}

TEST(offsets, of_zero_keep_the_pose)
{
    SeededRandom random(513);
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        for (int i = 0; i < 100; ++i) {
            const KineFrame frame = AnyFrame(random);
            EXPECT_TRUE(IsFrame(Offset(call, frame, {}), MatrixOf(frame)));
        }
    }
}

TEST(offsets, of_a_zero_pose_are_the_offset)
{
    SeededRandom random(514);
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        for (int i = 0; i < 100; ++i) {
            const KineFrame offset = AnyFrame(random);
            EXPECT_TRUE(IsFrame(Offset(call, {}, offset), MatrixOf(offset)));
        }
    }
}

// B within 1e-5 of 90 degrees is vertical: A becomes 0 and C = 50 - 30 remains. 9e-6 rad are 5.16e-4
// degrees, 1.1e-5 are 6.3e-4.
TEST(offsets, answer_vertical_orientations_with_a_zero)
{
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        ExpectFrame(Offset(call, {1.0, 2.0, 3.0, 30.0, 90.0, 50.0}, {}), {1.0, 2.0, 3.0, 0.0, 90.0, 20.0});
        const KineFrame within = Offset(call, {1.0, 2.0, 3.0, 30.0, 90.0 - 5.15e-4, 50.0}, {});
        EXPECT_EQ(within.A, 0.0);
        EXPECT_NEAR(within.B, 90.0, 1e-13);
        EXPECT_NEAR(within.C, 20.0, 1e-3);
        const KineFrame outside = Offset(call, {1.0, 2.0, 3.0, 30.0, 90.0 - 6.7e-4, 50.0}, {});
        EXPECT_NEAR(outside.A, 30.0, 1e-8);
        EXPECT_NEAR(outside.B, 90.0 - 6.7e-4, 1e-10);
        EXPECT_NEAR(outside.C, 50.0, 1e-8);
    }
}

TEST(offsets, of_181_degrees_are_refused)
{
    PoseRequest request = GoodPoseRequest(kToolOffsetCall);
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        for (const auto angle : kAngles) {
            request.offset = {};
            request.offset.*angle = 181.0;
            ExpectRefused(call, request, KINE_ERR_OFFSET_FRAME);
        }
    }
}

TEST(offsets, do_not_ask_for_an_initialised_library)
{
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        const PoseRequest request = GoodPoseRequest(call);
        SetUpArm(WristArm());
        const KinePose expected = Converted(call, request);
        SetUpRefusedArm();
        EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name;
        const KineKinematicParam scara = Scara();
        for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
            EXPECT_EQ(Kine_InitKinematicParam(type, &scara), KINE_OK);
            EXPECT_TRUE(SameBits(Converted(call, request), expected)) << call.name;
        }
    }
}

TEST(offsets, with_nan_succeed)
{
    const KineFrame moved = Offset(kWobjOffsetCall, kStart, {kNan, 6.0, 7.0, 0.0, 0.0, 0.0});
    EXPECT_TRUE(std::isnan(moved.X));
    EXPECT_EQ(moved.Y, 26.0);
    EXPECT_EQ(moved.Z, 37.0);
    EXPECT_NEAR(moved.A, 90.0, 1e-11);
    for (const PoseCall& call : {kToolOffsetCall, kWobjOffsetCall}) {
        const KineFrame turned = Offset(call, kStart, {1.0, 2.0, 3.0, kNan, 0.0, 0.0});
        EXPECT_TRUE(std::isfinite(turned.X)) << call.name;
        EXPECT_TRUE(std::isnan(turned.A)) << call.name;
    }
}

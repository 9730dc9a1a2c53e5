// What the tool calibrations refuse, in which order, and what they have written by then.
#include <gtest/gtest.h>

#include <vector>

#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

constexpr std::uint32_t kUnknownTypes[] = {0u, 5u, 7u, 4109u, 0x10006u, 0x80000006u, 0xFFFFFFFFu};

// Touches whose tips are their positions, for the calls that find a point first, and a frame step that works.
// Poses of 5P and Scara2P are the good ones.
ToolCalibRequest ExactRequest(const ToolCalib& call, std::uint32_t armType)
{
    if (call == kGrip5P || call == kScara2P) return GoodRequest(call, armType);
    ToolCalibRequest request;
    if (call.touches == 3) request.poses = TouchesWithZeroTool(armType);
    if (call.poses > call.touches) request.poses.push_back(TaughtPose({0.0, 0.0, -10.0}));
    if (call.poses > call.touches + 1) {
        request.poses.push_back(TaughtPose({0.0, 0.0, 0.0}));
        request.poses.push_back(TaughtPose({40.0, 0.0, 0.0}));
    }
    return request;
}

// One way of being refused. Faults of a lower place answer first. A fault of a higher place is made first:
// the positions that are too close stay on a line, the direction that is too short stays parallel.
enum Place
{
    kPose,
    kNullFrame,
    kArmType,
    kClose,
    kOnALine,
    kSameOrientation,
    kShortDirection,
    kParallelDirection,
    kPlaces
};

bool Applies(Place place, const ToolCalib& call)
{
    switch (place) {
        case kPose:
        case kNullFrame: return true;
        case kArmType:
        case kSameOrientation: return call.touches > 0;
        case kClose: return call.touches == 2 || call.touches == 3;
        case kOnALine: return call.touches == 3;
        default: return call.poses == call.touches + 3;
    }
}

KineResult CodeOf(Place place, const ToolCalib& call, std::uint32_t armType)
{
    switch (place) {
        case kPose:
        case kNullFrame: return KINE_ERR_POSE;
        case kArmType: return KINE_ERR_NOT_INITIALISED;
        case kClose: return KINE_ERR_CALIB_POINTS_CLOSE;
        case kOnALine:
        case kParallelDirection: return KINE_ERR_CALIB_COLLINEAR;
        case kSameOrientation:
            return IsFlat(armType) || call == kGrip5P ? KINE_ERR_CALIB_SINGULAR : KINE_ERR_CALIB_4;
        default: return call == kGrip3PZX ? KINE_ERR_CALIB_POINTS_CLOSE : KINE_ERR_ZERO_VECTOR;
    }
}

void Make(Place place, const ToolCalib& call, ToolCalibRequest& request)
{
    std::vector<KinePose>& poses = request.poses;
    switch (place) {
        case kPose: poses.back().Frame.C = 181.0; break;
        case kNullFrame: request.nullFrame = true; break;
        case kArmType: break;  // made by UseArmFor
        case kClose: {
            const Point from = PositionOf(poses[0]);
            const Point step = PositionOf(poses[1]) - from;
            KineFrame& last = poses[call.touches - 1].Frame;
            last = At(from + Scaled(step, 1e-8), last);
            break;
        }
        case kOnALine:
            poses[1].Frame = At({20.0, 20.0, 20.0}, poses[1].Frame);
            poses[2].Frame = At({-45.0, -45.0, -45.0}, poses[2].Frame);
            break;
        case kSameOrientation:
            for (std::size_t i = 0; i < call.touches; ++i) {
                poses[i].Frame.A = poses[i].Frame.B = poses[i].Frame.C = 0.0;
            }
            break;
        case kShortDirection:
            // From the origin; for the grip tool from the Z pose.
            poses.back() = TaughtPose({0.0, 0.0, call == kGrip3PZX ? 5e-6 : -9.995});
            break;
        default: poses.back() = TaughtPose({0.0, 0.0, 25.0}); break;
    }
}

void UseArmFor(const ToolCalib& call, std::uint32_t armType, bool wrong)
{
    if (!wrong) {
        UseArm(armType);
    } else if (call == kGrip5P) {
        UseArm(KINE_ARM_FOUR_AXIS);
    } else if (call == kScara2P) {
        UseArm(KINE_ARM_SIX_AXIS);
    } else {
        UseArm(5);
    }
}

}  // namespace

TEST(tool_calibrations, any_angle_beyond_180_is_0x6010_whatever_the_arm_type)
{
    for (const std::uint32_t armType : {4u, 4110u, 6u, 5u}) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            const ToolCalibRequest good = GoodRequest(call, armType);
            for (std::size_t pose = 0; pose < call.poses; ++pose) {
                for (const auto angle : kAngles) {
                    for (const double value :
                         {JustAbove(180.0), -JustAbove(180.0), 181.0, -360.0, 1e300, kInf, -kInf}) {
                        ToolCalibRequest request = good;
                        request.poses[pose].Frame.*angle = value;
                        ExpectRefused(call, request, KINE_ERR_POSE);
                    }
                    for (const double value : {180.0, -180.0, kNan, -kNan}) {
                        ToolCalibRequest request = good;
                        request.poses[pose].Frame.*angle = value;
                        EXPECT_NE(Perform(call, request).code, KINE_ERR_POSE) << call.name << " " << pose;
                    }
                }
            }
        }
    }
}

TEST(tool_calibrations, null_poses_and_null_frames_are_0x6010_whatever_the_arm_type)
{
    for (const std::uint32_t armType : {4u, 4110u, 6u, 5u}) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            ToolCalibRequest request = GoodRequest(call, armType);
            for (std::size_t pose = 0; pose < call.poses; ++pose) {
                request.nullPose[pose] = true;
                ExpectRefused(call, request, KINE_ERR_POSE);
                request.nullPose[pose] = false;
            }
            request.nullFrame = true;
            ExpectRefused(call, request, KINE_ERR_POSE);
            request.nullReport = true;
            ExpectRefused(call, request, KINE_ERR_POSE);
        }
    }
}

TEST(tool_calibrations, null_report_is_left_out)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            if (!Serves(call, armType)) continue;
            ToolCalibRequest request = GoodRequest(call, armType);
            const KineFrame expected = Solved(call, request).frame;
            request.nullReport = true;
            EXPECT_TRUE(SameBits(Solved(call, request).frame, expected)) << call.name;
        }
    }
}

TEST(tool_calibrations, unknown_arm_types_are_0x6001_where_a_point_is_solved)
{
    for (const std::uint32_t armType : kUnknownTypes) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            for (const std::uint32_t taughtBy : {KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS}) {
                const ToolCalibRequest request = GoodRequest(call, taughtBy);
                if (call.touches > 0) {
                    ExpectRefused(call, request, KINE_ERR_NOT_INITIALISED);
                } else {
                    Solved(call, request);
                }
            }
        }
    }
}

TEST(tool_calibrations, arm_types_that_a_call_does_not_serve_are_0x6001)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            if (Serves(call, armType)) continue;
            ExpectRefused(call, GoodRequest(call, armType), KINE_ERR_NOT_INITIALISED);
        }
    }
}

// The arm type is stored before the parameters are looked at, and nothing else is asked for.
TEST(tool_calibrations, serve_an_arm_whose_initialisation_was_refused)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        for (const ToolCalib& call : kToolCalibs) {
            if (!Serves(call, armType)) continue;
            const ToolCalibRequest request = GoodRequest(call, armType);
            UseArm(armType);
            const ToolCalibOutcome expected = Solved(call, request);
            // The other kind of arm before, so that the refused type has to take its place.
            const KineKinematicParam bad{};
            for (const KineKinematicParam* refused :
                 {&bad, static_cast<const KineKinematicParam*>(nullptr)}) {
                UseArm(IsFlat(armType) ? KINE_ARM_SIX_AXIS : KINE_ARM_FOUR_AXIS);
                ASSERT_EQ(Kine_InitKinematicParam(armType, refused), KINE_ERR_MODEL_PARAM);
                const ToolCalibOutcome outcome = Solved(call, request);
                EXPECT_TRUE(SameResult(outcome, expected)) << call.name;
            }
        }
    }
}

TEST(tool_calibrations, each_fault_has_its_code_and_of_two_the_earlier_answers)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        for (const ToolCalib& call : kToolCalibs) {
            if (!Serves(call, armType)) continue;
            UseArm(armType);
            Solved(call, ExactRequest(call, armType));
            for (int early = 0; early < kPlaces; ++early) {
                for (int late = early; late < kPlaces; ++late) {
                    const auto first = static_cast<Place>(early);
                    const auto second = static_cast<Place>(late);
                    if (!Applies(first, call) || !Applies(second, call)) continue;
                    SCOPED_TRACE(testing::Message() << "arm " << armType << " faults " << first << second);
                    ToolCalibRequest request = ExactRequest(call, armType);
                    Make(second, call, request);
                    Make(first, call, request);
                    UseArmFor(call, armType, first == kArmType || second == kArmType);
                    const KineResult code = CodeOf(first, call, armType);
                    if (first >= kShortDirection && call.reports) {
                        ExpectRefusedAfterReport(call, request, code);
                    } else {
                        ExpectRefused(call, request, code);
                    }
                }
            }
        }
    }
}

// The tips of these touches are 30, 40 and 50 mm apart.
TEST(tool_calibrations, frame_step_that_fails_leaves_the_report_of_the_touches)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : {kExt3PZX, kGrip3PZX}) {
            for (const Place place : {kShortDirection, kParallelDirection}) {
                ToolCalibRequest request = ExactRequest(call, armType);
                Make(place, call, request);
                const ToolCalibOutcome outcome = Perform(call, request);
                EXPECT_EQ(outcome.code, CodeOf(place, call, armType)) << call.name;
                EXPECT_TRUE(IsUntouched(outcome.frame)) << call.name;
                ExpectReport(outcome.report, {50.0, 40.0, 30.0}, 0.0);
                request.nullReport = true;
                ExpectRefused(call, request, CodeOf(place, call, armType));
            }
        }
    }
}

// Either direction of an external tool may be the short one; a parallel one is not looked at then.
TEST(tool_calibrations, short_z_direction_answers_before_a_parallel_one)
{
    UseArm(KINE_ARM_SIX_AXIS);
    ExpectRefused(kExt1PZX, {{TaughtPose({}), TaughtPose({0.0, 0.0, 0.005}), TaughtPose({0.0, 0.0, 40.0})}},
                  KINE_ERR_ZERO_VECTOR);
    ExpectRefusedAfterReport(kGrip3PZX,
                             ZeroToolRequest(KINE_ARM_SIX_AXIS, {TaughtPose({}), TaughtPose({0.0, 0.0, 5e-6}),
                                                                 TaughtPose({0.0, 0.0, 40.0})}),
                             KINE_ERR_CALIB_POINTS_CLOSE);
}

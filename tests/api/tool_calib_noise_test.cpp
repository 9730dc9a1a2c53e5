// Tool points from poses that disagree, against a least-squares solution by another method: orthogonal
// reduction (Householder) of the stacked equations (R0 - Ri) * t = pi - p0, which never forms the normal
// equations. The error reports are compared with the distances between the tips that this solution gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "support/householder.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

Point FittedPoint(std::uint32_t armType, const std::vector<KinePose>& poses)
{
    return PointOnFlange(poses, IsFlat(armType));
}

void ExpectReportOf(const KineCalibError& report, const std::vector<KinePose>& poses, const Point& tool)
{
    std::vector<Point> tips;
    for (const KinePose& pose : poses) tips.push_back(TipOf(pose, tool));
    const std::vector<double> pairs = DistancesBetween(tips);
    ASSERT_TRUE(pairs.size() == 3 || pairs.size() == 10);
    ExpectReport(report, ReportOf(pairs), 1e-8);
}

// Poses touching one point up to an error in every coordinate.
std::vector<KinePose> NoisyTouches(SeededRandom& random, std::uint32_t armType, std::size_t count,
                                   double error)
{
    const Point tool = AnyPoint(random, 400.0);
    const Point touched = AnyPoint(random, 1200.0);
    std::vector<KinePose> poses;
    for (std::size_t i = 0; i < count; ++i) {
        const Angles angles = kGoodTouchingAngles[i] + AnyPoint(random, 10.0);
        poses.push_back(TouchingPose(tool, touched + AnyPoint(random, error), AsFor(armType, angles)));
    }
    return poses;
}

constexpr std::uint32_t kSixAxisType[] = {KINE_ARM_SIX_AXIS};

// Calls body with poses of some arm types, in error by a little and by much.
template <std::size_t Types, class Body>
void ForNoisyTouches(std::uint64_t seed, const std::uint32_t (&armTypes)[Types], std::size_t count,
                     Body&& body)
{
    SeededRandom random(seed);
    for (const std::uint32_t armType : armTypes) {
        UseArm(armType);
        for (const double error : {0.1, 1.0, 20.0}) {
            for (int round = 0; round < 40; ++round) {
                const std::vector<KinePose> poses = NoisyTouches(random, armType, count, error);
                body(poses, FittedPoint(armType, poses));
            }
        }
    }
}

}  // namespace

TEST(tool_calibrations, three_disagreeing_poses_give_the_least_squares_point_and_report)
{
    ForNoisyTouches(6111, kCalibArmTypes, 3, [](const std::vector<KinePose>& poses, const Point& expected) {
        const ToolCalibOutcome grip = Solved(kGrip3P, {poses});
        EXPECT_TRUE(IsPointFrame(grip.frame, expected, 1e-8));
        ExpectReportOf(grip.report, poses, expected);
        const ToolCalibOutcome ext = Solved(kExt3P, {poses});
        EXPECT_TRUE(IsPointFrame(ext.frame, TipOf(poses[0], expected), 1e-8));
        EXPECT_TRUE(SameBits(ext.report, grip.report));
    });
}

TEST(Kine_CalcGripToolPrm_5P, disagreeing_poses_give_the_point_and_report_of_an_independent_fit)
{
    ForNoisyTouches(6112, kSixAxisType, 5, [](const std::vector<KinePose>& poses, const Point& expected) {
        const ToolCalibOutcome outcome = Solved(kGrip5P, {poses});
        EXPECT_TRUE(IsPointFrame(outcome.frame, expected, 1e-8));
        ExpectReportOf(outcome.report, poses, expected);
    });
}

// Two headings leave nothing to fit: the equations hold exactly.
TEST(Kine_CalcGripToolPrm_Scara2P, disagreeing_headings_give_the_point_that_fits_both)
{
    ForNoisyTouches(6113, kFlatArmTypes, 2, [](const std::vector<KinePose>& poses, const Point& expected) {
        EXPECT_TRUE(IsPointFrame(Solved(kScara2P, {poses}).frame, expected, 1e-8));
        const Point first = TipOf(poses[0], expected);
        const Point second = TipOf(poses[1], expected);
        EXPECT_NEAR(first[0], second[0], 1e-8);
        EXPECT_NEAR(first[1], second[1], 1e-8);
    });
}

// Poses of four-axis arms may be tilted all the same: the equations are those in the plane.
TEST(tool_calibrations, tilted_poses_of_four_axis_arms_are_fitted_in_the_plane)
{
    SeededRandom random(6114);
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 40; ++round) {
            std::vector<KinePose> poses = NoisyTouches(random, KINE_ARM_SIX_AXIS, 3, 5.0);
            const Point expected = FittedPoint(armType, poses);
            const ToolCalibOutcome outcome = Solved(kExt3P, {poses});
            EXPECT_TRUE(IsPointFrame(outcome.frame, TipOf(poses[0], expected), 1e-8));
            ExpectReportOf(outcome.report, poses, expected);
            poses.resize(2);
            EXPECT_TRUE(IsPointFrame(Solved(kScara2P, {poses}).frame, FittedPoint(armType, poses), 1e-7));
        }
    }
}

// Origin, Z point and X point do not take part in the fit.
TEST(tool_calibrations, frame_calls_use_the_point_and_the_report_of_the_first_three)
{
    SeededRandom random(6115);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 20; ++round) {
            const std::vector<KinePose> touches = NoisyTouches(random, armType, 3, 1.0);
            const ToolCalibOutcome threePoses = Solved(kGrip3P, {touches});
            const Point tool = FittedPoint(armType, touches);
            for (const ToolCalib& call : {kExt3PZX, kGrip3PZX}) {
                ToolCalibRequest request = GoodRequest(call, armType);
                std::copy(touches.begin(), touches.end(), request.poses.begin());
                const ToolCalibOutcome outcome = Solved(call, request);
                EXPECT_TRUE(SameBits(outcome.report, threePoses.report)) << call.name;
                const Point at = call == kExt3PZX ? TipOf(request.poses[3], tool) : tool;
                EXPECT_TRUE(IsPoint(PositionOf(outcome.frame), at, 1e-8)) << call.name;
            }
        }
    }
}

// Tools from poses that do not agree: 0.1 mm of noise on every taught position. What the least squares leave
// is compared with a solution by Householder reflections of the stacked equations.
//
// The normal equations of a system with condition c lose c^2 of the rounding, the reflections c. The
// spread sets here have c below 2.2, positions about 1000 mm: both solutions are within 1e-11 mm of the true
// least squares, and 1e-9 mm tells them from any other solution, which noise of 0.1 mm puts far away.
#include "support/householder.h"
#include "support/taught_touches.h"
#include "support/tool_calib_calls.h"

namespace kine::test {
namespace {

// How far noise can move the point: an error of the right side, two moves of sqrt(3) * 0.1 mm for each of
// two differences, over the smallest singular value of 0.6 (with five poses: 0.7 over 0.85).
constexpr double kNoisyPointMm = 0.82;

// The rotation that the origin, Z and X poses 3, 4 and 5 show; four-axis arms take the upright for Z.
Mat4 AxesFrom(const std::vector<KinePose>& poses, const Point& t, bool fourAxis)
{
    const Point origin = TipOf(poses[3], t);
    const Point z = fourAxis ? Point{0.0, 0.0, 1.0} : TipOf(poses[4], t) - origin;
    return FrameAlong({}, z, TipOf(poses[5], t) - origin);
}

struct NoisySet
{
    std::vector<KinePose> poses;
    Point t;                // the point on the flange
    KineCalibError spread;  // of the first count poses
};

NoisySet DrawNoisySet(SeededRandom& random, const TaughtCell& cell, std::size_t count, bool axes = false)
{
    NoisySet set{TouchOnePoint(random, cell, {count, true, axes, {}}).poses, {}, {}};
    AddNoise(random, set.poses);
    const std::span touches(set.poses.data(), count);
    set.t = PointOnFlange(touches, cell.IsFourAxis());
    std::vector<Point> tips;
    for (const KinePose& pose : touches) tips.push_back(TipOf(pose, set.t));
    set.spread = ReportOf(DistancesBetween(tips));
    const KineFrame& truth = cell.tool.TFrame;
    const Point known = {truth.X, truth.Y, cell.IsFourAxis() ? 0.0 : truth.Z};
    EXPECT_LT(Distance(set.t, known), kNoisyPointMm);
    return set;
}

void ExpectPointFitted(SeededRandom& random, const TaughtCell& cell, const ToolCalib& call)
{
    const NoisySet set = DrawNoisySet(random, cell, call.poses);
    const ToolCalibOutcome found = Solved(call, {set.poses});
    const Point expected = call == kExt3P ? TipOf(set.poses[0], set.t) : set.t;
    EXPECT_TRUE(IsPointFrame(found.frame, expected, kTruthMm));
    if (call.reports) ExpectNoisyReport(found.report, set.spread);
}

TEST(Kine_CalcGripToolPrm_3P, noisy_poses_give_their_least_squares_and_report)
{
    ForBothFamilies(
        7301, [](SeededRandom& random, const TaughtCell& cell) { ExpectPointFitted(random, cell, kGrip3P); });
}

TEST(Kine_CalcGripToolPrm_5P, noisy_poses_give_their_least_squares_and_report)
{
    ForTaughtCells(7302, SixAxisTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectPointFitted(random, cell, kGrip5P);
    });
}

TEST(Kine_CalcGripToolPrm_Scara2P, noisy_poses_give_the_point_that_fits_both)
{
    ForTaughtCells(7303, FourAxisTaughtArms(), 0.0, 0.0, [](SeededRandom& random, const TaughtCell& cell) {
        ExpectPointFitted(random, cell, kScara2P);
    });
}

TEST(Kine_CalcGripToolPrm_3PZX, noisy_poses_give_their_least_squares_axes_and_report)
{
    ForBothFamilies(7304, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3, true);
        const ToolCalibOutcome found = Solved(kGrip3PZX, {set.poses});
        const Mat4 flange = RotationOf(MatrixOf(set.poses[3].Frame));
        const Mat4 axes = RigidInverse(flange) * AxesFrom(set.poses, set.t, cell.IsFourAxis());
        EXPECT_TRUE(IsNearFrame(found.frame, At(set.t, FrameOf(axes))));
        ExpectNoisyReport(found.report, set.spread);
    });
}

TEST(Kine_CalcExtToolPrm_3P, noisy_poses_give_the_point_of_the_first_and_report)
{
    ForBothFamilies(
        7305, [](SeededRandom& random, const TaughtCell& cell) { ExpectPointFitted(random, cell, kExt3P); });
}

TEST(Kine_CalcExtToolPrm_3PZX, noisy_poses_give_the_frame_of_the_three_points_and_report)
{
    ForBothFamilies(7306, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3, true);
        const ToolCalibOutcome found = Solved(kExt3PZX, {set.poses});
        const KineFrame axes = FrameOf(AxesFrom(set.poses, set.t, cell.IsFourAxis()));
        EXPECT_TRUE(IsNearFrame(found.frame, At(TipOf(set.poses[3], set.t), axes)));
        ExpectNoisyReport(found.report, set.spread);
    });
}

}  // namespace
}  // namespace kine::test

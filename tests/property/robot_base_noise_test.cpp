// The base on its track from positions that do not agree: 0.1 mm of noise on every one of them. The scaled
// rotation that is left is compared with a solution by Householder reflections.
#include "support/householder.h"
#include "support/positioner_calib_calls.h"
#include "support/taught_touches.h"

namespace kine::test {
namespace {

TEST(Kine_CalcRobotBasePrm_3P, noisy_positions_give_their_least_squares_and_report)
{
    ForTaughtCells(7307, AllTaughtArms(), 0.0, 80.0, [](SeededRandom& random, TaughtCell cell) {
        const Track track = TouchFromTrack(random, cell);
        StoreAxisType(4, kLinearType);
        auto p = TaughtBy(Kine_JointToBasePos, track.joints, TipOf(cell));
        AddNoise(random, p);
        const PositionerCalibOutcome found = Solved(kRobotBase, {{p[0], p[1], p[2]}, {}, kCarrier});
        // u and v of the scaled rotation that lays the moves p0 - pi of the mark along the track.
        Rows rows;
        std::vector<double> right;
        for (const std::size_t i : {1U, 2U}) {
            const Point move = PositionOf(p[0]) - PositionOf(p[i]);
            rows.push_back({move[0], -move[1]});
            rows.push_back({move[1], move[0]});
            right.push_back(p[i].ExtAxis[4] - p[0].ExtAxis[4]);
            right.push_back(0.0);
        }
        const auto uv = LeastSquares(rows, right);
        KineFrame expected{};
        expected.A = InDegrees(std::atan2(uv[1], uv[0]));
        EXPECT_TRUE(IsNearFrame(found.frame, expected, 0.0, kTruthDeg));
        std::vector<Point> marks;
        for (const KinePose& pose : p) {
            const auto& [x, y, z] = PositionOf(pose);
            marks.push_back({uv[0] * x - uv[1] * y + pose.ExtAxis[4], uv[1] * x + uv[0] * y, z});
        }
        ExpectNoisyReport(found.report, ReportOf(DistancesBetween(marks)));
        // Both moves err by at most sqrt(2) * 0.2 mm in the plane and are at least 40 mm long.
        EXPECT_LT(
            std::fabs(std::remainder(found.frame.A - track.unit.AxisFrame[1].A, 360.0)),
            InDegrees(std::asin(2.0 * kNoiseMm * std::sqrt(2.0) / (40.0 - 2.0 * kNoiseMm * std::sqrt(2.0)))));
    });
}

}  // namespace
}  // namespace kine::test

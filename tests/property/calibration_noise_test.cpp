// Calibrations of poses that do not agree: 0.1 mm of noise on every taught position. What the least squares
// leave is compared with a solution by Householder reflections of the stacked equations.
//
// The normal equations of a system with condition c lose c^2 of the rounding, the reflections c. The
// spread sets here have c below 2.2, positions about 1000 mm: both solutions are within 1e-11 mm of the true
// least squares, and 1e-9 mm tells them from any other solution, which noise of 0.1 mm puts far away.
#include "support/householder.h"
#include "support/taught_touches.h"

namespace kine::test {
namespace {

constexpr double kNoiseMm = 0.1;
constexpr double kSameMm = 1e-9;
constexpr double kSameDeg = 1e-9;

// How far noise can move the point: an error of the right side, two moves of sqrt(3) * 0.1 mm for each of
// two differences, over the smallest singular value of 0.6 (with five poses: 0.7 over 0.85).
constexpr double kNoisyPointMm = 0.82;

void AddNoise(SeededRandom& random, std::vector<KinePose>& poses)
{
    for (KinePose& pose : poses) {
        for (double* x : {&pose.Frame.X, &pose.Frame.Y, &pose.Frame.Z})
            *x += random.Uniform(-kNoiseMm, kNoiseMm);
    }
}

// t with (R0 - Ri) * t = pi - p0 for the first `count` poses; in the plane two rows, two unknowns and z = 0.
Point PointOnFlange(const std::vector<KinePose>& poses, std::size_t count, bool planar)
{
    const std::size_t n = planar ? 2 : 3;
    const Mat4 first = MatrixOf(poses[0].Frame);
    Rows rows;
    std::vector<double> right;
    for (std::size_t i = 1; i < count; ++i) {
        const Mat4 other = MatrixOf(poses[i].Frame);
        for (std::size_t row = 0; row < n; ++row) {
            rows.emplace_back();
            for (std::size_t j = 0; j < n; ++j) rows.back().push_back(first[row][j] - other[row][j]);
            right.push_back(other[row][3] - first[row][3]);
        }
    }
    const std::vector<double> t = LeastSquares(rows, right);
    return {t[0], t[1], planar ? 0.0 : t[2]};
}

KineCalibError SpreadOf(const std::vector<Point>& points)
{
    std::vector<double> distances;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j)
            distances.push_back(Distance(points[i], points[j]));
    }
    return ReportOf(distances);
}

std::vector<Point> Tips(const std::vector<KinePose>& poses, std::size_t count, const Point& t)
{
    std::vector<Point> tips;
    for (std::size_t i = 0; i < count; ++i) tips.push_back(MatrixOf(poses[i].Frame) * t);
    return tips;
}

void ExpectReport(const KineCalibError& error, const KineCalibError& expected)
{
    EXPECT_NEAR(error.Largest, expected.Largest, kSameMm);
    EXPECT_NEAR(error.Mean, expected.Mean, kSameMm);
    EXPECT_NEAR(error.Smallest, expected.Smallest, kSameMm);
    EXPECT_GT(error.Largest, 1e-4) << "noise must show";
}

Point Minus(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
double Dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Point Scaled(const Point& a, double factor) { return {factor * a[0], factor * a[1], factor * a[2]}; }
Point Unit(const Point& a) { return Scaled(a, 1.0 / std::sqrt(Dot(a, a))); }

// The rotation with Z along z and X in the half plane of x: x less its part along z.
Mat4 AxesOf(const Point& towardsZ, const Point& towardsX)
{
    const Point z = Unit(towardsZ);
    const Point x = Unit(Minus(towardsX, Scaled(z, Dot(towardsX, z))));
    Mat4 m = Identity4();
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const std::size_t k = (i + 2) % 3;
        m[i][0] = x[i];
        m[i][1] = z[j] * x[k] - z[k] * x[j];
        m[i][2] = z[i];
    }
    return m;
}

// The tool of poses 3, 4 and 5, the origin, Z and X poses; four-axis arms take the upright for Z.
Mat4 AxesFrom(const std::vector<KinePose>& poses, const Point& t, bool fourAxis)
{
    const auto tip = [&](std::size_t i) { return MatrixOf(poses[i].Frame) * t; };
    return AxesOf(fourAxis ? Point{0.0, 0.0, 1.0} : Minus(tip(4), tip(3)), Minus(tip(5), tip(3)));
}

struct NoisySet
{
    std::vector<KinePose> p;
    Point t;                // the point on the flange
    KineCalibError spread;  // of the first count poses
};

NoisySet DrawNoisySet(SeededRandom& random, const TaughtCell& cell, std::size_t count, bool axes = false)
{
    NoisySet set{TouchOnePoint(random, cell, {count, true, axes, {}}).poses, {}, {}};
    AddNoise(random, set.p);
    set.t = PointOnFlange(set.p, count, cell.IsFourAxis());
    set.spread = SpreadOf(Tips(set.p, count, set.t));
    const KineFrame& truth = cell.tool.TFrame;
    const Point known = {truth.X, truth.Y, cell.IsFourAxis() ? 0.0 : truth.Z};
    EXPECT_LT(Distance(set.t, known), kNoisyPointMm);
    return set;
}

TEST(Kine_CalcGripToolPrm_3P, noisy_poses_give_their_least_squares_and_report)
{
    ForBothFamilies(7301, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3);
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcGripToolPrm_3P(&set.p[0], &set.p[1], &set.p[2], &frame, &error), KINE_OK);
        EXPECT_TRUE(IsTruth(frame, At(set.t, {}), kSameMm, 0.0));
        ExpectReport(error, set.spread);
    });
}

TEST(Kine_CalcGripToolPrm_5P, noisy_poses_give_their_least_squares_and_report)
{
    ForTaughtCells(7302, SixAxisTaughtArms(), 40.0, 80.0, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 5);
        const auto& p = set.p;
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcGripToolPrm_5P(&p[0], &p[1], &p[2], &p[3], &p[4], &frame, &error), KINE_OK);
        EXPECT_TRUE(IsTruth(frame, At(set.t, {}), kSameMm, 0.0));
        ExpectReport(error, set.spread);
    });
}

TEST(Kine_CalcGripToolPrm_Scara2P, noisy_poses_give_the_point_that_fits_both)
{
    ForTaughtCells(7303, FourAxisTaughtArms(), 0.0, 0.0, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 2);
        KineFrame frame{};
        ASSERT_EQ(Kine_CalcGripToolPrm_Scara2P(&set.p[0], &set.p[1], &frame), KINE_OK);
        EXPECT_TRUE(IsTruth(frame, At(set.t, {}), kSameMm, 0.0));
    });
}

TEST(Kine_CalcGripToolPrm_3PZX, noisy_poses_give_their_least_squares_axes_and_report)
{
    ForBothFamilies(7304, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3, true);
        const auto& p = set.p;
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcGripToolPrm_3PZX(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &frame, &error),
                  KINE_OK);
        const Mat4 flange = RotationOf(MatrixOf(p[3].Frame));
        const Mat4 axes = RigidInverse(flange) * AxesFrom(p, set.t, cell.IsFourAxis());
        EXPECT_TRUE(IsTruth(frame, At(set.t, FrameOf(axes)), kSameMm, kSameDeg));
        ExpectReport(error, set.spread);
    });
}

TEST(Kine_CalcExtToolPrm_3P, noisy_poses_give_the_point_of_the_first_and_report)
{
    ForBothFamilies(7305, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3);
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcExtToolPrm_3P(&set.p[0], &set.p[1], &set.p[2], &frame, &error), KINE_OK);
        EXPECT_TRUE(IsTruth(frame, At(Tips(set.p, 1, set.t)[0], {}), kSameMm, 0.0));
        ExpectReport(error, set.spread);
    });
}

TEST(Kine_CalcExtToolPrm_3PZX, noisy_poses_give_the_frame_of_the_three_points_and_report)
{
    ForBothFamilies(7306, [](SeededRandom& random, const TaughtCell& cell) {
        const NoisySet set = DrawNoisySet(random, cell, 3, true);
        const auto& p = set.p;
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcExtToolPrm_3PZX(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &frame, &error),
                  KINE_OK);
        const KineFrame axes = FrameOf(AxesFrom(p, set.t, cell.IsFourAxis()));
        EXPECT_TRUE(IsTruth(frame, At(MatrixOf(p[3].Frame) * set.t, axes), kSameMm, kSameDeg));
        ExpectReport(error, set.spread);
    });
}

TEST(Kine_CalcRobotBasePrm_3P, noisy_positions_give_their_least_squares_and_report)
{
    ForTaughtCells(7307, AllTaughtArms(), 0.0, 80.0, [](SeededRandom& random, TaughtCell cell) {
        const Track track = TouchFromTrack(random, cell);
        MakeLinear(4);
        auto p = TaughtBy(Kine_JointToBasePos, track.joints, TipOf(cell));
        AddNoise(random, p);
        KineFrame frame{};
        KineCalibError error{};
        ASSERT_EQ(Kine_CalcRobotBasePrm_3P(kCarrier, &p[0], &p[1], &p[2], &frame, &error), KINE_OK);
        // u and v of the scaled rotation that lays the moves p0 - pi of the mark along the track.
        Rows rows;
        std::vector<double> right;
        for (const std::size_t i : {1U, 2U}) {
            const Point move = Minus(PositionOf(p[0]), PositionOf(p[i]));
            rows.push_back({move[0], -move[1]});
            rows.push_back({move[1], move[0]});
            right.push_back(p[i].ExtAxis[4] - p[0].ExtAxis[4]);
            right.push_back(0.0);
        }
        const auto uv = LeastSquares(rows, right);
        KineFrame expected{};
        expected.A = InDegrees(std::atan2(uv[1], uv[0]));
        EXPECT_TRUE(IsTruth(frame, expected, 0.0, kSameDeg));
        std::vector<Point> marks;
        for (const KinePose& pose : p) {
            const auto& [x, y, z] = PositionOf(pose);
            marks.push_back({uv[0] * x - uv[1] * y + pose.ExtAxis[4], uv[1] * x + uv[0] * y, z});
        }
        ExpectReport(error, SpreadOf(marks));
        // Both moves err by at most sqrt(2) * 0.2 mm in the plane and are at least 40 mm long.
        EXPECT_LT(std::fabs(std::remainder(frame.A - track.unit.AxisFrame[1].A, 360.0)),
                  InDegrees(std::asin(0.2 * std::sqrt(2.0) / (40.0 - 0.2 * std::sqrt(2.0)))));
    });
}

}  // namespace
}  // namespace kine::test

// Tool points from poses that disagree, against a least-squares solution by another method: orthogonal
// reduction (Householder) of the stacked equations (R0 - Ri) * t = pi - p0, which never forms the normal
// equations. The error reports are compared with the distances between the tips that this solution gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "support/seeded_random.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

// One equation: the coefficients of the unknowns, then the right-hand side.
template <std::size_t Unknowns>
using Equation = std::array<double, Unknowns + 1>;

// Reflects the part of column k at and below the diagonal onto the diagonal, and all columns behind it alike.
template <std::size_t Unknowns>
void ReflectColumn(std::vector<Equation<Unknowns>>& rows, std::size_t k)
{
    double square = 0.0;
    for (std::size_t i = k; i < rows.size(); ++i) square += rows[i][k] * rows[i][k];
    const double diagonal = rows[k][k] > 0.0 ? -std::sqrt(square) : std::sqrt(square);
    std::vector<double> mirror(rows.size(), 0.0);
    for (std::size_t i = k; i < rows.size(); ++i) mirror[i] = rows[i][k];
    mirror[k] -= diagonal;
    double mirrorSquare = 0.0;
    for (const double v : mirror) mirrorSquare += v * v;
    for (std::size_t j = k; j <= Unknowns; ++j) {
        double along = 0.0;
        for (std::size_t i = k; i < rows.size(); ++i) along += mirror[i] * rows[i][j];
        for (std::size_t i = k; i < rows.size(); ++i) rows[i][j] -= 2.0 * along / mirrorSquare * mirror[i];
    }
}

template <std::size_t Unknowns>
std::array<double, Unknowns> LeastSquares(std::vector<Equation<Unknowns>> rows)
{
    for (std::size_t k = 0; k < Unknowns; ++k) ReflectColumn<Unknowns>(rows, k);
    std::array<double, Unknowns> solution{};
    for (std::size_t k = Unknowns; k-- > 0;) {
        double rest = rows[k][Unknowns];
        for (std::size_t j = k + 1; j < Unknowns; ++j) rest -= rows[k][j] * solution[j];
        solution[k] = rest / rows[k][k];
    }
    return solution;
}

// The equations of all poses against the first, in the first Unknowns coordinates.
template <std::size_t Unknowns>
std::array<double, Unknowns> FittedTool(const std::vector<KinePose>& poses)
{
    std::vector<Equation<Unknowns>> rows;
    const Mat4 first = MatrixOf(poses[0].Frame);
    for (std::size_t n = 1; n < poses.size(); ++n) {
        const Mat4 other = MatrixOf(poses[n].Frame);
        for (std::size_t i = 0; i < Unknowns; ++i) {
            Equation<Unknowns> row{};
            for (std::size_t j = 0; j < Unknowns; ++j) row[j] = first[i][j] - other[i][j];
            row[Unknowns] = other[i][3] - first[i][3];
            rows.push_back(row);
        }
    }
    return LeastSquares<Unknowns>(rows);
}

Point FittedPoint(std::uint32_t armType, const std::vector<KinePose>& poses)
{
    if (!IsFlat(armType)) return FittedTool<3>(poses);
    const std::array<double, 2> inPlane = FittedTool<2>(poses);
    return {inPlane[0], inPlane[1], 0.0};
}

void ExpectReportOf(const KineCalibError& report, const std::vector<KinePose>& poses, const Point& tool)
{
    std::vector<double> pairs;
    for (std::size_t i = 0; i < poses.size(); ++i) {
        for (std::size_t j = i + 1; j < poses.size(); ++j) {
            pairs.push_back(Distance(TipOf(poses[i], tool), TipOf(poses[j], tool)));
        }
    }
    ASSERT_TRUE(pairs.size() == 3 || pairs.size() == 10);
    double sum = 0.0;
    for (const double distance : pairs) sum += distance;
    ExpectReport(report, *std::max_element(pairs.begin(), pairs.end()),
                 sum / static_cast<double>(pairs.size()), *std::min_element(pairs.begin(), pairs.end()),
                 1e-8);
}

// Poses touching one point up to an error in every coordinate.
std::vector<KinePose> NoisyTouches(SeededRandom& random, std::uint32_t armType, std::size_t count,
                                   double error)
{
    const auto anyPoint = [&](double reach) {
        return Point{random.Uniform(-reach, reach), random.Uniform(-reach, reach),
                     random.Uniform(-reach, reach)};
    };
    const Point tool = anyPoint(400.0);
    const Point touched = anyPoint(1200.0);
    std::vector<KinePose> poses;
    for (std::size_t i = 0; i < count; ++i) {
        const Angles angles = Sum(kGoodTouchingAngles[i], anyPoint(10.0));
        poses.push_back(TouchingPose(tool, Sum(touched, anyPoint(error)), AsFor(armType, angles)));
    }
    return poses;
}

constexpr double kErrors[] = {0.1, 1.0, 20.0};

}  // namespace

TEST(disagreeing_poses, three_give_the_least_squares_point_and_report)
{
    SeededRandom random(6111);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const double error : kErrors) {
            for (int round = 0; round < 40; ++round) {
                const std::vector<KinePose> poses = NoisyTouches(random, armType, 3, error);
                const Point expected = FittedPoint(armType, poses);
                const ToolCalibOutcome grip = Solved(kGrip3P, {poses});
                ExpectPoint(grip.frame, expected, 1e-8);
                ExpectReportOf(grip.report, poses, expected);
                const ToolCalibOutcome ext = Solved(kExt3P, {poses});
                ExpectPoint(ext.frame, TipOf(poses[0], expected), 1e-8);
                EXPECT_TRUE(SameBits(ext.report, grip.report));
            }
        }
    }
}

TEST(disagreeing_poses, five_give_the_least_squares_point_and_report)
{
    SeededRandom random(6112);
    UseArm(KINE_ARM_SIX_AXIS);
    for (const double error : kErrors) {
        for (int round = 0; round < 40; ++round) {
            const std::vector<KinePose> poses = NoisyTouches(random, KINE_ARM_SIX_AXIS, 5, error);
            const Point expected = FittedPoint(KINE_ARM_SIX_AXIS, poses);
            const ToolCalibOutcome outcome = Solved(kGrip5P, {poses});
            ExpectPoint(outcome.frame, expected, 1e-8);
            ExpectReportOf(outcome.report, poses, expected);
        }
    }
}

// Two headings leave nothing to fit: the equations hold exactly.
TEST(disagreeing_poses, two_headings_give_the_point_that_fits_both)
{
    SeededRandom random(6113);
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (const double error : kErrors) {
            for (int round = 0; round < 40; ++round) {
                const std::vector<KinePose> poses = NoisyTouches(random, armType, 2, error);
                const Point expected = FittedPoint(armType, poses);
                ExpectPoint(Solved(kScara2P, {poses}).frame, expected, 1e-8);
                const Point first = TipOf(poses[0], expected);
                const Point second = TipOf(poses[1], expected);
                EXPECT_NEAR(first[0], second[0], 1e-8);
                EXPECT_NEAR(first[1], second[1], 1e-8);
            }
        }
    }
}

// Poses of four-axis arms may be tilted all the same: the equations are those in the plane.
TEST(disagreeing_poses, tilted_poses_of_four_axis_arms_are_fitted_in_the_plane)
{
    SeededRandom random(6114);
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 40; ++round) {
            std::vector<KinePose> poses = NoisyTouches(random, KINE_ARM_SIX_AXIS, 3, 5.0);
            const Point expected = FittedPoint(armType, poses);
            const ToolCalibOutcome outcome = Solved(kExt3P, {poses});
            ExpectPoint(outcome.frame, TipOf(poses[0], expected), 1e-8);
            ExpectReportOf(outcome.report, poses, expected);
            poses.resize(2);
            ExpectPoint(Solved(kScara2P, {poses}).frame, FittedPoint(armType, poses), 1e-7);
        }
    }
}

// Origin, Z point and X point do not take part in the fit.
TEST(disagreeing_poses, frame_calls_use_the_point_and_the_report_of_the_first_three)
{
    SeededRandom random(6115);
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (int round = 0; round < 20; ++round) {
            const std::vector<KinePose> touches = NoisyTouches(random, armType, 3, 1.0);
            const ToolCalibOutcome threePoses = Solved(kGrip3P, {touches});
            const Point tool = FittedPoint(armType, touches);
            for (const ToolCalib* call : {&kExt3PZX, &kGrip3PZX}) {
                ToolCalibRequest request = GoodRequest(*call, armType);
                std::copy(touches.begin(), touches.end(), request.poses.begin());
                const ToolCalibOutcome outcome = Solved(*call, request);
                EXPECT_TRUE(SameBits(outcome.report, threePoses.report)) << call->name;
                const Point at = call == &kExt3PZX ? TipOf(request.poses[3], tool) : tool;
                EXPECT_NEAR(outcome.frame.X, at[0], 1e-8) << call->name;
                EXPECT_NEAR(outcome.frame.Y, at[1], 1e-8) << call->name;
                EXPECT_NEAR(outcome.frame.Z, at[2], 1e-8) << call->name;
            }
        }
    }
}

// The robot base on its track: its heading, found again from a fixed mark that the robot touches from three
// places on the track, and the report about the mark. Expected values by hand, from a known heading, or from
// a fit in complex numbers: w carries the way of the robot onto that of the track, w * a = d.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <utility>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

namespace {

using Complex = std::complex<double>;

constexpr Point kMark = {700.0, -900.0, 400.0};

// Heading in degrees and the report, by the projection of the track's moves onto the robot's.
struct Fit
{
    double heading;
    KineCalibError report;
};

Fit FitOf(const ThreePoses& taught, int extAxis)
{
    std::array<Complex, 3> point;
    std::array<double, 3> height{};
    std::array<double, 3> travel{};
    for (std::size_t i = 0; i < 3; ++i) {
        point[i] = Complex(taught[i].Frame.X, taught[i].Frame.Y);
        height[i] = taught[i].Frame.Z;
        travel[i] = taught[i].ExtAxis[extAxis];
    }
    Complex projection = 0.0;
    double square = 0.0;
    for (std::size_t i = 1; i < 3; ++i) {
        const Complex way = point[0] - point[i];
        projection += (travel[i] - travel[0]) * std::conj(way);
        square += std::norm(way);
    }
    const Complex w = projection / square;
    std::array<double, 3> distance{};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const Complex apart = w * (point[i] - point[j]) + travel[i] - travel[j];
        distance[i] = std::hypot(std::abs(apart), height[i] - height[j]);
    }
    return {InDegrees(std::arg(w)), ReportOf(distance)};
}

// Nothing but the rotation about Z.
void ExpectHeading(const KineFrame& frame, double heading, double tolerance = kTruthDeg)
{
    for (const auto length : kCoordinates) EXPECT_EQ(frame.*length, 0.0);
    EXPECT_NEAR(std::remainder(frame.A - heading, 360.0), 0.0, tolerance);
    EXPECT_EQ(frame.B, 0.0);
    EXPECT_EQ(frame.C, 0.0);
}

// Touched at these positions with these travels of external axis 0.
PositionerCalibRequest Touched(const Point& p0, const Point& p1, const Point& p2, const Values& travels)
{
    return {{TaughtAt(p0, 0, travels[0]), TaughtAt(p1, 0, travels[1]), TaughtAt(p2, 0, travels[2])}};
}

}  // namespace

// The track runs along Y of the base: as it moves by +100, the mark moves by -100 along Y as seen from the
// robot. A turn of -90 degrees carries Y of the base onto X of the track.
TEST(Kine_CalcRobotBasePrm_3P, track_along_y_of_the_base_is_a_turn_of_minus_90)
{
    SetUpTrack();
    const PositionerCalibOutcome outcome =
        Solved(kRobotBase, Touched({500, 300, 80}, {500, 200, 80}, {500, 50, 80}, {0, 100, 250}));
    ExpectHeading(outcome.frame, -90.0);
    ExpectReport(outcome.report, {0.0, 0.0, 0.0});
}

TEST(Kine_CalcRobotBasePrm_3P, track_along_x_of_the_base_is_no_turn_and_against_x_half_a_turn)
{
    SetUpTrack();
    ExpectHeading(
        Solved(kRobotBase, Touched({500, 300, 80}, {400, 300, 80}, {250, 300, 80}, {0, 100, 250})).frame,
        0.0);
    ExpectHeading(
        Solved(kRobotBase, Touched({500, 300, 80}, {600, 300, 80}, {750, 300, 80}, {0, 100, 250})).frame,
        180.0);
}

TEST(Kine_CalcRobotBasePrm_3P, every_heading_is_found)
{
    SetUpTrack();
    for (int heading = -180; heading <= 180; heading += 5) {
        PositionerCalibRequest request{MarkBesideTrack(heading, kMark, {-200.0, 350.0, 1300.0}, 0)};
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        ExpectHeading(outcome.frame, heading);
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
    }
}

// One move may be nothing, as long as the heights differ: the mark then stands in one place twice.
TEST(Kine_CalcRobotBasePrm_3P, moves_may_be_unequal_negative_or_one_of_them_nothing)
{
    SetUpTrack();
    for (const Values& travels :
         {Values{0, 0.1, 2000}, Values{500, -700, 500.05}, Values{-3, -400, -12}, Values{1e4, 1e4 + 3, 0}}) {
        PositionerCalibRequest request{MarkBesideTrack(67.0, kMark, travels, 0)};
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        ExpectHeading(outcome.frame, 67.0);
        ExpectReport(outcome.report, {0.0, 0.0, 0.0}, 1e-8);
    }
    PositionerCalibRequest still{MarkBesideTrack(67.0, kMark, {0.0, 300.0, 0.0}, 0)};
    still.poses[2].Frame.Z += 30.0;
    ExpectHeading(Solved(kRobotBase, still).frame, 67.0);
}

TEST(Kine_CalcRobotBasePrm_3P, random_headings_and_marks_are_found)
{
    SetUpTrack();
    SeededRandom random(630301);
    for (int round = 0; round < 300; ++round) {
        const double heading = random.Uniform(-180.0, 180.0);
        const double start = random.Uniform(-2000.0, 2000.0);
        const Values travels = {start, start + random.Uniform(50.0, 2000.0),
                                start - random.Uniform(50.0, 2000.0)};
        const Point mark = {random.Uniform(-2000.0, 2000.0), random.Uniform(-2000.0, 2000.0),
                            random.Uniform(-500.0, 1500.0)};
        PositionerCalibRequest request{MarkBesideTrack(heading, mark, travels, 0)};
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        ExpectHeading(outcome.frame, heading);
        ExpectReport(outcome.report, {0.0, 0.0, 0.0});
    }
}

TEST(Kine_CalcRobotBasePrm_3P, noisy_touches_match_an_independent_fit)
{
    SetUpTrack();
    SeededRandom random(630302);
    for (int round = 0; round < 300; ++round) {
        const double start = random.Uniform(-2000.0, 2000.0);
        const Values travels = {start, start + random.Uniform(50.0, 2000.0),
                                start - random.Uniform(50.0, 2000.0)};
        PositionerCalibRequest request{MarkBesideTrack(random.Uniform(-180.0, 180.0), kMark, travels, 0)};
        for (KinePose& pose : request.poses) {
            pose.Frame = At(PositionOf(pose) + AnyPoint(random, 0.1), pose.Frame);
        }
        const Fit fit = FitOf(request.poses, 0);
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        ExpectHeading(outcome.frame, fit.heading);
        ExpectReport(outcome.report, fit.report);
        EXPECT_GT(outcome.report.Smallest, 0.0);
    }
}

// Positions anywhere: rotation and scale of the fit are far from those of a track.
TEST(Kine_CalcRobotBasePrm_3P, unrelated_touches_match_an_independent_fit)
{
    SetUpTrack();
    SeededRandom random(630303);
    for (int round = 0; round < 300; ++round) {
        const Point p0 = AnyPoint(random, 900.0);
        const Point p1 = AnyPoint(random, 900.0);
        const Point p2 = AnyPoint(random, 900.0);
        const PositionerCalibRequest request = Touched(p0, p1, p2, AnyPoint(random, 900.0));
        const Fit fit = FitOf(request.poses, 0);
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        ExpectHeading(outcome.frame, fit.heading);
        ExpectReport(outcome.report, fit.report);
    }
}

// The robot saw moves half as long as the track's: with the scale of 2 left in, the mark's three positions
// coincide. A pure rotation would leave them 50 and 100 mm apart.
TEST(Kine_CalcRobotBasePrm_3P, report_keeps_the_scale_of_the_fit)
{
    SetUpTrack();
    const PositionerCalibOutcome outcome =
        Solved(kRobotBase, Touched({0, 0, 9}, {-50, 0, 9}, {-100, 0, 9}, {0, 100, 200}));
    ExpectHeading(outcome.frame, 0.0);
    ExpectReport(outcome.report, {0.0, 0.0, 0.0}, 0.0);
}

// Heading 0 and scale 1 exactly; heights 0, 3 and 7 are all that differs, by 3, 7 and 4.
TEST(Kine_CalcRobotBasePrm_3P, report_is_largest_mean_smallest)
{
    SetUpTrack();
    const PositionerCalibOutcome outcome =
        Solved(kRobotBase, Touched({0, 0, 0}, {-100, 0, 3}, {-200, 0, 7}, {0, 100, 200}));
    ExpectHeading(outcome.frame, 0.0);
    ExpectReport(outcome.report, {7.0, 14.0 / 3.0, 3.0}, 0.0);
}

TEST(Kine_CalcRobotBasePrm_3P, smallest_distance_is_reported_as_10000_at_most)
{
    SetUpTrack();
    for (const auto& [step, smallest] : {std::pair{9999.0, 9999.0}, std::pair{10000.0, 10000.0},
                                         std::pair{10001.0, 10000.0}, std::pair{20000.0, 10000.0}}) {
        const PositionerCalibOutcome outcome =
            Solved(kRobotBase, Touched({0, 0, 0}, {-100, 0, step}, {-200, 0, 2 * step}, {0, 100, 200}));
        ExpectReport(outcome.report, {2.0 * step, 4.0 * step / 3.0, smallest}, 0.0);
    }
}

TEST(Kine_CalcRobotBasePrm_3P, heights_do_not_change_the_heading)
{
    SetUpTrack();
    PositionerCalibRequest request{MarkBesideTrack(-140.0, kMark, {0.0, 300.0, 800.0}, 0)};
    request.poses[0].Frame.Z = -4e5;
    request.poses[1].Frame.Z = 7e5;
    ExpectHeading(Solved(kRobotBase, request).frame, -140.0);
}

// All other external axes hold NaN or a misleading value.
TEST(Kine_CalcRobotBasePrm_3P, param_index_of_the_first_axis_picks_the_external_axis)
{
    for (int extAxis = 0; extAxis < 6; ++extAxis) {
        const int other = (extAxis + 5) % 6;
        SetUpUnit({{extAxis, kLinearType}, {other, kRotaryType}});
        PositionerCalibRequest request{MarkBesideTrack(80.0, kMark, {0.0, 300.0, 800.0}, extAxis)};
        request.poses[1].ExtAxis[other] = 1000.0;
        ExpectHeading(Solved(kRobotBase, request).frame, 80.0);
    }
}

TEST(Kine_CalcRobotBasePrm_3P, unit_index_picks_the_unit)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    StoreUnitWithAxes(0, {{4, kRotaryType}});
    StoreUnitWithAxes(1, {{0, kLinearType}});
    StoreUnitWithAxes(2, {{3, kLinearType}});
    for (const auto& [unit, extAxis] : {std::pair{1, 0}, std::pair{2, 3}}) {
        PositionerCalibRequest request;
        request.unit = unit;
        request.poses = MarkBesideTrack(12.0, kMark, {0.0, 300.0, 800.0}, extAxis);
        ExpectHeading(Solved(kRobotBase, request).frame, 12.0);
    }
}

// A fit that shrinks 100,000 times leaves a matrix whose first column is below 1e-5: the general conversion
// to angles then sees a direction along Z. 0.1 mm of track for d mm of the robot is a scale of 0.1 / d.
TEST(Kine_CalcRobotBasePrm_3P, fit_that_nearly_vanishes_counts_as_looking_along_z)
{
    SetUpTrack();
    const auto headed = [](double way) {
        return Solved(kRobotBase, Touched({0, 0, 0}, {-way, 0, 0}, {-way, 0, 50}, {0, 0.1, 0.1})).frame;
    };
    ExpectHeading(headed(9990.0), 0.0);
    const KineFrame vanished = headed(10010.0);
    EXPECT_EQ(vanished.A, 0.0);
    EXPECT_EQ(vanished.B, 90.0);
    EXPECT_EQ(vanished.C, 0.0);
}

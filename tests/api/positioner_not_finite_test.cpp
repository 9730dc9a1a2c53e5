// Results of the positioner and robot-base calibrations that are not finite, which come with KINE_OK. What
// remains of a result follows from IEEE arithmetic on the formulas: 0 / 0, infinity * 0 and everything
// computed with NaN are NaN.
//
// The coordinates are whole numbers small enough for every product to be exact, so that an axis in the XY
// plane makes 0 / 0 and not a quotient of rounding errors.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

namespace {

PositionerCalibRequest RequestFor(const Point& p0, const Point& p1, const Point& p2)
{
    return {TaughtPoints(p0, p1, p2)};
}

void ExpectNoFrame(const Point& p0, const Point& p1, const Point& p2)
{
    const PositionerCalibRequest request = RequestFor(p0, p1, p2);
    ExpectAllNan(Solved(kJ1, request).frame);
    ExpectAllNan(Solved(kJn, request).frame);
}

void SetUpTable() { SetUpUnit({{0, kRotaryType}, {0, kRotaryType}}); }

void ExpectPositionOfTheTableOnly(const KineFrame& frame)
{
    EXPECT_TRUE(IsPoint(PositionOf(frame), {100.0, 200.0, 50.0}));
    for (const auto angle : kAngles) EXPECT_TRUE(IsTheNan(frame.*angle));
}

// The base with a good set, to be spoilt: heading 0, all numbers exact.
PositionerCalibRequest ExactTrack()
{
    PositionerCalibRequest request = RequestFor({0, 0, 5}, {-100, 0, 5}, {-200, 0, 5});
    request.poses[1].ExtAxis[0] = 100.0;
    request.poses[2].ExtAxis[0] = 200.0;
    return request;
}

}  // namespace

// n = (nx, 0, 0), so that m1.x and m2.x are 0: the denominator of P.y is 0. Its numerator is x of the plane
// times m1.y * m2.y - m2.y * m1.y, 0 as well. P.y, s and P.x, P.z are NaN, so are the X and Y axes; every
// angle takes one of them, and the matrix that the angles give, NaN throughout, turns the position into NaN.
TEST(positioner_calibrations, axis_in_the_xy_plane_along_x_gives_no_frame_with_result_0)
{
    SetUpTable();
    ExpectNoFrame({7, 30, 40}, {7, -40, 30}, {7, -30, -40});
    ExpectNoFrame({0, 30, 40}, {0, -40, 30}, {0, -30, -40});
    ExpectNoFrame({-250, 30, 40}, {-250, -30, -40}, {-250, -40, 30});
}

// n = (0, ny, 0): m1.y and m2.y are 0, and with them all four products.
TEST(positioner_calibrations, axis_in_the_xy_plane_along_y_gives_no_frame_with_result_0)
{
    SetUpTable();
    ExpectNoFrame({30, 7, 40}, {-40, 7, 30}, {-30, 7, -40});
}

// n along (1, 1, 0): both bisectors run along (1, -1) in the XY plane, or along Z.
TEST(positioner_calibrations, axis_in_the_xy_plane_along_the_diagonal_gives_no_frame_with_result_0)
{
    SetUpTable();
    ExpectNoFrame({10, -10, 20}, {-20, 20, 10}, {-10, 10, -20});
    ExpectNoFrame({110, 90, 20}, {80, 120, 10}, {90, 110, -20});
}

// An upright table about (0, 0): the first chord runs along Y, m1.y is 0. The centre's y is right, 0 or
// another exact number, and s = (P.y - M1.y) / m1.y is 0 / 0.
TEST(positioner_calibrations, first_bisector_along_x_gives_no_frame_with_result_0)
{
    SetUpTable();
    ExpectNoFrame({30, -40, 5}, {30, 40, 5}, {-50, 0, 5});
    ExpectNoFrame({130, 160, 5}, {130, 240, 5}, {50, 200, 5});
    ExpectNoFrame({30, 40, 5}, {30, -40, 5}, {-50, 0, 5});
}

// The same three positions begun elsewhere.
TEST(Kine_CalcPositionerJ1Prm_3P, other_order_of_positions_with_a_first_bisector_along_x_gives_the_frame)
{
    SetUpTable();
    const KineFrame begun = Solved(kJ1, RequestFor({130, 240, 5}, {50, 200, 5}, {130, 160, 5})).frame;
    EXPECT_TRUE(IsFrame(begun, Shift(100.0, 200.0, 5.0) * TurnZ(std::atan2(4.0, 3.0))));
    const KineFrame crossed = Solved(kJ1, RequestFor({50, 200, 5}, {130, 160, 5}, {130, 240, 5})).frame;
    EXPECT_TRUE(IsFrame(crossed, Shift(100.0, 200.0, 5.0) * TurnZDeg(180.0)));
}

// No comparison with a limit is true for NaN. The heights are equal, so that infinity meets their 0 or
// itself: in every case m1.y or m2.x is NaN, therefore P.y, and from it the rest.
TEST(positioner_calibrations, positions_not_finite_give_no_axis_frame_with_result_0)
{
    SetUpTable();
    for (const double value : {kNan, -kNan, kNanWithPayload, kInf, -kInf}) {
        for (std::size_t pose = 0; pose < 3; ++pose) {
            for (std::size_t i = 0; i < 3; ++i) {
                PositionerCalibRequest request{UprightTable()};
                request.poses[pose].Frame.*kCoordinates[i] = value;
                ExpectAllNan(Solved(kJ1, request).frame);
                ExpectAllNan(Solved(kJn, request).frame);
            }
        }
    }
}

// Rz(NaN) spoils the X and Y axes and with them the angles: A and B take X, C takes Z of Y. The position is
// the centre, its turn by 0 mm is exact.
TEST(Kine_CalcPositionerJ1Prm_3P, axis_value_not_finite_leaves_the_position)
{
    SetUpTable();
    for (const double value : {kNan, kNanWithPayload, kInf, -kInf}) {
        PositionerCalibRequest request{UprightTable()};
        request.poses[0].ExtAxis[0] = value;
        ExpectPositionOfTheTableOnly(Solved(kJ1, request).frame);
    }
}

// As radians it spoils the inverse of the reference, and with it everything: the determinant is NaN.
TEST(Kine_CalcPositionerJnPrm_3P, value_of_axis_n_not_finite_gives_no_frame)
{
    SetUpUnit({{0, kRotaryType}, {1, kRotaryType}});
    for (const double value : {kNan, kNanWithPayload, kInf, -kInf}) {
        PositionerCalibRequest request{UprightTable()};
        request.axis = 1;
        request.poses[0].ExtAxis[0] = value;
        ExpectAllNan(Solved(kJn, request).frame);
    }
}

// As degrees, of the second axis while n is 1, it leaves the position.
TEST(Kine_CalcPositionerJnPrm_3P, value_of_the_second_axis_not_finite_leaves_the_position)
{
    SetUpUnit({{0, kRotaryType}, {1, kRotaryType}});
    PositionerCalibRequest request{UprightTable()};
    request.axis = 1;
    request.poses[0].ExtAxis[1] = kInf;
    ExpectPositionOfTheTableOnly(Solved(kJn, request).frame);
}

TEST(Kine_CalcPositionerJnPrm_3P, reference_angle_not_finite_gives_no_frame_and_position_loses_its_position)
{
    SetUpTable();
    for (const double value : {kNan, kNanWithPayload, kInf, -kInf}) {
        for (const auto angle : kAngles) {
            PositionerCalibRequest request{UprightTable()};
            request.reference.*angle = value;
            ExpectAllNan(Solved(kJn, request).frame);
        }
    }
    // Rz(0) of a position with NaN: x and y take each other, z takes both times 0.
    PositionerCalibRequest request{UprightTable()};
    request.reference.Y = kNan;
    const KineFrame frame = Solved(kJn, request).frame;
    for (const auto length : kCoordinates) EXPECT_TRUE(IsTheNan(frame.*length));
    for (const auto angle : kAngles) EXPECT_NEAR(frame.*angle, 0.0, 1e-9);
}

// Only one position suffers: the two distances to it are NaN and count in the mean, the third is 5.
TEST(Kine_CalcRobotBasePrm_3P, nan_distance_enters_the_mean_only)
{
    SetUpTrack();
    for (const double value : {kNan, kNanWithPayload}) {
        for (std::size_t spoilt = 0; spoilt < 3; ++spoilt) {
            PositionerCalibRequest request = ExactTrack();
            request.poses[(spoilt + 1) % 3].Frame.Z = 8.0;
            request.poses[(spoilt + 2) % 3].Frame.Z = 13.0;
            request.poses[spoilt].Frame.Z = value;
            const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
            EXPECT_EQ(outcome.report.Largest, 5.0);
            EXPECT_TRUE(IsTheNan(outcome.report.Mean));
            EXPECT_EQ(outcome.report.Smallest, 5.0);
            for (const auto element : kElements) EXPECT_EQ(outcome.frame.*element, 0.0);
        }
    }
}

// The fit is NaN, and with it A, and B, which takes the length of the first column; C comes of 0 and 1. All
// three distances are NaN: largest and smallest stay where they begin.
TEST(Kine_CalcRobotBasePrm_3P, nan_fit_spoils_a_and_b)
{
    SetUpTrack();
    const auto expectNoHeading = [](const PositionerCalibRequest& request) {
        const PositionerCalibOutcome outcome = Solved(kRobotBase, request);
        for (const auto element : {&KineFrame::X, &KineFrame::Y, &KineFrame::Z, &KineFrame::C}) {
            EXPECT_EQ(outcome.frame.*element, 0.0);
        }
        EXPECT_TRUE(IsTheNan(outcome.frame.A));
        EXPECT_TRUE(IsTheNan(outcome.frame.B));
        ExpectNanReport(outcome.report);
    };
    for (std::size_t pose = 0; pose < 3; ++pose) {
        for (const double value : {kNan, kNanWithPayload}) {
            PositionerCalibRequest request = ExactTrack();
            request.poses[pose].Frame.X = value;
            expectNoHeading(request);
            request = ExactTrack();
            request.poses[pose].Frame.Y = value;
            expectNoHeading(request);
            request = ExactTrack();
            request.poses[pose].ExtAxis[0] = value;
            expectNoHeading(request);
        }
    }
}

// u = infinity * 3 / S and v = -infinity * 4 / S with the way (3, 4): the angle of two infinities is 45
// degrees, here below.
TEST(Kine_CalcRobotBasePrm_3P, infinite_track_move_heads_along_a_diagonal)
{
    SetUpTrack();
    PositionerCalibRequest request = RequestFor({0, 0, 5}, {-3, -4, 5}, {-6, -8, 5});
    request.poses[1].ExtAxis[0] = kInf;
    const KineFrame frame = Solved(kRobotBase, request).frame;
    EXPECT_NEAR(frame.A, -45.0, 1e-12);
    EXPECT_EQ(frame.B, 0.0);
    EXPECT_EQ(frame.C, 0.0);
}

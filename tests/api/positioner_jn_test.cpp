// A further axis of a positioner in a reference frame: (Rz(v) * F)^-1 * T * Rz(-w), T the axis frame that the
// marks show, v the value of axis n, a number of degrees taken as radians, w that of the second axis.
// Expected frames come from known axes as plain matrices.
#include <gtest/gtest.h>

#include <cmath>

#include "support/positioner_calib_calls.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

// Unit 0 with external axis 0 for axis 1, 1 for axis 2 and 2 for axis 3.
void SetUpThreeAxes() { SetUpUnit({{0, kRotaryType}, {1, kRotaryType}, {2, kRotaryType}}); }

// The upright table, whose first pose holds these values of the three axes.
PositionerCalibRequest TableAt(int axis, const Values& values)
{
    PositionerCalibRequest request{UprightTable()};
    request.axis = axis;
    for (int i = 0; i < 3; ++i) request.poses[0].ExtAxis[i] = values[static_cast<std::size_t>(i)];
    return request;
}

}  // namespace

// Number pi / 2: as radians a quarter turn, which takes (100, 200) back to (200, -100) and the direction by
// 90 degrees; as degrees 1.57..., by which the second axis is turned back as well.
TEST(Kine_CalcPositionerJnPrm_3P, value_of_axis_2_is_radians_for_the_reference_and_degrees_for_the_result)
{
    SetUpThreeAxes();
    const PositionerCalibRequest request = TableAt(2, {kNan, kQuarterTurn, kNan});
    EXPECT_TRUE(
        IsNearFrame(Solved(kJn, request).frame, {200.0, -100.0, 50.0, -90.0 - kQuarterTurn, 0.0, 0.0}));
}

// The value of axis n is the angle of the reference, that of axis 2 the angle of the result.
TEST(Kine_CalcPositionerJnPrm_3P, second_axis_is_turned_back_in_degrees_for_any_n)
{
    SetUpThreeAxes();
    const KineFrame expected = {200.0, -100.0, 50.0, -90.0 - 25.0, 0.0, 0.0};
    EXPECT_TRUE(IsNearFrame(Solved(kJn, TableAt(1, {kQuarterTurn, 25.0, kNan})).frame, expected));
    EXPECT_TRUE(IsNearFrame(Solved(kJn, TableAt(3, {kNan, 25.0, kQuarterTurn})).frame, expected));
}

// 90 as radians is 14 turns and 116.6... degrees: 90 - 28 pi rad = 2.0354... rad.
TEST(Kine_CalcPositionerJnPrm_3P, ninety_is_ninety_radians)
{
    SetUpThreeAxes();
    const double turn = 90.0 - 28.0 * kHalfTurn;
    const double c = std::cos(turn);
    const double s = std::sin(turn);
    EXPECT_TRUE(
        IsNearFrame(Solved(kJn, TableAt(1, {90.0, 0.0, kNan})).frame,
                    {100.0 * c + 200.0 * s, -100.0 * s + 200.0 * c, 50.0, -InDegrees(turn), 0.0, 0.0}));
}

TEST(Kine_CalcPositionerJnPrm_3P, zero_reference_and_zero_values_give_the_axis_as_taught)
{
    SetUpThreeAxes();
    for (const int axis : {1, 2, 3}) {
        EXPECT_TRUE(
            IsNearFrame(Solved(kJn, TableAt(axis, {0.0, 0.0, 0.0})).frame, {100.0, 200.0, 50.0, 0, 0, 0}));
    }
}

// From (70, 200, 40) and turned by 90 degrees about Z, the table at (100, 200, 50) is at (0, -30, 10).
TEST(Kine_CalcPositionerJnPrm_3P, reference_frame_is_in_millimetres_and_degrees)
{
    SetUpThreeAxes();
    PositionerCalibRequest request = TableAt(2, {0.0, 0.0, 0.0});
    request.reference = {70.0, 200.0, 40.0, 90.0, 0.0, 0.0};
    EXPECT_TRUE(IsNearFrame(Solved(kJn, request).frame, {0.0, -30.0, 10.0, -90.0, 0.0, 0.0}));
}

// A quarter turn about the origin of the poses moves the reference from (70, 0, 0) to (0, 70, 0).
TEST(Kine_CalcPositionerJnPrm_3P, reference_is_turned_about_the_origin_of_the_poses)
{
    SetUpThreeAxes();
    PositionerCalibRequest request = TableAt(1, {kQuarterTurn, 0.0, kNan});
    request.reference = {70.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    EXPECT_TRUE(IsNearFrame(Solved(kJn, request).frame, {130.0, -100.0, 50.0, -90.0, 0.0, 0.0}));
}

// What it is for: both axes as they are in the cell, the first at 0 and the second at 0 in the first pose.
TEST(Kine_CalcPositionerJnPrm_3P, second_axis_is_found_in_the_frame_of_the_first)
{
    SetUpUnit({{4, kRotaryType}, {2, kRotaryType}});
    const KineFrame first = {800.0, -300.0, 500.0, 20.0, -35.0, 15.0};
    for (const KineFrame& second :
         {KineFrame{150.0, -60.0, 220.0, 25.0, 40.0, -30.0}, KineFrame{0.0, 0.0, 180.0, 0.0, 0.0, 0.0},
          KineFrame{-40.0, 90.0, 20.0, -130.0, 15.0, 65.0}}) {
        const Mat4 axis = MatrixOf(first) * MatrixOf(second);
        PositionerCalibRequest request;
        // On the X axis of the second axis when it reads 0.
        request.poses = MarkOnTable(axis, {120.0, 0.0, 0.0}, {0.0, 80.0, 200.0}, 2);
        request.reference = first;
        EXPECT_TRUE(IsAxisFrame(Solved(kJn, request).frame, MatrixOf(second)));
    }
}

// Taught the other way round, the same axis shows with Z on its other side.
TEST(Kine_CalcPositionerJnPrm_3P, mark_turned_clockwise_has_z_on_the_other_side)
{
    SetUpUnit({{4, kRotaryType}, {2, kRotaryType}});
    const KineFrame first = {800.0, -300.0, 500.0, 20.0, -35.0, 15.0};
    const KineFrame second = {150.0, -60.0, 220.0, 25.0, 40.0, -30.0};
    PositionerCalibRequest request{
        MarkOnTable(MatrixOf(first) * MatrixOf(second), {120.0, 0.0, 0.0}, {0.0, -80.0, -200.0}, 2)};
    request.reference = first;
    EXPECT_TRUE(IsAxisFrame(Solved(kJn, request).frame, MatrixOf(second) * TurnXDeg(180.0)));
}

// Any values, drivers and references. All external axes that are not asked for hold NaN.
TEST(Kine_CalcPositionerJnPrm_3P, random_cells_match_the_product_of_plain_matrices)
{
    SeededRandom random(630201);
    for (int round = 0; round < 200; ++round) {
        const int axis = random.Whole(1, 4);
        const int driver = random.Whole(0, 5);
        const int second = axis == 2 ? driver : random.Whole(0, 5);
        const auto driverOf = [&](int n) { return n == 2 ? second : n == axis ? driver : 5; };
        SetUpUnit({{driverOf(1), 0}, {driverOf(2), 0}, {driverOf(3), 0}, {driverOf(4), 0}});
        const Mat4 table = Shift(random.Uniform(-900.0, 900.0), random.Uniform(-900.0, 900.0), 100.0) *
                           TurnXDeg(random.Uniform(-30.0, 30.0)) * TurnYDeg(random.Uniform(-30.0, 30.0));
        const Mark mark = {random.Uniform(80.0, 300.0), 0.0, random.Uniform(-50.0, 50.0)};
        const Values turns = {random.Uniform(-20.0, 20.0), random.Uniform(80.0, 140.0),
                              random.Uniform(200.0, 280.0)};
        PositionerCalibRequest request;
        request.axis = axis;
        request.poses = MarkOnTable(table, mark, turns, 0);
        for (double& value : request.poses[0].ExtAxis) value = kNan;
        request.poses[0].ExtAxis[second] = random.Uniform(-400.0, 400.0);
        request.poses[0].ExtAxis[driver] = random.Uniform(-400.0, 400.0);
        for (const auto element : kElements) request.reference.*element = random.Uniform(-720.0, 720.0);
        const Mat4 reference = TurnZ(request.poses[0].ExtAxis[driver]) * MatrixOf(request.reference);
        const Mat4 expected = RigidInverse(reference) * SeenAxis(table, mark, turns) *
                              TurnZDeg(-request.poses[0].ExtAxis[second]);
        EXPECT_TRUE(IsAxisFrame(Solved(kJn, request).frame, expected)) << "round " << round;
    }
}

TEST(Kine_CalcPositionerJnPrm_3P, angles_of_the_reference_may_go_beyond_a_half_turn)
{
    SetUpThreeAxes();
    PositionerCalibRequest request = TableAt(2, {0.0, 30.0, 0.0});
    request.reference = {10.0, 20.0, 30.0, -90.0, 20.0, -170.0};
    const Mat4 expected = MatrixOf(Solved(kJn, request).frame);
    for (const KineFrame& angles :
         {KineFrame{0, 0, 0, 270.0, 20.0, 190.0}, KineFrame{0, 0, 0, -450.0, 380.0, 550.0},
          KineFrame{0, 0, 0, 90.0, 160.0, 10.0}}) {
        request.reference.A = angles.A;
        request.reference.B = angles.B;
        request.reference.C = angles.C;
        EXPECT_TRUE(IsAxisFrame(Solved(kJn, request).frame, expected)) << angles.A;
    }
}

// The type of axis n alone is asked for, and only 1 is a linear one.
TEST(Kine_CalcPositionerJnPrm_3P, types_other_than_linear_and_of_other_axes_do_not_matter)
{
    SetUpThreeAxes();
    const PositionerCalibRequest request = TableAt(1, {0.5, 25.0, 0.0});
    const KineFrame expected = Solved(kJn, request).frame;
    StoreAxisType(1, kLinearType);
    StoreAxisType(2, kLinearType);
    for (const int type : {0, 2, 3, -1, 257, 32767, -32768}) {
        StoreAxisType(0, type);
        EXPECT_TRUE(SameBits(Solved(kJn, request).frame, expected)) << type;
    }
}

// The inverse of the reference turns by 90 about Y: cos B is 0, where A is 0 and C holds the rest. Written as
// angles, the inverse of Ry(90) * Rx(25) is Rz(90) * Ry(-65) * Rx(-90).
TEST(Kine_CalcPositionerJnPrm_3P, result_pointing_straight_along_z_has_a_0)
{
    SetUpThreeAxes();
    PositionerCalibRequest request = TableAt(2, {0.0, 0.0, 0.0});
    request.reference = {0.0, 0.0, 0.0, 90.0, -65.0, -90.0};
    ASSERT_TRUE(IsMatrix(RigidInverse(MatrixOf(request.reference)), TurnYDeg(90.0) * TurnXDeg(25.0)));
    const KineFrame frame = Solved(kJn, request).frame;
    EXPECT_EQ(frame.A, 0.0);
    EXPECT_NEAR(frame.B, 90.0, kTruthDeg);
    EXPECT_NEAR(frame.C, 25.0, kTruthDeg);
}

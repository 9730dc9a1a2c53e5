// The first axis of a positioner, found again from a mark that a known axis has turned. Expected frames are
// the axis itself and turns of it, as plain matrices.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "support/positioner_calib_calls.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

// The axis frame seen in the taught poses, turned back by the value of the first.
Mat4 FirstAxis(const Mat4& axis, const Mark& mark, const Values& values)
{
    return SeenAxis(axis, mark, values) * TurnZDeg(-values[0]);
}

::testing::AssertionResult FindsFirstAxis(const Mat4& axis, const Mark& mark, const Values& values)
{
    PositionerCalibRequest request{MarkOnTable(axis, mark, values, 0)};
    return IsAxisFrame(Solved(kJ1, request).frame, FirstAxis(axis, mark, values));
}

// How far apart two directions are, in 0..180 degrees.
double Apart(double a, double b)
{
    const double turn = std::fmod(std::fabs(a - b), 360.0);
    return turn > 180.0 ? 360.0 - turn : turn;
}

// The circle lies well, and no two of the positions or bisectors are near each other.
bool IsWellTaught(const Mat4& axis, const Mark& mark, const Values& values)
{
    return IsWellPlaced(axis, mark.phase + 0.5 * (values[0] + values[1]), 0.3, 0.2) &&
           Apart(values[0], values[1]) > 40.0 && Apart(values[0], values[2]) > 40.0 &&
           Apart(values[1], values[2]) > 40.0;
}

}  // namespace

// The mark stands towards X of the poses at value 0.
TEST(Kine_CalcPositionerJ1Prm_3P, upright_axis_turned_anticlockwise_has_z_up_and_x_towards_the_mark_at_0)
{
    SetUpUnit({{0, kRotaryType}});
    PositionerCalibRequest request{UprightTable()};
    request.poses[1].ExtAxis[0] = 90.0;
    request.poses[2].ExtAxis[0] = 180.0;
    EXPECT_TRUE(IsNearFrame(Solved(kJ1, request).frame, {100.0, 200.0, 50.0, 0.0, 0.0, 0.0}));
}

// The same mark taught at 30, 120 and 210: the frame that shows at 30 is turned back by 30 degrees.
TEST(Kine_CalcPositionerJ1Prm_3P, value_of_the_first_pose_is_turned_back_in_degrees)
{
    SetUpUnit({{0, kRotaryType}});
    PositionerCalibRequest request{UprightTable()};
    for (const double value : {30.0, -45.0, 120.0, 30.0 + 720.0}) {
        request.poses[0].ExtAxis[0] = value;
        const double turned = value > 360.0 ? -30.0 : -value;
        EXPECT_TRUE(IsNearFrame(Solved(kJ1, request).frame, {100.0, 200.0, 50.0, turned, 0.0, 0.0}));
    }
}

// Taught from 180 back to 0: X towards (-1, 0, 0), Z down; turned back by 180 about this Z, X is (1, 0, 0).
TEST(Kine_CalcPositionerJ1Prm_3P, mark_turned_clockwise_has_z_down)
{
    SetUpUnit({{0, kRotaryType}});
    PositionerCalibRequest request{
        TaughtPoints({70.0, 200.0, 50.0}, {100.0, 230.0, 50.0}, {130.0, 200.0, 50.0})};
    request.poses[0].ExtAxis[0] = 180.0;
    request.poses[1].ExtAxis[0] = 90.0;
    const Mat4 zDown = Shift(100.0, 200.0, 50.0) * TurnXDeg(180.0);
    EXPECT_TRUE(IsAxisFrame(Solved(kJ1, request).frame, zDown));
}

// Any three values in the six orders: three of them follow one another anticlockwise, three clockwise.
TEST(Kine_CalcPositionerJ1Prm_3P, order_of_the_poses_decides_the_side_of_z)
{
    SetUpUnit({{0, kRotaryType}});
    const Mat4 axis = Shift(800.0, -300.0, 500.0) * TurnZDeg(20.0) * TurnYDeg(-15.0) * TurnXDeg(30.0);
    const Mark mark = {250.0, 75.0, 40.0};
    int anticlockwise = 0;
    for (const Values& values :
         {Values{-20.0, 65.0, 170.0}, Values{65.0, 170.0, -20.0}, Values{170.0, -20.0, 65.0},
          Values{-20.0, 170.0, 65.0}, Values{170.0, 65.0, -20.0}, Values{65.0, -20.0, 170.0}}) {
        EXPECT_TRUE(FindsFirstAxis(axis, mark, values));
        PositionerCalibRequest request{MarkOnTable(axis, mark, values, 0)};
        const Mat4 found = MatrixOf(Solved(kJ1, request).frame);
        const double sameSide =
            found[0][2] * axis[0][2] + found[1][2] * axis[1][2] + found[2][2] * axis[2][2];
        EXPECT_NEAR(sameSide, IsAnticlockwise(values) ? 1.0 : -1.0, 1e-12);
        anticlockwise += sameSide > 0.0 ? 1 : 0;
    }
    EXPECT_EQ(anticlockwise, 3);
}

// A tilt of 3-4-5 about X, a mark on the axis's own X direction 7 mm up: the axis frame, raised along itself.
TEST(Kine_CalcPositionerJ1Prm_3P, tilted_axis_is_found_where_it_reads_0)
{
    SetUpUnit({{0, kRotaryType}});
    PositionerCalibRequest request;
    // Centre (500, 100 - 0.6 * 7, 900 + 0.8 * 7), X (1, 0, 0), Y (0, 0.8, 0.6); values 0, 90 and 180.
    request.poses = TaughtPoints({550.0, 95.8, 905.6}, {500.0, 135.8, 935.6}, {450.0, 95.8, 905.6});
    // C is atan(3 / 4).
    EXPECT_TRUE(IsNearFrame(Solved(kJ1, request).frame, {500.0, 95.8, 905.6, 0.0, 0.0, 36.86989764584402}));
}

TEST(Kine_CalcPositionerJ1Prm_3P, axis_some_degrees_above_the_xy_plane_is_found)
{
    SetUpUnit({{0, kRotaryType}});
    for (const double tilt : {80.0, -80.0, 100.0, 179.0}) {
        const Mat4 axis = Shift(400.0, -200.0, 600.0) * TurnXDeg(tilt);
        EXPECT_TRUE(FindsFirstAxis(axis, {120.0, 10.0, -30.0}, {5.0, 110.0, 215.0})) << tilt;
    }
}

TEST(Kine_CalcPositionerJ1Prm_3P, random_axes_are_found)
{
    SetUpUnit({{0, kRotaryType}});
    SeededRandom random(630101);
    int tried = 0;
    for (int round = 0; tried < 300 && round < 20000; ++round) {
        KineFrame frame{};
        for (const auto element : kElements) frame.*element = random.Uniform(-180.0, 180.0);
        for (const auto length : kCoordinates) frame.*length *= 5.0;
        const Mat4 axis = MatrixOf(frame);
        const Mark mark = {random.Uniform(50.0, 400.0), random.Uniform(-180.0, 180.0),
                           random.Uniform(-100.0, 100.0)};
        const Values values = {random.Uniform(-360.0, 360.0), random.Uniform(-360.0, 360.0),
                               random.Uniform(-360.0, 360.0)};
        if (!IsWellTaught(axis, mark, values)) continue;
        ++tried;
        EXPECT_TRUE(FindsFirstAxis(axis, mark, values)) << "round " << round;
    }
    EXPECT_EQ(tried, 300);
}

// Only the bisector of the first chord may not run along X: that of the second may.
TEST(Kine_CalcPositionerJ1Prm_3P, second_bisector_along_x_is_found)
{
    SetUpUnit({{0, kRotaryType}});
    PositionerCalibRequest request{TaughtPoints({0.0, 50.0, 5.0}, {-30.0, 40.0, 5.0}, {-30.0, -40.0, 5.0})};
    EXPECT_TRUE(IsAxisFrame(Solved(kJ1, request).frame, Shift(0.0, 0.0, 5.0) * TurnZDeg(90.0)));
}

// All other external axes of the first pose, and all of the others, hold NaN or a misleading value.
TEST(Kine_CalcPositionerJ1Prm_3P, param_index_of_the_first_axis_picks_the_external_axis)
{
    const Mat4 axis = Shift(300.0, 400.0, 500.0) * TurnYDeg(25.0);
    const Mark mark = {100.0, -40.0, 12.0};
    const Values values = {33.0, 140.0, 250.0};
    for (int extAxis = 0; extAxis < 6; ++extAxis) {
        const int other = (extAxis + 1) % 6;
        SetUpUnit({{extAxis, kRotaryType}, {other, kRotaryType}});
        PositionerCalibRequest request{MarkOnTable(axis, mark, values, extAxis)};
        request.poses[0].ExtAxis[other] = 1000.0;
        request.poses[1].ExtAxis[extAxis] = kNan;
        request.poses[2].ExtAxis[extAxis] = -77.0;
        EXPECT_TRUE(IsAxisFrame(Solved(kJ1, request).frame, FirstAxis(axis, mark, values))) << extAxis;
    }
}

// External axis 3 drives unit 0, 5 unit 1 and 1 unit 2; the mark's table turns with one of them.
TEST(Kine_CalcPositionerJ1Prm_3P, unit_index_picks_the_unit)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    const std::array<int, 3> drivers = {3, 5, 1};
    for (int unit = 0; unit < 3; ++unit) {
        StoreUnitWithAxes(unit, {{drivers[static_cast<std::size_t>(unit)], kRotaryType}});
    }
    const Mat4 axis = Shift(300.0, 400.0, 500.0) * TurnXDeg(-25.0);
    const Mark mark = {100.0, -40.0, 12.0};
    const Values values = {-61.0, 70.0, 160.0};
    for (int unit = 0; unit < 3; ++unit) {
        PositionerCalibRequest request;
        request.unit = unit;
        request.poses = MarkOnTable(axis, mark, values, drivers[static_cast<std::size_t>(unit)]);
        EXPECT_TRUE(IsAxisFrame(Solved(kJ1, request).frame, FirstAxis(axis, mark, values))) << unit;
    }
}

// What the unit is and where its axes stand is not asked for, nor the type of its external axis.
TEST(Kine_CalcPositionerJ1Prm_3P, kind_frames_and_type_of_the_unit_are_not_read)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJ1);
    request.poses[0].ExtAxis[0] = 12.5;
    const KineFrame expected = Solved(kJ1, request).frame;
    for (const int kind : {0, 1, 2, 3, 65535}) {
        KineMechUnit unit = LinearUnit({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, {7.0, 8.0, 9.0, 10.0, 11.0, 12.0}, 0);
        unit.UnitKind = static_cast<uint16_t>(kind);
        unit.Active = kind == 0 ? 0 : -1;
        StoreUnit(0, unit);
        for (const int type : {0, 1, 2, -1}) {
            StoreAxisType(0, type);
            EXPECT_TRUE(SameBits(Solved(kJ1, request).frame, expected)) << kind << " " << type;
        }
    }
}

TEST(Kine_CalcPositionerJ1Prm_3P, orientations_and_configurations_do_not_matter)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJ1);
    const KineFrame expected = Solved(kJ1, request).frame;
    SeededRandom random(630102);
    for (int round = 0; round < 50; ++round) {
        for (KinePose& pose : request.poses) {
            pose.Frame.A = random.Uniform(-180.0, 180.0);
            pose.Frame.B = random.Uniform(-180.0, 180.0);
            pose.Frame.C = random.Below(5) == 0 ? kNan : random.Uniform(-180.0, 180.0);
            pose.Cfg1 = random.AnyBits<int32_t>();
            pose.Cfg4 = random.AnyBits<int32_t>();
        }
        EXPECT_TRUE(SameBits(Solved(kJ1, request).frame, expected));
    }
}

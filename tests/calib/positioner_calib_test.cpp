// Positioner solvers at their own level: the axis frame before angles hide what is infinite, mechanical units
// that no export can store, and outputs that refusals leave alone.
#include "calib/positioner_calib.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/records.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();

using Marks = std::array<Vec3, 3>;

// The mark at 0, 90 and 180 degrees on a table at (100, 200, 50).
constexpr Marks kUprightTable = {{{130.0, 200.0, 50.0}, {100.0, 230.0, 50.0}, {70.0, 200.0, 50.0}}};
// A mark seen by a robot that moves 100 and 200 mm along a track that runs along its X.
constexpr Marks kBesideTrack = {{{0.0, 0.0, 5.0}, {-100.0, 0.0, 5.0}, {-200.0, 0.0, 5.0}}};

// Poses with these positions; external axis i of the first holds 30 * i degrees, all move as the track does.
std::array<PoseRecord, 3> TaughtAt(const Marks& marks)
{
    std::array<PoseRecord, 3> taught{};
    for (std::size_t i = 0; i < 3; ++i) {
        taught[i].frame = Pose{marks[i].x, marks[i].y, marks[i].z, 0.4, 0.5, 0.6};
        for (std::size_t axis = 0; axis < 6; ++axis) {
            taught[i].extAxis[axis] = 30.0 * static_cast<double>(axis) + 100.0 * static_cast<double>(i);
        }
    }
    return taught;
}

// Unit 1 with axes that external axes 2 and 3 drive.
MechUnitBlock TwoAxes(std::int32_t type)
{
    MechUnitBlock block{};
    block.mechUnitCount = 1;
    block.units[1].axisCount = 2;
    block.units[1].axisParamIndex = {2, 3, -1, kInt32Min, kInt32Max, 6};
    for (ExtAxisSlot& slot : block.extAxes) slot.word[3] = type;
    return block;
}

KineResult CheckWritten(KineResult code, const Pose& frame)
{
    EXPECT_NE(IsUntouched(frame), code == KINE_OK) << std::hex << code;
    return code;
}

KineResult J1(const MechUnitBlock& units, std::int32_t unit, const Marks& marks = kUprightTable)
{
    Pose frame = Untouched<Pose>();
    return CheckWritten(CalcPositionerJ1(units, unit, TaughtAt(marks), frame), frame);
}

KineResult Jn(const MechUnitBlock& units, std::int32_t unit, std::int32_t axis,
              const Marks& marks = kUprightTable)
{
    Pose frame = Untouched<Pose>();
    return CheckWritten(CalcPositionerJn(units, unit, axis, TaughtAt(marks), Pose{}, frame), frame);
}

KineResult Base(const MechUnitBlock& units, std::int32_t unit, const Marks& marks = kBesideTrack)
{
    Pose frame = Untouched<Pose>();
    KineCalibError report = Untouched<KineCalibError>();
    const KineResult code = CalcRobotBase(units, unit, TaughtAt(marks), frame, report);
    EXPECT_NE(IsUntouched(report), code == KINE_OK) << std::hex << code;
    return CheckWritten(code, frame);
}

void ExpectNanRotation(const RotMatrix& r)
{
    for (const Vec3& axis : {AxisX(r), AxisY(r), AxisZ(r)}) {
        EXPECT_TRUE(std::isnan(axis.x) && std::isnan(axis.y) && std::isnan(axis.z));
    }
}

}  // namespace

// Anticlockwise with Z up, clockwise with Z down; X towards the first position.
TEST(CalcAxisFrame3P, stands_in_the_centre_of_the_circle)
{
    HomMatrix axis{};
    ASSERT_EQ(CalcAxisFrame3P(kUprightTable, axis), KINE_OK);
    ExpectNear(axis, {kIdentityRotation, {100.0, 200.0, 50.0}}, 1e-12);
    ASSERT_EQ(CalcAxisFrame3P({{kUprightTable[2], kUprightTable[1], kUprightTable[0]}}, axis), KINE_OK);
    const RotMatrix zDown = FromAxes({-1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, -1.0});
    ExpectNear(axis, {zDown, {100.0, 200.0, 50.0}}, 1e-12);
}

TEST(CalcAxisFrame3P, refusal_leaves_the_frame)
{
    HomMatrix axis = Untouched<HomMatrix>();
    EXPECT_EQ(CalcAxisFrame3P({{{}, {}, {1.0, 0.0, 0.0}}}, axis), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcAxisFrame3P({{{}, {1.0, 2.0, 3.0}, {2.0, 4.0, 6.0}}}, axis), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_TRUE(IsUntouched(axis));
}

// 0 / 0 for y of the centre, and from it everything.
TEST(CalcAxisFrame3P, axis_in_the_xy_plane_has_no_centre)
{
    HomMatrix axis{};
    ASSERT_EQ(CalcAxisFrame3P({{{7.0, 30.0, 40.0}, {7.0, -40.0, 30.0}, {7.0, -30.0, -40.0}}}, axis), KINE_OK);
    EXPECT_TRUE(std::isnan(axis.t.x) && std::isnan(axis.t.y) && std::isnan(axis.t.z));
    ExpectNanRotation(axis.r);
}

// The first chord runs along Y, m1 = (-630, 0, 0). y of the centre is exact here, s is 0 / 0.
TEST(CalcAxisFrame3P, first_bisector_along_x_has_y_of_the_centre_only)
{
    HomMatrix axis{};
    ASSERT_EQ(CalcAxisFrame3P({{{130.0, 160.0, 5.0}, {130.0, 240.0, 5.0}, {50.0, 200.0, 5.0}}}, axis),
              KINE_OK);
    EXPECT_TRUE(std::isnan(axis.t.x));
    EXPECT_EQ(axis.t.y, 200.0);
    EXPECT_TRUE(std::isnan(axis.t.z));
    ExpectNanRotation(axis.r);
}

// M1.y is the double above 1.7 and the quotient for P.y rounds to 1.7: s = -2.2e-16 / 0 is minus infinity.
// Upright, m1 = (-630, 0, 0): infinity for x and infinity * 0 for z. Tilted, m1 = (-630, 0, 360): both
// infinite, to the other sides.
TEST(CalcAxisFrame3P, first_bisector_along_x_with_rounded_numbers_has_an_infinite_centre)
{
    const double middle = (0.2 + 3.2) / 2.0;
    ASSERT_EQ(middle, JustAbove(1.7));
    HomMatrix upright{};
    ASSERT_EQ(CalcAxisFrame3P({{{100.0, 0.2, 5.0}, {100.0, 3.2, 5.0}, {30.0, 0.7, 5.0}}}, upright), KINE_OK);
    EXPECT_EQ(upright.t.x, kInf);
    EXPECT_EQ(upright.t.y, 1.7);
    EXPECT_TRUE(std::isnan(upright.t.z));
    ExpectNanRotation(upright.r);
    HomMatrix tilted{};
    ASSERT_EQ(CalcAxisFrame3P({{{100.0, 0.2, 5.0}, {100.0, 3.2, 5.0}, {30.0, 0.7, 45.0}}}, tilted), KINE_OK);
    EXPECT_EQ(tilted.t.x, kInf);
    EXPECT_EQ(tilted.t.y, 1.7);
    EXPECT_EQ(tilted.t.z, -kInf);
    ExpectNanRotation(tilted.r);
}

// Angles in radians, values in degrees: 60 of external axis 2 are turned back.
TEST(CalcPositionerJ1, turns_back_in_degrees_and_answers_in_radians)
{
    Pose frame{};
    ASSERT_EQ(CalcPositionerJ1(TwoAxes(0), 1, TaughtAt(kUprightTable), frame), KINE_OK);
    ExpectNear(frame, {100.0, 200.0, 50.0, -kHalfTurn / 3.0, 0.0, 0.0}, 1e-12, 1e-14);
}

// 60 of the first axis as radians, 90 of the second as degrees. The reference's angles are radians.
TEST(CalcPositionerJn, takes_the_value_of_axis_n_as_radians)
{
    Pose frame{};
    const Pose reference{10.0, 20.0, 30.0, 0.7, 0.0, 0.0};
    ASSERT_EQ(CalcPositionerJn(TwoAxes(0), 1, 1, TaughtAt(kUprightTable), reference, frame), KINE_OK);
    EXPECT_TRUE(PoseIs(frame, RigidInverse(TurnZ(60.0) * MatrixOf(reference)) * Shift(100.0, 200.0, 50.0) *
                                  TurnZ(-kQuarterTurn)));
}

TEST(CalcRobotBase, answers_in_radians)
{
    Pose frame = Untouched<Pose>();
    KineCalibError report = Untouched<KineCalibError>();
    const Marks alongY = {{{0.0, 0.0, 5.0}, {0.0, -100.0, 5.0}, {0.0, -200.0, 5.0}}};
    ASSERT_EQ(CalcRobotBase(TwoAxes(1), 1, TaughtAt(alongY), frame, report), KINE_OK);
    ExpectNear(frame, {0.0, 0.0, 0.0, -kQuarterTurn, 0.0, 0.0}, 0.0, 1e-15);
    EXPECT_NEAR(report.Largest, 0.0, 1e-12);
}

// Types wider than the 16 bits that an export stores.
TEST(positioner_solvers, only_1_is_a_linear_axis)
{
    for (const std::int32_t type : {0, 2, -1, 65537, 0x10000, 0x01000001, kInt32Min + 1, kInt32Max}) {
        EXPECT_EQ(Jn(TwoAxes(type), 1, 1), KINE_OK) << type;
        EXPECT_EQ(Base(TwoAxes(type), 1), KINE_ERR_POSE) << type;
    }
    EXPECT_EQ(Jn(TwoAxes(1), 1, 1), KINE_ERR_POSE);
    EXPECT_EQ(Base(TwoAxes(1), 1), KINE_OK);
    EXPECT_EQ(J1(TwoAxes(1), 1), KINE_OK);
}

TEST(positioner_solvers, units_that_are_not_known_are_0x6011)
{
    for (const std::int32_t unit : {-1, 2, 3, kInt32Min, kInt32Max}) {
        EXPECT_EQ(J1(TwoAxes(0), unit), KINE_ERR_TOOL) << unit;
        EXPECT_EQ(Jn(TwoAxes(0), unit, 2), KINE_ERR_TOOL) << unit;
        EXPECT_EQ(Base(TwoAxes(1), unit), KINE_ERR_TOOL) << unit;
    }
    // Counts that no export stores: below the unit, and beyond the slots.
    MechUnitBlock block = TwoAxes(0);
    for (const std::int32_t count : {0, -1, kInt32Min}) {
        block.mechUnitCount = count;
        EXPECT_EQ(J1(block, 1), KINE_ERR_TOOL) << count;
    }
    block.mechUnitCount = kInt32Max;
    EXPECT_EQ(J1(block, 1), KINE_OK);
    for (const std::int32_t unit : {3, 4, kInt32Max}) {
        EXPECT_EQ(J1(block, unit), KINE_ERR_TOOL) << unit;
        EXPECT_EQ(Jn(block, unit, 2), KINE_ERR_TOOL) << unit;
    }
}

TEST(positioner_solvers, axes_and_drivers_that_are_not_known_are_0x6011)
{
    MechUnitBlock block = TwoAxes(0);
    for (const std::int32_t count : {0, -1, kInt32Min}) {
        block.units[1].axisCount = count;
        EXPECT_EQ(J1(block, 1), KINE_ERR_TOOL) << count;
        EXPECT_EQ(Jn(block, 1, 1), KINE_ERR_TOOL) << count;
        EXPECT_EQ(Base(block, 1), KINE_ERR_TOOL) << count;
    }
    block.units[1].axisCount = 1;
    EXPECT_EQ(J1(block, 1), KINE_OK);
    EXPECT_EQ(Jn(block, 1, 1), KINE_ERR_TOOL) << "the second axis is missing";
    block.units[1].axisCount = kInt32Max;
    EXPECT_EQ(Jn(block, 1, 2), KINE_OK);
    // Drivers -1, INT32_MIN, INT32_MAX and 6, then no driver at all.
    for (const std::int32_t axis : {3, 4, 5, 6, 7, kInt32Max})
        EXPECT_EQ(Jn(block, 1, axis), KINE_ERR_TOOL) << axis;
    for (const std::int32_t axis : {0, -1, kInt32Min})
        EXPECT_EQ(Jn(block, 1, axis), KINE_ERR_CALIB_INPUT) << axis;
    block = TwoAxes(1);
    for (const std::int32_t driver : {-1, 6, kInt32Min, kInt32Max}) {
        block.units[1].axisParamIndex[0] = driver;
        EXPECT_EQ(J1(block, 1), KINE_ERR_TOOL) << driver;
        EXPECT_EQ(Base(block, 1), KINE_ERR_TOOL) << driver;
    }
}

// The positions are refused before a unit that is not known, but after an axis of the wrong type.
TEST(positioner_solvers, positions_are_refused_in_their_place)
{
    constexpr Marks kClose = {{{}, {}, {1.0, 0.0, 0.0}}};
    constexpr Marks kLine = {{{}, {1.0, 2.0, 3.0}, {2.0, 4.0, 6.0}}};
    EXPECT_EQ(J1(TwoAxes(0), -1, kClose), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(J1(TwoAxes(0), -1, kLine), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_EQ(Jn(TwoAxes(0), -1, 2, kClose), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(Jn(TwoAxes(0), -1, 2, kLine), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_EQ(Jn(TwoAxes(1), 1, 2, kClose), KINE_ERR_POSE);
    EXPECT_EQ(Jn(TwoAxes(0), -1, 0, kClose), KINE_ERR_CALIB_INPUT);
    EXPECT_EQ(Base(TwoAxes(1), -1, kClose), KINE_ERR_TOOL);
    EXPECT_EQ(Base(TwoAxes(0), 1, kClose), KINE_ERR_POSE);
    EXPECT_EQ(Base(TwoAxes(1), 1, kClose), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(Base(TwoAxes(1), 1, kLine), KINE_OK);
}

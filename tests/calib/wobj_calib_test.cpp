// Work-object solvers at their own level: points on mechanical units that no export can store, and outputs
// that refusals leave alone.
#include "calib/wobj_calib.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "support/math_compare.h"
#include "support/naive_arms.h"
#include "support/naive_transform.h"
#include "support/records.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();

constexpr Pose kFirst{900.0, -400.0, 300.0, -0.7, 0.3, 0.2};
constexpr Pose kSecond{-25.0, 35.0, 45.0, 0.6, -0.1, 0.9};

MechUnitBlock BlockWith(std::int32_t index, const MechUnitSlot& unit)
{
    MechUnitBlock block{};
    block.mechUnitCount = 3;
    block.extAxisItemCount = 6;
    block.units[static_cast<std::size_t>(index)] = unit;
    return block;
}

// Points of the unit's last axis as they stand in the world at values of external axes 0 and 1.
constexpr FramePoints kOnUnit = {{{10.0, 20.0, 30.0}, {110.0, -20.0, 35.0}, {-5.0, 70.0, 15.0}}};

std::array<PoseRecord, 3> InWorld(std::int32_t kind)
{
    std::array<PoseRecord, 3> taught{};
    const std::array<double, 3> firstValues = {15.0, -40.0, 130.0};
    for (std::size_t i = 0; i < 3; ++i) {
        const double secondValue = 25.0 - 70.0 * static_cast<double>(i);
        const Mat4 world = NaiveUnit(kind, MatrixOf(kFirst), MatrixOf(kSecond), firstValues[i], secondValue) *
                           Shift(kOnUnit[i].x, kOnUnit[i].y, kOnUnit[i].z);
        taught[i].frame = Pose{world[0][3], world[1][3], world[2][3], 0.3, -0.2, 0.1};
        taught[i].extAxis = {firstValues[i], secondValue, 1e6, 1e6, 1e6, 1e6};
    }
    return taught;
}

void ExpectZeroPoints(const FramePoints& points)
{
    for (const Vec3& point : points) ExpectNear(point, {0.0, 0.0, 0.0}, 0.0);
}

}  // namespace

TEST(PointsOnMechUnit, sees_each_point_from_the_unit_where_it_stood)
{
    for (const std::int32_t kind : {kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
        for (const std::int32_t index : {0, 1, 2}) {
            const MechUnitBlock block = BlockWith(index, MakeUnit(kind, kFirst, kSecond));
            const FramePoints points = PointsOnMechUnit(block, index, InWorld(kind));
            for (std::size_t i = 0; i < 3; ++i) ExpectNear(points[i], kOnUnit[i], 1e-9);
        }
    }
}

// A linear axis may stand at the origin, a rotary one not.
TEST(PointsOnMechUnit, rotary_axis_frame_at_the_origin_leaves_zero_points)
{
    const Pose origin{0.0, 0.0, 0.0, 0.4, 0.5, 0.6};
    const auto points = [](std::int32_t kind, const Pose& first, const Pose& second) {
        return PointsOnMechUnit(BlockWith(1, MakeUnit(kind, first, second)), 1, InWorld(kOneLinearAxis));
    };
    ExpectZeroPoints(points(kOneRotaryAxis, origin, kSecond));
    ExpectZeroPoints(points(kTwoRotaryAxes, origin, kSecond));
    ExpectZeroPoints(points(kTwoRotaryAxes, kFirst, origin));
    const FramePoints linear = points(kOneLinearAxis, Pose{}, Pose{});
    const Pose taught = InWorld(kOneLinearAxis)[0].frame;
    ExpectNear(linear[0], {taught.x - 15.0, taught.y, taught.z}, 1e-12);
}

TEST(PointsOnMechUnit, unit_that_cannot_be_used_leaves_zero_points)
{
    const MechUnitSlot good = MakeUnit(kOneRotaryAxis, kFirst, kSecond);
    const auto taught = InWorld(kOneRotaryAxis);
    for (const std::int32_t unit : {-1, 3, 4, kInt32Min, kInt32Max}) {
        MechUnitBlock block = BlockWith(0, good);
        block.units[1] = block.units[2] = good;
        ExpectZeroPoints(PointsOnMechUnit(block, unit, taught));
    }
    for (const std::int32_t kind : {0, 4, -1, kInt32Min, kInt32Max}) {
        MechUnitSlot unit = good;
        unit.unitKind = kind;
        ExpectZeroPoints(PointsOnMechUnit(BlockWith(1, unit), 1, taught));
    }
    for (const std::int32_t count : {0, -1, kInt32Min}) {
        MechUnitSlot unit = good;
        unit.axisCount = count;
        ExpectZeroPoints(PointsOnMechUnit(BlockWith(1, unit), 1, taught));
    }
    for (const std::int32_t driver : {-1, 6, kInt32Min, kInt32Max}) {
        ExpectZeroPoints(
            PointsOnMechUnit(BlockWith(1, MakeUnit(kOneRotaryAxis, kFirst, kSecond, driver)), 1, taught));
        ExpectZeroPoints(
            PointsOnMechUnit(BlockWith(1, MakeUnit(kTwoRotaryAxes, kFirst, kSecond, 0, driver)), 1, taught));
    }
}

// From (10, 20, 30), turned by a quarter about Z: X of the frame is Y of the points.
TEST(CalcPointsInFrame, turns_points_back)
{
    const FramePoints points =
        CalcPointsInFrame({10.0, 20.0, 30.0, kQuarterTurn, 0.0, 0.0},
                          {{{10.0, 20.0, 30.0}, {10.0, 25.0, 30.0}, {3.0, 20.0, 31.0}}});
    ExpectNear(points[0], {0.0, 0.0, 0.0}, 1e-14);
    ExpectNear(points[1], {5.0, 0.0, 0.0}, 1e-14);
    ExpectNear(points[2], {0.0, 7.0, 1.0}, 1e-14);
}

TEST(CalcUserFrame3P, refusal_leaves_frame_and_tilt)
{
    CalibratedFrame result = Untouched<CalibratedFrame>();
    EXPECT_EQ(CalcUserFrame3P({{{}, {0.009, 0, 0}, {0, 1, 0}}}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcUserFrame3P({{{}, {1, 0, 0}, {0.009, 0, 0}}}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcUserFrame3P({{{}, {1, 0, 0}, {1.009, 0, 0}}}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcUserFrame3P({{{}, {1, 0, 0}, {-1, 0, 0}}}, result), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_TRUE(IsUntouched(result));
}

TEST(CalcUserFrame2P, refusal_leaves_frame_and_tilt)
{
    CalibratedFrame result = Untouched<CalibratedFrame>();
    EXPECT_EQ(CalcUserFrame2P({}, {0.0009, 0.0, 0.0}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcUserFrame2P({}, {0.0, 0.0, -5.0}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_TRUE(IsUntouched(result));
}

// Sides of 0.05 and 0.06 mm at a right angle: the square of their product, 9e-6, is the determinant.
TEST(CalcCircleFrame3P, refusal_leaves_frame_and_tilt)
{
    CalibratedFrame result = Untouched<CalibratedFrame>();
    EXPECT_EQ(CalcCircleFrame3P({{{}, {}, {0, 1, 0}}}, result), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_EQ(CalcCircleFrame3P({{{}, {1, 1, 1}, {3, 3, 3}}}, result), KINE_ERR_CALIB_COLLINEAR);
    EXPECT_EQ(CalcCircleFrame3P({{{}, {0.05, 0, 0}, {0, 0.06, 0}}}, result), KINE_ERR_CALIB_3);
    EXPECT_TRUE(IsUntouched(result));
}

// Angles and tilt are in radians: the plane x = 7, seen from its positive side, X along Z and Y along -Y.
TEST(CalcUserFrame3P, upright_plane_is_tilted_by_a_quarter_turn)
{
    CalibratedFrame result{};
    ASSERT_EQ(CalcUserFrame3P({{{7.0, 1.0, 2.0}, {7.0, 1.0, 12.0}, {7.0, -4.0, 9.0}}}, result), KINE_OK);
    EXPECT_DOUBLE_EQ(result.tilt, kQuarterTurn);
    const HomMatrix expected{FromAxes({0.0, 0.0, 1.0}, {0.0, -1.0, 0.0}, {1.0, 0.0, 0.0}), {7.0, 1.0, 2.0}};
    ExpectNear(PoseToMatrix(result.frame), expected, 1e-14);
}

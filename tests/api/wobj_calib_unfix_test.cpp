// Object frames of work objects on a mechanical unit: every taught pose is seen from the unit's last axis at
// the external axes of that pose.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

void SetUpUnit(const KineMechUnit& unit, int index = 1, uint32_t units = 3)
{
    SetUpArm(WristArm());
    SetUnitCounts(units, 6);
    StoreUnit(index, unit);
}

// At a point, with external axes 0 and 1 at these values.
KinePose PoseAt(double x, double y, double z, double first, double second = 0.0)
{
    KinePose pose = TaughtAt({x, y, z});
    pose.ExtAxis[0] = first;
    pose.ExtAxis[1] = second;
    return pose;
}

WobjCalibOutcome OnUnit(int32_t unit, const KinePose& origin, const KinePose& x, const KinePose& xy)
{
    WobjCalibRequest request{{origin, x, xy}};
    request.unit = unit;
    return Solved(kUnFixObject, request);
}

void ExpectPointsRefused(WobjCalibRequest request, int32_t unit)
{
    SCOPED_TRACE(unit);
    request.unit = unit;
    ExpectRefused(kUnFixObject, request, KINE_ERR_CALIB_POINTS_CLOSE);
}

// Any values, also those of no number, where they are not read.
void FillExtAxes(KinePose& pose, SeededRandom& random)
{
    for (double& value : pose.ExtAxis) value = random.AnyBits<double>();
    pose.ExtAxis[random.Below(6)] = kNan;
}

const KineFrame kFirst = {800.0, -100.0, 350.0, 20.0, -35.0, 50.0};
const KineFrame kSecond = {-40.0, 60.0, 120.0, -75.0, 15.0, 95.0};
const KineFrame kAtOrigin = {0.0, 0.0, 0.0, 10.0, 20.0, 30.0};

// Three good points for a unit at any place.
WobjCalibRequest GoodPoints()
{
    return {
        {PoseAt(900.0, 50.0, 400.0, 0.0), PoseAt(950.0, 60.0, 410.0, 0.0), PoseAt(890.0, 120.0, 380.0, 0.0)}};
}

}  // namespace

// A table that turns about (100, 0, 0). The object lies at (10, 0, 0) on it; its X point (30, 0, 0) is taught
// with the table at 90 degrees, its XY point (10, 20, 0) with the table at 180.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, on_one_rotary_axis_turns_every_pose_back_by_its_own_angle)
{
    SetUpUnit(RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    const WobjCalibOutcome result = OnUnit(1, PoseAt(110.0, 0.0, 0.0, 0.0), PoseAt(100.0, 30.0, 0.0, 90.0),
                                           PoseAt(90.0, -20.0, 0.0, 180.0));
    EXPECT_TRUE(IsNearFrame(result.frame, {10.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 1e-11, 1e-11));
    EXPECT_NEAR(result.tilt, 0.0, 1e-7);
    // Angles of external axes are not bounded.
    const WobjCalibOutcome turned = OnUnit(1, PoseAt(110.0, 0.0, 0.0, -360.0),
                                           PoseAt(100.0, 30.0, 0.0, 450.0), PoseAt(90.0, -20.0, 0.0, -180.0));
    EXPECT_TRUE(IsNearFrame(turned.frame, {10.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 1e-11, 1e-11));
}

// The rail runs along world Y; the turn behind the travel brings the axes back. Its second position is not
// used.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, on_a_linear_axis_moves_every_pose_back_by_its_own_travel)
{
    SetUpUnit(LinearUnit({0.0, 0.0, 5.0, 90.0, 0.0, 0.0}, {1e3, 2e3, 3e3, -90.0, 0.0, 0.0}, 0));
    const WobjCalibOutcome result = OnUnit(1, PoseAt(1.0, 2.0, 8.0, 0.0), PoseAt(11.0, 52.0, 8.0, 50.0),
                                           PoseAt(1.0, 7.0 - 300.0, 8.0, -300.0));
    EXPECT_TRUE(IsNearFrame(result.frame, {1.0, 2.0, 3.0, 0.0, 0.0, 0.0}, 1e-11, 1e-11));
    EXPECT_NEAR(result.tilt, 0.0, 1e-7);
}

// The first axis stands at (100, 0, 0) along Z, the second 10 mm above it along world Y (Rx(-90) of z) when
// the first is at 0. On the second axis the object is 20 mm out on X. Origin: both at 0, world (120, 0, 10).
// X point (50, 0, 0): first at 90, x is world Y: (100, 50, 10). XY point (20, 5, 0): second at 90 brings it
// to (-5, 20, 0) there, that is world (95, 0, -10) as y is world -Z.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, on_two_rotary_axes_sees_the_poses_from_the_second)
{
    SetUpUnit(TwoRotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 10.0, 0.0, 0.0, -90.0}, 0, 1));
    const WobjCalibOutcome result =
        OnUnit(1, PoseAt(120.0, 0.0, 10.0, 0.0, 0.0), PoseAt(100.0, 50.0, 10.0, 90.0, 0.0),
               PoseAt(95.0, 0.0, -10.0, 0.0, 90.0));
    EXPECT_TRUE(IsNearFrame(result.frame, {20.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 1e-11, 1e-11));
    EXPECT_NEAR(result.tilt, 0.0, 1e-7);
}

// The axis lies along world -Y (Rx(90) of z); the points lie level in the world.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, tilt_is_measured_against_the_axis)
{
    SetUpUnit(RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 90.0}, 0));
    const WobjCalibOutcome level =
        OnUnit(1, PoseAt(100.0, 0.0, 0.0, 0.0), PoseAt(110.0, 0.0, 0.0, 0.0), PoseAt(100.0, 10.0, 0.0, 0.0));
    EXPECT_TRUE(IsNearFrame(level.frame, {0.0, 0.0, 0.0, 0.0, 0.0, -90.0}, 1e-11, 1e-11));
    EXPECT_NEAR(level.tilt, kQuarterTurn, 1e-13);
    // Upright against world Y the frame agrees with the axis.
    const WobjCalibOutcome upright =
        OnUnit(1, PoseAt(100.0, 0.0, 0.0, 0.0), PoseAt(110.0, 0.0, 0.0, 0.0), PoseAt(100.0, 0.0, 10.0, 0.0));
    EXPECT_TRUE(IsNearFrame(upright.frame, {}, 1e-11, 1e-11));
    EXPECT_NEAR(upright.tilt, 0.0, 1e-7);
}

// The tip stays at (110, 0, 0) while the table turns: on the table the points are (10, 0), (0, -10) and
// (-10, 0). X points along (-1, -1); the XY point lies to the right of it, so Z points down.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, poses_may_share_a_position_and_differ_in_the_axis)
{
    SetUpUnit(RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    const WobjCalibOutcome result = OnUnit(1, PoseAt(110.0, 0.0, 0.0, 0.0), PoseAt(110.0, 0.0, 0.0, 90.0),
                                           PoseAt(110.0, 0.0, 0.0, 180.0));
    EXPECT_TRUE(IsNearFrame(result.frame, {10.0, 0.0, 0.0, -135.0, 0.0, 180.0}, 1e-11, 1e-11));
    EXPECT_NEAR(result.tilt, kHalfTurn, 1e-7);
    // And one mark may pass through different positions.
    ExpectPointsRefused(
        {{PoseAt(110.0, 0.0, 0.0, 0.0), PoseAt(100.0, 10.0, 0.0, 90.0), PoseAt(130.0, 10.0, 0.0, 0.0)}}, 1);
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, recovers_the_frame_on_any_unit)
{
    SeededRandom random(650);
    for (const uint16_t kind : {kLinearKind, kRotaryKind, kTwoRotaryKind}) {
        for (int i = 0; i < 300; ++i) {
            SCOPED_TRACE(::testing::Message() << "kind " << kind << " round " << i);
            const int firstDriver = random.Whole(0, 5);
            const int secondDriver = random.Whole(0, 5);
            const KineFrame first = AnyFrame(random);
            const KineFrame second = AnyFrame(random);
            KineMechUnit unit = TwoRotaryUnit(first, second, firstDriver, secondDriver);
            unit.UnitKind = kind;
            if (kind != kTwoRotaryKind) unit.AxisCount = 1;
            const int index = random.Whole(0, 2);
            SetUpUnit(unit, index);
            const Mat4 truth = MatrixOf(AnyFrame(random));
            WobjCalibRequest request = PointsOf(truth, random);
            request.unit = index;
            for (KinePose& pose : request.poses) {
                FillExtAxes(pose, random);
                pose.ExtAxis[firstDriver] = random.Uniform(-400.0, 400.0);
                if (kind == kTwoRotaryKind) pose.ExtAxis[secondDriver] = random.Uniform(-400.0, 400.0);
                pose.Frame = At(UnitMatrix(unit, pose.ExtAxis) * PositionOf(pose), pose.Frame);
            }
            const WobjCalibOutcome result = Solved(kUnFixObject, request);
            EXPECT_TRUE(IsFrame(result.frame, truth));
            ExpectTilt(result.tilt, truth);
        }
    }
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, angles_of_the_poses_do_not_matter)
{
    SeededRandom random(651);
    SetUpUnit(TwoRotaryUnit(kFirst, kSecond, 0, 1));
    for (int i = 0; i < 100; ++i) {
        WobjCalibRequest request = PointsOf(MatrixOf(AnyFrame(random)), random);
        for (KinePose& pose : request.poses) pose.ExtAxis[0] = random.Uniform(-180.0, 180.0);
        const WobjCalibOutcome expected = Solved(kUnFixObject, request);
        for (KinePose& pose : request.poses) {
            for (const auto angle : kAngles) pose.Frame.*angle = random.Uniform(-180.0, 180.0);
            pose.Cfg1 = static_cast<int32_t>(random.Bits());
            pose.Cfg3 = static_cast<int32_t>(random.Bits());
            if (i % 5 == 0) pose.Frame.A = kNan;
        }
        EXPECT_TRUE(SameResult(Solved(kUnFixObject, request), expected));
    }
}

// The poses are given in the world: what the robot stands on is no part of it.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, does_not_ask_what_carries_the_robot)
{
    SetUpUnit(RotaryUnit(kFirst, 0), 1);
    const WobjCalibOutcome expected = Solved(kUnFixObject, GoodPoints());
    StoreUnit(0, CarryingRobot(LinearUnit(kSecond, kFirst, 3), 0));
    EXPECT_TRUE(SameResult(Solved(kUnFixObject, GoodPoints()), expected));
    StoreUnit(0, CarryingRobot(KineMechUnit{}, 1));
    EXPECT_TRUE(SameResult(Solved(kUnFixObject, GoodPoints()), expected));
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, index_that_is_no_unit_is_0x6065)
{
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (int index = 0; index < 3; ++index) StoreUnit(index, RotaryUnit(kFirst, 0));
    // The last ones end in a byte or a half word of 1.
    for (const int32_t index : {-1, -2, -3, 3, 4, 6, 127, 128, 255, 256, kMin, kMin + 1, kMax, kMax - 1, 257,
                                65537, 0x01000001, -255, kMin + 257}) {
        ExpectPointsRefused(GoodPoints(), index);
    }
    for (int index = 0; index < 3; ++index) {
        WobjCalibRequest request = GoodPoints();
        request.unit = index;
        Solved(kUnFixObject, request);
    }
}

// A unit at the count itself is served; the one above is not.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, index_above_the_count_is_0x6065)
{
    for (uint32_t count = 0; count <= 3; ++count) {
        SetUpArm(WristArm());
        SetUnitCounts(3, 6);
        for (int index = 0; index < 3; ++index) StoreUnit(index, RotaryUnit(kFirst, 0));
        SetUnitCounts(count, 6);
        for (int32_t index = 0; index < 3; ++index) {
            SCOPED_TRACE(::testing::Message() << "index " << index << ", count " << count);
            if (index > static_cast<int32_t>(count)) {
                ExpectPointsRefused(GoodPoints(), index);
            } else {
                WobjCalibRequest request = GoodPoints();
                request.unit = index;
                Solved(kUnFixObject, request);
            }
        }
    }
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, unit_that_cannot_be_used_is_0x6065)
{
    std::vector<KineMechUnit> units(1);  // nothing but zeros
    for (const int kind : {0, 4, 7, 255, 256, 258, 65535}) {
        units.push_back(TwoRotaryUnit(kFirst, kSecond, 0, 1));
        units.back().UnitKind = static_cast<uint16_t>(kind);
    }
    for (const uint16_t kind : {kLinearKind, kRotaryKind, kTwoRotaryKind}) {
        KineMechUnit unit = TwoRotaryUnit(kFirst, kSecond, 0, 1);
        unit.UnitKind = kind;
        unit.AxisCount = 0;
        units.push_back(unit);
        unit.AxisCount = 2;
        for (const int driver : {6, 7, 128, 255}) {
            unit.AxisParamIndex[0] = static_cast<uint8_t>(driver);
            units.push_back(unit);
        }
    }
    units.push_back(TwoRotaryUnit(kFirst, kSecond, 0, 1));
    units.back().AxisCount = 1;
    units.push_back(TwoRotaryUnit(kFirst, kSecond, 0, 6));
    units.push_back(TwoRotaryUnit(kFirst, kSecond, 0, 255));
    for (const KineMechUnit& unit : units) {
        SCOPED_TRACE(::testing::Message() << "kind " << unit.UnitKind << ", axes " << int{unit.AxisCount}
                                          << ", driver " << int{unit.AxisParamIndex[0]});
        SetUpUnit(unit);
        ExpectPointsRefused(GoodPoints(), 1);
    }
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (const int32_t never : {0, 1, 2}) ExpectPointsRefused(GoodPoints(), never);
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, single_axis_needs_neither_second_axis_nor_second_driver)
{
    for (const uint16_t kind : {kLinearKind, kRotaryKind}) {
        KineMechUnit unit = TwoRotaryUnit(kFirst, kAtOrigin, 0, 255);
        unit.UnitKind = kind;
        unit.AxisCount = 1;
        SetUpUnit(unit);
        Solved(kUnFixObject, GoodPoints());
    }
}

TEST(Kine_CalcUnFixWobj_ObjPrm_3P, rotary_axis_at_the_origin_is_0x6065)
{
    for (const KineMechUnit& unit :
         {RotaryUnit(kAtOrigin, 0), RotaryUnit({}, 0), RotaryUnit({-0.0, -0.0, -0.0, 5.0, 5.0, 5.0}, 0),
          TwoRotaryUnit(kAtOrigin, kSecond, 0, 1), TwoRotaryUnit(kFirst, kAtOrigin, 0, 1),
          TwoRotaryUnit(kAtOrigin, kAtOrigin, 0, 1)}) {
        SetUpUnit(unit);
        ExpectPointsRefused(GoodPoints(), 1);
    }
    // A linear axis may stand there, and a rotary one however little off.
    SetUpUnit(LinearUnit(kAtOrigin, kAtOrigin, 0));
    Solved(kUnFixObject, GoodPoints());
    for (const auto place : kCoordinates) {
        for (const double off : {std::numeric_limits<double>::denorm_min(), -1e-300}) {
            KineFrame axis = kAtOrigin;
            axis.*place = off;
            SetUpUnit(RotaryUnit(axis, 0));
            Solved(kUnFixObject, GoodPoints());
        }
    }
}

// A driving value that is no finite number leaves no point: the solution is NaN, and no error.
TEST(Kine_CalcUnFixWobj_ObjPrm_3P, axis_value_that_is_not_finite_is_passed_on)
{
    for (const KineMechUnit& unit : {RotaryUnit(kFirst, 2), TwoRotaryUnit(kFirst, kSecond, 1, 2)}) {
        SetUpUnit(unit);
        for (const double bad : {kNan, -kNan, kInf, -kInf}) {
            for (std::size_t place = 0; place < 3; ++place) {
                WobjCalibRequest request = GoodPoints();
                request.poses[place].ExtAxis[2] = bad;
                const WobjCalibOutcome result = Solved(kUnFixObject, request);
                EXPECT_TRUE(IsTheNan(result.frame.C));
                EXPECT_TRUE(IsTheNan(result.tilt));
                EXPECT_EQ(std::isfinite(result.frame.X), place != 0);
            }
        }
    }
}

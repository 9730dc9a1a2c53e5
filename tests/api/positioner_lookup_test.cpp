// How the calibrations of positioner and robot base find the external axis that drives an axis of a unit, and
// what they return when they do not: KINE_ERR_TOOL.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/positioner_calib_calls.h"

using namespace kine::test;

namespace {

// Three units like that of the good request, of which the counts admit this many.
PositionerCalibRequest SetUpUnits(const PositionerCalib& call, uint32_t count)
{
    PositionerCalibRequest request = SetUpGoodRequest(call);
    SetUnitCounts(3, 6);
    for (int unit = 0; unit < 3; ++unit) StoreUnitWithAxes(unit, {{0, TypeFor(call)}, {0, TypeFor(call)}});
    SetUnitCounts(count, 6);
    return request;
}

}  // namespace

TEST(positioner_calibrations, unit_index_equal_to_the_count_is_accepted)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        for (const int32_t count : {0, 1, 2}) {
            PositionerCalibRequest request = SetUpUnits(call, static_cast<uint32_t>(count));
            for (request.unit = 0; request.unit <= count; ++request.unit) Solved(call, request);
            request.unit = count + 1;
            ExpectRefused(call, request, KINE_ERR_TOOL);
        }
    }
}

// With three units index 3 equals the count, but there is no fourth unit.
TEST(positioner_calibrations, unit_index_beyond_all_units_is_0x6011)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = SetUpUnits(call, 3);
        request.unit = 2;
        Solved(call, request);
        for (const int32_t unit : {3, 4, 255, 256, 65536, kInt32Max, -1, -2, kInt32Min, kInt32Min + 1}) {
            request.unit = unit;
            ExpectRefused(call, request, KINE_ERR_TOOL);
        }
    }
}

// A unit that was never stored, or has been cleared by an initialisation, has no axes.
TEST(positioner_calibrations, unit_without_axes_is_0x6011)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = SetUpGoodRequest(call);
        request.unit = 1;
        ExpectRefused(call, request, KINE_ERR_TOOL);
        request.unit = 0;
        Solved(call, request);
        const KineKinematicParam arm = WristArm();
        EXPECT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm), KINE_OK);
        ExpectRefused(call, request, KINE_ERR_TOOL);
    }
}

TEST(positioner_calibrations, second_axis_is_needed_by_jn_only)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = SetUpGoodRequest(call);
        StoreUnitWithAxes(0, {{0, TypeFor(call)}});
        request.axis = 1;
        if (call == kJn) {
            ExpectRefused(call, request, KINE_ERR_TOOL);
        } else {
            Solved(call, request);
        }
    }
}

// A unit that is not active may claim any number of axes; its record has room for the drivers of six.
TEST(Kine_CalcPositionerJnPrm_3P, axis_beyond_the_six_drivers_is_0x6011)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJn);
    KineMechUnit unit{};
    unit.AxisCount = 255;
    StoreUnit(0, unit);
    for (request.axis = 1; request.axis <= 6; ++request.axis) Solved(kJn, request);
    for (const int32_t axis : {7, 8, 255, 256}) {
        request.axis = axis;
        ExpectRefused(kJn, request, KINE_ERR_TOOL);
    }
}

TEST(positioner_calibrations, driving_axis_beyond_the_six_external_axes_is_0x6011)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        for (const int driver : {6, 7, 128, 255}) {
            PositionerCalibRequest request = SetUpGoodRequest(call);
            StoreUnitWithAxes(0, {{driver, TypeFor(call)}, {0, TypeFor(call)}});
            request.axis = 1;
            ExpectRefused(call, request, KINE_ERR_TOOL);
        }
    }
}

// Jn needs axis n and the second axis; the first is neither.
TEST(positioner_calibrations, driver_of_an_axis_that_is_not_needed_may_be_anything)
{
    PositionerCalibRequest request = SetUpGoodRequest(kJn);
    StoreUnitWithAxes(0, {{200, kRotaryType}, {0, kRotaryType}, {0, kRotaryType}});
    for (const int32_t axis : {2, 3}) {
        request.axis = axis;
        Solved(kJn, request);
    }
    StoreUnitWithAxes(0, {{0, kRotaryType}, {200, kRotaryType}, {0, kRotaryType}});
    for (const int32_t axis : {1, 2, 3}) {
        request.axis = axis;
        ExpectRefused(kJn, request, KINE_ERR_TOOL);
    }
    for (const PositionerCalib& call : {kJ1, kRobotBase}) {
        request = SetUpGoodRequest(call);
        StoreUnitWithAxes(0, {{0, TypeFor(call)}, {200, kRotaryType}});
        Solved(call, request);
    }
}

// The number of external-axis items bounds the axes of a unit when it is stored, not the lookup.
TEST(positioner_calibrations, count_of_external_axis_items_is_not_asked_for)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = SetUpGoodRequest(call);
        StoreUnitWithAxes(0, {{5, TypeFor(call)}, {5, TypeFor(call)}});
        for (KinePose& pose : request.poses) pose.ExtAxis[5] = pose.ExtAxis[0];
        SetUnitCounts(1, 0);
        Solved(call, request);
    }
}

// None of the three reads the arm type or asks whether the arm is ready.
TEST(positioner_calibrations, give_the_same_bits_for_every_arm_type_and_state)
{
    const KineKinematicParam scara = Scara();
    const KineKinematicParam wrist = WristArm();
    struct Arm
    {
        uint32_t type;
        const KineKinematicParam* param;
        KineResult code;
    };
    const std::vector<Arm> arms = {{KINE_ARM_SIX_AXIS, &wrist, KINE_OK},
                                   {KINE_ARM_FOUR_AXIS, &scara, KINE_OK},
                                   {KINE_ARM_FOUR_AXIS_4110, &scara, KINE_OK},
                                   {KINE_ARM_SIX_AXIS, nullptr, KINE_ERR_MODEL_PARAM},
                                   {5, &wrist, 0xFFFFFFFF},
                                   {0, nullptr, 0xFFFFFFFF},
                                   {0xFFFFFFFF, nullptr, 0xFFFFFFFF}};
    for (const PositionerCalib& call : kPositionerCalibs) {
        PositionerCalibRequest request = SetUpGoodRequest(call);
        const PositionerCalibOutcome expected = Solved(call, request);
        for (const Arm& arm : arms) {
            EXPECT_EQ(Kine_InitKinematicParam(arm.type, arm.param), arm.code);
            StoreGoodUnit(call);
            request.nullFrame = false;
            const PositionerCalibOutcome outcome = Solved(call, request);
            EXPECT_TRUE(SameResult(outcome, expected)) << arm.type;
            request.nullFrame = true;
            ExpectRefused(call, request, KINE_ERR_POSE);
        }
    }
}

// Kine_SetAxisLimit and Kine_IsArmTypeValid: the limits show in the turn numbers that a target may ask for.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "support/cell_setup.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

// The configuration integers that are compared, with the axis whose limits bound each.
const std::pair<int32_t KinePose::*, std::size_t> kTurns[] = {
    {&KinePose::Cfg1, 0}, {&KinePose::Cfg2, 3}, {&KinePose::Cfg3, 5}};

KineJoint AllAxes(double value)
{
    KineJoint joints{};
    for (double& axis : joints.Axis) axis = value;
    for (double& axis : joints.ExtAxis) axis = value;
    return joints;
}

void SetLimits(const KineJoint& upper, const KineJoint& lower)
{
    EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), KINE_OK);
}

KineResult CheckTurn(int32_t KinePose::*field, int32_t turn)
{
    KinePose pose{};
    pose.*field = turn;
    return Kine_IsArmTypeValid(&pose);
}

void ExpectTurnRange(int32_t KinePose::*field, int32_t lowest, int32_t highest)
{
    EXPECT_EQ(CheckTurn(field, lowest), KINE_OK);
    EXPECT_EQ(CheckTurn(field, lowest - 1), KINE_ERR_CONFIG);
    EXPECT_EQ(CheckTurn(field, highest), KINE_OK);
    EXPECT_EQ(CheckTurn(field, highest + 1), KINE_ERR_CONFIG);
}

}  // namespace

// +-170 degrees are quarter turns 1 and -2.
TEST(Kine_SetAxisLimit, degrees_bound_the_turn_numbers_with_two_to_spare)
{
    SetUpArm(Puma());
    SetLimits(AllAxes(170.0), AllAxes(-170.0));
    for (const auto& [field, axis] : kTurns) ExpectTurnRange(field, -4, 3);
}

TEST(Kine_SetAxisLimit, each_turn_number_has_the_limits_of_its_own_axis)
{
    SetUpArm(Puma());
    for (const auto& [narrow, axis] : kTurns) {
        SCOPED_TRACE(axis);
        KineJoint upper = AllAxes(3600.0);
        KineJoint lower = AllAxes(-3600.0);
        upper.Axis[axis] = 10.0;   // quarter turn 0
        lower.Axis[axis] = -10.0;  // quarter turn -1
        SetLimits(upper, lower);
        for (const auto& [field, other] : kTurns) {
            if (other == axis) {
                ExpectTurnRange(field, -3, 2);
            } else {
                // +-3600 degrees are quarter turns 40 and -40: a boundary belongs to the one nearer zero
                // below zero, and to the one farther above.
                ExpectTurnRange(field, -42, 42);
            }
        }
    }
}

TEST(Kine_SetAxisLimit, axes_2_3_5_and_cfg4_do_not_bound_a_target)
{
    SetUpArm(Puma());
    KineJoint upper = AllAxes(170.0);
    KineJoint lower = AllAxes(-170.0);
    for (const std::size_t axis : {1u, 2u, 4u}) {
        upper.Axis[axis] = 1.0;
        lower.Axis[axis] = -1.0;
    }
    SetLimits(upper, lower);
    for (const int32_t posture : {0, 7, 8, -1, kMinInt, kMaxInt}) {
        EXPECT_EQ(CheckTurn(&KinePose::Cfg4, posture), KINE_OK) << posture;
    }
    ExpectTurnRange(&KinePose::Cfg1, -4, 3);
}

// An open axis has +-999 rad: quarter turns 635 and -636.
TEST(Kine_SetAxisLimit, equal_or_inverted_pair_opens_its_axis_and_keeps_the_others)
{
    SetUpArm(Puma());
    const std::pair<double, double> lowAndHigh[] = {{30.0, 30.0}, {50.0, -50.0}, {0.0, -0.0}, {kInf, kInf}};
    for (const auto& [low, high] : lowAndHigh) {
        for (const auto& [opened, axis] : kTurns) {
            SCOPED_TRACE(axis);
            KineJoint upper = AllAxes(170.0);
            KineJoint lower = AllAxes(-170.0);
            upper.Axis[axis] = high;
            lower.Axis[axis] = low;
            SetLimits(upper, lower);
            for (const auto& [field, other] : kTurns) {
                if (other == axis) {
                    ExpectTurnRange(field, -638, 637);
                } else {
                    ExpectTurnRange(field, -4, 3);
                }
            }
        }
    }
}

TEST(Kine_SetAxisLimit, smallest_range_is_kept)
{
    SetUpArm(Puma());
    KineJoint upper = AllAxes(30.0);
    SetLimits(upper, AllAxes(29.9999999));
    ExpectTurnRange(&KinePose::Cfg1, -2, 2);
}

TEST(Kine_SetAxisLimit, one_record_as_both_limits_opens_all_axes)
{
    SetUpArm(Puma());
    const KineJoint limit = AllAxes(45.0);
    EXPECT_EQ(Kine_SetAxisLimit(&limit, &limit), KINE_OK);
    for (const auto& [field, axis] : kTurns) ExpectTurnRange(field, -638, 637);
}

TEST(Kine_SetAxisLimit, axes_7_and_8_and_external_axes_are_not_read)
{
    SetUpArm(Puma());
    KineJoint upper = AllAxes(kNan);
    KineJoint lower = AllAxes(kNan);
    for (std::size_t i = 0; i < 6; ++i) {
        upper.Axis[i] = 170.0;
        lower.Axis[i] = -170.0;
    }
    SetLimits(upper, lower);
    for (const auto& [field, axis] : kTurns) ExpectTurnRange(field, -4, 3);
}

// A NaN limit is the lower end of the integers: nothing is below it as an upper limit, and nothing is
// refused by it as a lower one.
TEST(Kine_SetAxisLimit, nan_is_stored)
{
    SetUpArm(Puma());
    SetLimits(AllAxes(kNan), AllAxes(-170.0));
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, 0), KINE_ERR_CONFIG);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMaxInt), KINE_ERR_CONFIG);
    SetLimits(AllAxes(170.0), AllAxes(kNan));
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMinInt), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, 3), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, 4), KINE_ERR_CONFIG);
}

TEST(Kine_SetAxisLimit, infinite_range_admits_every_integer)
{
    SetUpArm(Puma());
    SetLimits(AllAxes(kInf), AllAxes(-kInf));
    for (const int32_t turn : {kMinInt, kMinInt + 1, -1000000, 0, 1000000, kMaxInt}) {
        for (const auto& [field, axis] : kTurns) EXPECT_EQ(CheckTurn(field, turn), KINE_OK) << turn;
    }
    // The ends of the range meet the ends of the integers without wrapping.
    KineJoint upper = AllAxes(kInf);
    KineJoint lower = AllAxes(-kInf);
    upper.Axis[0] = -1e300;
    SetLimits(upper, lower);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMinInt), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMinInt + 2), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMinInt + 3), KINE_ERR_CONFIG);
    upper.Axis[0] = kInf;
    lower.Axis[0] = 1e300;
    SetLimits(upper, lower);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMaxInt), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMaxInt - 2), KINE_OK);
    EXPECT_EQ(CheckTurn(&KinePose::Cfg1, kMaxInt - 3), KINE_ERR_CONFIG);
}

TEST(Kine_SetAxisLimit, keeps_its_records_and_prints_nothing)
{
    SetUpArm(Puma());
    KineJoint upper = AllAxes(-20.0);
    KineJoint lower = AllAxes(20.0);
    EXPECT_EQ(PrintedBy([&] { SetLimits(upper, lower); }), "");
    EXPECT_TRUE(SameBits(upper, AllAxes(-20.0)));
    EXPECT_TRUE(SameBits(lower, AllAxes(20.0)));
}

TEST(Kine_SetAxisLimit, null_is_0x6014_and_keeps_the_limits)
{
    SetUpArm(Puma());
    SetLimits(AllAxes(170.0), AllAxes(-170.0));
    const KineJoint limit = AllAxes(1000.0);
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_SetAxisLimit(nullptr, &limit), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_SetAxisLimit(&limit, nullptr), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_SetAxisLimit(nullptr, nullptr), KINE_ERR_JOINT);
              }),
              "");
    ExpectTurnRange(&KinePose::Cfg1, -4, 3);
}

TEST(Kine_SetAxisLimit, null_comes_before_the_state)
{
    SetUpRefusedArm();
    const KineJoint limit = AllAxes(10.0);
    EXPECT_EQ(Kine_SetAxisLimit(nullptr, &limit), KINE_ERR_JOINT);
    EXPECT_EQ(Kine_SetAxisLimit(&limit, nullptr), KINE_ERR_JOINT);
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_SetAxisLimit(&limit, &limit), KINE_ERR_NOT_INITIALISED); }), "");
}

TEST(Kine_SetAxisLimit, joint_values_are_not_held_against_the_limits)
{
    SetUpArm(Puma());
    SetLimits(AllAxes(10.0), AllAxes(-10.0));
    const KineJoint joints = AllAxes(100.0);
    KinePose pose{};
    EXPECT_EQ(Kine_FKineVision(&joints, &pose), KINE_OK);
}

TEST(Kine_IsArmTypeValid, angle_comes_before_state_and_configuration)
{
    SetUpArm(Puma());
    KinePose pose{};
    pose.Frame.B = 180.0000001;
    pose.Cfg1 = 10000;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_POSE);
    pose.Frame.B = 180.0;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG);
    SetUpRefusedArm();
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_NOT_INITIALISED);
    pose.Frame.B = -180.0000001;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_POSE);
    EXPECT_EQ(Kine_IsArmTypeValid(nullptr), KINE_ERR_POSE);
}

TEST(Kine_IsArmTypeValid, prints_nothing_and_keeps_the_pose)
{
    SetUpArm(Puma());
    KinePose pose = Untouched<KinePose>();
    pose.Frame = {1.0, 2.0, 3.0, 90.0, 45.0, 30.0};
    const KinePose before = pose;
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_ERR_CONFIG); }), "");
    EXPECT_TRUE(SameBits(pose, before));
}

TEST(Kine_IsArmTypeValid, position_and_external_axes_are_not_looked_at)
{
    SetUpArm(Puma());
    KinePose pose{};
    pose.Frame.X = pose.Frame.Y = pose.Frame.Z = kNan;
    for (double& axis : pose.ExtAxis) axis = kInf;
    EXPECT_EQ(Kine_IsArmTypeValid(&pose), KINE_OK);
}

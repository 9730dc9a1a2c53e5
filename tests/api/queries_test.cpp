// Kine_GetArmType and Kine_IsSingularity.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/cell_setup.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr int32_t kMinInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

KineArmConfig ConfigOf(const KineJoint& joints)
{
    KineArmConfig config = Untouched<KineArmConfig>();
    EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_OK);
    return config;
}

// The singular joints of these tests: the arm is otherwise far from any singularity.
const KineJoint kRegular = MakeJoints({0.0, 0.0, 0.0, 0.0, 90.0, 0.0});

KineResult Singular(const KineJoint& joints, uint32_t kind) { return Kine_IsSingularity(&joints, kind); }

}  // namespace

// Each quarter turn begins 5.555555556e-6 quarter turns, 5e-4 degrees, early.
TEST(Kine_GetArmType, quarter_turns_of_axes_1_4_6)
{
    SetUpArm(Puma());
    struct Case
    {
        double degrees;
        int32_t turn;
    };
    const Case cases[] = {{0.0, 0},         {-0.0, 0},        {45.0, 0},        {89.999, 0},
                          {89.9996, 1},     {90.0, 1},        {179.999, 1},     {179.9996, 2},
                          {180.0, 2},       {270.0, 3},       {360.0, 4},       {-0.0004, 0},
                          {-0.0006, -1},    {-45.0, -1},      {-90.0, -1},      {-90.0004, -1},
                          {-90.0006, -2},   {-180.0, -2},     {-180.0006, -3},  {-360.0, -4},
                          {899.999, 9},     {-899.999, -10},  {kNan, kMinInt},  {kInf, kMaxInt},
                          {-kInf, kMinInt}, {1e300, kMaxInt}, {-1e300, kMinInt}};
    for (const auto& [degrees, turn] : cases) {
        SCOPED_TRACE(degrees);
        EXPECT_EQ(ConfigOf(MakeJoints({degrees, 0, 0, 0, 1, 0})).Cfg1, turn);
        EXPECT_EQ(ConfigOf(MakeJoints({0, 0, 0, degrees, 1, 0})).Cfg2, turn);
        EXPECT_EQ(ConfigOf(MakeJoints({0, 0, 0, 0, 1, degrees})).Cfg3, turn);
    }
}

TEST(Kine_GetArmType, each_turn_number_has_its_own_axis)
{
    SetUpArm(Puma());
    const KineArmConfig config = ConfigOf(MakeJoints({100.0, 0.0, 0.0, 200.0, 1.0, 300.0}));
    EXPECT_EQ(config.Cfg1, 1);
    EXPECT_EQ(config.Cfg2, 2);
    EXPECT_EQ(config.Cfg3, 3);
    EXPECT_EQ(config.Cfg4, 0);
}

// The wrist centre lies at -a2 sin q2 + d4 cos(q2 + q3) - a3 sin(q2 + q3) in front of axis 1, and the elbow
// turns over at 90 - atan(20.3 / 431.8) = 87.3 degrees.
TEST(Kine_GetArmType, eight_postures)
{
    SetUpArm(Puma());
    struct Case
    {
        double q2;
        double q3;
        int32_t posture;
    };
    const Case cases[] = {{0.0, 0.0, 0},      // in front at 431.8, elbow near
                          {-90.0, 100.0, 2},  // in front at 431.8 + 425.2 - 3.5, elbow far
                          {90.0, 0.0, 4},     // behind at -431.8 - 20.3, elbow near
                          {0.0, 180.0, 6}};   // behind at -431.8, elbow far
    for (const auto& [q2, q3, posture] : cases) {
        for (const double q5 : {0.0, 1e-300, 45.0, 180.0, 200.0}) {
            EXPECT_EQ(ConfigOf(MakeJoints({0, q2, q3, 0, q5, 0})).Cfg4, posture) << q5;
        }
        for (const double q5 : {-1e-300, -45.0, kNan}) {
            EXPECT_EQ(ConfigOf(MakeJoints({0, q2, q3, 0, q5, 0})).Cfg4, posture + 1) << q5;
        }
    }
}

TEST(Kine_GetArmType, elbow_turns_over_at_90_degrees_less_the_elbow_angle)
{
    SetUpArm(Puma());
    const double limit = 90.0 - InDegrees(std::atan(20.3 / 431.8));
    EXPECT_EQ(ConfigOf(MakeJoints({0, 0, limit - 1e-9, 0, 1, 0})).Cfg4 & 2, 0);
    EXPECT_EQ(ConfigOf(MakeJoints({0, 0, limit + 1e-9, 0, 1, 0})).Cfg4 & 2, 2);
}

TEST(Kine_GetArmType, axes_7_and_8_and_external_axes_are_not_read)
{
    SetUpArm(Puma());
    KineJoint joints = MakeJoints({100, 0, 0, 0, 1, 0});
    const KineArmConfig plain = ConfigOf(joints);
    joints.Axis[6] = joints.Axis[7] = kNan;
    for (double& axis : joints.ExtAxis) axis = kNan;
    EXPECT_TRUE(SameBits(ConfigOf(joints), plain));
}

TEST(Kine_GetArmType, refusals_in_order_leave_the_result_and_print_nothing)
{
    const KineJoint joints{};
    KineArmConfig config = Untouched<KineArmConfig>();
    SetUpRefusedArm();
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_GetArmType(nullptr, nullptr), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_GetArmType(nullptr, &config), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_GetArmType(&joints, nullptr), KINE_ERR_CONFIG);
                  EXPECT_EQ(Kine_GetArmType(&joints, &config), KINE_ERR_NOT_INITIALISED);
              }),
              "");
    EXPECT_TRUE(IsUntouched(config));
}

TEST(Kine_IsSingularity, regular_joints_are_not_singular)
{
    SetUpArm(Puma());
    for (const uint32_t kind : {0u, 1u, 2u, 3u, 0xFFFFFFFFu}) EXPECT_EQ(Singular(kRegular, kind), KINE_OK);
}

// The sine of axis 5 against 0.05 for kinds 0 and 1, 0.087266 for kind 2.
TEST(Kine_IsSingularity, wrist_thresholds_by_kind)
{
    SetUpArm(Puma());
    KineJoint joints = kRegular;
    for (const auto& [kind, threshold] :
         {std::pair<uint32_t, double>{0, 0.05}, std::pair<uint32_t, double>{1, 0.05},
          std::pair<uint32_t, double>{2, 0.087266}}) {
        SCOPED_TRACE(kind);
        for (const double sign : {1.0, -1.0}) {
            joints.Axis[4] = sign * InDegrees(std::asin(threshold - 1e-9));
            EXPECT_EQ(Singular(joints, kind), KINE_SINGULAR);
            joints.Axis[4] = sign * InDegrees(std::asin(threshold + 1e-9));
            EXPECT_EQ(Singular(joints, kind), KINE_OK);
        }
        joints.Axis[4] = 0.0;
        EXPECT_EQ(Singular(joints, kind), 0xFFFFFFFFu);
        joints.Axis[4] = 180.0;
        EXPECT_EQ(Singular(joints, kind), 0xFFFFFFFFu);
    }
}

// |cos(q3 + elbow angle)| against the same two numbers.
TEST(Kine_IsSingularity, elbow_thresholds_by_kind)
{
    SetUpArm(Puma());
    const double elbowAngle = InDegrees(std::atan(20.3 / 431.8));
    KineJoint joints = kRegular;
    joints.Axis[1] = -60.0;
    for (const auto& [kind, threshold] :
         {std::pair<uint32_t, double>{0, 0.05}, std::pair<uint32_t, double>{1, 0.05},
          std::pair<uint32_t, double>{2, 0.087266}}) {
        SCOPED_TRACE(kind);
        joints.Axis[2] = InDegrees(std::acos(threshold - 1e-9)) - elbowAngle;
        EXPECT_EQ(Singular(joints, kind), KINE_SINGULAR);
        joints.Axis[2] = InDegrees(std::acos(threshold + 1e-9)) - elbowAngle;
        EXPECT_EQ(Singular(joints, kind), KINE_OK);
    }
}

// With the upper arm upright and the forearm at angle q3 the wrist centre lies 431.8 cos q3 - 20.3 sin q3
// = 432.277 cos(q3 + elbow angle) in front of axis 1; the upper arm leaned back by 30 degrees adds
// 215.9 mm, so that the elbow can be bent.
TEST(Kine_IsSingularity, shoulder_thresholds_by_kind)
{
    SetUpArm(Puma());
    const double reach = std::hypot(20.3, 431.8);
    const double elbowAngle = InDegrees(std::atan(20.3 / 431.8));
    KineJoint joints = kRegular;
    joints.Axis[1] = -30.0;
    for (const auto& [kind, threshold] :
         {std::pair<uint32_t, double>{0, 20.0}, std::pair<uint32_t, double>{1, 20.0},
          std::pair<uint32_t, double>{2, 30.0}}) {
        SCOPED_TRACE(kind);
        for (const double sign : {1.0, -1.0}) {
            const auto atDistance = [&](double distance) {
                joints.Axis[2] = InDegrees(std::acos((distance - 215.9) / reach)) - elbowAngle + 30.0;
                return joints;
            };
            EXPECT_EQ(Singular(atDistance(sign * (threshold - 1e-6)), kind), KINE_SINGULAR);
            EXPECT_EQ(Singular(atDistance(sign * (threshold + 1e-6)), kind), KINE_OK);
        }
    }
}

TEST(Kine_IsSingularity, other_kinds_report_nothing)
{
    SetUpArm(Puma());
    for (const uint32_t kind : {3u, 4u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Singular(MakeJoints({0, 0, 0, 0, 0, 0}), kind), KINE_OK) << kind;
    }
}

TEST(Kine_IsSingularity, nan_is_never_singular)
{
    SetUpArm(Puma());
    KineJoint joints{};
    for (double& axis : joints.Axis) axis = kNan;
    for (const uint32_t kind : {0u, 1u, 2u, 3u}) EXPECT_EQ(Singular(joints, kind), KINE_OK);
}

TEST(Kine_IsSingularity, refusals_in_order_print_nothing)
{
    const KineJoint joints{};
    SetUpRefusedArm();
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_IsSingularity(nullptr, 0), KINE_ERR_JOINT);
                  EXPECT_EQ(Kine_IsSingularity(&joints, 0), KINE_ERR_NOT_INITIALISED);
                  EXPECT_EQ(Kine_IsSingularity(&joints, 9), KINE_ERR_NOT_INITIALISED);
              }),
              "");
}

TEST(Kine_IsSingularity, keeps_the_joints)
{
    SetUpArm(Puma());
    KineJoint joints = Untouched<KineJoint>();
    static_cast<void>(Kine_IsSingularity(&joints, 1));
    KineArmConfig config{};
    static_cast<void>(Kine_GetArmType(&joints, &config));
    EXPECT_TRUE(IsUntouched(joints));
}

// The safe-area check: the work object it asks with is refused, whatever the caller gives.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

#include "support/cell_setup.h"
#include "support/records.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// KINE_ERR_WOBJ as the signed answer of the call.
constexpr int32_t kRefused = 24594;

void ExpectRefused(const KineJoint* joints, const double* centre, double size, int units)
{
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(SafeArea_Check(joints, centre, size), kRefused); }),
              "IsLegalWobj,!pWobj->UFFix:" + std::to_string(units) + ";\n");
}

}  // namespace

TEST(SafeArea_Check, is_0x6012_with_its_line_once_per_call)
{
    SetUpArm(WristArm());
    const KineJoint joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    const double centre[3] = {700.0, 100.0, 900.0};
    for (const double size : {0.0, 100.0, 1e9, -5.0, kNan, kInf, -kInf})
        ExpectRefused(&joints, centre, size, 0);
}

TEST(SafeArea_Check, is_0x6012_for_joints_and_centres_of_any_kind)
{
    SetUpArm(WristArm());
    for (const double value : {0.0, 1e300, kNan, kInf, -kInf}) {
        KineJoint joints{};
        for (double& axis : joints.Axis) axis = value;
        for (double& axis : joints.ExtAxis) axis = value;
        const double centre[3] = {value, value, value};
        ExpectRefused(&joints, centre, 10.0, 0);
    }
}

TEST(SafeArea_Check, shows_the_number_of_mechanical_units)
{
    const KineJoint joints{};
    const double centre[3] = {};
    for (const int units : {0, 1, 2, 3}) {
        SetUpArm(WristArm());
        SetUnitCounts(static_cast<uint32_t>(units), 6);
        ExpectRefused(&joints, centre, 1e6, units);
    }
}

// A unit at index 0 does not make the work object usable.
TEST(SafeArea_Check, is_0x6012_with_every_unit_set_up)
{
    SetUpArm(WristArm());
    SetUnitCounts(3, 6);
    for (const int index : {0, 1, 2}) StoreUnit(index, RotaryUnit({100.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 0));
    const KineJoint joints{};
    const double centre[3] = {};
    ExpectRefused(&joints, centre, 1e6, 3);
}

TEST(SafeArea_Check, is_0x6012_for_every_arm_and_without_one)
{
    const KineJoint joints{};
    const double centre[3] = {};
    const KineKinematicParam scara = Scara();
    for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
        SetUpArm(WristArm());
        EXPECT_EQ(Kine_InitKinematicParam(type, &scara), KINE_OK);
        ExpectRefused(&joints, centre, 1e6, 0);
    }
    SetUpRefusedArm();
    ExpectRefused(&joints, centre, 1e6, 0);
    EXPECT_EQ(Kine_InitKinematicParam(5, &scara), KINE_ERR_UNKNOWN_ARM_TYPE);
    ExpectRefused(&joints, centre, 1e6, 0);
}

TEST(SafeArea_Check, is_0x6012_for_null_pointers)
{
    SetUpArm(WristArm());
    const KineJoint joints{};
    const double centre[3] = {};
    ExpectRefused(nullptr, centre, 10.0, 0);
    ExpectRefused(&joints, nullptr, 10.0, 0);
    ExpectRefused(nullptr, nullptr, kNan, 0);
}

TEST(SafeArea_Check, keeps_its_inputs)
{
    SetUpArm(WristArm());
    const KineJoint joints = Untouched<KineJoint>();
    double centre[3] = {1.0, 2.0, 3.0};
    ExpectRefused(&joints, centre, 10.0, 0);
    EXPECT_TRUE(IsUntouched(joints));
    EXPECT_EQ(centre[0], 1.0);
    EXPECT_EQ(centre[1], 2.0);
    EXPECT_EQ(centre[2], 3.0);
}

TEST(SafeArea_Check, inputs_may_lie_at_odd_addresses_and_overlap)
{
    SetUpArm(WristArm());
    unsigned char memory[sizeof(KineJoint) + 1] = {};
    ExpectRefused(reinterpret_cast<const KineJoint*>(memory + 1), reinterpret_cast<const double*>(memory + 1),
                  10.0, 0);
}

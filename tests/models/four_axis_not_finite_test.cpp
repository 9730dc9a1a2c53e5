// NaN and infinity in the inverse of both four-axis arms: always a code, never a joint value.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_4110_model.h"
#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

const double kBadValues[] = {kInf, -kInf, kNan};

void ExpectCode(const ArmModel& model, const Pose& target, const Pose& tool, KineResult code)
{
    Joints joints = MarkedJoints();
    EXPECT_EQ(model.InverseKinematics(target, BlockWithTool(tool), {1, 0, 0, 0}, joints), code);
    EXPECT_EQ(AreMarked(joints), code != KINE_OK);
}

void ExpectFailClosed(const ArmModel& model)
{
    const Pose good{500, 200, 90, 0.3, 0, 0};
    ExpectCode(model, good, {}, KINE_OK);
    for (const double bad : kBadValues) {
        for (double Pose::*field : {&Pose::x, &Pose::y, &Pose::a}) {
            Pose target = good;
            target.*field = bad;
            ExpectCode(model, target, {}, KINE_ERR_IK_REACH);
            Pose tool{};
            tool.*field = bad;
            ExpectCode(model, good, tool, KINE_ERR_IK_REACH);
        }
    }
}

TEST(FourAxisNotFinite, a_bad_position_or_heading_is_0x6094)
{
    ExpectFailClosed(Initialised<FourAxisModel>(4, {}));
    ExpectFailClosed(Initialised<FourAxis4110Model>(4110, {}));
    ExpectFailClosed(Initialised<FourAxisModel>(4, SteepArm()));
    ExpectFailClosed(Initialised<FourAxis4110Model>(4110, SteepArm()));
}

// A bad height passes the closed form, whose plane it is not part of. In the refinement the error is never
// below its bound; without tilts the Jacobian does not depend on the screw angle, so the steps run and the
// result is not finite; with tilts it does and is not a number itself.
void ExpectBadHeight(const ArmModel& flat, const ArmModel& steep)
{
    for (const double bad : kBadValues) {
        for (const bool inTool : {false, true}) {
            Pose target{500, 200, 90, 0.3, 0, 0};
            Pose tool{};
            (inTool ? tool : target).z = bad;
            for (const ArmModel* model : {&flat, &steep}) {
                Joints joints = MarkedJoints();
                const KineResult code =
                    model->InverseKinematics(target, BlockWithTool(tool), {1, 0, 0, 0}, joints);
                EXPECT_TRUE(code == KINE_ERR_IK_REACH || code == KINE_ERR_SINGULAR) << std::hex << code;
                EXPECT_TRUE(AreMarked(joints));
            }
        }
    }
}

TEST(FourAxisNotFinite, a_bad_height_ends_in_a_code)
{
    ExpectBadHeight(Initialised<FourAxisModel>(4, {}), Initialised<FourAxisModel>(4, SteepArm()));
    ExpectBadHeight(Initialised<FourAxis4110Model>(4110, {}),
                    Initialised<FourAxis4110Model>(4110, SteepArm()));
}

TEST(FourAxisNotFinite, a_length_that_is_not_a_number_is_0x6094)
{
    for (double NaiveArm::*length : {&NaiveArm::l1, &NaiveArm::l2}) {
        NaiveArm arm;
        arm.*length = kNan;
        ExpectCode(Initialised<FourAxisModel>(4, arm), {500, 200, 90, 0.3, 0, 0}, {}, KINE_ERR_IK_REACH);
        ExpectCode(Initialised<FourAxis4110Model>(4110, arm), {500, 200, 90, 0.3, 0, 0}, {},
                   KINE_ERR_IK_REACH);
    }
}

TEST(FourAxisNotFinite, huge_values_end_in_a_code_or_in_finite_joints)
{
    const FourAxisModel model = Initialised<FourAxisModel>(4, SteepArm());
    for (const double huge : {1e20, -1e20, 1e154, 1e200, -1e307}) {
        for (double Pose::*field : {&Pose::x, &Pose::y, &Pose::z, &Pose::a}) {
            Pose target{500, 200, 90, 0.3, 0, 0};
            target.*field = huge;
            Joints joints = MarkedJoints();
            const KineResult code = model.InverseKinematics(target, {}, {1, 0, 0, 0}, joints);
            EXPECT_EQ(AreMarked(joints), code != KINE_OK);
            for (const double axis : joints.axis) EXPECT_TRUE(std::isfinite(axis));
        }
    }
}

}  // namespace
}  // namespace kine::test

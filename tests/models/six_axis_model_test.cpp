#include "models/six_axis_model.h"

#include <gtest/gtest.h>

#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::ExpectNear;

SixAxisModel ModelOf(const KineKinematicParam& param)
{
    SixAxisModel model;
    EXPECT_EQ(model.InitModel(6, &param), KINE_OK);
    return model;
}

// Axes 7 and 8 and the external axes carry numbers that must neither be used nor changed.
Joints JointsOf(const SixAngles& q)
{
    Joints joints = test::Untouched<Joints>();
    for (std::size_t i = 0; i < 6; ++i) joints.axis[i] = q[i];
    return joints;
}

AxisLimits NumberedLimits()
{
    AxisLimits limits{};
    for (std::size_t i = 0; i < 8; ++i) {
        limits.upper.axis[i] = 10.0 + static_cast<double>(i);
        limits.lower.axis[i] = -20.0 - static_cast<double>(i);
    }
    limits.upper.extAxis.fill(77.0);
    limits.lower.extAxis.fill(-77.0);
    return limits;
}

constexpr SixAngles kSample{0.3, -0.4, 0.5, 0.6, 0.7, 0.8};

TEST(SixAxisModel, init_of_another_arm_type_is_0x6000_and_touches_nothing)
{
    SixAxisModel model = ModelOf(test::WristArm());
    model.SetAxisLimits(NumberedLimits());
    const KineKinematicParam other = test::Puma();
    for (const std::uint32_t armType : {4U, 4110U, 0U}) {
        EXPECT_EQ(model.InitModel(armType, &other), 0x6000U);
    }
    EXPECT_EQ(model.InitModel(6, nullptr), 0x6000U);

    Joints joints = JointsOf(kSample);
    const HomMatrix expected = test::ToHom(test::RefFlange(test::WristArm().SixAxis, kSample));
    ExpectNear(PoseToMatrix(model.ForwardKinematics(joints, {})), expected, 1e-9);
    AxisLimits limits{};
    model.GetAxisLimits(limits);
    EXPECT_EQ(limits.upper.axis[5], 15.0);
}

TEST(SixAxisModel, init_with_a_length_below_its_bound_is_0x6000)
{
    SixAxisModel model = ModelOf(test::WristArm());
    KineKinematicParam param = test::WristArm();
    param.SixAxis.a2 = 0.0;
    EXPECT_EQ(model.InitModel(6, &param), 0x6000U);
}

TEST(SixAxisModel, limits_are_zero_until_set)
{
    const SixAxisModel model = ModelOf(test::WristArm());
    AxisLimits limits = NumberedLimits();
    model.GetAxisLimits(limits);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(limits.upper.axis[i], 0.0);
        EXPECT_EQ(limits.lower.axis[i], 0.0);
    }
}

TEST(SixAxisModel, limits_come_back_as_given_for_six_axes)
{
    SixAxisModel model = ModelOf(test::WristArm());
    model.SetAxisLimits(NumberedLimits());
    AxisLimits limits = test::Untouched<AxisLimits>();
    model.GetAxisLimits(limits);
    const AxisLimits untouched = test::Untouched<AxisLimits>();
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(limits.upper.axis[i], 10.0 + static_cast<double>(i));
        EXPECT_EQ(limits.lower.axis[i], -20.0 - static_cast<double>(i));
    }
    for (std::size_t i = 6; i < 8; ++i) {
        EXPECT_TRUE(test::SameBits(limits.upper.axis[i], untouched.upper.axis[i]));
        EXPECT_TRUE(test::SameBits(limits.lower.axis[i], untouched.lower.axis[i]));
    }
    EXPECT_TRUE(test::SameBits(limits.upper.extAxis, untouched.upper.extAxis));
    EXPECT_TRUE(test::SameBits(limits.lower.extAxis, untouched.lower.extAxis));
}

TEST(SixAxisModel, limits_are_stored_without_a_check)
{
    // Whoever calls replaces pairs that exclude everything.
    SixAxisModel model = ModelOf(test::WristArm());
    AxisLimits limits{};
    limits.upper.axis = {10.0, -5.0, test::kNan, test::kInf, 0.0, 0.0, 0.0, 0.0};
    limits.lower.axis = {10.0, 5.0, 1.0, test::kInf, 0.0, 0.0, 0.0, 0.0};
    model.SetAxisLimits(limits);
    AxisLimits stored{};
    model.GetAxisLimits(stored);
    EXPECT_TRUE(test::SameBits(stored, limits));
}

TEST(SixAxisModel, every_init_clears_the_limits)
{
    const KineKinematicParam good = test::WristArm();
    KineKinematicParam refused = test::WristArm();
    refused.SixAxis.d4 = 0.0;
    for (const KineKinematicParam& param : {good, refused}) {
        SixAxisModel model = ModelOf(test::WristArm());
        model.SetAxisLimits(NumberedLimits());
        static_cast<void>(model.InitModel(6, &param));
        AxisLimits limits = NumberedLimits();
        model.GetAxisLimits(limits);
        EXPECT_EQ(limits.upper.axis[0], 0.0);
        EXPECT_EQ(limits.lower.axis[5], 0.0);
    }
}

TEST(SixAxisModel, limits_do_not_bound_any_operation)
{
    SixAxisModel model = ModelOf(test::WristArm());
    Joints joints = JointsOf(kSample);
    const Pose before = model.ForwardKinematics(joints, {});
    AxisLimits limits{};
    limits.upper.axis.fill(-50.0);
    limits.lower.axis.fill(-60.0);
    model.SetAxisLimits(limits);
    EXPECT_TRUE(test::SameBits(model.ForwardKinematics(joints, {}).AsPose(), before));
    Joints solved{};
    EXPECT_EQ(model.InverseKinematics(before, {}, {0, 0, 0, 0}, solved), KINE_OK);
    EXPECT_NEAR(solved.axis[0], 0.3, 1e-9);
}

TEST(SixAxisModel, forward_operations_use_six_axes_and_change_no_joint)
{
    const SixAxisModel model = ModelOf(test::CalibratedWristArm());
    const KineSixAxisParam record = test::CalibratedWristArm().SixAxis;
    const ToolBlock tool{{50.0, -30.0, 120.0, 0.4, -0.5, 0.6}, {12.0, {0.02, -0.05, 0.11}, {}, {}}};
    Joints joints = JointsOf(kSample);
    ExpectNear(PoseToMatrix(model.ForwardKinematics(joints, tool)),
               test::ToHom(test::RefToolPoint(record, kSample, tool)), 1e-9);
    const test::RefAngles bent = test::RefBent(record, kSample, {});
    ExpectNear(PoseToMatrix(model.FlangePose(joints)),
               test::ToHom(test::NaiveSixAxisChain(record, bent).frame[5]), 1e-9);
    EXPECT_TRUE(test::SameBits(joints, JointsOf(kSample)));
}

TEST(SixAxisModel, configuration_and_singularity_use_six_axes_and_change_no_joint)
{
    const SixAxisModel model = ModelOf(test::WristArm());
    // Quadrants: 2.0 is in 1, -2.0 in -2, 7.0 in 4 (4.46 quarters).
    Joints joints = JointsOf({2.0, -0.4, 0.5, -2.0, -0.7, 7.0});
    const KineArmConfig config = model.GetArmConfig(joints);
    EXPECT_EQ(config.Cfg1, 1);
    EXPECT_EQ(config.Cfg2, -2);
    EXPECT_EQ(config.Cfg3, 4);
    EXPECT_EQ(config.Cfg4, 1);
    EXPECT_EQ(model.IsSingularity(joints, 0), 0U);
    EXPECT_TRUE(test::SameBits(joints, JointsOf({2.0, -0.4, 0.5, -2.0, -0.7, 7.0})));
    joints.axis[4] = 0.0;
    EXPECT_EQ(model.IsSingularity(joints, 0), 4U);
    EXPECT_EQ(model.IsSingularity(joints, 1), 4U);
    EXPECT_EQ(model.IsSingularity(joints, 2), 4U);
    EXPECT_EQ(model.IsSingularity(joints, 3), 0U);
}

TEST(SixAxisModel, inverse_writes_eight_axes_and_no_external_axis)
{
    const SixAxisModel model = ModelOf(test::WristArm());
    const Pose target = MatrixToPose(test::ToHom(test::RefFlange(test::WristArm().SixAxis, kSample)));
    Joints joints = test::Untouched<Joints>();
    ASSERT_EQ(model.InverseKinematics(target, {}, {0, 0, 0, 0}, joints), KINE_OK);
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(joints.axis[i], kSample[i], 1e-10);
    EXPECT_EQ(joints.axis[6], 0.0);
    EXPECT_EQ(joints.axis[7], 0.0);
    EXPECT_TRUE(test::SameBits(joints.extAxis, test::Untouched<Joints>().extAxis));
}

TEST(SixAxisModel, inverse_that_fails_writes_nothing)
{
    const SixAxisModel model = ModelOf(test::WristArm());
    Joints joints = test::Untouched<Joints>();
    EXPECT_EQ(model.InverseKinematics(Pose{9000.0, 0.0, 0.0, 0.1, 0.2, 0.3}, {}, {0, 0, 0, 0}, joints),
              0x6097U);
    EXPECT_TRUE(test::IsUntouched(joints));
}

TEST(SixAxisModel, models_do_not_share_their_block)
{
    const SixAxisModel first = ModelOf(test::WristArm());
    const SixAxisModel second = ModelOf(test::Puma());
    Joints joints = JointsOf(kSample);
    ExpectNear(PoseToMatrix(first.ForwardKinematics(joints, {})),
               test::ToHom(test::RefFlange(test::WristArm().SixAxis, kSample)), 1e-9);
    ExpectNear(PoseToMatrix(second.ForwardKinematics(joints, {})),
               test::ToHom(test::RefFlange(test::Puma().SixAxis, kSample)), 1e-9);
}

}  // namespace
}  // namespace kine

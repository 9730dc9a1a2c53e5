#include "models/six_axis_forward.h"

#include <gtest/gtest.h>

#include "support/math_compare.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/six_axis_reference.h"
#include "support/six_axis_samples.h"

namespace kine {
namespace {

using test::ExpectNear;
using test::kInf;
using test::kNan;
using test::ParamsOf;
using test::RandomAngles;

constexpr SixAngles kZero{};

ToolBlock NoTool() { return {}; }

ToolBlock Carrying(double mass, const Vec3& centreInMetres) { return {{}, {mass, centreInMetres, {}, {}}}; }

// Every field away from zero, none of the angles a quarter turn.
KineKinematicParam RandomArm(test::SeededRandom& random)
{
    KineKinematicParam param = test::RandomLinks(random, 700.0);
    KineSixAxisParam& p = param.SixAxis;
    p.lateralOffset = 77.0;
    for (double& weight : p.G) weight = random.Uniform(-1e5, 1e5);
    p.k2 = 1e5;
    p.k3 = 2e5;
    p.k5 = 3e5;
    return param;
}

ToolBlock RandomTool(test::SeededRandom& random)
{
    const auto u = [&random](double size) { return random.Uniform(-size, size); };
    return {{u(300), u(300), u(300), u(3), u(1.4), u(3)},
            {random.Uniform(0, 20), {u(0.2), u(0.2), u(0.2)}, {u(1), u(1), u(1)}, {u(1), u(1), u(1)}}};
}

// The twists of the example: a forward arm only.
KineKinematicParam ExampleArm()
{
    KineKinematicParam param = test::NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    param.SixAxis.alpha1 = -90.0;
    param.SixAxis.alpha2 = 0.0;
    param.SixAxis.alpha3 = -90.0;
    param.SixAxis.alpha4 = 90.0;
    param.SixAxis.alpha5 = -90.0;
    return param;
}

TEST(SixAxisFrame5Pose, of_the_example_arm_at_zero)
{
    const Pose pose = SixAxisFrame5Pose(ParamsOf(ExampleArm()), kZero);
    ExpectNear(Vec3{pose.x, pose.y, pose.z}, {-300.0, 0.0, -250.0}, 1e-12);
    // The approach axis is -X of the base.
    ExpectNear(AxisZ(PoseToMatrix(pose).r), {-1.0, 0.0, 0.0}, 1e-15);
}

TEST(SixAxisToolPose, of_the_example_arm_at_zero)
{
    const Pose pose = SixAxisToolPose(ParamsOf(ExampleArm()), SinesOf(kZero), NoTool());
    ExpectNear(Vec3{pose.x, pose.y, pose.z}, {-380.0, 0.0, -250.0}, 1e-12);
}

TEST(SixAxisToolPose, of_the_nominal_arm_at_zero_points_forward)
{
    // Upper arm up from (100, 300), elbow offset on top, forearm and flange level.
    const KineKinematicParam param = test::NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    const Pose pose = SixAxisToolPose(ParamsOf(param), SinesOf(kZero), NoTool());
    ExpectNear(Vec3{pose.x, pose.y, pose.z}, {580.0, 0.0, 850.0}, 1e-12);
    // Flange: z forward, x up, so that y points to -Y... x up, y = z x x = (1,0,0) x (0,0,1) = (0,-1,0).
    ExpectNear(PoseToMatrix(pose).r, {0.0, 0.0, 1.0, 0.0, -1.0, 0.0, 1.0, 0.0, 0.0}, 1e-15);
}

TEST(SixAxisToolPose, of_the_puma_at_its_textbook_poses)
{
    const SixAxisParams params = ParamsOf(test::Puma());
    const auto poseOf = [&params](const std::array<double, 6>& textbook) {
        SixAngles q{};
        const std::array<double, 6> degrees = test::PumaJointsDeg(textbook);
        for (std::size_t i = 0; i < 6; ++i) q[i] = degrees[i] * DEG2RAD;
        return SixAxisToolPose(params, SinesOf(q), NoTool());
    };
    ExpectNear(poseOf({}), {452.1, -150.05, 431.8, 0.0, 0.0, 0.0}, 1e-10, 1e-14);
    const Pose pose = poseOf({0.1, 0.2, 0.3, 0.4, 0.5, 0.6});
    ExpectNear(Vec3{pose.x, pose.y, pose.z}, {247.8027, -125.9402, 474.4579}, 5e-5);
    EXPECT_NEAR(pose.a * RAD2DEG, 81.5416, 5e-5);
    EXPECT_NEAR(pose.b * RAD2DEG, -34.1712, 5e-5);
    EXPECT_NEAR(pose.c * RAD2DEG, -47.5481, 5e-5);
}

TEST(SixAxisToolPose, sags_under_its_payload)
{
    // c2 = 1 / 2e8, c3 = 1 / 1e8, c5 = 1 / 3e7 rad/(N mm); torques of 98 N as in the tests of the
    // deflection. The heights follow from the three angles, computed with 40 digits.
    KineKinematicParam param = test::NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    param.SixAxis.k2 = 2e5;
    param.SixAxis.k3 = 1e5;
    param.SixAxis.k5 = 3e4;
    const SixAxisParams params = ParamsOf(param);
    EXPECT_NEAR(SixAxisToolPose(params, SinesOf(kZero), Carrying(10.0, {})).AsPose().z, 849.6403790922636,
                1e-10);
    EXPECT_NEAR(SixAxisToolPose(params, SinesOf(kZero), Carrying(10.0, {0.0, 0.0, 0.1})).AsPose().z,
                849.5436737156, 1e-10);
}

TEST(SixAxisToolPose, is_the_product_of_links_and_tool_on_the_bent_arm)
{
    test::SeededRandom random(2201);
    for (int i = 0; i < 500; ++i) {
        const KineKinematicParam param = RandomArm(random);
        const SixAngles q = RandomAngles(random);
        const ToolBlock tool = RandomTool(random);
        SCOPED_TRACE(::testing::Message() << i << ": " << q[0] << ' ' << q[1] << ' ' << q[2] << ' ' << q[3]
                                          << ' ' << q[4] << ' ' << q[5]);
        const HomMatrix expected = test::ToHom(test::RefToolPoint(param.SixAxis, q, tool));
        ExpectNear(PoseToMatrix(SixAxisToolPose(ParamsOf(param), SinesOf(q), tool)), expected, 1e-8);
    }
}

TEST(SixAxisFrame5Pose, is_the_product_of_five_links_bent_by_their_own_weight)
{
    test::SeededRandom random(2202);
    for (int i = 0; i < 200; ++i) {
        const KineKinematicParam param = RandomArm(random);
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(i);
        const test::RefAngles bent = test::RefBent(param.SixAxis, q, CombinedLoad{});
        const HomMatrix expected = test::ToHom(test::NaiveSixAxisChain(param.SixAxis, bent).frame[5]);
        ExpectNear(PoseToMatrix(SixAxisFrame5Pose(ParamsOf(param), q)), expected, 1e-8);
    }
}

TEST(SixAxisFrame5Pose, of_an_arm_that_nothing_bends_is_the_plain_product_of_five_links)
{
    test::SeededRandom random(2203);
    for (int i = 0; i < 100; ++i) {
        KineKinematicParam param = RandomArm(random);
        param.SixAxis.k2 = 0.0;
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(i);
        const HomMatrix expected = test::ToHom(test::NaiveSixAxisChain(param.SixAxis, q).frame[5]);
        ExpectNear(PoseToMatrix(SixAxisFrame5Pose(ParamsOf(param), q)), expected, 1e-10);
    }
}

TEST(SixAxisFrame5Pose, is_the_same_for_any_joint_6)
{
    const SixAxisParams params = ParamsOf(test::CalibratedWristArm());
    const Pose expected = SixAxisFrame5Pose(params, {0.1, 0.2, 0.3, 0.4, 0.5, 0.0});
    for (const double q6 : {0.6, -3.0, 100.0}) {
        SCOPED_TRACE(q6);
        EXPECT_TRUE(test::SameBits(SixAxisFrame5Pose(params, {0.1, 0.2, 0.3, 0.4, 0.5, q6}), expected));
    }
}

TEST(SixAxisFrame5Pose, is_the_flange_less_joint_6_and_d6)
{
    const KineKinematicParam param = test::WristArm();
    const SixAngles q{0.1, 0.2, 0.3, 0.4, 0.5, 0.6};
    const HomMatrix flange = PoseToMatrix(SixAxisToolPose(ParamsOf(param), SinesOf(q), NoTool()));
    const HomMatrix frame5 = PoseToMatrix(SixAxisFrame5Pose(ParamsOf(param), q));
    ExpectNear(MatrixInverse(frame5) * flange, PoseToMatrix({0.0, 0.0, 85.0, 0.6, 0.0, 0.0}), 1e-12);
}

TEST(SixAxisToolPose, of_very_stiff_joints_is_the_plain_chain)
{
    KineKinematicParam param = test::CalibratedWristArm();
    param.SixAxis.k2 = 1e18;
    param.SixAxis.k3 = 1e18;
    param.SixAxis.k5 = 1e18;
    const SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, 0.6};
    const HomMatrix expected = test::ToHom(test::NaiveSixAxisChain(param.SixAxis, q).flange);
    ExpectNear(PoseToMatrix(SixAxisToolPose(ParamsOf(param), SinesOf(q), Carrying(50.0, {0.1, 0.1, 0.1}))),
               expected, 1e-9);
}

TEST(SixAxisToolPose, of_zero_stiffness_in_any_joint_is_the_plain_chain)
{
    const SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, 0.6};
    for (auto stiffness : {&KineSixAxisParam::k2, &KineSixAxisParam::k3, &KineSixAxisParam::k5}) {
        KineKinematicParam param = test::CalibratedWristArm();
        param.SixAxis.*stiffness = 0.0;
        const HomMatrix expected = test::ToHom(test::NaiveSixAxisChain(param.SixAxis, q).flange);
        ExpectNear(PoseToMatrix(SixAxisToolPose(ParamsOf(param), SinesOf(q), Carrying(5.0, {}))), expected,
                   1e-9);
    }
}

TEST(SixAxisToolPose, of_a_load_that_bends_a_joint_by_two_degrees_is_the_plain_chain)
{
    KineKinematicParam param = test::WristArm();
    param.SixAxis.k2 = 1e6;
    param.SixAxis.k3 = 1e6;
    // Joint 5 carries m * 9.8 * 85 N mm at q = 0 and gives way by 2 degrees at 41.9 kg or so.
    param.SixAxis.k5 = 1e3;
    const double limitMass = 0.03490658503988659 * 1e6 / (9.8 * 85.0);
    const double sag =
        SixAxisToolPose(ParamsOf(param), SinesOf(kZero), Carrying(limitMass * (1.0 - 1e-9), {})).AsPose().z;
    EXPECT_LT(sag, 615.0 + 705.0 + 135.0 - 85.0 * std::sin(0.0349));
    EXPECT_NEAR(
        SixAxisToolPose(ParamsOf(param), SinesOf(kZero), Carrying(limitMass * (1.0 + 1e-9), {})).AsPose().z,
        615.0 + 705.0 + 135.0, 1e-9);
}

TEST(SixAxisToolPose, d1_only_lifts_the_arm)
{
    KineKinematicParam param = test::CalibratedWristArm();
    const SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, 0.6};
    Pose expected = SixAxisToolPose(ParamsOf(param), SinesOf(q), NoTool());
    param.SixAxis.d1 += 123.0;
    expected.z += 123.0;
    ExpectNear(SixAxisToolPose(ParamsOf(param), SinesOf(q), NoTool()), expected, 1e-10, 1e-14);
}

TEST(SixAxisToolPose, is_unaffected_by_the_lateral_offset)
{
    KineKinematicParam param = test::CalibratedWristArm();
    const SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, 0.6};
    const Pose expected = SixAxisToolPose(ParamsOf(param), SinesOf(q), NoTool());
    param.SixAxis.lateralOffset = kNan;
    EXPECT_TRUE(test::SameBits(SixAxisToolPose(ParamsOf(param), SinesOf(q), NoTool()).AsPose(), expected));
}

TEST(SixAxisToolPose, passes_nan_and_infinity_on)
{
    const SixAxisParams params = ParamsOf(test::CalibratedWristArm());
    for (const double bad : {kNan, kInf}) {
        for (std::size_t i = 0; i < 6; ++i) {
            SCOPED_TRACE(::testing::Message() << bad << " in joint " << i + 1);
            SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, 0.6};
            q[i] = bad;
            const Pose pose = SixAxisToolPose(params, SinesOf(q), NoTool());
            EXPECT_TRUE(std::isnan(pose.a) || std::isnan(pose.b) || std::isnan(pose.c));
            EXPECT_EQ(std::isnan(SixAxisFrame5Pose(params, q).x), i < 5);
        }
    }
}

TEST(SixAxisFrame5Pose, of_nan_in_joint_6_is_bent_by_nothing)
{
    // The deflection is not defined then, and the arm counts as rigid.
    const KineKinematicParam param = test::CalibratedWristArm();
    const SixAngles q{0.1, -0.2, 0.3, 0.4, 0.5, kNan};
    const HomMatrix expected = test::ToHom(test::NaiveSixAxisChain(param.SixAxis, q).frame[5]);
    ExpectNear(PoseToMatrix(SixAxisFrame5Pose(ParamsOf(param), q)), expected, 1e-9);
}

// Height and roll do not depend on joint 1: its NaN leaves them as they are for any other angle, on the arm
// that nothing bends, since a NaN deflection counts as none.
TEST(SixAxisFrame5Pose, of_nan_in_joint_1_keeps_height_and_roll)
{
    KineKinematicParam rigid = test::Puma();
    rigid.SixAxis.k2 = 0.0;
    const SixAxisParams params = ParamsOf(rigid);
    const SixAngles q{kNan, 0.4, -0.3, 0.5, 0.8, 0.0};
    SixAngles finite = q;
    finite[0] = 0.0;
    const Pose expected = SixAxisFrame5Pose(params, finite);
    const Pose pose = SixAxisFrame5Pose(params, q);
    EXPECT_TRUE(std::isnan(pose.x) && std::isnan(pose.y) && std::isnan(pose.a));
    EXPECT_EQ(pose.z, expected.z);
    EXPECT_EQ(pose.c, expected.c);
}

TEST(WalkLinks, gives_the_axis_of_every_joint)
{
    test::SeededRandom random(2203);
    for (int i = 0; i < 100; ++i) {
        const KineKinematicParam param = RandomArm(random);
        const SixAngles q = RandomAngles(random);
        SCOPED_TRACE(i);
        const LinkChain chain = WalkLinks(ParamsOf(param), SinesOf(q));
        const test::SixAxisChain expected = test::NaiveSixAxisChain(param.SixAxis, q);
        for (std::size_t j = 0; j < 6; ++j) {
            const HomMatrix frame = test::ToHom(expected.frame[j]);
            ExpectNear(chain.joints[j].direction, AxisZ(frame.r), 1e-13);
            ExpectNear(chain.joints[j].origin, frame.t, 1e-10);
        }
        ExpectNear(chain.baseFromFlange, test::ToHom(expected.flange), 1e-10);
    }
}

TEST(SinesOf, gives_sines_and_cosines_with_a_quarter_turn_on_joint_2)
{
    const JointSines sines = SinesOf({0.1, 0.2, 0.3, 0.4, 0.5, 0.6});
    for (std::size_t i = 0; i < 6; ++i) {
        const double angle = 0.1 * static_cast<double>(i + 1);
        EXPECT_NEAR(sines[i].sin, i == 1 ? std::cos(angle) : std::sin(angle), 1e-15);
        EXPECT_NEAR(sines[i].cos, i == 1 ? -std::sin(angle) : std::cos(angle), 1e-15);
    }
}

TEST(Deflected, adds_to_joints_2_3_and_5)
{
    const SixAngles q{1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    const JointSines before = SinesOf(q);
    const JointSines bent = Deflected(before, {0.03125, -0.015625, 0.0078125});
    const JointSines expected = SinesOf({1.0, 2.03125, 2.984375, 4.0, 5.0078125, 6.0});
    for (const std::size_t i : {0U, 3U, 5U}) EXPECT_TRUE(test::SameBits(bent[i], before[i])) << i;
    for (const std::size_t i : {1U, 2U, 4U}) {
        EXPECT_NEAR(bent[i].sin, expected[i].sin, 4e-16) << i;
        EXPECT_NEAR(bent[i].cos, expected[i].cos, 4e-16) << i;
    }
}

}  // namespace
}  // namespace kine

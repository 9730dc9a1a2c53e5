// Numbers that others have published or that a few lines of trigonometry give, through the exports.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "golden_table.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/stdout_capture.h"

namespace kine::test {
namespace {

constexpr double kPi = 3.141592653589793;

KinePose BasePose(const KineJoint& joints, const KineLoad& load = {})
{
    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    KinePose pose{};
    EXPECT_EQ(Kine_JointToBasePos(&joints, &tool, &wobj, &load, &pose), KINE_OK);
    return pose;
}

void Initialise(std::uint32_t type, const KineKinematicParam& param)
{
    ASSERT_EQ(Kine_InitKinematicParam(type, &param), KINE_OK);
}

void ExpectPosition(const KinePose& pose, double x, double y, double z, double tolerance)
{
    EXPECT_NEAR(pose.Frame.X, x, tolerance);
    EXPECT_NEAR(pose.Frame.Y, y, tolerance);
    EXPECT_NEAR(pose.Frame.Z, z, tolerance);
}

// --- The Puma 560 of P. Corke and B. Armstrong-Helouvry, "A search for consensus among model parameters
// --- reported for the PUMA 560 robot", ICRA 1994, in the joints of its textbook description.

TEST(PublishedPuma, zero_joints_point_straight_out)
{
    Initialise(KINE_ARM_SIX_AXIS, Puma());
    const KinePose pose = BasePose(MakeJoints(PumaJointsDeg({0, 0, 0, 0, 0, 0})));
    // a2 + a3 out, d3 aside, d4 up; the hand in line with the base.
    ExpectPosition(pose, 431.8 + 20.3, -150.05, 431.8, 1e-10);
    EXPECT_NEAR(pose.Frame.A, 0.0, 1e-10);
    EXPECT_NEAR(pose.Frame.B, 0.0, 1e-10);
    EXPECT_NEAR(pose.Frame.C, 0.0, 1e-10);
}

TEST(PublishedPuma, general_joints)
{
    Initialise(KINE_ARM_SIX_AXIS, Puma());
    const KinePose pose = BasePose(MakeJoints(PumaJointsDeg({0.1, 0.2, 0.3, 0.4, 0.5, 0.6})));
    // Four decimals are published.
    ExpectPosition(pose, 247.8027, -125.9402, 474.4579, 5e-5);
    EXPECT_NEAR(pose.Frame.A, 81.5416, 5e-5);
    EXPECT_NEAR(pose.Frame.B, -34.1712, 5e-5);
    EXPECT_NEAR(pose.Frame.C, -47.5481, 5e-5);
    ExpectConfig(pose, {2, 0, 0, 5});
}

// The textbook transform of the arm, multiplied out for its wrist centre: link 2 in the plane at t2, the
// forearm behind the elbow offset at t2 + t3, the whole turned by t1.
TEST(PublishedPuma, wrist_centre_is_the_textbook_formula)
{
    Initialise(KINE_ARM_SIX_AXIS, Puma());
    for (const auto& t : {std::array<double, 6>{0.3, -0.7, 1.1, 0.2, 0.4, 0.6},
                          std::array<double, 6>{-2.1, 0.4, -0.9, 1.0, -1.4, 2.0},
                          std::array<double, 6>{1.7, -2.5, 2.2, -0.3, 0.8, -1.9}}) {
        const KinePose pose = BasePose(MakeJoints(PumaJointsDeg(t)));
        const double out =
            431.8 * std::cos(t[1]) + 20.3 * std::cos(t[1] + t[2]) - 431.8 * std::sin(t[1] + t[2]);
        const double up =
            431.8 * std::sin(t[1]) + 20.3 * std::sin(t[1] + t[2]) + 431.8 * std::cos(t[1] + t[2]);
        ExpectPosition(pose, out * std::cos(t[0]) + 150.05 * std::sin(t[0]),
                       out * std::sin(t[0]) - 150.05 * std::cos(t[0]), up, 1e-9);
    }
}

TEST(PublishedPuma, elbow_pose_has_eight_solutions)
{
    Initialise(KINE_ARM_SIX_AXIS, Puma());
    const double eighth = kPi / 4;
    const KinePose pose = BasePose(MakeJoints(PumaJointsDeg({0, eighth, kPi, 0, eighth, 0})));
    ExpectPosition(pose, 596.3031, -150.05, -14.3543, 5e-5);

    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    const KineLoad load{};
    std::set<std::array<long, 6>> different;
    for (int posture = 0; posture < 8; ++posture) {
        SCOPED_TRACE(posture);
        KinePose target = TargetOf(pose.Frame, {0, 0, 0, posture});
        KineJoint joints{};
        ASSERT_EQ(Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &joints), KINE_OK);
        const KinePose again = BasePose(joints);
        ExpectPosition(again, pose.Frame.X, pose.Frame.Y, pose.Frame.Z, 1e-9);
        EXPECT_EQ(again.Cfg4, posture);
        std::array<long, 6> rounded{};
        for (std::size_t i = 0; i < 6; ++i) rounded[i] = std::lround(joints.Axis[i] * 1000.0);
        different.insert(rounded);
    }
    EXPECT_EQ(different.size(), 8U);
}

// --- Sag: a1 100, a2 500, a3 50, d4 400, d6 80, d1 300, all joints 0. The forearm lies level, 480 mm from
// --- the joints 2 and 3 to the flange and 80 mm from joint 5, so 10 kg pull with 47040, 47040 and 7840 N mm.

KineKinematicParam SaggingArm()
{
    KineKinematicParam param = NominalSixAxis({100.0, 500.0, 50.0, 400.0, 80.0, 300.0, 0.0});
    param.SixAxis.k2 = 2e5;
    param.SixAxis.k3 = 1e5;
    param.SixAxis.k5 = 3e4;
    return param;
}

// Height of the flange when joints 2, 3 and 5 give way downward by torque / (1000 k) each.
double SaggedHeight(double torque2, double torque3, double torque5)
{
    const double d2 = torque2 / 2e8;
    const double d23 = d2 + torque3 / 1e8;
    const double d235 = d23 + torque5 / 3e7;
    return 300.0 + 500.0 * std::cos(d2) + 50.0 * std::cos(d23) - 400.0 * std::sin(d23) -
           80.0 * std::sin(d235);
}

TEST(PublishedSag, ten_kilograms_at_the_flange)
{
    Initialise(KINE_ARM_SIX_AXIS, SaggingArm());
    const double height = BasePose(MakeJoints({0, 0, 0, 0, 0, 0}), MakeLoad(10.0, 0, 0, 0)).Frame.Z;
    EXPECT_NEAR(height, 849.6403790922636, 1e-9);
    EXPECT_NEAR(height, SaggedHeight(98.0 * 480.0, 98.0 * 480.0, 98.0 * 80.0), 1e-9);
}

TEST(PublishedSag, ten_kilograms_a_hand_further_out)
{
    Initialise(KINE_ARM_SIX_AXIS, SaggingArm());
    // The flange's Z axis points out along the forearm.
    const double height = BasePose(MakeJoints({0, 0, 0, 0, 0, 0}), MakeLoad(10.0, 0, 0, 100.0)).Frame.Z;
    EXPECT_NEAR(height, 849.5436737156, 1e-9);
    EXPECT_NEAR(height, SaggedHeight(98.0 * 580.0, 98.0 * 580.0, 98.0 * 180.0), 1e-9);
}

TEST(PublishedSag, without_a_load_the_arm_is_straight)
{
    Initialise(KINE_ARM_SIX_AXIS, SaggingArm());
    EXPECT_NEAR(BasePose(MakeJoints({0, 0, 0, 0, 0, 0})).Frame.Z, 850.0, 1e-10);
}

// The Puma's link weights of B. Armstrong, O. Khatib and J. Burdick, "The explicit dynamic model and inertial
// parameters of the PUMA 560 arm", ICRA 1986. At textbook joints 0 the own weight turns joint 2 by
// G0 + G2 and joint 3 by G2 (the forearm stands upright), joint 5 not at all.
TEST(PublishedPuma, own_weight_sags_the_stretched_arm)
{
    Initialise(KINE_ARM_SIX_AXIS, PumaWithGravity());
    const KinePose pose = BasePose(MakeJoints(PumaJointsDeg({0, 0, 0, 0, 0, 0})));
    // q2 = 90: the first coefficient stands with cos(q2 + 90) = -1, the third with cos(q2 + q3 + 90) = -1.
    const double down2 = (37234.7 + 248.9) / 3e7;
    const double down3 = 248.9 / 2e7;
    const double d23 = down2 + down3;
    EXPECT_NEAR(pose.Frame.Z, -431.8 * std::sin(down2) - 20.3 * std::sin(d23) + 431.8 * std::cos(d23), 1e-9);
    EXPECT_NEAR(pose.Frame.X, 431.8 * std::cos(down2) + 20.3 * std::cos(d23) + 431.8 * std::sin(d23), 1e-9);
    EXPECT_LT(pose.Frame.Z, 431.8 - 0.5);
}

// --- Plane arms: x = L1 cos q1 + L2 cos(q1 + q2), y alike with the sine. ---

KineKinematicParam PlaneArm(double l1, double l2)
{
    KineKinematicParam param{};
    param.FourAxis.Link1Length = l1;
    param.FourAxis.Link2Length = l2;
    param.FourAxis.ScrewLead = 20.0;
    return param;
}

struct PlaneCase
{
    double l1, l2, q1, q2, x, y, tolerance;
};

TEST(PublishedPlaneArm, known_positions)
{
    // cos 75 = (sqrt 6 - sqrt 2) / 4 and so on: 425 cos 30 + 375 cos 75 = 465.117939; the last one exactly
    // 400 and -43.30127 = 375 sin 60 - 425 sin 60.
    const PlaneCase cases[] = {{425, 375, 30, 45, 465.117939, 574.722185, 5e-7},
                               {425, 375, -60, 120, 400.0, -50.0 * std::sqrt(3.0) / 2.0, 1e-10},
                               {325, 275, 30, 45, 352.633494, 428.129602, 5e-7}};
    for (const std::uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
        for (const PlaneCase& c : cases) {
            Initialise(type, PlaneArm(c.l1, c.l2));
            // Axis 2 of type 4110 is the elbow angle less half a turn.
            const double axis2 = type == KINE_ARM_FOUR_AXIS ? c.q2 : c.q2 - 180.0;
            const KinePose pose = BasePose(MakeJoints({c.q1, axis2, 0.0, 0.0}));
            ExpectPosition(pose, c.x, c.y, 0.0, c.tolerance);
            EXPECT_NEAR(pose.Frame.A, c.q1 + c.q2, 1e-10);
        }
    }
}

}  // namespace
}  // namespace kine::test

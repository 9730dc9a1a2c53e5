// Four flange poses that were taught on a real six-axis robot and published with the tool point that its
// controller found from them: (5.25, 95.13, 308.52) mm. Real poses agree to some millimetres only.
//
// The expected numbers were computed from the printed digits with 50 decimal places: rotations from the
// angles, then a QR decomposition of the stacked differences to the first pose.
#include <gtest/gtest.h>

#include <cmath>

#include "support/records.h"
#include "support/sample_arms.h"

namespace kine::test {
namespace {

// Positions below 1000 mm, differences of orientation that shrink a vector to no less than 0.42: the doubles
// of the poses and the solution stay within some 1e-12 mm.
constexpr double kMm = 1e-9;

KinePose Taught(const KineFrame& frame)
{
    KinePose pose{};
    pose.Frame = frame;
    return pose;
}

const KinePose kP1 = Taught({65.7, -784.16, 291.58, 9.997726, -31.507437, 174.001541});
const KinePose kP2 = Taught({378.39, -769.23, 313.14, 2.636275, 27.891797, 178.022387});
const KinePose kP3 = Taught({341.84, -861.45, 349.34, -25.489528, 15.394009, -173.717711});
const KinePose kP4 = Taught({208.6, -640.97, 253.82, 13.305962, 7.088055, 147.469104});

constexpr KineFrame kController = {5.25, 95.13, 308.52, 0.0, 0.0, 0.0};

double Distance(const KineFrame& a, const KineFrame& b)
{
    return std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z);
}

void ExpectPoint(const KineFrame& frame, double x, double y, double z)
{
    EXPECT_NEAR(frame.X, x, kMm);
    EXPECT_NEAR(frame.Y, y, kMm);
    EXPECT_NEAR(frame.Z, z, kMm);
    EXPECT_TRUE(frame.A == 0.0 && frame.B == 0.0 && frame.C == 0.0);
}

void ExpectReport(const KineCalibError& error, double largest, double mean, double smallest)
{
    EXPECT_NEAR(error.Largest, largest, kMm);
    EXPECT_NEAR(error.Mean, mean, kMm);
    EXPECT_NEAR(error.Smallest, smallest, kMm);
}

void SetUpSixAxisArm()
{
    const KineKinematicParam arm = WristArm();
    ASSERT_EQ(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm), KINE_OK);
}

TEST(Kine_CalcGripToolPrm_3P, real_poses_give_a_point_within_a_millimetre_of_the_controllers)
{
    SetUpSixAxisArm();
    KineFrame frame{};
    KineCalibError error{};
    ASSERT_EQ(Kine_CalcGripToolPrm_3P(&kP1, &kP2, &kP3, &frame, &error), KINE_OK);
    ExpectPoint(frame, 5.419604107550681609679174, 94.32315245349489763858009, 308.9476815523803591184344);
    ExpectReport(error, 1.809360977381586193837811, 1.211722254073687545893815, 0.3127739571873750747661517);
    EXPECT_LT(Distance(frame, kController), 1.0);
}

TEST(Kine_CalcExtToolPrm_3P, real_poses_give_the_touched_point_of_the_first)
{
    SetUpSixAxisArm();
    KineFrame frame{};
    KineCalibError error{};
    ASSERT_EQ(Kine_CalcExtToolPrm_3P(&kP1, &kP2, &kP3, &frame, &error), KINE_OK);
    ExpectPoint(frame, 245.2045939135817364802304, -880.5523913372563585822379, 40.85802890403843999534692);
    ExpectReport(error, 1.809360977381586193837811, 1.211722254073687545893815, 0.3127739571873750747661517);
}

// The first pose given twice adds nothing to the equations: the least squares of all four poses. The fourth
// does not fit well, it misses the others by up to 5.8 mm. In the report the doubled pose counts as two.
// (Least squares about a free point instead of that of the first pose: 6.0986, 92.5254, 307.2847 mm.)
TEST(Kine_CalcGripToolPrm_5P, four_real_poses_give_a_point_within_some_millimetres_of_the_controllers)
{
    SetUpSixAxisArm();
    KineFrame frame{};
    KineCalibError error{};
    ASSERT_EQ(Kine_CalcGripToolPrm_5P(&kP1, &kP1, &kP2, &kP3, &kP4, &frame, &error), KINE_OK);
    ExpectPoint(frame, 6.578010914185794842115752, 93.31843616801643568575192, 308.1264696475044227653481);
    ExpectReport(error, 5.82911522389022850411722, 2.890399373636716096142516, 0.0);
    EXPECT_LT(Distance(frame, kController), 3.0);
}

}  // namespace
}  // namespace kine::test

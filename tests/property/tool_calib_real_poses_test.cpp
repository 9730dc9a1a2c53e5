// Four flange poses that were taught on a real six-axis robot and published with the tool point that its
// controller found from them: (5.25, 95.13, 308.52) mm. Real poses agree to some millimetres only.
//
// The expected numbers were computed from the printed digits with 50 decimal places: rotations from the
// angles, then a QR decomposition of the stacked differences to the first pose.
#include <gtest/gtest.h>

#include "support/tool_calib_calls.h"

namespace kine::test {
namespace {

// Positions below 1000 mm, differences of orientation that shrink a vector to no less than 0.42: the doubles
// of the poses and the solution stay within some 1e-12 mm.
constexpr double kMm = 1e-9;

const KinePose kP1 = TaughtPose({65.7, -784.16, 291.58}, {9.997726, -31.507437, 174.001541});
const KinePose kP2 = TaughtPose({378.39, -769.23, 313.14}, {2.636275, 27.891797, 178.022387});
const KinePose kP3 = TaughtPose({341.84, -861.45, 349.34}, {-25.489528, 15.394009, -173.717711});
const KinePose kP4 = TaughtPose({208.6, -640.97, 253.82}, {13.305962, 7.088055, 147.469104});

constexpr Point kController = {5.25, 95.13, 308.52};

TEST(Kine_CalcGripToolPrm_3P, real_poses_give_a_point_within_a_millimetre_of_the_controllers)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome found = Solved(kGrip3P, {{kP1, kP2, kP3}});
    EXPECT_TRUE(IsPointFrame(
        found.frame, {5.419604107550681609679174, 94.32315245349489763858009, 308.9476815523803591184344},
        kMm));
    ExpectReport(found.report,
                 {1.809360977381586193837811, 1.211722254073687545893815, 0.3127739571873750747661517}, kMm);
    EXPECT_LT(Distance(PositionOf(found.frame), kController), 1.0);
}

TEST(Kine_CalcExtToolPrm_3P, real_poses_give_the_touched_point_of_the_first)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome found = Solved(kExt3P, {{kP1, kP2, kP3}});
    EXPECT_TRUE(IsPointFrame(
        found.frame, {245.2045939135817364802304, -880.5523913372563585822379, 40.85802890403843999534692},
        kMm));
    ExpectReport(found.report,
                 {1.809360977381586193837811, 1.211722254073687545893815, 0.3127739571873750747661517}, kMm);
}

// The first pose given twice adds nothing to the equations: the least squares of all four poses. The fourth
// does not fit well, it misses the others by up to 5.8 mm. In the report the doubled pose counts as two.
// (Least squares about a free point instead of that of the first pose: 6.0986, 92.5254, 307.2847 mm.)
TEST(Kine_CalcGripToolPrm_5P, four_real_poses_give_a_point_within_some_millimetres_of_the_controllers)
{
    UseArm(KINE_ARM_SIX_AXIS);
    const ToolCalibOutcome found = Solved(kGrip5P, {{kP1, kP1, kP2, kP3, kP4}});
    EXPECT_TRUE(IsPointFrame(
        found.frame, {6.578010914185794842115752, 93.31843616801643568575192, 308.1264696475044227653481},
        kMm));
    ExpectReport(found.report, {5.82911522389022850411722, 2.890399373636716096142516, 0.0}, kMm);
    EXPECT_LT(Distance(PositionOf(found.frame), kController), 3.0);
}

}  // namespace
}  // namespace kine::test

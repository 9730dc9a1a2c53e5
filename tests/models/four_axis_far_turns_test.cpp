// Solutions that the refinement has carried many turns away: the inverse of the four-axis arms brings them
// back or, beyond six million quarter turns, refuses them.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_4110_model.h"
#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

constexpr double kQuarter = kHalfTurn / 2;
// On either side of the six million, with room for the turns that are added on the way.
constexpr double kNear = 5.9e6 * kQuarter;
constexpr double kFar = 6.1e6 * kQuarter;
// rad. 1.5 million whole turns, each rounded to half a unit in the last place of 9e6: 9.3e-10.
constexpr double kTurnRounding = 1.5e6 * 9.4e-10;

FourAxis4110Model ModelOf4110() { return Initialised<FourAxis4110Model>(4110, {}); }

// A heading is taken as it is, and its whole turns are added once for the seed and once for each of the five
// Newton steps, to which it always looks as wrong as at first.
template <class Model>
void ExpectHeadingsAreServedUpTo(const Model& model, double heading)
{
    for (const double sign : {1.0, -1.0}) {
        const KineArmConfig config{1, 0, 0, 0};
        Joints joints = MarkedJoints();
        EXPECT_EQ(
            model.InverseKinematics(Pose{500.0, 200.0, 90.0, sign * heading, 0.0, 0.0}, {}, config, joints),
            KINE_OK);
        EXPECT_LE(std::fabs(joints.axis[3]), 3.0 * kQuarter);
        const Pose reached = model.ForwardKinematics(joints, {});
        EXPECT_NEAR(reached.x, 500.0, 1e-9);
        EXPECT_NEAR(reached.y, 200.0, 1e-9);
        EXPECT_NEAR(reached.z, 90.0, 1e-9);
        EXPECT_NEAR(std::remainder(reached.a - sign * heading, 2.0 * kHalfTurn), 0.0, kTurnRounding);

        joints = MarkedJoints();
        EXPECT_EQ(model.InverseKinematics(Pose{500.0, 200.0, 90.0, sign * 2.0 * heading, 0.0, 0.0}, {},
                                          config, joints),
                  KINE_ERR_IK_REACH);
        EXPECT_TRUE(AreMarked(joints));
    }
}

TEST(FourAxisFarTurns, a_heading_a_million_quarter_turns_away_can_be_brought_back_but_no_more)
{
    // Six times 0.6 million quarters come back, six times 1.2 million do not.
    ExpectHeadingsAreServedUpTo(Initialised<FourAxisModel>(4, {}), 0.6e6 * kQuarter);
    ExpectHeadingsAreServedUpTo(ModelOf4110(), 0.6e6 * kQuarter);
}

TEST(Select4110Turns, counts_axis_2_from_the_folded_elbow)
{
    // Half a turn off either way: the way that lands within two quarters of the turn number.
    FourAngles q{0.3, 1.0, 7.0, -0.4};
    EXPECT_EQ(Select4110Turns({1, 0, 0, 0}, q), KINE_OK);
    EXPECT_EQ(q[0], 0.3);
    EXPECT_NEAR(q[1], 1.0 - kHalfTurn, 1e-15);
    EXPECT_EQ(q[2], 7.0);
    EXPECT_EQ(q[3], -0.4);

    q = {0.3, -1.0, 7.0, -0.4};
    EXPECT_EQ(Select4110Turns({1, 0, 0, 0}, q), KINE_OK);
    EXPECT_NEAR(q[1], kHalfTurn - 1.0, 1e-15);
}

TEST(Select4110Turns, brings_axes_1_2_and_4_back_up_to_six_million_quarter_turns)
{
    for (const std::size_t axis : {0U, 1U, 3U}) {
        for (const double far : {kNear, -kNear}) {
            SCOPED_TRACE(testing::Message() << "axis " << axis + 1 << " at " << far);
            FourAngles q{0.3, 0.5, 7.0, -0.4};
            q[axis] = far;
            EXPECT_EQ(Select4110Turns({1, 0, 0, 0}, q), KINE_OK);
            EXPECT_LE(std::fabs(q[axis]), 3.0 * kQuarter);
            const double zero = axis == 1 ? kHalfTurn : 0.0;
            EXPECT_NEAR(std::remainder(q[axis] + zero - far, 2.0 * kHalfTurn), 0.0, kTurnRounding);
        }
    }
}

TEST(Select4110Turns, refuses_what_is_farther_or_no_number_on_each_of_the_three_axes)
{
    for (const std::size_t axis : {0U, 1U, 3U}) {
        for (const double bad : {kFar, -kFar, 1e300, kInf, -kInf, kNan}) {
            FourAngles q{0.3, 0.5, 7.0, -0.4};
            q[axis] = bad;
            EXPECT_EQ(Select4110Turns({1, 0, 0, 0}, q), KINE_ERR_IK_REACH)
                << "axis " << axis + 1 << " at " << bad;
        }
    }
}

// The screw has no turns to select.
TEST(Select4110Turns, leaves_axis_3_alone)
{
    for (const double angle : {kFar, -kFar, 1e300, kInf}) {
        FourAngles q{0.3, 0.5, angle, -0.4};
        EXPECT_EQ(Select4110Turns({1, 0, 0, 0}, q), KINE_OK);
        EXPECT_EQ(q[2], angle);
    }
}

}  // namespace
}  // namespace kine::test

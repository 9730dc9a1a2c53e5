// The state of a four-axis arm, its pose and its Jacobian, against plain products of rotations and against
// difference quotients.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_geometry.h"
#include "support/math_compare.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

// mm, of arms of a metre; sines and rad.
constexpr double kMm = 1e-11;
constexpr double kSine = 1e-14;

struct Sample
{
    NaiveArm arm;
    FourAngles q;
    Pose tool;
};

Sample RandomSample(SeededRandom& random, double tilt)
{
    Sample s;
    for (double* angle : {&s.arm.tiltX1, &s.arm.tiltX2, &s.arm.tiltY1, &s.arm.tiltY2})
        *angle = random.Uniform(-tilt, tilt);
    s.q = {random.Uniform(-4, 4), random.Uniform(-4, 4), random.Uniform(-60, 60), random.Uniform(-9, 9)};
    s.tool = {random.Uniform(-90, 90), random.Uniform(-90, 90), random.Uniform(-90, 90),
              random.Uniform(-3, 3),   random.Uniform(-3, 3),   random.Uniform(-3, 3)};
    return s;
}

Vec3 ToVec3(const Triple<double>& v) { return {v[0], v[1], v[2]}; }

Vec3 Column(const Square<double>& m, std::size_t j) { return {m[0][j], m[1][j], m[2][j]}; }

void ExpectState(const FourAxisState& state, const NaiveArm& arm, const FourAngles& q, const Pose& tool)
{
    const auto naive = NaiveForward<double>(arm, q, tool);
    const Square<double> r1 =
        Product(Product(AboutZ(q[0]), AboutX(InRadians(arm.tiltX1))), AboutY(InRadians(arm.tiltY1)));
    const Vec3 joint2{arm.l1 * std::cos(q[0]), arm.l1 * std::sin(q[0]), 0.0};
    ExpectNear(state.axis2, Column(r1, 2), kSine);
    ExpectNear(state.axis4, Column(naive.forearm, 2), kSine);
    ExpectNear(state.tool, ToVec3(naive.tip) - ToVec3(naive.flange), kMm);
    ExpectNear(state.fromJoint2, ToVec3(naive.tip) - joint2, kMm);
    ExpectNear(state.tip, ToVec3(naive.tip), kMm);
    ExpectNear(state.heading, Column(naive.tool, 0), kSine);
}

TEST(FourAxisState, is_that_of_the_product_of_rotations)
{
    SeededRandom random(3401);
    for (const double tilt : {0.0, 1.0, 30.0, 90.0}) {
        for (int i = 0; i < 300; ++i) {
            SCOPED_TRACE(::testing::Message() << "tilts up to " << tilt << ", " << i);
            const Sample s = RandomSample(random, tilt);
            ExpectState(StateOf(BlockOf(s.arm), s.q, s.tool), s.arm, s.q, s.tool);
        }
    }
}

// Axis 3, the screw, has no sine; those of the others may have been moved on.
TEST(FourAxisState, of_sines_that_were_moved_on_is_that_at_the_sum_of_the_angles)
{
    SeededRandom random(3402);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const Sample s = RandomSample(random, 25.0);
        const auto step = [&random] { return random.Uniform(-kMaxSeriesStep, kMaxSeriesStep); };
        const FourAngles by{step(), step(), random.Uniform(-20, 20), step()};
        const FourSines at = FourSinesOf(s.q);
        const FourSines moved{Advanced(at.q1, by[0]), Advanced(at.q2, by[1]), Advanced(at.q4, by[3])};
        const FourAngles sum{s.q[0] + by[0], s.q[1] + by[1], s.q[2] + by[2], s.q[3] + by[3]};
        ExpectState(FourAxisStateOf(BlockOf(s.arm), moved, sum[2], FourAxisToolOf(s.tool)), s.arm, sum,
                    s.tool);
    }
}

TEST(FourAxisState, from_joints_is_that_of_their_sines_to_the_last_bit)
{
    SeededRandom random(3403);
    for (int i = 0; i < 100; ++i) {
        const Sample s = RandomSample(random, 25.0);
        const FourAxisTool tool = FourAxisToolOf(s.tool);
        const FourAxisState state = FourAxisStateOf(BlockOf(s.arm), FourSinesOf(s.q), s.q[2], tool);
        EXPECT_TRUE(SameBits(FourAxisStateOf(BlockOf(s.arm), s.q, tool), state));
    }
}

TEST(FourAxisTool, takes_position_and_first_angle)
{
    const FourAxisTool tool = FourAxisToolOf({1.0, -2.0, 3.0, 0.7, kNan, kInf});
    ExpectNear(tool.tip, {1.0, -2.0, 3.0}, 0.0);
    EXPECT_TRUE(SameBits(tool.a, SinCosOf(0.7)));
}

TEST(FourAxisPose, is_the_tip_with_the_heading_in_the_plane)
{
    SeededRandom random(3404);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const Sample s = RandomSample(random, 30.0);
        const FourAxisState state = StateOf(BlockOf(s.arm), s.q, s.tool);
        const Pose pose = FourAxisToolPose(state);
        EXPECT_TRUE(SameBits(Vec3{pose.x, pose.y, pose.z}, state.tip));
        const auto naive = NaiveForward<double>(s.arm, s.q, s.tool);
        const double heading = std::atan2(naive.tool[1][0], naive.tool[0][0]);
        EXPECT_NEAR(std::remainder(pose.a - heading, 2 * kHalfTurn), 0.0, 1e-13);
        EXPECT_EQ(pose.b, 0.0);
        EXPECT_EQ(pose.c, 0.0);
    }
}

// Central differences of eighth order of the pose from plain rotations. The step is in rad; that of the
// screw a turn.
TEST(FourAxisJacobian, every_entry_is_the_difference_quotient)
{
    constexpr double kWeights[] = {4.0 / 5.0, -1.0 / 5.0, 4.0 / 105.0, -1.0 / 280.0};
    SeededRandom random(3405);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        const Sample s = RandomSample(random, 20.0);
        const FourAxisParams params = BlockOf(s.arm);
        const Matrix4 jacobian = FourAxisJacobian(params, StateOf(params, s.q, s.tool));
        const auto at = [&s](const FourAngles& q) {
            const auto naive = NaiveForward<double>(s.arm, q, s.tool);
            return std::array<double, 4>{naive.tip[0], naive.tip[1], naive.tip[2],
                                         std::atan2(naive.tool[1][0], naive.tool[0][0])};
        };
        const auto here = at(s.q);
        for (std::size_t axis = 0; axis < 4; ++axis) {
            const double step = axis == 2 ? 6.0 : 0.02;
            std::array<double, 4> quotient{};
            for (int n = 1; n <= 4; ++n) {
                for (const int side : {-1, 1}) {
                    FourAngles moved = s.q;
                    moved[axis] += side * n * step;
                    const auto there = at(moved);
                    for (std::size_t row = 0; row < 4; ++row) {
                        const double change = row == 3 ? std::remainder(there[3] - here[3], 2 * kHalfTurn)
                                                       : there[row] - here[row];
                        quotient[row] += side * kWeights[n - 1] / step * change;
                    }
                }
            }
            for (std::size_t row = 0; row < 4; ++row) {
                EXPECT_NEAR(jacobian.m[row][axis], quotient[row], row == 3 ? 1e-12 : 1e-10)
                    << "row " << row << " axis " << axis + 1;
            }
        }
    }
}

TEST(FourAxisGoal, is_the_pose_without_its_last_two_angles)
{
    SeededRandom random(3406);
    for (int i = 0; i < 500; ++i) {
        const Pose pose{random.Uniform(-900, 900), random.Uniform(-900, 900), random.Uniform(-900, 900),
                        random.Uniform(-3, 3),     random.Uniform(-3, 3),     random.Uniform(-3, 3)};
        for (const LazyPose& target : {LazyPose(pose), LazyPose(PoseToMatrix(pose)), LazyPose()}) {
            Pose expected = target;
            expected.b = expected.c = 0.0;
            ASSERT_TRUE(SameBits(FourAxisGoal(target), expected));
        }
    }
    // At the gimbal a is 0.
    const Pose upright{1.0, 2.0, 3.0, 0.7, kHalfTurn / 2, 0.4};
    EXPECT_EQ(FourAxisGoal(LazyPose(PoseToMatrix(upright))).a, 0.0);
    EXPECT_EQ(FourAxisGoal(upright).a, 0.7);
}

}  // namespace
}  // namespace kine::test

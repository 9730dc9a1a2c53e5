// Forward and inverse of the four-axis arms undo each other.
#include <gtest/gtest.h>

#include "support/random_records.h"
#include "support/records.h"
#include "support/rigid_matrix.h"
#include "support/sample_arms.h"

namespace kine::test {
namespace {

constexpr double kDeg = 1e-8;

struct Cell
{
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
};

Cell RandomCell(SeededRandom& random)
{
    Cell cell{};
    KineFrame tool = RandomFrame(random, 90.0, 80.0);
    cell.tool = HeldTool(tool);
    cell.wobj = FixedWobj(RandomFrame(random, 500.0, 80.0), RandomFrame(random, 100.0, 80.0));
    cell.load = MakeLoad(random.Uniform(0.0, 5.0), 1.0, 2.0, 3.0);
    return cell;
}

KinePose Forward(const KineJoint& q, const Cell& cell)
{
    KinePose pose{};
    EXPECT_EQ(Kine_JointToWobjPos(&q, &cell.tool, &cell.wobj, &cell.load, &pose), KINE_OK);
    return pose;
}

KineResult Inverse(const KinePose& target, const Cell& cell, KineJoint& joints)
{
    return Kine_WobjPosToJoint(&target, &cell.tool, &cell.wobj, &cell.load, &joints);
}

// The heading of the tool in the base, which has no wrapped error when it keeps clear of +-180.
bool IsHeadingClear(const KineJoint& q, const Cell& cell)
{
    KinePose pose{};
    EXPECT_EQ(Kine_JointToBasePos(&q, &cell.tool, &cell.wobj, &cell.load, &pose), KINE_OK);
    return std::fabs(pose.Frame.A) < 179.0;
}

TEST(FourAxisRoundTrip, type_4_returns_axis_1_and_2_within_a_turn_and_every_turn_of_axis_4)
{
    SeededRandom random(2001);
    const KineKinematicParam param = Scara();
    ASSERT_EQ(Kine_InitKinematicParam(4, &param), KINE_OK);
    for (int i = 0; i < 3000; ++i) {
        const double side = random.Whole(0, 1) == 1 ? 1.0 : -1.0;
        const KineJoint q = MakeJoints({random.Uniform(-179.9, 179.9), side * random.Uniform(0.5, 179.5),
                                        random.Uniform(-9000, 9000), random.Uniform(-2160, 2160)});
        SCOPED_TRACE(::testing::Message() << i << " " << q);
        const Cell cell = RandomCell(random);
        if (!IsHeadingClear(q, cell)) continue;
        KineJoint solved{};
        ASSERT_EQ(Inverse(Forward(q, cell), cell, solved), KINE_OK);
        for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(solved.Axis[k], q.Axis[k], 1e-7) << "axis " << k + 1;
    }
}

TEST(FourAxisRoundTrip, type_4110_returns_every_turn_of_axes_1_2_and_4)
{
    SeededRandom random(2002);
    const KineKinematicParam param = Scara();
    ASSERT_EQ(Kine_InitKinematicParam(4110, &param), KINE_OK);
    int compared = 0;
    for (int i = 0; i < 3000; ++i) {
        const KineJoint q = MakeJoints({random.Uniform(-2160, 2160), random.Uniform(-2160, 2160),
                                        random.Uniform(-9000, 9000), random.Uniform(-2160, 2160)});
        SCOPED_TRACE(::testing::Message() << i << " " << q);
        const Cell cell = RandomCell(random);
        // Stretched and folded arms are not told apart from each other.
        if (std::fabs(std::sin(InRadians(q.Axis[1]))) < 0.02 || !IsHeadingClear(q, cell)) continue;
        KineJoint solved{};
        const KinePose pose = Forward(q, cell);
        // The elbow within 0.03 degrees of as many quarters as Cfg3 leaves over is refused.
        const double elbow = std::remainder(q.Axis[1] + 180.0, 360.0);
        if (std::fabs(elbow - 90.0 * (pose.Cfg3 % 4)) < 0.05) continue;
        ASSERT_EQ(Inverse(pose, cell, solved), KINE_OK);
        for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(solved.Axis[k], q.Axis[k], kDeg) << "axis " << k + 1;
        ++compared;
    }
    EXPECT_GT(compared, 2500);
}

// With tilts the refinement stops within 1e-6 mm and rad of the target.
void ExpectPoseReproduced(std::uint32_t type, std::uint64_t seed)
{
    SeededRandom random(seed);
    for (int i = 0; i < 2000; ++i) {
        KineKinematicParam param = Scara();
        for (double* tilt : {&param.FourAxis.Link1TiltX, &param.FourAxis.Link2TiltX,
                             &param.FourAxis.Link1TiltY, &param.FourAxis.Link2TiltY})
            *tilt = random.Uniform(-3.0, 3.0);
        ASSERT_EQ(Kine_InitKinematicParam(type, &param), KINE_OK);
        const double side = random.Whole(0, 1) == 1 ? 1.0 : -1.0;
        const double elbow = side * random.Uniform(25.0, 155.0);
        const KineJoint q = MakeJoints({random.Uniform(-170, 170), type == 4 ? elbow : elbow - side * 180.0,
                                        random.Uniform(-500, 500), random.Uniform(-2160, 2160)});
        SCOPED_TRACE(::testing::Message() << type << " " << i << " " << q);
        const Cell cell = RandomCell(random);
        KinePose base{};
        ASSERT_EQ(Kine_JointToBasePos(&q, &cell.tool, &cell.wobj, &cell.load, &base), KINE_OK);
        if (std::fabs(base.Frame.A) > 160.0) continue;
        KineJoint solved{};
        const KinePose pose = Forward(q, cell);
        ASSERT_EQ(Inverse(pose, cell, solved), KINE_OK);
        EXPECT_TRUE(IsMatrix(MatrixOf(Forward(solved, cell).Frame), MatrixOf(pose.Frame), 2e-6, 2e-6));
    }
}

TEST(FourAxisRoundTrip, tilted_arms_reproduce_the_pose)
{
    ExpectPoseReproduced(4, 2003);
    ExpectPoseReproduced(4110, 2004);
}

TEST(FourAxisRoundTrip, four_quarter_turns_in_the_configuration_move_one_turn)
{
    SeededRandom random(2005);
    const KineKinematicParam param = Scara();
    ASSERT_EQ(Kine_InitKinematicParam(4110, &param), KINE_OK);
    for (int i = 0; i < 500; ++i) {
        // The elbow between -88 and -10 degrees, clear of the quarters that Cfg3 leaves over.
        const KineJoint q = MakeJoints(
            {random.Uniform(-170, 170), random.Uniform(92.0, 170.0), 100.0, random.Uniform(-300, 300)});
        SCOPED_TRACE(::testing::Message() << i << " " << q);
        const Cell cell = RandomCell(random);
        if (!IsHeadingClear(q, cell)) continue;
        KinePose pose = Forward(q, cell);
        const int turns[3] = {random.Whole(-6, 6), random.Whole(-6, 6), random.Whole(-6, 6)};
        pose.Cfg2 += 4 * turns[0];
        pose.Cfg3 += 4 * turns[1];
        pose.Cfg4 += 4 * turns[2];
        KineJoint solved{};
        ASSERT_EQ(Inverse(pose, cell, solved), KINE_OK);
        EXPECT_NEAR(solved.Axis[0], q.Axis[0] + 360.0 * turns[0], kDeg);
        EXPECT_NEAR(solved.Axis[1], q.Axis[1] + 360.0 * turns[1], kDeg);
        EXPECT_NEAR(solved.Axis[3], q.Axis[3] + 360.0 * turns[2], kDeg);
    }
}

}  // namespace
}  // namespace kine::test

// What arm type 4110 does differently: the zero of axis 2, the configuration, the turns of axes 1, 2 and 4.
#include <gtest/gtest.h>

#include <cmath>

#include "models/four_axis_4110_model.h"
#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"
#include "support/numbers.h"

namespace kine::test {
namespace {

FourAxis4110Model ModelOf(const NaiveArm& arm) { return Initialised<FourAxis4110Model>(4110, arm); }

TEST(FourAxis4110, serves_arm_type_4110_only)
{
    const KineKinematicParam param = ParamOf({});
    FourAxis4110Model model;
    EXPECT_EQ(model.InitModel(4110, &param), KINE_OK);
    EXPECT_EQ(model.InitModel(4, &param), KINE_ERR_MODEL_PARAM);
    EXPECT_EQ(model.InitModel(6, &param), KINE_ERR_MODEL_PARAM);
}

TEST(FourAxis4110, parameters_and_limits_are_its_own)
{
    FourAxisModel type4 = Initialised<FourAxisModel>(4, {});
    FourAxis4110Model type4110 = ModelOf(SteepArm());
    AxisLimits limits{};
    limits.upper.axis.fill(5.0);
    type4.SetAxisLimits(limits);
    AxisLimits read{};
    type4110.GetAxisLimits(read);
    EXPECT_EQ(read.upper.axis[0], 0.0);
    Joints q = JointsOf(0, 0, 0, 0);
    EXPECT_EQ(type4.ForwardKinematics(q, {}).AsPose().z, 80.0);
}

TEST(FourAxis4110, forward_adds_half_a_turn_to_axis_2_of_the_given_record)
{
    const FourAxis4110Model model = ModelOf(SteepArm());
    const FourAxisModel type4 = Initialised<FourAxisModel>(4, SteepArm());
    for (const double q2 : {0.0, -2.0, 1.25, 50.0}) {
        Joints q = JointsOf(0.4, q2, 3.0, 0.5);
        const ToolBlock tool = BlockWithTool({10, 20, 30, 0.4, 0.0, 0.0});
        const Pose pose = model.ForwardKinematics(q, tool);
        EXPECT_EQ(q.axis, JointsOf(0.4, q2 + kHalfTurn, 3.0, 0.5).axis);
        Joints elbow = q;
        const Pose same = type4.ForwardKinematics(elbow, tool);
        EXPECT_EQ(pose.x, same.x);
        EXPECT_EQ(pose.y, same.y);
        EXPECT_EQ(pose.z, same.z);
        EXPECT_EQ(pose.a, same.a);
    }
}

TEST(FourAxis4110, axis_2_at_zero_is_the_folded_arm)
{
    NaiveArm arm;
    Joints q = JointsOf(0.0, 0.0, 0.0, 0.0);
    const Pose pose = ModelOf(arm).ForwardKinematics(q, {});
    EXPECT_NEAR(pose.x, 425.0 - 375.0, 1e-12);
    EXPECT_NEAR(pose.y, 0.0, 1e-12);
}

TEST(FourAxis4110, flange_pose_adds_no_half_turn)
{
    const FourAxis4110Model model = ModelOf({});
    const Joints q = JointsOf(0.5, 0.25, 9.0, 3.0);
    const Pose pose = model.FlangePose(q);
    EXPECT_NEAR(pose.x, 425.0 * std::cos(0.5) + 375.0 * std::cos(0.75), 1e-12);
    EXPECT_NEAR(pose.a, 0.75, 1e-15);
    EXPECT_EQ(pose.z, 0.0);
    Joints copy = q;
    const Pose folded = model.ForwardKinematics(copy, {});
    EXPECT_NEAR(folded.x, 425.0 * std::cos(0.5) - 375.0 * std::cos(0.75), 1e-12);
}

struct ConfigCase
{
    double q1Deg, q2Deg, q4Deg;
    double wrappedDeg;
    KineArmConfig config;
};

TEST(FourAxis4110, configuration_and_wrapped_axis_2)
{
    const ConfigCase cases[] = {
        {10, 370, -10, 10, {-1, 0, 4, -1}},    {100, -10, 200, -10, {1, 1, -1, 2}},
        {-100, 0, 0, 0, {-1, -2, 0, 0}},       {0, 190, 0, -170, {1, 0, 2, 0}},
        {0, -190, 0, 170, {-1, 0, -3, 0}},     {720.5, 530, 95, 170, {-1, 8, 5, 1}},
        {0, -550, -350, 170, {-1, 0, -7, -4}}, {45, -3610, 0, -10, {1, 0, -41, 0}},
    };
    const FourAxis4110Model model = ModelOf({});
    for (const ConfigCase& c : cases) {
        SCOPED_TRACE(c.q2Deg);
        Joints q = JointsOf(InRadians(c.q1Deg), InRadians(c.q2Deg), 5.0, InRadians(c.q4Deg));
        const KineArmConfig config = model.GetArmConfig(q);
        EXPECT_EQ(config.Cfg1, c.config.Cfg1);
        EXPECT_EQ(config.Cfg2, c.config.Cfg2);
        EXPECT_EQ(config.Cfg3, c.config.Cfg3);
        EXPECT_EQ(config.Cfg4, c.config.Cfg4);
        EXPECT_NEAR(q.axis[1], InRadians(c.wrappedDeg), 1e-13);
        EXPECT_EQ(q.axis[0], InRadians(c.q1Deg));
        EXPECT_EQ(q.axis[3], InRadians(c.q4Deg));
    }
}

TEST(FourAxis4110, the_ends_of_the_wrap_go_to_the_other_side)
{
    // 0.5 + 0.5 turns truncate to one whole turn, on either side.
    const FourAxis4110Model model = ModelOf({});
    Joints up = JointsOf(0, kHalfTurn, 0, 0);
    EXPECT_EQ(model.GetArmConfig(up).Cfg1, 1);
    EXPECT_EQ(up.axis[1], -kHalfTurn);
    Joints down = JointsOf(0, -kHalfTurn, 0, 0);
    EXPECT_EQ(model.GetArmConfig(down).Cfg1, -1);
    EXPECT_EQ(down.axis[1], kHalfTurn);
    Joints below = JointsOf(0, std::nextafter(kHalfTurn, 0.0) - 1e-9, 0, 0);
    EXPECT_EQ(model.GetArmConfig(below).Cfg1, -1);
    EXPECT_GT(below.axis[1], 3.1);
}

TEST(FourAxis4110, whole_turns_beyond_the_integers_are_counted_in_double)
{
    const FourAxis4110Model model = ModelOf({});
    // 3e10 turns; the number in quarters saturates, the wrap still lands within half a turn and rounding.
    for (const double side : {1.0, -1.0}) {
        Joints q = JointsOf(0, side * 2 * kHalfTurn * 3e10, 0, 0);
        const KineArmConfig config = model.GetArmConfig(q);
        EXPECT_EQ(config.Cfg3, side > 0 ? INT32_MAX : INT32_MIN);
        EXPECT_LE(std::fabs(q.axis[1]), kHalfTurn + 1e-4);
    }
    Joints q = JointsOf(kNan, kNan, kNan, kNan);
    const KineArmConfig config = model.GetArmConfig(q);
    EXPECT_EQ(config.Cfg1, -1);
    EXPECT_EQ(config.Cfg2, INT32_MIN);
    EXPECT_EQ(config.Cfg3, INT32_MIN);
    EXPECT_EQ(config.Cfg4, INT32_MIN);
}

// Solves the pose of known joints with the configuration of these joints.
KineResult RoundTrip(const FourAxis4110Model& model, const Joints& known, const ToolBlock& tool,
                     Joints& solved)
{
    Joints forConfig = known;
    const KineArmConfig config = model.GetArmConfig(forConfig);
    Joints forPose = known;
    const Pose pose = model.ForwardKinematics(forPose, tool);
    return model.InverseKinematics(pose, tool, config, solved);
}

TEST(FourAxis4110, inverse_returns_the_joints_in_every_turn_of_axes_1_2_and_4)
{
    const FourAxis4110Model model = ModelOf({});
    const ToolBlock tool = BlockWithTool({30, -20, 10, 0.3, 0.0, 0.0});
    SeededRandom random(71);
    for (int i = 0; i < 500; ++i) {
        const Joints known = JointsOf(random.Uniform(-40, 40), random.Uniform(-40, 40),
                                      random.Uniform(-40, 40), random.Uniform(-40, 40));
        SCOPED_TRACE(::testing::Message() << known.axis[0] << " " << known.axis[1] << " " << known.axis[3]);
        if (std::fabs(std::sin(known.axis[1])) < 0.02) continue;
        const double heading = known.axis[0] + known.axis[1] + kHalfTurn + known.axis[3] + 0.3;
        if (std::fabs(std::remainder(heading, 2 * kHalfTurn)) > 3.14) continue;
        // With odd quarter turns of axis 2 the elbow is compared with these.
        const double elbow = std::remainder(known.axis[1] + kHalfTurn, 2 * kHalfTurn);
        Joints forConfig = known;
        const double quarters = (model.GetArmConfig(forConfig).Cfg3 % 4) * kHalfTurn / 2;
        if (std::fabs(elbow - quarters) < 0.001) continue;
        Joints solved{};
        ASSERT_EQ(RoundTrip(model, known, tool, solved), KINE_OK);
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_NEAR(solved.axis[k], known.axis[k], 1e-9) << "axis " << k + 1;
    }
}

TEST(FourAxis4110, inverse_of_a_tilted_arm_reproduces_the_pose)
{
    const FourAxis4110Model model = ModelOf(SteepArm());
    const ToolBlock tool = BlockWithTool({30, -20, 10, 0.3, 0.0, 0.0});
    int solvedCount = 0;
    for (const double q2 : {-2.6, -2.0, -1.4, -0.8, 0.8, 1.4, 2.0, 2.6}) {
        for (const double q1 : {-2.0, 0.4, 7.0}) {
            SCOPED_TRACE(q2);
            const Joints known = JointsOf(q1, q2, 4.0, -q1 - q2 - kHalfTurn + 0.3);
            Joints solved{};
            ASSERT_EQ(RoundTrip(model, known, tool, solved), KINE_OK);
            Joints a = known, b = solved;
            const Pose pose = model.ForwardKinematics(a, tool);
            const Pose reached = model.ForwardKinematics(b, tool);
            EXPECT_NEAR(reached.x, pose.x, 1e-6);
            EXPECT_NEAR(reached.y, pose.y, 1e-6);
            EXPECT_NEAR(reached.z, pose.z, 1e-6);
            EXPECT_NEAR(reached.a, pose.a, 1e-6);
            ++solvedCount;
        }
    }
    EXPECT_EQ(solvedCount, 24);
}

// The elbow at elbowDeg, axis 1 at 0.
KineResult SolveElbow(double elbowDeg, const KineArmConfig& config, Joints& solved)
{
    const double elbow = InRadians(elbowDeg);
    const Pose target{425.0 + 375.0 * std::cos(elbow), 375.0 * std::sin(elbow), 80.0, 0.0, 0.0, 0.0};
    return ModelOf({}).InverseKinematics(target, {}, config, solved);
}

TEST(FourAxis4110, singular_where_the_elbow_meets_the_quarter_turns_of_cfg3)
{
    const double mrad = InDegrees(0.001);  // in degrees
    const struct
    {
        double elbowDeg;
        std::int32_t side, cfg3;
        KineResult code;
    } cases[] = {
        {90.0, 1, 1, KINE_ERR_IK_SINGULAR},
        {90.0 + 0.499999 * mrad, 1, 1, KINE_ERR_IK_SINGULAR},
        {90.0 - 0.499999 * mrad, 1, 1, KINE_ERR_IK_SINGULAR},
        {90.0 + 0.500001 * mrad, 1, 1, KINE_OK},
        {90.0 - 0.500001 * mrad, 1, 1, KINE_OK},
        {90.0, 1, 5, KINE_ERR_IK_SINGULAR},  // the remainder counts
        {90.0, 1, -3, KINE_OK},              // -3 quarters are not 1
        {-90.0, -1, -1, KINE_ERR_IK_SINGULAR},
        {-90.0, -1, -5, KINE_ERR_IK_SINGULAR},
        {-90.0, -1, 1, KINE_OK},
        {90.0, 1, 0, KINE_OK},
        {90.0, 1, 2, KINE_OK},
        {0.3 * mrad, 1, 0, KINE_ERR_IK_SINGULAR},
        {0.3 * mrad, 1, 4, KINE_ERR_IK_SINGULAR},
        {0.3 * mrad, 1, 1, KINE_OK},  // not near 0 then
        {180.0 - 0.3 * mrad, 1, 2, KINE_ERR_IK_SINGULAR},
        {180.0 - 0.3 * mrad, 1, 0, KINE_OK},
        {-180.0 + 0.3 * mrad, -1, -2, KINE_ERR_IK_SINGULAR},
    };
    for (const auto& c : cases) {
        Joints solved = MarkedJoints();
        EXPECT_EQ(SolveElbow(c.elbowDeg, {c.side, 0, c.cfg3, 0}, solved), c.code)
            << c.elbowDeg << " " << c.cfg3;
        EXPECT_EQ(AreMarked(solved), c.code != KINE_OK);
    }
}

TEST(FourAxis4110, solved_turns_of_axis_2)
{
    // Elbow at 60 degrees, shifted by the whole turns of Cfg3. Then 2 * 180 * Cfg3 is added, 180 taken away
    // and the whole turns added again; full turns follow until the quarter lies within 2 of Cfg3.
    const struct
    {
        std::int32_t cfg3;
        double axis2Deg;
    } cases[] = {
        {0, -120.0},   // 0 + 60 - 180: quarter -2
        {1, 240.0},    // 360 + 60 - 180: quarter 2
        {2, 240.0},    // 720 + 60 - 180 = 600, quarter 6: one down, quarter 2
        {-1, -120.0},  // -360 + 60 - 180 = -480, quarter -6: one up, quarter -2
        {-2, -120.0},  // -720 + 60 - 180 = -840, quarter -10: two up, quarter -2
        {4, 600.0},    // 1440 + 420 - 180 + 360 = 2040, quarter 22: four down, quarter 6
        {-4, -480.0},  // -1440 - 300 - 180 - 360 = -2280, quarter -26: five up, quarter -6
    };
    for (const auto& c : cases) {
        Joints solved{};
        ASSERT_EQ(SolveElbow(60.0, {1, 0, c.cfg3, 0}, solved), KINE_OK) << c.cfg3;
        EXPECT_NEAR(InDegrees(solved.axis[1]), c.axis2Deg, 1e-9) << c.cfg3;
        Joints again = solved;
        EXPECT_NEAR(ModelOf({}).ForwardKinematics(again, {}).AsPose().x, 425.0 + 187.5, 1e-9);
    }
}

TEST(FourAxis4110, window_edge_below_zero_carries_5_6e_6_quarters)
{
    // Heading such that axis 4 comes out half a turn back and 7e-6 quarters more: type 4 keeps it.
    for (const double beyond : {4e-6, 7e-6}) {
        const double raw = -kHalfTurn - beyond * kHalfTurn / 2;
        const Pose target{425.0, 375.0, 80.0, kHalfTurn / 2 + raw, 0.0, 0.0};
        Joints joints{};
        ASSERT_EQ(ModelOf({}).InverseKinematics(target, {}, {1, 0, 0, 0}, joints), KINE_OK);
        EXPECT_NEAR(joints.axis[3], beyond < 5e-6 ? raw : raw + 2 * kHalfTurn, 1e-9);
    }
}

TEST(FourAxis4110, each_used_turn_number_beyond_a_million_is_0x6090)
{
    const FourAxis4110Model model = ModelOf({});
    const Pose far{9000.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    for (const std::int32_t bad : {1000001, -1000001, INT32_MAX, INT32_MIN}) {
        for (const KineArmConfig& config :
             {KineArmConfig{1, bad, 0, 0}, KineArmConfig{1, 0, bad, 0}, KineArmConfig{1, 0, 0, bad}}) {
            Joints joints = MarkedJoints();
            EXPECT_EQ(model.InverseKinematics(Pose{500, 0, 0, 0, 0, 0}, {}, config, joints), KINE_ERR_CONFIG);
            EXPECT_EQ(model.InverseKinematics(far, {}, config, joints), KINE_ERR_CONFIG);
            EXPECT_TRUE(AreMarked(joints));
        }
    }
}

TEST(FourAxis4110, codes_come_in_order)
{
    Joints joints = MarkedJoints();
    const FourAxis4110Model model = ModelOf({});
    EXPECT_EQ(model.InverseKinematics(Pose{9000, 0, 0, 0, 0, 0}, {}, {0, 0, 0, 0}, joints), KINE_ERR_CONFIG);
    EXPECT_EQ(model.InverseKinematics(Pose{9000, 0, 0, 0, 0, 0}, {}, {1, 0, 0, 0}, joints),
              KINE_ERR_IK_REACH);
    EXPECT_EQ(model.InverseKinematics(Pose{800, 0, 0, 0, 0, 0}, {}, {2, 0, 0, 0}, joints), KINE_ERR_CONFIG);
    EXPECT_EQ(model.InverseKinematics(Pose{800, 0, 0, 0, 0, 0}, {}, {1, 0, 0, 0}, joints),
              KINE_ERR_IK_SINGULAR);
    EXPECT_TRUE(AreMarked(joints));
}

TEST(FourAxis4110, inverse_does_not_look_at_the_joints_it_is_given)
{
    Joints first = JointsOf(1, 2, 3, 4);
    Joints second = MarkedJoints();
    ASSERT_EQ(SolveElbow(60.0, {1, 0, 0, 0}, first), KINE_OK);
    ASSERT_EQ(SolveElbow(60.0, {1, 0, 0, 0}, second), KINE_OK);
    EXPECT_EQ(first.axis, second.axis);
}

}  // namespace
}  // namespace kine::test

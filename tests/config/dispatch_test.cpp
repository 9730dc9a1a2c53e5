// The dispatch with a model: each operation reaches the model of the stored type and no other.
#include "config/dispatch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "support/naive_arms.h"
#include "support/records.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

// Different arms behind the three types, so that a wrong model shows.
KineKinematicParam LongScara()
{
    KineKinematicParam param = Scara();
    param.FourAxis.Link1Length = 425.0;
    param.FourAxis.Link2Length = 375.0;
    return param;
}

Store ThreeArms(std::int32_t type)
{
    const KineKinematicParam six = WristArm();
    const KineKinematicParam four = Scara();
    const KineKinematicParam other = LongScara();
    Store store{};
    ResetCell(store);
    for (const std::int32_t each : {kSix, kFour, k4110}) {
        store.arm = {each, kInitStateReady, 0};
        EXPECT_EQ(InitModel(store, each == kSix ? &six : each == kFour ? &four : &other), KINE_OK);
        AxisLimits limits = OpenLimits();
        EXPECT_EQ(SetAxisLimits(store, limits), KINE_OK);
    }
    store.arm.armType = type;
    return store;
}

constexpr ToolBlock kTool{{10.0, 20.0, 30.0, 0.4, 0.0, 0.0}, {}};

Joints SomeJoints()
{
    Joints joints{};
    joints.axis = {0.3, -0.5, 0.7, 1.1, 0.9, -1.3, 5.0, 6.0};
    joints.extAxis = {11.0, 12.0, 13.0, 14.0, 15.0, 16.0};
    return joints;
}

Mat4 ExpectedFlange(std::int32_t type, const Joints& q)
{
    if (type == kSix) return NaiveSixAxisChain(WristArm().SixAxis, q.axis).flange;
    // Arm type 4110 counts its axis 2 from the folded elbow.
    const double elbow = type == kFour ? q.axis[1] : q.axis[1] + kHalfTurn;
    const KineKinematicParam param = type == kFour ? Scara() : LongScara();
    return NaiveFourAxisFlange(param.FourAxis, q.axis[0], elbow, q.axis[2], q.axis[3]);
}

}  // namespace

TEST(ForwardKinematics, reaches_the_model_of_the_type_and_leaves_the_joints_alone)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        const Store store = ThreeArms(type);
        const Joints joints = SomeJoints();
        LazyPose pose;
        EXPECT_EQ(ForwardKinematics(store, joints, kTool, pose), 0u);
        EXPECT_TRUE(PoseIs(pose, ExpectedFlange(type, joints) * MatrixOf(kTool.frame))) << type;
        EXPECT_TRUE(SameBits(joints, SomeJoints()));
    }
}

TEST(ForwardKinematics, with_the_configuration_is_both_calls_in_one)
{
    SeededRandom random(8120);
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        const Store store = ThreeArms(type);
        for (int i = 0; i < 200; ++i) {
            Joints joints = SomeJoints();
            for (double& axis : joints.axis) axis = random.Uniform(-7.0, 7.0);
            LazyPose pose, expectedPose;
            KineArmConfig config{}, expectedConfig{};
            EXPECT_EQ(ForwardKinematics(store, joints, kTool, pose, config), 0u);
            EXPECT_EQ(ForwardKinematics(store, joints, kTool, expectedPose), 0u);
            EXPECT_EQ(GetArmConfig(store, joints, expectedConfig), 0u);
            EXPECT_TRUE(SamePoseBits(pose, expectedPose));
            EXPECT_TRUE(SameBits(config, expectedConfig));
        }
    }
}

TEST(FlangePose, reaches_the_model_of_the_type)
{
    const Joints q = SomeJoints();
    Pose pose{};
    EXPECT_EQ(FlangePose(ThreeArms(kSix), q, pose), 0u);
    EXPECT_TRUE(PoseIs(pose, NaiveSixAxisChain(WristArm().SixAxis, q.axis).frame[5]));

    // In the plane, with the heading of the forearm; arm type 4110 takes axis 2 as the elbow angle here.
    Mat4 forearm = NaiveFourAxisFlange(Scara().FourAxis, q.axis[0], q.axis[1], 0.0, 0.0);
    forearm[2][3] = 0.0;
    EXPECT_EQ(FlangePose(ThreeArms(kFour), q, pose), 0u);
    EXPECT_TRUE(PoseIs(pose, forearm));

    forearm = NaiveFourAxisFlange(LongScara().FourAxis, q.axis[0], q.axis[1], 0.0, 0.0);
    forearm[2][3] = 0.0;
    EXPECT_EQ(FlangePose(ThreeArms(k4110), q, pose), 0u);
    EXPECT_TRUE(PoseIs(pose, forearm));
}

TEST(GetArmConfig, reaches_the_model_of_the_type_and_leaves_the_joints_alone)
{
    Joints joints{};
    // Degrees: 100, 370, 60, -100, -10, 280.
    joints.axis = {InRadians(100.0),
                   InRadians(370.0),
                   InRadians(60.0),
                   InRadians(-100.0),
                   InRadians(-10.0),
                   InRadians(280.0),
                   0.0,
                   0.0};
    const Joints before = joints;
    KineArmConfig config{};

    // Quarter turns of axes 1, 4 and 6. Axis 2 at 10 degrees and axis 3 at 60: the wrist centre is in front
    // (100 - 705 sin 10 + 755 cos 70 - 135 sin 70 = 109 mm), the elbow on the near side (60 < 90 -
    // atan(135 / 755) = 79.9), axis 5 negative.
    EXPECT_EQ(GetArmConfig(ThreeArms(kSix), joints, config), 0u);
    EXPECT_TRUE(SameBits(config, KineArmConfig{1, -2, 3, 1}));

    EXPECT_EQ(GetArmConfig(ThreeArms(kFour), joints, config), 0u);
    EXPECT_TRUE(SameBits(config, KineArmConfig{1, 0, 0, -2}));

    // Axis 2 wraps to 10 degrees for the sign, not for its own number.
    EXPECT_EQ(GetArmConfig(ThreeArms(k4110), joints, config), 0u);
    EXPECT_TRUE(SameBits(config, KineArmConfig{-1, 1, 4, -2}));
    EXPECT_TRUE(SameBits(joints, before));
}

TEST(IsSingularity, any_bit_of_the_model_is_reported_as_one_code)
{
    // Wrist arm: (axis 2, axis 3, axis 5) that are singular in one way each; e is the elbow angle.
    const double e = std::atan2(135.0, 755.0);
    struct Case
    {
        const char* name;
        double q2, q3, q5;
        KineResult expected;
    };
    // Shoulder: with axis 3 at -e the line from elbow to wrist centre is level at q2 = 0, so that the wrist
    // centre lies a1 - a2 sin q2 + (length of the line) cos q2 off the axis of joint 1; bisected to 0.
    double low = 0.5;
    double high = 1.5;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (low + high);
        const double distance =
            100.0 - 705.0 * std::sin(middle) + std::hypot(135.0, 755.0) * std::cos(middle);
        (distance > 0.0 ? low : high) = middle;
    }
    const Case cases[] = {{"none", 0.0, 0.0, 1.0, 0u},
                          {"wrist", 0.0, 0.0, 0.0, 0xFFFFFFFFu},
                          {"elbow", 0.0, kQuarterTurn - e, 1.0, 0xFFFFFFFFu},
                          {"shoulder", low, -e, 1.0, 0xFFFFFFFFu}};
    const Store store = ThreeArms(kSix);
    for (const Case& c : cases) {
        Joints joints{};
        joints.axis = {0.0, c.q2, c.q3, 0.0, c.q5, 0.0, 0.0, 0.0};
        for (const std::uint32_t kind : {0u, 1u, 2u}) {
            EXPECT_EQ(IsSingularity(store, joints, kind), c.expected) << c.name << ", kind " << kind;
        }
        for (const std::uint32_t kind : {3u, 0xFFFFFFFFu}) {
            EXPECT_EQ(IsSingularity(store, joints, kind), 0u) << c.name << ", kind " << kind;
        }
    }
}

TEST(IsSingularity, kind_is_handed_on)
{
    // Wrist: sine 0.06 lies between the thresholds 0.05 and 0.087266.
    Joints joints{};
    joints.axis[4] = std::asin(0.06);
    EXPECT_EQ(IsSingularity(ThreeArms(kSix), joints, 1), 0u);
    EXPECT_EQ(IsSingularity(ThreeArms(kSix), joints, 2), 0xFFFFFFFFu);

    // Elbow of the four-axis arms: 0.03 rad lies between 0.0192 and 0.0524.
    joints.axis = {};
    joints.axis[1] = 0.03;
    for (const std::int32_t type : {kFour, k4110}) {
        EXPECT_EQ(IsSingularity(ThreeArms(type), joints, 0), 0u);
        EXPECT_EQ(IsSingularity(ThreeArms(type), joints, 2), 0xFFFFFFFFu);
        EXPECT_EQ(IsSingularity(ThreeArms(type), joints, 3), 0u);
    }
}

TEST(InverseKinematics, returns_to_the_joints_of_every_type)
{
    Joints joints{};
    joints.axis = {0.3, -0.5, 0.7, 1.1, 0.9, -1.3, 0.0, 0.0};
    struct Case
    {
        std::int32_t type;
        KineArmConfig config;
    };
    // Wrist arm: the wrist centre is in front (100 + 705 sin 0.5 + 755 cos 0.2 - 135 sin 0.2 > 0), the elbow
    // near, axis 5 positive. Arm type 4: axis 2 negative. Arm type 4110: axis 2 negative, quarter turns of
    // axes 1, 2 and 4.
    const Case cases[] = {{kSix, {0, 0, -1, 0}}, {kFour, {-1, 0, 0, 0}}, {k4110, {1, 0, -1, 0}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        const Pose target = PoseOf(ExpectedFlange(c.type, joints) * MatrixOf(kTool.frame));
        Joints solution = Untouched<Joints>();
        EXPECT_EQ(InverseKinematics(ThreeArms(c.type), target, kTool, c.config, solution), 0u);
        for (std::size_t i = 0; i < (c.type == kSix ? 6u : 4u); ++i) {
            EXPECT_NEAR(solution.axis[i], joints.axis[i], 1e-9) << i;
        }
        EXPECT_TRUE(SameBits(solution.extAxis, Untouched<Joints>().extAxis));
    }
}

TEST(InverseKinematics, codes_of_the_model_pass_through_and_the_joints_stay)
{
    struct Case
    {
        std::int32_t type;
        Pose target;
        KineArmConfig config;
        KineResult expected;
    };
    // Out of reach; no such posture; singular. The wrist centre of the wrist arm lies 85 mm behind its
    // flange; the elbow of the four-axis arms is stretched at the sum of the links.
    const Case cases[] = {{kSix, {9000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0, 0, 0, 0}, 0x6097u},
                          {kSix, {900.0, 0.0, 600.0, 0.0, 1.0, 0.0}, {0, 0, 0, 8}, 0x6090u},
                          {kSix, {0.0, 0.0, 1700.0, 0.0, 0.0, 0.0}, {0, 0, 0, 0}, 0x6096u},
                          {kFour, {9000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}, 0x6094u},
                          {kFour, {400.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {0, 0, 0, 0}, 0x6090u},
                          {kFour, {600.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}, 0x6093u},
                          {k4110, {9000.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}, 0x6094u},
                          {k4110, {400.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {2, 0, 0, 0}, 0x6090u},
                          {k4110, {800.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1, 0, 0, 0}, 0x6093u}};
    for (const Case& c : cases) {
        Joints solution = Untouched<Joints>();
        EXPECT_EQ(InverseKinematics(ThreeArms(c.type), c.target, ToolBlock{}, c.config, solution), c.expected)
            << c.type;
        EXPECT_TRUE(IsUntouched(solution)) << c.type << ", " << c.expected;
    }
}

TEST(InitModel, sets_the_family_and_works_in_every_state)
{
    struct Case
    {
        std::int32_t type, family;
        KineKinematicParam param;
    };
    const Case cases[] = {{kFour, 4, Scara()}, {kSix, 6, WristArm()}, {k4110, 4, Scara()}};
    for (const Case& c : cases) {
        for (const std::int32_t state : {0, 1, 2}) {
            Store store{};
            store.arm = {c.type, state, 99};
            EXPECT_EQ(InitModel(store, &c.param), 0u);
            EXPECT_EQ(store.arm.modelFamily, c.family) << c.type;
            EXPECT_EQ(store.arm.armType, c.type);
            EXPECT_EQ(store.arm.initState, state);
        }
    }
}

TEST(InitModel, refused_parameters_give_the_code_of_the_model_with_the_family_set)
{
    struct Case
    {
        std::int32_t type, family;
    };
    for (const Case& c : {Case{kFour, 4}, Case{kSix, 6}, Case{k4110, 4}}) {
        // Zero is below the bound of a length in every arm.
        const KineKinematicParam zero{};
        Store store{};
        store.arm = {c.type, 1, 99};
        EXPECT_EQ(InitModel(store, &zero), 0x6000u);
        EXPECT_EQ(store.arm.modelFamily, c.family);
        EXPECT_EQ(InitModel(store, nullptr), 0x6000u);
        EXPECT_EQ(store.arm.initState, 1);
    }
}

TEST(InitModel, clears_the_limits_of_its_own_model_only)
{
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        Store store = ThreeArms(type);
        const KineKinematicParam param = type == kSix ? Puma() : Scara();
        EXPECT_EQ(InitModel(store, &param), 0u);
        for (const std::int32_t each : {kFour, kSix, k4110}) {
            store.arm.armType = each;
            AxisLimits stored{};
            EXPECT_EQ(GetAxisLimits(store, stored), 0u);
            EXPECT_EQ(stored.upper.axis[0], each == type ? 0.0 : 999.0) << type << ", " << each;
            EXPECT_EQ(stored.lower.axis[3], each == type ? 0.0 : -999.0) << type << ", " << each;
        }
    }
}

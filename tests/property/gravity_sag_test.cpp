// The six-axis arm bends the way its load pulls, by virtual work: every joint gives way by compliance times
// torque, the torque is the pull times the path it opens, so the path along the pull is the sum of
// compliance times torque squared, to first order, and never negative.
#include <gtest/gtest.h>

#include "six_axis_cases.h"

namespace kine::test {
namespace {

using Vector = std::array<double, 3>;

Vector FlangeAt(const KineKinematicParam& param, const KineJoint& q, const KineLoad& load)
{
    EXPECT_EQ(Kine_InitKinematicParam(6, &param), KINE_OK);
    const KineTool tool = HeldTool();
    const KineWobj wobj = FixedWobj();
    KinePose pose{};
    EXPECT_EQ(Kine_JointToBasePos(&q, &tool, &wobj, &load, &pose), KINE_OK);
    return {pose.Frame.X, pose.Frame.Y, pose.Frame.Z};
}

double Along(const Vector& direction, const Vector& from, const Vector& to)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) sum += direction[i] * (to[i] - from[i]);
    return sum;
}

TEST(GravitySag, the_flange_moves_along_the_pull_by_the_work_of_the_joints)
{
    SeededRandom random(4001);
    for (int i = 0; i < 500; ++i) {
        KineKinematicParam rigid = WristArm();
        // Any lean of the base: about X by mountX, then about Y.
        rigid.SixAxis.mountX = random.Uniform(-60, 60);
        rigid.SixAxis.mountY = random.Uniform(-60, 60);
        KineKinematicParam soft = rigid;
        soft.SixAxis.k2 = 6.0e6;
        soft.SixAxis.k3 = 4.0e6;
        soft.SixAxis.k5 = 1.0e6;
        KineJoint q{};
        for (std::size_t k = 0; k < 6; ++k) q.Axis[k] = random.Uniform(-180, 180);
        SCOPED_TRACE(::testing::Message()
                     << i << " " << q << " mount " << rigid.SixAxis.mountX << " " << rigid.SixAxis.mountY);
        const KineLoad load = MakeLoad(random.Uniform(1.0, 20.0), 0, 0, 0);
        const double x = InRadians(rigid.SixAxis.mountX), y = InRadians(rigid.SixAxis.mountY);
        const Vector down{std::cos(x) * std::sin(y), -std::sin(x), -std::cos(x) * std::cos(y)};

        const Vector straight = FlangeAt(rigid, q, load);
        double expected = 0.0;
        const double stiffness[3] = {6.0e6, 4.0e6, 1.0e6};
        const std::size_t joints[3] = {1, 2, 4};
        for (std::size_t k = 0; k < 3; ++k) {
            constexpr double kStepDeg = 1e-3;
            KineJoint plus = q, minus = q;
            plus.Axis[joints[k]] += kStepDeg;
            minus.Axis[joints[k]] -= kStepDeg;
            const double lever = Along(down, FlangeAt(rigid, minus, load), FlangeAt(rigid, plus, load)) /
                                 InRadians(2 * kStepDeg);
            const double pull = load.Mass * 9.8;  // N
            expected += pull * lever * lever / (stiffness[k] * 1000.0);
        }
        const double moved = Along(down, straight, FlangeAt(soft, q, load));
        EXPECT_GE(moved, -1e-9);
        EXPECT_NEAR(moved, expected, 1e-6 + 2e-3 * expected);
    }
}

TEST(GravitySag, a_heavier_load_sags_more)
{
    SeededRandom random(4002);
    const KineKinematicParam param = PumaWithGravity();
    for (int i = 0; i < 300; ++i) {
        // The arm stretched out to one side.
        const KineJoint q =
            MakeJoints({random.Uniform(-180, 180), random.Uniform(60, 110), random.Uniform(-20, 40),
                        random.Uniform(-180, 180), random.Uniform(-180, 180), random.Uniform(-180, 180)});
        SCOPED_TRACE(::testing::Message() << i << " " << q);
        double before = FlangeAt(param, q, MakeLoad(0.0, 0, 0, 0))[2];
        for (const double mass : {0.5, 1.0, 2.0, 4.0}) {
            const double height = FlangeAt(param, q, MakeLoad(mass, 0, 0, 0))[2];
            EXPECT_LT(height, before) << mass;
            before = height;
        }
    }
}

}  // namespace
}  // namespace kine::test

// The singularity query against its definition, near and far.
#include <gtest/gtest.h>

#include "six_axis_cases.h"

namespace kine::test {
namespace {

struct Thresholds
{
    double shoulderMm, elbow, wrist;
};

Thresholds ThresholdsOf(std::uint32_t kind)
{
    if (kind <= 1) return {20.0, 0.05, 0.05};
    if (kind == 2) return {30.0, 0.087266, 0.087266};
    return {0.0, 0.0, 0.0};
}

// Joints drawn so that every condition is often met and often just missed.
KineJoint NearlySingularJoints(SeededRandom& random, const KineSixAxisParam& p)
{
    KineJoint q = RegularJoints(random, p, 400.0);
    switch (random.Whole(0, 3)) {
        case 0: q.Axis[4] = 180.0 * random.Whole(-2, 2) + random.Uniform(-7, 7); break;
        case 1:
            q.Axis[2] = 90.0 - ElbowAngleDeg(p) + 180.0 * random.Whole(-2, 2) + random.Uniform(-7, 7);
            break;
        case 2:
            // Bisects axis 2 to where the wrist centre crosses the axis of joint 1, if it does.
            {
                double low = 0.0, high = 180.0;
                for (int i = 0; i < 40; ++i) {
                    q.Axis[1] = (low + high) / 2;
                    (WristDistance(p, q) > 0.0 ? low : high) = q.Axis[1];
                }
                q.Axis[1] += random.Uniform(-4, 4);
            }
            break;
        default: break;
    }
    return q;
}

TEST(SingularityProperty, of_the_six_axis_arm_is_shoulder_elbow_or_wrist)
{
    SeededRandom random(6001);
    int singular[3] = {0, 0, 0};
    int regular = 0;
    for (const auto& param : {Puma(), WristArm()}) {
        const KineSixAxisParam& p = param.SixAxis;
        ASSERT_EQ(Kine_InitKinematicParam(6, &param), KINE_OK);
        for (int i = 0; i < 4000; ++i) {
            const KineJoint q = NearlySingularJoints(random, p);
            SCOPED_TRACE(::testing::Message() << i << " " << q);
            const double shoulder = std::fabs(WristDistance(p, q));
            const double q3 = InRadians(q.Axis[2]);
            const double elbow =
                std::fabs((p.d4 * std::cos(q3) - p.a3 * std::sin(q3)) / std::sqrt(p.a3 * p.a3 + p.d4 * p.d4));
            const double wrist = std::fabs(std::sin(InRadians(q.Axis[4])));
            for (const std::uint32_t kind : {0U, 1U, 2U, 3U, 77U}) {
                const Thresholds t = ThresholdsOf(kind);
                const bool near = std::fabs(shoulder - t.shoulderMm) < 1e-6 ||
                                  std::fabs(elbow - t.elbow) < 1e-9 || std::fabs(wrist - t.wrist) < 1e-9;
                if (near && kind <= 2) continue;
                const bool expected = shoulder < t.shoulderMm || elbow < t.elbow || wrist < t.wrist;
                EXPECT_EQ(Kine_IsSingularity(&q, kind), expected ? KINE_SINGULAR : KINE_OK) << kind;
                if (kind == 2) {
                    singular[0] += shoulder < t.shoulderMm ? 1 : 0;
                    singular[1] += elbow < t.elbow ? 1 : 0;
                    singular[2] += wrist < t.wrist ? 1 : 0;
                    regular += expected ? 0 : 1;
                }
            }
        }
    }
    for (const int count : singular) EXPECT_GT(count, 300);
    EXPECT_GT(regular, 1000);
}

TEST(SingularityProperty, of_the_four_axis_arms_is_axis_2_shortly_above_a_half_turn)
{
    SeededRandom random(6002);
    const KineKinematicParam param = Scara();
    int singular = 0;
    for (const std::uint32_t type : {4U, 4110U}) {
        ASSERT_EQ(Kine_InitKinematicParam(type, &param), KINE_OK);
        for (int i = 0; i < 4000; ++i) {
            const double q2 = 180.0 * random.Whole(-5, 5) + random.Uniform(-5, 5);
            const KineJoint q = MakeJoints({random.Uniform(-400, 400), q2, 0.0, 0.0});
            SCOPED_TRACE(::testing::Message() << i << " " << q);
            // Degrees beyond the last half turn on the way from zero.
            const double above = std::fmod(std::fabs(q2), 180.0);
            for (const std::uint32_t kind : {0U, 1U, 2U, 3U}) {
                const double threshold = kind == 2 ? 0.0524 : kind < 2 ? 0.0192 : 0.0;
                if (std::fabs(InRadians(above) - threshold) < 1e-9 || above > 180.0 - 1e-9) continue;
                const bool expected = InRadians(above) < threshold;
                EXPECT_EQ(Kine_IsSingularity(&q, kind), expected ? KINE_SINGULAR : KINE_OK) << kind;
                singular += expected ? 1 : 0;
            }
        }
    }
    EXPECT_GT(singular, 1000);
}

}  // namespace
}  // namespace kine::test

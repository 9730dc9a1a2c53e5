// Identities of products, inverses and angle conversions.
#include <gtest/gtest.h>

#include <cmath>

#include "math/transform.h"
#include "support/naive_transform.h"

namespace kine::test {
namespace {

using Flat = std::array<double, 12>;

Flat FlatOf(const HomMatrix& m)
{
    return {m.r.r00, m.r.r01, m.r.r02, m.r.r10, m.r.r11, m.r.r12,
            m.r.r20, m.r.r21, m.r.r22, m.t.x,   m.t.y,   m.t.z};
}

void ExpectSame(const HomMatrix& a, const HomMatrix& b, double tolerance)
{
    const Flat x = FlatOf(a), y = FlatOf(b);
    for (std::size_t i = 0; i < 12; ++i) EXPECT_NEAR(x[i], y[i], tolerance) << "element " << i;
}

const HomMatrix kIdentity{kIdentityRotation, {0.0, 0.0, 0.0}};

// Any invertible affine matrix: scaled and sheared.
HomMatrix RandomAffine(SeededRandom& random)
{
    for (;;) {
        HomMatrix m{};
        for (double* e :
             {&m.r.r00, &m.r.r01, &m.r.r02, &m.r.r10, &m.r.r11, &m.r.r12, &m.r.r20, &m.r.r21, &m.r.r22})
            *e = random.Uniform(-3, 3);
        m.t = {random.Uniform(-9, 9), random.Uniform(-9, 9), random.Uniform(-9, 9)};
        if (std::fabs(Dot(AxisX(m.r), CrossProduct(AxisY(m.r), AxisZ(m.r)))) > 1.0) return m;
    }
}

TEST(TransformIdentities, a_pose_survives_the_way_through_its_matrix)
{
    SeededRandom random(7001);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const Pose p = RandomPose(random, 900.0);
        const Pose q = MatrixToPose(PoseToMatrix(p));
        EXPECT_EQ(q.x, p.x);
        EXPECT_EQ(q.y, p.y);
        EXPECT_EQ(q.z, p.z);
        EXPECT_NEAR(q.a, p.a, 1e-13);
        EXPECT_NEAR(q.b, p.b, 1e-13);
        EXPECT_NEAR(q.c, p.c, 1e-13);
    }
}

TEST(TransformIdentities, a_matrix_times_its_inverse_is_the_identity)
{
    SeededRandom random(7002);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix rigid = PoseToMatrix(RandomPose(random, 900.0));
        ExpectSame(rigid * MatrixInverse(rigid), kIdentity, 1e-12);
        ExpectSame(MatrixInverse(rigid) * rigid, kIdentity, 1e-12);
        ExpectSame(MatrixInverse(MatrixInverse(rigid)), rigid, 1e-11);
        const HomMatrix affine = RandomAffine(random);
        ExpectSame(affine * MatrixInverse(affine), kIdentity, 1e-12);
        ExpectSame(MatrixInverse(affine) * affine, kIdentity, 1e-12);
    }
}

TEST(TransformIdentities, the_inverse_of_a_product_is_the_product_of_inverses_reversed)
{
    SeededRandom random(7003);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix a = RandomAffine(random), b = RandomAffine(random);
        ExpectSame(MatrixInverse(a * b), MatrixInverse(b) * MatrixInverse(a), 1e-9);
    }
}

TEST(TransformIdentities, products_associate_and_the_identity_is_neutral)
{
    SeededRandom random(7004);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix a = RandomAffine(random), b = RandomAffine(random), c = RandomAffine(random);
        ExpectSame((a * b) * c, a * (b * c), 1e-11);
        ExpectSame(a * kIdentity, a, 0.0);
        ExpectSame(kIdentity * a, a, 0.0);
    }
}

TEST(TransformIdentities, the_inverse_of_a_rigid_matrix_has_the_transposed_rotation)
{
    SeededRandom random(7005);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix m = PoseToMatrix(RandomPose(random, 900.0));
        const HomMatrix inverse = MatrixInverse(m);
        ExpectSame({inverse.r, {}}, {Transpose(m.r), {}}, 1e-15);
        const Vec3 origin = Rotate(m.r, inverse.t) + m.t;
        EXPECT_NEAR(Norm(origin), 0.0, 1e-12);
    }
}

TEST(TransformIdentities, the_two_differences_of_poses_are_one_motion)
{
    // first * difference(own frame) = second; difference(reference) turns second's rotation out of first's.
    SeededRandom random(7006);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Pose first = RandomPose(random, 900.0), second = RandomPose(random, 900.0);
        const HomMatrix a = PoseToMatrix(first), b = PoseToMatrix(second);
        ExpectSame(a * PoseToMatrix(PoseDiff(first, second, -1)), b, 1e-11);
        const HomMatrix outer = PoseToMatrix(PoseDiff(first, second, 1));
        ExpectSame({RotMultiply(outer.r, a.r), a.t + outer.t}, b, 1e-11);
    }
}

}  // namespace
}  // namespace kine::test

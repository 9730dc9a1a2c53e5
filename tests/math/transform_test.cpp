#include "math/transform.h"

#include <gtest/gtest.h>

#include <array>

#include "math/angles.h"
#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::ExpectNear;
using test::kNan;
using test::RandomPose;

// Any invertible affine transform: scaled, sheared and mirrored.
HomMatrix RandomAffine(test::SeededRandom& random)
{
    for (;;) {
        const auto u = [&random] { return random.Uniform(-3.0, 3.0); };
        const HomMatrix m{{u(), u(), u(), u(), u(), u(), u(), u(), u()}, {3.0 * u(), 3.0 * u(), 3.0 * u()}};
        if (std::fabs(Dot(AxisX(m.r), CrossProduct(AxisY(m.r), AxisZ(m.r)))) > 1.0) return m;
    }
}

Vec3 Apply(const HomMatrix& m, const Vec3& p)
{
    return {m.r.r00 * p.x + m.r.r01 * p.y + m.r.r02 * p.z + m.t.x,
            m.r.r10 * p.x + m.r.r11 * p.y + m.r.r12 * p.z + m.t.y,
            m.r.r20 * p.x + m.r.r21 * p.y + m.r.r22 * p.z + m.t.z};
}

constexpr HomMatrix kIdentity{kIdentityRotation, {0.0, 0.0, 0.0}};
constexpr Vec3 kProbes[] = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

TEST(HomMatrix, is_the_rotation_block_followed_by_the_translation)
{
    const HomMatrix m{{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}, {9.0, 10.0, 11.0}};
    std::array<double, 12> elements{};
    static_assert(sizeof m == sizeof elements);
    std::memcpy(elements.data(), &m, sizeof m);
    for (std::size_t k = 0; k < 12; ++k) EXPECT_EQ(elements[k], static_cast<double>(k));
}

TEST(Pose, is_position_then_angles)
{
    const Pose pose{0.0, 1.0, 2.0, 3.0, 4.0, 5.0};
    std::array<double, 6> elements{};
    static_assert(sizeof pose == sizeof elements);
    std::memcpy(elements.data(), &pose, sizeof pose);
    for (std::size_t k = 0; k < 6; ++k) EXPECT_EQ(elements[k], static_cast<double>(k));
    EXPECT_EQ(pose.a, 3.0);
    EXPECT_EQ(pose.c, 5.0);
}

TEST(PoseToMatrix, keeps_the_position_and_turns_the_angles_into_the_rotation)
{
    // Rz(90 degrees): x to y, y to -x.
    const HomMatrix m = PoseToMatrix({1.0, 2.0, 3.0, kHalfPi, 0.0, 0.0});
    ExpectNear(m.t, {1.0, 2.0, 3.0}, 0.0);
    ExpectNear(m.r, {0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0}, 1e-16);
}

TEST(PoseToMatrix, takes_a_about_z_b_about_y_and_c_about_x)
{
    const HomMatrix m = PoseToMatrix({0.0, 0.0, 0.0, 0.3, 0.4, 0.5});
    EXPECT_DOUBLE_EQ(m.r.r20, -std::sin(0.4));
    EXPECT_DOUBLE_EQ(m.r.r10, std::sin(0.3) * std::cos(0.4));
    EXPECT_DOUBLE_EQ(m.r.r21, std::cos(0.4) * std::sin(0.5));
}

TEST(MatrixToPose, reads_position_and_angles)
{
    // Rx(90 degrees): y to z, z to -y.
    const Pose pose = MatrixToPose({{1.0, 0.0, 0.0, 0.0, 0.0, -1.0, 0.0, 1.0, 0.0}, {4.0, 5.0, 6.0}});
    ExpectNear(pose, {4.0, 5.0, 6.0, 0.0, 0.0, kHalfPi}, 0.0, 0.0);
}

TEST(MatrixToPose, uses_the_tolerant_gimbal_rule)
{
    // 9e-6 in the first column: inside the tolerance, so a is 0.
    const Pose pose = MatrixToPose({{9e-6, 0.6, 0.0, 9e-6, 0.8, 0.0, -1.0, 0.0, 0.0}, {0.0, 0.0, 0.0}});
    ExpectNear(pose, {0.0, 0.0, 0.0, 0.0, kHalfPi, std::atan2(0.6, 0.8)}, 0.0, 0.0);
}

TEST(MatrixToPose, undoes_pose_to_matrix)
{
    test::SeededRandom random(100);
    for (int i = 0; i < 2000; ++i) {
        const Pose pose = RandomPose(random, 900.0);
        SCOPED_TRACE(::testing::Message() << pose.a << ' ' << pose.b << ' ' << pose.c);
        ExpectNear(MatrixToPose(PoseToMatrix(pose)), pose, 0.0, 1e-14);
    }
    for (const double b : {-1.5, 1.5}) {
        ExpectNear(MatrixToPose(PoseToMatrix({1.0, 2.0, 3.0, kPi, b, kPi})), {1.0, 2.0, 3.0, kPi, b, kPi},
                   0.0, 1e-14);
    }
}

TEST(MatrixMultiply, applies_the_right_factor_first)
{
    // Turn about Z by 90 degrees after a step along X: the step comes out along Y.
    const HomMatrix turn{{0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0}, {10.0, 20.0, 30.0}};
    const HomMatrix step{kIdentityRotation, {5.0, 0.0, 0.0}};
    ExpectNear(MatrixMultiply(turn, step), {turn.r, {10.0, 25.0, 30.0}}, 0.0);
    ExpectNear(MatrixMultiply(step, turn), {turn.r, {15.0, 20.0, 30.0}}, 0.0);
    ExpectNear(turn * step, MatrixMultiply(turn, step), 0.0);
}

TEST(MatrixMultiply, maps_points_like_its_factors_in_turn)
{
    test::SeededRandom random(101);
    for (int i = 0; i < 100; ++i) {
        const HomMatrix a = RandomAffine(random);
        const HomMatrix b = RandomAffine(random);
        SCOPED_TRACE(i);
        for (const Vec3& p : kProbes) ExpectNear(Apply(a * b, p), Apply(a, Apply(b, p)), 1e-12);
    }
}

TEST(MatrixMultiply, associates_and_has_the_identity_for_neutral_element)
{
    test::SeededRandom random(107);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix a = RandomAffine(random);
        const HomMatrix b = RandomAffine(random);
        const HomMatrix c = RandomAffine(random);
        ExpectNear((a * b) * c, a * (b * c), 1e-11);
        ExpectNear(a * kIdentity, a, 0.0);
        ExpectNear(kIdentity * a, a, 0.0);
    }
}

TEST(MatrixInverse, of_scaled_block_is_exact)
{
    const HomMatrix m{{2.0, 0.0, 0.0, 0.0, -4.0, 0.0, 0.0, 0.0, 8.0}, {6.0, 12.0, -16.0}};
    ExpectNear(MatrixInverse(m), {{0.5, 0.0, 0.0, 0.0, -0.25, 0.0, 0.0, 0.0, 0.125}, {-3.0, 3.0, 2.0}}, 0.0);
}

TEST(MatrixInverse, of_sheared_block_is_exact)
{
    // 1 1 0 / 0 1 2 / 0 0 1: back substitution gives 1 -1 2 / 0 1 -2 / 0 0 1.
    const HomMatrix m{{1.0, 1.0, 0.0, 0.0, 1.0, 2.0, 0.0, 0.0, 1.0}, {1.0, 1.0, 1.0}};
    ExpectNear(MatrixInverse(m), {{1.0, -1.0, 2.0, 0.0, 1.0, -2.0, 0.0, 0.0, 1.0}, {-2.0, 1.0, -1.0}}, 0.0);
}

TEST(MatrixInverse, of_any_transform_gives_the_identity_on_both_sides)
{
    test::SeededRandom random(102);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix affine = RandomAffine(random);
        ExpectNear(affine * MatrixInverse(affine), kIdentity, 1e-13);
        ExpectNear(MatrixInverse(affine) * affine, kIdentity, 1e-13);
        const HomMatrix rigid = PoseToMatrix(RandomPose(random, 900.0));
        ExpectNear(rigid * MatrixInverse(rigid), kIdentity, 1e-12);
        ExpectNear(MatrixInverse(rigid) * rigid, kIdentity, 1e-12);
        ExpectNear(MatrixInverse(MatrixInverse(rigid)), rigid, 1e-11);
    }
}

TEST(MatrixInverse, of_product_is_the_product_of_the_inverses_in_reverse)
{
    test::SeededRandom random(103);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix a = PoseToMatrix(RandomPose(random, 900.0));
        const HomMatrix b = PoseToMatrix(RandomPose(random, 900.0));
        ExpectNear(MatrixInverse(a * b), MatrixInverse(b) * MatrixInverse(a), 1e-11);
        const HomMatrix c = RandomAffine(random);
        const HomMatrix d = RandomAffine(random);
        ExpectNear(MatrixInverse(c * d), MatrixInverse(d) * MatrixInverse(c), 1e-9);
    }
}

TEST(MatrixInverse, of_rigid_transform_has_the_transposed_rotation_and_takes_the_origin_back)
{
    test::SeededRandom random(104);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix m = PoseToMatrix(RandomPose(random, 900.0));
        const HomMatrix inverse = MatrixInverse(m);
        ExpectNear(inverse.r, Transpose(m.r), 1e-15);
        ExpectNear(Rotate(m.r, inverse.t) + m.t, Vec3{}, 1e-12);
    }
}

TEST(MatrixInverse, of_singular_block_is_not_finite)
{
    // The determinant is an exact 0: the minor 1 is divided to infinity, the others 0 / 0.
    const HomMatrix m{{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0}, {1.0, 2.0, 3.0}};
    const HomMatrix inverse = MatrixInverse(m);
    EXPECT_TRUE(std::isnan(inverse.r.r00));
    EXPECT_TRUE(std::isinf(inverse.r.r22));
    EXPECT_FALSE(std::isfinite(inverse.t.x));
    EXPECT_FALSE(std::isfinite(inverse.t.z));
}

TEST(MatrixInverse, of_nan_is_nan)
{
    HomMatrix m = kIdentity;
    m.r.r12 = kNan;
    EXPECT_TRUE(std::isnan(MatrixInverse(m).r.r00));
}

TEST(HomMatrix, assignment_copies_all_twelve_elements)
{
    const HomMatrix source{{0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}, {9.0, 10.0, 11.0}};
    auto destination = test::Untouched<HomMatrix>();
    destination = source;
    EXPECT_TRUE(test::SameBits(destination, source));
}

TEST(MatrixTransX, moves_along_x_without_turning)
{
    ExpectNear(MatrixTransX(-12.5), {kIdentityRotation, {-12.5, 0.0, 0.0}}, 0.0);
}

TEST(MatrixRotZDeg, of_ninety_degrees_maps_x_to_y)
{
    ExpectNear(Apply(MatrixRotZDeg(90.0), {1.0, 0.0, 0.0}), {0.0, 1.0, 0.0}, 1e-16);
    ExpectNear(Apply(MatrixRotZDeg(90.0), {0.0, 1.0, 0.0}), {-1.0, 0.0, 0.0}, 1e-16);
}

TEST(MatrixRotZDeg, takes_degrees)
{
    const double h = std::sqrt(0.75);
    ExpectNear(MatrixRotZDeg(30.0), {{h, -0.5, 0.0, 0.5, h, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}}, 1e-15);
    ExpectNear(MatrixRotZDeg(-60.0), {{0.5, h, 0.0, -h, 0.5, 0.0, 0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}}, 1e-15);
    ExpectNear(MatrixRotZDeg(390.0), MatrixRotZDeg(30.0), 1e-14);
}

constexpr std::int32_t kInFrameOfFirst = -1;

TEST(PoseDiff, of_a_pose_with_itself_is_zero)
{
    test::SeededRandom random(105);
    for (int i = 0; i < 100; ++i) {
        const Pose pose = RandomPose(random, 900.0);
        SCOPED_TRACE(::testing::Message() << pose.a << ' ' << pose.b << ' ' << pose.c);
        ExpectNear(PoseDiff(pose, pose, kDiffInReference), {}, 0.0, 1e-15);
        ExpectNear(PoseDiff(pose, pose, kInFrameOfFirst), {}, 0.0, 1e-15);
    }
}

// First: turned by 90 degrees about Z. Second: the same, then 30 degrees about its own X, which is Y of the
// reference.
constexpr Pose kFirst{1.0, 2.0, 3.0, kHalfPi, 0.0, 0.0};
constexpr Pose kSecond{2.0, 4.0, 6.0, kHalfPi, 0.0, kPi / 6.0};

TEST(PoseDiff, in_the_reference_frame_is_along_and_about_its_axes)
{
    ExpectNear(PoseDiff(kFirst, kSecond, kDiffInReference), {1.0, 2.0, 3.0, 0.0, kPi / 6.0, 0.0}, 0.0, 1e-15);
}

TEST(PoseDiff, in_the_frame_of_the_first_pose_is_along_and_about_its_axes)
{
    // The step (1, 2, 3) seen from a frame whose x is the reference's y and whose y its -x.
    ExpectNear(PoseDiff(kFirst, kSecond, kInFrameOfFirst), {2.0, -1.0, 3.0, 0.0, 0.0, kPi / 6.0}, 1e-15,
               1e-15);
}

TEST(PoseDiff, of_any_other_flag_is_in_the_frame_of_the_first_pose)
{
    const Pose expected = PoseDiff(kFirst, kSecond, kInFrameOfFirst);
    for (const std::int32_t flag : {0, 2, -2, 255, INT32_MAX, INT32_MIN}) {
        SCOPED_TRACE(flag);
        EXPECT_TRUE(test::SameBits(PoseDiff(kFirst, kSecond, flag), expected));
    }
}

TEST(PoseDiff, puts_back_together_what_it_took_apart)
{
    test::SeededRandom random(106);
    for (int i = 0; i < 1000; ++i) {
        const Pose p1 = RandomPose(random, 900.0);
        const Pose p2 = RandomPose(random, 900.0);
        SCOPED_TRACE(i);
        const HomMatrix inFirst = PoseToMatrix(PoseDiff(p1, p2, kInFrameOfFirst));
        ExpectNear(PoseToMatrix(p1) * inFirst, PoseToMatrix(p2), 1e-11);
        const Pose inReference = PoseDiff(p1, p2, kDiffInReference);
        const HomMatrix turn = PoseToMatrix({0.0, 0.0, 0.0, inReference.a, inReference.b, inReference.c});
        ExpectNear((turn * PoseToMatrix(p1)).r, PoseToMatrix(p2).r, 1e-11);
        ExpectNear(Vec3{inReference.x, inReference.y, inReference.z},
                   Vec3{p2.x - p1.x, p2.y - p1.y, p2.z - p1.z}, 0.0);
    }
}

TEST(PoseDiff, uses_the_tolerant_gimbal_rule)
{
    // A difference 9e-6 short of a quarter turn about Y, with 0.25 about X: a is 0 and all goes to c.
    const Pose none{};
    const Pose turned{0.0, 0.0, 0.0, 0.0, kHalfPi - 9e-6, 0.25};
    for (const std::int32_t flag : {kDiffInReference, kInFrameOfFirst}) {
        SCOPED_TRACE(flag);
        const Pose plus = PoseDiff(none, turned, flag);
        EXPECT_EQ(plus.a, 0.0);
        EXPECT_EQ(plus.b, kHalfPi);
        EXPECT_NEAR(plus.c, 0.25, 1e-10);
    }
    const Pose back{0.0, 0.0, 0.0, 0.0, -kHalfPi + 9e-6, 0.25};
    EXPECT_EQ(PoseDiff(none, back, kDiffInReference).b, -kHalfPi);
    EXPECT_NEAR(PoseDiff(none, back, kDiffInReference).c, 0.25, 1e-10);
}

TEST(PoseDiff, passes_nan_on)
{
    const Pose diff = PoseDiff({kNan, 0.0, 0.0, 0.0, 0.0, 0.0}, {}, kDiffInReference);
    EXPECT_TRUE(std::isnan(diff.x));
    EXPECT_EQ(diff.y, 0.0);
}

}  // namespace
}  // namespace kine

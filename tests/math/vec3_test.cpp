#include "math/vec3.h"

#include <gtest/gtest.h>

#include "support/math_compare.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::ExpectNear;

constexpr Vec3 kX{1.0, 0.0, 0.0};
constexpr Vec3 kY{0.0, 1.0, 0.0};
constexpr Vec3 kZ{0.0, 0.0, 1.0};

TEST(CrossProduct, of_unit_axes_is_right_handed)
{
    ExpectNear(CrossProduct(kX, kY), kZ, 0.0);
    ExpectNear(CrossProduct(kY, kZ), kX, 0.0);
    ExpectNear(CrossProduct(kZ, kX), kY, 0.0);
}

TEST(CrossProduct, of_exchanged_factors_is_opposite)
{
    ExpectNear(CrossProduct(kY, kX), Scale(-1.0, kZ), 0.0);
    ExpectNear(CrossProduct(kZ, kY), Scale(-1.0, kX), 0.0);
    ExpectNear(CrossProduct(kX, kZ), Scale(-1.0, kY), 0.0);
}

TEST(CrossProduct, of_small_integers_is_exact)
{
    // (2*6 - 3*5, 3*4 - 1*6, 1*5 - 2*4)
    ExpectNear(CrossProduct({1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}), {-3.0, 6.0, -3.0}, 0.0);
}

TEST(CrossProduct, of_parallel_vectors_is_zero)
{
    ExpectNear(CrossProduct({1.5, -2.0, 4.0}, {-3.0, 4.0, -8.0}), {0.0, 0.0, 0.0}, 0.0);
}

TEST(CrossProduct, is_perpendicular_to_both_factors)
{
    test::SeededRandom random(20240601);
    for (int i = 0; i < 200; ++i) {
        const Vec3 u{random.Uniform(-9, 9), random.Uniform(-9, 9), random.Uniform(-9, 9)};
        const Vec3 v{random.Uniform(-9, 9), random.Uniform(-9, 9), random.Uniform(-9, 9)};
        SCOPED_TRACE(::testing::Message()
                     << "u " << u.x << ' ' << u.y << ' ' << u.z << "  v " << v.x << ' ' << v.y << ' ' << v.z);
        const Vec3 w = CrossProduct(u, v);
        EXPECT_NEAR(Dot(w, u), 0.0, 1e-12);
        EXPECT_NEAR(Dot(w, v), 0.0, 1e-12);
        // |u x v|^2 + (u . v)^2 = |u|^2 |v|^2
        EXPECT_NEAR(Dot(w, w) + Dot(u, v) * Dot(u, v), Dot(u, u) * Dot(v, v), 1e-10);
    }
}

TEST(CrossProduct, of_nan_keeps_nan_to_the_components_that_use_it)
{
    const Vec3 w = CrossProduct({test::kNan, 2.0, 3.0}, {4.0, 5.0, 6.0});
    EXPECT_EQ(w.x, -3.0);
    EXPECT_TRUE(std::isnan(w.y));
    EXPECT_TRUE(std::isnan(w.z));
}

TEST(Dot, of_small_integers_is_exact) { EXPECT_EQ(Dot({1.0, 2.0, 3.0}, {4.0, -5.0, 6.0}), 12.0); }

TEST(Norm, of_pythagorean_vector_is_exact)
{
    EXPECT_EQ(Norm({3.0, -4.0, 12.0}), 13.0);
    EXPECT_EQ(Norm({0.0, 0.0, 0.0}), 0.0);
}

TEST(Vec3, sums_differences_and_multiples_go_component_by_component)
{
    ExpectNear(Vec3{1.0, 2.0, 3.0} + Vec3{10.0, 20.0, 30.0}, {11.0, 22.0, 33.0}, 0.0);
    ExpectNear(Vec3{1.0, 2.0, 3.0} - Vec3{10.0, 30.0, 50.0}, {-9.0, -28.0, -47.0}, 0.0);
    ExpectNear(Scale(-2.0, {1.0, -2.0, 3.5}), {-2.0, 4.0, -7.0}, 0.0);
}

}  // namespace
}  // namespace kine

// The cube of a safe area.
#include "motion/safe_area.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/numbers.h"
#include "support/records.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr Vec3 kCentre{1000.0, -500.0, 250.0};
constexpr std::array<double Vec3::*, 3> kAxes = {&Vec3::x, &Vec3::y, &Vec3::z};

Vec3 Moved(double Vec3::*axis, double by)
{
    Vec3 point = kCentre;
    point.*axis += by;
    return point;
}

}  // namespace

TEST(IsInCube, holds_its_centre)
{
    EXPECT_TRUE(IsInCube(kCentre, kCentre, 200.0));
    EXPECT_TRUE(IsInCube(kCentre, kCentre, 1e-300));
}

TEST(IsInCube, holds_its_faces_and_nothing_behind)
{
    for (const auto axis : kAxes) {
        for (const double sign : {1.0, -1.0}) {
            const double face = kCentre.*axis + sign * 100.0;
            EXPECT_TRUE(IsInCube(Moved(axis, sign * 100.0), kCentre, 200.0));
            Vec3 point = kCentre;
            point.*axis = std::nextafter(face, kCentre.*axis);
            EXPECT_TRUE(IsInCube(point, kCentre, 200.0));
            point.*axis = std::nextafter(face, sign * kInf);
            EXPECT_FALSE(IsInCube(point, kCentre, 200.0));
            EXPECT_FALSE(IsInCube(Moved(axis, sign * 100.000001), kCentre, 200.0));  // one micrometre
            EXPECT_TRUE(IsInCube(Moved(axis, sign * 99.999999), kCentre, 200.0));
            EXPECT_FALSE(IsInCube(Moved(axis, sign * 200.0), kCentre, 200.0));
        }
    }
}

TEST(IsInCube, holds_its_corners)
{
    for (const double x : {-100.0, 100.0}) {
        for (const double y : {-100.0, 100.0}) {
            for (const double z : {-100.0, 100.0}) {
                EXPECT_TRUE(IsInCube(kCentre + Vec3{x, y, z}, kCentre, 200.0));
                EXPECT_FALSE(IsInCube(kCentre + Scale(1.001, Vec3{x, y, z}), kCentre, 200.0));
            }
        }
    }
}

TEST(IsInCube, of_size_0_is_its_centre)
{
    for (const double size : {0.0, -0.0}) {
        EXPECT_TRUE(IsInCube(kCentre, kCentre, size));
        for (const auto axis : kAxes) EXPECT_FALSE(IsInCube(Moved(axis, 1e-9), kCentre, size));
    }
}

TEST(IsInCube, of_negative_size_is_empty)
{
    for (const double size : {-1e-300, -200.0, -kInf}) EXPECT_FALSE(IsInCube(kCentre, kCentre, size));
}

TEST(IsInCube, of_infinite_size_holds_all_that_is_a_distance_away)
{
    EXPECT_TRUE(IsInCube({1e300, -1e300, 0.0}, kCentre, kInf));
    EXPECT_TRUE(IsInCube({kInf, 0.0, 0.0}, kCentre, kInf));
    EXPECT_FALSE(IsInCube({kInf, 0.0, 0.0}, {kInf, 0.0, 0.0}, kInf));  // the difference is NaN
    EXPECT_FALSE(IsInCube({kInf, 0.0, 0.0}, kCentre, 1e308));
}

TEST(IsInCube, never_holds_nan)
{
    for (const double size : {200.0, kInf}) {
        for (const auto axis : kAxes) {
            EXPECT_FALSE(IsInCube(Moved(axis, kNan), kCentre, size));
            EXPECT_FALSE(IsInCube(kCentre, Moved(axis, kNan), size));
        }
    }
    EXPECT_FALSE(IsInCube(kCentre, kCentre, kNan));
}

// Drawn as fractions of the half edge: inside where the largest is at most 1.
TEST(IsInCube, agrees_with_the_largest_distance)
{
    SeededRandom random(561);
    int inside = 0;
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const double half = random.Uniform(1.0, 500.0);
        const double fx = random.Uniform(-1.3, 1.3);
        const double fy = random.Uniform(-1.3, 1.3);
        const double fz = random.Uniform(-1.3, 1.3);
        const double largest = std::fmax(std::fabs(fx), std::fmax(std::fabs(fy), std::fabs(fz)));
        if (std::fabs(largest - 1.0) < 1e-6) continue;
        const bool expected = largest < 1.0;
        EXPECT_EQ(IsInCube(kCentre + Vec3{half * fx, half * fy, half * fz}, kCentre, 2.0 * half), expected);
        inside += expected ? 1 : 0;
    }
    // (1 / 1.3) cubed is 0.455.
    EXPECT_NEAR(inside, 910, 100);
}

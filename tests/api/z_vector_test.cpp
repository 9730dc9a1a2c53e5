// The normal of the plane through three points.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include "support/cell_setup.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Vector
{
    double e[3];
};

KineFrame Point(double x, double y, double z) { return {x, y, z, 0.0, 0.0, 0.0}; }

// The answer; the pattern of Untouched where nothing was written.
Vector Normal(const KineFrame& p1, const KineFrame& p2, const KineFrame& p3, double length)
{
    const KineFrame given[3] = {p1, p2, p3};
    Vector out = Untouched<Vector>();
    EXPECT_EQ(
        PrintedBy([&] { EXPECT_EQ(Kine_CalcZVec(&given[0], &given[1], &given[2], length, out.e), KINE_OK); }),
        "");
    EXPECT_TRUE(SameBits(given[0], p1) && SameBits(given[1], p2) && SameBits(given[2], p3));
    return out;
}

void ExpectVector(const Vector& actual, double x, double y, double z)
{
    EXPECT_EQ(actual.e[0], x);
    EXPECT_EQ(actual.e[1], y);
    EXPECT_EQ(actual.e[2], z);
}

const KineFrame kOrigin = Point(0.0, 0.0, 0.0);
const KineFrame kOnX = Point(1.0, 0.0, 0.0);
const KineFrame kOnY = Point(0.0, 1.0, 0.0);

}  // namespace

TEST(Kine_CalcZVec, is_right_handed_in_the_order_of_the_points)
{
    ExpectVector(Normal(kOrigin, kOnX, kOnY, 5.0), 0.0, 0.0, 5.0);
    ExpectVector(Normal(kOrigin, kOnY, kOnX, 5.0), 0.0, 0.0, -5.0);
    ExpectVector(Normal(kOnX, kOnY, kOrigin, 5.0), 0.0, 0.0, 5.0);
    ExpectVector(Normal(Point(7.0, 8.0, 9.0), Point(7.0, 8.5, 9.0), Point(7.0, 8.0, 12.0), 2.0), 2.0, 0.0,
                 0.0);
}

TEST(Kine_CalcZVec, length_may_be_negative_or_zero)
{
    ExpectVector(Normal(kOrigin, kOnX, kOnY, -5.0), 0.0, 0.0, -5.0);
    ExpectVector(Normal(kOrigin, kOnX, kOnY, 0.0), 0.0, 0.0, 0.0);
}

// (1, 2, 2) x (2, 1, -2) = (-6, 6, -3), of length 9.
TEST(Kine_CalcZVec, has_the_given_length_whatever_the_size_of_the_triangle)
{
    for (const double scale : {1e-6, 1.0, 1e6}) {
        const Vector v = Normal(kOrigin, Point(scale, 2.0 * scale, 2.0 * scale),
                                Point(2.0 * scale, scale, -2.0 * scale), 90.0);
        EXPECT_NEAR(v.e[0], -60.0, 1e-12);
        EXPECT_NEAR(v.e[1], 60.0, 1e-12);
        EXPECT_NEAR(v.e[2], -30.0, 1e-12);
    }
}

TEST(Kine_CalcZVec, stands_on_both_sides_of_the_triangle)
{
    SeededRandom random(531);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const KineFrame p1 = AnyFrame(random);
        const KineFrame p2 = AnyFrame(random);
        const KineFrame p3 = AnyFrame(random);
        const double length = random.Uniform(1.0, 100.0);
        const Vector n = Normal(p1, p2, p3, length);
        const double u[3] = {p2.X - p1.X, p2.Y - p1.Y, p2.Z - p1.Z};
        const double v[3] = {p3.X - p1.X, p3.Y - p1.Y, p3.Z - p1.Z};
        double alongU = 0.0;
        double alongV = 0.0;
        for (int k = 0; k < 3; ++k) {
            alongU += n.e[k] * u[k];
            alongV += n.e[k] * v[k];
        }
        EXPECT_NEAR(alongU, 0.0, 1e-8);
        EXPECT_NEAR(alongV, 0.0, 1e-8);
        EXPECT_NEAR(std::hypot(n.e[0], n.e[1], n.e[2]), length, 1e-11);
        // The determinant of u, v, n, expanded along n: positive for the right-handed sense.
        const double determinant = n.e[0] * (u[1] * v[2] - u[2] * v[1]) -
                                   n.e[1] * (u[0] * v[2] - u[2] * v[0]) +
                                   n.e[2] * (u[0] * v[1] - u[1] * v[0]);
        EXPECT_GT(determinant, 0.0);
    }
}

TEST(Kine_CalcZVec, writes_nothing_for_points_on_one_line)
{
    EXPECT_TRUE(IsUntouched(Normal(kOrigin, kOnX, Point(3.0, 0.0, 0.0), 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOrigin, kOnX, Point(-3.0, 0.0, 0.0), 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOnX, kOnX, kOnY, 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOnX, kOnY, kOnX, 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOnX, kOnY, kOnY, 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOnX, kOnX, kOnX, 5.0)));
}

// Sides along x and y: the length of their product is that of the second side, here 2^-126 and its
// neighbours.
TEST(Kine_CalcZVec, counts_as_a_plane_above_the_smallest_single)
{
    constexpr double kSmallest = 1.1754943508222875e-38;
    EXPECT_TRUE(IsUntouched(Normal(kOrigin, kOnX, Point(0.0, std::nextafter(kSmallest, 0.0), 0.0), 5.0)));
    EXPECT_TRUE(IsUntouched(Normal(kOrigin, kOnX, Point(0.0, kSmallest, 0.0), 5.0)));
    const Vector above = Normal(kOrigin, kOnX, Point(0.0, std::nextafter(kSmallest, 1.0), 0.0), 5.0);
    EXPECT_NEAR(above.e[2], 5.0, 1e-14);
    EXPECT_EQ(above.e[0], 0.0);
    EXPECT_EQ(above.e[1], 0.0);
}

TEST(Kine_CalcZVec, writes_nothing_for_a_point_of_nan)
{
    for (const double bad : {kNan, -kNan}) {
        for (int place = 0; place < 9; ++place) {
            KineFrame points[3] = {Point(1.0, 2.0, 3.0), Point(4.0, -5.0, 6.0), Point(-7.0, 8.0, 9.5)};
            double* const coordinates[3] = {&points[place / 3].X, &points[place / 3].Y, &points[place / 3].Z};
            *coordinates[place % 3] = bad;
            EXPECT_TRUE(IsUntouched(Normal(points[0], points[1], points[2], 5.0))) << place;
        }
    }
}

TEST(Kine_CalcZVec, passes_a_length_of_nan_on)
{
    const Vector v = Normal(kOrigin, kOnX, kOnY, kNan);
    for (const double e : v.e) EXPECT_TRUE(std::isnan(e));
}

TEST(Kine_CalcZVec, reads_no_angles)
{
    SeededRandom random(532);
    for (const double angle : {181.0, -1e9, kNan, kInf}) {
        KineFrame points[3] = {AnyFrame(random), AnyFrame(random), AnyFrame(random)};
        const Vector expected = Normal(points[0], points[1], points[2], 7.0);
        for (KineFrame& point : points) point.A = point.B = point.C = angle;
        EXPECT_TRUE(SameBits(Normal(points[0], points[1], points[2], 7.0), expected));
    }
}

TEST(Kine_CalcZVec, with_a_null_pointer_writes_nothing)
{
    Vector out = Untouched<Vector>();
    EXPECT_EQ(PrintedBy([&] {
                  EXPECT_EQ(Kine_CalcZVec(nullptr, &kOnX, &kOnY, 5.0, out.e), KINE_OK);
                  EXPECT_EQ(Kine_CalcZVec(&kOrigin, nullptr, &kOnY, 5.0, out.e), KINE_OK);
                  EXPECT_EQ(Kine_CalcZVec(&kOrigin, &kOnX, nullptr, 5.0, out.e), KINE_OK);
                  EXPECT_EQ(Kine_CalcZVec(&kOrigin, &kOnX, &kOnY, 5.0, nullptr), KINE_OK);
                  EXPECT_EQ(Kine_CalcZVec(nullptr, nullptr, nullptr, 5.0, out.e), KINE_OK);
                  EXPECT_EQ(Kine_CalcZVec(nullptr, nullptr, nullptr, 5.0, nullptr), KINE_OK);
              }),
              "");
    EXPECT_TRUE(IsUntouched(out));
}

TEST(Kine_CalcZVec, result_may_be_the_memory_of_a_point)
{
    const KineFrame given[3] = {Point(1.0, 2.0, 3.0), Point(4.0, -5.0, 6.0), Point(-7.0, 8.0, 9.5)};
    const Vector expected = Normal(given[0], given[1], given[2], 5.0);
    for (const std::size_t place : {0u, 1u, 2u}) {
        KineFrame points[3] = {given[0], given[1], given[2]};
        // Three doubles: position or angles of the point.
        EXPECT_EQ(Kine_CalcZVec(&points[0], &points[1], &points[2], 5.0, &points[place].X), KINE_OK);
        EXPECT_EQ(std::memcmp(&points[place], &expected, sizeof expected), 0);
        EXPECT_EQ(points[place].A, 0.0);
        EXPECT_EQ(points[place].B, 0.0);
        EXPECT_EQ(points[place].C, 0.0);
    }
}

TEST(Kine_CalcZVec, records_may_lie_at_odd_addresses)
{
    const KineFrame given[3] = {Point(1.0, 2.0, 3.0), Point(4.0, -5.0, 6.0), Point(-7.0, 8.0, 9.5)};
    const Vector expected = Normal(given[0], given[1], given[2], 5.0);
    unsigned char memory[1 + sizeof given + sizeof expected];
    std::memcpy(memory + 1, given, sizeof given);
    const auto* points = reinterpret_cast<const unsigned char*>(memory + 1);
    EXPECT_EQ(Kine_CalcZVec(reinterpret_cast<const KineFrame*>(points),
                            reinterpret_cast<const KineFrame*>(points + sizeof(KineFrame)),
                            reinterpret_cast<const KineFrame*>(points + 2 * sizeof(KineFrame)), 5.0,
                            reinterpret_cast<double*>(memory + 1 + sizeof given)),
              KINE_OK);
    EXPECT_EQ(std::memcmp(memory + 1 + sizeof given, &expected, sizeof expected), 0);
}

TEST(Kine_CalcZVec, does_not_ask_for_an_initialised_library)
{
    SetUpRefusedArm();
    ExpectVector(Normal(kOrigin, kOnX, kOnY, 5.0), 0.0, 0.0, 5.0);
    SetUpArm(WristArm());
    ExpectVector(Normal(kOrigin, kOnX, kOnY, 5.0), 0.0, 0.0, 5.0);
}

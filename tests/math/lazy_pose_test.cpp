// A pose that keeps its form, against the written-out way: the transform taken apart into angles and put
// together again.
#include "math/lazy_pose.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <type_traits>

#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/seeded_random.h"

namespace kine {
namespace {

using test::JustAbove;
using test::JustBelow;
using test::kInf;
using test::kNan;
using test::SameBits;

constexpr double kEdge = 1e-5;

using Elements = std::array<double, 12>;

Elements ElementsOf(const HomMatrix& m)
{
    Elements elements{};
    std::memcpy(elements.data(), &m, sizeof m);
    return elements;
}

HomMatrix WithElement(HomMatrix m, std::size_t place, double value)
{
    Elements elements = ElementsOf(m);
    elements[place] = value;
    std::memcpy(&m, elements.data(), sizeof m);
    return m;
}

HomMatrix WrittenOut(const HomMatrix& m) { return PoseToMatrix(MatrixToPose(m)); }

// Every element of the same kind and value. Which of its NaN a sum gives is the compiler's choice.
void ExpectSame(const HomMatrix& actual, const HomMatrix& expected)
{
    const Elements a = ElementsOf(actual);
    const Elements e = ElementsOf(expected);
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_TRUE(SameBits(a[i], e[i]) || (std::isnan(a[i]) && std::isnan(e[i])))
            << "element " << i << " is " << a[i] << " instead of " << e[i];
    }
}

HomMatrix RandomTransform(test::SeededRandom& random)
{
    return test::HomOf({random.Uniform(-900.0, 900.0), random.Uniform(-900.0, 900.0),
                        random.Uniform(-900.0, 900.0), random.Uniform(-kPi, kPi), random.Uniform(-kPi, kPi),
                        random.Uniform(-kPi, kPi)});
}

// Rz(a) * Ry(b) * Rx(c) with b so close to a quarter turn that the first column holds cosine * (cos a,
// sin a).
HomMatrix NearGimbal(double cosine, double side, double a, double c)
{
    const double sa = std::sin(a), ca = std::cos(a), sc = std::sin(c), cc = std::cos(c);
    const double sine = side * std::sqrt(1.0 - cosine * cosine);
    return {{ca * cosine, ca * sine * sc - sa * cc, ca * sine * cc + sa * sc, sa * cosine,
             sa * sine * sc + ca * cc, sa * sine * cc - ca * sc, -sine, cosine * sc, cosine * cc},
            {1.0, -2.0, 3.0}};
}

TEST(LazyPose, away_from_the_gimbal_a_transform_is_kept_to_the_last_bit)
{
    test::SeededRandom random(3201);
    for (int i = 0; i < 20000; ++i) {
        const HomMatrix m = RandomTransform(random);
        ASSERT_FALSE(IsGimbal(m.r));
        ASSERT_TRUE(SameBits(LazyPose(m).AsMatrix(), m)) << i;
    }
}

// What the angles lose: their own rounding, which a and c share with the smaller of cos b.
TEST(LazyPose, away_from_the_gimbal_the_written_out_way_agrees_to_rounding)
{
    test::SeededRandom random(3202);
    for (int i = 0; i < 5000; ++i) {
        SCOPED_TRACE(i);
        const HomMatrix m = RandomTransform(random);
        const double cosine = std::hypot(m.r.r00, m.r.r10);
        test::ExpectNear(LazyPose(m).AsMatrix().r, WrittenOut(m).r, 1e-15 / cosine);
        EXPECT_TRUE(SameBits(WrittenOut(m).t, m.t));
    }
    for (const double cosine : {1e-1, 1e-2, 1e-3, 1e-4, 2e-5}) {
        for (int i = 0; i < 1000; ++i) {
            SCOPED_TRACE(cosine);
            const HomMatrix m = NearGimbal(cosine, i % 2 == 0 ? 1.0 : -1.0, random.Uniform(-kPi, kPi),
                                           random.Uniform(-kPi, kPi));
            if (IsGimbal(m.r)) continue;
            ASSERT_TRUE(SameBits(LazyPose(m).AsMatrix(), m));
            test::ExpectNear(m.r, WrittenOut(m).r, 1e-15 / cosine);
        }
    }
}

TEST(LazyPose, inside_the_gimbal_the_written_out_way_is_taken)
{
    test::SeededRandom random(3203);
    int turned = 0;
    for (const double cosine : {0.0, 1e-300, 1e-17, 1e-12, 1e-9, 1e-6, 9e-6, 0.999999e-5}) {
        for (int i = 0; i < 1000; ++i) {
            const HomMatrix m = NearGimbal(cosine, i % 2 == 0 ? 1.0 : -1.0, random.Uniform(-kPi, kPi),
                                           random.Uniform(-kPi, kPi));
            const LazyPose pose(m);
            ASSERT_TRUE(SameBits(pose.AsMatrix(), WrittenOut(m))) << cosine;
            // Only the sum or difference of a and c stays, in c; b becomes the quarter turn.
            EXPECT_EQ(pose.AsPose().a, 0.0);
            EXPECT_EQ(std::fabs(pose.AsPose().b), kHalfPi);
            const bool isSide = i % 2 == 0;
            EXPECT_EQ(pose.AsPose().b, isSide ? kHalfPi : -kHalfPi);
            turned += SameBits(pose.AsMatrix(), m) ? 0 : 1;
        }
    }
    EXPECT_GT(turned, 7900);
}

TEST(LazyPose, the_gimbal_ends_strictly_below_its_edge_in_both_elements)
{
    const double sizes[] = {0.0, JustBelow(kEdge), kEdge, JustAbove(kEdge), 2e-5};
    for (const double size00 : sizes) {
        for (const double size10 : sizes) {
            for (const double sign : {1.0, -1.0}) {
                SCOPED_TRACE(::testing::Message() << size00 << ' ' << size10 << ' ' << sign);
                // Column 1 as for c = 0.4 and a = 0.3, so that an a of 0 turns it visibly.
                HomMatrix m = NearGimbal(1e-5, 1.0, 0.3, 0.4);
                m.r.r00 = sign * size00;
                m.r.r10 = -sign * size10;
                const bool isInside = size00 < kEdge && size10 < kEdge;
                EXPECT_EQ(IsGimbal(m.r), isInside);
                EXPECT_EQ(SameBits(LazyPose(m).AsMatrix(), m), !isInside);
                if (isInside) {
                    EXPECT_TRUE(SameBits(LazyPose(m).AsMatrix(), WrittenOut(m)));
                }
                EXPECT_EQ(LazyPose(m).AsPose().a == 0.0, isInside || (size10 == 0.0 && sign > 0.0));
            }
        }
    }
}

TEST(LazyPose, a_rotation_that_is_not_finite_takes_the_written_out_way)
{
    test::SeededRandom random(3204);
    for (const HomMatrix& regular : {RandomTransform(random), RandomTransform(random),
                                     NearGimbal(5e-6, 1.0, 0.3, 0.4), kIdentityTransform}) {
        for (const double bad : {kNan, kInf, -kInf}) {
            for (std::size_t first = 0; first < 9; ++first) {
                for (std::size_t second = first; second < 9; ++second) {
                    SCOPED_TRACE(::testing::Message() << bad << " in " << first << " and " << second);
                    const HomMatrix m = WithElement(WithElement(regular, first, bad), second, -bad);
                    ExpectSame(LazyPose(m).AsMatrix(), WrittenOut(m));
                }
            }
        }
    }
}

TEST(LazyPose, a_position_that_is_not_finite_is_kept)
{
    test::SeededRandom random(3205);
    for (const HomMatrix& regular : {RandomTransform(random), NearGimbal(5e-6, 1.0, 0.3, 0.4)}) {
        for (const double bad : {kNan, kInf, -kInf}) {
            for (std::size_t place = 9; place < 12; ++place) {
                const HomMatrix m = WithElement(regular, place, bad);
                const LazyPose pose(m);
                EXPECT_TRUE(SameBits(pose.AsMatrix().t, m.t));
                EXPECT_TRUE(SameBits(pose.Position(), m.t));
                const Pose angles = pose;
                EXPECT_TRUE(SameBits(Vec3{angles.x, angles.y, angles.z}, m.t));
                EXPECT_TRUE(SameBits(pose.AsMatrix().r, LazyPose(regular).AsMatrix().r));
            }
        }
    }
}

// Far beyond any rotation, where the sum of the elements overflows, the written-out way is taken as well.
TEST(LazyPose, elements_at_the_end_of_the_range_of_doubles_take_the_written_out_way)
{
    const HomMatrix m{{1e308, 1e308, 0.0, 1e308, 0.0, 0.0, 0.0, 0.0, 1.0}, {}};
    EXPECT_TRUE(SameBits(LazyPose(m).AsMatrix(), WrittenOut(m)));
}

TEST(LazyPose, made_from_a_transform_its_angles_are_those_of_the_transform)
{
    test::SeededRandom random(3206);
    for (int i = 0; i < 2000; ++i) {
        const HomMatrix m = i % 10 == 0
                                ? NearGimbal(random.Uniform(0.0, 2e-5), 1.0, 0.3, random.Uniform(-3.0, 3.0))
                                : RandomTransform(random);
        const LazyPose pose(m);
        ASSERT_TRUE(SameBits(pose.AsPose(), MatrixToPose(m)));
        ASSERT_TRUE(SameBits(static_cast<Pose>(pose), MatrixToPose(m)));
        ASSERT_TRUE(SameBits(pose.Position(), m.t));
        ASSERT_FALSE(pose.IsZero());
    }
}

TEST(LazyPose, made_from_a_pose_it_keeps_the_bits_of_the_pose)
{
    for (const Pose& made :
         {Pose{1.0, -2.0, 3.0, 0.4, -0.5, 0.6}, Pose{-0.0, 5e-324, 1e308, 9.0, -kHalfPi, 4.0},
          Pose{kNan, kInf, -kInf, kNan, kInf, -kInf}, Pose{1.0, 2.0, 3.0, 0.7, kHalfPi, -0.7}, Pose{}}) {
        const LazyPose pose = made;
        EXPECT_TRUE(SameBits(pose.AsPose(), made));
        EXPECT_TRUE(SameBits(static_cast<Pose>(pose), made));
        EXPECT_TRUE(SameBits(pose.Position(), Vec3{made.x, made.y, made.z}));
        ExpectSame(pose.AsMatrix(), PoseToMatrix(made));
        EXPECT_FALSE(pose.IsZero());
    }
}

TEST(LazyPose, by_default_is_the_zero_pose)
{
    const LazyPose zero;
    EXPECT_TRUE(zero.IsZero());
    EXPECT_TRUE(LazyPose{}.IsZero());
    EXPECT_TRUE(SameBits(zero.AsPose(), Pose{}));
    EXPECT_TRUE(SameBits(zero.AsMatrix(), HomMatrix{kIdentityRotation, {0.0, 0.0, 0.0}}));
    test::ExpectNear(zero.AsMatrix(), PoseToMatrix(Pose{}), 0.0);
    EXPECT_TRUE(SameBits(zero.Position(), Vec3{}));
}

// "Made as the zero pose" is about how it was made: the same pose in another form is none.
TEST(LazyPose, the_zero_pose_in_another_form_does_not_say_that_it_is_zero)
{
    EXPECT_FALSE(LazyPose(Pose{}).IsZero());
    EXPECT_FALSE(LazyPose(kIdentityTransform).IsZero());
    EXPECT_TRUE(SameBits(LazyPose(kIdentityTransform).AsMatrix(), kIdentityTransform));
}

void ExpectSamePose(const LazyPose& actual, const LazyPose& expected)
{
    EXPECT_EQ(actual.IsZero(), expected.IsZero());
    EXPECT_EQ(actual.IsFiniteMatrix(), expected.IsFiniteMatrix());
    EXPECT_TRUE(SameBits(actual.AsPose(), expected.AsPose()));
    EXPECT_TRUE(SameBits(actual.AsMatrix(), expected.AsMatrix()));
    EXPECT_TRUE(SameBits(actual.Position(), expected.Position()));
}

TEST(LazyPose, copies_and_assignments_take_the_form_with_them)
{
    static_assert(std::is_trivially_copyable_v<LazyPose>);
    test::SeededRandom random(3207);
    const std::array<LazyPose, 4> forms{LazyPose(), LazyPose(Pose{1.0, 2.0, 3.0, 0.4, 0.5, 0.6}),
                                        LazyPose(RandomTransform(random)),
                                        LazyPose(NearGimbal(3e-6, -1.0, 1.2, 0.4))};
    for (const LazyPose& from : forms) {
        const LazyPose copy = from;
        ExpectSamePose(copy, from);
        for (LazyPose to : forms) {
            to = from;
            ExpectSamePose(to, from);
        }
    }
}

TEST(LazyPose, heading_is_the_first_angle_of_the_pose)
{
    test::SeededRandom random(3208);
    const auto expectHeading = [](const LazyPose& pose) {
        const double a = pose.AsPose().a;
        ASSERT_TRUE(SameBits(pose.Heading(), a) || (std::isnan(pose.Heading()) && std::isnan(a)));
    };
    for (int i = 0; i < 2000; ++i) expectHeading(LazyPose(RandomTransform(random)));
    for (const double cosine : {0.0, 1e-9, JustBelow(kEdge), kEdge, 1.5e-5, 1e-3}) {
        for (const double a : {0.0, 0.3, kHalfPi, -kHalfPi, kPi, -3.0}) {
            expectHeading(LazyPose(NearGimbal(cosine, 1.0, a, 0.4)));
        }
    }
    for (const double bad : {kNan, kInf, -kInf}) {
        for (std::size_t place = 0; place < 9; ++place) {
            expectHeading(LazyPose(WithElement(RandomTransform(random), place, bad)));
            expectHeading(LazyPose(WithElement(NearGimbal(3e-6, 1.0, 0.3, 0.4), place, bad)));
        }
    }
    expectHeading(LazyPose());
    expectHeading(LazyPose(Pose{1.0, 2.0, 3.0, 9.0, kHalfPi, 0.6}));
    expectHeading(LazyPose(Pose{1.0, 2.0, 3.0, kNan, kHalfPi, 0.6}));
}

TEST(LazyPose, only_a_transform_of_finite_numbers_says_that_it_is_one)
{
    test::SeededRandom random(3209);
    const HomMatrix m = RandomTransform(random);
    EXPECT_TRUE(LazyPose(m).IsFiniteMatrix());
    EXPECT_FALSE(LazyPose().IsFiniteMatrix());
    EXPECT_FALSE(LazyPose(MatrixToPose(m)).IsFiniteMatrix());
    for (const double bad : {kNan, kInf, -kInf}) {
        for (std::size_t place = 0; place < 12; ++place) {
            EXPECT_FALSE(LazyPose(WithElement(m, place, bad)).IsFiniteMatrix()) << place;
        }
    }
}

}  // namespace
}  // namespace kine

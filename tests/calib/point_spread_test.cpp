// The error report: largest, mean and smallest distance. Positions on right triangles of whole numbers and on
// a line, so that distances are exact.
#include "calib/point_spread.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "support/numbers.h"

using namespace kine;
using namespace kine::test;

namespace {

void ExpectSpread(const KineCalibError& actual, double largest, double mean, double smallest)
{
    EXPECT_EQ(actual.Largest, largest);
    EXPECT_EQ(actual.Mean, mean);
    EXPECT_EQ(actual.Smallest, smallest);
}

}  // namespace

TEST(SpreadOf, two_positions_have_one_distance)
{
    const std::array<Vec3, 2> positions = {{{1.0, 2.0, 3.0}, {3.0, 5.0, 9.0}}};  // 2, 3, 6: 7
    ExpectSpread(SpreadOf(positions), 7.0, 7.0, 7.0);
}

TEST(SpreadOf, three_positions_have_three_distances_in_any_order)
{
    const Vec3 corner = {10.0, 20.0, 30.0};
    const Vec3 right = {13.0, 20.0, 30.0};
    const Vec3 above = {10.0, 20.0, 34.0};
    ExpectSpread(SpreadOf(std::array{corner, right, above}), 5.0, 4.0, 3.0);
    ExpectSpread(SpreadOf(std::array{above, corner, right}), 5.0, 4.0, 3.0);
    ExpectSpread(SpreadOf(std::array{right, above, corner}), 5.0, 4.0, 3.0);
}

// At 0, 1, 3, 7 and 15: differences 1, 3, 7, 15, 2, 6, 14, 4, 12, 8.
TEST(SpreadOf, five_positions_have_ten_distances)
{
    std::array<Vec3, 5> positions{};
    const std::array<double, 5> heights = {0.0, 1.0, 3.0, 7.0, 15.0};
    for (std::size_t i = 0; i < 5; ++i) positions[i].z = heights[i];
    ExpectSpread(SpreadOf(positions), 15.0, 7.2, 1.0);
}

TEST(SpreadOf, positions_in_one_place_have_none)
{
    const Vec3 place = {1e5, -1e-5, 3.0};
    ExpectSpread(SpreadOf(std::array{place, place, place}), 0.0, 0.0, 0.0);
}

// The smallest starts at 10000 mm and stays there.
TEST(SpreadOf, smallest_distance_is_10000_at_most)
{
    const auto spread = [](double d) {
        return SpreadOf(std::array<Vec3, 2>{{{0.0, 0.0, 0.0}, {0.0, -d, 0.0}}});
    };
    ExpectSpread(spread(JustBelow(10000.0)), JustBelow(10000.0), JustBelow(10000.0), JustBelow(10000.0));
    ExpectSpread(spread(10000.0), 10000.0, 10000.0, 10000.0);
    ExpectSpread(spread(JustAbove(10000.0)), JustAbove(10000.0), JustAbove(10000.0), 10000.0);
    ExpectSpread(spread(30000.0), 30000.0, 30000.0, 10000.0);
    ExpectSpread(spread(kInf), kInf, kInf, 10000.0);
}

// Whichever position it comes from.
TEST(SpreadOf, nan_distance_enters_the_mean_only)
{
    for (std::size_t spoilt = 0; spoilt < 3; ++spoilt) {
        std::array<Vec3, 3> positions = {{{0.0, 0.0, 0.0}, {3.0, 4.0, 0.0}, {0.0, 0.0, 0.0}}};
        positions[spoilt].y = kNan;
        const KineCalibError spread = SpreadOf(positions);
        const double left = spoilt == 1 ? 0.0 : 5.0;
        EXPECT_EQ(spread.Largest, left);
        EXPECT_TRUE(std::isnan(spread.Mean));
        EXPECT_EQ(spread.Smallest, left);
    }
}

TEST(SpreadOf, nothing_but_nan_leaves_largest_and_smallest_where_they_start)
{
    const Vec3 nowhere = {kNan, 0.0, 0.0};
    const KineCalibError spread = SpreadOf(std::array{nowhere, nowhere, nowhere});
    EXPECT_EQ(spread.Largest, 0.0);
    EXPECT_TRUE(std::isnan(spread.Mean));
    EXPECT_EQ(spread.Smallest, 10000.0);
}

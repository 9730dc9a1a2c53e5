// Percentiles by nearest rank, against all durations in one sorted list.
#include "measure/latencies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace kine_cli {
namespace {

TEST(Latencies, without_calls_are_zero)
{
    Latencies none;
    EXPECT_EQ(none.Count(), 0U);
    EXPECT_EQ(none.Percentile(0.5), 0);
}

TEST(Latencies, of_ten_calls_by_hand)
{
    Latencies ten;
    for (const int duration : {10, 9, 8, 7, 6, 5, 4, 3, 2, 1}) ten.Add(duration);
    EXPECT_EQ(ten.Percentile(0.1), 1);
    EXPECT_EQ(ten.Percentile(0.5), 5);
    EXPECT_EQ(ten.Percentile(0.51), 6);
    EXPECT_EQ(ten.Percentile(0.9), 9);
    EXPECT_EQ(ten.Percentile(0.99), 10);
    EXPECT_EQ(ten.Percentile(1.0), 10);
}

TEST(Latencies, a_clock_that_steps_back_counts_as_zero)
{
    Latencies one;
    one.Add(-5);
    EXPECT_EQ(one.Percentile(1.0), 0);
    EXPECT_EQ(one.Count(), 1U);
}

TEST(Latencies, short_and_long_ones_together_are_exact)
{
    std::mt19937_64 generator(7);
    std::vector<std::int64_t> all = {99'999, 100'000, 100'001};
    for (int i = 0; i < 5000; ++i) {
        const std::uint64_t bound = i % 10 == 0 ? 50'000'000 : 2000;
        all.push_back(static_cast<std::int64_t>(generator() % bound));
    }
    Latencies latencies;
    for (const std::int64_t duration : all) latencies.Add(duration);
    std::sort(all.begin(), all.end());
    for (const double share : {0.001, 0.25, 0.5, 0.9, 0.95, 0.99, 0.999, 1.0}) {
        const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(all.size())));
        EXPECT_EQ(latencies.Percentile(share), all[rank - 1]) << share;
    }
}

}  // namespace
}  // namespace kine_cli

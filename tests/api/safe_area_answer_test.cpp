// The answer of the safe-area check behind the world-position call. No call of the export gets there: the
// work object it asks with is refused.
#include "api/safe_area.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "support/numbers.h"
#include "support/records.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kCentre[3] = {1000.0, -500.0, 250.0};

// At the centre, moved along one axis; angles, configuration and external axes do not count.
KinePose PositionAt(int axis, double by)
{
    KinePose position = Untouched<KinePose>();
    position.Frame.X = kCentre[0] + (axis == 0 ? by : 0.0);
    position.Frame.Y = kCentre[1] + (axis == 1 ? by : 0.0);
    position.Frame.Z = kCentre[2] + (axis == 2 ? by : 0.0);
    return position;
}

}  // namespace

TEST(SafeAreaAnswer, of_a_call_that_failed_is_its_code_whatever_the_position)
{
    for (const KineResult code : {0x6001u, 0x6012u, 0x6050u, 0xFFFFFFFFu}) {
        for (const double size : {100.0, kNan}) {
            const auto expected = static_cast<std::int32_t>(code);
            EXPECT_EQ(SafeAreaAnswer(code, PositionAt(0, 0.0), kCentre, size), expected);
            EXPECT_EQ(SafeAreaAnswer(code, PositionAt(0, 0.0), nullptr, size), expected);
        }
    }
}

// Half the edge is 100 mm.
TEST(SafeAreaAnswer, is_1_up_to_the_faces_of_the_cube_and_0_one_micrometre_behind)
{
    EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(0, 0.0), kCentre, 200.0), 1);
    for (const int axis : {0, 1, 2}) {
        for (const double sign : {1.0, -1.0}) {
            EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(axis, sign * 99.999999), kCentre, 200.0), 1);
            EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(axis, sign * 100.0), kCentre, 200.0), 1);
            EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(axis, sign * 100.000001), kCentre, 200.0), 0);
        }
    }
}

TEST(SafeAreaAnswer, is_0_for_nan_in_the_position_the_centre_or_the_size)
{
    for (const int axis : {0, 1, 2}) {
        EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(axis, kNan), kCentre, kInf), 0);
        double centre[3] = {kCentre[0], kCentre[1], kCentre[2]};
        centre[axis] = kNan;
        EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(0, 0.0), centre, kInf), 0);
    }
    EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(0, 0.0), kCentre, kNan), 0);
}

TEST(SafeAreaAnswer, is_0_without_a_centre_even_for_a_cube_without_end)
{
    for (const double size : {0.0, 200.0, kInf}) {
        EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(0, 0.0), nullptr, size), 0);
        EXPECT_EQ(SafeAreaAnswer(KINE_OK, KinePose{}, nullptr, size), 0);
    }
}

TEST(SafeAreaAnswer, centre_may_lie_at_an_odd_address)
{
    unsigned char memory[sizeof kCentre + 1] = {};
    std::memcpy(memory + 1, kCentre, sizeof kCentre);
    const auto* centre = reinterpret_cast<const double*>(memory + 1);
    EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(2, 100.0), centre, 200.0), 1);
    EXPECT_EQ(SafeAreaAnswer(KINE_OK, PositionAt(2, 101.0), centre, 200.0), 0);
}

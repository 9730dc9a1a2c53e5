// The load on the flange, against numbers worked out by hand.
#include "chain/combine_load.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/numbers.h"
#include "support/records.h"

using namespace kine;
using namespace kine::test;

namespace {

Load MakeInternalLoad(double mass, const Vec3& centre, const Vec3& inertia = {})
{
    Load load{};
    load.mass = mass;
    load.centre = centre;
    load.inertia = inertia;
    return load;
}

void ExpectNear(const Vec3& actual, double x, double y, double z)
{
    EXPECT_NEAR(actual.x, x, 1e-14);
    EXPECT_NEAR(actual.y, y, 1e-14);
    EXPECT_NEAR(actual.z, z, 1e-14);
}

void ExpectZero(const Vec3& v)
{
    EXPECT_EQ(v.x, 0.0);
    EXPECT_EQ(v.y, 0.0);
    EXPECT_EQ(v.z, 0.0);
}

// 2 kg at (10, 20, 30) mm and 3 kg at (1, 2, 3) mm in a frame at (100, 200, 300) mm.
const Load kToolLoad = MakeInternalLoad(2.0, {10.0, 20.0, 30.0}, {0.5, 0.6, 0.7});
const Load kPayload = MakeInternalLoad(3.0, {1.0, 2.0, 3.0}, {0.01, 0.02, 0.03});
constexpr Pose kFrame{100.0, 200.0, 300.0, 0.0, 0.0, 0.0};

}  // namespace

// The payload lies at (101, 202, 303) mm in the flange: centre (3 * 101 + 2 * 10) / 5 = 64.6 mm and so on.
TEST(CombineLoad, centre_is_the_weighted_mean_in_metres)
{
    const CombinedLoad load = CombineLoad(kToolLoad, kPayload, kFrame);
    EXPECT_EQ(load.mass, 5.0);
    ExpectNear(load.centre, 0.0646, 0.1292, 0.1938);
}

// Distances from the centre in metres: tool load (-0.0546, -0.1092, -0.1638), payload (0.0364, 0.0728,
// 0.1092). For x: 2 (0.01192464 + 0.02683044) + 3 (0.00529984 + 0.01192464) = 0.1291836.
TEST(CombineLoad, inertia_follows_the_parallel_axis_rule)
{
    const CombinedLoad load = CombineLoad(kToolLoad, kPayload, kFrame);
    ExpectNear(load.inertia, 0.51 + 0.1291836, 0.62 + 0.099372, 0.73 + 0.049686);
}

TEST(CombineLoad, axes_of_inertia_are_dropped)
{
    Load tool = kToolLoad;
    Load payload = kPayload;
    tool.aomDeg = {10.0, 20.0, 30.0};
    payload.aomDeg = {-10.0, kNan, 180.0};
    const CombinedLoad load = CombineLoad(tool, payload, kFrame);
    ExpectZero(load.aom);
    const CombinedLoad plain = CombineLoad(kToolLoad, kPayload, kFrame);
    EXPECT_TRUE(SameBits(load, plain));
}

TEST(CombineLoad, frame_moves_the_payload_but_does_not_turn_it)
{
    Pose turned = kFrame;
    turned.a = 1.5;
    turned.b = -0.7;
    turned.c = 2.5;
    EXPECT_TRUE(SameBits(CombineLoad(kToolLoad, kPayload, turned), CombineLoad(kToolLoad, kPayload, kFrame)));
}

TEST(CombineLoad, frame_does_not_move_the_tool_load)
{
    const CombinedLoad load = CombineLoad(kToolLoad, Load{}, kFrame);
    EXPECT_EQ(load.mass, 2.0);
    ExpectNear(load.centre, 0.01, 0.02, 0.03);
    ExpectNear(load.inertia, 0.5, 0.6, 0.7);
}

TEST(CombineLoad, payload_alone_lies_behind_the_frame)
{
    const CombinedLoad load = CombineLoad(Load{}, kPayload, kFrame);
    EXPECT_EQ(load.mass, 3.0);
    ExpectNear(load.centre, 0.101, 0.202, 0.303);
    ExpectNear(load.inertia, 0.01, 0.02, 0.03);
}

TEST(CombineLoad, nothing_at_all_is_zero)
{
    const CombinedLoad load = CombineLoad(Load{}, Load{}, kFrame);
    EXPECT_EQ(load.mass, 0.0);
    ExpectZero(load.centre);
    ExpectZero(load.aom);
    ExpectZero(load.inertia);
}

TEST(CombineLoad, mass_just_above_the_bound_has_a_centre)
{
    const double mass = std::nextafter(1e-5, 1.0);
    const CombinedLoad load = CombineLoad(MakeInternalLoad(mass, {10.0, 20.0, 30.0}), Load{}, kFrame);
    EXPECT_EQ(load.mass, mass);
    ExpectNear(load.centre, 0.01, 0.02, 0.03);
}

// The centre is put at the flange; the distances are then those from the flange.
TEST(CombineLoad, mass_on_or_below_the_bound_has_its_centre_at_the_flange)
{
    for (const double mass : {1e-5, std::nextafter(1e-5, 0.0), 1e-9, -3.0}) {
        const CombinedLoad load =
            CombineLoad(MakeInternalLoad(mass, {1000.0, 2000.0, 3000.0}), Load{}, kFrame);
        EXPECT_EQ(load.mass, mass);
        ExpectZero(load.centre);
        ExpectNear(load.inertia, 13.0 * mass, 10.0 * mass, 5.0 * mass);  // metres squared
    }
}

// The bound is for the sum: two loads of 0.6e-5 kg count, and opposite masses cancel.
TEST(CombineLoad, bound_is_for_the_sum_of_the_masses)
{
    const Load half = MakeInternalLoad(0.6e-5, {10.0, 20.0, 30.0});
    const CombinedLoad load = CombineLoad(half, half, Pose{});
    EXPECT_EQ(load.mass, 0.6e-5 + 0.6e-5);
    ExpectNear(load.centre, 0.01, 0.02, 0.03);

    const CombinedLoad none =
        CombineLoad(MakeInternalLoad(4.0, {10.0, 20.0, 30.0}), MakeInternalLoad(-4.0, {}), Pose{});
    EXPECT_EQ(none.mass, 0.0);
    ExpectZero(none.centre);
}

TEST(CombineLoad, nan_mass_makes_mass_and_centre_nan)
{
    const Load bad = MakeInternalLoad(kNan, {10.0, 20.0, 30.0});
    for (const CombinedLoad& load :
         {CombineLoad(bad, kPayload, kFrame), CombineLoad(kToolLoad, bad, kFrame)}) {
        EXPECT_TRUE(std::isnan(load.mass));
        EXPECT_TRUE(std::isnan(load.centre.x));
        EXPECT_TRUE(std::isnan(load.centre.y));
        EXPECT_TRUE(std::isnan(load.centre.z));
        EXPECT_TRUE(std::isnan(load.inertia.x));
    }
}

// 1 / infinity is 0, times infinity is NaN.
TEST(CombineLoad, infinite_mass_has_no_centre)
{
    const CombinedLoad load = CombineLoad(MakeInternalLoad(kInf, {10.0, 20.0, 30.0}), kPayload, kFrame);
    EXPECT_EQ(load.mass, kInf);
    EXPECT_TRUE(std::isnan(load.centre.x));
}

TEST(CombineLoad, nan_in_one_component_of_a_centre_stays_there)
{
    Load tool = kToolLoad;
    tool.centre.y = kNan;
    const CombinedLoad load = CombineLoad(tool, kPayload, kFrame);
    EXPECT_EQ(load.mass, 5.0);
    EXPECT_NEAR(load.centre.x, 0.0646, 1e-14);
    EXPECT_TRUE(std::isnan(load.centre.y));
    EXPECT_NEAR(load.centre.z, 0.1938, 1e-14);
    // Only the inertia about y does without the y components.
    EXPECT_TRUE(std::isnan(load.inertia.x));
    EXPECT_NEAR(load.inertia.y, 0.62 + 0.099372, 1e-14);
    EXPECT_TRUE(std::isnan(load.inertia.z));
}

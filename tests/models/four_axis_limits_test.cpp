// Axis limits of the four-axis models.
#include <gtest/gtest.h>

#include "models/four_axis_4110_model.h"
#include "models/four_axis_model.h"
#include "support/naive_four_axis.h"

namespace kine::test {
namespace {

AxisLimits Numbered()
{
    AxisLimits limits{};
    for (std::size_t i = 0; i < 8; ++i) {
        limits.upper.axis[i] = 10.0 + static_cast<double>(i);
        limits.lower.axis[i] = -10.0 - static_cast<double>(i);
    }
    return limits;
}

void ExpectLimits(const ArmModel& model, bool numbered)
{
    AxisLimits read = {MarkedJoints(), MarkedJoints()};
    model.GetAxisLimits(read);
    const AxisLimits expected = numbered ? Numbered() : AxisLimits{};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(read.upper.axis[i], expected.upper.axis[i]);
        EXPECT_EQ(read.lower.axis[i], expected.lower.axis[i]);
    }
    // The arm has four axes; the rest is not its own.
    for (std::size_t i = 4; i < 8; ++i) {
        EXPECT_EQ(read.upper.axis[i], MarkedJoints().axis[i]);
        EXPECT_EQ(read.lower.axis[i], MarkedJoints().axis[i]);
    }
    EXPECT_EQ(read.upper.extAxis, MarkedJoints().extAxis);
}

template <class Model>
void ExpectLimitsToFollowInit(std::uint32_t type)
{
    SCOPED_TRACE(type);
    Model model;
    const KineKinematicParam param = ParamOf({});
    ASSERT_EQ(model.InitModel(type, &param), KINE_OK);
    ExpectLimits(model, false);
    model.SetAxisLimits(Numbered());
    ExpectLimits(model, true);
    // A foreign type leaves them, its own type clears them, and so does one with a bad length.
    EXPECT_EQ(model.InitModel(6, &param), KINE_ERR_MODEL_PARAM);
    ExpectLimits(model, true);
    EXPECT_EQ(model.InitModel(type, &param), KINE_OK);
    ExpectLimits(model, false);
    model.SetAxisLimits(Numbered());
    NaiveArm flat;
    flat.lead = 0.0;
    const KineKinematicParam bad = ParamOf(flat);
    EXPECT_EQ(model.InitModel(type, &bad), KINE_ERR_MODEL_PARAM);
    ExpectLimits(model, false);
}

TEST(FourAxisLimits, four_pairs_are_stored_and_cleared_by_init)
{
    ExpectLimitsToFollowInit<FourAxisModel>(4);
    ExpectLimitsToFollowInit<FourAxis4110Model>(4110);
}

TEST(FourAxisLimits, an_inverted_pair_is_stored_as_given)
{
    // Opening such pairs is the business of the layer above.
    FourAxisModel model;
    AxisLimits limits{};
    limits.upper.axis[1] = -3.0;
    limits.lower.axis[1] = 3.0;
    model.SetAxisLimits(limits);
    AxisLimits read{};
    model.GetAxisLimits(read);
    EXPECT_EQ(read.upper.axis[1], -3.0);
    EXPECT_EQ(read.lower.axis[1], 3.0);
}

}  // namespace
}  // namespace kine::test

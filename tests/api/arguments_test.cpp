// Arguments: what comes back of refused records and of those after them.
#include "api/arguments.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

template <class Internal>
bool IsZero(const Internal& value)
{
    const Internal zero{};
    return std::memcmp(&value, &zero, sizeof value) == 0;
}

// The double 1.0 in every place would be legal and visible.
KineLoad SomeLoad() { return {1.0, {2.0, 3.0, 4.0}, {5.0, 6.0, 7.0}, {8.0, 9.0, 10.0}}; }

class ArgumentsTest : public ::testing::Test
{
protected:
    const std::unique_ptr<Store> store = std::make_unique<Store>();
    Arguments in{*store};
};

}  // namespace

TEST_F(ArgumentsTest, nothing_taken_is_success) { EXPECT_EQ(in.Code(), KINE_OK); }

TEST_F(ArgumentsTest, legal_record_comes_back_converted)
{
    const KineLoad load = SomeLoad();
    const Load taken = in.Take(&load);
    EXPECT_EQ(in.Code(), KINE_OK);
    EXPECT_EQ(taken.mass, 1.0);
    EXPECT_EQ(taken.inertia.x, 8.0 * 0.017453292519943295);
}

TEST_F(ArgumentsTest, refused_record_comes_back_as_zeros_with_its_code)
{
    KineLoad load = SomeLoad();
    load.Mass = -1.0;
    EXPECT_TRUE(IsZero(in.Take(&load)));
    EXPECT_EQ(in.Code(), KINE_ERR_LOAD);
}

TEST_F(ArgumentsTest, null_of_each_record_has_the_code_of_the_record)
{
    EXPECT_TRUE(IsZero(Arguments(*store).Take(static_cast<const KineJoint*>(nullptr))));
    const auto codeOf = [this](auto* null) {
        Arguments arguments(*store);
        static_cast<void>(arguments.Take(null));
        return arguments.Code();
    };
    EXPECT_EQ(codeOf(static_cast<const KineJoint*>(nullptr)), KINE_ERR_JOINT);
    EXPECT_EQ(codeOf(static_cast<const KinePose*>(nullptr)), KINE_ERR_POSE);
    EXPECT_EQ(codeOf(static_cast<const KineTool*>(nullptr)), KINE_ERR_TOOL);
    EXPECT_EQ(codeOf(static_cast<const KineWobj*>(nullptr)), KINE_ERR_WOBJ);
    EXPECT_EQ(codeOf(static_cast<const KineLoad*>(nullptr)), KINE_ERR_LOAD);
}

TEST_F(ArgumentsTest, records_after_a_refused_one_are_not_looked_at)
{
    static_cast<void>(in.Take(static_cast<const KineTool*>(nullptr)));
    const KineLoad load = SomeLoad();
    EXPECT_TRUE(IsZero(in.Take(&load)));
    // A work object on a unit that is not there would print.
    const KineWobj wobj{};
    EXPECT_EQ(PrintedBy([&] { static_cast<void>(in.Take(&wobj)); }), "");
    EXPECT_EQ(in.Code(), KINE_ERR_TOOL);
}

TEST_F(ArgumentsTest, requirement_counts_in_its_place)
{
    in.Require(true, KINE_ERR_HOLD);
    EXPECT_EQ(in.Code(), KINE_OK);
    in.Require(false, KINE_ERR_HOLD);
    EXPECT_EQ(in.Code(), KINE_ERR_HOLD);
    in.Require(false, KINE_ERR_POSE);
    EXPECT_EQ(in.Code(), KINE_ERR_HOLD);
    static_cast<void>(in.Take(static_cast<const KineLoad*>(nullptr)));
    EXPECT_EQ(in.Code(), KINE_ERR_HOLD);
    in.Require(true, KINE_ERR_POSE);
    EXPECT_EQ(in.Code(), KINE_ERR_HOLD);
}

// The record rules that no export shows by themselves.
#include "api/validate.h"

#include <gtest/gtest.h>

#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {}  // namespace

TEST(IsLegalFrame, tests_each_angle_and_nothing_else)
{
    for (double KineFrame::*angle : {&KineFrame::A, &KineFrame::B, &KineFrame::C}) {
        KineFrame frame = {1e300, -1e300, kNan, 0.0, 0.0, 0.0};
        for (const double inside : {180.0, -180.0, kNan}) {
            frame.*angle = inside;
            EXPECT_TRUE(IsLegalFrame(frame)) << inside;
        }
        for (const double outside : {180.0000001, -180.0000001}) {
            frame.*angle = outside;
            EXPECT_FALSE(IsLegalFrame(frame)) << outside;
        }
    }
}

TEST(IsLegalJoint, accepts_every_record)
{
    EXPECT_TRUE(IsLegalJoint(Untouched<KineJoint>()));
    KineJoint joints{};
    for (const double value : {kNan, 1e308, kInf}) {
        for (double& axis : joints.Axis) axis = value;
        for (double& axis : joints.ExtAxis) axis = value;
        EXPECT_TRUE(IsLegalJoint(joints));
    }
}

// The comparison is signed on both sides: a count that no setter stores refuses what lies at or above it.
TEST(IsLegalWobj, compares_the_index_with_the_count_of_the_store_it_is_given)
{
    Store store{};
    KineWobj wobj{};
    struct Case
    {
        int count;
        int index;
        bool legal;
    };
    for (const auto& [count, index, legal] :
         {Case{-5, -1, false}, Case{-1, -2, true}, Case{0, -1, true}, Case{3, 2, true}, Case{3, 3, false},
          Case{3, 0, false}, Case{200, 127, true}}) {
        store.mechUnits.mechUnitCount = count;
        wobj.MechUnitIndex = static_cast<int8_t>(index);
        bool result = false;
        const std::string printed = PrintedBy([&] { result = IsLegalWobj(store, wobj); });
        EXPECT_EQ(result, legal) << count << " " << index;
        EXPECT_EQ(printed, legal ? "" : "IsLegalWobj,!pWobj->UFFix:" + std::to_string(count) + ";\n");
    }
}

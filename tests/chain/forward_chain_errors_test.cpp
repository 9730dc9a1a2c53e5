// What stops a forward chain: code, line and order of the steps. A failing chain leaves its result alone.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "chain/forward_chain.h"
#include "support/cell_plans.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

using Chain = KineResult (*)(const Store&, const ForwardRequest&, PoseRecord&);

struct NamedChain
{
    const char* name;
    Chain run;
};

constexpr NamedChain kBase{"base", JointToBase};
constexpr NamedChain kFlange{"flange", JointToFlange};
constexpr NamedChain kWorld{"world", JointToWorld};
constexpr NamedChain kWobj{"work object", JointToWobj};
constexpr NamedChain kChains[] = {kBase, kFlange, kWorld, kWobj};

constexpr std::uint8_t kBytes[] = {0, 1, 2, 255};

constexpr CellPlan kPlan{kSix, kOneRotaryAxis, kTwoRotaryAxes};

ForwardRequest HeldToolRequest()
{
    return {CellJoints(),
            MakeTool(1, CarriedFrame(kPlan)),
            MakeWobjOnUnit(2, {1.0, 2.0, 3.0, 0.1, 0.2, 0.3}),
            {}};
}

ForwardRequest StationaryToolRequest()
{
    return {
        CellJoints(), MakeTool(0, {500.0, 0.0, 0.0, 0.0, 0.0, 0.0}), MakeWobj(1, CarriedFrame(kPlan)), {}};
}

// Byte 2 of the tool: all chains take the path of the stationary tool, with a work object in the cell.
ForwardRequest ToolByteTwoRequest()
{
    ForwardRequest request = HeldToolRequest();
    request.tool.heldByRobot = 2;
    return request;
}

void ExpectFailure(const NamedChain& chain, const Store& store, const ForwardRequest& request,
                   KineResult code, const std::string& line)
{
    SCOPED_TRACE(chain.name);
    PoseRecord answer = Untouched<PoseRecord>();
    KineResult result = 0;
    EXPECT_EQ(PrintedBy([&] { result = chain.run(store, request, answer); }), line);
    EXPECT_EQ(result, code);
}

void ExpectSuccess(const NamedChain& chain, const Store& store, const ForwardRequest& request)
{
    SCOPED_TRACE(chain.name);
    PoseRecord answer = Untouched<PoseRecord>();
    KineResult result = 1;
    EXPECT_EQ(PrintedBy([&] { result = chain.run(store, request, answer); }), "");
    EXPECT_EQ(result, 0u);
    EXPECT_FALSE(IsUntouched(answer));
}

}  // namespace

TEST(ForwardChains, not_initialised_stops_at_step_one)
{
    for (const std::int32_t state : {0, 1, 3}) {
        Store store = MakeCell(kPlan);
        store.arm.initState = state;
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, HeldToolRequest(), 0x6001u, "FK Error 1:24577\n");
            ExpectFailure(chain, store, StationaryToolRequest(), 0x6001u, "FK Error 1:24577\n");
        }
    }
}

TEST(ForwardChains, hold_conflict_stops_at_step_two)
{
    const Store store = MakeCell(kPlan);
    for (const NamedChain& chain : kChains) {
        for (const std::uint8_t tool : kBytes) {
            for (const std::uint8_t wobj : kBytes) {
                ForwardRequest request = HeldToolRequest();
                request.tool.heldByRobot = tool;
                request.wobj.heldByRobot = wobj;
                if ((tool != 0) != (wobj != 0)) continue;
                SCOPED_TRACE(testing::Message() << int{tool} << ", " << int{wobj});
                ExpectFailure(chain, store, request, 0x6050u, "FK Error 2:24656\n");
            }
        }
    }
}

// The configuration of an unknown arm is empty, so its chains get as far as the arm itself.
TEST(ForwardChains, unknown_arm_type_stops_at_step_three)
{
    for (const std::int32_t type : {0, 5, std::numeric_limits<std::int32_t>::max()}) {
        Store store = MakeCell(kPlan);
        store.arm.armType = type;
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, StationaryToolRequest(), 0xFFFFFFFFu, "FK Error 3:-1\n");
            ExpectFailure(chain, store, ToolByteTwoRequest(), 0xFFFFFFFFu, "FK Error 3:-1\n");
        }
        for (const NamedChain& chain : {kBase, kWorld, kWobj}) {
            ExpectFailure(chain, store, HeldToolRequest(), 0xFFFFFFFFu, "FK Error 3:-1\n");
        }
    }
}

TEST(JointToFlange, held_tool_does_not_need_an_arm)
{
    Store store = MakeCell(kPlan);
    store.arm.armType = 5;
    PoseRecord answer = Untouched<PoseRecord>();
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(JointToFlange(store, HeldToolRequest(), answer), 0u); }), "");
    EXPECT_TRUE(SameBits(answer.frame.AsPose(), CarriedFrame(kPlan)));
    EXPECT_TRUE(SameBits(answer.config, KineArmConfig{0, 0, 0, 0}));
    EXPECT_TRUE(SameBits(answer.extAxis, std::array<double, 6>{}));
}

TEST(ForwardChains, bad_mounting_mode_stops_at_step_four)
{
    for (const std::int32_t mode : {0, 1, 4, -1}) {
        Store store = MakeCell(kPlan);
        store.mounting.mode = mode;
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, StationaryToolRequest(), 0x6032u, "FK Error 4:24626\n");
            ExpectFailure(chain, store, ToolByteTwoRequest(), 0x6032u, "FK Error 4:24626\n");
        }
        ExpectFailure(kWorld, store, HeldToolRequest(), 0x6032u, "FK Error 4:24626\n");
        ExpectFailure(kWobj, store, HeldToolRequest(), 0x6032u, "FK Error 4:24626\n");
    }
}

TEST(ForwardChains, unusable_carrier_stops_at_step_four)
{
    std::vector<Store> cells = CellsWithBadCarrier(kPlan);
    cells.push_back(MakeCell(kPlan));
    cells.back().mechUnits.mechUnitCount = 0;
    for (const Store& store : cells) {
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, StationaryToolRequest(), 0x6033u, "FK Error 4:24627\n");
        }
        ExpectFailure(kWorld, store, HeldToolRequest(), 0x6033u, "FK Error 4:24627\n");
        ExpectFailure(kWobj, store, HeldToolRequest(), 0x6033u, "FK Error 4:24627\n");
    }
}

// With a tool on the robot neither base nor flange ask where the robot or the work object stands.
TEST(ForwardChains, held_tool_in_base_and_flange_needs_no_cell)
{
    Store store = MakeCell(kPlan);
    store.mounting.mode = 0;
    store.mechUnits = {};
    ExpectSuccess(kBase, store, HeldToolRequest());
    ExpectSuccess(kFlange, store, HeldToolRequest());
}

TEST(ForwardChains, unusable_unit_under_the_work_object_stops_at_step_six)
{
    for (const Store& store : CellsWithBadPositioner(kPlan)) {
        ExpectFailure(kWobj, store, HeldToolRequest(), 0x6031u, "FK Error 6:24625\n");
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, ToolByteTwoRequest(), 0x6031u, "FK Error 6:24625\n");
        }
        // The world does not ask for the work object of a held tool.
        ExpectSuccess(kWorld, store, HeldToolRequest());
    }
    ForwardRequest negative = HeldToolRequest();
    negative.wobj.mechUnit = -1;
    ExpectFailure(kWobj, MakeCell(kPlan), negative, 0x6031u, "FK Error 6:24625\n");
}

TEST(ForwardChains, rotary_axis_at_the_origin_stops_at_step_six)
{
    for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
        Store store = MakeCell(kPlan);
        store.mechUnits.units[2].axisFrame[axis].t = {0.0, 0.0, 0.0};
        ExpectFailure(kWobj, store, HeldToolRequest(), 0x6034u, "FK Error 6:24628\n");
        for (const NamedChain& chain : kChains) {
            ExpectFailure(chain, store, ToolByteTwoRequest(), 0x6034u, "FK Error 6:24628\n");
        }
    }
}

// From the base to the world an axis at the origin is no obstacle.
TEST(ForwardChains, carrier_at_the_origin_is_served)
{
    Store store = MakeCell(kPlan);
    store.mechUnits.units[1].axisFrame[0].t = {0.0, 0.0, 0.0};
    for (const NamedChain& chain : kChains) {
        ExpectSuccess(chain, store, HeldToolRequest());
        ExpectSuccess(chain, store, StationaryToolRequest());
    }
}

// A tool that is not fixed would ride on a unit: no export makes one.
TEST(ForwardChains, stationary_tool_on_a_unit_stops_at_step_six_when_the_unit_is_not_usable)
{
    ForwardRequest request = StationaryToolRequest();
    request.tool.fixedInWorld = 0;
    for (const NamedChain& chain : kChains) {
        ExpectFailure(chain, MakeCell(kPlan), request, 0x6031u, "FK Error 6:24625\n");
        request.tool.unit = 2;
        ExpectSuccess(chain, MakeCell(kPlan), request);
        request.tool.unit = 0;
    }
}

// Every earlier failure hides the later ones.
TEST(ForwardChains, the_first_failing_step_decides)
{
    Store store = MakeCell(kPlan);
    store.arm.armType = 5;
    store.arm.initState = 1;
    store.mounting.mode = 0;
    store.mechUnits = {};
    ForwardRequest conflict = ToolByteTwoRequest();
    conflict.wobj.heldByRobot = 1;
    for (const NamedChain& chain : kChains) {
        ExpectFailure(chain, store, conflict, 0x6001u, "FK Error 1:24577\n");
    }
    store.arm.initState = 2;
    for (const NamedChain& chain : kChains) {
        ExpectFailure(chain, store, conflict, 0x6050u, "FK Error 2:24656\n");
        ExpectFailure(chain, store, ToolByteTwoRequest(), 0xFFFFFFFFu, "FK Error 3:-1\n");
    }
    store.arm.armType = kSix;
    for (const NamedChain& chain : kChains) {
        ExpectFailure(chain, store, ToolByteTwoRequest(), 0x6032u, "FK Error 4:24626\n");
    }
    store.mounting.mode = kFixedInWorld;
    for (const NamedChain& chain : kChains) {
        ExpectFailure(chain, store, ToolByteTwoRequest(), 0x6031u, "FK Error 6:24625\n");
    }
}

// No chain comes so far with such bytes. The unit of the work object is unknown too: step 6 would refuse it.
TEST(WorldToRelative, hold_conflict_stops_at_step_five_and_keeps_the_record)
{
    const Store store = MakeCell(kPlan);
    for (const std::uint8_t toolByte : kBytes) {
        for (const std::uint8_t wobjByte : kBytes) {
            if ((toolByte != 0) != (wobjByte != 0)) continue;
            SCOPED_TRACE(testing::Message() << int{toolByte} << ", " << int{wobjByte});
            const Tool tool = MakeTool(toolByte, CarriedFrame(kPlan));
            Wobj wobj = MakeWobjOnUnit(77, {1.0, 2.0, 3.0, 0.1, 0.2, 0.3});
            wobj.heldByRobot = wobjByte;
            const PoseRecord inWorld{Pose{10.0, 20.0, 30.0, 0.4, 0.5, 0.6}, {1, 2, 3, 4}, kExtAxis};
            PoseRecord record = inWorld;
            KineResult code = 0;
            EXPECT_EQ(PrintedBy([&] { code = WorldToRelative(store, tool, wobj, record); }),
                      "FK Error 5:24656\n");
            EXPECT_EQ(code, 0x6050u);
            EXPECT_TRUE(SameRecordBits(record, inWorld));
        }
    }
}

// NaN joints are no failure: they pass on to the answer.
TEST(ForwardChains, nan_joints_give_a_nan_pose)
{
    ForwardRequest request = HeldToolRequest();
    request.joints.axis[1] = kNan;
    for (const NamedChain& chain : {kBase, kWorld, kWobj}) {
        PoseRecord answer{};
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(chain.run(MakeCell(kPlan), request, answer), 0u); }), "");
        EXPECT_TRUE(std::isnan(answer.frame.AsPose().x)) << chain.name;
    }
}

TEST(JointToVision, fails_silently)
{
    struct Case
    {
        std::int32_t type, state;
        KineResult code;
    };
    for (const Case& c : {Case{kSix, 0, 0x6001u}, Case{kSix, 1, 0x6001u}, Case{5, 1, 0x6001u},
                          Case{5, 2, 0xFFFFFFFFu}, Case{0, 2, 0xFFFFFFFFu}}) {
        Store store = MakeCell(kPlan);
        store.arm.armType = c.type;
        store.arm.initState = c.state;
        PoseRecord answer = Untouched<PoseRecord>();
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(JointToVision(store, CellJoints(), answer), c.code); }), "");
    }
}

// Conversions and offsets of poses on records and stores of the test's own: also from mountings that no
// export can set.
#include "chain/frame_conversions.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "support/cell_plans.h"
#include "support/math_compare.h"
#include "support/naive_transform.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

template <std::uint8_t... values>
constexpr std::array<std::uint8_t, sizeof...(values)> kBytes = {values...};

PoseRecord Record(const Pose& frame)
{
    PoseRecord record{};
    record.frame = frame;
    record.config = {std::numeric_limits<std::int32_t>::min(), -3, 77,
                     std::numeric_limits<std::int32_t>::max()};
    record.extAxis = kExtAxis;
    return record;
}

// The frame is new, all else is that of the record.
void ExpectResult(const PoseRecord& result, const PoseRecord& record, const Mat4& expected)
{
    EXPECT_TRUE(PoseIs(result.frame, expected));
    EXPECT_TRUE(SameBits(result.config, record.config));
    EXPECT_TRUE(SameBits(result.extAxis, record.extAxis));
}

PoseRecord Converted(const Store& store, std::int32_t mode, const PoseRecord& record, const Tool& tool,
                     const Wobj& wobj)
{
    PoseRecord result = Untouched<PoseRecord>();
    EXPECT_EQ(CoordinateToWobj(store, mode, record, tool, wobj, result), KINE_OK);
    return result;
}

void ExpectRefused(const Store& store, std::int32_t mode, const Tool& tool, const Wobj& wobj, KineResult code)
{
    PoseRecord result = Untouched<PoseRecord>();
    EXPECT_EQ(CoordinateToWobj(store, mode, Record({}), tool, wobj, result), code);
    EXPECT_TRUE(IsUntouched(result));
}

}  // namespace

TEST(frame_conversions, to_and_from_work_objects_agree_with_plain_matrices)
{
    SeededRandom random(581);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Pose user = RandomPose(random, 1000.0);
        const Pose object = RandomPose(random, 1000.0);
        const Pose flange = RandomPose(random, 1000.0);
        const PoseRecord record = Record(RandomPose(random, 1000.0));
        const Wobj wobj = MakeWobj(0, user, object);
        const Mat4 combined = MatrixOf(user) * MatrixOf(object);
        const Mat4 onFlange = MatrixOf(flange) * combined;
        ExpectResult(WorldToFixedWobj(record, wobj), record, RigidInverse(combined) * MatrixOf(record.frame));
        ExpectResult(WorldToHeldWobj(record, wobj, flange), record,
                     RigidInverse(onFlange) * MatrixOf(record.frame));
        ExpectResult(HeldWobjToWorld(record, wobj, flange), record, onFlange * MatrixOf(record.frame));
        ExpectResult(HeldWobjToWorld(WorldToHeldWobj(record, wobj, flange), wobj, flange), record,
                     MatrixOf(record.frame));
    }
}

TEST(frame_conversions, read_the_combined_frame_only)
{
    const Pose user{1.0, 2.0, 3.0, 0.1, 0.2, 0.3};
    const Pose object{4.0, 5.0, 6.0, 0.4, 0.5, 0.6};
    const PoseRecord record = Record({7.0, 8.0, 9.0, 0.7, 0.8, 0.9});
    const Mat4 combined = MatrixOf(user) * MatrixOf(object);
    const Mat4 expected = RigidInverse(MatrixOf(kBaseFrame) * combined) * MatrixOf(record.frame);
    // However the same product is divided between the two frames, and whatever else the record holds.
    for (const auto& [first, second] : {std::pair{user, object}, std::pair{PoseOf(combined), Pose{}},
                                        std::pair{Pose{}, PoseOf(combined)}}) {
        Wobj wobj = MakeWobj(1, first, second);
        for (const int byte : {0, 1, 255}) {
            wobj.userFixed = static_cast<std::uint8_t>(byte);
            wobj.mechUnit = -byte;
            ExpectResult(WorldToHeldWobj(record, wobj, Pose{kBaseFrame}), record, expected);
        }
    }
}

TEST(OffsetInOwnFrame, is_the_product_of_frames)
{
    SeededRandom random(582);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const PoseRecord record = Record(RandomPose(random, 1000.0));
        const Pose offset = RandomPose(random, 1000.0);
        ExpectResult(OffsetInOwnFrame(record, offset), record, MatrixOf(record.frame) * MatrixOf(offset));
    }
}

TEST(OffsetInReference, adds_positions_and_turns_in_place)
{
    SeededRandom random(583);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Pose pose = RandomPose(random, 1000.0);
        const PoseRecord record = Record(pose);
        const Pose offset = RandomPose(random, 1000.0);
        const Mat4 position = Shift(pose.x + offset.x, pose.y + offset.y, pose.z + offset.z);
        ExpectResult(OffsetInReference(record, offset), record,
                     position * RotationOf(MatrixOf(offset)) * RotationOf(MatrixOf(record.frame)));
    }
}

TEST(CoordinateToWobj, other_modes_keep_every_bit)
{
    const Store store{};  // nothing in it is looked at
    const PoseRecord record = Record({1.0, 2.0, 3.0, 99.0, -kHalfTurn, kNan});
    for (const std::int32_t mode : {0, 1, 2, -3, 255, std::numeric_limits<std::int32_t>::min(),
                                    std::numeric_limits<std::int32_t>::max()}) {
        const PoseRecord result = Converted(store, mode, record, MakeTool(1, {}), MakeWobj(1, {}));
        EXPECT_TRUE(SameRecordBits(result, record)) << mode;
    }
}

TEST(CoordinateToWobj, from_the_world_needs_a_tool_that_is_not_held)
{
    const Store store{};
    const Pose user{100.0, 200.0, 300.0, 0.4, 0.5, 0.6};
    const PoseRecord record = Record({-50.0, 60.0, 70.0, -0.8, 0.9, 1.0});
    for (const std::uint8_t wobjHeld : kBytes<0, 1, 2>) {
        const Wobj wobj = MakeWobj(wobjHeld, user);
        ExpectResult(Converted(store, kFromWorldToFixedWobj, record, MakeTool(0, kBaseFrame), wobj), record,
                     RigidInverse(MatrixOf(user)) * MatrixOf(record.frame));
        for (const std::uint8_t toolHeld : kBytes<1, 2, 255>) {
            ExpectRefused(store, kFromWorldToFixedWobj, MakeTool(toolHeld, {}), wobj, KINE_ERR_CRD_WOBJ);
        }
    }
}

TEST(CoordinateToWobj, from_the_base_agrees_with_plain_matrices_in_every_cell)
{
    SeededRandom random(584);
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store store = MakeCell(plan);
        for (int i = 0; i < 20; ++i) {
            const Pose object = RandomPose(random, 500.0);
            const Pose toolFrame = RandomPose(random, 500.0);
            const PoseRecord record = Record(RandomPose(random, 1000.0));
            const Mat4 inWorld = WorldFromBase(plan) * MatrixOf(record.frame);

            const Wobj inCell = CellWobj(plan, object);
            for (const std::uint8_t held : kBytes<1, 2>) {
                ExpectResult(Converted(store, kFromBaseToWobj, record, MakeTool(held, toolFrame), inCell),
                             record, RigidInverse(WorldFromWobj(plan, object)) * inWorld);
                ExpectResult(
                    Converted(store, kFromBaseToWobj, record, MakeTool(0, toolFrame), MakeWobj(held, object)),
                    record, RigidInverse(inWorld) * MatrixOf(toolFrame));
            }
        }
    }
}

TEST(CoordinateToWobj, from_the_base_asks_neither_arm_nor_state)
{
    for (const std::int32_t state : {0, kInitStateTypeStored, kInitStateReady}) {
        for (const std::int32_t type : {0, 4, 5, 6, 4110}) {
            Store store = MakeCell({kSix, kOneLinearAxis, kTwoRotaryAxes});
            store.arm.initState = state;
            store.arm.armType = type;
            const CellPlan plan{kSix, kOneLinearAxis, kTwoRotaryAxes};
            const Pose object{10.0, 20.0, 30.0, 0.1, 0.2, 0.3};
            const PoseRecord record = Record({-50.0, 60.0, 70.0, -0.8, 0.9, 1.0});
            ExpectResult(
                Converted(store, kFromBaseToWobj, record, MakeTool(1, {}), CellWobj(plan, object)), record,
                RigidInverse(WorldFromWobj(plan, object)) * WorldFromBase(plan) * MatrixOf(record.frame));
        }
    }
}

TEST(CoordinateToWobj, from_the_base_needs_a_described_mounting)
{
    for (const std::int32_t mode : {0, 1, 4, -2}) {
        Store store{};
        store.mounting.mode = mode;
        // Before the hold, which conflicts here.
        ExpectRefused(store, kFromBaseToWobj, MakeTool(0, {}), MakeWobj(0, {}), KINE_ERR_F2W_MODE);
        ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), MakeWobj(0, {}), KINE_ERR_F2W_MODE);
    }
}

TEST(CoordinateToWobj, from_the_base_reports_the_first_failing_step)
{
    Store store = MakeCell({kSix, kNoUnit, kOneRotaryAxis});
    const Wobj onUnit = MakeWobjOnUnit(2, {});
    const Wobj onNothing = MakeWobjOnUnit(-1, {});

    ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), onNothing, KINE_ERR_W2F_UNIT_KIND);
    store.mechUnits.units[2].axisFrame[0].t = {0.0, 0.0, 0.0};
    ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), onUnit, KINE_ERR_AXIS_ORIGIN);
    store.mechUnits.units[2].unitKind = 4;
    ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), onUnit, KINE_ERR_W2F_UNIT_KIND);

    Wobj held = onNothing;
    held.heldByRobot = 1;
    ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), held, KINE_ERR_HOLD_CONFLICT);
    ExpectRefused(store, kFromBaseToWobj, MakeTool(2, {}), held, KINE_ERR_HOLD_CONFLICT);
    ExpectRefused(store, kFromBaseToWobj, MakeTool(0, {}), onNothing, KINE_ERR_HOLD_CONFLICT);

    store.mounting = {kOnMechUnit, 3, {}};
    ExpectRefused(store, kFromBaseToWobj, MakeTool(0, {}), onNothing, KINE_ERR_F2W_UNIT_KIND);
    ExpectRefused(store, kFromBaseToWobj, MakeTool(1, {}), onUnit, KINE_ERR_F2W_UNIT_KIND);
}

// A tool that is neither held nor fixed in the world: its unit is asked.
TEST(CoordinateToWobj, from_the_base_takes_a_stationary_tool_where_it_stands)
{
    const CellPlan plan{kSix, kNoUnit, kOneRotaryAxis};
    const Store store = MakeCell(plan);
    Tool tool = MakeTool(0, {10.0, 20.0, 30.0, 0.1, 0.2, 0.3});
    tool.fixedInWorld = 0;
    tool.unit = 2;
    const PoseRecord record = Record({-50.0, 60.0, 70.0, -0.8, 0.9, 1.0});
    ExpectResult(
        Converted(store, kFromBaseToWobj, record, tool, MakeWobj(1, {})), record,
        RigidInverse(WorldFromBase(plan) * MatrixOf(record.frame)) * WorldFromWobj(plan, tool.frame));
}

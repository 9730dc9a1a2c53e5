// Aligned joints in cells of their own: robot base turned on its carrier, work object on its positioner, and
// what no export reaches.
#include "motion/align.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/cell_plans.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr Pose kObject{40.0, -30.0, 25.0, 0.7, -0.3, 0.2};
constexpr Pose kTool{15.0, -25.0, 120.0, 0.5, -0.6, 0.7};

AlignRequest MakeRequest(const CellPlan& plan, std::int32_t mode)
{
    AlignRequest request{};
    request.mode = mode;
    request.current = CellJoints();
    // Elbow bent enough to reach every aligned pose. Axis 4 of the four-axis arms where several of the turns
    // tried give the very same bits.
    const double elbow = plan.armType == kFour ? 1.0 : 1.0 - kHalfTurn;
    if (plan.armType == kSix) {
        request.current.axis[2] = 0.1;
    } else {
        request.current.axis = {-0.7, elbow, 3.5, 1.3};
    }
    request.tool = MakeTool(1, plan.armType == kSix ? kTool : CarriedFrame(plan));
    request.wobj = CellWobj(plan, kObject);
    return request;
}

Mat4 ToolAt(const Joints& joints)
{
    return NaiveSixAxisChain(WristArm().SixAxis, joints.axis).flange * MatrixOf(kTool);
}

// The reference axes in the base.
Mat4 BaseFromReference(const CellPlan& plan, std::int32_t mode)
{
    if (mode == 2) return Identity4();
    const Mat4 baseFromWorld = RigidInverse(WorldFromBase(plan));
    return mode == 5 ? baseFromWorld : baseFromWorld * WorldFromWobj(plan, kObject);
}

KineResult Target(const Store& store, const AlignRequest& request, Joints& target, std::string& printed)
{
    KineResult code = KINE_OK;
    printed = PrintedBy([&] { code = AlignTarget(store, request, target); });
    return code;
}

void ExpectRefused(const Store& store, const AlignRequest& request, KineResult expected,
                   const std::string& line)
{
    auto target = Untouched<Joints>();
    std::string printed;
    const KineResult code = Target(store, request, target, printed);
    EXPECT_EQ(code, expected) << std::hex << code;
    EXPECT_EQ(printed, line);
    EXPECT_TRUE(IsUntouched(target));
}

// Index of the largest element of the Z axis, in size.
std::size_t NearestOf(const Mat4& m)
{
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < 3; ++i) {
        if (std::fabs(m[i][2]) > std::fabs(m[nearest][2])) nearest = i;
    }
    return nearest;
}

}  // namespace

TEST(AlignTarget, brings_z_onto_the_nearest_axis_by_the_smallest_turn_and_keeps_the_point_in_every_cell)
{
    for (const CellPlan& plan : AllCellPlans()) {
        if (plan.armType != kSix) continue;
        const Store store = MakeCell(plan);
        for (const std::int32_t mode : {2, 4, 5, -1}) {
            SCOPED_TRACE(NameOf(plan) + ", mode " + std::to_string(mode));
            const AlignRequest request = MakeRequest(plan, mode);
            const Mat4 referenceFromBase = RigidInverse(BaseFromReference(plan, mode));
            const Mat4 before = referenceFromBase * ToolAt(request.current);
            const std::size_t nearest = NearestOf(before);
            auto target = Untouched<Joints>();
            std::string printed;
            ASSERT_EQ(Target(store, request, target, printed), KINE_OK);
            EXPECT_EQ(printed, "");
            const Mat4 after = referenceFromBase * ToolAt(target);
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_NEAR(after[i][3], before[i][3], 1e-8);
                const double along = i == nearest ? std::copysign(1.0, before[i][2]) : 0.0;
                EXPECT_NEAR(after[i][2], along, 1e-10);
            }
            // The turn from before to after is as large as the angle between the two Z axes: trace 1 + 2 cos.
            const Mat4 turn = RigidInverse(RotationOf(before)) * RotationOf(after);
            EXPECT_NEAR(turn[0][0] + turn[1][1] + turn[2][2], 1.0 + 2.0 * std::fabs(before[nearest][2]),
                        1e-9);
            EXPECT_EQ(target.extAxis, kExtAxis);
        }
    }
}

TEST(AlignTarget, leaves_an_upright_four_axis_tool_alone_in_base_mode)
{
    for (const CellPlan& plan : AllCellPlans()) {
        if (plan.armType == kSix) continue;
        const Store store = MakeCell(plan);
        const AlignRequest request = MakeRequest(plan, 2);
        auto target = Untouched<Joints>();
        std::string printed;
        ASSERT_EQ(Target(store, request, target, printed), KINE_OK);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(target.axis[i], request.current.axis[i], 1e-10) << NameOf(plan);
        }
        EXPECT_EQ(target.extAxis, kExtAxis);
    }
}

TEST(AlignTarget, a_store_that_is_not_ready_is_0x6001_before_the_mode_is_looked_at)
{
    for (const std::int32_t type : {kSix, kFour, k4110}) {
        const CellPlan plan = {type, kNoUnit, kNoUnit};
        Store store = MakeCell(plan);
        for (const std::int32_t state : {0, kInitStateTypeStored}) {
            store.arm.initState = state;
            for (const std::int32_t mode : {2, 4, 5, -1, 0, 3}) {
                ExpectRefused(store, MakeRequest(plan, mode), KINE_ERR_NOT_INITIALISED, "");
            }
        }
    }
}

TEST(AlignTarget, undefined_modes_are_0x6018_before_the_mounting_is_looked_at)
{
    for (const std::int32_t type : {kSix, kFour, k4110}) {
        const CellPlan plan = {type, kNoUnit, kNoUnit};
        Store store = MakeCell(plan);
        store.mounting.mode = 4;
        for (const std::int32_t mode : {0, 1, 3, 6, -2}) {
            ExpectRefused(store, MakeRequest(plan, mode), KINE_ERR_DIRECTION, "");
        }
        for (const std::int32_t mode : {4, -1}) {
            AlignRequest request = MakeRequest(plan, mode);
            request.tool.heldByRobot = 0;
            ExpectRefused(store, request, KINE_ERR_DIRECTION, "");
        }
    }
}

TEST(AlignTarget, mounting_neither_fixed_nor_on_a_unit_is_0x6032_but_in_base_mode)
{
    const CellPlan plan = {kSix, kNoUnit, kNoUnit};
    Store store = MakeCell(plan);
    store.mounting.mode = 4;
    ExpectRefused(store, MakeRequest(plan, 5), KINE_ERR_F2W_MODE, "");
    ExpectRefused(store, MakeRequest(plan, 4), KINE_ERR_F2W_MODE, "FK Error 4:24626\n");
    ExpectRefused(store, MakeRequest(plan, -1), KINE_ERR_F2W_MODE, "FK Error 4:24626\n");
    Joints target{};
    std::string printed;
    EXPECT_EQ(Target(store, MakeRequest(plan, 2), target, printed), KINE_OK);
}

TEST(AlignTarget, refusals_by_the_arm_keep_the_result)
{
    const CellPlan six = {kSix, kNoUnit, kNoUnit};
    const Store sixStore = MakeCell(six);
    AlignRequest request = MakeRequest(six, 2);
    request.current.axis[0] = std::nan("");
    ExpectRefused(sixStore, request, KINE_ERR_ALIGN_NO_SOLUTION, "");

    for (const std::int32_t type : {kFour, k4110}) {
        const CellPlan plan = {type, kNoUnit, kNoUnit};
        AlignRequest negative = MakeRequest(plan, 2);
        negative.current.axis[3] = -0.5;
        ExpectRefused(MakeCell(plan), negative, KINE_ERR_ALIGN_TURN, "");
    }
}

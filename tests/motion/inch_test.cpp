// Jog targets in cells of their own: robot base turned on its carrier, work object on its positioner, and
// what no export reaches.
//
// C: frame on the flange; B: robot base; W: world; O: work object; P: stationary tool.
#include "motion/inch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/cell_plans.h"
#include "support/math_compare.h"
#include "support/naive_arms.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kLinearStep = 7.5;     // mm
constexpr double kRotationStep = 0.02;  // rad
constexpr Pose kStationary{650.0, 120.0, 340.0, 0.3, -0.2, 0.1};
constexpr Pose kObject{40.0, -30.0, 25.0, 0.7, -0.3, 0.2};

enum class OnFlange
{
    kTool,
    kWobj
};

// The elbow of the four-axis arms bent further, so that they can reach out.
Joints BentJoints(const CellPlan& plan)
{
    Joints joints = CellJoints();
    if (plan.armType != kSix) joints.axis[1] = -1.3;
    return joints;
}

InchRequest MakeRequest(const CellPlan& plan, std::int32_t mode, OnFlange onFlange)
{
    InchRequest request{};
    request.mode = mode;
    request.current = BentJoints(plan);
    request.jointStep = 0.1;
    request.linearStep = kLinearStep;
    request.rotationStep = kRotationStep;
    if (onFlange == OnFlange::kTool) {
        request.tool = MakeTool(1, CarriedFrame(plan));
        request.wobj = CellWobj(plan, kObject);
    } else {
        request.tool = MakeTool(0, kStationary);
        request.wobj = MakeWobj(1, {}, CarriedFrame(plan));
    }
    return request;
}

// B from C, rigid arms without tilts.
Mat4 CarriedAt(const CellPlan& plan, const Joints& joints)
{
    const auto& q = joints.axis;
    if (plan.armType == kSix)
        return NaiveSixAxisChain(WristArm().SixAxis, q).flange * MatrixOf(CarriedFrame(plan));
    const double elbow = plan.armType == kFour ? q[1] : q[1] + kHalfTurn;
    return NaiveFourAxisFlange(Scara().FourAxis, q[0], elbow, q[2], q[3]) * MatrixOf(CarriedFrame(plan));
}

Mat4 At(Mat4 m, const Mat4& place)
{
    for (std::size_t i = 0; i < 3; ++i) m[i][3] = place[i][3];
    return m;
}

// The four-axis arms take over position and heading.
Mat4 WithinReach(const CellPlan& plan, const Mat4& m)
{
    return plan.armType == kSix ? m : At(TurnZ(std::atan2(m[1][0], m[0][0])), m);
}

// The step of slots (1, -1, 1, 1): with the first rotation slot about X, on the four-axis arms about Z.
Mat4 StepTurn(const CellPlan& plan, double angle)
{
    return plan.armType == kSix ? TurnX(angle) : TurnZ(angle);
}

Mat4 StepShift() { return Shift(kLinearStep, -kLinearStep, kLinearStep); }

Mat4 ExpectedInCell(const CellPlan& plan, const InchRequest& request, const Mat4& t)
{
    const Mat4 s = StepShift() * StepTurn(plan, kRotationStep);
    const bool isToolHeld = request.tool.heldByRobot != 0;
    if (request.mode == 3) return isToolHeld ? t * s : t * RigidInverse(s);
    return isToolHeld ? s * t : At(StepTurn(plan, -kRotationStep) * t, t);
}

Mat4 Expected(const CellPlan& plan, const InchRequest& request, OnFlange onFlange)
{
    const Mat4 before = CarriedAt(plan, request.current);
    const Mat4 worldFromBase = WorldFromBase(plan);
    if (request.mode == 2) return StepShift() * At(StepTurn(plan, kRotationStep) * before, before);
    if (request.mode == 5) {
        // Directions turned by W from B, then taken along the base axes.
        const Mat4 m = RotationOf(worldFromBase);
        const Mat4 turn = m * StepTurn(plan, kRotationStep) * RigidInverse(m);
        return At(Identity4(), m * StepShift()) * At(turn * before, before);
    }
    if (onFlange == OnFlange::kTool) {
        const Mat4 baseFromWobj = RigidInverse(worldFromBase) * WorldFromWobj(plan, kObject);
        return baseFromWobj * ExpectedInCell(plan, request, RigidInverse(baseFromWobj) * before);
    }
    const Mat4 baseFromTool = RigidInverse(worldFromBase) * MatrixOf(kStationary);
    return baseFromTool * RigidInverse(ExpectedInCell(plan, request, RigidInverse(before) * baseFromTool));
}

void ExpectElementsNear(const Mat4& actual, const Mat4& expected)
{
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) EXPECT_NEAR(actual[i][j], expected[i][j], 1e-8) << i << ", " << j;
    }
}

KineResult Target(const Store& store, const InchRequest& request, Joints& target)
{
    KineResult code = KINE_OK;
    static_cast<void>(PrintedBy([&] { code = InchTarget(store, request, target); }));
    return code;
}

void ExpectRefused(const Store& store, const InchRequest& request, KineResult expected,
                   const std::string& printed)
{
    auto target = Untouched<Joints>();
    KineResult code = KINE_OK;
    EXPECT_EQ(PrintedBy([&] { code = InchTarget(store, request, target); }), printed);
    EXPECT_EQ(code, expected) << std::hex << code;
    EXPECT_TRUE(IsUntouched(target));
}

constexpr CellPlan kBareSix = {kSix, kNoUnit, kNoUnit};
constexpr CellPlan kBareFour = {kFour, kNoUnit, kNoUnit};
constexpr CellPlan kBare4110 = {k4110, kNoUnit, kNoUnit};

}  // namespace

TEST(InchTarget, moves_the_frame_on_the_flange_in_every_cell_and_mode)
{
    for (const CellPlan& plan : AllCellPlans()) {
        const Store store = MakeCell(plan);
        for (const OnFlange onFlange : {OnFlange::kTool, OnFlange::kWobj}) {
            for (const std::int32_t mode : {2, 3, 4, 5}) {
                SCOPED_TRACE(NameOf(plan) + ", mode " + std::to_string(mode) +
                             (onFlange == OnFlange::kTool ? ", tool held" : ", work object held"));
                InchRequest request = MakeRequest(plan, mode, onFlange);
                request.slots = {1.0, -1.0, 1.0, 1.0};
                auto target = Untouched<Joints>();
                ASSERT_EQ(Target(store, request, target), KINE_OK);
                ExpectElementsNear(CarriedAt(plan, target),
                                   WithinReach(plan, Expected(plan, request, onFlange)));
                EXPECT_EQ(target.extAxis, kExtAxis);
            }
        }
    }
}

TEST(InchTarget, no_direction_stays_in_every_cell_and_mode)
{
    for (const CellPlan& plan : AllCellPlans()) {
        const Store store = MakeCell(plan);
        for (const OnFlange onFlange : {OnFlange::kTool, OnFlange::kWobj}) {
            for (const std::int32_t mode : {2, 3, 4, 5, 0, 6}) {
                SCOPED_TRACE(NameOf(plan) + ", mode " + std::to_string(mode));
                const InchRequest request = MakeRequest(plan, mode, onFlange);
                auto target = Untouched<Joints>();
                ASSERT_EQ(Target(store, request, target), KINE_OK);
                const std::size_t axes = plan.armType == kSix ? 6 : 4;
                for (std::size_t i = 0; i < axes; ++i) {
                    EXPECT_NEAR(target.axis[i], request.current.axis[i], 1e-9) << i;
                }
                EXPECT_EQ(target.extAxis, kExtAxis);
            }
        }
    }
}

TEST(InchTarget, joint_jog_adds_radians_to_axes_and_the_same_step_in_degrees_to_external_axes)
{
    for (const CellPlan& plan : {kBareSix, kBareFour, kBare4110}) {
        const Store store = MakeCell(plan);
        InchRequest request = MakeRequest(plan, 1, OnFlange::kTool);
        for (std::size_t i = 0; i < kInchSlots; ++i) request.slots[i] = 0.5 * static_cast<double>(i) - 2.0;
        Joints target{};
        ASSERT_EQ(Target(store, request, target), KINE_OK);
        const std::size_t n = plan.armType == kSix ? 6 : 4;
        for (std::size_t i = 0; i < 8; ++i) {
            const double factor = i < n ? request.slots[i] : 0.0;
            EXPECT_NEAR(target.axis[i], request.current.axis[i] + 0.1 * factor, 1e-14);
        }
        for (std::size_t j = 0; j < 6; ++j) {
            const double step = 18.0 / kHalfTurn;  // 0.1 rad in degrees
            EXPECT_NEAR(target.extAxis[j], kExtAxis[j] + step * request.slots[n + j], 1e-8);
        }
    }
}

// A slot that counts keeps the tool point and so loses the linear step; its own rotation is far too small to
// be seen. One that does not count leaves the linear step.
TEST(InchTarget, rotation_slots_of_a_held_work_object_count_from_above_1e_5)
{
    for (const CellPlan& plan : {kBareSix, kBareFour, kBare4110}) {
        const Store store = MakeCell(plan);
        for (const auto& [slot, counts] :
             {std::pair{0.0, false}, std::pair{JustBelow(1e-5), false}, std::pair{1e-5, false},
              std::pair{-1e-5, false}, std::pair{JustAbove(1e-5), true}, std::pair{-JustAbove(1e-5), true}}) {
            SCOPED_TRACE(::testing::Message() << NameOf(plan) << ", slot " << slot);
            InchRequest request = MakeRequest(plan, 4, OnFlange::kWobj);
            request.slots = {1.0, 0.0, 0.0, slot};
            request.rotationStep = 1e-8;
            Joints target{};
            ASSERT_EQ(Target(store, request, target), KINE_OK);
            const Mat4 baseFromTool = RigidInverse(WorldFromBase(plan)) * MatrixOf(kStationary);
            const Mat4 t = RigidInverse(CarriedAt(plan, request.current)) * baseFromTool;
            const Mat4 moved = counts ? t : Shift(kLinearStep, 0.0, 0.0) * t;
            ExpectElementsNear(CarriedAt(plan, target), baseFromTool * RigidInverse(moved));
        }
    }
}

TEST(InchTarget, rotation_slots_beyond_the_axes_of_the_arm_do_not_count)
{
    for (const CellPlan& plan : {kBareFour, kBare4110}) {
        const Store store = MakeCell(plan);
        InchRequest request = MakeRequest(plan, 4, OnFlange::kWobj);
        request.rotationStep = 0.0;
        const Mat4 baseFromTool = RigidInverse(WorldFromBase(plan)) * MatrixOf(kStationary);
        const Mat4 t = RigidInverse(CarriedAt(plan, request.current)) * baseFromTool;
        for (const std::size_t slot : {4u, 5u}) {
            request.slots = {1.0};
            request.slots[slot] = 1.0;
            Joints target{};
            ASSERT_EQ(Target(store, request, target), KINE_OK);
            ExpectElementsNear(CarriedAt(plan, target),
                               baseFromTool * RigidInverse(Shift(kLinearStep, 0.0, 0.0) * t));
        }
    }
}

TEST(InchTarget, held_byte_of_the_work_object_turns_round_only_when_exactly_1)
{
    const Store store = MakeCell(kBareSix);
    for (const std::uint8_t byte : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
        InchRequest request = MakeRequest(kBareSix, 4, OnFlange::kWobj);
        request.wobj.heldByRobot = byte;
        request.slots = {1.0, 0.0, 0.0, 1.0};
        Joints target{};
        ASSERT_EQ(Target(store, request, target), KINE_OK);
        const Mat4 baseFromTool = RigidInverse(WorldFromBase(kBareSix)) * MatrixOf(kStationary);
        const Mat4 t = RigidInverse(CarriedAt(kBareSix, request.current)) * baseFromTool;
        const Mat4 moved = byte == 1 ? At(TurnX(-kRotationStep) * t, t)
                                     : Shift(kLinearStep, 0.0, 0.0) * TurnX(kRotationStep) * t;
        ExpectElementsNear(CarriedAt(kBareSix, target), baseFromTool * RigidInverse(moved));
    }
}

TEST(InchTarget, a_store_that_is_not_ready_is_0x6001_in_every_mode_without_a_line)
{
    for (const std::int32_t type : {kSix, kFour, k4110}) {
        Store store = MakeCell({type, kNoUnit, kNoUnit});
        for (const std::int32_t state : {0, kInitStateTypeStored}) {
            store.arm.initState = state;
            for (const std::int32_t mode : {1, 2, 3, 4, 5, 0}) {
                ExpectRefused(store, MakeRequest({type, kNoUnit, kNoUnit}, mode, OnFlange::kTool),
                              KINE_ERR_NOT_INITIALISED, "");
            }
        }
    }
}

// No initialisation leaves such a store behind. Joint mode asks for the number of axes only.
TEST(InchTarget, an_arm_type_without_a_model_is_0xFFFFFFFF_wherever_a_pose_is_needed)
{
    for (const std::int32_t type : {0, 5, -4}) {
        Store store = MakeCell(kBareSix);
        store.arm.armType = type;
        for (const std::int32_t mode : {2, 5}) {
            ExpectRefused(store, MakeRequest(kBareSix, mode, OnFlange::kTool), KINE_ERR_UNKNOWN_ARM_TYPE, "");
        }
        for (const std::int32_t mode : {3, 4}) {
            ExpectRefused(store, MakeRequest(kBareSix, mode, OnFlange::kTool), KINE_ERR_UNKNOWN_ARM_TYPE,
                          "FK Error 3:-1\n");
        }
        Joints target{};
        EXPECT_EQ(Target(store, MakeRequest(kBareSix, 1, OnFlange::kTool), target), KINE_OK);
    }
}

TEST(InchTarget, mounting_neither_fixed_nor_on_a_unit_is_0x6032_in_world_mode_and_in_the_chains)
{
    for (const std::int32_t type : {kSix, kFour, k4110}) {
        const CellPlan plan = {type, kNoUnit, kNoUnit};
        Store store = MakeCell(plan);
        store.mounting.mode = 4;
        for (const OnFlange onFlange : {OnFlange::kTool, OnFlange::kWobj}) {
            ExpectRefused(store, MakeRequest(plan, 5, onFlange), KINE_ERR_F2W_MODE, "");
            ExpectRefused(store, MakeRequest(plan, 3, onFlange), KINE_ERR_F2W_MODE, "FK Error 4:24626\n");
            ExpectRefused(store, MakeRequest(plan, 4, onFlange), KINE_ERR_F2W_MODE, "FK Error 4:24626\n");
            Joints target{};
            EXPECT_EQ(Target(store, MakeRequest(plan, 2, onFlange), target), KINE_OK);
        }
    }
}

TEST(InchTarget, an_arm_type_without_a_model_is_refused_before_the_mounting_is_looked_at)
{
    Store store = MakeCell(kBareSix);
    store.arm.armType = 5;
    store.mounting.mode = 4;
    for (const std::int32_t mode : {2, 5}) {
        ExpectRefused(store, MakeRequest(kBareSix, mode, OnFlange::kTool), KINE_ERR_UNKNOWN_ARM_TYPE, "");
    }
}

TEST(InchTarget, a_singular_target_is_0x6092_and_keeps_the_result)
{
    const Store store = MakeCell(kBareSix);
    for (const std::int32_t mode : {2, 3, 4, 5, 0}) {
        InchRequest request = MakeRequest(kBareSix, mode, OnFlange::kTool);
        request.current.axis[4] = 0.05;
        ExpectRefused(store, request, KINE_ERR_INCH_SINGULAR, "");
    }
}

TEST(InchTarget, a_target_out_of_reach_keeps_the_result)
{
    const Store store = MakeCell(kBareSix);
    for (const std::int32_t mode : {2, 3, 4, 5}) {
        InchRequest request = MakeRequest(kBareSix, mode, OnFlange::kTool);
        request.slots = {1000.0};
        ExpectRefused(store, request, KINE_ERR_IK_7, mode == 3 || mode == 4 ? "IK error 5:24727\n" : "");
    }
}

// Joints to the work object and back, in every kind of cell.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/sample_arms.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

struct NamedArm
{
    const char* name;
    KineKinematicParam param;
};

const std::vector<NamedArm>& Arms()
{
    static const std::vector<NamedArm> arms = {{"Puma", Puma()},
                                               {"Puma with gravity", PumaWithGravity()},
                                               {"wrist arm", WristArm()},
                                               {"calibrated wrist arm", CalibratedWristArm()}};
    return arms;
}

KineFrame AnyFrame(SeededRandom& random, double size)
{
    return {random.Uniform(-size, size),   random.Uniform(-size, size),   random.Uniform(-size, size),
            random.Uniform(-180.0, 180.0), random.Uniform(-180.0, 180.0), random.Uniform(-180.0, 180.0)};
}

KineMechUnit AnyUnit(SeededRandom& random, uint16_t kind)
{
    const KineFrame first = AnyFrame(random, 1000.0);
    const KineFrame second = AnyFrame(random, 100.0);
    const int driver = static_cast<int>(random.Below(6));
    const int other = static_cast<int>(random.Below(6));
    if (kind == kLinearKind) return LinearUnit(first, second, driver);
    if (kind == kRotaryKind) return RotaryUnit(first, driver);
    return TwoRotaryUnit(first, second, driver, other);
}

// Joints that the inverse gives back: axes 2, 5 within a half turn, axis 3 on the near or far side of the
// elbow within its turn, any turn of axes 1, 4, 6; well away from singular.
KineJoint AnyJoints(SeededRandom& random, double elbowAngle)
{
    for (;;) {
        KineJoint joints =
            MakeJoints({random.Uniform(-720.0, 720.0), random.Uniform(-179.0, 179.0),
                        random.Uniform(-89.0, 269.0) - elbowAngle, random.Uniform(-720.0, 720.0),
                        random.Uniform(-179.0, 179.0), random.Uniform(-720.0, 720.0)});
        for (double& axis : joints.ExtAxis) axis = random.Uniform(-500.0, 500.0);
        if (Kine_IsSingularity(&joints, 2) == KINE_OK) return joints;
    }
}

struct Cell
{
    bool heldTool;
    uint16_t carrierKind;  // 0: the robot stands at the world origin
    uint16_t wobjKind;     // 0: fixed user frame
};

void ExpectRoundTrip(const Request& given)
{
    Request request = given;
    const Outcome forward = Perform(kWobj, request);
    ASSERT_EQ(forward.code, KINE_OK);
    request.target = forward.pose;
    const Outcome inverse = Perform(kInverseCall, request);
    ASSERT_EQ(inverse.code, KINE_OK) << std::hex << inverse.code;
    EXPECT_EQ(inverse.printed, "");
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(inverse.joints.Axis[i], given.joints.Axis[i], 1e-7) << i;
    EXPECT_TRUE(SameBits(inverse.joints.ExtAxis, given.joints.ExtAxis));
    // Solved again from the solved joints, the position is the same.
    request.joints = inverse.joints;
    const Outcome again = Perform(kWobj, request);
    EXPECT_TRUE(IsFrame(again.pose.Frame, MatrixOf(forward.pose.Frame), 1e-6, 1e-9));
}

void RunCell(const Cell& cell, std::uint64_t seed)
{
    SeededRandom random(seed);
    for (const auto& [name, arm] : Arms()) {
        SetUpArm(arm);
        SetUnitCounts(2, 6);
        if (cell.carrierKind != 0) {
            StoreUnit(0, CarryingRobot(AnyUnit(random, cell.carrierKind), 0));
        }
        if (cell.wobjKind != 0) StoreUnit(1, AnyUnit(random, cell.wobjKind));
        const double elbowAngle = InDegrees(std::atan2(arm.SixAxis.a3, arm.SixAxis.d4));
        for (int i = 0; i < 12; ++i) {
            SCOPED_TRACE(::testing::Message() << name << ", seed " << seed << ", set " << i);
            Request request;
            request.joints = AnyJoints(random, elbowAngle);
            request.tool =
                cell.heldTool ? HeldTool(AnyFrame(random, 200.0)) : StationaryTool(AnyFrame(random, 900.0));
            request.tool.TLoad = MakeLoad(random.Uniform(0.0, 3.0), 10.0, -20.0, 30.0);
            request.load = MakeLoad(random.Uniform(0.0, 2.0), -5.0, 15.0, 25.0);
            const KineFrame user = AnyFrame(random, 500.0);
            const KineFrame object = AnyFrame(random, 100.0);
            request.wobj = cell.wobjKind != 0 ? WobjOnUnit(1, object) : FixedWobj(user, object);
            request.wobj.HeldByRobot = cell.heldTool ? 0 : 1;
            ExpectRoundTrip(request);
            if (::testing::Test::HasFailure()) return;
        }
    }
}

}  // namespace

TEST(round_trip, held_tool_fixed_work_object) { RunCell({true, 0, 0}, 1001); }

TEST(round_trip, held_tool_work_object_on_linear_unit) { RunCell({true, 0, kLinearKind}, 1002); }

TEST(round_trip, held_tool_work_object_on_rotary_unit) { RunCell({true, 0, kRotaryKind}, 1003); }

TEST(round_trip, held_tool_work_object_on_two_rotary_axes) { RunCell({true, 0, kTwoRotaryKind}, 1004); }

TEST(round_trip, stationary_tool_held_work_object) { RunCell({false, 0, 0}, 1005); }

TEST(round_trip, robot_on_track_fixed_work_object) { RunCell({true, kLinearKind, 0}, 1006); }

TEST(round_trip, robot_on_track_work_object_on_two_rotary_axes)
{
    RunCell({true, kLinearKind, kTwoRotaryKind}, 1007);
}

TEST(round_trip, robot_on_rotary_unit_work_object_on_linear_unit)
{
    RunCell({true, kRotaryKind, kLinearKind}, 1008);
}

TEST(round_trip, robot_on_two_rotary_axes_work_object_on_rotary_unit)
{
    RunCell({true, kTwoRotaryKind, kRotaryKind}, 1009);
}

TEST(round_trip, robot_on_each_unit_with_stationary_tool)
{
    RunCell({false, kLinearKind, 0}, 1010);
    RunCell({false, kRotaryKind, 0}, 1011);
    RunCell({false, kTwoRotaryKind, 0}, 1012);
}

// Configuration integers and external axes pass through a pose untouched, whatever they hold.
TEST(round_trip, external_axes_keep_their_bits_through_forward_calls)
{
    SetUpArm(WristArm());
    SeededRandom random(1013);
    for (int i = 0; i < 50; ++i) {
        Request request;
        request.tool = HeldTool();
        request.wobj = FixedWobj();
        for (std::size_t axis = 0; axis < 6; ++axis) {
            // Quiet NaN included: the top bit of the mantissa is set.
            request.joints.ExtAxis[axis] = random.AnyBits<double>();
            uint64_t bits = 0;
            std::memcpy(&bits, &request.joints.ExtAxis[axis], sizeof bits);
            bits |= 0x0008000000000000u;
            std::memcpy(&request.joints.ExtAxis[axis], &bits, sizeof bits);
        }
        for (const std::size_t call : {0u, 2u, 3u}) {
            EXPECT_TRUE(SameBits(Perform(kForwardCalls[call], request).pose.ExtAxis, request.joints.ExtAxis))
                << i;
        }
    }
}

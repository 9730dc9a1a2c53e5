// Which object is held: the guards and choices that hang on the two hold bytes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "chain/frame_services.h"
#include "chain/inverse_chain.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stores.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr std::uint8_t kBytes[] = {0, 1, 2, 255};

constexpr Pose kToolFrame{1.0, 2.0, 3.0, 0.1, 0.2, 0.3};
constexpr Pose kUser{10.0, 20.0, 30.0, 0.4, 0.5, 0.6};
constexpr Pose kObject{-7.0, -8.0, -9.0, -0.7, -0.8, -0.9};

PoseRecord SomeRecord()
{
    PoseRecord record{};
    record.frame = Pose{100.0, -200.0, 300.0, 1.0, -0.5, 2.0};
    record.config = {std::numeric_limits<std::int32_t>::min(), -1, 7,
                     std::numeric_limits<std::int32_t>::max()};
    record.extAxis = {-0.0, 1.5, kNan, kInf, 1e300, 5e-324};
    return record;
}

// Calls the code with tool and work object of every pair of bytes.
template <class Code>
void ForAllBytes(Code&& code)
{
    for (const std::uint8_t toolByte : kBytes) {
        for (const std::uint8_t wobjByte : kBytes) {
            SCOPED_TRACE(testing::Message() << "tool " << int{toolByte} << ", work object " << int{wobjByte});
            code(MakeTool(toolByte, kToolFrame), MakeWobj(wobjByte, kUser, kObject));
        }
    }
}

// Written out: (0, x) with x non-zero and (x, 0) are the two set-ups of a cell.
bool IsConsistent(const Tool& tool, const Wobj& wobj)
{
    if (tool.heldByRobot == 0) return wobj.heldByRobot != 0;
    return wobj.heldByRobot == 0;
}

void ExpectKeptExceptFrame(const PoseRecord& actual, const PoseRecord& expected)
{
    EXPECT_TRUE(SameBits(actual.config, expected.config));
    EXPECT_TRUE(SameBits(actual.extAxis, expected.extAxis));
}

}  // namespace

TEST(CheckHold, needs_exactly_one_non_zero_byte)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        EXPECT_EQ(CheckHold(tool, wobj), IsConsistent(tool, wobj) ? 0u : 0x6050u);
        EXPECT_EQ(IsHoldConflict(tool, wobj), !IsConsistent(tool, wobj));
    });
}

TEST(IsOnRobot, only_exactly_one_is_on_the_robot)
{
    for (int byte = 0; byte < 256; ++byte) {
        const Tool tool = MakeTool(static_cast<std::uint8_t>(byte), kToolFrame);
        const Wobj wobj = MakeWobj(static_cast<std::uint8_t>(byte), kUser);
        EXPECT_EQ(IsOnRobot(tool), byte == 1);
        EXPECT_EQ(IsHeld(tool), byte != 0);
        EXPECT_EQ(IsHeld(wobj), byte != 0);
    }
}

TEST(FrameOnFlange, is_the_tools_when_held_else_the_combined_frame_of_the_held_work_object)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        Pose frame = Untouched<Pose>();
        const KineResult code = FrameOnFlange(tool, wobj, frame);
        if (tool.heldByRobot != 0) {
            EXPECT_EQ(code, 0u);
            EXPECT_TRUE(SameBits(frame, kToolFrame));
        } else if (wobj.heldByRobot != 0) {
            EXPECT_EQ(code, 0u);
            EXPECT_TRUE(SameBits(frame, CombinedFrame(wobj).AsPose()));
            EXPECT_TRUE(PoseIs(frame, MatrixOf(kUser) * MatrixOf(kObject)));
        } else {
            EXPECT_EQ(code, 0x6051u);
            EXPECT_TRUE(IsUntouched(frame));
        }
    });
}

TEST(CheckedFrameOnFlange, refuses_a_conflict_before_it_looks_for_a_frame)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        Pose frame = Untouched<Pose>();
        const KineResult code = CheckedFrameOnFlange(tool, wobj, frame);
        if (!IsConsistent(tool, wobj)) {
            EXPECT_EQ(code, 0x6050u);
            EXPECT_TRUE(IsUntouched(frame));
            return;
        }
        EXPECT_EQ(code, 0u);
        EXPECT_TRUE(PoseIs(
            frame, tool.heldByRobot != 0 ? MatrixOf(kToolFrame) : MatrixOf(kUser) * MatrixOf(kObject)));
    });
}

TEST(MakeFrameDescriptor, describes_the_object_that_is_not_held)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        FrameDescriptor descriptor = Untouched<FrameDescriptor>();
        const KineResult code = MakeFrameDescriptor(tool, wobj, descriptor);
        if (!IsConsistent(tool, wobj)) {
            EXPECT_EQ(code, 0x6050u);
            EXPECT_TRUE(IsUntouched(descriptor));
            return;
        }
        EXPECT_EQ(code, 0u);
        const FrameDescriptor expected{2, 0,
                                       tool.heldByRobot != 0 ? CombinedFrame(wobj) : LazyPose(kToolFrame)};
        EXPECT_TRUE(SameDescriptorBits(descriptor, expected));
        if (tool.heldByRobot != 0) {
            EXPECT_TRUE(PoseIs(descriptor.frame, MatrixOf(kUser) * MatrixOf(kObject)));
        }
    });
}

TEST(MakeFrameDescriptor, work_object_is_fixed_for_a_user_byte_of_exactly_one)
{
    for (int byte = 0; byte < 256; ++byte) {
        Wobj wobj = MakeWobj(0, kUser, kObject);
        wobj.userFixed = static_cast<std::uint8_t>(byte);
        wobj.mechUnit = -5;
        FrameDescriptor descriptor{};
        EXPECT_EQ(MakeFrameDescriptor(MakeTool(1, kToolFrame), wobj, descriptor), 0u);
        EXPECT_TRUE(SameDescriptorBits(descriptor, {byte == 1 ? 2 : 3, -5, CombinedFrame(wobj)})) << byte;
    }
}

// A stationary tool is described by its own fields; those of the held work object do not matter.
TEST(MakeFrameDescriptor, stationary_tool_is_fixed_for_a_fixed_byte_of_exactly_one)
{
    for (int byte = 0; byte < 256; ++byte) {
        Tool tool = MakeTool(0, kToolFrame);
        tool.fixedInWorld = static_cast<std::uint8_t>(byte);
        tool.unit = 2;
        Wobj wobj = MakeWobj(1, kUser, kObject);
        wobj.userFixed = 0;
        wobj.mechUnit = 1;
        FrameDescriptor descriptor{};
        EXPECT_EQ(MakeFrameDescriptor(tool, wobj, descriptor), 0u);
        EXPECT_TRUE(SameDescriptorBits(descriptor, {byte == 1 ? 2 : 3, 2, kToolFrame})) << byte;
    }
}

TEST(DescribeObjectInCell, has_nothing_to_describe_when_both_are_held)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        FrameDescriptor descriptor = Untouched<FrameDescriptor>();
        const KineResult code = DescribeObjectInCell(tool, wobj, descriptor);
        if (tool.heldByRobot != 0 && wobj.heldByRobot != 0) {
            EXPECT_EQ(code, 0x6052u);
            EXPECT_TRUE(IsUntouched(descriptor));
        } else if (IsConsistent(tool, wobj)) {
            FrameDescriptor checked{};
            EXPECT_EQ(code, 0u);
            EXPECT_EQ(MakeFrameDescriptor(tool, wobj, checked), 0u);
            EXPECT_TRUE(SameDescriptorBits(descriptor, checked));
        }
    });
}

TEST(ToolRelativePose, keeps_the_record_of_a_held_tool_and_inverts_that_of_a_stationary_one)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        const PoseRecord record = SomeRecord();
        PoseRecord relative = record;
        const KineResult code = ToolRelativePose(tool, wobj, relative);
        if (!IsConsistent(tool, wobj)) {
            EXPECT_EQ(code, 0x6053u);
            EXPECT_TRUE(SameRecordBits(relative, record));
            return;
        }
        EXPECT_EQ(code, 0u);
        ExpectKeptExceptFrame(relative, record);
        if (tool.heldByRobot != 0) {
            EXPECT_TRUE(SamePoseBits(relative.frame, record.frame));
        } else {
            EXPECT_TRUE(PoseIs(relative.frame, RigidInverse(MatrixOf(record.frame))));
        }
    });
}

TEST(RelativeTarget, keeps_the_target_of_a_held_tool_and_inverts_that_of_a_stationary_one)
{
    ForAllBytes([](const Tool& tool, const Wobj& wobj) {
        const PoseRecord target = SomeRecord();
        PoseRecord relative = target;
        const KineResult code = RelativeTarget(tool, wobj, relative);
        if (!IsConsistent(tool, wobj)) {
            EXPECT_EQ(code, 0x6054u);
            EXPECT_TRUE(SameRecordBits(relative, target));
            return;
        }
        EXPECT_EQ(code, 0u);
        ExpectKeptExceptFrame(relative, target);
        if (tool.heldByRobot != 0) {
            EXPECT_TRUE(SamePoseBits(relative.frame, target.frame));
        } else {
            EXPECT_TRUE(PoseIs(relative.frame, RigidInverse(MatrixOf(target.frame))));
        }
    });
}

// A quarter turn about z at (10, 0, 5): seen from there, the origin lies at (0, 10, -5).
TEST(InvertFrame, inverts_the_frame_and_keeps_the_rest)
{
    PoseRecord record = SomeRecord();
    record.frame = Pose{10.0, 0.0, 5.0, std::acos(0.0), 0.0, 0.0};
    PoseRecord inverted = record;
    InvertFrame(inverted);
    const Pose frame = inverted.frame;
    EXPECT_NEAR(frame.x, 0.0, 1e-14);
    EXPECT_NEAR(frame.y, 10.0, 1e-14);
    EXPECT_NEAR(frame.z, -5.0, 1e-14);
    EXPECT_NEAR(frame.a, -std::acos(0.0), 1e-14);
    EXPECT_NEAR(frame.b, 0.0, 1e-14);
    EXPECT_NEAR(frame.c, 0.0, 1e-14);
    ExpectKeptExceptFrame(inverted, record);
}

TEST(InvertFrame, of_any_record_is_the_inverse_matrix_and_undoes_itself)
{
    SeededRandom random(8002);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        PoseRecord record = SomeRecord();
        record.frame = RandomPose(random, 900.0);
        PoseRecord inverted = record;
        InvertFrame(inverted);
        EXPECT_TRUE(PoseIs(inverted.frame, RigidInverse(MatrixOf(record.frame)), 1e-9));
        ExpectKeptExceptFrame(inverted, record);
        InvertFrame(inverted);
        EXPECT_TRUE(PoseIs(inverted.frame, MatrixOf(record.frame), 1e-9));
    }
}

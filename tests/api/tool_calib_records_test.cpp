// Where the caller of the tool calibrations keeps its records, what of them is read and written, and what
// numbers they may hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "support/guarded_memory.h"
#include "support/nasty_numbers.h"
#include "support/odd_record.h"
#include "support/stdout_capture.h"
#include "support/tool_calib_calls.h"

using namespace kine::test;

namespace {

// Calls body with every calibration and arm type that it serves, configured.
template <class Body>
void ForEachServed(Body&& body)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : kToolCalibs) {
            if (Serves(call, armType)) body(call, armType);
        }
    }
}

std::array<const KinePose*, 6> AddressesOf(const std::vector<KinePose>& poses)
{
    std::array<const KinePose*, 6> addresses{};
    for (std::size_t i = 0; i < poses.size(); ++i) addresses[i] = &poses[i];
    return addresses;
}

// The records of one call, one behind the other, and memory behind them.
struct Records
{
    KinePose poses[6];
    KineFrame frame;
    KineCalibError report;
    unsigned char behind[sizeof(KineFrame)];
};

}  // namespace

TEST(tool_calibrations, configurations_and_external_axes_are_not_read)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        ToolCalibRequest request = GoodRequest(call, armType);
        const ToolCalibOutcome expected = Solved(call, request);
        for (const double extAxis : {123.0, kNan, kInf, 1e300}) {
            for (KinePose& pose : request.poses) pose = WithArmState(pose, -2147483647, extAxis);
            const ToolCalibOutcome outcome = Solved(call, request);
            EXPECT_TRUE(SameResult(outcome, expected)) << call.name;
        }
    });
}

TEST(tool_calibrations, frame_may_be_the_memory_of_any_pose)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        const ToolCalibRequest request = GoodRequest(call, armType);
        const ToolCalibOutcome expected = Solved(call, request);
        for (std::size_t i = 0; i < call.poses; ++i) {
            std::vector<KinePose> poses = request.poses;
            KineCalibError report = Untouched<KineCalibError>();
            EXPECT_EQ(call.run(AddressesOf(poses).data(), &poses[i].Frame, &report), KINE_OK) << call.name;
            EXPECT_TRUE(SameBits(poses[i].Frame, expected.frame)) << call.name << " " << i;
            EXPECT_TRUE(SameBits(report, expected.report)) << call.name << " " << i;
            poses[i].Frame = request.poses[i].Frame;
            EXPECT_TRUE(SameBits(poses[i], request.poses[i])) << call.name << " " << i;
        }
    });
}

// The report is written before the frame is found; the poses have been read by then.
TEST(tool_calibrations, report_may_be_the_memory_of_any_pose)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        if (!call.reports) return;
        const ToolCalibRequest request = GoodRequest(call, armType);
        const ToolCalibOutcome expected = Solved(call, request);
        for (std::size_t i = 0; i < call.poses; ++i) {
            std::vector<KinePose> poses = request.poses;
            KineFrame frame = Untouched<KineFrame>();
            auto* report = reinterpret_cast<KineCalibError*>(&poses[i].Frame);
            EXPECT_EQ(call.run(AddressesOf(poses).data(), &frame, report), KINE_OK) << call.name;
            EXPECT_TRUE(SameBits(frame, expected.frame)) << call.name << " " << i;
            EXPECT_EQ(std::memcmp(&poses[i], &expected.report, sizeof expected.report), 0) << call.name;
        }
    });
}

TEST(tool_calibrations, shared_memory_keeps_its_bits_on_failure)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        std::vector<KinePose> poses = GoodRequest(call, armType).poses;
        poses.back().Frame.A = 200.0;
        const std::vector<KinePose> before = poses;
        EXPECT_EQ(call.run(AddressesOf(poses).data(), &poses[0].Frame, nullptr), KINE_ERR_POSE);
        for (std::size_t i = 0; i < call.poses; ++i) EXPECT_TRUE(SameBits(poses[i], before[i])) << call.name;
    });
}

TEST(tool_calibrations, one_record_may_be_taught_several_times)
{
    UseArm(KINE_ARM_SIX_AXIS);
    // The first three poses again as origin, Z point and X point: the tip has not moved.
    const std::vector<KinePose> touches = GoodRequest(kGrip3P, KINE_ARM_SIX_AXIS).poses;
    const KinePose* addresses[] = {&touches[0], &touches[1], &touches[2],
                                   &touches[0], &touches[1], &touches[2]};
    KineFrame frame = Untouched<KineFrame>();
    KineCalibError report = Untouched<KineCalibError>();
    EXPECT_EQ(kExt3PZX.run(addresses, &frame, &report), KINE_ERR_ZERO_VECTOR);
    EXPECT_EQ(kGrip3PZX.run(addresses, &frame, &report), KINE_ERR_CALIB_POINTS_CLOSE);
    EXPECT_TRUE(IsUntouched(frame));
    ExpectReport(report, {0.0, 0.0, 0.0});
}

TEST(tool_calibrations, records_are_read_and_written_within_their_bounds)
{
    for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        ForEachServed([guard](const ToolCalib& call, std::uint32_t armType) {
            const ToolCalibRequest request = GoodRequest(call, armType);
            const ToolCalibOutcome expected = Solved(call, request);
            std::vector<std::unique_ptr<GuardedRecord<KinePose>>> poses;
            std::array<const KinePose*, 6> addresses{};
            for (std::size_t i = 0; i < call.poses; ++i) {
                poses.push_back(std::make_unique<GuardedRecord<KinePose>>(request.poses[i], guard));
                poses.back()->Freeze();
                addresses[i] = poses.back()->Get();
            }
            const GuardedRecord<KineFrame> frame(KineFrame{}, guard);
            const GuardedRecord<KineCalibError> report(Untouched<KineCalibError>(), guard);
            EXPECT_EQ(call.run(addresses.data(), frame.Get(), report.Get()), KINE_OK) << call.name;
            EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
            EXPECT_TRUE(SameBits(report.Value(), expected.report)) << call.name;
        });
    }
}

TEST(tool_calibrations, records_may_lie_at_odd_addresses_and_nothing_beside_the_results_is_written)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        const ToolCalibRequest request = GoodRequest(call, armType);
        const ToolCalibOutcome expected = Solved(call, request);
        Records given = Untouched<Records>();
        std::copy(request.poses.begin(), request.poses.end(), given.poses);
        for (std::size_t shift = 1; shift < 8; ++shift) {
            OddRecord<Records> memory(given, shift);
            unsigned char* const bytes = memory.Bytes();
            std::array<const KinePose*, 6> addresses{};
            for (std::size_t i = 0; i < call.poses; ++i) {
                addresses[i] = reinterpret_cast<const KinePose*>(bytes + i * sizeof(KinePose));
            }
            EXPECT_EQ(
                call.run(addresses.data(), reinterpret_cast<KineFrame*>(bytes + offsetof(Records, frame)),
                         reinterpret_cast<KineCalibError*>(bytes + offsetof(Records, report))),
                KINE_OK);
            Records wanted = given;
            wanted.frame = expected.frame;
            if (call.reports) wanted.report = expected.report;
            EXPECT_TRUE(SameBits(memory.Value(), wanted)) << call.name;
        }
    });
}

TEST(tool_calibrations, orientations_do_not_matter_where_positions_are_taught)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : {kExt1P, kExt1PZX}) {
            ToolCalibRequest request = GoodRequest(call, armType);
            const KineFrame expected = Solved(call, request).frame;
            for (KinePose& pose : request.poses) pose.Frame.A = pose.Frame.B = pose.Frame.C = kNan;
            EXPECT_TRUE(SameBits(Solved(call, request).frame, expected)) << call.name;
        }
    }
}

TEST(tool_calibrations, nan_in_a_touch_makes_the_tool_point_nan_with_0)
{
    ForEachServed([](const ToolCalib& call, std::uint32_t armType) {
        for (std::size_t i = 0; i < call.touches; ++i) {
            for (const auto field :
                 {&KineFrame::X, &KineFrame::Y, &KineFrame::A, &KineFrame::B, &KineFrame::C}) {
                ToolCalibRequest request = GoodRequest(call, armType);
                request.poses[i].Frame.*field = i == 0 ? kNan : -kNan;
                const ToolCalibOutcome outcome = Solved(call, request);
                SCOPED_TRACE(testing::Message() << call.name << " arm " << armType << " pose " << i);
                EXPECT_TRUE(IsTheNan(outcome.frame.X));
                EXPECT_TRUE(IsTheNan(outcome.frame.Y));
                EXPECT_TRUE(HoldsOnlyTheNan(outcome.frame));
                if (call.reports) ExpectNanReport(outcome.report);
                if (call.poses == call.touches) {
                    for (const auto angle : kAngles) EXPECT_EQ(outcome.frame.*angle, 0.0);
                } else {
                    EXPECT_TRUE(IsTheNan(outcome.frame.A));
                }
            }
        }
    });
}

TEST(tool_calibrations, nan_in_a_direction_makes_the_orientation_nan_with_0)
{
    for (const std::uint32_t armType : kCalibArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : {kExt1PZX, kExt3PZX, kGrip3PZX}) {
            for (std::size_t i = call.touches; i < call.poses; ++i) {
                if (IsFlat(armType) && i == call.touches + 1) continue;
                ToolCalibRequest request = GoodRequest(call, armType);
                const ToolCalibOutcome good = Solved(call, request);
                request.poses[i].Frame.X = -kNan;
                const ToolCalibOutcome outcome = Solved(call, request);
                SCOPED_TRACE(testing::Message() << call.name << " arm " << armType << " pose " << i);
                for (const auto angle : kAngles) EXPECT_TRUE(IsTheNan(outcome.frame.*angle));
                // The origin pose is the place of an external tool.
                const bool moved = call != kGrip3PZX && i == call.touches;
                EXPECT_TRUE(SameBits(outcome.frame.X, moved ? kNan : good.frame.X));
                EXPECT_TRUE(SameBits(outcome.frame.Y, good.frame.Y));
                EXPECT_TRUE(SameBits(outcome.frame.Z, good.frame.Z));
                EXPECT_TRUE(SameBits(outcome.report, good.report));
            }
        }
    }
}

// Four-axis arms solve in the plane and report in space. The tips of the zero tool are the positions: in the
// plane (0, 0), (30, 0), (0, 40).
TEST(tool_calibrations, distances_without_end_or_nan_enter_the_report)
{
    for (const std::uint32_t armType : kFlatArmTypes) {
        UseArm(armType);
        for (const ToolCalib& call : {kGrip3P, kExt3P}) {
            const auto reportFor = [&](double z0, double z1, double z2) {
                ToolCalibRequest request = ZeroToolRequest(armType);
                request.poses[0].Frame.Z = z0;
                request.poses[1].Frame.Z = z1;
                request.poses[2].Frame.Z = z2;
                return Solved(call, request).report;
            };
            // One distance left: it is the largest and the smallest.
            KineCalibError report = reportFor(0.0, 40.0, kNan);
            EXPECT_EQ(report.Largest, 50.0);
            EXPECT_TRUE(IsTheNan(report.Mean));
            EXPECT_EQ(report.Smallest, 50.0);
            report = reportFor(kNan, 5.0, 5.0);
            EXPECT_EQ(report.Largest, 50.0);
            EXPECT_EQ(report.Smallest, 50.0);
            // Infinitely far from the other two.
            report = reportFor(0.0, 0.0, kInf);
            EXPECT_EQ(report.Largest, kInf);
            EXPECT_EQ(report.Mean, kInf);
            EXPECT_EQ(report.Smallest, 30.0);
            // inf - inf is NaN, and the others are beyond 10000 mm.
            report = reportFor(0.0, kInf, kInf);
            EXPECT_EQ(report.Largest, kInf);
            EXPECT_TRUE(IsTheNan(report.Mean));
            EXPECT_EQ(report.Smallest, 10000.0);
        }
    }
}

// Whatever the records hold: a code of this family of calls, nothing printed, and the result records as the
// code says. The frame step of a 3PZX call is reached when the three touches alone are solved.
TEST(tool_calibrations, any_bits_end_in_a_code_and_defined_records)
{
    const std::set<KineResult> codes = {KINE_OK,
                                        KINE_ERR_POSE,
                                        KINE_ERR_CALIB_SINGULAR,
                                        KINE_ERR_CALIB_4,
                                        KINE_ERR_CALIB_POINTS_CLOSE,
                                        KINE_ERR_CALIB_COLLINEAR,
                                        KINE_ERR_ZERO_VECTOR};
    SeededRandom random(6121);
    EXPECT_EQ(PrintedBy([&] {
                  ForEachServed([&](const ToolCalib& call, std::uint32_t armType) {
                      for (int round = 0; round < 60; ++round) {
                          ToolCalibRequest request = GoodRequest(call, armType);
                          for (std::size_t n = 1 + random.Below(4); n > 0; --n) {
                              KinePose& pose = request.poses[random.Below(call.poses)];
                              if (random.Below(20) == 0) pose = random.AnyBits<KinePose>();
                              if (random.Below(4) == 0) pose = request.poses[random.Below(call.poses)];
                              pose.Frame.*kElements[random.Below(6)] = NastyNumber(random);
                          }
                          const ToolCalibOutcome outcome = Perform(call, request);
                          SCOPED_TRACE(testing::Message() << call.name << " arm " << armType << " round "
                                                          << round << " code " << std::hex << outcome.code);
                          EXPECT_EQ(codes.count(outcome.code), 1u);
                          EXPECT_EQ(IsUntouched(outcome.frame), outcome.code != KINE_OK);
                          EXPECT_TRUE(outcome.code != KINE_OK || HoldsOnlyTheNan(outcome.frame));
                          if (call.touches != 3 || outcome.code == KINE_ERR_POSE) continue;
                          const ToolCalibRequest touches{{request.poses.begin(), request.poses.begin() + 3}};
                          const ToolCalibOutcome three = Perform(kGrip3P, touches);
                          EXPECT_TRUE(SameBits(outcome.report, three.report));
                          EXPECT_TRUE(three.code == KINE_OK || outcome.code == three.code);
                          EXPECT_TRUE(three.code != KINE_OK || HoldsOnlyTheNan(three.report));
                      }
                  });
              }),
              "");
}

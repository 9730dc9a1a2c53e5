// The caller's memory in the calibrations of positioner and robot base: what is written, where records may
// lie, and that any bits in them end in a code or a result.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <set>

#include "support/guarded_memory.h"
#include "support/nasty_numbers.h"
#include "support/odd_record.h"
#include "support/positioner_calib_calls.h"

using namespace kine::test;

namespace {

// Copies of the inputs, frozen at the end of readable memory.
struct GuardedInputs
{
    explicit GuardedInputs(const PositionerCalibRequest& r, Guard guard)
        : p0(r.poses[0], guard), p1(r.poses[1], guard), p2(r.poses[2], guard), reference(r.reference, guard)
    {
        p0.Freeze();
        p1.Freeze();
        p2.Freeze();
        reference.Freeze();
    }

    std::array<const KinePose*, 3> Poses() const { return {p0.Get(), p1.Get(), p2.Get()}; }

    GuardedRecord<KinePose> p0, p1, p2;
    GuardedRecord<KineFrame> reference;
};

// A good request, of which some numbers are replaced by others.
PositionerCalibRequest Spoilt(SeededRandom& random, PositionerCalibRequest request)
{
    for (std::size_t n = random.Below(6); n > 0; --n) {
        KinePose& pose = request.poses[random.Below(3)];
        switch (random.Below(6)) {
            case 0: pose.ExtAxis[0] = NastyNumber(random); break;
            case 1: pose.Frame.*kAngles[random.Below(3)] = random.Uniform(-180.0, 180.0); break;
            case 2: request.reference.*kElements[random.Below(6)] = NastyNumber(random); break;
            default: pose.Frame.*kCoordinates[random.Below(3)] = NastyNumber(random); break;
        }
    }
    if (random.Below(20) == 0) request.poses[random.Below(3)] = random.AnyBits<KinePose>();
    if (random.Below(10) == 0) request.unit = random.AnyBits<int32_t>();
    if (random.Below(10) == 0) request.axis = random.AnyBits<int32_t>();
    return request;
}

}  // namespace

TEST(positioner_calibrations, written_are_the_frame_and_the_report_and_nothing_beside_them)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibRequest request = SetUpGoodRequest(call);
        const PositionerCalibOutcome expected = Solved(call, request);
        for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
            const GuardedInputs in(request, guard);
            const GuardedRecord<KineFrame> frame(Untouched<KineFrame>(), guard);
            const GuardedRecord<KineCalibError> report(Untouched<KineCalibError>(), guard);
            EXPECT_EQ(call.run({in.Poses(), in.reference.Get(), 0, 2, frame.Get(), report.Get()}), KINE_OK);
            EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
            EXPECT_TRUE(SameBits(report.Value(), expected.report)) << call.name;
        }
    }
}

// Every element is written: none has kept the pattern.
TEST(positioner_calibrations, all_six_doubles_of_the_frame_and_all_three_of_the_report_are_written)
{
    const double untouched = Untouched<double>();
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibOutcome outcome = Solved(call, SetUpGoodRequest(call));
        for (const auto element : kElements) EXPECT_FALSE(SameBits(outcome.frame.*element, untouched));
        if (!call.reports) continue;
        EXPECT_FALSE(SameBits(outcome.report.Largest, untouched));
        EXPECT_FALSE(SameBits(outcome.report.Mean, untouched));
        EXPECT_FALSE(SameBits(outcome.report.Smallest, untouched));
    }
}

TEST(Kine_CalcRobotBasePrm_3P, null_report_is_left_out)
{
    PositionerCalibRequest request = SetUpGoodRequest(kRobotBase);
    const KineFrame expected = Solved(kRobotBase, request).frame;
    request.nullReport = true;
    EXPECT_TRUE(SameBits(Solved(kRobotBase, request).frame, expected));
    request.poses[2].ExtAxis[0] = request.poses[1].ExtAxis[0] = request.poses[0].ExtAxis[0];
    ExpectRefused(kRobotBase, request, KINE_ERR_CALIB_INPUT);
    request.nullFrame = true;
    ExpectRefused(kRobotBase, request, KINE_ERR_POSE);
}

TEST(positioner_calibrations, records_may_lie_at_odd_addresses)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibRequest request = SetUpGoodRequest(call);
        const PositionerCalibOutcome expected = Solved(call, request);
        OddRecord<KinePose> p0(request.poses[0]);
        OddRecord<KinePose> p1(request.poses[1]);
        OddRecord<KinePose> p2(request.poses[2]);
        OddRecord<KineFrame> reference(request.reference);
        OddRecord<KineFrame> frame(Untouched<KineFrame>());
        OddRecord<KineCalibError> report(Untouched<KineCalibError>());
        EXPECT_EQ(
            call.run({{p0.Get(), p1.Get(), p2.Get()}, reference.Get(), 0, 2, frame.Get(), report.Get()}),
            KINE_OK);
        EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
        EXPECT_TRUE(SameBits(report.Value(), expected.report)) << call.name;
    }
}

// The result in the frame of each taught pose, and the report among its external axes.
TEST(positioner_calibrations, results_may_lie_in_a_taught_pose)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibRequest request = SetUpGoodRequest(call);
        const PositionerCalibOutcome expected = Solved(call, request);
        for (std::size_t pose = 0; pose < 3; ++pose) {
            ThreePoses taught = request.poses;
            auto* report =
                static_cast<KineCalibError*>(static_cast<void*>(&taught[(pose + 1) % 3].ExtAxis[0]));
            EXPECT_EQ(call.run({{&taught[0], &taught[1], &taught[2]},
                                &request.reference,
                                0,
                                2,
                                &taught[pose].Frame,
                                report}),
                      KINE_OK);
            ThreePoses after = request.poses;
            after[pose].Frame = expected.frame;
            if (call.reports)
                std::memcpy(&after[(pose + 1) % 3].ExtAxis[0], &expected.report, sizeof *report);
            EXPECT_TRUE(SameBits(taught, after)) << call.name;
        }
    }
}

TEST(Kine_CalcPositionerJnPrm_3P, result_and_reference_may_be_the_same_frame)
{
    const PositionerCalibRequest request = SetUpGoodRequest(kJn);
    KineFrame both = request.reference;
    EXPECT_EQ(
        kJn.run({{&request.poses[0], &request.poses[1], &request.poses[2]}, &both, 0, 2, &both, nullptr}),
        KINE_OK);
    EXPECT_TRUE(SameBits(both, Solved(kJn, request).frame));
}

// One mark taken for two of the poses is one position, for all three as well.
TEST(positioner_calibrations, one_pose_given_twice_is_0x6065)
{
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibRequest request = SetUpGoodRequest(call);
        const KinePose* const a = &request.poses[0];
        const KinePose* const b = &request.poses[1];
        KineFrame frame = Untouched<KineFrame>();
        for (const std::array<const KinePose*, 3>& poses :
             {std::array{a, a, b}, std::array{a, b, a}, std::array{b, a, a}, std::array{a, a, a}}) {
            EXPECT_EQ(call.run({poses, &request.reference, 0, 2, &frame, nullptr}),
                      KINE_ERR_CALIB_POINTS_CLOSE);
            EXPECT_TRUE(IsUntouched(frame));
        }
    }
}

TEST(positioner_calibrations, any_bits_give_a_code_or_a_clean_result)
{
    SeededRandom random(630401);
    const std::set<KineResult> codes = {KINE_ERR_POSE, KINE_ERR_TOOL, KINE_ERR_CALIB_INPUT,
                                        KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR};
    for (const PositionerCalib& call : kPositionerCalibs) {
        const PositionerCalibRequest good = SetUpGoodRequest(call);
        int solved = 0;
        for (int round = 0; round < 5000; ++round) {
            const PositionerCalibRequest request = Spoilt(random, good);
            PositionerCalibOutcome outcome{0, Untouched<KineFrame>(), Untouched<KineCalibError>()};
            outcome.code = call.run({{&request.poses[0], &request.poses[1], &request.poses[2]},
                                     &request.reference,
                                     request.unit,
                                     request.axis,
                                     &outcome.frame,
                                     &outcome.report});
            if (outcome.code != KINE_OK) {
                EXPECT_TRUE(codes.contains(outcome.code)) << std::hex << outcome.code;
                EXPECT_TRUE(IsUntouched(outcome.frame)) << call.name << " round " << round;
                EXPECT_TRUE(IsUntouched(outcome.report)) << call.name << " round " << round;
                continue;
            }
            ++solved;
            EXPECT_TRUE(HoldsOnlyTheNan(outcome.frame)) << call.name << " round " << round;
            if (!call.reports) continue;
            EXPECT_TRUE(IsNumberOrTheNan(outcome.report.Mean)) << "round " << round;
            EXPECT_GE(outcome.report.Largest, 0.0) << "round " << round;
            EXPECT_GE(outcome.report.Smallest, 0.0) << "round " << round;
            EXPECT_LE(outcome.report.Smallest, 10000.0) << "round " << round;
        }
        EXPECT_GT(solved, 1000) << call.name;
    }
}

// The caller's memory in the calibrations of positioner and robot base: what is written, where records may
// lie, and that any bits in them end in a code or a result.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

#include "support/guarded_memory.h"
#include "support/positioner_calls.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

// The call with records that lie where the caller says; the report is left out by the calls without one.
KineResult CallWith(const PositionerCall& call, const std::array<const KinePose*, 3>& poses,
                    const KineFrame* reference, KineFrame* frame, KineCalibError* error)
{
    if (call.run != kJnCall.run) return call.run(PositionerRequest{}, poses, frame, error);
    return Kine_CalcPositionerJnPrm_3P(0, 2, poses[0], poses[1], poses[2], reference, frame);
}

// Copies of the inputs, frozen at the end of readable memory.
struct GuardedInputs
{
    explicit GuardedInputs(const PositionerRequest& r, Guard guard)
        : p0(r.taught[0], guard),
          p1(r.taught[1], guard),
          p2(r.taught[2], guard),
          reference(r.reference, guard)
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

// A record at an address that no alignment but 1 divides.
template <class Record>
class Unaligned
{
public:
    explicit Unaligned(const Record& value) { std::memcpy(Get(), &value, sizeof value); }
    Record* Get() { return static_cast<Record*>(static_cast<void*>(bytes_ + 1)); }
    Record Value()
    {
        Record copy;
        std::memcpy(&copy, static_cast<void*>(Get()), sizeof copy);
        return copy;
    }

private:
    alignas(16) unsigned char bytes_[sizeof(Record) + 1];
};

double NastyNumber(SeededRandom& random)
{
    constexpr double kNasty[] = {0.0,   -0.0,   1.0,   -1.0,     90.0, 180.0, -180.0, 0.1,  1e-5, 1e-300,
                                 1e154, -1e154, 1e308, 4.9e-324, kNan, kInf,  -kInf,  1e-3, 100.0};
    const std::size_t pick = random.Below(std::size(kNasty) + 1);
    return pick < std::size(kNasty) ? kNasty[pick] : random.AnyBits<double>();
}

// A good request, of which some numbers are replaced by others.
PositionerRequest Spoilt(SeededRandom& random, PositionerRequest request)
{
    for (std::size_t n = random.Below(6); n > 0; --n) {
        KinePose& pose = request.taught[random.Below(3)];
        switch (random.Below(6)) {
            case 0: pose.ExtAxis[0] = NastyNumber(random); break;
            case 1: pose.Frame.*kElements[3 + random.Below(3)] = random.Uniform(-180.0, 180.0); break;
            case 2: request.reference.*kElements[random.Below(6)] = NastyNumber(random); break;
            default: pose.Frame.*kElements[random.Below(3)] = NastyNumber(random); break;
        }
    }
    if (random.Below(20) == 0) request.taught[random.Below(3)] = random.AnyBits<KinePose>();
    if (random.Below(10) == 0) request.unit = random.AnyBits<int32_t>();
    if (random.Below(10) == 0) request.axis = random.AnyBits<int32_t>();
    return request;
}

// No NaN but the one.
bool IsClean(double value) { return !std::isnan(value) || IsTheNan(value); }

}  // namespace

TEST(positioner_records, written_are_the_frame_and_the_report_and_nothing_beside_them)
{
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerRequest request = SetUpGoodRequest(call);
        const PositionerOutcome expected = Solved(call, request);
        for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
            const GuardedInputs in(request, guard);
            const GuardedRecord<KineFrame> frame(Untouched<KineFrame>(), guard);
            const GuardedRecord<KineCalibError> error(Untouched<KineCalibError>(), guard);
            EXPECT_EQ(CallWith(call, in.Poses(), in.reference.Get(), frame.Get(), error.Get()), KINE_OK);
            EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
            EXPECT_TRUE(SameBits(error.Value(), expected.error)) << call.name;
        }
    }
}

// Every element is written: none has kept the pattern.
TEST(positioner_records, all_six_doubles_of_the_frame_and_all_three_of_the_report_are_written)
{
    const double untouched = Untouched<double>();
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerOutcome outcome = Solved(call, SetUpGoodRequest(call));
        for (const auto element : kElements) EXPECT_FALSE(SameBits(outcome.frame.*element, untouched));
        if (!call.reports) continue;
        EXPECT_FALSE(SameBits(outcome.error.Largest, untouched));
        EXPECT_FALSE(SameBits(outcome.error.Mean, untouched));
        EXPECT_FALSE(SameBits(outcome.error.Smallest, untouched));
    }
}

TEST(positioner_records, null_report_is_left_out)
{
    PositionerRequest request = SetUpGoodRequest(kBaseCall);
    const KineFrame expected = Solved(kBaseCall, request).frame;
    request.nullError = true;
    const KineFrame frame = Untouched<KineFrame>();
    PositionerOutcome outcome{};
    outcome.frame = frame;
    EXPECT_EQ(Kine_CalcRobotBasePrm_3P(0, &request.taught[0], &request.taught[1], &request.taught[2],
                                       &outcome.frame, nullptr),
              KINE_OK);
    EXPECT_TRUE(SameBits(outcome.frame, expected));
    request.taught[2].ExtAxis[0] = request.taught[1].ExtAxis[0] = request.taught[0].ExtAxis[0];
    ExpectRefused(kBaseCall, request, KINE_ERR_CALIB_INPUT);
    request.nullFrame = true;
    ExpectRefused(kBaseCall, request, KINE_ERR_POSE);
}

TEST(positioner_records, may_lie_at_odd_addresses)
{
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerRequest request = SetUpGoodRequest(call);
        const PositionerOutcome expected = Solved(call, request);
        Unaligned<KinePose> p0(request.taught[0]);
        Unaligned<KinePose> p1(request.taught[1]);
        Unaligned<KinePose> p2(request.taught[2]);
        Unaligned<KineFrame> reference(request.reference);
        Unaligned<KineFrame> frame(Untouched<KineFrame>());
        Unaligned<KineCalibError> error(Untouched<KineCalibError>());
        EXPECT_EQ(CallWith(call, {p0.Get(), p1.Get(), p2.Get()}, reference.Get(), frame.Get(), error.Get()),
                  KINE_OK);
        EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
        EXPECT_TRUE(SameBits(error.Value(), expected.error)) << call.name;
    }
}

// The result in the frame of each taught pose, and the report among its external axes.
TEST(positioner_records, results_may_lie_in_a_taught_pose)
{
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerRequest request = SetUpGoodRequest(call);
        const PositionerOutcome expected = Solved(call, request);
        for (std::size_t pose = 0; pose < 3; ++pose) {
            Taught taught = request.taught;
            auto* report =
                static_cast<KineCalibError*>(static_cast<void*>(&taught[(pose + 1) % 3].ExtAxis[0]));
            EXPECT_EQ(CallWith(call, {&taught[0], &taught[1], &taught[2]}, &request.reference,
                               &taught[pose].Frame, report),
                      KINE_OK);
            Taught after = request.taught;
            after[pose].Frame = expected.frame;
            if (call.reports) std::memcpy(&after[(pose + 1) % 3].ExtAxis[0], &expected.error, sizeof *report);
            EXPECT_TRUE(SameBits(taught, after)) << call.name;
        }
    }
}

TEST(positioner_records, result_and_reference_may_be_the_same_frame)
{
    const PositionerRequest request = SetUpGoodRequest(kJnCall);
    KineFrame both = request.reference;
    EXPECT_EQ(CallWith(kJnCall, {&request.taught[0], &request.taught[1], &request.taught[2]}, &both, &both,
                       nullptr),
              KINE_OK);
    EXPECT_TRUE(SameBits(both, Solved(kJnCall, request).frame));
}

// One mark taken for two of the poses is one position, for all three as well.
TEST(positioner_records, one_pose_given_twice_is_0x6065)
{
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerRequest request = SetUpGoodRequest(call);
        const KinePose* const a = &request.taught[0];
        const KinePose* const b = &request.taught[1];
        KineFrame frame = Untouched<KineFrame>();
        for (const std::array<const KinePose*, 3>& poses :
             {std::array{a, a, b}, std::array{a, b, a}, std::array{b, a, a}, std::array{a, a, a}}) {
            EXPECT_EQ(CallWith(call, poses, &request.reference, &frame, nullptr),
                      KINE_ERR_CALIB_POINTS_CLOSE);
            EXPECT_TRUE(IsUntouched(frame));
        }
    }
}

TEST(positioner_records, any_bits_give_a_code_or_a_clean_result)
{
    SeededRandom random(630401);
    constexpr KineResult kCodes[] = {KINE_ERR_POSE, KINE_ERR_TOOL, KINE_ERR_CALIB_INPUT,
                                     KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR};
    for (const PositionerCall& call : kPositionerCalls) {
        const PositionerRequest good = SetUpGoodRequest(call);
        int solved = 0;
        for (int round = 0; round < 5000; ++round) {
            const PositionerRequest request = Spoilt(random, good);
            PositionerOutcome outcome{};
            outcome.frame = Untouched<KineFrame>();
            outcome.error = Untouched<KineCalibError>();
            outcome.code = call.run(request, {&request.taught[0], &request.taught[1], &request.taught[2]},
                                    &outcome.frame, &outcome.error);
            if (outcome.code != KINE_OK) {
                EXPECT_NE(std::find(std::begin(kCodes), std::end(kCodes), outcome.code), std::end(kCodes));
                EXPECT_TRUE(IsUntouched(outcome.frame)) << call.name << " round " << round;
                EXPECT_TRUE(IsUntouched(outcome.error)) << call.name << " round " << round;
                continue;
            }
            ++solved;
            for (const auto element : kElements) {
                EXPECT_TRUE(IsClean(outcome.frame.*element)) << call.name << " round " << round;
            }
            if (!call.reports) continue;
            EXPECT_TRUE(IsClean(outcome.error.Mean)) << "round " << round;
            EXPECT_GE(outcome.error.Largest, 0.0) << "round " << round;
            EXPECT_GE(outcome.error.Smallest, 0.0) << "round " << round;
            EXPECT_LE(outcome.error.Smallest, 10000.0) << "round " << round;
        }
        EXPECT_GT(solved, 1000) << call.name;
    }
}

// Work-object calibrations and their surroundings: records anywhere in memory, any bits in them, NaN, and
// what the library is set up for.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

#include "support/guarded_memory.h"
#include "support/nasty_numbers.h"
#include "support/odd_record.h"
#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

WobjCalibRequest CloseRequest()
{
    WobjCalibRequest request = GoodWobjRequest();
    request.poses[1].Frame = request.poses[0].Frame;
    return request;
}

// The records of one call, one behind the other.
struct Records
{
    KinePose poses[3];
    KineFrame user;
    KineFrame frame;
    double tilt;
};

Records RecordsOf(const WobjCalibRequest& request)
{
    return {{request.poses[0], request.poses[1], request.poses[2]},
            request.user,
            Untouched<KineFrame>(),
            Untouched<double>()};
}

WobjArguments ArgumentsAt(unsigned char* memory)
{
    const auto* poses = reinterpret_cast<const KinePose*>(memory);
    return {{poses, poses + 1, poses + 2},
            reinterpret_cast<const KineFrame*>(memory + offsetof(Records, user)),
            kPlainUnit,
            reinterpret_cast<KineFrame*>(memory + offsetof(Records, frame)),
            reinterpret_cast<double*>(memory + offsetof(Records, tilt))};
}

std::set<KineResult> CodesOf(const WobjCalib& call)
{
    std::set<KineResult> codes = {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE};
    if (call != kUser2P) codes.insert(KINE_ERR_CALIB_COLLINEAR);
    if (call == kCircle) codes.insert(KINE_ERR_CALIB_3);
    return codes;
}

// What holds for every input: one of the call's codes, and results that are untouched or have no NaN but the
// one of every computation.
KineResult DefinedCode(const WobjCalib& call, const WobjCalibRequest& request)
{
    const WobjCalibOutcome outcome = Perform(call, request);
    EXPECT_TRUE(CodesOf(call).contains(outcome.code)) << call.name << std::hex << " " << outcome.code;
    if (outcome.code != KINE_OK) {
        EXPECT_TRUE(IsUntouched(outcome)) << call.name;
        return outcome.code;
    }
    EXPECT_TRUE(HoldsOnlyTheNan(outcome)) << call.name;
    return outcome.code;
}

KineMechUnit AnyUnit(SeededRandom& random)
{
    const KineFrame first = random.Below(8) == 0 ? KineFrame{} : AnyFrame(random);
    const KineFrame second = AnyFrame(random);
    const int firstDriver = random.Whole(0, 6);
    const int secondDriver = random.Whole(0, 6);
    KineMechUnit unit = TwoRotaryUnit(first, second, firstDriver, secondDriver);
    unit.UnitKind = static_cast<uint16_t>(random.Whole(0, 4));
    if (random.Below(4) == 0) unit.AxisFrame[random.Below(2)] = random.AnyBits<KineFrame>();
    return unit;
}

// Good points with some numbers that are hard to bear, points of small numbers only, or any bits.
WobjCalibRequest AnyRequest(SeededRandom& random)
{
    WobjCalibRequest request = GoodWobjRequest();
    const std::size_t how = random.Below(4);
    if (how == 0) {
        for (KinePose& pose : request.poses) pose = TaughtAt({0.0, 0.0, 0.0});
    }
    for (std::size_t n = random.Below(5); n > 0; --n) {
        double* numbers = &request.poses[random.Below(3)].Frame.X;
        numbers[random.Below(how == 0 ? 3 : 6)] = NastyNumber(random);
    }
    if (how == 1) request.poses[random.Below(3)] = random.AnyBits<KinePose>();
    if (how == 2) request.poses[random.Below(3)].ExtAxis[random.Below(6)] = NastyNumber(random);
    if (random.Below(4) == 0) request.user = random.AnyBits<KineFrame>();
    if (random.Below(8) == 0) request.unit = static_cast<int32_t>(random.Bits());
    return request;
}

}  // namespace

TEST(wobj_calibrations, records_may_lie_at_odd_addresses)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjCalibOutcome expected = Solved(call, GoodWobjRequest());
        for (std::size_t shift = 1; shift < 8; ++shift) {
            const Records given = RecordsOf(GoodWobjRequest());
            OddRecord<Records> memory(given, shift);
            EXPECT_EQ(call.run(ArgumentsAt(memory.Bytes())), KINE_OK) << call.name;
            Records wanted = given;
            wanted.frame = expected.frame;
            wanted.tilt = expected.tilt;
            EXPECT_TRUE(SameBits(memory.Value(), wanted)) << call.name;
        }
    }
}

// Inputs that cannot be written, with nothing readable behind them or before them, and results at the very
// end of what can be written.
TEST(wobj_calibrations, records_are_read_and_written_within_their_bounds)
{
    SetUpPlainUnit();
    const WobjCalibRequest request = GoodWobjRequest();
    for (const Guard side : {Guard::kBehind, Guard::kBefore}) {
        GuardedRecord<KinePose> origin(request.poses[0], side);
        GuardedRecord<KinePose> x(request.poses[1], side);
        GuardedRecord<KinePose> xy(request.poses[2], side);
        GuardedRecord<KineFrame> user(request.user, side);
        origin.Freeze();
        x.Freeze();
        xy.Freeze();
        user.Freeze();
        for (const WobjCalib& call : kWobjCalibs) {
            GuardedRecord<KineFrame> frame(Untouched<KineFrame>(), side);
            GuardedRecord<double> tilt(Untouched<double>(), side);
            const WobjArguments at = {
                {origin.Get(), x.Get(), xy.Get()}, user.Get(), kPlainUnit, frame.Get(), tilt.Get()};
            EXPECT_EQ(call.run(at), KINE_OK) << call.name;
            const WobjCalibOutcome expected = Solved(call, request);
            EXPECT_TRUE(SameBits(frame.Value(), expected.frame)) << call.name;
            EXPECT_TRUE(SameBits(tilt.Value(), expected.tilt)) << call.name;
        }
    }
}

// On failure nothing is written: results in memory that cannot be written do no harm.
TEST(wobj_calibrations, refusal_does_not_write_to_the_results)
{
    SetUpPlainUnit();
    const WobjCalibRequest close = CloseRequest();
    WobjCalibRequest beyond = GoodWobjRequest();
    beyond.poses[1].Frame.B = -200.0;
    GuardedRecord<KineFrame> frame(Untouched<KineFrame>());
    GuardedRecord<double> tilt(Untouched<double>());
    frame.Freeze();
    tilt.Freeze();
    for (const WobjCalib& call : kWobjCalibs) {
        for (const WobjCalibRequest* request : {&close, &std::as_const(beyond)}) {
            const WobjArguments at = {{&request->poses[0], &request->poses[1], &request->poses[2]},
                                      &request->user,
                                      kPlainUnit,
                                      frame.Get(),
                                      tilt.Get()};
            EXPECT_EQ(call.run(at), request == &close ? KINE_ERR_CALIB_POINTS_CLOSE : KINE_ERR_POSE)
                << call.name;
        }
    }
}

// The frame over each pose and over the user frame, the tilt over any double of any record: the results are
// those of records apart, and nothing else changes.
TEST(wobj_calibrations, results_may_share_memory_with_the_inputs)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjCalibOutcome expected = Solved(call, GoodWobjRequest());
        for (const std::size_t framePlace : {std::size_t{0}, sizeof(KinePose), 2 * sizeof(KinePose),
                                             offsetof(Records, user), std::size_t{64}, std::size_t{100}}) {
            for (std::size_t tiltPlace = 0; tiltPlace < offsetof(Records, frame); tiltPlace += 8) {
                if (tiltPlace + 8 > framePlace && tiltPlace < framePlace + sizeof(KineFrame)) continue;
                Records good = RecordsOf(GoodWobjRequest());
                auto* memory = reinterpret_cast<unsigned char*>(&good);
                WobjArguments at = ArgumentsAt(memory);
                at.frame = reinterpret_cast<KineFrame*>(memory + framePlace);
                at.tilt = reinterpret_cast<double*>(memory + tiltPlace);
                EXPECT_EQ(call.run(at), KINE_OK) << call.name;
                Records wanted = RecordsOf(GoodWobjRequest());
                std::memcpy(reinterpret_cast<unsigned char*>(&wanted) + framePlace, &expected.frame,
                            sizeof expected.frame);
                std::memcpy(reinterpret_cast<unsigned char*>(&wanted) + tiltPlace, &expected.tilt,
                            sizeof expected.tilt);
                EXPECT_TRUE(SameBits(good, wanted))
                    << call.name << " frame at " << framePlace << ", tilt at " << tiltPlace;
                // A refusal keeps the shared memory.
                Records close = RecordsOf(CloseRequest());
                at = ArgumentsAt(reinterpret_cast<unsigned char*>(&close));
                at.frame =
                    reinterpret_cast<KineFrame*>(reinterpret_cast<unsigned char*>(&close) + framePlace);
                at.tilt = reinterpret_cast<double*>(reinterpret_cast<unsigned char*>(&close) + tiltPlace);
                EXPECT_EQ(call.run(at), KINE_ERR_CALIB_POINTS_CLOSE) << call.name;
                EXPECT_TRUE(SameBits(close, RecordsOf(CloseRequest()))) << call.name;
            }
        }
    }
}

TEST(wobj_calibrations, one_record_in_all_places_is_0x6065)
{
    SetUpPlainUnit();
    const WobjCalibRequest request = GoodWobjRequest();
    const KinePose* one = &request.poses[0];
    for (const WobjCalib& call : kWobjCalibs) {
        KineFrame frame = Untouched<KineFrame>();
        double tilt = Untouched<double>();
        EXPECT_EQ(call.run({{one, one, one}, &one->Frame, kPlainUnit, &frame, &tilt}),
                  KINE_ERR_CALIB_POINTS_CLOSE);
        EXPECT_TRUE(IsUntouched(frame) && IsUntouched(tilt)) << call.name;
    }
}

TEST(wobj_calibrations, arm_and_its_state_do_not_matter)
{
    SetUpPlainUnit();
    const KineMechUnit unit =
        TwoRotaryUnit({100.0, 20.0, 5.0, 6.0, 7.0, 8.0}, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, 1, 2);
    StoreUnit(kPlainUnit, unit);
    std::vector<WobjCalibOutcome> expected;
    for (const WobjCalib& call : kWobjCalibs) expected.push_back(Solved(call, GoodWobjRequest()));

    const KineKinematicParam scara = Scara();
    const KineKinematicParam wrist = WristArm();
    const KineKinematicParam refused{};
    const struct
    {
        uint32_t type;
        const KineKinematicParam* param;
        KineResult code;
    } states[] = {{KINE_ARM_FOUR_AXIS, &scara, KINE_OK},
                  {KINE_ARM_FOUR_AXIS_4110, &scara, KINE_OK},
                  {KINE_ARM_SIX_AXIS, &wrist, KINE_OK},
                  {KINE_ARM_SIX_AXIS, nullptr, KINE_ERR_MODEL_PARAM},
                  {KINE_ARM_FOUR_AXIS, &refused, KINE_ERR_MODEL_PARAM},
                  {KINE_ARM_FOUR_AXIS_4110, &refused, KINE_ERR_MODEL_PARAM},
                  {0, &wrist, KINE_ERR_UNKNOWN_ARM_TYPE},
                  {5, &wrist, KINE_ERR_UNKNOWN_ARM_TYPE}};
    for (const auto& state : states) {
        SCOPED_TRACE(::testing::Message() << "arm type " << state.type << ", code " << state.code);
        ASSERT_EQ(Kine_InitKinematicParam(state.type, state.param), state.code);
        SetUnitCounts(3, 6);
        StoreUnit(kPlainUnit, unit);
        for (std::size_t i = 0; i < kWobjCalibs.size(); ++i) {
            EXPECT_TRUE(SameResult(Solved(kWobjCalibs[i], GoodWobjRequest()), expected[i]));
        }
    }
}

// A NaN coordinate makes all of its direction NaN, no comparison is true for it, and the frame keeps what it
// has from elsewhere: the position of the origin, and with a lost XY point the direction of X.
TEST(wobj_calibrations, nan_in_a_position_is_0_with_nan_in_the_result)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjCalibOutcome good = Solved(call, GoodWobjRequest());
        for (std::size_t place = 0; place < call.poses; ++place) {
            for (const auto coordinate : kCoordinates) {
                for (const double bad : {kNan, -kNan, kNanWithPayload}) {
                    SCOPED_TRACE(::testing::Message() << call.name << " pose " << place);
                    WobjCalibRequest request = GoodWobjRequest();
                    request.poses[place].Frame.*coordinate = bad;
                    const WobjCalibOutcome result = Solved(call, request);
                    EXPECT_TRUE(IsTheNan(result.frame.C));
                    EXPECT_TRUE(IsTheNan(result.tilt));
                    EXPECT_TRUE(HoldsOnlyTheNan(result));
                    if (call == kCircle) {
                        ExpectAllNan(result.frame);
                        continue;
                    }
                    if (place == 0) {
                        EXPECT_TRUE(std::isnan(result.frame.*coordinate));
                    } else {
                        for (const auto p : kCoordinates) EXPECT_NEAR(result.frame.*p, good.frame.*p, 1e-12);
                    }
                    EXPECT_EQ(std::isnan(result.frame.A), place != 2);
                    EXPECT_EQ(std::isnan(result.frame.B), place != 2);
                    if (place != 2) continue;
                    EXPECT_NEAR(result.frame.A, good.frame.A, 1e-12);
                    EXPECT_NEAR(result.frame.B, good.frame.B, 1e-12);
                }
            }
        }
    }
}

// Infinity over infinity: the direction is NaN. What is finite over infinity is 0: an infinite height is the
// vertical to the two-point form, and leaves the normal of a circle with a height of 0 over an infinite
// length.
TEST(wobj_calibrations, infinity_in_a_position_is_0_with_nan_in_the_result)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        for (std::size_t place = 0; place < call.poses; ++place) {
            for (const auto coordinate : kCoordinates) {
                for (const double bad : {kInf, -kInf}) {
                    SCOPED_TRACE(::testing::Message() << call.name << " pose " << place);
                    WobjCalibRequest request = GoodWobjRequest();
                    request.poses[place].Frame.*coordinate = bad;
                    if (call == kUser2P && coordinate == &KineFrame::Z) {
                        ExpectRefused(call, request, KINE_ERR_CALIB_POINTS_CLOSE);
                        continue;
                    }
                    const WobjCalibOutcome result = Solved(call, request);
                    EXPECT_TRUE(IsTheNan(result.frame.C));
                    if (call == kCircle && place != 0 && coordinate == &KineFrame::Z) {
                        EXPECT_NEAR(result.tilt, kQuarterTurn, 1e-15);
                    } else {
                        EXPECT_TRUE(IsTheNan(result.tilt));
                    }
                }
            }
        }
    }
}

TEST(wobj_calibrations, any_bits_and_any_size_end_in_a_code_of_the_call)
{
    SetUpPlainUnit();
    SeededRandom random(670);
    std::set<KineResult> seen;
    EXPECT_EQ(PrintedBy([&] {
                  for (int i = 0; i < 4000; ++i) {
                      if (i % 16 == 0) StoreUnit(kPlainUnit, AnyUnit(random));
                      const WobjCalibRequest request = AnyRequest(random);
                      for (const WobjCalib& call : kWobjCalibs) seen.insert(DefinedCode(call, request));
                  }
              }),
              "");
    for (const KineResult code :
         {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR, KINE_ERR_CALIB_3}) {
        EXPECT_TRUE(seen.contains(code)) << std::hex << code;
    }
}

// The difference of two poses.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/pose_calls.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Request
{
    KinePose first = FullPose({10.0, 20.0, 30.0, 40.0, 50.0, 60.0});
    KinePose second = FullPose({-15.0, 25.0, 35.0, -45.0, 55.0, -65.0});
    int32_t frame = 1;
    bool nullFirst = false;
    bool nullSecond = false;
    bool nullOut = false;
};

struct Outcome
{
    KineResult code;
    KineFrame out;
    std::string printed;
};

Outcome Perform(const Request& request)
{
    const Request given = request;
    Outcome outcome{};
    outcome.out = Untouched<KineFrame>();
    outcome.printed = PrintedBy([&] {
        outcome.code = Kine_CalcPosDif(AddressUnless(given.nullFirst, given.first),
                                       AddressUnless(given.nullSecond, given.second), given.frame,
                                       given.nullOut ? nullptr : &outcome.out);
    });
    EXPECT_TRUE(SameBits(given.first, request.first));
    EXPECT_TRUE(SameBits(given.second, request.second));
    EXPECT_EQ(outcome.printed, "");
    return outcome;
}

KineFrame Difference(const Request& request)
{
    const Outcome outcome = Perform(request);
    EXPECT_EQ(outcome.code, KINE_OK);
    return outcome.out;
}

KineFrame Difference(const KineFrame& first, const KineFrame& second, int32_t frame)
{
    Request request;
    request.first = FullPose(first);
    request.second = FullPose(second);
    request.frame = frame;
    return Difference(request);
}

void ExpectRefused(const Request& request, KineResult code)
{
    const Outcome outcome = Perform(request);
    EXPECT_EQ(outcome.code, code) << std::hex << outcome.code;
    EXPECT_TRUE(IsUntouched(outcome.out));
}

void ExpectFrame(const KineFrame& actual, const KineFrame& expected)
{
    EXPECT_NEAR(actual.X, expected.X, 1e-10);
    EXPECT_NEAR(actual.Y, expected.Y, 1e-10);
    EXPECT_NEAR(actual.Z, expected.Z, 1e-10);
    EXPECT_NEAR(actual.A, expected.A, 1e-11);
    EXPECT_NEAR(actual.B, expected.B, 1e-11);
    EXPECT_NEAR(actual.C, expected.C, 1e-11);
}

struct Fault
{
    const char* name;
    int place;
    KineResult code;
    void (*make)(Request&);
};

const std::vector<Fault> kFaults = {
    {"first null", 0, KINE_ERR_POSE, [](Request& r) { r.nullFirst = true; }},
    {"first angle", 0, KINE_ERR_POSE, [](Request& r) { r.first.Frame.A = 180.0001; }},
    {"second null", 1, KINE_ERR_POSE, [](Request& r) { r.nullSecond = true; }},
    {"second angle", 1, KINE_ERR_POSE, [](Request& r) { r.second.Frame.C = -180.0001; }},
    {"frame", 2, KINE_ERR_DIRECTION, [](Request& r) { r.frame = 0; }},
    {"out null", 3, KINE_ERR_POSE, [](Request& r) { r.nullOut = true; }}};

}  // namespace

// Both are turned by 90 degrees: x of the base is -y of the first pose.
TEST(Kine_CalcPosDif, of_a_shift_is_seen_in_the_chosen_frame)
{
    const KineFrame first = {10.0, 20.0, 30.0, 90.0, 0.0, 0.0};
    const KineFrame second = {110.0, 20.0, 30.0, 90.0, 0.0, 0.0};
    ExpectFrame(Difference(first, second, 1), {100.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    ExpectFrame(Difference(first, second, -1), {0.0, -100.0, 0.0, 0.0, 0.0, 0.0});
}

// The second is the first turned about its own x by 20 degrees; that x points along y of the base.
TEST(Kine_CalcPosDif, of_a_turn_is_seen_in_the_chosen_frame)
{
    const KineFrame first = {0.0, 0.0, 0.0, 90.0, 0.0, 0.0};
    const KineFrame second = {0.0, 0.0, 0.0, 90.0, 0.0, 20.0};
    ExpectFrame(Difference(first, second, -1), {0.0, 0.0, 0.0, 0.0, 0.0, 20.0});
    ExpectFrame(Difference(first, second, 1), {0.0, 0.0, 0.0, 0.0, 20.0, 0.0});
}

TEST(Kine_CalcPosDif, of_a_pose_with_itself_is_zero)
{
    SeededRandom random(521);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        KineFrame frame = AnyFrame(random);
        if (i % 4 == 0) frame.B = i % 8 == 0 ? 90.0 : -90.0;
        for (const int32_t in : {1, -1}) ExpectFrame(Difference(frame, frame, in), {});
    }
}

TEST(Kine_CalcPosDif, agrees_with_plain_matrices)
{
    SeededRandom random(522);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const KineFrame first = AnyFrame(random);
        const KineFrame second = AnyFrame(random);
        const Mat4 turned = MatrixOf({0.0, 0.0, 0.0, second.A, second.B, second.C}) *
                            RigidInverse(MatrixOf({0.0, 0.0, 0.0, first.A, first.B, first.C}));
        EXPECT_TRUE(IsFrame(Difference(first, second, 1),
                            Shift(second.X - first.X, second.Y - first.Y, second.Z - first.Z) * turned));
        EXPECT_TRUE(IsFrame(Difference(first, second, -1), RigidInverse(MatrixOf(first)) * MatrixOf(second)));
    }
}

TEST(Kine_CalcPosDif, is_the_offset_that_leads_from_the_first_to_the_second)
{
    SeededRandom random(523);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        PoseRequest request;
        request.pose = FullPose(AnyFrame(random));
        const KineFrame second = AnyFrame(random);
        request.offset = Difference(request.pose.Frame, second, -1);
        EXPECT_TRUE(IsFrame(Converted(kToolOffsetCall, request).Frame, MatrixOf(second)));
        request.offset = Difference(request.pose.Frame, second, 1);
        EXPECT_TRUE(IsFrame(Converted(kWobjOffsetCall, request).Frame, MatrixOf(second)));
    }
}

// At B = 90 degrees only C - A is determined: A is 0 and C = 50 - 30. At -90 C + A.
TEST(Kine_CalcPosDif, answers_vertical_orientations_with_a_zero)
{
    for (const int32_t in : {1, -1}) {
        ExpectFrame(Difference({}, {1.0, 2.0, 3.0, 30.0, 90.0, 50.0}, in), {1.0, 2.0, 3.0, 0.0, 90.0, 20.0});
        ExpectFrame(Difference({}, {1.0, 2.0, 3.0, 30.0, -90.0, 50.0}, in),
                    {1.0, 2.0, 3.0, 0.0, -90.0, 80.0});
    }
}

TEST(Kine_CalcPosDif, reads_only_the_frames)
{
    SeededRandom random(524);
    Request request;
    for (const int32_t in : {1, -1}) {
        request.frame = in;
        const KineFrame expected = Difference(request);
        Request other = request;
        other.first = random.AnyBits<KinePose>();
        other.second = random.AnyBits<KinePose>();
        other.first.Frame = request.first.Frame;
        other.second.Frame = request.second.Frame;
        EXPECT_TRUE(SameBits(Difference(other), expected));
    }
}

TEST(Kine_CalcPosDif, each_refusal_has_its_code_and_leaves_the_result)
{
    for (const Fault& fault : kFaults) {
        for (const int32_t in : {1, -1}) {
            SCOPED_TRACE(fault.name);
            Request request;
            request.frame = in;
            fault.make(request);
            ExpectRefused(request, fault.code);
        }
    }
}

TEST(Kine_CalcPosDif, of_two_refusals_the_first_in_order_answers)
{
    for (const Fault& first : kFaults) {
        for (const Fault& second : kFaults) {
            if (first.place >= second.place) continue;
            SCOPED_TRACE(std::string(first.name) + " and " + second.name);
            Request request;
            second.make(request);
            first.make(request);
            ExpectRefused(request, first.code);
        }
    }
}

TEST(Kine_CalcPosDif, accepts_the_two_frames_only)
{
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    Request request;
    for (const int32_t in : {0, 2, -2, 3, 255, 257, 65535, 65537, kMin, kMin + 1, kMax}) {
        request.frame = in;
        ExpectRefused(request, KINE_ERR_DIRECTION);
    }
}

TEST(Kine_CalcPosDif, accepts_angles_up_to_180_degrees)
{
    const auto first = [](Request& r) -> KineFrame& { return r.first.Frame; };
    const auto second = [](Request& r) -> KineFrame& { return r.second.Frame; };
    using FrameOf = KineFrame& (*)(Request&);
    for (const FrameOf frame : {FrameOf(first), FrameOf(second)}) {
        for (const auto angle : kAngles) {
            for (const double sign : {1.0, -1.0}) {
                Request request;
                frame(request).*angle = sign * 180.0;
                Difference(request);
                frame(request).*angle = sign * std::nextafter(180.0, kInf);
                ExpectRefused(request, KINE_ERR_POSE);
                frame(request).*angle = sign * 180.0000001;
                ExpectRefused(request, KINE_ERR_POSE);
                frame(request).*angle = sign * kInf;
                ExpectRefused(request, KINE_ERR_POSE);
            }
            Request request;
            frame(request).*angle = kNan;
            EXPECT_TRUE(std::isnan(Difference(request).A));
        }
    }
}

TEST(Kine_CalcPosDif, passes_nan_and_infinity_of_a_position_on)
{
    const KineFrame shift = Difference({kNan, 1.0, kInf, 0.0, 0.0, 0.0}, {5.0, 3.0, 7.0, 10.0, 0.0, 0.0}, 1);
    EXPECT_TRUE(std::isnan(shift.X));
    EXPECT_EQ(shift.Y, 2.0);
    EXPECT_EQ(shift.Z, -kInf);
    EXPECT_NEAR(shift.A, 10.0, 1e-12);
}

TEST(Kine_CalcPosDif, result_may_be_the_memory_of_an_input)
{
    for (const int32_t in : {1, -1}) {
        Request request;
        request.frame = in;
        const KineFrame expected = Difference(request);
        Request onFirst = request;
        EXPECT_EQ(Kine_CalcPosDif(&onFirst.first, &onFirst.second, in, &onFirst.first.Frame), KINE_OK);
        EXPECT_TRUE(SameBits(onFirst.first.Frame, expected));
        EXPECT_TRUE(SameBesideFrame(onFirst.first, request.first));  // 48 bytes and no more
        Request onSecond = request;
        EXPECT_EQ(Kine_CalcPosDif(&onSecond.first, &onSecond.second, in, &onSecond.second.Frame), KINE_OK);
        EXPECT_TRUE(SameBits(onSecond.second.Frame, expected));
        EXPECT_TRUE(SameBesideFrame(onSecond.second, request.second));
    }
    KinePose one = FullPose({1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
    EXPECT_EQ(Kine_CalcPosDif(&one, &one, 1, &one.Frame), KINE_OK);
    ExpectFrame(one.Frame, {});
}

TEST(Kine_CalcPosDif, records_may_lie_at_odd_addresses)
{
    const Request request;
    unsigned char memory[1 + 2 * sizeof(KinePose) + sizeof(KineFrame)];
    auto* first = reinterpret_cast<KinePose*>(memory + 1);
    auto* second = reinterpret_cast<KinePose*>(memory + 1 + sizeof(KinePose));
    auto* out = reinterpret_cast<KineFrame*>(memory + 1 + 2 * sizeof(KinePose));
    std::memcpy(memory + 1, &request.first, sizeof(KinePose));
    std::memcpy(memory + 1 + sizeof(KinePose), &request.second, sizeof(KinePose));
    EXPECT_EQ(Kine_CalcPosDif(first, second, 1, out), KINE_OK);
    const KineFrame expected = Difference(request);
    EXPECT_EQ(std::memcmp(memory + 1 + 2 * sizeof(KinePose), &expected, sizeof expected), 0);
}

TEST(Kine_CalcPosDif, does_not_ask_for_an_initialised_library)
{
    const Request request;
    SetUpArm(WristArm());
    const KineFrame expected = Difference(request);
    SetUpRefusedArm();
    EXPECT_TRUE(SameBits(Difference(request), expected));
    const KineKinematicParam scara = Scara();
    for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
        EXPECT_EQ(Kine_InitKinematicParam(type, &scara), KINE_OK);
        EXPECT_TRUE(SameBits(Difference(request), expected));
    }
}

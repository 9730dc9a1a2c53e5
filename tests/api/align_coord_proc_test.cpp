// Swapping the roles of a stationary tool and a held work object, in the caller's records.
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

const char* const kLine = "IsLegalWobj,!pWobj->UFFix:2;\n";

// A pair that is accepted, with a value in every byte that has no meaning.
struct Pair
{
    KineTool tool;
    KineWobj wobj;
};

Pair GoodPair()
{
    Pair pair = {StationaryTool({10.0, 20.0, 30.0, 40.0, 50.0, 60.0}),
                 HeldWobj({100.0, 200.0, 300.0, 70.0, -60.0, 50.0}, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0})};
    pair.tool.TLoad = MakeLoad(3.0, 1.0, 2.0, 3.0);
    pair.tool.TLoad.Aom[0] = 11.0;
    pair.tool.TLoad.Inertia[1] = 0.5;
    pair.wobj.MechUnitIndex = -3;
    std::memset(pair.tool.Reserved, 0x5A, sizeof pair.tool.Reserved);
    std::memset(pair.wobj.Reserved, 0x5A, sizeof pair.wobj.Reserved);
    return pair;
}

void SetUpTwoUnits()
{
    SetUpArm(WristArm());
    SetUnitCounts(2, 6);
}

void Swap(Pair& pair, KineResult code, const std::string& printed = "")
{
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_CalcAlignCoordProc(&pair.tool, &pair.wobj), code); }), printed);
}

void ExpectRefusedUntouched(const Pair& given, KineResult code, const std::string& printed = "")
{
    Pair pair = given;
    Swap(pair, code, printed);
    EXPECT_TRUE(SameBits(pair.tool, given.tool));
    EXPECT_TRUE(SameBits(pair.wobj, given.wobj));
}

// All but the fields that a success changes.
void ExpectTheRestKept(const Pair& after, const Pair& before)
{
    Pair expected = before;
    expected.tool.HeldByRobot = 1;
    expected.tool.TFrame = after.tool.TFrame;
    expected.wobj.HeldByRobot = 0;
    expected.wobj.UFrame = before.tool.TFrame;
    expected.wobj.OFrame = {};
    EXPECT_TRUE(SameBits(after.tool, expected.tool));
    EXPECT_TRUE(SameBits(after.wobj, expected.wobj));
}

struct Fault
{
    const char* name;
    int place;
    KineResult code;
    const char* printed;
    void (*make)(Pair&);
};

const std::vector<Fault> kFaults = {
    {"user frame", 0, KINE_ERR_WOBJ, "", [](Pair& p) { p.wobj.UFrame.A = 180.5; }},
    {"mechanical unit 0", 1, KINE_ERR_WOBJ, kLine,
     [](Pair& p) {
         p.wobj.UFFix = 0;
         p.wobj.MechUnitIndex = 0;
     }},
    {"mechanical unit at the count", 1, KINE_ERR_WOBJ, kLine,
     [](Pair& p) {
         p.wobj.UFFix = 0;
         p.wobj.MechUnitIndex = 2;
     }},
    {"object frame", 2, KINE_ERR_WOBJ, "", [](Pair& p) { p.wobj.OFrame.C = -180.5; }},
    {"tool frame", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.TFrame.B = 180.5; }},
    {"tool mass", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.TLoad.Mass = -0.0001; }},
    {"tool inertia", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.TLoad.Inertia[2] = -0.0001; }},
    {"tool inertia axes", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.TLoad.Aom[1] = 180.5; }},
    {"tool held", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.HeldByRobot = 1; }},
    {"tool held by 2", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.HeldByRobot = 2; }},
    {"tool held by 255", 3, KINE_ERR_TOOL, "", [](Pair& p) { p.tool.HeldByRobot = 255; }}};

}  // namespace

// The object lies at (100, 0, 0) + Rz(90) * (0, 50, 0) = (50, 0, 0) on the flange, turned by 90 + 20 degrees.
TEST(Kine_CalcAlignCoordProc, makes_a_tool_of_the_object_and_a_user_frame_of_the_tool)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    pair.wobj.UFrame = {100.0, 0.0, 0.0, 90.0, 0.0, 0.0};
    pair.wobj.OFrame = {0.0, 50.0, 0.0, 20.0, 0.0, 0.0};
    const Pair before = pair;
    Swap(pair, KINE_OK);
    EXPECT_NEAR(pair.tool.TFrame.X, 50.0, 1e-12);
    EXPECT_NEAR(pair.tool.TFrame.Y, 0.0, 1e-12);
    EXPECT_NEAR(pair.tool.TFrame.Z, 0.0, 1e-12);
    EXPECT_NEAR(pair.tool.TFrame.A, 110.0, 1e-12);
    EXPECT_NEAR(pair.tool.TFrame.B, 0.0, 1e-12);
    EXPECT_NEAR(pair.tool.TFrame.C, 0.0, 1e-12);
    ExpectTheRestKept(pair, before);
}

TEST(Kine_CalcAlignCoordProc, agrees_with_plain_matrices)
{
    SetUpTwoUnits();
    SeededRandom random(541);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        Pair pair = GoodPair();
        pair.tool.TFrame = AnyFrame(random);
        pair.wobj.UFrame = AnyFrame(random);
        pair.wobj.OFrame = AnyFrame(random);
        const Pair before = pair;
        Swap(pair, KINE_OK);
        EXPECT_TRUE(IsFrame(pair.tool.TFrame, MatrixOf(before.wobj.UFrame) * MatrixOf(before.wobj.OFrame)));
        ExpectTheRestKept(pair, before);
    }
}

TEST(Kine_CalcAlignCoordProc, counts_a_user_frame_only_when_fixed_is_exactly_one)
{
    SetUpTwoUnits();
    for (const int fixed : {0, 2, 255}) {
        Pair pair = GoodPair();
        pair.wobj.UFFix = static_cast<uint8_t>(fixed);
        pair.wobj.MechUnitIndex = 1;
        const Pair before = pair;
        Swap(pair, KINE_OK);
        EXPECT_TRUE(IsFrame(pair.tool.TFrame, MatrixOf(before.wobj.OFrame))) << fixed;
        ExpectTheRestKept(pair, before);
    }
}

TEST(Kine_CalcAlignCoordProc, moves_the_tool_frame_bit_for_bit)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    pair.tool.TFrame = {-kNan, kInf, -0.0, 180.0, -kNan, -180.0};
    const Pair before = pair;
    Swap(pair, KINE_OK);
    ExpectTheRestKept(pair, before);
}

TEST(Kine_CalcAlignCoordProc, takes_every_byte_but_0_as_a_held_work_object)
{
    SetUpTwoUnits();
    for (const int held : {1, 2, 255}) {
        Pair pair = GoodPair();
        pair.wobj.HeldByRobot = static_cast<uint8_t>(held);
        const Pair before = pair;
        Swap(pair, KINE_OK);
        ExpectTheRestKept(pair, before);
    }
}

TEST(Kine_CalcAlignCoordProc, a_second_time_is_0x6011)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    Swap(pair, KINE_OK);
    ExpectRefusedUntouched(pair, KINE_ERR_TOOL);
}

// With the bytes exchanged by hand in between, the stationary tool comes back as the tool.
TEST(Kine_CalcAlignCoordProc, swapped_back_gives_the_first_frames)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    const Pair before = pair;
    Swap(pair, KINE_OK);
    pair.tool.HeldByRobot = 0;
    pair.wobj.HeldByRobot = 1;
    Swap(pair, KINE_OK);
    EXPECT_TRUE(IsFrame(pair.tool.TFrame, MatrixOf(before.tool.TFrame)));
    EXPECT_TRUE(IsFrame(pair.wobj.UFrame, MatrixOf(before.wobj.UFrame) * MatrixOf(before.wobj.OFrame)));
}

// The tool point in the work object before is the work-object point in the tool afterwards.
TEST(Kine_CalcAlignCoordProc, keeps_the_relation_of_the_two)
{
    for (const uint32_t type : {KINE_ARM_FOUR_AXIS, KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS_4110}) {
        SetUpTwoUnits();
        const KineKinematicParam arm = type == KINE_ARM_SIX_AXIS ? WristArm() : Scara();
        ASSERT_EQ(Kine_InitKinematicParam(type, &arm), KINE_OK);
        const KineJoint joints = MakeJoints({35.0, 25.0, 20.0, 40.0, 55.0, -70.0});
        const KineLoad load{};
        Pair pair = GoodPair();
        // The four-axis arms carry a frame that is turned about z only.
        pair.wobj.UFrame = {100.0, 20.0, 30.0, 70.0, 0.0, 0.0};
        pair.wobj.OFrame = {5.0, 6.0, 7.0, 8.0, 0.0, 0.0};
        KinePose before{};
        KinePose after{};
        ASSERT_EQ(Kine_JointToWobjPos(&joints, &pair.tool, &pair.wobj, &load, &before), KINE_OK);
        Swap(pair, KINE_OK);
        ASSERT_EQ(Kine_JointToWobjPos(&joints, &pair.tool, &pair.wobj, &load, &after), KINE_OK);
        EXPECT_TRUE(IsFrame(after.Frame, RigidInverse(MatrixOf(before.Frame)))) << type;
    }
}

TEST(Kine_CalcAlignCoordProc, each_refusal_has_its_code_and_leaves_both_records)
{
    SetUpTwoUnits();
    for (const Fault& fault : kFaults) {
        SCOPED_TRACE(fault.name);
        Pair pair = GoodPair();
        fault.make(pair);
        ExpectRefusedUntouched(pair, fault.code, fault.printed);
        pair.wobj.HeldByRobot = 0;  // found out last of all
        ExpectRefusedUntouched(pair, fault.code, fault.printed);
    }
}

TEST(Kine_CalcAlignCoordProc, of_two_refusals_the_first_in_order_answers)
{
    SetUpTwoUnits();
    for (const Fault& first : kFaults) {
        for (const Fault& second : kFaults) {
            if (first.place >= second.place) continue;
            SCOPED_TRACE(std::string(first.name) + " and " + second.name);
            Pair pair = GoodPair();
            second.make(pair);
            first.make(pair);
            ExpectRefusedUntouched(pair, first.code, first.printed);
        }
    }
}

TEST(Kine_CalcAlignCoordProc, with_an_object_not_held_is_0x6012_and_leaves_the_tool_held)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    pair.wobj.HeldByRobot = 0;
    Pair expected = pair;
    expected.tool.HeldByRobot = 1;
    Swap(pair, KINE_ERR_WOBJ);
    EXPECT_TRUE(SameBits(pair.tool, expected.tool));
    EXPECT_TRUE(SameBits(pair.wobj, expected.wobj));
    // The byte that stayed is found by the next call.
    ExpectRefusedUntouched(pair, KINE_ERR_TOOL);
    pair.wobj.HeldByRobot = 1;
    ExpectRefusedUntouched(pair, KINE_ERR_TOOL);
}

TEST(Kine_CalcAlignCoordProc, accepts_angles_up_to_180_degrees)
{
    SetUpTwoUnits();
    const auto tool = [](Pair& p) -> KineFrame& { return p.tool.TFrame; };
    const auto user = [](Pair& p) -> KineFrame& { return p.wobj.UFrame; };
    const auto object = [](Pair& p) -> KineFrame& { return p.wobj.OFrame; };
    struct Checked
    {
        KineResult code;
        KineFrame& (*frame)(Pair&);
    };
    for (const Checked& checked :
         {Checked{KINE_ERR_TOOL, tool}, Checked{KINE_ERR_WOBJ, user}, Checked{KINE_ERR_WOBJ, object}}) {
        for (const auto angle : kAngles) {
            for (const double sign : {1.0, -1.0}) {
                Pair pair = GoodPair();
                checked.frame(pair).*angle = sign * std::nextafter(180.0, kInf);
                ExpectRefusedUntouched(pair, checked.code);
                checked.frame(pair).*angle = sign * 180.0;
                Swap(pair, KINE_OK);
            }
            Pair pair = GoodPair();
            checked.frame(pair).*angle = kNan;
            Swap(pair, KINE_OK);
        }
    }
}

TEST(Kine_CalcAlignCoordProc, passes_nan_of_the_object_on_to_the_tool)
{
    SetUpTwoUnits();
    Pair pair = GoodPair();
    pair.wobj.UFrame.X = -kNan;
    const Pair before = pair;
    Swap(pair, KINE_OK);
    const double quiet = kNan;
    EXPECT_EQ(std::memcmp(&pair.tool.TFrame.X, &quiet, sizeof quiet), 0);
    EXPECT_TRUE(std::isfinite(pair.tool.TFrame.A));
    ExpectTheRestKept(pair, before);
}

TEST(Kine_CalcAlignCoordProc, null_is_refused_at_the_place_of_its_record)
{
    SetUpTwoUnits();
    EXPECT_EQ(PrintedBy([] { EXPECT_EQ(Kine_CalcAlignCoordProc(nullptr, nullptr), KINE_ERR_WOBJ); }), "");
    const Pair good = GoodPair();
    for (const int held : {0, 1}) {
        KineTool tool = good.tool;
        tool.HeldByRobot = static_cast<uint8_t>(held);
        const KineTool toolBefore = tool;
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_CalcAlignCoordProc(&tool, nullptr), KINE_ERR_WOBJ); }), "");
        EXPECT_TRUE(SameBits(tool, toolBefore));
        KineWobj wobj = good.wobj;
        wobj.HeldByRobot = static_cast<uint8_t>(held);
        const KineWobj wobjBefore = wobj;
        EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_CalcAlignCoordProc(nullptr, &wobj), KINE_ERR_TOOL); }), "");
        EXPECT_TRUE(SameBits(wobj, wobjBefore));
    }
    KineWobj wobj = WobjOnUnit(0);
    EXPECT_EQ(PrintedBy([&] { EXPECT_EQ(Kine_CalcAlignCoordProc(nullptr, &wobj), KINE_ERR_WOBJ); }), kLine);
}

TEST(Kine_CalcAlignCoordProc, records_may_lie_at_odd_addresses)
{
    SetUpTwoUnits();
    Pair expected = GoodPair();
    unsigned char memory[1 + sizeof(KineTool) + sizeof(KineWobj)];
    std::memcpy(memory + 1, &expected.tool, sizeof(KineTool));
    std::memcpy(memory + 1 + sizeof(KineTool), &expected.wobj, sizeof(KineWobj));
    EXPECT_EQ(Kine_CalcAlignCoordProc(reinterpret_cast<KineTool*>(memory + 1),
                                      reinterpret_cast<KineWobj*>(memory + 1 + sizeof(KineTool))),
              KINE_OK);
    Swap(expected, KINE_OK);
    EXPECT_EQ(std::memcmp(memory + 1, &expected.tool, sizeof(KineTool)), 0);
    EXPECT_EQ(std::memcmp(memory + 1 + sizeof(KineTool), &expected.wobj, sizeof(KineWobj)), 0);
}

TEST(Kine_CalcAlignCoordProc, does_not_ask_for_an_initialised_library)
{
    SetUpTwoUnits();
    Pair expected = GoodPair();
    Swap(expected, KINE_OK);
    SetUpRefusedArm();
    Pair pair = GoodPair();
    Swap(pair, KINE_OK);
    EXPECT_TRUE(SameBits(pair.tool, expected.tool));
    EXPECT_TRUE(SameBits(pair.wobj, expected.wobj));
}

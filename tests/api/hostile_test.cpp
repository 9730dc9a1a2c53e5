// Any bits in any record: the calls return one of their codes, keep what they must not touch, print only
// lines of theirs, and read nothing outside the records.
//
// Every round takes records that pass all checks and spoils a few of their bytes or numbers, so that all
// stages of a call are reached; some rounds use nothing but random bytes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <sstream>
#include <string>

#include "support/cell_setup.h"
#include "support/chain_calls.h"
#include "support/guarded_memory.h"
#include "support/nasty_numbers.h"
#include "support/sample_arms.h"

using namespace kine::test;

namespace {

Request PlausibleRequest(SeededRandom& random)
{
    Request request;
    request.joints = MakeJoints({35.0, -25.0, 20.0, 40.0, 55.0, -70.0});
    request.target.Frame = {700.0, 100.0, 900.0, 20.0, 30.0, 40.0};
    request.target.Cfg4 = static_cast<int32_t>(random.Below(8));
    for (std::size_t i = 0; i < 6; ++i) {
        request.joints.ExtAxis[i] = request.target.ExtAxis[i] = random.Uniform(-200.0, 200.0);
    }
    const bool heldTool = random.Below(2) == 0;
    request.tool = HeldTool({10.0, 20.0, 30.0, 40.0, 50.0, 60.0});
    request.tool.HeldByRobot = heldTool ? 1 : 0;
    request.wobj = random.Below(2) == 0 ? FixedWobj({1.0, 2.0, 3.0, 4.0, 5.0, 6.0})
                                        : WobjOnUnit(1 + static_cast<int>(random.Below(2)));
    request.wobj.HeldByRobot = heldTool ? 0 : 1;
    request.load = MakeLoad(2.0, 3.0, 4.0, 5.0);
    return request;
}

Request AnyRequest(SeededRandom& random)
{
    Request request = PlausibleRequest(random);
    if (random.Below(20) == 0) {
        request.joints = random.AnyBits<KineJoint>();
        request.target = random.AnyBits<KinePose>();
        request.tool = random.AnyBits<KineTool>();
        request.wobj = random.AnyBits<KineWobj>();
        request.load = random.AnyBits<KineLoad>();
        return request;
    }
    Spoil(random, request.joints);
    Spoil(random, request.target);
    if (random.Below(2) == 0) Spoil(random, request.tool);
    if (random.Below(2) == 0) Spoil(random, request.wobj);
    if (random.Below(2) == 0) Spoil(random, request.load);
    return request;
}

KineMechUnit AnyUnit(SeededRandom& random)
{
    if (random.Below(20) == 0) return random.AnyBits<KineMechUnit>();
    const KineFrame first = {500.0, 100.0, 50.0, 10.0, 20.0, 30.0};
    const KineFrame second = {50.0, 10.0, 5.0, 40.0, 50.0, 60.0};
    KineMechUnit unit =
        TwoRotaryUnit(first, second, static_cast<int>(random.Below(6)), static_cast<int>(random.Below(6)));
    unit.UnitKind = static_cast<uint16_t>(1 + random.Below(3));
    if (random.Below(2) == 0) unit = CarryingRobot(unit, static_cast<int>(random.Below(3)));
    if (random.Below(8) == 0) unit.AxisFrame[random.Below(2)] = {};
    Spoil(random, unit);
    return unit;
}

KineKinematicParam AnyArm(SeededRandom& random)
{
    KineKinematicParam arm = random.Below(2) == 0 ? PumaWithGravity() : CalibratedWristArm();
    if (random.Below(2) == 0) Spoil(random, arm);
    return arm;
}

const std::set<KineResult> kForwardCodes = {KINE_OK,
                                            KINE_ERR_TOOL,
                                            KINE_ERR_WOBJ,
                                            KINE_ERR_LOAD,
                                            KINE_ERR_HOLD,
                                            KINE_ERR_NOT_INITIALISED,
                                            KINE_ERR_HOLD_CONFLICT,
                                            KINE_ERR_F2W_UNIT_KIND,
                                            KINE_ERR_W2F_UNIT_KIND,
                                            KINE_ERR_AXIS_ORIGIN};
const std::set<KineResult> kInverseCodes = {KINE_OK,
                                            KINE_ERR_TOOL,
                                            KINE_ERR_WOBJ,
                                            KINE_ERR_LOAD,
                                            KINE_ERR_POSE,
                                            KINE_ERR_HOLD,
                                            KINE_ERR_NOT_INITIALISED,
                                            KINE_ERR_CONFIG,
                                            KINE_ERR_HOLD_CONFLICT,
                                            KINE_ERR_F2W_UNIT_KIND,
                                            KINE_ERR_W2F_UNIT_KIND,
                                            KINE_ERR_AXIS_ORIGIN,
                                            KINE_ERR_SINGULAR,
                                            KINE_ERR_IK_6,
                                            KINE_ERR_IK_7,
                                            KINE_ERR_IK_8,
                                            KINE_ERR_IK_9,
                                            KINE_ERR_IK_ACCURACY};

// The calls run on guarded copies that the library cannot write.
struct GuardedRequest
{
    explicit GuardedRequest(const Request& r)
        : joints(r.joints), target(r.target), tool(r.tool), wobj(r.wobj), load(r.load)
    {
        joints.Freeze();
        target.Freeze();
        tool.Freeze();
        wobj.Freeze();
        load.Freeze();
    }
    GuardedRecord<KineJoint> joints;
    GuardedRecord<KinePose> target;
    GuardedRecord<KineTool> tool;
    GuardedRecord<KineWobj> wobj;
    GuardedRecord<KineLoad> load;
};

void CallForward(const ChainCall& call, GuardedRequest& in, std::set<KineResult>& seen)
{
    GuardedRecord<KinePose> pose(Untouched<KinePose>());
    const KineResult code =
        call.forward(in.joints.Get(), in.tool.Get(), in.wobj.Get(), in.load.Get(), pose.Get());
    EXPECT_TRUE(kForwardCodes.contains(code)) << call.name << std::hex << " 0x" << code;
    EXPECT_EQ(IsUntouched(pose.Value()), code != KINE_OK) << call.name;
    seen.insert(code);
}

void CallInverse(GuardedRequest& in, std::set<KineResult>& seen)
{
    GuardedRecord<KineJoint> joints(Untouched<KineJoint>());
    const KineResult code =
        Kine_WobjPosToJoint(in.target.Get(), in.tool.Get(), in.wobj.Get(), in.load.Get(), joints.Get());
    EXPECT_TRUE(kInverseCodes.contains(code)) << std::hex << "0x" << code;
    EXPECT_EQ(IsUntouched(joints.Value()), code != KINE_OK);
    if (code == KINE_OK) {
        for (const double axis : joints.Value().Axis) EXPECT_TRUE(std::isfinite(axis));
    }
    seen.insert(code);
}

void CallQueries(GuardedRequest& in, SeededRandom& random)
{
    GuardedRecord<KineArmConfig> config(Untouched<KineArmConfig>());
    const KineResult state = Kine_GetArmType(in.joints.Get(), config.Get());
    EXPECT_TRUE(state == KINE_OK || state == KINE_ERR_NOT_INITIALISED);
    EXPECT_EQ(IsUntouched(config.Value()), state != KINE_OK);
    const KineResult singular = Kine_IsSingularity(in.joints.Get(), static_cast<uint32_t>(random.Below(4)));
    EXPECT_TRUE(singular == state || (state == KINE_OK && singular == KINE_SINGULAR));
    const KineResult valid = Kine_IsArmTypeValid(in.target.Get());
    EXPECT_TRUE(valid == KINE_ERR_POSE || valid == state || (state == KINE_OK && valid == KINE_ERR_CONFIG));
    GuardedRecord<KinePose> pose(Untouched<KinePose>());
    EXPECT_EQ(Kine_FKineVision(in.joints.Get(), pose.Get()), state);
    EXPECT_EQ(IsUntouched(pose.Value()), state != KINE_OK);
}

void CallSetup(SeededRandom& random)
{
    GuardedRecord<KineKinematicParam> arm(AnyArm(random));
    arm.Freeze();
    const KineResult init = Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, arm.Get());
    EXPECT_TRUE(init == KINE_OK || init == KINE_ERR_MODEL_PARAM);
    const KineResult counts = Kine_SetMechUnitGlobalCfg(static_cast<uint32_t>(random.Below(5)),
                                                        static_cast<uint32_t>(3 + random.Below(5)), 1);
    EXPECT_TRUE(counts == KINE_OK || counts == KINE_ERR_MECH_UNIT_COUNT);
    for (int32_t index = -1; index < 4; ++index) {
        GuardedRecord<KineMechUnit> unit(AnyUnit(random));
        unit.Freeze();
        const KineResult code = Kine_SetMechUnitParam(index, unit.Get());
        EXPECT_TRUE(code == KINE_OK || code == KINE_ERR_MECH_UNIT);
    }
    GuardedRecord<KineExtAxisParam> axis(random.AnyBits<KineExtAxisParam>());
    axis.Freeze();
    const auto index = static_cast<int32_t>(random.Below(9)) - 1;
    EXPECT_EQ(Kine_SetExtAxisParam(index, axis.Get()),
              index < 0 || index > 5 ? KINE_ERR_EXT_AXIS_PARAM : KINE_OK);
    if (random.Below(2) == 0) {
        KineJoint upper = MakeJoints({350, 350, 350, 350, 350, 350});
        KineJoint lower = MakeJoints({-350, -350, -350, -350, -350, -350});
        Spoil(random, upper);
        Spoil(random, lower);
        EXPECT_EQ(Kine_SetAxisLimit(&upper, &lower), init == KINE_OK ? KINE_OK : KINE_ERR_NOT_INITIALISED);
    }
}

bool IsKnownLine(const std::string& line)
{
    for (const char* start :
         {"IsLegalMechUnitAndExtAxisNum:mechUnitCount:",
          "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:",
          "IsLegalMechUnit:index:",
          "IsLegalExtAxisParam:index:",
          "IsLegalWobj,!pWobj->UFFix:",
          "IsLegalMechUnit\xA3\xBApArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:",
          "FK Error 1:24577",
          "FK Error 2:24656",
          "FK Error 4:24627",
          "FK Error 6:24625",
          "FK Error 6:24628",
          "IK error 0:24656",
          "IK error 2:24627",
          "IK error 3:24625",
          "IK error 3:24628",
          "IK error 5:24720",
          "IK error 5:24725",
          "IK error 5:24726",
          "IK error 5:24727",
          "IK error 5:24728",
          "IK error 5:24729",
          "IK error 5:24730"}) {
        if (line.starts_with(start)) return true;
    }
    return false;
}

}  // namespace

TEST(hostile_records, give_codes_and_lines_of_their_calls_and_nothing_else)
{
    constexpr std::uint64_t kSeed = 4171;
    SeededRandom random(kSeed);
    std::set<KineResult> forwardSeen;
    std::set<KineResult> inverseSeen;
    const std::string printed = PrintedBy([&] {
        // Each round makes about 12 calls for setting up and 10 times 9 others.
        for (int round = 0; round < 200 && !::testing::Test::HasFailure(); ++round) {
            CallSetup(random);
            for (int set = 0; set < 10; ++set) {
                SCOPED_TRACE(::testing::Message()
                             << "seed " << kSeed << ", round " << round << ", set " << set);
                GuardedRequest in(AnyRequest(random));
                for (const ChainCall& call : kForwardCalls) CallForward(call, in, forwardSeen);
                CallInverse(in, inverseSeen);
                CallQueries(in, random);
            }
        }
    });
    std::istringstream lines(printed);
    for (std::string line; std::getline(lines, line);) EXPECT_TRUE(IsKnownLine(line)) << line;
    // The rounds reach every stage: every code that these calls share has come up.
    for (const KineResult code : kForwardCodes) EXPECT_TRUE(forwardSeen.contains(code)) << std::hex << code;
    for (const KineResult code : {KINE_OK, KINE_ERR_POSE, KINE_ERR_CONFIG, KINE_ERR_F2W_UNIT_KIND,
                                  KINE_ERR_W2F_UNIT_KIND, KINE_ERR_IK_6, KINE_ERR_IK_7}) {
        EXPECT_TRUE(inverseSeen.contains(code)) << std::hex << code;
    }
}

// One nasty number after the other in every 8-byte place of every record.
TEST(hostile_records, nasty_number_in_every_place)
{
    SetUpArm(CalibratedWristArm());
    SetUnitCounts(3, 6);
    for (int index = 1; index < 3; ++index)
        StoreUnit(index, TwoRotaryUnit({500, 0, 0, 0, 0, 0}, {5, 0, 0, 0, 0, 0}, 0, 1));
    SeededRandom random(4172);
    std::set<KineResult> seen;
    const std::string printed = PrintedBy([&] {
        for (const double value : {kNan, kInf, -kInf, 1e308, -1e308, 1e17}) {
            const auto sweep = [&]<class Record>(Record Request::*record) {
                for (std::size_t place = 0; place < sizeof(Record) / 8; ++place) {
                    SCOPED_TRACE(::testing::Message()
                                 << value << " at " << 8 * place << " of " << sizeof(Record));
                    Request request = PlausibleRequest(random);
                    std::memcpy(reinterpret_cast<unsigned char*>(&(request.*record)) + 8 * place, &value,
                                sizeof value);
                    GuardedRequest in(request);
                    for (const ChainCall& call : kForwardCalls) CallForward(call, in, seen);
                    CallInverse(in, seen);
                    CallQueries(in, random);
                }
            };
            sweep(&Request::joints);
            sweep(&Request::target);
            sweep(&Request::tool);
            sweep(&Request::wobj);
            sweep(&Request::load);
        }
    });
    EXPECT_NE(printed, "");
    EXPECT_TRUE(seen.contains(KINE_OK));
}

TEST(hostile_records, nasty_number_in_every_place_of_the_arm)
{
    SeededRandom random(4173);
    std::set<KineResult> seen;
    static_cast<void>(PrintedBy([&] {
        for (const double value : {kNan, kInf, -kInf, 1e308, -1e308, 0.0}) {
            for (std::size_t place = 0; place < sizeof(KineKinematicParam) / 8; ++place) {
                SCOPED_TRACE(::testing::Message() << value << " at " << 8 * place);
                KineKinematicParam arm = CalibratedWristArm();
                std::memcpy(reinterpret_cast<unsigned char*>(&arm) + 8 * place, &value, sizeof value);
                static_cast<void>(Kine_InitKinematicParam(KINE_ARM_SIX_AXIS, &arm));
                Request request = PlausibleRequest(random);
                request.wobj.UFFix = 1;
                GuardedRequest in(request);
                for (const ChainCall& call : kForwardCalls) CallForward(call, in, seen);
                CallInverse(in, seen);
                CallQueries(in, random);
            }
        }
    }));
    EXPECT_TRUE(seen.contains(KINE_OK));
    EXPECT_TRUE(seen.contains(KINE_ERR_NOT_INITIALISED));
}

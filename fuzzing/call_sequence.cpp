// A sequence of calls out of bytes.
#include "call_sequence.h"

#include <algorithm>
#include <cstdlib>

#include "rules.h"
#include "support/seeded_random.h"

namespace kine::fuzz {

namespace {

constexpr std::size_t kMaxCalls = 24;

// Of 256 first bytes of a call those below these set up a whole cell, or draw a setup call.
constexpr unsigned kCellBelow = 16;
constexpr unsigned kSetupBelow = 64;

constexpr unsigned char kPattern = 0xA5;
constexpr unsigned char kOtherPattern = 0x5A;

// Both left every result alone, or wrote the same bits.
bool SameResults(const Call& call, const Outcome& a, const Outcome& b)
{
    for (std::size_t i = 0; i < call.function->paramCount; ++i) {
        if (a.isUntouched[i] != b.isUntouched[i]) return false;
        if (!a.isUntouched[i] && !(a.results[i] == b.results[i])) return false;
    }
    return true;
}

void ExpectSame(const Call& call, const Outcome& first, const Outcome& second, const char* broken)
{
    const bool isSame =
        first.code == second.code && first.Text() == second.Text() && SameResults(call, first, second);
    if (!isSame) Fail(call, second.code, broken);
}

KineMechUnit UnitOf(std::uint16_t kind, const KineFrame& first, const KineFrame& second)
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = kind;
    unit.AxisCount = kind == 3 ? 2 : 1;
    unit.AxisFrame[0] = first;
    unit.AxisFrame[1] = second;
    unit.AxisParamIndex[0] = static_cast<std::uint8_t>(kind);
    unit.AxisParamIndex[1] = 5;
    return unit;
}

}  // namespace

CallSequence::CallSequence(unsigned family) : isTraced_(std::getenv("KINE_FUZZ_TRACE") != nullptr)
{
    for (const Export& function : Exports()) {
        if ((function.families & family) == 0) continue;
        ((function.traits & kWrites) != 0 ? setup_ : family_).push_back(&function);
    }
}

void CallSequence::RunBeforeInitialisation()
{
    constexpr int kInputs = 400;
    test::SeededRandom random(4174);
    for (int n = 0; n < kInputs; ++n) {
        const auto bytes = random.AnyBits<std::array<std::uint8_t, 600>>();
        ByteSource source(bytes.data(), bytes.size());
        RunCalls(source, n < kInputs / 2 ? Setup::kNone : Setup::kNoInitialisation);
    }
}

void CallSequence::RunInput(const std::uint8_t* data, std::size_t size)
{
    // What these two leave behind is read by no call before an initialisation has replaced it: parameters,
    // limits and family of the last arm.
    if (Kine_SetMechUnitGlobalCfg(0, 0, 0) != KINE_OK) std::abort();
    if (Kine_InitKinematicParam(0, nullptr) != KINE_ERR_UNKNOWN_ARM_TYPE) std::abort();
    cell_ = {};
    cell_.wasInitialised = true;
    records_ = {};
    ByteSource source(data, size);
    RunCalls(source, Setup::kAll);
}

void CallSequence::RunCalls(ByteSource& source, Setup setup)
{
    for (std::size_t n = 0; n < kMaxCalls && !source.IsEmpty(); ++n) {
        const unsigned choice = source.Byte();
        if (choice >= kSetupBelow) {
            Perform(records_.TakeCall(source, *family_[choice % family_.size()]));
        } else if (choice < kCellBelow) {
            if (setup == Setup::kAll) SetUpCell(source);
        } else {
            const Export& function = *setup_[choice % setup_.size()];
            const bool isInitialisation = function.name == "Kine_InitKinematicParam";
            if (setup == Setup::kNone || (setup == Setup::kNoInitialisation && isInitialisation)) continue;
            Perform(records_.TakeCall(source, function));
        }
    }
    RepeatProbes();
    if (PrintedText::HasStray()) std::abort();
}

void CallSequence::Perform(const Call& call)
{
    // Not the inputs that every process starts with.
    const bool isShown = isTraced_ && cell_.wasInitialised;
    if (isShown) Show(call);
    const bool isWriting = (call.function->traits & kWrites) != 0;
    if (isWriting) RepeatProbes();

    const Outcome first = runner_.Run(call, kPattern);
    if (isShown) Show(first);
    if (const char* broken = JudgeOutcome(call, first, cell_)) Fail(call, first.code, broken);
    if (const char* broken = JudgeText(call, first, cell_)) Fail(call, first.code, broken);
    const Outcome second = runner_.Run(call, kOtherPattern);
    ExpectSame(call, first, second, "the same call, made twice, differs");
    if (call.overlaidResult < kMaxParams) CompareOverlaid(call, first);

    if (isWriting) {
        Follow(call, first.code, cell_);
    } else if (std::ranges::none_of(probes_,
                                    [&](const Probe& p) { return p.call.function == call.function; })) {
        probes_.push_back({call, first});
    }
    for (std::size_t i = 0; i < call.function->paramCount; ++i) {
        if (call.function->params[i].role == Role::kOut && !first.isUntouched[i] && first.results[i].size > 0)
            records_.Remember(call.function->params[i].kind, first.results[i]);
    }
}

void CallSequence::CompareOverlaid(const Call& call, const Outcome& apart)
{
    const Outcome over = runner_.Run(call, kPattern, true);
    if (over.code != apart.code || over.Text() != apart.Text())
        Fail(call, over.code, "a result over an input changes code or text");
    for (std::size_t i = 0; i < call.function->paramCount; ++i) {
        // A result over an input may happen to be equal to it.
        const bool isSame = apart.isUntouched[i] ? over.isUntouched[i] : over.results[i] == apart.results[i];
        if (!isSame) Fail(call, over.code, "a result over an input changes the results");
    }
}

void CallSequence::RepeatProbes()
{
    for (const auto& [call, outcome] : probes_) {
        const Outcome again = runner_.Run(call, kPattern);
        ExpectSame(call, outcome, again, "repeated after other reading calls, the call differs");
    }
    probes_.clear();
}

// A sample arm, and in three of four cases three mechanical units: two rotary axes, a track, and at index 0
// one rotary axis, which in most cases also says what the robot stands on.
void CallSequence::SetUpCell(ByteSource& source)
{
    const SampleArm arm = SampleArmOf(source.Byte());
    Call init;
    init.function = &Find("Kine_InitKinematicParam");
    init.arguments[0].value.integer = static_cast<std::int32_t>(arm.type);
    init.arguments[1].bytes = Bytes::Of(arm.param);
    init.arguments[1].bytes.size = ArmViewSize(static_cast<std::int32_t>(arm.type));
    Perform(init);

    const unsigned choice = source.Byte();
    if ((choice & 3U) == 0) return;
    Call counts;
    counts.function = &Find("Kine_SetMechUnitGlobalCfg");
    for (std::size_t i = 0; i < 3; ++i) counts.arguments[i].value.integer = i == 1 ? 6 : 3;
    Perform(counts);

    KineMechUnit carrier = UnitOf(2, {0.0, 0.0, 300.0, 90.0, 0.0, 0.0}, {});
    carrier.Option1 = (choice & 1U) != 0 ? 1 : 0;
    carrier.Option2 = static_cast<std::uint8_t>(choice >> 2U & 3U);
    const KineMechUnit units[3] = {
        carrier, UnitOf(3, {800.0, 100.0, 50.0, 10.0, 20.0, 30.0}, {5.0, 6.0, 7.0, 8.0, 9.0, 10.0}),
        UnitOf(1, {0.0, -500.0, 0.0, 30.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 5.0, 0.0, 0.0})};
    for (std::int32_t index = 0; index < 3; ++index) {
        Call unit;
        unit.function = &Find("Kine_SetMechUnitParam");
        unit.arguments[0].value.integer = index;
        unit.arguments[1].bytes = Bytes::Of(units[index]);
        Perform(unit);
    }
    KineExtAxisParam linear{};
    linear.Word[3] = 1;
    Call track;
    track.function = &Find("Kine_SetExtAxisParam");
    track.arguments[0].value.integer = 1;
    track.arguments[1].bytes = Bytes::Of(linear);
    Perform(track);
}

}  // namespace kine::fuzz

// The promises about codes and records.
#include "rules.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace kine::fuzz {

namespace {

constexpr std::uint64_t kTheNan = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());

bool IsOneOf(KineResult code, std::initializer_list<KineResult> codes)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

template <class Value, std::size_t n>
bool SameBits(const Value (&a)[n], const Value (&b)[n])
{
    return std::memcmp(a, b, sizeof a) == 0;
}

template <class Record>
bool SameBits(const Record& a, const Record& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Record>
Record Given(const Call& call, std::size_t argument)
{
    return call.arguments[argument].bytes.As<Record>();
}

template <class Record>
Record Result(const Call& call, const Outcome& outcome)
{
    return outcome.results[call.function->paramCount - 1].As<Record>();
}

bool AreFinite(const double (&values)[8])
{
    return std::all_of(std::begin(values), std::end(values), [](double v) { return std::isfinite(v); });
}

bool IsNullAmongRequired(const Call& call)
{
    for (std::size_t i = 0; i < call.function->paramCount; ++i) {
        if (call.arguments[i].isNull && !call.function->params[i].isOptional) return true;
    }
    return false;
}

// Codes that only one kind of arm, or one state of the library, can return.
bool FitsArm(KineResult code, const Cell& cell)
{
    if (IsOneOf(code, {KINE_ERR_IK_6, KINE_ERR_IK_7, KINE_ERR_IK_8, KINE_ERR_IK_9, KINE_ERR_IK_ACCURACY,
                       KINE_ERR_CALIB_4})) {
        return cell.armType == KINE_ARM_SIX_AXIS;
    }
    if (IsOneOf(code, {KINE_ERR_IK_REACH, KINE_ERR_IK_SINGULAR})) return cell.armType != KINE_ARM_SIX_AXIS;
    if (code == KINE_ERR_F2W_MODE) return !cell.wasInitialised;
    return true;
}

const char* JudgeResult(const Call& call, const Outcome& outcome, std::size_t i)
{
    const auto [kind, role, isOptional] = call.function->params[i];
    const unsigned traits = call.function->traits;
    if (outcome.code == KINE_OK) {
        if (outcome.isUntouched[i] && (traits & kMayStay) == 0) return "a result was not written";
    } else if (!outcome.isUntouched[i] && !(kind == Kind::kReport && (traits & kReportStands) != 0)) {
        return "a result was touched by a call that failed";
    }
    if (outcome.isUntouched[i]) return nullptr;
    for (std::size_t n = 0; n < InfoOf(kind).computedNumbers; ++n) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, outcome.results[i].data.data() + 8 * n, sizeof bits);
        if (std::isnan(std::bit_cast<double>(bits)) && bits != kTheNan)
            return "another NaN than the quiet one";
    }
    return nullptr;
}

// A step in degrees that the call has turned into radians.
bool IsInRadians(double degrees, double radians)
{
    const double expected = degrees * (3.14159265358979323846 / 180.0);
    if (!std::isfinite(expected)) return std::isnan(expected) ? std::isnan(radians) : radians == expected;
    // Absolute for what is next to nothing.
    return std::fabs(radians - expected) <= 1e-14 * std::fabs(expected) + 1e-310;
}

const char* JudgeSteps(const Call& call, const Outcome& outcome)
{
    constexpr std::size_t kDirectionsAt = 0, kStepsAt = 5;
    if (call.arguments[kStepsAt].isNull) return nullptr;
    if (call.arguments[kDirectionsAt].isNull) {
        return outcome.isUntouched[kStepsAt] ? nullptr : "the steps were converted without directions";
    }
    const auto before = call.arguments[kStepsAt].bytes.As<std::array<double, 3>>();
    const auto after = outcome.results[kStepsAt].As<std::array<double, 3>>();
    if (!SameBits(before[1], after[1])) return "the linear step was changed";
    if (!IsInRadians(before[0], after[0]) || !IsInRadians(before[2], after[2]))
        return "the steps are not in radians afterwards";
    return nullptr;
}

}  // namespace

const char* JudgeOutcome(const Call& call, const Outcome& outcome, const Cell& cell)
{
    const Export& function = *call.function;
    const KineResult code = outcome.code;
    if (std::find(function.codes.begin(), function.codes.end(), code) == function.codes.end())
        return "a code that KineDll.h does not list for the call";
    if (!FitsArm(code, cell)) return "a code of another arm, or of the time before the initialisation";
    // To a setup call the code of singular joints means an unknown arm.
    const bool isAnswer = code == KINE_OK || (code == KINE_SINGULAR && (function.traits & kWrites) == 0);
    if ((function.traits & kNeedsArm) != 0 && (cell.isReady ? code == KINE_ERR_NOT_INITIALISED : isAnswer))
        return "the code does not fit the state of the library";
    if (isAnswer && (function.traits & kTakesNull) == 0 && IsNullAmongRequired(call))
        return "a null pointer was accepted";
    for (std::size_t i = 0; i < function.paramCount; ++i) {
        if (function.params[i].role != Role::kOut || call.arguments[i].isNull) continue;
        if (const char* broken = JudgeResult(call, outcome, i)) return broken;
    }
    return function.rule != nullptr ? function.rule(call, outcome, cell) : nullptr;
}

void Follow(const Call& call, KineResult code, Cell& cell)
{
    const auto& in = call.arguments;
    if (call.function == &Find("Kine_InitKinematicParam")) {
        cell.isReady = code == KINE_OK;
        cell.wasInitialised = true;
        cell.armType = static_cast<std::uint32_t>(in[0].value.integer);
        cell.unitCount = cell.itemCount = 0;
    } else if (call.function == &Find("Kine_SetMechUnitGlobalCfg")) {
        cell.areUnitsEnabled = in[2].value.integer != 0;
        if (!cell.areUnitsEnabled || code != KINE_OK) return;
        cell.unitCount = in[0].value.integer;
        cell.itemCount = in[1].value.integer;
    }
}

const char* HandsJointAxesThrough(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (outcome.code != KINE_OK) return nullptr;
    const auto joints = Given<KineJoint>(call, 0);
    const auto pose = Result<KinePose>(call, outcome);
    return SameBits(pose.ExtAxis, joints.ExtAxis) ? nullptr
                                                  : "the external axes of the joints are not handed on";
}

const char* HandsJointAxesThroughPastTool(const Call& call, const Outcome& outcome, const Cell& cell)
{
    if (Given<KineTool>(call, 1).HeldByRobot == 1) return HasNoExtAxes(call, outcome, cell);
    return HandsJointAxesThrough(call, outcome, cell);
}

const char* HasNoExtAxes(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (outcome.code != KINE_OK) return nullptr;
    constexpr double kNone[6] = {};
    return SameBits(Result<KinePose>(call, outcome).ExtAxis, kNone) ? nullptr : "external axes other than 0";
}

const char* HandsPoseThrough(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (outcome.code != KINE_OK) return nullptr;
    KinePose given = Given<KinePose>(call, 0);
    const auto result = Result<KinePose>(call, outcome);
    given.Frame = result.Frame;
    return SameBits(given, result) ? nullptr
                                   : "configuration and external axes of the pose are not handed on";
}

const char* GivesJointsOfTarget(const Call& call, const Outcome& outcome, const Cell& cell)
{
    if (outcome.code != KINE_OK) return nullptr;
    const auto joints = Result<KineJoint>(call, outcome);
    if (!AreFinite(joints.Axis)) return "an axis that is not finite";
    for (std::size_t i = cell.armType == KINE_ARM_SIX_AXIS ? 6 : 4; i < 8; ++i) {
        if (joints.Axis[i] != 0.0) return "an axis that the arm does not have is not 0";
    }
    return SameBits(joints.ExtAxis, Given<KinePose>(call, 0).ExtAxis)
               ? nullptr
               : "the external axes of the target are not handed on";
}

const char* InchRule(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (const char* broken = JudgeSteps(call, outcome)) return broken;
    if (outcome.code != KINE_OK) return nullptr;
    const std::int32_t mode = call.arguments[1].value.integer;
    const bool isOnFlange =
        Given<KineTool>(call, 2).HeldByRobot != 0 || Given<KineWobj>(call, 3).HeldByRobot != 0;
    const auto target = Result<KineJoint>(call, outcome);
    const bool isSolved = mode == 2 || mode == 4 || mode == 5 || (mode == 3 && isOnFlange);
    if (isSolved && !AreFinite(target.Axis)) return "an axis that is not finite";
    if (mode != 1 && !SameBits(target.ExtAxis, Given<KineJoint>(call, 6).ExtAxis))
        return "the external axes of the current joints are not handed on";
    return nullptr;
}

const char* AlignRule(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (outcome.code != KINE_OK) return nullptr;
    const auto target = Result<KineJoint>(call, outcome);
    if (!AreFinite(target.Axis)) return "an axis that is not finite";
    return SameBits(target.ExtAxis, Given<KineJoint>(call, 1).ExtAxis)
               ? nullptr
               : "the external axes of the current joints are not handed on";
}

const char* SwapRule(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    constexpr std::size_t kToolAt = 0, kWobjAt = 1;
    if (call.arguments[kToolAt].isNull || call.arguments[kWobjAt].isNull) {
        const bool isKept = (call.arguments[kToolAt].isNull || outcome.isUntouched[kToolAt]) &&
                            (call.arguments[kWobjAt].isNull || outcome.isUntouched[kWobjAt]);
        return isKept ? nullptr : "a record was changed by a call that was refused";
    }
    const auto oldTool = Given<KineTool>(call, kToolAt);
    const auto oldWobj = Given<KineWobj>(call, kWobjAt);
    KineTool tool = oldTool;
    KineWobj wobj = oldWobj;
    if (outcome.code == KINE_OK) {
        tool.HeldByRobot = 1;
        tool.TFrame = outcome.results[kToolAt].As<KineTool>().TFrame;
        wobj.HeldByRobot = 0;
        wobj.UFrame = oldTool.TFrame;
        wobj.OFrame = {};
    } else if (outcome.code == KINE_ERR_WOBJ && oldWobj.HeldByRobot == 0 && oldTool.HeldByRobot == 0 &&
               !outcome.isUntouched[kToolAt]) {
        tool.HeldByRobot = 1;
    }
    const bool isKept = SameBits(tool, outcome.results[kToolAt].As<KineTool>()) &&
                        SameBits(wobj, outcome.results[kWobjAt].As<KineWobj>());
    return isKept ? nullptr : "tool and work object are not what the swap leaves";
}

const char* TaughtPositionRule(const Call& call, const Outcome& outcome, const Cell& /*cell*/)
{
    if (outcome.code != KINE_OK) return nullptr;
    const KineFrame taught = Given<KinePose>(call, 0).Frame;
    const auto frame = Result<KineFrame>(call, outcome);
    const auto isTaken = [](double from, double to) {
        return std::isnan(from) ? std::isnan(to) : to == from;
    };
    const bool isRight = isTaken(taught.X, frame.X) && isTaken(taught.Y, frame.Y) &&
                         isTaken(taught.Z, frame.Z) && frame.A == 0.0 && frame.B == 0.0 && frame.C == 0.0;
    return isRight ? nullptr : "the frame is not the taught position";
}

}  // namespace kine::fuzz

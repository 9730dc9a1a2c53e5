// The promises about the printed lines, and what the setup calls must answer: their codes and lines follow
// from the arguments and the counts alone.
#include <string>

#include "rules.h"

namespace kine::fuzz {

namespace {

constexpr std::int32_t kMaxUnits = 3;
constexpr std::int32_t kMaxItems = 6;

std::string WobjLine(const Cell& cell)
{
    return "IsLegalWobj,!pWobj->UFFix:" + std::to_string(cell.unitCount) + ";\n";
}

std::string ForwardLine(int step, KineResult code)
{
    return "FK Error " + std::to_string(step) + ":" + std::to_string(code) + "\n";
}

std::string InverseLine(int step, KineResult code)
{
    return "IK error " + std::to_string(step) + ":" + std::to_string(code) + "\n";
}

std::string NumbersLine(const char* start, std::int32_t first, std::int32_t second)
{
    return start + std::to_string(first) + "," + std::to_string(second) + "\n";
}

// The step of the forward chain that ends in a code; 0 for none.
int ForwardStep(KineResult code)
{
    switch (code) {
        case KINE_ERR_NOT_INITIALISED: return 1;
        case KINE_ERR_HOLD_CONFLICT: return 2;
        case KINE_ERR_F2W_UNIT_KIND: return 4;
        case KINE_ERR_W2F_UNIT_KIND:
        case KINE_ERR_AXIS_ORIGIN: return 6;
        default: return 0;
    }
}

// The step of the inverse chain that ends in a code; -1 for none.
int InverseStep(KineResult code)
{
    switch (code) {
        case KINE_ERR_HOLD_CONFLICT: return 0;
        case KINE_ERR_F2W_UNIT_KIND: return 2;
        case KINE_ERR_W2F_UNIT_KIND:
        case KINE_ERR_AXIS_ORIGIN: return 3;
        case KINE_ERR_CONFIG:
        case KINE_ERR_IK_6:
        case KINE_ERR_IK_7:
        case KINE_ERR_IK_8:
        case KINE_ERR_IK_9:
        case KINE_ERR_IK_ACCURACY:
        case KINE_ERR_IK_REACH:
        case KINE_ERR_IK_SINGULAR:
        case KINE_ERR_SINGULAR: return 5;
        default: return -1;
    }
}

// Nothing, or the line of a refused work object.
bool IsWobjText(const Outcome& outcome, const Cell& cell)
{
    const std::string_view text = outcome.Text();
    return text.empty() || (outcome.code == KINE_ERR_WOBJ && WobjLine(cell) == text);
}

bool IsForwardText(const Outcome& outcome, const Cell& cell)
{
    const int step = ForwardStep(outcome.code);
    return step == 0 ? IsWobjText(outcome, cell) : ForwardLine(step, outcome.code) == outcome.Text();
}

bool IsInverseText(const Outcome& outcome, const Cell& cell)
{
    const int step = InverseStep(outcome.code);
    if (step < 0) return IsWobjText(outcome, cell);
    if (InverseLine(step, outcome.code) == outcome.Text()) return true;
    // A turn number out of reach is found before the chain starts.
    return outcome.code == KINE_ERR_CONFIG && outcome.Text().empty();
}

// Tool and work-object mode go through both chains, the others past them.
bool IsInchText(const Call& call, const Outcome& outcome, const Cell& cell)
{
    const std::int32_t mode = call.arguments[1].value.integer;
    if ((mode != 3 && mode != 4) || outcome.code == KINE_ERR_NOT_INITIALISED)
        return IsWobjText(outcome, cell);
    return IsInverseText(outcome, cell) || (ForwardStep(outcome.code) != 0 && IsForwardText(outcome, cell));
}

bool IsAlignText(const Call& call, const Outcome& outcome, const Cell& cell)
{
    const std::int32_t mode = call.arguments[0].value.integer;
    if ((mode != 4 && mode != -1) || outcome.code == KINE_ERR_NOT_INITIALISED)
        return IsWobjText(outcome, cell);
    return IsForwardText(outcome, cell);
}

struct Answer
{
    KineResult code;
    std::string text;
};

Answer AnswerOfCounts(const Call& call)
{
    const auto units = static_cast<std::uint32_t>(call.arguments[0].value.integer);
    const auto items = static_cast<std::uint32_t>(call.arguments[1].value.integer);
    if (call.arguments[2].value.integer == 0) return {KINE_OK, {}};
    if (units > kMaxUnits) {
        return {KINE_ERR_MECH_UNIT_COUNT, NumbersLine("IsLegalMechUnitAndExtAxisNum:mechUnitCount:",
                                                      static_cast<std::int32_t>(units), kMaxUnits)};
    }
    if (items > kMaxItems) {
        return {KINE_ERR_MECH_UNIT_COUNT, NumbersLine("IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:",
                                                      static_cast<std::int32_t>(items), kMaxItems)};
    }
    return {KINE_OK, {}};
}

Answer AnswerOfUnit(const Call& call, const Cell& cell)
{
    const std::int32_t index = call.arguments[0].value.integer;
    if (!cell.areUnitsEnabled) return {KINE_OK, {}};
    if (index < 0 || index >= kMaxUnits) {
        return {KINE_ERR_MECH_UNIT, NumbersLine("IsLegalMechUnit:index:", index, cell.unitCount)};
    }
    if (call.arguments[1].isNull) return {KINE_ERR_MECH_UNIT, {}};
    const auto unit = call.arguments[1].bytes.As<KineMechUnit>();
    if (unit.Active == 0 || unit.AxisCount <= cell.itemCount) return {KINE_OK, {}};
    return {KINE_ERR_MECH_UNIT, NumbersLine("IsLegalMechUnit\xA3\xBA"
                                            "pArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:",
                                            unit.AxisCount, cell.itemCount)};
}

Answer AnswerOfExtAxis(const Call& call, const Cell& cell)
{
    const std::int32_t index = call.arguments[0].value.integer;
    if (!cell.areUnitsEnabled) return {KINE_OK, {}};
    if (index < 0 || index >= kMaxItems) {
        return {KINE_ERR_EXT_AXIS_PARAM, NumbersLine("IsLegalExtAxisParam:index:", index, cell.itemCount)};
    }
    return {call.arguments[1].isNull ? KINE_ERR_EXT_AXIS_PARAM : KINE_OK, {}};
}

bool IsKnownArm(std::int32_t armType) { return armType == 4 || armType == 6 || armType == 4110; }

Answer AnswerOfSetup(const Call& call, const Outcome& outcome, const Cell& cell)
{
    const std::string_view name = call.function->name;
    if (name == "Kine_SetMechUnitGlobalCfg") return AnswerOfCounts(call);
    if (name == "Kine_SetMechUnitParam") return AnswerOfUnit(call, cell);
    if (name == "Kine_SetExtAxisParam") return AnswerOfExtAxis(call, cell);
    if (name == "Kine_SetAxisLimit") {
        if (call.arguments[0].isNull || call.arguments[1].isNull) return {KINE_ERR_JOINT, {}};
        return {cell.isReady ? KINE_OK : KINE_ERR_NOT_INITIALISED, {}};
    }
    if (!IsKnownArm(call.arguments[0].value.integer)) return {KINE_ERR_UNKNOWN_ARM_TYPE, {}};
    if (call.arguments[1].isNull) return {KINE_ERR_MODEL_PARAM, {}};
    // The bounds of the lengths decide between two codes.
    return {outcome.code == KINE_OK ? KINE_OK : KINE_ERR_MODEL_PARAM, {}};
}

bool IsRightText(const Call& call, const Outcome& outcome, const Cell& cell)
{
    switch (call.function->lines) {
        case Lines::kSetup: {
            const Answer answer = AnswerOfSetup(call, outcome, cell);
            return outcome.code == answer.code && answer.text == outcome.Text();
        }
        case Lines::kWobj: return IsWobjText(outcome, cell);
        case Lines::kForward: return IsForwardText(outcome, cell);
        case Lines::kInverse: return IsInverseText(outcome, cell);
        case Lines::kInch: return IsInchText(call, outcome, cell);
        case Lines::kAlign: return IsAlignText(call, outcome, cell);
        case Lines::kAlways: return WobjLine(cell) == outcome.Text();
        case Lines::kNone:
        default: return outcome.Text().empty();
    }
}

}  // namespace

const char* JudgeText(const Call& call, const Outcome& outcome, const Cell& cell)
{
    return IsRightText(call, outcome, cell) ? nullptr : "the printed text does not fit the call and its code";
}

}  // namespace kine::fuzz

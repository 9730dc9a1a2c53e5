// The table of the exports.
#include "exports.h"

#include <cstdlib>

#include "rules.h"

namespace kine::fuzz {

namespace {

using Code = KineResult;

// --- Codes, as listed in KineDll.h ----------------------------------------------------------------------

constexpr Code kInitCodes[] = {KINE_OK, KINE_ERR_UNKNOWN_ARM_TYPE, KINE_ERR_MODEL_PARAM};
constexpr Code kLimitCodes[] = {KINE_OK, KINE_ERR_JOINT, KINE_ERR_NOT_INITIALISED};
constexpr Code kCountCodes[] = {KINE_OK, KINE_ERR_MECH_UNIT_COUNT};
constexpr Code kUnitCodes[] = {KINE_OK, KINE_ERR_MECH_UNIT};
constexpr Code kExtAxisCodes[] = {KINE_OK, KINE_ERR_EXT_AXIS_PARAM};

constexpr Code kArmTypeCodes[] = {KINE_OK, KINE_ERR_JOINT, KINE_ERR_CONFIG, KINE_ERR_NOT_INITIALISED};
constexpr Code kValidCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_NOT_INITIALISED, KINE_ERR_CONFIG};
constexpr Code kSingularityCodes[] = {KINE_OK, KINE_SINGULAR, KINE_ERR_JOINT, KINE_ERR_NOT_INITIALISED};

constexpr Code kForwardCodes[] = {KINE_OK,
                                  KINE_ERR_JOINT,
                                  KINE_ERR_TOOL,
                                  KINE_ERR_WOBJ,
                                  KINE_ERR_LOAD,
                                  KINE_ERR_HOLD,
                                  KINE_ERR_POSE,
                                  KINE_ERR_NOT_INITIALISED,
                                  KINE_ERR_HOLD_CONFLICT,
                                  KINE_ERR_F2W_UNIT_KIND,
                                  KINE_ERR_W2F_UNIT_KIND,
                                  KINE_ERR_AXIS_ORIGIN};
constexpr Code kVisionCodes[] = {KINE_OK, KINE_ERR_JOINT, KINE_ERR_POSE, KINE_ERR_NOT_INITIALISED};

constexpr Code kInverseCodes[] = {KINE_OK,
                                  KINE_ERR_TOOL,
                                  KINE_ERR_WOBJ,
                                  KINE_ERR_LOAD,
                                  KINE_ERR_POSE,
                                  KINE_ERR_HOLD,
                                  KINE_ERR_JOINT,
                                  KINE_ERR_NOT_INITIALISED,
                                  KINE_ERR_CONFIG,
                                  KINE_ERR_HOLD_CONFLICT,
                                  KINE_ERR_F2W_UNIT_KIND,
                                  KINE_ERR_W2F_UNIT_KIND,
                                  KINE_ERR_AXIS_ORIGIN,
                                  KINE_ERR_IK_6,
                                  KINE_ERR_IK_7,
                                  KINE_ERR_IK_8,
                                  KINE_ERR_SINGULAR,
                                  KINE_ERR_IK_9,
                                  KINE_ERR_IK_ACCURACY,
                                  KINE_ERR_IK_REACH,
                                  KINE_ERR_IK_SINGULAR};

constexpr Code kConversionCodes[] = {KINE_OK, KINE_ERR_WOBJ, KINE_ERR_POSE};
constexpr Code kCrdPosCodes[] = {KINE_OK,
                                 KINE_ERR_POSE,
                                 KINE_ERR_TOOL,
                                 KINE_ERR_WOBJ,
                                 KINE_ERR_LOAD,
                                 KINE_ERR_CRD_WOBJ,
                                 KINE_ERR_F2W_MODE,
                                 KINE_ERR_F2W_UNIT_KIND,
                                 KINE_ERR_HOLD_CONFLICT,
                                 KINE_ERR_W2F_UNIT_KIND,
                                 KINE_ERR_AXIS_ORIGIN};
constexpr Code kOffsetCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_OFFSET_FRAME};
constexpr Code kPosDifCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_DIRECTION};
constexpr Code kNoError[] = {KINE_OK};
constexpr Code kSafeAreaCodes[] = {KINE_ERR_WOBJ};

constexpr Code kInchCodes[] = {KINE_OK,
                               KINE_ERR_DIRECTION,
                               KINE_ERR_TOOL,
                               KINE_ERR_WOBJ,
                               KINE_ERR_LOAD,
                               KINE_ERR_JOINT,
                               KINE_ERR_NOT_INITIALISED,
                               KINE_ERR_HOLD_CONFLICT,
                               KINE_ERR_F2W_UNIT_KIND,
                               KINE_ERR_W2F_UNIT_KIND,
                               KINE_ERR_AXIS_ORIGIN,
                               KINE_ERR_CONFIG,
                               KINE_ERR_IK_6,
                               KINE_ERR_IK_7,
                               KINE_ERR_IK_8,
                               KINE_ERR_SINGULAR,
                               KINE_ERR_IK_9,
                               KINE_ERR_IK_ACCURACY,
                               KINE_ERR_IK_REACH,
                               KINE_ERR_IK_SINGULAR,
                               KINE_ERR_INCH_SINGULAR};
constexpr Code kAlignCodes[] = {KINE_OK,
                                KINE_ERR_JOINT,
                                KINE_ERR_WOBJ,
                                KINE_ERR_TOOL,
                                KINE_ERR_LOAD,
                                KINE_ERR_NOT_INITIALISED,
                                KINE_ERR_DIRECTION,
                                KINE_ERR_F2W_UNIT_KIND,
                                KINE_ERR_HOLD_CONFLICT,
                                KINE_ERR_W2F_UNIT_KIND,
                                KINE_ERR_AXIS_ORIGIN,
                                KINE_ERR_ALIGN_NO_SOLUTION,
                                KINE_ERR_ALIGN_TURN};
constexpr Code kSwapCodes[] = {KINE_OK, KINE_ERR_WOBJ, KINE_ERR_TOOL};

constexpr Code kPoseOnlyCodes[] = {KINE_OK, KINE_ERR_POSE};
constexpr Code kFrameZxCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_ZERO_VECTOR, KINE_ERR_CALIB_COLLINEAR};
constexpr Code kTip3PCodes[] = {KINE_OK,
                                KINE_ERR_POSE,
                                KINE_ERR_NOT_INITIALISED,
                                KINE_ERR_CALIB_POINTS_CLOSE,
                                KINE_ERR_CALIB_COLLINEAR,
                                KINE_ERR_CALIB_4,
                                KINE_ERR_CALIB_SINGULAR};
constexpr Code kTip3PFrameZxCodes[] = {KINE_OK,
                                       KINE_ERR_POSE,
                                       KINE_ERR_NOT_INITIALISED,
                                       KINE_ERR_CALIB_POINTS_CLOSE,
                                       KINE_ERR_CALIB_COLLINEAR,
                                       KINE_ERR_CALIB_4,
                                       KINE_ERR_CALIB_SINGULAR,
                                       KINE_ERR_ZERO_VECTOR};
constexpr Code kTip5PCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_NOT_INITIALISED, KINE_ERR_CALIB_SINGULAR};
constexpr Code kTip2PCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_NOT_INITIALISED, KINE_ERR_CALIB_POINTS_CLOSE,
                                KINE_ERR_CALIB_SINGULAR};
constexpr Code kUser2PCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE};
constexpr Code kFrame3PCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE,
                                  KINE_ERR_CALIB_COLLINEAR};
constexpr Code kCircleCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE,
                                 KINE_ERR_CALIB_COLLINEAR, KINE_ERR_CALIB_3};
constexpr Code kPositionerJ1Codes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_CALIB_POINTS_CLOSE,
                                       KINE_ERR_CALIB_COLLINEAR, KINE_ERR_TOOL};
constexpr Code kPositionerJnCodes[] = {
    KINE_OK,      KINE_ERR_POSE, KINE_ERR_CALIB_INPUT, KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR,
    KINE_ERR_TOOL};
constexpr Code kRobotBaseCodes[] = {KINE_OK, KINE_ERR_POSE, KINE_ERR_TOOL, KINE_ERR_CALIB_POINTS_CLOSE,
                                    KINE_ERR_CALIB_INPUT};

// --- Rows -----------------------------------------------------------------------------------------------

template <auto function>
consteval Export Row(std::string_view name, unsigned families, std::span<const Code> codes, Lines lines,
                     unsigned traits = 0, Rule rule = nullptr, Kind resultDoubles = Kind::kTilt)
{
    Export row;
    row.name = name;
    row.families = families;
    row.codes = codes;
    row.lines = lines;
    row.traits = traits;
    row.rule = rule;
    return Callable<function>::Row(row, resultDoubles);
}

template <auto function>
consteval Export Setup(std::string_view name, std::span<const Code> codes, unsigned traits = 0)
{
    return Row<function>(name, kEveryFamily, codes, Lines::kSetup, kWrites | traits);
}

template <auto function>
consteval Export Calibration(std::string_view name, std::span<const Code> codes, unsigned traits = 0,
                             Rule rule = nullptr)
{
    return Row<function>(name, kCalibration, codes, Lines::kNone, traits, rule);
}

constexpr auto kExports = std::to_array<Export>({
    // Setup, which every family draws.
    Setup<Kine_InitKinematicParam>("Kine_InitKinematicParam", kInitCodes),
    Setup<Kine_SetAxisLimit>("Kine_SetAxisLimit", kLimitCodes, kNeedsArm),
    Setup<Kine_SetMechUnitGlobalCfg>("Kine_SetMechUnitGlobalCfg", kCountCodes),
    Setup<Kine_SetMechUnitParam>("Kine_SetMechUnitParam", kUnitCodes, kTakesNull),
    Setup<Kine_SetExtAxisParam>("Kine_SetExtAxisParam", kExtAxisCodes, kTakesNull),

    Row<Kine_GetArmType>("Kine_GetArmType", kSetupQueries, kArmTypeCodes, Lines::kNone, kNeedsArm),
    Row<Kine_IsArmTypeValid>("Kine_IsArmTypeValid", kSetupQueries, kValidCodes, Lines::kNone, kNeedsArm),
    Row<Kine_IsSingularity>("Kine_IsSingularity", kSetupQueries, kSingularityCodes, Lines::kNone, kNeedsArm),

    // Some of them give the poses that other families start from.
    Row<Kine_JointToBasePos>("Kine_JointToBasePos", kForward | kCalibration, kForwardCodes, Lines::kForward,
                             kNeedsArm, HandsJointAxesThrough),
    Row<Kine_JointToFlangePos>("Kine_JointToFlangePos", kForward, kForwardCodes, Lines::kForward, kNeedsArm,
                               HandsJointAxesThroughPastTool),
    Row<Kine_JointToWorldPos>("Kine_JointToWorldPos", kForward | kConversions, kForwardCodes, Lines::kForward,
                              kNeedsArm, HandsJointAxesThrough),
    Row<Kine_JointToWobjPos>("Kine_JointToWobjPos", kForward | kInverse, kForwardCodes, Lines::kForward,
                             kNeedsArm, HandsJointAxesThrough),
    Row<Kine_FKineVision>("Kine_FKineVision", kForward, kVisionCodes, Lines::kNone, kNeedsArm, HasNoExtAxes),

    Row<Kine_WobjPosToJoint>("Kine_WobjPosToJoint", kInverse | kMotion, kInverseCodes, Lines::kInverse,
                             kNeedsArm, GivesJointsOfTarget),

    Row<Kine_WorldPosToFixWobjPos>("Kine_WorldPosToFixWobjPos", kConversions, kConversionCodes, Lines::kWobj,
                                   0, HandsPoseThrough),
    Row<Kine_WorldPosToGripWobjPos>("Kine_WorldPosToGripWobjPos", kConversions, kConversionCodes,
                                    Lines::kWobj, 0, HandsPoseThrough),
    Row<Kine_GripWobjPosToWorldPos>("Kine_GripWobjPosToWorldPos", kConversions, kConversionCodes,
                                    Lines::kWobj, 0, HandsPoseThrough),
    Row<Kine_CrdPosToWobjPos>("Kine_CrdPosToWobjPos", kConversions, kCrdPosCodes, Lines::kWobj, 0,
                              HandsPoseThrough),
    Row<Kine_ToolCoordOffset>("Kine_ToolCoordOffset", kConversions, kOffsetCodes, Lines::kNone, 0,
                              HandsPoseThrough),
    Row<Kine_WobjCoordOffset>("Kine_WobjCoordOffset", kConversions, kOffsetCodes, Lines::kNone, 0,
                              HandsPoseThrough),
    Row<Kine_CalcPosDif>("Kine_CalcPosDif", kConversions, kPosDifCodes, Lines::kNone),
    Row<Kine_CalcZVec>("Kine_CalcZVec", kConversions, kNoError, Lines::kNone, kTakesNull | kMayStay, nullptr,
                       Kind::kVector),
    Row<SafeArea_Check>("SafeArea_Check", kConversions, kSafeAreaCodes, Lines::kAlways, kTakesNull),

    Row<Kine_InchMovePosCalc>("Kine_InchMovePosCalc", kMotion, kInchCodes, Lines::kInch, kNeedsArm, InchRule,
                              Kind::kSteps),
    Row<Kine_CalcAlignPos>("Kine_CalcAlignPos", kMotion, kAlignCodes, Lines::kAlign, kNeedsArm, AlignRule),
    Row<Kine_CalcAlignCoordProc>("Kine_CalcAlignCoordProc", kMotion, kSwapCodes, Lines::kWobj, 0, SwapRule),

    Calibration<Kine_CalcExtToolPrm_1P>("Kine_CalcExtToolPrm_1P", kPoseOnlyCodes, 0, TaughtPositionRule),
    Calibration<Kine_CalcExtToolPrm_1PZX>("Kine_CalcExtToolPrm_1PZX", kFrameZxCodes),
    Calibration<Kine_CalcExtToolPrm_3P>("Kine_CalcExtToolPrm_3P", kTip3PCodes),
    Calibration<Kine_CalcExtToolPrm_3PZX>("Kine_CalcExtToolPrm_3PZX", kTip3PFrameZxCodes, kReportStands),
    Calibration<Kine_CalcGripToolPrm_3P>("Kine_CalcGripToolPrm_3P", kTip3PCodes),
    Calibration<Kine_CalcGripToolPrm_3PZX>("Kine_CalcGripToolPrm_3PZX", kTip3PCodes, kReportStands),
    Calibration<Kine_CalcGripToolPrm_5P>("Kine_CalcGripToolPrm_5P", kTip5PCodes),
    Calibration<Kine_CalcGripToolPrm_Scara2P>("Kine_CalcGripToolPrm_Scara2P", kTip2PCodes),
    Calibration<Kine_CalcExtWobj_UserPrm_2P>("Kine_CalcExtWobj_UserPrm_2P", kUser2PCodes),
    Calibration<Kine_CalcExtWobj_UserPrm_3P>("Kine_CalcExtWobj_UserPrm_3P", kFrame3PCodes),
    Calibration<Kine_CalcExtWobj_UserPrm_Cirle3P>("Kine_CalcExtWobj_UserPrm_Cirle3P", kCircleCodes),
    Calibration<Kine_CalcExtWobj_ObjPrm_3P>("Kine_CalcExtWobj_ObjPrm_3P", kFrame3PCodes),
    Calibration<Kine_CalcGripWobj_UserPrm_3P>("Kine_CalcGripWobj_UserPrm_3P", kFrame3PCodes),
    Calibration<Kine_CalcGripWobj_ObjPrm_3P>("Kine_CalcGripWobj_ObjPrm_3P", kFrame3PCodes),
    Calibration<Kine_CalcUnFixWobj_ObjPrm_3P>("Kine_CalcUnFixWobj_ObjPrm_3P", kFrame3PCodes),
    Calibration<Kine_CalcPositionerJ1Prm_3P>("Kine_CalcPositionerJ1Prm_3P", kPositionerJ1Codes),
    Calibration<Kine_CalcPositionerJnPrm_3P>("Kine_CalcPositionerJnPrm_3P", kPositionerJnCodes),
    Calibration<Kine_CalcRobotBasePrm_3P>("Kine_CalcRobotBasePrm_3P", kRobotBaseCodes),
});
static_assert(kExports.size() == 44);

}  // namespace

std::span<const Export> Exports() { return kExports; }

const Export& Find(std::string_view name)
{
    for (const Export& row : kExports) {
        if (row.name == name) return row;
    }
    std::abort();
}

}  // namespace kine::fuzz

/**
 * @file KineDll.hpp
 * KineDll for C++17 and later: the calls of KineDll.h with results that carry their code, functions that fill
 * records, and names for modes. A header alone: nothing to build, nothing to link besides the library itself.
 *
 * Units, frames, ranges, the order of checks and the printed lines are those of KineDll.h; each call names
 * its own text there. So are the rules of threads: one configuration per process, set up while no other call
 * runs.
 *
 * Nothing here allocates, throws, locks or keeps anything. All types are trivially copyable. Every call is
 * one inline function around one call of the library: optimised, it takes about the instructions of the C
 * program that sets its result record to zero first.
 *
 * The namespace is not the one of the library's own sources, so that a program may hold both.
 */
#ifndef KINEDLL_HPP
#define KINEDLL_HPP

#if !(defined(__cplusplus) && __cplusplus >= 201703L) && !(defined(_MSVC_LANG) && _MSVC_LANG >= 201703L)
#error "KineDll.hpp needs C++17"
#endif

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "KineDll.h"

/** What KineDll.hpp adds to KineDll.h. */
namespace kinedll {

// -----------------------------------------------------------------------------------------------------------
// Result codes
// -----------------------------------------------------------------------------------------------------------

/** What there is to say about a result code. */
struct CodeText
{
    KineResult code;    /**< its number */
    const char* name;   /**< as in KineDll.h */
    const char* cause;  /**< what leads to it; several causes are parted by semicolons */
    const char* remedy; /**< what to do */
};

/** Every result code. */
// clang-format off
inline constexpr CodeText kCodeTexts[] = {
// codes: begin; written by interface/generate.py
    {0x0000u, "KINE_OK",
     "success",
     "Nothing to do."},
    {0x6000u, "KINE_ERR_MODEL_PARAM",
     "the kinematic parameters are null; a length of the arm is too small",
     "Give lengths in mm: a2, d4, the link lengths and the lead at least 1e-5; a1, a3 and d6 not negative."},
    {0x6001u, "KINE_ERR_NOT_INITIALISED",
     "Kine_InitKinematicParam was not called, or its last call failed; a tool calibration that the "
     "configured arm type does not have",
     "Initialise again; axis limits, mechanical units and external axes must then be sent again too. Take "
     "five poses for a six-axis arm only, two for a four-axis arm only."},
    {0x6002u, "KINE_ERR_MECH_UNIT",
     "the index of the mechanical unit is not 0 to 2; its record is null; the unit has more axes than "
     "there are external axes",
     "See the printed line, and tell the number of external axes with Kine_SetMechUnitGlobalCfg first."},
    {0x6003u, "KINE_ERR_EXT_AXIS_PARAM",
     "the index of the external axis is not 0 to 5; its record is null",
     "See the printed line."},
    {0x6004u, "KINE_ERR_MECH_UNIT_COUNT",
     "more than 3 mechanical units; more than 6 external axes",
     "Give counts within these bounds; the enable flag has been stored all the same."},
    {0x6010u, "KINE_ERR_POSE",
     "a pose is null, or one of its angles is beyond 180 degrees in size; a calibration was given a null "
     "frame; a positioner calibration met a linear axis, or the calibration of a track a rotary one; the "
     "result pose or frame is null",
     "Bring the angles into -180 to 180. The external axis of a linear axis has Word[3] = 1, that of a "
     "rotary axis any other value."},
    {0x6011u, "KINE_ERR_TOOL",
     "the tool is null, or an angle of it is beyond 180 degrees in size; mass or inertia of the tool is "
     "negative; a calibration names a mechanical unit or an axis that the cell does not have; "
     "Kine_CalcAlignCoordProc was given a held tool",
     "Correct the record of the tool; for a calibration check the unit index, the axis count and the "
     "external axes that drive the unit."},
    {0x6012u, "KINE_ERR_WOBJ",
     "the work object is null, or an angle of UFrame or OFrame is beyond 180 degrees in size; with UFFix 0"
     " the index of the mechanical unit is 0, or not below the number of units; the work object is held "
     "where the call needs one that is not, or the other way round; the user frame is not fixed where the "
     "call needs a fixed one; every call of SafeArea_Check",
     "Correct the record. A printed line shows the number of mechanical units. UFrame is checked even "
     "where it is ignored."},
    {0x6013u, "KINE_ERR_LOAD",
     "the load is null; an Aom angle is beyond 180 degrees in size; mass or inertia is negative",
     "Give a load of zeros for none."},
    {0x6014u, "KINE_ERR_JOINT",
     "joints or axis limits are null; the result joints are null",
     "Pass a record."},
    {0x6016u, "KINE_ERR_HOLD",
     "tool and work object carry the same HeldByRobot byte",
     "Exactly one of the two is held: 1 and 0 for a tool on the robot, 0 and 1 for a stationary tool."},
    {0x6017u, "KINE_ERR_OFFSET_FRAME",
     "the offset frame is null; one of its angles is beyond 180 degrees in size",
     "Bring the angles into -180 to 180."},
    {0x6018u, "KINE_ERR_DIRECTION",
     "the frame of Kine_CalcPosDif is neither 1 nor -1; the mode of Kine_CalcAlignPos is none of 2, 5, 4 "
     "and -1, or 4 or -1 with nothing on the flange; directions or steps of a jog are null",
     "Use one of the documented modes; the work-object modes need a held tool or work object."},
    {0x6030u, "KINE_ERR_W2F_MODE",
     "a frame is neither fixed nor on a mechanical unit, on the way from the world; no record can cause it",
     "A guard inside the library. Report it with the records."},
    {0x6031u, "KINE_ERR_W2F_UNIT_KIND",
     "a mechanical unit on the way from the world is not usable: its index, kind, axis count or driving "
     "external axes",
     "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0"
     " to 5."},
    {0x6032u, "KINE_ERR_F2W_MODE",
     "Kine_CrdPosToWobjPos in mode -2 before the first initialisation",
     "Call Kine_InitKinematicParam first."},
    {0x6033u, "KINE_ERR_F2W_UNIT_KIND",
     "a mechanical unit on the way to the world is not usable: its index, kind, axis count or driving "
     "external axes",
     "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0"
     " to 5."},
    {0x6034u, "KINE_ERR_AXIS_ORIGIN",
     "on the way from the world the frame of a rotary axis lies exactly at the origin, that is, it was "
     "never set up",
     "Calibrate the axis and give its frame; an axis that truly stands at the origin is moved by a "
     "micrometre."},
    {0x6050u, "KINE_ERR_HOLD_CONFLICT",
     "the HeldByRobot bytes differ, but both are non-zero; Kine_CrdPosToWobjPos in mode -2 with both or "
     "neither held",
     "Use the bytes 0 and 1, one of each."},
    {0x6051u, "KINE_ERR_CHAIN_1",
     "nothing on the flange after the hold check; no record can cause it",
     "A guard inside the library. Report it with the records."},
    {0x6052u, "KINE_ERR_CHAIN_2",
     "nothing off the flange after the hold check; no record can cause it",
     "A guard inside the library. Report it with the records."},
    {0x6053u, "KINE_ERR_CHAIN_3",
     "hold flags that contradict each other after the hold check; no record can cause it",
     "A guard inside the library. Report it with the records."},
    {0x6054u, "KINE_ERR_CHAIN_4",
     "hold flags that contradict each other after the hold check of the inverse; no record can cause it",
     "A guard inside the library. Report it with the records."},
    {0x6060u, "KINE_ERR_CALIB_SINGULAR",
     "five poses of a six-axis arm, or the poses of a four-axis arm, with orientations too much alike; "
     "five poses that differ about one axis only",
     "Turn the tool more between the poses, a six-axis arm about two axes."},
    {0x6061u, "KINE_ERR_CALIB_INPUT",
     "the axis number is below 1; the track moved less than 0.1 mm; the taught positions differ in height "
     "only",
     "Count axes from 1; move the track further between the touches."},
    {0x6063u, "KINE_ERR_CALIB_3",
     "the circle through the three points is too small",
     "Take points further apart."},
    {0x6064u, "KINE_ERR_CALIB_4",
     "three poses of a six-axis arm with orientations too much alike; three poses of a six-axis arm that "
     "differ about one axis only",
     "Turn about two axes, by 24 degrees or more."},
    {0x6065u, "KINE_ERR_CALIB_POINTS_CLOSE",
     "taught positions too close together; the tip travels too little; the X axis of a frame from two "
     "points is vertical; Kine_CalcUnFixWobj_ObjPrm_3P with a mechanical unit that cannot be used",
     "Take positions further apart; check the unit."},
    {0x6066u, "KINE_ERR_CALIB_COLLINEAR",
     "the taught positions lie on one line; two taught directions are parallel",
     "Take the third point off the line; for a tool take the touches around the point, not in one sweep."},
    {0x6070u, "KINE_ERR_ZERO_VECTOR",
     "the Z or X point of a stationary tool is less than 0.01 mm from its origin",
     "Take the point further away."},
    {0x6071u, "KINE_ERR_CRD_WOBJ",
     "Kine_CrdPosToWobjPos in mode -1 with a held tool",
     "Mode -1 is for a stationary tool; use mode -2 or Kine_WorldPosToFixWobjPos."},
    {0x6080u, "KINE_ERR_ALIGN_NO_SOLUTION",
     "the aligned pose is out of reach in the configuration of the current joints",
     "Move the arm away from its limits or its singular poses and align again."},
    {0x6081u, "KINE_ERR_ALIGN_TURN",
     "another Cfg4 of 0 to 7 leads nearer to the current joints; a four-axis arm with axis 4 negative or "
     "beyond 90 degrees",
     "Jog nearer to the aligned orientation; a four-axis arm has nothing to align but its heading."},
    {0x6090u, "KINE_ERR_CONFIG",
     "a turn number more than 2 beyond the axis limits, or beyond 1000000 in size; a posture that does not"
     " exist; the configuration record is null",
     "Take the configuration from Kine_GetArmType or from a forward call with nearby joints."},
    {0x6091u, "KINE_ERR_IK_1",
     "gravity deflects a joint by 2 degrees or more; stays inside the six-axis model",
     "Never returned by a call; the arm counts as rigid. Check weights and stiffness."},
    {0x6092u, "KINE_ERR_INCH_SINGULAR",
     "the target of a jog step is singular, by kind 2 of Kine_IsSingularity",
     "Jog joints (mode 1) through it."},
    {0x6093u, "KINE_ERR_IK_SINGULAR",
     "four-axis arm: the elbow is stretched or folded",
     "Keep the target away from the edge of the reach."},
    {0x6094u, "KINE_ERR_IK_REACH",
     "four-axis arm: the target is out of reach; four-axis arm: no finite solution",
     "Check target, tool and work object; look for NaN among the inputs."},
    {0x6095u, "KINE_ERR_SINGULAR",
     "the refinement met a singular arm",
     "Keep the target away from singular poses."},
    {0x6096u, "KINE_ERR_IK_6",
     "six-axis arm: the wrist centre lies on the axis of joint 1, or on the circle of the lateral offset",
     "Move the target away from the axis of joint 1."},
    {0x6097u, "KINE_ERR_IK_7",
     "six-axis arm: the target is out of reach, too far or too near; six-axis arm: the elbow is stretched "
     "or folded",
     "Check target, tool, work object and units of measure; bring the target nearer to the middle of the "
     "reach."},
    {0x6098u, "KINE_ERR_IK_8",
     "six-axis arm: the wrist is straight, q5 within 0.26 degrees of 0 or 180",
     "Tilt the tool a little, or move through the straight wrist with joints."},
    {0x6099u, "KINE_ERR_IK_9",
     "six-axis arm: the first correction is beyond 170 degrees",
     "The parameters are not those of a nominal arm with small errors: check twists, d3 and lateralOffset."},
    {0x609Au, "KINE_ERR_IK_ACCURACY",
     "six-axis arm: the refinement did not converge; six-axis arm: no finite solution",
     "Check twists, d3 and lateralOffset as for KINE_ERR_IK_9; keep the target away from singular poses; "
     "look for NaN among the inputs."},
    {0xFFFFFFFFu, "KINE_ERR_UNKNOWN_ARM_TYPE",
     "the arm type is none of 4, 6 and 4110; returned by Kine_IsSingularity it is KINE_SINGULAR: the "
     "joints are singular, which is an answer and no error",
     "Use KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS or KINE_ARM_FOUR_AXIS_4110."},
// codes: end
};
// clang-format on

/** The text of a code; of a number that is none, one that says so. */
constexpr CodeText TextOf(KineResult code) noexcept
{
    for (const CodeText& text : kCodeTexts) {
        // cppcheck-suppress useStlAlgorithm; no algorithm of C++17 runs in the compiler
        if (text.code == code) return text;
    }
    return {code, "unknown code", "no call of KineDll returns this number",
            "Look where the number comes from."};
}

/**
 * A result code. It does not convert to bool: in C a code is true where a call has failed, a Result is true
 * where it has succeeded.
 */
struct [[nodiscard]] Code
{
    KineResult value = KINE_OK; /**< the number, as KineDll.h has it */

    /** Whether the call has succeeded. */
    [[nodiscard]] constexpr bool IsOk() const noexcept { return value == KINE_OK; }
    /** "KINE_OK" or "KINE_ERR_..." */
    [[nodiscard]] constexpr const char* Name() const noexcept { return TextOf(value).name; }
    /** What leads to the code. */
    [[nodiscard]] constexpr const char* Cause() const noexcept { return TextOf(value).cause; }
    /** What to do. */
    [[nodiscard]] constexpr const char* Remedy() const noexcept { return TextOf(value).remedy; }
};

/** The same code. */
constexpr bool operator==(Code a, Code b) noexcept { return a.value == b.value; }
/** The same code, as in `code == KINE_ERR_WOBJ`. */
constexpr bool operator==(Code a, KineResult b) noexcept { return a.value == b; }
/** Another code. */
constexpr bool operator!=(Code a, Code b) noexcept { return a.value != b.value; }
/** Another code. */
constexpr bool operator!=(Code a, KineResult b) noexcept { return a.value != b; }

/**
 * What a call answers: its code, and the value asked for. True where the call has succeeded.
 *
 * Read the value of a successful call only. After a failure it is all zeros, and zeros look like good joints
 * and a good pose. Only an error report may hold more then; its call says so.
 */
template <class T>
struct [[nodiscard]] Result
{
    Code code; /**< of the call */
    T value;   /**< what was asked for; zeros after a failure */

    /** Whether the call has succeeded. */
    [[nodiscard]] constexpr bool IsOk() const noexcept { return code.IsOk(); }
    /** Whether the call has succeeded. */
    constexpr explicit operator bool() const noexcept { return code.IsOk(); }
};

/** A frame found from taught points, and how much it leans. */
struct TiltedFrame
{
    KineFrame frame; /**< mm, deg */
    double tiltRad;  /**< angle between two Z axes, IN RADIANS; which two, the call says */
};

/** A frame found from taught poses, and how well they agree. */
struct CalibratedFrame
{
    KineFrame frame;      /**< mm, deg */
    KineCalibError error; /**< mm */
};

/** A point or a direction: X, Y, Z in mm. */
using Vector = std::array<double, 3>;

static_assert(std::is_trivially_copyable_v<Code> && std::is_standard_layout_v<Code>);
static_assert(std::is_trivially_copyable_v<Result<KinePose>> && std::is_standard_layout_v<Result<KinePose>>);
static_assert(std::is_trivially_copyable_v<Result<TiltedFrame>>);
static_assert(std::is_trivially_copyable_v<Result<CalibratedFrame>>);

// -----------------------------------------------------------------------------------------------------------
// Modes. A number that has no name here is passed on by a static_cast.
// -----------------------------------------------------------------------------------------------------------

/** The arms of InitKinematicParam. */
enum class ArmType : std::uint32_t
{
    kFourAxis = KINE_ARM_FOUR_AXIS,         /**< axis 2 is the elbow angle */
    kSixAxis = KINE_ARM_SIX_AXIS,           /**< six-axis serial arm */
    kFourAxis4110 = KINE_ARM_FOUR_AXIS_4110 /**< axis 2 is the elbow angle less 180 degrees */
};

/** How early IsSingularity warns; jog steps are held to the wide kind. */
enum class SingularityKind : std::uint32_t
{
    kNarrow = 1, /**< 20 mm, 0.05, 0.05; four-axis arms 0.0192 rad. The number 0 means the same */
    kWide = 2    /**< 30 mm, 0.087266, 0.087266; four-axis arms 0.0524 rad */
};

/** What a jog step is along and about. */
enum class InchMode : std::int32_t
{
    kJoints = 1, /**< the axes of the arm, and the external axes */
    kBase = 2,   /**< the axes of the robot base */
    kTool = 3,   /**< those of the tool */
    kWobj = 4,   /**< those of the work object */
    kWorld = 5   /**< those of the world */
};

/** What CalcAlignPos aligns the tool with. */
enum class AlignMode : std::int32_t
{
    kWobjThroughFlange = -1, /**< the work object; the flange under a held work object is turned */
    kBase = 2,               /**< the robot base */
    kWobj = 4,               /**< the work object; a held one is turned itself */
    kWorld = 5               /**< the world */
};

/** The ways of CrdPosToWobjPos. */
enum class CrdMode : std::int32_t
{
    kBaseToWobj = -2,      /**< through the mounting of the robot and the mechanical units */
    kWorldToFixedWobj = -1 /**< with a stationary tool; mechanical units are not consulted */
};

/** Whose axes CalcPosDif gives the difference along. */
enum class PosDifFrame : std::int32_t
{
    kFirstPose = -1, /**< what ToolCoordOffset takes */
    kCommon = 1      /**< the frame that both poses are given in: what WobjCoordOffset takes */
};

/** KineMechUnit.UnitKind. */
enum class UnitKind : std::uint16_t
{
    kLinear = 1,   /**< one linear axis: a track */
    kRotary = 2,   /**< one rotary axis: a turntable */
    kTwoRotary = 3 /**< two rotary axes: a turntable that tilts */
};

// -----------------------------------------------------------------------------------------------------------
// Records
// -----------------------------------------------------------------------------------------------------------

/** A frame: mm, and degrees with R = Rz(a) * Ry(b) * Rx(c). */
constexpr KineFrame MakeFrame(double x, double y, double z, double a = 0.0, double b = 0.0,
                              double c = 0.0) noexcept
{
    return {x, y, z, a, b, c};
}

/** A target: frame, configuration (see KineArmConfig), external axes 0. */
constexpr KinePose MakePose(const KineFrame& frame, const KineArmConfig& config = {}) noexcept
{
    return {frame, config.Cfg1, config.Cfg2, config.Cfg3, config.Cfg4, {}};
}

/** Joints from up to eight axis values in braces, deg; the others and the external axes are 0. */
template <std::size_t Count>
constexpr KineJoint MakeJoints(const double (&axes)[Count]) noexcept
{
    static_assert(Count <= 8, "a KineJoint has eight axes");
    KineJoint joints{};
    for (std::size_t i = 0; i < Count; ++i) joints.Axis[i] = axes[i];
    return joints;
}

/**
 * The same joints or the same pose with other external axes in braces, up to six: deg (rotary) or mm
 * (linear).
 */
template <class Record, std::size_t Count>
constexpr Record WithExtAxes(const Record& record, const double (&axes)[Count]) noexcept
{
    static_assert(std::is_same_v<Record, KineJoint> || std::is_same_v<Record, KinePose>);
    static_assert(Count <= 6, "there are six external axes");
    Record changed = record;
    for (std::size_t i = 0; i < 6; ++i) changed.ExtAxis[i] = i < Count ? axes[i] : 0.0;
    return changed;
}

/** A load: kg, not negative, and its centre of gravity in mm. What has no effect on any result is 0. */
constexpr KineLoad MakeLoad(double mass, double x, double y, double z) noexcept
{
    return {mass, {x, y, z}, {}, {}};
}

/** A tool on the flange: its tool centre point in the flange, the centre of its load likewise. */
constexpr KineTool HeldTool(const KineFrame& frame = {}, const KineLoad& load = {}) noexcept
{
    return {1, {}, frame, load};
}

/**
 * A tool that stands in the cell while the robot holds the work object: its tool centre point in the world.
 */
constexpr KineTool StationaryTool(const KineFrame& frame = {}) noexcept { return {0, {}, frame, {}}; }

/** A work object that stands in the cell: user frame in the world, object frame in the user frame. */
constexpr KineWobj FixedWobj(const KineFrame& user = {}, const KineFrame& object = {}) noexcept
{
    return {0, 1, 0, {}, user, object};
}

/** A work object that the robot holds: user frame in the flange, object frame in the user frame. */
constexpr KineWobj HeldWobj(const KineFrame& user = {}, const KineFrame& object = {}) noexcept
{
    return {1, 1, 0, {}, user, object};
}

/**
 * A work object on a mechanical unit, whose last axis is the user frame. The index is 1 or 2 and below the
 * number of units: unit 0 carries no work object.
 */
constexpr KineWobj WobjOnUnit(std::int8_t unit, const KineFrame& object = {}) noexcept
{
    return {0, 0, unit, {}, {}, object};
}

/** The lengths of a six-axis arm, all in mm; see KineSixAxisParam. */
struct SixAxisLengths
{
    double a1 = 0.0;            /**< axis 1 to axis 2; not negative */
    double a2 = 0.0;            /**< upper arm; positive */
    double a3 = 0.0;            /**< elbow offset; not negative */
    double d4 = 0.0;            /**< forearm; positive */
    double d6 = 0.0;            /**< wrist centre to flange; not negative */
    double d1 = 0.0;            /**< height of axis 2 over the base plane */
    double lateralOffset = 0.0; /**< wrist centre off the plane of the arm */
};

/**
 * The nominal arm of these lengths: twists 90, 0, 90, -90, 90 degrees and d3 equal to lateralOffset, as the
 * inverse needs them; rigid. Add the small errors that a calibration of the arm has found.
 */
constexpr KineSixAxisParam NominalSixAxis(const SixAxisLengths& lengths) noexcept
{
    KineSixAxisParam arm{};
    arm.a1 = lengths.a1;
    arm.a2 = lengths.a2;
    arm.a3 = lengths.a3;
    arm.d4 = lengths.d4;
    arm.d6 = lengths.d6;
    arm.d1 = lengths.d1;
    arm.lateralOffset = lengths.lateralOffset;
    arm.d3 = lengths.lateralOffset;
    arm.alpha1 = 90.0;
    arm.alpha2 = 0.0;
    arm.alpha3 = 90.0;
    arm.alpha4 = -90.0;
    arm.alpha5 = 90.0;
    return arm;
}

/**
 * A four-axis arm without tilts: two links and the flange height at axis 3 = 0 in mm, the lead in mm per
 * turn.
 */
constexpr KineFourAxisParam NominalFourAxis(double link1, double link2, double zOffset,
                                            double screwLead) noexcept
{
    KineFourAxisParam arm{};
    arm.Link1Length = link1;
    arm.Link2Length = link2;
    arm.ZOffset = zOffset;
    arm.ScrewLead = screwLead;
    return arm;
}

/**
 * A track: it moves along X of rail by the value of an external axis (0..5) in mm. What it carries is turned
 * against rail by the angles of carriage; the position of carriage is not used.
 */
constexpr KineMechUnit LinearUnit(const KineFrame& rail, std::uint8_t extAxis,
                                  const KineFrame& carriage = {}) noexcept
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = static_cast<std::uint16_t>(UnitKind::kLinear);
    unit.AxisCount = 1;
    unit.AxisFrame[0] = rail;
    unit.AxisFrame[1] = carriage;
    unit.AxisParamIndex[0] = extAxis;
    return unit;
}

/** A turntable: it turns about Z of axis by the value of an external axis (0..5) in degrees. */
constexpr KineMechUnit RotaryUnit(const KineFrame& axis, std::uint8_t extAxis) noexcept
{
    KineMechUnit unit{};
    unit.Active = 1;
    unit.UnitKind = static_cast<std::uint16_t>(UnitKind::kRotary);
    unit.AxisCount = 1;
    unit.AxisFrame[0] = axis;
    unit.AxisParamIndex[0] = extAxis;
    return unit;
}

/**
 * A tilting turntable: the second axis rides on the first and is given in it; external axes 0..5 in degrees.
 */
constexpr KineMechUnit TwoRotaryUnit(const KineFrame& first, std::uint8_t firstExtAxis,
                                     const KineFrame& second, std::uint8_t secondExtAxis) noexcept
{
    KineMechUnit unit = RotaryUnit(first, firstExtAxis);
    unit.UnitKind = static_cast<std::uint16_t>(UnitKind::kTwoRotary);
    unit.AxisCount = 2;
    unit.AxisFrame[1] = second;
    unit.AxisParamIndex[1] = secondExtAxis;
    return unit;
}

/**
 * The same unit saying, when it is stored at index 0, that the robot stands on the last axis of unit carrier.
 */
constexpr KineMechUnit CarryingRobot(const KineMechUnit& unit, std::uint8_t carrier = 0) noexcept
{
    KineMechUnit changed = unit;
    changed.Option1 = 1;
    changed.Option2 = carrier;
    return changed;
}

/** An external axis that moves in mm. Calibrations ask for it, the chains do not. */
constexpr KineExtAxisParam LinearExtAxis() noexcept
{
    KineExtAxisParam param{};
    param.Word[3] = 1;
    return param;
}

/** An external axis that turns in degrees. Calibrations ask for it, the chains do not. */
constexpr KineExtAxisParam RotaryExtAxis() noexcept { return {}; }

/**
 * One direction of a jog step: slot 0..13, see KineInchDir, and -1 or +1. A slot beyond that leaves all at 0.
 */
constexpr KineInchDir MakeInchDir(std::size_t slot, std::int32_t direction) noexcept
{
    KineInchDir dir{};
    if (slot < 14) dir.Slot[slot] = direction;
    return dir;
}

/** How far one jog step goes. */
struct JogSteps
{
    double jointDeg = 0.0;    /**< axes in deg; external axes by the same number in their own unit */
    double linearMm = 0.0;    /**< along an axis, mm */
    double rotationDeg = 0.0; /**< about an axis, deg */
};

// -----------------------------------------------------------------------------------------------------------
// Setup
// -----------------------------------------------------------------------------------------------------------

/** Selects and initialises the arm; clears units, external axes and limits. See Kine_InitKinematicParam. */
inline Code InitKinematicParam(ArmType armType, const KineKinematicParam& param) noexcept
{
    return {Kine_InitKinematicParam(static_cast<std::uint32_t>(armType), &param)};
}

/** A six-axis arm. */
inline Code InitKinematicParam(const KineSixAxisParam& arm) noexcept
{
    KineKinematicParam param{};
    param.SixAxis = arm;
    return InitKinematicParam(ArmType::kSixAxis, param);
}

/** A four-axis arm, of type 4 or 4110. */
inline Code InitKinematicParam(const KineFourAxisParam& arm, ArmType armType = ArmType::kFourAxis) noexcept
{
    KineKinematicParam param{};
    param.FourAxis = arm;
    return InitKinematicParam(armType, param);
}

/** Sets the axis limits, deg. They bound turn numbers, not joints. See Kine_SetAxisLimit. */
inline Code SetAxisLimit(const KineJoint& upper, const KineJoint& lower) noexcept
{
    return {Kine_SetAxisLimit(&upper, &lower)};
}

/**
 * Says how many mechanical units (0..3) and external axes (0..6) the cell has. With enable false the counts
 * are ignored, and the two calls below do nothing. See Kine_SetMechUnitGlobalCfg.
 */
inline Code SetMechUnitGlobalCfg(std::uint32_t mechUnitCount, std::uint32_t extAxisItemCount,
                                 bool enable = true) noexcept
{
    return {Kine_SetMechUnitGlobalCfg(mechUnitCount, extAxisItemCount, enable ? 1U : 0U)};
}

/** Stores a mechanical unit, 0..2. Unit 0 also says what the robot stands on. See Kine_SetMechUnitParam. */
inline Code SetMechUnitParam(std::int32_t index, const KineMechUnit& unit) noexcept
{
    return {Kine_SetMechUnitParam(index, &unit)};
}

/** Stores an external axis, 0..5. See Kine_SetExtAxisParam. */
inline Code SetExtAxisParam(std::int32_t index, const KineExtAxisParam& param) noexcept
{
    return {Kine_SetExtAxisParam(index, &param)};
}

// -----------------------------------------------------------------------------------------------------------
// Queries about the arm
// -----------------------------------------------------------------------------------------------------------

/** Posture and turns of joints, deg; not the arm type. See Kine_GetArmType. */
inline Result<KineArmConfig> GetArmType(const KineJoint& joints) noexcept
{
    Result<KineArmConfig> result{};
    result.code = {Kine_GetArmType(&joints, &result.value)};
    return result;
}

/** KINE_OK where the turn numbers of a pose fit the axis limits. See Kine_IsArmTypeValid. */
inline Code IsArmTypeValid(const KinePose& pose) noexcept { return {Kine_IsArmTypeValid(&pose)}; }

/** Whether joints, deg, are close to a singularity: an answer, not an error. See Kine_IsSingularity. */
inline Result<bool> IsSingularity(const KineJoint& joints, SingularityKind kind) noexcept
{
    const KineResult code = Kine_IsSingularity(&joints, static_cast<std::uint32_t>(kind));
    if (code == KINE_SINGULAR) return {{KINE_OK}, true};
    return {{code}, false};
}

// -----------------------------------------------------------------------------------------------------------
// Forward and inverse
// -----------------------------------------------------------------------------------------------------------

/**
 * The tool centre point in the robot base: mm, deg, configuration, external axes. See Kine_JointToBasePos.
 */
inline Result<KinePose> JointToBasePos(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                                       const KineLoad& load) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_JointToBasePos(&joints, &tool, &wobj, &load, &result.value)};
    return result;
}

/** The tool centre point in the flange; of a tool on the flange TFrame itself. See Kine_JointToFlangePos. */
inline Result<KinePose> JointToFlangePos(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                                         const KineLoad& load) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_JointToFlangePos(&joints, &tool, &wobj, &load, &result.value)};
    return result;
}

/** The tool centre point in the world. See Kine_JointToWorldPos. */
inline Result<KinePose> JointToWorldPos(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                                        const KineLoad& load) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_JointToWorldPos(&joints, &tool, &wobj, &load, &result.value)};
    return result;
}

/** The tool centre point in the work object (object frame). See Kine_JointToWobjPos. */
inline Result<KinePose> JointToWobjPos(const KineJoint& joints, const KineTool& tool, const KineWobj& wobj,
                                       const KineLoad& load) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_JointToWobjPos(&joints, &tool, &wobj, &load, &result.value)};
    return result;
}

/** The arm in its base for vision calibration, without tool, last axis and payload. See Kine_FKineVision. */
inline Result<KinePose> FKineVision(const KineJoint& joints) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_FKineVision(&joints, &result.value)};
    return result;
}

/** Joints, deg, that bring the tool centre point to a target in the work object. See Kine_WobjPosToJoint. */
inline Result<KineJoint> WobjPosToJoint(const KinePose& target, const KineTool& tool, const KineWobj& wobj,
                                        const KineLoad& load) noexcept
{
    Result<KineJoint> result{};
    result.code = {Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &result.value)};
    return result;
}

// -----------------------------------------------------------------------------------------------------------
// Conversions of positions between frames; mm, deg
// -----------------------------------------------------------------------------------------------------------

/** From the world into a fixed work object that is not held. See Kine_WorldPosToFixWobjPos. */
inline Result<KinePose> WorldPosToFixWobjPos(const KinePose& pose, const KineWobj& wobj) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_WorldPosToFixWobjPos(&pose, &wobj, &result.value)};
    return result;
}

/** From the world into a work object held by a flange that stands there. See Kine_WorldPosToGripWobjPos. */
inline Result<KinePose> WorldPosToGripWobjPos(const KinePose& pose, const KineWobj& wobj,
                                              const KinePose& flange) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_WorldPosToGripWobjPos(&pose, &wobj, &flange, &result.value)};
    return result;
}

/** The way back; takes a work object that is not held too. See Kine_GripWobjPosToWorldPos. */
inline Result<KinePose> GripWobjPosToWorldPos(const KinePose& pose, const KineWobj& wobj,
                                              const KinePose& flange) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_GripWobjPosToWorldPos(&pose, &wobj, &flange, &result.value)};
    return result;
}

/** A position to the work object; a mode without a name leaves it as it is. See Kine_CrdPosToWobjPos. */
inline Result<KinePose> CrdPosToWobjPos(const KinePose& pose, CrdMode mode, const KineTool& tool,
                                        const KineWobj& wobj, const KineLoad& load) noexcept
{
    Result<KinePose> result{};
    result.code = {
        Kine_CrdPosToWobjPos(&pose, static_cast<std::int32_t>(mode), &tool, &wobj, &load, &result.value)};
    return result;
}

/** A pose moved and turned along and about its own axes. See Kine_ToolCoordOffset. */
inline Result<KinePose> ToolCoordOffset(const KinePose& pose, const KineFrame& offset) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_ToolCoordOffset(&pose, &offset, &result.value)};
    return result;
}

/** A pose moved along the axes of its frame and turned about them in place. See Kine_WobjCoordOffset. */
inline Result<KinePose> WobjCoordOffset(const KinePose& pose, const KineFrame& offset) noexcept
{
    Result<KinePose> result{};
    result.code = {Kine_WobjCoordOffset(&pose, &offset, &result.value)};
    return result;
}

// -----------------------------------------------------------------------------------------------------------
// Calibration of tools: which poses to teach is said in KineDll.h
// -----------------------------------------------------------------------------------------------------------

/** A stationary tool: the touched point with angles 0. See Kine_CalcExtToolPrm_1P. */
inline Result<KineFrame> CalcExtToolPrm_1P(const KinePose& p0) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcExtToolPrm_1P(&p0, &result.value)};
    return result;
}

/** A stationary tool from three touched points. See Kine_CalcExtToolPrm_1PZX. */
inline Result<KineFrame> CalcExtToolPrm_1PZX(const KinePose& origin, const KinePose& zPoint,
                                             const KinePose& xPoint) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcExtToolPrm_1PZX(&origin, &zPoint, &xPoint, &result.value)};
    return result;
}

/** A stationary tool touched in three orientations. See Kine_CalcExtToolPrm_3P. */
inline Result<CalibratedFrame> CalcExtToolPrm_3P(const KinePose& p0, const KinePose& p1,
                                                 const KinePose& p2) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {Kine_CalcExtToolPrm_3P(&p0, &p1, &p2, &result.value.frame, &result.value.error)};
    return result;
}

/**
 * A stationary tool with its orientation. The error report is written as soon as p0, p1 and p2 are solved,
 * also where a later check fails. See Kine_CalcExtToolPrm_3PZX.
 */
inline Result<CalibratedFrame> CalcExtToolPrm_3PZX(const KinePose& p0, const KinePose& p1, const KinePose& p2,
                                                   const KinePose& origin, const KinePose& zPoint,
                                                   const KinePose& xPoint) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {Kine_CalcExtToolPrm_3PZX(&p0, &p1, &p2, &origin, &zPoint, &xPoint, &result.value.frame,
                                            &result.value.error)};
    return result;
}

/** A tool on the flange that touches one point in three orientations. See Kine_CalcGripToolPrm_3P. */
inline Result<CalibratedFrame> CalcGripToolPrm_3P(const KinePose& p0, const KinePose& p1,
                                                  const KinePose& p2) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {Kine_CalcGripToolPrm_3P(&p0, &p1, &p2, &result.value.frame, &result.value.error)};
    return result;
}

/**
 * A tool on the flange with its orientation. The error report is written as soon as p0, p1 and p2 are solved,
 * also where a later check fails. See Kine_CalcGripToolPrm_3PZX.
 */
inline Result<CalibratedFrame> CalcGripToolPrm_3PZX(const KinePose& p0, const KinePose& p1,
                                                    const KinePose& p2, const KinePose& origin,
                                                    const KinePose& zPoint, const KinePose& xPoint) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {Kine_CalcGripToolPrm_3PZX(&p0, &p1, &p2, &origin, &zPoint, &xPoint, &result.value.frame,
                                             &result.value.error)};
    return result;
}

/** A tool on a six-axis arm that touches one point in five orientations. See Kine_CalcGripToolPrm_5P. */
inline Result<CalibratedFrame> CalcGripToolPrm_5P(const KinePose& p0, const KinePose& p1, const KinePose& p2,
                                                  const KinePose& p3, const KinePose& p4) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {
        Kine_CalcGripToolPrm_5P(&p0, &p1, &p2, &p3, &p4, &result.value.frame, &result.value.error)};
    return result;
}

/** A tool on a four-axis arm that touches one point in two headings. See Kine_CalcGripToolPrm_Scara2P. */
inline Result<KineFrame> CalcGripToolPrm_Scara2P(const KinePose& p0, const KinePose& p1) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcGripToolPrm_Scara2P(&p0, &p1, &result.value)};
    return result;
}

// -----------------------------------------------------------------------------------------------------------
// Calibration of work objects. The tilt is IN RADIANS
// -----------------------------------------------------------------------------------------------------------

/** A fixed user frame with a horizontal Y axis. See Kine_CalcExtWobj_UserPrm_2P. */
inline Result<TiltedFrame> CalcExtWobj_UserPrm_2P(const KinePose& origin, const KinePose& xPoint) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {Kine_CalcExtWobj_UserPrm_2P(&origin, &xPoint, &result.value.frame, &result.value.tiltRad)};
    return result;
}

/** A fixed user frame from three points. See Kine_CalcExtWobj_UserPrm_3P. */
inline Result<TiltedFrame> CalcExtWobj_UserPrm_3P(const KinePose& origin, const KinePose& xPoint,
                                                  const KinePose& xyPoint) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {
        Kine_CalcExtWobj_UserPrm_3P(&origin, &xPoint, &xyPoint, &result.value.frame, &result.value.tiltRad)};
    return result;
}

/** A fixed user frame from three points of a circle (spelled so). See Kine_CalcExtWobj_UserPrm_Cirle3P. */
inline Result<TiltedFrame> CalcExtWobj_UserPrm_Cirle3P(const KinePose& p1, const KinePose& p2,
                                                       const KinePose& p3) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {
        Kine_CalcExtWobj_UserPrm_Cirle3P(&p1, &p2, &p3, &result.value.frame, &result.value.tiltRad)};
    return result;
}

/** The object frame in a fixed user frame. See Kine_CalcExtWobj_ObjPrm_3P. */
inline Result<TiltedFrame> CalcExtWobj_ObjPrm_3P(const KinePose& origin, const KinePose& xPoint,
                                                 const KinePose& xyPoint, const KineFrame& user) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {Kine_CalcExtWobj_ObjPrm_3P(&origin, &xPoint, &xyPoint, &user, &result.value.frame,
                                              &result.value.tiltRad)};
    return result;
}

/** The user frame of a held work object. See Kine_CalcGripWobj_UserPrm_3P. */
inline Result<TiltedFrame> CalcGripWobj_UserPrm_3P(const KinePose& origin, const KinePose& xPoint,
                                                   const KinePose& xyPoint) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {
        Kine_CalcGripWobj_UserPrm_3P(&origin, &xPoint, &xyPoint, &result.value.frame, &result.value.tiltRad)};
    return result;
}

/**
 * The object frame of a held work object; the tilt is against the user frame. See
 * Kine_CalcGripWobj_ObjPrm_3P.
 */
inline Result<TiltedFrame> CalcGripWobj_ObjPrm_3P(const KinePose& origin, const KinePose& xPoint,
                                                  const KinePose& xyPoint, const KineFrame& user) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {Kine_CalcGripWobj_ObjPrm_3P(&origin, &xPoint, &xyPoint, &user, &result.value.frame,
                                               &result.value.tiltRad)};
    return result;
}

/**
 * The object frame on a mechanical unit; the tilt is against its last axis. See Kine_CalcUnFixWobj_ObjPrm_3P.
 */
inline Result<TiltedFrame> CalcUnFixWobj_ObjPrm_3P(std::int32_t unit, const KinePose& origin,
                                                   const KinePose& xPoint, const KinePose& xyPoint) noexcept
{
    Result<TiltedFrame> result{};
    result.code = {Kine_CalcUnFixWobj_ObjPrm_3P(unit, &origin, &xPoint, &xyPoint, &result.value.frame,
                                                &result.value.tiltRad)};
    return result;
}

// -----------------------------------------------------------------------------------------------------------
// Calibration of positioners and of the robot base
// -----------------------------------------------------------------------------------------------------------

/**
 * The first rotary axis of a unit. Some positions of the mark give no finite frame, with KINE_OK: see
 * Kine_CalcPositionerJ1Prm_3P.
 */
inline Result<KineFrame> CalcPositionerJ1Prm_3P(std::int32_t unit, const KinePose& p0, const KinePose& p1,
                                                const KinePose& p2) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcPositionerJ1Prm_3P(unit, &p0, &p1, &p2, &result.value)};
    return result;
}

/**
 * A further rotary axis, counted from 1, relative to a reference frame. Teach p0 with this axis at 0: its
 * value is taken as radians. See Kine_CalcPositionerJnPrm_3P.
 */
inline Result<KineFrame> CalcPositionerJnPrm_3P(std::int32_t unit, std::int32_t axis, const KinePose& p0,
                                                const KinePose& p1, const KinePose& p2,
                                                const KineFrame& reference) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcPositionerJnPrm_3P(unit, axis, &p0, &p1, &p2, &reference, &result.value)};
    return result;
}

/** The orientation of the robot base on a track. See Kine_CalcRobotBasePrm_3P. */
inline Result<CalibratedFrame> CalcRobotBasePrm_3P(std::int32_t unit, const KinePose& p0, const KinePose& p1,
                                                   const KinePose& p2) noexcept
{
    Result<CalibratedFrame> result{};
    result.code = {Kine_CalcRobotBasePrm_3P(unit, &p0, &p1, &p2, &result.value.frame, &result.value.error)};
    return result;
}

// -----------------------------------------------------------------------------------------------------------
// Motion utilities
// -----------------------------------------------------------------------------------------------------------

/**
 * Joints after one jog step, deg. The steps are passed by value: the array that the C call leaves in radians
 * is a copy of its own. See Kine_InchMovePosCalc.
 */
inline Result<KineJoint> InchMovePosCalc(const KineInchDir& dir, InchMode mode, const KineTool& tool,
                                         const KineWobj& wobj, const KineLoad& load, JogSteps steps,
                                         const KineJoint& current) noexcept
{
    double changed[3] = {steps.jointDeg, steps.linearMm, steps.rotationDeg};
    Result<KineJoint> result{};
    result.code = {Kine_InchMovePosCalc(&dir, static_cast<std::int32_t>(mode), &tool, &wobj, &load, changed,
                                        &current, &result.value)};
    return result;
}

/** Joints, deg, that turn the tool's Z axis onto the nearest axis of a reference. See Kine_CalcAlignPos. */
inline Result<KineJoint> CalcAlignPos(AlignMode mode, const KineJoint& current, const KineTool& tool,
                                      const KineWobj& wobj, const KineLoad& load) noexcept
{
    Result<KineJoint> result{};
    result.code = {
        Kine_CalcAlignPos(static_cast<std::int32_t>(mode), &current, &tool, &wobj, &load, &result.value)};
    return result;
}

/**
 * Swaps the roles of a stationary tool and a held work object: BOTH ARE CHANGED. A work object that is not
 * held is refused when tool.HeldByRobot has become 1 already. See Kine_CalcAlignCoordProc.
 */
inline Code CalcAlignCoordProc(KineTool& tool, KineWobj& wobj) noexcept
{
    return {Kine_CalcAlignCoordProc(&tool, &wobj)};
}

/**
 * The normal (p2 - p1) x (p3 - p1) of a plane, scaled to a length in mm; zeros for points on one line or with
 * NaN. The call never fails. See Kine_CalcZVec.
 */
[[nodiscard]] inline Vector CalcZVec(const KineFrame& p1, const KineFrame& p2, const KineFrame& p3,
                                     double length) noexcept
{
    Vector normal{};
    static_cast<void>(Kine_CalcZVec(&p1, &p2, &p3, length, normal.data()));  // always KINE_OK
    return normal;
}

/**
 * Whether the flange is in a cube in the world. EVERY CALL FAILS WITH KINE_ERR_WOBJ; to watch an area, ask
 * JointToWorldPos. See SafeArea_Check in KineDll.h.
 */
inline Result<bool> SafeArea_Check(const KineJoint& joints, const Vector& centre, double size) noexcept
{
    const auto answer = static_cast<KineResult>(::SafeArea_Check(&joints, centre.data(), size));
    if (answer <= 1U) return {{KINE_OK}, answer == 1U};
    return {{answer}, false};
}

/** The difference of the second pose relative to the first, mm and deg. See Kine_CalcPosDif. */
inline Result<KineFrame> CalcPosDif(const KinePose& first, const KinePose& second, PosDifFrame frame) noexcept
{
    Result<KineFrame> result{};
    result.code = {Kine_CalcPosDif(&first, &second, static_cast<std::int32_t>(frame), &result.value)};
    return result;
}

}  // namespace kinedll

#endif  // KINEDLL_HPP

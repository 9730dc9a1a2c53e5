"""The result codes: numbers, names, causes and remedies. The members come from interface/result_codes.json."""

from enum import IntEnum
from typing import Tuple


class ResultCode(IntEnum):
    """A result code of the library: an integer with the name of the header, its causes and what to do."""

    causes: Tuple[str, ...]
    remedy: str

    def __new__(cls, value: int, causes: Tuple[str, ...], remedy: str) -> "ResultCode":
        code = int.__new__(cls, value)
        code._value_ = value
        code.causes = causes
        code.remedy = remedy
        return code

    # codes: begin; written by interface/generate.py
    KINE_OK = (
        0x0000,
        (
            "success",
        ),
        "Nothing to do.",
    )
    KINE_ERR_MODEL_PARAM = (
        0x6000,
        (
            "the kinematic parameters are null",
            "a length of the arm is too small",
        ),
        "Give lengths in mm: a2, d4, the link lengths and the lead at least 1e-5; a1, a3 and d6 not negative.",
    )
    KINE_ERR_NOT_INITIALISED = (
        0x6001,
        (
            "Kine_InitKinematicParam was not called, or its last call failed",
            "a tool calibration that the configured arm type does not have",
        ),
        "Initialise again; axis limits, mechanical units and external axes must then be sent again too. Take "
        "five poses for a six-axis arm only, two for a four-axis arm only.",
    )
    KINE_ERR_MECH_UNIT = (
        0x6002,
        (
            "the index of the mechanical unit is not 0 to 2",
            "its record is null",
            "the unit has more axes than there are external axes",
        ),
        "See the printed line, and tell the number of external axes with Kine_SetMechUnitGlobalCfg first.",
    )
    KINE_ERR_EXT_AXIS_PARAM = (
        0x6003,
        (
            "the index of the external axis is not 0 to 5",
            "its record is null",
        ),
        "See the printed line.",
    )
    KINE_ERR_MECH_UNIT_COUNT = (
        0x6004,
        (
            "more than 3 mechanical units",
            "more than 6 external axes",
        ),
        "Give counts within these bounds; the enable flag has been stored all the same.",
    )
    KINE_ERR_POSE = (
        0x6010,
        (
            "a pose is null, or one of its angles is beyond 180 degrees in size",
            "a calibration was given a null frame",
            "a positioner calibration met a linear axis, or the calibration of a track a rotary one",
            "the result pose or frame is null",
        ),
        "Bring the angles into -180 to 180. The external axis of a linear axis has Word[3] = 1, that of a "
        "rotary axis any other value.",
    )
    KINE_ERR_TOOL = (
        0x6011,
        (
            "the tool is null, or an angle of it is beyond 180 degrees in size",
            "mass or inertia of the tool is negative",
            "a calibration names a mechanical unit or an axis that the cell does not have",
            "Kine_CalcAlignCoordProc was given a held tool",
        ),
        "Correct the record of the tool; for a calibration check the unit index, the axis count and the "
        "external axes that drive the unit.",
    )
    KINE_ERR_WOBJ = (
        0x6012,
        (
            "the work object is null, or an angle of UFrame or OFrame is beyond 180 degrees in size",
            "with UFFix 0 the index of the mechanical unit is 0, or not below the number of units",
            "the work object is held where the call needs one that is not, or the other way round",
            "the user frame is not fixed where the call needs a fixed one",
            "every call of SafeArea_Check",
        ),
        "Correct the record. A printed line shows the number of mechanical units. UFrame is checked even "
        "where it is ignored.",
    )
    KINE_ERR_LOAD = (
        0x6013,
        (
            "the load is null",
            "an Aom angle is beyond 180 degrees in size",
            "mass or inertia is negative",
        ),
        "Give a load of zeros for none.",
    )
    KINE_ERR_JOINT = (
        0x6014,
        (
            "joints or axis limits are null",
            "the result joints are null",
        ),
        "Pass a record.",
    )
    KINE_ERR_HOLD = (
        0x6016,
        (
            "tool and work object carry the same HeldByRobot byte",
        ),
        "Exactly one of the two is held: 1 and 0 for a tool on the robot, 0 and 1 for a stationary tool.",
    )
    KINE_ERR_OFFSET_FRAME = (
        0x6017,
        (
            "the offset frame is null",
            "one of its angles is beyond 180 degrees in size",
        ),
        "Bring the angles into -180 to 180.",
    )
    KINE_ERR_DIRECTION = (
        0x6018,
        (
            "the frame of Kine_CalcPosDif is neither 1 nor -1",
            "the mode of Kine_CalcAlignPos is none of 2, 5, 4 and -1, or 4 or -1 with nothing on the flange",
            "directions or steps of a jog are null",
        ),
        "Use one of the documented modes; the work-object modes need a held tool or work object.",
    )
    KINE_ERR_W2F_MODE = (
        0x6030,
        (
            "a frame is neither fixed nor on a mechanical unit, on the way from the world; no record can cause it",
        ),
        "A guard inside the library. Report it with the records.",
    )
    KINE_ERR_W2F_UNIT_KIND = (
        0x6031,
        (
            "a mechanical unit on the way from the world is not usable: its index, kind, axis count or driving "
            "external axes",
        ),
        "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0"
        " to 5.",
    )
    KINE_ERR_F2W_MODE = (
        0x6032,
        (
            "Kine_CrdPosToWobjPos in mode -2 before the first initialisation",
        ),
        "Call Kine_InitKinematicParam first.",
    )
    KINE_ERR_F2W_UNIT_KIND = (
        0x6033,
        (
            "a mechanical unit on the way to the world is not usable: its index, kind, axis count or driving "
            "external axes",
        ),
        "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0"
        " to 5.",
    )
    KINE_ERR_AXIS_ORIGIN = (
        0x6034,
        (
            "on the way from the world the frame of a rotary axis lies exactly at the origin, that is, it was "
            "never set up",
        ),
        "Calibrate the axis and give its frame; an axis that truly stands at the origin is moved by a "
        "micrometre.",
    )
    KINE_ERR_HOLD_CONFLICT = (
        0x6050,
        (
            "the HeldByRobot bytes differ, but both are non-zero",
            "Kine_CrdPosToWobjPos in mode -2 with both or neither held",
        ),
        "Use the bytes 0 and 1, one of each.",
    )
    KINE_ERR_CHAIN_1 = (
        0x6051,
        (
            "nothing on the flange after the hold check; no record can cause it",
        ),
        "A guard inside the library. Report it with the records.",
    )
    KINE_ERR_CHAIN_2 = (
        0x6052,
        (
            "nothing off the flange after the hold check; no record can cause it",
        ),
        "A guard inside the library. Report it with the records.",
    )
    KINE_ERR_CHAIN_3 = (
        0x6053,
        (
            "hold flags that contradict each other after the hold check; no record can cause it",
        ),
        "A guard inside the library. Report it with the records.",
    )
    KINE_ERR_CHAIN_4 = (
        0x6054,
        (
            "hold flags that contradict each other after the hold check of the inverse; no record can cause it",
        ),
        "A guard inside the library. Report it with the records.",
    )
    KINE_ERR_CALIB_SINGULAR = (
        0x6060,
        (
            "five poses of a six-axis arm, or the poses of a four-axis arm, with orientations too much alike",
            "five poses that differ about one axis only",
        ),
        "Turn the tool more between the poses, a six-axis arm about two axes.",
    )
    KINE_ERR_CALIB_INPUT = (
        0x6061,
        (
            "the axis number is below 1",
            "the track moved less than 0.1 mm",
            "the taught positions differ in height only",
        ),
        "Count axes from 1; move the track further between the touches.",
    )
    KINE_ERR_CALIB_3 = (
        0x6063,
        (
            "the circle through the three points is too small",
        ),
        "Take points further apart.",
    )
    KINE_ERR_CALIB_4 = (
        0x6064,
        (
            "three poses of a six-axis arm with orientations too much alike",
            "three poses of a six-axis arm that differ about one axis only",
        ),
        "Turn about two axes, by 24 degrees or more.",
    )
    KINE_ERR_CALIB_POINTS_CLOSE = (
        0x6065,
        (
            "taught positions too close together",
            "the tip travels too little",
            "the X axis of a frame from two points is vertical",
            "Kine_CalcUnFixWobj_ObjPrm_3P with a mechanical unit that cannot be used",
        ),
        "Take positions further apart; check the unit.",
    )
    KINE_ERR_CALIB_COLLINEAR = (
        0x6066,
        (
            "the taught positions lie on one line",
            "two taught directions are parallel",
        ),
        "Take the third point off the line; for a tool take the touches around the point, not in one sweep.",
    )
    KINE_ERR_ZERO_VECTOR = (
        0x6070,
        (
            "the Z or X point of a stationary tool is less than 0.01 mm from its origin",
        ),
        "Take the point further away.",
    )
    KINE_ERR_CRD_WOBJ = (
        0x6071,
        (
            "Kine_CrdPosToWobjPos in mode -1 with a held tool",
        ),
        "Mode -1 is for a stationary tool; use mode -2 or Kine_WorldPosToFixWobjPos.",
    )
    KINE_ERR_ALIGN_NO_SOLUTION = (
        0x6080,
        (
            "the aligned pose is out of reach in the configuration of the current joints",
        ),
        "Move the arm away from its limits or its singular poses and align again.",
    )
    KINE_ERR_ALIGN_TURN = (
        0x6081,
        (
            "another Cfg4 of 0 to 7 leads nearer to the current joints",
            "a four-axis arm with axis 4 negative or beyond 90 degrees",
        ),
        "Jog nearer to the aligned orientation; a four-axis arm has nothing to align but its heading.",
    )
    KINE_ERR_CONFIG = (
        0x6090,
        (
            "a turn number more than 2 beyond the axis limits, or beyond 1000000 in size",
            "a posture that does not exist",
            "the configuration record is null",
        ),
        "Take the configuration from Kine_GetArmType or from a forward call with nearby joints.",
    )
    KINE_ERR_IK_1 = (
        0x6091,
        (
            "gravity deflects a joint by 2 degrees or more; stays inside the six-axis model",
        ),
        "Never returned by a call; the arm counts as rigid. Check weights and stiffness.",
    )
    KINE_ERR_INCH_SINGULAR = (
        0x6092,
        (
            "the target of a jog step is singular, by kind 2 of Kine_IsSingularity",
        ),
        "Jog joints (mode 1) through it.",
    )
    KINE_ERR_IK_SINGULAR = (
        0x6093,
        (
            "four-axis arm: the elbow is stretched or folded",
        ),
        "Keep the target away from the edge of the reach.",
    )
    KINE_ERR_IK_REACH = (
        0x6094,
        (
            "four-axis arm: the target is out of reach",
            "four-axis arm: no finite solution",
        ),
        "Check target, tool and work object; look for NaN among the inputs.",
    )
    KINE_ERR_SINGULAR = (
        0x6095,
        (
            "the refinement met a singular arm",
        ),
        "Keep the target away from singular poses.",
    )
    KINE_ERR_IK_6 = (
        0x6096,
        (
            "six-axis arm: the wrist centre lies on the axis of joint 1, or on the circle of the lateral offset",
        ),
        "Move the target away from the axis of joint 1.",
    )
    KINE_ERR_IK_7 = (
        0x6097,
        (
            "six-axis arm: the target is out of reach, too far or too near",
            "six-axis arm: the elbow is stretched or folded",
        ),
        "Check target, tool, work object and units of measure; bring the target nearer to the middle of the "
        "reach.",
    )
    KINE_ERR_IK_8 = (
        0x6098,
        (
            "six-axis arm: the wrist is straight, q5 within 0.26 degrees of 0 or 180",
        ),
        "Tilt the tool a little, or move through the straight wrist with joints.",
    )
    KINE_ERR_IK_9 = (
        0x6099,
        (
            "six-axis arm: the first correction is beyond 170 degrees",
        ),
        "The parameters are not those of a nominal arm with small errors: check twists, d3 and lateralOffset.",
    )
    KINE_ERR_IK_ACCURACY = (
        0x609A,
        (
            "six-axis arm: the refinement did not converge",
            "six-axis arm: no finite solution",
        ),
        "Check twists, d3 and lateralOffset as for KINE_ERR_IK_9; keep the target away from singular poses; "
        "look for NaN among the inputs.",
    )
    KINE_ERR_UNKNOWN_ARM_TYPE = (
        0xFFFFFFFF,
        (
            "the arm type is none of 4, 6 and 4110",
            "returned by Kine_IsSingularity it is KINE_SINGULAR: the joints are singular, which is an answer and "
            "no error",
        ),
        "Use KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS or KINE_ARM_FOUR_AXIS_4110.",
    )
    # codes: end

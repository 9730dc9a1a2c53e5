"""The exports of the library: one table of prototypes, in the order of the header."""

from __future__ import annotations

from ctypes import POINTER, PYFUNCTYPE, c_double, c_int32, c_uint32
from typing import Any, Dict, Tuple

from .parameters import KinematicParam
from .records import (
    ArmConfig,
    CalibError,
    ExtAxisParam,
    Frame,
    InchDir,
    Joints,
    Load,
    MechUnit,
    Pose,
    Tool,
    Wobj,
)

_CONFIG = POINTER(ArmConfig)
_DIR = POINTER(InchDir)
_DOUBLE = POINTER(c_double)
_ERROR = POINTER(CalibError)
_EXT_AXIS = POINTER(ExtAxisParam)
_FRAME = POINTER(Frame)
_JOINT = POINTER(Joints)
_LOAD = POINTER(Load)
_PARAM = POINTER(KinematicParam)
_POSE = POINTER(Pose)
_TOOL = POINTER(Tool)
_UNIT = POINTER(MechUnit)
_WOBJ = POINTER(Wobj)

_FORWARD = _JOINT, _TOOL, _WOBJ, _LOAD, _POSE

# The types of the arguments. SafeArea_Check returns an int32_t, all others a KineResult (uint32_t).
PROTOTYPES: Dict[str, Tuple[Any, ...]] = {
    "Kine_InitKinematicParam": (c_uint32, _PARAM),
    "Kine_SetAxisLimit": (_JOINT, _JOINT),
    "Kine_SetMechUnitGlobalCfg": (c_uint32, c_uint32, c_uint32),
    "Kine_SetMechUnitParam": (c_int32, _UNIT),
    "Kine_SetExtAxisParam": (c_int32, _EXT_AXIS),
    "Kine_GetArmType": (_JOINT, _CONFIG),
    "Kine_IsArmTypeValid": (_POSE,),
    "Kine_IsSingularity": (_JOINT, c_uint32),
    "Kine_JointToBasePos": _FORWARD,
    "Kine_JointToFlangePos": _FORWARD,
    "Kine_JointToWorldPos": _FORWARD,
    "Kine_JointToWobjPos": _FORWARD,
    "Kine_FKineVision": (_JOINT, _POSE),
    "Kine_WobjPosToJoint": (_POSE, _TOOL, _WOBJ, _LOAD, _JOINT),
    "Kine_WorldPosToFixWobjPos": (_POSE, _WOBJ, _POSE),
    "Kine_WorldPosToGripWobjPos": (_POSE, _WOBJ, _POSE, _POSE),
    "Kine_GripWobjPosToWorldPos": (_POSE, _WOBJ, _POSE, _POSE),
    "Kine_CrdPosToWobjPos": (_POSE, c_int32, _TOOL, _WOBJ, _LOAD, _POSE),
    "Kine_ToolCoordOffset": (_POSE, _FRAME, _POSE),
    "Kine_WobjCoordOffset": (_POSE, _FRAME, _POSE),
    "Kine_CalcExtToolPrm_1P": (_POSE, _FRAME),
    "Kine_CalcExtToolPrm_1PZX": (_POSE, _POSE, _POSE, _FRAME),
    "Kine_CalcExtToolPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_CalcExtToolPrm_3PZX": (_POSE, _POSE, _POSE, _POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_CalcGripToolPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_CalcGripToolPrm_3PZX": (_POSE, _POSE, _POSE, _POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_CalcGripToolPrm_5P": (_POSE, _POSE, _POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_CalcGripToolPrm_Scara2P": (_POSE, _POSE, _FRAME),
    "Kine_CalcExtWobj_UserPrm_2P": (_POSE, _POSE, _FRAME, _DOUBLE),
    "Kine_CalcExtWobj_UserPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _DOUBLE),
    "Kine_CalcExtWobj_UserPrm_Cirle3P": (_POSE, _POSE, _POSE, _FRAME, _DOUBLE),
    "Kine_CalcExtWobj_ObjPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _FRAME, _DOUBLE),
    "Kine_CalcGripWobj_UserPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _DOUBLE),
    "Kine_CalcGripWobj_ObjPrm_3P": (_POSE, _POSE, _POSE, _FRAME, _FRAME, _DOUBLE),
    "Kine_CalcUnFixWobj_ObjPrm_3P": (c_int32, _POSE, _POSE, _POSE, _FRAME, _DOUBLE),
    "Kine_CalcPositionerJ1Prm_3P": (c_int32, _POSE, _POSE, _POSE, _FRAME),
    "Kine_CalcPositionerJnPrm_3P": (c_int32, c_int32, _POSE, _POSE, _POSE, _FRAME, _FRAME),
    "Kine_CalcRobotBasePrm_3P": (c_int32, _POSE, _POSE, _POSE, _FRAME, _ERROR),
    "Kine_InchMovePosCalc": (_DIR, c_int32, _TOOL, _WOBJ, _LOAD, _DOUBLE, _JOINT, _JOINT),
    "Kine_CalcAlignPos": (c_int32, _JOINT, _TOOL, _WOBJ, _LOAD, _JOINT),
    "Kine_CalcAlignCoordProc": (_TOOL, _WOBJ),
    "Kine_CalcZVec": (_FRAME, _FRAME, _FRAME, c_double, _DOUBLE),
    "SafeArea_Check": (_JOINT, _DOUBLE, c_double),
    "Kine_CalcPosDif": (_POSE, _POSE, c_int32, _FRAME),
}


def result_type(name: str) -> Any:
    """The C type of what an export returns."""
    return c_int32 if name == "SafeArea_Check" else c_uint32


# A call takes a few microseconds and keeps the interpreter's lock (PYFUNCTYPE), so that calls never overlap.
FUNCTION_TYPES: Dict[str, Any] = {
    name: PYFUNCTYPE(result_type(name), *arguments) for name, arguments in PROTOTYPES.items()
}

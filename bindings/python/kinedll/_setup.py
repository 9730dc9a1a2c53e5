"""The calls that describe an arm and its cell, and those that ask about its configuration."""

from __future__ import annotations

from typing import Optional, Union

from ._calls import Calls, int32, uint32
from ._codes import ResultCode
from .modes import ArmType
from .parameters import FourAxisParam, KinematicParam, SixAxisParam
from .records import (
    ArmConfig,
    ExtAxisParam,
    Joints,
    JointsLike,
    MechUnit,
    PoseLike,
    joints_of,
    pose_of,
)

ArmParam = Union[SixAxisParam, FourAxisParam, KinematicParam]

_SINGULAR = 0xFFFFFFFF
_FOUR_AXIS_TYPES = ArmType.FOUR_AXIS, ArmType.FOUR_AXIS_4110


class Setup(Calls):
    """Setup and queries."""

    def init_kinematic_param(self, param: Optional[ArmParam], arm_type: Optional[int] = None) -> None:
        """Kine_InitKinematicParam: selects and initialises the arm.

        Clears the mechanical units and external axes, puts the robot base at the world origin and opens all axis
        limits. After a failure the arm is not initialised, whatever it was before.

        Args:
            param: lengths in mm, angles in degrees.
            arm_type: one of ArmType; not given it is 6 for a SixAxisParam and 4 for a FourAxisParam.

        Raises:
            TypeError: the record belongs to another arm type.
        """
        if arm_type is None:
            if isinstance(param, SixAxisParam):
                arm_type = ArmType.SIX_AXIS
            elif isinstance(param, FourAxisParam):
                arm_type = ArmType.FOUR_AXIS
            else:
                raise TypeError("an arm type is needed with these parameters")
        # The library reads the record of the arm type, and that of type 6 is the longer one.
        view = KinematicParam()
        if isinstance(param, SixAxisParam):
            if arm_type in _FOUR_AXIS_TYPES:
                raise TypeError(f"arm type {arm_type} takes a FourAxisParam")
            view.six_axis = param
        elif isinstance(param, FourAxisParam):
            if arm_type == ArmType.SIX_AXIS:
                raise TypeError("arm type 6 takes a SixAxisParam")
            view.four_axis = param
        elif param is not None:
            view = param
        self.call("Kine_InitKinematicParam", uint32(arm_type, "arm_type"), None if param is None else view)

    def set_axis_limit(self, upper: JointsLike, lower: JointsLike) -> None:
        """Kine_SetAxisLimit: sets the axis limits in degrees.

        They bound the turn numbers that a target may ask for; joint values are not checked against them. A pair with
        lower >= upper is replaced by an open one.
        """
        self.call("Kine_SetAxisLimit", joints_of(upper), joints_of(lower))

    def set_mech_unit_global_cfg(
        self, mech_unit_count: int, ext_axis_item_count: int, enable: Union[bool, int] = True
    ) -> None:
        """Kine_SetMechUnitGlobalCfg: says how many mechanical units (0 to 3) and external axes (0 to 6) the cell has.

        With enable false the counts are ignored and kept, and set_mech_unit_param and set_ext_axis_param do nothing.
        The flag is stored even when the counts are refused, and survives init_kinematic_param.
        """
        units, axes = uint32(mech_unit_count, "mech_unit_count"), uint32(ext_axis_item_count, "ext_axis_item_count")
        self.call("Kine_SetMechUnitGlobalCfg", units, axes, uint32(enable, "enable"))

    def set_mech_unit_param(self, index: int, unit: MechUnit) -> None:
        """Kine_SetMechUnitParam: stores mechanical unit 0 to 2; frames in mm and degrees.

        The unit at index 0 also says what the robot stands on: with option1 equal to 1 on the last axis of unit
        option2, otherwise fixed at the world origin. Does nothing while mechanical units are not enabled.
        """
        self.call("Kine_SetMechUnitParam", int32(index, "index"), unit)

    def set_ext_axis_param(self, index: int, param: ExtAxisParam) -> None:
        """Kine_SetExtAxisParam: stores external axis 0 to 5. Does nothing while mechanical units are not enabled."""
        self.call("Kine_SetExtAxisParam", int32(index, "index"), param)

    def get_arm_type(self, joints: JointsLike) -> ArmConfig:
        """Kine_GetArmType: the posture and turns of joints in degrees (not the arm type, in spite of the name)."""
        config = ArmConfig.__new__(ArmConfig)
        self.call("Kine_GetArmType", joints_of(joints), config)
        return config

    def is_arm_type_valid(self, pose: PoseLike) -> bool:
        """Kine_IsArmTypeValid: whether the turn numbers of a pose fit the axis limits, with two quarter turns to spare.

        KINE_ERR_CONFIG is the answer False here; other codes raise.
        """
        code = ResultCode.KINE_ERR_CONFIG
        return self.call("Kine_IsArmTypeValid", pose_of(pose), answers=(code,)) == 0

    def is_singularity(self, joints: JointsLike, kind: int = 0) -> bool:
        """Kine_IsSingularity: whether joints in degrees are close to a singularity.

        KINE_SINGULAR is the answer True; other codes raise. Kinds 0 and 1 have the narrow thresholds, kind 2 the wide
        ones of a jog step; with any other kind nothing is ever singular.
        """
        name = "Kine_IsSingularity"
        return self.call(name, joints_of(joints), uint32(kind, "kind"), answers=(_SINGULAR,)) == _SINGULAR

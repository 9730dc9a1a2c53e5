"""The records of the library, with the names of the header in snake_case.

Units are millimetres, degrees and kilograms; external axes are degrees (rotary) or millimetres (linear). Each record is
a ctypes structure of the header's layout: np.frombuffer(frame) and np.asarray(joints.axis) see its memory.
"""

from __future__ import annotations

import ctypes
from ctypes import c_double, c_float, c_int8, c_int16, c_int32, c_uint8, c_uint16, c_uint32
from typing import Iterable, Optional, Union

from ._fields import Doubles, Int, Ints, Nested, Numbers, Record, Records, record


@record
class Frame(Record):
    """A frame (KineFrame): position in mm, orientation R = Rz(a) * Ry(b) * Rx(c) in degrees."""

    _fields_ = [(name, c_double) for name in "xyzabc"]
    x: float
    y: float
    z: float
    a: float
    b: float
    c: float

    def __init__(
        self, x: float = 0.0, y: float = 0.0, z: float = 0.0, a: float = 0.0, b: float = 0.0, c: float = 0.0
    ) -> None:
        super().__init__(x, y, z, a, b, c)


FrameLike = Union[Frame, Numbers]


@record
class ArmConfig(Record):
    """Posture and turns of an arm (KineArmConfig).

    Arm type 6: cfg1, cfg2, cfg3 the quarter-turn numbers of axes 1, 4 and 6, cfg4 the posture 0 to 7. Arm type 4: cfg1
    the side of the elbow, +1 or -1, cfg4 the quarter-turn number of axis 4. Arm type 4110: cfg1 the side, cfg2, cfg3
    and cfg4 the quarter-turn numbers of axes 1, 2 and 4.
    """

    _fields_ = [(name, c_int32) for name in ("cfg1", "cfg2", "cfg3", "cfg4")]
    cfg1: Int
    cfg2: Int
    cfg3: Int
    cfg4: Int

    def __init__(self, cfg1: int = 0, cfg2: int = 0, cfg3: int = 0, cfg4: int = 0) -> None:
        super().__init__(cfg1, cfg2, cfg3, cfg4)


@record
class Pose(Record):
    """A Cartesian target (KinePose): frame in mm and degrees, configuration (see ArmConfig), external axes."""

    _fields_ = [
        ("frame", Frame),
        ("cfg1", c_int32),
        ("cfg2", c_int32),
        ("cfg3", c_int32),
        ("cfg4", c_int32),
        ("ext_axis", c_double * 6),
    ]
    frame: Nested[Frame]
    cfg1: Int
    cfg2: Int
    cfg3: Int
    cfg4: Int
    ext_axis: Doubles

    def __init__(
        self,
        frame: Optional[FrameLike] = None,
        cfg1: int = 0,
        cfg2: int = 0,
        cfg3: int = 0,
        cfg4: int = 0,
        ext_axis: Optional[Numbers] = None,
    ) -> None:
        super().__init__()
        if frame is not None:
            self.frame = frame
        self.cfg1, self.cfg2, self.cfg3, self.cfg4 = cfg1, cfg2, cfg3, cfg4
        if ext_axis is not None:
            self.ext_axis = ext_axis

    @property
    def config(self) -> ArmConfig:
        """The four configuration integers; assigning sets all four."""
        return ArmConfig(self.cfg1, self.cfg2, self.cfg3, self.cfg4)

    @config.setter
    def config(self, config: Union[ArmConfig, Iterable[int]]) -> None:
        self.cfg1, self.cfg2, self.cfg3, self.cfg4 = ArmConfig.of(config)


@record
class Joints(Record):
    """An axis position (KineJoint): up to eight axes in degrees, six external axes in degrees or mm.

    Arms use the first four or six axes. Axis 3 of a four-axis arm is the angle of its screw.
    """

    _fields_ = [("axis", c_double * 8), ("ext_axis", c_double * 6)]
    axis: Doubles
    ext_axis: Doubles

    def __init__(self, axis: Optional[Numbers] = None, ext_axis: Optional[Numbers] = None) -> None:
        super().__init__()
        if axis is not None:
            self.axis = axis
        if ext_axis is not None:
            self.ext_axis = ext_axis


@record
class Load(Record):
    """A load (KineLoad): mass in kg, centre of gravity in mm.

    aom, the inertia axes in degrees, and inertia are checked but have no effect on any result.
    """

    _fields_ = [("mass", c_double), ("cog", c_double * 3), ("aom", c_double * 3), ("inertia", c_double * 3)]
    mass: float
    cog: Doubles
    aom: Doubles
    inertia: Doubles

    def __init__(self, mass: float = 0.0, cog: Numbers = (), aom: Numbers = (), inertia: Numbers = ()) -> None:
        super().__init__(mass, cog, aom, inertia)


@record
class Tool(Record):
    """A tool (KineTool): its centre point in the flange, or in the world for a stationary tool.

    held_by_robot is 1 unless said otherwise; 0 is a stationary tool, the robot holding the work object.
    """

    _fields_ = [("held_by_robot", c_uint8), ("reserved", c_uint8 * 7), ("t_frame", Frame), ("t_load", Load)]
    held_by_robot: Int
    t_frame: Nested[Frame]
    t_load: Nested[Load]

    def __init__(
        self,
        t_frame: Optional[FrameLike] = None,
        t_load: Optional[Union[Load, Numbers]] = None,
        *,
        held_by_robot: int = 1,
    ) -> None:
        super().__init__(held_by_robot)
        if t_frame is not None:
            self.t_frame = t_frame
        if t_load is not None:
            self.t_load = t_load


@record
class Wobj(Record):
    """A work object (KineWobj): user frame and, in it, object frame.

    uf_fix is 1 unless said otherwise: the user frame is fixed, in the world, or in the flange for a held work object.
    With 0 it is carried by the mechanical unit mech_unit_index and u_frame is ignored; unit 0 is always refused.
    """

    _fields_ = [
        ("held_by_robot", c_uint8),
        ("uf_fix", c_uint8),
        ("mech_unit_index", c_int8),
        ("reserved", c_uint8 * 5),
        ("u_frame", Frame),
        ("o_frame", Frame),
    ]
    held_by_robot: Int
    uf_fix: Int
    mech_unit_index: Int
    u_frame: Nested[Frame]
    o_frame: Nested[Frame]

    def __init__(
        self,
        u_frame: Optional[FrameLike] = None,
        o_frame: Optional[FrameLike] = None,
        *,
        held_by_robot: int = 0,
        uf_fix: int = 1,
        mech_unit_index: int = 0,
    ) -> None:
        super().__init__(held_by_robot, uf_fix, mech_unit_index)
        if u_frame is not None:
            self.u_frame = u_frame
        if o_frame is not None:
            self.o_frame = o_frame


@record
class MechUnit(Record):
    """A mechanical unit (KineMechUnit): a positioner or a track.

    unit_kind is 1 for one linear axis, 2 for one rotary axis, 3 for two rotary axes; axis_count follows from it unless
    given. axis_param_index tells for each axis which external axis 0 to 5 drives it. option1 = 1 in the unit at index 0
    says that the robot stands on unit option2.
    """

    _fields_ = [
        ("active", c_int32),
        ("unit_kind", c_uint16),
        ("option1", c_uint8),
        ("option2", c_uint8),
        ("axis_count", c_uint8),
        ("reserved", c_uint8 * 7),
        ("axis_frame", Frame * 6),
        ("axis_param_index", c_uint8 * 6),
        ("reserved2", c_uint8 * 2),
    ]
    active: Int
    unit_kind: Int
    option1: Int
    option2: Int
    axis_count: Int
    axis_frame: Records[Frame]
    axis_param_index: Ints

    def __init__(
        self,
        unit_kind: int = 0,
        axis_frame: Iterable[FrameLike] = (),
        axis_param_index: Iterable[int] = (),
        *,
        axis_count: Optional[int] = None,
        active: int = 1,
        option1: int = 0,
        option2: int = 0,
    ) -> None:
        count = {1: 1, 2: 1, 3: 2}.get(unit_kind, 0) if axis_count is None else axis_count
        super().__init__(active, unit_kind, option1, option2, count, (), axis_frame, axis_param_index)


@record
class ExtAxisParam(Record):
    """One external axis (KineExtAxisParam). Only word[3] is read by the library: 1 says that the axis is linear."""

    _fields_ = [
        ("word", c_int16 * 4),
        ("raw0", c_uint32),
        ("raw1", c_uint32),
        ("angle_a", c_float),
        ("angle_b", c_float),
        ("value", c_uint32 * 7),
        ("tail", c_int16 * 3),
        ("reserved", c_uint8 * 2),
    ]
    word: Ints
    raw0: Int
    raw1: Int
    angle_a: float
    angle_b: float
    value: Ints
    tail: Ints

    def __init__(
        self,
        word: Iterable[int] = (),
        raw0: int = 0,
        raw1: int = 0,
        angle_a: float = 0.0,
        angle_b: float = 0.0,
        value: Iterable[int] = (),
        tail: Iterable[int] = (),
    ) -> None:
        super().__init__(word, raw0, raw1, angle_a, angle_b, value, tail)


@record
class InchDir(Record):
    """Directions of a jog step (KineInchDir), one per slot: -1, 0 or +1, any value being a factor of the step.

    Joint mode: the n axes of the arm, then the six external axes. Other modes: 0, 1, 2 along X, Y, Z, then 3, 4, 5
    about X, Y, Z for a six-axis arm, about Z, Y, X for a four-axis arm.
    """

    _fields_ = [("slot", c_int32 * 14)]
    slot: Ints

    def __init__(self, slot: Iterable[int] = ()) -> None:
        super().__init__(slot)


@record
class CalibError(Record):
    """How well the poses of a calibration agree (KineCalibError): distances in mm, 0 for exact poses."""

    _fields_ = [("largest", c_double), ("mean", c_double), ("smallest", c_double)]
    largest: float
    mean: float
    smallest: float

    def __init__(self, largest: float = 0.0, mean: float = 0.0, smallest: float = 0.0) -> None:
        super().__init__(largest, mean, smallest)


PoseLike = Union[Pose, Frame, Numbers]
JointsLike = Union[Joints, Numbers]


def pose_of(value: PoseLike) -> Pose:
    """The pose, or that of a frame or six numbers with configuration and external axes zero."""
    return value if isinstance(value, Pose) else Pose(value)


def joints_of(value: JointsLike) -> Joints:
    """The joints, or those of up to eight axes."""
    return value if isinstance(value, Joints) else Joints(value)

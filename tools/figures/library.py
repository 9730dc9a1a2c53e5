"""The library as the figures ask it: records with their public layout, a call that fails loudly, poses as numbers."""

import ctypes
from ctypes import Structure, byref, c_double, c_float, c_int8, c_int16, c_int32, c_uint8, c_uint16, c_uint32

SIX_AXIS, FOUR_AXIS = 6, 4


class Frame(Structure):
    _fields_ = [(name, c_double) for name in "XYZABC"]


class Pose(Structure):
    _fields_ = [("Frame", Frame), ("Cfg", c_int32 * 4), ("ExtAxis", c_double * 6)]


class Joint(Structure):
    _fields_ = [("Axis", c_double * 8), ("ExtAxis", c_double * 6)]


class Load(Structure):
    _fields_ = [("Mass", c_double), ("Cog", c_double * 3), ("Aom", c_double * 3), ("Inertia", c_double * 3)]


class Tool(Structure):
    _fields_ = [("HeldByRobot", c_uint8), ("Reserved", c_uint8 * 7), ("TFrame", Frame), ("TLoad", Load)]


class Wobj(Structure):
    _fields_ = [("HeldByRobot", c_uint8), ("UFFix", c_uint8), ("MechUnitIndex", c_int8), ("Reserved", c_uint8 * 5),
                ("UFrame", Frame), ("OFrame", Frame)]


class MechUnit(Structure):
    _fields_ = [("Active", c_int32), ("UnitKind", c_uint16), ("Option1", c_uint8), ("Option2", c_uint8),
                ("AxisCount", c_uint8), ("Reserved", c_uint8 * 7), ("AxisFrame", Frame * 6),
                ("AxisParamIndex", c_uint8 * 6), ("Reserved2", c_uint8 * 2)]


class ExtAxisParam(Structure):
    _fields_ = [("Word", c_int16 * 4), ("Raw", c_uint32 * 2), ("Angles", c_float * 2), ("Value", c_uint32 * 7),
                ("Tail", c_int16 * 3), ("Reserved", c_uint8 * 2)]


class ArmConfig(Structure):
    _fields_ = [("Cfg", c_int32 * 4)]


class CalibError(Structure):
    _fields_ = [(name, c_double) for name in ("Largest", "Mean", "Smallest")]


PUBLIC_SIZES = {Frame: 48, Pose: 112, Joint: 112, Load: 80, Tool: 136, Wobj: 104, MechUnit: 312, ExtAxisParam: 60,
                ArmConfig: 16, CalibError: 24}

SIX_AXIS_FIELDS = ("a1 a2 a3 d4 d6 d1 lateralOffset reserved0 alpha1 alpha2 alpha3 alpha4 alpha5 beta2 d3 d5 a4 a5 "
                   "mountX mountY").split()
FOUR_AXIS_FIELDS = "Link1Length Link2Length ZOffset ScrewLead r0 r1 r2 r3 Link1TiltX Link2TiltX Link1TiltY " \
                   "Link2TiltY".split()


def frame_of(numbers):
    return Frame(*numbers)


def numbers_of(frame):
    return tuple(getattr(frame, name) for name in "XYZABC")


def pose_of(numbers, cfg=(0, 0, 0, 0), ext=()):
    return Pose(Frame(*numbers), (c_int32 * 4)(*cfg), (c_double * 6)(*ext))


def joints_of(axes, ext=()):
    return Joint((c_double * 8)(*axes), (c_double * 6)(*ext))


HELD_TOOL_AT_FLANGE = Tool(HeldByRobot=1)
FIXED_WOBJ_AT_WORLD = Wobj(UFFix=1)


class Library:
    def __init__(self, path):
        for record, size in PUBLIC_SIZES.items():
            if ctypes.sizeof(record) != size:
                raise TypeError(f"{record.__name__} has {ctypes.sizeof(record)} bytes instead of {size}")
        self._dll = ctypes.CDLL(path)

    def code(self, name, *arguments):
        """The result code of a call. Records are passed by their address, integers as they are."""
        function = getattr(self._dll, name)
        function.restype = c_uint32
        return function(*(byref(a) if isinstance(a, (Structure, ctypes.Array)) else a for a in arguments))

    def call(self, name, *arguments):
        code = self.code(name, *arguments)
        if code != 0:
            raise RuntimeError(f"{name} returned 0x{code:04X}")

    def set_arm(self, arm_type, names, values):
        """Initialises an arm from a dictionary of the fields that are not zero."""
        unknown = set(values) - set(names)
        if unknown:
            raise ValueError(f"no such parameters: {sorted(unknown)}")
        block = (c_double * 34)(*(values.get(name, 0.0) for name in names))
        self.call("Kine_InitKinematicParam", arm_type, block)

    def set_six_axis(self, values):
        self.set_arm(SIX_AXIS, SIX_AXIS_FIELDS, values)

    def set_four_axis(self, values):
        self.set_arm(FOUR_AXIS, FOUR_AXIS_FIELDS, values)

    def forward(self, joints, call="Kine_JointToBasePos", tool=HELD_TOOL_AT_FLANGE, wobj=FIXED_WOBJ_AT_WORLD):
        """The pose that a Kine_JointTo... call gives."""
        pose = Pose()
        self.call(call, joints, tool, wobj, Load(), pose)
        return pose

    def inverse(self, target, tool=HELD_TOOL_AT_FLANGE, wobj=FIXED_WOBJ_AT_WORLD):
        joints = Joint()
        self.call("Kine_WobjPosToJoint", target, tool, wobj, Load(), joints)
        return joints

    def calibrate(self, name, *arguments):
        """The frame that a calibration gives; `arguments` name everything but the frame and what follows it."""
        frame, report = Frame(), (c_double * 3)()
        self.call(name, *arguments, frame, report)
        return frame, tuple(report)

    def offset(self, numbers, offset):
        """A frame moved and turned along and about its own axes."""
        out = Pose()
        self.call("Kine_ToolCoordOffset", pose_of(numbers), Frame(*offset), out)
        return numbers_of(out.Frame)

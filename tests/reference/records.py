"""Public records: little-endian layouts, result codes, and the forms the naive model works on.

Records at the boundary are bytes with angles in degrees. The forms below are plain objects; their
angles are in degrees right after unpacking and in radians after the conversion of the export layer.
"""

import struct
from types import SimpleNamespace

DEG2RAD = 0.017453292519943295
RAD2DEG = 57.29577951308232

FRAME = struct.Struct("<6d")
POSE = struct.Struct("<6d4i6d")
JOINT = struct.Struct("<14d")
LOAD = struct.Struct("<10d")
TOOL = struct.Struct("<B7x6d10d")
WOBJ = struct.Struct("<BBb5x6d6d")
MECH_UNIT = struct.Struct("<iHBBB7x36d6B2x")
EXT_AXIS_PARAM = struct.Struct("<4h2I2f7I3h2x")
DIRECTIONS = struct.Struct("<14i")
VECTOR = struct.Struct("<3d")
ONE_DOUBLE = struct.Struct("<d")
ARM_CONFIG = struct.Struct("<4i")
SIX_AXIS_PARAM = struct.Struct("<34d")
FOUR_AXIS_PARAM = struct.Struct("<12d")

OK = 0
MODEL_PARAM = 0x6000
NOT_INITIALISED = 0x6001
MECH_UNIT_REFUSED = 0x6002
EXT_AXIS_REFUSED = 0x6003
MECH_UNIT_COUNT = 0x6004
POSE_REFUSED = 0x6010
TOOL_REFUSED = 0x6011
WOBJ_REFUSED = 0x6012
LOAD_REFUSED = 0x6013
JOINT_REFUSED = 0x6014
HOLD = 0x6016
OFFSET_FRAME = 0x6017
DIRECTION = 0x6018
W2F_MODE = 0x6030
W2F_UNIT_KIND = 0x6031
F2W_MODE = 0x6032
F2W_UNIT_KIND = 0x6033
AXIS_ORIGIN = 0x6034
HOLD_CONFLICT = 0x6050
CALIB_SINGULAR = 0x6060
CALIB_INPUT = 0x6061
CALIB_CIRCLE = 0x6063
CALIB_ORIENTATIONS = 0x6064
CALIB_POINTS_CLOSE = 0x6065
CALIB_COLLINEAR = 0x6066
ZERO_VECTOR = 0x6070
CRD_WOBJ = 0x6071
ALIGN_NO_SOLUTION = 0x6080
ALIGN_TURN = 0x6081
CONFIG = 0x6090
INCH_SINGULAR = 0x6092
IK_SINGULAR = 0x6093
IK_REACH = 0x6094
SINGULAR = 0x6095
IK_SHOULDER = 0x6096
IK_ELBOW = 0x6097
IK_WRIST = 0x6098
IK_FIRST_STEP = 0x6099
IK_ACCURACY = 0x609A
UNKNOWN_ARM = 0xFFFFFFFF


class Refused(Exception):
    """A non-zero result code on its way to the caller."""

    def __init__(self, code):
        super().__init__(hex(code))
        self.code = code


def scaled(values, start, count, factor):
    """A copy of the values with [start, start + count) multiplied by the factor."""
    return [v * factor if start <= i < start + count else v for i, v in enumerate(values)]


def unpack_load(values):
    return SimpleNamespace(mass=values[0], cog=list(values[1:4]), aom=list(values[4:7]),
                           inertia=list(values[7:10]))


def unpack_tool(data):
    held, *values = TOOL.unpack(data)
    return SimpleNamespace(held=held, frame=list(values[:6]), load=unpack_load(values[6:]))


def unpack_wobj(data):
    held, fix, unit, *values = WOBJ.unpack(data)
    return SimpleNamespace(held=held, fix=fix, unit=unit, user=list(values[:6]), object=list(values[6:]))


def unpack_pose(data):
    values = POSE.unpack(data)
    return SimpleNamespace(frame=list(values[:6]), cfg=list(values[6:10]), ext=list(values[10:]))


def pack_pose(record):
    return POSE.pack(*record.frame, *record.cfg, *record.ext)


def unpack_joint(data):
    values = JOINT.unpack(data)
    return SimpleNamespace(axis=list(values[:8]), ext=list(values[8:]))


def pack_joint(record):
    return JOINT.pack(*record.axis, *record.ext)


def unpack_mech_unit(data):
    active, kind, option1, option2, axis_count, *rest = MECH_UNIT.unpack(data)
    return SimpleNamespace(active=active, kind=kind, option1=option1, option2=option2,
                           axis_count=axis_count, frames=[rest[6 * i:6 * i + 6] for i in range(6)],
                           axis_index=rest[36:42])


def convert_ext_axis_param(data):
    """The eighteen stored fields: words widened, both angles scaled in double and rounded to float."""
    fields = list(EXT_AXIS_PARAM.unpack(data))
    for i in (6, 7):
        fields[i] = struct.unpack("<f", struct.pack("<f", fields[i] * DEG2RAD))[0]
    return fields


def angles_in_range(values):
    """Degrees; exactly +-180 and NaN pass."""
    return not any(abs(v) > 180.0 for v in values)


def load_is_legal(load):
    return angles_in_range(load.aom) and not any(v < 0.0 for v in [load.mass] + load.inertia)


def tool_is_legal(tool):
    return angles_in_range(tool.frame[3:]) and load_is_legal(tool.load)

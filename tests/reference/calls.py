"""Random records and single calls: arms, joints, tools, hostile fields, nulls and shared memory.

Lengths in mm, angles in degrees, as at the boundary.
"""

import math
import random
import struct
from collections import namedtuple

from exports import OUTPUT_SIZES, RESULT_PLACES, SIGNATURES
from records import (DIRECTIONS, EXT_AXIS_PARAM, FOUR_AXIS_PARAM, FRAME, JOINT, LOAD, MECH_UNIT, ONE_DOUBLE,
                     POSE, SIX_AXIS_PARAM, TOOL, VECTOR, WOBJ)

# shared: index of the input whose memory also receives the result, or None.
Call = namedtuple("Call", "name args shared")

HOSTILE_DOUBLES = (math.nan, math.inf, -math.inf, 1e300, -1e300, 1.7e308, 1e17, -1e17, 1e9, 5e-324, -1e-310,
                   -0.0, 0.0, 1e-5, -1e-5, 9.9e-6, -1.1e-5, -1.0, -0.0001)
EDGE_ANGLES = (180.0, -180.0, math.nextafter(180.0, 200.0), math.nextafter(-180.0, -200.0), 180.0000001,
               179.9999999, 360.0, -270.0, 1e6)
RIGHT_ANGLES = (0.0, 90.0, -90.0, 180.0, -180.0)
HOSTILE_INTS = (-1, -2, 3, 4, 6, 7, 100, 255, 256, 65536, -2147483648, 2147483647)
HOSTILE_UINTS = (3, 4, 6, 7, 255, 65536, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)
HOSTILE_FACTORS = (2, -2, 10, 100, -1000, 1_000_000, 2147483647, -2147483648)
SHAREABLE = ("joint", "pose", "tool", "frame")


def chance(rng, probability):
    return rng.random() < probability


def any_angle(rng):
    return rng.choice(RIGHT_ANGLES) if chance(rng, 0.08) else rng.uniform(-180.0, 180.0)


def any_frame(rng, reach):
    roll = rng.random()
    if roll < 0.1:
        return [0.0] * 6
    angles = [0.0] * 3 if roll < 0.25 else [any_angle(rng) for _ in range(3)]
    return [rng.uniform(-reach, reach) for _ in range(3)] + angles


def any_load(rng, heavy=15.0):
    if chance(rng, 0.35):
        return [0.0] * 10
    return ([rng.uniform(0.0, heavy)] + [rng.uniform(-200.0, 200.0) for _ in range(3)]
            + [any_angle(rng) for _ in range(3)] + [rng.uniform(0.0, 1000.0) for _ in range(3)])


def any_ext(rng):
    return [0.0] * 6 if chance(rng, 0.1) else [rng.uniform(-400.0, 400.0) for _ in range(6)]


# Arms

def six_axis_record(rng):
    v = [0.0] * 34
    flavour = rng.random()
    if flavour < 0.15:  # a published arm with an offset shoulder and no offset at the wrist
        v[1], v[2], v[3], v[6] = 431.8, 20.3, 431.8, -150.05
        weights = [37234.7, 1024.2, 248.9, 8743.9, 28.25, 28.25, 0.0]
    elif flavour < 0.17:  # so small that no pivot is large enough
        v[1], v[3] = rng.uniform(1.1e-5, 9e-5), rng.uniform(1.1e-5, 9e-5)
        weights = [0.0] * 7
    else:
        v[0] = rng.choice((0.0, rng.uniform(20.0, 300.0)))
        v[1] = rng.uniform(250.0, 1000.0)
        v[2] = rng.choice((0.0, rng.uniform(10.0, 200.0)))
        v[3] = rng.uniform(250.0, 1000.0)
        v[4] = rng.choice((0.0, rng.uniform(20.0, 200.0)))
        v[5] = rng.uniform(-100.0, 800.0)
        v[6] = rng.choice((0.0, rng.uniform(-150.0, 150.0)))
        weights = [rng.uniform(-40000.0, 40000.0) for _ in range(7)]
    v[7], v[20:24] = rng.uniform(-9.0, 9.0), [rng.uniform(-9.0, 9.0) for _ in range(4)]
    v[8:13] = [90.0, 0.0, 90.0, -90.0, 90.0]
    v[14] = v[6]
    if chance(rng, 0.03):  # another sense of the twists: the closed form is then no start at all
        v[8:13] = [-90.0, 0.0, -90.0, 90.0, -90.0]
    if v[1] > 1.0 and chance(rng, 0.55):  # calibrated: small errors everywhere
        for i in range(8, 14):
            v[i] += rng.uniform(-0.3, 0.3)
        for i in range(14, 18):
            v[i] += rng.uniform(-1.0, 1.0)
    if chance(rng, 0.4):
        v[18:20] = [rng.uniform(-60.0, 60.0), rng.uniform(-60.0, 60.0)]
    if not chance(rng, 0.25):
        v[24:31] = weights
        low, high = (3.2, 3.9) if chance(rng, 0.2) else (4.0, 6.0)
        v[31:34] = [10.0 ** rng.uniform(low, high) for _ in range(3)]
    return v


def four_axis_record(rng):
    v = [0.0] * 12
    if chance(rng, 0.03):  # a determinant below its threshold
        v[0], v[1], v[3] = rng.uniform(0.5, 2.0), rng.uniform(0.5, 2.0), rng.uniform(1e-5, 5e-5)
    else:
        v[0], v[1], v[3] = rng.uniform(100.0, 600.0), rng.uniform(100.0, 500.0), rng.uniform(5.0, 40.0)
    v[2] = rng.uniform(-300.0, 400.0)
    v[4:8] = [rng.uniform(-9.0, 9.0) for _ in range(4)]
    if chance(rng, 0.65):
        v[8:12] = [rng.uniform(-3.0, 3.0) for _ in range(4)]
    return v


def six_axis_joints(rng, values):
    elbow_angle = math.degrees(math.atan2(values[2], values[3]))
    turns = [360.0 * rng.randint(-6, 6) if chance(rng, 0.25) else 0.0 for _ in range(3)]
    if chance(rng, 0.06):
        return [rng.choice((0.0, 90.0, -90.0, 180.0, -180.0, 270.0, 360.0, 540.0)) for _ in range(8)]
    if chance(rng, 0.05):
        return [rng.uniform(-800.0, 800.0) for _ in range(8)]
    q2 = rng.uniform(-175.0, 175.0)
    q3 = rng.uniform(-85.0, 265.0) - elbow_angle
    q5 = rng.choice((-1.0, 1.0)) * rng.uniform(2.0, 175.0)
    awkward = rng.random()
    if awkward < 0.03:
        q5 = rng.choice((0.0, 0.01, -0.02, 0.03, 180.0))
    elif awkward < 0.06:
        q3 = rng.choice((90.0, -90.0)) - elbow_angle + rng.choice((0.0, 0.05, -0.2))
    return [rng.uniform(-180.0, 180.0) + turns[0], q2, q3, rng.uniform(-180.0, 180.0) + turns[1], q5,
            rng.uniform(-180.0, 180.0) + turns[2], rng.uniform(-9.0, 9.0), rng.uniform(-9.0, 9.0)]


def four_axis_joints(rng, values, arm_type):
    if chance(rng, 0.06):
        return [rng.choice((0.0, 45.0, 90.0, -90.0, 180.0, -180.0, 360.0)) for _ in range(8)]
    turns = [360.0 * rng.randint(-6, 6) if chance(rng, 0.3) else 0.0 for _ in range(3)]
    q1 = rng.uniform(-180.0, 180.0)
    q2 = rng.choice((-1.0, 1.0)) * rng.uniform(1.0, 179.0)
    if arm_type == 4110 or chance(rng, 0.05):
        q1 += turns[0]
        q2 += turns[1]
    if chance(rng, 0.04):
        q2 = rng.choice((0.0, 0.02, -0.01, 180.0, -180.0, 179.99))
    screw = rng.uniform(-3000.0, 3000.0)
    return [q1, q2, screw, rng.uniform(-180.0, 180.0) + turns[2]] + [rng.uniform(-9.0, 9.0) for _ in range(4)]


# Hostile records

def with_double(data, index, value):
    return data[:8 * index] + struct.pack("<d", value) + data[8 * index + 8:]


# First double and number of doubles of each record; what stands before or between is integers.
DOUBLES = {"joint": range(0, 14), "pose": [*range(0, 6), *range(8, 14)], "tool": range(1, 17),
           "wobj": range(1, 13), "load": range(0, 10), "unit": range(2, 38), "frame": range(0, 6),
         "vector": range(0, 3), "steps": range(0, 3), "error": range(0, 3), "tilt": range(0, 1)}
ANGLES = {"pose": (3, 4, 5), "tool": (4, 5, 6, 11, 12, 13), "wobj": (4, 5, 6, 10, 11, 12), "load": (4, 5, 6),
          "frame": (3, 4, 5)}


def hostile_record(rng, kind, data):
    """None, or the record with one or more fields that no caller should send."""
    kind = kind.removesuffix("_inout")
    roll = rng.random()
    if roll < 0.12 or data is None:
        return None
    if roll < 0.2:
        return bytes(rng.randrange(256) for _ in range(len(data)))
    if kind == "directions":
        position = 4 * rng.randrange(14)
        return data[:position] + struct.pack("<i", rng.choice(HOSTILE_FACTORS)) + data[position + 4:]
    if kind == "ext_axis":
        return bytes(rng.randrange(256) for _ in range(len(data)))
    if kind in ("tool", "wobj", "unit") and roll < 0.35:
        header = 16 if kind == "unit" else 8
        position = rng.randrange(header)
        return data[:position] + bytes([rng.choice((0, 1, 2, 3, 127, 128, 255))]) + data[position + 1:]
    if kind == "pose" and roll < 0.35:
        position = 48 + 4 * rng.randrange(4)
        return data[:position] + struct.pack("<i", rng.choice(HOSTILE_INTS)) + data[position + 4:]
    if kind in ANGLES and roll < 0.55:
        return with_double(data, rng.choice(ANGLES[kind]), rng.choice(EDGE_ANGLES))
    places = range(len(data) // 8) if kind == "param" else DOUBLES[kind]
    for _ in range(1 if roll < 0.9 else 4):
        data = with_double(data, rng.choice(list(places)), rng.choice(HOSTILE_DOUBLES))
    return data


def make_call(rng, name, *args, hostile=0.0):
    """Possibly with a hostile argument, a null result or a result in the memory of an input."""
    args = list(args)
    kinds = SIGNATURES[name]
    if chance(rng, hostile):
        for _ in range(1 if chance(rng, 0.85) else 2):
            i = rng.randrange(len(args))
            if kinds[i] == "uint":
                args[i] = rng.choice(HOSTILE_UINTS)
            elif kinds[i] == "int":
                args[i] = rng.choice(HOSTILE_INTS)
            elif kinds[i] == "double":
                args[i] = rng.choice(HOSTILE_DOUBLES)
            elif kinds[i] in OUTPUT_SIZES:
                args[i] = False
            else:
                args[i] = hostile_record(rng, kinds[i], args[i])
    shared = None
    place = RESULT_PLACES[name]
    if place is not None and args[place] is True and chance(rng, 0.06):
        possible = [i for i, kind in enumerate(kinds) if kind in SHAREABLE and args[i] is not None
                    and len(args[i]) >= OUTPUT_SIZES[kinds[place]]]
        if possible:
            shared = rng.choice(possible)
    return Call(name, tuple(args), shared)


# Cells: what stands around the arm

class Cell:
    """One configured arm with its surroundings, as far as the generator needs to know them."""

    def __init__(self, rng, arm_type):
        self.rng = rng
        self.arm_type = arm_type
        self.values = six_axis_record(rng) if arm_type == 6 else four_axis_record(rng)
        self.unit_count = rng.choice((0, 1, 2, 2, 3, 3))
        self.reach = 1200.0
        self.wide_turns = False

    def param(self):
        if self.arm_type == 6:
            return SIX_AXIS_PARAM.pack(*self.values)
        return FOUR_AXIS_PARAM.pack(*self.values)

    def joints(self):
        rng = self.rng
        if self.arm_type == 6:
            axis = six_axis_joints(rng, self.values)
        else:
            axis = four_axis_joints(rng, self.values, self.arm_type)
        return JOINT.pack(*axis, *any_ext(rng))

    def near_singular(self, joints):
        """The joints with the elbow or the wrist moved around a singular place."""
        rng = self.rng
        offset = rng.uniform(-6.0, 6.0)
        if self.arm_type != 6:
            return with_double(joints, 1, rng.choice((0.0, 180.0, -180.0, 360.0, 720.0)) + offset)
        if chance(rng, 0.5):
            return with_double(joints, 4, rng.choice((0.0, 180.0, -180.0)) + offset)
        elbow_angle = math.degrees(math.atan2(self.values[2], self.values[3]))
        return with_double(joints, 2, rng.choice((90.0, -90.0)) - elbow_angle + offset)

    def held_bytes(self):
        roll = self.rng.random()
        if roll < 0.62:
            return 1, 0
        if roll < 0.9:
            return 0, 1
        return self.rng.choice(((2, 0), (255, 0), (0, 2), (0, 255), (1, 2), (2, 1), (1, 1), (0, 0), (7, 0)))

    def surroundings(self):
        """Tool, work object and payload."""
        rng = self.rng
        tool_held, wobj_held = self.held_bytes()
        tool = TOOL.pack(tool_held, *any_frame(rng, 250.0), *any_load(rng))
        fix, unit = 1, rng.randint(-128, 127) if chance(rng, 0.1) else 0
        roll = rng.random()
        if roll < 0.25 and self.unit_count >= 2:
            fix, unit = 0, rng.randrange(1, self.unit_count)
        elif roll < 0.32 and self.unit_count >= 1:
            fix, unit = 2, rng.randint(0, self.unit_count)
        elif roll < 0.36:
            fix, unit = rng.choice((0, 0, 2, 255)), rng.choice((0, -1, 1, 2, 3, 127, -128))
        wobj = WOBJ.pack(wobj_held, fix, unit, *any_frame(rng, 300.0 if wobj_held else 1500.0),
                         *any_frame(rng, 150.0))
        return tool, wobj, LOAD.pack(*any_load(rng))

    def turn_shift(self):
        """A change of turn numbers, mostly small."""
        rng = self.rng
        if self.wide_turns and chance(rng, 0.3):
            return rng.choice((637, -640, 3000, -20000, 90_000, 1_000_001, -1_000_001, 2_000_000_000))
        return rng.choice((0, 0, 0, 1, -1, 2, 4, -4, 8, -8, 20, -24, 25, -28))


def unit_record(rng):
    kind = rng.choice((1, 2, 3, 2, 3)) if chance(rng, 0.92) else rng.choice((0, 4, 255, 65535))
    axis_count = rng.randint(2, 6) if chance(rng, 0.9) else rng.randint(0, 2)
    frames = []
    for _ in range(6):
        frame = any_frame(rng, 1500.0)
        if chance(rng, 0.6) and frame[:3] == [0.0] * 3:
            frame[:3] = [rng.uniform(100.0, 900.0) for _ in range(3)]
        frames += frame
    indexes = [rng.randrange(6) if chance(rng, 0.97) else rng.choice((6, 7, 255)) for _ in range(6)]
    option1 = rng.choice((0, 1)) if chance(rng, 0.97) else 2
    option2 = rng.choice((0, 0, 1, 2)) if chance(rng, 0.95) else rng.choice((3, 128, 255))
    return MECH_UNIT.pack(rng.choice((1, 1, 1, 0, -5)), kind, option1, option2, axis_count, *frames, *indexes)


def ext_axis_record(rng):
    return EXT_AXIS_PARAM.pack(*[rng.randint(-32768, 32767) for _ in range(4)],
                               *[rng.getrandbits(32) for _ in range(2)],
                               rng.uniform(-180.0, 180.0), rng.uniform(-180.0, 180.0),
                               *[rng.getrandbits(32) for _ in range(7)],
                               *[rng.randint(-32768, 32767) for _ in range(3)])


def random_target(rng, cell):
    """A pose anywhere around the arm: in reach, out of reach or in an awkward place."""
    reach = rng.choice((300.0, 700.0, 1500.0, 5000.0))
    frame = [rng.uniform(-reach, reach) for _ in range(3)] + [any_angle(rng) for _ in range(3)]
    if chance(rng, 0.1):
        frame = [0.0, 0.0, rng.uniform(-900.0, 900.0)] + [0.0, rng.choice((0.0, 180.0)), 0.0]
    if cell.arm_type == 6:
        cfg = [rng.randint(-3, 3) for _ in range(3)] + [rng.randint(0, 7)]
    else:
        cfg = [rng.choice((1, -1))] + [rng.randint(-3, 3) for _ in range(3)]
    if chance(rng, 0.08):
        cfg[rng.randrange(4)] = rng.choice((-1, 8, 9, 30, -30, 639, -641, 1_000_001, 2147483647, -2147483648))
    return POSE.pack(*frame, *cfg, *any_ext(rng))


def rng_for(seed, number):
    return random.Random(f"{seed}/{number}")


def describe(call):
    """The call with its records decoded."""
    layouts = {"joint": JOINT, "pose": POSE, "tool": TOOL, "wobj": WOBJ, "load": LOAD, "unit": MECH_UNIT,
               "ext_axis": EXT_AXIS_PARAM, "frame": FRAME, "vector": VECTOR, "steps": VECTOR,
               "directions": DIRECTIONS, "error": VECTOR, "tilt": ONE_DOUBLE}
    lines = [call.name]
    for kind, value in zip(SIGNATURES[call.name], call.args):
        if isinstance(value, bytes):
            arm_layout = SIX_AXIS_PARAM if len(value) == 272 else FOUR_AXIS_PARAM
            layout = layouts.get(kind.removesuffix("_inout"), arm_layout)
            value = list(layout.unpack(value))
        lines.append(f"    {kind}: {value}")
    if call.shared is not None:
        lines.append(f"    the result shares the memory of argument {call.shared}")
    return "\n".join(lines)

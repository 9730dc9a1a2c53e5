"""Random calls of the calibrations: poses taught with a known tool, frame, axis or track, and poses that no
careful user teaches. Millimetres and degrees.
"""

import math
import struct
from functools import partial

from calibration import determinant, normal_equations
from calls import (HOSTILE_INTS, Call, any_angle, any_ext, any_frame, chance, ext_axis_record,
                   hostile_record, unit_record, with_double)
from generate_motion import any_direction, motion_call
from generate_points import (around, chord_along_y, circle, moved, on_threshold, square_of_sides,
                             three_points, with_measure)
from geometry import add, cross, euler_to_rotation, rotate, subtract, transposed
from records import DEG2RAD, FRAME, MECH_UNIT, ONE_DOUBLE, POSE, VECTOR

FOUR_AXIS = (4, 4110)
UNSERVED = (0, 3, 5, 7, 4111, 65540, 0x7FFFFFFF, 0x80000006, 0xFFFFFFFF)


def pose(rng, position, angles, ext=None):
    cfg = [rng.randint(-3, 3) for _ in range(4)]
    return POSE.pack(*position, *angles, *cfg, *(any_ext(rng) if ext is None else ext))


def pose_at(rng, position, ext=None):
    """Any angles: only the position is used."""
    return pose(rng, position, [any_angle(rng) for _ in range(3)], ext)


def any_position(rng):
    reach = rng.choice((100.0, 800.0, 2000.0))
    return tuple(rng.uniform(-reach, reach) for _ in range(3))


def any_noise(rng):
    return rng.choice((0.0, 0.0, 0.0, 1e-9, 1e-4, 0.1, 0.1, 5.0))


def beside(rng, count):
    """Memory of a report or a tilt, which holds something already, or none."""
    if chance(rng, 0.05):
        return None
    return struct.pack(f"<{count}d", *[rng.uniform(-1e6, 1e6) for _ in range(count)])


def report(rng):
    return beside(rng, VECTOR.size // 8)


def tilt(rng):
    return beside(rng, ONE_DOUBLE.size // 8)


def calibration_call(rng, name, *args):
    return motion_call(rng, name, *args, hostile=rng.choice((0.0, 0.0, 0.1, 0.5)))


# Tools

def orientations(rng, count, planar):
    return [[v if abs(v) <= 180.0 else math.remainder(v, 360.0) for v in angles]
            for angles in raw_orientations(rng, count, planar)]


def raw_orientations(rng, count, planar):
    """Angles of the taught poses: mostly well apart, sometimes hardly or not at all."""
    first = [rng.uniform(-180.0, 180.0)] + ([0.0, 0.0] if planar and chance(rng, 0.7) else
                                            [rng.uniform(-80.0, 80.0) for _ in range(2)])
    roll = rng.random()
    if roll < 0.55:
        return [first] + [any_angles(rng, first, planar) for _ in range(count - 1)]
    if roll < 0.63:
        return [first] * count
    if roll < 0.73:  # about one axis only
        axis = 0 if planar else rng.randrange(3)
        return [[v + (rng.uniform(-60.0, 60.0) if i == axis and n else 0.0) for i, v in enumerate(first)]
                for n in range(count)]
    if roll < 0.78:  # two of them alike
        others = [any_angles(rng, first, planar) for _ in range(count - 1)]
        return [first, rng.choice((first, others[-1]))] + others[1:]
    if roll < 0.88:
        return near_singular(rng, first, count, planar)
    # Hardly different: around the limits of the determinants.
    size = 10.0 ** (rng.uniform(-6.0, 0.0) if chance(rng, 0.4) else rng.uniform(-0.5, 1.6))
    if planar:
        size = 10.0 ** rng.uniform(-4.0, -0.5)
    return [first] + [[v + rng.gauss(0.0, size) for v in first] for _ in range(count - 1)]


def near_singular(rng, first, count, planar):
    """Apart by so much that the determinant lies around its limit."""
    turning = range(1 if planar else 3)
    shifts = [[rng.gauss(0.0, 1.0) if i in turning else 0.0 for i in range(3)] for _ in range(count - 1)]

    def make(size):
        return [first] + [[v + size * d for v, d in zip(first, shift)] for shift in shifts]

    def measure(angles):
        r0, *others = [rotation(a) for a in angles]
        rows = []
        for other in others:
            block = subtract(r0, other)
            rows += [block[0:2], block[3:5]] if planar else [block[0:3], block[3:6], block[6:9]]
        return determinant(normal_equations(rows, [0.0] * len(rows))[0])

    limit = 0.01 if count == 3 and not planar else 1e-10
    return with_measure(make, measure, around(rng, limit))


def any_angles(rng, first, planar):
    if chance(rng, 0.07):
        return [rng.choice((0.0, 90.0, -90.0, 180.0, -180.0)) for _ in range(3)]
    if planar:
        return [rng.uniform(-180.0, 180.0)] + first[1:]
    return [rng.uniform(-180.0, 180.0) for _ in range(3)]


def rotation(angles):
    return euler_to_rotation(*[v * DEG2RAD for v in angles])


class TaughtTool:
    """A tool tip t and poses that bring it to given points."""

    def __init__(self, rng, cell):
        self.rng = rng
        self.planar = cell.arm_type in FOUR_AXIS or chance(rng, 0.1)
        length = rng.choice((0.0, 1.0, 200.0, 200.0, 600.0))
        self.t = [rng.uniform(-length, length) for _ in range(3)]
        self.noise = any_noise(rng)

    def pose_to(self, point, angles):
        flange = subtract(point, rotate(rotation(angles), self.t))
        return pose(self.rng, [v + self.rng.gauss(0.0, self.noise) for v in flange], angles)

    def fan(self, count):
        """Poses around one point."""
        rng = self.rng
        if chance(rng, 0.35):
            return self.careless(count)
        point = any_position(rng)
        fan = [self.pose_to(point, angles) for angles in orientations(rng, count, self.planar)]
        if self.planar and chance(rng, 0.5):  # the heights do not matter
            fan = [with_double(data, 2, rng.uniform(-100.0, 100.0)) for data in fan]
        return fan

    def careless(self, count):
        """Positions that do not belong together: close, on a line, or anywhere."""
        rng = self.rng
        points = three_points(rng, (1e-5,), (4.4721e-3,), flat=self.planar and chance(rng, 0.7))
        if chance(rng, 0.15):  # tips of the report more than its largest smallest distance apart
            points = [tuple(v * rng.choice((40.0, 1e3)) for v in p) for p in points]
        points = (points + [any_position(rng) for _ in range(count)])[:count]
        return [pose(rng, p, a) for p, a in zip(points, orientations(rng, count, self.planar))]

    def directions(self):
        """Origin, Z and X pose: the tip itself leads along the axes."""
        rng = self.rng
        points = three_points(rng, (0.01, 1e-5), (0.01, 1e-5)) if chance(rng, 0.4) else upright_corner(rng)
        roll = rng.random()
        first = [rng.uniform(-180.0, 180.0) for _ in range(3)]
        if self.planar:
            first[1:] = [0.0, 0.0]
        alike = [first] * 3
        if roll < 0.5:
            return [self.pose_to(p, a) for p, a in zip(points, alike)]
        if roll < 0.85:
            return [self.pose_to(p, a) for p, a in zip(points, orientations(rng, 3, self.planar))]
        return [pose(rng, p, a) for p, a in zip(points, orientations(rng, 3, self.planar))]


def upright_corner(rng):
    """An origin, a point above it in any direction and a third one aside."""
    origin = any_position(rng)
    z = any_direction(rng)
    size = rng.choice((5.0, 100.0))
    aside = cross(z, any_direction(rng))
    along = rng.uniform(-0.5, 0.5)
    return [origin, add(origin, [size * v for v in z]),
            add(origin, [size * (a + along * v) for a, v in zip(aside, z)])]


def ext_1p(name, rng, cell):
    yield calibration_call(rng, name, pose_at(rng, any_position(rng)), True)


def ext_1pzx(name, rng, cell):
    points = three_points(rng, (0.01,), (0.01,)) if chance(rng, 0.6) else upright_corner(rng)
    poses = [pose_at(rng, p) for p in points]
    if chance(rng, 0.1):  # on a four-axis arm the Z point may be anything but too wide an angle
        poses[1] = pose_at(rng, [rng.choice((math.nan, math.inf, 1e300, 0.0)) for _ in range(3)])
    yield calibration_call(rng, name, *poses, True)


def tool_by_fan(name, rng, cell, count):
    last = () if name.endswith("Scara2P") else (report(rng),)
    yield calibration_call(rng, name, *TaughtTool(rng, cell).fan(count), True, *last)


def tool_by_fan_zx(name, rng, cell):
    tool = TaughtTool(rng, cell)
    if chance(rng, 0.5):  # most of the steps behind the tip need a good one
        point = any_position(rng)
        fan = [tool.pose_to(point, any_angles(rng, [0.0] * 3, tool.planar)) for _ in range(3)]
    else:
        fan = tool.fan(3)
    yield calibration_call(rng, name, *fan, *tool.directions(), True, report(rng))


# Work objects

def user_2p(name, rng, cell):
    origin = any_position(rng) if chance(rng, 0.7) else (0.0, 0.0, 0.0)
    roll = rng.random()
    if roll < 0.4:
        point = any_position(rng)
    elif roll < 0.65:
        point = moved(rng, origin, on_threshold(rng, 0.001))
    else:  # almost upright
        height = rng.choice((1.0, -1.0, 50.0, 1000.0))
        sine = on_threshold(rng, 1e-5)
        heading = rng.choice((0.0, 0.5 * math.pi, rng.uniform(-3.0, 3.0)))
        point = add(origin, (height * sine * math.cos(heading), height * sine * math.sin(heading), height))
    yield calibration_call(rng, name, pose_at(rng, origin), pose_at(rng, point), True, tilt(rng))


def user_3p(name, rng, cell):
    points = three_points(rng, (0.01, 1e-5), (1e-5,))
    yield calibration_call(rng, name, *[pose_at(rng, p) for p in points], True, tilt(rng))


def circle_3p(name, rng, cell):
    roll = rng.random()
    if roll < 0.45:
        points = circle(rng)
    elif roll < 0.65:  # around the limit of the determinant
        a, b = any_direction(rng), any_direction(rng)
        first = any_position(rng) if chance(rng, 0.5) else (0.0, 0.0, 0.0)
        area = math.sqrt(sum(v * v for v in cross(a, b)))
        size = math.sqrt(math.sqrt(around(rng, 1e-5)) / area) if area > 0.0 else 1.0
        points = [first, add(first, [size * v for v in a]), add(first, [size * v for v in b])]
    else:
        points = three_points(rng, (1e-5,), (4.4721e-3,))
    yield calibration_call(rng, name, *[pose_at(rng, p) for p in points], True, tilt(rng))


def object_3p(name, rng, cell):
    user = any_frame(rng, 1500.0)
    if chance(rng, 0.2):
        user[3:] = [rng.choice((rng.uniform(-1e4, 1e4), 540.0, 180.0)) for _ in range(3)]  # not tested
    poses = [pose_at(rng, p) for p in three_points(rng, (0.01,), (1e-5,))]
    yield calibration_call(rng, name, *poses, FRAME.pack(*user), True, tilt(rng))


def object_on_unit(name, rng, cell):
    index, _ = yield from any_unit(rng, cell)
    points = three_points(rng, (0.01,), (1e-5,))
    ext = any_ext(rng)
    poses = [pose_at(rng, p, ext if chance(rng, 0.6) else None) for p in points]
    yield calibration_call(rng, name, index, *poses, True, tilt(rng))


# Units

def any_unit(rng, cell, linear=None):
    """A unit of the cell, configured anew: its index and its record. Linear: what most axes say of it."""
    own = list(range(min(cell.unit_count + 1, 3)))
    index = rng.choice(own)
    data = unit_record(rng)
    fields = list(MECH_UNIT.unpack(data))
    if chance(rng, 0.85):
        fields[0:5] = [1, rng.choice((1, 2, 3)), rng.choice((0, 0, 1)), rng.choice((0, 1)),
                       rng.choice((0, 1, 1, 2, 2, 2, 3, 4, 6))]
    if chance(rng, 0.04):
        fields[4] = rng.choice((7, 255))
        fields[0] = 0  # accepted without a look at the number of axes
    if chance(rng, 0.3):
        fields[41:47] = rng.sample(range(6), 6)
    data = MECH_UNIT.pack(*fields)
    yield Call("Kine_SetMechUnitParam", (index, data), None)
    for place in sorted(set(fields[41:44])):
        wanted = (0, 1) if linear is None else [linear] * 14 + [0, 1, 2, -1, 256, -32768]
        words = struct.pack("<4h", *[rng.choice((0, 1, 2, -1)) for _ in range(3)], rng.choice(wanted))
        if place < 6:
            yield Call("Kine_SetExtAxisParam", (place, words + ext_axis_record(rng)[8:]), None)
    if chance(rng, 0.07):
        index = rng.choice((-1, cell.unit_count, cell.unit_count + 1, *HOSTILE_INTS))
    return index, data


def axis_places(data):
    return MECH_UNIT.unpack(data)[41:47]


def axis_poses(rng, place):
    """Three touches of a mark on a rotary axis, with the values of the axis."""
    values = [rng.uniform(-180.0, 180.0) for _ in range(3)]
    if chance(rng, 0.3):
        values = [0.0, rng.choice((30.0, 90.0, -60.0)), rng.choice((180.0, 120.0, -120.0))]
    roll = rng.random()
    if roll < 0.5:
        points = circle(rng, values)
        points = [tuple(v + rng.gauss(0.0, 0.05) for v in p) for p in points] if chance(rng, 0.3) else points
    elif roll < 0.65:  # an axis in the XY plane, exactly or nearly
        points = circle(rng, values, lying=True)
    elif roll < 0.72:
        points = chord_along_y(rng)
    else:
        points = three_points(rng, (1e-5,), (4.4721e-3,))
    poses = []
    for point, value in zip(points, values):
        ext = any_ext(rng)
        if place < 6:
            ext[place] = value
        poses.append(pose_at(rng, point, ext))
    return poses


def first_axis(name, rng, cell):
    index, data = yield from any_unit(rng, cell, 0 if chance(rng, 0.8) else None)
    yield calibration_call(rng, name, index, *axis_poses(rng, axis_places(data)[0]), True)


def further_axis(name, rng, cell):
    index, data = yield from any_unit(rng, cell, 0 if chance(rng, 0.85) else None)
    n = rng.choice((2, 2, 2, 1, 3, 4, 0, -1)) if chance(rng, 0.9) else rng.choice(HOSTILE_INTS)
    place = axis_places(data)[n - 1] if 1 <= n <= 6 else 0
    reference = any_frame(rng, 1500.0)
    if chance(rng, 0.15):
        reference[3:] = [rng.uniform(-1e4, 1e4) for _ in range(3)]  # not tested
    yield calibration_call(rng, name, index, n, *axis_poses(rng, place), FRAME.pack(*reference), True)


def base_on_track(name, rng, cell):
    index, data = yield from any_unit(rng, cell, 1 if chance(rng, 0.9) else None)
    place = axis_places(data)[0]
    start = rng.uniform(-2000.0, 2000.0) if chance(rng, 0.7) else 0.0
    moves = [rng.uniform(-1500.0, 1500.0) for _ in range(2)]
    if chance(rng, 0.35):
        moves = [rng.choice((1.0, -1.0)) * on_threshold(rng, 0.1) for _ in range(2)]
    heading = any_angle(rng) * DEG2RAD
    mark = any_position(rng)
    along = [start, start + moves[0], start + moves[1]]
    noise = any_noise(rng)
    points = [rotate(transposed(euler_to_rotation(heading, 0.0, 0.0)), subtract(mark, (x, 0.0, 0.0)))
              for x in along]
    roll = rng.random()
    if roll < 0.65:
        points = [tuple(v + rng.gauss(0.0, noise) for v in p) for p in points]
    elif roll < 0.9:
        points = square_of_sides(rng) if chance(rng, 0.4) else three_points(rng, (1e-5,), (1e-5,),
                                                                            flat=chance(rng, 0.3))
    else:  # far, so that the turn comes out tiny
        points = [tuple(v * rng.choice((1e3, 1e6)) for v in p) for p in points]
    poses = []
    for point, value in zip(points, along):
        ext = any_ext(rng)
        if place < 6:
            ext[place] = value
        poses.append(pose_at(rng, point, ext))
    yield calibration_call(rng, name, index, *poses, True, report(rng))


# Arm types

def strange_arm(rng, cell):
    """A few calibrations with an arm type that is not served or not initialised; then the cell again."""
    record = cell.param()
    roll = rng.random()
    if roll < 0.4:
        yield Call("Kine_InitKinematicParam", (rng.choice(UNSERVED), None), None)
    elif roll < 0.7:
        yield Call("Kine_InitKinematicParam", (cell.arm_type, None), None)
    else:
        yield Call("Kine_InitKinematicParam", (cell.arm_type, hostile_record(rng, "param", record)), None)
    for _ in range(rng.randint(2, 5)):
        _, _, make = rng.choice(CALIBRATIONS)
        yield from make(rng, cell)
    yield Call("Kine_InitKinematicParam", (cell.arm_type, record), None)
    yield Call("Kine_SetMechUnitGlobalCfg", (cell.unit_count, 6, 1), None)
    for index in range(cell.unit_count):
        yield Call("Kine_SetMechUnitParam", (index, unit_record(rng)), None)


MAKERS = (
    (1, "Kine_CalcExtToolPrm_1P", ext_1p),
    (2, "Kine_CalcExtToolPrm_1PZX", ext_1pzx),
    (3, "Kine_CalcExtToolPrm_3P", partial(tool_by_fan, count=3)),
    (3, "Kine_CalcExtToolPrm_3PZX", tool_by_fan_zx),
    (3, "Kine_CalcGripToolPrm_3P", partial(tool_by_fan, count=3)),
    (3, "Kine_CalcGripToolPrm_3PZX", tool_by_fan_zx),
    (3, "Kine_CalcGripToolPrm_5P", partial(tool_by_fan, count=5)),
    (2, "Kine_CalcGripToolPrm_Scara2P", partial(tool_by_fan, count=2)),
    (2, "Kine_CalcExtWobj_UserPrm_2P", user_2p),
    (2, "Kine_CalcExtWobj_UserPrm_3P", user_3p),
    (3, "Kine_CalcExtWobj_UserPrm_Cirle3P", circle_3p),
    (2, "Kine_CalcExtWobj_ObjPrm_3P", object_3p),
    (1, "Kine_CalcGripWobj_UserPrm_3P", user_3p),
    (2, "Kine_CalcGripWobj_ObjPrm_3P", object_3p),
    (2, "Kine_CalcUnFixWobj_ObjPrm_3P", object_on_unit),
    (3, "Kine_CalcPositionerJ1Prm_3P", first_axis),
    (4, "Kine_CalcPositionerJnPrm_3P", further_axis),
    (3, "Kine_CalcRobotBasePrm_3P", base_on_track),
)

# Weight, the exports a query is about, and the query.
CALIBRATIONS = tuple((weight, (name,), partial(make, name)) for weight, name, make in MAKERS)
CALIBRATION_QUERIES = CALIBRATIONS + ((1, tuple(name for _, name, _ in MAKERS), strange_arm),)

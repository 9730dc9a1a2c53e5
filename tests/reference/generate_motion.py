"""Random queries of conversions, jog targets, alignment and the small utilities around one cell."""

import math

from calls import (HOSTILE_FACTORS, HOSTILE_INTS, Call, any_ext, any_frame, chance, make_call, random_target,
                   with_double)
from geometry import cross, euler_to_rotation, rot_product, rotation_to_euler_exact, transposed
from records import DEG2RAD, DIRECTIONS, FRAME, LOAD, OK, POSE, RAD2DEG, TOOL, VECTOR, WOBJ

HELD_PAIRS = ((0, 0), (1, 1), (2, 0), (255, 0), (0, 2), (0, 255), (1, 2), (2, 1), (255, 255))
PLAIN_TOOL = TOOL.pack(1, *[0.0] * 16)
PLAIN_WOBJ = WOBJ.pack(0, 1, 0, *[0.0] * 12)
NO_LOAD = LOAD.pack(*[0.0] * 10)


def with_byte(data, place, value):
    return data[:place] + bytes([value]) + data[place + 1:]


def with_angles(data, first, angles):
    for i, angle in enumerate(angles):
        data = with_double(data, first + i, angle)
    return data


def motion_call(rng, name, *args, hostile=0.08):
    """A call that has, now and then, one null argument or some other hostile one."""
    call = make_call(rng, name, *args, hostile=hostile)
    pointers = [i for i, value in enumerate(call.args) if isinstance(value, bytes) or value is True]
    if call.shared is None and pointers and chance(rng, 0.03):
        i = rng.choice(pointers)
        values = list(call.args)
        values[i] = False if values[i] is True else None
        call = call._replace(args=tuple(values))
    return call


def any_surroundings(rng, cell):
    """As the cell has them, more often with unusual held bytes and with a fixed work object."""
    tool, wobj, load = cell.surroundings()
    if chance(rng, 0.12):
        tool_held, wobj_held = rng.choice(HELD_PAIRS)
        tool, wobj = with_byte(tool, 0, tool_held), with_byte(wobj, 0, wobj_held)
    if chance(rng, 0.35):
        wobj = with_byte(wobj, 1, 1)
    return tool, wobj, load


# Conversions

def fixed_conversion(rng, cell):
    _, wobj, _ = cell.surroundings()
    if chance(rng, 0.8):
        wobj = with_byte(wobj, 0, rng.choice((0, 0, 0, 2, 255)))
    yield motion_call(rng, "Kine_WorldPosToFixWobjPos", random_target(rng, cell), wobj, True, hostile=0.15)


def held_conversion(rng, cell):
    """Into the held work object and out again."""
    _, wobj, _ = cell.surroundings()
    if chance(rng, 0.85):
        wobj = with_byte(wobj, 0, rng.choice((1, 1, 1, 2, 255)))
    flange = random_target(rng, cell)
    answer = yield motion_call(rng, "Kine_WorldPosToGripWobjPos", random_target(rng, cell), wobj, flange,
                               True, hostile=0.15)
    pose = answer.output if answer.code == OK else random_target(rng, cell)
    yield motion_call(rng, "Kine_GripWobjPosToWorldPos", pose, wobj, flange, True, hostile=0.12)


def coordinate_conversion(rng, cell):
    tool, wobj, load = any_surroundings(rng, cell)
    mode = rng.choice((-1, -2, -2)) if chance(rng, 0.8) else rng.choice((0, 1, 2, -3, *HOSTILE_INTS))
    if mode == -1 and chance(rng, 0.75):
        tool = with_byte(tool, 0, 0)
    yield motion_call(rng, "Kine_CrdPosToWobjPos", random_target(rng, cell), mode, tool, wobj, load, True,
                      hostile=0.12)


def offsets(rng, cell):
    pose = random_target(rng, cell)
    offset = any_frame(rng, rng.choice((1.0, 50.0, 2000.0)))
    if chance(rng, 0.2):
        offset[:3] = [0.0] * 3
    for name in ("Kine_ToolCoordOffset", "Kine_WobjCoordOffset"):
        yield motion_call(rng, name, pose, FRAME.pack(*offset), True, hostile=0.15)


# Jog

def any_directions(rng, axes):
    slots = [0] * 14
    in_use = 6 if chance(rng, 0.75) else axes + 6 if chance(rng, 0.7) else 14
    roll = rng.random()
    if roll < 0.06:
        pass
    elif roll < 0.56:
        slots[rng.randrange(in_use)] = rng.choice((1, -1))
    elif roll < 0.74:
        slots = [rng.choice((0, 0, 1, -1)) if i < in_use else 0 for i in range(14)]
    elif roll < 0.84:
        slots[rng.randrange(3)] = rng.choice((1, -1))
        slots[rng.randrange(3, 6)] = rng.choice((1, -1))
    elif roll < 0.95:
        slots[rng.randrange(in_use)] = rng.choice((2, -2, 3, -5, 10))
    else:
        for _ in range(rng.randint(1, 3)):
            slots[rng.randrange(in_use)] = rng.choice(HOSTILE_FACTORS)
    return DIRECTIONS.pack(*slots)


def upright(rng):
    """A rotation with its X axis nearly along the vertical: a short leading column."""
    a, c = rng.uniform(-math.pi, math.pi), rng.uniform(-math.pi, math.pi)
    b = 0.5 * math.pi - 10.0 ** rng.uniform(-8.0, -3.0)
    return euler_to_rotation(a, rng.choice((b, -b)), c)


def any_steps(rng):
    joint = rng.choice((0.1, 1.0, 5.0, rng.uniform(0.01, 20.0)))
    linear = rng.choice((0.1, 1.0, 10.0, rng.uniform(0.01, 100.0)))
    turn = rng.choice((0.1, 1.0, 5.0, rng.uniform(0.01, 20.0), rng.uniform(1.0, 60.0)))
    if chance(rng, 0.08):
        turn = rng.choice((0.0, 45.0, 90.0, 180.0, -1.0, 360.0))
    if chance(rng, 0.04):
        joint, linear = rng.choice((0.0, -1.0)), rng.choice((0.0, -2.0))
    return VECTOR.pack(joint, linear, turn)


def jog(rng, cell):
    """A few steps from one place; a step array may be used again, in the radians it was left in."""
    joints = cell.joints()
    if chance(rng, 0.12):
        joints = cell.near_singular(joints)
    axes = 6 if cell.arm_type == 6 else 4
    tool, wobj, load = any_surroundings(rng, cell)
    steps = any_steps(rng)
    if chance(rng, 0.15):
        tool = yield from turn_tool(rng.choice((2, 4, 5)), joints, tool, wobj, load, upright(rng))
    for _ in range(rng.randint(2, 4)):
        mode = rng.choice((1, 2, 3, 4, 5)) if chance(rng, 0.94) else rng.choice((0, 6, *HOSTILE_INTS))
        answer = yield motion_call(rng, "Kine_InchMovePosCalc", any_directions(rng, axes), mode, tool, wobj,
                                   load, steps, joints, True)
        used = answer.changed.get(5)
        steps = used if used is not None and chance(rng, 0.2) else any_steps(rng)
        if answer.code == OK and chance(rng, 0.4):
            joints = answer.output


def jog_upright(rng, cell):
    """One turn about Y that ends with the X axis almost along the vertical."""
    joints = cell.joints()
    tool, wobj, load = any_surroundings(rng, cell)
    mode = rng.choice((2, 2, 4, 5))
    turn = rng.uniform(0.5, 20.0)
    rest = 0.5 * math.pi - turn * DEG2RAD - 10.0 ** rng.uniform(-9.0, -4.0)
    start = euler_to_rotation(0.0, rest, rng.uniform(-math.pi, math.pi))
    tool = yield from turn_tool(mode, joints, tool, wobj, load, start)
    directions = DIRECTIONS.pack(0, 0, 0, 0, 1, *[0] * 9)
    yield motion_call(rng, "Kine_InchMovePosCalc", directions, mode, tool, wobj, load,
                      VECTOR.pack(1.0, 1.0, turn), joints, True, hostile=0.02)


# Alignment

ALIGNMENT_PROBES = {2: "Kine_JointToBasePos", 5: "Kine_JointToWorldPos", 4: "Kine_JointToWobjPos"}


def any_direction(rng):
    """A direction along an axis, between two or three of them or anywhere, exactly or nearly so."""
    roll = rng.random()
    places = rng.sample(range(3), 1 if roll < 0.45 else 2 if roll < 0.8 else 3)
    if roll > 0.9:
        return unit([rng.gauss(0.0, 1.0) for _ in range(3)])
    direction = [0.0] * 3
    for i in places:
        direction[i] = rng.choice((1.0, -1.0))
    if chance(rng, 0.6):
        size = 10.0 ** (rng.uniform(-9.0, -2.0) if chance(rng, 0.5) else rng.uniform(-5.7, -4.3))
        direction = [v + size * rng.gauss(0.0, 1.0) for v in direction]
    return unit(direction)


def unit(v):
    length = math.sqrt(sum(c * c for c in v))
    return [c / length for c in v]


def rotation_with_z(rng, z):
    """Any rotation with the given third column."""
    helper = rng.choice(((1.0, 0.0, 0.0), (0.0, 1.0, 0.0), (0.0, 0.0, 1.0), unit([1.0, 2.0, 3.0])))
    x = cross(helper, z)
    if math.sqrt(sum(c * c for c in x)) < 0.1:
        x = cross((0.48, 0.6, 0.64), z)
    if math.sqrt(sum(c * c for c in x)) < 0.1:
        x = cross((0.64, 0.48, -0.6), z)
    x = unit(x)
    y = cross(z, x)
    return (x[0], y[0], z[0], x[1], y[1], z[1], x[2], y[2], z[2])


def rotation_of(pose):
    return euler_to_rotation(*[v * DEG2RAD for v in pose[3:6]])


def angles_of(rotation):
    return [v * RAD2DEG for v in rotation_to_euler_exact(rotation)]


def alignment(rng, cell):
    tool, wobj, load = any_surroundings(rng, cell)
    joints = cell.joints()
    if cell.arm_type != 6 and chance(rng, 0.6):
        joints = with_double(joints, 3, rng.uniform(0.0, rng.choice((90.0, 180.0, 630.0))))
    mode = rng.choice((2, 5, 4, -1)) if chance(rng, 0.94) else rng.choice((0, 1, 3, 6, *HOSTILE_INTS))
    if chance(rng, 0.65):
        wanted = rotation_with_z(rng, any_direction(rng))
        if mode in (2, 5) and tool[0] == 0:
            tool, load = with_angles(tool, 7, [0.0] * 10), NO_LOAD
            joints = yield from turn_flange(joints, wanted)
        else:
            tool = yield from turn_tool(mode, joints, tool, wobj, load, wanted)
    answer = yield motion_call(rng, "Kine_CalcAlignPos", mode, joints, tool, wobj, load, True, hostile=0.06)
    if answer.code == OK and chance(rng, 0.3):
        yield motion_call(rng, "Kine_CalcAlignPos", mode, answer.output, tool, wobj, load, True, hostile=0.03)


def turn_tool(mode, joints, tool, wobj, load, wanted):
    """The tool with such angles that it stands as wanted in the reference frame of the mode."""
    probe = ALIGNMENT_PROBES.get(mode, "Kine_JointToFlangePos" if tool[0] == 0 else "Kine_JointToWobjPos")
    straight = with_angles(tool, 4, [0.0] * 3)
    answer = yield Call(probe, (joints, straight, wobj, load, True), None)
    if answer.code != OK:
        return tool
    rest = rotation_of(POSE.unpack(answer.output))
    if not all(math.isfinite(v) for v in rest):
        return tool
    return with_angles(tool, 4, angles_of(rot_product(transposed(rest), wanted)))


def turn_flange(joints, wanted):
    """Joints with the flange where it was, standing as wanted in the world."""
    answer = yield Call("Kine_JointToWobjPos", (joints, PLAIN_TOOL, PLAIN_WOBJ, NO_LOAD, True), None)
    if answer.code != OK:
        return joints
    target = with_angles(answer.output, 3, angles_of(wanted))
    answer = yield Call("Kine_WobjPosToJoint", (target, PLAIN_TOOL, PLAIN_WOBJ, NO_LOAD, True), None)
    return answer.output if answer.code == OK else joints


def exchange(rng, cell):
    """Tool and work object change roles; the second call meets what the first one left."""
    tool, wobj, _ = cell.surroundings()
    if chance(rng, 0.85):
        tool = with_byte(tool, 0, 0)
    if chance(rng, 0.8):
        wobj = with_byte(wobj, 0, rng.choice((1, 1, 1, 2, 255)))
    answer = yield motion_call(rng, "Kine_CalcAlignCoordProc", tool, wobj, hostile=0.2)
    if chance(rng, 0.3):
        yield motion_call(rng, "Kine_CalcAlignCoordProc", answer.changed.get(0), answer.changed.get(1))


# Small utilities

def normal(rng, cell):
    reach = rng.choice((1e-18, 1e-6, 1.0, 1000.0, 1000.0, 1e6))
    p1, p2, p3 = ([rng.uniform(-reach, reach) for _ in range(3)] for _ in range(3))
    roll = rng.random()
    if roll < 0.1:
        p1, p2 = ([float(rng.randint(-9, 9)) for _ in range(3)] for _ in range(2))
        p3 = [a + rng.choice((2.0, -1.0, 0.0)) * (b - a) for a, b in zip(p1, p2)]
    elif roll < 0.15:
        p3 = list(rng.choice((p1, p2)))
    elif roll < 0.25:
        p1, p2, p3 = ([float(rng.randint(-1, 1)) for _ in range(3)] for _ in range(3))
    frames = [FRAME.pack(*p, *[rng.uniform(-400.0, 400.0) for _ in range(3)]) for p in (p1, p2, p3)]
    length = rng.choice((5.0, 1.0, 0.0, -2.5, rng.uniform(-1000.0, 1000.0)))
    yield motion_call(rng, "Kine_CalcZVec", *frames, length, True, hostile=0.15)


def safe_area(rng, cell):
    centre = VECTOR.pack(*[rng.uniform(-1000.0, 1000.0) for _ in range(3)])
    yield motion_call(rng, "SafeArea_Check", cell.joints(), centre, rng.uniform(0.0, 3000.0), hostile=0.2)


def difference(rng, cell):
    first, second = random_target(rng, cell), random_target(rng, cell)
    roll = rng.random()
    if roll < 0.15:
        second = first
    elif roll < 0.35:
        values = list(POSE.unpack(first))
        for i in rng.sample(range(6), rng.randint(1, 3)):
            values[i] += rng.choice((100.0, -90.0, 1e-3, 1e-7, 5.0))
        second = POSE.pack(*values[:10], *any_ext(rng))
    frame = rng.choice((1, -1)) if chance(rng, 0.88) else rng.choice((0, 2, *HOSTILE_INTS))
    yield motion_call(rng, "Kine_CalcPosDif", first, second, frame, True, hostile=0.15)


# Weight, the exports a query is about, and the query.
MOTION_QUERIES = (
    (3, ("Kine_WorldPosToFixWobjPos",), fixed_conversion),
    (3, ("Kine_WorldPosToGripWobjPos", "Kine_GripWobjPosToWorldPos"), held_conversion),
    (4, ("Kine_CrdPosToWobjPos",), coordinate_conversion),
    (3, ("Kine_ToolCoordOffset", "Kine_WobjCoordOffset"), offsets),
    (12, ("Kine_InchMovePosCalc",), jog),
    (1, ("Kine_InchMovePosCalc",), jog_upright),
    (12, ("Kine_CalcAlignPos",), alignment),
    (3, ("Kine_CalcAlignCoordProc",), exchange),
    (2, ("Kine_CalcZVec",), normal),
    (1, ("SafeArea_Check",), safe_area),
    (3, ("Kine_CalcPosDif",), difference),
)

"""Seeded random calls in sequences: setups, bad setups, re-setups, and many queries between them.

A sequence is a coroutine: it yields a Call and is sent the answer, so that a pose reached by one call
becomes the target of the next. A list of wanted exports limits the queries: a query that yields none of
them is not chosen, and its other calls only prepare.
"""

from calls import (HOSTILE_INTS, HOSTILE_UINTS, Call, Cell, chance, ext_axis_record, hostile_record,
                   make_call, random_target, unit_record)
from exports import SIGNATURES
from generate_calibration import CALIBRATION_QUERIES
from generate_motion import MOTION_QUERIES
from records import FOUR_AXIS_PARAM, JOINT, OK, POSE, SIX_AXIS_PARAM

FORWARD = ("Kine_JointToBasePos", "Kine_JointToFlangePos", "Kine_JointToWorldPos", "Kine_JointToWobjPos")
ARM_TYPES = {"six": (6,), "four": (4, 4110), "all": (6, 6, 4, 4110)}
ALL = tuple(SIGNATURES)


# Sequences

def sequence(rng, only="all", wanted=ALL):
    """One to three configurations in turn, each with its queries."""
    first = True
    for _ in range(rng.choice((1, 2, 3))):
        yield from configuration(rng, rng.choice(ARM_TYPES[only]), first, wanted)
        first = False


def cold_sequence(rng, only="all", wanted=ALL):
    """Every export before any initialisation."""
    cell = Cell(rng, rng.choice(ARM_TYPES[only]))
    yield Call("Kine_SetAxisLimit", limit_records(rng, cell), None)
    yield Call("Kine_SetMechUnitParam", (-1, None), None)
    yield Call("Kine_SetExtAxisParam", (-1, None), None)
    for _ in range(30 if wanted is ALL else 1):
        tool, wobj, load = cell.surroundings()
        yield from plain_query(rng, cell, tool, wobj, load, 0.1)
        yield make_call(rng, "Kine_WobjPosToJoint", random_target(rng, cell), tool, wobj, load, True)
    for _, names, make in MOTION_QUERIES * 4 + CALIBRATION_QUERIES * 2:
        if set(names) & set(wanted):
            yield from make(rng, cell)


def configuration(rng, arm_type, first, wanted):
    cell = Cell(rng, arm_type)
    if first or chance(rng, 0.1):
        yield from refused_initialisation(rng, cell, first)
    call = make_call(rng, "Kine_InitKinematicParam", arm_type, cell.param(), hostile=0.0)
    if chance(rng, 0.05):
        call = call._replace(args=(arm_type, hostile_record(rng, "param", call.args[1])))
    answer = yield call
    usable = answer.code == OK
    count = cell.unit_count if cell.unit_count or chance(rng, 0.5) else 0
    yield Call("Kine_SetMechUnitGlobalCfg", (count, 6 if chance(rng, 0.93) else rng.randint(0, 5), 1), None)
    if chance(rng, 0.5):
        yield make_call(rng, "Kine_SetAxisLimit", *limit_records(rng, cell), hostile=0.06)
    yield from units(rng, cell)
    for _ in range(rng.randint(10, 22) if usable else 2):
        yield from query(rng, cell, wanted)
        if chance(rng, 0.04):
            yield from late_setup(rng, cell)


def refused_initialisation(rng, cell, first):
    """An initialisation that fails, and a few calls after it."""
    if not chance(rng, 0.12):
        return
    record = list(cell.values)
    record[rng.choice((0, 1, 3))] = rng.choice((-1.0, -0.001, 0.0, 9.99e-6))
    if cell.arm_type == 6:
        record[1] = rng.choice((0.0, -5.0))
        data = SIX_AXIS_PARAM.pack(*record)
    else:
        data = FOUR_AXIS_PARAM.pack(*record)
    arm_type, data = rng.choice(((cell.arm_type, data), (cell.arm_type, None), (5, cell.param()),
                                 (0, None), (rng.choice(HOSTILE_UINTS), None)))
    answer = yield Call("Kine_InitKinematicParam", (arm_type, data), None)
    if first:
        yield Call("Kine_SetMechUnitGlobalCfg", (cell.unit_count, 6, 1), None)
    if answer.code != OK:
        yield make_call(rng, "Kine_SetAxisLimit", *limit_records(rng, cell))
        for _ in range(4):
            tool, wobj, load = cell.surroundings()
            yield from plain_query(rng, cell, tool, wobj, load, 0.1)
        yield make_call(rng, "Kine_WobjPosToJoint", random_target(rng, cell), tool, wobj, load, True)


def limit_records(rng, cell):
    roll = rng.random()
    if roll < 0.6:
        size = [rng.uniform(1800.0, 4000.0) for _ in range(14)]
    elif roll < 0.75:
        size = [rng.uniform(90.0, 400.0) for _ in range(14)]
    elif roll < 0.85:
        size = [rng.choice((90.0, 180.0, 270.0, 360.0)) for _ in range(14)]
    elif roll < 0.97:
        size = [rng.uniform(1800.0, 4000.0) for _ in range(14)]
        for i in range(6):
            if chance(rng, 0.3):
                size[i] = rng.choice((0.0, -30.0))
    else:
        size = [1e9] * 14
        cell.wide_turns = True
    return JOINT.pack(*size), JOINT.pack(*[-v for v in size])


def units(rng, cell):
    for index in range(cell.unit_count):
        yield make_call(rng, "Kine_SetMechUnitParam", index, unit_record(rng), hostile=0.03)
    for index in rng.sample(range(6), rng.randint(0, 3)):
        yield make_call(rng, "Kine_SetExtAxisParam", index, ext_axis_record(rng), hostile=0.1)
    if chance(rng, 0.2):
        yield Call("Kine_SetMechUnitParam", (rng.choice(HOSTILE_INTS), unit_record(rng)), None)


def late_setup(rng, cell):
    """Setters between queries; a disabled coordination is enabled again."""
    roll = rng.random()
    if roll < 0.2:
        yield make_call(rng, "Kine_SetMechUnitGlobalCfg", cell.unit_count, 6, rng.choice((0, 1, 7)),
                        hostile=0.7)
        yield make_call(rng, "Kine_SetMechUnitParam", rng.randrange(3), unit_record(rng))
        yield make_call(rng, "Kine_SetExtAxisParam", rng.choice(HOSTILE_INTS), ext_axis_record(rng))
        yield Call("Kine_SetMechUnitGlobalCfg", (cell.unit_count, 6, 1), None)
    elif roll < 0.5:
        yield make_call(rng, "Kine_SetAxisLimit", *limit_records(rng, cell), hostile=0.2)
    elif roll < 0.8:
        yield make_call(rng, "Kine_SetMechUnitParam", rng.randrange(3), unit_record(rng), hostile=0.2)
    else:
        yield make_call(rng, "Kine_SetExtAxisParam", rng.randrange(6), ext_axis_record(rng), hostile=0.4)


def query(rng, cell, wanted):
    """One query, by weight among those that are about a wanted export."""
    choices = [(weight, make) for weight, names, make in QUERIES if set(names) & set(wanted)]
    if choices:
        weights, makers = zip(*choices)
        yield from rng.choices(makers, weights)[0](rng, cell)


def random_inverse(rng, cell):
    yield make_call(rng, "Kine_WobjPosToJoint", random_target(rng, cell), *cell.surroundings(), True,
                    hostile=0.15)


def any_plain_query(rng, cell):
    yield from plain_query(rng, cell, *cell.surroundings(), 0.15)


def plain_query(rng, cell, tool, wobj, load, hostile):
    joints = cell.joints()
    roll = rng.random()
    if roll < 0.16:
        yield make_call(rng, "Kine_GetArmType", joints, True, hostile=hostile)
    elif roll < 0.32:
        if chance(rng, 0.4):
            joints = cell.near_singular(joints)
        kind = rng.choice((0, 1, 2, 2, 3, 0xFFFFFFFF))
        yield make_call(rng, "Kine_IsSingularity", joints, kind, hostile=hostile)
    elif roll < 0.46:
        yield make_call(rng, "Kine_FKineVision", joints, True, hostile=hostile)
    elif roll < 0.54:
        yield make_call(rng, "Kine_IsArmTypeValid", random_target(rng, cell), hostile=hostile)
    else:
        yield make_call(rng, rng.choice(FORWARD), joints, tool, wobj, load, True, hostile=hostile)


def round_trip(rng, cell):
    """Joints to the work object and back: own posture, other postures, other turns."""
    tool, wobj, load = cell.surroundings()
    joints = cell.joints()
    answer = yield make_call(rng, "Kine_JointToWobjPos", joints, tool, wobj, load, True, hostile=0.03)
    if answer.code != OK:
        return
    reached = POSE.unpack(answer.output)
    if chance(rng, 0.5):
        yield make_call(rng, rng.choice(FORWARD), joints, tool, wobj, load, True)
    yield make_call(rng, "Kine_WobjPosToJoint", POSE.pack(*reached), tool, wobj, load, True, hostile=0.03)
    for _ in range(rng.randint(1, 3)):
        target = list(reached)
        if cell.arm_type == 6:
            target[9] = rng.randrange(8) if chance(rng, 0.97) else rng.choice((-1, 8, 100))
            turned = (6, 7, 8)
        else:
            target[6] = rng.choice((1, -1)) if chance(rng, 0.97) else rng.choice((0, 2, -2, 100))
            turned = (9,) if cell.arm_type == 4 else (7, 8, 9)
        for i in turned:
            target[i] = max(-2147483648, min(2147483647, target[i] + cell.turn_shift()))
        if cell.wide_turns and chance(rng, 0.03):
            target[rng.choice(turned)] = rng.choice((1, -1)) * (1_000_000 + rng.choice((0, 1)))
        if chance(rng, 0.12):
            yield make_call(rng, "Kine_IsArmTypeValid", POSE.pack(*target), hostile=0.05)
        else:
            answer = yield make_call(rng, "Kine_WobjPosToJoint", POSE.pack(*target), tool, wobj, load, True,
                                     hostile=0.05)
            if answer.code == OK and chance(rng, 0.3):
                yield make_call(rng, "Kine_JointToWobjPos", answer.output, tool, wobj, load, True)


# Weight, the exports a query is about, and the query.
QUERIES = MOTION_QUERIES + CALIBRATION_QUERIES + (
    (24, (*FORWARD, "Kine_WobjPosToJoint", "Kine_IsArmTypeValid"), round_trip),
    (5, ("Kine_WobjPosToJoint",), random_inverse),
    (20, (*FORWARD, "Kine_GetArmType", "Kine_IsSingularity", "Kine_FKineVision", "Kine_IsArmTypeValid"),
     any_plain_query),
)

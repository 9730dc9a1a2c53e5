"""Turning a tool onto the nearest axis of a reference frame, and normals. Radians and millimetres.

The rotation M takes the reference frame into the frame that is aligned, so that row 3 of M holds the
cosines between the Z axis of the latter and the three axes of the former.
"""

import math
from types import SimpleNamespace

import chains
from geometry import (SMALLEST_FLOAT, axis_angle, cross, dot, pose_to_matrix, product, rigid_inverse,
                      rotation_to_euler_exact, safe_acos, subtract, transposed)
from ieee import HALF_PI, PI, div, sqrt
from margins import MARGINS
from records import ALIGN_NO_SOLUTION, ALIGN_TURN, DIRECTION, Refused

BASE, WORLD, WOBJ, WOBJ_BY_FLANGE = 2, 5, 4, -1
CLEARLY_NEARER = 1e-5
LARGEST_SUM = 2160.0
ALREADY_ALIGNED = 4e-3
TIE = "turn sums tie"
Z_AXIS = (0.0, 0.0, 1.0)


def aligned_joints(store, mode, joints, tool, wobj, payload):
    arm = store.arm()
    block = chains.lenient_tool_block(tool, wobj, payload)
    pose = store.forward(joints.axis, block)
    here = pose_to_matrix(pose)
    wobj_is_held = tool.held == 0 and wobj.held != 0
    neither_is_held = tool.held == 0 and wobj.held == 0
    if mode not in (BASE, WORLD, WOBJ, WOBJ_BY_FLANGE) or (neither_is_held and mode not in (BASE, WORLD)):
        raise Refused(DIRECTION)

    if mode == BASE:
        seen = here
    elif mode == WORLD:
        record = chains.record_of(pose, [0] * 4, joints.ext)
        seen = pose_to_matrix(chains.frame_to_world(store, record, store.mounting).frame)
    else:
        seen = pose_to_matrix(chains.joint_to_wobj(store, joints, tool, wobj, payload).frame)
    back = rigid_inverse(seen)
    if wobj_is_held and mode != WOBJ:
        # The flange is aligned and solved for; the load stays as the work object carries it.
        combined = pose_to_matrix(wobj.combined)
        block = SimpleNamespace(frame=[0.0] * 6, mass=block.mass, cog=block.cog)
        here = pose_to_matrix(store.forward(joints.axis, block))
        if mode == WOBJ_BY_FLANGE:
            back = rigid_inverse(product(combined, seen))
        else:
            back = product(combined, back)

    axis, angle = turn_to_nearest_axis(back)
    turn = axis_angle(axis, angle)
    if wobj_is_held and mode in (WOBJ, WOBJ_BY_FLANGE):
        turn = transposed(turn)
    there = product(here, turn + (0.0, 0.0, 0.0))
    frame = list(there[9:]) + list(rotation_to_euler_exact(there[:9]))

    cfg = store.config(joints.axis)
    try:
        found = store.inverse(frame, block, cfg)
    except Refused:
        raise Refused(ALIGN_NO_SOLUTION)
    if nearest_turn(store, frame, block, cfg, joints.axis[:arm.axes]) != cfg[3]:
        raise Refused(ALIGN_TURN)
    return SimpleNamespace(axis=found, ext=list(joints.ext))


def turn_to_nearest_axis(m):
    """Axis and angle of the smallest turn of Z onto an axis of the reference, either way round."""
    best, sign, smallest = 0, 1.0, PI
    for i in range(3):
        angle, side = safe_acos(m[6 + i]), 1.0
        if angle > HALF_PI:
            angle, side = PI - angle, -1.0
        MARGINS.near("nearest axis", angle, smallest - CLEARLY_NEARER, 1e-10)
        if angle < smallest - CLEARLY_NEARER:
            best, sign, smallest = i, side, angle
    MARGINS.near("side of the nearest axis", smallest, HALF_PI, 1e-10)
    if smallest < ALREADY_ALIGNED:
        # The arc cosine is flat here: the last bit of the cosine turns the frame by this much.
        MARGINS.loosen(min(2e-8, div(4e-16, smallest)))
    axis = cross(Z_AXIS, (m[best], m[3 + best], m[6 + best]))
    length = sqrt(dot(axis, axis))
    if length > SMALLEST_FLOAT:
        axis = [v / length for v in axis]
    elif length <= SMALLEST_FLOAT:
        axis = [1.0, 0.0, 0.0]
    # What is neither is NaN: it passes on, and the inverse refuses it.
    return [sign * v for v in axis], smallest


def nearest_turn(store, frame, block, cfg, current):
    """The fourth integer, 0 to 7, whose solution lies nearest to the current axes."""
    so_far = set(MARGINS.reasons)
    best, smallest = 0, LARGEST_SUM
    sums, close = {}, {}
    for number in range(8):
        MARGINS.reasons.clear()
        try:
            found = store.inverse(frame, block, cfg[:3] + [number])
        except Refused:
            found = None
        if found is not None:
            total = sums[number] = sum(abs(a - b) for a, b in zip(found, current))
            MARGINS.near("bound of the turn sums", total, LARGEST_SUM, 1e-6)
            if total < smallest:
                best, smallest = number, total
        close[number] = set(MARGINS.reasons)
    MARGINS.reasons |= so_far
    note_close_solutions(sums, close, cfg[3])
    rivals = [number for number, total in sums.items() if number != cfg[3]
              and abs(total - sums.get(cfg[3], math.inf)) <= 1e-9]
    if rivals:
        MARGINS.flag(TIE)
        if store.tie_to_start is not None:
            return cfg[3] if store.tie_to_start else rivals[0]
    return best


def note_close_solutions(sums, close, start):
    """The search says only whether the starting number wins: what it beats clearly cannot matter."""
    MARGINS.reasons |= close.get(start, set())
    own = sums.get(start, math.inf)
    for number in set(close) - {start}:
        if number not in sums or sums[number] < own + 20.0:
            MARGINS.reasons |= close[number] - {"ill-conditioned Jacobian", "Newton not converged"}


def scaled_normal(p1, p2, p3, length):
    """Normal of the plane through three points; None when they lie on a line."""
    n = cross(subtract(p2, p1), subtract(p3, p1))
    size = sqrt(dot(n, n))
    MARGINS.near("three points on a line", size, 0.0, 1e-9 * (1.0 + max(abs(v) for v in (*p1, *p2, *p3))))
    if not size > SMALLEST_FLOAT:
        return None
    return [div(length * v, size) for v in n]


def is_inside_cube(point, centre, size):
    """The faces belong to the cube; NaN lies outside."""
    for value, middle in zip(point, centre):
        MARGINS.near("face of the cube", abs(value - middle), size * 0.5, 1e-9)
        if not size * 0.5 >= abs(value - middle):
            return False
    return True

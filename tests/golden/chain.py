"""A robot cell: arm, tool, work object, mechanical units; joints to poses and back."""
from mpmath import mp, mpf

import four_axis as four
import six_axis as six
from arms import ARMS
from frames import from_pose, inverse, multiply, rot_z, to_pose, translate
from numbers_out import doubles, deg, rad


class Cell:
    def __init__(self, kind, arm_name):
        self.kind, self.arm_name, self.name = kind, arm_name, ""
        record = ARMS[arm_name][1]
        self.arm = six.Arm(record) if kind == 6 else four.Arm(kind, record)
        self.units, self.carrier = {}, None
        self.tool_held, self.wobj_held, self.wobj_fix, self.wobj_unit = 1, 0, 1, 0
        self.tool, self.user, self.object = [0.0] * 6, [0.0] * 6, [0.0] * 6
        self.tool_load, self.payload = [0.0] * 4, [0.0] * 4
        self.q, self.ext = [], [0.0] * 6


def matrix(frame):
    return from_pose([mpf(v) for v in frame[:3]] + [rad(v) for v in frame[3:]])


def unit_matrix(cell, index):
    """Last axis of a mechanical unit in the world. The rotation of a linear unit takes that of its second
    axis frame with it, and nothing else of that frame."""
    kind, _, params, frames = cell.units[index]
    value = [mpf(cell.ext[p]) for p in params]
    first, second = matrix(frames[0]), matrix(frames[1])
    if kind == 2:
        return multiply(first, rot_z(rad(value[0])))
    if kind == 3:
        return multiply(first, rot_z(rad(value[0])), second, rot_z(rad(value[1])))
    slide = [second[i][:3] + [value[0] if i == 0 else mpf(0)] for i in range(3)]
    return multiply(first, slide)


def wobj_matrix(cell):
    """Combined frame of the work object. A user frame carried by a unit is the unit's."""
    user = matrix(cell.user) if cell.wobj_fix == 1 else translate(0, 0, 0)
    return multiply(user, matrix(cell.object))


def carried_matrix(cell):
    return matrix(cell.tool) if cell.tool_held else wobj_matrix(cell)


def block_of(cell):
    return six.tool_block(to_pose(carried_matrix(cell)), cell.tool_load, cell.payload)


def carried_in_base(cell):
    angles = [rad(v) for v in cell.q]
    if cell.kind == 6:
        return six.tool_matrix(cell.arm, angles, block_of(cell))
    frame = to_pose(carried_matrix(cell))
    return from_pose(four.tool_pose(cell.arm, angles, frame[:4]))


def base_in_world(cell):
    return translate(0, 0, 0) if cell.carrier is None else unit_matrix(cell, cell.carrier)


def standing_in_world(cell):
    """What the robot does not hold: the work object, or the stationary tool."""
    if not cell.tool_held:
        return matrix(cell.tool)
    on = translate(0, 0, 0) if cell.wobj_fix == 1 else unit_matrix(cell, cell.wobj_unit)
    return multiply(on, wobj_matrix(cell))


def forward_chain(cell):
    """Pose of the tool centre point in the four frames, and the configuration integers."""
    carried = carried_in_base(cell)
    world_from_base = base_in_world(cell)
    angles = [rad(v) for v in cell.q]
    cfg = six.config(cell.arm, angles) if cell.kind == 6 else four.config(cell.arm, angles)
    standing = standing_in_world(cell)
    if cell.tool_held:
        tip_in_world = multiply(world_from_base, carried)
        tip_in_base, tip_in_flange = carried, matrix(cell.tool)
        tip_in_object = multiply(inverse(standing), tip_in_world)
    else:
        # The tool stands in the world; the held work object comes past it.
        tip_in_world = standing
        tip_in_base = multiply(inverse(world_from_base), standing)
        tip_in_object = multiply(inverse(multiply(world_from_base, carried)), standing)
        tip_in_flange = multiply(wobj_matrix(cell), tip_in_object)
    return {"base": to_pose(tip_in_base), "flange": to_pose(tip_in_flange), "world": to_pose(tip_in_world),
            "object": to_pose(tip_in_object), "cfg": cfg}


def solve_chain(cell, result):
    """Joints for the pose in the object, rounded to the doubles that the table shows."""
    shown = result["object"]
    target = matrix(doubles(shown[:3]) + doubles([deg(v) for v in shown[3:]]))
    standing = standing_in_world(cell)
    in_world = multiply(standing, target) if cell.tool_held else multiply(standing, inverse(target))
    in_base = to_pose(multiply(inverse(base_in_world(cell)), in_world))
    if cell.kind == 6:
        return six.solve(cell.arm, in_base, block_of(cell), result["cfg"])
    if abs(deg(in_base[3])) > 170:
        return None, None
    frame = to_pose(carried_matrix(cell))
    return four.solve(cell.arm, in_base[:4], frame[:4], result["cfg"])

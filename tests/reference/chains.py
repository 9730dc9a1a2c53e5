"""From joints to base, flange, world and work object, and back. Radians and millimetres.

Three questions about a held byte: the exports ask whether two bytes differ, the hold checks and the
choice of the flange frame whether each is zero, the forward chains choose their path by exactly 1.
"""

from types import SimpleNamespace

from geometry import (IDENTITY, inverse, matrix_to_pose, pose_to_matrix, product, rot_z_deg)
from ieee import div
from records import (AXIS_ORIGIN, F2W_MODE, F2W_UNIT_KIND, HOLD_CONFLICT, W2F_MODE, W2F_UNIT_KIND, Refused)
from store import EXT_AXES, FIXED, ON_UNIT, UNITS

AXES_OF_KIND = {1: 1, 2: 1, 3: 2}


def record_of(frame, cfg, ext):
    return SimpleNamespace(frame=list(frame), cfg=list(cfg), ext=list(ext))


def with_frame(record, matrix):
    return record_of(matrix_to_pose(matrix), record.cfg, record.ext)


# Frame services

def unit_transform(store, unit_index, ext, bad_unit, test_origin):
    """Transform of a mechanical unit's last axis in the world; external-axis values in degrees or mm."""
    if not (0 <= unit_index < UNITS and unit_index <= store.unit_count):
        raise Refused(bad_unit)
    unit = store.units[unit_index]
    needed = AXES_OF_KIND.get(unit.kind)
    if needed is None or unit.axis_count < needed:
        raise Refused(bad_unit)
    if any(index >= EXT_AXES for index in unit.axis_index[:needed]):
        raise Refused(bad_unit)
    values = [ext[index] for index in unit.axis_index[:needed]]
    if unit.kind == 1:
        # The second axis frame gives only its rotation.
        return product(unit.frames[0], unit.frames[1][:9] + (values[0], 0.0, 0.0))
    result = IDENTITY + (0.0, 0.0, 0.0)
    for frame, value in zip(unit.frames, values):
        if test_origin and frame[9] == 0.0 and frame[10] == 0.0 and frame[11] == 0.0:
            raise Refused(AXIS_ORIGIN)
    turned = [product(frame, rot_z_deg(value)) for frame, value in zip(unit.frames, values)]
    return turned[0] if unit.kind == 2 else product(turned[0], turned[1])


def frame_to_world(store, record, descriptor):
    frame, pose = pose_to_matrix(descriptor.frame), pose_to_matrix(record.frame)
    if descriptor.mode == FIXED:
        return with_frame(record, product(frame, pose))
    if descriptor.mode != ON_UNIT:
        raise Refused(F2W_MODE)
    unit = unit_transform(store, descriptor.unit, record.ext, F2W_UNIT_KIND, False)
    return with_frame(record, product(unit, frame, pose))


def world_to_frame(store, record, descriptor):
    frame, pose = pose_to_matrix(descriptor.frame), pose_to_matrix(record.frame)
    if descriptor.mode == FIXED:
        return with_frame(record, product(inverse(frame), pose))
    if descriptor.mode != ON_UNIT:
        raise Refused(W2F_MODE)
    unit = unit_transform(store, descriptor.unit, record.ext, W2F_UNIT_KIND, True)
    return with_frame(record, product(inverse(frame), inverse(unit), pose))


def check_hold(tool, wobj):
    if (tool.held != 0) == (wobj.held != 0):
        raise Refused(HOLD_CONFLICT)


def frame_descriptor(tool, wobj):
    """The object that the robot does not hold; a stationary tool always stands fixed in the world."""
    check_hold(tool, wobj)
    if tool.held != 0:
        return SimpleNamespace(mode=FIXED if wobj.fix == 1 else ON_UNIT, unit=wobj.unit, frame=wobj.combined)
    return SimpleNamespace(mode=FIXED, unit=0, frame=tool.frame)


def tool_relative(record, tool):
    """With a stationary tool the relation is turned round; posture and external axes stay."""
    if tool.held != 0:
        return record
    return with_frame(record, inverse(pose_to_matrix(record.frame)))


def carried_frame(tool, wobj):
    return tool.frame if tool.held != 0 else wobj.combined


def combine_load(tool_load, payload, frame):
    """Mass, centre in metres and inertia of tool and payload; the frame's rotation plays no part."""
    mass = tool_load.mass + payload.mass
    k = div(1.0, mass) if mass > 1e-5 else 0.0
    moved = [a + b for a, b in zip(payload.cog, frame[:3])]
    centre = [0.001 * k * (payload.mass * p + tool_load.mass * c) for p, c in zip(moved, tool_load.cog)]
    d1 = [0.001 * v - c for v, c in zip(tool_load.cog, centre)]
    d2 = [0.001 * v - c for v, c in zip(moved, centre)]
    inertia = []
    for i in range(3):
        j, m = [n for n in range(3) if n != i]
        inertia.append(tool_load.inertia[i] + payload.inertia[i]
                       + tool_load.mass * (d1[j] * d1[j] + d1[m] * d1[m])
                       + payload.mass * (d2[j] * d2[j] + d2[m] * d2[m]))
    return mass, centre, inertia


def tool_block(tool, wobj, payload):
    return block_on(carried_frame(tool, wobj), tool, payload)


def lenient_tool_block(tool, wobj, payload):
    """Without a hold check: the tool counts when both are held, the bare flange when neither is."""
    neither = tool.held == 0 and wobj.held == 0
    return block_on([0.0] * 6 if neither else carried_frame(tool, wobj), tool, payload)


def block_on(frame, tool, payload):
    mass, centre, _ = combine_load(tool.load, payload, frame)
    return SimpleNamespace(frame=list(frame), mass=mass, cog=centre)


# Forward chains

class Steps:
    """Runs numbered steps; a failing one prints its line."""

    def __init__(self, store, text):
        self.store, self.text = store, text

    def run(self, number, operation, *args):
        try:
            return operation(*args)
        except Refused as refused:
            self.store.print(b"%s %d:%d\n" % (self.text, number, refused.code))
            raise


def head(store, joints, tool, wobj):
    steps = Steps(store, b"FK Error")
    cfg = steps.run(1, store.config, joints.axis)
    steps.run(2, check_hold, tool, wobj)
    return steps, cfg


def run_forward(store, steps, joints, tool, wobj, payload, cfg):
    block = tool_block(tool, wobj, payload)
    frame = steps.run(3, store.forward, joints.axis, block)
    return record_of(frame, cfg, joints.ext)


def to_world(store, steps, base):
    return steps.run(4, frame_to_world, store, base, store.mounting)


def to_object(store, steps, world, tool, wobj):
    descriptor = steps.run(5, frame_descriptor, tool, wobj)
    relative = steps.run(6, world_to_frame, store, world, descriptor)
    return steps.run(7, tool_relative, relative, tool)


def behind(frame, relative):
    """The stationary tool point seen through the held work object's frame."""
    return with_frame(relative, product(pose_to_matrix(frame), pose_to_matrix(relative.frame)))


def joint_to_base(store, joints, tool, wobj, payload):
    steps, cfg = head(store, joints, tool, wobj)
    base = run_forward(store, steps, joints, tool, wobj, payload, cfg)
    if tool.held == 1:
        return base
    relative = to_object(store, steps, to_world(store, steps, base), tool, wobj)
    result = behind(base.frame, relative)
    result.ext = list(joints.ext)
    return result


def joint_to_flange(store, joints, tool, wobj, payload):
    steps, cfg = head(store, joints, tool, wobj)
    if tool.held == 1:
        return record_of(tool.frame, cfg, [0.0] * 6)
    base = run_forward(store, steps, joints, tool, wobj, payload, cfg)
    relative = to_object(store, steps, to_world(store, steps, base), tool, wobj)
    return behind(wobj.combined, relative)


def joint_to_world(store, joints, tool, wobj, payload):
    steps, cfg = head(store, joints, tool, wobj)
    base = run_forward(store, steps, joints, tool, wobj, payload, cfg)
    world = to_world(store, steps, base)
    if tool.held == 1:
        return world
    return behind(world.frame, to_object(store, steps, world, tool, wobj))


def joint_to_wobj(store, joints, tool, wobj, payload):
    steps, cfg = head(store, joints, tool, wobj)
    base = run_forward(store, steps, joints, tool, wobj, payload, cfg)
    return to_object(store, steps, to_world(store, steps, base), tool, wobj)


def vision_pose(store, joints):
    cfg = store.config(joints.axis)
    return record_of(store.arm().flange_pose(list(joints.axis)), cfg, [0.0] * 6)


# Inverse chain

def wobj_to_joint(store, target, tool, wobj, payload):
    store.check_config(target.cfg)
    steps = Steps(store, b"IK error")
    steps.run(0, check_hold, tool, wobj)
    relative = tool_relative(target, tool)
    descriptor = steps.run(1, frame_descriptor, tool, wobj)
    world = steps.run(2, frame_to_world, store, relative, descriptor)
    base = steps.run(3, world_to_frame, store, world, store.mounting)
    steps.run(4, check_hold, tool, wobj)
    block = tool_block(tool, wobj, payload)
    axis = steps.run(5, store.inverse, base.frame, block, base.cfg)
    return SimpleNamespace(axis=axis, ext=list(base.ext))

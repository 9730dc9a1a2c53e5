"""Where one jog step leads to. Radians and millimetres; external axes in their own unit.

A slot is a factor, not just a sign. Every call of the model gets its own copy of the joints.
"""

from types import SimpleNamespace

import chains
from geometry import (axis_angle, euler_to_rotation, pose_to_matrix, product, rigid_inverse, rot_product,
                      rotate, rotation_to_euler_exact)
from records import INCH_SINGULAR, RAD2DEG, Refused

JOINTS, BASE, TOOL, WOBJ, WORLD = 1, 2, 3, 4, 5
SINGULARITY_KIND = 2
TURNING_SLOT = 1e-5


def jog_target(store, slots, mode, steps, joints, tool, wobj, payload):
    """Steps: joint step in radians, linear step in mm, rotation step in radians."""
    arm = store.arm()
    slots = [float(v) for v in slots]
    if mode == JOINTS:
        return joint_jog(slots, arm.axes, steps[0], joints)
    turns = slots[3:6] if arm.axes == 6 else [slots[5], slots[4], slots[3]]
    if mode in (BASE, WORLD):
        axis = jog_in_base(store, slots[:3], turns, mode, steps, joints, tool, wobj, payload)
    elif mode == WOBJ or (mode == TOOL and (tool.held != 0 or wobj.held != 0)):
        axis = jog_in_chain(store, slots, turns, mode, steps, joints, tool, wobj, payload)
    else:
        axis = list(joints.axis)
    if arm.is_singular(axis, SINGULARITY_KIND):
        raise Refused(INCH_SINGULAR)
    return SimpleNamespace(axis=axis, ext=list(joints.ext))


def joint_jog(slots, axes, step, joints):
    """No test of limits or singularity. External axes follow behind the axes of the arm."""
    own = slots[:axes] + [0.0] * (8 - axes)
    return SimpleNamespace(axis=[q + d * step for q, d in zip(joints.axis, own)],
                           ext=[q + d * step * RAD2DEG for q, d in zip(joints.ext, slots[axes:axes + 6])])


def jog_in_chain(store, slots, turns, mode, steps, joints, tool, wobj, payload):
    """In the tool or in the work object, by way of the tool point in the work object."""
    pose = chains.joint_to_wobj(store, joints, tool, wobj, payload)
    here = pose_to_matrix(pose.frame)
    step = step_transform(slots, turns, steps)
    if mode == WOBJ:
        there = product(step, here)
        if wobj.held == 1:
            # Every turning slot reverses the turn again and keeps the tool point where it was.
            for slot in slots[3:store.arm().axes]:
                if abs(slot) > TURNING_SLOT:
                    turns = [-v for v in turns]
                    there = product(step_transform(slots, turns, steps), here)[:9] + here[9:]
    elif tool.held != 0:
        there = product(here, step)
    else:
        there = product(here, rigid_inverse(step))
    frame = list(there[9:]) + list(rotation_to_euler_exact(there[:9]))
    target = chains.record_of(frame, store.config(joints.axis), joints.ext)
    return chains.wobj_to_joint(store, target, tool, wobj, payload).axis


def step_transform(slots, turns, steps):
    return axis_angle(turns, steps[2]) + tuple(v * steps[1] for v in slots[:3])


def jog_in_base(store, directions, turns, mode, steps, joints, tool, wobj, payload):
    """Along and about the axes of the base, or of the world as the external axes turn it."""
    block = chains.lenient_tool_block(tool, wobj, payload)
    pose = store.forward(joints.axis, block)
    here = pose_to_matrix(pose)
    if mode == WORLD:
        origin = chains.record_of([0.0] * 6, [0] * 4, joints.ext)
        base = chains.frame_to_world(store, origin, store.mounting)
        turn = euler_to_rotation(*base.frame[3:])
        directions, turns = rotate(turn, directions), rotate(turn, turns)
    position = [p + steps[1] * d for p, d in zip(pose[:3], directions)]
    rotation = rot_product(axis_angle(turns, steps[2]), here[:9])
    frame = position + list(rotation_to_euler_exact(rotation))
    return store.inverse(frame, block, store.config(joints.axis))

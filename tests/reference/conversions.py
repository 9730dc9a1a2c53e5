"""Poses from frame to frame and offsets of poses, without an arm. Radians and millimetres."""

import chains
from geometry import (add, euler_to_rotation, inverse, pose_to_matrix, product, rot_product, rotate,
                      rotation_to_euler)
from records import CRD_WOBJ, Refused

TOOL_STATIONARY = -1
BASE_TO_WOBJ = -2


def world_to_fixed(record, wobj):
    """Neither a mechanical unit nor the robot's mounting takes part."""
    return chains.with_frame(record, product(inverse(pose_to_matrix(wobj.combined)),
                                             pose_to_matrix(record.frame)))


def world_to_held(record, wobj, flange):
    held = product(pose_to_matrix(flange.frame), pose_to_matrix(wobj.combined))
    return chains.with_frame(record, product(inverse(held), pose_to_matrix(record.frame)))


def held_to_world(record, wobj, flange):
    return chains.with_frame(record, product(pose_to_matrix(flange.frame), pose_to_matrix(wobj.combined),
                                             pose_to_matrix(record.frame)))


def to_work_object(store, record, mode, tool, wobj):
    """Any mode but the two named ones leaves the pose as it is."""
    if mode == TOOL_STATIONARY:
        if tool.held != 0:
            raise Refused(CRD_WOBJ)
        return world_to_fixed(record, wobj)
    if mode == BASE_TO_WOBJ:
        world = chains.frame_to_world(store, record, store.mounting)
        relative = chains.world_to_frame(store, world, chains.frame_descriptor(tool, wobj))
        return chains.tool_relative(relative, tool)
    return record


def offset_in_tool(record, offset):
    """The offset along and about the pose's own axes."""
    rotation = euler_to_rotation(*record.frame[3:])
    position = add(record.frame[:3], rotate(rotation, offset[:3]))
    angles = rotation_to_euler(rot_product(rotation, euler_to_rotation(*offset[3:])))
    return chains.record_of(position + tuple(angles), record.cfg, record.ext)


def offset_in_reference(record, offset):
    """No frame product: the offset's rotation turns the pose in place, its translation is just added."""
    position = add(record.frame[:3], offset[:3])
    rotation = rot_product(euler_to_rotation(*offset[3:]), euler_to_rotation(*record.frame[3:]))
    return chains.record_of(position + tuple(rotation_to_euler(rotation)), record.cfg, record.ext)

"""The exports over raw bytes: copy, check in order, convert, run, convert back."""

from collections import namedtuple

import align
import chains
import conversions
import jog
from calib_exports import CALIBRATION_SIGNATURES, CalibrationExports
from geometry import matrix_to_pose, pose_difference, pose_to_matrix, product
from ieee import to_signed32
from margins import MARGINS
from records import (ARM_CONFIG, CONFIG, DEG2RAD, DIRECTION, DIRECTIONS, EXT_AXIS_REFUSED, FRAME, HOLD,
                     JOINT, JOINT_REFUSED, LOAD, LOAD_REFUSED, MECH_UNIT_COUNT, MECH_UNIT_REFUSED,
                     OFFSET_FRAME, OK, POSE_REFUSED, RAD2DEG, TOOL, TOOL_REFUSED, UNKNOWN_ARM, VECTOR, WOBJ,
                     WOBJ_REFUSED, Refused, angles_in_range, convert_ext_axis_param, load_is_legal,
                     pack_joint, pack_pose, scaled, tool_is_legal, unpack_joint, unpack_load,
                     unpack_mech_unit, unpack_pose, unpack_tool, unpack_wobj)
from store import EXT_AXES, UNITS, Store

# What a call answered: the code, the bytes on standard output, the record written (None: untouched) and
# the bytes of every record that is both input and output, by the place of its argument.
Outcome = namedtuple("Outcome", "code printed output changed")

UNIT_COLON_LINE = (b"IsLegalMechUnit\xa3\xba"
                   b"pArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:%d,%d\n")

# Argument kinds per export, in order. "out" is the result record, "inout" one that is input and output.
SIGNATURES = {
    "Kine_InitKinematicParam": ("uint", "param"),
    "Kine_SetAxisLimit": ("joint", "joint"),
    "Kine_SetMechUnitGlobalCfg": ("uint", "uint", "uint"),
    "Kine_SetMechUnitParam": ("int", "unit"),
    "Kine_SetExtAxisParam": ("int", "ext_axis"),
    "Kine_GetArmType": ("joint", "out_config"),
    "Kine_IsArmTypeValid": ("pose",),
    "Kine_IsSingularity": ("joint", "uint"),
    "Kine_JointToBasePos": ("joint", "tool", "wobj", "load", "out_pose"),
    "Kine_JointToFlangePos": ("joint", "tool", "wobj", "load", "out_pose"),
    "Kine_JointToWorldPos": ("joint", "tool", "wobj", "load", "out_pose"),
    "Kine_JointToWobjPos": ("joint", "tool", "wobj", "load", "out_pose"),
    "Kine_FKineVision": ("joint", "out_pose"),
    "Kine_WobjPosToJoint": ("pose", "tool", "wobj", "load", "out_joint"),
    "Kine_WorldPosToFixWobjPos": ("pose", "wobj", "out_pose"),
    "Kine_WorldPosToGripWobjPos": ("pose", "wobj", "pose", "out_pose"),
    "Kine_GripWobjPosToWorldPos": ("pose", "wobj", "pose", "out_pose"),
    "Kine_CrdPosToWobjPos": ("pose", "int", "tool", "wobj", "load", "out_pose"),
    "Kine_ToolCoordOffset": ("pose", "frame", "out_pose"),
    "Kine_WobjCoordOffset": ("pose", "frame", "out_pose"),
    "Kine_InchMovePosCalc": ("directions", "int", "tool", "wobj", "load", "steps_inout", "joint",
                             "out_joint"),
    "Kine_CalcAlignPos": ("int", "joint", "tool", "wobj", "load", "out_joint"),
    "Kine_CalcAlignCoordProc": ("tool_inout", "wobj_inout"),
    "Kine_CalcZVec": ("frame", "frame", "frame", "double", "out_vector"),
    "SafeArea_Check": ("joint", "vector", "double"),
    "Kine_CalcPosDif": ("pose", "pose", "int", "out_frame"),
    **CALIBRATION_SIGNATURES,
}

SETUPS = tuple(name for name in SIGNATURES if "_Init" in name or "_Set" in name)
OUTPUT_SIZES = {"out_config": 16, "out_pose": 112, "out_joint": 112, "out_frame": 48, "out_vector": 24}
IN_OUT = ("steps_inout", "tool_inout", "wobj_inout", "error_inout", "tilt_inout")
RESULT_PLACES = {name: next((i for i, kind in enumerate(kinds) if kind in OUTPUT_SIZES), None)
                 for name, kinds in SIGNATURES.items()}

INSIDE, OUTSIDE = 1, 0

FORWARD_CHAINS = {
    "Kine_JointToBasePos": chains.joint_to_base,
    "Kine_JointToFlangePos": chains.joint_to_flange,
    "Kine_JointToWorldPos": chains.joint_to_world,
    "Kine_JointToWobjPos": chains.joint_to_wobj,
}


class Library(CalibrationExports):
    """One configuration store behind the exports.

    Records are bytes or None for a null pointer; a result argument is True, or False for a null pointer.
    """

    def __init__(self):
        self.store = Store()

    def call(self, name, *args):
        MARGINS.clear()
        self.store.printed = []
        self.changed = {i: data for i, (kind, data) in enumerate(zip(SIGNATURES[name], args))
                        if kind in IN_OUT and data is not None}
        output = None
        try:
            if name in FORWARD_CHAINS:
                code, output = self.forward(FORWARD_CHAINS[name], *args)
            elif name in CALIBRATION_SIGNATURES:
                code, output = self.calibrate(name, args)
            else:
                code, output = getattr(self, name)(*args)
        except Refused as refused:
            code = refused.code
        return Outcome(code, b"".join(self.store.printed), output, self.changed)

    # Taking arguments

    def take_joints(self, data):
        require(data is not None, JOINT_REFUSED)
        return unpack_joint(data)

    def take_tool(self, data):
        require(data is not None, TOOL_REFUSED)
        tool = unpack_tool(data)
        require(tool_is_legal(tool), TOOL_REFUSED)
        return tool

    def take_wobj(self, data):
        require(data is not None, WOBJ_REFUSED)
        wobj = unpack_wobj(data)
        require(angles_in_range(wobj.user[3:]), WOBJ_REFUSED)
        if wobj.fix == 0 and not (wobj.unit != 0 and wobj.unit < self.store.unit_count):
            self.store.print(b"IsLegalWobj,!pWobj->UFFix:%d;\n" % self.store.unit_count)
            raise Refused(WOBJ_REFUSED)
        require(angles_in_range(wobj.object[3:]), WOBJ_REFUSED)
        return wobj

    def take_load(self, data):
        require(data is not None, LOAD_REFUSED)
        load = unpack_load(LOAD.unpack(data))
        require(load_is_legal(load), LOAD_REFUSED)
        return load

    def take_pose(self, data):
        """The angles are still in degrees: they turn to radians only when all checks are passed."""
        require(data is not None, POSE_REFUSED)
        pose = unpack_pose(data)
        require(angles_in_range(pose.frame[3:]), POSE_REFUSED)
        return pose

    def take_offset(self, data):
        require(data is not None, OFFSET_FRAME)
        frame = FRAME.unpack(data)
        require(angles_in_range(frame[3:]), OFFSET_FRAME)
        return frame

    # Setup

    def Kine_InitKinematicParam(self, arm_type, data):
        return self.store.initialise(arm_type, data), None

    def Kine_SetAxisLimit(self, upper, lower):
        upper, lower = self.take_joints(upper), self.take_joints(lower)
        return self.store.set_limits(joints_to_radians(upper).axis, joints_to_radians(lower).axis), None

    def Kine_SetMechUnitGlobalCfg(self, units, ext_axes, enable):
        store = self.store
        store.units_enabled = enable
        if enable == 0:
            return OK, None
        for text, value, highest in ((b"mechUnitCount", units, UNITS),
                                     (b"extAxisParamItemCount", ext_axes, EXT_AXES)):
            if value > highest:
                store.print(b"IsLegalMechUnitAndExtAxisNum:%s:%d,%d\n" % (text, to_signed32(value), highest))
                return MECH_UNIT_COUNT, None
        store.unit_count, store.ext_axis_count = units, ext_axes
        return OK, None

    def Kine_SetMechUnitParam(self, index, data):
        store = self.store
        if store.units_enabled == 0:
            return OK, None
        if not 0 <= index < UNITS:
            store.print(b"IsLegalMechUnit:index:%d,%d\n" % (index, store.unit_count))
            return MECH_UNIT_REFUSED, None
        require(data is not None, MECH_UNIT_REFUSED)
        unit = unpack_mech_unit(data)
        if unit.active != 0 and unit.axis_count > store.ext_axis_count:
            store.print(UNIT_COLON_LINE % (unit.axis_count, store.ext_axis_count))
            return MECH_UNIT_REFUSED, None
        store.set_unit(index, unit)
        return OK, None

    def Kine_SetExtAxisParam(self, index, data):
        store = self.store
        if store.units_enabled == 0:
            return OK, None
        if not 0 <= index < EXT_AXES:
            store.print(b"IsLegalExtAxisParam:index:%d,%d\n" % (index, store.ext_axis_count))
            return EXT_AXIS_REFUSED, None
        require(data is not None, EXT_AXIS_REFUSED)
        store.ext_axes[index] = convert_ext_axis_param(data)
        return OK, None

    # Queries

    def Kine_GetArmType(self, data, config):
        joints = self.take_joints(data)
        require(config, CONFIG)
        return OK, ARM_CONFIG.pack(*self.store.config(joints_to_radians(joints).axis))

    def Kine_IsArmTypeValid(self, data):
        pose = self.take_pose(data)
        self.store.check_config(pose.cfg)
        return OK, None

    def Kine_IsSingularity(self, data, kind):
        joints = joints_to_radians(self.take_joints(data))
        return UNKNOWN_ARM if self.store.arm().is_singular(joints.axis, kind) else OK, None

    # Chains

    def forward(self, chain, joints, tool, wobj, load, result):
        joints = self.take_joints(joints)
        tool = self.take_tool(tool)
        wobj = self.take_wobj(wobj)
        load = self.take_load(load)
        require(tool.held != wobj.held, HOLD)
        require(result, POSE_REFUSED)
        record = chain(self.store, joints_to_radians(joints), tool_to_radians(tool), wobj_to_radians(wobj),
                       load_to_radians(load))
        return packed_in_degrees(record)

    def Kine_FKineVision(self, joints, result):
        joints = self.take_joints(joints)
        require(result, POSE_REFUSED)
        return packed_in_degrees(chains.vision_pose(self.store, joints_to_radians(joints)))

    def Kine_WobjPosToJoint(self, target, tool, wobj, load, result):
        tool = self.take_tool(tool)
        wobj = self.take_wobj(wobj)
        load = self.take_load(load)
        target = self.take_pose(target)
        require(tool.held != wobj.held, HOLD)
        require(result, JOINT_REFUSED)
        joints = chains.wobj_to_joint(self.store, pose_to_radians(target), tool_to_radians(tool),
                                      wobj_to_radians(wobj), load_to_radians(load))
        return packed_joints_in_degrees(joints)

    # Conversions: no arm, no initialisation

    def Kine_WorldPosToFixWobjPos(self, pose, wobj, result):
        wobj = self.take_wobj(wobj)
        require(wobj.fix != 0 and wobj.held != 1, WOBJ_REFUSED)
        pose = self.take_pose(pose)
        require(result, POSE_REFUSED)
        return packed_in_degrees(conversions.world_to_fixed(pose_to_radians(pose), wobj_to_radians(wobj)))

    def Kine_WorldPosToGripWobjPos(self, pose, wobj, flange, result):
        wobj = self.take_wobj(wobj)
        require(wobj.held != 0, WOBJ_REFUSED)
        return self.held_conversion(conversions.world_to_held, pose, wobj, flange, result)

    def Kine_GripWobjPosToWorldPos(self, pose, wobj, flange, result):
        """Does not ask whether the work object is held."""
        return self.held_conversion(conversions.held_to_world, pose, self.take_wobj(wobj), flange, result)

    def held_conversion(self, operation, pose, wobj, flange, result):
        pose, flange = self.take_pose(pose), self.take_pose(flange)
        require(result, POSE_REFUSED)
        return packed_in_degrees(operation(pose_to_radians(pose), wobj_to_radians(wobj),
                                           pose_to_radians(flange)))

    def Kine_CrdPosToWobjPos(self, pose, mode, tool, wobj, load, result):
        """The load takes no part and is not validated; it only has to be there."""
        pose = self.take_pose(pose)
        tool = self.take_tool(tool)
        wobj = self.take_wobj(wobj)
        require(load is not None, LOAD_REFUSED)
        require(result, POSE_REFUSED)
        return packed_in_degrees(conversions.to_work_object(self.store, pose_to_radians(pose), mode,
                                                            tool_to_radians(tool), wobj_to_radians(wobj)))

    def Kine_ToolCoordOffset(self, pose, offset, result):
        return self.offset(conversions.offset_in_tool, pose, offset, result)

    def Kine_WobjCoordOffset(self, pose, offset, result):
        return self.offset(conversions.offset_in_reference, pose, offset, result)

    def offset(self, operation, pose, offset, result):
        pose, offset = self.take_pose(pose), self.take_offset(offset)
        require(result, POSE_REFUSED)
        return packed_in_degrees(operation(pose_to_radians(pose), scaled(offset, 3, 3, DEG2RAD)))

    # Motion

    def Kine_InchMovePosCalc(self, directions, mode, tool, wobj, load, steps, joints, result):
        """The caller's step angles turn to radians in place, whatever the call answers."""
        require(directions is not None and steps is not None, DIRECTION)
        joint_step, linear_step, turn_step = VECTOR.unpack(steps)
        in_radians = (joint_step * DEG2RAD, linear_step, turn_step * DEG2RAD)
        self.changed[5] = VECTOR.pack(*in_radians)
        tool = self.take_tool(tool)
        wobj = self.take_wobj(wobj)
        load = self.take_load(load)
        joints = self.take_joints(joints)
        require(result, JOINT_REFUSED)
        target = jog.jog_target(self.store, DIRECTIONS.unpack(directions), mode, in_radians,
                                joints_to_radians(joints), tool_to_radians(tool), wobj_to_radians(wobj),
                                load_to_radians(load))
        return packed_joints_in_degrees(target)

    def Kine_CalcAlignPos(self, mode, joints, tool, wobj, load, result):
        joints = self.take_joints(joints)
        wobj = self.take_wobj(wobj)
        tool = self.take_tool(tool)
        load = self.take_load(load)
        require(result, JOINT_REFUSED)
        target = align.aligned_joints(self.store, mode, joints_to_radians(joints), tool_to_radians(tool),
                                      wobj_to_radians(wobj), load_to_radians(load))
        return packed_joints_in_degrees(target)

    def Kine_CalcAlignCoordProc(self, tool_data, wobj_data):
        """The held work object becomes the held tool; the stationary tool becomes the user frame."""
        wobj = self.take_wobj(wobj_data)
        tool = self.take_tool(tool_data)
        require(tool.held == 0, TOOL_REFUSED)
        self.changed[0] = b"\x01" + tool_data[1:]  # stays even when the work object is refused below
        require(wobj.held != 0, WOBJ_REFUSED)
        combined = scaled(wobj_to_radians(wobj).combined, 3, 3, RAD2DEG)
        self.changed[0] = b"\x01" + tool_data[1:8] + FRAME.pack(*combined) + tool_data[56:]
        self.changed[1] = b"\x00" + wobj_data[1:8] + tool_data[8:56] + bytes(48)
        return OK, None

    def Kine_CalcZVec(self, p1, p2, p3, length, result):
        if p1 is None or p2 is None or p3 is None or not result:
            return OK, None
        vector = align.scaled_normal(*[FRAME.unpack(p)[:3] for p in (p1, p2, p3)], length)
        return OK, None if vector is None else VECTOR.pack(*vector)

    def SafeArea_Check(self, joints, centre, size):
        """Asks for the world position with records of zeros, whose work object is never legal."""
        joints = bytes(JOINT.size) if joints is None else joints
        _, pose = self.forward(chains.joint_to_world, joints, bytes(TOOL.size), bytes(WOBJ.size),
                               bytes(LOAD.size), True)
        inside = align.is_inside_cube(unpack_pose(pose).frame[:3], VECTOR.unpack(centre), size)
        return INSIDE if inside else OUTSIDE, None

    def Kine_CalcPosDif(self, first, second, frame, result):
        first, second = self.take_pose(first), self.take_pose(second)
        require(frame in (1, -1), DIRECTION)
        require(result, POSE_REFUSED)
        difference = pose_difference(pose_to_radians(first).frame, pose_to_radians(second).frame, frame == 1)
        return OK, FRAME.pack(*scaled(difference, 3, 3, RAD2DEG))


def require(condition, code):
    if not condition:
        raise Refused(code)


def joints_to_radians(joints):
    joints.axis = scaled(joints.axis, 0, 8, DEG2RAD)
    return joints


def load_to_radians(load):
    """The inertia is scaled and the axes of moment stay in degrees."""
    load.inertia = scaled(load.inertia, 0, 3, DEG2RAD)
    return load


def tool_to_radians(tool):
    tool.frame = scaled(tool.frame, 3, 3, DEG2RAD)
    load_to_radians(tool.load)
    return tool


def wobj_to_radians(wobj):
    """The user frame counts only with a fix byte of exactly 1."""
    wobj.user = scaled(wobj.user, 3, 3, DEG2RAD) if wobj.fix == 1 else [0.0] * 6
    wobj.object = scaled(wobj.object, 3, 3, DEG2RAD)
    wobj.combined = matrix_to_pose(product(pose_to_matrix(wobj.user), pose_to_matrix(wobj.object)))
    return wobj


def packed_in_degrees(record):
    record.frame = scaled(record.frame, 3, 3, RAD2DEG)
    return OK, pack_pose(record)


def packed_joints_in_degrees(joints):
    joints.axis = scaled(joints.axis, 0, 8, RAD2DEG)
    return OK, pack_joint(joints)


def pose_to_radians(pose):
    pose.frame = scaled(pose.frame, 3, 3, DEG2RAD)
    return pose

"""A cell file on the naive model of tests/reference: what the cell reader does, once more in Python."""

import json
import math
import struct

from exports import Library
from geometry import pose_to_matrix
from records import (FOUR_AXIS_PARAM, JOINT, LOAD, MECH_UNIT, OK, POSE, SIX_AXIS_PARAM, TOOL, WOBJ,
                     EXT_AXIS_PARAM)

SIX_AXIS_KEYS = ["a1_mm", "a2_mm", "a3_mm", "d4_mm", "d6_mm", "d1_mm", "lateral_offset_mm"]
FORWARD = {"base": "Kine_JointToBasePos", "flange": "Kine_JointToFlangePos", "world": "Kine_JointToWorldPos",
           "work_object": "Kine_JointToWobjPos"}
KINDS = {"linear": 1, "rotary": 2, "two-rotary": 3}
SINGULAR_WIDE = 2


def frame_of(fields):
    return [fields.get(key, 0.0) for key in ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")]


def filled(values, count):
    return list(values) + [0.0] * (count - len(values))


def load_of(fields):
    return [fields.get("mass_kg", 0.0), *fields.get("cog_mm", [0.0] * 3),
            *fields.get("axes_of_moment_deg", [0.0] * 3), *fields.get("inertia", [0.0] * 3)]


def arm_record(arm):
    if arm["type"] == 6:
        values = [arm.get(key, 0.0) for key in SIX_AXIS_KEYS] + [0.0]
        values += arm.get("alpha_deg", [90.0, 0.0, 90.0, -90.0, 90.0])
        values += [arm.get(key, 0.0) for key in ("beta2_deg", "d3_mm", "d5_mm", "a4_mm", "a5_mm")]
        values += [arm.get("mount_x_deg", 0.0), arm.get("mount_y_deg", 0.0)] + [0.0] * 4
        values += filled(arm.get("weights_Nmm", []), 7)
        values += [arm.get(key, 0.0) for key in ("k2_Nm_per_rad", "k3_Nm_per_rad", "k5_Nm_per_rad")]
        return SIX_AXIS_PARAM.pack(*values)
    values = [arm[key] for key in ("link1_length_mm", "link2_length_mm", "z_offset_mm", "screw_lead_mm_per_turn")]
    values += [0.0] * 4 + [arm.get(key, 0.0) for key in ("link1_tilt_x_deg", "link2_tilt_x_deg", "link1_tilt_y_deg",
                                                         "link2_tilt_y_deg")]
    return FOUR_AXIS_PARAM.pack(*values)


def joint_record(axes, external=()):
    return JOINT.pack(*filled(axes, 8), *filled(external, 6))


def unit_record(unit, option1, option2):
    frames, drives = [], []
    for axis in unit["axes"]:
        frames += frame_of(axis.get("frame", {}))
        drives.append(axis["external_axis"])
    if "carried_frame" in unit:
        frames += frame_of(unit["carried_frame"])
    return MECH_UNIT.pack(1, KINDS[unit["kind"]], option1, option2, len(unit["axes"]), *filled(frames, 36),
                          *[int(v) for v in filled(drives, 6)])


class NaiveCell:
    """The cell of a file, set up in a library of its own."""

    def __init__(self, path):
        self.fields = json.loads(path.read_text())
        self.arm_type = self.fields["arm"]["type"]
        self.axes = 6 if self.arm_type == 6 else 4
        self.naive = Library()
        self.check("Kine_InitKinematicParam", self.arm_type, arm_record(self.fields["arm"]))
        if "limits" in self.fields:
            limits = self.fields["limits"]
            self.check("Kine_SetAxisLimit", joint_record(limits["upper_deg"]), joint_record(limits["lower_deg"]))
        self.set_up_units()

    def check(self, name, *args):
        assert self.naive.call(name, *args).code == OK, name

    def set_up_units(self):
        units, axes = self.fields.get("mechanical_units", []), self.fields.get("external_axes", [])
        if not units and not axes:
            return
        self.check("Kine_SetMechUnitGlobalCfg", len(units), len(axes), 1)
        for i, axis in enumerate(axes):
            words = [0, 0, 0, 1 if axis["kind"] == "linear" else 0]
            self.check("Kine_SetExtAxisParam", i, EXT_AXIS_PARAM.pack(*words, *[0] * 14))
        carrier = self.fields.get("robot_on_unit")
        for i, unit in enumerate(units):
            on = carrier is not None and i == 0
            self.check("Kine_SetMechUnitParam", i, unit_record(unit, 1 if on else 0, carrier if on else 0))

    def selection(self, chosen=None):
        use = {"tool": "none", "work_object": "none", "load": "none", **self.fields.get("use", {}), **(chosen or {})}
        tool = self.fields.get("tools", {}).get(use["tool"], {})
        wobj = self.fields.get("work_objects", {}).get(use["work_object"], {})
        load = self.fields.get("loads", {}).get(use["load"], {})
        on_unit = "mechanical_unit" in wobj
        return (TOOL.pack(int(tool.get("held_by_robot", True)), *frame_of(tool.get("frame", {})),
                          *load_of(tool.get("load", {}))),
                WOBJ.pack(int(wobj.get("held_by_robot", False)), int(not on_unit), wobj.get("mechanical_unit", 0),
                          *frame_of(wobj.get("user_frame", {})), *frame_of(wobj.get("object_frame", {}))),
                LOAD.pack(*load_of(load)))

    def joints(self, what):
        fields = self.fields["joints"][what] if isinstance(what, str) else what
        return joint_record(fields["axes_deg"], fields.get("external_mm_or_deg", ()))

    def forward(self, joints, reference="work_object", chosen=None):
        """Code and frame."""
        if reference == "vision":
            answer = self.naive.call("Kine_FKineVision", joints, True)
        else:
            answer = self.naive.call(FORWARD[reference], joints, *self.selection(chosen), True)
        return answer.code, None if answer.code else answer.output

    def inverse(self, pose, chosen=None):
        answer = self.naive.call("Kine_WobjPosToJoint", pose, *self.selection(chosen), True)
        return answer.code, None if answer.code else JOINT.unpack(answer.output)

    def posture(self, joints):
        """Cfg4 of a six-axis arm, Cfg1 of a four-axis arm."""
        config = struct.unpack("<4i", self.naive.call("Kine_GetArmType", joints, True).output)
        return config[3] if self.axes == 6 else config[0]

    def is_near_singular(self, joints):
        if self.naive.call("Kine_IsSingularity", joints, SINGULAR_WIDE).code != OK:
            return True
        return self.axes == 4 and abs(math.sin(math.radians(JOINT.unpack(joints)[1]))) < 0.0524


def pose_frame(pose):
    return POSE.unpack(pose)[:6]


def difference(a, b):
    """Distance in mm and angle in deg between two frames in mm and deg."""
    r, s = (pose_to_matrix([*f[:3], *map(math.radians, f[3:])])[:9] for f in (a, b))
    squares = sum((x - y) ** 2 for x, y in zip(r, s))
    return math.dist(a[:3], b[:3]), math.degrees(2.0 * math.asin(min(1.0, math.sqrt(squares / 8.0))))

"""A cell file and the naive model, set up from the same numbers.

The cells are small and differ in what the solutions of a pose depend on: the kind of arm, limits that leave several
turns or none, external axes under the robot and under the work object, a held work object.
"""

import json
import math

from exports import Library
from records import (DIRECTIONS, FOUR_AXIS_PARAM, JOINT, LOAD, MECH_UNIT, POSE, SIX_AXIS_PARAM, TOOL, VECTOR, WOBJ,
                     ARM_CONFIG)
from geometry import euler_to_rotation

FRAME_KEYS = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")
CELL_KINDS = {"linear": 1, "rotary": 2, "two-rotary": 3}
OPEN = 999.0
SIX_AXIS_WORDS = [f"{shoulder} {elbow} {wrist}" for shoulder in ("front", "back") for elbow in ("near", "far")
                  for wrist in ("plain", "flipped")]

SIX_AXIS = {"type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 120, "d1_mm": 450, "d4_mm": 640, "d6_mm": 100}
TYPE_4 = {"type": 4, "link1_length_mm": 325, "link2_length_mm": 275, "z_offset_mm": 100,
          "screw_lead_mm_per_turn": 20}
TYPE_4110 = {**TYPE_4, "type": 4110}
GRIPPER = {"frame": {"x_mm": 30, "y_mm": -20, "z_mm": 150, "a_deg": 20, "b_deg": -35, "c_deg": 10}}
FLAT_GRIPPER = {"frame": {"x_mm": 30, "y_mm": -20, "z_mm": -50, "a_deg": 20}}
TABLE = {"user_frame": {"x_mm": 700, "y_mm": -100, "z_mm": 200, "a_deg": 30, "b_deg": 5, "c_deg": -8},
         "object_frame": {"x_mm": 10, "y_mm": 20, "z_mm": 30, "a_deg": -15}}
FLAT_TABLE = {"user_frame": {"x_mm": 200, "y_mm": -100, "z_mm": 50, "a_deg": 30}}


def cell_of(arm, tool=None, wobj=None, limits=None, **more):
    cell = {"name": "a cell for tests", "arm": arm, "tools": {"t": tool or {}}, "work_objects": {"w": wobj or {}},
            "use": {"tool": "t", "work_object": "w"}, **more}
    if limits:
        cell["limits"] = {"lower_deg": [low for low, _ in limits], "upper_deg": [high for _, high in limits]}
    return cell


CELLS = {
    "six": cell_of(SIX_AXIS, GRIPPER, TABLE),
    "six-turns": cell_of(SIX_AXIS, GRIPPER, TABLE,
                         [(-180, 180), (-120, 120), (-120, 260), (-400, 400), (-125, 125), (-540, 540)]),
    "six-aside": cell_of(SIX_AXIS, GRIPPER, TABLE,
                         [(200, 500), (-170, 170), (-100, 260), (-900, -300), (-170, 170), (360, 360)]),
    "type-4": cell_of(TYPE_4, FLAT_GRIPPER, FLAT_TABLE, [(-170, 170), (-150, 150), (-3600, 3600), (-700, 100)]),
    "type-4-open": cell_of(TYPE_4, FLAT_GRIPPER, FLAT_TABLE),
    "type-4110": cell_of(TYPE_4110, FLAT_GRIPPER, FLAT_TABLE,
                         [(-400, 200), (-340, -10), (-3600, 3600), (-360, 360)]),
    "type-4110-open": cell_of(TYPE_4110, FLAT_GRIPPER, FLAT_TABLE),
    "held": cell_of(SIX_AXIS,
                    {"held_by_robot": False, "frame": {"x_mm": 800, "y_mm": 200, "z_mm": 500, "a_deg": 40,
                                                       "b_deg": 10, "c_deg": 170}},
                    {"held_by_robot": True, "user_frame": {"x_mm": 10, "z_mm": 60, "a_deg": 25, "c_deg": 12},
                     "object_frame": {"y_mm": -15, "b_deg": 30}}),
    "external": cell_of(SIX_AXIS, GRIPPER,
                        {"mechanical_unit": 1, "object_frame": {"x_mm": 50, "z_mm": 80, "c_deg": 15}},
                        external_axes=[{"name": "track", "kind": "linear"}, {"name": "table", "kind": "rotary"}],
                        mechanical_units=[
                            {"name": "track", "kind": "linear",
                             "axes": [{"external_axis": 0, "frame": {"y_mm": -300, "a_deg": 90}}]},
                            {"name": "table", "kind": "rotary",
                             "axes": [{"external_axis": 1,
                                       "frame": {"x_mm": 750, "y_mm": 100, "z_mm": 300, "b_deg": 20}}]}],
                        robot_on_unit=0),
}


def frame_of(values):
    return [float((values or {}).get(key, 0.0)) for key in FRAME_KEYS]


class ModelCell:
    def __init__(self, cell):
        self.cell = cell
        arm = cell["arm"]
        self.arm_type = arm["type"]
        self.axes = 6 if self.arm_type == 6 else 4
        self.externals = len(cell.get("external_axes", []))
        self.naive = Library()
        assert self.naive.call("Kine_InitKinematicParam", self.arm_type, arm_record(arm)).code == 0
        self.set_limits(cell.get("limits"))
        self.set_units(cell)
        tool = cell.get("tools", {}).get("t", {})
        wobj = cell.get("work_objects", {}).get("w", {})
        self.tool = TOOL.pack(int(tool.get("held_by_robot", True)), *frame_of(tool.get("frame")), *[0.0] * 10)
        unit = wobj.get("mechanical_unit")
        self.wobj = WOBJ.pack(int(wobj.get("held_by_robot", False)), int(unit is None), unit or 0,
                              *frame_of(wobj.get("user_frame")), *frame_of(wobj.get("object_frame")))
        self.load = LOAD.pack(*[0.0] * 10)

    def set_limits(self, limits):
        self.limits = [(-math.inf, math.inf)] * self.axes
        if not limits:
            return
        self.limits = [(low, high) if low < high else (-math.inf, math.inf)
                       for low, high in zip(limits["lower_deg"], limits["upper_deg"])]
        rest = [OPEN] * (14 - self.axes)
        upper, lower = [*map(float, limits["upper_deg"]), *rest], [*map(float, limits["lower_deg"]), *rest]
        assert self.naive.call("Kine_SetAxisLimit", JOINT.pack(*upper), JOINT.pack(*lower)).code == 0

    def set_units(self, cell):
        units = cell.get("mechanical_units", [])
        if not units:
            return
        assert self.naive.call("Kine_SetMechUnitGlobalCfg", len(units), self.externals, 1).code == 0
        for i, unit in enumerate(units):
            frames, drives = [[0.0] * 6 for _ in range(6)], [0] * 6
            for k, axis in enumerate(unit["axes"]):
                frames[k], drives[k] = frame_of(axis.get("frame")), axis["external_axis"]
            carries = i == 0 and "robot_on_unit" in cell
            data = MECH_UNIT.pack(1, CELL_KINDS[unit["kind"]], int(carries), cell["robot_on_unit"] if carries else 0,
                                  len(unit["axes"]), *[v for frame in frames for v in frame], *drives)
            assert self.naive.call("Kine_SetMechUnitParam", i, data).code == 0

    def write(self, directory):
        path = directory / "cell.json"
        path.write_text(json.dumps(self.cell))
        return path

    def record(self, joints):
        """Axes of the arm and then its external axes, as a row has them."""
        axes, externals = list(joints[:self.axes]), list(joints[self.axes:])
        return JOINT.pack(*axes, *[0.0] * (8 - self.axes), *externals, *[0.0] * (6 - len(externals)))

    def joints(self, record):
        values = JOINT.unpack(record)
        return [*values[:self.axes], *values[8:8 + self.externals]]

    def pose(self, joints, call="Kine_JointToWobjPos"):
        """Frame, integers and external axes."""
        answer = self.naive.call(call, self.record(joints), self.tool, self.wobj, self.load, True)
        assert answer.code == 0, answer
        values = POSE.unpack(answer.output)
        return list(values[:6]), list(values[6:10]), list(values[10:10 + self.externals])

    def config(self, joints):
        return list(ARM_CONFIG.unpack(self.naive.call("Kine_GetArmType", self.record(joints), True).output))

    def inverse(self, frame, config, externals=()):
        """The code, and the joints or None."""
        target = POSE.pack(*frame, *config, *externals, *[0.0] * (6 - len(externals)))
        answer = self.naive.call("Kine_WobjPosToJoint", target, self.tool, self.wobj, self.load, True)
        return answer.code, None if answer.code else self.joints(answer.output)

    def jog(self, slots, mode, steps, joints):
        answer = self.naive.call("Kine_InchMovePosCalc", DIRECTIONS.pack(*slots, *[0] * (14 - len(slots))), mode,
                                   self.tool, self.wobj, self.load, VECTOR.pack(*steps), self.record(joints), True)
        return answer.code, None if answer.code else self.joints(answer.output)

    def align(self, mode, joints):
        answer = self.naive.call("Kine_CalcAlignPos", mode, self.record(joints), self.tool, self.wobj, self.load,
                                   True)
        return answer.code, None if answer.code else self.joints(answer.output)

    def words(self, config):
        if self.arm_type == 6:
            return SIX_AXIS_WORDS[config[3]]
        return "elbow+" if config[0] > 0 else "elbow-"

    def joint_names(self):
        return [f"q{i + 1}_deg" for i in range(self.axes)] + [f"e{i + 1}" for i in range(self.externals)]

    def random_joints(self, rng, turns=0):
        """In the ranges that an inverse gives back, away from singular poses."""
        if self.arm_type == 6:
            axes = [rng.uniform(-179, 179), rng.uniform(-110, 110), rng.uniform(-80, 60), rng.uniform(-179, 179),
                    rng.choice((-1, 1)) * rng.uniform(10, 115), rng.uniform(-179, 179)]
            for i in (0, 3, 5):
                axes[i] += 360 * rng.randint(-turns, turns)
        else:
            elbow = rng.choice((-1, 1)) * rng.uniform(20, 140)
            axes = [rng.uniform(-160, 160), elbow, rng.uniform(-1500, 1500),
                    rng.uniform(-160, 160) + 360 * rng.randint(-turns, turns)]
            if self.arm_type == 4110:
                axes[1] -= math.copysign(180, elbow)
                axes[0] += 360 * rng.randint(-turns, turns)
                axes[1] += 360 * rng.randint(-turns, turns)
        return axes + [rng.uniform(-60, 60) for _ in range(self.externals)]


def arm_record(arm):
    if arm["type"] != 6:
        return FOUR_AXIS_PARAM.pack(arm["link1_length_mm"], arm["link2_length_mm"], arm["z_offset_mm"],
                                    arm["screw_lead_mm_per_turn"], *[0.0] * 8)
    values = [0.0] * 34
    for place, key in enumerate(("a1_mm", "a2_mm", "a3_mm", "d4_mm", "d6_mm", "d1_mm", "lateral_offset_mm")):
        values[place] = float(arm.get(key, 0.0))
    values[8:13] = [90.0, 0.0, 90.0, -90.0, 90.0]
    values[14] = float(arm.get("d3_mm", 0.0))
    return SIX_AXIS_PARAM.pack(*values)


def text_of(values):
    """A target on the command line or a line of a file."""
    return ",".join(repr(v) for v in values)


def rotation(frame):
    return euler_to_rotation(*[math.radians(v) for v in frame[3:]])


def same_frame(a, b, mm=1e-6, deg=1e-6):
    """Two frames as position and rotation: the angles of one orientation are not unique."""
    return (all(abs(x - y) < mm for x, y in zip(a[:3], b[:3]))
            and all(abs(x - y) < math.radians(deg) for x, y in zip(rotation(a), rotation(b))))


def table_row(name, *fields):
    """A row of a table: numbers in 11 columns, pairs of a text or whole number and its width."""
    text = f"{name:<10}"
    for field in fields:
        if isinstance(field, tuple):
            value, width = field
            text += f" {value:<{-width}}" if width < 0 else f" {value:>{width}}"
        else:
            number = f"{field:.4f}"
            text += f" {number.replace('-', '') if float(number) == 0 else number:>11}"
    return text + " 0x0000\n"

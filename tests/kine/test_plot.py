"""kine plot: what the pictures show, read back from the SVG and held against the naive model and closed forms."""

import json
import math
import re
import xml.etree.ElementTree as ElementTree
from collections import Counter
from types import SimpleNamespace

import pytest
from conftest import BAD_FILE, DONE, REFUSED, USAGE

import chains
from geometry import matrix_to_pose, pose_to_matrix, product
from records import DEG2RAD, FOUR_AXIS_PARAM, SIX_AXIS_PARAM, Refused
from store import Store

SVG = "{http://www.w3.org/2000/svg}"
RED, GREEN, BLUE = "#c2272d", "#15803d", "#1d4ed8"
SINGULAR, CLOSE, LIMITS = "#c2272d", "#f0a35a", "#cbd5e1"
BLUES = ["#dbeafe", "#93c5fd", "#4f8ff0", "#1e4fc4"]

LENGTHS = {"type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 120, "d1_mm": 450, "d4_mm": 640, "d6_mm": 100}
WRIST = {
    "name": "Wrist arm",
    "arm": {**LENGTHS, "weights_Nmm": [250000, 8000, 15000, 60000, 9000, 9000, 0],
            "k2_Nm_per_rad": 200000, "k3_Nm_per_rad": 150000, "k5_Nm_per_rad": 40000},
    "limits": {"lower_deg": [-170, -130, -100, -190, -120, -350], "upper_deg": [170, 60, 220, 190, 120, 350]},
    "tools": {"torch": {"frame": {"x_mm": 20, "z_mm": 170, "b_deg": 30}, "load": {"mass_kg": 4, "cog_mm": [0, 0, 60]}}},
    "loads": {"box": {"mass_kg": 6, "cog_mm": [0, 0, 50]}},
    "work_objects": {"table": {"user_frame": {"x_mm": 700, "y_mm": -250, "z_mm": 200, "a_deg": 15}}},
    "joints": {"home": {"axes_deg": [20, -20, 30, 0, -80, 0]}},
    "use": {"tool": "torch", "work_object": "table"},
}
RIGID = {**WRIST, "arm": LENGTHS}
SCARA = {"name": "Scara",
         "arm": {"type": 4, "link1_length_mm": 325, "link2_length_mm": 275, "z_offset_mm": 180,
                 "screw_lead_mm_per_turn": 20},
         "joints": {"home": {"axes_deg": [30, 60, 90, -90]}}}
FOLDED = {"name": "Folded <&> count",
          "arm": {"type": 4110, "link1_length_mm": 400, "link2_length_mm": 300, "z_offset_mm": 200,
                  "screw_lead_mm_per_turn": 25, "link1_tilt_x_deg": 3, "link2_tilt_y_deg": -2},
          "joints": {"home": {"axes_deg": [20, -100, -1800, 10]}}}
TRACK = {
    "name": "Track and positioner",
    "arm": {**LENGTHS, "d3_mm": 20, "lateral_offset_mm": 20},
    "external_axes": [{"name": "slide", "kind": "linear", "travel_mm": [-500, 1500]},
                      {"name": "tilt", "kind": "rotary"}, {"name": "table", "kind": "rotary"}],
    "mechanical_units": [
        {"name": "track", "kind": "linear",
         "axes": [{"external_axis": 0, "frame": {"z_mm": 300, "a_deg": 90}},
                  {"external_axis": 0, "frame": {"a_deg": -90}}]},
        {"name": "positioner", "kind": "two-rotary",
         "axes": [{"external_axis": 1, "frame": {"x_mm": 1400, "y_mm": 300, "z_mm": 700, "b_deg": 90}},
                  {"external_axis": 2, "frame": {"x_mm": 150, "b_deg": -90}}]}],
    "robot_on_unit": 0,
    "tools": {"torch": {"frame": {"z_mm": 200}}},
    "work_objects": {"part": {"mechanical_unit": 1, "object_frame": {"x_mm": 100, "y_mm": 50, "z_mm": 40}}},
    "joints": {"home": {"axes_deg": [10, -20, 10, 5, -60, 7], "external_mm_or_deg": [300, 30, 45]}},
    "use": {"tool": "torch", "work_object": "part"},
}
HELD = {
    "name": "Held work object",
    "arm": LENGTHS,
    "tools": {"grinder": {"held_by_robot": False, "frame": {"x_mm": 900, "y_mm": 250, "z_mm": 500, "b_deg": -60}}},
    "work_objects": {"casting": {"held_by_robot": True, "user_frame": {"z_mm": 120},
                                 "object_frame": {"x_mm": 60, "a_deg": 45}}},
    "joints": {"home": {"axes_deg": [10, -10, 0, 20, -50, 30]}},
    "use": {"tool": "grinder", "work_object": "casting"},
}
CELLS = {"wrist": WRIST, "scara": SCARA, "folded": FOLDED, "track": TRACK, "held": HELD}


# The naive model of a cell

def frame_of(fields):
    values = [fields.get(f"{name}_mm", 0.0) for name in "xyz"]
    return values + [fields.get(f"{name}_deg", 0.0) * DEG2RAD for name in "abc"]


def load_of(fields):
    return SimpleNamespace(mass=fields.get("mass_kg", 0.0), cog=fields.get("cog_mm", [0.0] * 3), inertia=[0.0] * 3)


def arm_bytes(arm):
    def values(*names):
        return [arm.get(name, 0.0) for name in names]
    if arm["type"] == 6:
        twists = arm.get("alpha_deg", [90, 0, 90, -90, 90])
        return SIX_AXIS_PARAM.pack(
            *values("a1_mm", "a2_mm", "a3_mm", "d4_mm", "d6_mm", "d1_mm", "lateral_offset_mm"), 0.0, *twists,
            *values("beta2_deg", "d3_mm", "d5_mm", "a4_mm", "a5_mm", "mount_x_deg", "mount_y_deg"), *[0.0] * 4,
            *arm.get("weights_Nmm", [0.0] * 7), *values("k2_Nm_per_rad", "k3_Nm_per_rad", "k5_Nm_per_rad"))
    return FOUR_AXIS_PARAM.pack(
        *values("link1_length_mm", "link2_length_mm", "z_offset_mm", "screw_lead_mm_per_turn"), *[0.0] * 4,
        *values("link1_tilt_x_deg", "link2_tilt_x_deg", "link1_tilt_y_deg", "link2_tilt_y_deg"))


class Model:
    """A cell dictionary in the reference model."""

    def __init__(self, cell):
        self.cell = cell
        self.store = Store()
        assert self.store.initialise(cell["arm"]["type"], arm_bytes(cell["arm"])) == 0
        limits = cell.get("limits")
        self.axes = 6 if cell["arm"]["type"] == 6 else 4
        self.lower = limits["lower_deg"] if limits else [-999] * self.axes
        self.upper = limits["upper_deg"] if limits else [999] * self.axes
        if limits:
            pad = [0.0] * (14 - self.axes)
            self.store.set_limits([v * DEG2RAD for v in self.upper] + pad, [v * DEG2RAD for v in self.lower] + pad)
        units = cell.get("mechanical_units", [])
        self.store.unit_count = len(units)
        kinds = {"linear": 1, "rotary": 2, "two-rotary": 3}
        for i, unit in enumerate(units):
            frames = [frame_of(axis.get("frame", {})) for axis in unit["axes"]]
            frames = [f[:3] + [v / DEG2RAD for v in f[3:]] for f in frames] + [[0.0] * 6] * (6 - len(frames))
            self.store.set_unit(i, SimpleNamespace(
                active=1, kind=kinds[unit["kind"]], option1=1 if i == 0 and "robot_on_unit" in cell else 0,
                option2=cell.get("robot_on_unit", 0), axis_count=len(unit["axes"]), frames=frames,
                axis_index=[axis["external_axis"] for axis in unit["axes"]] + [0] * (6 - len(unit["axes"]))))
        use = cell.get("use", {})
        tool = cell.get("tools", {}).get(use.get("tool"), {})
        wobj = cell.get("work_objects", {}).get(use.get("work_object"), {})
        self.tool = SimpleNamespace(held=int(tool.get("held_by_robot", True)), frame=frame_of(tool.get("frame", {})),
                                    load=load_of(tool.get("load", {})))
        combined = product(pose_to_matrix(frame_of(wobj.get("user_frame", {}))),
                           pose_to_matrix(frame_of(wobj.get("object_frame", {}))))
        self.wobj = SimpleNamespace(held=int(wobj.get("held_by_robot", False)), fix=int("mechanical_unit" not in wobj),
                                    unit=wobj.get("mechanical_unit", 0), combined=matrix_to_pose(combined))
        self.bare = SimpleNamespace(held=1, frame=[0.0] * 6, load=load_of({}))
        self.world = SimpleNamespace(held=0, fix=1, unit=0, combined=[0.0] * 6)

    def joints(self, axes, external=()):
        return SimpleNamespace(axis=[v * DEG2RAD for v in axes] + [0.0] * (8 - len(axes)),
                               ext=list(external) + [0.0] * (6 - len(external)))

    def home(self):
        home = self.cell["joints"]["home"]
        return self.joints(home["axes_deg"], home.get("external_mm_or_deg", ()))

    def matrix(self, joints, tool, wobj):
        return pose_to_matrix(chains.joint_to_world(self.store, joints, tool, wobj, load_of({})).frame)

    def flange(self, joints):
        return self.matrix(joints, self.bare, self.world)

    def tool_point(self, joints):
        return self.matrix(joints, self.tool, self.wobj)

    def work_object(self, joints):
        combined = pose_to_matrix(self.wobj.combined)
        if self.wobj.held:
            return product(self.flange(joints), combined)
        if self.wobj.fix:
            return combined
        return product(chains.unit_transform(self.store, self.wobj.unit, joints.ext, 1, False), combined)

    def carried(self):
        """What the flange carries, as a tool."""
        return self.tool if self.tool.held else SimpleNamespace(held=1, frame=self.wobj.combined, load=self.tool.load)

    def within_limits(self, q):
        turned = {6: (0, 3, 5), 4: (3,)}[self.axes]
        for i in range(self.axes):
            lower, upper = self.lower[i], self.upper[i]
            turns = range(-4, 5) if i in turned else (0,)
            if not any(lower <= q[i] / DEG2RAD + 360.0 * n <= upper for n in turns):
                return False
        return True

    def solutions(self, target, tool, payload):
        """Joints or code of each posture for a target in the world."""
        for posture in (range(8) if self.axes == 6 else (1, -1)):
            cfg = [0, 0, 0, posture] if self.axes == 6 else [posture, 0, 0, 0]
            record = SimpleNamespace(frame=target, cfg=cfg, ext=[0.0] * 6)
            try:
                yield chains.wobj_to_joint(self.store, record, tool, self.world, payload).axis
            except Refused as refused:
                yield refused.code


# Reading pictures

def document(text):
    root = ElementTree.fromstring(text)
    assert root.tag == SVG + "svg"
    assert [child.tag for child in root[:2]] == [SVG + "title", SVG + "rect"]
    return root


def by_id(root, name):
    found = [e for e in root.iter(SVG + "g") if e.get("id") == name]
    assert len(found) == 1, (name, len(found))
    return found[0]


def ids(root):
    return [e.get("id") for e in root.iter(SVG + "g")]


def texts(element):
    return [e.text for e in element.iter(SVG + "text")]


def numbers(path):
    return [float(v) for v in re.findall(r"-?\d+(?:\.\d+)?", path)]


class Axes:
    """Page to mm by the grid lines of a panel and the numbers at their ends."""

    def __init__(self, panel):
        self.ticks = ([], [])
        line = None
        for child in panel:
            if child.tag == SVG + "path":
                line = numbers(child.get("d"))
            elif child.tag == SVG + "text" and line and re.fullmatch(r"-?\d+(\.\d+)?", child.text):
                along = 0 if line[0] == line[2] else 1
                self.ticks[along].append((line[along], float(child.text)))
        for along in self.ticks:
            assert len(along) >= 2

    def mm(self, page):
        result = []
        for value, ticks in zip(page, self.ticks):
            (a, first), (b, last) = ticks[0], ticks[-1]
            result.append(first + (value - a) * (last - first) / (b - a))
        return result

    def precision(self):
        """mm that two decimals on the page leave open."""
        (a, first), (b, last) = self.ticks[0][0], self.ticks[0][-1]
        return 0.025 * abs((last - first) / (b - a))

    def scale(self):
        (a, first), (b, last) = self.ticks[0][0], self.ticks[0][-1]
        return abs((b - a) / (last - first))


def origin_of(frame_group):
    circle = frame_group.find(SVG + "circle")
    return float(circle.get("cx")), float(circle.get("cy"))


def write_cell(folder, cell, name="cell"):
    file = folder / f"{name}.json"
    file.write_text(json.dumps(cell), encoding="utf-8")
    return file


def picture(kine, folder, cell, kind, *arguments):
    run = kine("plot", kind, write_cell(folder, cell), *arguments, "-o", "-", directory=folder)
    assert run.status == DONE and run.err == "", run.err
    return document(run.out)


def expect_at(root, name, matrix, tolerance=0.0):
    """The frame stands where the matrix says, in both views, with its arrows along the columns."""
    for view, rows in (("side", (0, 2)), ("top", (0, 1))):
        axes = Axes(by_id(root, view))
        group = by_id(root, f"{view}-{name}")
        page = origin_of(group)
        for got, row in zip(axes.mm(page), rows):
            assert got == pytest.approx(matrix[9 + row], abs=axes.precision() + tolerance), (view, name)
        for column, colour in enumerate((RED, GREEN, BLUE)):
            u, v = (matrix[3 * row + column] for row in rows)
            arrow = [p for p in group.findall(SVG + "path")
                     if p.get("stroke") == colour and p.get("stroke-width") == "1.8"]
            if math.hypot(u, v) < 0.11:
                assert not arrow
            elif math.hypot(u, v) > 0.5:
                line = numbers(arrow[0].get("d"))
                du, dv = line[2] - line[0], line[1] - line[3]
                assert math.atan2(dv, du) == pytest.approx(math.atan2(v, u), abs=0.01)


# The arm

@pytest.mark.parametrize("name", ["scara", "folded", "track", "held"])
def test_frames_of_the_arm_stand_where_the_model_has_them(kine, tmp_path, name):
    model = Model(CELLS[name])
    root = picture(kine, tmp_path, CELLS[name], "arm", "@home")
    home = model.home()
    if "tools" not in CELLS[name]:
        expect_at(root, "base", pose_to_matrix([0.0] * 6))
    if name == "folded":
        # Poses of four-axis arms leave the tilt out of the orientation.
        flange = model.flange(home)
        for view, rows in (("side", (0, 2)), ("top", (0, 1))):
            axes = Axes(by_id(root, view))
            got = axes.mm(origin_of(by_id(root, f"{view}-flange")))
            assert got == pytest.approx([flange[9 + row] for row in rows], abs=axes.precision())
        return
    expect_at(root, "flange", model.flange(home))
    if "tools" in CELLS[name]:
        expect_at(root, "tool", model.tool_point(home))
        expect_at(root, "wobj", model.work_object(home))


def test_a_bending_arm_is_drawn_without_its_deflection(kine, tmp_path):
    root = picture(kine, tmp_path, WRIST, "arm")
    model = Model(RIGID)
    expect_at(root, "flange", model.flange(model.home()))
    expect_at(root, "tool", model.tool_point(model.home()))
    expect_at(root, "wobj", model.work_object(model.home()))


def test_a_carried_base_stands_on_its_track_and_the_world_is_shown(kine, tmp_path):
    root = picture(kine, tmp_path, TRACK, "arm", "0,0,0,0,0,0,700,0,0")
    # The track runs along Y of the world at Z 300; the base faces X again.
    expect_at(root, "base", pose_to_matrix([0.0, 700.0, 300.0, 0.0, 0.0, 0.0]))
    expect_at(root, "world", pose_to_matrix([0.0] * 6))
    axes = Axes(by_id(root, "top"))
    rail = numbers(by_id(root, "top-unit0").find(SVG + "path").get("d"))
    assert axes.mm(rail[:2]) == pytest.approx([0.0, -500.0], abs=axes.precision())
    assert axes.mm(rail[2:]) == pytest.approx([0.0, 1500.0], abs=axes.precision())
    assert "positioner" in texts(by_id(root, "side"))


def test_the_joints_of_the_puma_by_hand(kine):
    run = kine("plot", "arm", "puma.json", "0,0,0,0,0,0", "-o", "-")
    root = document(run.out)
    a2, a3, d4, offset = 431.8, 20.3, 431.8, 150.05
    for view, wanted in (("side", [(0, 0), (0, a2), (0, a2 + a3), (d4, a2 + a3)]),
                         ("top", [(0, 0), (0, offset), (d4, offset)])):
        panel = by_id(root, view)
        axes = Axes(panel)
        circles = [c for c in panel.findall(SVG + "circle") if c.get("r") == "5.5"]
        assert len(circles) == len(wanted)
        for circle, point in zip(circles, wanted):
            page = float(circle.get("cx")), float(circle.get("cy"))
            assert axes.mm(page) == pytest.approx(point, abs=axes.precision())
    assert "base" in texts(by_id(root, "side")) and "flange, tool" in texts(by_id(root, "top"))
    assert "Joints 0, 0, 0, 0, 0, 0 deg" in texts(root)
    assert "Tool centre point in the world: 431.80, 150.05, 452.10 mm; A, B, C 0.00, -90.00, 180.00 deg" in [
        t.replace("-180.00", "180.00") for t in texts(root)]


def test_both_views_have_one_scale(kine, tmp_path):
    for cell in CELLS.values():
        root = picture(kine, tmp_path, cell, "arm")
        side, top = Axes(by_id(root, "side")), Axes(by_id(root, "top"))
        assert side.scale() == pytest.approx(top.scale(), rel=1e-3)


def test_the_elbow_of_a_four_axis_arm_from_above(kine, tmp_path):
    root = picture(kine, tmp_path, SCARA, "arm", "40,-70,0,0")
    panel = by_id(root, "top")
    axes = Axes(panel)
    circles = [c for c in panel.findall(SVG + "circle") if c.get("r") == "5.5"]
    elbow = [(325 * math.cos(math.radians(40)), 325 * math.sin(math.radians(40)))]
    tip = [(elbow[0][0] + 275 * math.cos(math.radians(-30)), elbow[0][1] + 275 * math.sin(math.radians(-30)))]
    for circle, point in zip(circles, [(0.0, 0.0)] + elbow + tip):
        assert axes.mm((float(circle.get("cx")), float(circle.get("cy")))) == pytest.approx(point, abs=axes.precision())
    assert len(circles) == 3


def test_a_far_work_object_is_named_but_not_drawn(kine, tmp_path):
    far = {**SCARA, "work_objects": {"dock": {"user_frame": {"x_mm": 50000}}}, "use": {"work_object": "dock"}}
    root = picture(kine, tmp_path, far, "arm")
    assert "side-wobj" not in ids(root)
    assert any("Too far away to show: work object dock at 50000, 0, 0 mm" in t for t in texts(root))


# Postures

def test_every_posture_is_drawn_with_its_words_and_joints(kine, tmp_path):
    cell = {**RIGID, "limits": {"lower_deg": [-360] * 6, "upper_deg": [360] * 6}, "use": {}}
    root = picture(kine, tmp_path, cell, "postures", "20,-5,-30,30,40,50", "--joints")
    words = [f"{a} {b} {c}" for a in ("front", "back") for b in ("near", "far") for c in ("plain", "flipped")]
    model = Model({**cell, "limits": None})
    target = matrix_to_pose(model.flange(model.joints([20, -5, -30, 30, 40, 50])))
    for i, q in enumerate(model.solutions(target, model.bare, load_of({}))):
        shown = texts(by_id(root, f"posture{i}"))
        assert shown[:2] == [words[i], f"Cfg4 = {i}"]
        values = [float(v) for line in shown[2:4] for v in line.split("= ")[1].split(", ")]
        for value, angle in zip(values, q):
            assert (value - angle / DEG2RAD + 180.0) % 360.0 - 180.0 == pytest.approx(0.0, abs=0.051)
        assert by_id(root, f"posture{i}-tool") is not None


def test_a_refused_posture_is_an_empty_frame_with_its_code(kine, tmp_path):
    root = picture(kine, tmp_path, {**RIGID, "use": {}}, "postures", "1300,0,400,0,90,0")
    model = Model({**RIGID, "use": {}})
    codes = list(model.solutions([1300.0, 0.0, 400.0, 0.0, math.pi / 2, 0.0], model.bare, load_of({})))
    assert {c for c in codes if isinstance(c, int)} == {0x6097}
    for i, code in enumerate(codes):
        shown = texts(by_id(root, f"posture{i}"))
        if isinstance(code, int):
            assert shown[2:] == ["0x6097", "KINE_ERR_IK_7"]
            assert f"posture{i}-tool" not in ids(root)
        else:
            assert f"posture{i}-tool" in ids(root)


def test_the_tool_stands_at_the_target_in_every_posture(kine, tmp_path):
    root = picture(kine, tmp_path, {**RIGID, "use": {}}, "postures", "700,200,500,20,150,10")
    places = set()
    for i in range(8):
        panel = by_id(root, f"posture{i}")
        corner = numbers(panel.find(SVG + "path").get("d"))[:2]
        if f"posture{i}-tool" in ids(root):
            page = origin_of(by_id(root, f"posture{i}-tool"))
            places.add((round(page[0] - corner[0], 1), round(page[1] - corner[1], 1)))
    assert len(places) == 1


def test_two_postures_of_a_four_axis_arm(kine, tmp_path):
    root = picture(kine, tmp_path, SCARA, "postures", "@home")
    assert texts(by_id(root, "posture0")) == ["elbow+", "Cfg1 = 1", "q1 q2 = 30.0, 60.0", "q3 q4 = 90.0, -90.0"]
    # The mirrored elbow: q2 changes its sign, and q1 + q2 + q4 stays 0.
    x = 325 * math.cos(math.radians(30))
    y = 325 * math.sin(math.radians(30)) + 275
    q1 = 2 * math.degrees(math.atan2(y, x)) - 30
    assert texts(by_id(root, "posture1")) == ["elbow-", "Cfg1 = -1", f"q1 q2 = {q1:.1f}, -60.0",
                                             f"q3 q4 = 90.0, {60 - q1:.1f}"]


def test_a_posture_outside_the_limits_says_so(kine, tmp_path):
    cell = {**SCARA, "limits": {"lower_deg": [-170, 0, -3600, -360], "upper_deg": [170, 150, 3600, 360]}}
    root = picture(kine, tmp_path, cell, "postures", "@home")
    assert "outside the limits" not in texts(by_id(root, "posture0"))
    assert "outside the limits" in texts(by_id(root, "posture1"))


def test_a_right_angle_of_the_folded_elbow_is_found_in_both_postures(kine, tmp_path):
    # 300, 400, 500: the elbow angle is 90, which the library refuses for some turn numbers of axis 2.
    cell = {"name": "F", "arm": {**FOLDED["arm"], "link1_tilt_x_deg": 0, "link2_tilt_y_deg": 0},
            "limits": {"lower_deg": [-180, -330, -3600, -360], "upper_deg": [180, -30, 3600, 360]}}
    root = picture(kine, tmp_path, cell, "postures", "400,300,200,0,0,0")
    assert texts(by_id(root, "posture0")) == ["elbow+", "Cfg1 = 1", "q1 q2 = 0.0, -90.0", "q3 q4 = 0.0, -90.0"]
    q1 = 2 * math.degrees(math.atan2(300, 400))
    assert texts(by_id(root, "posture1")) == ["elbow-", "Cfg1 = -1", f"q1 q2 = {q1:.1f}, -270.0",
                                             f"q3 q4 = 0.0, {90 - q1:.1f}"]


# Reach

def map_cells(root):
    """The targets of each colour, counted in rectangles."""
    counts = Counter()
    for rect in by_id(root, "map").findall(SVG + "rect"):
        cells = float(rect.get("width")) / float(rect.get("height"))
        assert abs(cells - round(cells)) < 0.02 * cells
        counts[rect.get("fill")] += round(cells)
    return counts


def legend(root):
    """Colour to number of targets."""
    group = by_id(root, "legend")
    colours = [p.get("fill") for p in group.findall(SVG + "path")]
    values = [int(t) for t in texts(group) if t.isdigit()]
    assert len(colours) == len(values)
    return {colour: count for colour, count in zip(colours, values) if count}


def annulus(first, second, step, border=1e-6):
    """Grid points between the circles, and on them."""
    inside = on = 0
    most = int((first + second) / step) + 1
    for i in range(-most, most + 1):
        for j in range(-most, most + 1):
            r = step * math.hypot(i, j)
            if abs(r - (first + second)) < border or abs(r - abs(first - second)) < border:
                on += 1
            elif abs(first - second) < r < first + second:
                inside += 1
    return inside, on


@pytest.mark.parametrize("arm_type", [4, 4110])
def test_the_reach_of_a_four_axis_arm_is_the_annulus(kine, tmp_path, arm_type):
    cell = {"name": "A", "arm": {**SCARA["arm"], "type": arm_type}}
    root = picture(kine, tmp_path, cell, "reach", "--plane", "xy", "--step", "25", "--at", "100")
    inside, on = annulus(325.0, 275.0, 25.0)
    assert on > 0
    shown = legend(root)
    assert shown.get(BLUES[3], 0) + shown.get(CLOSE, 0) + shown.get(SINGULAR, 0) - on == inside
    assert shown[SINGULAR] >= on
    cells = map_cells(root)
    assert cells == {colour: count for colour, count in shown.items() if colour != "#ffffff"}
    # Elbow angles away from 0 and 180 by 3 deg: the law of cosines.
    clear = sum(1 for i in range(-24, 25) for j in range(-24, 25)
                if 325**2 + 275**2 - 2 * 325 * 275 * math.cos(0.053) < 625 * (i * i + j * j)
                < 325**2 + 275**2 + 2 * 325 * 275 * math.cos(0.053))
    assert shown[BLUES[3]] >= clear


def test_the_limits_of_a_four_axis_arm_cut_the_annulus(kine, tmp_path):
    # One posture only: the elbow bends to one side, and the screw ends.
    cell = {**SCARA, "limits": {"lower_deg": [-180, 10, -1800, -720], "upper_deg": [180, 170, 900, 720]}}
    root = picture(kine, tmp_path, cell, "reach", "--plane", "xz", "--step", "10", "--joints", "0,90,0,0")
    assert BLUES[3] not in legend(root)
    reached = legend(root)[BLUES[2]]
    # Height 180 - 20 * 5 to 180 + 20 * 2.5; radii by the law of cosines.
    low = math.sqrt(325**2 + 275**2 - 2 * 325 * 275 * math.cos(math.radians(10)))
    high = math.sqrt(325**2 + 275**2 + 2 * 325 * 275 * math.cos(math.radians(10)))
    columns = sum(1 for i in range(-60, 61) if low <= abs(10 * i) <= high)
    rows = sum(1 for i in range(-60, 61) if 80 <= 10 * i <= 230)
    assert reached == columns * rows


def expected_reach(model, plane, at, step, orientation, reach, shoulder, most=8, wanted=range(8)):
    """Counts of each colour by the naive model."""
    tool = model.carried()
    counts = Counter()
    angles = [v * DEG2RAD for v in orientation]
    arm = model.store.arm()
    for i in grid(shoulder[0], reach, step):
        for j in grid(shoulder[1], reach, step):
            place = [i * step, at, j * step] if plane == "xz" else [i * step, j * step, at]
            found = list(model.solutions(place + angles, tool, load_of({})))
            found = [found[k] for k in wanted]
            solved = [q for q in found if not isinstance(q, int)]
            good = [q for q in solved if model.within_limits(q)]
            clear = [q for q in good if not arm.is_singular(q, 0)]
            if any(not arm.is_singular(q, 2) for q in good):
                counts[BLUES[(len(clear) - 1) // 2 if most == 8 else len(clear) - 1 + 4 - most]] += 1
            elif good:
                counts[CLOSE if clear else SINGULAR] += 1
            elif solved:
                counts[LIMITS] += 1
            elif any(code in (0x6093, 0x6095, 0x6098) for code in found):
                counts[SINGULAR] += 1
            else:
                counts["#ffffff"] += 1
    return dict(counts)


def grid(centre, reach, step):
    return range(math.ceil((centre - reach) / step), math.floor((centre + reach) / step) + 1)


def test_the_reach_of_a_six_axis_arm_within_limits_is_that_of_the_model(kine, tmp_path):
    cell = {**RIGID, "use": {"tool": "torch"}}
    root = picture(kine, tmp_path, cell, "reach", "--plane", "xz", "--step", "150", "--at", "50")
    reach = 150 + 600 + math.hypot(120, 640) + 100 + math.hypot(20, 170)
    expected = expected_reach(Model(cell), "xz", 50.0, 150.0, (0, 0, 180), reach, (0.0, 450.0))
    assert len(expected) >= 4
    assert legend(root) == expected
    assert map_cells(root) == {colour: n for colour, n in expected.items() if colour != "#ffffff"}


def test_the_reach_with_an_orientation_and_two_postures(kine, tmp_path):
    cell = {**RIGID, "use": {"tool": "torch"}}
    root = picture(kine, tmp_path, cell, "reach", "--plane", "xy", "--step", "150", "--at", "700",
                   "--orientation", "-20,80,10", "--posture", "front far")
    reach = 150 + 600 + math.hypot(120, 640) + 100 + math.hypot(20, 170)
    expected = expected_reach(Model(cell), "xy", 700.0, 150.0, (-20, 80, 10), reach, (0.0, 0.0), 2, (2, 3))
    assert legend(root) == expected and BLUES[3] in expected
    assert "reached in 1 posture" in texts(root) and "reached in 2 postures" in texts(root)


def test_the_reach_of_a_held_work_object_is_that_of_its_frame(kine, tmp_path):
    root = picture(kine, tmp_path, HELD, "reach", "--plane", "xz", "--step", "200")
    reach = 150 + 600 + math.hypot(120, 640) + 100 + math.hypot(60 * math.cos(0.0), 120)
    expected = expected_reach(Model(HELD), "xz", 0.0, 200.0, (0, 0, 180), reach, (0.0, 450.0))
    assert legend(root) == expected
    assert any(t.startswith("Held work object casting with A, B, C 0, 0, 180 deg") for t in texts(root))


def test_the_plane_goes_through_a_carried_base(kine, tmp_path):
    root = picture(kine, tmp_path, TRACK, "reach", "--plane", "xy", "--step", "200",
                   "--joints", "0,0,0,0,0,0,700,0,0")
    assert any("plane XY at Z = 300 mm" in t for t in texts(root))
    axes = Axes(root)
    line = numbers(by_id(root, "silhouette").find(SVG + "path").get("d"))
    assert axes.mm(line[:2]) == pytest.approx([0.0, 700.0], abs=axes.precision())


def test_cells_of_one_colour_in_a_row_are_one_rectangle(kine, tmp_path):
    root = picture(kine, tmp_path, {"name": "A", "arm": SCARA["arm"]}, "reach", "--plane", "xy", "--step", "5")
    rectangles = by_id(root, "map").findall(SVG + "rect")
    # 241 rows, each with at most a handful of changes of colour.
    assert len(rectangles) < 241 * 8 < sum(map_cells(root).values())


# Deflection

def largest_deflection(cell, load, step, reach, plane, at, shoulder):
    bending, rigid = Model(cell), Model({**cell, "arm": {**cell["arm"], "k2_Nm_per_rad": 0.0}})
    payload = load_of(load)
    tool = bending.carried()
    best = (0.0, None)
    reached = 0
    for j in grid(shoulder[1], reach, step):
        for i in grid(shoulder[0], reach, step):
            place = [i * step, at, j * step] if plane == "xz" else [i * step, j * step, at]
            values = []
            for q in bending.solutions(place + [0.0, 0.0, math.pi], tool, payload):
                if isinstance(q, int) or not bending.within_limits(q):
                    continue
                joints = SimpleNamespace(axis=q, ext=[0.0] * 6)
                bent = chains.joint_to_world(bending.store, joints, tool, bending.world, payload).frame
                stiff = chains.joint_to_world(rigid.store, joints, tool, rigid.world, payload).frame
                values.append(math.dist(bent[:3], stiff[:3]))
            reached += bool(values)
            if values and max(values) > best[0] + 1e-9:
                best = (max(values), (i * step, j * step))
    return best, reached


@pytest.mark.parametrize("load", ["none", "box"])
def test_the_largest_deflection_is_that_of_the_model(kine, tmp_path, load):
    root = picture(kine, tmp_path, WRIST, "deflection", "--plane", "xz", "--step", "150", "--at", "40", "--load", load)
    reach = 150 + 600 + math.hypot(120, 640) + 100 + math.hypot(20, 170)
    (value, place), reached = largest_deflection(WRIST, WRIST["loads"].get(load, {}), 150.0, reach, "xz", 40.0,
                                                 (0.0, 450.0))
    assert f"{value:.3f} mm" in texts(by_id(root, "mark"))
    # Wrapped under the legend.
    note = " ".join(texts(root))
    assert f"Largest: {value:.3f} mm at X {place[0]:.0f}, Z {place[1]:.0f} mm." in note
    axes = Axes(root)
    assert axes.mm(origin_of(by_id(root, "mark"))) == pytest.approx(place, abs=axes.precision())
    shown = legend(root)
    assert sum(shown.values()) - shown["#ffffff"] == reached
    bins = [t for t in texts(by_id(root, "legend")) if " to " in t]
    low, high = (float(v) for v in re.fullmatch(r"([\d.]+) to ([\d.]+) mm", bins[0]).groups())
    assert low <= value <= high


def test_an_arm_too_soft_counts_as_rigid_and_the_picture_says_so(kine, tmp_path):
    soft = {**WRIST, "arm": {**WRIST["arm"], "k2_Nm_per_rad": 1.0, "k3_Nm_per_rad": 1.0, "k5_Nm_per_rad": 1.0}}
    root = picture(kine, tmp_path, soft, "deflection", "--plane", "xz", "--step", "150")
    shown = legend(root)
    assert "counts as rigid, see below" in texts(root)
    assert shown[LIMITS] > 0


@pytest.mark.parametrize("cell, message", [
    (SCARA, "cell.json:1:35: a four-axis arm counts as rigid: no deflection"),
    (RIGID, "the arm counts as rigid: k2_Nm_per_rad, k3_Nm_per_rad and k5_Nm_per_rad should all be above 0"),
    ({**WRIST, "arm": {**WRIST["arm"], "k3_Nm_per_rad": 0}}, "the arm counts as rigid"),
    ({**WRIST, "arm": {**WRIST["arm"], "weights_Nmm": [0] * 6}, "use": {}}, "nothing bends the arm: weights_Nmm, "),
])
def test_deflection_of_an_arm_that_does_not_bend_is_wrong_usage(kine, tmp_path, cell, message):
    run = kine("plot", "deflection", write_cell(tmp_path, cell), "--plane", "xz", directory=tmp_path)
    assert run.status == USAGE and run.out == "" and message in run.err
    assert list(tmp_path.glob("*.svg")) == []


def test_deflection_out_of_reach_is_refused(kine, tmp_path):
    run = kine("plot", "deflection", write_cell(tmp_path, WRIST), "--plane", "xz", "--at", "5000", directory=tmp_path)
    assert (run.status, run.out) == (REFUSED, "")
    assert run.err == "kine: no target in the plane XZ at Y = 5000 mm is within reach\n"


# Files and messages

@pytest.mark.parametrize("arguments", [("arm",), ("postures",), ("reach", "--plane", "xy"),
                                       ("deflection", "--plane", "xz")])
def test_two_runs_give_the_same_bytes_and_files_have_their_default_names(kine, tmp_path, arguments):
    cell = write_cell(tmp_path, WRIST, "my.cell")
    run = kine("plot", arguments[0], cell, *arguments[1:], directory=tmp_path)
    assert (run.status, run.out, run.err) == (DONE, "", f"kine: wrote my.cell-{arguments[0]}.svg\n")
    written = (tmp_path / f"my.cell-{arguments[0]}.svg").read_text(encoding="utf-8")
    named = kine("plot", arguments[0], cell, *arguments[1:], "-o", "named.svg", directory=tmp_path)
    assert (named.status, named.out, named.err) == (DONE, "", "")
    assert (tmp_path / "named.svg").read_text(encoding="utf-8") == written
    assert kine("plot", arguments[0], cell, *arguments[1:], "-o", "-", directory=tmp_path).out == written
    document(written)


def test_texts_of_the_cell_are_escaped_and_clipped(kine, tmp_path):
    cell = {**SCARA, "name": "A<b> & \"c\" \uffff" + "x" * 100}
    root = picture(kine, tmp_path, cell, "arm")
    title = texts(root)[0]
    assert title.startswith('A<b> & "c" ?xx') and title.endswith("...") and len(title) == 60


@pytest.mark.parametrize("arguments, message", [
    (("arm", "CELL", "1,2,3"), "has 3 values; expected 6 axes"),
    (("arm", "CELL", "@nowhere"), 'has no joints "nowhere"'),
    (("arm", "CELL", "0,0,0,0,0,x"), '"x" is not a number'),
    (("arm", "CELL", "@home", "--tool", "nothing"), 'has no tool "nothing"; it has: none, torch'),
    (("postures", "CELL", "1,2,3"), "has 3 values; expected 6 values of a frame"),
    (("postures", "CELL", "@nowhere"), 'has no pose "nowhere"'),
    (("postures", "CELL", "@nowhere", "--joints"), 'has no joints "nowhere"'),
    (("reach", "CELL"), "--plane is required"),
    (("reach", "CELL", "--plane", "yz"), "--plane: yz not in {xz,xy}"),
    (("reach", "CELL", "--plane", "xz", "--at", "high"), '--at: "high" is not a number from -10000000 to 10000000'),
    (("reach", "CELL", "--plane", "xz", "--at", "nan"), '--at: "nan" is not a number'),
    (("reach", "CELL", "--plane", "xz", "--at", "1e9"), '--at: "1e9" is not a number'),
    (("reach", "CELL", "--plane", "xz", "--step", "0"), '--step: "0" should be above 0'),
    (("reach", "CELL", "--plane", "xz", "--step", "-5"), '--step: "-5" should be above 0'),
    (("reach", "CELL", "--plane", "xz", "--step", "inf"), '--step: "inf" is not a number'),
    (("reach", "CELL", "--plane", "xz", "--step", "0.1"), "targets; at most 250000 are drawn"),
    (("reach", "CELL", "--plane", "xz", "--orientation", "0,90"), "should be three angles A,B,C from -180 to 180"),
    (("reach", "CELL", "--plane", "xz", "--orientation", "0,90,181"), "should be three angles"),
    (("reach", "CELL", "--plane", "xz", "--orientation", "0,90,0,0"), "should be three angles"),
    (("reach", "CELL", "--plane", "xz", "--posture", "sideways"), '"sideways" is no posture of this arm'),
    (("deflection", "CELL", "--plane", "xz", "--posture", "elbow+"), '"elbow+" is no posture of this arm'),
    (("reach", "CELL", "--plane", "xz", "--joints", "1,2"), "has 2 values; expected 6 axes"),
    (("arm", "CELL", "--colour"), "--colour"),
    (("arm",), "CELL is required"),
    (("sketch", "CELL"), "A subcommand is required"),
    ((), "A subcommand is required"),
])
def test_wrong_usage_says_what_is_wrong(kine, tmp_path, arguments, message):
    cell = write_cell(tmp_path, WRIST)
    run = kine("plot", *[cell if a == "CELL" else a for a in arguments], directory=tmp_path)
    assert run.status == USAGE and run.out == "" and message in run.err, run.err
    assert list(tmp_path.glob("*.svg")) == []


def test_what_is_too_far_away_to_draw_is_wrong_usage(kine, tmp_path):
    cell = write_cell(tmp_path, TRACK)
    run = kine("plot", "arm", cell, "0,0,0,0,0,0,1e300,0,0", directory=tmp_path)
    assert run.status == USAGE and "10 km or more from the origin of the world" in run.err


def test_a_refusal_of_the_library_is_told_with_its_lines(kine, tmp_path):
    # Tool and work object both in the cell.
    cell = write_cell(tmp_path, HELD)
    for arguments in (("arm", cell), ("postures", cell), ("reach", cell, "--plane", "xz")):
        run = kine("plot", *arguments, "--wobj", "none", directory=tmp_path)
        assert run.status == REFUSED and run.out == ""
        assert run.err.startswith("kine: the joints: 0x6016 KINE_ERR_HOLD: ")


def test_bad_files_are_told_by_name(kine, tmp_path):
    missing = kine("plot", "arm", "missing.json", directory=tmp_path)
    assert missing.status == BAD_FILE and missing.err.startswith("missing.json: ")
    cell = write_cell(tmp_path, SCARA)
    unwritable = kine("plot", "arm", cell, "-o", "no/such/folder.svg", directory=tmp_path)
    assert unwritable.status == BAD_FILE and unwritable.err.startswith("no/such/folder.svg: ")


@pytest.mark.parametrize("kind", ["arm", "postures", "reach", "deflection"])
def test_help_has_examples(kine, kind):
    run = kine("plot", kind, "--help")
    assert run.status == DONE and "Examples:" in run.out and "--output" in run.out

"""kine check: every finding from a cell with just this fault, the round trip against the naive model, the report."""

import copy
import itertools
import json
import math
import pathlib
import re
import shlex
from collections import Counter

import pytest

from conftest import BAD_FILE, CELLS, DONE, REFUSED, USAGE
from naive_cell import NaiveCell, difference, joint_record, pose_frame
from records import JOINT

ERROR, WARNING, NOTE = "error", "warning", "note"
ROUND_TRIP = {"round_trip_other_joints", "round_trip_refused"}


def shipped(name):
    return json.loads((CELLS / f"{name}.json").read_text())


def write(directory, fields, name="cell.json"):
    path = directory / name
    path.write_text(json.dumps(fields, indent=1))
    return path


def report_of(run):
    (report,) = json.loads(run.out)["cells"]
    return report


def change(path, value):
    """A fault: the field at the path, with indexes as numbers, set to the value; None takes it away."""
    def apply(fields):
        *way, last = path
        for key in way:
            fields = fields.setdefault(key, {}) if isinstance(fields, dict) else fields[key]
        if value is None:
            del fields[last]
        else:
            fields[last] = value
    return apply


def both(*faults):
    def apply(fields):
        for fault in faults:
            fault(fields)
    return apply


ARM_LENGTHS = ("a1_mm", "a2_mm", "a3_mm", "d1_mm", "d4_mm", "d6_mm", "d3_mm", "lateral_offset_mm")
LIMITS = ("limits", "lower_deg")


def in_metres(fields):
    for key in ARM_LENGTHS:
        fields["arm"][key] /= 1000


def limits_in_radians(fields):
    for key in ("lower_deg", "upper_deg"):
        fields["limits"][key] = [math.radians(v) for v in fields["limits"][key]]


def more_units(fields):
    fields["mechanical_units"] += [copy.deepcopy(fields["mechanical_units"][1]) for _ in range(2)]


def more_external_axes(fields):
    fields["external_axes"] += [{"name": f"e{i}", "kind": "rotary", "travel_deg": [0, 1]} for i in range(5)]


# Base cell, fault, severity, check, path, text of the line that the place names, further checks that follow from it.
FAULTS = [
    # Setup
    ("wrist_gravity", change(("arm", "a2_mm"), 0), ERROR, "setup_refused", "arm", '"arm"', set()),
    ("track", more_units, ERROR, "setup_refused", "mechanical_units", '"mechanical_units"',
     {"unit_carries_nothing", "external_axis_used_twice"}),
    ("track", more_external_axes, ERROR, "setup_refused", "external_axes", '"external_axes"',
     {"external_axis_unused"}),
    ("track", change(("mechanical_units", 1, "axes"), [{"external_axis": 1, "frame": {"x_mm": 1500, "z_mm": 600}}] * 3),
     ERROR, "setup_refused", "mechanical_units[1]", "{", {"unit_axes_unused"}),
    # The six-axis arm
    ("track", change(("arm", "alpha_deg"), [1.5708, 0, 1.5708, -1.5708, 1.5708]), ERROR, "twists_in_radians",
     "arm.alpha_deg", '"alpha_deg"', ROUND_TRIP | {"target_unsolved"}),
    ("track", change(("arm", "alpha_deg"), [0] * 5), ERROR, "twists_zero", "arm.alpha_deg", '"alpha_deg"',
     ROUND_TRIP | {"target_unsolved"}),
    ("track", change(("arm", "alpha_deg"), [-90, 0, -90, 90, -90]), ERROR, "twists_negated", "arm.alpha_deg",
     '"alpha_deg"', ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("track", change(("arm", "alpha_deg"), [90, 0, 90, 90, -90]), ERROR, "twists_wrist_mirrored", "arm.alpha_deg",
     '"alpha_deg"', ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("track", change(("arm", "alpha_deg"), [90, 0, 90, -90, 60]), ERROR, "twist_off", "arm.alpha_deg[4]", "60",
     ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("track", change(("arm", "alpha_deg"), [90, 2.5, 90, -90, 90]), WARNING, "twist_off", "arm.alpha_deg[1]", "2.5",
     set()),
    ("track", both(change(("arm", "d3_mm"), 150), change(("arm", "lateral_offset_mm"), -150)), ERROR,
     "lateral_offset", "arm.d3_mm", '"d3_mm"', ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("track", both(change(("arm", "d3_mm"), 150), change(("arm", "lateral_offset_mm"), 0)), ERROR, "lateral_offset",
     "arm.d3_mm", '"d3_mm"', ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("track", change(("arm", "d3_mm"), None), ERROR, "lateral_offset", "arm.d3_mm", '"arm"', ROUND_TRIP),
    ("track", change(("arm", "d3_mm"), 22), WARNING, "lateral_offset", "arm.d3_mm", '"d3_mm"', set()),
    ("wrist_gravity", change(("arm", "beta2_deg"), 8), ERROR, "calibration_error_large", "arm.beta2_deg",
     '"beta2_deg"', ROUND_TRIP | {"target_unsolved", "target_outside_limits"}),
    ("wrist_gravity", change(("arm", "d5_mm"), 3), WARNING, "calibration_error_large", "arm.d5_mm", '"d5_mm"', set()),
    ("wrist_gravity", change(("arm", "a4_mm"), -3), WARNING, "calibration_error_large", "arm.a4_mm", '"a4_mm"', set()),
    ("wrist_gravity", change(("arm", "a5_mm"), 3), WARNING, "calibration_error_large", "arm.a5_mm", '"a5_mm"',
     ROUND_TRIP),
    ("track", in_metres, ERROR, "lengths_in_metres", "arm", '"arm"',
     ROUND_TRIP | {"target_unsolved", "round_trip_empty"}),
    ("wrist_gravity", change(("arm", "k3_Nm_per_rad"), 0), ERROR, "stiffness_zero", "arm.k3_Nm_per_rad",
     '"k3_Nm_per_rad"', set()),
    ("wrist_gravity", change(("arm", "k5_Nm_per_rad"), -4e4), ERROR, "stiffness_negative", "arm.k5_Nm_per_rad",
     '"k5_Nm_per_rad"', set()),
    ("wrist_gravity", both(*(change(("arm", f"k{i}_Nm_per_rad"), 0) for i in (2, 3, 5))), WARNING,
     "weights_without_stiffness", "arm.weights_Nmm", '"weights_Nmm"', set()),
    ("wrist_gravity", change(("arm", "weights_Nmm"), None), WARNING, "stiffness_without_weights",
     "arm.k2_Nm_per_rad", '"k2_Nm_per_rad"', set()),
    ("wrist_gravity", both(change(("arm", "weights_Nmm"), None),
                           *(change(("arm", f"k{i}_Nm_per_rad"), None) for i in (2, 3, 5))), NOTE,
     "loads_on_rigid_arm", "arm", '"arm"', set()),
    ("track", change(("arm", "mount_x_deg"), 10), NOTE, "mount_without_effect", "arm.mount_x_deg", '"mount_x_deg"',
     set()),
    ("wrist_gravity", change(("arm", "mount_x_deg"), 3.14159), WARNING, "mount_in_radians", "arm.mount_x_deg",
     '"mount_x_deg"', set()),
    ("wrist_gravity", change(("arm", "mount_x_deg"), 90), WARNING, "mount_tilt", "arm.mount_x_deg", '"mount_x_deg"',
     set()),
    ("wrist_gravity", change(("arm", "mount_y_deg"), 180), WARNING, "mount_tilt", "arm.mount_y_deg", '"mount_y_deg"',
     set()),
    # The four-axis arm
    ("scara", both(*(change(("arm", k), v) for k, v in (("link1_length_mm", 0.325), ("link2_length_mm", 0.275),
                                                       ("z_offset_mm", 0.1), ("screw_lead_mm_per_turn", 0.02)))),
     ERROR, "lengths_in_metres", "arm", '"arm"', ROUND_TRIP | {"target_unsolved", "screw_limits_in_mm"}),
    ("scara", change(("arm", "link2_tilt_y_deg"), 2), WARNING, "tilt_large", "arm.link2_tilt_y_deg",
     '"link2_tilt_y_deg"', ROUND_TRIP),
    # Limits
    ("track", change(("limits",), None), NOTE, "limits_missing", "arm", '"arm"', set()),
    ("track", both(change((*LIMITS, 1), 60), change(("limits", "upper_deg", 1), -150)), ERROR, "limits_inverted",
     "limits.lower_deg[1]", "60", set()),
    ("track", change((*LIMITS, 1), 60), ERROR, "limits_empty", "limits.lower_deg[1]", "60", set()),
    ("track", limits_in_radians, ERROR, "limits_in_radians", "limits", '"limits"',
     {"target_outside_limits", "round_trip_empty"}),
    ("track", change((*LIMITS, 5), -1500), WARNING, "limits_wide", "limits.lower_deg[5]", "-1500", set()),
    ("track", change(("limits", "upper_deg", 5), 1e9), ERROR, "limits_beyond_turn_numbers", "limits.upper_deg[5]",
     "1000000000", set()),
    ("track", change((*LIMITS, 2), -130), WARNING, "limits_beyond_window", "limits.lower_deg[2]", "-130", set()),
    ("track", change(("limits", "upper_deg", 4), 200), WARNING, "limits_beyond_window", "limits.upper_deg[4]", "200",
     set()),
    ("track", both(change((*LIMITS, 2), 280), change(("limits", "upper_deg", 2), 500)), ERROR,
     "limits_outside_window", "limits.upper_deg[2]", "500", {"target_outside_limits"}),
    ("scara", change(("limits", "upper_deg", 0), 270), WARNING, "limits_beyond_window", "limits.upper_deg[0]", "270",
     set()),
    ("scara", change(("limits", "upper_deg", 2), 160), WARNING, "screw_limits_in_mm", "limits.lower_deg[2]", "0",
     {"target_outside_limits"}),
    ("scara_4110", both(change((*LIMITS, 1), -145), change(("limits", "upper_deg", 1), 145)), WARNING,
     "limits_contain_folded_elbow", "limits.lower_deg[1]", "-145", {"target_outside_limits"}),
    # Mechanical units
    ("positioner", change(("mechanical_units", 1, "axes"), [{"external_axis": 1, "frame": {"x_mm": 1300}}]), ERROR,
     "unit_axes_missing", "mechanical_units[1].axes", '"axes"',
     ROUND_TRIP | {"target_unsolved", "external_axis_unused", "expectation_not_confirmed"}),
    ("track", change(("mechanical_units", 1, "axes"),
                     [{"external_axis": 1, "frame": {"x_mm": 1500, "z_mm": 600}}, {"external_axis": 0}]),
     WARNING, "unit_axes_unused", "mechanical_units[1].axes[1]", "{", set()),
    ("track", change(("mechanical_units", 1, "axes", 0, "external_axis"), 2), ERROR, "external_axis_unknown",
     "mechanical_units[1].axes[0].external_axis", '"external_axis": 2',
     {"external_axis_unused", "expectation_not_confirmed"}),
    ("track", change(("mechanical_units", 1, "axes", 0, "external_axis"), 7), ERROR, "external_axis_unknown",
     "mechanical_units[1].axes[0].external_axis", '"external_axis": 7',
     ROUND_TRIP | {"external_axis_unused", "expectation_not_confirmed", "target_unsolved"}),
    ("track", lambda fields: fields["external_axes"].append({"name": "spare", "kind": "rotary", "travel_deg": [0, 1]}),
     WARNING, "external_axis_unused", "external_axes[2]", "{", set()),
    ("positioner", change(("mechanical_units", 1, "axes", 1, "external_axis"), 1), ERROR, "external_axis_used_twice",
     "mechanical_units[1].axes[1].external_axis", '"external_axis": 1',
     {"external_axis_unused", "expectation_not_confirmed"}),
    ("positioner", change(("external_axes", 2), {"name": "plate", "kind": "linear", "travel_mm": [-360, 360]}), ERROR,
     "external_axis_kind", "mechanical_units[1].axes[1].external_axis", '"external_axis": 2', set()),
    ("track", change(("external_axes", 0), {"name": "track", "kind": "rotary", "travel_deg": [-2000, 2000]}), ERROR,
     "external_axis_kind", "mechanical_units[0].axes[0].external_axis", '"external_axis": 0', set()),
    ("track", change(("mechanical_units", 0, "carried_frame", "x_mm"), 50), WARNING, "position_ignored",
     "mechanical_units[0].carried_frame", '"carried_frame"', set()),
    ("positioner", change(("mechanical_units", 1, "axes", 1, "frame", "y_mm"), 0), ERROR, "axis_at_origin",
     "mechanical_units[1].axes[1].frame", '"frame"', ROUND_TRIP | {"expectation_not_confirmed"}),
    ("track", change(("external_axes", 0, "travel_mm"), None), NOTE, "travel_missing", "external_axes[0]", "{",
     set()),
    ("track", change(("external_axes", 0, "travel_mm"), [2000, -2000]), ERROR, "travel_inverted",
     "external_axes[0].travel_mm", '"travel_mm"', set()),
    ("track", change(("robot_on_unit",), None), WARNING, "unit_carries_nothing", "mechanical_units[0]", "{",
     {"expectation_not_confirmed", "target_unsolved", "target_outside_limits"}),
    ("track", change(("robot_on_unit",), 2), ERROR, "robot_on_unit_unknown", "robot_on_unit", '"robot_on_unit": 2',
     ROUND_TRIP | {"expectation_not_confirmed", "target_unsolved", "unit_carries_nothing"}),
    ("track", change(("robot_on_unit",), 1), WARNING, "unit_carries_both", "mechanical_units[1]", "{",
     {"expectation_not_confirmed", "target_unsolved", "unit_carries_nothing", "target_outside_limits"}),
    # Records
    ("track", change(("tools", "spindle", "frame", "b_deg"), 330), ERROR, "angle_beyond_180",
     "tools.spindle.frame.b_deg", '"b_deg": 330', ROUND_TRIP | {"target_unsolved", "expectation_not_confirmed"}),
    ("track", change(("work_objects", "bench", "user_frame", "a_deg"), -190), ERROR, "angle_beyond_180",
     "work_objects.bench.user_frame.a_deg", '"a_deg": -190', {"expectation_not_confirmed"}),
    ("wrist_gravity", change(("loads", "part", "axes_of_moment_deg"), [0, 200, 0]), ERROR, "angle_beyond_180",
     "loads.part.axes_of_moment_deg[1]", "200", ROUND_TRIP | {"target_unsolved", "expectation_not_confirmed"}),
    ("wrist_gravity", change(("loads", "part", "mass_kg"), -6), ERROR, "mass_negative", "loads.part.mass_kg",
     '"mass_kg": -6', ROUND_TRIP | {"target_unsolved", "expectation_not_confirmed"}),
    ("scara", change(("loads", "part", "inertia"), [0, -1, 0]), ERROR, "inertia_negative", "loads.part.inertia[1]",
     "-1", ROUND_TRIP | {"target_unsolved", "expectation_not_confirmed"}),
    ("scara", change(("loads", "part", "cog_mm"), [0, 0, 2500]), WARNING, "centre_of_gravity_far",
     "loads.part.cog_mm", '"cog_mm"', set()),
    ("scara", change(("tools", "gripper", "load", "cog_mm"), [0, 0, 0.04]), WARNING, "centre_of_gravity_in_metres",
     "tools.gripper.load.cog_mm", '"cog_mm"', set()),
    ("wrist_gravity", change(("tools", "stand"), {"held_by_robot": False, "load": {"mass_kg": 9}}), WARNING,
     "stationary_tool_load", "tools.stand.load", '"load"', set()),
    ("track", change(("work_objects", "wrong"), {"mechanical_unit": 0}), ERROR, "work_object_on_unit_0",
     "work_objects.wrong.mechanical_unit", '"mechanical_unit": 0', {"unit_carries_both"}),
    ("track", change(("work_objects", "wrong"), {"mechanical_unit": 2}), ERROR, "work_object_unit_unknown",
     "work_objects.wrong.mechanical_unit", '"mechanical_unit": 2', set()),
    ("track", change(("work_objects", "wrong"), {"mechanical_unit": -1}), ERROR, "work_object_unit_unknown",
     "work_objects.wrong.mechanical_unit", '"mechanical_unit": -1', set()),
    ("track", change(("work_objects", "odd"), {"mechanical_unit": 1, "user_frame": {"x_mm": 5}}), WARNING,
     "user_frame_ignored", "work_objects.odd.user_frame", '"user_frame"', set()),
    ("track", change(("work_objects", "odd"), {"mechanical_unit": 1, "held_by_robot": True}), WARNING,
     "held_work_object_on_unit", "work_objects.odd.mechanical_unit", '"mechanical_unit"', set()),
    ("held_work_object", change(("use", "tool"), "gripper"), ERROR, "hold_flags", "use", '"use"',
     {"target_unsolved", "expectation_not_confirmed"}),
    ("held_work_object", change(("use", "work_object"), "none"), ERROR, "hold_flags", "use", '"use"',
     {"target_unsolved", "expectation_not_confirmed"}),
    # Targets
    ("track", change(("joints", "home", "axes_deg"), [0, -20, 171, 0, -60, 0]), ERROR, "target_outside_limits",
     "joints.home.axes_deg", '"axes_deg"', set()),
    ("track", change(("joints", "home", "external_mm_or_deg"), [2001, 0]), ERROR, "target_outside_travel",
     "joints.home.external_mm_or_deg[0]", "2001", set()),
    ("track", change(("joints", "home", "axes_deg"), [0, -20, 20, 0, 2, 0]), NOTE, "target_singular",
     "joints.home.axes_deg", '"axes_deg"', set()),
    ("track", change(("poses", "on turntable", "x_mm"), 4000), ERROR, "target_unsolved", "poses.on turntable",
     '"on turntable"', set()),
    ("puma", change(("poses", "pick", "cfg"), [2, 0, 0, 8]), ERROR, "target_unsolved", "poses.pick", '"pick"', set()),
    ("puma", change(("poses", "pick", "cfg"), [5, 0, 0, 7]), ERROR, "target_outside_limits", "poses.pick", '"pick"',
     set()),
    # Expectations
    ("track", change(("expect", 1, "frame", "y_mm"), 280.002), ERROR, "expectation_not_confirmed", "expect[1]", "{",
     set()),
    ("held_work_object", change(("expect", 5, "code"), "0x6012"), ERROR, "expectation_not_confirmed", "expect[5]",
     "{", set()),
]


@pytest.mark.parametrize("number", range(len(FAULTS)), ids=lambda n: f"{FAULTS[n][3]}-{n}")
def test_a_cell_with_one_fault_has_its_finding_and_the_same_cell_without_has_not(kine, tmp_path, number):
    base, fault, severity, check, path, shows, following = FAULTS[number]
    fields = shipped(base)
    for key in ("poses", "expect"):  # a wrong arm or unit leaves none of them right
        if not path.startswith(key):
            fields.pop(key, None)
    good = report_of(kine("check", write(tmp_path, fields), "--json", "-n", 60))
    assert good["verdict"] == "good"
    fault(fields)
    file = write(tmp_path, fields)
    run = kine("check", file, "--json", "-n", 60)
    report = report_of(run)
    before = [(f["check"], f["path"]) for f in good["findings"]]
    found = [f for f in report["findings"] if (f["check"], f["path"]) not in before]
    mine = [f for f in found if (f["check"], f["path"]) == (check, path)]
    assert [f["severity"] for f in mine] == [severity], found
    assert {f["check"] for f in found if f["severity"] != NOTE} - following <= {check}, found
    where, line, _ = mine[0]["place"].rsplit(":", 2)
    assert where == str(file) and shows in file.read_text().splitlines()[int(line) - 1]
    assert mine[0]["what"] and mine[0]["why"] and mine[0]["do"]
    assert run.status == (REFUSED if report["errors"] else DONE)
    assert (report["errors"] > 0) == any(f["severity"] == ERROR for f in report["findings"])


def test_every_kind_of_finding_in_the_source_has_a_cell_above():
    tested = {fault[3] for fault in FAULTS} | ROUND_TRIP | {"round_trip_empty"}
    source = "".join(p.read_text() for p in (pathlib.Path(CELLS).parent / "check").glob("*.cpp"))
    names = set(re.findall(r'"([a-z0-9]+(?:_[a-z0-9]+)+)"', source))
    named = {name for name in names if re.search(rf'(?:Error|Warning|Note|Add)\([^;]*?"{name}"', source, re.S)}
    assert tested <= names
    keys = {"external_axes", "robot_on_unit"}  # paths
    unknown = {n for n in named - tested - keys if not n.endswith(("_deg", "_mm", "_kg", "_Nmm", "_per_rad"))}
    assert not unknown, unknown


def test_a_note_alone_leaves_the_cell_good_and_a_warning_shows_in_the_verdict(kine, tmp_path):
    fields = shipped("scara")
    del fields["limits"]
    run = kine("check", write(tmp_path, fields), "-n", 10)
    assert run.status == DONE and run.out.endswith("Verdict: good\n") and "note" in run.out
    fields["arm"]["link1_tilt_x_deg"] = 1.5
    fields["use"] = {}
    fields["expect"] = []
    report = report_of(kine("check", write(tmp_path, fields), "--json", "-n", 1))
    assert report["verdict"] == "good with 1 warning" and report["warnings"] == 1


# The round trip, against the naive model on samples drawn here

def usual_ranges(naive):
    limits = naive.fields["limits"]
    ranges = list(zip(limits["lower_deg"], limits["upper_deg"]))
    for axis in naive.fields.get("external_axes", []):
        ranges.append(axis.get("travel_mm", axis.get("travel_deg")))
    return ranges


def samples(naive, count):
    """Axis k of set n at the fraction 0.5 + n * g^-k, g^(d + 1) = g + 1."""
    ranges = usual_ranges(naive)
    low, high = 1.0, 2.0
    for _ in range(200):
        middle = (low + high) / 2
        low, high = (middle, high) if middle ** (len(ranges) + 1) < middle + 1 else (low, middle)
    for n in range(1, count + 1):
        values = []
        for k, (lower, upper) in enumerate(ranges, 1):
            turns = 0.5 + n * high ** -k
            values.append(round(lower + (upper - lower) * (turns - math.floor(turns)), 4))
        yield joint_record(values[:naive.axes], values[naive.axes:])


def naive_round_trip(naive, count):
    """Tallies by posture: same, other, near singular and refused with each code."""
    tallies = {}
    for joints in samples(naive, count):
        tally = tallies.setdefault(naive.posture(joints), Counter())
        if naive.is_near_singular(joints):
            tally["near_singular"] += 1
            continue
        code, pose = naive.forward(joints)
        back = None
        if code == 0:
            code, back = naive.inverse(pose)
        if code:
            tally[f"0x{code:04X}"] += 1
            continue
        apart = max(abs(a - b) for a, b in zip(JOINT.unpack(joints)[:naive.axes], back))
        tally["same_joints" if apart < 1e-4 else "other_joints"] += 1
        reached = naive.forward(JOINT.pack(*back))[1]
        assert apart >= 1e-4 or difference(pose_frame(pose), pose_frame(reached))[0] < 1e-3
    return tallies


def counted(posture):
    tally = Counter({key: posture[key] for key in ("same_joints", "other_joints", "near_singular")})
    tally.update(posture["refused"])
    return +tally


def without_lateral(fields):
    fields["arm"].update(d3_mm=150, lateral_offset_mm=0)


def twists_in_radians(fields):
    fields["arm"]["alpha_deg"] = [1.5708, 0, 1.5708, -1.5708, 1.5708]


@pytest.mark.parametrize("name,fault", [("puma", None), ("wrist_gravity", None), ("scara", None),
                                        ("scara_4110", None), ("held_work_object", None), ("positioner", None),
                                        ("track", None), ("track", without_lateral), ("track", twists_in_radians)])
def test_the_round_trip_figures_are_those_of_the_naive_model(kine, tmp_path, name, fault):
    fields = shipped(name)
    if fault:
        fault(fields)
    file = write(tmp_path, fields)
    count = 120
    trip = report_of(kine("check", file, "--json", "-n", count))["round_trips"][0]
    expected = naive_round_trip(NaiveCell(file), count)
    assert {p["posture"]: counted(p) for p in trip["postures"] if counted(p)} == expected
    total = sum(expected.values(), Counter())
    assert counted(trip["all"]) == total and sum(total.values()) == count
    assert trip["all"]["tried"] == count - total["near_singular"]
    if fault:
        assert total["same_joints"] < trip["all"]["tried"]
        assert total["0x6097" if fault is without_lateral else "0x6099"] > 0


def test_other_joints_and_refusals_are_errors_with_commands_that_repeat_them(kine, tmp_path):
    fields = shipped("track")
    without_lateral(fields)
    file = write(tmp_path, fields, "a cell.json")
    run = kine("check", file, "--json", "-n", 200)
    report = report_of(run)
    assert run.status == REFUSED
    checks = Counter(f["check"] for f in report["findings"])
    assert checks["round_trip_other_joints"] == 4  # with and without tool and work object
    assert checks["round_trip_refused"] == sum(len(trip["all"]["refused"]) for trip in report["round_trips"]) > 0
    everything = report["round_trips"][0]["all"]
    other, refused = (everything[key].split(" | ") for key in ("first_other", "first_refused"))
    for command in (other, refused):
        words = shlex.split(command[0])
        assert words[0] == "kine" and command[1].startswith("kine ik ")
        row = kine(*words[1:]).out.splitlines()[1].split(",")
        naive = NaiveCell(file)
        numbers = [float(v) for v in words[-1].split(",")]
        frame = pose_frame(naive.forward(joint_record(numbers[:6], numbers[6:]))[1])
        assert difference([float(v) for v in row[1:7]], frame)[0] < 1e-6
        code, back = naive.inverse(naive.forward(joint_record(numbers[:6], numbers[6:]))[1])
        if command is refused:
            assert f"0x{code:04X}" in everything["refused"]
        else:
            assert code == 0 and max(abs(a - b) for a, b in zip(back, numbers[:6])) > 1e-4


def test_the_worst_joints_are_one_of_the_samples_and_no_other_is_worse(kine):
    trip = report_of(kine("check", "wrist_gravity.json", "--json", "-n", 50))["round_trips"][0]
    drawn = [list(JOINT.unpack(j)[:6]) for j in samples(NaiveCell(CELLS / "wrist_gravity.json"), 50)]
    for key, unit in (("worst_position", "mm"), ("worst_rotation", "deg"), ("worst_joint", "deg")):
        worst = trip["all"][key]
        assert any(max(abs(a - b) for a, b in zip(worst["axes_deg"], j)) < 1.1e-4 for j in drawn)
        assert worst[unit] == max(p[key][unit] for p in trip["postures"] if p[key])
        assert " --tool " not in worst["repeat"]


def test_tool_work_object_and_load_are_left_out_one_after_the_other(kine):
    trips = report_of(kine("check", "scara.json", "--json", "-n", 5))["round_trips"]
    combinations = [(t["tool"], t["work_object"], t["load"]) for t in trips]
    assert combinations[0] == ("gripper", "tray", "part")
    assert set(combinations) == set(itertools.product(("gripper", "none"), ("tray", "none"), ("part", "none")))
    assert len(combinations) == 8
    assert "--tool none --wobj none" in trips[3]["all"]["worst_position"]["repeat"]
    held = report_of(kine("check", "held_work_object.json", "--json", "-n", 5))["round_trips"]
    assert [(t["tool"], t["work_object"]) for t in held] == [("post", "part"), ("none", "none")]


def test_an_arm_that_is_always_singular_says_that_nothing_was_tried(kine, tmp_path):
    fields = shipped("held_work_object")
    fields["limits"]["lower_deg"][4], fields["limits"]["upper_deg"][4] = -1, 1
    fields["joints"], fields["poses"], fields["expect"] = {}, {}, []
    report = report_of(kine("check", write(tmp_path, fields), "--json", "-n", 20))
    assert {f["check"] for f in report["findings"]} == {"round_trip_empty"}
    assert report["verdict"] == "good with 2 warnings"  # one for each combination


# The report

MINIMAL = {"name": "Small", "arm": {"type": 4, "link1_length_mm": 300, "link2_length_mm": 200, "z_offset_mm": 0,
                                    "screw_lead_mm_per_turn": 10},
           "limits": {"lower_deg": [-100, 20, 0, -100], "upper_deg": [100, 160, 1000, 100]},
           "joints": {"square": {"axes_deg": [0, 90, 720, 0]}},
           "expect": [{"what": "square", "joints": "square", "in": "base",
                       "frame": {"x_mm": 300, "y_mm": 200, "z_mm": 20, "a_deg": 90}},
                      {"what": "wrong", "source": "made up", "joints": "square", "in": "base",
                       "frame": {"x_mm": 300, "y_mm": 203, "z_mm": 24, "a_deg": 90}}]}


def test_the_text(kine, tmp_path):
    file = write(tmp_path, MINIMAL)
    run = kine("check", "cell.json", "-n", 8, directory=tmp_path)
    assert run.status == REFUSED and run.err == ""
    lines = file.read_text().splitlines()
    line = 1 + [i for i, text in enumerate(lines) if '"what": "wrong"' in text][0] - 1
    shown = []
    for text in run.out.splitlines():
        if re.match("  (1 elbow|-1 elbow|all )", text):  # the figures behind the counts are rounding
            assert all(figure == "-" or float(figure) < 1e-9 for figure in text[69:].split())
            assert len(text) == 69 + 3 * 11 and len(text[69:].split()) == 3
            text = text[:69]
        shown.append(re.sub("-- [-0-9.,]+ [|]", "-- JOINTS |", text) + "\n")
    text = "".join(shown)
    assert text == (
        "cell.json: Small, arm type 4\n"
        "Findings:\n"
        f"  cell.json:{line}:3: error: expect[1]: \"wrong\" is not confirmed: off by 5.000000 mm, 0.000000 deg, "
        "allowed are 0.001 mm, 0.001 deg\n"
        "      It comes from: made up\n"
        "      Compare the numbers of the arm with their source, then those of the expectation.\n"
        "Expectations: 1 of 2 confirmed\n"
        "  yes  square: 0.000000 mm, 0.000000 deg\n"
        "  NO   wrong: 5.000000 mm, 0.000000 deg\n"
        "Round trip with tool none, work object none, load none:\n"
        "  posture                   tried     same    other  refused singular   worst mm  worst deg  joint deg\n"
        "  1 elbow+                      8        8        0        0        0\n"
        "  -1 elbow-                     0        0        0        0        0\n"
        "  all                           8        8        0        0        0\n"
        "  worst position, repeat with\n"
        "    kine fk cell.json --csv -- JOINTS | kine ik cell.json --csv\n"
        "Verdict: wrong: 1 error\n")


def test_the_json_has_the_fields_that_it_names(kine, tmp_path):
    file = write(tmp_path, MINIMAL)
    run = kine("check", file, "--json", "-n", 8)
    report = report_of(run)
    assert list(report) == ["file", "name", "arm_type", "verdict", "errors", "warnings", "findings", "set_up",
                            "expectations", "round_trips"]
    assert (report["file"], report["name"], report["arm_type"]) == (str(file), "Small", 4)
    assert report["verdict"] == "wrong: 1 error" and report["set_up"] is True
    right, wrong = report["expectations"]
    assert right["confirmed"] and right["result"] == "0x0000" and right["off_mm"] < 1e-9
    assert not wrong["confirmed"] and abs(wrong["off_mm"] - 5.0) < 1e-9 and wrong["source"] == "made up"
    (trip,) = report["round_trips"]
    assert [(p["posture"], p["words"], p["tried"]) for p in trip["postures"]] == [(1, "elbow+", 8), (-1, "elbow-", 0)]
    assert trip["postures"][1]["worst_position"] is None and trip["samples"] == 8


def test_a_cell_that_the_library_refuses_is_not_tried(kine, tmp_path):
    fields = copy.deepcopy(MINIMAL)
    fields["arm"]["screw_lead_mm_per_turn"] = -10
    run = kine("check", write(tmp_path, fields))
    assert run.status == REFUSED and run.err == ""
    assert "arm: Kine_InitKinematicParam refuses it with 0x6000 KINE_ERR_MODEL_PARAM\n" in run.out
    assert "Not tried, because the library does not take the cell" in run.out
    assert "Round trip" not in run.out and run.out.endswith("Verdict: wrong: 1 error\n")


def test_several_cells_are_each_set_up_anew(kine, tmp_path):
    small = write(tmp_path, MINIMAL, "small.json")
    alone = [report_of(kine("check", cell, "--json", "-n", 40)) for cell in ("track.json", small, "puma.json")]
    run = kine("check", "track.json", small, "puma.json", "--json", "-n", 40)
    assert json.loads(run.out)["cells"] == alone and run.status == REFUSED
    text = kine("check", "track.json", "puma.json", "-n", 5)
    assert text.status == DONE and text.out.count("Verdict: good\n") == 2
    assert "Verdict: good\n\npuma.json: Puma 560" in text.out


def test_a_file_that_cannot_be_read_is_status_3_and_the_others_are_checked(kine, tmp_path):
    broken = tmp_path / "broken.json"
    broken.write_text('{"arm": {"type": 5}}')
    run = kine("check", broken, "puma.json", tmp_path / "none.json", "-n", 5)
    assert run.status == BAD_FILE and run.out.startswith("puma.json: Puma 560")
    first, second = run.err.splitlines()
    assert first == f"{broken}:1:18: arm.type: should be 4, 6 or 4110"
    assert second == f"{tmp_path / 'none.json'}: No such file or directory"
    run = kine("check", broken, "--json")
    report = report_of(run)
    assert run.status == BAD_FILE and report["verdict"] == "not readable" and "arm.type" in report["unreadable"]


@pytest.mark.parametrize("arguments", [(), ("puma.json", "-n", "0"), ("puma.json", "--samples", "many"),
                                       ("puma.json", "--csv")])
def test_wrong_usage_is_status_2(kine, arguments):
    run = kine("check", *arguments)
    assert run.status == USAGE and run.out == "" and run.err


def test_help_shows_the_options_and_examples(kine):
    run = kine("check", "--help")
    assert run.status == DONE
    for word in ("CELL", "--samples", "--json", "Examples:", "kine check puma.json"):
        assert word in run.out


@pytest.mark.parametrize("huge", [1e300, -1e300, 1e-300])
def test_no_number_hangs_it(kine, tmp_path, huge):
    fields = shipped("track")
    for key in ("a2_mm", "d4_mm", "d1_mm"):
        fields["arm"][key] = abs(huge) if key != "d1_mm" else huge
    fields["limits"]["upper_deg"] = [abs(huge)] * 6
    fields["external_axes"][0]["travel_mm"] = [-abs(huge), abs(huge)]
    run = kine("check", write(tmp_path, fields), "-n", 20, timeout=20)
    assert run.status == REFUSED and "Verdict: wrong" in run.out

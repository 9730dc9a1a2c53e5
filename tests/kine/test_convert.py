"""kine convert against the naive model, poses worked out by hand, and kine fk."""

import json
import math
import random

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows
from csv_text import unsigned_zeros
from exports import Library
from records import JOINT, LOAD, MECH_UNIT, POSE, SIX_AXIS_PARAM, TOOL, WOBJ

FRAME = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")
KINDS = {"linear": 1, "rotary": 2, "two-rotary": 3}

# An arm that bends, on a track along the X of the world, with a turntable beside it.
RIG = {
    "name": "rig",
    "arm": {"type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 120, "d1_mm": 450, "d4_mm": 640, "d6_mm": 100,
            "weights_Nmm": [2e5, 4e4, 9e4, 1e4, 5e3, 1e3], "k2_Nm_per_rad": 3e5, "k3_Nm_per_rad": 1e5,
            "k5_Nm_per_rad": 3e4},
    "external_axes": [{"name": "track", "kind": "linear"}, {"name": "table", "kind": "rotary"}],
    "mechanical_units": [
        {"name": "track", "kind": "linear", "axes": [{"external_axis": 0, "frame": {"y_mm": -300}}]},
        {"name": "turntable", "kind": "rotary",
         "axes": [{"external_axis": 1, "frame": {"x_mm": 900, "y_mm": 100, "z_mm": 200, "b_deg": 15}}]}],
    "robot_on_unit": 0,
    "tools": {
        "gripper": {"frame": {"z_mm": 120, "b_deg": 30}, "load": {"mass_kg": 4, "cog_mm": [0, 10, 60]}},
        "post": {"held_by_robot": False, "load": {"mass_kg": 3, "cog_mm": [5, 0, 40]},
                 "frame": {"x_mm": 950, "y_mm": 50, "z_mm": 800, "a_deg": 20, "b_deg": 10, "c_deg": 170}}},
    "work_objects": {
        "bench": {"user_frame": {"x_mm": 900, "z_mm": 700, "a_deg": 90}},
        "tilted": {"user_frame": {"x_mm": 700, "y_mm": -100, "z_mm": 200, "a_deg": 30, "b_deg": 5, "c_deg": -8},
                   "object_frame": {"x_mm": 10, "y_mm": 20, "z_mm": 30, "a_deg": -15, "b_deg": 40}},
        "turned": {"mechanical_unit": 1, "object_frame": {"x_mm": 50, "z_mm": 80, "c_deg": 15}},
        "part": {"held_by_robot": True, "user_frame": {"x_mm": 10, "z_mm": 60, "a_deg": 25, "c_deg": 12},
                 "object_frame": {"y_mm": -15, "b_deg": 30}}},
    "loads": {"plate": {"mass_kg": 25, "cog_mm": [120, -40, 30]}},
    "joints": {"here": {"axes_deg": [10, -20, 30, 40, 50, 60], "external_mm_or_deg": [250, 35]}},
    "poses": {"pick": {"x_mm": 900, "y_mm": 100, "z_mm": 750, "a_deg": 90, "cfg": [1, 0, -1, 2],
                       "external_mm_or_deg": [12.5, -7]},
              "flange": {"x_mm": 800, "z_mm": 900, "b_deg": 90}},
    "use": {"tool": "gripper", "work_object": "bench"},
}
TRACK, TABLE = 250.0, 35.0


@pytest.fixture(scope="module")
def rig(tmp_path_factory):
    path = tmp_path_factory.mktemp("rig") / "rig.json"
    path.write_text(json.dumps(RIG))
    return path


def frame_of(values):
    return [float((values or {}).get(key, 0)) for key in FRAME]


def load_values(load):
    load = load or {}
    return [float(load.get("mass_kg", 0)), *map(float, load.get("cog_mm", [0] * 3)), *[0.0] * 6]


def tool_record(name):
    tool = RIG["tools"].get(name, {})
    return TOOL.pack(int(tool.get("held_by_robot", True)), *frame_of(tool.get("frame")),
                     *load_values(tool.get("load")))


def wobj_record(name):
    wobj = RIG["work_objects"].get(name, {})
    unit = wobj.get("mechanical_unit")
    return WOBJ.pack(int(wobj.get("held_by_robot", False)), int(unit is None), unit or 0,
                     *frame_of(wobj.get("user_frame")), *frame_of(wobj.get("object_frame")))


def load_record(name):
    return LOAD.pack(*load_values(RIG["loads"].get(name)))


def pose_record(frame, externals=()):
    return POSE.pack(*frame, 0, 0, 0, 0, *externals, *[0.0] * (6 - len(externals)))


@pytest.fixture(scope="module")
def model():
    library = Library()
    arm = RIG["arm"]
    values = [arm[key] for key in ("a1_mm", "a2_mm", "a3_mm", "d4_mm", "d6_mm", "d1_mm")] + [0.0] * 28
    values[8:13] = [90.0, 0.0, 90.0, -90.0, 90.0]
    values[24:30] = arm["weights_Nmm"]
    values[31:34] = [arm["k2_Nm_per_rad"], arm["k3_Nm_per_rad"], arm["k5_Nm_per_rad"]]
    assert library.call("Kine_InitKinematicParam", 6, SIX_AXIS_PARAM.pack(*values)).code == 0
    assert library.call("Kine_SetMechUnitGlobalCfg", 2, 2, 1).code == 0
    for i, unit in enumerate(RIG["mechanical_units"]):
        (axis,) = unit["axes"]
        frames = frame_of(axis["frame"]) + [0.0] * 30
        record = MECH_UNIT.pack(1, KINDS[unit["kind"]], int(i == 0), 0, 1, *frames, axis["external_axis"], *[0] * 5)
        assert library.call("Kine_SetMechUnitParam", i, record).code == 0
    return library


def answer_of(model, call, *arguments):
    outcome = model.call(call, *arguments, True)
    assert outcome.code == 0, (call, hex(outcome.code))
    return POSE.unpack(outcome.output)


def assert_frame(row, expected, slack=1e-8):
    """Positions, and orientations by the angle between them, however the three angles are written."""
    for name, value in zip(FRAME[:3], expected[:3]):
        assert abs(row[name] - value) < slack, (row, expected)
    assert rotation_between([row[name] for name in FRAME[3:]], expected[3:6]) < slack, (row, expected)


def rotation_between(first, second):
    """The largest difference of two elements."""
    return max(abs(a - b) for a, b in zip(rotation(first), rotation(second)))


def rotation(angles):
    (ca, cb, cc), (sa, sb, sc) = ([f(math.radians(v)) for v in angles] for f in (math.cos, math.sin))
    return (ca * cb, ca * sb * sc - sa * cc, ca * sb * cc + sa * sc,
            sa * cb, sa * sb * sc + ca * cc, sa * sb * cc - ca * sc, -sb, cb * sc, cb * cc)


def random_frames(seed, count=25):
    rng = random.Random(seed)
    return [[rng.uniform(-900, 900) for _ in range(3)] + [rng.uniform(-180, 180) for _ in range(3)]
            for _ in range(count)]


def text_of(values):
    return ",".join(repr(float(v)) for v in values)


# By hand: the bench stands at X 900, Z 700 and is turned by 90 degrees about Z, so 100 mm along the Y of the world are
# 100 mm along its X.

def test_the_table_of_a_pose_by_hand(kine, rig):
    run = kine("convert", rig, "900,100,750,90,0,0", "--from", "world", "--to", "wobj")
    assert run.status == DONE and run.err == ""
    assert run.out == (
        "target            x_mm        y_mm        z_mm       a_deg       b_deg       c_deg  cfg1  cfg2  cfg3  cfg4"
        "          e1          e2 result\n"
        "1             100.0000      0.0000     50.0000      0.0000      0.0000      0.0000     -     -     -     -"
        "      0.0000      0.0000 0x0000\n")


def test_json_keeps_the_name_the_configuration_and_the_external_axes(kine, rig):
    run = kine("convert", rig, "@pick", "--from", "world", "--to", "wobj", "--json")
    (row,) = json_rows(run)
    assert list(row) == ["target", *FRAME, "cfg1", "cfg2", "cfg3", "cfg4", "e1", "e2", "result"]
    assert_frame(row, (100, 0, 50, 0, 0, 0))
    assert (row["target"], row["result"]) == ("pick", "0x0000")
    assert [row[f"cfg{i}"] for i in range(1, 5)] == [1, 0, -1, 2]
    assert (row["e1"], row["e2"]) == (12.5, -7)


def test_csv_of_the_way_back_by_hand(kine, rig):
    run = kine("convert", rig, "100,0,50,0,0,0", "--from", "wobj", "--to", "world", "--csv")
    header, line = unsigned_zeros(run.out).splitlines()
    assert header == "target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,cfg1,cfg2,cfg3,cfg4,e1,e2,result"
    assert line == "1,900,100,750,90,0,0,,,,,0,0,0x0000"


def test_a_track_moves_the_base_by_its_travel(kine, rig):
    """250 mm along the X of a track that lies at Y -300."""
    run = kine("convert", rig, "100,20,30,40,0,0,0,0,0,0,250,0", "--from", "base", "--to", "world", "--json")
    (row,) = json_rows(run)
    assert_frame(row, (350, -280, 30, 40, 0, 0))
    assert row["e1"] == 250


# Against the naive model, one route after the other.

def test_world_to_a_fixed_work_object_is_the_models_answer(kine, rig, model):
    frames = random_frames(11)
    run = kine("convert", rig, *map(text_of, frames), "--from", "world", "--to", "wobj", "--wobj", "tilted", "--json")
    assert run.status == DONE
    for row, frame in zip(json_rows(run), frames, strict=True):
        assert_frame(row, answer_of(model, "Kine_WorldPosToFixWobjPos", pose_record(frame), wobj_record("tilted")))


def test_a_fixed_work_object_to_world_is_the_models_answer(kine, rig, model):
    frames = random_frames(12)
    origin = pose_record([0.0] * 6)
    run = kine("convert", rig, *map(text_of, frames), "--from", "wobj", "--to", "world", "--wobj", "tilted", "--json")
    for row, frame in zip(json_rows(run), frames, strict=True):
        assert_frame(row, answer_of(model, "Kine_GripWobjPosToWorldPos", pose_record(frame), wobj_record("tilted"),
                                    origin))


def test_a_stationary_tool_converts_to_a_fixed_work_object_too(kine, rig, model):
    frames = random_frames(13)
    run = kine("convert", rig, *map(text_of, frames), "--from", "world", "--to", "wobj", "--wobj", "tilted",
               "--tool", "post", "--json")
    for row, frame in zip(json_rows(run), frames, strict=True):
        assert_frame(row, answer_of(model, "Kine_CrdPosToWobjPos", pose_record(frame), -1, tool_record("post"),
                                    wobj_record("tilted"), load_record("none")))


@pytest.mark.parametrize("back", [False, True])
def test_a_held_work_object_at_a_flange_is_the_models_answer(kine, rig, model, back):
    frames = random_frames(14)
    flange = random_frames(15, 1)[0]
    call, route = (("Kine_GripWobjPosToWorldPos", ("--from", "wobj", "--to", "world")) if back else
                   ("Kine_WorldPosToGripWobjPos", ("--from", "world", "--to", "wobj")))
    run = kine("convert", rig, *map(text_of, frames), *route, "--wobj", "part", "--tool", "post",
               "--flange", text_of(flange), "--json")
    assert run.status == DONE
    for row, frame in zip(json_rows(run), frames, strict=True):
        assert_frame(row, answer_of(model, call, pose_record(frame), wobj_record("part"), pose_record(flange)))


@pytest.mark.parametrize("tool, wobj", [("gripper", "turned"), ("gripper", "tilted"), ("post", "part")])
def test_base_to_a_work_object_is_the_models_answer(kine, rig, model, tool, wobj):
    frames = random_frames(16)
    externals = (TRACK, TABLE)
    rows = [text_of([*frame, 0, 0, 0, 0, *externals]) for frame in frames]
    run = kine("convert", rig, *rows, "--from", "base", "--to", "wobj", "--wobj", wobj, "--tool", tool, "--json")
    assert run.status == DONE
    for row, frame in zip(json_rows(run), frames, strict=True):
        assert_frame(row, answer_of(model, "Kine_CrdPosToWobjPos", pose_record(frame, externals), -2,
                                    tool_record(tool), wobj_record(wobj), load_record("none")))


def test_base_to_world_does_not_ask_for_tool_and_work_object(kine, rig, model):
    frames = random_frames(17)
    rows = [text_of([*frame, 0, 0, 0, 0, TRACK, TABLE]) for frame in frames]
    plain = kine("convert", rig, *rows, "--from", "base", "--to", "world", "--json")
    held = kine("convert", rig, *rows, "--from", "base", "--to", "world", "--tool", "post", "--wobj", "part", "--json")
    assert plain == held and plain.status == DONE
    for row, frame in zip(json_rows(plain), frames, strict=True):
        assert_frame(row, answer_of(model, "Kine_CrdPosToWobjPos", pose_record(frame, (TRACK, TABLE)), -2,
                                    tool_record("none"), wobj_record("none"), load_record("none")))


# --joints: the held work object where the arm carries it.

@pytest.mark.parametrize("load", ["none", "plate"])
def test_the_tip_seen_from_the_part_is_the_forward_answer_of_these_joints(kine, rig, model, load):
    """The tip stands at the frame of the stationary tool; the arm bends under part, tool load and payload."""
    tip = text_of(frame_of(RIG["tools"]["post"]["frame"]))
    joints = text_of([10, -20, 30, 40, 50, 60, TRACK, TABLE])
    cell = ("--tool", "post", "--wobj", "part", "--load", load, "--json")
    (converted,) = json_rows(kine("convert", rig, tip, "--from", "world", "--to", "wobj", "--joints", joints, *cell))
    record = JOINT.pack(10, -20, 30, 40, 50, 60, 0, 0, TRACK, TABLE, 0, 0, 0, 0)
    forward = answer_of(model, "Kine_JointToWobjPos", record, tool_record("post"), wobj_record("part"),
                        load_record(load))
    assert_frame(converted, forward)
    (asked,) = json_rows(kine("fk", rig, joints, *cell))
    assert_frame(converted, [asked[name] for name in FRAME])


def test_a_payload_bends_the_arm_that_carries_the_part(kine, rig):
    def part_in_world(load):
        run = kine("convert", rig, "0,0,0,0,0,0", "--from", "wobj", "--to", "world", "--joints", "@here",
                   "--tool", "post", "--wobj", "part", "--load", load, "--json")
        return json_rows(run)[0]
    assert part_in_world("none")["z_mm"] - part_in_world("plate")["z_mm"] > 0.1


def test_joints_and_the_flange_that_they_reach_agree(kine, rig, tmp_path):
    """Of a rigid arm: what the part weighs is nothing then."""
    cell = json.loads(json.dumps(RIG))
    for key in ("k2_Nm_per_rad", "k3_Nm_per_rad", "k5_Nm_per_rad"):
        del cell["arm"][key]
    path = tmp_path / "rigid.json"
    path.write_text(json.dumps(cell))
    (flange,) = json_rows(kine("fk", path, "@here", "--tool", "none", "--wobj", "none", "--in", "world", "--json"))
    frames = random_frames(18, 5)
    common = ("convert", path, *map(text_of, frames), "--from", "world", "--to", "wobj", "--wobj", "part", "--json")
    by_flange = json_rows(kine(*common, "--flange", text_of(flange[name] for name in FRAME)))
    by_joints = json_rows(kine(*common, "--joints", "@here"))
    for row, expected in zip(by_joints, by_flange, strict=True):
        assert_frame(row, [expected[name] for name in FRAME])


def test_joints_that_the_library_cannot_place_are_refused(kine, tmp_path):
    cell = json.loads(json.dumps(RIG))
    cell["robot_on_unit"] = 3
    path = tmp_path / "off.json"
    path.write_text(json.dumps(cell))
    run = kine("convert", path, "1,2,3,0,0,0", "--from", "world", "--to", "wobj", "--wobj", "part", "--joints", "@here")
    assert run.status == REFUSED and run.out == ""
    assert run.err.startswith("--joints: 0x6033 KINE_ERR_F2W_UNIT_KIND: ")
    assert run.err.endswith(f"\nFK Error 4:{0x6033}\n")


# Streams

def test_rows_go_through_with_names_and_earlier_refusals(kine, rig):
    rows = ("target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,e1,e2,result\n"
            "first,900,100,750,90,0,0,1,2,0x0000\n"
            "lost,,,,,,,,,0x6097\n"
            "third,900,0,700,90.5,0,0,3,4,0x0000\n")
    run = kine("convert", rig, "--from", "world", "--to", "wobj", "--csv", stdin=rows)
    assert run.status == REFUSED
    first, lost, third = csv_rows(run)
    assert (first["target"], first["x_mm"], first["e2"]) == ("first", 100, 2)
    assert (lost["target"], lost["x_mm"], lost["result"]) == ("lost", "", "0x6097")
    assert abs(third["a_deg"] - 0.5) < 1e-9 and third["e1"] == 3
    assert run.err == "kine: target lost: 0x6097 KINE_ERR_IK_7\n"


def test_several_processes_give_the_same_rows(kine, rig, tmp_path):
    file = tmp_path / "poses.csv"
    file.write_text("".join(text_of(frame) + "\n" for frame in random_frames(19, 300)))
    route = ("convert", rig, "--from", "world", "--to", "wobj", "--csv", "-i", file)
    one, three = kine(*route), kine(*route, "--jobs", "3")
    assert one == three and one.status == DONE and len(one.out.splitlines()) == 301


def test_an_angle_beyond_half_a_turn_is_refused(kine, rig):
    run = kine("convert", rig, "0,0,0,180.5,0,0", "0,0,0,180,0,0", "--from", "world", "--to", "wobj", "--csv")
    assert run.status == REFUSED
    assert [row["result"] for row in csv_rows(run)] == ["0x6010", "0x0000"]
    assert run.err == "kine: target 1: 0x6010 KINE_ERR_POSE\n"
    quiet = kine("convert", rig, "0,0,0,180.5,0,0", "--from", "world", "--to", "wobj", "--quiet")
    assert quiet.status == REFUSED and quiet.err == ""


# Wrong usage

POSE_TEXT = "1,2,3,4,5,6"


@pytest.mark.parametrize("arguments, message", [
    (("--from", "world", "--to", "world"), "--from and --to are the same frame\n"),
    (("--from", "wobj", "--to", "wobj"), "--from and --to are the same frame\n"),
    (("--from", "wobj", "--to", "base"), "--to: base not in {wobj,world}\n"),
    (("--from", "flange", "--to", "wobj"), "--from: flange not in {world,base,wobj}\n"),
    (("--from", "world"), "--to is required\n"),
    (("--to", "world"), "--from is required\n"),
    (("--from", "world", "--to", "wobj", "--wobj", "turned"),
     "work object \"turned\" is carried by a mechanical unit: the library brings poses to it from the base only "
     "(--from base --to wobj)\n"),
    (("--from", "wobj", "--to", "world", "--wobj", "turned"), "work object \"turned\" is carried by a mechanical unit"),
    (("--from", "world", "--to", "wobj", "--wobj", "part"),
     "work object \"part\" is held by the robot: say where it is with --flange POSE or --joints JOINTS\n"),
    (("--from", "world", "--to", "wobj", "--flange", POSE_TEXT),
     "--flange and --joints say where a held work object is; work object \"bench\" is not held\n"),
    (("--from", "base", "--to", "wobj", "--wobj", "part", "--joints", "@here"),
     "--flange and --joints say where a held work object is; from the base they take no part\n"),
    (("--from", "world", "--to", "wobj", "--wobj", "part", "--flange", "1,2,3"),
     "--flange: \"1,2,3\": has 3 values; expected 6 values of a frame"),
    (("--from", "world", "--to", "wobj", "--wobj", "part", "--flange", "@away"), "has no pose \"away\"\n"),
    (("--from", "world", "--to", "wobj", "--wobj", "part", "--joints", "1,2,3,4,5,x"),
     "(q6_deg): \"x\" is not a number\n"),
    (("--from", "world", "--to", "wobj", "--wobj", "part", "--joints", "@here", "--flange", "@flange"),
     "--flange excludes --joints\n"),
    (("--from", "world", "--to", "wobj", "--wobj", "shelf"), "has no work object \"shelf\"; it has: none, bench"),
])
def test_what_makes_no_sense_is_told(kine, rig, arguments, message):
    run = kine("convert", rig, POSE_TEXT, *arguments)
    assert run.status == USAGE and run.out == ""
    assert message in run.err


def test_the_cells_own_choice_is_named_in_messages(kine, tmp_path):
    path = tmp_path / "own.json"
    path.write_text(json.dumps({**RIG, "use": {"tool": "post", "work_object": "part"}}))
    run = kine("convert", path, POSE_TEXT, "--from", "world", "--to", "wobj")
    assert run.status == USAGE and run.err.startswith("work object \"part\" is held by the robot")


def test_a_missing_cell_and_a_broken_row_are_bad_files(kine, rig):
    missing = kine("convert", "nowhere.json", POSE_TEXT, "--from", "world", "--to", "wobj")
    assert missing.status == BAD_FILE and missing.err == "nowhere.json: No such file or directory\n"
    broken = kine("convert", rig, "--from", "world", "--to", "wobj", stdin="1,2,3,4,5,6\n1,2,z,4,5,6\n")
    assert broken.status == BAD_FILE
    assert broken.err.endswith(":2: column 3 (z_mm): \"z\" is not a number\n")

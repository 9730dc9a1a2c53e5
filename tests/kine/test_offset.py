"""kine offset against poses worked out by hand and the naive model."""

import json
import random

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows
from csv_text import unsigned_zeros
from exports import Library
from records import FRAME, POSE

NAMES = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")
# Ry(-90): the Z of the tool points along -X of its frame.
LEVEL = "400,150,450,0,-90,0"


@pytest.fixture(scope="module")
def cell(tmp_path_factory):
    path = tmp_path_factory.mktemp("cell") / "cell.json"
    path.write_text(json.dumps({
        "name": "a track",
        "arm": {"type": 6, "a1_mm": 0, "a2_mm": 431.8, "a3_mm": 20.3, "d1_mm": 0, "d4_mm": 431.8, "d6_mm": 0},
        "external_axes": [{"name": "track", "kind": "linear"}],
        "poses": {"pick": {"x_mm": 400, "y_mm": 150, "z_mm": 450, "b_deg": -90, "cfg": [0, 1, -2, 3],
                           "external_mm_or_deg": [77]},
                  "up": {"z_mm": 50}}}))
    return path


def text_of(values):
    return ",".join(repr(float(v)) for v in values)


def frame_in(row):
    return [row[name] for name in NAMES]


def test_the_table_of_a_step_back_along_the_tool(kine):
    run = kine("offset", LEVEL, "--by", "0,0,-50,0,0,0")
    assert run.status == DONE and run.err == ""
    assert run.out == (
        "target            x_mm        y_mm        z_mm       a_deg       b_deg       c_deg  cfg1  cfg2  cfg3  cfg4 "
        "result\n"
        "1             450.0000    150.0000    450.0000      0.0000    -90.0000      0.0000     -     -     -     - "
        "0x0000\n")


def test_csv_of_a_lift_along_the_frame(kine):
    run = kine("offset", "400,150,450,0,0,0,0,0,1,6", "--by", "1,-2,50,0,0,0", "--along", "wobj", "--csv")
    assert run.status == DONE
    assert unsigned_zeros(run.out) == ("target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,cfg1,cfg2,cfg3,cfg4,result\n"
                                       "1,401,148,500,0,0,0,0,0,1,6,0x0000\n")


def test_json_of_a_named_pose_keeps_configuration_and_external_axes(kine, cell):
    run = kine("offset", "@pick", "--cell", cell, "--by", "@up", "--json")
    (row,) = json_rows(run)
    assert list(row) == ["target", *NAMES, "cfg1", "cfg2", "cfg3", "cfg4", "e1", "result"]
    assert row["target"] == "pick"
    assert all(abs(a - b) < 1e-9 for a, b in zip(frame_in(row), (350, 150, 450, 0, -90, 0)))
    assert [row[f"cfg{i}"] for i in range(1, 5)] == [0, 1, -2, 3] and row["e1"] == 77


@pytest.mark.parametrize("along", ["tool", "wobj"])
def test_a_pure_rotation_leaves_the_position(kine, along):
    (row,) = json_rows(kine("offset", "10,20,30,40,50,60", "--by", "0,0,0,25,0,0", "--along", along, "--json"))
    assert frame_in(row)[:3] == [10, 20, 30]
    assert abs(row["a_deg"] - (65 if along == "wobj" else row["a_deg"])) < 1e-9
    assert abs(row["a_deg"] - 40) > 1


@pytest.mark.parametrize("along, call", [("tool", "Kine_ToolCoordOffset"), ("wobj", "Kine_WobjCoordOffset")])
def test_random_offsets_are_the_models_answers(kine, along, call):
    rng = random.Random(31)
    poses = [[rng.uniform(-900, 900) for _ in range(3)] + [rng.uniform(-170, 170) for _ in range(3)]
             for _ in range(30)]
    by = [12.5, -30, 7, 15, -40, 100]
    run = kine("offset", *map(text_of, poses), "--by", text_of(by), "--along", along, "--json")
    model = Library()
    for row, pose in zip(json_rows(run), poses, strict=True):
        outcome = model.call(call, POSE.pack(*pose, *[0] * 4, *[0.0] * 6), FRAME.pack(*by), True)
        assert outcome.code == 0
        assert all(abs(a - b) < 1e-8 for a, b in zip(frame_in(row), POSE.unpack(outcome.output)[:6]))


def test_a_pipe_of_rows_with_external_axes_needs_the_cell(kine, cell):
    rows = "target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,e1\nA,1,2,3,0,0,0,9\nB,4,5,6,0,0,0,8\n"
    by = ("--by", "10,0,0,0,0,0", "--csv")
    with_cell = kine("offset", "--cell", cell, *by, stdin=rows)
    assert with_cell.status == DONE
    assert [(row["target"], row["x_mm"], row["e1"]) for row in csv_rows(with_cell)] == [("A", 11, 9), ("B", 14, 8)]
    without = kine("offset", *by, stdin=rows)
    assert without.status == BAD_FILE and "unknown column \"e1\"" in without.err


def test_an_offset_angle_beyond_half_a_turn_is_refused(kine):
    run = kine("offset", LEVEL, "--by", "0,0,0,181,0,0", "--csv")
    assert run.status == REFUSED
    assert csv_rows(run)[0]["result"] == "0x6017"
    assert run.err == "kine: target 1: 0x6017 KINE_ERR_OFFSET_FRAME\n"


@pytest.mark.parametrize("arguments, message", [
    ((LEVEL,), "--by is required\n"),
    ((LEVEL, "--by", "1,2,3"), "--by: \"1,2,3\": has 3 values; expected 6 values of a frame"),
    ((LEVEL, "--by", "1,2,3,4,5,6,0,0,0,0"), "--by: an offset has six values and no configuration\n"),
    ((LEVEL, "--by", "1,2,3,4,5,nan"), "\"nan\" is not a number\n"),
    ((LEVEL, "--by", "@up"), "--by: \"@up\" names a target of a cell; give one with --cell\n"),
    (("@pick", "--by", "1,2,3,4,5,6"), "\"@pick\" names a target of a cell; give one with --cell\n"),
    ((LEVEL, "--by", "1,2,3,4,5,6", "--along", "world"), "--along: world not in {tool,wobj}\n"),
    ((LEVEL, "--by", "1,2,3,4,5,6", "-i", "rows.csv"), "not both\n"),
])
def test_what_makes_no_sense_is_told(kine, arguments, message):
    run = kine("offset", *arguments)
    assert run.status == USAGE and run.out == ""
    assert message in run.err


def test_a_missing_cell_is_a_bad_file(kine):
    run = kine("offset", LEVEL, "--by", "1,2,3,4,5,6", "--cell", "nowhere.json")
    assert run.status == BAD_FILE and run.err == "nowhere.json: No such file or directory\n"

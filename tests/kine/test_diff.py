"""kine diff against differences worked out by hand and the naive model."""

import json
import math
import random

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows
from csv_text import unsigned_zeros
from exports import Library
from geometry import euler_to_rotation, rot_product, transposed
from records import FRAME, POSE

NAMES = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")


def text_of(values):
    return ",".join(repr(float(v)) for v in values)


def frame_in(row):
    return [row[name] for name in NAMES]


def random_poses(seed, count):
    rng = random.Random(seed)
    return [[rng.uniform(-900, 900) for _ in range(3)] + [rng.uniform(-180, 180) for _ in range(3)]
            for _ in range(count)]


def test_the_table_of_a_pose_that_lies_aside_and_is_turned(kine):
    run = kine("diff", "400,150,450,0,-90,0", "403,154,450,0,-60,0")
    assert run.status == DONE and run.err == ""
    assert run.out == (
        "target            x_mm        y_mm        z_mm       a_deg       b_deg       c_deg distance_mm   angle_deg "
        "result\n"
        "1               3.0000      4.0000      0.0000      0.0000     30.0000      0.0000      5.0000     30.0000 "
        "0x0000\n")


@pytest.mark.parametrize("along, expected", [("reference", (100, 0, 0, 0, 0, 0)), ("first", (0, -100, 0, 0, 0, 0))])
def test_the_first_pose_turns_the_axes_of_the_difference(kine, along, expected):
    """The first pose is turned by 90 degrees about Z: 100 mm along X are -100 mm along its Y."""
    run = kine("diff", "0,0,0,90,0,0", "100,0,0,90,0,0", "--along", along, "--json")
    (row,) = json_rows(run)
    assert list(row) == ["target", *NAMES, "distance_mm", "angle_deg", "result"]
    assert all(abs(a - b) < 1e-9 for a, b in zip(frame_in(row), expected))
    assert abs(row["distance_mm"] - 100) < 1e-9 and abs(row["angle_deg"]) < 1e-9


def test_csv_of_a_pose_and_itself_is_zero(kine):
    run = kine("diff", "10,20,30,0,0,0", "10,20,30,0,0,0", "--csv")
    assert unsigned_zeros(run.out) == ("target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,distance_mm,angle_deg,"
                                       "result\n1,0,0,0,0,0,0,0,0,0x0000\n")


@pytest.mark.parametrize("along, frame", [("reference", 1), ("first", -1)])
def test_random_differences_are_the_models_answers(kine, along, frame):
    first, *others = random_poses(41, 31)
    run = kine("diff", text_of(first), *map(text_of, others), "--along", along, "--json")
    model = Library()
    pack = lambda pose: POSE.pack(*pose, *[0] * 4, *[0.0] * 6)  # noqa: E731
    for row, other in zip(json_rows(run), others, strict=True):
        outcome = model.call("Kine_CalcPosDif", pack(first), pack(other), frame, True)
        assert outcome.code == 0
        assert all(abs(a - b) < 1e-8 for a, b in zip(frame_in(row), FRAME.unpack(outcome.output)))
        assert abs(row["distance_mm"] - math.dist(first[:3], other[:3])) < 1e-9
        assert abs(row["angle_deg"] - angle_between(first[3:], other[3:])) < 1e-6


def angle_between(first, second):
    """By the arc cosine of the trace, good to 1e-6 degrees away from 0 and 180."""
    r = rot_product(transposed(euler_to_rotation(*map(math.radians, first))),
                    euler_to_rotation(*map(math.radians, second)))
    return math.degrees(math.acos(max(-1.0, min(1.0, (r[0] + r[4] + r[8] - 1) / 2))))


@pytest.mark.parametrize("turn", [1e-7, 1e-4, 0.3, 90.0, 179.9999999, 180.0])
@pytest.mark.parametrize("slot", [3, 5])
def test_the_angle_of_one_turn_is_exact_at_both_ends(kine, turn, slot):
    """A turn about one axis of the frame is its own angle, where an arc cosine would lose eight digits."""
    pose = [0.0] * 6
    pose[slot] = turn
    (row,) = json_rows(kine("diff", "0,0,0,0,0,0", text_of(pose), "--json"))
    assert abs(row["angle_deg"] - turn) < 1e-12


def test_two_half_turns_are_one_and_a_turn_about_the_diagonal_is_120_degrees(kine):
    rows = json_rows(kine("diff", "0,0,0,0,0,0", "0,0,0,180,0,180", "0,0,0,90,0,90", "--json"))
    assert [round(row["angle_deg"], 10) for row in rows] == [180, 120]


@pytest.mark.parametrize("diff_along, offset_along", [("reference", "wobj"), ("first", "tool")])
def test_the_six_numbers_lead_back_to_the_second_pose(kine, diff_along, offset_along):
    first, second = random_poses(43, 2)
    (difference,) = json_rows(kine("diff", text_of(first), text_of(second), "--along", diff_along, "--json"))
    (back,) = json_rows(kine("offset", text_of(first), "--by", text_of(frame_in(difference)), "--along", offset_along,
                             "--json"))
    (rest,) = json_rows(kine("diff", text_of(second), text_of(frame_in(back)), "--json"))
    assert rest["distance_mm"] < 1e-9 and rest["angle_deg"] < 1e-9


def test_rows_of_a_file_and_names_of_a_cell(kine, tmp_path):
    cell = tmp_path / "cell.json"
    cell.write_text(json.dumps({
        "name": "cell",
        "arm": {"type": 6, "a1_mm": 0, "a2_mm": 431.8, "a3_mm": 20.3, "d1_mm": 0, "d4_mm": 431.8, "d6_mm": 0},
        "external_axes": [{"name": "track", "kind": "linear"}],
        "poses": {"taught": {"x_mm": 10}, "met": {"x_mm": 13, "y_mm": 4}}}))
    named = kine("diff", "@taught", "@met", "--cell", cell, "--csv")
    assert [(row["target"], row["distance_mm"]) for row in csv_rows(named)] == [("met", 5)]
    rows = "target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,e1,result\nA,10,0,2,0,0,0,5,0x0000\nB,,,,,,,,0x6010\n"
    streamed = kine("diff", "@taught", "--cell", cell, "--csv", stdin=rows)
    assert streamed.status == REFUSED
    assert [(row["target"], row["distance_mm"], row["result"]) for row in csv_rows(streamed)] == [
        ("A", 2, "0x0000"), ("B", "", "0x6010")]


def test_an_angle_beyond_half_a_turn_is_refused_on_either_side(kine):
    for poses in (("0,0,0,181,0,0", "0,0,0,0,0,0"), ("0,0,0,0,0,0", "0,0,0,0,-180.01,0")):
        run = kine("diff", *poses)
        assert run.status == REFUSED
        assert run.err == "kine: target 1: 0x6010 KINE_ERR_POSE\n"


@pytest.mark.parametrize("arguments, message", [
    ((), "FIRST is required\n"),
    (("1,2", "1,2,3,4,5,6"), "FIRST: \"1,2\": has 2 values; expected 6 values of a frame"),
    (("1,2,3,4,5,6", "1,2,3,4,5,6,7"), "\"1,2,3,4,5,6,7\": has 7 values"),
    (("@taught", "1,2,3,4,5,6"), "FIRST: \"@taught\" names a target of a cell; give one with --cell\n"),
    (("1,2,3,4,5,6", "1,2,3,4,5,6", "--along", "second"), "--along: second not in {reference,first}\n"),
])
def test_what_makes_no_sense_is_told(kine, arguments, message):
    run = kine("diff", *arguments)
    assert run.status == USAGE and run.out == ""
    assert message in run.err


def test_a_broken_row_is_a_bad_file(kine):
    run = kine("diff", "0,0,0,0,0,0", stdin="1,2,3,4,5\n")
    assert run.status == BAD_FILE and ":1: has 5 values" in run.err

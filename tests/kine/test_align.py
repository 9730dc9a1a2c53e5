"""kine align: the tool stands square to a frame, its point where it was, after the smallest turn."""

import math
import random

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows
from geometry import dot
from model_cell import CELLS as MODEL_CELLS
from model_cell import ModelCell, cell_of, rotation, table_row, text_of, FLAT_GRIPPER, SIX_AXIS, TYPE_4

# The arm with its forearm level and its hand 3 degrees off the vertical: q5 = -90 makes it upright.
LEANING = [0.0, 0.0, 0.0, 0.0, -87.0, 0.0]
UPRIGHT = [0.0, 0.0, 0.0, 0.0, -90.0, 0.0]
MODES = {"base": 2, "world": 5, "wobj": 4, "wobj-flange": -1}
SEEN_IN = {"base": "Kine_JointToBasePos", "world": "Kine_JointToWorldPos", "wobj": "Kine_JointToWobjPos",
           "wobj-flange": "Kine_JointToWobjPos"}


def tool_z(frame):
    r = rotation(frame)
    return (r[2], r[5], r[8])


def close(a, b, tolerance=1e-6):
    return len(a) == len(b) and all(abs(x - y) < tolerance for x, y in zip(a, b))


def joints_of(model, row):
    return [row[name] for name in model.joint_names()]


@pytest.fixture
def plain(tmp_path):
    model = ModelCell(cell_of(SIX_AXIS))
    return model, model.write(tmp_path)


# Rows as they are written

def test_the_table_of_a_hand_by_hand(open_kine, plain):
    run = open_kine("align", plain[1], text_of(LEANING), "--to", "base")
    assert run.status == DONE and run.err == ""
    header, row = run.out.splitlines(keepends=True)
    assert header == ("target          q1_deg      q2_deg      q3_deg      q4_deg      q5_deg      q6_deg posture"
                      "            result\n")
    # The tool point is 100 mm in front of the wrist and stays: the wrist moves by the lean of the hand.
    model = plain[0]
    before = model.pose(LEANING)[0]
    code, expected = model.inverse([*before[:3], *model.pose(UPRIGHT)[0][3:]], [0, 0, 0, 1])
    assert code == 0 and abs(expected[4] - -90) < 10
    assert row == table_row("1", *expected, ("front near flipped", -18))


def test_the_json_and_the_csv_answer(open_kine, plain):
    model, path = plain
    code, expected = model.align(2, LEANING)
    assert code == 0
    (row,) = json_rows(open_kine("align", path, text_of(LEANING), "--to", "base", "--json"))
    assert list(row) == ["target", *model.joint_names(), "posture", "result"]
    assert close(joints_of(model, row), expected, 1e-9)
    assert (row["target"], row["posture"], row["result"]) == ("1", "front near flipped", "0x0000")
    header, line = open_kine("align", path, text_of(LEANING), "--to", "base", "--csv").out.splitlines()
    assert header == "target,q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg,posture,result"
    name, *values, posture, result = line.split(",")
    assert (name, posture, result) == ("1", "front near flipped", "0x0000")
    assert close([float(v) for v in values], expected, 1e-9)


# Where it leads

@pytest.mark.parametrize("name", ["six", "external"])
@pytest.mark.parametrize("to", sorted(MODES))
def test_the_tool_is_square_to_the_frame_and_its_point_stays(open_kine, tmp_path, name, to):
    model = ModelCell(MODEL_CELLS[name])
    path = model.write(tmp_path)
    rng = random.Random(name + to)
    starts, tried = [], 0
    while len(starts) < 20:
        tried += 1
        start = model.random_joints(rng)
        if model.align(MODES[to], start)[0] == 0:
            starts.append(start)
    assert tried < 200
    run = open_kine("align", path, "--to", to, "--csv", stdin="".join(text_of(start) + "\n" for start in starts))
    assert run.status == DONE
    for row, start in zip(csv_rows(run), starts, strict=True):
        before = model.pose(start, SEEN_IN[to])[0]
        after = model.pose(joints_of(model, row), SEEN_IN[to])[0]
        assert close(before[:3], after[:3]), start
        along = max(range(3), key=lambda axis: abs(tool_z(before)[axis]))
        wanted = [math.copysign(axis == along, tool_z(before)[along]) for axis in range(3)]
        assert close(tool_z(after), wanted, 1e-8), start
        # The smallest turn: the angle of the whole turn is just that between the two Z axes.
        r, s = rotation(before), rotation(after)
        angle = math.acos(max(-1.0, min(1.0, (sum(a * b for a, b in zip(r, s)) - 1) / 2)))
        assert abs(angle - math.acos(min(1.0, dot(tool_z(before), tool_z(after))))) < 1e-6
        assert close(joints_of(model, row)[6:], start[6:])
        assert row["posture"] == model.words(model.config(joints_of(model, row)))


@pytest.mark.parametrize("to", sorted(MODES))
def test_a_held_work_object_turns_as_the_model_says(open_kine, tmp_path, to):
    model = ModelCell(MODEL_CELLS["held"])
    path = model.write(tmp_path)
    rng = random.Random(to)
    for _ in range(10):
        start = model.random_joints(rng)
        code, expected = model.align(MODES[to], start)
        (row,) = csv_rows(open_kine("align", path, text_of(start), "--to", to, "--csv"))
        assert row["result"] == f"0x{code:04X}"
        assert expected is None or close(joints_of(model, row), expected)


def test_an_aligned_tool_stays_where_it_is(open_kine, plain):
    model, path = plain
    (first,) = csv_rows(open_kine("align", path, text_of(LEANING), "--to", "wobj", "--csv"))
    (again,) = csv_rows(open_kine("align", path, text_of(joints_of(model, first)), "--to", "wobj", "--csv"))
    assert close(joints_of(model, again), joints_of(model, first))


def test_the_result_can_be_piped_into_fk(open_kine, plain):
    model, path = plain
    run = open_kine("align", path, text_of(LEANING), "--to", "world", "--csv")
    (row,) = csv_rows(open_kine("fk", path, "--csv", stdin=run.out))
    assert close([row[k] for k in ("x_mm", "y_mm", "z_mm")], model.pose(LEANING)[0][:3])


# Refusals

def test_a_posture_nearer_than_the_present_one_is_refused(open_kine, plain):
    model, path = plain
    rng = random.Random(8)
    while True:
        start = model.random_joints(rng)
        code, _ = model.align(2, start)
        if code == 0x6081:
            break
    run = open_kine("align", path, text_of(start), "--to", "base", "--csv")
    assert run.status == REFUSED and run.out.splitlines()[1] == "1,,,,,,,,0x6081"
    assert run.err.startswith("kine: target 1: 0x6081 KINE_ERR_ALIGN_TURN")


def test_an_aligned_pose_out_of_reach_is_refused(open_kine, tmp_path):
    """The arm nearly stretched with a long tool aside: the turn takes the wrist out of reach."""
    model = ModelCell(cell_of(SIX_AXIS, {"frame": {"x_mm": 400, "z_mm": 300}}))
    rng = random.Random(8)
    while True:
        start = model.random_joints(rng)
        start[2] = rng.uniform(60, 75)
        if model.align(2, start)[0] == 0x6080:
            break
    run = open_kine("align", model.write(tmp_path), text_of(start), "--to", "base", "--json")
    (row,) = json_rows(run)
    assert run.status == REFUSED
    assert (row["result"], row["error"], row["q1_deg"]) == ("0x6080", "KINE_ERR_ALIGN_NO_SOLUTION", None)


def test_a_negative_axis_4_of_a_four_axis_arm_is_refused(open_kine, tmp_path):
    path = ModelCell(cell_of(TYPE_4, FLAT_GRIPPER)).write(tmp_path)
    run = open_kine("align", path, "30,70,360,-15", "30,70,360,15", "--to", "base", "--csv")
    first, second = csv_rows(run)
    assert run.status == REFUSED and first["result"] == "0x6081"
    assert second["result"] == "0x0000" and close([second[f"q{i}_deg"] for i in range(1, 5)], [30, 70, 360, 15])
    assert second["posture"] == "elbow+"


def test_rows_are_aligned_by_any_number_of_processes(open_kine, plain):
    model, path = plain
    rng = random.Random(2)
    rows = "".join(text_of(model.random_joints(rng)) + "\n" for _ in range(2000))
    one = open_kine("align", path, "--to", "base", "--csv", stdin=rows)
    assert open_kine("align", path, "--to", "base", "--csv", "-j", "2", stdin=rows) == one


# What makes no sense

def test_a_frame_has_to_be_named(open_kine):
    run = open_kine("align", "puma.json", text_of(LEANING))
    assert run.status == USAGE and run.out == "" and "--to" in run.err
    run = open_kine("align", "puma.json", text_of(LEANING), "--to", "flange")
    assert run.status == USAGE and run.out == "" and "--to" in run.err and "wobj-flange" in run.err


def test_targets_and_files_that_do_not_say_what_they_should(open_kine, tmp_path):
    run = open_kine("align", "puma.json", "1,2,3", "--to", "base")
    assert (run.status, run.err) == (USAGE, "\"1,2,3\": has 3 values; expected 6 axes\n")
    run = open_kine("align", "puma.json", "@nowhere", "--to", "base")
    assert (run.status, run.err) == (USAGE, "puma.json has no joints \"nowhere\"\n")
    file = tmp_path / "joints.csv"
    file.write_text("q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg\n1,2,3,4,5\n")
    run = open_kine("align", "puma.json", "-i", file, "--to", "base")
    assert (run.status, run.err) == (BAD_FILE, f"{file}:2: has 5 values, the header 6\n")


def test_the_help_has_every_option_and_examples(open_kine):
    run = open_kine("align", "--help")
    assert run.status == DONE and "Examples:" in run.out and "--to" in run.out

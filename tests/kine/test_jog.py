"""kine jog: what a step does to the tool, by the geometry of the step and the naive model's forward kinematics."""

import math
import random

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows
from geometry import axis_angle, rot_product, rotate, transposed
from model_cell import CELLS as MODEL_CELLS
from model_cell import ModelCell, cell_of, rotation, table_row, text_of, FLAT_GRIPPER, FLAT_TABLE, SIX_AXIS, TYPE_4

DIRECTIONS = {"x": (1, 0, 0), "y": (0, 1, 0), "z": (0, 0, 1)}
START = [20.0, -5.0, -30.0, 30.0, 40.0, 50.0]


def moved(frame, mode, move, step):
    """Position and rotation of a frame after one step: along and about its own axes, or along those it is given in
    and about them through its own origin, or through theirs for a work object.
    """
    sign, name = (-1.0 if move[0] == "-" else 1.0), move.lstrip("+-")
    axis = [sign * v for v in DIRECTIONS[name[-1]]]
    here = rotation(frame)
    if name[0] == "r":
        turn = axis_angle(axis, math.radians(step))
        position = rotate(turn, frame[:3]) if mode == "wobj" else frame[:3]
        return position, rot_product(here, turn) if mode == "tool" else rot_product(turn, here)
    shift = rotate(here, axis) if mode == "tool" else axis
    return [p + step * v for p, v in zip(frame[:3], shift)], here


def close(a, b, tolerance=1e-6):
    return len(a) == len(b) and all(abs(x - y) < tolerance for x, y in zip(a, b))


def joints_of(model, row):
    return [row[name] for name in model.joint_names()]


def steady_joints(model, rng):
    """Away from singular poses and from the half turns of a heading."""
    joints = model.random_joints(rng)
    if model.arm_type == 6:
        joints[1], joints[4] = rng.uniform(-40, 40), rng.choice((-1, 1)) * rng.uniform(20, 90)
    return joints


@pytest.fixture
def six(tmp_path):
    model = ModelCell(MODEL_CELLS["six"])
    return model, model.write(tmp_path)


# Rows as they are written

def test_the_table_of_joint_steps_by_hand(open_kine, six):
    run = open_kine("jog", six[1], text_of(START), "--move", "+j1,-j6", "--step", "15")
    assert run.status == DONE and run.err == ""
    assert run.out == (
        "target          q1_deg      q2_deg      q3_deg      q4_deg      q5_deg      q6_deg posture            result\n"
        + table_row("1", 35.0, -5.0, -30.0, 30.0, 40.0, 35.0, ("front near plain", -18)))


def test_the_table_of_repeated_steps_by_hand(open_kine, six):
    run = open_kine("jog", six[1], text_of(START), "--mode", "joint", "--move", "-j5", "--step", "30", "--repeat", "3")
    rows = [table_row("1", (step, 5), *START[:4], 40.0 - 30 * step, 50.0,
                      (f"front near {'plain' if step < 2 else 'flipped'}", -18)) for step in (1, 2, 3)]
    assert run.out == ("target      step      q1_deg      q2_deg      q3_deg      q4_deg      q5_deg      q6_deg "
                       "posture            result\n" + "".join(rows))


def test_the_json_and_the_csv_answer(open_kine, six):
    model, path = six
    code, joints = model.jog([0, 1], 1, [7.5, 0.0, 0.0], START)
    assert code == 0
    run = open_kine("jog", path, text_of(START), "--move", "+j2", "--step", "7.5", "--csv")
    header, row = run.out.splitlines()
    assert header == "target,q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg,posture,result"
    name, *values, posture, result = row.split(",")
    assert close([float(v) for v in values], joints, 1e-12)
    assert (name, posture, result) == ("1", "front near plain", "0x0000")
    run = open_kine("jog", path, text_of(START), "--move", "+j2", "--step", "7.5", "--json", "--repeat", "2")
    first, second = json_rows(run)
    assert list(first) == ["target", "step", *model.joint_names(), "posture", "result"]
    assert (first["step"], second["step"]) == (1, 2)
    assert abs(first["q2_deg"] - 2.5) < 1e-12 and abs(second["q2_deg"] - 10.0) < 1e-12


# Where a step leads

@pytest.mark.parametrize("name, mode", [("six", "base"), ("six", "tool"), ("six", "wobj"), ("six", "world"),
                                        ("external", "base"), ("external", "tool"), ("external", "wobj")])
def test_a_cartesian_step_moves_the_tool_by_just_that(open_kine, tmp_path, name, mode):
    model = ModelCell(MODEL_CELLS[name])
    path = model.write(tmp_path)
    rng = random.Random(mode + name)
    seen_in = {"base": "Kine_JointToBasePos", "world": "Kine_JointToWorldPos"}.get(mode, "Kine_JointToWobjPos")
    for move in ("+x", "-x", "+y", "-y", "z", "-z", "+rx", "-rx", "+ry", "-ry", "rz", "-rz"):
        start = steady_joints(model, rng)
        step = rng.uniform(1, 8)
        run = open_kine("jog", path, text_of(start), "--mode", mode, "--move", move, "--step", repr(step), "--csv")
        assert run.status == DONE, (run.err, start)
        (row,) = csv_rows(run)
        before, after = (model.pose(joints, seen_in)[0] for joints in (start, joints_of(model, row)))
        position, orientation = moved(before, mode, move, step)
        assert close(after[:3], position) and close(rotation(after), orientation, 1e-8), (move, start)
        assert close(joints_of(model, row)[model.axes:], start[model.axes:])
        assert row["posture"] == model.words(model.config(joints_of(model, row)))


def test_a_base_that_is_turned_by_90_degrees_jogs_the_other_way_along_the_world(open_kine, tmp_path):
    """The directions are turned by the base and taken along its axes: X becomes Y of the base, -X of the world."""
    model = ModelCell(MODEL_CELLS["external"])
    run = open_kine("jog", model.write(tmp_path), text_of([*START, 40.0, 10.0]), "--mode", "world", "--move", "+x", "--step",
               "8", "--csv")
    before, after = (model.pose(joints, "Kine_JointToWorldPos")[0]
                     for joints in ([*START, 40.0, 10.0], joints_of(model, csv_rows(run)[0])))
    assert close(after[:3], [before[0] - 8, *before[1:3]]) and close(rotation(after), rotation(before), 1e-8)


@pytest.mark.parametrize("name", ["type-4", "type-4110"])
def test_the_rotations_of_a_four_axis_arm_are_about_the_axes_they_name(open_kine, tmp_path, name):
    model = ModelCell(MODEL_CELLS[name])
    path = model.write(tmp_path)
    rng = random.Random(4)
    for move in ("+x", "-y", "+z", "rz", "-rz"):
        for mode in ("base", "tool", "wobj"):
            seen_in = "Kine_JointToBasePos" if mode == "base" else "Kine_JointToWobjPos"
            while True:
                start = steady_joints(model, rng)
                if abs(model.pose(start, seen_in)[0][3]) < 160:
                    break
            run = open_kine("jog", path, text_of(start), "--mode", mode, "--move", move, "--step", "4", "--csv")
            assert run.status == DONE and run.err == "", (run, start)
            (row,) = csv_rows(run)
            before, after = (model.pose(joints, seen_in)[0] for joints in (start, joints_of(model, row)))
            position, orientation = moved(before, mode, move, 4.0)
            assert close(after[:3], position, 1e-5) and close(rotation(after), orientation, 1e-6), (move, mode)


@pytest.mark.parametrize("move, slot", [("rx", 5), ("-ry", 4), ("rz", 3)])
def test_the_slots_of_a_four_axis_arm_are_turned_round(open_kine, tmp_path, move, slot):
    model = ModelCell(cell_of(TYPE_4, FLAT_GRIPPER, FLAT_TABLE))
    slots = [0] * 6
    slots[slot] = -1 if move[0] == "-" else 1
    start = [30.0, 70.0, 360.0, -15.0]
    code, joints = model.jog(slots, 2, [0.0, 0.0, 20.0], start)
    run = open_kine("jog", model.write(tmp_path), text_of(start), "--mode", "base", "--move", move, "--step", "20", "--csv")
    assert code == 0 and close(joints_of(model, csv_rows(run)[0]), joints, 1e-9)
    note = "" if move == "rz" else "kine: note: a four-axis arm does not tilt its tool: rx and ry lead elsewhere\n"
    assert run.err == note


@pytest.mark.parametrize("mode, number", [("base", 2), ("tool", 3), ("wobj", 4), ("world", 5)])
def test_a_held_work_object_moves_as_the_model_says(open_kine, tmp_path, mode, number):
    model = ModelCell(MODEL_CELLS["held"])
    path = model.write(tmp_path)
    for slot, move in enumerate(("x", "y", "z", "rx", "ry", "rz")):
        slots = [0] * 6
        slots[slot] = -1
        code, joints = model.jog(slots, number, [0.0, 6.0, 6.0], START)
        run = open_kine("jog", path, text_of(START), "--mode", mode, "--move", "-" + move, "--step", "6", "--csv")
        assert code == 0 and close(joints_of(model, csv_rows(run)[0]), joints)


def test_joints_and_external_axes_move_by_the_step(open_kine, tmp_path):
    model = ModelCell(MODEL_CELLS["external"])
    path = model.write(tmp_path)
    start = [*START, 100.0, -20.0]
    run = open_kine("jog", path, text_of(start), "--mode", "joint", "--move", "+e1, -e2, j3", "--step", "2.5", "--csv")
    expected = [*START[:2], -27.5, *START[3:], 102.5, -22.5]
    assert close(joints_of(model, csv_rows(run)[0]), expected, 1e-9)
    four = ModelCell(cell_of(TYPE_4, external_axes=[{"name": "track", "kind": "linear"}]))
    run = open_kine("jog", four.write(tmp_path), "10,20,30,40,50", "--move", "-j4,+e1", "--step", "5", "--csv")
    assert close(joints_of(four, csv_rows(run)[0]), [10, 20, 30, 35, 55], 1e-9)


def test_every_step_of_a_repetition_is_as_long_as_the_first(open_kine, six):
    model, path = six
    run = open_kine("jog", path, text_of(START), "--mode", "tool", "--move", "+z", "--step", "10", "--repeat", "5", "--csv")
    rows = csv_rows(run)
    frame = model.pose(START)[0]
    direction = rotate(rotation(frame), (0, 0, 1))
    assert [row["step"] for row in rows] == [1, 2, 3, 4, 5]
    for row in rows:
        after = model.pose(joints_of(model, row))[0]
        assert close(after[:3], [p + 10 * row["step"] * v for p, v in zip(frame[:3], direction)])
        assert close(rotation(after), rotation(frame), 1e-8)
    turned = csv_rows(open_kine("jog", path, text_of(START), "--mode", "tool", "--move", "+rz", "--step", "10", "--repeat",
                           "3", "--csv"))[-1]
    after = model.pose(joints_of(model, turned))[0]
    assert close(rotation(after), rot_product(rotation(frame), axis_angle((0, 0, 1), math.radians(30))), 1e-8)


def test_the_steps_can_be_piped_into_fk(open_kine, six):
    model, path = six
    run = open_kine("jog", path, text_of(START), "--mode", "wobj", "--move", "-y", "--step", "3", "--repeat", "4", "--csv")
    poses = csv_rows(open_kine("fk", path, "--csv", stdin=run.out))
    y = model.pose(START)[0][1]
    assert close([row["y_mm"] for row in poses], [y - 3, y - 6, y - 9, y - 12])


def test_moves_along_and_about_go_together_with_a_step_of_each(open_kine, six):
    model, path = six
    run = open_kine("jog", path, text_of(START), "--mode", "base", "--move", "-x,+z,-ry", "--step", "4", "--rotation-step",
               "7", "--csv")
    before, after = (model.pose(joints, "Kine_JointToBasePos")[0]
                     for joints in (START, joints_of(model, csv_rows(run)[0])))
    assert run.err == ""
    assert close(after[:3], [before[0] - 4, before[1], before[2] + 4])
    turn = axis_angle((0, -1, 0), math.radians(7))
    assert close(rot_product(rotation(after), transposed(rotation(before))), turn, 1e-8)


def test_two_rotations_at_once_are_as_the_model_says_with_a_note(open_kine, six):
    model, path = six
    code, joints = model.jog([0, 0, 0, 1, 1, 0], 2, [0.0, 0.0, 2.0], START)
    options = ["--mode", "base", "--move", "rx,ry", "--step", "2", "--csv"]
    run = open_kine("jog", path, text_of(START), *options)
    assert code == 0 and close(joints_of(model, csv_rows(run)[0]), joints)
    assert run.err == "kine: note: several rotations in one step are not exactly a rotation\n"
    assert open_kine("jog", path, text_of(START), *options, "-q").err == ""


def test_a_step_to_a_singular_pose_is_refused_and_ends_the_repetition(open_kine, tmp_path):
    """A straight wrist within 5 degrees: the third step of 10 from 27 degrees gets there."""
    model = ModelCell(cell_of(SIX_AXIS))
    path = model.write(tmp_path)
    start = [0.0, 0.0, 0.0, 0.0, 27.0, 0.0]
    codes, joints = [], start
    while not codes or codes[-1] == 0:
        code, after = model.jog([0, 0, 0, 0, -1, 0], 3, [0.0, 0.0, 10.0], joints)
        codes.append(code)
        joints = after or joints
    run = open_kine("jog", path, text_of(start), text_of(START), "--mode", "tool", "--move", "-ry", "--step", "10",
               "--repeat", "6", "--csv")
    rows = csv_rows(run)
    own = [row for row in rows if row["target"] == 1.0]
    assert run.status == REFUSED and codes[-1] == 0x6092
    assert [int(row["result"], 16) for row in own] == codes
    assert run.out.splitlines()[len(own)] == f"1,{len(own)},,,,,,,,0x6092"
    assert run.err.splitlines()[0] == "kine: target 1: 0x6092 KINE_ERR_INCH_SINGULAR"
    assert len([row for row in rows if row["target"] == 2.0]) > 0  # the next target is looked at all the same


def test_a_stretched_arm_is_refused_with_the_line_of_the_library(open_kine, six):
    model, path = six
    start = [0.0, -80.0, 0.0, 0.0, 60.0, 0.0]
    code, _ = model.jog([1], 4, [0.0, 900.0, 0.0], start)
    run = open_kine("jog", path, text_of(start), "--mode", "wobj", "--move", "+x", "--step", "900", "--json")
    (row,) = json_rows(run)
    assert run.status == REFUSED and row["result"] == f"0x{code:04X}" == "0x6097"
    assert row["lines"] == [f"IK error 5:{code}"] and row["posture"] is None


def test_rows_of_a_file_are_jogged_by_any_number_of_processes(open_kine, six):
    model, path = six
    rng = random.Random(2)
    rows = "".join(text_of(steady_joints(model, rng)) + "\n" for _ in range(2000))
    options = ["--mode", "tool", "--move", "-z", "--step", "5", "--repeat", "2", "--csv"]
    one = open_kine("jog", path, *options, stdin=rows)
    assert len(one.out.splitlines()) > 3500
    assert open_kine("jog", path, *options, "-j", "2", stdin=rows) == one


# What makes no sense

MOVES = "x, y, z, rx, ry, rz, j1 to j6"


@pytest.mark.parametrize("options, message", [
    (["--move", "+w", "--step", "1"], f"--move: \"+w\" is no move of this cell; moves are {MOVES}, each with + or -"),
    (["--move", "", "--step", "1"], f"--move: \"\" is no move of this cell; moves are {MOVES}, each with + or -"),
    (["--move", "+j7", "--step", "1"], f"--move: \"+j7\" is no move of this cell; moves are {MOVES}, each with + or -"),
    (["--move", "e1", "--step", "1"], f"--move: \"e1\" is no move of this cell; moves are {MOVES}, each with + or -"),
    (["--move", "x,,y", "--step", "1"], f"--move: \"\" is no move of this cell; moves are {MOVES}, each with + or -"),
    (["--move", "+x,-x", "--step", "1"], "--move: \"-x\" comes on top of the same move"),
    (["--move", "x,j1", "--step", "1"],
     "--move: joints and external axes do not go together with x, y, z, rx, ry, rz in one step"),
    (["--move", "+z", "--step", "1"], "--mode: give base, tool, wobj or world for x, y, z, rx, ry, rz"),
    (["--mode", "joint", "--move", "+z", "--step", "1"], "--mode joint moves joints and external axes"),
    (["--mode", "tool", "--move", "+j1", "--step", "1"], "--mode tool moves along x, y, z and about rx, ry, rz"),
    (["--mode", "tool", "--move", "x,rx", "--step", "1"],
     "--rotation-step: needed beside --step where --move has both x, y, z and rx, ry, rz"),
    (["--mode", "tool", "--move", "x", "--step", "inf"], "--step: should be a finite number"),
    (["--mode", "tool", "--move", "rx", "--step", "1", "--rotation-step", "nan"],
     "--rotation-step: should be a finite number"),
])
def test_moves_that_make_no_sense(open_kine, options, message):
    run = open_kine("jog", "puma.json", text_of(START), *options)
    assert (run.status, run.out, run.err) == (USAGE, "", message + "\n")


@pytest.mark.parametrize("options, word", [
    (["--step", "1"], "--move"), (["--move", "j1"], "--step"), (["--move", "j1", "--step", "far"], "--step"),
    (["--move", "j1", "--step", "1", "--mode", "user"], "--mode"),
    (["--move", "j1", "--step", "1", "--repeat", "0"], "--repeat"),
    (["--move", "j1", "--step", "1", "--repeat", "1001"], "--repeat"),
])
def test_options_that_the_command_line_refuses_by_name(open_kine, options, word):
    run = open_kine("jog", "puma.json", text_of(START), *options)
    assert run.status == USAGE and run.out == "" and word in run.err


def test_external_axes_of_the_cell_are_named_in_the_message(open_kine, tmp_path):
    path = ModelCell(MODEL_CELLS["external"]).write(tmp_path)
    run = open_kine("jog", path, text_of([*START, 0.0, 0.0]), "--move", "e3", "--step", "1")
    assert run.err == f"--move: \"e3\" is no move of this cell; moves are {MOVES}, e1 to e2, each with + or -\n"


def test_files_that_do_not_say_what_they_should(open_kine, tmp_path):
    file = tmp_path / "joints.csv"
    file.write_text("0,0,0,0,0,0\n0,0,0,0,0,zero\n")
    run = open_kine("jog", "puma.json", "-i", file, "--move", "j1", "--step", "1", "--csv")
    assert (run.status, run.err) == (BAD_FILE, f"{file}:2: column 6 (q6_deg): \"zero\" is not a number\n")
    assert len(run.out.splitlines()) == 2  # the row before it is answered


def test_the_help_has_every_option_and_examples(open_kine):
    run = open_kine("jog", "--help")
    assert run.status == DONE and "Examples:" in run.out
    for option in ("--mode", "--move", "--step", "--rotation-step", "--repeat"):
        assert option in run.out, option

"""kine ik: solutions against the naive model, and the way there and back with kine fk."""

import itertools
import json
import math
import random

import pytest

from conftest import BAD_FILE, CELLS, DONE, REFUSED, USAGE, as_number, csv_rows, json_rows
from model_cell import CELLS as MODEL_CELLS
from model_cell import ModelCell, cell_of, same_frame, table_row, text_of, SIX_AXIS, TYPE_4110

PUMA = ModelCell({"arm": {"type": 6, "a1_mm": 0, "a2_mm": 431.8, "a3_mm": 20.3, "d1_mm": 0, "d4_mm": 431.8,
                          "d6_mm": 0, "d3_mm": -150.05, "lateral_offset_mm": -150.05}})
# The level arm of the Puma by hand, x = d4, y = 150.05, z = a2 + a3, and the hand bent up by 90 degrees: the Z axis
# of the tool points up, its X axis back along the forearm.
BENT = [0.0, 0.0, 0.0, 0.0, 90.0, 0.0]
BENT_POSE = "431.8,150.05,452.1,180,0,0,0,0,0,0"
# Which axes have turns, by arm type.
TURNED = {6: (0, 3, 5), 4: (3,), 4110: (0, 1, 3)}
POSTURES = {6: [[0, 0, 0, p] for p in range(8)], 4: [[1, 0, 0, 0], [-1, 0, 0, 0]],
            4110: [[1, 0, 0, 0], [-1, 0, 0, 0]]}
AT_LIMIT = 1e-6


def all_solutions(model, frame, externals, open_turns=(0,)):
    """Every joint set within the limits by adding whole turns to the model's answer for each posture; an axis
    without limits has the turns asked for.
    """
    found, codes = [], []
    for index, config in enumerate(POSTURES[model.arm_type]):
        wanted = [list(config)]
        numbers = {6: (0, 1, 2), 4: (3,), 4110: (1, 2, 3)}[model.arm_type]
        if model.limits[0][0] > -math.inf:
            # Any numbers that the limits allow will do: the turns are chosen below.
            for place, axis in zip(numbers, TURNED[model.arm_type]):
                low, high = (v / 90 for v in model.limits[axis])
                options = [n for n in range(math.floor(max(low, -40)) - 2, math.floor(min(high, 40)) + 3)]
                wanted = [[*c[:place], min(options, key=lambda n: (n % 4 != 0, abs(n))), *c[place + 1:]]
                          for c in wanted]
        code, joints = model.inverse(frame, wanted[0], externals)
        codes.append(code)
        if code:
            continue
        choices = []
        for axis in range(model.axes):
            low, high = model.limits[axis]
            turns = (0,)
            if axis in TURNED[model.arm_type]:
                turns = range(-12, 13) if low > -math.inf else open_turns
            choices.append([v for v in (joints[axis] + 360 * k for k in turns)
                            if low - AT_LIMIT <= v <= high + AT_LIMIT])
        found += [(index, [*axes, *joints[model.axes:]]) for axes in itertools.product(*choices)]
    return found, codes


def distance(model, a, b):
    return sum(abs(x - y) for x, y in zip(a[:model.axes], b[:model.axes]))


def row_joints(model, row):
    return [row[name] for name in model.joint_names()]


def close(a, b, tolerance=1e-6):
    return len(a) == len(b) and all(abs(x - y) < tolerance for x, y in zip(a, b))


@pytest.fixture(params=sorted(MODEL_CELLS))
def any_cell(request, tmp_path):
    model = ModelCell(MODEL_CELLS[request.param])
    return model, model.write(tmp_path)


# Rows as they are written

def test_the_pose_of_the_bent_hand_is_right():
    frame, config, _ = PUMA.pose(BENT)
    assert same_frame(frame, [float(v) for v in BENT_POSE.split(",")[:6]], 1e-9, 1e-9), frame
    assert config == [0, 0, 0, 0]


def test_the_table(open_kine):
    run = open_kine("ik", "puma.json", BENT_POSE)
    assert run.status == DONE and run.err == ""
    assert run.out == (
        "target          q1_deg      q2_deg      q3_deg      q4_deg      q5_deg      q6_deg posture            result\n"
        "1               0.0000      0.0000      0.0000      0.0000     90.0000      0.0000 front near plain   0x0000\n"
    )


def test_the_json_answer(open_kine):
    run = open_kine("ik", "puma.json", BENT_POSE, "--json")
    (row,) = json_rows(run)
    assert list(row) == ["target", *PUMA.joint_names(), "posture", "result"]
    assert close(row_joints(PUMA, row), BENT, 1e-9)
    assert (row["target"], row["posture"], row["result"]) == ("1", "front near plain", "0x0000")
    assert run.out.count("\n") == 1


def test_the_csv_answer(open_kine):
    run = open_kine("ik", "puma.json", "--csv", stdin=f"target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,cfg1,cfg2,cfg3,cfg4\n"
                                                 f"bent,{BENT_POSE}\n")
    header, row = run.out.splitlines()
    assert header == "target,q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg,posture,result"
    name, *joints, posture, result = row.split(",")
    assert (name, posture, result) == ("bent", "front near plain", "0x0000")
    assert close([float(v) for v in joints], BENT, 1e-9)


def test_the_table_of_all(open_kine):
    frame, _, _ = PUMA.pose([10.0, 20.0, 30.0, 40.0, 50.0, 60.0])
    found, _ = all_solutions(PUMA, frame, [])
    assert len(found) == 8
    expected = "target     solution" + "".join(f" {name:>11}" for name in PUMA.joint_names())
    expected += "  cfg1  cfg2  cfg3  cfg4 posture            result\n"
    for number, (posture, joints) in enumerate(found, 1):
        config = PUMA.config(joints)
        assert config[3] == posture
        expected += table_row("1", (number, 8), *joints, *[(v, 5) for v in config], (PUMA.words(config), -18))
    run = open_kine("ik", "puma.json", text_of(frame), "--all")
    assert run.out == expected and run.err == "" and run.status == DONE
    header, *lines = open_kine("ik", "puma.json", text_of(frame), "--all", "--csv").out.splitlines()
    names = ["target", "solution", *PUMA.joint_names(), "cfg1", "cfg2", "cfg3", "cfg4", "posture", "result"]
    assert header == ",".join(names) and len(lines) == 8
    rows = json_rows(open_kine("ik", "puma.json", text_of(frame), "--all", "--json"))
    for number, (row, line, (posture, joints)) in enumerate(zip(rows, lines, found, strict=True), 1):
        wanted = ["1", number, *joints, *PUMA.config(joints), PUMA.words([0, 0, 0, posture]), "0x0000"]
        fields = [as_number(text) if 0 < i < 12 else text for i, text in enumerate(line.split(","))]
        for answer in (list(row.values()), fields):
            assert answer[:2] == wanted[:2] and answer[8:] == wanted[8:] and close(answer[2:8], joints, 1e-9)
        assert list(row) == names


# Poses with their integers

def test_fk_and_ik_give_back_the_joints(open_kine, any_cell):
    model, path = any_cell
    rng = random.Random(7)
    targets = []
    while len(targets) < 60:
        joints = model.random_joints(rng, turns=1)
        if all(low <= v <= high for v, (low, high) in zip(joints, model.limits)) or "limits" not in model.cell:
            targets.append(joints)
        elif model.cell["limits"]["lower_deg"][0] > 0:  # limits far off: they bound the turn numbers only
            joints = [joints[0] % 360 + (360 if joints[0] % 360 < 140 else 0), *joints[1:3], joints[3] % 360 - 720,
                      *joints[4:]]
            if 200 < joints[0] < 500 and -900 < joints[3] < -300:
                targets.append(joints)
    source = "".join(text_of(joints) + "\n" for joints in targets)
    poses = open_kine("fk", path, "--csv", stdin=source)
    assert poses.status == DONE, poses.err
    one = open_kine("ik", path, "--csv", stdin=poses.out)
    two = open_kine("ik", path, "--csv", "-j", "2", stdin=poses.out)
    assert one.status == DONE, one.err
    assert two == one
    for row, joints in zip(csv_rows(one), targets, strict=True):
        assert close(row_joints(model, row), joints), (row, joints)
        assert row["posture"] == model.words(model.config(joints))


def test_integers_are_taken_as_they_are_whatever_the_limits_say(open_kine, tmp_path):
    limits = [(-10, 10)] * 6
    path = ModelCell(cell_of(SIX_AXIS, limits=limits)).write(tmp_path)
    model = ModelCell(cell_of(SIX_AXIS))
    joints = [20.0, -5.0, -30.0, 30.0, 40.0, 50.0]
    frame, config, _ = model.pose(joints)
    (row,) = csv_rows(open_kine("ik", path, text_of([*frame, *config]), "--csv"))
    assert close(row_joints(model, row), joints)


def test_named_poses_keep_their_integers(open_kine, tmp_path):
    model = ModelCell(cell_of(SIX_AXIS))
    joints = [20.0, -5.0, -30.0, -150.0, -40.0, -130.0]
    frame, config, _ = model.pose(joints)
    fields = dict(zip(("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"), frame))
    path = ModelCell(cell_of(SIX_AXIS, poses={"pick": {**fields, "cfg": config}, "open": fields})).write(tmp_path)
    fixed, free = csv_rows(open_kine("ik", path, "@pick", "@open", "--csv"))
    assert close(row_joints(model, fixed), joints)
    assert close(row_joints(model, free), [20.0, -5.0, -30.0, 30.0, 40.0, 50.0])
    assert (fixed["target"], free["target"]) == ("pick", "open")


def test_a_refused_row_has_the_code_and_the_line(open_kine):
    far = "3000,0,0,0,0,0,0,0,0,0"
    code, _ = PUMA.inverse([3000.0, 0.0, 0.0, 0.0, 0.0, 0.0], [0, 0, 0, 0])
    assert code == 0x6097
    run = open_kine("ik", "puma.json", far, BENT_POSE, "--csv")
    assert run.status == REFUSED
    assert run.out.splitlines()[1] == "1,,,,,,,,0x6097"
    assert run.out.splitlines()[2].startswith("2,")
    assert run.err == "kine: target 1: 0x6097 KINE_ERR_IK_7: IK error 5:24727\n"
    assert open_kine("ik", "puma.json", far, "-q").err == ""
    (row,) = json_rows(open_kine("ik", "puma.json", far, "--json"))
    assert (row["result"], row["error"], row["lines"]) == ("0x6097", "KINE_ERR_IK_7", ["IK error 5:24727"])


# Poses without integers

def test_the_nearest_solution_is_found(open_kine, any_cell):
    model, path = any_cell
    rng = random.Random(11)
    near = model.random_joints(rng, turns=1)
    near[0] += 150
    rows, expected = "", []
    for _ in range(25):
        frame, _, externals = model.pose(model.random_joints(rng))
        rows += text_of(frame) + "".join(f",{v!r}" for v in externals) + "\n"
        found, codes = all_solutions(model, frame, externals, range(-3, 4))
        best = min((joints for _, joints in found), key=lambda joints: distance(model, joints, near), default=None)
        expected.append((best, codes))
    names = ["x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"] + model.joint_names()[model.axes:]
    run = open_kine("ik", path, "--csv", "--near", text_of(near), stdin=",".join(names) + "\n" + rows)
    for row, (best, codes) in zip(csv_rows(run), expected, strict=True):
        if best is None:
            assert row["result"] == ("0x6090" if 0 in codes else f"0x{codes[0]:04X}"), (row, codes)
        else:
            assert close(row_joints(model, row), best), (row, best)
            assert row["posture"] == model.words(model.config(best))
    assert run.status == (DONE if all(best for best, _ in expected) else REFUSED)
    assert any(best for best, _ in expected)


def test_home_is_where_it_starts_from_unless_near_says_otherwise(open_kine, tmp_path):
    model = ModelCell(cell_of(SIX_AXIS))
    frame, _, _ = model.pose([20.0, -5.0, -30.0, 30.0, 40.0, 50.0])
    found = dict(all_solutions(model, frame, [])[0])
    homes = {"home": {"axes_deg": found[5]}, "away": {"axes_deg": found[2]}}
    path = ModelCell(cell_of(SIX_AXIS, joints=homes)).write(tmp_path)
    runs = ([], ["--near", "@away"], ["--near", "0,0,0,0,0,0"], ["--posture", "far,back"])
    backs = min((joints for posture, joints in all_solutions(model, frame, [], range(-1, 2))[0] if posture in (6, 7)),
                key=lambda joints: distance(model, joints, found[5]))
    for options, best in zip(runs, (found[5], found[2], found[0], backs)):
        (row,) = csv_rows(open_kine("ik", path, text_of(frame), "--csv", *options))
        assert close(row_joints(model, row), best), options


def test_a_posture_is_kept_to_in_any_order_of_its_words(open_kine):
    frame, _, _ = PUMA.pose([10.0, 20.0, 30.0, 40.0, 50.0, 60.0])
    for posture, joints in all_solutions(PUMA, frame, [])[0]:
        words = PUMA.words([0, 0, 0, posture]).split()
        for text in (" ".join(words), ",".join(reversed(words))):
            (row,) = csv_rows(open_kine("ik", "puma.json", text_of(frame), "--csv", "--posture", text))
            assert close(row_joints(PUMA, row), joints) and row["posture"] == " ".join(words)


def test_near_and_posture_count_for_rows_with_integers_too(open_kine):
    joints = [10.0, 20.0, 30.0, 40.0, 50.0, 60.0]
    frame, config, _ = PUMA.pose(joints)
    found = dict(all_solutions(PUMA, frame, [])[0])
    target = text_of([*frame, *config])
    (row,) = csv_rows(open_kine("ik", "puma.json", target, "--csv", "--posture", "back far flipped"))
    assert close(row_joints(PUMA, row), found[7])
    (row,) = csv_rows(open_kine("ik", "puma.json", target, "--csv", "--near", text_of(found[3])))
    assert close(row_joints(PUMA, row), found[3])


def test_near_chooses_turns_that_no_limit_forbids(open_kine, tmp_path):
    model = ModelCell(MODEL_CELLS["six-turns"])
    joints = [20.0, -5.0, -30.0, 30.0, 40.0, 50.0]
    frame, _, _ = model.pose(joints)
    near = [20.0, -5.0, -30.0, 390.0, 40.0, -310.0]
    path = model.write(tmp_path)
    (row,) = csv_rows(open_kine("ik", path, text_of(frame), "--csv", "--near", text_of(near)))
    assert close(row_joints(model, row), near)
    near[3] += 360  # beyond the limit of 400: the turn below it is the nearest that is allowed
    (row,) = csv_rows(open_kine("ik", path, text_of(frame), "--csv", "--near", text_of(near)))
    assert close(row_joints(model, row), [20.0, -5.0, -30.0, 390.0, 40.0, -310.0])


def test_near_chooses_any_turn_of_an_axis_without_limits(open_kine):
    frame, _, _ = PUMA.pose([10.0, 20.0, 30.0, 40.0, 50.0, 60.0])
    near = [730.0, 20.0, 30.0, -320.0, 50.0, 36060.0]
    (row,) = csv_rows(open_kine("ik", "puma.json", text_of(frame), "--csv", "--near", text_of(near)))
    assert close(row_joints(PUMA, row), near)
    # As far as the library takes turn numbers, whatever is asked for.
    (row,) = csv_rows(open_kine("ik", "puma.json", text_of(frame), "--csv", "--near", "1e9,0,0,-1e300,0,0"))
    assert row["q1_deg"] > 50000 and row["q4_deg"] < -50000 and row["result"] == "0x0000"


def test_solutions_outside_the_limits_are_refused_as_that(open_kine, tmp_path):
    limits = [(-180, 180), (-10, 0), (-40, -35), (-180, 180), (-180, 180), (-180, 180)]
    path = ModelCell(cell_of(SIX_AXIS, limits=limits)).write(tmp_path)
    frame, _, _ = ModelCell(cell_of(SIX_AXIS)).pose([20.0, -5.0, -30.0, 30.0, 40.0, 50.0])
    run = open_kine("ik", path, text_of(frame), "--csv")
    assert run.status == REFUSED and run.out.splitlines()[1] == "1,,,,,,,,0x6090"
    assert run.err == "kine: target 1: 0x6090 KINE_ERR_CONFIG: solutions outside the axis limits\n"
    (row,) = json_rows(open_kine("ik", path, text_of(frame), "--json"))
    assert (row["result"], row["lines"]) == ("0x6090", ["solutions outside the axis limits"])


def test_a_target_in_reach_of_no_posture_has_the_code_of_the_first(open_kine):
    (row,) = csv_rows(open_kine("ik", "puma.json", "3000,0,0,0,0,0", "--csv"))
    assert row["result"] == "0x6097"
    code, _ = PUMA.inverse([0.0, 0.0, 500.0, 0.0, 0.0, 0.0], [0, 0, 0, 0])
    run = open_kine("ik", "puma.json", "0,0,500,0,0,0", "--csv")
    assert csv_rows(run)[0]["result"] == f"0x{code:04X}" == "0x6096"
    assert run.err == "kine: target 1: 0x6096 KINE_ERR_IK_6: IK error 5:24726\n"


# Every solution

def test_all_lists_every_solution_within_the_limits(open_kine, any_cell):
    model, path = any_cell
    rng = random.Random(5)
    total = 0
    for _ in range(8):
        frame, _, externals = model.pose(model.random_joints(rng))
        found, codes = all_solutions(model, frame, externals)
        config = [0] * 4 if externals else []
        run = open_kine("ik", path, text_of([*frame, *config, *externals]), "--all", "--csv")
        if not found:
            assert run.status == REFUSED and len(run.out.splitlines()) == 2
            assert csv_rows(run)[0]["result"] == ("0x6090" if 0 in codes else f"0x{codes[0]:04X}")
            continue
        rows = csv_rows(run)
        assert run.status == DONE and [row["solution"] for row in rows] == list(range(1, len(rows) + 1))
        total += len(rows)
        for row, (posture, joints) in zip(rows, found, strict=True):
            assert close(row_joints(model, row), joints), (row, joints)
            assert row["posture"] == model.words(POSTURES[model.arm_type][posture])
            config = [int(row[f"cfg{i}"]) for i in range(1, 5)]
            assert config == model.config(joints)
            code, back = model.inverse(frame, config, externals)
            assert code == 0 and close(back, joints)
        unsolved = [p for p in range(len(codes)) if p not in {posture for posture, _ in found}]
        assert len(run.err.splitlines()) == len(unsolved)
    assert total > 0


def test_all_and_fk_lead_back_to_the_pose(open_kine, any_cell):
    model, path = any_cell
    rng = random.Random(13)
    frames = []
    rows = ",".join(["target", "x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg", *model.joint_names()[model.axes:]])
    for name in range(15):
        frame, _, externals = model.pose(model.random_joints(rng))
        frames.append(frame)
        rows += f"\n{name}," + text_of([*frame, *externals])
    solutions = open_kine("ik", path, "--all", "--csv", stdin=rows)
    poses = open_kine("fk", path, "--csv", stdin=solutions.out)
    assert poses.status == solutions.status
    solved = [row for row in csv_rows(poses) if row["result"] == "0x0000"]
    assert len(solved) > 10
    for row, solution in zip(csv_rows(poses), csv_rows(solutions), strict=True):
        assert row["target"] == solution["target"] and row["result"] == solution["result"]
        if row["result"] == "0x0000":
            reached = [row[name] for name in ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")]
            assert same_frame(reached, frames[int(row["target"])]), row
            assert [row[f"cfg{i}"] for i in range(1, 5)] == [solution[f"cfg{i}"] for i in range(1, 5)]


@pytest.mark.parametrize("file", sorted(CELLS.glob("*.json")), ids=lambda file: file.stem)
def test_all_and_fk_lead_back_to_the_pose_on_every_cell_that_comes_with_kine(open_kine, file):
    cell = json.loads(file.read_text())
    axes = 6 if cell["arm"]["type"] == 6 else 4
    limits = cell.get("limits", {"lower_deg": [-90] * axes, "upper_deg": [90] * axes})
    rng = random.Random(3)
    rows = ""
    for _ in range(40):
        rows += ",".join(f"{rng.uniform(max(low, -180), min(high, 180)):.3f}"
                         for low, high in zip(limits["lower_deg"], limits["upper_deg"])) + "\n"
    taught = open_kine("fk", file, "--csv", stdin=rows)
    solutions = open_kine("ik", file, "--all", "--csv", "-q", stdin=taught.out)
    reached = open_kine("fk", file, "--csv", "-q", stdin=solutions.out)
    names = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")
    frames = {row["target"]: [row[name] for name in names] for row in csv_rows(taught)}
    solved = [row for row in csv_rows(reached) if row["result"] == "0x0000"]
    assert len({row["target"] for row in solved}) > 20
    for row in solved:
        assert same_frame([row[name] for name in names], frames[row["target"]], 1e-4, 1e-4), row


def test_all_says_why_a_posture_has_none(open_kine, tmp_path):
    limits = [(-170, 170), (-100, 100), (-100, 100), (-179, 179), (-120, 120), (-180, 180)]
    model = ModelCell(cell_of(SIX_AXIS, limits=limits))
    open_model = ModelCell(cell_of(SIX_AXIS))
    path = model.write(tmp_path)
    frame, _, _ = model.pose([20.0, -5.0, -30.0, 30.0, 40.0, 50.0])
    found, codes = all_solutions(model, frame, [])
    everywhere = dict(all_solutions(open_model, frame, [])[0])
    assert codes == [0] * 8 and {posture for posture, _ in found} == {0, 1}
    expected = []
    for posture in range(2, 8):
        beyond = [axis for axis, (low, high) in enumerate(limits)
                  if not any(low <= everywhere[posture][axis] + turn <= high
                             for turn in ((-360, 0, 360) if axis in (0, 3, 5) else (0,)))]
        where = ", ".join(f"axis {axis + 1} at {everywhere[posture][axis]:.4f} deg" for axis in beyond)
        expected.append((model.words([0, 0, 0, posture]), f"outside the axis limits: {where}"))
    run = open_kine("ik", path, text_of(frame), "--all", "--csv")
    assert run.status == DONE and len(csv_rows(run)) == len(found)
    assert run.err == "".join(f"kine: target 1: {words}: 0x6090 KINE_ERR_CONFIG: {why}\n" for words, why in expected)
    assert open_kine("ik", path, text_of(frame), "--all", "-q").err == ""
    rows = json_rows(open_kine("ik", path, text_of(frame), "--all", "--json"))
    assert [row["solution"] for row in rows] == [*range(1, len(found) + 1), *[None] * 6]
    assert [(row["posture"], row["lines"]) for row in rows[len(found):]] == [(w, [why]) for w, why in expected]
    assert {row["result"] for row in rows[len(found):]} == {"0x6090"}


def test_all_of_a_target_out_of_reach_is_one_refused_row(open_kine):
    run = open_kine("ik", "puma.json", "3000,0,0,0,0,0", "--all", "--csv")
    assert run.status == REFUSED
    assert run.out.splitlines()[1:] == ["1," + "," * 11 + ",0x6097"]
    lines = [f"kine: target 1: {PUMA.words([0, 0, 0, p])}: 0x6097 KINE_ERR_IK_7: IK error 5:24727" for p in range(8)]
    assert run.err.splitlines() == [*lines, "kine: target 1: 0x6097 KINE_ERR_IK_7: IK error 5:24727"]
    rows = json_rows(open_kine("ik", "puma.json", "3000,0,0,0,0,0", "--all", "--json"))
    assert [row["posture"] for row in rows] == [*[PUMA.words([0, 0, 0, p]) for p in range(8)], None]
    assert {row["result"] for row in rows} == {"0x6097"} and rows[-1]["lines"] == ["IK error 5:24727"]
    again = open_kine("fk", "puma.json", "--csv", "-q", stdin=run.out)
    assert again.status == REFUSED and again.out.splitlines()[1].endswith(",0x6097")


def test_all_keeps_to_a_posture_and_puts_the_nearest_first(open_kine, tmp_path):
    model = ModelCell(MODEL_CELLS["six-turns"])
    path = model.write(tmp_path)
    frame, _, _ = model.pose([20.0, -5.0, -30.0, 30.0, 40.0, 50.0])
    near = [0.0, 0.0, 0.0, -300.0, 0.0, 400.0]
    found = [joints for posture, joints in all_solutions(model, frame, [])[0] if posture in (0, 1)]
    assert len(found) > 4
    found.sort(key=lambda joints: distance(model, joints, near))
    run = open_kine("ik", path, text_of(frame), "--all", "--csv", "--near", text_of(near), "--posture", "front,near")
    for row, joints in zip(csv_rows(run), found, strict=True):
        assert close(row_joints(model, row), joints)


def test_a_solution_on_its_limit_counts_as_within(open_kine, tmp_path):
    joints = [20.1, -5.3, -30.7, 30.9, 40.3, 50.7]
    limits = [(v, v + 10) if i % 2 else (v - 10, v) for i, v in enumerate(joints)]
    model = ModelCell(cell_of(SIX_AXIS, limits=limits))
    frame, _, _ = model.pose(joints)
    rows = csv_rows(open_kine("ik", model.write(tmp_path), text_of(frame), "--all", "--csv", "-q"))
    assert len(rows) == 1 and close(row_joints(model, rows[0]), joints)


def test_a_bent_elbow_of_type_4110_is_not_taken_for_a_stretched_one(open_kine, tmp_path):
    """The elbow at -90 degrees is axis 2 at 90: outside these limits, but no singular pose."""
    limits = [(-180, 180), (-170, -10), (-3600, 3600), (-180, 180)]
    model = ModelCell(cell_of(TYPE_4110, limits=limits))
    frame, _, _ = model.pose([30.0, -90.0, 360.0, -15.0])
    code, _ = model.inverse(frame, [-1, 0, -1, 0])
    assert code == 0x6093  # what the turn number of the nearest limit would have made of it
    run = open_kine("ik", model.write(tmp_path), text_of(frame), "--all", "--csv")
    (row,) = csv_rows(run)
    assert close(row_joints(model, row), [30.0, -90.0, 360.0, -15.0])
    assert run.err == ("kine: target 1: elbow-: 0x6090 KINE_ERR_CONFIG: outside the axis limits: "
                       "axis 2 at 90.0000 deg\n")


def test_an_axis_at_half_a_turn_is_listed_once_without_limits(open_kine):
    frame, _, _ = PUMA.pose([10.0, 20.0, 30.0, 180.0, 50.0, -180.0])
    rows = csv_rows(open_kine("ik", "puma.json", text_of(frame), "--all", "--csv"))
    assert len(rows) == 8 and all(abs(row[f"q{i}_deg"]) < 180.001 for row in rows for i in (1, 4, 6))


def test_shared_out_rows_come_in_their_order(open_kine, tmp_path):
    model = ModelCell(MODEL_CELLS["six-turns"])
    path = model.write(tmp_path)
    rng = random.Random(1)
    rows = "".join(text_of(model.pose(model.random_joints(rng))[0]) + "\n" for _ in range(120))
    rows += "".join(f"{x},0,0,0,0,0\n" for x in range(3000, 3500)) * 8  # more than one block of lines
    for options in ([], ["--all"]):
        one = open_kine("ik", path, "--csv", *options, stdin=rows)
        assert one.status == REFUSED and len(one.err) > 100000
        assert open_kine("ik", path, "--csv", "-j", "3", *options, stdin=rows) == one


# What makes no sense

@pytest.mark.parametrize("options, message", [
    (["--posture", "upside"], "\"upside\" is no posture of this arm; words are: front, back, near, far, plain, flipped, "
                              "one of each pair"),
    (["--posture", "front back"], "\"front back\" is no posture of this arm; words are: front, back, near, far, "
                                  "plain, flipped, one of each pair"),
    (["--near", "1,2,3"], "--near: \"1,2,3\": has 3 values; expected 6 axes"),
    (["--near", "1,2,3,4,5,x"], "--near: \"1,2,3,4,5,x\": column 6 (q6_deg): \"x\" is not a number"),
    (["--near", "@nowhere"], "--near: puma.json has no joints \"nowhere\""),
    (["--tool", "gun"], "puma.json has no tool \"gun\"; it has: none"),
])
def test_options_that_make_no_sense(open_kine, options, message):
    run = open_kine("ik", "puma.json", BENT_POSE, *options)
    assert (run.status, run.out, run.err) == (USAGE, "", message + "\n")


def test_the_postures_of_a_four_axis_arm_have_their_own_words(open_kine, tmp_path):
    path = ModelCell(MODEL_CELLS["type-4"]).write(tmp_path)
    run = open_kine("ik", path, "300,200,0,0,0,0", "--posture", "front")
    assert run.status == USAGE
    assert run.err == "\"front\" is no posture of this arm; words are: elbow+, elbow-, one of each pair\n"


@pytest.mark.parametrize("arguments, message", [
    (["1,2,3"], "\"1,2,3\": has 3 values; expected 6 values of a frame, or these and 4 configuration integers"),
    (["1,2,3,4,5,six"], "\"1,2,3,4,5,six\": column 6 (c_deg): \"six\" is not a number"),
    (["1,2,3,4,5,6,0.5,0,0,0"], "\"1,2,3,4,5,6,0.5,0,0,0\": column 7 (cfg1): \"0.5\" is not a whole number of 32 bits"),
    (["@ready"], "puma.json has no pose \"ready\""),
    (["-i", "x.csv", BENT_POSE], "give targets either as arguments or with --input, not both"),
])
def test_targets_that_make_no_sense(open_kine, arguments, message):
    run = open_kine("ik", "puma.json", *arguments)
    assert (run.status, run.out, run.err) == (USAGE, "", message + "\n")


@pytest.mark.parametrize("text, message", [
    ("x_mm,y_mm\n", ":1: column \"z_mm\" is missing"),
    ("300,200,300,0,0,90\n1,2,3,0,0\n", ":2: has 5 values; expected 6 values of a frame, or these and 4 configuration "
                                 "integers"),
    ("x_mm,y_mm,z_mm,a_deg,b_deg,c_deg\n\n# none\n1,2,nan,4,5,6\n", ":4: column 3 (z_mm): \"nan\" is not a number"),
    ("q1_deg\n1\n", ":1: unknown column \"q1_deg\"; known are target, result, x_mm, y_mm, z_mm, a_deg, b_deg, c_deg, "
                    "cfg1 to cfg4"),
    ("x_mm,y_mm,z_mm,a_deg,b_deg,c_deg,cfg1\n", ":1: cfg1 to cfg4 come together or not at all"),
])
def test_files_that_do_not_say_what_they_should(open_kine, tmp_path, text, message):
    file = tmp_path / "poses.csv"
    file.write_text(text)
    run = open_kine("ik", "puma.json", "-i", file)
    assert (run.status, run.err) == (BAD_FILE, f"{file}{message}\n")


def test_files_that_are_not_there(open_kine, tmp_path):
    run = open_kine("ik", "puma.json", "-i", tmp_path / "none.csv")
    assert (run.status, run.err) == (BAD_FILE, f"{tmp_path / 'none.csv'}: No such file or directory\n")
    run = open_kine("ik", "none.json", BENT_POSE)
    assert (run.status, run.err) == (BAD_FILE, "none.json: No such file or directory\n")


def test_the_help_has_every_option_and_examples(open_kine):
    run = open_kine("ik", "--help")
    assert run.status == DONE and "Examples:" in run.out
    for option in ("--near", "--posture", "--all", "--tool", "--wobj", "--load", "--input", "--jobs", "--quiet",
                   "--json", "--csv"):
        assert option in run.out, option

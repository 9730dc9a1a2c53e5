"""kine calib positioner and base: marks turned or carried by a known axis must give the axis back."""

import itertools
import json
import math

import pytest
from calib_points import (SIX_AXIS_ARM, angle_between, angles_of, close, frame_position, frame_rotation, from_mean,
                          joints_csv, naive_arm, naive_pose, np, pair_distances, poses_csv, rotation, rz, write_cell)
from conftest import DONE, REFUSED, USAGE

LEVEL = (0, 0, 180)
# Where the axes of the table are: the first in the world, the second in the first.
UPRIGHT = (np.array([900.0, 100.0, 400.0]), rotation((20, 15, -10)))
LYING = (np.array([900.0, 100.0, 400.0]), rotation((20, 90, 0)))
SECOND = (np.array([30.0, 40.0, 50.0]), rotation((0, -70, 35)))


def as_frame(placed):
    position, r = placed
    angles = angles_of(r)
    if abs(r[2][0]) > 0.999999:  # B = 90: C is 0
        angles = (math.degrees(math.atan2(-r[0][1], r[1][1])), math.copysign(90, -r[2][0]), 0.0)
    return dict(zip(("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"), [float(v) for v in (*position, *angles)]))


def table_cell(directory, first=UPRIGHT, second=SECOND, kinds=("rotary", "rotary")):
    return write_cell(directory, external_axes=[{"kind": kind} for kind in kinds], mechanical_units=[
        {"kind": "linear", "axes": [{"external_axis": 0}]},
        {"name": "table", "kind": "two-rotary", "axes": [{"external_axis": 1, "frame": as_frame(first)},
                                                         {"external_axis": 0, "frame": as_frame(second)}]},
        {"name": "disc", "kind": "rotary", "axes": [{"external_axis": 1, "frame": as_frame(first)}]}])


def product(a, b):
    return a[0] + a[1] @ b[0], a[1] @ b[1]


def turned(placed, value):
    return placed[0], placed[1] @ rz(value)


def mark_points(axis, mark, values, column, errors=None):
    """World positions of a mark that the axis turns; external axis `column` holds its value."""
    points = []
    for i, value in enumerate(values):
        place = turned(axis, value)
        external = [0.0, 0.0]
        external[column] = value
        error = np.zeros(3) if errors is None else np.array(errors[i])
        points.append((place[0] + place[1] @ np.array(mark) + error, LEVEL, external))
    return points


def csv_of(points):
    return poses_csv(points, external=("e1", "e2"))


def report(run):
    assert run.status == DONE, run.err
    return json.loads(run.out)


def refusal(run, code):
    assert run.status == REFUSED
    found = json.loads(run.out)
    assert found["result"] == code
    return found


MARK = (150.0, 0.0, 60.0)


def at_mark(axis):
    """The frame that is found: in the plane of the mark's circle."""
    return axis[0] + axis[1] @ np.array([0, 0, MARK[2]]), axis[1]


@pytest.mark.parametrize("axis", [UPRIGHT, LYING, (UPRIGHT[0], rotation((-70, 88, 0))),
                                  (UPRIGHT[0], rotation((0, 180, 0)))],
                         ids=["upright", "lying", "almost lying", "upside down"])
@pytest.mark.parametrize("values", [(-40, 10, 75), (0, 30, 60), (20, 110, 200), (60, 120, 180)])
def test_three_positions_of_a_mark_give_the_first_axis_however_it_lies(kine, tmp_path, axis, values):
    cell = table_cell(tmp_path, axis)
    found = report(kine("calib", "positioner", cell, "--unit", "table", "--json",
                        stdin=csv_of(mark_points(axis, MARK, values, 1))))
    assert found["method"] == "first" and found["call"] == "Kine_CalcPositionerJ1Prm_3P"
    expected = at_mark(axis)
    assert close(frame_position(found["frame"]), expected[0], 1e-6)
    assert close(frame_rotation(found["frame"]), expected[1], 1e-7)
    assert close([p["residual_mm"] for p in found["points"]], [0, 0, 0], 1e-6)
    assert found["leave_one_out"] == {"needs_more_points": 1} and found["advice"] == []
    units = found["cell_file"]["mechanical_units"]
    assert units[1]["name"] == "table" and units[1]["axes"][0] == {"external_axis": 1, "frame": found["frame"]}
    assert close(frame_position(units[1]["axes"][1]["frame"]), SECOND[0])
    assert [unit["kind"] for unit in units] == ["linear", "two-rotary", "rotary"]


ERRORS = [(0.3, -0.1, 0.2), (-0.2, 0.4, 0.1), (0.1, 0.1, -0.5), (-0.3, -0.2, 0.2), (0.2, 0.3, 0.3)]


def axis_frame(points, column):
    """Centre by the sides of the triangle, Z along the normal, X where the mark is at 0."""
    a, b, c = [np.array(p) for p, *_ in points]
    squares = [float((c - b) @ (c - b)), float((c - a) @ (c - a)), float((b - a) @ (b - a))]
    weights = [squares[i] * (sum(squares) - 2 * squares[i]) for i in range(3)]
    centre = sum(w * p for w, p in zip(weights, (a, b, c))) / sum(weights)
    z = np.cross(b - a, c - a)
    z /= np.linalg.norm(z)
    x = (a - centre) / np.linalg.norm(a - centre)
    return centre, np.column_stack([x, np.cross(z, x), z]) @ rz(-points[0][2][column])


def test_noisy_positions_have_the_residuals_of_the_turned_back_mark(kine, tmp_path):
    cell = table_cell(tmp_path)
    # The last two were taught between the others.
    points = mark_points(UPRIGHT, MARK, (-60, 10, 90, 50, -20), 1, ERRORS)
    found = report(kine("calib", "positioner", cell, "--unit", "1", "--json", stdin=csv_of(points)))
    result = axis_frame(points[:3], 1)
    assert close(frame_position(found["frame"]), result[0], 1e-6) and close(frame_rotation(found["frame"]), result[1])
    places = [rz(-e[1]) @ result[1].T @ (p - result[0]) for p, _, e in points]
    assert close([p["residual_mm"] for p in found["points"]], from_mean(places), 1e-6)
    rising = sorted(range(5), key=lambda i: points[i][2][1])
    furthest, turns = [0.0] * 5, [0.0] * 5
    for group in itertools.combinations(rising, 3):
        centre, r = axis_frame([points[i] for i in group], 1)
        for i in set(range(5)) - set(group):
            furthest[i] = max(furthest[i], float(np.linalg.norm(centre - result[0])))
            turns[i] = max(turns[i], angle_between(r, result[1]))
    assert close([p["without_it_mm"] for p in found["points"]], furthest, 1e-5)
    assert close([p["without_it_deg"] for p in found["points"]], turns, 1e-5)
    assert found["leave_one_out"]["solutions"] == 10


def test_falling_values_are_advised_against(kine, tmp_path):
    cell = table_cell(tmp_path)
    found = report(kine("calib", "positioner", cell, "--unit", "1", "--json",
                        stdin=csv_of(mark_points(UPRIGHT, MARK, (60, 20, -30), 1))))
    assert any("rising order" in text for text in found["advice"])
    # Z points the other way, so that the mark is turned twice instead of back.
    assert close(frame_rotation(found["frame"])[:, 2], -UPRIGHT[1][:, 2])
    assert max(p["residual_mm"] for p in found["points"]) > 10.0


@pytest.mark.parametrize("first", [UPRIGHT, LYING], ids=["upright", "lying"])
@pytest.mark.parametrize("rest", [0, 35, -110])
@pytest.mark.parametrize("values", [(0, 40, 100), (-50, 20, 70)])
def test_three_positions_of_a_mark_give_the_second_axis_in_the_first(kine, tmp_path, first, rest, values):
    """The first axis rests at any value, and the second starts at any: the frame of the cell file is the reference."""
    cell = table_cell(tmp_path, first)
    world = product(turned(first, rest), SECOND)
    points = mark_points(world, MARK, values, 0)
    for _, _, external in points:
        external[1] = rest
    found = report(kine("calib", "positioner", cell, "--unit", "table", "--axis", "2", "--json", stdin=csv_of(points)))
    assert found["method"] == "further" and found["call"] == "Kine_CalcPositionerJnPrm_3P"
    expected = at_mark(SECOND)
    assert close(frame_position(found["frame"]), expected[0], 1e-6)
    assert close(frame_rotation(found["frame"]), expected[1], 1e-7)
    assert close([p["residual_mm"] for p in found["points"]], [0, 0, 0], 1e-6)
    assert found["cell_file"]["mechanical_units"][1]["axes"][1] == {"external_axis": 0, "frame": found["frame"]}


def test_a_given_reference_takes_the_place_of_the_cell_file(kine, tmp_path):
    cell = table_cell(tmp_path)
    reference = (np.array([-200.0, 30.0, 500.0]), rotation((-30, 20, 60)))
    points = mark_points(product(reference, SECOND), MARK, (0, 50, 90), 0)
    found = report(kine("calib", "positioner", cell, "--unit", "table", "--axis", "2", "--json", "--reference",
                        "-200,30,500,-30,20,60", stdin=csv_of(points)))
    assert close(frame_position(found["frame"]), at_mark(SECOND)[0], 1e-6)
    assert close(frame_rotation(found["frame"]), SECOND[1], 1e-7)


def test_a_first_axis_that_moves_while_the_second_is_taught_is_told(kine, tmp_path):
    cell = table_cell(tmp_path)
    points = mark_points(product(UPRIGHT, SECOND), MARK, (0, 40, 100), 0)
    points[2][2][1] = 5.0
    found = report(kine("calib", "positioner", cell, "--unit", "table", "--axis", "2", "--json", stdin=csv_of(points)))
    assert any("axis 1 of the unit moved" in text for text in found["advice"])


def test_refusals_of_a_positioner_name_points_or_the_unit(kine, tmp_path):
    cell = table_cell(tmp_path)
    good = mark_points(UPRIGHT, MARK, (-40, 10, 75), 1)
    ask = ("calib", "positioner", cell, "--json")
    found = refusal(kine(*ask, "--unit", "table", stdin=csv_of([good[0], good[1], good[0]])), "0x6065")
    assert found["points"] == ["p1", "p3"]
    line = [(np.array([k, 2.0 * k, 0]), LEVEL, (0, k)) for k in (0, 10, 30)]
    found = refusal(kine(*ask, "--unit", "table", stdin=csv_of(line)), "0x6066")
    assert found["points"] == ["p1", "p2", "p3"]
    refusal(kine(*ask, "--unit", "5", stdin=csv_of(good)), "0x6011")
    refusal(kine(*ask, "--unit", "disc", "--axis", "2", stdin=csv_of(good)), "0x6011")
    refusal(kine(*ask, "--unit", "table", "--axis", "0", stdin=csv_of(good)), "0x6061")
    bad = [(p, (0, 0, 181), e) for p, _, e in good]
    found = refusal(kine(*ask, "--unit", "table", stdin=csv_of(bad)), "0x6010")
    assert found["points"] == ["p1", "p2", "p3"]
    linear = table_cell(tmp_path, kinds=("linear", "rotary"))
    found = refusal(kine("calib", "positioner", linear, "--unit", "table", "--axis", "2", "--json",
                         stdin=csv_of(good)), "0x6010")
    assert found["points"] == [] and "linear axis" in found["cause"]


# The base on a track

TRAVEL = (0.0, 400.0, -250.0, 150.0)


def track_cell(directory, carried=None, kind="linear", **fields):
    unit = {"name": "track", "kind": "linear", "axes": [{"external_axis": 1, "frame": {"z_mm": 500, "a_deg": 90}}]}
    if carried is not None:
        unit["carried_frame"] = carried
    return write_cell(directory, external_axes=[{"kind": "rotary"}, {"kind": kind}], mechanical_units=[unit],
                      robot_on_unit=0, **fields)


def track_points(turn, mark=(900.0, 300.0, 250.0), travel=TRAVEL, errors=None):
    """The mark seen from a base that is turned against the track: the track frame has it at `mark` minus the travel."""
    points = []
    for i, value in enumerate(travel):
        error = np.zeros(3) if errors is None else np.array(errors[i])
        points.append((rz(turn).T @ (np.array(mark) - np.array([value, 0, 0])) + error, LEVEL, (0, value)))
    return points


@pytest.mark.parametrize("turn", [0, 25, -90, 160])
def test_three_places_of_a_mark_give_the_base_on_its_track(kine, tmp_path, turn):
    cell = track_cell(tmp_path)
    found = report(kine("calib", "base", cell, "--json", stdin=csv_of(track_points(turn)[:3])))
    assert found["method"] == "3p" and found["call"] == "Kine_CalcRobotBasePrm_3P"
    assert close([found["frame"]["a_deg"]], [turn])
    assert [found["frame"][k] for k in ("x_mm", "y_mm", "z_mm", "b_deg", "c_deg")] == [0] * 5
    assert close(list(found["report_mm"].values()), [0] * 3, 1e-9)
    assert found["leave_one_out"] == {"needs_more_points": 1}
    assert found["cell_file"]["mechanical_units"][0]["carried_frame"] == found["frame"]


def fitted(points):
    """Rotation and scale by lstsq: u + iv carries the displacement in the base onto the travel along X."""
    rows, right = [], []
    for p, _, e in points[1:]:
        ax, ay = (np.array(points[0][0]) - np.array(p))[:2]
        rows += [[ax, -ay], [ay, ax]]
        right += [e[1] - points[0][2][1], 0.0]
    return np.linalg.lstsq(np.array(rows), np.array(right), rcond=None)[0]


def test_noisy_places_on_a_track_have_the_residuals_of_numpy(kine, tmp_path):
    cell = track_cell(tmp_path)
    points = track_points(30, errors=ERRORS)
    found = report(kine("calib", "base", cell, "--unit", "track", "--json", stdin=csv_of(points)))
    u, v = fitted(points[:3])
    turn = math.degrees(math.atan2(v, u))
    assert close([found["frame"]["a_deg"]], [turn])
    scaled = np.array([[u, -v, 0], [v, u, 0], [0, 0, 1]])
    pairs = pair_distances([scaled @ p + np.array([e[1], 0, 0]) for p, _, e in points[:3]])
    assert close([found["report_mm"][k] for k in ("largest", "mean", "smallest")],
                 [max(pairs), sum(pairs) / 3, min(pairs)])
    places = [rz(turn) @ p + np.array([e[1], 0, 0]) for p, _, e in points]
    assert close([p["residual_mm"] for p in found["points"]], from_mean(places))
    moves = []
    for group in itertools.combinations(range(4), 3):
        u, v = fitted([points[i] for i in group])
        moves.append(abs(math.degrees(math.atan2(v, u)) - turn))
    assert abs(found["leave_one_out"]["largest_deg"] - max(moves)) < 1e-7
    assert found["leave_one_out"]["largest_mm"] is None and found["leave_one_out"]["solutions"] == 4


def test_an_error_of_scale_on_the_track_shows_in_the_residuals_only(kine, tmp_path):
    """The track reports 1 % more than it moves: the library's fit stretches the points and its report stays 0."""
    cell = track_cell(tmp_path)
    points = [(p, a, (0, 1.01 * e[1])) for p, a, e in track_points(30)[:3]]
    found = report(kine("calib", "base", cell, "--json", stdin=csv_of(points)))
    assert close(list(found["report_mm"].values()), [0] * 3, 1e-9)
    errors = [0.01 * v for v in TRAVEL[:3]]
    mean = sum(errors) / 3
    assert close([p["residual_mm"] for p in found["points"]], [abs(e - mean) for e in errors])


def test_the_base_found_stands_in_the_cell_file_afterwards(kine, tmp_path):
    """The mark is at one place of the world in all three points once the lines for the cell file are pasted."""
    rows = [(10, 20, 30, 40, 50, 60, 0.0, 0.0), (30, -10, 50, -40, 70, 10, 0.0, 300.0)]
    cell = track_cell(tmp_path, carried={"a_deg": 25})
    run = kine("fk", cell, "--in", "world", "--json", stdin=joints_csv(rows, external=("e1", "e2")))
    arm = naive_arm(SIX_AXIS_ARM)
    for line, q in zip(run.out.splitlines(), rows):
        base, *_ = naive_pose(arm, "Kine_JointToBasePos", q[:6])
        world = rz(90) @ (rz(25) @ base + np.array([q[7], 0, 0])) + np.array([0, 0, 500])
        assert close(frame_position(json.loads(line)), world, 1e-8)


def test_joints_become_the_tip_in_the_base(kine, tmp_path):
    joints = [(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120)]
    cell = track_cell(tmp_path, tools={"pin": {"frame": {"x_mm": 5, "z_mm": 140}}})
    rows = [(*q, 0.0, v) for q, v in zip(joints, TRAVEL)]
    found = report(kine("calib", "base", cell, "--tool", "pin", "--json",
                        stdin=joints_csv(rows, external=("e1", "e2"))))
    arm = naive_arm(SIX_AXIS_ARM)
    points = [(naive_pose(arm, "Kine_JointToBasePos", q, (5, 0, 140, 0, 0, 0))[0], LEVEL, (0, v))
              for q, v in zip(joints, TRAVEL)]
    u, v = fitted(points)
    assert found["points_are"] == "the tip of the tool in the base"
    assert close([found["frame"]["a_deg"]], [math.degrees(math.atan2(v, u))])


def test_refusals_of_a_track_name_points_or_the_unit(kine, tmp_path):
    cell = track_cell(tmp_path)
    points = track_points(30)[:3]
    ask = ("calib", "base", cell, "--json")
    found = refusal(kine(*ask, stdin=csv_of([points[0], points[1], points[1]])), "0x6065")
    assert found["points"] == ["p2", "p3"]
    still = [(p, a, (0, 0.01 * i)) for i, (p, a, _) in enumerate(points)]
    found = refusal(kine(*ask, stdin=csv_of(still)), "0x6061")
    assert found["reasons"] == ["the track moved by 0.0200 mm at most"]
    heights = [((100, 0, 10.0 * i), LEVEL, (0, 100.0 * i)) for i in range(3)]
    found = refusal(kine(*ask, stdin=csv_of(heights)), "0x6061")
    assert found["reasons"] == ["the points differ in height only: the mark stays where it is beside the robot"]
    refusal(kine(*ask, "--unit", "2", stdin=csv_of(points)), "0x6011")
    rotary = track_cell(tmp_path, kind="rotary")
    refusal(kine("calib", "base", rotary, "--json", stdin=csv_of(points)), "0x6010")


@pytest.mark.parametrize("options,text", [
    (["positioner"], "--unit is required"),
    (["positioner", "--unit", "desk"], 'no mechanical unit "desk"; give its name or its index'),
    (["positioner", "--unit", "table", "--method", "3p"], "--method 3p is none of this calibration"),
    (["positioner", "--unit", "table", "--reference", "1,2,3"], "should be x,y,z,a,b,c in mm and degrees"),
    (["positioner", "--unit", "table", "--reference", "1,2,3,4,5,6,7"], "should be x,y,z,a,b,c in mm and degrees"),
    (["positioner", "--unit", "table", "--reference", "1,2,3,4,5,x"], "should be x,y,z,a,b,c in mm and degrees"),
    (["positioner", "--unit", "table", "--reference", "1,2,3,4,5,190"], "an angle is beyond 180 degrees"),
    (["base"], "does not say on which unit the robot stands; give it with --unit")])
def test_options_that_do_not_fit_are_wrong_usage(kine, tmp_path, options, text):
    cell = table_cell(tmp_path)
    run = kine("calib", options[0], cell, *options[1:], stdin=csv_of(mark_points(UPRIGHT, MARK, (-40, 10, 75), 1)))
    assert run.status == USAGE and run.out == "" and text in run.err, run.err

"""kine calib wobj: points on a known frame must give the frame back; further points with errors must have the
residuals of numpy."""

import itertools
import json
import math

import pytest
from calib_points import (SIX_AXIS_ARM, SOFT_ARM, angle_between, close, frame_position, frame_rotation, joints_csv,
                          naive_arm, naive_pose, np, off_circle, off_line, off_plane, plane_frame, poses_csv, rotation,
                          rz, seen_from, write_cell)
from conftest import DONE, REFUSED, USAGE

ORIGIN = np.array([800.0, -150.0, 320.0])
TURNED = rotation((35, 12, -20))
LEVEL = (0, 0, 180)
USER = {"x_mm": 100, "y_mm": 50, "z_mm": -30, "a_deg": 60, "b_deg": -25, "c_deg": 40}
USER_FRAME = (np.array([100.0, 50.0, -30.0]), rotation((60, -25, 40)))


@pytest.fixture
def cell(tmp_path):
    return write_cell(tmp_path, work_objects={
        "table": {"user_frame": USER}, "part": {"held_by_robot": True, "user_frame": USER},
        "plain": {}, "empty part": {"held_by_robot": True}})


def report(run):
    assert run.status == DONE, run.err
    return json.loads(run.out)


def refusal(run, code):
    assert run.status == REFUSED
    found = json.loads(run.out)
    assert found["result"] == code
    return found


def corner(*further, origin=ORIGIN, turned=TURNED):
    """Origin, x and xy of the frame, and further points given in it."""
    inner = [(0, 0, 0), (200, 0, 0), (60, 150, 0), *further]
    return [(origin + turned @ np.array(p, dtype=float), LEVEL) for p in inner]


def tilt(z):
    return math.degrees(math.acos(z[2]))


@pytest.mark.parametrize("where,call,options", [
    ("fixed", "Kine_CalcExtWobj_UserPrm_3P", ["--method", "3p"]),
    ("fixed", "Kine_CalcExtWobj_UserPrm_3P", ["--fixed", "--user", "--method", "3p"]),
    ("held", "Kine_CalcGripWobj_UserPrm_3P", ["--held"])])
def test_three_points_give_the_user_frame(kine, cell, where, call, options):
    found = report(kine("calib", "wobj", cell, *options, "--json", stdin=poses_csv(corner())))
    assert found["call"] == call and found["method"] == "3p" and where in found["finds"]
    assert close(frame_position(found["frame"]), ORIGIN)
    assert close(frame_rotation(found["frame"]), TURNED)
    assert close([found["tilt_deg"]], [tilt(TURNED[:, 2])])
    assert found["residuals"]["needs_more_points"] == 1
    assert found["leave_one_out"] == {"needs_more_points": 1}
    assert found["conditioning"] is None and found["orientations"] is None
    pasted = found["cell_file"]["work_objects"]["calibrated"]
    assert pasted == {"held_by_robot": where == "held", "user_frame": found["frame"]}


@pytest.mark.parametrize("options,call,name", [
    (["--object", "--wobj", "table"], "Kine_CalcExtWobj_ObjPrm_3P", "table"),
    (["--object", "--wobj", "part", "--held"], "Kine_CalcGripWobj_ObjPrm_3P", "part")])
def test_three_points_give_the_object_frame_in_the_user_frame(kine, cell, options, call, name):
    found = report(kine("calib", "wobj", cell, *options, "--json", stdin=poses_csv(corner())))
    inner = USER_FRAME[1].T @ TURNED
    assert found["call"] == call
    assert close(frame_position(found["frame"]), seen_from(USER_FRAME, ORIGIN))
    assert close(frame_rotation(found["frame"]), inner)
    # Fixed: against the frame of the points; held: against the user frame.
    assert close([found["tilt_deg"]], [tilt((inner if "--held" in options else TURNED)[:, 2])])
    pasted = found["cell_file"]["work_objects"][name]
    assert pasted["object_frame"] == found["frame"] and pasted["user_frame"] == {k: float(v) for k, v in USER.items()}


@pytest.mark.parametrize("options", [["--object", "--wobj", "plain"], ["--object", "--wobj", "empty part", "--held"],
                                     ["--object"]])
def test_without_a_user_frame_the_object_frame_is_that_of_the_points(kine, cell, options):
    found = report(kine("calib", "wobj", cell, *options, "--json", stdin=poses_csv(corner())))
    assert close(frame_position(found["frame"]), ORIGIN) and close(frame_rotation(found["frame"]), TURNED)


def test_further_points_of_the_plane_have_the_residuals_of_numpy(kine, cell):
    points = corner((180, 160, 0.4), (20, -90, -0.7), (150, 40, 0.2))
    found = report(kine("calib", "wobj", cell, "--method", "3p", "--json", stdin=poses_csv(points)))
    expected = off_plane([p for p, _ in points])
    assert close([p["residual_mm"] for p in found["points"]], expected)
    assert found["residuals"]["worst"] == f"p{expected.index(max(expected)) + 1}"
    # The third point can be replaced; one that lies on the side of -Y is turned over by half about X.
    result = frame_rotation(found["frame"])
    angles = {}
    for i, inner in ((2, (60, 150, 0)), (3, (180, 160, 0.4)), (4, (20, 90, 0.7)), (5, (150, 40, 0.2))):
        other = plane_frame(ORIGIN, points[1][0], ORIGIN + TURNED @ np.array(inner, dtype=float))
        angles[i] = angle_between(result, other)
    expected = [None, None] + [max(a for j, a in angles.items() if j != i) for i in range(2, 6)]
    for point, wanted in zip(found["points"], expected):
        value = point["without_it_deg"]
        assert (value is None) == (wanted is None) and (wanted is None or abs(value - wanted) < 1e-5)
    assert close([found["leave_one_out"]["largest_mm"]], [0.0])
    assert found["leave_one_out"]["solutions"] == 4


def test_two_points_give_a_user_frame_with_a_level_y_axis(kine, cell):
    x = TURNED[:, 0]
    y = np.cross([0, 0, 1], x) / np.linalg.norm(np.cross([0, 0, 1], x))
    expected = np.column_stack([x, y, np.cross(x, y)])
    found = report(kine("calib", "wobj", cell, "--json", stdin=poses_csv(corner()[:2])))
    assert found["method"] == "2p" and found["call"] == "Kine_CalcExtWobj_UserPrm_2P"
    assert close(frame_position(found["frame"]), ORIGIN) and close(frame_rotation(found["frame"]), expected)
    assert close([found["tilt_deg"]], [tilt(expected[:, 2])])


def test_further_points_of_the_line_have_the_residuals_of_numpy(kine, cell):
    inner = [(0, 0, 0), (200, 0, 0), (90, 0.3, -0.2), (-120, -0.4, 0.5)]
    points = [(ORIGIN + TURNED @ np.array(p), LEVEL) for p in inner]
    found = report(kine("calib", "wobj", cell, "--method", "2p", "--json", stdin=poses_csv(points)))
    assert close([p["residual_mm"] for p in found["points"]], off_line([p for p, _ in points]))
    # The last point lies behind the origin: turned round, it stands in for x.
    turns = []
    for place in (points[1][0], points[2][0], 2 * ORIGIN - points[3][0]):
        x = (place - ORIGIN) / np.linalg.norm(place - ORIGIN)
        y = np.cross([0, 0, 1], x) / np.linalg.norm(np.cross([0, 0, 1], x))
        turns.append(angle_between(frame_rotation(found["frame"]), np.column_stack([x, y, np.cross(x, y)])))
    assert abs(found["leave_one_out"]["largest_deg"] - max(turns)) < 1e-5


def rim(angles, errors=None, radius=140.0):
    points = []
    for i, angle in enumerate(angles):
        error = np.zeros(3) if errors is None else np.array(errors[i])
        points.append((ORIGIN + TURNED @ (rz(angle) @ np.array([radius, 0, 0]) + error), LEVEL))
    return points


def test_three_points_of_a_rim_give_its_centre(kine, cell):
    found = report(kine("calib", "wobj", cell, "--method", "circle", "--json", stdin=poses_csv(rim([20, 130, 250]))))
    assert found["call"] == "Kine_CalcExtWobj_UserPrm_Cirle3P"
    assert close(frame_position(found["frame"]), ORIGIN)
    assert close(frame_rotation(found["frame"]), TURNED @ rz(20))
    assert close([found["radius_mm"]], [140.0])


def test_further_points_of_a_rim_have_the_residuals_of_numpy(kine, cell):
    points = rim([0, 70, 150, 230, 40], [(0.2, 0, 0.1), (-0.1, 0.3, 0), (0, 0, -0.4), (0.5, 0, 0.2), (0, 0.1, 0.3)])
    found = report(kine("calib", "wobj", cell, "--method", "circle", "--json", stdin=poses_csv(points)))
    places = [p for p, _ in points]
    radius, off = off_circle(places)
    assert close([found["radius_mm"]], [radius])
    assert close([p["residual_mm"] for p in found["points"]], off)

    def circle(group):
        """Centre by the sides of the triangle, and normal."""
        a, b, c = group
        squares = [float((c - b) @ (c - b)), float((c - a) @ (c - a)), float((b - a) @ (b - a))]
        weights = [squares[i] * (sum(squares) - 2 * squares[i]) for i in range(3)]
        normal = np.cross(b - a, c - a)
        return sum(w * p for w, p in zip(weights, group)) / sum(weights), normal / np.linalg.norm(normal)
    centre, normal = circle(places[:3])
    assert close(frame_position(found["frame"]), centre, 1e-6)
    furthest, turns = [0.0] * 5, [0.0] * 5
    for group in itertools.combinations(range(5), 3):
        other, axis = circle([places[i] for i in group])
        for i in set(range(5)) - set(group):
            furthest[i] = max(furthest[i], float(np.linalg.norm(other - centre)))
            turns[i] = max(turns[i], math.degrees(math.acos(min(1.0, abs(float(axis @ normal))))))
    assert close([p["without_it_mm"] for p in found["points"]], furthest, 1e-6)
    assert close([p["without_it_deg"] for p in found["points"]], turns, 1e-5)


# On a mechanical unit: a tilting table whose second axis carries the part.

TABLE = {"external_axes": [{"kind": "rotary"}, {"kind": "rotary"}],
         "mechanical_units": [
             {"kind": "linear", "axes": []},
             {"name": "table", "kind": "two-rotary", "axes": [
                 {"external_axis": 0, "frame": {"x_mm": 900, "y_mm": 100, "z_mm": 400, "a_deg": 20, "b_deg": 90}},
                 {"external_axis": 1, "frame": {"x_mm": 30, "y_mm": 40, "z_mm": 50, "b_deg": -90}}]}]}


def table_frame(values):
    """World from the second axis of the table."""
    first = (np.array([900.0, 100, 400]), rotation((20, 90, 0)) @ rz(values[0]))
    second = (np.array([30.0, 40, 50]), rotation((0, -90, 0)) @ rz(values[1]))
    return first[0] + first[1] @ second[0], first[1] @ second[1]


@pytest.mark.parametrize("unit", ["table", "1"])
def test_points_taught_on_a_unit_that_moves_give_the_object_frame_on_it(kine, tmp_path, unit):
    cell = write_cell(tmp_path, **TABLE)
    inner = [(50, 20, 30), (150, 20, 30), (80, 120, 30), (140, 100, 30.6), (60, -40, 29.7)]
    turned = rotation((25, 10, -15))
    stands = [(0, 0), (20, -30), (-35, 60), (10, 90), (45, -120)]
    points = []
    for place, values in zip(inner, stands):
        position, r = table_frame(values)
        points.append((position + r @ turned @ np.array(place), LEVEL, values))
    found = report(kine("calib", "wobj", cell, "--unit", unit, "--json",
                        stdin=poses_csv(points, external=("e1", "e2"))))
    assert found["call"] == "Kine_CalcUnFixWobj_ObjPrm_3P"
    assert close(frame_position(found["frame"]), turned @ np.array(inner[0]), 1e-6)
    assert close(frame_rotation(found["frame"]), turned, 1e-8)
    assert close([found["tilt_deg"]], [tilt(turned[:, 2])])
    assert close([p["residual_mm"] for p in found["points"]], off_plane(np.array(inner, dtype=float)), 1e-6)
    assert found["leave_one_out"]["solutions"] == 3
    assert found["cell_file"]["work_objects"]["calibrated"] == {
        "held_by_robot": False, "mechanical_unit": 1, "object_frame": found["frame"]}


def test_a_unit_that_cannot_be_used_is_told(kine, tmp_path):
    cell = write_cell(tmp_path, **TABLE)
    for unit in ("0", "2", "-1"):
        found = refusal(kine("calib", "wobj", cell, "--unit", unit, "--json", stdin=poses_csv(corner())), "0x6065")
        assert found["points"] == [] and len(found["reasons"]) == 1 and "unit cannot be used" in found["reasons"][0]
    twice = corner()
    twice[1] = twice[0]
    found = refusal(kine("calib", "wobj", cell, "--unit", "table", "--json", stdin=poses_csv(twice)), "0x6065")
    assert found["points"] == ["p1", "p2"]


def test_joints_become_the_tip_in_the_world_or_that_of_a_stationary_tool_in_the_flange(kine, tmp_path):
    pin = (5, 0, 140, 0, 30, 0)
    stand = (900, -200, 400, 10, 20, 30)
    keys = ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg")
    cell = write_cell(tmp_path, tools={"pin": {"frame": dict(zip(keys, pin))},
                                       "stand": {"held_by_robot": False, "frame": dict(zip(keys, stand))}})
    joints = [(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120)]
    arm = naive_arm(SIX_AXIS_ARM)
    for options, call, tool, held in ((["--tool", "pin"], "Kine_JointToWorldPos", pin, 1),
                                      (["--tool", "stand", "--held"], "Kine_JointToFlangePos", stand, 0)):
        found = report(kine("calib", "wobj", cell, *options, "--method", "3p", "--json", stdin=joints_csv(joints)))
        places = [naive_pose(arm, call, q, tool, held=held)[0] for q in joints]
        assert close(frame_position(found["frame"]), places[0], 1e-8)
        assert close(frame_rotation(found["frame"]), plane_frame(*places), 1e-8)


def test_the_payload_of_a_held_work_object_stays_where_it_hangs(kine, tmp_path):
    """It is counted from the work object, whose frames are zero while these are found."""
    cell = write_cell(tmp_path, arm=SOFT_ARM,
                      tools={"stand": {"held_by_robot": False, "frame": {"x_mm": 900, "z_mm": 400}}},
                      work_objects={"part": {"held_by_robot": True, "user_frame": USER,
                                             "object_frame": {"x_mm": 20, "y_mm": -10, "z_mm": 5}}},
                      loads={"steel": {"mass_kg": 20, "cog_mm": [50, 60, 70]}},
                      use={"tool": "stand", "work_object": "part", "load": "steel"})
    joints = [(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120)]
    found = report(kine("calib", "wobj", cell, "--held", "--json", stdin=joints_csv(joints)))
    hangs = np.array([50, 60, 70]) + USER_FRAME[0] + USER_FRAME[1] @ np.array([20, -10, 5])
    arm = naive_arm(SOFT_ARM)
    places = [naive_pose(arm, "Kine_JointToFlangePos", q, (900, 0, 400, 0, 0, 0), load=(20, *hangs, *[0] * 6),
                         held=0)[0] for q in joints]
    assert close(frame_position(found["frame"]), places[0], 1e-8)
    assert close(frame_rotation(found["frame"]), plane_frame(*places), 1e-8)
    assert found["points_are"] == "the tip of the stationary tool in the flange"
    pasted = found["cell_file"]["work_objects"]["part"]
    assert pasted["user_frame"] == found["frame"] and pasted["object_frame"]["x_mm"] == 20.0


# Refusals

def test_points_that_are_too_close_are_named(kine, cell):
    points = corner()
    points[2] = (points[1][0] + np.array([0, 0, 0.004]), LEVEL)
    found = refusal(kine("calib", "wobj", cell, "--method", "3p", "--json", stdin=poses_csv(points)), "0x6065")
    assert found["points"] == ["p2", "p3"] and found["reasons"] == ["points p2 and p3 are 0.004000 mm apart"]


def test_points_on_a_line_are_named(kine, cell):
    points = [(ORIGIN + k * TURNED[:, 0], LEVEL) for k in (0, 100, 300)]
    for method in ("3p", "circle"):
        found = refusal(kine("calib", "wobj", cell, "--method", method, "--json", stdin=poses_csv(points)), "0x6066")
        assert found["reasons"] == ["points p1, p2 and p3 lie on one line"]


def test_a_circle_that_is_too_small_is_named(kine, cell):
    points = [((0.02 * math.cos(a), 0.02 * math.sin(a), 0), LEVEL) for a in (0, 2, 4)]
    found = refusal(kine("calib", "wobj", cell, "--method", "circle", "--json", stdin=poses_csv(points)), "0x6063")
    assert found["points"] == ["p1", "p2", "p3"]


def test_an_x_point_above_the_origin_is_told(kine, cell):
    points = [(ORIGIN, LEVEL), (ORIGIN + np.array([0, 0, 50]), LEVEL)]
    found = refusal(kine("calib", "wobj", cell, "--json", stdin=poses_csv(points)), "0x6065")
    assert found["reasons"] == ["point p2 is straight above or below point p1, which gives X no heading"]
    points[1] = (ORIGIN + np.array([0.0005, 0, 0]), LEVEL)
    found = refusal(kine("calib", "wobj", cell, "--json", stdin=poses_csv(points)), "0x6065")
    assert found["reasons"] == ["points p1 and p2 are 0.000500 mm apart"]


# Wrong usage

@pytest.mark.parametrize("options,text", [
    (["--object", "--wobj", "part"], "held by the robot: add --held"),
    (["--object", "--wobj", "table", "--held"], "not held by the robot: leave out --held"),
    (["--user", "--unit", "1"], "use --object with --unit"),
    (["--user", "--object"], "excludes"),
    (["--held", "--fixed"], "excludes"),
    (["--unit", "1", "--held"], "excludes"),
    (["--unit", "desk"], 'no mechanical unit "desk"'),
    (["--wobj", "desk"], 'no work object "desk"'),
    (["--held", "--method", "circle"], "--method circle is none of this calibration; there are: 3p (3 points)"),
    ([], "say with --method what 3 points are; there are: 2p (2 points), 3p (3 points), circle (3 points)")])
def test_options_that_do_not_fit_are_wrong_usage(kine, cell, options, text):
    run = kine("calib", "wobj", cell, *options, stdin=poses_csv(corner()))
    assert run.status == USAGE and run.out == "" and text in run.err, run.err


def test_a_work_object_on_a_unit_has_no_fixed_object_frame(kine, tmp_path):
    cell = write_cell(tmp_path, **TABLE, work_objects={"part": {"mechanical_unit": 1}})
    run = kine("calib", "wobj", cell, "--object", "--wobj", "part", stdin=poses_csv(corner()))
    assert run.status == USAGE and "with --unit" in run.err

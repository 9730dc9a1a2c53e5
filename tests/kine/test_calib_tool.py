"""kine calib tool: touches of a known tip, made by rotation matrices, must give the tip back; with known errors the
figures of the analysis must be those of numpy."""

import itertools
import json
import math

import pytest
from calib_points import (FOUR_AXIS_ARM, SIX_AXIS_ARM, SOFT_ARM, angle_between, angles_of, close, frame_position,
                          frame_rotation, from_mean, joints_csv, least_squares_tip, naive_arm, naive_pose, np,
                          pair_distances, poses_csv, rotation, stacked, tip_places, touches,
                          write_cell)
from conftest import DONE, REFUSED

TIP = (10.0, 20.0, 150.0)
PLACE = (500.0, 100.0, 300.0)
ORIENTATIONS = [(0, 0, 180), (10, 20, 140), (-30, 50, 170), (80, -40, 150), (120, 15, -130), (45, 30, 100),
                (-75, -10, 160)]
HEADINGS = [(0, 0, 180), (70, 0, 180), (-50, 0, 180), (120, 0, 180), (-110, 0, 180)]
# Errors of the touches in mm, each of its own size.
ERRORS = [(0.3, -0.1, 0.2), (-0.2, 0.4, 0.1), (0.1, 0.1, -0.5), (-0.3, -0.2, 0.2), (0.2, 0.3, 0.3),
          (0.4, 0.0, -0.1), (-0.1, -0.4, 0.0)]


@pytest.fixture
def six(tmp_path):
    return write_cell(tmp_path)


@pytest.fixture
def four(tmp_path):
    return write_cell(tmp_path, "four.json", FOUR_AXIS_ARM)


def report(run):
    assert run.status == DONE, run.err
    assert run.err == ""
    return json.loads(run.out)


def residuals(found):
    return [p["residual_mm"] for p in found["points"]]


def without(found, key="without_it_mm"):
    return [p[key] for p in found["points"]]


def leave_one_out(points, result, size, solve):
    """By point: the largest distance from the result of any group of `size` points without it."""
    furthest = [0.0] * len(points)
    groups = list(itertools.combinations(range(len(points)), size))
    for group in groups:
        distance = float(np.linalg.norm(solve([points[i] for i in group]) - result))
        for i in set(range(len(points))) - set(group):
            furthest[i] = max(furthest[i], distance)
    return furthest, len(groups)


@pytest.mark.parametrize("method,count", [("3p", 3), ("5p", 5)])
def test_exact_touches_of_a_held_tool_give_its_tip(kine, six, method, count):
    found = report(kine("calib", "tool", six, "--json", stdin=poses_csv(touches(TIP, PLACE, ORIENTATIONS[:count]))))
    assert found["method"] == method
    assert found["call"] == f"Kine_CalcGripToolPrm_{method.upper()}"
    assert close(frame_position(found["frame"]), TIP, 1e-9)
    assert [found["frame"][k] for k in ("a_deg", "b_deg", "c_deg")] == [0, 0, 0]
    assert close(residuals(found), [0] * count, 1e-9) and found["residuals"]["worst"] is None
    assert close(list(found["report_mm"].values()), [0] * 3, 1e-9)


def test_noisy_five_touches_give_the_figures_of_numpy(kine, six):
    points = touches(TIP, PLACE, ORIENTATIONS[:5], ERRORS)
    found = report(kine("calib", "tool", six, "--json", stdin=poses_csv(points)))
    tip = least_squares_tip(points)
    assert close(frame_position(found["frame"]), tip)
    places = tip_places(tip, points)
    expected = from_mean(places)
    assert close(residuals(found), expected)
    assert found["residuals"]["worst"] == f"p{expected.index(max(expected)) + 1}"
    pairs = pair_distances(places)
    assert close([found["report_mm"][k] for k in ("largest", "mean", "smallest")],
                 [max(pairs), sum(pairs) / 10, min(pairs)])
    # Without a point four remain: their triples.
    furthest, _ = leave_one_out(points, tip, 3, least_squares_tip)
    assert close(without(found), furthest, 1e-5)
    assert close([found["leave_one_out"]["largest_mm"]], [max(furthest)], 1e-5)
    assert found["leave_one_out"]["solutions"] == math.comb(5, 3) and found["leave_one_out"]["refused"] == 0
    singular = np.linalg.svd(stacked(points)[0])[1]
    assert close([found["conditioning"]["condition"]], [singular[0] / singular[-1]])
    assert close([found["conditioning"]["amplification"]], [1.0 / singular[-1]])
    turns = [angle_between(rotation(a), rotation(b)) for a, b in itertools.combinations(ORIENTATIONS[:5], 2)]
    assert close([found["orientations"][k] for k in ("smallest_deg", "mean_deg", "largest_deg")],
                 [min(turns), sum(turns) / 10, max(turns)], 1e-6)


@pytest.mark.parametrize("method,size", [("3p", 3), ("5p", 5)])
def test_further_touches_serve_the_analysis_and_not_the_result(kine, six, method, size):
    points = touches(TIP, PLACE, ORIENTATIONS, ERRORS)
    found = report(kine("calib", "tool", six, "--json", "--method", method, stdin=poses_csv(points)))
    tip = least_squares_tip(points[:size])
    assert close(frame_position(found["frame"]), tip)
    assert [p["role"] for p in found["points"]] == ([f"touch {i + 1}" for i in range(size)]
                                                    + ["further"] * (7 - size))
    assert close(residuals(found), from_mean(tip_places(tip, points)))
    furthest, groups = leave_one_out(points, tip, size, least_squares_tip)
    assert close(without(found), furthest, 1e-5)
    assert found["leave_one_out"]["solutions"] == groups
    singular = np.linalg.svd(stacked(points[:size])[0])[1]
    assert close([found["conditioning"]["condition"]], [singular[0] / singular[-1]])


def test_three_touches_cannot_spare_one(kine, six):
    points = touches(TIP, PLACE, ORIENTATIONS[:3], ERRORS)
    found = report(kine("calib", "tool", six, "--json", stdin=poses_csv(points)))
    assert found["leave_one_out"] == {"needs_more_points": 1}
    assert without(found) == [None] * 3
    assert close(residuals(found), from_mean(tip_places(least_squares_tip(points), points)))


def zx_points(tip, tool, origin, start=(0, 0, 180), along=50.0):
    """Origin, z and x poses of a tool with this orientation on the flange: the flange keeps its own."""
    flange = rotation(start)
    world = flange @ tool
    places = [np.array(origin), np.array(origin) + along * world[:, 2],
              np.array(origin) + along * (world[:, 0] + 0.4 * world[:, 2])]
    return [(place - flange @ np.array(tip), start) for place in places]


def test_3pzx_gives_tip_and_orientation_of_a_held_tool(kine, six):
    tool = rotation((20, -35, 60))
    points = touches(TIP, PLACE, ORIENTATIONS[:3]) + zx_points(TIP, tool, (450, 0, 250), (30, 10, 170))
    found = report(kine("calib", "tool", six, "--json", stdin=poses_csv(points)))
    assert found["method"] == "3pzx" and found["call"] == "Kine_CalcGripToolPrm_3PZX"
    assert close(frame_position(found["frame"]), TIP)
    assert close(frame_rotation(found["frame"]), tool)
    assert [p["role"] for p in found["points"]][3:] == ["origin", "z", "x"]
    assert residuals(found)[3:] == [None] * 3


def test_3pzx_with_a_further_touch_leaves_each_touch_out(kine, six):
    tool = rotation((20, -35, 60))
    noisy = touches(TIP, PLACE, ORIENTATIONS[:4], ERRORS)
    points = noisy[:3] + zx_points(TIP, tool, (450, 0, 250)) + noisy[3:]
    found = report(kine("calib", "tool", six, "--json", "--method", "3pzx", stdin=poses_csv(points)))
    tip = least_squares_tip(noisy[:3])
    furthest, _ = leave_one_out(noisy, tip, 3, least_squares_tip)
    expected = furthest[:3] + [None] * 3 + furthest[3:]
    for value, wanted in zip(without(found), expected):
        assert (value is None) == (wanted is None) and (wanted is None or abs(value - wanted) < 1e-5)
    # The flange keeps its orientation from origin to x, so that the tip takes no part in the directions.
    assert close([v for v in without(found, "without_it_deg") if v is not None], [0] * 4, 1e-6)


def test_two_headings_give_the_tool_of_a_four_axis_arm(kine, four):
    points = touches((40, -25, 0), PLACE, HEADINGS[:2])
    found = report(kine("calib", "tool", four, "--json", stdin=poses_csv(points)))
    assert found["method"] == "2p" and found["call"] == "Kine_CalcGripToolPrm_Scara2P"
    assert close(frame_position(found["frame"]), (40, -25, 0))
    assert found["report_mm"] is None and found["leave_one_out"] == {"needs_more_points": 1}
    # One turn by 70 degrees: both singular values of R - 1 are 2 sin(35 deg).
    assert close([found["conditioning"]["condition"]], [1.0])
    assert close([found["conditioning"]["amplification"]], [1 / (2 * math.sin(math.radians(35)))])
    assert any("does not find the Z" in text for text in found["advice"])


def test_three_noisy_headings_of_a_four_axis_arm_give_the_figures_of_numpy(kine, four):
    points = touches((40, -25, 0), PLACE, HEADINGS[:3], ERRORS)
    found = report(kine("calib", "tool", four, "--json", stdin=poses_csv(points)))
    tip = least_squares_tip(points, planar=True)
    assert found["method"] == "3p" and close(frame_position(found["frame"]), tip)
    assert close(residuals(found), from_mean(tip_places(tip, points)))
    # Without a point two remain, which are enough for this arm.
    furthest, _ = leave_one_out(points, tip, 2, lambda pair: least_squares_tip(pair, planar=True))
    assert close(without(found), furthest, 1e-6)
    a, _ = stacked(points)
    singular = np.linalg.svd(a[[0, 1, 3, 4]][:, :2])[1]
    assert close([found["conditioning"]["condition"]], [singular[0] / singular[-1]])


def test_3pzx_of_a_four_axis_arm_takes_the_base_z(kine, four):
    start = (30, 0, 0)
    tip = (40, -25, 0)
    away = rotation(start) @ rotation((25, 0, 0)) @ np.array([80.0, 0, 0])
    first = np.array([300.0, 200, 0]) - rotation(start) @ np.array(tip)
    upright = [(a, b, 0) for a, b, _ in HEADINGS[:3]]
    points = touches(tip, PLACE, upright) + [(first, start), ((0, 0, 0), (0, 0, 0)), (first + away, start)]
    found = report(kine("calib", "tool", four, "--json", stdin=poses_csv(points)))
    assert found["method"] == "3pzx"
    assert close(frame_position(found["frame"]), tip)
    assert close(frame_rotation(found["frame"]), rotation((25, 0, 0)))


def test_one_touch_of_a_stationary_tool_is_its_place(kine, six):
    found = report(kine("calib", "tool", six, "--stationary", "--json", stdin=poses_csv([(PLACE, (10, 20, 30))])))
    assert found["method"] == "1p" and found["call"] == "Kine_CalcExtToolPrm_1P"
    assert close(frame_position(found["frame"]), PLACE, 0.0)
    assert found["residuals"]["needs_more_points"] == 1 and found["leave_one_out"] == {"needs_more_points": 1}
    assert found["cell_file"]["tools"]["calibrated"]["held_by_robot"] is False


def test_repeated_touches_of_a_stationary_tool_show_their_spread(kine, six):
    points = [(np.array(PLACE) + np.array(e), (0, 0, 180)) for e in ERRORS[:3]]
    found = report(kine("calib", "tool", six, "--stationary", "--method", "1p", "--json", stdin=poses_csv(points)))
    places = [p for p, _ in points]
    assert close(residuals(found), from_mean(places))
    moved = [float(np.linalg.norm(p - places[0])) for p in places]
    assert close(without(found), [max(moved[1:]), max(moved[0], moved[2]), max(moved[0], moved[1])])


def test_1pzx_gives_the_frame_of_a_stationary_tool(kine, six):
    tool = rotation((40, 25, -70))
    origin = np.array(PLACE)
    points = [(origin, (0, 0, 180)), (origin + 60 * tool[:, 2], (0, 0, 180)),
              (origin + 80 * tool[:, 0] - 10 * tool[:, 2], (0, 0, 180))]
    found = report(kine("calib", "tool", six, "--stationary", "--method", "1pzx", "--json", stdin=poses_csv(points)))
    assert found["call"] == "Kine_CalcExtToolPrm_1PZX"
    assert close(frame_position(found["frame"]), PLACE) and close(frame_rotation(found["frame"]), tool)
    assert found["residuals"]["needs_more_points"] == 1


def test_three_touches_with_any_point_of_the_flange_find_a_stationary_tool(kine, six):
    points = touches(TIP, PLACE, ORIENTATIONS[:4], ERRORS)
    found = report(kine("calib", "tool", six, "--stationary", "--method", "3p", "--json", stdin=poses_csv(points)))
    tip = least_squares_tip(points[:3])
    assert found["call"] == "Kine_CalcExtToolPrm_3P"
    assert close(frame_position(found["frame"]), tip_places(tip, points)[0])
    assert close(residuals(found), from_mean(tip_places(tip, points)))
    # The result is where the tip is in the first pose of the group.
    furthest, _ = leave_one_out(points, tip_places(tip, points)[0], 3,
                                lambda group: tip_places(least_squares_tip(group), group)[0])
    assert close(without(found), furthest, 1e-5)


def test_stationary_tool_of_a_four_axis_arm_is_compared_in_x_and_y(kine, four):
    points = touches((40, -25, 0), PLACE, HEADINGS[:3], ERRORS)
    found = report(kine("calib", "tool", four, "--stationary", "--method", "3p", "--json", stdin=poses_csv(points)))
    flat = np.diag([1.0, 1.0, 0.0])

    def place(group):
        return flat @ tip_places(least_squares_tip(group, planar=True), group)[0]
    furthest, _ = leave_one_out(points, place(points), 2, place)
    assert close(without(found), furthest, 1e-6)
    assert any("height" in text for text in found["advice"])


def test_3pzx_gives_the_frame_of_a_stationary_tool(kine, six):
    tool = rotation((-20, 30, 110))
    origin = np.array(PLACE)
    places = [origin, origin + 60 * tool[:, 2], origin + 80 * tool[:, 0] + 20 * tool[:, 2]]
    turned = [(0, 10, 180), (15, 0, 170), (-20, 5, 175)]
    points = touches(TIP, (300, 300, 300), ORIENTATIONS[:3]) + [
        (place - rotation(angles) @ np.array(TIP), angles) for place, angles in zip(places, turned)]
    found = report(kine("calib", "tool", six, "--stationary", "--json", stdin=poses_csv(points)))
    assert found["method"] == "3pzx" and found["call"] == "Kine_CalcExtToolPrm_3PZX"
    assert close(frame_position(found["frame"]), PLACE) and close(frame_rotation(found["frame"]), tool)
    assert close(residuals(found)[:3], [0] * 3)


# Joints

JOINTS = [(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120),
          (5, 0, 60, 20, 40, -80)]
TOOL_LOAD = (8.0, 20.0, -30.0, 90.0, 0, 0, 0, 0.1, 0.2, 0.3)
PAYLOAD = (5.0, 10.0, 0.0, 40.0, 0, 0, 0, 0, 0, 0)


def load_of(values):
    return {"mass_kg": values[0], "cog_mm": values[1:4], "inertia": values[7:]}


def test_joints_become_the_bent_flange_with_the_load_of_the_tool(kine, tmp_path):
    cell = write_cell(tmp_path, arm=SOFT_ARM, use={"tool": "torch", "load": "part"},
                      tools={"torch": {"frame": {"x_mm": 5, "y_mm": -7, "z_mm": 140, "b_deg": 30},
                                       "load": load_of(TOOL_LOAD)}},
                      loads={"part": load_of(PAYLOAD)})
    found = report(kine("calib", "tool", cell, "--method", "3p", "--json", stdin=joints_csv(JOINTS)))
    # The payload is counted from the tool frame, which the flange pose does not have: it hangs where it hung.
    shifted = (PAYLOAD[0], PAYLOAD[1] + 5, PAYLOAD[2] - 7, PAYLOAD[3] + 140, *PAYLOAD[4:])
    arm = naive_arm(SOFT_ARM)
    points = [naive_pose(arm, "Kine_JointToBasePos", q, tool_load=TOOL_LOAD, load=shifted) for q in JOINTS]
    assert close(frame_position(found["frame"]), least_squares_tip(points[:3]), 1e-6)
    assert close(residuals(found), from_mean(tip_places(least_squares_tip(points[:3]), points)), 1e-6)
    assert found["points_are"] == "the flange in the base"
    rigid = naive_arm(SIX_AXIS_ARM)
    straight = [naive_pose(rigid, "Kine_JointToBasePos", q) for q in JOINTS]
    assert not close(least_squares_tip(points[:3]), least_squares_tip(straight[:3]), 1e-3), "the load must count"
    pasted = found["cell_file"]["tools"]["torch"]
    assert pasted["frame"] == found["frame"] and pasted["load"]["mass_kg"] == 8.0


def test_joints_touching_a_stationary_tool_become_the_tip_in_the_world(kine, tmp_path):
    cell = write_cell(tmp_path, tools={"pin": {"frame": {"x_mm": 5, "z_mm": 140, "b_deg": 30}}})
    found = report(kine("calib", "tool", cell, "--tool", "pin", "--stationary", "--json", stdin=joints_csv(JOINTS[:1])))
    tip, *_ = naive_pose(naive_arm(SIX_AXIS_ARM), "Kine_JointToWorldPos", JOINTS[0], (5, 0, 140, 0, 30, 0))
    assert found["points_are"] == "the tip of the tool in the world"
    assert close(frame_position(found["frame"]), tip, 1e-8)
    assert list(found["cell_file"]["tools"]) == ["calibrated"], "the touched tool is not the one that touched it"


TRACK = {"external_axes": [{"kind": "linear"}], "robot_on_unit": 0,
         "mechanical_units": [{"kind": "linear", "axes": [{"external_axis": 0, "frame": {"z_mm": 500, "a_deg": 90}}]}]}


@pytest.mark.parametrize("travel,of", [((0, 0, 0), "the flange in the base"),
                                       ((0, 250, -100), "the flange in the world")])
def test_a_robot_that_rides_between_the_touches_has_its_flange_in_the_world(kine, tmp_path, travel, of):
    cell = write_cell(tmp_path, **TRACK)
    rows = [(*q, v) for q, v in zip(JOINTS, travel)]
    found = report(kine("calib", "tool", cell, "--json", stdin=joints_csv(rows, external=("e1",))))
    arm = naive_arm(SIX_AXIS_ARM)
    points = []
    for q, v in zip(JOINTS, travel):
        position, angles, _ = naive_pose(arm, "Kine_JointToBasePos", q)
        if of.endswith("world"):  # the track runs along Y, 500 above the floor, and turns the base by 90 degrees
            world = rotation((90, 0, 0)) @ rotation(angles)
            position = rotation((90, 0, 0)) @ (position + np.array([v, 0, 0])) + np.array([0, 0, 500])
            angles = angles_of(world)
        points.append((position, angles))
    assert found["points_are"] == of
    assert close(frame_position(found["frame"]), least_squares_tip(points), 1e-6)


def test_joints_touching_a_stationary_tool_with_the_flange_are_taken_in_the_world(kine, tmp_path):
    """The base stands at 250 on its track and turned by 90 degrees, and the tool is wanted in the world."""
    cell = write_cell(tmp_path, **TRACK)
    rows = [(*q, 250.0) for q in JOINTS[:3]]
    found = report(kine("calib", "tool", cell, "--stationary", "--method", "3p", "--json",
                        stdin=joints_csv(rows, external=("e1",))))
    arm = naive_arm(SIX_AXIS_ARM)
    points = [naive_pose(arm, "Kine_JointToBasePos", q) for q in JOINTS[:3]]
    base = tip_places(least_squares_tip(points), points)[0]
    assert found["points_are"] == "the flange in the world"
    world = rotation((90, 0, 0)) @ (base + np.array([250, 0, 0])) + np.array([0, 0, 500])
    assert close(frame_position(found["frame"]), world, 1e-6)


def test_joints_and_poses_of_the_cell_are_named_with_at(kine, tmp_path):
    named = {f"t{i}": dict(zip(("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"), map(float, (*p, *a))))
             for i, (p, a) in enumerate(touches(TIP, PLACE, ORIENTATIONS[:3]))}
    cell = write_cell(tmp_path, poses=named, joints={f"j{i}": {"axes_deg": q} for i, q in enumerate(JOINTS)})
    found = report(kine("calib", "tool", cell, "@t0", "@t1", "@t2", "--json"))
    assert close(frame_position(found["frame"]), TIP) and [p["target"] for p in found["points"]] == ["t0", "t1", "t2"]
    found = report(kine("calib", "tool", cell, "@j0", "@j1", "@j2", "--json"))
    arm = naive_arm(SIX_AXIS_ARM)
    points = [naive_pose(arm, "Kine_JointToBasePos", q) for q in JOINTS[:3]]
    assert close(frame_position(found["frame"]), least_squares_tip(points), 1e-6)


# Advice

def test_touches_turned_a_little_are_advised_against(kine, six):
    points = touches(TIP, PLACE, [(0, 0, 180), (0, 0, 172), (0, 8, 180), (8, 0, 180), (5, 5, 175)])
    found = report(kine("calib", "tool", six, "--json", stdin=poses_csv(points)))
    singular = np.linalg.svd(stacked(points)[0])[1]
    assert 1 / singular[-1] > 2.0  # mm for 1 mm: beyond the limit of "good"
    assert found["conditioning"]["verdict"] == ("weak" if 1 / singular[-1] <= 6 else "do not use")
    assert any("turn the tool further" in text for text in found["advice"])
    assert any("points p1 and p5" in text or "turned by" in text for text in found["advice"])


@pytest.mark.parametrize("apart,verdict", [(90, "good"), (31, "good"), (27, "weak"), (11, "weak"), (9, "do not use")])
def test_the_verdict_follows_the_angle_between_the_two_axes(kine, six, apart, verdict):
    """Two turns by 120 degrees about axes that stand `apart`: the condition number is 1 / sin(apart / 2)."""
    start = rotation((0, 0, 180))

    def about(axis_heading):
        heading = rotation((axis_heading, 0, 0))
        return angles_of(heading @ rotation((0, 0, 120)) @ heading.T @ start)
    orientations = [(0, 0, 180), about(0), about(apart)]
    points = touches(TIP, PLACE, orientations + orientations[1:])  # five, which the library takes at any angle
    run = kine("calib", "tool", six, "--json", "--method", "5p", stdin=poses_csv(points))
    found = report(run)
    assert abs(found["conditioning"]["condition"] - 1 / math.sin(math.radians(apart / 2))) < 1e-6
    assert found["conditioning"]["verdict"] == verdict


# Refusals

def refusal(run, code):
    assert run.status == REFUSED
    found = json.loads(run.out)
    assert found["result"] == code
    return found


def test_two_touches_at_one_place_are_named(kine, six):
    points = touches(TIP, PLACE, ORIENTATIONS[:3])
    points[2] = (points[0][0], points[2][1])
    found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points)), "0x6065")
    assert found["points"] == ["p1", "p3"] and found["reasons"] == ["points p1 and p3 are 0.000000 mm apart"]
    assert found["remedy"] and found["report_mm"] is None
    run = kine("calib", "tool", six, stdin=poses_csv(points))
    assert run.status == REFUSED and run.out == ""
    assert "0x6065 KINE_ERR_CALIB_POINTS_CLOSE" in run.err and "points p1 and p3 are 0.000000 mm apart" in run.err
    assert found["remedy"] in run.err


def test_touches_on_a_line_are_named(kine, six):
    points = [((0, 0, 0), (0, 0, 180)), ((10, 20, 30), (40, 0, 180)), ((20, 40, 60), (0, 40, 180))]
    found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points)), "0x6066")
    assert found["points"] == ["p1", "p2", "p3"] and found["reasons"] == ["points p1, p2 and p3 lie on one line"]


def test_orientations_that_are_alike_are_named(kine, six):
    points = [((0, 0, 0), (0, 0, 180)), ((10, 0, 0), (40, 0, 180)), ((0, 10, 0), (40, 3, 180))]
    found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points)), "0x6064")
    assert found["points"] == ["p2", "p3"]
    assert found["reasons"] == ["points p2 and p3 are turned by 3.00 degrees against each other only"]


def test_turns_about_one_axis_only_are_told(kine, six):
    points = touches(TIP, PLACE, [(0, 0, 180), (0, 0, 140), (0, 0, 100), (0, 0, 60), (0, 0, 20)])
    for count, code in ((3, "0x6064"), (5, "0x6060")):
        found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points[:count])), code)
        assert found["points"] == []
        assert found["reasons"] == ["the tool is turned about one axis only: turn it about a second"]


def test_turns_that_are_too_small_are_told(kine, six):
    points = touches(TIP, PLACE, [(0, 0, 180), (0, 0, 160), (0, 20, 180)])
    found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points)), "0x6064")
    # 20 degrees about X against 20 degrees about Y.
    apart = angle_between(rotation((0, 0, 160)), rotation((0, 20, 180)))
    assert found["reasons"] == [f"the orientations differ by {apart:.2f} degrees at most: turn the tool further"]


def test_equal_headings_of_a_four_axis_arm_are_named(kine, four):
    points = [((0, 0, 0), (30, 0, 180)), ((10, 0, 0), (30, 0, 180))]
    found = refusal(kine("calib", "tool", four, "--json", stdin=poses_csv(points)), "0x6060")
    assert found["points"] == ["p1", "p2"]
    found = refusal(kine("calib", "tool", four, "--json", stdin=poses_csv([((1, 2, 0), (0, 0, 180)),
                                                                           ((1, 2, 50), (40, 0, 180))])), "0x6065")
    assert found["reasons"] == ["points p1 and p2 are 0.000000 mm apart in X and Y"]


@pytest.mark.parametrize("method,arm", [("2p", "six"), ("5p", "four")])
def test_a_method_of_the_other_kind_of_arm_is_refused(kine, six, four, method, arm):
    cell = six if arm == "six" else four
    points = touches(TIP, PLACE, ORIENTATIONS[:5])
    found = refusal(kine("calib", "tool", cell, "--json", "--method", method, stdin=poses_csv(points)), "0x6001")
    assert found["error"] == "KINE_ERR_NOT_INITIALISED"


def test_an_angle_beyond_180_degrees_is_named(kine, six):
    points = touches(TIP, PLACE, ORIENTATIONS[:3])
    points[1] = (points[1][0], (10, 20, 180.5))
    found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(points)), "0x6010")
    assert found["points"] == ["p2"] and found["reasons"] == ["point p2: c_deg is 180.5, beyond 180 degrees"]


def test_a_refused_orientation_of_3pzx_still_has_the_report_of_the_tip(kine, six):
    good = touches(TIP, PLACE, ORIENTATIONS[:3], ERRORS)
    tip = least_squares_tip(good)
    pairs = pair_distances(tip_places(tip, good))
    start = (good[0][0], good[0][1])

    def moved(x, z):
        return (start[0] + np.array([x, 0.0, z]), start[1])
    for last, code, points in (([start, start, moved(50, 0)], "0x6065", ["p4", "p5"]),
                               ([start, moved(0, 50), moved(0, 50)], "0x6065", ["p5", "p6"]),
                               ([start, moved(0, 50), moved(0, 90)], "0x6066", ["p4", "p5", "p6"])):
        found = refusal(kine("calib", "tool", six, "--json", stdin=poses_csv(good + last)), code)
        assert found["points"] == points
        assert close([found["report_mm"][k] for k in ("largest", "mean", "smallest")],
                     [max(pairs), sum(pairs) / 3, min(pairs)])
    run = kine("calib", "tool", six, stdin=poses_csv(good + last))
    assert f"largest {max(pairs):.4f} mm" in run.err


@pytest.mark.parametrize("method", ["1pzx", "3pzx"])
def test_directions_of_a_stationary_tool_that_are_no_directions_are_named(kine, six, method):
    head = touches(TIP, PLACE, ORIENTATIONS[:3]) if method == "3pzx" else []
    first = len(head) + 1
    start = np.array(PLACE)

    def poses(*offsets):
        return poses_csv(head + [(start + np.array(o), (0, 0, 180)) for o in offsets])
    ask = ("calib", "tool", six, "--stationary", "--method", method, "--json")
    for offsets, code, points in ((((0, 0, 0), (0, 0, 0.005), (50, 0, 0)), "0x6070", [0, 1]),
                                  (((0, 0, 0), (0, 0, 50), (0.005, 0, 0)), "0x6070", [0, 2]),
                                  (((0, 0, 0), (0, 0, 50), (0, 0, 70)), "0x6066", [0, 1, 2])):
        found = refusal(kine(*ask, stdin=poses(*offsets)), code)
        assert found["points"] == [f"p{first + i}" for i in points], offsets

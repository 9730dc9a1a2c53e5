"""kine calib: what it prints for people, what it says about files and options that are wrong, and its picture."""

import json
import math
import re
import xml.etree.ElementTree as ET

import pytest
from calib_points import (FOUR_AXIS_ARM, close, from_mean, joints_csv, least_squares_tip, np, pair_distances,
                          poses_csv, stacked, tip_places, touches, write_cell)
from conftest import BAD_FILE, DONE, REFUSED, USAGE

TIP = (10.0, 20.0, 150.0)
ORIENTATIONS = [(0, 0, 180), (0, 0, 90), (0, 60, 180)]
ERRORS = [(0.3, -0.1, 0.2), (-0.2, 0.4, 0.1), (0.1, 0.1, -0.5)]
GOOD = poses_csv(touches(TIP, (500, 100, 300), ORIENTATIONS))


@pytest.fixture
def cell(tmp_path):
    return write_cell(tmp_path)


def test_the_table_of_a_tool(kine, cell):
    points = touches(TIP, (500, 100, 300), ORIENTATIONS, ERRORS)
    run = kine("calib", "tool", cell, "--name", "torch", stdin=poses_csv(points, names=["down", "side", "front"]))
    assert run.status == DONE and run.err == ""
    tip = least_squares_tip(points)
    places = tip_places(tip, points)
    off, pairs = from_mean(places), pair_distances(places)
    singular = np.linalg.svd(stacked(points)[0])[1]
    furthest = 2 * math.degrees(math.acos(math.cos(math.pi / 4) * math.cos(math.pi / 6)))
    head, frame = run.out.split("\nfor the cell file:\n")
    assert head == (
        "tool on the robot (3p, Kine_CalcGripToolPrm_3P) from poses as given\n\n"
        "       x_mm        y_mm        z_mm       a_deg       b_deg       c_deg\n"
        f"{tip[0]:11.4f} {tip[1]:11.4f} {tip[2]:11.4f}      0.0000      0.0000      0.0000\n\n"
        "point          role      residual_mm without_it_mm without_it_deg\n"
        f"down           touch 1   {off[0]:11.4f}             -              -\n"
        f"side           touch 2   {off[1]:11.4f}             -              -\n"
        f"front          touch 3   {off[2]:11.4f}             -              -\n\n"
        "residual       distance of the tip from its mean place over all touches; "
        f"worst: {['down', 'side', 'front'][off.index(max(off))]}\n"
        f"error report   largest {max(pairs):.4f} mm, mean {sum(pairs) / 3:.4f} mm, smallest {min(pairs):.4f} mm\n"
        "leave one out  needs 1 more point\n"
        f"conditioning   condition number {singular[0] / singular[-1]:.2f}, an error in the touches counts up to "
        f"{1 / singular[-1]:.2f} times: good\n"
        # 90 about X, 60 about Y, and between these the furthest: 2 acos(cos 45 cos 30).
        f"orientations   turned by 60.0 to {furthest:.1f} deg against each other, "
        f"mean {(150 + furthest) / 3:.1f} deg\n")
    pasted = json.loads("{" + frame + "}")
    assert list(pasted) == ["tools"] and list(pasted["tools"]) == ["torch"]
    assert close([pasted["tools"]["torch"]["frame"][k] for k in ("x_mm", "y_mm", "z_mm")], tip)


def test_the_table_of_a_user_frame(kine, cell):
    points = [((400, 0, 100), (0, 0, 0)), ((400, 200, 100), (0, 0, 0)), ((300, 50, 100), (0, 0, 0)),
              ((350, 150, 100), (0, 0, 0))]
    run = kine("calib", "wobj", cell, "--method", "3p", stdin=poses_csv(points))
    # X along Y, Y along -X: a quarter turn about Z.
    assert run.out == (
        "user frame of a work object fixed in the cell (3p, Kine_CalcExtWobj_UserPrm_3P) from poses as given\n\n"
        "       x_mm        y_mm        z_mm       a_deg       b_deg       c_deg\n"
        "   400.0000      0.0000    100.0000     90.0000      0.0000      0.0000\n\n"
        "point          role      residual_mm without_it_mm without_it_deg\n"
        "p1             origin         0.0000             -              -\n"
        "p2             x              0.0000             -              -\n"
        "p3             xy             0.0000        0.0000         0.0000\n"
        "p4             further        0.0000        0.0000         0.0000\n\n"
        "residual       distance from the plane that fits all points best\n"
        "tilt           0.0000 deg\n"
        "leave one out  the result moves by 0.0000 mm and 0.0000 deg at most, in 2 solutions\n\n"
        "for the cell file:\n"
        '  "work_objects": {\n'
        '    "calibrated": {\n'
        '      "held_by_robot": false,\n'
        '      "user_frame": {\n'
        '        "x_mm": 400.0,\n'
        '        "y_mm": 0.0,\n'
        '        "z_mm": 100.0,\n'
        '        "a_deg": 90.0,\n'
        '        "b_deg": 0.0,\n'
        '        "c_deg": 0.0\n'
        "      }\n"
        "    }\n"
        "  }\n")


def test_the_json_of_one_touch(kine, cell):
    run = kine("calib", "tool", cell, "--stationary", "--json", stdin="target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg\n"
                                                                      "pin,1.5,-2.25,300,10,20,30\n")
    frame = '"x_mm": 1.5,\n{0}"y_mm": -2.25,\n{0}"z_mm": 300.0,\n{0}"a_deg": 0.0,\n{0}"b_deg": 0.0,\n{0}"c_deg": 0.0\n'
    assert run.out == (
        '{\n  "finds": "stationary tool",\n  "method": "1p",\n  "call": "Kine_CalcExtToolPrm_1P",\n'
        '  "points_are": "poses as given",\n  "result": "0x0000",\n'
        '  "frame": {\n    ' + frame.format("    ") + '  },\n'
        '  "report_mm": null,\n  "tilt_deg": null,\n'
        '  "points": [\n    {\n      "target": "pin",\n      "role": "origin",\n      "residual_mm": null,\n'
        '      "without_it_mm": null,\n      "without_it_deg": null\n    }\n  ],\n'
        '  "residuals": {\n    "of": "distance of the touched origin from its mean place",\n    "worst": null,\n'
        '    "needs_more_points": 1\n  },\n'
        '  "radius_mm": null,\n  "leave_one_out": {\n    "needs_more_points": 1\n  },\n'
        '  "conditioning": null,\n  "orientations": null,\n  "advice": [],\n'
        '  "cell_file": {\n    "tools": {\n      "calibrated": {\n        "held_by_robot": false,\n'
        '        "frame": {\n          ' + frame.format("          ") + '        }\n      }\n    }\n  }\n}\n')


def test_what_is_pasted_makes_a_cell_that_kine_reads(kine, tmp_path, cell):
    run = kine("calib", "tool", cell, "--name", "torch", stdin=GOOD)
    pasted = json.loads("{" + run.out.split("for the cell file:\n")[1] + "}")
    written = write_cell(tmp_path, "with_tool.json", **pasted)
    row = json.loads(kine("fk", written, "--tool", "torch", "--in", "flange", "--json", "0,0,0,0,0,0").out)
    assert close([row[k] for k in ("x_mm", "y_mm", "z_mm")], TIP)


def test_the_refusal_of_one_touch_in_words(kine, cell):
    run = kine("calib", "tool", cell, "--stationary", stdin="x_mm,y_mm,z_mm,a_deg,b_deg,c_deg\n1,2,3,-190.5,0,0\n")
    assert run.status == REFUSED and run.out == ""
    lines = run.err.splitlines()
    assert lines[0].startswith("kine: Kine_CalcExtToolPrm_1P: 0x6010 KINE_ERR_POSE: ")
    assert lines[1] == "  point 2: a_deg is -190.5, beyond 180 degrees"  # without a name a point has that of its line


def test_joints_that_the_library_refuses_are_named(kine, tmp_path):
    """The robot stands on a unit that does not exist."""
    odd = write_cell(tmp_path, external_axes=[{"kind": "linear"}],
                     mechanical_units=[{"kind": "linear", "axes": []}], robot_on_unit=0)
    rows = joints_csv([(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120)])
    run = kine("calib", "wobj", odd, "--method", "3p", "--json", stdin=rows)
    assert run.status == REFUSED and run.err == ""
    found = json.loads(run.out)
    assert found["result"] == "0x6033" and found["points"] == ["j1"] and found["lines"] == ["FK Error 4:24627"]
    assert found["call"] == "Kine_JointToWorldPos"
    run = kine("calib", "wobj", odd, "--method", "3p", stdin=rows)
    assert run.out == "" and "point j1: its joints" in run.err and "FK Error 4:24627" in run.err


# Bad files and wrong usage

HEAD = "target,x_mm,y_mm,z_mm,a_deg,b_deg,c_deg\n"


@pytest.mark.parametrize("text,message", [
    ("", "points.csv: there are no points"),
    (HEAD, "points.csv: there are no points"),
    ("1,2,3,4,5,6\n", "points.csv:1: needs a header, to tell joints from poses"),
    (HEAD + "a,1,2,3,4,5\n", "points.csv:2: has 6 values, the header 7"),
    (HEAD + "a,1,2,3,4,5,x\n", 'points.csv:2: column 7 (c_deg): "x" is not a number'),
    (HEAD + "a,1,2,3,4,5,nan\n", 'points.csv:2: column 7 (c_deg): "nan" is not a number'),
    ("target,x_mm,y_mm,z_mm,a_deg,b_deg\n", 'points.csv:1: column "c_deg" is missing'),
    ("target,q1_deg,q2_deg\n", 'points.csv:1: column "q3_deg" is missing'),
    (HEAD.replace("target", "label"), 'points.csv:1: unknown column "label"'),
    (HEAD.replace("\n", ",e1\n"), 'points.csv:1: unknown column "e1"'),
    (HEAD + "a,1,2,3,4,5,6\nb,1,2,3,4,5,6\n",
     "points.csv: there are 2 points, and 3p takes 3: touch 1, touch 2, touch 3"),
    (HEAD + "a,1,2,3,4,5,6\n" * 21, "points.csv: there are 21 points; give at most 20"),
    (HEAD.replace("\n", ",result\n") + "a,1,2,3,4,5,6,0x0000\nb,,,,,,,0x6097\n",
     "points.csv: point b was refused before with 0x6097 KINE_ERR_IK_7")])
def test_a_bad_file_of_points_is_told_with_its_place(kine, tmp_path, cell, text, message):
    (tmp_path / "points.csv").write_text(text)
    run = kine("calib", "tool", cell, "-i", "points.csv", "--method", "3p", directory=tmp_path)
    assert run.status == BAD_FILE and run.out == "", run.err
    assert run.err.startswith(message), run.err


def test_points_from_a_pipe_are_called_standard_input(kine, cell):
    run = kine("calib", "tool", cell, "--method", "5p", stdin=GOOD)
    assert run.status == BAD_FILE
    assert run.err.startswith("standard input: there are 3 points, and 5p takes 5: touch 1, touch 2")
    assert kine("calib", "tool", cell, "-i", "missing.csv").status == BAD_FILE


@pytest.mark.parametrize("arguments,text", [
    (["calib"], "A subcommand is required"),
    (["calib", "tool"], "CELL is required"),
    (["calib", "tool", "CELL", "--held", "--stationary"], "excludes"),
    (["calib", "tool", "CELL", "--stationary"],
     "say with --method what 3 points are; there are: 1p (1 point), 1pzx (3 points), 3p (3 points), 3pzx (6 points)"),
    (["calib", "tool", "CELL", "--method", "circle"],
     "--method circle is none of this calibration; there are: 3p (3 points), 3pzx (6 points), 5p (5 points)"),
    (["calib", "tool", "CELL", "--tool", "torch"], 'has no tool "torch"; it has: none'),
    (["calib", "tool", "CELL", "--plot", "-"], "--plot needs the name of a file"),
    (["calib", "tool", "CELL", "@here"], 'has no pose "here"'),
    (["calib", "tool", "CELL", "1,2,3,4,5,6"], "needs a header, to tell joints from poses"),
    (["calib", "tool", "CELL", "--jobs", "2"], "--jobs"),
    (["calib", "tool", "CELL", "--csv"], "--csv")])
def test_wrong_usage_is_told(kine, cell, arguments, text):
    run = kine(*[cell if a == "CELL" else a for a in arguments], stdin=GOOD)
    assert run.status == USAGE and run.out == "" and text in run.err, run.err


def test_four_points_need_a_method(kine, cell):
    text = GOOD + GOOD.splitlines()[-1].replace("p3", "p4") + "\n"
    run = kine("calib", "tool", cell, stdin=text)
    assert run.status == USAGE and "say with --method what 4 points are" in run.err


def test_joints_touched_with_the_wrong_kind_of_tool_are_wrong_usage(kine, tmp_path):
    cell = write_cell(tmp_path, tools={"stand": {"held_by_robot": False}})
    rows = joints_csv([(10, 20, 30, 40, 50, 60), (30, -10, 50, -40, 70, 10), (-20, 35, 20, 90, -60, 120)])
    run = kine("calib", "tool", cell, "--tool", "stand", stdin=rows)
    assert run.status == USAGE and "the chosen one is stationary; choose another with --tool" in run.err
    run = kine("calib", "wobj", cell, "--held", stdin=rows)
    assert run.status == USAGE and "touched with a stationary tool; choose one with --tool" in run.err


def test_huge_numbers_give_an_answer_and_no_crash(kine, cell):
    for size in ("1e308", "-1e300", "1e-320"):
        text = HEAD + "".join(f"p{i},{size},{i}e150,{size},{10 * i},{20 * i},{30 * i}\n" for i in range(1, 6))
        for command, *options in (["tool"], ["tool", "--method", "3p"], ["wobj", "--method", "3p"],
                                  ["wobj", "--method", "circle"], ["wobj", "--method", "2p"],
                                  ["tool", "--stationary", "--method", "1pzx"]):
            run = kine("calib", command, cell, *options, "--json", stdin=text)
            assert run.status in (DONE, REFUSED)
            found = json.loads(run.out)
            if found["result"] == "0x0000" and None in found["frame"].values():
                assert run.status == REFUSED and any("not finite" in text for text in found["advice"])


@pytest.mark.parametrize("command", [(), ("tool",), ("wobj",), ("positioner",), ("base",)])
def test_help_describes_every_option_in_a_line_and_has_examples(kine, command):
    run = kine("calib", *command, "--help")
    assert run.status == DONE
    assert run.out.isascii()
    if command:
        assert "Example" in run.out and "--plot" in run.out and "--method" in run.out


# The picture

SVG = "{http://www.w3.org/2000/svg}"


def drawn(kine, tmp_path, cell, text, *options):
    run = kine("calib", *options, "--plot", tmp_path / "residuals.svg", "--json", stdin=text)
    assert run.status == DONE, run.err
    root = ET.parse(tmp_path / "residuals.svg").getroot()
    return json.loads(run.out), root, [t.text for t in root.iter(f"{SVG}text")]


def test_the_picture_has_a_bar_for_each_point_as_long_as_its_residual(kine, tmp_path, cell):
    points = touches(TIP, (500, 100, 300), ORIENTATIONS, ERRORS)
    found, root, texts = drawn(kine, tmp_path, cell, poses_csv(points, names=["down", "side", "front"]),
                               "tool", cell)
    for name in ("down", "side", "front", "largest", "mean", "smallest", "seen from above, rim", "mm"):
        assert any(name in text for text in texts), name
    values = [p["residual_mm"] for p in found["points"]] + [found["report_mm"][k] for k in
                                                           ("largest", "mean", "smallest")]
    for value in values:
        assert f"{value:.4f}" in texts
    bars = [r for r in root.iter(f"{SVG}rect") if r.get("shape-rendering")]
    widths = [float(bar.get("width")) for bar in bars]
    scale = widths[0] / values[0]
    assert len(bars) == 6 and all(abs(w - scale * v) < 0.02 for w, v in zip(widths, values))
    worst = found["residuals"]["worst"]
    red = [bar.get("fill") for bar in bars].index("#c2272d")
    assert found["points"][red]["target"] == worst
    # The rim of the bull's-eye is the end of the scale: points lie where their offsets are.
    rim = next(float(t.split("rim ")[1].split()[0]) for t in texts if t.startswith("seen from above"))
    places = tip_places(least_squares_tip(points), points)
    offsets = places - np.mean(places, axis=0)
    circles = list(root.iter(f"{SVG}circle"))
    outer = max(float(c.get("r")) for c in circles)
    centres = [c for c in circles if float(c.get("r")) == outer]
    marks = [c for c in circles if c.get("fill") != "none"]
    assert len(centres) == 2 and len(marks) == 6
    for view, up in ((0, 1), (1, 2)):
        for i in range(3):
            mark = marks[3 * view + i]
            right = (float(mark.get("cx")) - float(centres[view].get("cx"))) * rim / outer
            above = (float(centres[view].get("cy")) - float(mark.get("cy"))) * rim / outer
            assert close([right, above], [offsets[i][0], offsets[i][up]], 0.01 * rim)


def test_the_picture_of_a_plane_has_bars_only(kine, tmp_path, cell):
    points = [(p, (0, 0, 0)) for p in ((0, 0, 0), (100, 0, 0), (0, 100, 0.3), (100, 90, -0.2))]
    found, root, texts = drawn(kine, tmp_path, cell, poses_csv(points), "wobj", cell, "--method", "3p")
    assert len([r for r in root.iter(f"{SVG}rect") if r.get("shape-rendering")]) == 4
    assert not list(root.iter(f"{SVG}circle")) and "largest" not in texts
    assert f"{found['points'][3]['residual_mm']:.4f}" in texts


def test_the_picture_without_residuals_says_so(kine, tmp_path, cell):
    points = [((0, 0, 0), (0, 0, 0)), ((100, 0, 0), (0, 0, 0))]
    _, _, texts = drawn(kine, tmp_path, cell, poses_csv(points), "wobj", cell)
    assert any("Teach further points" in text for text in texts)


def test_the_picture_stays_inside_its_page(kine, tmp_path, cell):
    names = ["a<b&\"c\" " * 6, "second", "third"]
    points = touches(TIP, (500, 100, 300), ORIENTATIONS, ERRORS)
    _, root, texts = drawn(kine, tmp_path, cell, poses_csv(points, names=names), "tool", cell)
    width, height = float(root.get("width")), float(root.get("height"))
    numbers = [(float(x), float(y)) for path in root.iter(f"{SVG}path")
               for x, y in re.findall(r"(-?[\d.]+),(-?[\d.]+)", path.get("d"))]
    numbers += [(float(t.get("x")), float(t.get("y"))) for t in root.iter(f"{SVG}text")]
    assert all(0 <= x <= width and 0 <= y <= height for x, y in numbers)
    assert any(text.startswith("a<b&") and text.endswith("..") for text in texts)


def test_a_picture_that_cannot_be_written_is_a_bad_file(kine, tmp_path, cell):
    run = kine("calib", "tool", cell, "--plot", tmp_path / "no/where.svg", stdin=GOOD)
    assert run.status == BAD_FILE and "no/where.svg: No such file or directory" in run.err


def test_a_refused_calibration_draws_nothing(kine, tmp_path):
    cell = write_cell(tmp_path, "four.json", FOUR_AXIS_ARM)
    points = [((0, 0, 0), (30, 0, 180)), ((10, 0, 0), (30, 0, 180))]
    run = kine("calib", "tool", cell, "--plot", tmp_path / "r.svg", stdin=poses_csv(points))
    assert run.status == REFUSED and not (tmp_path / "r.svg").exists()

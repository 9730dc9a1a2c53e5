"""Every cell that is shipped: good by kine check, and its expectations by the naive model too."""

import json

import pytest

from conftest import CELLS, DONE
from naive_cell import NaiveCell, difference, frame_of, pose_frame

SHIPPED = sorted(CELLS.glob("*.json"))
EXPECTATIONS = [(cell, i) for cell in SHIPPED for i in range(len(json.loads(cell.read_text()).get("expect", [])))]
# Where a source gives fewer digits than the usual bound asks for.
ROUNDED = {("puma", 3): 0.05}


def test_the_cells_that_the_guide_names_are_there():
    names = {cell.stem for cell in SHIPPED}
    assert names >= {"puma", "wrist_gravity", "scara", "scara_4110", "held_work_object", "positioner", "track"}


@pytest.mark.parametrize("cell", SHIPPED, ids=lambda cell: cell.stem)
def test_a_shipped_cell_is_good_and_all_it_expects_is_confirmed(kine, cell):
    run = kine("check", cell.name, "--json")
    (report,) = json.loads(run.out)["cells"]
    assert run.status == DONE and run.err == ""
    assert report["verdict"] == "good", report["findings"]
    assert all(entry["confirmed"] for entry in report["expectations"])
    assert len(report["expectations"]) == len(json.loads(cell.read_text()).get("expect", [])) >= 3
    for trip in report["round_trips"]:
        everything = trip["all"]
        assert everything["tried"] == everything["same_joints"] > 0.8 * trip["samples"]
        assert everything["worst_position"]["mm"] < 1e-9 and everything["worst_rotation"]["deg"] < 1e-9
        assert all(posture["tried"] > 0 for posture in trip["postures"])


@pytest.mark.parametrize("cell", SHIPPED, ids=lambda cell: cell.stem)
def test_a_shipped_cell_has_home_an_about_and_named_poses(cell):
    fields = json.loads(cell.read_text())
    assert fields["about"] and "home" in fields["joints"] and fields["poses"]
    assert fields["tools"] and fields["work_objects"]
    assert all(entry["what"] and entry["source"] for entry in fields["expect"])


@pytest.mark.parametrize("cell,index", EXPECTATIONS, ids=lambda v: v.stem if hasattr(v, "stem") else str(v))
def test_the_naive_model_confirms_an_expectation(cell, index):
    naive = NaiveCell(cell)
    expected = naive.fields["expect"][index]
    code, pose = naive.forward(naive.joints(expected["joints"]), expected.get("in", "work_object"), expected)
    if "code" in expected:
        assert code == int(expected["code"], 16)
        return
    assert code == 0
    mm, deg = difference(pose_frame(pose), frame_of(expected["frame"]))
    assert mm <= ROUNDED.get((cell.stem, index), 1e-5)
    assert deg <= 2e-6
    assert mm <= expected.get("within_mm", 1e-3) and deg <= expected.get("within_deg", 1e-3)


def test_the_load_bends_the_gravity_arm_by_its_moment_over_the_stiffness(kine):
    """The two stretched poses differ by small turns of joints 2, 3 and 5 about their places on the level arm."""
    fields = json.loads((CELLS / "wrist_gravity.json").read_text())
    by_name = {entry["what"]: entry["frame"] for entry in fields["expect"]}
    own = by_name["stretched out, own weight"]
    loaded = by_name["stretched out, 10 kg 50 mm in front of the flange"]
    moments, stiffness = (155308.7, 86355.4, 13203.8), (4e8, 2.5e8, 4e7)
    levers = (705 + 755 + 85, 755 + 85, 85)  # from joints 2, 3 and 5 to the flange, mm
    sinks = sum(m / k * lever for m, k, lever in zip(moments, stiffness, levers))
    # Second-order terms are about the square of the turn times the lever.
    assert abs(own["z_mm"] - loaded["z_mm"] - sinks) < 0.01
    assert 0.9 < sinks < 0.95

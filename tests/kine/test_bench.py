"""kine bench: what it counts and in which order its figures stand. Not how fast the machine is."""

import json
import time

import pytest

from conftest import BAD_FILE, DONE, REFUSED, USAGE

CALLS = ["Kine_JointToWobjPos", "Kine_WobjPosToJoint", "Kine_JointToWorldPos", "Kine_GetArmType"]
PERCENTILES = ["median_us", "p90_us", "p99_us", "p99_9_us", "worst_us"]
TYPE_4 = {"name": "scara", "arm": {"type": 4, "link1_length_mm": 325, "link2_length_mm": 275, "z_offset_mm": 100,
                                   "screw_lead_mm_per_turn": 20}}


def write(directory, cell):
    path = directory / "cell.json"
    path.write_text(json.dumps(cell))
    return path


def test_the_report_counts_and_orders(open_kine):
    start = time.monotonic()
    run = open_kine("bench", "puma.json", "--seconds", "0.4", "--seed", "3", "--json")
    spent = time.monotonic() - start
    assert run.status == DONE and run.err == ""
    report = json.loads(run.out)
    assert list(report) == ["file", "cell", "seed", "seconds", "targets", "joint_sets_tried", "joint_sets_singular",
                            "clock_overhead_us", "calls"]
    assert (report["file"], report["cell"], report["seed"], report["seconds"]) == ("puma.json", "Puma 560", 3, 0.4)
    assert report["targets"] == 1024
    # A rigid arm whose parameters are exact reaches all but the singular sets.
    assert report["joint_sets_tried"] == report["targets"] + report["joint_sets_singular"]
    assert 0 < report["joint_sets_singular"] < 500
    assert 0 < report["clock_overhead_us"] < 100
    assert [row["call"] for row in report["calls"]] == CALLS
    for row in report["calls"]:
        assert list(row) == ["call", "calls", "calls_per_second", "timed_calls", *PERCENTILES]
        figures = [row[name] for name in PERCENTILES]
        assert figures == sorted(figures) and figures[0] > 0
        assert row["calls"] % 64 == 0 and row["timed_calls"] % 64 == 0 and row["timed_calls"] > 0
        # The rate is measured for an eighth of the time and one chunk at most beyond it.
        assert 0.05 <= row["calls"] / row["calls_per_second"] < spent
        # Half of the timed calls take the median or longer, and all of them fit into the time spent.
        assert row["timed_calls"] / 2 * row["median_us"] * 1e-6 < spent
    assert 0.35 < spent
    rates = {row["call"]: row["calls_per_second"] for row in report["calls"]}
    assert rates["Kine_GetArmType"] > rates["Kine_WobjPosToJoint"]


def test_the_table_has_a_row_for_each_call(open_kine):
    run = open_kine("bench", "puma.json", "--seconds", "0.05")
    assert run.status == DONE and run.err == ""
    head, empty, columns, *rows, empty_too, foot = run.out.splitlines()
    assert head.startswith("Puma 560: 1024 targets from 1") and head.endswith(" random joint sets, seed 1")
    assert empty == "" == empty_too
    assert columns == ("call                        calls/s     median        p90        p99      p99.9      worst")
    assert [row.split()[0] for row in rows] == CALLS
    for row in rows:
        assert len(row) == len(columns) and len(row.split()) == 7
        figures = [float(text) for text in row.split()[2:]]
        assert figures == sorted(figures)
    assert foot.startswith("Latencies in microseconds, of single calls; each holds one look at the clock, 0.")


def test_the_seed_chooses_the_targets(open_kine):
    def tried(seed):
        run = open_kine("bench", "puma.json", "--seconds", "0.01", "--seed", seed, "--json")
        return json.loads(run.out)["joint_sets_tried"]
    assert tried(1) == tried(1)
    assert len({tried(seed) for seed in range(1, 6)}) > 1


def test_limits_bound_the_joints(open_kine, tmp_path):
    """With a wrist that stays at 90 degrees and an arm between bent and upright nothing is singular."""
    puma = {"name": "narrow", "arm": {"type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 0, "d1_mm": 450, "d4_mm": 640,
                                      "d6_mm": 100},
            "limits": {"lower_deg": [-180, -30, -30, -180, 60, -180], "upper_deg": [180, 30, 30, 180, 120, 180]}}
    report = json.loads(open_kine("bench", write(tmp_path, puma), "--seconds", "0.01", "--json").out)
    assert report["joint_sets_singular"] == 0 and report["joint_sets_tried"] == 1024


def test_a_four_axis_arm_is_measured_too(open_kine, tmp_path):
    report = json.loads(open_kine("bench", write(tmp_path, TYPE_4), "--seconds", "0.05", "--json").out)
    assert report["targets"] == 1024 and len(report["calls"]) == 4


def test_a_cell_without_any_answer_is_refused(open_kine, tmp_path):
    cell = {**TYPE_4, "tools": {"post": {"held_by_robot": False}}}
    run = open_kine("bench", write(tmp_path, cell), "--tool", "post", "--seconds", "0.01")
    assert run.status == REFUSED and run.out == ""
    first, second = run.err.splitlines()
    assert ": none of 102400 random joint sets is a target to measure with; singular: " in first
    singular = int(first.rsplit(" ", 1)[1])
    assert second == (f"  {102400 - singular} times 0x6016 KINE_ERR_HOLD: "
                      "tool and work object carry the same HeldByRobot byte")


@pytest.mark.parametrize("arguments, message", [
    (("puma.json", "--seconds", "0"), "--seconds"),
    (("puma.json", "--seconds", "4000"), "--seconds"),
    (("puma.json", "--seconds", "soon"), "--seconds"),
    (("puma.json", "--seed", "-1"), "--seed"),
    (("puma.json", "--csv"), "--csv"),
    (("puma.json", "--tool", "torch"), "puma.json has no tool \"torch\"; it has: none\n"),
    ((), "CELL is required\n"),
])
def test_what_makes_no_sense_is_told(open_kine, arguments, message):
    run = open_kine("bench", *arguments)
    assert run.status == USAGE and run.out == "" and message in run.err


def test_a_missing_cell_is_a_bad_file(open_kine):
    run = open_kine("bench", "nowhere.json")
    assert run.status == BAD_FILE and run.err == "nowhere.json: No such file or directory\n"

"""kine fk against the naive model and a pose worked out by hand."""

import random

from conftest import BAD_FILE, DONE, REFUSED, USAGE, csv_rows, json_rows

# Shoulder, upper arm upright and forearm level, hand along X: x = d4, y = 150.05 on the left, z = a2 + a3.
LEVEL = "0,0,0,0,0,0"


def test_a_pose_by_hand(kine):
    run = kine("fk", "puma.json", LEVEL, "--json")
    assert run.status == DONE and run.err == ""
    (row,) = json_rows(run)
    assert row["target"] == "1" and row["result"] == "0x0000"
    for name, value in (("x_mm", 431.8), ("y_mm", 150.05), ("z_mm", 452.1), ("b_deg", -90.0)):
        assert abs(row[name] - value) < 1e-9, name
    assert [row[f"cfg{i}"] for i in range(1, 5)] == [0, 0, 0, 0]


def test_the_table(kine):
    run = kine("fk", "puma.json", "0,0,0,0,0,90")
    assert run.out == (
        "target            x_mm        y_mm        z_mm       a_deg       b_deg       c_deg  cfg1  cfg2  cfg3  cfg4 result\n"
        "1             431.8000    150.0500    452.1000    -90.0000      0.0000    -90.0000     0     0     1     0 0x0000\n"
    )

"""Rows of kine at no less than half the rate of the library itself, the reading of numbers aside.

Counted in instructions (callgrind), which are the same in every run; the start of the program is taken off as the
difference between a short and a long input.
"""

import os
import random
import re
import shutil
import subprocess

import pytest
from conftest import CELLS, run_kine

SHORT, LONG = 200, 1200
LEAST_SHARE = 0.5

pytestmark = pytest.mark.skipif(not shutil.which("valgrind") or "KINE_INSTRUMENTED" in os.environ,
                                reason="counts the instructions of the program as it is shipped, with valgrind")


def joint_rows(count):
    rng = random.Random(7)
    rows = [",".join(f"{rng.uniform(-170, 170):.6f}" for _ in range(6)) for _ in range(count)]
    return "\n".join(["q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg", *rows]) + "\n"


def instructions(folder, command, rows, names):
    """All instructions, and those within each of the functions."""
    counts = folder / "callgrind.out"
    subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={counts}", os.environ["KINE"], command,
                    CELLS / "puma.json", "--csv", "--quiet"],
                   input=rows, capture_output=True, text=True, check=False, timeout=300)
    text = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", counts], check=True,
                          capture_output=True, text=True).stdout
    found = []
    for name in ("PROGRAM TOTALS", *names):
        lines = [line for line in text.splitlines() if name in line]
        assert lines, name
        found.append(int(re.match(r" *([\d,]+)", lines[0]).group(1).replace(",", "")))
    return found


@pytest.mark.parametrize("command, call", [("fk", "Kine_JointToWobjPos"), ("ik", "Kine_WobjPosToJoint")])
def test_a_row_costs_at_most_twice_the_call(tmp_path, command, call):
    inputs = [joint_rows(count) for count in (SHORT, LONG)]
    if command == "ik":
        inputs = [run_kine("fk", "puma.json", "--csv", stdin=rows).out for rows in inputs]
    names = (call, "RowParser::Parse(")
    short, long = (instructions(tmp_path, command, rows, names) for rows in inputs)
    total, in_call, in_parser = (b - a for a, b in zip(short, long))
    share = in_call / (total - in_parser)
    print(f"{command}: {total / (LONG - SHORT):.0f} instructions a row, {in_call / (LONG - SHORT):.0f} in the call, "
          f"{in_parser / (LONG - SHORT):.0f} in the parser; share {share:.2f}")
    assert share >= LEAST_SHARE

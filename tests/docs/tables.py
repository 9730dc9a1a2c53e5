"""Two tables of the book, measured again: the mistakes in the record of an arm (docs/your_arm.md) and the range of the
answer for a quarter-turn number (docs/postures.md).
"""

import argparse
import math
import pathlib
import re
import sys

import library as kine

TRIED = ((-100, 20, 140), (-60, -20, 20), (-40, 10, 60), (-150, -30, 90), (-80, 30, 70), (-90, 40, 170))
SETS = 729
# Where Newton's steps do not converge the count hangs on rounding.
TOLERANCE_PERCENT = 2.0

# The start of a row in the table of mistakes, and the records that it is about.
MISTAKES = {
    "none": [{}],
    "twists in radians": [{"twists": tuple(math.radians(twist) for twist in kine.NOMINAL_TWISTS)}],
    "twists left out": [{"twists": (0.0,) * 5}],
    "all twists negated": [{"twists": tuple(-twist for twist in kine.NOMINAL_TWISTS)}],
    "wrist mirrored": [{"twists": (90.0, 0.0, 90.0, 90.0, -90.0)}],
    "d3 and lateralOffset 150": [{"d3": 150.0, "lateralOffset": -150.0}],
    "d3 150, lateralOffset left out": [{"d3": 150.0, "lateralOffset": 0.0}],
    "d3 20, lateralOffset negated": [{"lateralOffset": -20.0}, {"lateralOffset": 0.0}],
}

# Off the borders of the quarter turns, and as near to them as the borders of the table are sharp.
NEAR_BORDER = 0.001
ANGLES = [quarter * 90.0 + away for quarter in range(-2, 2) for away in (NEAR_BORDER, 30.0, 60.0, 90.0 - NEAR_BORDER)]
# The axes that have a number, and where it stands among the four integers.
NUMBERED_AXES = {0: 0, 3: 1, 5: 2}


def rows_of(text, head):
    """The cells of the rows of the table whose first row begins so."""
    table = text[text.index(head):].split("\n\n")[0].split("\n")
    rows = [[cell.strip() for cell in row.strip("|").split("|")] for row in table]
    return [rows[0]] + rows[2:]


def outcome(library, axes):
    """"same", "other", or the code."""
    code, pose = kine.pose_of(library, axes)
    if not code:
        code, solved = kine.joints_of(library, pose)
    if code:
        return f"0x{code:04X}"
    return "same" if all(abs(one - other) < 1e-6 for one, other in zip(solved, axes)) else "other"


def percentages(library, changes):
    kine.initialise(library, **{"d3": 20.0, "lateralOffset": 20.0, **changes})
    counts = {}
    for number in range(SETS):
        axes = [values[number // 3 ** i % 3] for i, values in enumerate(TRIED)]
        result = outcome(library, axes)
        counts[result] = counts.get(result, 0) + 1
    return {result: 100.0 * count / SETS for result, count in counts.items()}


def mistake_problems(library, text):
    found, rows = [], rows_of(text, "| mistake |")[1:]
    if len(rows) != len(MISTAKES):
        found.append(f"the table of mistakes has {len(rows)} rows, not {len(MISTAKES)}")
    said = {name: {"same": float(same), "other": float(other),
                   **{code: float(share) for share, code in re.findall(r"(\d+) \((0x\w+)\)", refused)}}
            for name, same, other, refused in rows}
    for start, records in MISTAKES.items():
        (row,) = (row for name, row in said.items() if name.startswith(start))
        for changes in records:
            counted = percentages(library, changes)
            if any(abs(row.get(key, 0.0) - counted.get(key, 0.0)) > TOLERANCE_PERCENT for key in {*row, *counted}):
                found.append(f"{start}: counted {counted}, the table says {row}")
    return found


def turn_problems(library, text):
    kine.initialise(library)
    numbers, answers = rows_of(text, "| number |")
    found = []
    for number, answer in zip(numbers[1:], answers[1:]):
        asked = int(number.replace("\u2212", "-"))
        low, high = (float(end) for end in re.findall(r"-?\d+", answer.replace("\u2212", "-")))
        for axis, place in NUMBERED_AXES.items():
            for angle in ANGLES:
                axes = [20.0, -20.0, 20.0, 30.0, 40.0, 50.0]
                axes[axis] = angle
                _, pose = kine.pose_of(library, axes)
                pose.config[place] = asked
                code, solved = kine.joints_of(library, pose)
                wanted = [angle + turn for turn in (-360.0, 0.0, 360.0) if low < angle + turn < high]
                if code or len(wanted) != 1 or abs(solved[axis] - wanted[0]) > 1e-6:
                    found.append(f"axis {axis + 1} at {angle}, number {asked}: {code:#x}, {solved[axis]}, not {wanted}")
    return found


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--library", dest="shared_library", required=True)
    parser.add_argument("--docs", type=pathlib.Path, required=True)
    options = parser.parse_args()
    library = kine.load(options.shared_library)
    with kine.quiet_stdout():
        found = mistake_problems(library, (options.docs / "your_arm.md").read_text(encoding="utf-8"))
        found += turn_problems(library, (options.docs / "postures.md").read_text(encoding="utf-8"))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

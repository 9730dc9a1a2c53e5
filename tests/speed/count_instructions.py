"""Counts the instructions of the hot calls with callgrind and compares them with their ceilings.

    python3 count_instructions.py --program build/release/tests/speed/counted_calls [CASE...]

A call's count is the difference between a run with N and a run with 2 N calls, divided by N, so that
start-up and set-up drop out. Ends with 1 when a count is above its ceiling, with 77 where it cannot count.
"""

import argparse
import platform
import re
import shutil
import subprocess
import sys
from collections import namedtuple

Ceiling = namedtuple("Ceiling", "title must aim")

# Instructions per call, release build: the test demands the first number, the second is the goal. For x86-64
# processors with FMA: there the C library's sines are shorter, elsewhere a call takes up to a tenth more.
CEILINGS = {
    "inverse_six_axis": Ceiling("`Kine_WobjPosToJoint`, six-axis, calibrated with gravity", 26000, 20000),
    "world_position_six_axis": Ceiling("`Kine_JointToWorldPos`, six-axis, calibrated with gravity", 3900, 3600),
    "inverse_four_axis": Ceiling("`Kine_WobjPosToJoint`, four-axis with tilts", 7000, 6500),
}

CALLS = 500
SKIPPED = 77


def collected(output):
    """Instructions of a whole run, from what callgrind prints."""
    return int(re.search(r"Collected\s*:\s*(\d+)", output).group(1))


def run(program, case, calls):
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", program, case, str(calls)]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"{case}: the program failed with {result.returncode}\n{result.stderr}")
    return collected(result.stderr)


def per_call(fewer, more, calls):
    return (more - fewer) / calls


def count(program, case):
    return per_call(run(program, case, CALLS), run(program, case, 2 * CALLS), CALLS)


def is_above(case, instructions):
    return instructions > CEILINGS[case].must


def has_fma():
    try:
        with open("/proc/cpuinfo", encoding="ascii", errors="replace") as file:
            return re.search(r"^flags\s*:.*\bfma\b", file.read(), re.MULTILINE) is not None
    except OSError:
        return False


def reason_to_skip():
    if platform.machine().lower() not in ("x86_64", "amd64") or not has_fma():
        return "the ceilings are for x86-64 processors with FMA"
    if shutil.which("valgrind") is None:
        return "valgrind is not installed"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True)
    parser.add_argument("--tsv", help="file to write the counts to as well")
    parser.add_argument("cases", nargs="*", metavar="CASE", help=", ".join(CEILINGS))
    options = parser.parse_args()

    reason = reason_to_skip()
    if reason:
        print(f"SKIPPED: INSTRUCTIONS ARE NOT COUNTED: {reason}")
        return SKIPPED

    counts = {case: count(options.program, case) for case in options.cases or CEILINGS}
    for case, instructions in counts.items():
        _, must, aim = CEILINGS[case]
        verdict = "ABOVE THE CEILING" if is_above(case, instructions) else "ok"
        print(f"{case}: {instructions:.0f} instructions per call, ceiling {must}, aim {aim}: {verdict}")
    if options.tsv:
        with open(options.tsv, "w", encoding="ascii") as file:
            for case, instructions in counts.items():
                title, must, aim = CEILINGS[case]
                print(title, f"{instructions:.0f}", must, aim, sep="\t", file=file)
    return int(any(is_above(case, instructions) for case, instructions in counts.items()))


if __name__ == "__main__":
    sys.exit(main())

"""Compares the symbols that a shared library exports with the list of those it is meant to export."""

import argparse
import pathlib
import subprocess
import sys


def parse_nm(text):
    """The names in the output of nm -P: one symbol to a line, its name first, without a version."""
    return {line.split()[0].split("@")[0] for line in text.splitlines() if line.strip()}


def differences(exported, expected):
    """One sentence for each name on one side only."""
    surplus = [f"exported but not listed: {name}" for name in sorted(exported - expected)]
    missing = [f"listed but not exported: {name}" for name in sorted(expected - exported)]
    return surplus + missing


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--expected", type=pathlib.Path, required=True)
    parser.add_argument("shared_library")
    arguments = parser.parse_args()
    output = subprocess.run(
        [arguments.nm, "-D", "-P", "--defined-only", arguments.shared_library],
        check=True, capture_output=True, text=True).stdout
    expected = set(arguments.expected.read_text(encoding="ascii").split())
    found = differences(parse_nm(output), expected)
    print("\n".join(found) or f"{len(expected)} symbols, as listed")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

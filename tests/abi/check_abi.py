"""Compares the functions and records that a library's debug information describes with those on record, by abidiff.

  check_abi.py BASELINE LIBRARY                  compares
  check_abi.py --record ABIDW BASELINE LIBRARY   writes the record anew, with abidw
"""

import argparse
import subprocess
import sys

# Bits of abidiff's exit status.
FAILED = 1 | 2
CHANGED = 4
INCOMPATIBLE = 8  # never without CHANGED; a field that has moved is not counted as one

NEXT_STEPS = "raise the major version, record anew and say so in CHANGELOG.md."

# The record holds names, types, sizes and offsets of what the exports show; no places in files, which change with
# every edit, and no other libraries.
RECORD_OPTIONS = ["--exported-interfaces-only", "--drop-undefined-syms", "--no-elf-needed", "--no-show-locs",
                  "--no-corpus-path", "--no-comp-dir-path", "--no-write-default-sizes", "--type-id-style", "hash"]


def verdict(status):
    """What an exit status of abidiff means, and what to do; empty for no difference."""
    if status == 0:
        return ""
    if status < 0 or status & FAILED:
        return "abidiff could not compare"
    if status & INCOMPATIBLE:
        return "Programs built against the recorded interface break: undo the change, or " + NEXT_STEPS
    if status & CHANGED:
        return ("If nothing but functions was added, record anew. Otherwise programs break: undo the change, or " +
                NEXT_STEPS)
    return f"abidiff ended with {status}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--abidiff", default="abidiff")
    parser.add_argument("--record", metavar="ABIDW")
    parser.add_argument("baseline")
    parser.add_argument("shared_library", metavar="library")
    arguments = parser.parse_args()
    if arguments.record:
        command = [arguments.record, *RECORD_OPTIONS, "--out-file", arguments.baseline, arguments.shared_library]
        return subprocess.run(command, check=False).returncode
    result = subprocess.run([arguments.abidiff, arguments.baseline, arguments.shared_library], check=False)
    message = verdict(result.returncode)
    print(message or "as recorded")
    return 1 if message else 0


if __name__ == "__main__":
    sys.exit(main())

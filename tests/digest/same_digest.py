"""Runs the digest program of several builds, or with several numbers of threads, and compares what they print.

    python3 same_digest.py [--threads 1,2,8] [--emulator wine] PROGRAM...

With an emulator, it is what runs the programs. Ends with 1 when two runs differ and names the exports that do.
"""

import argparse
import subprocess
import sys


def parse(text):
    """The digest of each export and of the printed lines by name, and the last line: the digest of all."""
    lines = text.splitlines()
    return {line.split()[0]: " ".join(line.split()[1:]) for line in lines[:-1]}, lines[-1]


def differences(first, other):
    """The names whose digests differ, in order. Empty for two runs that are the same."""
    (parts, total), (other_parts, other_total) = first, other
    names = [name for name in dict.fromkeys([*parts, *other_parts]) if parts.get(name) != other_parts.get(name)]
    return names or ([] if total == other_total else ["the digest of all"])


def run(program, threads, emulator=""):
    prefix = [emulator] if emulator else []
    result = subprocess.run([*prefix, program, "--verbose", "--threads", str(threads)], capture_output=True, text=True,
                            check=False)
    if result.returncode != 0:
        sys.exit(f"{program} failed with {result.returncode}\n{result.stderr}")
    return parse(result.stdout)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--threads", default="1", help="numbers of threads, separated by commas")
    parser.add_argument("--emulator", default="", help="a command that runs the programs")
    parser.add_argument("programs", nargs="+", metavar="PROGRAM")
    options = parser.parse_args()

    cases = [(program, int(threads)) for program in options.programs for threads in options.threads.split(",")]
    runs = [run(*case, options.emulator) for case in cases]
    differing = False
    for (program, threads), found in zip(cases, runs):
        names = differences(runs[0], found)
        if names:
            differing = True
            print(f"{program}, threads: {threads}: {found[1]}")
            print(f"    differs from {cases[0][0]}, threads: {cases[0][1]}, in {', '.join(names)}")
    print(f"{runs[0][1]}: {'NOT ' if differing else ''}the same from {len(cases)} runs")
    return int(differing)


if __name__ == "__main__":
    sys.exit(main())

"""Asks object files what the wrappers of KineDll.hpp need and what they cost.

needs   every_wrapper.cpp, not optimised: the object calls all exports and nothing else, no allocation, no exception.
cost    cost.cpp, optimised: through a wrapper a program has the instructions it has without.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

# What compilers call to set and copy records, and what is no function.
PLAIN = {"memset", "memcpy", "memmove", "_GLOBAL_OFFSET_TABLE_", "__stack_chk_fail"}
# Registers and moves of results differ a little; a copy of a pose or a second test of the code is more.
MORE_INSTRUCTIONS = 5


def needs(symbols, exports):
    """One sentence for each symbol that nm -u lists and should not, or does not list and should."""
    undefined = {line.split()[-1] for line in symbols.splitlines() if line.strip()}
    return ([f"needs {name}" for name in sorted(undefined - exports - PLAIN)] +
            [f"no wrapper calls {name}" for name in sorted(exports - undefined)])


def instructions(listing):
    """Instructions of each function in a listing of objdump, without padding."""
    counts = {}
    name = None
    for line in listing.splitlines():
        if head := re.match(r"[0-9a-f]+ <(\w+)>:", line):
            name = head.group(1)
            counts[name] = 0
        elif name and re.match(r"\s+[0-9a-f]+:\s+\S", line) and not re.search(r"\bnop|\bxchg\s+%ax,%ax", line):
            counts[name] += 1
    return counts


def costs(counts):
    """One sentence for each pair of functions of which the wrapped one is longer, or has no partner."""
    pairs = sorted({name.rsplit("_", 1)[0] for name in counts if name.startswith("cost_")})
    if not pairs:
        return ["no functions to compare"]
    found = []
    for pair in pairs:
        plain, wrapped = counts.get(f"{pair}_c"), counts.get(f"{pair}_cpp")
        if not plain or not wrapped:
            found.append(f"{pair}: no pair")
        elif wrapped > plain + MORE_INSTRUCTIONS:
            found.append(f"{pair}: {wrapped} instructions with the wrapper, {plain} without")
    return found


def run(command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("question", choices=("needs", "cost"))
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--tool", required=True, help="nm or objdump")
    parser.add_argument("--exports", type=pathlib.Path)
    parser.add_argument("--include", required=True)
    given = parser.parse_args()
    source = pathlib.Path(__file__).parent / {"needs": "every_wrapper.cpp", "cost": "cost.cpp"}[given.question]
    with tempfile.TemporaryDirectory() as folder:
        made = f"{folder}/object.o"
        run([given.compiler, "-std=c++17", "-fno-exceptions", "-fno-rtti", f"-I{given.include}", "-c", str(source),
             "-o", made, "-O0" if given.question == "needs" else "-O2"])
        if given.question == "needs":
            found = needs(run([given.tool, "-u", made]), set(given.exports.read_text(encoding="ascii").split()))
        else:
            counts = instructions(run([given.tool, "-d", "--no-show-raw-insn", made]))
            print(counts)
            found = costs(counts)
    print("\n".join(found) or "as it should be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

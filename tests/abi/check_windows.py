"""Checks the names by which a 32-bit Windows program calls the exports, as the compiler writes them into assembly.

The caller is compiled for a default convention of __stdcall, whose names end in @ and the size of the parameters:
the header must name __cdecl at every export for a plain name to come out. Each must be an imported one.
"""

import argparse
import pathlib
import re
import subprocess
import sys

# A function of the caller's own, which has the default convention.
CONTROL = "CalledByDefault"


def caller(names):
    """A C program that takes the address of every export."""
    uses = [f"    {CONTROL}((Any){name});" for name in names]
    return "\n".join(['#include "KineDll.h"', "typedef void (*Any)(void);", f"void {CONTROL}(Any any);",
                      "void UseAll(void);", "void UseAll(void)", "{", *uses, "}", ""])


def problems(assembly, names):
    """One sentence for each name that is not as a caller of the library needs it."""
    if f"_{CONTROL}@4" not in assembly:
        return ["the default convention of the caller is not __stdcall: nothing was tested"]
    imported = set(re.findall(r"__imp_(_[\w@]+)", assembly))
    expected = {f"_{name}" for name in names}
    return ([f"not imported by its plain name: {name[1:]}" for name in sorted(expected - imported)] +
            [f"imported as {name}" for name in sorted(imported - expected)])


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--clang", default="clang")
    parser.add_argument("--include", required=True)
    parser.add_argument("--expected", type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    names = arguments.expected.read_text(encoding="ascii").split()
    command = [arguments.clang, "--target=i686-pc-windows-msvc", "-mrtd", "-ffreestanding", "-std=c99", "-x", "c",
               "-S", "-o", "-", f"-I{arguments.include}", "-"]
    assembly = subprocess.run(command, input=caller(names), check=True, capture_output=True, text=True).stdout
    found = problems(assembly, names)
    print("\n".join(found) or f"{len(names)} exports imported by their plain names")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

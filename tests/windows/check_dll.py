"""Checks KineDll.dll without running it, as the objdump of mingw-w64 shows it.

It is for the right processor, exports the listed functions by their plain names and nothing else, needs only what
every Windows has, may be loaded anywhere, and its data are not run.
"""

import argparse
import pathlib
import re
import subprocess
import sys

NAME = "KineDll.dll"
# What is part of Windows itself: its kernel, and the C runtime that it has had from the start.
SYSTEM = {"KERNEL32.dll", "msvcrt.dll"}
FORMATS = {64: "pei-x86-64", 32: "pei-i386"}
FLAGS = {64: {"HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"}, 32: {"DYNAMIC_BASE", "NX_COMPAT"}}


def file_format(text):
    """The format that the first line names."""
    found = re.search(r"file format (\S+)", text)
    return found.group(1) if found else ""


def own_name(text):
    """The name by which programs that are linked to the DLL ask for it."""
    found = re.search(r"^Name\s+[0-9a-f]+ (\S+)$", text, re.MULTILINE)
    return found.group(1) if found else ""


def exports(text):
    """The exported names in their order."""
    _, _, table = text.partition("[Ordinal/Name Pointer] Table")
    lines = []
    for line in table.splitlines()[1:]:
        found = re.fullmatch(r"\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?(\S+)", line)
        if not found:
            break
        lines.append(found.group(1))
    return lines


def imports(text):
    """The names of the libraries that the DLL needs."""
    return re.findall(r"^\s*DLL Name: (\S+)$", text, re.MULTILINE)


def flags(text):
    """The characteristics that are shown by name."""
    found = re.search(r"^DllCharacteristics\s+[0-9a-f]+\n((?:\s+[A-Z_]+\n)*)", text, re.MULTILINE)
    return set(found.group(1).split()) if found else set()


def has_relocations(text):
    """Whether there is what the loader needs to put the DLL somewhere else."""
    found = re.search(r"^Entry 5 [0-9a-f]+ ([0-9a-f]+) Base Relocation", text, re.MULTILINE)
    return bool(found) and int(found.group(1), 16) > 0


def problems(text, listed, bits):
    """One sentence for each fault."""
    found = []
    if file_format(text) != FORMATS[bits]:
        found.append(f"its format is {file_format(text)!r}, not {FORMATS[bits]!r}")
    if own_name(text) != NAME:
        found.append(f"its own name is {own_name(text)!r}, not {NAME!r}")
    exported = exports(text)
    found += [f"listed but not exported: {name}" for name in listed if name not in exported]
    found += [f"exported but not listed: {name}" for name in exported if name not in listed]
    needed = imports(text)
    found += [f"it needs {name}" for name in needed if name not in SYSTEM]
    if not needed:
        found.append("no library is shown that it needs")
    found += [f"without {flag}" for flag in sorted(FLAGS[bits] - flags(text))]
    if not has_relocations(text):
        found.append("it cannot be loaded anywhere else: there are no relocations")
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--expected", type=pathlib.Path, required=True)
    parser.add_argument("--bits", type=int, choices=(32, 64), required=True)
    parser.add_argument("dll")
    arguments = parser.parse_args()
    listed = arguments.expected.read_text(encoding="ascii").split()
    text = subprocess.run([arguments.objdump, "-p", arguments.dll], check=True, capture_output=True, text=True).stdout
    found = problems(text, listed, arguments.bits)
    print("\n".join(found) or f"{len(listed)} exports, {' and '.join(imports(text))} needed")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

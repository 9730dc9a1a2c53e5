"""Compares the list of exports with the functions that the public header declares."""

import pathlib
import re
import sys


def declared(header):
    """The names of the functions in the order of the header."""
    return re.findall(r"^KINE_API \w+ KINE_CALL (\w+)\(", header, re.MULTILINE)


def differences(listed, functions):
    """One sentence for each fault of the list."""
    found = [f"declared but not listed: {name}" for name in functions if name not in listed]
    found += [f"listed but not declared: {name}" for name in listed if name not in functions]
    if listed != sorted(set(listed)):
        found.append("the list is not in order, or names a function twice")
    return found


def main():
    root = pathlib.Path(sys.argv[1])
    listed = (root / "interface/exports.txt").read_text(encoding="ascii").split()
    functions = declared((root / "include/KineDll.h").read_text(encoding="ascii"))
    found = differences(listed, functions)
    print("\n".join(found) or f"{len(listed)} functions")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

"""Checks how the parts of src/ depend on each other.

Includes point one way: math <- models <- config <- chain <- calib, motion <- api; calib and motion do not
include each other. Public records are named in include/ and src/api/ only. The print routine is out of reach
of math, models and calib, and nothing else prints. Only the exports name the store's instance.
"""

import pathlib
import re
import sys

LAYERS = {"math": 0, "models": 1, "config": 2, "chain": 3, "calib": 4, "motion": 4, "api": 5}
RECORDS = ("KineJoint", "KinePose", "KineFrame", "KineTool", "KineWobj", "KineLoad", "KineMechUnit",
           "KineExtAxisParam")
SILENT = ("math", "models", "calib")
PRINT_ROUTINE = "config/print.cpp"
PRINT_HEADERS = ("cstdio", "stdio.h", "iostream", "ostream", "print", "syncstream", "fstream")
STORE = ("config/store.h", "config/store.cpp")


def without_comments(text):
    """The code with comments blanked out; lines keep their numbers."""
    blank = lambda match: re.sub(r"[^\n]", " ", match.group(0))
    return re.sub(r"//[^\n]*|/\*.*?\*/", blank, text, flags=re.DOTALL)


def may_include(layer, other):
    return layer == other or LAYERS[other] < LAYERS[layer]


def file_violations(path, text):
    """One sentence for each rule that a file (its path within src/) breaks."""
    layer = path.split("/")[0]
    if layer not in LAYERS:
        return [f"{path}: {layer} is no layer"]
    code = without_comments(text)
    found = []
    for number, line in enumerate(code.splitlines(), start=1):
        where = f"{path}:{number}:"
        include = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
        if include:
            found += include_violations(where, layer, path, *include.groups())
            continue
        if layer != "api":
            found += [f"{where} names the public record {record}" for record in RECORDS
                      if re.search(rf"\b{record}\b", line)]
            if path not in STORE and re.search(r"\bLibrary\s*\(", line):
                found.append(f"{where} names the store's instance")
    return found


def include_violations(where, layer, path, bracket, name):
    if bracket == "<":
        if name in PRINT_HEADERS and path != PRINT_ROUTINE:
            return [f"{where} includes <{name}>: only the print routine prints"]
        return []
    if name == "KineDll.h":
        return [f"{where} math knows no public header"] if layer == "math" else []
    target = name.split("/")[0]
    if "/" not in name or target not in LAYERS:
        return [f'{where} includes "{name}", which is in no layer']
    if not may_include(layer, target):
        return [f'{where} {layer} includes "{name}"']
    if name == "config/print.h" and layer in SILENT:
        return [f"{where} {layer} prints nothing"]
    return []


def main():
    source = pathlib.Path(sys.argv[1]) / "src"
    files = sorted(path for path in source.rglob("*") if path.suffix in (".h", ".cpp"))
    found = [violation for path in files
             for violation in file_violations(path.relative_to(source).as_posix(), path.read_text(encoding="utf-8"))]
    if not files:
        found.append("no source files")
    print("\n".join(found) or f"{len(files)} files in order")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

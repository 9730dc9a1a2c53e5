"""Draws the figures of the book again and compares them with those in docs/figures.

    python3 compare_figures.py LIBRARY

The same elements with the same words, and numbers that agree within 0.01: sines and cosines may round otherwise on
another machine. A figure that is too large for a page, missing or left over is a fault too.
"""

import os
import re
import sys
import tempfile
import xml.etree.ElementTree as xml

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
COMMITTED = os.path.join(ROOT, "docs", "figures")
TOLERANCE = 0.01 + 1e-9  # in units of the page, which the files give to two decimals; equal passes
LARGEST = 40_000  # bytes

NUMBER = re.compile(r"-?\d+(?:\.\d+)?")


def text_difference(a, b):
    """What differs between two texts with numbers in them, or None."""
    if NUMBER.split(a) != NUMBER.split(b):
        return f"'{a}' and '{b}'"
    for x, y in zip(NUMBER.findall(a), NUMBER.findall(b)):
        if not abs(float(x) - float(y)) <= TOLERANCE:
            return f"{x} and {y} in '{a}' and '{b}'"
    return None


def difference(committed, drawn):
    """The first difference between two figures, or None."""
    a, b = list(xml.fromstring(committed).iter()), list(xml.fromstring(drawn).iter())
    if len(a) != len(b):
        return f"{len(a)} elements and {len(b)}"
    for i, (old, new) in enumerate(zip(a, b)):
        where = f"element {i}, {old.tag.rpartition('}')[2]}: "
        if old.tag != new.tag or sorted(old.attrib) != sorted(new.attrib):
            return where + "another element"
        for name, value in old.attrib.items():
            if found := text_difference(value, new.attrib[name]):
                return f"{where}{name}: {found}"
        if found := text_difference((old.text or "").strip(), (new.text or "").strip()):
            return where + found
    return None


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def main(arguments):
    if len(arguments) != 1:
        sys.exit(__doc__)
    sys.path.insert(0, os.path.join(ROOT, "tools", "figures"))
    import draw

    faults = []
    committed = {name for name in os.listdir(COMMITTED) if name.endswith(".svg")}
    with tempfile.TemporaryDirectory() as folder:
        draw.main([arguments[0], folder])
        drawn = set(os.listdir(folder))
        faults += [f"docs/figures/{name} is drawn by no script" for name in sorted(committed - drawn)]
        faults += [f"docs/figures/{name} is missing" for name in sorted(drawn - committed)]
        for name in sorted(drawn & committed):
            path = os.path.join(COMMITTED, name)
            if found := difference(read(path), read(os.path.join(folder, name))):
                faults.append(f"docs/figures/{name} is not what the library draws: {found}")
            if os.path.getsize(path) > LARGEST:
                faults.append(f"docs/figures/{name} has {os.path.getsize(path)} bytes, more than {LARGEST}")
    if faults:
        sys.exit("\n".join(faults) + "\nDraw them again: cmake --build --preset release --target figures")
    print(f"{len(committed)} figures are what the library draws")


if __name__ == "__main__":
    main(sys.argv[1:])

"""Draws the figures of the book as SVG files, from the answers of the library.

    python3 draw.py LIBRARY [FOLDER] [NAME...]

LIBRARY is the built libKineDll.so; FOLDER is docs/figures when it is left out. With names, only these figures.
`cmake --build --preset release --target figures` builds the library and draws all of them.
"""

import importlib
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
DOCS = os.path.join(HERE, "..", "..", "docs", "figures")
FIGURES = ("arm", "frames", "held_work_object", "euler_angles", "postures", "quadrants", "dh_chain", "four_axis",
           "mechanical_units", "tool_calibration", "wobj_3p", "circle")


def main(arguments):
    from library import Library

    if not arguments:
        sys.exit(__doc__)
    library = Library(os.path.abspath(arguments[0]))
    folder = arguments[1] if len(arguments) > 1 else DOCS
    os.makedirs(folder, exist_ok=True)
    for name in arguments[2:] or FIGURES:
        svg = importlib.import_module(f"figure_{name}").draw(library)
        with open(os.path.join(folder, f"{name}.svg"), "w", encoding="utf-8", newline="\n") as file:
            file.write(svg)


if __name__ == "__main__":
    main(sys.argv[1:])

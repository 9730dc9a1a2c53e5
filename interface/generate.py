#!/usr/bin/env python3
"""Writes what the result codes of interface/result_codes.json say into every file that repeats it.

In each file the text stands between two lines that say "codes: begin" and "codes: end"; the rest of the file is
written by hand. With --check nothing is written: the command fails when a file says something else than the data, or
when data and header disagree.
"""

import argparse
import json
import pathlib
import re
import sys
import textwrap
from xml.sax import saxutils

ROOT = pathlib.Path(__file__).resolve().parent.parent


def quoted(text):
    """A string literal of C, C++, C# and Python alike."""
    return json.dumps(text, ensure_ascii=True)


def marked(text):
    """Names of the interface as Markdown shows them."""
    return re.sub(r"\b(Kine_\w+|KINE_\w+|SafeArea_Check|HeldByRobot|UFFix|UFrame|OFrame|Aom|Cfg4|lateralOffset|"
                  r"Word\[3\] = 1)", r"`\1`", text)


def markdown(codes):
    yield "| code | name | cause | what to do |"
    yield "|---|---|---|---|"
    for code in codes:
        cells = f"`{code['code']}`", f"`{code['name']}`", marked("; ".join(code["causes"])), marked(code["remedy"])
        yield f"| {' | '.join(cells)} |"


def literals(text, indent, end, joint=""):
    """The text as literals, one a line, that the language joins; `joint` stands behind all but the last."""
    pieces = textwrap.wrap(text, 100, drop_whitespace=False, break_on_hyphens=False)
    for piece in pieces[:-1]:
        yield f"{indent}{quoted(piece)}{joint}"
    yield f"{indent}{quoted(pieces[-1])}{end}"


def cpp(codes):
    for code in codes:
        yield f"    {{{code['code']}u, {quoted(code['name'])},"
        yield from literals("; ".join(code["causes"]), " " * 5, ",")
        yield from literals(code["remedy"], " " * 5, "},")


def python(codes):
    for code in codes:
        yield f"    {code['name']} = ("
        yield f"        {code['code']},"
        yield "        ("
        for cause in code["causes"]:
            yield from literals(cause, " " * 12, ",")
        yield "        ),"
        yield from literals(code["remedy"], " " * 8, ",")
        yield "    )"


def csharp_summary(text, indent):
    """A documentation comment, on one line where it fits."""
    start = f"{indent}/// "
    line = f"{start}<summary>{text}</summary>"
    if len(line) <= 120:
        return [line]
    return [f"{start}<summary>",
            *textwrap.wrap(text, 120, initial_indent=start, subsequent_indent=start, break_on_hyphens=False),
            f"{start}</summary>"]


def csharp(codes):
    indent = " " * 8
    for code in codes:
        yield from csharp_summary(saxutils.escape("; ".join(code["causes"])), indent)
        yield f"{indent}public const uint {code['name']} = {code['code']};"
    yield ""
    yield f"{indent}static readonly KineCode[] Codes ="
    yield f"{indent}{{"
    for code in codes:
        yield f"{indent}    new KineCode({code['name']}, {quoted(code['name'])},"
        yield from literals("; ".join(code["causes"]), indent + " " * 8, ",", joint=" +")
        yield from literals(code["remedy"], indent + " " * 8, "),", joint=" +")
    yield f"{indent}}};"


# Where the codes are repeated, and in which form.
WRITERS = {
    "docs/result_codes.md": markdown,
    "include/KineDll.hpp": cpp,
    "bindings/python/kinedll/_codes.py": python,
    "bindings/csharp/KineDll.cs": csharp,
}


def with_codes(text, lines):
    """The text with the lines between its two marks."""
    begin = re.search(r"^.*codes: begin.*\n", text, re.MULTILINE)
    end = re.search(r"^.*codes: end.*$", text, re.MULTILINE)
    if not begin or not end or end.start() < begin.end():
        raise ValueError('no lines "codes: begin" and "codes: end"')
    return text[:begin.end()] + "\n".join(lines) + "\n" + text[end.start():]


def contradictions(header, codes):
    """One sentence for each code that the header and the data do not say alike."""
    defined = dict(re.findall(r"^#define (KINE_(?:ERR_\w+|OK)) (0x[0-9A-F]+)u", header, re.MULTILINE))
    listed = {code["name"]: code["code"] for code in codes}
    return ([f"{name}: {value} in the header, {listed.get(name, 'nothing')} in the data"
             for name, value in defined.items() if listed.get(name) != value] +
            [f"{name}: not in the header" for name in listed if name not in defined] +
            [f"{code['name']}: no cause or no remedy" for code in codes
             if not all([code["causes"], *code["causes"], code["remedy"]])])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="write nothing, fail where something would be written")
    check = parser.parse_args().check
    codes = json.loads((ROOT / "interface/result_codes.json").read_text(encoding="ascii"))
    found = contradictions((ROOT / "include/KineDll.h").read_text(encoding="ascii"), codes)
    for name, writer in WRITERS.items():
        path = ROOT / name
        old = path.read_text(encoding="utf-8")
        new = with_codes(old, writer(codes))
        if new == old:
            continue
        if check:
            found.append(f"{name}: differs from interface/result_codes.json; run interface/generate.py")
        else:
            path.write_text(new, encoding="utf-8")
    print("\n".join(found) or f"{len(codes)} codes")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

"""What KineDll.h says: functions with their parameters and codes, records with their fields, and their layout.

Run as a command it writes the layout, the functions and the result codes as lines of words between tabs, which the
C# tests read.
"""

import argparse
import json
import pathlib
import re
from typing import NamedTuple


class Function(NamedTuple):
    """A function: its result, its parameters as (type, name), and the codes that its comment names."""
    result: str
    parameters: list
    codes: set


class Field(NamedTuple):
    """A field of a record; count is 1 for what is not an array."""
    type: str
    name: str
    count: int


def split_parameter(text):
    """('const KinePose*', 'pose') of 'const KinePose* pose'."""
    kind, name = re.fullmatch(r"(.+?[\s*])(\w+)", " ".join(text.split())).groups()
    return kind.strip(), name


def codes(comment):
    """The result codes that a comment names."""
    return set(re.findall(r"\bKINE_(?:ERR_\w+|SINGULAR)\b", comment))


def functions(header):
    """The functions by name."""
    pattern = r"/\*\*((?:(?!\*/).)*)\*/\s*KINE_API (\w+) KINE_CALL (\w+)\(([^)]*)\);"
    return {name: Function(result, [split_parameter(part) for part in parameters.split(",")], codes(comment))
            for comment, result, name, parameters in re.findall(pattern, header, re.DOTALL)}


def without_comments(text):
    return re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)


def records(header):
    """The fields of each record by its name, those of the union too."""
    return {name: [Field(kind, field, int(count or 1))
                   for kind, field, count in re.findall(r"(\w+) (\w+)(?:\[(\d+)\])?;", body)]
            for body, name in re.findall(r"typedef (?:struct|union) \w+\s*\{(.*?)\}\s*(\w+);",
                                         without_comments(header), re.DOTALL)}


def layout(header):
    """The sizes of the records, and the offsets of their fields, as the header asserts them."""
    sizes = {name: int(size) for name, size in re.findall(r"^KINE_ASSERT_SIZE\((\w+), (\d+)\);", header, re.MULTILINE)}
    offsets = {(record, field): int(offset) for record, field, offset in
               re.findall(r"^KINE_ASSERT_OFFSET\((\w+), (\w+), (\d+)\);", header, re.MULTILINE)}
    return sizes, offsets


def constants(header):
    """The numbers that the header names, by name."""
    return {name: int(value, 0) for name, value in
            re.findall(r"^#define (KINE_(?!ASSERT)\w+) (0x[0-9A-F]+|\d+)u", header, re.MULTILINE)}


def lines(header, meanings):
    """Everything the C# tests compare with."""
    sizes, offsets = layout(header)
    yield from (("size", record, size) for record, size in sizes.items())
    yield from (("offset", record, field, offset) for (record, field), offset in offsets.items())
    yield from (("function", name, len(function.parameters)) for name, function in functions(header).items())
    yield from (("constant", name, value) for name, value in constants(header).items())
    yield from (("code", int(code["code"], 0), code["name"], "; ".join(code["causes"]), code["remedy"])
                for code in meanings)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("header", type=pathlib.Path)
    parser.add_argument("codes", type=pathlib.Path)
    parser.add_argument("output", type=pathlib.Path)
    args = parser.parse_args()
    header = args.header.read_text(encoding="ascii")
    meanings = json.loads(args.codes.read_text(encoding="ascii"))
    args.output.write_text("".join("\t".join(map(str, line)) + "\n" for line in lines(header, meanings)),
                           encoding="ascii")


if __name__ == "__main__":
    main()

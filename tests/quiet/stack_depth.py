"""The most stack that a call of any export can need, from what the compiler says of every function.

    python3 stack_depth.py --exports FILE --library FILE --mathematics BYTES --output BYTES --loader BYTES OBJECT...

GCC writes frames and calls (-fcallgraph-info=su,da) beside each object file. The frames along every path of calls
are added up. A virtual call may reach every function that overrides the one named at the place of the call; a call
through a pointer every function whose address the library takes. Functions of the C library are not compiled here:
each is given an allowance, which stack_use_test.cpp compares with what they touch. The library itself is bound when it
is loaded; a C library that prints for the first time may be bound late, so that output is given one more allowance, for
the loader, which looks a function up when it is called for the first time.

Ends with 1 when a path needs more than the limit, when a function calls itself, directly or through others, has a
frame without a fixed bound, or calls something that is not understood.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
from collections import namedtuple

# title: name of the symbol, for a local one behind the name of its file. shown: as it is written in C++.
Function = namedtuple("Function", "title shown frame dynamic")
Call = namedtuple("Call", "caller callee place")

INDIRECT = "__indirect_call"
MATHEMATICS = {"acos", "asin", "atan2", "cos", "memchr", "memcpy", "memmove", "memset", "sin", "sincos", "sqrt"}
OUTPUT = {"fwrite", "fflush"}


def parse(text):
    """The functions and calls of one object file."""
    functions, calls = [], []
    for line in text.splitlines():
        fields = dict(re.findall(r'(\w+): "((?:[^"\\]|\\.)*)"', line))
        if line.startswith("node:") and "bytes (" in fields["label"]:
            parts = fields["label"].split(r"\n")
            frame, kind = re.fullmatch(r"(\d+) bytes \((.*)\)", parts[2]).groups()
            objects = int(parts[3].split()[0])
            # dynamic,bounded: moved in the middle of the function, never beyond the size that is given.
            is_fixed = kind in ("static", "dynamic,bounded") and objects == 0
            functions.append(Function(fields["title"], parts[0], int(frame), not is_fixed))
        elif line.startswith("edge:"):
            calls.append(Call(fields["sourcename"], fields["targetname"], fields.get("label", "")))
    return functions, calls


def name_called_at(place):
    """The name in front of the bracket at FILE:LINE:COLUMN, the place of a call."""
    path, line, column = place.rsplit(":", 2)
    text = pathlib.Path(path).read_text(encoding="utf-8").splitlines()[int(line) - 1][:int(column)]
    match = re.search(r"(\w+)\s*\($", text)
    return match.group(1) if match else None


def overriders(functions, name):
    """The virtual functions of a name, of every class."""
    pattern = re.compile(rf"^virtual [^(]*::{name}\(")
    return {function.title for function in functions if pattern.match(function.shown)}


def addresses_taken(disassembly, symbols, relocations):
    """The symbols whose addresses are loaded in the output of objdump -d, or lie in tables: readelf -s and -r."""
    loaded = set(re.findall(r"\blea\b.*# [0-9a-f]+ <([^+>]+)>", disassembly))
    tables = {int(value, 16) for value in re.findall(r"_RELATIVE\s+([0-9a-f]+)", relocations)}
    functions = re.findall(r"^\s*\d+: ([0-9a-f]+)\s+\d+ FUNC .* (\S+)$", symbols, re.MULTILINE)
    return loaded | {name for address, name in functions if int(address, 16) in tables}


class Graph:
    def __init__(self, functions, calls, allowances, taken=(), called_at=name_called_at):
        self.functions = {function.title: function for function in functions}
        self.allowances = allowances
        self.problems = [f"{function.shown}: its frame has no bound" for function in functions if function.dynamic]
        pointed_at = {function.title for function in functions
                      if function.title.split(":")[-1] in taken and not function.shown.startswith("virtual ")}
        self.callees = {title: set() for title in self.functions}
        for call in calls:
            targets = {call.callee}
            if call.callee == INDIRECT:
                targets = overriders(functions, called_at(call.place)) or pointed_at
                if not targets:
                    self.problems.append(f"{call.caller}: the call at {call.place} is not understood")
            for target in targets - set(self.functions) - set(allowances):
                self.problems.append(f"{call.caller} calls {target}, whose stack is not known")
            self.callees[call.caller] |= targets
        self.depths = {}

    def deepest(self, title, callers=()):
        """The most bytes from this function on, and the path that needs them."""
        if title in callers:
            self.problems.append("calls itself: " + " -> ".join([*callers[callers.index(title):], title]))
            return 0, ()
        if title not in self.functions:
            return self.allowances.get(title, 0), (title,)
        if title not in self.depths:
            below = max((self.deepest(callee, (*callers, title)) for callee in sorted(self.callees[title])),
                        default=(0, ()))
            self.depths[title] = (self.functions[title].frame + below[0], (title, *below[1]))
        return self.depths[title]


def check(graph, exports, limit):
    """The depths of the exports, deepest first, and one sentence for each thing that is not as it should be."""
    missing = [f"{name} is not among the functions" for name in exports if name not in graph.functions]
    depths = sorted(((*graph.deepest(name), name) for name in exports if name in graph.functions), reverse=True)
    too_deep = [f"{name} needs {depth} bytes of stack, {limit} are allowed" for depth, _, name in depths
                if depth > limit]
    return depths, list(dict.fromkeys(graph.problems + missing + too_deep))


def read(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"}).stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--limit", type=int, default=16 * 1024)
    parser.add_argument("--exports", type=pathlib.Path, required=True)
    parser.add_argument("--library", dest="shared_library", required=True)
    parser.add_argument("--mathematics", type=int, required=True)
    parser.add_argument("--output", type=int, required=True)
    parser.add_argument("--loader", type=int, required=True)
    parser.add_argument("objects", nargs="+", metavar="OBJECT")
    options = parser.parse_args()

    functions, calls = [], []
    for name in options.objects:
        path = pathlib.Path(name)
        found = parse(path.with_suffix(".ci").read_text(encoding="utf-8"))
        functions += found[0]
        calls += found[1]
    allowances = dict.fromkeys(MATHEMATICS, options.mathematics)
    allowances |= dict.fromkeys(OUTPUT, options.output + options.loader)
    file = options.shared_library
    taken = addresses_taken(read("objdump", "-d", "-w", "--no-show-raw-insn", file),
                            read("readelf", "-s", "-W", file), read("readelf", "-r", "-W", file))
    graph = Graph(functions, calls, allowances, taken)
    exports = options.exports.read_text(encoding="ascii").split()
    depths, problems = check(graph, exports, options.limit)

    silent = Graph(functions, calls, allowances | dict.fromkeys(OUTPUT, 0), taken)
    shown = {function.title: f"{function.frame:6} {function.shown}" for function in functions}
    for what, those in (("needs the most", depths), ("needs the most besides printing", check(silent, exports, 0)[0])):
        depth, path, name = those[0]
        print(f"{name} {what}: {depth} bytes of {options.limit}")
        for title in path:
            print(" ", shown.get(title, f"{allowances.get(title, 0):6} {title}, set aside"))
        own = sum(graph.functions[title].frame for title in path if title in graph.functions)
        print(f"{own} bytes of these are the library's own")
    print("\n".join(problems), end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

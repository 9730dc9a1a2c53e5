"""Reads what gcovr counted, prints what the tests do not reach and fails unless each of it is listed.

Reached means: the line ran, and each of its branches went both ways. A line that is not, and whose reason is
written in the list, passes; a listed line that is reached after all fails, so that the list never holds more than
is true. See unreached.txt for the form of an entry.
"""

import argparse
import json
import pathlib
import sys
from collections import Counter
from dataclasses import dataclass


@dataclass(frozen=True)
class Line:
    number: int
    count: int
    branches: tuple  # how often each was taken

    @property
    def is_reached(self):
        return self.count > 0 and all(self.branches)


def read_counts(document):
    """The counted lines of each file in gcovr's JSON."""
    files = {}
    for file in document["files"]:
        files[file["file"]] = [
            Line(line["line_number"], line["count"], tuple(branch["count"] for branch in line["branches"]))
            for line in file["lines"] if not line.get("gcovr/noncode")]
    return files


def read_list(text):
    """The entries (file, source line) of the list. Each has its reason in indented lines below it."""
    entries = []
    has_reason = True
    for row in text.splitlines():
        if not row.strip() or row.startswith("#"):
            continue
        if row[0].isspace():
            if not entries:
                raise ValueError(f"a reason without an entry: {row.strip()}")
            has_reason = True
            continue
        if not has_reason:
            raise ValueError(f"no reason: {entries[-1][1]}")
        file, separator, source = row.partition(": ")
        if not separator or not source.strip():
            raise ValueError(f"no source line: {row}")
        entries.append((file, source.strip()))
        has_reason = False
    if not has_reason:
        raise ValueError(f"no reason: {entries[-1][1]}")
    return entries


def judge(files, sources, entries):
    """What is wrong. One entry stands for one line: two equal lines need two entries."""
    unused = Counter(entries)
    problems = []
    for file, lines in sorted(files.items()):
        for line in lines:
            if line.is_reached:
                continue
            source = sources[file][line.number - 1].strip()
            if unused[(file, source)] > 0:
                unused[(file, source)] -= 1
            else:
                problems.append(f"not reached: {file}:{line.number}: {describe(line)}: {source}")
    for (file, source), count in sorted(unused.items()):
        problems += [f"listed, but reached or not there: {file}: {source}"] * count
    return problems


def describe(line):
    if line.count == 0:
        return "never run"
    missed = ", ".join(str(i + 1) for i, count in enumerate(line.branches) if count == 0)
    return f"never took branch {missed} of {len(line.branches)}"


def without_counts(files, compiled):
    """Source files of which nothing was counted: the figures would be too good without them."""
    return [f"not measured: {file}" for file in sorted(set(compiled) - set(files))]


@dataclass
class Totals:
    lines: int = 0
    reached_lines: int = 0
    branches: int = 0
    reached_branches: int = 0

    def add(self, lines):
        self.lines += len(lines)
        self.reached_lines += sum(line.count > 0 for line in lines)
        self.branches += sum(len(line.branches) for line in lines)
        self.reached_branches += sum(count > 0 for line in lines for count in line.branches)
        return self

    @property
    def is_complete(self):
        return self.reached_lines == self.lines and self.reached_branches == self.branches


def share(reached, total):
    # Cut, not rounded: only all is 100 %.
    percent = int(1000 * reached / total) / 10 if total else 100.0
    return f"{reached} of {total} ({percent:.1f} %)"


def table(files):
    """One row for each file that is not complete, then the sum of all."""
    rows = [(file, Totals().add(lines)) for file, lines in sorted(files.items())]
    total = Totals()
    for lines in files.values():
        total.add(lines)
    shown = [("file", "lines", "branches")]
    for name, sums in [row for row in rows if not row[1].is_complete] + [(f"all {len(files)} files", total)]:
        shown.append((name, share(sums.reached_lines, sums.lines),
                      share(sums.reached_branches, sums.branches)))
    widths = [max(len(row[column]) for row in shown) for column in range(3)]
    return ["  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in shown]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("counts", type=pathlib.Path, help="JSON report of gcovr")
    parser.add_argument("--list", type=pathlib.Path, required=True, help="what is not reached, with reasons")
    parser.add_argument("--root", type=pathlib.Path, required=True, help="of the project; src/ is in it")
    arguments = parser.parse_args()

    files = read_counts(json.loads(arguments.counts.read_text()))
    sources = {file: (arguments.root / file).read_text().splitlines() for file in files}
    compiled = [path.relative_to(arguments.root).as_posix() for path in arguments.root.glob("src/**/*.cpp")]
    problems = without_counts(files, compiled)
    problems += judge(files, sources, read_list(arguments.list.read_text()))
    print("\n".join(table(files)))
    if problems:
        print("\n" + "\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

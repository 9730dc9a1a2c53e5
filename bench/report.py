"""Makes Markdown of what the benchmarks found, and puts it into the documents when asked.

    python3 report.py RESULTS [--library libKineDll.so] [--write-docs REPOSITORY]

RESULTS holds facts.tsv, bars.tsv, contests.tsv (compare_kdl), instructions.tsv (count_instructions.py),
exports.json and inner.json (Google Benchmark); what is not there is left out. The report goes to RESULTS/speed.md;
its first part, the figures with their bars, is printed too.
"""

import argparse
import json
import math
import os
import re
import shutil
import subprocess
from collections import defaultdict

BEGIN, END = "<!-- speed: begin -->", "<!-- speed: end -->"
README_CONTEST = "Six-axis wrist arm"


def lines_of(directory, name):
    path = os.path.join(directory, name)
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        return [line.rstrip("\n").split("\t") for line in file]


def table(head, rows):
    """A Markdown table; all columns but the first are numbers."""
    text = ["| " + " | ".join(head) + " |", "|---|" + "---:|" * (len(head) - 1)]
    return "\n".join(text + ["| " + " | ".join(row) + " |" for row in rows])


def number(value):
    if math.isnan(value):
        return ""
    if value == 0 or 1e-3 <= abs(value) < 1e6:
        return f"{value:,.0f}" if value == round(value) or abs(value) >= 100 else f"{value:.3g}"
    mantissa, exponent = f"{value:.1e}".split("e")
    return f"{mantissa.removesuffix('.0')}e{int(exponent)}"


def duration(ns):
    if ns >= 1e6:
        return f"{ns / 1e6:.2f} ms"
    return f"{ns / 1e3:.2f} \u00b5s" if ns >= 1e3 else f"{ns:.0f} ns"


def verdict(value, must, aim, better):
    def meets(bar):
        return value >= bar if better == "higher" else value <= bar

    if math.isnan(must):
        return ""
    if not meets(must):
        return "**MISSED**"
    return "aim met" if not math.isnan(aim) and meets(aim) else "met"


def with_unit(value, unit):
    sign = "\u00d7" if unit == "x" else unit
    text = number(value)
    return text if not text or not sign else text + sign if sign in "\u00d7%" else f"{text} {sign}"


def bar_row(figure, value, unit, must, aim, better):
    value, must, aim = float(value), float(must), float(aim)
    return [figure, with_unit(value, unit), with_unit(must, unit), with_unit(aim, unit),
            verdict(value, must, aim, better)]


def instruction_rows(directory):
    return [bar_row("instructions per call: " + title, count, "", must, aim, "lower")
            for title, count, must, aim in lines_of(directory, "instructions.tsv")]


def output_of(*command):
    if shutil.which(command[0]) is None:
        return None
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


LOCK_OR_ALLOCATION = re.compile(r"\bU (pthread_|mtx_|sem_|futex|syscall|malloc|calloc|realloc|free|_Zn|_Zd)")


def forbidden_means(library):
    """Locked instructions and imported functions that lock or allocate."""
    imports = output_of("nm", "-D", "--undefined-only", library)
    code = output_of("objdump", "-d", "--no-show-raw-insn", library)
    if imports is None or code is None:
        return None
    return len(LOCK_OR_ALLOCATION.findall(imports)) + len(re.findall(r"\tlock\b", code))


def lock_rows(library):
    found = forbidden_means(library) if library else None
    if found is None:
        return []
    return [bar_row("locked instructions in the library, functions it imports to lock or allocate", found, "", 0, 0,
                    "lower")]


def facts_text(facts):
    known = dict(facts)
    if "Processor" not in known:
        return "**SKIPPED: the comparison with Orocos KDL was not built.**"
    text = (f"{known['Processor']}, {known['Date']}, {known['Compiler']}, `{known['Flags']}`. "
            f"{int(known['Targets']):,} targets, {known['Passes']} passes, {known['Clock']}.")
    for name, value in facts:
        if name in ("WRONG", "Skipped"):
            text += f"\n\n**{name}: {value}**"
    return text


CONTEST_HEAD = ["call", "p50", "p99", "p99.99", "success", "largest residual", "allocations"]


def contest_row(name, p50, p99, p9999, success, mm, rad, allocations):
    residual = "" if math.isnan(float(mm)) else f"{number(float(mm))} mm, {number(float(rad))} rad"
    return [name, duration(float(p50)), duration(float(p99)), duration(float(p9999)),
            f"{100 * float(success):.4g} %", residual, number(float(allocations))]


def contests(directory):
    """{title: rows}"""
    found = defaultdict(list)
    for title, *row in lines_of(directory, "contests.tsv"):
        found[title].append(contest_row(*row))
    return found


def benchmarks(directory, name):
    path = os.path.join(directory, name)
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        return [(entry["name"], entry["cpu_time"]) for entry in json.load(file)["benchmarks"]]


def exports_tables(directory):
    """CALL/ARM/CELL as one table per group of calls: arms and cells down, calls across."""
    times = defaultdict(dict)
    calls = defaultdict(list)
    for name, ns in benchmarks(directory, "exports.json"):
        call, arm, cell = name.split("/")
        group = "Forward and inverse" if "JointTo" in call or "ToJoint" in call else "Jog, alignment, calibration"
        times[group, f"{arm}, {cell}"][call] = ns
        if call not in calls[group]:
            calls[group].append(call)
    for group, columns in calls.items():
        rows = [[setting] + [duration(of_setting[call]) if call in of_setting else "" for call in columns]
                for (its_group, setting), of_setting in times.items() if its_group == group]
        yield group, table(["arm, cell"] + [call.removeprefix("Kine_") for call in columns], rows)


def report(directory, library):
    facts = lines_of(directory, "facts.tsv")
    bars = [bar_row(*row) for row in lines_of(directory, "bars.tsv")]
    bars += instruction_rows(directory) + lock_rows(library)
    first = facts_text(facts) + "\n\n" + table(["figure", "measured", "must", "aim", "bar"], bars)

    parts = [first]
    if os.path.exists(os.path.join(directory, "latency.svg")):
        parts.append("![Latency distributions](latency.svg)")
    for title, rows in contests(directory).items():
        parts.append(f"### {title}\n\n" + table(CONTEST_HEAD, rows))
    for group, text in exports_tables(directory):
        parts.append(f"### {group}, mean time of a call\n\n" + text)
    steps = benchmarks(directory, "inner.json")
    if steps:
        rows = [[name, duration(ns)] for name, ns in steps]
        parts.append("### Inner steps, mean time\n\n" + table(["step", "time"], rows))
    return first, "\n\n".join(parts)


def readme_part(directory):
    rows = [row[:5] for row in contests(directory)[README_CONTEST]]
    return facts_text(lines_of(directory, "facts.tsv")) + "\n\n" + table(CONTEST_HEAD[:5], rows)


def replaced(document, text):
    """The document with the text between its marks."""
    before, rest = document.split(BEGIN)
    _, after = rest.split(END)
    return f"{before}{BEGIN}\n{text}\n{END}{after}"


def write_section(path, text):
    with open(path, encoding="utf-8") as file:
        document = file.read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(replaced(document, text))


def write_docs(directory, repository, text):
    write_section(os.path.join(repository, "docs", "speed.md"), text)
    write_section(os.path.join(repository, "README.md"), readme_part(directory))
    shutil.copy(os.path.join(directory, "latency.svg"), os.path.join(repository, "docs", "latency.svg"))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("results")
    parser.add_argument("--library", dest="measured")
    parser.add_argument("--write-docs", metavar="REPOSITORY")
    options = parser.parse_args()

    first, whole = report(options.results, options.measured)
    with open(os.path.join(options.results, "speed.md"), "w", encoding="utf-8") as file:
        file.write(whole + "\n")
    print(first)
    if options.write_docs:
        write_docs(options.results, options.write_docs, whole)


if __name__ == "__main__":
    main()

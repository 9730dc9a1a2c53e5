"""Checks what the loader is told about a shared library: its name and the links to it, the libraries it needs, and
that nothing of it is writable and executable at once, or writable longer than loading takes.
"""

import argparse
import pathlib
import re
import subprocess
import sys

# The C library and its mathematics.
ALLOWED = re.compile(r"^(libc\.so\.\d+|libm\.so\.\d+)$")
# Entries that would send the loader elsewhere, or have it write into code.
UNWANTED = ("RPATH", "RUNPATH", "TEXTREL")


def parse_dynamic(text):
    """The dynamic entries in the output of readelf -d: tag and value, brackets and leading words dropped."""
    entries = re.findall(r"^ *0x[0-9a-f]+ \((\w+)\)[ \t]*([^\n]*)$", text, flags=re.MULTILINE)
    return [(tag, re.sub(r"^[^\[]*\[(.*)\]$", r"\1", value.strip())) for tag, value in entries]


def parse_segments(text):
    """The program headers in the output of readelf -l -W: type and flags, such as "RW"."""
    rows = re.findall(r"^ *(\w+)(?: +0x[0-9a-f]+){5} ([R ][W ][E ]) +0x[0-9a-f]+ *$", text, flags=re.MULTILINE)
    return [(kind, flags.replace(" ", "")) for kind, flags in rows]


def name_problems(dynamic, expected_soname):
    sonames = [value for tag, value in dynamic if tag == "SONAME"]
    return [] if sonames == [expected_soname] else [f"SONAME is {sonames}, not {expected_soname}"]


def needed_problems(dynamic):
    needed = [value for tag, value in dynamic if tag == "NEEDED"]
    found = [f"needs {name}" for name in needed if not ALLOWED.match(name)]
    return found if needed else ["no needed library was found: not even the C library"]


def hardening_problems(dynamic, segments):
    """Sentences on segments and on what the loader does late."""
    found = [f"has an entry {tag}" for tag, _ in dynamic if tag in UNWANTED]
    bound_at_once = any((tag == "FLAGS" and "BIND_NOW" in value) or (tag == "FLAGS_1" and "NOW" in value.split())
                        for tag, value in dynamic)
    if not bound_at_once:
        found.append("looks functions up at their first call, not when loaded")
    if any("TEXTREL" in value for tag, value in dynamic if tag == "FLAGS"):
        found.append("has code that the loader writes to")
    found += [f"{kind} is writable and executable" for kind, flags in segments if "W" in flags and "E" in flags]
    stacks = [flags for kind, flags in segments if kind == "GNU_STACK"]
    if stacks != ["RW"]:
        found.append(f"GNU_STACK is {stacks}, not RW: the stack of every program with it would be executable")
    if not any(kind == "GNU_RELRO" for kind, _ in segments):
        found.append("no GNU_RELRO: what the loader fills in stays writable")
    return found


def link_problems(library, soname, version):
    """The file is named for its full version; the two shorter names beside it lead to it."""
    development_name = soname[:soname.index(".so") + 3]
    full_name = f"{development_name}.{version}"
    found = []
    if library.resolve().name != full_name:
        found.append(f"the file is {library.resolve().name}, not {full_name}")
    for name in (soname, development_name):
        if (library.parent / name).resolve() != library.resolve():
            found.append(f"{name} does not lead to {library.name}")
    if not full_name.startswith(soname + "."):
        found.append(f"version {version} does not begin with that of {soname}")
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--soname", required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("shared_library", type=pathlib.Path)
    arguments = parser.parse_args()
    output = subprocess.run([arguments.readelf, "-d", "-l", "-W", arguments.shared_library],
                            check=True, capture_output=True, text=True, env={"LC_ALL": "C"}).stdout
    dynamic = parse_dynamic(output)
    found = (name_problems(dynamic, arguments.soname) + needed_problems(dynamic) +
             hardening_problems(dynamic, parse_segments(output)) +
             link_problems(arguments.shared_library, arguments.soname, arguments.version))
    print("\n".join(found) or f"{arguments.soname}, C library only, nothing writable and executable")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

"""Checks what a shared library can write to once it is loaded: the store, and what the C runtime brings along.

Everything else with static storage is constant, or lies in the part that the loader makes read-only after
relocation (tables of virtual functions).
"""

import argparse
import re
import subprocess
import sys
from collections import namedtuple

Section = namedtuple("Section", "name address size alignment flags")
Symbol = namedtuple("Symbol", "name address size kind section")

# library, in an unnamed namespace; some compilers mark it as local.
STORE = re.compile(r"^_ZN4kine12_GLOBAL__N_1L?7libraryE$")

# What the C runtime puts into every shared library, with the bytes it takes.
RUNTIME = {
    "__dso_handle": 8,  # the library's own address, by which destructors are registered; never written
    "completed.0": 1,  # whether the destructors have run; written when the library is unloaded
}

# Addresses of imported functions. The loader writes them, at the start or at the first call of each.
LOADERS_OWN = (".got.plt",)


def parse_sections(text):
    """The sections in the output of readelf -SW."""
    pattern = re.compile(r"\[\s*\d+\]\s+(\S+)\s+\S+\s+([0-9a-f]+)\s+[0-9a-f]+\s+([0-9a-f]+)\s+\S+"
                         r"\s+(\w*)\s+\d+\s+\d+\s+(\d+)$")
    found = (pattern.search(line.rstrip()) for line in text.splitlines())
    return [Section(m[1], int(m[2], 16), int(m[3], 16), int(m[5]), m[4]) for m in found if m]


def parse_relro(text):
    """Begin and end of what the loader makes read-only, in the output of readelf -lW."""
    match = re.search(r"GNU_RELRO\s+0x[0-9a-f]+ 0x([0-9a-f]+) 0x[0-9a-f]+ 0x[0-9a-f]+ 0x([0-9a-f]+)", text)
    if match is None:
        return 0, 0
    begin = int(match[1], 16)
    return begin, begin + int(match[2], 16)


def parse_symbols(text, sections):
    """The objects in the output of readelf -sW, each with the section that it lies in."""
    symbols = set()
    for line in text.splitlines():
        fields = line.split()
        if len(fields) < 8 or not fields[0].rstrip(":").isdigit() or not fields[6].isdigit():
            continue
        address, size, kind = int(fields[1], 16), int(fields[2], 0), fields[3]
        home = [section.name for section in sections
                if section.address <= address < section.address + section.size and section.address != 0]
        symbols.add(Symbol(fields[7], address, size, kind, home[0] if home else ""))
    return symbols


def problems(sections, relro, symbols):
    """One sentence for each thing that could be written and should not be there."""
    found = []
    stores = 0
    for section in sections:
        end = section.address + section.size
        if "W" not in section.flags or section.size == 0 or section.name in LOADERS_OWN:
            continue
        if "T" in section.flags:
            found.append(f"{section.name}: {section.size} bytes for every thread")
            continue
        if relro[0] <= section.address and end <= relro[1]:
            continue
        objects = 0
        named = 0
        for symbol in sorted(symbols):
            if symbol.section != section.name or symbol.kind not in ("OBJECT", "NOTYPE"):
                continue
            size = RUNTIME.get(symbol.name, symbol.size)
            objects += size != 0
            named += size
            if STORE.match(symbol.name):
                stores += 1
            elif symbol.size != 0 and symbol.name not in RUNTIME:
                found.append(f"{section.name}: {symbol.name}, {symbol.size} bytes")
        # Between objects lie gaps, each less than an alignment. An object without a name would be one more.
        if section.size - named >= max(objects, 1) * max(section.alignment, 8):
            found.append(f"{section.name}: {section.size - named} bytes without a name")
    if stores != 1:
        found.append(f"{stores} stores")
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("shared_library")
    arguments = parser.parse_args()

    def read(option):
        return subprocess.run([arguments.readelf, option, "-W", arguments.shared_library], check=True,
                              capture_output=True, text=True, env={"LC_ALL": "C"}).stdout

    sections = parse_sections(read("-S"))
    found = problems(sections, parse_relro(read("-l")), parse_symbols(read("-s"), sections))
    print("\n".join(found) or "writable: the store and the C runtime's own")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

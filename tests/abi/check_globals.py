"""Checks that the library's own code has one writable global object: the store."""

import argparse
import re
import subprocess
import sys

NAMESPACE = "_ZN4kine"
# library, in an unnamed namespace; some compilers mark it as local.
STORE = re.compile(r"^_ZN4kine12_GLOBAL__N_1L?7libraryE$")
WRITABLE = set("bBdDgGsSuC")


def parse_nm(text):
    """Name and type of each symbol in the output of nm -P."""
    fields = (line.split() for line in text.splitlines())
    return [(field[0], field[1]) for field in fields if len(field) >= 2]


def writable_globals(symbols):
    """Writable objects of the library's namespace, and of functions in it. Tables of virtual functions have
    other prefixes and are read-only once the library is loaded."""
    own = (name for name, kind in symbols if kind in WRITABLE)
    return {name for name in own if name.startswith((NAMESPACE, "_ZZN4kine", "_ZGVZN4kine", "_ZGVN4kine"))}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("shared_library")
    arguments = parser.parse_args()
    output = subprocess.run([arguments.nm, "-P", "--defined-only", arguments.shared_library],
                            check=True, capture_output=True, text=True).stdout
    found = writable_globals(parse_nm(output))
    if len(found) == 1 and STORE.match(next(iter(found))):
        return 0
    print("writable globals:", ", ".join(sorted(found)) or "none, where the store should be")
    return 1


if __name__ == "__main__":
    sys.exit(main())

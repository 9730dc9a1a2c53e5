"""Checks what KINE_API and KINE_CALL become on each kind of target, with the preprocessor alone: whether a function
is exported or imported, and how it is called.
"""

import argparse
import re
import subprocess
import sys

ELF = '__attribute__((visibility("default")))'
WINDOWS = ["-D_WIN32"]
OTHER = ["-U_WIN32"]

# What is defined, then KINE_API and KINE_CALL.
CASES = (
    (OTHER, ELF, ""),
    (OTHER + ["-DKINE_BUILDING_LIBRARY"], ELF, ""),
    (OTHER + ["-DKINE_STATIC"], ELF, ""),
    (OTHER + ["-U__GNUC__"], "", ""),
    (WINDOWS, "__declspec(dllimport)", "__cdecl"),
    (WINDOWS + ["-DKINE_BUILDING_LIBRARY"], "__declspec(dllexport)", "__cdecl"),
    (WINDOWS + ["-DKINE_STATIC"], "", "__cdecl"),
    (WINDOWS + ["-DKINE_STATIC", "-DKINE_BUILDING_LIBRARY"], "__declspec(dllexport)", "__cdecl"),
    (WINDOWS + ["-U__GNUC__"], "__declspec(dllimport)", "__cdecl"),
)

SOURCE = '#include "KineDll.h"\napi<KINE_API> call<KINE_CALL>\n'


def parse_expansion(text):
    """KINE_API and KINE_CALL of the preprocessed SOURCE."""
    match = re.search(r"^api<([^>]*)> call<([^>]*)>", text, flags=re.MULTILINE)
    return tuple(part.strip() for part in match.groups()) if match else None


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--include", required=True)
    arguments = parser.parse_args()
    # Freestanding: the compiler's own headers, which do not mind what is defined.
    command = [arguments.compiler, "-E", "-P", "-ffreestanding", "-x", "c", f"-I{arguments.include}", "-"]
    failures = 0
    for options, api, call in CASES:
        output = subprocess.run(command[:1] + options + command[1:], input=SOURCE, check=True, capture_output=True,
                                text=True).stdout
        found = parse_expansion(output)
        if found != (api, call):
            print(f"{' '.join(options)}: KINE_API and KINE_CALL are {found}, not {(api, call)}")
            failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

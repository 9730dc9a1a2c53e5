"""Checks the name of a shared library and that it needs nothing but the C library."""

import argparse
import re
import subprocess
import sys

# The C library, its mathematics and the loader.
ALLOWED = re.compile(r"^(libc\.so\.\d+|libm\.so\.\d+|ld-linux[-\w]*\.so\.\d+|ld64\.so\.\d+)$")


def parse_dynamic(text):
    """SONAME entries and NEEDED entries of the output of readelf -d."""
    entries = re.findall(r"\((\w+)\)[^\[\n]*\[([^\]]*)\]", text)
    return [value for tag, value in entries if tag == "SONAME"], [value for tag, value in entries if tag == "NEEDED"]


def problems(soname, needed, expected_soname):
    """One sentence for each thing that is not as it should be."""
    found = []
    if soname != [expected_soname]:
        found.append(f"SONAME is {soname}, not {expected_soname}")
    if not needed:
        found.append("no needed library was found: not even the C library")
    found += [f"needs {name}" for name in needed if not ALLOWED.match(name)]
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--soname", required=True)
    parser.add_argument("shared_library")
    arguments = parser.parse_args()
    output = subprocess.run([arguments.readelf, "-d", "-W", arguments.shared_library],
                            check=True, capture_output=True, text=True, env={"LC_ALL": "C"}).stdout
    found = problems(*parse_dynamic(output), arguments.soname)
    print("\n".join(found) or f"{arguments.soname}, C library only")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

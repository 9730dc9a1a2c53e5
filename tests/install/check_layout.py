"""Installs into a folder with a space in its name, checks what came there, and moves it.

  check_layout.py --cmake CMAKE --readelf READELF --source DIR --build DIR --prefix DIR [--libdir lib]

The files are those that layout.py names, in all and by component. None names a folder of this build, and the library
holds no debug information. The other tests use the folder where it was moved to: PREFIX.
"""

import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

import layout


def naming(folder, places):
    """One sentence for each file that names one of the places."""
    found = []
    for name in sorted(layout.found(folder)):
        path = pathlib.Path(folder, name)
        if path.is_file() and not path.is_symlink():
            content = path.read_bytes()
            found += [f"{name} names {place}" for place in places if str(place).encode() in content]
    return found


def debug_sections(text):
    """The sections of debug information in the output of readelf -S -W."""
    return [word for line in text.splitlines() for word in line.split() if word.startswith((".debug", ".zdebug"))]


def install(cmake, build, prefix, *options):
    subprocess.run([cmake, "--install", build, "--prefix", prefix, *options], check=True, stdout=subprocess.DEVNULL)


def component_problems(cmake, build, components):
    found = []
    with tempfile.TemporaryDirectory() as folder:
        for component, expected in components.items():
            install(cmake, build, f"{folder}/{component}", "--component", component)
            found += [f"{component}: {problem}"
                      for problem in layout.differences(layout.found(f"{folder}/{component}"), expected)]
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--readelf", required=True)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--prefix", type=pathlib.Path, required=True)
    parser.add_argument("--libdir", default="lib")
    options = parser.parse_args()

    shutil.rmtree(options.prefix, ignore_errors=True)
    with tempfile.TemporaryDirectory() as folder:
        first = pathlib.Path(folder, "first place")
        install(options.cmake, options.build, first)
        shutil.move(first, options.prefix)

    library = options.prefix / options.libdir / layout.LINK_NAME
    sections = subprocess.run([options.readelf, "-S", "-W", library], check=True, capture_output=True,
                              text=True).stdout
    expected = layout.everything(options.source, options.libdir)
    found = layout.differences(layout.found(options.prefix), expected)
    found += naming(options.prefix, (options.source, options.build, first))
    found += [f"the library has {section}" for section in debug_sections(sections)]
    found += component_problems(options.cmake, options.build, layout.components(options.source, options.libdir))
    print("\n".join(found) or f"{len(expected)} files")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

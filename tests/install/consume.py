"""Builds and runs programs against an installed library, each in a way of its own.

  consume.py WAY --prefix DIR [--libdir lib] [--compiler CC] [--cxx CXX] [--exports FILE]

A way is a folder of consumers/: its files and the program are copied to an empty folder, where its build.sh is run.
docs/install.md shows these files. Nothing but the prefix says where the library is.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
CONSUMERS = pathlib.Path(__file__).parent / "consumers"
WAYS = ("find_package", "pkg_config", "dlopen", "examples", "versions")
# Programs that a way needs besides a compiler, CMake and Ninja.
NEEDED = {"pkg_config": ("pkg-config", "make")}
# What a developer has set must not help.
ELSEWHERE = ("CMAKE_PREFIX_PATH", "KineDll_DIR", "KineDll_ROOT", "KINEDLL_ROOT", "PKG_CONFIG_PATH",
             "PKG_CONFIG_LIBDIR", "LD_LIBRARY_PATH", "LIBRARY_PATH", "CPATH", "C_INCLUDE_PATH", "CPLUS_INCLUDE_PATH",
             "CFLAGS", "CXXFLAGS", "LDFLAGS", "MAKEFLAGS", "MAKELEVEL")


def environment(**more):
    """The caller's, without what leads to a library, or chooses how to build."""
    return {name: value for name, value in os.environ.items() if name not in ELSEWHERE} | more


def run(*command, **more):
    subprocess.run(command, check=True, **{"env": environment(), **more})


def copy(way, folder):
    """The consumer's files and the program, side by side as a user has them."""
    for path in (CONSUMERS / "cell.c", *(CONSUMERS / way).iterdir()):
        shutil.copy(path, folder)


def script_for(text, libdir):
    """The script for an installation whose libraries are in libdir."""
    return text.replace("$KINEDLL/lib/", f"$KINEDLL/{libdir}/").replace('$KINEDLL/lib"', f'$KINEDLL/{libdir}"')


def missing(way):
    return [program for program in NEEDED.get(way, ()) if not shutil.which(program)]


def consume(way, prefix, libdir="lib", compiler="cc", cxx="c++", exports=None):
    with tempfile.TemporaryDirectory() as folder:
        copy(way, folder)
        if exports:
            shutil.copy(exports, folder)
        script = script_for((CONSUMERS / way / "build.sh").read_text(encoding="ascii"), libdir)
        run("bash", "-euc", script, cwd=folder,
            env=environment(KINEDLL=str(prefix), CC=compiler, CXX=cxx, CMAKE_GENERATOR="Ninja"))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("way", choices=WAYS)
    parser.add_argument("--prefix", type=pathlib.Path, required=True)
    parser.add_argument("--libdir", default="lib")
    parser.add_argument("--compiler", default="cc")
    parser.add_argument("--cxx", default="c++")
    parser.add_argument("--exports", type=pathlib.Path)
    options = parser.parse_args()
    if missing(options.way):
        print(f"SKIPPED: {' AND '.join(missing(options.way))} MISSING", file=sys.stderr)
        return SKIPPED
    consume(options.way, options.prefix, options.libdir, options.compiler, options.cxx, options.exports)
    return 0


if __name__ == "__main__":
    sys.exit(main())

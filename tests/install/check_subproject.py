"""Takes the library's sources into another project, by add_subdirectory and by FetchContent, and builds and runs it.

  check_subproject.py --source DIR --build DIR [--cmake CMAKE] [--compiler CC] [--cxx CXX]

The other project keeps its variables, options, targets and tests (consumers/no_leaks.cmake). Its own sources are
compiled with its own flags, the library's as they are alone, in BUILD, whose object files are taken instead of making
them again. The library is installed only when asked for.
"""

import argparse
import json
import pathlib
import shlex
import subprocess
import sys
import tempfile

import consume
import layout

LAUNCHER = pathlib.Path(__file__).parent / "reuse_object.sh"
OBJECTS = "CMakeFiles/kinedll_core.dir"
# Options with a word behind them that names an output.
OUTPUTS = ("-o", "-MF", "-MT")
# Whether a warning is an error changes no object file; the other project decides.
WITHOUT_EFFECT = ("-Werror",)


def read(build):
    return json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))


def without_outputs(command):
    words, kept = shlex.split(command), []
    while words:
        word = words.pop(0)
        if word in OUTPUTS:
            words.pop(0)
        else:
            kept.append(word)
    return kept


def own_flags(commands, source):
    """The flags with which a source file is compiled, beside input and output."""
    found = [entry["command"] for entry in commands if pathlib.Path(entry["file"]).name == source]
    if len(found) != 1:
        return [f"{len(found)} commands for {source}"]
    return [word for word in without_outputs(found[0])[1:] if word != "-c" and not word.endswith("/" + source)]


def compiled_otherwise(commands, alone):
    """One sentence for each source that only one build compiles, or both with different words."""
    def by_file(entries):
        return {entry["file"]: [word for word in without_outputs(entry["command"]) if word not in WITHOUT_EFFECT]
                for entry in entries}
    here, there = by_file(commands), by_file(alone)
    found = [f"{name} is compiled by one build only" for name in sorted(here.keys() ^ there.keys())]
    return found + [f"{name} is compiled with {sorted(set(here[name]) - set(there[name]))}, alone with "
                    f"{sorted(set(there[name]) - set(here[name]))}"
                    for name in sorted(here.keys() & there.keys()) if here[name] != there[name]]


def of_the_library(commands, source):
    """The entries of compile_commands.json for what the library is made of."""
    return [entry for entry in commands
            if entry["file"].startswith(f"{source}/src/") and "/kinedll_core.dir/" in entry["command"]]


def take_in(options, way, folder, *more):
    """Configures, builds, runs and installs. What is wrong, in sentences."""
    consume.copy(way, folder)
    build, prefix = folder / "build", folder / "prefix"
    alone = of_the_library(read(options.build), options.source)
    result = subprocess.run(
        [options.cmake, "-S", folder, "-B", build, "-G", "Ninja", f"-DKINEDLL_SOURCES={options.source}",
         f"-DCMAKE_C_COMPILER={options.compiler}", f"-DCMAKE_CXX_COMPILER={options.cxx}",
         f"-DCMAKE_CXX_COMPILER_LAUNCHER=sh;{LAUNCHER};{options.source};{options.build / OBJECTS}",
         f"-DCMAKE_PROJECT_cell_INCLUDE={consume.CONSUMERS / 'no_leaks.cmake'}",
         "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_C_FLAGS_RELEASE=",
         "-DCMAKE_INSTALL_LIBDIR=lib", *more],
        check=False, capture_output=True, text=True, env=consume.environment())
    if result.returncode != 0 or "checked for leaks" not in result.stdout:
        return [result.stdout + result.stderr]

    commands = read(build)
    flags = own_flags(commands, "cell.c")
    found = [] if flags == [f"-I{options.source}/include"] else [f"cell.c is compiled with {flags}"]
    found += compiled_otherwise(of_the_library(commands, options.source), alone)
    if found:
        return found

    consume.run(options.cmake, "--build", build, stdout=subprocess.DEVNULL)
    consume.run(build / "cell")
    consume.run(options.cmake, "--install", build, "--prefix", prefix, stdout=subprocess.DEVNULL)
    expected = layout.of_the_library(options.source) if "-DKINE_INSTALL=ON" in more else set()
    return [f"installed: {problem}" for problem in layout.differences(layout.found(prefix), expected)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--cmake", default="cmake")
    parser.add_argument("--compiler", default="cc")
    parser.add_argument("--cxx", default="c++")
    options = parser.parse_args()
    found = []
    for way, more in (("add_subdirectory", ()), ("fetch_content", ("-DKINE_INSTALL=ON",))):
        with tempfile.TemporaryDirectory() as folder:
            found += [f"{way}: {problem}" for problem in take_in(options, way, pathlib.Path(folder), *more)]
    print("\n".join(found) or "taken in twice")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

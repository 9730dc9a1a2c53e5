"""The files that an installation consists of, by component: those named here, and the pages and examples that the
source tree holds.
"""

import pathlib

LINK_NAME = "libKineDll.so"
SONAME = LINK_NAME + ".1"
FULL_NAME = LINK_NAME + ".1.0.0"
PAGES = (".md", ".svg", ".png")


def runtime(libdir="lib"):
    return {f"{libdir}/{SONAME}", f"{libdir}/{FULL_NAME}"}


def development(libdir="lib"):
    cmake = ("KineDllConfig.cmake", "KineDllConfigVersion.cmake", "KineDllTargets.cmake",
             "KineDllTargets-release.cmake")
    return ({"include/KineDll.h", "include/KineDll.hpp", f"{libdir}/{LINK_NAME}", f"{libdir}/pkgconfig/kinedll.pc"} |
            {f"{libdir}/cmake/KineDll/{name}" for name in cmake})


def documentation(source, docdir="share/doc/KineDll"):
    """Without the license, which goes where the library goes."""
    source = pathlib.Path(source)
    pages = {path.relative_to(source).as_posix() for path in (source / "docs").rglob("*") if path.suffix in PAGES}
    own = {"README.md", "CHANGELOG.md", "examples/CMakeLists.txt"}
    return {f"{docdir}/{name}" for name in pages | own | examples(source) | bindings(source)}


def examples(source):
    """The programs, in a folder for each language."""
    return {path.relative_to(source).as_posix() for path in source.glob("examples/*/*") if path.is_file()}


def bindings(source):
    """The C# file and what there is to read; the Python package comes as a wheel."""
    found = (*source.glob("bindings/*/README.md"), *source.glob("bindings/csharp/KineDll.cs"))
    return {path.relative_to(source).as_posix() for path in found}


def program(source, manual="kine.1"):
    """The program, and what it comes with."""
    source = pathlib.Path(source)
    cells = {path.name for path in source.glob("tools/kine/cells/*") if path.suffix in (".json", ".csv")}
    return ({"bin/kine", f"share/man/man1/{manual}", "share/bash-completion/completions/kine",
             "share/zsh/vendor-completions/_kine", "share/fish/vendor_completions.d/kine.fish",
             "share/kinedll/cell/cell.schema.json"} | {f"share/kinedll/cells/{name}" for name in cells})


def components(source, libdir="lib"):
    """What each component of `cmake --install` holds."""
    return {"Runtime": runtime(libdir) | {"share/doc/KineDll/LICENSE"}, "Development": development(libdir),
            "Documentation": documentation(source), "Program": program(source)}


def everything(source, libdir="lib"):
    return set().union(*components(source, libdir).values())


def of_the_library(source, libdir="lib"):
    """What another project that takes the library in installs with its own."""
    return everything(source, libdir) - program(source)


def debian(source, architecture):
    """What each Debian package holds, below the root."""
    libdir = f"lib/{architecture}"
    packages = {"libkinedll1": runtime(libdir),
                "libkinedll-dev": development(libdir) | documentation(source, "share/doc/libkinedll-dev"),
                "kinedll-tools": program(source, "kine.1.gz")}
    for name, files in packages.items():
        files |= {f"share/doc/{name}/copyright", f"share/doc/{name}/changelog.Debian.gz"}
    return {name: {f"usr/{path}" for path in files} for name, files in packages.items()}


def found(folder):
    """The files and links below a folder, and the folders that hold nothing."""
    folder = pathlib.Path(folder)
    return {path.relative_to(folder).as_posix() for path in folder.rglob("*")
            if path.is_symlink() or not path.is_dir() or not any(path.iterdir())}


def differences(there, expected):
    """One sentence for each file on one side only."""
    return ([f"not expected: {name}" for name in sorted(there - expected)] +
            [f"missing: {name}" for name in sorted(expected - there)])

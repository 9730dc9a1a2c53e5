"""Makes the packages and checks what is in them, and that they work where they are unpacked or installed.

  check_packages.py pack --packages DIR --cpack CPACK --build DIR
  check_packages.py archives | debian_contents | debian_scratch_root
      --packages DIR --source DIR --architecture TRIPLET --readelf READELF [--libdir lib] [--cmake CMAKE]
      [--compiler CC]

The scratch root holds a package database of its own, in which only the libraries of the compiler are installed. It takes
root, which owns the files; without, the check is skipped (77).
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import consume
import layout

RUNTIME, DEVELOPMENT, PROGRAM = "libkinedll1", "libkinedll-dev", "kinedll-tools"
FIELDS = {
    RUNTIME: {"Section": "libs", "Depends": r"libc6 \(>= 2\.\d+\)"},
    DEVELOPMENT: {"Section": "libdevel", "Depends": r"libkinedll1 \(= 1\.0\.0-1\)"},
    PROGRAM: {"Section": "science", "Depends": r"libkinedll1 \(= 1\.0\.0-1\), libc6 \(>= [\d.]+\), "
                                               r"libgcc-s1 \(>= [\d.]+\), libstdc\+\+6 \(>= [\d.]+\)"},
}
FIELDS_OF_ALL = {"Version": r"1\.0\.0-1", "Priority": "optional", "Architecture": r"\w+",
                  "Maintainer": r"KineDll developers <kinedll@example\.org>", "Installed-Size": r"[1-9]\d*",
                  "Description": r"kinematics of industrial robot arms\n(?: \S.*\n?)+"}
CONTROL_FILES = {RUNTIME: {"control", "md5sums", "shlibs", "triggers"}, DEVELOPMENT: {"control", "md5sums"},
                 PROGRAM: {"control", "md5sums"}}
CONTROL_TEXTS = {"shlibs": "libKineDll 1 libkinedll1 (>= 1.0.0)", "triggers": "activate-noawait ldconfig"}

# What there is in the package database.
SYSTEM_LIBRARIES = ("libc6", "libgcc-s1", "libstdc++6")
STATUS = """Package: {name}
Status: install ok installed
Maintainer: nobody <nobody@example.org>
Architecture: {architecture}
Version: {version}
Description: stands for a library of the system

"""


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout


def parse_fields(text):
    """Fields of a control file; the lines of one that goes on are joined as they are."""
    return {name: value.rstrip("\n") for name, value in
            re.findall(r"^([A-Za-z-]+): ?((?:.*\n)(?: .*\n)*)", text, flags=re.MULTILINE)}


def parse_contents(text):
    """Path to owner, mode and target (empty for a file) of all but folders, in the output of dpkg-deb --contents."""
    entries = re.findall(r"^([-l]\S+) (\S+) +\d+ \S+ \S+ \./(.*?)(?: -> (.*))?$", text, flags=re.MULTILINE)
    return {path: (owner, mode, target) for mode, owner, path, target in entries}


def field_problems(name, fields):
    expected = FIELDS_OF_ALL | FIELDS[name] | {"Package": re.escape(name)}
    return ([f"{name}: {key} is {fields.get(key)!r}" for key, pattern in expected.items()
             if not re.fullmatch(pattern, fields.get(key, ""))] +
            [f"{name}: field {key}" for key in fields if key not in expected])


def content_problems(name, contents, expected):
    found = [f"{name}: {problem}" for problem in layout.differences(set(contents), expected)]
    for path, (owner, mode, target) in contents.items():
        if owner != "root/root" or mode not in ("-rwxr-xr-x" if path == "usr/bin/kine" else "-rw-r--r--", "lrwxrwxrwx"):
            found.append(f"{name}: {path} is {mode} of {owner}")
        links = {layout.LINK_NAME: layout.SONAME, layout.SONAME: layout.FULL_NAME}
        if target != links.get(pathlib.PurePath(path).name, ""):
            found.append(f"{name}: {path} leads to {target!r}")
    return found


def debs(options):
    """The file of each package; there are no others."""
    files = {path.name.split("_")[0]: path for path in options.packages.glob("*.deb")}
    if set(files) != {RUNTIME, DEVELOPMENT, PROGRAM}:
        raise ValueError(f"packages: {sorted(files)}")
    return files


def pack(options):
    shutil.rmtree(options.packages, ignore_errors=True)
    log = output(options.cpack, "--config", options.build / "CPackConfig.cmake", "-B", options.packages)
    made = sorted(path.name for path in options.packages.iterdir() if path.is_file())
    print(log if not made else "\n".join(made))
    return [] if len(made) in (2, 5) else [f"{len(made)} packages"]


def archives(options):
    """Each has one folder at its top, holds what is installed, and works where it is unpacked."""
    found = []
    files = sorted(path for path in options.packages.iterdir() if path.name.endswith((".tar.gz", ".zip")))
    if len(files) != 2:
        found.append(f"archives: {files}")
    for file in files:
        with tempfile.TemporaryDirectory(suffix=" elsewhere") as name:
            folder = pathlib.Path(name)
            consume.run(options.cmake, "-E", "tar", "xf", file, cwd=folder)
            tops = list(folder.iterdir())
            if len(tops) != 1:
                found.append(f"{file.name}: at its top are {tops}")
                continue
            found += [f"{file.name}: {problem}" for problem in
                      layout.differences(layout.found(tops[0]), layout.everything(options.source, options.libdir))]
            found += stripped_problems(options, tops[0] / options.libdir / layout.LINK_NAME)
            for way in ("find_package", "pkg_config"):
                if consume.missing(way):
                    print(f"SKIPPED: {way}", file=sys.stderr)
                    continue
                consume.consume(way, tops[0], options.libdir, options.compiler)
    return found


def stripped_problems(options, library):
    sections = output(options.readelf, "-S", "-W", library)
    return [f"{library} has {name}" for name in (".symtab", ".debug") if name in sections]


def debian_contents(options):
    found = []
    expected = layout.debian(options.source, options.architecture)
    for name, file in debs(options).items():
        found += field_problems(name, parse_fields(output("dpkg-deb", "--field", file)))
        found += content_problems(name, parse_contents(output("dpkg-deb", "--contents", file)), expected[name])
        with tempfile.TemporaryDirectory() as folder:
            output("dpkg-deb", "--control", file, folder)
            files = {path.name: path.read_text(encoding="utf-8").strip() for path in pathlib.Path(folder).iterdir()}
        found += [f"{name}: control file {problem}"
                  for problem in layout.differences(set(files), CONTROL_FILES[name])]
        found += [f"{name}: {key} is {files[key]!r}" for key, text in CONTROL_TEXTS.items()
                  if files.get(key, text) != text]
    return found


class ScratchRoot:
    """A package database below a folder; nothing outside is read or written."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        admin = self.folder / "var/lib/dpkg"
        for name in ("info", "updates", "triggers", "parts"):
            (admin / name).mkdir(parents=True)
        (admin / "available").touch()
        architecture = output("dpkg", "--print-architecture").strip()
        versions = {name: output("dpkg-query", "--show", "--showformat=${Version}\n", name).split()[0]
                    for name in SYSTEM_LIBRARIES}
        (admin / "status").write_text("".join(STATUS.format(name=name, architecture=architecture, version=version)
                                              for name, version in versions.items()), encoding="utf-8")

    def dpkg(self, *arguments):
        """Whether dpkg succeeds, and what it says."""
        result = subprocess.run(["dpkg", f"--root={self.folder}", *arguments], check=False, capture_output=True,
                                text=True, env={**os.environ, "LC_ALL": "C", "DPKG_FRONTEND_LOCKED": ""})
        return result.returncode == 0, result.stdout + result.stderr

    def files(self):
        """What is there beside the database."""
        return {path for path in layout.found(self.folder) if not path.startswith("var/")}


def debian_scratch_root(options):
    if os.geteuid() != 0:
        print("SKIPPED: INSTALLING THE DEBIAN PACKAGES TAKES ROOT", file=sys.stderr)
        raise SystemExit(consume.SKIPPED)
    files = debs(options)
    expected = layout.debian(options.source, options.architecture)
    found = []

    def step(what, arguments, succeeds, there):
        done, text = root.dpkg(*arguments)
        if done != succeeds:
            found.append(f"{what}: {text}")
        found.extend(f"{what}: {problem}" for problem in layout.differences(root.files(), there))

    with tempfile.TemporaryDirectory() as folder:
        root = ScratchRoot(folder)
        step("installing all", ["--install", *files.values()], True, set().union(*expected.values()))
        for way in ("find_package", "dlopen"):
            consume.consume(way, root.folder / "usr", f"lib/{options.architecture}", options.compiler,
                            exports=options.source / "interface/exports.txt")
        answer = subprocess.run([root.folder / "usr/bin/kine", "explain", "0x6097"], check=False, capture_output=True,
                                text=True, env={"LD_LIBRARY_PATH": f"{root.folder}/usr/lib/{options.architecture}"})
        if answer.returncode != 0 or "KINE_ERR_IK_7" not in answer.stdout:
            found.append(f"kine: {answer}")
        step("removing the library alone", ["--remove", RUNTIME], False, set().union(*expected.values()))
        step("purging the program", ["--purge", PROGRAM], True, expected[RUNTIME] | expected[DEVELOPMENT])
        step("purging the development files", ["--purge", DEVELOPMENT], True, expected[RUNTIME])
        step("purging the library", ["--purge", RUNTIME], True, set())
        left = [path.name for path in (root.folder / "var/lib/dpkg/info").iterdir() if "kinedll" in path.name]
        left += re.findall(r"^Package: .*kinedll.*$", (root.folder / "var/lib/dpkg/status").read_text(), re.MULTILINE)
        found += [f"left in the database: {name}" for name in left]
    with tempfile.TemporaryDirectory() as folder:
        root = ScratchRoot(folder)
        done, text = root.dpkg("--install", files[DEVELOPMENT])
        if done or "depends on libkinedll1" not in text:
            found.append(f"the development files alone: {text}")
    return found


CHECKS = {check.__name__: check for check in (pack, archives, debian_contents, debian_scratch_root)}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("check", choices=CHECKS)
    parser.add_argument("--packages", type=pathlib.Path, required=True)
    parser.add_argument("--source", type=pathlib.Path)
    parser.add_argument("--build", type=pathlib.Path)
    parser.add_argument("--libdir", default="lib")
    parser.add_argument("--architecture", default="")
    parser.add_argument("--cpack", default="cpack")
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--cmake", default="cmake")
    parser.add_argument("--compiler", default="cc")
    options = parser.parse_args()
    if options.check.startswith("debian") and not shutil.which("dpkg-shlibdeps"):
        print("SKIPPED: THE DEBIAN PACKAGES ARE MADE WITH dpkg-shlibdeps", file=sys.stderr)
        return consume.SKIPPED
    found = CHECKS[options.check](options)
    print("\n".join(found) or "as it should be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

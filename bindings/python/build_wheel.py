#!/usr/bin/env python3
"""Builds the wheel of the package with the library inside, without a network.

    bindings/python/build_wheel.py --library build/release/libKineDll.so.1 --output build/wheel

The platform in the name of the wheel is that of the library. Needs pip, setuptools and wheel (Debian: python3-pip,
python3-setuptools, python3-wheel).
"""

import argparse
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
LICENSE = HERE.parents[1] / "LICENSE"
ELF_MACHINES = {62: "linux_x86_64", 183: "linux_aarch64"}
PE_MACHINES = {0x8664: "win_amd64", 0x014C: "win32", 0xAA64: "win_arm64"}


def platform_of(content):
    """The platform tag and the file name for the bytes of a library."""
    if content[:5] == b"\x7fELF\x02":
        tag, name = ELF_MACHINES.get(struct.unpack_from("<H", content, 18)[0]), "libKineDll.so.1"
    elif content[:2] == b"MZ":
        header = struct.unpack_from("<I", content, 0x3C)[0]
        tag, name = PE_MACHINES.get(struct.unpack_from("<H", content, header + 4)[0]), "KineDll.dll"
    else:
        tag, name = None, ""
    if tag is None:
        raise SystemExit("not a library for Linux or Windows")
    return tag, name


def build(library, output):
    content = library.read_bytes()
    tag, name = platform_of(content)
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "source"
        package = source / "kinedll"
        shutil.copytree(HERE / "kinedll", package, ignore=shutil.ignore_patterns("__pycache__", "*.so*", "*.dll"))
        for file in (HERE / "pyproject.toml", HERE / "setup.py", HERE / "README.md", LICENSE):
            shutil.copy(file, source)
        (package / name).write_bytes(content)
        made = pathlib.Path(folder) / "made"
        command = [sys.executable, "-m", "pip", "wheel", "--quiet", "--disable-pip-version-check", "--no-deps"]
        command += ["--no-index", "--no-build-isolation", "--wheel-dir", str(made), str(source)]
        subprocess.run(command, check=True, env=dict(os.environ, KINEDLL_PLATFORM=tag))
        (wheel,) = made.iterdir()
        output.mkdir(parents=True, exist_ok=True)
        return shutil.move(str(wheel), str(output / wheel.name))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument(
        "--library", dest="shared_library", type=pathlib.Path, required=True, help="libKineDll.so.1 or KineDll.dll"
    )
    parser.add_argument("--output", type=pathlib.Path, default=pathlib.Path("."), help="folder for the wheel")
    options = parser.parse_args()
    print(build(options.shared_library, options.output))


if __name__ == "__main__":
    main()

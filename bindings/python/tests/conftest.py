"""What the tests share: where things are, sample arms, and the naive model of the library.

KINEDLL_LIBRARY names the library under test. The naive model and the tables of expected values are those of the
library's own tests: a second implementation, and numbers computed in high precision.
"""

import os
import pathlib
import subprocess
import sys

import pytest

import kinedll
from kinedll import Arm, SixAxisParam

ROOT = pathlib.Path(__file__).resolve().parents[3]
PACKAGE = pathlib.Path(kinedll.__file__).resolve().parent
GOLDEN = ROOT / "tests/golden"
HEADER = (ROOT / "include/KineDll.h").read_text(encoding="ascii")
EXPORTS = (ROOT / "interface/exports.txt").read_text(encoding="ascii").split()

sys.path.insert(0, str(ROOT / "tests/reference"))

# An arm with a spherical wrist, all lengths in mm.
WRIST = SixAxisParam(a1=100, a2=705, a3=135, d4=755, d6=85, d1=615)


@pytest.fixture
def arm():
    with Arm(WRIST) as made:
        yield made


@pytest.fixture
def run_python(tmp_path):
    """Runs a program in an interpreter and a folder of its own; gives back what it wrote to its standard output."""

    def run(program, *arguments, code=0, **options):
        environment = dict(os.environ, PYTHONPATH=str(PACKAGE.parent), PYTHONDONTWRITEBYTECODE="1")
        environment.pop("PYTHONUNBUFFERED", None)
        environment.update(options.pop("environment", {}))
        command = [sys.executable, "-c", program, *arguments]
        done = subprocess.run(command, capture_output=True, env=environment, cwd=tmp_path, timeout=120, **options)
        assert done.returncode == code, done.stderr.decode()
        return done.stdout

    return run


def mapped_copies():
    """How many private copies of the library this process has mapped."""
    with open("/proc/self/maps", encoding="ascii") as maps:
        return sum("memfd:KineDll" in line and " r-xp " in line for line in maps)


def open_descriptors():
    return len(os.listdir("/proc/self/fd"))

"""The package as a whole: version, types, examples, and the wheel from its building to an answer."""

import ast
import importlib.util
import os
import pathlib
import re
import shutil
import subprocess
import sys
import zipfile

import pytest
from conftest import PACKAGE, ROOT

import kinedll

HERE = ROOT / "bindings/python"
ROUND_TRIP = """
import kinedll, sys
assert kinedll.__file__.startswith(sys.argv[1]), kinedll.__file__
assert kinedll.find_library().startswith(sys.argv[1]), kinedll.find_library()
with kinedll.Arm(kinedll.SixAxisParam(a2=431.8, a3=20.3, d4=431.8, lateral_offset=-150.05)) as arm:
    pose = arm.joint_to_wobj_pos([10, 20, 30, 40, 50, 60])
    joints = arm.wobj_pos_to_joint(pose)
    print(*(round(axis, 6) for axis in joints.axis[:6]))
"""


def lacking(*modules):
    """Skips the test, saying so, where modules are missing."""
    missing = [module for module in modules if importlib.util.find_spec(module) is None]
    if missing:
        pytest.skip(f"*** SKIPPED: missing for {sys.executable}: {', '.join(missing)} ***")


def run(*command, **options):
    done = subprocess.run(
        list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=280, **options
    )
    assert done.returncode == 0, done.stdout.decode()
    return done.stdout.decode()


def test_the_version_is_that_of_the_library():
    (library,) = re.findall(r"project\(KineDll VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text())
    (project,) = re.findall(r'^version = "(.*)"', (HERE / "pyproject.toml").read_text(), re.MULTILINE)
    assert kinedll.__version__ == project == library


def test_the_package_names_what_it_offers():
    assert kinedll.__all__ == sorted(kinedll.__all__)
    assert all(hasattr(kinedll, name) for name in kinedll.__all__)


def test_the_package_imports_the_standard_library_only():
    allowed = {"__future__", "abc", "ctypes", "enum", "itertools", "mmap", "operator", "os", "pathlib", "struct", "sys",
               "tempfile", "threading", "types", "typing", "weakref"}  # fmt: skip
    for file in PACKAGE.glob("*.py"):
        for node in ast.walk(ast.parse(file.read_text(encoding="ascii"))):
            names = [alias.name for alias in node.names] if isinstance(node, ast.Import) else []
            if isinstance(node, ast.ImportFrom) and node.level == 0:
                names = [node.module]
            assert {name.split(".")[0] for name in names} <= allowed, file.name


def test_every_public_function_and_class_is_documented_and_typed():
    for file in PACKAGE.glob("*.py"):
        tree = ast.parse(file.read_text(encoding="ascii"))
        assert ast.get_docstring(tree), file.name
        for node in ast.walk(tree):
            if isinstance(node, (ast.FunctionDef, ast.ClassDef)) and not node.name.startswith("_"):
                setter = any(isinstance(each, ast.Attribute) for each in getattr(node, "decorator_list", ()))
                inner = setter or node.name in ("element", "converted", "place")
                assert inner or ast.get_docstring(node), f"{file.name}: {node.name}"
            if isinstance(node, ast.FunctionDef):
                assert node.returns is not None or node.name == "__init__", f"{file.name}: {node.name}"


@pytest.mark.parametrize("platform", ["linux", "win32"])
def test_the_types_are_checked(platform, tmp_path):
    mypy = shutil.which("mypy")
    if mypy is None:
        pytest.skip("*** SKIPPED: mypy is missing (Debian: mypy) ***")
    command = [mypy, "--strict", "--python-version", "3.9", "--platform", platform, "--cache-dir", tmp_path]
    run(*command, PACKAGE, *sorted((ROOT / "examples/python").glob("*.py")), cwd=HERE)


def test_a_typed_caller_is_helped_and_warned(tmp_path):
    mypy = shutil.which("mypy")
    if mypy is None:
        pytest.skip("*** SKIPPED: mypy is missing (Debian: mypy) ***")
    caller = tmp_path / "caller.py"
    caller.write_text(
        "from kinedll import Arm, Joints, Pose, SixAxisParam\n"
        "arm = Arm(SixAxisParam(a2=1, d4=1))\n"
        "pose: Pose = arm.joint_to_base_pos([1, 2, 3])\n"
        "first: float = arm.wobj_pos_to_joint(pose).axis[0] + pose.frame.x\n"
        "number: int = pose.cfg1\n"
        "arm.joint_to_base_pos('123')\n"
        "joints: Joints = pose\n"
    )
    command = [mypy, "--strict", "--python-version", "3.9", "--cache-dir", tmp_path / "cache", caller]
    environment = dict(os.environ, MYPYPATH=str(PACKAGE.parent))
    done = subprocess.run(list(map(str, command)), capture_output=True, env=environment, cwd=tmp_path, timeout=280)
    faults = re.findall(r"caller.py:(\d+): error", done.stdout.decode())
    assert sorted(set(faults)) == ["6", "7"], done.stdout.decode()


def test_the_first_program_finds_its_joints_again():
    environment = dict(os.environ, PYTHONPATH=str(PACKAGE.parent))
    lines = run(sys.executable, "-B", ROOT / "examples/python/first_program.py", env=environment).splitlines()
    # Axis 1 at 180 turns the arm round, and the lateral offset of -150.05 stays what it is from the other side.
    assert lines[0].startswith("tool centre point: X 696.3031  Y -150.0500  Z ")
    joints = [float(word) for word in lines[1].split()[1:7]]
    assert joints == [180, 45, 180, 0, -45, 0]
    assert "KINE_ERR_IK_7" in lines[2] and lines[-1] == "  printed: IK error 5:24727"


def test_the_two_scaras_reach_their_point_with_either_elbow():
    """The joints are put back into the closed form of a planar arm with a gripper 30 mm beside the flange."""
    import math

    environment = dict(os.environ, PYTHONPATH=str(PACKAGE.parent))
    lines = run(sys.executable, "-B", ROOT / "examples/python/two_scaras.py", env=environment).splitlines()
    assert len(lines) == 4
    for line in lines:
        name, side, *q = re.fullmatch(r"(\w+) arm, elbow ([+-]1): +(\S+) +(\S+) +(\S+) +(\S+) deg", line).groups()
        upper, fore, height, lead = (325, 275, 50, 20) if name == "small" else (425, 375, -120, 16)
        q1, q2, q3, q4 = map(float, q)
        first, second = math.radians(q1), math.radians(q1 + q2)
        heading = math.radians(q1 + q2 + q4)
        x = upper * math.cos(first) + fore * math.cos(second) - 30 * math.sin(heading)
        y = upper * math.sin(first) + fore * math.sin(second) + 30 * math.cos(heading)
        assert (x, y) == pytest.approx((400, 100), abs=2e-3)
        assert height + lead * q3 / 360 - 60 == pytest.approx(-80, abs=1e-4)
        assert math.degrees(heading) == pytest.approx(45, abs=1e-3)
        assert math.copysign(1, q2) == int(side)


@pytest.fixture(scope="module")
def wheel(tmp_path_factory):
    lacking("pip", "setuptools", "wheel")
    output = tmp_path_factory.mktemp("wheel")
    printed = run(
        sys.executable, "-B", HERE / "build_wheel.py", "--library", kinedll.find_library(), "--output", output
    )
    return pathlib.Path(printed.splitlines()[-1])


def test_a_wheel_holds_modules_types_licence_and_library(wheel):
    assert re.fullmatch(r"kinedll-[0-9.]+-py3-none-(linux|win)_\w+\.whl", wheel.name)
    with zipfile.ZipFile(wheel) as archive:
        names = {re.sub(r"^kinedll-[0-9.]+\.dist-info/", "info/", name) for name in archive.namelist()}
        library = archive.read("kinedll/libKineDll.so.1" if sys.platform != "win32" else "kinedll/KineDll.dll")
        assert "Root-Is-Purelib: false" in archive.read(f"{wheel.name.rsplit('-', 3)[0]}.dist-info/WHEEL").decode()
    assert {f"kinedll/{file.name}" for file in PACKAGE.glob("*.py")} | {"kinedll/py.typed", "info/LICENSE"} <= names
    assert library == pathlib.Path(kinedll.find_library()).read_bytes()


def test_a_wheel_is_installed_offline_and_answers(wheel, tmp_path):
    lacking("venv")
    home = tmp_path / "venv"
    run(sys.executable, "-m", "venv", "--without-pip", home)
    python = home / "bin/python"
    run(sys.executable, "-m", "pip", "--python", python, "install", "--quiet", "--no-index", "--no-deps", wheel)
    environment = {k: v for k, v in os.environ.items() if k not in ("KINEDLL_LIBRARY", "PYTHONPATH", "PYTHONHOME")}
    printed = run(python, "-c", ROUND_TRIP, home, env=environment, cwd=tmp_path)
    assert printed.split() == ["10.0", "20.0", "30.0", "40.0", "50.0", "60.0"]


def test_no_wheel_is_made_of_what_is_no_library(tmp_path):
    command = [sys.executable, "-B", HERE / "build_wheel.py", "--library", __file__, "--output", tmp_path]
    done = subprocess.run(list(map(str, command)), capture_output=True, timeout=60)
    assert done.returncode != 0 and b"not a library" in done.stderr
    assert list(tmp_path.iterdir()) == []


def test_the_programs_of_the_read_me_run(run_python):
    blocks = re.findall(r"```python\n(.*?)```", (HERE / "README.md").read_text(encoding="ascii"), re.DOTALL)
    assert len(blocks) >= 3
    for block in blocks:
        run_python(block)

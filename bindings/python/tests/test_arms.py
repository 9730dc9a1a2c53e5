"""Arms as private copies: independent, closed cleanly, found where they should be, safe among threads."""

import copy
import ctypes
import gc
import os
import pickle
import shutil
import sys
import threading

import pytest
from conftest import PACKAGE, WRIST, mapped_copies, open_descriptors

from kinedll import Arm, FourAxisParam, KineError, LibraryError, SixAxisParam, _lines, _loading, find_library

linux = pytest.mark.skipif(sys.platform != "linux", reason="reads /proc")
FIND = "import kinedll; print(kinedll.find_library())"


def reach_of(length):
    """Distance of the flange from the axis of a four-axis arm with both links stretched out."""
    return FourAxisParam(link1_length=length, link2_length=100, screw_lead=20), length + 100


def test_arms_keep_their_own_parameters():
    arms = {length: Arm(reach_of(length)[0]) for length in range(200, 240)}
    for length, arm in arms.items():
        assert arm.joint_to_base_pos([0, 0, 0, 0]).frame.x == pytest.approx(length + 100)


def test_an_arm_that_was_not_initialised_is_not_by_another():
    with Arm(WRIST), Arm() as empty:
        with pytest.raises(KineError) as caught:
            empty.joint_to_base_pos([0] * 6)
    assert (caught.value.name, caught.value.printed) == ("KINE_ERR_NOT_INITIALISED", b"FK Error 1:24577\n")


def test_setup_and_reading_of_many_arms_in_many_threads():
    """Every thread initialises its own arm again and again; an answer of another arm would have another length."""
    failures = []

    def work(length):
        param, expected = reach_of(length)
        with Arm() as arm:
            for turn in range(150):
                arm.init_kinematic_param(param)
                x = arm.joint_to_base_pos([0, 0, 0, 0]).frame.x
                if abs(x - expected) > 1e-9:
                    failures.append((length, x))
                arm.set_mech_unit_global_cfg(turn % 4, 6)
                try:
                    arm.safe_area_check([0], (0, 0, 0), 1)
                except KineError as error:
                    if error.printed != b"IsLegalWobj,!pWobj->UFFix:%d;\n" % (turn % 4):
                        failures.append((length, error.printed))

    before = sys.getswitchinterval()
    sys.setswitchinterval(1e-6)
    try:
        threads = [threading.Thread(target=work, args=(300 + 10 * i,)) for i in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    finally:
        sys.setswitchinterval(before)
    assert failures == []


def test_threads_that_share_an_arm_get_the_lines_of_their_own_calls(arm):
    failures = []

    def work(index):
        for turn in range(300):
            number = 10 + 1000 * index + turn
            arm.set_mech_unit_global_cfg(3, 6)
            try:
                arm.set_mech_unit_param(number, None)
            except KineError as error:
                if error.printed != b"IsLegalMechUnit:index:%d,3\n" % number:
                    failures.append((number, error.printed))

    before = sys.getswitchinterval()
    sys.setswitchinterval(1e-6)
    try:
        threads = [threading.Thread(target=work, args=(i,)) for i in range(6)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    finally:
        sys.setswitchinterval(before)
    assert failures == []


@linux
def test_a_copy_is_unloaded_when_its_arm_is_closed_left_or_dropped():
    gc.disable()  # no help from the collector
    try:
        before = mapped_copies()
        arm = Arm(WRIST)
        assert mapped_copies() == before + 1
        arm.close()
        assert mapped_copies() == before
        with Arm(WRIST):
            assert mapped_copies() == before + 1
        assert mapped_copies() == before
        arm = Arm()
        del arm
        assert mapped_copies() == before
        with pytest.raises(KineError):
            Arm(SixAxisParam())
        assert mapped_copies() <= before + 1  # the traceback of the failure holds the arm
    finally:
        gc.enable()


@linux
def test_loading_and_closing_leaves_no_descriptor():
    Arm().close()
    before = open_descriptors()
    arms = [Arm() for _ in range(50)]
    assert open_descriptors() == before
    del arms
    assert open_descriptors() == before


def test_a_closed_arm_refuses_calls_and_may_be_closed_again(arm):
    assert not arm.closed
    arm.close()
    arm.close()
    assert arm.closed
    with pytest.raises(ValueError, match="Kine_JointToBasePos: the arm is closed"):
        arm.joint_to_base_pos([0])


@linux
def test_closing_an_arm_in_the_middle_of_its_call_lets_the_call_end(monkeypatch):
    """The arm is closed from where its line arrives, with the library's function still running."""
    arm, before = Arm(), mapped_copies()

    class Closing(list):
        def append(self, piece):
            arm.close()
            seen.append(mapped_copies())
            super().append(piece)

    seen = []
    monkeypatch.setattr(_lines._lines, "pieces", Closing())
    with pytest.raises(KineError) as caught:
        arm.joint_to_base_pos([0] * 6)
    assert caught.value.printed == b"FK Error 1:24577\n"
    assert seen == [before] and mapped_copies() == before - 1


def test_an_arm_is_neither_copied_nor_pickled(arm):
    for action in (copy.copy, copy.deepcopy, pickle.dumps):
        with pytest.raises(TypeError, match="loaded library"):
            action(arm)


@linux
def test_a_process_that_is_linked_with_the_library_does_not_lend_its_configuration(run_python):
    """SafeArea_Check calls another export inside the library: the copy's own, which knows its own unit count."""
    program = """
import ctypes, sys, kinedll
everywhere = ctypes.CDLL(kinedll.find_library(), mode=ctypes.RTLD_GLOBAL)
everywhere.Kine_SetMechUnitGlobalCfg(3, 6, 1)
arm = kinedll.Arm()
arm.set_mech_unit_global_cfg(2, 6)
try:
    arm.safe_area_check([0], [0, 0, 0], 1)
except kinedll.KineError as error:
    print(error.printed)
"""
    assert run_python(program) == b"b'IsLegalWobj,!pWobj->UFFix:2;\\n'\n"


@linux
def test_without_files_in_memory_temporary_files_serve_and_are_removed(monkeypatch, tmp_path):
    monkeypatch.setattr(_loading, "_from_memory", lambda content: None)
    monkeypatch.setattr("tempfile.tempdir", str(tmp_path))
    arms = [Arm(reach_of(length)[0]) for length in (200, 300, 400)]
    assert [round(arm.joint_to_base_pos([0] * 4).frame.x) for arm in arms] == [300, 400, 500]
    assert list(tmp_path.iterdir()) == []


@linux
def test_a_refused_file_in_memory_leads_to_a_temporary_one(monkeypatch):
    def refuse(*arguments):
        raise PermissionError("memfd")

    monkeypatch.setattr(os, "memfd_create", refuse)
    assert Arm(WRIST).is_singularity([0] * 6)


def test_the_library_named_by_the_environment_comes_first(run_python, tmp_path):
    copied = tmp_path / "any name.so"
    shutil.copy(find_library(), copied)
    assert run_python(FIND, environment={"KINEDLL_LIBRARY": str(copied)}).decode().strip() == str(copied)


def test_an_environment_that_names_no_file_is_told(monkeypatch):
    monkeypatch.setenv("KINEDLL_LIBRARY", "/nowhere/library.so")
    with pytest.raises(LibraryError, match="KINEDLL_LIBRARY names no file: /nowhere/library.so"):
        Arm()


def test_the_library_beside_the_package_comes_second(run_python, tmp_path):
    shutil.copytree(PACKAGE, tmp_path / "kinedll", ignore=shutil.ignore_patterns("__pycache__"))
    beside = tmp_path / "kinedll" / _loading._NAME
    shutil.copy(find_library(), beside)
    found = run_python(FIND, environment={"KINEDLL_LIBRARY": "", "PYTHONPATH": str(tmp_path)})
    assert found.decode().strip() == str(beside)


@linux
def test_the_library_of_the_system_comes_third(run_python, tmp_path):
    installed = tmp_path / "libKineDll.so.1"
    shutil.copy(find_library(), installed)
    environment = {"KINEDLL_LIBRARY": "", "LD_LIBRARY_PATH": str(tmp_path)}
    assert run_python(FIND, environment=environment).decode().strip() == str(installed)


def test_a_missing_library_is_told(monkeypatch):
    monkeypatch.delenv("KINEDLL_LIBRARY", raising=False)
    monkeypatch.setattr(_loading, "_NAME", "libNoSuchLibraryAnywhere.so.1")
    with pytest.raises(LibraryError, match="set KINEDLL_LIBRARY"):
        find_library()


def test_a_file_that_is_no_library_is_refused(tmp_path):
    wrong = tmp_path / "library.so"
    wrong.write_text("no library")
    with pytest.raises(LibraryError, match="cannot be loaded"):
        Arm(library=wrong)
    with pytest.raises(LibraryError, match="cannot be loaded"):
        Arm(library=tmp_path / "missing.so")


@linux
def test_a_library_with_other_functions_is_refused():
    other = next(line.split()[-1] for line in open("/proc/self/maps", encoding="ascii") if "libc.so" in line)
    with pytest.raises(LibraryError, match="has no function Kine_InitKinematicParam"):
        Arm(library=other)


def test_calls_hold_the_lock_of_the_interpreter(arm):
    """A function called through a type with Python's own conventions does not give the lock away."""
    python_calls = ctypes.PYFUNCTYPE(None)._flags_
    assert all(function._flags_ == python_calls for function in arm._functions.values())

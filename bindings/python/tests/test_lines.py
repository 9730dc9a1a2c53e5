"""Diagnostic lines: attached to the exception byte for byte, and nothing of the process is touched for it."""

import ctypes
import json
import os
import pickle
import re
import subprocess
import sys

import pytest
from conftest import HEADER, ROOT, WRIST, open_descriptors

from kinedll import (
    Arm,
    ExtAxisParam,
    KineError,
    LibraryError,
    MechUnit,
    Pose,
    ResultCode,
    Tool,
    Wobj,
    _elf,
    find_library,
)

linux = pytest.mark.skipif(sys.platform != "linux", reason="reads /proc")


def refused(call, *arguments, **named):
    with pytest.raises(KineError) as caught:
        call(*arguments, **named)
    return caught.value


# The lines


def test_every_form_of_line_arrives_byte_for_byte(arm):
    far = Pose((9000, 0, 0, 0, 0, 0))
    held_twice = Tool(held_by_robot=2), Wobj(held_by_robot=1)
    on_unit = Wobj(uf_fix=0, mech_unit_index=1)
    assert refused(arm.set_mech_unit_global_cfg, 4, 0).printed == (b"IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n")
    assert refused(arm.set_mech_unit_global_cfg, 0, 7).printed == (
        b"IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:7,6\n"
    )
    arm.set_mech_unit_global_cfg(2, 1)
    assert refused(arm.set_mech_unit_param, -1, MechUnit()).printed == b"IsLegalMechUnit:index:-1,2\n"
    assert refused(arm.set_ext_axis_param, 6, ExtAxisParam()).printed == b"IsLegalExtAxisParam:index:6,1\n"
    assert refused(arm.joint_to_base_pos, [0], None, Wobj(uf_fix=0)).printed == b"IsLegalWobj,!pWobj->UFFix:2;\n"
    assert refused(arm.joint_to_base_pos, [0], *held_twice).printed == b"FK Error 2:24656\n"
    assert refused(arm.joint_to_wobj_pos, [0], None, on_unit).printed == b"FK Error 6:24625\n"
    assert refused(arm.wobj_pos_to_joint, far, *held_twice).printed == b"IK error 0:24656\n"
    assert refused(arm.wobj_pos_to_joint, far, None, on_unit).printed == b"IK error 2:24627\n"
    assert refused(arm.wobj_pos_to_joint, far).printed == b"IK error 5:24727\n"


def test_the_line_with_a_full_width_colon_is_kept_as_bytes_and_read_as_gbk(arm):
    arm.set_mech_unit_global_cfg(1, 1)
    error = refused(arm.set_mech_unit_param, 0, MechUnit(3))
    tail = "pArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:2,1"
    assert error.printed == b"IsLegalMechUnit\xa3\xba" + tail.encode("ascii") + b"\n"
    assert error.lines == ("IsLegalMechUnit\uff1a" + tail,)
    assert "printed: IsLegalMechUnit\uff1a" in str(error)


def test_a_call_that_prints_nothing_has_no_line(arm):
    assert refused(arm.joint_to_base_pos, [0] * 6, Tool((0, 0, 0, 181, 0, 0))).lines == ()
    assert refused(arm.wobj_pos_to_joint, (0, 0, 0, 200, 0, 0)).printed == b""


def test_a_line_belongs_to_its_call_only(arm):
    assert refused(arm.joint_to_base_pos, [0], Tool(held_by_robot=0)).printed == b""
    assert refused(arm.safe_area_check, [0], [0, 0, 0], 1).printed == b"IsLegalWobj,!pWobj->UFFix:0;\n"
    assert refused(arm.joint_to_base_pos, [0], Tool(held_by_robot=0)).printed == b""


# The exception


def test_every_code_of_the_data_has_name_causes_and_remedy():
    data = json.loads((ROOT / "interface/result_codes.json").read_text(encoding="ascii"))
    assert [code.name for code in ResultCode] == [row["name"] for row in data]
    for row in data:
        error = KineError(int(row["code"], 16), "Kine_Call")
        assert error.code == ResultCode[row["name"]]
        assert (error.name, list(error.causes), error.remedy) == (row["name"], row["causes"], row["remedy"])
        assert all(text in str(error) for text in ("Kine_Call", row["name"], *row["causes"], row["remedy"]))


def test_every_code_of_the_header_is_there():
    defined = dict(re.findall(r"^#define (KINE_(?:ERR_\w+|OK)) (0x[0-9A-F]+)u", HEADER, re.MULTILINE))
    assert {code.name: code.value for code in ResultCode} == {name: int(v, 16) for name, v in defined.items()}


def test_a_number_that_is_no_code_is_shown_as_a_number():
    error = KineError(0x1234, "Kine_Call", b"a\nb\n")
    assert (error.name, error.causes, error.remedy, error.result) == ("0x1234", (), "", None)
    assert error.lines == ("a", "b")
    assert "Kine_Call: 0x1234" in str(error)


def test_an_exception_survives_pickling():
    error = pickle.loads(pickle.dumps(KineError(0x6012, "Kine_Call", b"a\n")))
    assert (error.code, error.call, error.printed) == (0x6012, "Kine_Call", b"a\n")


def test_raw_calls_take_null_pointers_and_give_the_code_for_them(arm):
    assert refused(arm.call, "Kine_GetArmType", None, None).code == ResultCode.KINE_ERR_JOINT
    assert refused(arm.call, "Kine_WobjPosToJoint", None, Tool(), Wobj(), None, None).name == "KINE_ERR_LOAD"
    assert arm.call("Kine_CalcZVec", None, None, None, 1.0, None) == 0


# What the process sees

FAILING = """
import os, sys, kinedll
arm = kinedll.Arm(capture={capture})
sys.stdout.write("before ")
os.write(1, b"raw ")
try:
    arm.joint_to_base_pos([0] * 6)
except kinedll.KineError as error:
    sys.stdout.write(repr(error.printed))
"""


def test_captured_lines_leave_standard_output_as_it_is(run_python):
    """Not even what Python holds back is written earlier: "before" comes after the raw bytes."""
    assert run_python(FAILING.format(capture=True)) == b"raw before b'FK Error 1:24577\\n'"


def test_without_capture_the_library_writes_to_standard_output(run_python):
    assert run_python(FAILING.format(capture=False)) == b"raw FK Error 1:24577\nbefore b''"


@linux
def test_lines_are_captured_with_standard_output_closed_or_replaced(run_python):
    program = """
import io, os, sys, kinedll
out = os.dup(1)
os.close(1)
sys.stdout = io.StringIO()
try:
    kinedll.Arm().joint_to_base_pos([0] * 6)
except kinedll.KineError as error:
    os.write(out, error.printed)
os.write(out, repr(sys.stdout.getvalue()).encode())
"""
    assert run_python(program) == b"FK Error 1:24577\n''"


@linux
def test_ten_thousand_refused_calls_open_no_descriptor_and_keep_no_memory(arm):
    far = Pose((9000, 0, 0, 0, 0, 0))
    refused(arm.wobj_pos_to_joint, far)
    descriptors = os.listdir("/proc/self/fd")
    before = ctypes.CDLL(None).malloc_trim(0), resident()
    for _ in range(10_000):
        try:
            arm.wobj_pos_to_joint(far)
        except KineError as error:
            assert error.printed == b"IK error 5:24727\n"
    assert os.listdir("/proc/self/fd") == descriptors
    assert resident() - before[1] < 1 << 20
    assert open_descriptors() == len(descriptors)


def resident():
    with open("/proc/self/statm", encoding="ascii") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGESIZE")


@linux
def test_text_that_other_threads_write_meanwhile_is_not_touched(run_python):
    program = """
import os, threading, kinedll
arm, done = kinedll.Arm(), threading.Event()
def write():
    for i in range(2000):
        os.write(1, b"%d\\n" % i)
    done.set()
threading.Thread(target=write).start()
count = 0
while not done.is_set() or count < 2000:
    try:
        arm.joint_to_base_pos([0] * 6)
    except kinedll.KineError as error:
        assert error.printed == b"FK Error 1:24577\\n"
        count += 1
"""
    assert run_python(program) == b"".join(b"%d\n" % i for i in range(2000))


@linux
def test_a_forked_process_captures_its_own_lines(run_python):
    program = """
import os, kinedll
arm = kinedll.Arm()
child = os.fork()
try:
    arm.joint_to_base_pos([0] * 6)
except kinedll.KineError as error:
    os.write(1, (b"child " if child == 0 else b"parent ") + error.printed)
if child: os.waitpid(child, 0)
"""
    lines = run_python(program).splitlines()
    assert sorted(lines) == [b"child FK Error 1:24577", b"parent FK Error 1:24577"]


# How a copy is led here


@linux
def test_the_redirected_imports_are_read_only_again_afterwards():
    arm = Arm(WRIST)
    address = ctypes.cast(arm._functions["Kine_CalcZVec"], ctypes.c_void_p).value
    with open("/proc/self/maps", encoding="ascii") as maps:
        lines = [line.split() for line in maps]
    places = [[int(end, 16) for end in line[0].split("-")] for line in lines]
    (code,) = (i for i, (start, end) in enumerate(places) if start <= address < end)
    copy = [line[1] for line in lines if line[4] == lines[code][4] and line[5:] == lines[code][5:]]
    # Headers, code, constants, what the loader filled in, data: one part only may be written.
    assert copy == ["r--p", "r-xp", "r--p", "r--p", "rw-p"]


@linux
def test_a_library_that_does_not_import_the_printing_calls_cannot_be_captured():
    library = ctypes.CDLL(find_library())
    with pytest.raises(LibraryError, match="does not import no_such_function"):
        _elf.redirect(library._handle, {"no_such_function": 1})


@linux
def test_redirecting_one_copy_leaves_the_process_and_other_copies_alone(run_python):
    program = """
import ctypes, kinedll
first = kinedll.Arm()
plain = kinedll.Arm(capture=False)
shared = ctypes.CDLL(kinedll.find_library())
for arm in (first, plain):
    try:
        arm.joint_to_base_pos([0] * 6)
    except kinedll.KineError as error:
        print(error.printed, flush=True)
shared.SafeArea_Check(None, None, ctypes.c_double(1))
ctypes.CDLL(None).puts(b"from the C library")
ctypes.CDLL(None).fflush(None)
"""
    printed = b"FK Error 1:24577\n"
    expected = repr(printed).encode() + b"\n" + printed + b"b''\nIsLegalWobj,!pWobj->UFFix:0;\nfrom the C library\n"
    assert run_python(program) == expected


def test_the_program_ends_cleanly_with_arms_open(tmp_path):
    program = "import kinedll; arms = [kinedll.Arm() for _ in range(5)]; print(len(arms))"
    environment = dict(os.environ, PYTHONPATH=os.pathsep.join(sys.path), TMPDIR=str(tmp_path))
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, env=environment, timeout=60)
    assert (done.returncode, done.stdout, done.stderr) == (0, b"5\n", b"")
    assert list(tmp_path.iterdir()) == []

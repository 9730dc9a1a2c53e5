"""The library for the checks of the documents: the records that they need, and a six-axis arm with an empty tool."""

import contextlib
import ctypes
import os

DOUBLE = ctypes.c_double
NOMINAL_TWISTS = (90.0, 0.0, 90.0, -90.0, 90.0)
# The arm of the programs in docs/.
LENGTHS = {"a1": 150.0, "a2": 600.0, "a3": 120.0, "d4": 640.0, "d6": 100.0, "d1": 450.0}


class Frame(ctypes.Structure):
    _fields_ = [(name, DOUBLE) for name in "XYZABC"]


class Pose(ctypes.Structure):
    _fields_ = [("frame", Frame), ("config", ctypes.c_int32 * 4), ("ext", DOUBLE * 6)]


class Joints(ctypes.Structure):
    _fields_ = [("axis", DOUBLE * 8), ("ext", DOUBLE * 6)]


class SixAxisParameters(ctypes.Structure):
    _fields_ = ([(name, DOUBLE) for name in ("a1", "a2", "a3", "d4", "d6", "d1", "lateralOffset", "reserved0", "alpha1",
                                             "alpha2", "alpha3", "alpha4", "alpha5", "beta2", "d3")]
                + [("rest", DOUBLE * 19)])


# HeldByRobot 1; HeldByRobot 0 and UFFix 1; nothing.
TOOL, WOBJ, LOAD = (ctypes.c_uint8 * 136)(1), (ctypes.c_uint8 * 104)(0, 1), (ctypes.c_uint8 * 80)()


def load(path):
    return ctypes.CDLL(os.path.abspath(path))


def initialise(library, twists=NOMINAL_TWISTS, **lengths):
    record = SixAxisParameters(**{**LENGTHS, **lengths})
    for i, twist in enumerate(twists, start=1):
        setattr(record, f"alpha{i}", twist)
    code = library.Kine_InitKinematicParam(6, ctypes.byref(record))
    if code:
        raise AssertionError(f"Kine_InitKinematicParam returns {code:#x}")


def pose_of(library, axes):
    """Code and pose of the flange."""
    joints, pose = Joints(axis=(DOUBLE * 8)(*axes)), Pose()
    code = library.Kine_JointToWobjPos(ctypes.byref(joints), TOOL, WOBJ, LOAD, ctypes.byref(pose))
    return code, pose


def joints_of(library, pose):
    """Code and axes of the inverse."""
    joints = Joints()
    code = library.Kine_WobjPosToJoint(ctypes.byref(pose), TOOL, WOBJ, LOAD, ctypes.byref(joints))
    return code, list(joints.axis)


@contextlib.contextmanager
def quiet_stdout():
    """The library prints a line for each refused target."""
    kept, nowhere = os.dup(1), os.open(os.devnull, os.O_WRONLY)
    os.dup2(nowhere, 1)
    try:
        yield
    finally:
        os.dup2(kept, 1)
        os.close(kept)
        os.close(nowhere)

"""Arrays of numpy wherever numbers go, and records as arrays."""

import pytest

numpy = pytest.importorskip("numpy", reason="*** SKIPPED: numpy is missing (Debian: python3-numpy) ***")

from kinedll import ArmConfig, Frame, InchDir, InchMode, Joints, Load, Pose, Tool  # noqa: E402

FLOATS = (numpy.float64, numpy.float32, numpy.int64, numpy.int32)


@pytest.mark.parametrize("dtype", FLOATS)
def test_arrays_fill_fields_of_numbers(dtype):
    assert Joints(numpy.arange(6, dtype=dtype)) == Joints([0, 1, 2, 3, 4, 5])
    assert Frame.from_sequence(numpy.arange(6, dtype=dtype)) == Frame(0, 1, 2, 3, 4, 5)
    assert Frame(*numpy.arange(6, dtype=dtype)) == Frame(0, 1, 2, 3, 4, 5)
    assert Load(dtype(2), numpy.ones(3, dtype)) == Load(2, [1, 1, 1])
    assert Pose(numpy.arange(6, dtype=dtype)) == Pose((0, 1, 2, 3, 4, 5))


@pytest.mark.parametrize("dtype", [numpy.int64, numpy.int32, numpy.int8])
def test_integers_fill_fields_of_integers(dtype):
    assert ArmConfig(*numpy.array([1, -1, 0, 7], dtype)) == ArmConfig(1, -1, 0, 7)
    assert InchDir(numpy.array([0, 1], dtype)) == InchDir([0, 1])


def test_calls_take_arrays(arm):
    q = numpy.array([10.0, 20.0, 30.0, 40.0, 50.0, 60.0])
    pose = arm.joint_to_base_pos(q, Tool(numpy.array([0, 0, 100, 0, 0, 0.0])))
    assert pose == arm.joint_to_base_pos(Joints(list(q)), Tool((0, 0, 100, 0, 0, 0)))
    moved = arm.inch_move_pos_calc(numpy.array([1, 0, 0, 0, 0, -1]), InchMode.JOINTS, numpy.array([2.0, 1, 1]), q)
    assert numpy.allclose(numpy.asarray(moved.axis)[:6], q + [2, 0, 0, 0, 0, -2], atol=1e-9)
    assert numpy.allclose(arm.calc_z_vec(*numpy.eye(3, 6), numpy.float64(3)), numpy.full(3, 3**0.5))


def test_records_show_their_memory_as_arrays():
    frame, joints = Frame(1, 2, 3, 4, 5, 6), Joints([7, 8])
    seen = numpy.frombuffer(frame)
    assert seen.tolist() == [1, 2, 3, 4, 5, 6]
    frame.x = 10
    assert seen[0] == 10
    axes = numpy.asarray(joints.axis)
    axes[1] = 9
    assert joints.axis[1] == 9

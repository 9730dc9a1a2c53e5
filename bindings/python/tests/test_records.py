"""The records: construction, conversion of fields, numbers in and out, equality, repr, copies."""

import array
import copy
import math
import pickle

import pytest

from kinedll import (
    ArmConfig,
    CalibError,
    ExtAxisParam,
    FourAxisParam,
    Frame,
    InchDir,
    Joints,
    Load,
    MechUnit,
    Pose,
    SixAxisParam,
    Tool,
    Wobj,
)

COUNTS = {
    Frame: 6, ArmConfig: 4, Pose: 16, Joints: 14, Load: 10, Tool: 17, Wobj: 15, MechUnit: 47, ExtAxisParam: 18,
    InchDir: 14, CalibError: 3, SixAxisParam: 29, FourAxisParam: 8,
}  # fmt: skip
everyone = pytest.mark.parametrize("cls", COUNTS, ids=lambda cls: cls.__name__)


@everyone
def test_numbers_go_in_and_come_out_in_the_order_of_the_header(cls):
    numbers = list(range(1, COUNTS[cls] + 1))
    made = cls.from_sequence(numbers)
    assert made.to_list() == numbers == list(made)
    assert len(made) == COUNTS[cls]
    assert cls.from_sequence(made) == made


@everyone
@pytest.mark.parametrize("surplus", [-1, 1])
def test_a_wrong_count_of_numbers_is_refused(cls, surplus):
    with pytest.raises(ValueError, match=f"{COUNTS[cls]}"):
        cls.from_sequence([0] * (COUNTS[cls] + surplus))


@everyone
def test_repr_evaluates_to_an_equal_record(cls):
    made = cls.from_sequence(range(1, COUNTS[cls] + 1))
    assert eval(repr(made), {each.__name__: each for each in COUNTS}) == made
    assert "reserved" not in repr(made)


@everyone
def test_copies_are_equal_and_independent(cls):
    made = cls.from_sequence(range(1, COUNTS[cls] + 1))
    for other in (made.copy(), copy.copy(made), copy.deepcopy(made), pickle.loads(pickle.dumps(made))):
        assert other == made and bytes(other) == bytes(made)
    other = made.copy()
    other._fill(iter([0] * COUNTS[cls]))
    assert other != made
    assert made.to_list() == list(range(1, COUNTS[cls] + 1))


@everyone
def test_every_single_number_counts_in_a_comparison(cls):
    numbers = [0] * COUNTS[cls]
    for i in range(COUNTS[cls]):
        other = numbers.copy()
        other[i] = 1
        assert cls.from_sequence(other) != cls.from_sequence(numbers)


def test_records_of_different_kinds_are_not_equal_and_no_record_is_hashable():
    assert Joints() != InchDir()
    assert Frame() != (0.0,) * 6
    with pytest.raises(TypeError):
        hash(Frame())


def test_nan_equals_nothing_and_zeros_of_either_sign_are_equal():
    assert Frame(x=math.nan) != Frame(x=math.nan)
    assert Frame(x=-0.0) == Frame(x=0.0)
    assert bytes(Frame(x=-0.0)) != bytes(Frame(x=0.0))


def test_reserved_bytes_are_carried_along_and_not_compared():
    raw = bytearray(bytes(Tool()))
    raw[3] = 77
    marked = Tool.from_buffer_copy(raw)
    assert marked == Tool()
    assert bytes(marked.copy()) == bytes(marked.replace(held_by_robot=1)) == bytes(raw)


def test_defaults_are_a_held_tool_and_a_fixed_work_object():
    assert (Tool().held_by_robot, Wobj().held_by_robot, Wobj().uf_fix) == (1, 0, 1)
    assert Tool().t_frame == Frame() and Wobj().u_frame == Wobj().o_frame == Frame()


def test_defaults_of_a_six_axis_arm_are_the_nominal_twists_and_d3_the_lateral_offset():
    arm = SixAxisParam(lateral_offset=-150.05)
    assert (arm.alpha1, arm.alpha2, arm.alpha3, arm.alpha4, arm.alpha5) == (90, 0, 90, -90, 90)
    assert arm.d3 == -150.05
    assert SixAxisParam(lateral_offset=1, d3=2).d3 == 2


@pytest.mark.parametrize("kind, count", [(0, 0), (1, 1), (2, 1), (3, 2), (4, 0)])
def test_the_axis_count_of_a_unit_follows_from_its_kind(kind, count):
    assert MechUnit(kind).axis_count == count
    assert MechUnit(kind, axis_count=5).axis_count == 5


def test_short_arrays_leave_zeros_and_long_ones_are_refused():
    joints = Joints([1, 2, 3])
    assert list(joints.axis) == [1, 2, 3, 0, 0, 0, 0, 0]
    joints.axis = [9]
    assert list(joints.axis) == [9, 0, 0, 0, 0, 0, 0, 0]
    with pytest.raises(ValueError, match="axis: 9 values where there are 8"):
        joints.axis = [0] * 9
    with pytest.raises(ValueError):
        InchDir([0] * 15)


@pytest.mark.parametrize("numbers", [(1, 2), [1.0, 2.0], array.array("d", [1, 2]), range(1, 3), iter([1, 2])])
def test_any_sequence_is_taken_for_an_array(numbers):
    assert list(Joints(numbers).axis)[:3] == [1, 2, 0]


@pytest.mark.parametrize("wrong", ["12", ["1"], [None], 5])
def test_what_is_no_sequence_of_numbers_is_refused(wrong):
    with pytest.raises(TypeError):
        Joints(wrong)


def test_elements_of_arrays_and_nested_records_change_in_place():
    pose = Pose(Frame(1, 2, 3))
    pose.frame.x = 10
    pose.ext_axis[5] = 7
    assert pose == Pose((10, 2, 3, 0, 0, 0), ext_axis=[0, 0, 0, 0, 0, 7])
    unit = MechUnit(3, [Frame(), (1, 2, 3, 4, 5, 6)], [4, 5])
    unit.axis_frame[0].z = 9
    assert unit.axis_frame[0] == Frame(z=9) and unit.axis_frame[1].c == 6


def test_integers_that_do_not_fit_are_refused_instead_of_cut_off():
    pose = Pose(cfg1=2**31 - 1)
    for value in (2**31, -(2**31) - 1):
        with pytest.raises(OverflowError, match="cfg1"):
            pose.cfg1 = value
    assert pose.cfg1 == 2**31 - 1
    for make in (
        lambda: Tool(held_by_robot=256),
        lambda: Tool(held_by_robot=-1),
        lambda: Wobj(mech_unit_index=128),
        lambda: InchDir([2**31]),
        lambda: ExtAxisParam(raw0=2**32),
        lambda: MechUnit(2, axis_param_index=[256]),
        lambda: ArmConfig(2**31),
    ):
        with pytest.raises(OverflowError):
            make()
    with pytest.raises(TypeError):
        pose.cfg1 = 1.5


def test_the_configuration_of_a_pose_is_read_and_set_as_a_whole():
    pose = Pose(cfg1=1, cfg2=2, cfg3=3, cfg4=4)
    assert pose.config == ArmConfig(1, 2, 3, 4)
    pose.config = ArmConfig(5, 6, 7, 0)
    assert (pose.cfg1, pose.cfg2, pose.cfg3, pose.cfg4) == (5, 6, 7, 0)
    assert Pose(None, *pose.config) == Pose(cfg1=5, cfg2=6, cfg3=7)


def test_replace_changes_a_copy_and_knows_its_fields():
    pose = Pose((1, 2, 3, 4, 5, 6))
    assert pose.replace(cfg4=2, frame=(0,) * 6) == Pose(cfg4=2)
    assert pose.cfg4 == 0
    with pytest.raises(TypeError, match="colour"):
        pose.replace(colour=1)


def test_every_record_is_true():
    assert all(bool(cls()) for cls in COUNTS)

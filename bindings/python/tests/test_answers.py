"""Answers of the package against closed forms and the tables of the library's own tests."""

import math

import pytest
from conftest import GOLDEN, WRIST

from kinedll import (
    Arm,
    ArmConfig,
    ArmType,
    FourAxisParam,
    Frame,
    InchMode,
    Joints,
    KineError,
    Load,
    Pose,
    ResultCode,
    SixAxisParam,
    Tool,
    Wobj,
)


def rows(table):
    for line in (GOLDEN / table).read_text(encoding="ascii").splitlines():
        if line and not line.startswith("#"):
            yield line.split()


def golden_arm(name, arm_type):
    """An arm of the tables; some doubles of their records are reserved."""
    (numbers,) = ([float(v) for v in values] for each, _, *values in rows("arms.txt") if each == name)
    cls, reserved = (SixAxisParam, (7, 20, 21, 22, 23)) if arm_type == 6 else (FourAxisParam, (4, 5, 6, 7))
    return Arm(cls.from_sequence(n for i, n in enumerate(numbers) if i not in reserved), arm_type)


class Arms(dict):
    """The arms of the tables by name and type."""

    def __missing__(self, key):
        self[key] = golden_arm(*key)
        return self[key]


def assert_frame(found, expected):
    """Equal positions, and angles that are equal but for whole turns; mm and degrees."""
    assert list(found)[:3] == pytest.approx(expected[:3], abs=1e-9)
    for angle, wanted in zip(list(found)[3:], expected[3:]):
        assert math.remainder(angle - wanted, 360.0) == pytest.approx(0, abs=1e-9)


def test_table_of_forward_poses_of_six_axis_arms():
    arms, count = Arms(), 0
    for name, *fields in rows("six_forward.txt"):
        n = [float(field) for field in fields]
        tool, load = Tool(n[6:12], Load(n[12], n[13:16])), Load(n[16], n[17:20])
        pose = arms[name, 6].joint_to_base_pos(n[:6], tool, None, load)
        assert_frame(pose.frame, n[20:26])
        assert_frame(arms[name, 6].fkine_vision(n[:6]).frame, n[26:32])
        assert pose.config == ArmConfig(*map(int, n[32:36])) == arms[name, 6].get_arm_type(n[:6])
        count += 1
    assert count >= 80


def test_table_of_inverse_solutions_of_six_axis_arms():
    arms, count = Arms(), 0
    for name, *fields in rows("six_inverse.txt"):
        code = int(fields[24], 16)
        n = [float(field) for field in fields[:24] + fields[25:]]
        tool, load = Tool(n[6:12], Load(n[12], n[13:16])), Load(n[16], n[17:20])
        target = Pose(n[:6], *map(int, n[20:24]))
        count += 1
        try:
            joints = arms[name, 6].wobj_pos_to_joint(target, tool, None, load)
        except KineError as error:
            assert error.code == code
            assert error.printed == b"IK error 5:%d\n" % code
        else:
            assert code == 0
            assert list(joints.axis)[:6] == pytest.approx(n[24:30], abs=1e-6)
    assert count >= 150


def test_table_of_forward_poses_of_four_axis_arms():
    arms, count = Arms(), 0
    for arm_type, name, *fields in rows("four_forward.txt"):
        n = [float(field) for field in fields]
        pose = arms[name, int(arm_type)].joint_to_base_pos(n[:4], Tool((n[4], n[5], n[6], n[7], 0, 0)))
        assert_frame(pose.frame, n[8:14])
        assert pose.config == ArmConfig(*map(int, n[20:24]))
        count += 1
    assert count >= 40


def test_the_stretched_wrist_arm_stands_where_its_lengths_say(arm):
    """All axes 0: the upper arm points up, the forearm ahead, the flange ahead of the wrist."""
    frame = arm.joint_to_base_pos([0] * 6).frame
    assert (frame.x, frame.y, frame.z) == pytest.approx((100 + 755 + 85, 0, 615 + 705 + 135))


@pytest.mark.parametrize("q", [(30, 60, 90, 0), (-100, 45, -720, 30)])
def test_a_four_axis_arm_is_a_planar_arm_with_a_screw(q):
    lengths = FourAxisParam(link1_length=350, link2_length=250, z_offset=50, screw_lead=20)
    with Arm(lengths) as scara:
        frame = scara.joint_to_base_pos(q).frame
    first, second = math.radians(q[0]), math.radians(q[0] + q[1])
    assert frame.x == pytest.approx(350 * math.cos(first) + 250 * math.cos(second))
    assert frame.y == pytest.approx(350 * math.sin(first) + 250 * math.sin(second))
    assert frame.z == pytest.approx(50 + 20 * q[2] / 360)
    assert frame.a == pytest.approx(q[0] + q[1] + q[3])


def test_inverse_leads_back_to_the_joints_in_every_posture(arm):
    tool, wobj = Tool((10, -20, 150, 30, 40, 50), Load(3, (0, 0, 80))), Wobj(
        (900, 100, 50, 20, 0, 0), (5, 6, 7, 1, 2, 3)
    )
    here = arm.joint_to_wobj_pos([20, 10, 60, 50, -60, 70], tool, wobj)
    for posture in range(8):
        target = here.replace(cfg4=posture)
        joints = arm.wobj_pos_to_joint(target, tool, wobj)
        there = arm.joint_to_wobj_pos(joints, tool, wobj)
        assert list(there.frame) == pytest.approx(list(here.frame), abs=1e-6)
        assert there.cfg4 == posture


def test_arm_type_follows_from_the_record_and_another_is_refused():
    four, six = FourAxisParam(link1_length=300, link2_length=200, screw_lead=20), WRIST
    for param, wrong in ((four, 6), (six, 4), (six, 4110)):
        with pytest.raises(TypeError):
            Arm(param, wrong)
    with pytest.raises(TypeError):
        Arm().init_kinematic_param(None)
    for param, arm_type in ((six, 7), (four, 0)):
        with pytest.raises(KineError) as caught:
            Arm(param, arm_type)
        assert caught.value.code == ResultCode.KINE_ERR_UNKNOWN_ARM_TYPE
    with pytest.raises(KineError) as caught:
        Arm(None, ArmType.SIX_AXIS)
    assert caught.value.code == ResultCode.KINE_ERR_MODEL_PARAM
    # Axis 2 of arm type 4110 is counted from the folded elbow: 180 there is the stretched arm.
    with Arm(four, ArmType.FOUR_AXIS_4110) as arm:
        assert math.hypot(*list(arm.joint_to_base_pos([0, 180, 0, 0]).frame)[:2]) == pytest.approx(500)


def test_questions_answer_with_bool(arm):
    assert arm.is_singularity([0, 10, 20, 0, 0, 0]) is True
    assert arm.is_singularity([0, 10, 20, 0, 40, 0]) is False
    arm.set_axis_limit([170, 90, 150, 180, 120, 360], [-170, -90, -60, -180, -120, -360])
    assert arm.is_arm_type_valid(Pose(cfg1=1)) is True
    assert arm.is_arm_type_valid(Pose(cfg1=4)) is False
    for method in (lambda: arm.is_arm_type_valid((0, 0, 0, 181, 0, 0)), lambda: Arm().is_singularity([0])):
        with pytest.raises(KineError):
            method()


def test_numbers_that_do_not_fit_an_argument_are_refused(arm):
    with pytest.raises(OverflowError, match="mech_unit_count"):
        arm.set_mech_unit_global_cfg(-1, 0)
    with pytest.raises(OverflowError, match="mode"):
        arm.inch_move_pos_calc([], 2**31, (0, 0, 0), [])
    with pytest.raises(TypeError):
        arm.calc_pos_dif(Pose(), Pose(), 1.0)
    with pytest.raises(ValueError, match="steps"):
        arm.inch_move_pos_calc([], 1, (0, 0), [])


def test_a_jog_does_not_change_its_steps(arm):
    steps = [2.0, 5.0, 3.0]
    for _ in range(2):
        target = arm.inch_move_pos_calc([1, -1], InchMode.JOINTS, steps, [10, 20, 30, 40, 50, 60])
        assert list(target.axis)[:2] == pytest.approx([12, 18])
    assert steps == [2.0, 5.0, 3.0]


def test_swapped_tool_and_work_object_are_new_records(arm):
    tool = Tool((1, 2, 3, 4, 5, 6), held_by_robot=0)
    wobj = Wobj((10, 0, 0, 90, 0, 0), (0, 20, 0, 0, 0, 0), held_by_robot=1)
    swapped = arm.calc_align_coord_proc(tool, wobj)
    # Ry along the turned Y axis is -X: 10 - 20.
    assert list(swapped.tool.t_frame) == pytest.approx([-10, 0, 0, 90, 0, 0])
    assert swapped.wobj == Wobj((1, 2, 3, 4, 5, 6))
    assert tool == Tool((1, 2, 3, 4, 5, 6), held_by_robot=0) and wobj.held_by_robot == 1
    with pytest.raises(KineError) as caught:
        arm.calc_align_coord_proc(tool, Wobj())
    assert caught.value.code == ResultCode.KINE_ERR_WOBJ
    assert tool.held_by_robot == 0


def test_the_normal_of_points_on_one_line_is_none(arm):
    assert arm.calc_z_vec(Frame(), Frame(1), Frame(0, 1), 5) == (0, 0, 5)
    assert arm.calc_z_vec(Frame(), Frame(1), Frame(2), 5) is None
    assert all(math.isnan(v) for v in arm.calc_z_vec(Frame(), Frame(1), Frame(0, 1), math.nan))


def test_a_report_written_before_a_refusal_comes_with_the_exception(arm):
    """Three touches agree with a tool of length 100; the last three poses do not move at all."""
    turned = [(0, 0, 0), (40, 30, 0), (0, -30, 50)]
    touches = []
    for a, b, c in turned:
        a, b, c = (math.radians(angle) for angle in (a, b, c))
        axis = (  # the Z axis of the flange, third column of Rz(a) Ry(b) Rx(c)
            math.cos(a) * math.sin(b) * math.cos(c) + math.sin(a) * math.sin(c),
            math.sin(a) * math.sin(b) * math.cos(c) - math.cos(a) * math.sin(c),
            math.cos(b) * math.cos(c),
        )
        touches.append(Pose([-100 * v for v in axis] + [math.degrees(angle) for angle in (a, b, c)]))
    good = arm.calc_grip_tool_prm_3p(*touches)
    assert list(good.frame) == pytest.approx([0, 0, 100, 0, 0, 0], abs=1e-9)
    with pytest.raises(KineError) as caught:
        arm.calc_grip_tool_prm_3pzx(*touches, touches[0], touches[0], touches[0])
    assert caught.value.code == ResultCode.KINE_ERR_CALIB_POINTS_CLOSE
    assert caught.value.report == good.error and good.error.largest < 1e-9
    with pytest.raises(KineError) as caught:
        arm.calc_grip_tool_prm_3pzx(touches[0], touches[0], *touches, touches[0])
    assert caught.value.report is None


def test_a_tilt_is_in_radians(arm):
    result = arm.calc_ext_wobj_user_prm_2p(Joints().to_list()[:6], (100, 0, -100 * math.tan(math.radians(30)), 0, 0, 0))
    assert result.tilt_rad == pytest.approx(math.radians(30))
    assert result.frame.b == pytest.approx(30)

"""Checks of the naive model against numbers that were worked out elsewhere: python3 -m unittest."""

import math
import random
import unittest
from types import SimpleNamespace

import align
import calls
import four_axis
import generate
import six_axis
from exports import OUTPUT_SIZES, SETUPS, SIGNATURES, Library
from geometry import (axis_angle, euler_to_rotation, inverse, matrix6_inverse, matrix_to_pose,
                      pose_difference, pose_to_matrix, product, rigid_inverse, rotate, rotation_to_euler,
                      rotation_to_euler_exact, safe_acos, safe_asin)
from ieee import INT32_MAX, INT32_MIN, div, remainder4, trunc_to_int32
from margins import MARGINS
from records import (ARM_CONFIG, DIRECTIONS, EXT_AXIS_PARAM, FOUR_AXIS_PARAM, FRAME, JOINT, LOAD, MECH_UNIT,
                     POSE, SIX_AXIS_PARAM, TOOL, VECTOR, WOBJ)

TOOL_ON_ROBOT = TOOL.pack(1, *[0.0] * 16)
FIXED_WOBJ = WOBJ.pack(0, 1, 0, *[0.0] * 12)
NO_LOAD = LOAD.pack(*[0.0] * 10)


def six_axis_values(**fields):
    places = {"a1": 0, "a2": 1, "a3": 2, "d4": 3, "d6": 4, "d1": 5, "lateral": 6, "d3": 14, "k2": 31,
              "k3": 32, "k5": 33}
    values = [0.0] * 34
    values[8:13] = [90.0, 0.0, 90.0, -90.0, 90.0]
    for name, value in fields.items():
        values[places[name]] = value
    return values


def library_with_six(values):
    library = Library()
    assert library.call("Kine_InitKinematicParam", 6, SIX_AXIS_PARAM.pack(*values)).code == 0
    return library


def library_with_four(arm_type, link1, link2, height=0.0, lead=10.0, tilts=(0.0,) * 4):
    library = Library()
    data = FOUR_AXIS_PARAM.pack(link1, link2, height, lead, 0.0, 0.0, 0.0, 0.0, *tilts)
    assert library.call("Kine_InitKinematicParam", arm_type, data).code == 0
    return library


def offset_shoulder_arm():
    return library_with_six(six_axis_values(a2=431.8, a3=20.3, d4=431.8, lateral=-150.05, d3=-150.05))


def from_textbook(*t):
    """Joints of the published arm in degrees from its usual textbook joints in radians."""
    t1, t2, t3, t4, t5, t6 = (math.degrees(v) for v in t)
    return JOINT.pack(t1 + 180.0, 90.0 - t2, -t3, t4, -t5, t6, *[0.0] * 8)


def joints_of(*axis):
    return JOINT.pack(*axis, *[0.0] * (14 - len(axis)))


def base_pose(library, joints, tool=TOOL_ON_ROBOT, load=NO_LOAD):
    answer = library.call("Kine_JointToBasePos", joints, tool, FIXED_WOBJ, load, True)
    assert answer.code == 0, answer
    return POSE.unpack(answer.output)


def solve(library, target):
    return library.call("Kine_WobjPosToJoint", POSE.pack(*target), TOOL_ON_ROBOT, FIXED_WOBJ, NO_LOAD, True)


class Close(unittest.TestCase):
    def assert_close(self, actual, expected, tolerance=1e-9):
        self.assertEqual(len(actual), len(expected))
        for a, b in zip(actual, expected):
            self.assertAlmostEqual(a, b, delta=tolerance, msg=f"{actual} != {expected}")


class Arithmetic(Close):
    def test_truncation_is_defined_for_every_double(self):
        cases = ((math.nan, INT32_MIN), (math.inf, INT32_MAX), (-math.inf, INT32_MIN), (1e300, INT32_MAX),
                 (2147483646.9, 2147483646), (-2147483648.5, INT32_MIN), (-0.9, 0), (2.9, 2))
        for value, expected in cases:
            self.assertEqual(trunc_to_int32(value), expected)

    def test_remainder_has_the_sign_of_the_number(self):
        self.assertEqual([remainder4(n) for n in (-9, -5, -4, -1, 0, 3, 4, 7)], [-1, -1, 0, -1, 0, 3, 0, 3])

    def test_division_by_zero(self):
        self.assertEqual(div(1.0, 0.0), math.inf)
        self.assertEqual(div(1.0, -0.0), -math.inf)
        self.assertTrue(math.isnan(div(0.0, 0.0)))

    def test_tolerant_arcs(self):
        self.assertEqual(safe_acos(1.000005), 0.0)
        self.assertEqual(safe_acos(-1.000005), math.pi)
        self.assertTrue(math.isnan(safe_acos(1.00001)))
        self.assertEqual(safe_asin(1.000005), math.pi / 2)


class Geometry(Close):
    def test_pose_survives_the_matrix(self):
        pose = [1.0, -2.0, 3.0, 0.4, -1.5, -3.0]
        self.assert_close(matrix_to_pose(pose_to_matrix(pose)), pose, 1e-12)

    def test_gimbal_keeps_only_one_heading(self):
        self.assert_close(rotation_to_euler(euler_to_rotation(0.3, math.pi / 2, 0.2)),
                          (0.0, math.pi / 2, -0.1), 1e-12)
        self.assertEqual(rotation_to_euler((0.0, 0, 1, 0.0, 1, 0, -1, 0, 0))[1], math.pi / 2)
        self.assertEqual(rotation_to_euler((0.0, 0, -1, 0.0, 1, 0, 1, 0, 0))[1], -math.pi / 2)

    def test_inverse_holds_for_a_scaled_block(self):
        m = tuple(2.5 * v for v in euler_to_rotation(0.1, 0.2, 0.3)) + (5.0, -6.0, 7.0)
        self.assert_close(product(m, inverse(m)), (1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0), 1e-14)

    def test_matrix6_inverse(self):
        unit = [[float(i == j) for j in range(6)] for i in range(6)]
        self.assertEqual(matrix6_inverse(unit), (1.0, unit))
        small = [row[:] for row in unit]
        small[4][4] = 0.00009
        self.assertEqual(matrix6_inverse(small)[0], 0.0)
        rng = random.Random(3)
        m = [[rng.uniform(-1, 1) for _ in range(6)] for _ in range(6)]
        determinant, inverted = matrix6_inverse(m)
        self.assertAlmostEqual(determinant, four_axis.laplace(m), delta=1e-12)
        for i in range(6):
            row = [sum(m[i][k] * inverted[k][j] for k in range(6)) for j in range(6)]
            self.assert_close(row, unit[i], 1e-11)


class Quadrants(unittest.TestCase):
    def test_reported_quadrants(self):
        half = math.pi / 2
        cases = ((0.0, 0), (-1e-9, 0), (-1e-6, 0), (-1e-5, -1), (-0.001, -1), (0.5, 0), (half - 1e-6, 1),
                 (half, 1), (-half, -1), (-0.1, -1), (-2.0, -2), (math.pi, 2), (-math.pi, -2))
        for quadrant in (six_axis.quadrant, four_axis.quadrant):
            for angle, expected in cases:
                self.assertEqual(quadrant(angle), expected, angle)

    def test_turn_selection_has_no_bias_above_zero(self):
        self.assertEqual(six_axis.quadrant_for_turns(math.pi / 2 - 1e-6), 0)
        self.assertEqual(six_axis.quadrant(math.pi / 2 - 1e-6), 1)

    def test_second_shift_is_kept(self):
        raw = math.radians(-105.8)
        once = four_axis.shifted(raw, 4)
        twice = four_axis.window(four_axis.shifted(once, 4), 4, 1e-5)
        self.assertAlmostEqual(math.degrees(twice), 614.2, places=9)

    def test_long_turn_loops_end(self):
        self.assertEqual(four_axis.quadrant(four_axis.window(0.3 + math.pi, 1000, 1e-5)), 1000 - 2)
        for hopeless in (math.nan, math.inf, 1e300):
            with self.assertRaises(six_axis.Refused):
                six_axis.turn_after_steps(hopeless, 0)


class SixAxis(Close):
    def test_published_arm(self):
        library = offset_shoulder_arm()
        pose = base_pose(library, from_textbook(0, 0, 0, 0, 0, 0))
        self.assert_close(pose[:6], (452.1, -150.05, 431.8, 0, 0, 0))
        pose = base_pose(library, from_textbook(0.1, 0.2, 0.3, 0.4, 0.5, 0.6))
        self.assert_close(pose[:6], (247.8027, -125.9402, 474.4579, 81.5416, -34.1712, -47.5481), 5e-5)
        self.assertEqual(pose[6:10], (2, 0, 0, 5))

    def test_eight_postures_reach_the_same_pose(self):
        library = offset_shoulder_arm()
        pose = list(base_pose(library, from_textbook(0, math.pi / 4, math.pi, 0, math.pi / 4, 0)))
        self.assert_close(pose[:3], (596.3031, -150.05, -14.3543), 5e-5)
        found = set()
        for posture in range(8):
            pose[9] = posture
            answer = solve(library, pose)
            self.assertEqual(answer.code, 0)
            found.add(tuple(round(v, 3) for v in JOINT.unpack(answer.output)[:6]))
            again = base_pose(library, answer.output)
            self.assert_close(again[:3], pose[:3], 1e-9)
            self.assertEqual(again[9], posture)
        self.assertEqual(len(found), 8)

    def test_chain_with_the_other_sense_of_twists(self):
        values = six_axis_values(a1=100.0, a2=500.0, a3=50.0, d4=400.0, d6=80.0, d1=300.0)
        values[8:13] = [-90.0, 0.0, -90.0, 90.0, -90.0]
        library = library_with_six(values)
        self.assert_close(base_pose(library, joints_of())[:3], (-380.0, 0.0, -250.0))
        answer = library.call("Kine_FKineVision", joints_of(), True)
        self.assert_close(POSE.unpack(answer.output)[:3], (-300.0, 0.0, -250.0))

    def test_payload_makes_the_arm_sag(self):
        values = six_axis_values(a1=100.0, a2=500.0, a3=50.0, d4=400.0, d6=80.0, d1=300.0, k2=2e5, k3=1e5,
                                 k5=3e4)
        library = library_with_six(values)
        arm = library.store.arms[6]
        block = SimpleNamespace(mass=10.0, cog=[0.0] * 3)
        self.assert_close(arm.payload_torques([0.0] * 6, block), (-47040.0, -47040.0, -7840.0), 1e-8)
        load = LOAD.pack(10.0, *[0.0] * 9)
        self.assert_close(base_pose(library, joints_of(), load=load)[2:3], (849.6403790922636,), 1e-9)
        load = LOAD.pack(10.0, 0.0, 0.0, 100.0, *[0.0] * 6)
        self.assert_close(base_pose(library, joints_of(), load=load)[2:3], (849.5436737156,), 1e-9)

    def test_zero_stiffness_switches_the_deflection_off(self):
        library = library_with_six(six_axis_values(a2=500.0, d4=400.0))
        load = LOAD.pack(10.0, *[0.0] * 9)
        self.assertEqual(base_pose(library, joints_of(), load=load), base_pose(library, joints_of()))

    def test_calibrated_round_trip_over_turns(self):
        rng = random.Random(11)
        for _ in range(20):
            values = six_axis_values(a1=120.0, a2=600.0, a3=40.0, d4=550.0, d6=90.0, d1=400.0, lateral=20.0,
                                     d3=20.0, k2=2e5, k3=1e5, k5=3e4)
            for i in (*range(8, 14), *range(14, 18)):
                values[i] += rng.uniform(-0.3, 0.3)
            values[18:20] = [rng.uniform(-30, 30), rng.uniform(-30, 30)]
            values[24:31] = [rng.uniform(-30000, 30000) for _ in range(7)]
            library = library_with_six(values)
            joints = [rng.uniform(-170, 170) + 360 * rng.randint(-6, 6), rng.uniform(-80, 80),
                      rng.uniform(-60, 60), rng.uniform(-170, 170) + 360 * rng.randint(-6, 6),
                      rng.uniform(10, 120), rng.uniform(-170, 170)]
            pose = base_pose(library, joints_of(*joints))
            answer = solve(library, pose)
            self.assertEqual(answer.code, 0)
            back = base_pose(library, answer.output)
            self.assert_close(back[:3], pose[:3], 1e-9)
            self.assert_close(JOINT.unpack(answer.output)[1:3], joints[1:3], 1e-9)

    def test_codes_of_the_closed_form(self):
        library = library_with_six(six_axis_values(a2=500.0, d4=400.0, d6=100.0))
        down = [0.0, 180.0, 0.0]
        self.assertEqual(solve(library, [0.0, 0.0, 300.0, *down, 0, 0, 0, 9] + [0.0] * 6).code, 0x6096)
        self.assertEqual(solve(library, [300.0, 0.0, 300.0, *down, 0, 0, 0, 8] + [0.0] * 6).code, 0x6090)
        self.assertEqual(solve(library, [3000.0, 0.0, 300.0, *down, 0, 0, 0, 0] + [0.0] * 6).code, 0x6097)
        straight = list(base_pose(library, joints_of(10.0, 20.0, 30.0, 40.0, 0.0, 50.0)))
        self.assertEqual(solve(library, straight).code, 0x6098)


class FourAxis(Close):
    def test_planar_truths(self):
        for links, angles, expected in (((425.0, 375.0), (30.0, 45.0), (465.117939, 574.722185)),
                                        ((425.0, 375.0), (-60.0, 120.0), (400.0, -43.301270)),
                                        ((325.0, 275.0), (30.0, 45.0), (352.633494, 428.129602))):
            pose = base_pose(library_with_four(4, *links), joints_of(*angles))
            self.assert_close(pose[:2], expected, 5e-7)

    def test_screw_lifts_by_one_lead(self):
        library = library_with_four(4, 325.0, 275.0, height=50.0, lead=16.0)
        self.assert_close(base_pose(library, joints_of(0.0, 0.0, 360.0))[2:3], (66.0,), 1e-12)

    def test_round_trip_of_tilted_arms(self):
        rng = random.Random(5)
        for arm_type in (4, 4110):
            for _ in range(30):
                tilts = [rng.uniform(-3, 3) for _ in range(4)]
                library = library_with_four(arm_type, 325.0, 275.0, 100.0, 20.0, tilts)
                elbow = rng.choice((-1, 1)) * rng.uniform(35, 145)
                joints = [rng.uniform(-170, 170), elbow if arm_type == 4 else elbow - 180.0,
                          rng.uniform(-2000, 2000), rng.uniform(-170, 170) + 360 * rng.randint(-6, 6)]
                pose = base_pose(library, joints_of(*joints))
                answer = solve(library, pose)
                self.assertEqual(answer.code, 0)
                self.assert_close(base_pose(library, answer.output)[:4], pose[:4], 1e-4)

    def test_jacobian_matches_differences(self):
        library = library_with_four(4, 325.0, 275.0, 100.0, 20.0, (2.0, -1.0, 1.5, 0.5))
        arm = library.store.arms[4]
        q, tool = [0.3, 0.9, 4.0, -0.7], [10.0, -20.0, 30.0, 0.4, 0.0, 0.0]
        jacobian = arm.jacobian(q, tool)
        for i in range(4):
            ahead, behind = list(q), list(q)
            ahead[i] += 1e-6
            behind[i] -= 1e-6
            pairs = zip(arm.tool_point(ahead, tool), arm.tool_point(behind, tool))
            slope = [(a - b) / 2e-6 for a, b in pairs]
            self.assert_close([row[i] for row in jacobian], slope[:4], 1e-6)

    def test_second_arm_wraps_axis_2(self):
        library = library_with_four(4110, 325.0, 275.0)
        joints = [0.0, math.radians(370.0), 0.0, 0.0]
        self.assertEqual(library.store.arms[4110].config(joints), [-1, 0, 4, 0])
        self.assertAlmostEqual(math.degrees(joints[1]), 10.0)

    def test_vision_pose_of_the_second_arm_has_no_half_turn(self):
        library = library_with_four(4110, 325.0, 275.0)
        vision = POSE.unpack(library.call("Kine_FKineVision", joints_of(0.0, 0.0), True).output)
        self.assert_close(vision[:1], (600.0,))
        self.assert_close(base_pose(library, joints_of(0.0, 0.0))[:1], (50.0,))

    def test_codes(self):
        library = library_with_four(4, 325.0, 275.0)
        rest = [0.0] * 6
        self.assertEqual(solve(library, [600.0, 0, 0, 0, 0, 0, 1, 0, 0, 0] + rest).code, 0x6093)
        self.assertEqual(solve(library, [601.0, 0, 0, 0, 0, 0, 1, 0, 0, 0] + rest).code, 0x6094)
        self.assertEqual(solve(library, [400.0, 0, 0, 0, 0, 0, 0, 0, 0, 0] + rest).code, 0x6090)
        self.assertEqual(solve(library, [400.0, 0, math.nan, 0, 0, 0, 1, 0, 0, 0] + rest).code, 0x6094)


class Exports(unittest.TestCase):
    def test_record_sizes(self):
        layouts = (POSE, JOINT, LOAD, TOOL, WOBJ, MECH_UNIT, EXT_AXIS_PARAM, ARM_CONFIG)
        sizes = [layout.size for layout in layouts]
        self.assertEqual(sizes, [112, 112, 80, 136, 104, 312, 60, 16])

    def test_before_initialisation(self):
        library = Library()
        answer = library.call("Kine_JointToBasePos", joints_of(), TOOL_ON_ROBOT, FIXED_WOBJ, NO_LOAD, True)
        self.assertEqual(answer[:3], (0x6001, b"FK Error 1:24577\n", None))
        self.assertEqual(solve(library, [0.0] * 6 + [0] * 4 + [0.0] * 6)[:3], (0x6001, b"", None))

    def test_unknown_arm_type(self):
        library = Library()
        self.assertEqual(library.call("Kine_InitKinematicParam", 5, None).code, 0xFFFFFFFF)
        self.assertEqual(library.call("Kine_GetArmType", joints_of(), True).code, 0x6001)

    def test_setter_lines(self):
        library = Library()

        def call(*args):
            return library.call(*args)[:3]

        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 5, 9, 0), (0, b"", None))
        self.assertEqual(call("Kine_SetMechUnitParam", -1, None), (0, b"", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 4, 2, 1),
                         (0x6004, b"IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 3, 0xFFFFFFFF, 1),
                         (0x6004, b"IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:-1,6\n", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 2, 2, 1)[0], 0)
        self.assertEqual(call("Kine_SetMechUnitParam", -1, None),
                         (0x6002, b"IsLegalMechUnit:index:-1,2\n", None))
        self.assertEqual(call("Kine_SetExtAxisParam", 6, None),
                         (0x6003, b"IsLegalExtAxisParam:index:6,2\n", None))
        unit = MECH_UNIT.pack(1, 2, 0, 0, 3, *[0.0] * 36, *[0] * 6)
        self.assertEqual(call("Kine_SetMechUnitParam", 0, unit),
                         (0x6002, b"IsLegalMechUnit\xa3\xbapArmMechUnit->AxisCount,"
                                  b"pMechUnitAndExtAxisPara->ExtAxisNum:3,2\n", None))

    def test_held_bytes(self):
        library = offset_shoulder_arm()
        for tool, wobj, expected in ((1, 1, (0x6016, b"", None)), (0, 0, (0x6016, b"", None)),
                                     (1, 2, (0x6050, b"FK Error 2:24656\n", None))):
            answer = library.call("Kine_JointToWorldPos", joints_of(), TOOL.pack(tool, *[0.0] * 16),
                                  WOBJ.pack(wobj, 1, 0, *[0.0] * 12), NO_LOAD, True)
            self.assertEqual(answer[:3], expected)

    def test_axis_frame_at_the_origin(self):
        library = offset_shoulder_arm()
        library.call("Kine_SetMechUnitGlobalCfg", 2, 6, 1)
        library.call("Kine_SetMechUnitParam", 1, MECH_UNIT.pack(1, 2, 0, 0, 1, *[0.0] * 36, *[0] * 6))
        answer = library.call("Kine_JointToWobjPos", joints_of(), TOOL_ON_ROBOT,
                              WOBJ.pack(0, 0, 1, *[0.0] * 12), NO_LOAD, True)
        self.assertEqual(answer[:3], (0x6034, b"FK Error 6:24628\n", None))

    def test_flange_answer_is_the_tool_frame(self):
        library = offset_shoulder_arm()
        tool = TOOL.pack(1, 1.0, 2.0, 3.0, 170.0, 120.0, -170.0, *[0.0] * 10)
        joints = JOINT.pack(*[10.0] * 14)
        answer = library.call("Kine_JointToFlangePos", joints, tool, FIXED_WOBJ, NO_LOAD, True)
        pose = POSE.unpack(answer.output)
        self.assertAlmostEqual(pose[4], 120.0)
        self.assertEqual(pose[10:], (0.0,) * 6)

    def test_every_export_survives_every_null(self):
        for initialised in (False, True):
            library = offset_shoulder_arm() if initialised else Library()
            for name, kinds in SIGNATURES.items():
                empty = [0 if kind in ("int", "uint", "double") else None for kind in kinds]
                self.assertIsNone(library.call(name, *empty).output)

    def test_sequences_are_reproducible(self):
        def codes():
            library, answer, seen = Library(), None, []
            source = generate.sequence(calls.rng_for(7, 1))
            try:
                while True:
                    call = source.send(answer)
                    answer = library.call(call.name, *call.args)
                    seen.append((call, answer.code))
            except StopIteration:
                return repr(seen)
        self.assertEqual(codes(), codes())


class AxisRotations(Close):
    def test_turn_about_an_axis(self):
        self.assert_close(rotate(axis_angle((0, 0, 1), math.pi / 2), (1, 0, 0)), (0, 1, 0), 1e-15)
        self.assert_close(axis_angle((0, 1, 0), 0.3), euler_to_rotation(0, 0.3, 0), 1e-15)

    def test_two_slots_give_no_rotation(self):
        m = axis_angle((1, 0, 1), 0.5)
        self.assertGreater(abs(sum(v * v for v in m) - 3.0), 0.05)

    def test_exact_conversion_has_its_own_gimbal_rules(self):
        near = euler_to_rotation(0.3, math.pi / 2 - 9e-6, 0.2)
        self.assertEqual(rotation_to_euler(near)[0], 0.0)
        self.assert_close(rotation_to_euler_exact(near), (0.3, math.pi / 2 - 9e-6, 0.2), 1e-9)
        self.assert_close(rotation_to_euler_exact((0.0, 0.6, 0.8, 0.0, 0.8, -0.6, -1.0, 0.0, 0.0)),
                          (0.0, math.pi / 2, math.atan2(0.6, 0.8)), 1e-15)
        # The sign of r20 decides, however far it is from 1.
        self.assert_close(rotation_to_euler_exact((0.0, 0.6, 0.8, 0.0, 0.8, -0.6, 0.5, 0.0, 0.0)),
                          (0.0, -math.pi / 2, -math.atan2(0.6, 0.8)), 1e-15)

    def test_rigid_inverse_transposes(self):
        m = euler_to_rotation(0.1, 0.2, 0.3) + (5.0, -6.0, 7.0)
        self.assert_close(rigid_inverse(m), inverse(m), 1e-14)

    def test_difference_of_a_pose_with_itself(self):
        pose = [1.0, -2.0, 3.0, 0.4, -1.5, -3.0]
        for in_base in (True, False):
            self.assert_close(pose_difference(pose, pose, in_base), [0.0] * 6, 1e-14)


def pose_bytes(*frame, cfg=(0, 0, 0, 0), ext=(0.0,) * 6):
    return POSE.pack(*frame, *cfg, *ext)


def wobj_bytes(held, fix, unit=0, user=(0.0,) * 6, frame=(0.0,) * 6):
    return WOBJ.pack(held, fix, unit, *user, *frame)


class Conversions(Close):
    def setUp(self):
        self.model = Library()

    def answer(self, name, *args):
        """Code and result as numbers."""
        outcome = self.model.call(name, *args)
        return outcome.code, None if outcome.output is None else POSE.unpack(outcome.output)

    def test_fixed_work_object(self):
        wobj = wobj_bytes(0, 1, user=(100.0, 0, 0, 90.0, 0, 0))
        code, pose = self.answer("Kine_WorldPosToFixWobjPos", pose_bytes(100.0, 50.0, 0, 90.0, 0, 0,
                                                                         cfg=(1, 2, 3, 4)), wobj, True)
        self.assertEqual((code, pose[6:10]), (0, (1, 2, 3, 4)))
        self.assert_close(pose[:6], (50.0, 0, 0, 0, 0, 0), 1e-12)
        refused = {wobj_bytes(1, 1): 0x6012, wobj_bytes(2, 1): 0, wobj_bytes(0, 2): 0,
                   wobj_bytes(0, 0, -1): 0x6012}
        for wobj, expected in refused.items():
            outcome = self.model.call("Kine_WorldPosToFixWobjPos", pose_bytes(*[0.0] * 6), wobj, True)
            self.assertEqual((outcome.code, outcome.printed), (expected, b""))
        outcome = self.model.call("Kine_WorldPosToFixWobjPos", None, wobj_bytes(0, 0), True)
        self.assertEqual(outcome[:2], (0x6012, b"IsLegalWobj,!pWobj->UFFix:0;\n"))

    def test_held_work_object_and_back(self):
        wobj = wobj_bytes(1, 1, user=(10.0, 20.0, 30.0, 40.0, 50.0, 60.0), frame=(1.0, 2, 3, 4, 5, 6))
        flange = pose_bytes(700.0, -80.0, 500.0, 170.0, 30.0, -120.0)
        start = (300.0, 200.0, 100.0, 10.0, 20.0, 30.0)
        code, inside = self.answer("Kine_WorldPosToGripWobjPos", pose_bytes(*start), wobj, flange, True)
        self.assertEqual(code, 0)
        code, back = self.answer("Kine_GripWobjPosToWorldPos", pose_bytes(*inside[:6]), wobj, flange, True)
        self.assertEqual(code, 0)
        self.assert_close(back[:6], start, 1e-11)
        loose = wobj_bytes(0, 1)
        self.assertEqual(self.answer("Kine_WorldPosToGripWobjPos", pose_bytes(*start), loose, flange,
                                     True)[0], 0x6012)
        self.assertEqual(self.answer("Kine_GripWobjPosToWorldPos", pose_bytes(*start), loose, flange,
                                     True)[0], 0)

    def test_modes_of_the_coordinate_conversion(self):
        pose = pose_bytes(100.0, 200.0, 300.0, 10.0, 20.0, 30.0)
        wobj = wobj_bytes(0, 1, user=(100.0, 0, 0, 0, 0, 0))
        held, stationary = TOOL_ON_ROBOT, TOOL.pack(0, *[0.0] * 16)
        for mode in (0, 1, 7, -3):
            code, same = self.answer("Kine_CrdPosToWobjPos", pose, mode, held, wobj, NO_LOAD, True)
            self.assertEqual(code, 0)
            self.assert_close(same[:6], POSE.unpack(pose)[:6], 1e-12)
        self.assertEqual(self.answer("Kine_CrdPosToWobjPos", pose, -1, held, wobj, NO_LOAD, True)[0], 0x6071)
        self.assertEqual(self.answer("Kine_CrdPosToWobjPos", pose, -2, held, wobj, NO_LOAD, True)[0], 0x6032)
        self.model.call("Kine_InitKinematicParam", 5, None)  # puts the base at the world origin
        for mode, tool in ((-1, stationary), (-2, held)):
            code, moved = self.answer("Kine_CrdPosToWobjPos", pose, mode, tool, wobj, NO_LOAD, True)
            self.assertEqual(code, 0)
            self.assert_close(moved[:6], (0.0, 200.0, 300.0, 10.0, 20.0, 30.0), 1e-12)
        outcome = self.model.call("Kine_CrdPosToWobjPos", pose, -2, stationary, wobj, NO_LOAD, True)
        self.assertEqual(outcome[:3], (0x6050, b"", None))

    def test_offsets(self):
        pose = pose_bytes(100.0, 0, 0, 90.0, 0, 0)
        for name, moved in (("Kine_ToolCoordOffset", (100.0, 10.0, 0, 90.0, 0, 0)),
                            ("Kine_WobjCoordOffset", (110.0, 0, 0, 90.0, 0, 0))):
            code, result = self.answer(name, pose, FRAME.pack(10.0, 0, 0, 0, 0, 0), True)
            self.assertEqual(code, 0)
            self.assert_close(result[:6], moved, 1e-12)
            self.assertEqual(self.answer(name, pose, FRAME.pack(0, 0, 0, 0, 0, 181.0), True)[0], 0x6017)
            code, turned = self.answer(name, pose, FRAME.pack(0, 0, 0, 0, 0, 30.0), True)
            self.assert_close(turned[:3], (100.0, 0, 0), 1e-12)
        # About the reference X axis, after a quarter turn about Z.
        self.assert_close(rotate(euler_to_rotation(*[math.radians(v) for v in turned[3:6]]), (1, 0, 0)),
                          (0.0, math.cos(math.pi / 6), 0.5), 1e-12)


ANY_TOOL = TOOL.pack(1, 30.0, -20.0, 150.0, 20.0, 35.0, -50.0, 4.0, 10.0, 20.0, 30.0, *[0.0] * 6)
ANY_LOAD = LOAD.pack(3.0, -20.0, 40.0, 10.0, *[0.0] * 6)
ANY_WOBJ = wobj_bytes(0, 1, user=(500.0, 100.0, -50.0, 30.0, 10.0, -20.0),
                      frame=(5.0, 6.0, 7.0, 8.0, 9.0, 10.0))


class JogCase(Close):
    def jog(self, library, joints, mode, slots, steps=(2.0, 5.0, 3.0), tool=ANY_TOOL, wobj=ANY_WOBJ,
            load=ANY_LOAD):
        directions = DIRECTIONS.pack(*[slots.get(i, 0) for i in range(14)])
        return library.call("Kine_InchMovePosCalc", directions, mode, tool, wobj, load, VECTOR.pack(*steps),
                            joints, True)

    def place(self, library, name, joints, tool=ANY_TOOL, wobj=ANY_WOBJ, load=ANY_LOAD):
        answer = library.call(name, joints, tool, wobj, load, True)
        self.assertEqual(answer.code, 0)
        pose = POSE.unpack(answer.output)
        return pose_to_matrix([*pose[:3], *[math.radians(v) for v in pose[3:6]]])

    def six_on_a_turntable(self):
        values = six_axis_values(a1=120.0, a2=600.0, a3=40.0, d4=550.0, d6=90.0, d1=400.0, k2=2e5, k3=1e5,
                                 k5=3e4)
        library = library_with_six(values)
        library.call("Kine_SetMechUnitGlobalCfg", 1, 6, 1)
        frames = [200.0, 50.0, 10.0, 10.0, 20.0, 30.0] + [0.0] * 30
        self.assertEqual(library.call("Kine_SetMechUnitParam", 0,
                                      MECH_UNIT.pack(1, 2, 1, 0, 1, *frames, *[0] * 6)).code, 0)
        return library, JOINT.pack(10.0, -20.0, 30.0, 40.0, 50.0, 60.0, 0.0, 0.0, 25.0, *[1.0] * 5)


class Jog(JogCase):
    def test_joint_mode(self):
        library = library_with_four(4, 325.0, 275.0)
        joints = JOINT.pack(*[10.0] * 14)
        answer = self.jog(library, joints, 1, {0: 1, 3: -2, 4: 1, 9: 3, 10: 1}, (1.0, 0.0, 0.0))
        self.assertEqual(answer.code, 0)
        target = JOINT.unpack(answer.output)
        self.assert_close(target, [11.0, 10, 10, 8] + [10.0] * 4 + [11.0, 10, 10, 10, 10, 13.0], 1e-12)
        library = offset_shoulder_arm()
        target = JOINT.unpack(self.jog(library, joints, 1, {5: 1, 6: 1, 11: -1, 12: 1}).output)
        self.assert_close(target, [10.0] * 5 + [12.0, 10, 10] + [12.0, 10, 10, 10, 10, 8.0], 1e-12)

    def test_steps_turn_to_radians_whatever_happens(self):
        library = Library()
        for tool, code in ((ANY_TOOL, 0x6001), (None, 0x6011)):
            answer = self.jog(library, joints_of(), 1, {}, (180.0, 7.0, 90.0), tool=tool)
            self.assertEqual(answer[:3], (code, b"", None))
            self.assertEqual(VECTOR.unpack(answer.changed[5]), (math.pi, 7.0, math.pi / 2))
        for null in (0, 5):
            args = [DIRECTIONS.pack(*[0] * 14), 1, None, None, None, VECTOR.pack(1.0, 1.0, 1.0), None, False]
            args[null] = None
            answer = library.call("Kine_InchMovePosCalc", *args)
            self.assertEqual(answer.code, 0x6018)
            self.assertEqual(answer.changed, {5: VECTOR.pack(1.0, 1.0, 1.0)} if null == 0 else {})

    def test_zero_directions_stay(self):
        library, joints = self.six_on_a_turntable()
        held = wobj_bytes(1, 1, user=(5.0, 6.0, 80.0, 10.0, 20.0, 30.0))
        stationary = b"\x00" + ANY_TOOL[1:]
        for mode in (2, 3, 4, 5):
            for tool, wobj in ((ANY_TOOL, ANY_WOBJ), (stationary, held)):
                answer = self.jog(library, joints, mode, {}, tool=tool, wobj=wobj)
                self.assertEqual(answer.code, 0)
                self.assert_close(JOINT.unpack(answer.output), JOINT.unpack(joints), 1e-9)

    def test_asked_step_in_the_asked_frame(self):
        library, joints = self.six_on_a_turntable()
        step = pose_to_matrix([5.0, 0, 0, 0, 0, math.radians(-3.0)])
        slots = {0: 1, 3: -1}
        for mode, name in ((2, "Kine_JointToBasePos"), (3, "Kine_JointToWobjPos"),
                           (4, "Kine_JointToWobjPos")):
            answer = self.jog(library, joints, mode, slots)
            self.assertEqual(answer.code, 0)
            before, after = (self.place(library, name, q) for q in (joints, answer.output))
            if mode == 2:
                expected = product(step[:9] + (0.0,) * 3, before[:9] + (0.0,) * 3)[:9]
                expected += (before[9] + 5.0, before[10], before[11])
            else:
                expected = product(step, before) if mode == 4 else product(before, step)
            self.assert_close(after, expected, 1e-8)

    def test_world_step_is_turned_by_the_external_axes(self):
        library, joints = self.six_on_a_turntable()
        answer = self.jog(library, joints, 5, {0: 1})
        before, after = (self.place(library, "Kine_JointToBasePos", q) for q in (joints, answer.output))
        turn = product(pose_to_matrix([0.0] * 3 + [math.radians(v) for v in (10.0, 20.0, 30.0)]),
                       pose_to_matrix([0.0, 0, 0, math.radians(25.0), 0, 0]))
        self.assert_close([a - b for a, b in zip(after[9:], before[9:])], [5.0 * turn[i] for i in (0, 3, 6)],
                          1e-8)

    def test_held_work_object_turns_the_other_way_and_stays(self):
        library, joints = self.six_on_a_turntable()
        held = wobj_bytes(1, 1, user=(5.0, 6.0, 80.0, 10.0, 20.0, 30.0))
        tool = b"\x00" + ANY_TOOL[1:]
        for slots, turn, keeps in (({0: 1, 4: 1}, -3.0, True), ({0: 1, 4: 1, 5: 0}, -3.0, True),
                                   ({0: 1}, 0.0, False)):
            answer = self.jog(library, joints, 4, slots, tool=tool, wobj=held)
            self.assertEqual(answer.code, 0)
            before, after = (self.place(library, "Kine_JointToWobjPos", q, tool, held)
                             for q in (joints, answer.output))
            expected = product(euler_to_rotation(0, math.radians(turn), 0) + (0.0,) * 3, before)[:9]
            self.assert_close(after[:9], expected, 1e-9)
            self.assert_close(after[9:], before[9:] if keeps else (before[9] + 5.0, *before[10:]), 1e-8)

    def test_slots_of_a_four_axis_arm(self):
        for arm_type in (4, 4110):
            library = library_with_four(arm_type, 325.0, 275.0, 100.0, 20.0)
            joints = joints_of(20.0, 60.0 if arm_type == 4 else -120.0, 100.0, 30.0)
            tool = TOOL.pack(1, 30.0, 20.0, 10.0, 15.0, *[0.0] * 12)
            answer = self.jog(library, joints, 2, {1: -1, 3: 1}, tool=tool)
            self.assertEqual(answer.code, 0)
            before, after = (base_pose(library, q, tool) for q in (joints, answer.output))
            self.assert_close(after[:4], (before[0], before[1] - 5.0, before[2], before[3] + 3.0), 1e-5)

    def test_singular_target(self):
        library = library_with_four(4, 325.0, 275.0)
        joints = joints_of(0.0, math.degrees(0.05), 0.0, 0.0)
        self.assertEqual(self.jog(library, joints, 2, {}).code, 0x6092)
        self.assertEqual(self.jog(library, joints, 9, {}).code, 0x6092)
        self.assertEqual(self.jog(library, joints, 1, {}).code, 0)

    def test_neither_held(self):
        library, joints = self.six_on_a_turntable()
        tool = b"\x00" + ANY_TOOL[1:]
        answer = self.jog(library, joints, 3, {0: 1}, tool=tool)
        self.assertEqual((answer.code, answer.printed), (0, b""))
        self.assert_close(JOINT.unpack(answer.output), JOINT.unpack(joints), 1e-12)
        self.assertEqual(self.jog(library, joints, 4, {0: 1}, tool=tool)[:2], (0x6050, b"FK Error 2:24656\n"))
        self.assertEqual(self.jog(library, joints, 3, {0: 1}, wobj=wobj_bytes(2, 1))[:2],
                         (0x6050, b"FK Error 2:24656\n"))
        answer = self.jog(library, joints, 2, {2: 1}, tool=tool, load=NO_LOAD)
        bare = TOOL.pack(1, *[0.0] * 6, *TOOL.unpack(ANY_TOOL)[7:])
        before, after = (self.place(library, "Kine_JointToBasePos", q, bare, load=NO_LOAD)
                         for q in (joints, answer.output))
        self.assert_close(after[9:], (before[9], before[10], before[11] + 5.0), 1e-8)


class Alignment(JogCase):
    def aligned(self, library, mode, joints, tool=ANY_TOOL, wobj=ANY_WOBJ, load=ANY_LOAD):
        return library.call("Kine_CalcAlignPos", mode, joints, tool, wobj, load, True)

    def test_nearest_axis_rules(self):
        half = math.sqrt(0.5)
        seen = (half, 0.0, half, 0.0, 1.0, 0.0, -half, 0.0, half)  # Z between X and Z
        axis, angle = align.turn_to_nearest_axis(rigid_inverse(seen + (0.0,) * 3))
        turned = rotate(seen, rotate(axis_angle(axis, angle), (0.0, 0.0, 1.0)))
        self.assert_close(turned, (1.0, 0.0, 0.0), 1e-12)
        for tilt, expected in ((4e-6, (1.0, 0, 0)), (6e-6, (0, 0, 1.0))):
            seen = euler_to_rotation(0.0, math.pi / 4 - tilt, 0.0)
            axis, angle = align.turn_to_nearest_axis(rigid_inverse(seen + (0.0,) * 3))
            self.assert_close(rotate(seen, rotate(axis_angle(axis, angle), (0.0, 0.0, 1.0))), expected, 1e-9)

    def test_smallest_turn_onto_any_axis(self):
        rng = random.Random(2)
        for _ in range(50):
            seen = euler_to_rotation(*[rng.uniform(-3, 3) for _ in range(3)])
            axis, angle = align.turn_to_nearest_axis(rigid_inverse(seen + (0.0,) * 3))
            turned = rotate(seen, rotate(axis_angle(axis, angle), (0.0, 0.0, 1.0)))
            self.assertAlmostEqual(max(abs(v) for v in turned), 1.0, places=12)
            self.assertAlmostEqual(math.cos(angle), max(abs(seen[i]) for i in (2, 5, 8)), places=12)

    def test_not_a_number_ends_in_a_refusal(self):
        self.assertTrue(math.isnan(align.turn_to_nearest_axis([math.nan] * 12)[0][0]))

    def test_tool_axis_and_tool_point(self):
        library, joints = self.six_on_a_turntable()
        for mode, name in ((2, "Kine_JointToBasePos"), (5, "Kine_JointToWorldPos"),
                           (4, "Kine_JointToWobjPos"), (-1, "Kine_JointToWobjPos")):
            answer = self.aligned(library, mode, joints)
            self.assertEqual((answer.code, answer.printed), (0, b""))
            before, after = (self.place(library, name, q) for q in (joints, answer.output))
            self.assert_close(after[9:], before[9:], 1e-8)
            column = [after[i] for i in (2, 5, 8)]
            self.assertAlmostEqual(max(abs(v) for v in column), 1.0, delta=1e-12)
            nearest = max(range(3), key=lambda i: abs((before[2], before[5], before[8])[i]))
            self.assertAlmostEqual(abs(column[nearest]), 1.0, delta=1e-12)
            self.assertEqual(JOINT.unpack(answer.output)[8:], JOINT.unpack(joints)[8:])

    def test_held_work_object_aligns_the_flange_in_base_and_world(self):
        library, joints = self.six_on_a_turntable()
        tool, held = b"\x00" + ANY_TOOL[1:], wobj_bytes(2, 1, user=(5.0, 6.0, 80.0, 10.0, 20.0, 30.0))
        for mode, name in ((2, "Kine_JointToBasePos"), (5, "Kine_JointToWorldPos")):
            answer = self.aligned(library, mode, joints, tool=tool, wobj=held, load=NO_LOAD)
            self.assertEqual(answer.code, 0)
            # The same load on the flange, without a tool frame.
            bare = TOOL.pack(1, *[0.0] * 6, *TOOL.unpack(tool)[7:])
            before, after = (self.place(library, name, q, bare, load=NO_LOAD)
                             for q in (joints, answer.output))
            self.assertAlmostEqual(max(abs(after[i]) for i in (2, 5, 8)), 1.0, delta=1e-12)
            self.assert_close(after[9:], before[9:], 1e-8)

    def test_aligned_tool_stays(self):
        library, joints = self.six_on_a_turntable()
        first = self.aligned(library, 2, joints)
        second = self.aligned(library, 2, first.output)
        self.assertEqual(second.code, 0)
        self.assert_close(JOINT.unpack(second.output), JOINT.unpack(first.output), 1e-5)

    def test_refusals(self):
        library, joints = self.six_on_a_turntable()
        stationary = b"\x00" + ANY_TOOL[1:]
        self.assertEqual(self.aligned(library, 3, joints)[:3], (0x6018, b"", None))
        for mode in (4, -1):
            self.assertEqual(self.aligned(library, mode, joints, tool=stationary)[:3], (0x6018, b"", None))
            self.assertEqual(self.aligned(library, mode, joints, wobj=wobj_bytes(1, 1))[:3],
                             (0x6050, b"FK Error 2:24656\n", None))
        self.assertEqual(self.aligned(library, 2, joints, tool=None, wobj=None).code, 0x6012)
        self.assertEqual(self.aligned(Library(), 3, joints).code, 0x6001)
        self.assertEqual(self.aligned(Library(), 3, None).code, 0x6014)

    def test_negative_axis_4_of_a_four_axis_arm(self):
        tool = TOOL.pack(1, *[0.0] * 16)
        for arm_type in (4, 4110):
            library = library_with_four(arm_type, 325.0, 275.0)
            elbow = 60.0 if arm_type == 4 else -120.0
            self.assertEqual(self.aligned(library, 2, joints_of(20.0, elbow, 0.0, -30.0), tool).code, 0x6081)
        stretched = joints_of(20.0, 0.0, 0.0, 30.0)
        self.assertEqual(self.aligned(library_with_four(4, 325.0, 275.0), 2, stretched, tool).code, 0x6080)

    def test_tie_of_the_turn_search_can_be_ended_either_way(self):
        library = library_with_four(4, 325.0, 275.0)
        joints, tool = joints_of(20.0, 60.0, 0.0, 30.0), TOOL.pack(1, *[0.0] * 16)
        seen = []
        for library.store.tie_to_start in (True, False):
            seen.append(self.aligned(library, 2, joints, tool).code)
            self.assertIn(align.TIE, MARGINS.reasons)
        self.assertEqual(seen, [0, 0x6081])


class Utilities(Close):
    def test_exchange_of_tool_and_work_object(self):
        call = Library().call
        tool = TOOL.pack(0, 1.0, 2.0, 3.0, 40.0, 50.0, 60.0, 7.0, *[8.0] * 9)
        tool = tool[:1] + b"abcdefg" + tool[8:]
        wobj = wobj_bytes(1, 1, 5, (10.0, 0, 0, 90.0, 0, 0), (0, 5.0, 0, 0, 0, 0))
        answer = call("Kine_CalcAlignCoordProc", tool, wobj)
        self.assertEqual(answer.code, 0)
        new_tool, new_wobj = answer.changed[0], answer.changed[1]
        self.assertEqual(new_tool[:8], b"\x01abcdefg")
        self.assertEqual(new_tool[56:], tool[56:])
        self.assert_close(TOOL.unpack(new_tool)[1:7], (5.0, 0, 0, 90.0, 0, 0), 1e-12)
        self.assertEqual(WOBJ.unpack(new_wobj), (0, 1, 5, 1.0, 2.0, 3.0, 40.0, 50.0, 60.0) + (0.0,) * 6)
        self.assertEqual(call("Kine_CalcAlignCoordProc", new_tool, new_wobj).code, 0x6011)
        loose = wobj_bytes(0, 1)
        answer = call("Kine_CalcAlignCoordProc", tool, loose)
        self.assertEqual((answer.code, answer.changed), (0x6012, {0: b"\x01" + tool[1:], 1: loose}))
        self.assertEqual(call("Kine_CalcAlignCoordProc", None, None)[:2], (0x6012, b""))
        answer = call("Kine_CalcAlignCoordProc", tool, wobj_bytes(1, 0))
        self.assertEqual(answer[:2], (0x6012, b"IsLegalWobj,!pWobj->UFFix:0;\n"))
        self.assertEqual(answer.changed[0], tool)
        # Without an exact 1 the user frame does not count.
        answer = call("Kine_CalcAlignCoordProc", tool, wobj_bytes(1, 2, 0, (10.0, 0, 0, 90.0, 0, 0),
                                                                  (0, 5.0, 0, 0, 0, 0)))
        self.assert_close(TOOL.unpack(answer.changed[0])[1:7], (0, 5.0, 0, 0, 0, 0), 1e-12)

    def test_normal_of_three_points(self):
        call = Library().call
        p = [FRAME.pack(*xyz, 999.0, 0.0, 0.0) for xyz in ((0, 0, 0), (1, 0, 0), (0, 1, 0), (2, 0, 0))]
        for points, expected in (((p[0], p[1], p[2]), (0.0, 0.0, 5.0)), ((p[0], p[2], p[1]), (0, 0, -5.0))):
            answer = call("Kine_CalcZVec", *points, 5.0, True)
            self.assertEqual(answer.code, 0)
            self.assert_close(VECTOR.unpack(answer.output), expected, 0.0)
        for points in ((p[0], p[1], p[3]), (None, p[1], p[2]), (p[0], p[0], p[0])):
            self.assertEqual(call("Kine_CalcZVec", *points, 5.0, True), (0, b"", None, {}))
        self.assertEqual(call("Kine_CalcZVec", *p[:3], 5.0, False), (0, b"", None, {}))

    def test_safe_area_never_gets_a_legal_work_object(self):
        library = Library()
        library.call("Kine_SetMechUnitGlobalCfg", 2, 6, 1)
        for joints in (None, joints_of(1.0)):
            answer = library.call("SafeArea_Check", joints, VECTOR.pack(0, 0, 0), 1e9)
            self.assertEqual(answer[:3], (0x6012, b"IsLegalWobj,!pWobj->UFFix:2;\n", None))
        self.assertEqual(library.call("SafeArea_Check", None, None, math.nan).code, 0x6012)

    def test_faces_of_the_cube(self):
        inside = align.is_inside_cube
        self.assertTrue(inside((105.0, 0, 0), (100.0, 0, 0), 10.0))
        self.assertTrue(inside((95.0, 5.0, -5.0), (100.0, 0, 0), 10.0))
        self.assertFalse(inside((105.000001, 0, 0), (100.0, 0, 0), 10.0))
        self.assertFalse(inside((100.0, 0, -5.000001), (100.0, 0, 0), 10.0))
        self.assertTrue(inside((1.0, 2.0, 3.0), (1.0, 2.0, 3.0), 0.0))
        self.assertFalse(inside((1.0, 2.0, 3.0), (1.0, 2.0, 3.0), -1.0))
        for point, size in (((math.nan, 0, 0), 10.0), ((0, 0, math.nan), 10.0), ((0, 0, 0), math.nan)):
            self.assertFalse(inside(point, (0.0, 0, 0), size))

    def test_position_difference(self):
        call = Library().call
        first = pose_bytes(10.0, 20.0, 30.0, 90.0, 0, 0)
        second = pose_bytes(110.0, 20.0, 30.0, 90.0, 0, 0, cfg=(9, 9, 9, 9))
        for frame, expected in ((1, (100.0, 0, 0, 0, 0, 0)), (-1, (0, -100.0, 0, 0, 0, 0))):
            answer = call("Kine_CalcPosDif", first, second, frame, True)
            self.assertEqual(answer.code, 0)
            self.assert_close(FRAME.unpack(answer.output), expected, 1e-12)
            self.assert_close(FRAME.unpack(call("Kine_CalcPosDif", first, first, frame, True).output),
                              [0.0] * 6, 1e-12)
        for frame in (0, 2):
            self.assertEqual(call("Kine_CalcPosDif", first, second, frame, True).code, 0x6018)
        wide = pose_bytes(0, 0, 0, 180.0001, 0, 0)
        self.assertEqual(call("Kine_CalcPosDif", first, wide, 0, True).code, 0x6010)
        self.assertEqual(call("Kine_CalcPosDif", first, second, 0, False).code, 0x6018)
        self.assertEqual(call("Kine_CalcPosDif", first, second, 1, False).code, 0x6010)


class Generator(unittest.TestCase):
    def test_wanted_exports_are_reached(self):
        for name in SIGNATURES:
            if name in SETUPS:
                continue
            seen = 0
            for number in range(3):
                library, answer = Library(), None
                source = generate.sequence(calls.rng_for(1, number), "all", (name,))
                try:
                    while True:
                        call = source.send(answer)
                        answer = library.call(call.name, *call.args)
                        seen += call.name == name
                except StopIteration:
                    pass
            self.assertGreater(seen, 0, name)

    def test_shared_memory_is_large_enough(self):
        rng = random.Random(4)
        frame = FRAME.pack(*[0.0] * 6)
        for _ in range(300):
            call = calls.make_call(rng, "Kine_ToolCoordOffset", pose_bytes(*[0.0] * 6), frame, True)
            if call.shared is not None:
                self.assertGreaterEqual(len(call.args[call.shared]), OUTPUT_SIZES["out_pose"])


class CloseDecisions(unittest.TestCase):
    def test_flags_only_what_is_close(self):
        MARGINS.clear()
        MARGINS.near("far", 1.0, 1.001, 1e-9)
        MARGINS.near_integer("zero is no edge", 1e-15)
        self.assertEqual(MARGINS.reasons, set())
        MARGINS.near_integer("edge", 3.0000000001)
        MARGINS.near_integer("not a number", math.nan)
        self.assertEqual(MARGINS.reasons, {"edge"})
        MARGINS.clear()


if __name__ == "__main__":
    unittest.main()

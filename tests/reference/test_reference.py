"""Checks of the naive model against numbers that were worked out elsewhere: python3 -m unittest."""

import math
import random
import unittest
from types import SimpleNamespace

import four_axis
import generate
import six_axis
from exports import SIGNATURES, Library
from geometry import (euler_to_rotation, inverse, matrix6_inverse, matrix_to_pose, pose_to_matrix, product,
                      rotation_to_euler, safe_acos, safe_asin)
from ieee import INT32_MAX, INT32_MIN, div, remainder4, trunc_to_int32
from margins import MARGINS
from records import (ARM_CONFIG, EXT_AXIS_PARAM, FOUR_AXIS_PARAM, JOINT, LOAD, MECH_UNIT, POSE,
                     SIX_AXIS_PARAM, TOOL, WOBJ)

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
        self.assertEqual(answer, (0x6001, b"FK Error 1:24577\n", None))
        self.assertEqual(solve(library, [0.0] * 6 + [0] * 4 + [0.0] * 6), (0x6001, b"", None))

    def test_unknown_arm_type(self):
        library = Library()
        self.assertEqual(library.call("Kine_InitKinematicParam", 5, None).code, 0xFFFFFFFF)
        self.assertEqual(library.call("Kine_GetArmType", joints_of(), True).code, 0x6001)

    def test_setter_lines(self):
        library = Library()
        call = library.call
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 5, 9, 0), (0, b"", None))
        self.assertEqual(call("Kine_SetMechUnitParam", -1, None), (0, b"", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 4, 2, 1),
                         (0x6004, b"IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 3, 0xFFFFFFFF, 1),
                         (0x6004, b"IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:-1,6\n", None))
        self.assertEqual(call("Kine_SetMechUnitGlobalCfg", 2, 2, 1).code, 0)
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
            self.assertEqual(answer, expected)

    def test_axis_frame_at_the_origin(self):
        library = offset_shoulder_arm()
        library.call("Kine_SetMechUnitGlobalCfg", 2, 6, 1)
        library.call("Kine_SetMechUnitParam", 1, MECH_UNIT.pack(1, 2, 0, 0, 1, *[0.0] * 36, *[0] * 6))
        answer = library.call("Kine_JointToWobjPos", joints_of(), TOOL_ON_ROBOT,
                              WOBJ.pack(0, 0, 1, *[0.0] * 12), NO_LOAD, True)
        self.assertEqual(answer, (0x6034, b"FK Error 6:24628\n", None))

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
                empty = [0 if kind in ("int", "uint") else None for kind in kinds]
                self.assertIsNone(library.call(name, *empty).output)

    def test_sequences_are_reproducible(self):
        def codes():
            library, answer, seen = Library(), None, []
            source = generate.sequence(generate.rng_for(7, 1))
            try:
                while True:
                    call = source.send(answer)
                    answer = library.call(call.name, *call.args)
                    seen.append((call, answer.code))
            except StopIteration:
                return repr(seen)
        self.assertEqual(codes(), codes())


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

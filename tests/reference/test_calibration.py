"""Checks of the calibrations of the naive model against cases worked out by hand."""

import math
import struct
import unittest
from unittest import mock

import calibration
import calls
import compare
import generate
import tool_calibration
from calib_exports import CALIBRATION_SIGNATURES
from exports import RESULT_PLACES, Library
from geometry import euler_to_rotation, pose_to_matrix, product
from noisy import NOISE, Noisy
from records import EXT_AXIS_PARAM, FRAME, MECH_UNIT, ONE_DOUBLE, POSE, VECTOR
from test_reference import Close

FILLED = VECTOR.pack(-1.0, -2.0, -3.0)
FILLED_TILT = ONE_DOUBLE.pack(-1.0)
HALF = 0.5 * math.pi


def at(x, y, z, *angles, ext=(0.0,) * 6):
    return POSE.pack(x, y, z, *(angles or (0.0, 0.0, 0.0)), 9, 9, 9, 9, *ext)


def library_of(arm_type):
    """Only the arm type is looked at: the parameters may even be refused."""
    library = Library()
    library.call("Kine_InitKinematicParam", arm_type, None)
    return library


def library_with_unit(index=0, count=1, kind=2, axis_count=2, places=(2, 4, 1), frames=(), types=()):
    library = library_of(6)
    library.call("Kine_SetMechUnitGlobalCfg", count, 6, 1)
    frames = [v for frame in frames for v in frame] + [0.0] * (36 - 6 * len(frames))
    unit = MECH_UNIT.pack(1, kind, 0, 0, axis_count, *frames, *places, *[0] * (6 - len(places)))
    assert library.call("Kine_SetMechUnitParam", index, unit).code == 0
    for place, kind in types:
        data = EXT_AXIS_PARAM.pack(0, 0, 0, kind, *[0] * 4, *[0] * 7, 0, 0, 0)
        assert library.call("Kine_SetExtAxisParam", place, data).code == 0
    return library


def with_ext(**values):
    ext = [0.0] * 6
    for name, value in values.items():
        ext[int(name[1:])] = value
    return ext


class Case(Close):
    def solve(self, library, name, *args):
        """Frame and what stands in the report or the tilt; nothing else may be touched."""
        answer = library.call(name, *args)
        self.assertEqual((answer.code, answer.printed), (0, b""))
        rest = [v for data in answer.changed.values() for (v,) in struct.iter_unpack("<d", data)]
        return FRAME.unpack(answer.output), rest

    def refused(self, code, library, name, *args):
        answer = library.call(name, *args)
        self.assertEqual((answer.code, answer.printed, answer.output), (code, b"", None))
        for place, data in answer.changed.items():
            self.assertEqual(data, args[place])


# t = (10, 20, 30) around (500, 0, 300): Rz(90) t = (-20, 10, 30), Rx(90) t = (10, -30, 20).
FAN = (at(490.0, -20.0, 270.0), at(520.0, -10.0, 270.0, 90.0, 0.0, 0.0),
       at(490.0, 30.0, 280.0, 0.0, 0.0, 90.0))
# Ry(90) t = (30, 20, -10), Rz(180) t = (-10, -20, 30).
WIDE_FAN = FAN + (at(470.0, -20.0, 310.0, 0.0, 90.0, 0.0), at(510.0, 20.0, 270.0, 180.0, 0.0, 0.0))
# t = (30, 0) around the origin, with the third pose raised.
FLAT_FAN = (at(-30.0, 0.0, 0.0), at(30.0, 0.0, 0.0, 180.0, 0.0, 0.0), at(0.0, -30.0, 0.0, 90.0, 0.0, 0.0))


class Tools(Case):
    def test_taught_position_is_copied(self):
        frame, _ = self.solve(Library(), "Kine_CalcExtToolPrm_1P",
                              at(1.5, -2.5, 1e300, 180.0, -180.0, math.nan),
                              True)
        self.assertEqual(frame, (1.5, -2.5, 1e300, 0.0, 0.0, 0.0))

    def test_three_directions(self):
        origin, up = at(10.0, 20.0, 30.0), at(10.0, 20.0, 130.0)
        for x_point, heading in ((at(60.0, 20.0, 30.0), 0.0), (at(10.0, 70.0, 45.0), 90.0)):
            frame, _ = self.solve(Library(), "Kine_CalcExtToolPrm_1PZX", origin, up, x_point, True)
            self.assert_close(frame, (10.0, 20.0, 30.0, heading, 0, 0), 1e-12)
        # Z along the base X axis and X along the base Y axis: Rz(90) Ry(0) Rx(90).
        frame, _ = self.solve(Library(), "Kine_CalcExtToolPrm_1PZX", origin, at(20.0, 20.0, 30.0),
                              at(10.0, 70.0, 30.0), True)
        self.assert_close(frame[3:], (90.0, 0.0, 90.0), 1e-12)

    def test_z_point_of_a_four_axis_arm_does_not_matter(self):
        for arm_type in (4, 4110):
            frame, _ = self.solve(library_of(arm_type), "Kine_CalcExtToolPrm_1PZX", at(0, 0, 0),
                                  at(5.0, 0, 0),
                                  at(0, 70.0, 40.0), True)
            self.assert_close(frame, (0, 0, 0, 90.0, 0, 0), 1e-12)
            self.refused(0x6010, library_of(arm_type), "Kine_CalcExtToolPrm_1PZX", at(0, 0, 0),
                         at(0, 0, 0, 0, 0, 180.1), at(0, 70.0, 40.0), True)
        self.refused(0x6066, library_of(6), "Kine_CalcExtToolPrm_1PZX", at(0, 0, 0), at(5.0, 0, 0),
                     at(70.0, 0.0, 0.0), True)

    def test_tip_of_a_six_axis_arm(self):
        library = library_of(6)
        for name, expected in (("Kine_CalcGripToolPrm_3P", (10.0, 20.0, 30.0, 0, 0, 0)),
                               ("Kine_CalcExtToolPrm_3P", (500.0, 0, 300.0, 0, 0, 0))):
            frame, report = self.solve(library, name, *FAN, True, FILLED)
            self.assert_close(frame, expected, 1e-12)
            self.assert_close(report, (0, 0, 0), 1e-12)
        frame, report = self.solve(library, "Kine_CalcGripToolPrm_5P", *WIDE_FAN, True, FILLED)
        self.assert_close(frame, (10.0, 20.0, 30.0, 0, 0, 0), 1e-12)
        self.assert_close(report, (0, 0, 0), 1e-12)

    def test_tip_of_a_four_axis_arm_and_its_report(self):
        # A'A = 4 I + 2 I; moving p1 by 0.6 along X adds 2 * 0.6 to the right side: t.x = 30 + 1.2 / 6.
        poses = (FLAT_FAN[0], at(30.6, 0, 0, 180.0, 0, 0), FLAT_FAN[2])
        longest, middle = math.sqrt(0.2), math.sqrt(0.08)
        for arm_type in (4, 4110):
            frame, report = self.solve(library_of(arm_type), "Kine_CalcGripToolPrm_3P", *poses, True, FILLED)
            self.assert_close(frame, (30.2, 0, 0, 0, 0, 0), 1e-12)
            self.assert_close(report, (longest, (0.2 + middle + longest) / 3.0, 0.2), 1e-12)
        high = (*poses[:2], at(0.0, -30.0, 20000.0, 90.0, 0.0, 0.0))
        frame, report = self.solve(library_of(4), "Kine_CalcGripToolPrm_3P", *high, True, FILLED)
        self.assert_close(frame, (30.2, 0, 0, 0, 0, 0), 1e-12)
        self.assert_close(report[2:], (0.2,), 1e-12)
        far = (at(-30.0, 0, 0), at(30.0, 0, 2e4, 180.0, 0, 0), at(0.0, -30.0, 4e4, 90.0, 0, 0))
        _, report = self.solve(library_of(4), "Kine_CalcGripToolPrm_3P", *far, True, FILLED)
        self.assert_close(report, (4e4, 8e4 / 3.0, 10000.0), 1e-9)

    def test_two_poses(self):
        poses = (at(-30.0, 5.0, 7.0), at(30.0, -5.0, 100.0, 180.0, 0, 0))
        frame, _ = self.solve(library_of(4110), "Kine_CalcGripToolPrm_Scara2P", *poses, True)
        self.assert_close(frame, (30.0, -5.0, 0, 0, 0, 0), 1e-12)
        self.refused(0x6001, library_of(6), "Kine_CalcGripToolPrm_Scara2P", *poses, True)
        self.refused(0x6065, library_of(4), "Kine_CalcGripToolPrm_Scara2P", poses[0],
                     at(-30.0, 5.0, 90.0, 9, 9, 9),
                     True)
        self.refused(0x6060, library_of(4), "Kine_CalcGripToolPrm_Scara2P", poses[0], at(30.0, -5.0, 0), True)

    def test_orientation_of_a_held_tool(self):
        library = library_of(6)
        for heading in (0.0, 90.0):
            origin, z_pose, x_pose = (at(*p, heading, 0, 0) for p in ((0, 0, 0), (0, 0, 50.0), (50.0, 0, 0)))
            frame, _ = self.solve(library, "Kine_CalcGripToolPrm_3PZX", *FAN, origin, z_pose, x_pose, True,
                                  FILLED)
            self.assert_close(frame, (10.0, 20.0, 30.0, -heading, 0, 0), 1e-12)
        # A turn of the Z pose moves the tip: Rx(90) t - t = (0, -50, -10) on top of the way of the flange.
        frame, _ = self.solve(library, "Kine_CalcGripToolPrm_3PZX", *FAN, at(0, 0, 0),
                              at(0, 50.0, 60.0, 0, 0, 90.0),
                              at(0, 50.0, 0), True, FILLED)
        self.assert_close(frame, (10.0, 20.0, 30.0, 90.0, 0, 0), 1e-12)

    def test_orientation_of_a_stationary_tool(self):
        places = ((0, 0, 0), (0, 0, 50.0), (0, 50.0, 0))
        frame, report = self.solve(library_of(6), "Kine_CalcExtToolPrm_3PZX", *FAN,
                                   *[at(*p) for p in places], True,
                                   FILLED)
        self.assert_close(frame, (10.0, 20.0, 30.0, 90.0, 0, 0), 1e-12)
        self.assert_close(report, (0, 0, 0), 1e-12)

    def test_report_stays_when_only_the_frame_is_refused(self):
        same = [at(0, 0, 0)] * 3
        # On a four-axis arm the way from the Z pose to the X pose is the way back down: parallel, not short.
        for name, codes in (("Kine_CalcExtToolPrm_3PZX", (0x6070, 0x6070)),
                            ("Kine_CalcGripToolPrm_3PZX", (0x6065, 0x6066))):
            for arm_type, fan, code in ((6, FAN, codes[0]), (4, FLAT_FAN, codes[1])):
                answer = library_of(arm_type).call(name, *fan, *same, True, FILLED)
                self.assertEqual((answer.code, answer.output), (code, None))
                self.assert_close(VECTOR.unpack(answer.changed[7]), (0, 0, 0), 1e-12)
                self.refused(0x6065, library_of(arm_type), name, fan[0], fan[0], fan[2], *same, True, FILLED)
                self.refused(0x6010, library_of(arm_type), name, *fan, *same, False, FILLED)

    def test_refusals_in_their_order(self):
        for name, rest in (("Kine_CalcGripToolPrm_3P", ()), ("Kine_CalcExtToolPrm_3PZX", [at(0, 0, 0)] * 3)):
            for arm_type in (0, 5):
                self.refused(0x6001, library_of(arm_type), name, *[FAN[0]] * 3, *rest, True, FILLED)
            turned = [at(*p) for p in ((0, 0, 0), (10.0, 0, 0), (0, 10.0, 0))]
            on_line = [at(*p) for p in ((0, 0, 0), (10.0, 0, 0), (-20.0, 0, 0))]
            for arm_type, singular in ((6, 0x6064), (4, 0x6060)):
                library = library_of(arm_type)
                self.refused(singular, library, name, *turned, *rest, True, FILLED)
                self.refused(0x6066, library, name, *on_line, *rest, True, FILLED)
                self.refused(0x6065, library, name, turned[0], turned[1], turned[1], *rest, True, FILLED)
        upright = [at(*p) for p in ((0, 0, 0), (10.0, 0, 0), (10.0, 0, 5.0))]
        self.refused(0x6065, library_of(4), "Kine_CalcGripToolPrm_3P", *upright, True, FILLED)
        self.refused(0x6060, library_of(6), "Kine_CalcGripToolPrm_5P", *[FAN[0]] * 5, True, FILLED)
        self.refused(0x6001, library_of(4), "Kine_CalcGripToolPrm_5P", *[FAN[0]] * 5, True, FILLED)

    def test_limits(self):
        library, plane = library_of(6), at(0, 30.0, 0)
        below, above = math.nextafter(1e-5, 0.0), math.nextafter(1e-5, 1.0)
        for distance, code in ((below, 0x6065), (1e-5, 0x6064), (above, 0x6064)):
            self.refused(code, library, "Kine_CalcGripToolPrm_3P", at(0, 0, 0), at(distance, 0, 0), plane,
                         True, None)
        below = math.nextafter(0.01, 0.0)
        for distance, code in ((below, 0x6070), (0.01, 0x6066)):
            self.refused(code, library, "Kine_CalcExtToolPrm_1PZX", at(0, 0, 0), at(distance, 0, 0),
                         at(5.0, 0, 0),
                         True)
        # Two poses of a four-axis arm turned by w: det = (2 - 2 cos w)^2, about w^4, against 1e-10.
        for turn, code in ((3.16e-3, 0x6060), (3.165e-3, 0)):
            answer = library_of(4).call("Kine_CalcGripToolPrm_Scara2P", at(0, 0, 0),
                                        at(1.0, 0, 0, math.degrees(turn), 0, 0), True)
            self.assertEqual(answer.code, code)

    def test_nulls(self):
        library = library_of(6)
        frame, rest = self.solve(library, "Kine_CalcGripToolPrm_3P", *FAN, True, None)
        self.assert_close(frame[:3], (10.0, 20.0, 30.0), 1e-12)
        self.assertEqual(rest, [])
        self.refused(0x6010, library, "Kine_CalcGripToolPrm_3P", FAN[0], None, FAN[2], True, FILLED)
        self.refused(0x6010, library_of(5), "Kine_CalcGripToolPrm_3P", *FAN, False, FILLED)


class WorkObjects(Case):
    def test_two_points(self):
        library, name = Library(), "Kine_CalcExtWobj_UserPrm_2P"
        frame, tilt = self.solve(library, name, at(1, 2, 3), at(1, 102, 3), True, FILLED_TILT)
        self.assert_close(frame + tuple(tilt), (1, 2, 3, 90.0, 0, 0, 0), 1e-12)
        frame, tilt = self.solve(library, name, at(1, 2, 3), at(101, 2, 103), True, FILLED_TILT)
        self.assert_close(frame + tuple(tilt), (1, 2, 3, 0, -45.0, 0, math.pi / 4), 1e-12)
        for second in ((0, 0, 50.0), (0, 0, -50.0), (0.0009, 0, 0)):
            self.refused(0x6065, library, name, at(0, 0, 0), at(*second), True, FILLED_TILT)
        self.solve(library, name, at(0, 0, 0), at(0.001, 0, 0), True, None)

    def test_three_points(self):
        for name in ("Kine_CalcExtWobj_UserPrm_3P", "Kine_CalcGripWobj_UserPrm_3P"):
            points = at(0, 0, 0), at(0, 70.0, 0), at(0, 5.0, 30.0)
            frame, tilt = self.solve(Library(), name, *points, True, FILLED_TILT)
            self.assert_close(frame + tuple(tilt), (0, 0, 0, 90.0, 0, 90.0, HALF), 1e-12)
            for third, code in (((0, -8.0, 0), 0x6066), ((0, 70.005, 0), 0x6065), ((0.009, 0, 0), 0x6065)):
                self.refused(code, Library(), name, *points[:2], at(*third), True, FILLED_TILT)

    def test_circle(self):
        name, q = "Kine_CalcExtWobj_UserPrm_Cirle3P", (at(110, 50, 7), at(100, 60, 7), at(90, 50, 7))
        frame, tilt = self.solve(Library(), name, *q, True, FILLED_TILT)
        self.assert_close(frame + tuple(tilt), (100, 50, 7, 0, 0, 0, 0), 1e-11)
        frame, tilt = self.solve(Library(), name, q[0], q[2], q[1], True, FILLED_TILT)
        self.assert_close((*frame[:3], abs(frame[5]), *tilt), (100, 50, 7, 180.0, math.pi), 1e-11)
        self.refused(0x6066, Library(), name, q[0], q[2], at(100, 50, 7), True, FILLED_TILT)
        # Legs of a right angle: |n|^2 is the fourth power of a leg.
        for leg, code in ((0.0562, 0x6063), (0.0563, 0)):
            answer = Library().call(name, at(0, 0, 0), at(leg, 0, 0), at(0, leg, 0), True, FILLED_TILT)
            self.assertEqual(answer.code, code)

    def test_object_frames(self):
        points = at(100, 50, 0), at(100, 150, 0), at(0, 50, 0)
        for name in ("Kine_CalcExtWobj_ObjPrm_3P", "Kine_CalcGripWobj_ObjPrm_3P"):
            frame, tilt = self.solve(Library(), name, *points, FRAME.pack(100, 0, 0, 90.0, 0, 0), True,
                                     FILLED_TILT)
            self.assert_close(frame + tuple(tilt), (50, 0, 0, 0, 0, 0, 0), 1e-11)
            self.solve(Library(), name, *points, FRAME.pack(0, 0, 0, 540.0, 0, 0), True, None)
            self.refused(0x6010, Library(), name, *points, None, True, FILLED_TILT)
        # The user frame stands upright: only the second tilt is seen from it.
        for name, expected in (("Kine_CalcExtWobj_ObjPrm_3P", 0.0), ("Kine_CalcGripWobj_ObjPrm_3P", HALF)):
            _, tilt = self.solve(Library(), name, *points, FRAME.pack(0, 0, 0, 0, 0, 90.0), True, FILLED_TILT)
            self.assert_close(tilt, (expected,), 1e-12)

    def test_object_on_a_unit(self):
        name = "Kine_CalcUnFixWobj_ObjPrm_3P"
        library = library_with_unit(frames=((100.0, 0, 0, 0, 0, 0),))
        # (10, 20, 0), (60, 20, 0), (10, 70, 0) on the unit, each touched at another angle of it.
        poses = (at(80, 10, 0, ext=with_ext(a2=90.0)), at(160, 20, 0), at(90, -70, 0, ext=with_ext(a2=180.0)))
        frame, tilt = self.solve(library, name, 0, *poses, True, FILLED_TILT)
        self.assert_close(frame + tuple(tilt), (10, 20, 0, 0, 0, 0, 0), 1e-11)
        for unit in (-1, 1, 2, 2147483647, -2147483648):
            self.refused(0x6065, library, name, unit, *poses, True, FILLED_TILT)
        self.refused(0x6065, library_with_unit(), name, 0, *poses, True, FILLED_TILT)
        self.refused(0x6010, library, name, -1, *poses[:2], at(0, 0, 0, 0, -180.5, 0), True, FILLED_TILT)


def touches(places, values, centre=(200.0, -100.0), radius=50.0, phase=20.0):
    """A mark on an upright axis at the given values, which stand at all the places."""
    poses = []
    for value in values:
        angle = math.radians(value + phase)
        ext = with_ext(**{f"a{place}": value for place in places})
        poses.append(at(centre[0] + radius * math.cos(angle), centre[1] + radius * math.sin(angle), 30.0,
                        ext=ext))
    return poses


class Units(Case):
    def test_first_axis(self):
        name = "Kine_CalcPositionerJ1Prm_3P"
        frame, _ = self.solve(library_with_unit(), name, 0, *touches((2,), (35.0, 100.0, 190.0)), True)
        self.assert_close(frame, (200.0, -100.0, 30.0, 20.0, 0, 0), 1e-11)
        library = library_with_unit(index=1, count=1)
        self.solve(library, name, 1, *touches((2,), (35.0, 100.0, 190.0)), True)
        for unit in (-1, 0, 2, 3, 2147483647):
            self.refused(0x6011, library, name, unit, *touches((2,), (35.0, 100.0, 190.0)), True)
        self.refused(0x6065, library, name, -1, *touches((2,), (35.0, 35.0, 190.0)), True)
        self.refused(0x6066, library, name, -1, at(0, 0, 0), at(1, 0, 0), at(2, 0, 0), True)
        self.refused(0x6011, library_with_unit(places=(6, 0)), name, 0, *touches((2,), (1.0, 90.0, 190.0)),
                     True)

    def test_axis_in_the_plane_is_not_finite(self):
        for points in (((5, 1, 0), (5, 0, 1), (5, -1, 0)), ((1, 5, 0), (0, 5, 1), (-1, 5, 0))):
            frame, _ = self.solve(library_with_unit(), "Kine_CalcPositionerJ1Prm_3P", 0,
                                  *[at(*p) for p in points],
                                  True)
            self.assertTrue(all(math.isnan(v) for v in frame), frame)

    def test_chord_along_y_is_not_finite(self):
        # m1.y = 0: s divides by it, whatever else is finite.
        frame, _ = self.solve(library_with_unit(), "Kine_CalcPositionerJ1Prm_3P", 0, at(3, 4, 0),
                              at(3, -4, 0),
                              at(-5, 0, 0), True)
        self.assertTrue(all(math.isnan(v) for v in frame), frame)

    def test_further_axis(self):
        name, poses = "Kine_CalcPositionerJnPrm_3P", touches((1, 4), (0.5, 100.0, 190.0))
        library = library_with_unit(axis_count=3)
        radians = math.degrees(0.5)
        # Seen from a reference frame turned by 0.5 as radians, and turned back by 0.5 degrees.
        for n in (2, 3):
            frame, _ = self.solve(library, name, 0, n, *poses, FRAME.pack(*[0.0] * 6), True)
            self.assert_close(frame[2:], (30.0, 20.0 - radians, 0, 0), 1e-11)
            cosine, sine = math.cos(0.5), math.sin(0.5)
            self.assert_close(frame[:2], (200.0 * cosine - 100.0 * sine, -200.0 * sine - 100.0 * cosine),
                              1e-11)
        # Only the second axis, whatever n, is turned back in degrees: value 0 there.
        frame, _ = self.solve(library, name, 0, 3, *touches((1,), (0.5, 100.0, 190.0)),
                              FRAME.pack(*[0.0] * 6), True)
        self.assert_close(frame[3:4], (20.5 - radians,), 1e-11)
        reference = (7.0, 8.0, 9.0, 10.0, 20.0, 30.0)
        frame, _ = self.solve(library, name, 0, 2, *poses, FRAME.pack(*reference), True)
        turned = product(euler_to_rotation(0.5, 0, 0) + (0.0,) * 3, in_radians(reference))
        back = product(turned, in_radians(frame))
        self.assert_close(back, in_radians((200.0, -100.0, 30.0, 20.0, 0, 0)), 1e-12)

    def test_order_of_refusals(self):
        name, reference = "Kine_CalcPositionerJnPrm_3P", FRAME.pack(*[0.0] * 6)
        good, same = touches((1, 4), (0.5, 100.0, 190.0)), [at(0, 0, 0)] * 3
        library = library_with_unit(axis_count=2, types=((4, 1), (2, 256)))
        self.refused(0x6010, library, name, 0, 2, *same, reference, True)
        for n in (0, -1, -2147483648):
            self.refused(0x6061, library, name, 0, n, *same, reference, True)
        for n in (1, 3, 2147483647):
            self.refused(0x6065, library, name, 0, n, *same, reference, True)
        for n in (3, 2147483647):
            self.refused(0x6011, library, name, 0, n, *good, reference, True)
        self.refused(0x6010, library, name, 0, 0, *good, None, True)
        self.refused(0x6010, library, name, 0, 0, *good, reference, False)
        self.refused(0x6011, library_with_unit(axis_count=1), name, 0, 1, *good, reference, True)

    def test_base_on_a_track(self):
        name, library = "Kine_CalcRobotBasePrm_3P", library_with_unit(types=((2, 1),))
        # A mark 0, 100, 300 mm back along a track that leads at -30 degrees of the base: a is +30.
        cosine, sine = math.cos(math.radians(30.0)), math.sin(math.radians(30.0))
        poses = [at(500.0 - cosine * x, sine * x, 80.0, ext=with_ext(a2=x)) for x in (0.0, 100.0, 300.0)]
        frame, report = self.solve(library, name, 0, *poses, True, FILLED)
        self.assert_close(frame, (0, 0, 0, 30.0, 0, 0), 1e-12)
        self.assert_close(report, (0, 0, 0), 1e-12)
        # 1.1 times the moves on the scale: M grows with it and the marks are then 0.1 * |Pi| nowhere apart.
        poses = [at(-x, 0, 0, ext=with_ext(a2=1.1 * x)) for x in (0.0, 100.0, 300.0)]
        frame, report = self.solve(library, name, 0, *poses, True, FILLED)
        self.assert_close(frame + tuple(report), (0,) * 9, 1e-12)
        # Moves 100 and 200 for 100 and 100: u = 20000 + 10000 over 20000; tips at 0, -50 and +50.
        poses = [at(-x, 0, z, ext=with_ext(a2=m)) for x, z, m in ((0, 0, 0), (100.0, 0, 100.0),
                                                                  (100.0, 1.0, 200.0))]
        _, report = self.solve(library, name, 0, *poses, True, FILLED)
        distances = (50.0, math.sqrt(2501.0), math.sqrt(10001.0))
        self.assert_close(report, (distances[2], sum(distances) / 3.0, 50.0), 1e-12)

    def test_refusals_on_a_track(self):
        name, library = "Kine_CalcRobotBasePrm_3P", library_with_unit(types=((2, 1),))

        def poses(*moves):
            return [at(-10.0 * i, 0, 0, ext=with_ext(a2=move)) for i, move in enumerate((0.0, *moves))]
        for moves, code in (((0.05, 0.2), 0), ((0.05, 0.09), 0x6061), ((0.1, 0.0), 0), ((-0.1, 0.0), 0)):
            self.assertEqual(library.call(name, 0, *poses(*moves), True, FILLED).code, code)
        self.refused(0x6010, library_with_unit(types=((2, 257),)), name, 0, *poses(5.0, 9.0), True, FILLED)
        self.refused(0x6010, library_with_unit(), name, 0, *[at(0, 0, 0)] * 3, True, FILLED)
        for unit in (-1, 1, 7):
            self.refused(0x6011, library, name, unit, *[at(0, 0, 0)] * 3, True, FILLED)
        self.refused(0x6065, library, name, 0, *[at(0, 0, 0)] * 3, True, FILLED)
        upright = [at(0, 0, z, ext=with_ext(a2=10.0 * z)) for z in (0.0, 1.0, 2.0)]
        self.refused(0x6061, library, name, 0, *upright, True, FILLED)


def in_radians(frame):
    return pose_to_matrix([*frame[:3], *[math.radians(v) for v in frame[3:]]])


class Rounding(unittest.TestCase):
    def test_exact_operations_stay_exact(self):
        NOISE.start(1, 5)
        a, b = Noisy(0.1), Noisy(0.3)
        self.assertTrue(all(a - a == 0.0 and a * 2.0 == 0.2 and a / 1.0 == 0.1 and -a == -0.1
                            for _ in range(50)))
        self.assertGreater(len({float(a * b) for _ in range(50)}), 5)
        self.assertGreater(len({float(0.7 - a) for _ in range(50)}), 5)
        self.assertLess(max(abs(a / b - 1.0 / 3.0) for _ in range(50)), 1e-15)
        self.assertEqual(calibration.size((Noisy(0.0), Noisy(1e-5), Noisy(0.0))), 1e-5)

    def test_range_is_watched(self):
        NOISE.start(1, 1)
        self.assertEqual(Noisy(math.inf) * 2.0, math.inf)
        self.assertFalse(NOISE.left_range)
        self.assertEqual(Noisy(1e200) * 1e200, math.inf)
        self.assertTrue(NOISE.left_range)

    def differences(self, change, wanted, sequences):
        """Reports of a library that is the model, changed, with roundings of its own."""
        options = mock.Mock(shared_library=None, only="all", seed=4, exports=wanted)
        comparison = compare.Comparison(options)
        for number in range(sequences):
            comparison.built = Pretended(change)
            comparison.run_sequence(number)
        return comparison

    def test_other_roundings_are_no_difference(self):
        found = self.differences(lambda: mock.patch.object(NOISE, "start", NOISE.start),
                                 tuple(CALIBRATION_SIGNATURES), 15)
        self.assertEqual(found.reports, [])
        self.assertLess(sum(found.skipped.values()), 0.05 * found.count)

    def test_another_limit_is_a_difference(self):
        found = self.differences(lambda: mock.patch.object(tool_calibration, "SPATIAL_LIMIT", 0.02),
                                 ("Kine_CalcGripToolPrm_3P",), 15)
        self.assertGreater(len(found.reports), 0)

    def test_another_side_of_a_limit_is_a_difference(self):
        def or_equal(limit, code, *vectors):
            for v in vectors:
                if calibration.size(v) <= limit:
                    raise tool_calibration.Refused(code)
        found = self.differences(lambda: mock.patch("wobj_calibration.require_apart", or_equal),
                                 ("Kine_CalcExtWobj_UserPrm_2P",), 25)
        self.assertGreater(len(found.reports), 0)


class Pretended:
    def __init__(self, change):
        self.model, self.change = Library(), change

    def call(self, call, count):
        self.model.noisy = call.name in CALIBRATION_SIGNATURES
        NOISE.start(count, 2)
        with self.change():
            answer = self.model.call(call.name, *call.args)
        place = RESULT_PLACES[call.name]
        wanted = place is not None and call.args[place]
        output = answer.output if answer.output is not None or not wanted else bytes(48)
        return compare.Found(answer.code, answer.printed, output, answer.output is not None, answer.changed,
                             None)


class Generated(unittest.TestCase):
    def test_every_code_of_every_export_is_reached(self):
        seen = {name: set() for name in CALIBRATION_SIGNATURES}
        for number in range(150):
            library, answer = Library(), None
            source = generate.sequence(calls.rng_for(2, number), "all", tuple(CALIBRATION_SIGNATURES))
            try:
                while True:
                    call = source.send(answer)
                    answer = library.call(call.name, *call.args)
                    seen.setdefault(call.name, set()).add(answer.code)
            except StopIteration:
                pass
        tip = {0, 0x6001, 0x6010, 0x6060, 0x6064, 0x6065, 0x6066}
        points = {0, 0x6010, 0x6065, 0x6066}
        for name, codes in (("ExtToolPrm_1P", {0, 0x6010}), ("ExtToolPrm_1PZX", {0, 0x6010, 0x6066, 0x6070}),
                            ("ExtToolPrm_3P", tip), ("GripToolPrm_3P", tip), ("GripToolPrm_3PZX", tip),
                            ("ExtToolPrm_3PZX", tip | {0x6070}), ("GripToolPrm_5P",
                                                                  {0, 0x6001, 0x6010, 0x6060}),
                            ("GripToolPrm_Scara2P", {0, 0x6001, 0x6010, 0x6060, 0x6065}),
                            ("ExtWobj_UserPrm_2P", {0, 0x6010, 0x6065}), ("ExtWobj_UserPrm_3P", points),
                            ("GripWobj_UserPrm_3P", points), ("ExtWobj_ObjPrm_3P", points),
                            ("GripWobj_ObjPrm_3P", points), ("UnFixWobj_ObjPrm_3P", points),
                            ("ExtWobj_UserPrm_Cirle3P", points | {0x6063}),
                            ("PositionerJ1Prm_3P", points | {0x6011}),
                            ("PositionerJnPrm_3P", points | {0x6011, 0x6061}),
                            ("RobotBasePrm_3P", {0, 0x6010, 0x6011, 0x6061, 0x6065})):
            self.assertEqual(seen["Kine_Calc" + name], codes, name)


if __name__ == "__main__":
    unittest.main()

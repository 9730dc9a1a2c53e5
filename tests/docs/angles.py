"""What docs/frames.md says about scipy and ROS, tried against the library with random and special angles.

Rotations of the library are read off it as matrices: a unit offset along each axis of a pose gives the columns. The
quaternion of tf2's setRPY is its documented formula, and URDF's rpy is documented as the same three fixed-axis turns.
"""

import argparse
import ctypes
import math
import random
import sys
import unittest
import warnings

import library as kine
from library import Frame, Pose

try:
    from scipy.spatial.transform import Rotation
except ImportError:
    Rotation = None

SEED = 20
SETS = 2000
TOLERANCE = 1e-14
TOLERANCE_DEG = 1e-9


def offset(angles, by):
    """The frame at the origin with these angles, moved and turned by an offset in its own axes."""
    pose, result = Pose(frame=Frame(0.0, 0.0, 0.0, *angles)), Pose()
    code = LIBRARY.Kine_ToolCoordOffset(ctypes.byref(pose), ctypes.byref(by), ctypes.byref(result))
    if code:
        raise AssertionError(f"Kine_ToolCoordOffset returns {code:#x} for {angles}")
    return result.frame


def matrix_of(angles):
    columns = [offset(angles, Frame(**{axis: 1.0})) for axis in "XYZ"]
    return [[getattr(column, axis) for column in columns] for axis in "XYZ"]


def angles_of(frame):
    return [frame.A, frame.B, frame.C]


def tf2_matrix(roll, pitch, yaw):
    """setRPY of tf2, then the rotation matrix of its quaternion."""
    sr, cr = math.sin(roll / 2.0), math.cos(roll / 2.0)
    sp, cp = math.sin(pitch / 2.0), math.cos(pitch / 2.0)
    sy, cy = math.sin(yaw / 2.0), math.cos(yaw / 2.0)
    x, y = sr * cp * cy - cr * sp * sy, cr * sp * cy + sr * cp * sy
    z, w = cr * cp * sy - sr * sp * cy, cr * cp * cy + sr * sp * sy
    return [[1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)],
            [2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)],
            [2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)]]


def largest_difference(one, other):
    return max(abs(a - b) for r, s in zip(one, other) for a, b in zip(r, s))


def triples():
    chance = random.Random(SEED)
    special = [(a, b, c) for a in (-180.0, 0.0, 90.0, 180.0) for b in (-180.0, -90.0, 0.0, 90.0)
               for c in (-90.0, 180.0)]
    return special + [tuple(chance.uniform(-180.0, 180.0) for _ in range(3)) for _ in range(SETS)]


class Ros(unittest.TestCase):
    def test_rpy_is_c_b_a(self):
        for a, b, c in triples():
            expected = tf2_matrix(math.radians(c), math.radians(b), math.radians(a))
            self.assertLess(largest_difference(matrix_of((a, b, c)), expected), TOLERANCE, (a, b, c))


@unittest.skipIf(Rotation is None, "scipy is not installed")
class Scipy(unittest.TestCase):
    def test_from_euler_zyx_is_the_rotation(self):
        for a, b, c in triples():
            expected = Rotation.from_euler('ZYX', [a, b, c], degrees=True).as_matrix()
            self.assertLess(largest_difference(matrix_of((a, b, c)), expected), TOLERANCE, (a, b, c))

    def test_small_letters_mean_another_rotation(self):
        other = Rotation.from_euler('zyx', [30.0, 40.0, 50.0], degrees=True).as_matrix()
        self.assertGreater(largest_difference(matrix_of((30.0, 40.0, 50.0)), other), 0.1)

    def test_as_euler_zyx_is_the_triple_of_a_result(self):
        for angles in triples():
            rotation = Rotation.from_euler('ZYX', angles, degrees=True)
            a, b, c = angles_of(offset(angles, Frame()))
            if abs(abs(b) - 90.0) < 0.01:
                continue
            for given, expected in zip((a, b, c), rotation.as_euler('ZYX', degrees=True)):
                self.assertLess(abs(math.remainder(given - expected, 360.0)), TOLERANCE_DEG, angles)

    def test_at_90_degrees_scipy_clears_c_and_the_library_a(self):
        for b, c_of_library, a_of_scipy in ((90.0, -20.0, 20.0), (-90.0, 40.0, 40.0)):
            a, b_of_library, c = angles_of(offset((30.0, b, 10.0), Frame()))
            self.assertEqual((a, b_of_library), (0.0, b))
            self.assertAlmostEqual(c, c_of_library, delta=TOLERANCE_DEG)
            with warnings.catch_warnings(record=True) as warned:
                warnings.simplefilter("always")
                theirs = Rotation.from_euler('ZYX', [30.0, b, 10.0], degrees=True).as_euler('ZYX', degrees=True)
            self.assertTrue(any("imbal" in str(warning.message) for warning in warned))
            self.assertAlmostEqual(theirs[0], a_of_scipy, delta=1e-5)
            self.assertEqual(theirs[2], 0.0)


class Results(unittest.TestCase):
    def test_b_beyond_90_comes_back_within(self):
        for given, expected in zip(angles_of(offset((20.0, 95.0, 30.0), Frame())), (-160.0, 85.0, -150.0)):
            self.assertAlmostEqual(given, expected, delta=TOLERANCE_DEG)

    def test_half_a_turn_keeps_its_sign(self):
        for a in (180.0, -180.0):
            self.assertEqual(offset((a, 0.0, 0.0), Frame()).A, a)

    def test_a_is_cleared_near_90_where_both_its_elements_are_below_1e_5(self):
        for a, cleared, kept in ((0.0, 0.00057, 0.00058), (90.0, 0.00057, 0.00058), (45.0, 0.00081, 0.00082)):
            self.assertEqual(offset((a, 90.0 - cleared, 10.0), Frame()).A, 0.0)
            # C is 0: where A is kept, so is its value.
            self.assertAlmostEqual(offset((a, 90.0 - kept, 0.0), Frame()).A, a, delta=1e-6)
            self.assertLess(abs(offset((a, 90.0 - kept, 0.0), Frame()).C), 1e-6)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--library", dest="shared_library", required=True)
    options, rest = parser.parse_known_args()
    LIBRARY = kine.load(options.shared_library)
    if Rotation is None:
        print("*** SKIPPED: SCIPY (Debian: python3-scipy) IS NOT INSTALLED; ROS is compared all the same ***")
    result = unittest.main(argv=[sys.argv[0]] + rest, exit=False).result
    sys.exit(1 if not result.wasSuccessful() else 77 if Rotation is None else 0)

"""The scripts behind the figures and the book notice what they are there to notice."""

import os
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.join(HERE, "..", "..", "tools")
sys.path[:0] = [HERE, os.path.join(TOOLS, "figures"), os.path.join(TOOLS, "book")]

import arms  # noqa: E402
import geometry  # noqa: E402
import library  # noqa: E402
from compare_figures import difference  # noqa: E402
from links import broken_links  # noqa: E402
from svg import number  # noqa: E402

FIGURE = ('<svg xmlns="http://www.w3.org/2000/svg"><path d="M10.00,-3.5L7,8" stroke="#1f2937"/>'
          '<text x="1">q1</text></svg>')


class Compare(unittest.TestCase):
    def test_same_figure_has_no_difference(self):
        self.assertIsNone(difference(FIGURE, FIGURE))

    def test_number_off_by_the_last_decimal_is_no_difference(self):
        self.assertIsNone(difference(FIGURE, FIGURE.replace("-3.5L", "-3.49L")))

    def test_number_off_by_more_is_a_difference(self):
        self.assertIn("-3.5", difference(FIGURE, FIGURE.replace("-3.5L", "-3.48L")))

    def test_other_sign_colour_word_attribute_or_element_is_a_difference(self):
        for old, new in (("-3.5", "3.5"), ("#1f2937", "#1f2938"), ("#1f2937", "#1e2937"), ("q1", "q2"), ("q1", "p1"),
                         ('x="1"', 'y="1"'), ("<text", "<tspan"), ("L7,8", ""), ("L7,8", "M7,8")):
            changed = FIGURE.replace(old, new).replace("q1</text>", "q1</tspan>" if new == "<tspan" else "q1</text>")
            self.assertIsNotNone(difference(FIGURE, changed), (old, new))

    def test_missing_element_is_a_difference(self):
        self.assertEqual("3 elements and 2", difference(FIGURE, FIGURE.replace('<text x="1">q1</text>', "")))


class LibraryOfAnotherArm:
    """Answers with the pose of an arm whose forearm is 2 mm longer."""

    def __init__(self):
        self.arm = {}

    def set_six_axis(self, arm):
        self.arm = {**arm, "d4": arm["d4"] + 2.0}

    def forward(self, joints):
        flange = arms.six_axis_chain(self.arm, tuple(joints.Axis)[:6])[6]
        return library.pose_of(geometry.to_frame(flange))


class Chain(unittest.TestCase):
    def test_arm_that_differs_from_the_library_is_not_drawn(self):
        with self.assertRaises(ValueError):
            arms.checked_six_axis_chain(LibraryOfAnotherArm(), arms.SIX_AXIS, (10.0, 20.0, 30.0, 40.0, 50.0, 60.0))

    def test_frame_and_transform_are_inverse(self):
        numbers = (1.0, -2.0, 3.0, 40.0, -50.0, 160.0)
        for a, b in zip(numbers, geometry.to_frame(geometry.from_frame(*numbers))):
            self.assertAlmostEqual(a, b, 12)

    def test_turns_follow_the_right_hand(self):
        for turn, start, end in ((geometry.turn_z, (1, 0, 0), (0, 1, 0)), (geometry.turn_y, (0, 0, 1), (1, 0, 0)),
                                 (geometry.turn_x, (0, 1, 0), (0, 0, 1))):
            for a, b in zip(end, geometry.point(turn(90.0), start)):
                self.assertAlmostEqual(a, b, 12)


class Svg(unittest.TestCase):
    def test_number_has_two_decimals_and_no_negative_zero(self):
        self.assertEqual(["0", "0", "1", "-1.5", "0.13"], [number(v) for v in (-0.001, 0.0, 1.0, -1.5, 0.1251)])


class Links(unittest.TestCase):
    def faults_of(self, html):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in (("a.html", html), ("b.html", '<h2 id="here">x</h2>')):
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            return broken_links(folder, ["a.html", "b.html"])

    def test_links_that_lead_somewhere_are_no_faults(self):
        self.assertEqual([], self.faults_of('<p id="p"></p><a href="b.html">1</a><a href="b.html#here">2</a>'
                                            '<a href="#p">3</a><a href="https://example.org/none">4</a>'))

    def test_link_to_no_file_is_a_fault(self):
        self.assertEqual(["a.html: c.html leads to no file"], self.faults_of('<a href="c.html">x</a>'))

    def test_picture_that_is_not_there_is_a_fault(self):
        self.assertEqual(["a.html: d.svg leads to no file"], self.faults_of('<img src="d.svg">'))

    def test_link_to_no_place_in_a_page_is_a_fault(self):
        self.assertEqual(["a.html: b.html#there leads to no such place in the page",
                          "a.html: #gone leads to no such place in the page"],
                         self.faults_of('<a href="b.html#there">x</a><a href="#gone">y</a>'))


if __name__ == "__main__":
    unittest.main()

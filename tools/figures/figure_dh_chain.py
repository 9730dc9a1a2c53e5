"""The lengths of the six-axis arm at its zero pose, from the side and from above, with the sense of every axis."""

from arms import SIX_AXIS, checked_six_axis_chain, demand, draw_six_axis
from geometry import Camera, add, axis, scale
from scene import Scene
from svg import BLUE, GREY, INK, ORANGE, Page, TEXT, TITLE

LATERAL = 110.0
ARM = {**SIX_AXIS, "d3": LATERAL, "lateralOffset": LATERAL, "d6": 130.0}
PALE_STEEL, PALE_JOINT = ("#f4f6f9", "#f8fafc"), ("#e6ebf1", "#eef2f6")
LINE = 3.2


def skeleton(page, at, points):
    page.polyline([at(p) for p in points], ORANGE, LINE)
    for p in points:
        page.circle(at(p), 4.0, "#ffffff", 1.0, ORANGE)


def turn(page, scene, centre, direction, hint, radius, start, end, name, shift):
    """The positive sense of an axis."""
    middle = scene.turn_arrow(centre, direction, hint, radius, start, end, BLUE, 1.6)
    scene.above(lambda: page.text((middle[0] + shift[0], middle[1] + shift[1]), name, colour=BLUE, bold=True,
                                  size=TEXT))


def corner_points(chain):
    """The chain as a line with right angles only: the end of d1, then every a and d on its own."""
    base, shoulder, elbow, forearm, _, wrist, flange = (frame[1] for frame in chain)
    above_elbow = add(elbow, scale(ARM["d3"], axis(chain[2], 2)))
    return [base, (0.0, 0.0, ARM["d1"]), shoulder, elbow, above_elbow, forearm, wrist, flange]


def from_the_side(page, chain):
    scene = Scene(page, Camera(-90.0, 0.0, 0.36, page=(160.0, 570.0)))
    draw_six_axis(scene, chain, colours=PALE_STEEL, joints=PALE_JOINT)
    scene.paint()
    at = scene.at
    base, top, shoulder, elbow, _, forearm, wrist, flange = corner_points(chain)
    skeleton(page, at, [base, top, shoulder, elbow, forearm, wrist, flange])
    page.measure(at(base), at(top), "d1", (-72, 0), (-16, 5))
    page.measure(at(top), at(shoulder), "a1", (0, 62), (0, 18))
    page.measure(at(shoulder), at(elbow), "a2", (-126, 0), (-16, 5))
    page.measure(at(elbow), at(forearm), "a3", (-126, 0), (-16, 5))
    page.measure(at(forearm), at(wrist), "d4", (0, -62), (0, -8))
    page.measure(at(wrist), at(flange), "d6", (0, -62), (0, -8))
    turn(page, scene, shoulder, axis(chain[1], 2), (0.0, 0.0, 1.0), 125.0, 15.0, 75.0, "q2", (-12, -8))
    turn(page, scene, elbow, axis(chain[2], 2), (1.0, 0.0, 0.0), 120.0, -75.0, -15.0, "q3", (16, 10))
    turn(page, scene, wrist, axis(chain[4], 2), (1.0, 0.0, 0.0), 105.0, -75.0, -15.0, "q5", (14, 14))
    scene.triad(chain[0], 190.0, "base", (30, 26))
    scene.triad(chain[6], 105.0, "flange", (8, 24), anchor="start")
    scene.paint()
    page.text((290, 34), "from the side, all joints 0", size=TITLE, bold=True)


def from_above(page, chain):
    scene = Scene(page, Camera(-90.0, 90.0, 0.36, page=(640.0, 190.0)))
    draw_six_axis(scene, chain, colours=PALE_STEEL, joints=PALE_JOINT)
    scene.paint()
    at = scene.at
    points = corner_points(chain)
    skeleton(page, at, [points[0], points[2], points[4], points[5], points[6], points[7]])
    shoulder, wrist, flange = points[2], points[6], points[7]
    page.measure(at((wrist[0], 0.0, 0.0)), at((wrist[0], wrist[1], 0.0)), "d3 = lateralOffset", (0, 0), (-8, -28),
                 anchor="end")
    page.line(at((shoulder[0], 0.0, 0.0)), at((flange[0] + 60.0, 0.0, 0.0)), GREY, 0.8, "8 3 2 3")
    turn(page, scene, (0.0, 0.0, 0.0), (0.0, 0.0, 1.0), (1.0, 0.0, 0.0), 210.0, 20.0, 70.0, "q1", (14, -8))
    scene.triad(chain[0], 150.0, "base", (-10, 20), anchor="end")
    scene.triad(chain[6], 130.0, None)
    scene.paint()
    page.text((810, 34), "from above", size=TITLE, bold=True)


def draw(library):
    chain = checked_six_axis_chain(library, ARM, (0.0,) * 6)
    for joint in (1, 2, 4):
        demand(axis(chain[joint], 2)[1] < -0.999999, f"axis {joint + 1} points at the viewer")
    for joint in (3, 5):
        demand(axis(chain[joint], 2)[0] > 0.999999, f"axis {joint + 1} points along the forearm")
    page = Page(1080, 630, "The lengths of the six-axis arm at its zero pose")
    from_the_side(page, chain)
    from_above(page, chain)
    for i, words in enumerate((
            "Arrows show the positive sense of the axes.",
            "q2, q3 and q5 turn about axes that point at the viewer of the side view.",
            "q4 and q6 turn about the forearm, seen from behind clockwise.",
            "A positive d3 moves the forearm towards \u2212Y.",
            "Nominal: alpha1 ... alpha5 = 90, 0, 90, \u221290, 90 degrees;",
            "beta2, d5, a4, a5 = 0 and d3 = lateralOffset.")):
        page.text((580, 400 + 22 * i), words, anchor="start", size=TEXT, colour=INK)
    return page.done()


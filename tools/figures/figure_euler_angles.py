"""The angles A, B, C one after the other: each turn starts where the one before it ended."""

from arms import demand_same
from geometry import IDENTITY, Camera, axis, from_frame, product, scale, turn_x, turn_y, turn_z
from scene import Scene, arc_points
from svg import GREY, INK, Page, SMALL, TITLE, NORMAL

A, B, C = 40.0, 30.0, 50.0
PANEL, HEIGHT = 270, 280
DEGREE = "\u00b0"
STEPS = (  # angle, turn, number of the axis that is turned about and of one that it moves
    ("A", A, turn_z, 2, 0, "about Z"),
    ("B", B, turn_y, 1, 0, "about the new Y"),
    ("C", C, turn_x, 0, 1, "about the new X"),
)


def old_frame(page, at, frame, length):
    for k in range(3):
        page.arrow(at(frame[1]), at(scale(length, axis(frame, k))), "#94a3b8", NORMAL, "4 3", 7.0)


def draw(library):
    page = Page(3 * PANEL, HEIGHT, "The angles A, B, C in their order")
    frame, numbers = IDENTITY, (0.0,) * 6
    for i, (name, angle, turn, about, moved, words) in enumerate(STEPS):
        offset = [0.0] * 6
        offset[3 + i] = angle
        numbers = library.offset(numbers, offset)
        turned = product(frame, turn(angle))
        demand_same(from_frame(*numbers), turned, f"the frame behind {name}")

        centre = (PANEL * i + 125, 165)
        scene = Scene(page, Camera(-58.0, 25.0, 1.0, page=centre))
        old_frame(page, scene.at, frame, 100.0)
        arc = arc_points((0.0, 0.0, 0.0), axis(frame, about), axis(frame, moved), 62.0, 0.0, angle)
        points = [scene.at(p) for p in arc]
        scene.above(lambda points=points: page.curve_arrow(points, INK, 1.6))
        scene.triad(turned, 105.0)
        scene.paint()
        middle = points[len(points) // 2]
        reach = ((middle[0] - centre[0]) ** 2 + (middle[1] - centre[1]) ** 2) ** 0.5
        share = 1.0 + 13.0 / reach
        page.text((centre[0] + share * (middle[0] - centre[0]), centre[1] + share * (middle[1] - centre[1]) + 5), name,
                  bold=True)
        page.text((PANEL * i + 130, 28), f"{i + 1}.  {name} = {angle:.0f}{DEGREE} {words}", size=TITLE, bold=True)
        frame = turned
    demand_same(from_frame(*numbers), from_frame(0.0, 0.0, 0.0, A, B, C), "the three turns together")
    page.text((1.5 * PANEL, HEIGHT - 14), "R = Rz(A) \u00b7 Ry(B) \u00b7 Rx(C).  The same about axes that stand still: "
              "first C about X, then B about Y, then A about Z.", size=SMALL + 1, colour=GREY)
    return page.done()

"""Solid bodies in space, painted from the farthest to the nearest, and frames on top of them.

Lengths are mm in the world of the figure; a `Camera` brings them to the page.
"""

from math import atan2, cos, degrees, hypot, radians, sin

from geometry import add, axis, cross, dot, mix, point, scale, sub, unit
from svg import AXIS_COLOURS, GREY, INK, NORMAL, SMALL, STRONG, TEXT, THIN, number, pair

STEEL = ("#e2e8f0", "#f1f5f9")  # mantle and cap
JOINT = ("#b6c2d1", "#dbe3ec")
TOOL = ("#fde68a", "#fef3c7")
WOOD = ("#f3e3cf", "#fbf3e8", "#e6d0b3")  # faces that look along X, Z, Y
SAGE = ("#d5e8d4", "#e8f3e7", "#c0d8be")
EDGE = "#334155"


class Scene:
    def __init__(self, page, camera):
        self.page = page
        self.camera = camera
        self._bodies = []
        self._above = []

    def at(self, p):
        return self.camera.at(p)

    def add(self, depth, draw):
        self._bodies.append((depth, draw))

    def above(self, draw):
        """Painted when all bodies are."""
        self._above.append(draw)

    def paint(self):
        for _, draw in sorted(self._bodies, key=lambda body: body[0]):
            draw()
        for draw in self._above:
            draw()
        self._bodies, self._above = [], []

    # ---- bodies

    def link(self, a, b, radius_a, radius_b, colours=STEEL, lift=0.0):
        """Two balls and what lies between them."""
        zoom = self.camera.zoom
        self.add(self.camera.depth(mix(a, b, 0.5)) + lift,
                 lambda: self.page.capsule(self.at(a), self.at(b), zoom * radius_a, zoom * radius_b, EDGE, colours[0]))

    def cylinder(self, a, b, radius_a, radius_b=None, colours=STEEL, lift=0.0):
        """A cylinder or cone from a to b; `lift` brings it towards the viewer in the order of painting, mm."""
        radius_b = radius_a if radius_b is None else radius_b
        if dot(sub(b, a), self.camera.toward) < 0:
            a, b, radius_a, radius_b = b, a, radius_b, radius_a
        depth = self.camera.depth(mix(a, b, 0.5)) + lift
        self.add(depth, lambda: self._cylinder(a, b, radius_a, radius_b, colours))

    def joint(self, centre, direction, half, radius, colours=JOINT):
        """A cylinder about a joint axis, painted over the links that meet there."""
        reach = scale(half, unit(direction))
        lift = abs(dot(reach, self.camera.toward)) + 260.0
        self.cylinder(sub(centre, reach), add(centre, reach), radius, colours=colours, lift=lift)

    def _cylinder(self, a, b, radius_a, radius_b, colours):
        (ax, ay), (bx, by) = self.at(a), self.at(b)
        along = hypot(bx - ax, by - ay)
        flat = abs(dot(unit(sub(b, a)), self.camera.toward))
        rotation, side = self._across(ax, ay, bx, by, along)
        far, near = radius_a * self.camera.zoom, radius_b * self.camera.zoom
        arcs = f"{number(flat * far)} {number(rotation)}", f"{number(flat * near)} {number(rotation)}"
        if along > 0.05:
            self.page.path(
                f"M{pair((ax + far * side[0], ay + far * side[1]))}"
                f"A{number(far)} {arcs[0]} 0 1 {pair((ax - far * side[0], ay - far * side[1]))}"
                f"L{pair((bx - near * side[0], by - near * side[1]))}"
                f"A{number(near)} {arcs[1]} 0 1 {pair((bx + near * side[0], by + near * side[1]))}Z",
                EDGE, NORMAL, colours[0])
        if flat * near > 0.4:
            self.ellipse((bx, by), near, flat * near, rotation, EDGE, colours[1])

    @staticmethod
    def _across(ax, ay, bx, by, along):
        """The direction of the long axis of the ellipses: its angle, and as a vector so that arcs run outside."""
        if along <= 0.05:
            return 0.0, (1.0, 0.0)
        side = (-(by - ay) / along, (bx - ax) / along)
        return degrees(atan2(side[1], side[0])), side

    def ellipse(self, centre, long, short, rotation, stroke=EDGE, fill="none", width=NORMAL):
        x, y = number(centre[0]), number(centre[1])
        turn = f' transform="rotate({number(rotation)} {x} {y})"' if abs(rotation) > 0.005 else ""
        self.page.parts.append(f'<ellipse cx="{x}" cy="{y}" rx="{number(long)}" ry="{number(short)}"{turn} '
                               f'fill="{fill}" stroke="{stroke}" stroke-width="{number(width)}"/>')

    def box(self, corner, size, colours=WOOD, lift=0.0):
        """A block with one corner and its edges along the axes of a frame; only what faces the viewer."""
        def vertex(i, j, k):
            return point(corner, (i * size[0], j * size[1], k * size[2]))
        faces = []
        for k in range(3):
            direction = axis(corner, k)
            facing = dot(direction, self.camera.toward)
            if abs(facing) < 1e-6:
                continue
            at_end = 1 if facing > 0 else 0
            ring = [(0, 0), (1, 0), (1, 1), (0, 1)]
            corners = []
            for u, v in ring:
                index = [0, 0, 0]
                index[k], index[(k + 1) % 3], index[(k + 2) % 3] = at_end, u, v
                corners.append(vertex(*index))
            faces.append((corners, colours[(0, 2, 1)[k]]))
        centre = point(corner, scale(0.5, size))

        def draw():
            for corners, fill in faces:
                self.page.polygon([self.at(p) for p in corners], EDGE, THIN, fill)
        self.add(self.camera.depth(centre) + lift, draw)

    def floor(self, x_range, y_range, step, z=0.0):
        """Lines of a floor, behind everything."""
        def draw():
            x = x_range[0]
            while x <= x_range[1] + 1e-9:
                self.page.line(self.at((x, y_range[0], z)), self.at((x, y_range[1], z)), "#e8edf3", THIN)
                x += step
            y = y_range[0]
            while y <= y_range[1] + 1e-9:
                self.page.line(self.at((x_range[0], y, z)), self.at((x_range[1], y, z)), "#e8edf3", THIN)
                y += step
        self.add(-1e9, draw)

    # ---- frames and marks, above the bodies

    def triad(self, frame, length, name=None, shift=(0, 0), letters=True, anchor="middle", size=TEXT, width=STRONG,
              dash=None):
        """A frame: X red, Y green, Z blue. The name stands at its origin, moved by `shift`."""
        def draw():
            origin = self.at(frame[1])
            for k in sorted(range(3), key=lambda k: self.camera.depth(axis(frame, k))):
                end = self.at(add(frame[1], scale(length, axis(frame, k))))
                self.page.arrow(origin, end, AXIS_COLOURS[k], width, dash)
                reach = hypot(end[0] - origin[0], end[1] - origin[1])
                if letters and reach > 9:
                    share = 1.0 + 9.0 / reach
                    place = (origin[0] + share * (end[0] - origin[0]), origin[1] + share * (end[1] - origin[1]) + 4)
                    self.page.text(place, "XYZ"[k], size=SMALL, colour=AXIS_COLOURS[k])
            self.page.circle(origin, 2.2, "none", fill=INK)
            if name:
                self.page.text((origin[0] + shift[0], origin[1] + shift[1]), name, anchor=anchor, size=size, bold=True)
        self.above(draw)

    def dot(self, p, radius=3.0, colour=INK):
        self.above(lambda: self.page.circle(self.at(p), radius, "#ffffff", THIN, colour))

    def axis_line(self, centre, direction, before, after, colour=GREY):
        """A chain line along an axis of rotation."""
        u = unit(direction)
        ends = [self.at(add(centre, scale(s, u))) for s in (-before, after)]
        self.above(lambda: self.page.line(ends[0], ends[1], colour, THIN, "10 3 2 3"))

    def turn_arrow(self, centre, direction, hint, radius, start, end, colour=INK, width=NORMAL):
        """An arc with a head about an axis, from angle `start` to `end` (degrees) counted from `hint`; returns the
        page position of its middle."""
        points = arc_points(centre, direction, hint, radius, start, end)
        page = [self.at(p) for p in points]
        self.above(lambda: self.page.curve_arrow(page, colour, width))
        return page[len(page) // 2]


def arc_points(centre, direction, hint, radius, start, end, steps=14):
    """A piece of a circle about `direction`, from angle `start` to `end` (degrees) counted from `hint`."""
    w = unit(direction)
    u = unit(sub(hint, scale(dot(hint, w), w)))
    v = cross(w, u)
    points = []
    for i in range(steps + 1):
        angle = radians(start + (end - start) * i / steps)
        points.append(add(centre, scale(radius * cos(angle), u), scale(radius * sin(angle), v)))
    return points

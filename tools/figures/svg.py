"""Writes SVG: a page with a white background, fixed decimals and few attributes, so that two runs compare equal."""

from math import acos, atan2, cos, hypot, sin
from xml.sax.saxutils import escape

INK = "#1f2937"
GREY = "#64748b"
PALE = "#cbd5e1"
RED = "#c2272d"
GREEN = "#15803d"
BLUE = "#1d4ed8"
ORANGE = "#b45309"
PURPLE = "#7e22ce"
AXIS_COLOURS = (RED, GREEN, BLUE)

THIN, NORMAL, STRONG = 0.8, 1.3, 2.2
SMALL, TEXT, TITLE = 12, 14, 16


def number(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def pair(p):
    return f"{number(p[0])},{number(p[1])}"


class Page:
    def __init__(self, width, height, title):
        self.parts = [
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
            f'height="{height}" font-family="Helvetica, Arial, \'DejaVu Sans\', sans-serif" font-size="{TEXT}" '
            f'fill="{INK}" stroke-linecap="round" stroke-linejoin="round">',
            f"<title>{escape(title)}</title>",
            f'<rect width="{width}" height="{height}" fill="#ffffff"/>',
        ]

    def _shape(self, tag, geometry, stroke, width, fill, dash=None, opacity=None):
        text = f'<{tag} {geometry} fill="{fill}"'
        if stroke != "none":
            text += f' stroke="{stroke}" stroke-width="{number(width)}"'
        if dash:
            text += f' stroke-dasharray="{dash}"'
        if opacity is not None:
            text += f' opacity="{number(opacity)}"'
        self.parts.append(text + "/>")

    def line(self, a, b, stroke=INK, width=NORMAL, dash=None):
        self.path(f"M{pair(a)}L{pair(b)}", stroke, width, dash=dash)

    def polyline(self, points, stroke=INK, width=NORMAL, dash=None):
        self.path("M" + "L".join(pair(p) for p in points), stroke, width, dash=dash)

    def polygon(self, points, stroke=INK, width=NORMAL, fill="none", opacity=None):
        self.path("M" + "L".join(pair(p) for p in points) + "Z", stroke, width, fill, opacity=opacity)

    def path(self, data, stroke=INK, width=NORMAL, fill="none", dash=None, opacity=None):
        self._shape("path", f'd="{data}"', stroke, width, fill, dash, opacity)

    def circle(self, centre, radius, stroke=INK, width=NORMAL, fill="none", dash=None):
        geometry = f'cx="{number(centre[0])}" cy="{number(centre[1])}" r="{number(radius)}"'
        self._shape("circle", geometry, stroke, width, fill, dash)

    def head(self, tip, direction, colour=INK, size=8.0):
        """An arrow head at `tip` that points along `direction`."""
        length = hypot(*direction)
        u = (direction[0] / length, direction[1] / length)
        back = (tip[0] - size * u[0], tip[1] - size * u[1])
        half = 0.36 * size
        self.polygon([tip, (back[0] - half * u[1], back[1] + half * u[0]),
                      (back[0] + half * u[1], back[1] - half * u[0])], stroke="none", fill=colour)

    def arrow(self, a, b, colour=INK, width=NORMAL, dash=None, size=8.0):
        direction = (b[0] - a[0], b[1] - a[1])
        length = hypot(*direction)
        if length < 1e-9:
            return
        inside = max(0.0, 1.0 - 0.8 * size / length)
        self.line(a, (a[0] + inside * direction[0], a[1] + inside * direction[1]), colour, width, dash)
        self.head(b, direction, colour, min(size, length))

    def curve_arrow(self, points, colour=INK, width=NORMAL, dash=None, size=8.0):
        """A line through the points with a head at its end."""
        self.polyline(points[:-1] + [_before(points, 0.7 * size)], colour, width, dash)
        self.head(points[-1], (points[-1][0] - points[-2][0], points[-1][1] - points[-2][1]), colour, size)

    def bow(self, a, b, bend, colour=INK, width=NORMAL, dash=None, size=8.0):
        """An arrow from a to b bent to the left of its way by `bend` page units; the middle of it is returned."""
        direction = (b[0] - a[0], b[1] - a[1])
        length = hypot(*direction)
        normal = (direction[1] / length, -direction[0] / length)
        middle = ((a[0] + b[0]) / 2 + bend * normal[0], (a[1] + b[1]) / 2 + bend * normal[1])
        control = (2 * middle[0] - (a[0] + b[0]) / 2, 2 * middle[1] - (a[1] + b[1]) / 2)
        end = (b[0] - control[0], b[1] - control[1])
        reach = hypot(*end)
        neck = (b[0] - 0.7 * size * end[0] / reach, b[1] - 0.7 * size * end[1] / reach)
        self.path(f"M{pair(a)}Q{pair(control)} {pair(neck)}", colour, width, dash=dash)
        self.head(b, end, colour, size)
        return middle

    def measure(self, a, b, label, offset=(0.0, 0.0), side=(0.0, 0.0), colour=INK, anchor="middle", slack=3.0):
        """A dimension line between a and b, moved by `offset`, with extension lines; the label moved by `side`."""
        start = (a[0] + offset[0], a[1] + offset[1])
        end = (b[0] + offset[0], b[1] + offset[1])
        length = hypot(*offset)
        if length > slack:
            beyond = (1.0 + 5.0 / length)
            gap = slack / length
            for p in (a, b):
                self.line((p[0] + gap * offset[0], p[1] + gap * offset[1]),
                          (p[0] + beyond * offset[0], p[1] + beyond * offset[1]), GREY, THIN)
        middle = ((start[0] + end[0]) / 2, (start[1] + end[1]) / 2)
        self.arrow(middle, start, colour, THIN, size=7.0)
        self.arrow(middle, end, colour, THIN, size=7.0)
        self.text((middle[0] + side[0], middle[1] + side[1]), label, anchor=anchor, colour=colour, bold=True)

    def text(self, p, content, anchor="middle", size=None, colour=None, bold=False, italic=False, rim=True):
        """Text, with a white rim so that it stays legible over lines."""
        extra = ""
        if anchor != "start":
            extra += f' text-anchor="{anchor}"'
        if size is not None and size != TEXT:
            extra += f' font-size="{size}"'
        if colour is not None and colour != INK:
            extra += f' fill="{colour}"'
        if bold:
            extra += ' font-weight="bold"'
        if italic:
            extra += ' font-style="italic"'
        if rim:
            extra += ' stroke="#ffffff" stroke-width="3" paint-order="stroke"'
        self.parts.append(f'<text x="{number(p[0])}" y="{number(p[1])}"{extra}>{escape(content)}</text>')

    def capsule(self, a, b, radius_a, radius_b, stroke, fill, width=NORMAL):
        """The outline of two discs and the band between them: a link of an arm."""
        length = hypot(b[0] - a[0], b[1] - a[1])
        if length <= abs(radius_a - radius_b) + 1e-6:
            centre, radius = (a, radius_a) if radius_a >= radius_b else (b, radius_b)
            self.circle(centre, radius, stroke, width, fill)
            return
        heading = atan2(b[1] - a[1], b[0] - a[0])
        spread = acos((radius_a - radius_b) / length)  # from the heading to the points of contact
        corners = []
        for centre, radius in ((a, radius_a), (b, radius_b)):
            for side in (1.0, -1.0):
                angle = heading + side * spread
                corners.append((centre[0] + radius * cos(angle), centre[1] + radius * sin(angle)))
        a_left, a_right, b_left, b_right = corners
        large_a, large_b = int(radius_a > radius_b), int(radius_b > radius_a)
        self.path(f"M{pair(a_left)}A{number(radius_a)} {number(radius_a)} 0 {large_a} 1 {pair(a_right)}"
                  f"L{pair(b_right)}A{number(radius_b)} {number(radius_b)} 0 {large_b} 1 {pair(b_left)}Z",
                  stroke, width, fill)

    def done(self):
        return "\n".join(self.parts + ["</svg>", ""])


def _before(points, distance):
    a, b = points[-2], points[-1]
    length = hypot(b[0] - a[0], b[1] - a[1])
    share = max(0.0, 1.0 - distance / length) if length else 0.0
    return a[0] + share * (b[0] - a[0]), a[1] + share * (b[1] - a[1])

"""Quarter-turn numbers: round the circle and over several turns. Numbers and boundaries are asked of the library."""

from math import cos, radians, sin

from arms import SIX_AXIS, demand
from library import ArmConfig, joints_of
from svg import BLUE, GREY, INK, PALE, Page, SMALL, STRONG, THIN, TITLE

SHIFT = 0.0005  # deg, by which every boundary lies lower
DEGREE, MINUS = "\u00b0", "\u2212"
FIRST, LAST = -6, 7  # the quarter turns of the stair
COLOURS = ("#dbeafe", "#dcfce7", "#fef3c7", "#fde2e2")


def signed(value):
    return f"{value:g}".replace("-", MINUS)


def number_at(library, degrees):
    config = ArmConfig()
    library.call("Kine_GetArmType", joints_of((degrees, 0.0, 0.0, 0.0, 30.0, 0.0)), config)
    return config.Cfg[0]


def boundary_below(library, n):
    """The angle at which number n begins, by halving."""
    low, high = 90.0 * n - 45.0, 90.0 * n + 45.0
    while high - low > 1e-7:
        middle = (low + high) / 2
        if number_at(library, middle) < n:
            low = middle
        else:
            high = middle
    return high


def circle(page, library, x, y, radius):
    def at(degrees, r):
        return x + r * cos(radians(degrees)), y - r * sin(radians(degrees))
    for n in (-2, -1, 0, 1):
        demand(number_at(library, 90.0 * n + 45.0) == n, f"quarter turn {n}")
        (x0, y0), (x1, y1) = at(90.0 * n, radius), at(90.0 * n + 90.0, radius)
        page.path(f"M{x} {y}L{x0:.2f},{y0:.2f}A{radius} {radius} 0 0 0 {x1:.2f},{y1:.2f}Z", INK, THIN,
                  COLOURS[n % 4])
        place = at(90.0 * n + 45.0, 0.6 * radius)
        page.text((place[0], place[1] + 8), signed(n), size=24, bold=True, rim=False)
        page.text((place[0], place[1] + 26), ("0 .. 90", "90 .. 180", MINUS + "180 .. " + MINUS + "90",
                                              MINUS + "90 .. 0")[n % 4] + DEGREE, size=11, colour=INK, rim=False)
    for degrees, text, anchor in ((0, "0" + DEGREE, "start"), (90, "90" + DEGREE, "middle"),
                                  (180, "180" + DEGREE, "end"), (270, MINUS + "90" + DEGREE, "middle")):
        place = at(degrees, radius + 10)
        page.text((place[0], place[1] + (14 if degrees == 270 else 5 if degrees % 180 == 0 else 0)), text,
                  anchor=anchor)
    arc = [at(degrees, radius + 22) for degrees in range(18, 71, 4)]
    page.curve_arrow(arc, BLUE, 1.6)


def stair(page, library, left, bottom, step_x, step_y):
    def x(degrees):
        return left + step_x * (degrees / 90.0 - FIRST)

    def y(n):
        return bottom - step_y * (n - FIRST)
    for n in range(FIRST, LAST + 2):
        strong = n % 4 == 0
        page.line((x(90.0 * n), y(LAST) - 12), (x(90.0 * n), bottom + 12), "#94a3b8" if strong else "#e2e8f0", THIN)
        if n % 2 == 0:
            page.text((x(90.0 * n), bottom + 28), signed(90 * n) + DEGREE, size=SMALL)
    for n in range(FIRST, LAST + 1):
        demand(number_at(library, 90.0 * n + 45.0) == n, f"quarter turn {n}")
        start = boundary_below(library, n)
        demand(abs(start - (90.0 * n - SHIFT)) < 1e-6, f"number {n} begins at {start}")
        page.line((x(start) + 1.5, y(n)), (x(90.0 * n + 90.0) - 2.5, y(n)), BLUE, 3.0)
        page.circle((x(start), y(n)), 3.0, BLUE, 1.0, BLUE)
        page.text(((x(start) + x(start + 90.0)) / 2, y(n) - 7), signed(n), size=SMALL, bold=True)
    page.text(((x(90 * FIRST) + x(90 * LAST + 90)) / 2, bottom + 46), "angle of the axis; a whole turn adds 4",
              size=SMALL, colour=GREY)


def close_up(page, library, left, top, width, height):
    page.path(f"M{left} {top}h{width}v{height}h{-width}Z", PALE, THIN, "#ffffff")
    page.text((left + width / 2, top + 20), f"close to 90{DEGREE}", size=SMALL, bold=True)
    start = boundary_below(library, 1)

    def x(degrees):
        return left + width * (0.5 + (degrees - (90.0 - SHIFT / 2)) / 0.0016)
    low, high = top + height - 44, top + height - 74
    for degrees, text in ((start, "89.9995"), (90.0, "90")):
        page.line((x(degrees), top + 32), (x(degrees), top + height - 28), "#94a3b8", THIN, "3 3")
        page.text((x(degrees), top + height - 12), text + DEGREE, size=SMALL)
    page.line((left + 10, low), (x(start) - 3, low), BLUE, 3.0)
    page.line((x(start), high), (left + width - 10, high), BLUE, 3.0)
    page.circle((x(start), high), 3.2, BLUE, 1.0, BLUE)
    page.circle((x(start), low), 3.2, BLUE, STRONG - 1.0, "#ffffff")
    page.text((left + 22, low - 7), "0", size=SMALL, bold=True)
    page.text((left + width - 22, high - 7), "1", size=SMALL, bold=True)


def draw(library):
    library.set_six_axis(SIX_AXIS)
    page = Page(940, 400, "Quarter-turn numbers")
    page.text((180, 34), "one turn", size=TITLE, bold=True)
    circle(page, library, 180, 205, 118)
    page.text((180, 374), f"Every boundary lies 0.0005{DEGREE} lower than drawn:", size=SMALL, colour=GREY)
    page.text((180, 390), f"89.9995{DEGREE} already has number 1.", size=SMALL, colour=GREY)
    page.text((501, 34), "several turns", size=TITLE, bold=True)
    stair(page, library, 390, 332, 37.5, 21.5)
    close_up(page, library, 406, 62, 190, 124)
    return page.done()

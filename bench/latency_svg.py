"""Draws the latency distributions that compare_kdl found as an SVG file.

    python3 latency_svg.py distributions.tsv latency.svg

One panel per contest, one line per contestant: the time that a share of the targets does not exceed. Both axes
are logarithmic, the shares so that each step to the right leaves out nine tenths of the slower targets.
"""

import math
import sys
from collections import defaultdict
from xml.sax.saxutils import escape

PANELS = ("Six-axis", "Four-axis")  # contests whose names start so

PLOT_WIDTH, PLOT_HEIGHT = 520, 380
LEFT, TOP, LABELS, BOTTOM = 70, 64, 330, 56
PANEL_HEIGHT = TOP + PLOT_HEIGHT + BOTTOM
WIDTH = LEFT + PLOT_WIDTH + LABELS

SHARE_TICKS = ((0.0, "0 %"), (0.5, "50 %"), (0.9, "90 %"), (0.99, "99 %"), (0.999, "99.9 %"), (0.9999, "99.99 %"))
NINES = 4.0  # the right end of the axis
LABEL_DISTANCE = 16

THEIRS = ("#b45309", "#d97706", "#dc2626", "#9f1239")
OURS = ("#1d4ed8", "#0891b2", "#4338ca", "#059669", "#475569")


def read(path):
    """{contest: {contestant: [(share, ns), ...]}}"""
    contests = defaultdict(lambda: defaultdict(list))
    with open(path, encoding="utf-8") as file:
        for line in file:
            contest, contestant, share, ns = line.rstrip("\n").split("\t")
            contests[contest][contestant].append((float(share), float(ns)))
    return contests


def nines(share):
    return -math.log10(max(1.0 - share, 10.0 ** -NINES))


def time_text(ns):
    for unit, size in (("ms", 1e6), ("\u00b5s", 1e3)):
        if ns >= size:
            return f"{ns / size:g} {unit}"
    return f"{ns:g} ns"


class Panel:
    def __init__(self, top, curves):
        self.top = top + TOP
        times = [max(ns, 1.0) for curve in curves.values() for _, ns in curve]
        self.low = math.floor(math.log10(min(times)))
        self.high = math.ceil(math.log10(max(times)))

    def x(self, share):
        return LEFT + PLOT_WIDTH * nines(share) / NINES

    def y(self, ns):
        height = (math.log10(max(ns, 1.0)) - self.low) / max(self.high - self.low, 1)
        return self.top + PLOT_HEIGHT * (1.0 - height)

    def bottom(self):
        return self.top + PLOT_HEIGHT


def text(x, y, content, anchor="start", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" {extra}>{escape(content)}</text>'


def line(x1, y1, x2, y2, colour="#e2e8f0"):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}"/>'


def grid(panel):
    parts = []
    for exponent in range(panel.low, panel.high + 1):
        y = panel.y(10.0**exponent)
        parts.append(line(LEFT, y, LEFT + PLOT_WIDTH, y))
        parts.append(text(LEFT - 8, y + 4, time_text(10.0**exponent), "end"))
    for share, label in SHARE_TICKS:
        x = panel.x(share)
        parts.append(line(x, panel.top, x, panel.bottom()))
        parts.append(text(x, panel.bottom() + 18, label, "middle"))
    parts.append(text(LEFT + PLOT_WIDTH / 2, panel.bottom() + 40, "share of the targets", "middle"))
    return parts


def spread(heights, lowest):
    """The same heights in the same order, moved apart so that the labels do not overlap."""
    placed = []
    for height in heights:
        placed.append(max(height, placed[-1] + LABEL_DISTANCE) if placed else height)
    for i in range(len(placed) - 1, -1, -1):
        limit = lowest if i == len(placed) - 1 else placed[i + 1] - LABEL_DISTANCE
        placed[i] = min(placed[i], limit)
    return placed


def colours(names):
    theirs, ours = iter(THEIRS), iter(OURS)
    return {name: next(theirs if name.startswith("KDL") else ours, "#475569") for name in names}


def curves_of(panel, curves):
    colour_of = colours(curves)
    parts, ends = [], []
    for name, curve in curves.items():
        colour = colour_of[name]
        points = " ".join(f"{panel.x(share):.1f},{panel.y(ns):.1f}" for share, ns in curve)
        parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>')
        ends.append((panel.y(curve[-1][1]), name, colour))
    ends.sort()
    edge = LEFT + PLOT_WIDTH
    for place, (end, name, colour) in zip(spread([end for end, _, _ in ends], panel.bottom()), ends):
        parts.append(line(edge, end, edge + 14, place, colour))
        parts.append(text(edge + 18, place + 4, name, extra=f'fill="{colour}"'))
    return parts


def drawing(contests):
    chosen = {name: curves for name, curves in contests.items() if name.startswith(PANELS)}
    height = PANEL_HEIGHT * len(chosen)
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" height="{height}" '
        'font-family="sans-serif" font-size="12" fill="#334155">',
        f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>',
    ]
    for i, (contest, curves) in enumerate(chosen.items()):
        panel = Panel(i * PANEL_HEIGHT, curves)
        parts.append(text(LEFT, panel.top - 34, contest, extra='font-size="16" font-weight="bold"'))
        parts.append(text(LEFT, panel.top - 14, "time of a call that the share of the targets does not exceed"))
        parts += grid(panel) + curves_of(panel, curves)
    return "\n".join(parts + ["</svg>", ""])


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        file.write(drawing(read(sys.argv[1])))


if __name__ == "__main__":
    main()

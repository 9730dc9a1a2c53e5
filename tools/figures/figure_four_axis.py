"""The four-axis arms: links and angles from above, heights from the side, and the tilts (drawn far too large)."""

from arms import FOUR_AXIS, checked_four_axis_chain, demand
from geometry import Camera, add, axis, scale
from library import numbers_of, joints_of
from scene import JOINT, STEEL, Scene, arc_points
from svg import BLUE, GREY, INK, ORANGE, PURPLE, Page, SMALL, TITLE

Q = (25.0, 60.0, 0.0, 35.0)
HEIGHT = 520.0  # of the links over the base in the view from the side: looks only
TILTED = {"Link1Length": 350.0, "Link2Length": 300.0, "ZOffset": 150.0, "ScrewLead": 20.0, "Link1TiltX": 16.0,
          "Link2TiltY": 16.0}


def from_above(page, library):
    chain = checked_four_axis_chain(library, FOUR_AXIS, Q)
    heading = numbers_of(library.forward(joints_of(Q)).Frame)[3]
    demand(abs(heading - (Q[0] + Q[1] + Q[3])) < 1e-9, f"the heading is {heading}")
    scene = Scene(page, Camera(-90.0, 90.0, 0.48, page=(74.0, 362.0)))
    base, elbow, wrist = (frame[1] for frame in chain[:3])
    scene.link(base, elbow, 62.0, 52.0)
    scene.link(elbow, wrist, 50.0, 42.0, lift=50.0)
    scene.paint()
    at = scene.at
    wrist = (wrist[0], wrist[1], 0.0)
    page.line(at(base), at((250.0, 0.0, 0.0)), GREY, 0.8, "8 3 2 3")
    before = (elbow[0] / 350.0, elbow[1] / 350.0, 0.0)  # direction of link 1
    behind = scale(1.0 / 300.0, (wrist[0] - elbow[0], wrist[1] - elbow[1], 0.0))
    page.line(at(elbow), at(add(elbow, scale(220.0, before))), GREY, 0.8, "8 3 2 3")
    page.line(at(wrist), at(add(wrist, scale(170.0, behind))), GREY, 0.8, "8 3 2 3")
    page.polyline([at(base), at(elbow), at(wrist)], ORANGE, 3.2)
    for p in (base, elbow, wrist):
        page.circle(at(p), 4.0, "#ffffff", 1.0, ORANGE)
    page.measure(at(base), at(elbow), "Link1Length", (-22.8, -48.9), (-14, -8), anchor="end")
    page.measure(at(elbow), at(wrist), "Link2Length", (-44.8, -3.9), (-8, 2), anchor="end")
    up = (0.0, 0.0, 1.0)
    scene.turn_arrow(base, up, (1.0, 0.0, 0.0), 190.0, 2.0, Q[0] - 1.0, BLUE, 1.6)
    scene.turn_arrow(elbow, up, before, 160.0, 2.0, Q[1] - 1.0, BLUE, 1.6)
    scene.turn_arrow(wrist, up, behind, 130.0, 2.0, Q[3] - 2.0, BLUE, 1.6)
    for p, hint, radius, angle, name in ((base, (1.0, 0.0, 0.0), 225.0, 0.5 * Q[0], "q1"),
                                         (elbow, before, 190.0, 0.5 * Q[1], "q2"),
                                         (wrist, behind, 158.0, 0.5 * Q[3], "q4")):
        place = at(arc_points(p, up, hint, radius, 0.0, angle)[-1])
        scene.above(lambda place=place, name=name: page.text((place[0], place[1] + 5), name, colour=BLUE, bold=True))
    scene.triad(chain[0], 110.0, "base", (-2, 24), letters=True)
    scene.triad((chain[3][0], wrist), 130.0, "flange", (-14, -12), anchor="end")
    scene.paint()
    page.text((180, 34), "from above", size=TITLE, bold=True)


def from_the_side(page, library):
    q = (0.0, 0.0, 0.0, 0.0)
    chain = checked_four_axis_chain(library, FOUR_AXIS, q)
    scene = Scene(page, Camera(-90.0, 0.0, 0.40, page=(440.0, 372.0)))
    lift = (0.0, 0.0, HEIGHT)
    base, elbow, wrist, flange = chain[0][1], add(chain[1][1], lift), add(chain[2][1], lift), chain[3][1]
    scene.cylinder(base, add(base, (0.0, 0.0, 30.0)), 105.0, colours=JOINT)
    scene.cylinder(add(base, (0.0, 0.0, 30.0)), add(base, (0.0, 0.0, HEIGHT - 40.0)), 68.0)
    scene.cylinder(add(wrist, (0.0, 0.0, 170.0)), flange, 17.0, lift=-10.0)
    scene.add(1e6, lambda: page.polygon([scene.at(p) for p in (
        (-70.0, 0.0, HEIGHT - 40.0), (400.0, 0.0, HEIGHT - 40.0), (400.0, 0.0, HEIGHT + 25.0),
        (-70.0, 0.0, HEIGHT + 25.0))], "#334155", 1.3, STEEL[0]))
    scene.add(1e6 + 1, lambda: page.polygon([scene.at(p) for p in (
        (300.0, 0.0, HEIGHT + 25.0), (700.0, 0.0, HEIGHT + 25.0), (700.0, 0.0, HEIGHT + 110.0),
        (300.0, 0.0, HEIGHT + 110.0))], "#334155", 1.3, STEEL[0]))
    scene.paint()
    at = scene.at
    for p in (base, elbow, wrist):
        page.line(at((p[0], 0.0, -30.0)), at((p[0], 0.0, HEIGHT + 190.0)), GREY, 0.8, "8 3 2 3")
    library.set_four_axis(FOUR_AXIS)
    turned = numbers_of(library.forward(joints_of((0.0, 0.0, -1800.0, 0.0))).Frame)
    demand(abs(turned[2] - (FOUR_AXIS["ZOffset"] - 5 * FOUR_AXIS["ScrewLead"])) < 1e-9, "five turns of the screw")
    page.measure(at((650.0, 0.0, 0.0)), at(flange), "ZOffset", (58, 0), (8, 5), anchor="start")
    page.line(at((80.0, 0.0, 0.0)), at((840.0, 0.0, 0.0)), GREY, 0.8)
    down = (650.0, 0.0, turned[2])
    page.measure(at(flange), at(down), "5 \u00b7 ScrewLead", (-40, 0), (-8, 0), anchor="end")
    place = at(down)
    page.text((place[0] - 48, place[1] - 2), "q3 = \u22121800\u00b0", anchor="end", size=SMALL)
    page.circle(at(flange), 4.0, "#ffffff", 1.0, ORANGE)
    scene.triad(chain[0], 170.0, "base", (-16, 20), anchor="end")
    scene.paint()
    page.text((560, 34), "from the side, all joints 0", size=TITLE, bold=True)


def tilted(page, library):
    chain = checked_four_axis_chain(library, TILTED, (0.0, 0.0, 0.0, 0.0))
    scene = Scene(page, Camera(-60.0, 20.0, 0.42, (300.0, 0.0, 60.0), (955.0, 235.0)))
    base, elbow, wrist, flange = (frame[1] for frame in chain)
    at = scene.at
    for frame, name, shift in ((chain[0], "axis 1", (-8, 2)), (chain[1], "axis 2", (-8, 2)),
                               (chain[2], "axis 3, 4", (8, 2))):
        top = add(frame[1], scale(270.0, axis(frame, 2)))
        page.line(at(add(frame[1], scale(-70.0, axis(frame, 2)))), at(top), GREY, 1.0, "8 3 2 3")
        place = at(top)
        page.text((place[0] + shift[0], place[1] + shift[1]), name, anchor="start" if shift[0] > 0 else "end",
                  size=SMALL, colour=GREY)
    for p in (elbow, wrist):
        page.line(at(p), at(add(p, (0.0, 0.0, 190.0))), "#94a3b8", 0.8, "2 3")
    page.polyline([at(base), at(elbow), at(wrist), at(flange)], ORANGE, 3.2)
    for p in (base, elbow, wrist, flange):
        page.circle(at(p), 4.0, "#ffffff", 1.0, ORANGE)
    for p, words, shift in ((elbow, "Link1TiltX", (6, 30)), (wrist, "Link2TiltY", (6, 30))):
        place = at(p)
        page.text((place[0] + shift[0], place[1] + shift[1]), words, size=SMALL, bold=True, colour=PURPLE)
    scene.triad(chain[0], 110.0, "base", (-4, 26), anchor="end")
    scene.paint()
    page.text((970, 34), "tilts (16\u00b0 drawn)", size=TITLE, bold=True)


def draw(library):
    page = Page(1160, 450, "The four-axis arms")
    from_above(page, library)
    from_the_side(page, library)
    tilted(page, library)
    page.text((20, 436), "Type 4110 counts axis 2 from the folded elbow: its q2 is the drawn angle less 180\u00b0.  A "
              "tilt acts behind its link: Link1Tilt... leans axis 2 and all beyond, Link2Tilt... axes 3 and 4.",
              anchor="start", size=SMALL, colour=INK)
    return page.done()


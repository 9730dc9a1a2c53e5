"""A user frame from three points of a circle: the centre, X towards the first, Z by the order of the points."""

from math import cos, radians, sin

from arms import demand, demand_same
from geometry import Camera, add, axis, from_frame, point, scale
from library import numbers_of, pose_of
from scene import JOINT, Scene, arc_points
from svg import BLUE, GREY, ORANGE, Page, SMALL

DISC = (400.0, 100.0, 250.0, -20.0, 10.0, -6.0)
RADIUS = 180.0
ANGLES = (0.0, 100.0, 215.0)


def on_circle(angle):
    return RADIUS * cos(radians(angle)), RADIUS * sin(radians(angle)), 0.0


def draw(library):
    disc = from_frame(*DISC)
    world = [point(disc, on_circle(angle)) for angle in ANGLES]
    frame, _ = library.calibrate("Kine_CalcExtWobj_UserPrm_Cirle3P", *(pose_of((*p, 0.0, 0.0, 0.0)) for p in world))
    found = from_frame(*numbers_of(frame))
    demand_same(found, disc, "the frame of the circle")
    frame, _ = library.calibrate("Kine_CalcExtWobj_UserPrm_Cirle3P",
                                 *(pose_of((*world[i], 0.0, 0.0, 0.0)) for i in (0, 2, 1)))
    demand(axis(from_frame(*numbers_of(frame)), 2)[2] < 0.0, "the other order turns Z over")

    page = Page(560, 400, "A user frame from three points of a circle")
    scene = Scene(page, Camera(-60.0, 38.0, 0.82, disc[1], (270.0, 210.0)))
    out = axis(disc, 2)
    scene.cylinder(add(disc[1], scale(-30.0, out)), disc[1], 215.0, colours=JOINT)
    points = [scene.at(p) for p in arc_points(disc[1], out, axis(disc, 0), RADIUS, 0.0, 360.0, 48)]
    scene.above(lambda: page.polyline(points, ORANGE, 1.0, "6 4"))
    scene.turn_arrow(disc[1], out, axis(disc, 0), 120.0, 20.0, 80.0, BLUE, 1.6)
    scene.turn_arrow(disc[1], out, axis(disc, 0), 120.0, 120.0, 190.0, BLUE, 1.6)
    scene.triad(found, 140.0, "centre", (-4, 22))
    for p in world:
        scene.above(lambda p=p: page.circle(scene.at(p), 5.0, "#ffffff", 1.2, ORANGE))
    scene.paint()
    for name, p, shift in zip(("p1", "p2", "p3"), world, ((22, 10), (14, -12), (-18, 14))):
        place = scene.at(p)
        page.text((place[0] + shift[0], place[1] + shift[1]), name, bold=True)
    page.text((280, 384), "X towards p1.  The points turn anticlockwise about Z: the other order turns Z over.",
              size=SMALL, colour=GREY)
    return page.done()

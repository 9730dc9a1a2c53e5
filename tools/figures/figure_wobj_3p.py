"""A work-object frame from three points: the origin, a point on +X, a point in the XY plane on the side of +Y."""

from arms import demand, demand_same
from geometry import Camera, axis, dot, from_frame, move, point, product, sub
from library import numbers_of, pose_of
from scene import SAGE, Scene
from svg import GREY, ORANGE, Page, SMALL

PLATE = (500.0, -100.0, 300.0, 25.0, -14.0, 9.0)
SIZE = (520.0, 360.0, 40.0)
ORIGIN, X_POINT, XY_POINT = (0.0, 0.0, 0.0), (410.0, 0.0, 0.0), (230.0, 270.0, 0.0)


def draw(library):
    plate = from_frame(*PLATE)
    world = [point(plate, p) for p in (ORIGIN, X_POINT, XY_POINT)]
    frame, _ = library.calibrate("Kine_CalcExtWobj_UserPrm_3P", *(pose_of((*p, 0.0, 0.0, 0.0)) for p in world))
    found = from_frame(*numbers_of(frame))
    demand_same(found, plate, "the work object")
    demand(dot(sub(world[2], world[0]), axis(found, 1)) > 0.0, "the third point lies on the side of +Y")

    page = Page(600, 400, "A work object from three points")
    scene = Scene(page, Camera(-60.0, 32.0, 0.78, point(plate, (250.0, 180.0, 0.0)), (300.0, 200.0)))
    scene.box(product(plate, move(z=-SIZE[2])), SIZE, SAGE)
    at = scene.at
    o, x, xy = (at(p) for p in world)
    foot = at(point(plate, (XY_POINT[0], 0.0, 0.0)))
    along = at(point(plate, (SIZE[0], 0.0, 0.0)))

    def marks():
        page.line(o, along, ORANGE, 1.0, "6 4")
        page.line(foot, xy, GREY, 1.0, "2 3")
    scene.above(marks)
    scene.triad(found, 190.0, None)
    for p in (o, x, xy):
        scene.above(lambda p=p: page.circle(p, 5.0, "#ffffff", 1.2, ORANGE))
    scene.paint()
    page.text((o[0] - 12, o[1] + 22), "origin", bold=True)
    page.text((x[0] + 4, x[1] + 26), "X point: anywhere on +X", bold=True)
    page.text((xy[0] + 12, xy[1] - 10), "XY point: anywhere on the side of +Y", bold=True)
    page.text((300, 382), "Z stands on the plane of the three points.  The further apart they are, the better the "
              "frame.", size=SMALL, colour=GREY)
    return page.done()

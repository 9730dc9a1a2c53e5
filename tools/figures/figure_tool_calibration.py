"""Three touches of one fixed point with a tool on the flange, and what the calibration makes of them."""

from arms import SIX_AXIS, demand, draw_tool
from geometry import (Camera, add, axis, from_frame, inverse, norm, point, product, scale, sub, to_frame, turn_x,
                      turn_y, turn_z)
from library import numbers_of, pose_of
from scene import JOINT, STEEL, Scene
from svg import GREY, INK, Page, SMALL

TIP = (600.0, 0.0, 300.0)
TOOL = (30.0, -20.0, 240.0, 0.0, 0.0, 0.0)  # the tool that is looked for
TURNS = ((0.0, 0.0, 0.0), (46.0, 0.0, 0.0), (0.0, -46.0, 20.0))  # of the tool about X, Y and Z of the pointing down
NAMES = ("p0", "p1", "p2")


def flanges():
    down = from_frame(*TIP, 0.0, 180.0, 0.0)
    for x, y, z in TURNS:
        tcp = product(down, turn_x(x), turn_y(y), turn_z(z))
        yield product(tcp, inverse(from_frame(*TOOL)))


def draw(library):
    library.set_six_axis(SIX_AXIS)
    touches = list(flanges())
    frame, report = library.calibrate("Kine_CalcGripToolPrm_3P", *(pose_of(to_frame(flange)) for flange in touches))
    found = numbers_of(frame)
    demand(norm(sub(found[:3], TOOL[:3])) < 1e-6, f"the tool is {found}")
    demand(report[0] < 1e-6, f"the touches spread by {report[0]} mm")

    page = Page(700, 520, "Calibration of a tool: one fixed point touched in three orientations")
    scene = Scene(page, Camera(-70.0, 18.0, 0.85, TIP, (330.0, 330.0)))
    scene.cylinder((TIP[0], TIP[1], TIP[2] - 130.0), (TIP[0], TIP[1], TIP[2] - 110.0), 70.0, colours=JOINT, lift=-200.0)
    scene.cylinder((TIP[0], TIP[1], TIP[2] - 110.0), TIP, 16.0, 1.5, colours=STEEL, lift=-100.0)
    for name, flange in zip(NAMES, touches):
        out = axis(flange, 2)
        tcp = product(flange, from_frame(*TOOL))
        scene.cylinder(add(flange[1], scale(-80.0, out)), add(flange[1], scale(-14.0, out)), 30.0)
        scene.cylinder(add(flange[1], scale(-14.0, out)), flange[1], 40.0, colours=JOINT, lift=4.0)
        draw_tool(scene, flange, tcp, 11.0)
        scene.triad(flange, 62.0, letters=name == "p0", width=1.8)
        top = scene.at(point(flange, (0.0, 0.0, -110.0)))
        scene.above(lambda top=top, name=name: page.text((top[0], top[1] + 5), name, bold=True, size=16))
    scene.dot(TIP, 3.4)
    scene.paint()
    tip = scene.at(TIP)
    page.text((tip[0] + 34, tip[1] + 30), "the point that stands still", anchor="start", size=SMALL)
    page.line((tip[0] + 30, tip[1] + 24), (tip[0] + 6, tip[1] + 4), GREY, 0.8)
    numbers = ", ".join(f"{value:.1f}" for value in found[:3]).replace("-", "\u2212")
    page.text((20, 464), "Taught: the flange frames p0, p1, p2.", anchor="start", size=SMALL, colour=INK)
    page.text((20, 484), f"Kine_CalcGripToolPrm_3P gives the tip in the flange: X, Y, Z = {numbers} mm", anchor="start",
              size=SMALL, colour=INK)
    page.text((20, 504), f"and the error report: the largest distance between the three tips is {report[0]:.1f} mm.",
              anchor="start", size=SMALL, colour=INK)
    return page.done()

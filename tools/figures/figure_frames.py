"""The frames of a cell whose robot holds the tool and rides on a track, and the records that say where each is."""

from arms import SIX_AXIS, checked_six_axis_chain, demand_same, draw_six_axis, draw_tool, tcp_of
from geometry import IDENTITY, Camera, from_frame, inverse, move, product
from library import MechUnit, Tool, Wobj, frame_of, numbers_of, pose_of
from scene import SAGE, WOOD, Scene
from svg import GREY, INK, NORMAL, Page, SMALL

TRACK = (150.0, 420.0, 120.0, 0.0, 0.0, 0.0)
TRAVEL = 450.0
TOOL = (0.0, 0.0, 180.0, 0.0, 0.0, 0.0)
USER = (1050.0, -260.0, 300.0, 12.0, 0.0, 0.0)
OBJECT = (230.0, 120.0, 110.0, -20.0, 0.0, 0.0)
TARGET = (330.0, 190.0, 0.0, -10.0, 165.0, 0.0)


def set_track(library):
    library.call("Kine_SetMechUnitGlobalCfg", 1, 1, 1)
    unit = MechUnit(Active=1, UnitKind=1, Option1=1, Option2=0, AxisCount=1)
    unit.AxisFrame[0] = frame_of(TRACK)
    library.call("Kine_SetMechUnitParam", 0, unit)


def draw(library):
    library.set_six_axis(SIX_AXIS)
    set_track(library)
    tool = Tool(HeldByRobot=1, TFrame=frame_of(TOOL))
    wobj = Wobj(UFFix=1, UFrame=frame_of(USER), OFrame=frame_of(OBJECT))
    joints = library.inverse(pose_of(TARGET, ext=(TRAVEL,)), tool, wobj)
    in_world = from_frame(*numbers_of(library.forward(joints, "Kine_JointToWorldPos", tool, wobj).Frame))
    in_base = from_frame(*numbers_of(library.forward(joints, "Kine_JointToBasePos", tool, wobj).Frame))
    chain = checked_six_axis_chain(library, SIX_AXIS, tuple(joints.Axis)[:6])

    base = product(from_frame(*TRACK), move(x=TRAVEL))
    user = from_frame(*USER)
    work = product(user, from_frame(*OBJECT))
    flange = product(base, chain[6])
    tcp = tcp_of(flange, TOOL)
    demand_same(product(in_world, inverse(in_base)), base, "the base in the world")
    demand_same(in_world, tcp, "the tool centre point")
    demand_same(in_world, product(work, from_frame(*TARGET)), "the target")

    page = Page(860, 640, "The frames of a cell: world, base, flange, tool centre point, user and object")
    scene = Scene(page, Camera(-62.0, 22.0, 0.38, (850.0, 200.0, 620.0), (410.0, 270.0)))
    scene.floor((-150.0, 1950.0), (-450.0, 900.0), 150.0)
    scene.box(move(10.0, 300.0, 0.0), (1050.0, 240.0, 120.0), WOOD, lift=-900.0)
    draw_six_axis(scene, chain, base)
    draw_tool(scene, flange, tcp)
    scene.box(product(user, move(z=-300.0)), (760.0, 620.0, 300.0), WOOD, lift=-500.0)
    scene.box(product(work, move(z=-110.0)), (400.0, 330.0, 110.0), SAGE, lift=-400.0)

    scene.triad(IDENTITY, 230.0, "world", (-8, 22))
    scene.triad(base, 165.0, "base", (-14, 16), anchor="end")
    scene.triad(flange, 120.0, "flange", (16, -8), anchor="start", letters=False)
    scene.triad(tcp, 120.0, "tcp", (14, 2), anchor="start", letters=False)
    scene.triad(user, 150.0, "user", (-12, 14), anchor="end")
    scene.triad(work, 130.0, "object", (-10, 20), anchor="end")
    scene.paint()

    at = scene.at
    arrows = [
        (IDENTITY, base, 34, "mounting", (-10, -12), "end"),
        (base, flange, 150, "joints", (-6, -10), "end"),
        (flange, tcp, 26, "TFrame", (10, 6), "start"),
        (IDENTITY, user, -40, "UFrame", (0, 20), "middle"),
        (user, work, -18, "OFrame", (16, 28), "start"),
        (work, tcp, -34, "pose", (4, 18), "middle"),
    ]
    for start, end, bend, name, shift, anchor in arrows:
        middle = page.bow(at(start[1]), at(end[1]), bend, GREY, NORMAL, "6 4")
        page.text((middle[0] + shift[0], middle[1] + shift[1]), name, anchor=anchor, colour=INK, italic=True)
    page.text((20, 624), "mounting: a mechanical unit under the robot; without one the base stands at the world "
              "origin.  pose: the tcp in the object frame.", anchor="start", size=SMALL, colour=GREY)
    return page.done()

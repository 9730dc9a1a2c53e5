"""Mechanical units: a positioner with two rotary axes that carries a work object, and a track under the robot."""

from arms import SIX_AXIS, checked_six_axis_chain, demand_same, draw_six_axis
from geometry import Camera, add, axis, from_frame, inverse, move, point, product, scale, turn_z
from library import FIXED_WOBJ_AT_WORLD, MechUnit, Wobj, frame_of, joints_of, numbers_of
from scene import JOINT, SAGE, STEEL, WOOD, Scene
from svg import BLUE, GREY, INK, Page, SMALL, TITLE

FIRST = (900.0, 0.0, 430.0, 90.0, 0.0, -90.0)  # tilts about a level axis, Z along the world's -X
SECOND = (0.0, 60.0, 260.0, 0.0, 0.0, 90.0)  # the table, in the first axis
V0, V1 = -20.0, 110.0
TRACK = (100.0, 0.0, 160.0, 0.0, 0.0, 0.0)
TRAVEL = 620.0
Q = (30.0, 10.0, -30.0, 0.0, 40.0, 0.0)


def unit_of(kind, frames, indices, carries_robot=0):
    unit = MechUnit(Active=1, UnitKind=kind, Option1=carries_robot, Option2=0, AxisCount=len(indices))
    for i, numbers in enumerate(frames):
        unit.AxisFrame[i] = frame_of(numbers)
    for i, index in enumerate(indices):
        unit.AxisParamIndex[i] = index
    return unit


def axis_of_unit(library, joints, wobj):
    """World from the last axis of a unit: the same tool point seen from the world and from the unit."""
    world = library.forward(joints, "Kine_JointToWorldPos", wobj=FIXED_WOBJ_AT_WORLD)
    on_unit = library.forward(joints, "Kine_JointToWobjPos", wobj=wobj)
    return product(from_frame(*numbers_of(world.Frame)), inverse(from_frame(*numbers_of(on_unit.Frame))))


def positioner(page, library):
    library.set_six_axis(SIX_AXIS)
    library.call("Kine_SetMechUnitGlobalCfg", 2, 2, 1)
    library.call("Kine_SetMechUnitParam", 1, unit_of(3, (FIRST, SECOND), (0, 1)))
    start = from_frame(*FIRST)
    first = product(start, turn_z(V0))
    table = product(first, from_frame(*SECOND), turn_z(V1))
    found = axis_of_unit(library, joints_of(Q, (V0, V1)), Wobj(UFFix=0, MechUnitIndex=1))
    demand_same(found, table, "the last axis of the positioner")

    scene = Scene(page, Camera(-58.0, 26.0, 0.46, (720.0, 0.0, 330.0), (235.0, 282.0)))
    scene.floor((300.0, 1200.0), (-300.0, 300.0), 150.0)
    z = axis(first, 2)
    for distance, far in ((0.0, 0.0), (520.0, 1.0)):
        p = add(start[1], scale(distance, z))
        scene.box(move(p[0] - 45.0, p[1] - 110.0, 0.0), (90.0, 220.0, p[2]), WOOD, lift=-300.0 - 200.0 * far)
        scene.joint(p, z, 60.0, 70.0)
    # The cradle: two cheeks on the first axis and a bridge that carries the table.
    for distance in (70.0, 450.0):
        top = add(start[1], scale(distance, z))
        scene.link(top, point(first, (0.0, SECOND[1] + 150.0, distance)), 46.0, 46.0, STEEL)
    scene.link(point(first, (0.0, SECOND[1] + 150.0, 70.0)), point(first, (0.0, SECOND[1] + 150.0, 450.0)), 46.0,
               46.0, STEEL, lift=20.0)
    out = axis(table, 2)
    scene.cylinder(add(table[1], scale(-110.0, out)), add(table[1], scale(-24.0, out)), 70.0, colours=STEEL, lift=140.0)
    scene.cylinder(add(table[1], scale(-24.0, out)), table[1], 125.0, colours=JOINT, lift=200.0)
    scene.box(product(table, move(-80.0, 10.0, 0.0)), (100.0, 70.0, 50.0), SAGE, lift=400.0)
    scene.axis_line(start[1], z, 210.0, 660.0)
    scene.axis_line(table[1], out, 20.0, 330.0)
    scene.turn_arrow(add(start[1], scale(-150.0, z)), z, axis(start, 0), 75.0, -130.0, 130.0, BLUE, 1.6)
    scene.turn_arrow(add(table[1], scale(260.0, out)), out, axis(table, 0), 75.0, -60.0, 200.0, BLUE, 1.6)
    scene.triad(start, 140.0, "AxisFrame[0]", (56, -36), anchor="start")
    scene.triad(table, 150.0, "last axis", (12, 22), anchor="start")
    scene.paint()
    place = scene.at(add(start[1], scale(-150.0, z)))
    page.text((place[0] + 46, place[1] - 8), "v0", colour=BLUE, bold=True, anchor="start")
    place = scene.at(add(table[1], scale(260.0, out)))
    page.text((place[0] + 46, place[1] + 2), "v1", colour=BLUE, bold=True, anchor="start")
    page.text((240, 30), "kind 3: two rotary axes", size=TITLE, bold=True)
    page.text((240, 50), "AxisFrame[0] \u00b7 Rz(v0) \u00b7 AxisFrame[1] \u00b7 Rz(v1)", size=SMALL, colour=GREY)


def track(page, library):
    chain = checked_six_axis_chain(library, SIX_AXIS, Q)
    library.call("Kine_SetMechUnitGlobalCfg", 1, 1, 1)
    library.call("Kine_SetMechUnitParam", 0, unit_of(1, (TRACK,), (0,), carries_robot=1))
    joints = joints_of(Q, (TRAVEL,))
    world = from_frame(*numbers_of(library.forward(joints, "Kine_JointToWorldPos").Frame))
    in_base = from_frame(*numbers_of(library.forward(joints, "Kine_JointToBasePos").Frame))
    start = from_frame(*TRACK)
    base = product(start, move(x=TRAVEL))
    demand_same(product(world, inverse(in_base)), base, "the base on the track")

    scene = Scene(page, Camera(-62.0, 20.0, 0.25, (780.0, 0.0, 640.0), (750.0, 272.0)))
    scene.floor((-150.0, 1650.0), (-300.0, 300.0), 150.0)
    scene.box(move(-60.0, -130.0, 0.0), (1600.0, 260.0, 110.0), WOOD, lift=-900.0)
    scene.box(product(base, move(-190.0, -170.0, -50.0)), (380.0, 340.0, 50.0), (JOINT[0], JOINT[1], JOINT[0]),
              lift=-300.0)
    draw_six_axis(scene, chain, base)
    scene.triad(start, 220.0, "AxisFrame[0]", (-10, 22), anchor="middle")
    scene.triad(base, 220.0, "base", (-16, 6), anchor="end")
    scene.paint()
    a, b = (scene.at((TRACK[0], -130.0, 0.0)), scene.at((TRACK[0] + TRAVEL, -130.0, 0.0)))
    page.measure(a, b, "v0", (0, 34), (0, 20), BLUE)
    page.text((760, 30), "kind 1: one linear axis, under the robot", size=TITLE, bold=True)
    page.text((760, 50), "AxisFrame[0] \u00b7 L(v0), along X", size=SMALL, colour=GREY)


def draw(library):
    page = Page(1000, 540, "Mechanical units: a positioner with two rotary axes, and a track under the robot")
    positioner(page, library)
    track(page, library)
    page.text((500, 524), "v0, v1: the external axes that AxisParamIndex names, in degrees or mm.  The last axis of a "
              "unit is the user frame of a work object on it.", size=SMALL, colour=INK)
    return page.done()

"""The picture of the README: a six-axis arm in a cell, its tool on a work object, and the two frames that matter."""

from arms import SIX_AXIS, checked_six_axis_chain, demand_same, draw_six_axis, draw_tool, tcp_of
from geometry import Camera, from_frame, move, point, product
from library import Tool, Wobj, frame_of, numbers_of, pose_of
from scene import SAGE, Scene
from svg import ORANGE, Page, STRONG

TOOL = (0.0, 0.0, 170.0, 0.0, 0.0, 0.0)
OBJECT = (560.0, -330.0, 330.0, 20.0, 0.0, 0.0)  # user frame in the world; the object frame is the same
SIZE = (420.0, 520.0, 60.0)
TARGET = (300.0, 120.0, 60.0, 0.0, 160.0, 0.0)


def draw(library):
    library.set_six_axis(SIX_AXIS)
    tool = Tool(HeldByRobot=1, TFrame=frame_of(TOOL))
    wobj = Wobj(UFFix=1, UFrame=frame_of(OBJECT))
    joints = library.inverse(pose_of(TARGET, cfg=(0, 0, 0, 0)), tool, wobj)
    chain = checked_six_axis_chain(library, SIX_AXIS, tuple(joints.Axis)[:6])
    work = from_frame(*OBJECT)
    tcp = tcp_of(chain[6], TOOL)
    world = from_frame(*numbers_of(library.forward(joints, "Kine_JointToWorldPos", tool, wobj).Frame))
    demand_same(world, tcp, "the tool centre point in the world")
    demand_same(world, product(work, from_frame(*TARGET)), "the target")

    page = Page(640, 470, "A six-axis arm and a work object")
    scene = Scene(page, Camera(-58.0, 22.0, 0.34, (350.0, 0.0, 520.0), (315.0, 225.0)))
    scene.floor((-300.0, 1200.0), (-600.0, 600.0), 150.0)
    draw_six_axis(scene, chain)
    draw_tool(scene, chain[6], tcp)
    scene.box(product(work, move(z=-330.0 + 60.0)), (SIZE[0], SIZE[1], 270.0), lift=-400.0)
    scene.box(work, SIZE, SAGE, lift=-350.0)
    path = [(300.0, 120.0, 60.0), (300.0, 400.0, 60.0), (120.0, 400.0, 60.0), (120.0, 120.0, 60.0)]
    scene.above(lambda: page.polygon([scene.at(point(work, p)) for p in path], ORANGE, STRONG))
    scene.triad(work, 150.0, "work object", (10, 44), anchor="start")
    scene.triad(tcp, 110.0, "tool centre point", (16, -6), anchor="start", letters=False)
    scene.triad(chain[0], 260.0, "base", (-14, 20), anchor="end")
    scene.paint()
    return page.done()
